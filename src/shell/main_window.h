// frmMDI: the main window. Menus and toolbars in German and English, the
// page windows in an MDI area, the album explorer docked at the side and
// the status line. It owns the session and wires the album flows to windows.
#pragma once

#include <QMainWindow>
#include <QPointer>
#include <atomic>
#include <functional>
#include <map>
#include <memory>

#include "album/recovery_flow.h"
#include "album/session.h"
#include "editor/frm_notepad.h"
#include "editor/notepad_host.h"

class QAction;
class QActionGroup;
class QComboBox;
class QFontComboBox;
class QLabel;
class QMdiArea;
class QMdiSubWindow;
class QMenu;
class QProgressBar;
class QToolBar;
class QDockWidget;

namespace brindle::shell {

class AlbumExplorer;
class CatalogueWindow;

class MainWindow : public QMainWindow, public editor::NotePadHost {
    Q_OBJECT
public:
    MainWindow(std::string programDirectory, Prompter& prompter, SettingsStore& settings, LogSink log = {},
               QWidget* parent = nullptr);
    ~MainWindow() override;

    Session& session() { return *session_; }
    QMdiArea* mdiArea() const { return mdi_; }
    AlbumExplorer* explorer() const { return explorer_; }
    QLabel* lblStatus() const { return lblStatus_; }
    QProgressBar* progressBar() const { return progress_; }
    // An action by its control name ("mnuNeuAlbum", "tbBild", ...).
    QAction* action(const QString& name) const;

    // The load sequence after the splash: `status` shows each step.
    void MDIForm_Load(const std::vector<std::string>& args, const std::function<void(const QString&)>& status);
    void Sprachumschaltung();
    void setLanguage(Language language);
    void updateTitle();
    void rebuildRecentMenu(const std::vector<std::string>& shown);
    // Opens a dropped or named file by its ending: album or page.
    void openFile(const QString& path);
    void openTemplatePage(bool cover);
    // Closes every page window without questions (end of the program).
    void unloadAll();
    // Crash recovery: this run's checkpoints (null before the load).
    PageCheckpoints* checkpoints() const { return checkpoints_.get(); }
    // Writes the checkpoints of the pages changed since the last write.
    void flushCheckpoints();

    // NotePadHost
    QString insertMode() const override;
    void insertDone() override;
    void setInsertMode(const QString& mode);
    void showStatus(const QString& text) override;
    void showProgress(int value, int maximum) override;
    editor::FrmNotePad* activeNotePad() const override;
    void pageStateChanged(editor::FrmNotePad* pad) override;
    Prompter& prompter() override { return prompter_; }
    bool playMode() const override;
    void followLink(editor::FrmNotePad* pad, const QString& link) override;
    void showProperties(editor::FrmNotePad* pad, std::optional<editor::ElementRef> ref) override;
    void showHint(int number, const std::string& text) override;
    std::optional<std::vector<std::string>> searchAlbum(const std::string& words, bool matchCase) override;
    std::vector<editor::FrmNotePad*> notePads() const;

    // The template catalogue, opened window-modal; null while it is closed.
    // Puts a stitched panorama on the active page as a panorama element.
    void placePanorama(const std::string& path, bool wraps);

    void showCatalogue();
    CatalogueWindow* catalogueWindow() const;
    // Asks for a name and saves the album's look in the catalogue with its preview.
    bool saveCatalogueTemplate();
    // frmWizzard; its first step may also open the last album or just close.
    void showWizard();

    // The HTML album run: generate (or mail) after saving, then offer the browser.
    void HTMLAlbumGenerieren(bool mail);
    // FrmGenerator: covers, contents and search page for the album.
    void showGenerator();

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    QAction* makeAction(const QString& name, const QString& icon = {}, const QKeySequence& keys = {});
    void buildActions();
    void buildMenus();
    void buildToolbars();
    void buildStatusBar();
    void buildExplorer();
    void wireSession();
    void wireActions();
    void onSubWindowActivated(QMdiSubWindow* window);
    void withPad(const std::function<void(editor::FrmNotePad&)>& fn);
    void keepingActiveTab(const std::function<void()>& fn);
    QString removeMenuCaption(const editor::FrmNotePad& pad) const;
    void applyFontChange();
    void updateMemory();
    void showOptions();
    void showAbout();
    void playModeChanged();
    // Starts this run's checkpoints and offers what a crashed run left.
    void startRecovery();
    void endRecovery();
    // A window destroyed without its normal end keeps its checkpoints.
    void releaseRecovery();
    const char* t(const char* de, const char* en) const { return brindle::tr(session_->language(), de, en); }

    Prompter& prompter_;
    SettingsStore& settings_;
    std::unique_ptr<editor::NotePadFactory> factory_;
    std::unique_ptr<Session> session_;
    QMdiArea* mdi_ = nullptr;
    AlbumExplorer* explorer_ = nullptr;
    QDockWidget* explorerDock_ = nullptr;
    QLabel* lblStatus_ = nullptr;
    QLabel* lblMemory_ = nullptr;
    QProgressBar* progress_ = nullptr;
    QToolBar* mainBar_ = nullptr;
    QToolBar* formatBar_ = nullptr;
    QFontComboBox* fontBox_ = nullptr;
    QComboBox* sizeBox_ = nullptr;
    QActionGroup* insertGroup_ = nullptr;
    std::map<QString, QAction*> actions_;
    std::map<QString, QMenu*> menus_;
    QPointer<QMdiSubWindow> lastActive_;
    QPointer<CatalogueWindow> catalogue_;
    bool updatingFormat_ = false;
    std::unique_ptr<PageCheckpoints> checkpoints_;
    std::atomic<bool> flushQueued_{false};
    bool hintShowing_ = false;  // several pictures of a page give one hint
};

}  // namespace brindle::shell
