// The commands of FrmBildviewer: toolbar, pop-up menu and keys all reach
// MenüGeklickt by key. Also the history, the open-dialog role and the
// window's settings.
#include <QAction>
#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QEventLoop>
#include <QKeyEvent>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QStatusBar>
#include <QTreeView>
#include <filesystem>
#include <map>

#include "explorer/bildviewer_window.h"
#include "explorer/full_view_window.h"
#include "help/help_center.h"

namespace brindle::explorer {

namespace fs = std::filesystem;

namespace {

struct PopupEntry {
    const char* key;
    const char* german;
    const char* english;
    bool enabled;
};
const PopupEntry kPopup[] = {
    {"ausschneiden", "Ausschneiden", "Cut", true},
    {"kopieren", "Kopieren", "Copy", true},
    {"einfügen", "Einfügen", "Paste", true},
    {"löschen", "Löschen", "Delete", true},
    {"", "", "", true},
    {"Umbenennen", "Umbenennen", "Rename", true},
    {"Größe", "Größe ändern", "Resize", true},
    {"zeichnen", "Fotodesign", "Photo design", true},
    {"bearbeiten", "Bearbeiten", "Edit", true},
    {"Teilen", "Teilen", "Split", true},
    {"Drucken", "Drucken", "Print", true},
    {"MakeAVI", "AVI erstellen", "Make AVI", true},
    {"Redeye", "Rote Augen", "Red eyes", true},
    {"MakePano", "Panorama erstellen", "Make panorama", true},
};

// The tools the callback opens, by the keys that name them.
const std::map<std::string, std::string> kToolOfKey = {
    {"zeichnen", "zeichnen"}, {"redeye", "redeye"},         {"Redeye", "redeye"},
    {"panorama", "panorama"}, {"MakePano", "panorama"},     {"Größe", "Größe"},
    {"Teilen", "Teilen"},     {"bearbeiten", "bearbeiten"}, {"print", "print"},
    {"Drucken", "print"},     {"MakeAVI", "video"},
};

}  // namespace

void FrmBildviewer::MenüGeklickt(const std::string& key) {
    if (auto tool = kToolOfKey.find(key); tool != kToolOfKey.end()) return openTool(tool->second);
    if (key == "zurück") return history(-1);
    if (key == "weiter") return history(+1);
    if (key == "pfadrunter") return folderUp();
    if (key == "folder") {
        dirTree_->setVisible(!dirTree_->isVisible());
        findChild<QAction*>("folder")->setChecked(dirTree_->isVisible());
        return;
    }
    if (key == "neuverz") return newFolder();
    if (key == "kopieren") return copySelection(false);
    if (key == "ausschneiden") return copySelection(true);
    if (key == "einfügen") return paste();
    if (key == "löschen") return deleteSelection();
    if (key == "drehl") return turnSelection(false);
    if (key == "drehr") return turnSelection(true);
    if (key == "eigenschaften") return properties();
    if (key == "vollbild") return fullView();
    if (key == "zoom") return zoom();
    if (key == "Umbenennen") return rename();
    if (key == "hilfe") return help();
    if (key == "twain") return importScan();
}

void FrmBildviewer::openContextMenu(const QPoint& pos) {
    QMenu menu(this);
    menu.setObjectName("frmMenü");
    for (const PopupEntry& e : kPopup) {
        if (!*e.key) {
            menu.addSeparator();
            continue;
        }
        QAction* a = menu.addAction(QString::fromUtf8(t(e.german, e.english)));
        a->setObjectName(QString::fromUtf8(e.key));
        a->setEnabled(e.enabled);
        const std::string key = e.key;
        connect(a, &QAction::triggered, this, [this, key] { MenüGeklickt(key); });
    }
    menu.exec(currentView()->viewport()->mapToGlobal(pos));
}

// Letters reach the list first, which would search by them.
bool FrmBildviewer::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) return QMainWindow::eventFilter(watched, event);
    auto* key = static_cast<QKeyEvent*>(event);
    const Qt::KeyboardModifiers mods = key->modifiers() & ~Qt::KeypadModifier;
    if (mods != Qt::NoModifier) return QMainWindow::eventFilter(watched, event);
    switch (key->key()) {
        case Qt::Key_C:
            MenüGeklickt("kopieren");
            return true;
        case Qt::Key_V:
            MenüGeklickt("einfügen");
            return true;
        case Qt::Key_X:
            MenüGeklickt("ausschneiden");
            return true;
        case Qt::Key_Delete:
            MenüGeklickt("löschen");
            return true;
        case Qt::Key_A:
            currentView()->selectAll();
            return true;
        case Qt::Key_Backspace:
            MenüGeklickt("pfadrunter");
            return true;
        default:
            return QMainWindow::eventFilter(watched, event);
    }
}

void FrmBildviewer::history(int step) {
    std::vector<std::string>& from = step < 0 ? back_ : forward_;
    std::vector<std::string>& to = step < 0 ? forward_ : back_;
    if (from.empty()) return;
    to.push_back(folder_);
    const std::string target = from.back();
    from.pop_back();
    showFolder(target, false);
}

void FrmBildviewer::folderUp() {
    const fs::path parent = fs::path(folder_).parent_path();
    if (!parent.empty() && parent != fs::path(folder_)) showFolder(parent.string());
}

void FrmBildviewer::openTool(const std::string& tool) {
    std::vector<std::string> files;
    for (const std::string& f : selectedFiles())
        if (!isMediaName(f)) files.push_back(f);
    if (files.empty()) {
        prompter_.message(t("Bitte wählen Sie zuerst ein oder mehrere Bilder aus.",
                            "Please select one or more pictures first."),
                          kButtonsOk | kIconInformation, "Brindlesee Explorer");
        return;
    }
    if (toolOpener_) toolOpener_(tool, std::move(files));
}

void FrmBildviewer::setScanner(Scanner scanner) {
    scanner_ = std::move(scanner);
    findChild<QAction*>("twain")->setEnabled(static_cast<bool>(scanner_));
}

void FrmBildviewer::importScan() {
    if (!scanner_) return;
    FileDialog d;
    d.title = t("Wähle Datei zum Speichern des importierten Bildes", "Choose the file to save the imported picture in");
    d.filter = t("JPEG Bild (*.jpg;*.jpeg)|*.jpg;*.jpeg|Bitmap (*.bmp)|*.bmp|Alle Dateien (*.*)|*.*",
                 "JPEG picture (*.jpg;*.jpeg)|*.jpg;*.jpeg|Bitmap (*.bmp)|*.bmp|All files (*.*)|*.*");
    d.startDirectory = folder_ + "/";
    d.proposedName = "scanimage.jpg";
    const std::string target = prompter_.saveFile(d);
    if (target.empty()) return;
    const std::string saved = scanner_(target);
    if (saved.empty()) return;
    // A scan over an older picture must not keep that one's thumbnail.
    dropThumbnail(saved);
    selectFile(saved);
}

void FrmBildviewer::properties() {
    const std::vector<std::string> files = selectedFiles();
    if (files.empty()) return;
    for (const FileEntry& row : rows_)
        if (row.path == files.front())
            prompter_.message(fileInfoText(row, language_), kButtonsOk | kIconInformation,
                              t("Eigenschaften", "Properties"));
}

void FrmBildviewer::fullView() {
    const std::vector<std::string> selected = selectedFiles();
    std::vector<std::string> pictures;
    int first = 0;
    // Several selected: those; one: the whole folder from it on.
    for (const FileEntry& row : rows_) {
        if (isMediaName(row.name)) continue;
        const bool isSelected =
            std::find(selected.begin(), selected.end(), row.path) != selected.end();
        if (selected.size() > 1 && !isSelected) continue;
        if (selected.size() == 1 && isSelected) first = int(pictures.size());
        pictures.push_back(row.path);
    }
    if (pictures.empty()) return;
    auto* view = new FrmVollbildViewer(std::move(pictures), first, language_, this);
    view->showFullScreen();
}

void FrmBildviewer::zoom() {
    const auto answer = prompter_.inputText(t("Größe Thumbnails:", "Size thumbnails:"),
                                            t("Zoom", "Zoom"), std::to_string(thumbSize_));
    if (!answer) return;
    int size = 0;
    try {
        size = std::stoi(*answer);
    } catch (...) {
        return;
    }
    if (size < kMinOptionsThumbnailSize || size > kMaxOptionsThumbnailSize || size == thumbSize_)
        return;
    thumbSize_ = size;
    makePool();
    applyViewMode();
    refresh();  // thumbnails of the new size
}

void FrmBildviewer::help() {
    // The help page when the help is there; a short note when the explorer runs without it.
    if (help::showContextHelp(this)) return;
    prompter_.message(
        t("Brindlesee Explorer: Doppelklick zeigt ein Bild im Vollbild (Pfeiltasten blättern, Esc "
          "schließt). Tasten: c kopieren, x ausschneiden, v einfügen, Entf löschen, a alles "
          "auswählen. Die rechte Maustaste öffnet die Werkzeuge.",
          "Brindlesee Explorer: a double click shows a picture full screen (arrow keys browse, Esc "
          "closes). Keys: c copy, x cut, v paste, Del delete, a select all. The right mouse button "
          "opens the tools."),
        kButtonsOk | kIconInformation, t("Hilfe", "Help"));
}

void FrmBildviewer::status(const std::string& text) {
    statusBar()->showMessage(QString::fromStdString(text));
}

void FrmBildviewer::closeEvent(QCloseEvent* event) {
    saveSettings();
    QMainWindow::closeEvent(event);
}

std::vector<std::string> FrmBildviewer::chooseFiles(const std::string& programDirectory,
                                                    const std::string& startFolder,
                                                    Prompter& prompter, Language language,
                                                    QWidget* parent) {
    FrmBildviewer window(programDirectory, startFolder, prompter, language, parent);
    window.setWindowModality(Qt::ApplicationModal);
    window.dialogButtons_->show();
    std::vector<std::string> chosen;
    QEventLoop loop;
    connect(window.dialogButtons_, &QDialogButtonBox::accepted, &window, [&] {
        chosen = window.selectedFiles();
        window.close();
    });
    connect(window.dialogButtons_, &QDialogButtonBox::rejected, &window, &QWidget::close);
    window.setAttribute(Qt::WA_DeleteOnClose, false);
    window.show();
    // The loop ends when the window closes, by OK, Cancel or its frame.
    struct Closer : QObject {
        QEventLoop* loop;
        bool eventFilter(QObject*, QEvent* e) override {
            if (e->type() == QEvent::Close) loop->quit();
            return false;
        }
    } closer;
    closer.loop = &loop;
    window.installEventFilter(&closer);
    loop.exec();
    return chosen;
}

}  // namespace brindle::explorer
