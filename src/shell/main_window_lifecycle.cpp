// The main window's load after the splash, its end, dropped files and the
// template pages.
#include <QCloseEvent>
#include <QDir>
#include <QDragEnterEvent>
#include <QFontComboBox>
#include <QComboBox>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMimeData>

#include "album/options_file.h"
#include "album/paths.h"
#include "shell/main_window.h"
#include "shell/startup.h"

namespace brindle::shell {

using editor::FrmNotePad;

void MainWindow::MDIForm_Load(const std::vector<std::string>& args,
                              const std::function<void(const QString&)>& status) {
    auto step = [&](const char* text) {
        if (status) status(QString::fromUtf8(text));
    };
    SessionState& s = session_->state();
    step("MDI am laden ...");
    logLine(session_->log(), "IDE = False");
    step("Pfade prüfen ...");
    step("Optionen laden ...");
    s.options = loadOptions(s.programDirectory);
    step("Fonts laden ...");
    step("Standardfont: Arial");
    fontBox_->setCurrentFont(QFont("Arial"));
    step("Fontgrößen laden ...");
    sizeBox_->clear();
    for (int size : {6, 7, 8, 9, 10, 11, 12, 14, 16, 18, 20, 22, 24, 28, 32, 36, 40, 48, 56, 64, 72})
        sizeBox_->addItem(QString::number(size));
    sizeBox_->setCurrentText("12");
    step("Standardalbum = Album");
    session_->album().title = "Album";
    updateTitle();
    step("Zeigen MDI ...");
    show();
    step("Ins Verzeichnis ...");
    QDir::setCurrent(QString::fromStdString(s.programDirectory));
    step("Splash entfernen ...");
    if (session_->hooks().closeSplash) session_->hooks().closeSplash();
    step("Komando auswerten ...");
    s.language = languageFromName(s.options.language.empty() ? "deutsch" : s.options.language);
    Sprachumschaltung();
    startAlbumApplication(*session_, args);
    startRecovery();
    step("Recent Files ...");
    step("Find Direction ...");
    step("Aktivate Language ...");
    Sprachumschaltung();
    showStatus("");
}

void MainWindow::closeEvent(QCloseEvent* event) {
    SessionState& s = session_->state();
    bool changed = isTrue(s.album.modified) && s.album.pageCount > 0;
    for (int i = 1; i <= s.album.pages.upper(); ++i) {
        const int slot = s.album.pages[i].slot;
        if (slot > 0 && slot <= s.pageSlots.upper() && isTrue(s.pageSlots[slot].modified)) changed = true;
    }
    if (changed) {
        const int answer = session_->askUnsavedFiles();
        if (answer == kCancel || (answer == kYes && !session_->AlbumSpeichern(false))) {
            event->ignore();
            return;
        }
    }
    for (FrmNotePad* pad : notePads()) pad->copyTemplateBack();
    unloadAll();
    endRecovery();
    finishSession(*session_);
    event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    for (const QUrl& url : event->mimeData()->urls()) {
        const QString path = url.toLocalFile().toLower();
        if (path.endsWith(".apr") || path.endsWith(".apg") || path.endsWith(".vor")) {
            event->acceptProposedAction();
            return;
        }
    }
}

void MainWindow::dropEvent(QDropEvent* event) {
    for (const QUrl& url : event->mimeData()->urls()) openFile(url.toLocalFile());
    event->acceptProposedAction();
}

void MainWindow::openFile(const QString& path) {
    const std::string p = path.toStdString();
    if (p.empty()) return;
    if (endsWithNoCase(p, ".apg")) session_->SeiteOeffnen(0, p, false);
    else if (endsWithNoCase(p, ".apr") || endsWithNoCase(p, ".vor")) session_->albumOeffnen(p);
}

void MainWindow::openTemplatePage(bool cover) {
    const QString caption = cover ? t("Umschlagvorlage", "Cover template") : t("Seitenvorlage", "Page template");
    for (FrmNotePad* pad : notePads()) {
        if (pad->caption().compare(caption, Qt::CaseInsensitive) != 0 || pad->unloading()) continue;
        mdi_->setActiveSubWindow(qobject_cast<QMdiSubWindow*>(pad->parentWidget()));
        return;
    }
    const int slot = session_->freierSlot();
    AlbumRecord& album = session_->album();
    session_->page(slot) = cover ? album.coverDefaults : album.pageDefaults;
    session_->state().pageSlots[slot].modified = kFalse;
    std::string error;
    std::unique_ptr<PageEditor> editor = factory_->create(slot, error);
    if (!editor) return;
    PageEditor* e = editor.get();
    session_->state().pageEditors[static_cast<std::size_t>(slot)] = std::move(editor);
    e->setCaption(caption.toStdString());
    e->show();
}

}  // namespace brindle::shell
