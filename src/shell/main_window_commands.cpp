// What the menus and toolbars of the main window do.
#include <QActionGroup>
#include <QCloseEvent>
#include <QComboBox>
#include <QDesktopServices>
#include <QUrl>
#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QFileInfo>
#include <QFontComboBox>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPointer>
#include <filesystem>

#include "album/options_file.h"
#include "album/paths.h"
#include "editor/display_picture.h"
#include "explorer/explorer_options.h"
#include "editor/sound_player.h"
#include "help/help_center.h"
#include "html/safe_text.h"
#include "html/search_page.h"
#include "properties/property_dialogs.h"
#include "shell/album_explorer.h"
#include "shell/main_window.h"
#include "shell/explorer_launch.h"
#include "shell/tool_windows.h"
#include "panorama/make_pano_window.h"
#include "shell/startup.h"
#include "shell/tool_icons.h"

namespace brindle::shell {

using editor::FrmNotePad;

void MainWindow::withPad(const std::function<void(FrmNotePad&)>& fn) {
    if (FrmNotePad* pad = activeNotePad()) fn(*pad);
}

// Saving walks every page window and the HTML run opens closed pages;
// the user stays on the page in front.
void MainWindow::keepingActiveTab(const std::function<void()>& fn) {
    const QPointer<QMdiSubWindow> front = mdi_->activeSubWindow();
    fn();
    if (front && mdi_->subWindowList().contains(front.data()) && mdi_->activeSubWindow() != front)
        mdi_->setActiveSubWindow(front);
}

void MainWindow::wireActions() {
    auto on = [this](const char* name, std::function<void()> fn) {
        connect(action(name), &QAction::triggered, this, [fn = std::move(fn)] { fn(); });
    };
    auto onPad = [this, on](const char* name, std::function<void(FrmNotePad&)> fn) {
        on(name, [this, fn = std::move(fn)] { withPad(fn); });
    };
    Session& s = *session_;
    on("mnuNeuAlbum", [&s] { s.AlbumNeu(); });
    on("mnuAlbumOeffnen", [&s] { s.albumOeffnen(""); });
    on("mnuAlbumSpeichern", [this, &s] { keepingActiveTab([&s] { s.AlbumSpeichern(false); }); });
    on("mnuAlbumSpeichernUnter", [this, &s] { keepingActiveTab([&s] { s.AlbumSpeichern(true); }); });
    on("mnuBeenden", [this] { close(); });
    on("mnuNeueSeite", [&s] { s.neueSeite("", false); });
    on("mnuVorhSeite", [&s] { s.SeiteOeffnen(0, "", false); });
    onPad("mnuFSave", [](FrmNotePad& p) { p.mnuFSave_Click(); });
    onPad("mnuFSaveAs", [](FrmNotePad& p) { p.mnuFSaveAs_Click(); });
    onPad("mnuFClose", [](FrmNotePad& p) { p.parentWidget()->close(); });
    onPad("mnuSeiteEntfernen", [](FrmNotePad& p) { p.mnuSeiteEntfernen_Click(); });
    onPad("mnuZurSeitenvorlage", [](FrmNotePad& p) { p.mnuZurSeitenvorlage_Click(false); });
    onPad("mnuZurUmschlagvorlage", [](FrmNotePad& p) { p.mnuZurSeitenvorlage_Click(true); });
    onPad("mnuNeuzeichnen", [](FrmNotePad& p) { p.NeuZeichnen(); });
    onPad("mnuZoom", [](FrmNotePad& p) { p.cmdZoom_Click(); });
    onPad("mnuUndo", [](FrmNotePad& p) { p.document().MachUndo(); });
    onPad("mnuRedo", [](FrmNotePad& p) { p.document().MachRedo(); });
    onPad("mnuECut", [](FrmNotePad& p) { p.document().cut(); });
    onPad("mnuECopy", [](FrmNotePad& p) { p.document().copy(); });
    onPad("mnuEPaste", [](FrmNotePad& p) { p.document().paste(); });
    onPad("mnuEDelete", [](FrmNotePad& p) { p.document().deleteSelection(); });
    onPad("mnuESelectAll", [](FrmNotePad& p) { p.document().selectAll(); });
    // The active element's dialog, or the page's when nothing is selected.
    onPad("mnuEigenschaften", [this](FrmNotePad& p) { showProperties(&p, p.document().aktiv()); });
    onPad("mnuNavigation", [this](FrmNotePad& p) {
        if (playMode()) return;
        properties::DialogContext context{p, *session_, prompter_, this};
        if (properties::showNavigationProperties(context)) pageStateChanged(&p);
    });
    onPad("mnuTextGanzVorne", [](FrmNotePad& p) { p.document().zOrder("ganzvorn"); });
    onPad("mnuTextNachVorne", [](FrmNotePad& p) { p.document().zOrder("nachvorn"); });
    onPad("mnuTextNachHinten", [](FrmNotePad& p) { p.document().zOrder("nachhinten"); });
    onPad("mnuTextGanzHinten", [](FrmNotePad& p) { p.document().zOrder("ganzhinten"); });
    for (const char* key : {"setleft", "setcenterver", "setright", "settop", "setcenterhor", "setdown",
                            "setaufthor", "setauftver"})
        onPad(key, [key](FrmNotePad& p) { p.document().Ausrichten(key); });
    connect(action("mnuAlbumExplorer"), &QAction::toggled, explorerDock_, &QDockWidget::setVisible);
    on("mnuHTMLAlbum", [this] { keepingActiveTab([this] { HTMLAlbumGenerieren(false); }); });
    on("mnuHTMLMail", [this] { keepingActiveTab([this] { HTMLAlbumGenerieren(true); }); });
    on("mnuOptionen", [this] { showOptions(); });
    on("mnuBrindleseeExplorer", [this] {
        const SessionState& s = session_->state();
        const std::string last = explorer::loadExplorerOptions(s.programDirectory).folder;
        const std::string folder = !s.pictureDirectory.empty() && std::filesystem::is_directory(s.pictureDirectory)
                                       ? s.pictureDirectory
                                       : defaultExplorerFolder(last);
        openExplorerWindow(s.programDirectory, {folder, {}}, prompter_, s.language, this);
    });
    on("mnuVorlagen", [this] { showCatalogue(); });
    on("mnuSpezialseiten", [this] { showGenerator(); });
    on("mnuWizzard", [this] { showWizard(); });
    const std::pair<const char*, PictureTool> tools[] = {{"mnuFotodesign", PictureTool::Design},
                                                         {"mnuRoteAugen", PictureTool::RedEye},
                                                         {"mnuBildgroesse", PictureTool::Resize},
                                                         {"mnuBilderTeilen", PictureTool::Split},
                                                         {"mnuDrucken", PictureTool::Print}};
    for (const auto& [name, tool] : tools)
        on(name, [this, tool] {
            choosePicturesForTool(tool, prompter_, session_->language(), session_->state().pictureDirectory, this);
        });
    on("mnuPanorama", [this] {
        const SessionState& s = session_->state();
        for (QWidget* w : choosePicturesForTool(PictureTool::Panorama, prompter_, s.language, s.pictureDirectory, this,
                                                s.programDirectory))
            if (auto* pano = qobject_cast<panorama::MakePanoWindow*>(w))
                connect(pano, &panorama::MakePanoWindow::placeOnPage, this,
                        [this, pano](const QString& path) { placePanorama(path.toStdString(), pano->options().compose.ring360); });
    });
    on("mnuVideo", [this] {
        const SessionState& s = session_->state();
        choosePicturesForTool(PictureTool::Video, prompter_, s.language, s.pictureDirectory, this, s.programDirectory);
    });
    on("mnuDeutsch", [this] { setLanguage(Language::German); });
    on("mnuEnglisch", [this] { setLanguage(Language::English); });
    on("mnuInfo", [this] { showAbout(); });
    on("mnuHilfe", [this] {
        if (auto* center = help::HelpCenter::installed()) center->showPage(activeNotePad() ? "page-editor" : "index");
    });
    connect(action("tbPlay"), &QAction::toggled, this, [this] { playModeChanged(); });
    connect(fontBox_, &QFontComboBox::currentFontChanged, this, [this] { applyFontChange(); });
    connect(sizeBox_, &QComboBox::currentTextChanged, this, [this] { applyFontChange(); });
    for (const char* n : {"tbBold", "tbItalic", "tbUnderline"})
        connect(action(n), &QAction::triggered, this, [this] { applyFontChange(); });
}

// Font_Change: the font bar's values go to every selected text.
void MainWindow::applyFontChange() {
    if (updatingFormat_) return;
    FrmNotePad* pad = activeNotePad();
    if (!pad) return;
    const std::string name = fontBox_->currentFont().family().toStdString();
    const int size = sizeBox_->currentText().toInt();
    const bool bold = action("tbBold")->isChecked(), italic = action("tbItalic")->isChecked(),
               underline = action("tbUnderline")->isChecked();
    bool differs = false;
    for (const auto& e : pad->document().auswahl()) {
        if (e.ref.kind != editor::Kind::Text) continue;
        const FontSpec& f = pad->document().page().texts[e.ref.index].font;
        differs |= editor::fontNameOf(f) != name || (size > 0 && f.size != size) || isTrue(f.bold) != bold ||
                   isTrue(f.italic) != italic || isTrue(f.underline) != underline;
    }
    if (!differs) return;
    pad->document().changeSelectedTexts([&](TextElement& t) {
        t.font.name = name;
        if (size > 0) t.font.size = size;
        t.font.bold = toBool16(bold);
        t.font.italic = toBool16(italic);
        t.font.underline = toBool16(underline);
    });
}

void MainWindow::updateMemory() {
    QFile info("/proc/meminfo");
    if (!info.open(QIODevice::ReadOnly)) return;
    for (const QByteArray& line : info.readAll().split('\n')) {
        if (!line.startsWith("MemAvailable:")) continue;
        const long long mb = line.simplified().split(' ').value(1).toLongLong() / 1024;
        lblMemory_->setText(QString(t("Freier Speicher: %1 MB", "Free memory: %1 MB")).arg(mb));
    }
}

void MainWindow::rebuildRecentMenu(const std::vector<std::string>& shown) {
    QMenu* m = menus_["mnuZuletzt"];
    m->clear();
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const int n = static_cast<int>(i) + 1;
        // Access keys 1 to 9, then 0 for the tenth.
        const QString number = n < 10 ? "&" + QString::number(n) : QString::number(n).insert(1, '&');
        QAction* a = m->addAction(number + "  " + QString::fromStdString(shown[i]).replace('&', "&&"));
        a->setObjectName("RecentFile" + QString::number(n));
        // The menu shows shortened paths; the settings hold the full one.
        connect(a, &QAction::triggered, this, [this, n] {
            openFile(QString::fromStdString(settings_.get(kSettingsApp, kRecentSection, "RecentFile" + std::to_string(n))));
        });
    }
    m->setEnabled(!shown.empty());
}

bool MainWindow::playMode() const { return action("tbPlay")->isChecked(); }

// PlaymodeEinstellen for every open page; the music ends with play.
void MainWindow::playModeChanged() {
    if (!playMode()) editor::SoundPlayer::instance().stop();
    for (FrmNotePad* pad : notePads()) pad->PlaymodeEinstellen();
}

// Links of the play mode lead where they lead in the HTML album: to the
// next, previous or contents page, to a page by its file name or bare
// title, to a file, or outside.
void MainWindow::followLink(editor::FrmNotePad* pad, const QString& link) {
    AlbumRecord& a = session_->album();
    const int here = session_->entryOfSlot(pad ? pad->tag() : 0);
    const int count = std::min<int>(a.pageCount, a.pages.upper());
    int target = 0;
    // As the album's links resolve: a page outside the list goes forward to
    // page 2 and nowhere back; the ends wrap round.
    if (link == "<vor>" && count > 0) target = here == 0 ? (count >= 2 ? 2 : 0) : here == count ? 1 : here < count ? here + 1 : 0;
    else if (link == QString::fromUtf8("<zurück>") && count > 0) target = here == 1 ? count : here > 1 ? here - 1 : 0;
    for (int i = 1; i <= count && target == 0; ++i) {
        const std::string& title = a.pages[i].title;
        const QString name = QString::fromStdString(title);
        const QString file = QString::fromStdString(html::pageFileName(title));
        // A page is reached by its file name or, as in older albums, by its bare title.
        if ((link == "<inhalt>" && (name == "Inhalt" || name == "AlbumDirectory")) ||
            link.compare(file, Qt::CaseInsensitive) == 0 || link == name + ".htm" || link == name)
            target = i;
    }
    if (target > 0) {
        session_->SeiteOeffnen(target, "", false);
        return;
    }
    if (link.startsWith('<')) return;  // a special target the album does not have
    const QString local = editor::displayPath(link.toStdString(), a.directory, session_->state().programDirectory);
    if (!link.contains("://") && QFileInfo(local).isFile()) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(local).absoluteFilePath()));
        return;
    }
    QDesktopServices::openUrl(QUrl::fromUserInput(link));
}

// The search of a search element: the HTML album's data in the album's folder.
std::optional<std::vector<std::string>> MainWindow::searchAlbum(const std::string& words, bool matchCase) {
    const bool blank = words.find_first_not_of(' ') == std::string::npos;
    std::vector<std::string> found = html::sucheImAlbum(*session_, words, matchCase);
    if (session_->album().fileName.empty() || blank) return std::nullopt;  // it said why
    return found;
}

void MainWindow::showProperties(FrmNotePad* pad, std::optional<editor::ElementRef> ref) {
    if (!pad || playMode()) return;
    properties::DialogContext context{*pad, *session_, prompter_, this};
    if (properties::showProperties(context, ref)) pageStateChanged(pad);
}

}  // namespace brindle::shell

namespace brindle::shell {

// A stitched panorama goes on the open page as a panorama viewer, in one step.
void MainWindow::placePanorama(const std::string& path, bool wraps) {
    editor::FrmNotePad* pad = activeNotePad();
    if (!pad) {
        prompter_.message(t("Bitte öffnen Sie zuerst eine Seite des Albums.", "Please open a page of the album first."),
                          kButtonsOk | kIconInformation, "Brindlesee");
        return;
    }
    pad->document().createPanorama(editor::Box{20, 20, 480, 220}, path, wraps);
    pageStateChanged(pad);
    pad->activateWindow();
}

}  // namespace brindle::shell
