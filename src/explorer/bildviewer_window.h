// FrmBildviewer: the picture explorer. A folder tree, the folder's pictures
// and media files as a list or as thumbnails in five view modes, file
// information, a media preview, and the toolbar and pop-up menu that copy,
// move, delete and turn the selection or hand it to the picture tools. It
// is also the program's own open dialog (chooseFiles).
//
// The GUI thread never decodes a picture: thumbnails come from worker
// threads, nearest to the visible rows first, and the large preview and
// the full view are read off the GUI thread as well.
#pragma once

#include <QIcon>
#include <QImage>
#include <QMainWindow>
#include <QThreadPool>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "album/language.h"
#include "album/prompter.h"
#include "explorer/explorer_options.h"
#include "explorer/file_operations.h"
#include "explorer/folder_listing.h"

class QAbstractItemView;
class QAction;
class QActionGroup;
class QAudioOutput;
class QComboBox;
class QDialogButtonBox;
class QFileSystemModel;
class QLabel;
class QListView;
class QMediaPlayer;
class QMenu;
class QPlainTextEdit;
class QPushButton;
class QStackedWidget;
class QStandardItemModel;
class QTimer;
class QToolBar;
class QTreeView;
class QWidget;

namespace brindle::explorer {

class ThumbnailCache;
class ThumbnailPool;
struct ThumbnailResult;

class FrmBildviewer : public QMainWindow {
    Q_OBJECT
  public:
    // Opens a picture tool ("zeichnen", "redeye", "panorama", "Größe",
    // "Teilen", "bearbeiten") on the files.
    using ToolOpener = std::function<void(const std::string& tool, std::vector<std::string> files)>;

    FrmBildviewer(std::string programDirectory, std::string startFolder, Prompter& prompter,
                  Language language, QWidget* parent = nullptr);
    ~FrmBildviewer() override;

    // The explorer as an open dialog: shown modal with OK and Cancel; the
    // selected paths, or none when cancelled.
    static std::vector<std::string> chooseFiles(const std::string& programDirectory,
                                                const std::string& startFolder, Prompter& prompter,
                                                Language language, QWidget* parent = nullptr);

    void setLanguage(Language language);
    Language language() const { return language_; }
    void setToolOpener(ToolOpener opener) { toolOpener_ = std::move(opener); }
    // Scans one picture into `target`; the written path, or empty when
    // nothing was saved. Setting it enables the "twain" button.
    using Scanner = std::function<std::string(const std::string& target)>;
    void setScanner(Scanner scanner);
    // Called on the thread that made each thumbnail, before it is shown.
    // Set it before the first folder is shown.
    void setThumbnailHook(std::function<void()> hook) { *thumbnailHook_ = std::move(hook); }

    void showFolder(const std::string& folder, bool remember = true);
    // Shows the file's folder with the file selected.
    void selectFile(const std::string& path);
    const std::string& folder() const { return folder_; }
    std::vector<std::string> selectedFiles() const;
    const std::vector<FileEntry>& rows() const { return rows_; }

    void setViewMode(ViewMode mode);
    ViewMode viewMode() const { return mode_; }
    // By any column head; name, size and time are the sort keys the settings keep.
    void sortBy(int column, bool descending);
    void setPattern(int index);
    int thumbnailSize() const { return thumbSize_; }
    // Rows whose thumbnail (or media symbol, or error picture) has arrived.
    int thumbnailsShown() const { return thumbsShown_; }
    // The picture of the "Bildansicht" preview, once read.
    const QImage& previewPicture() const { return preview_; }

    // A command of the toolbar, the pop-up menu or a key, by its key.
    void MenüGeklickt(const std::string& key);

  signals:
    void thumbnailsChanged();
    void previewChanged();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    // bildviewer_window.cpp: the widgets and their texts.
    void build();
    void buildToolBar();
    void buildMenus();
    void buildViews();
    void applyTexts();
    const char* t(const char* german, const char* english) const {
        return brindle::tr(language_, german, english);
    }

    // bildviewer_window_list.cpp: the list and its thumbnails.
    void refresh();
    void fillModel();
    void startFeed();
    void replaceModel(QStandardItemModel* model);
    void applyViewMode();
    void sortRows();
    void requestVisible();
    void makePool();
    void deliver(int epoch, ThumbnailResult&& result);
    void showThumbnail(int epoch, std::uint64_t generation, std::size_t index, const QImage& image,
                       int width, int height, bool failed, const std::string& message);
    void dropThumbnail(const std::string& picture);
    void selectionChanged();
    void showPreview(const FileEntry* row);
    QAbstractItemView* currentView() const;
    std::vector<int> selectedRows() const;
    void reselect(const std::vector<std::string>& paths);

    // bildviewer_window_media.cpp: the media preview.
    void buildMedia();
    void makePlayer();
    void showMedia(const FileEntry* row);

    // bildviewer_window_commands.cpp: commands and file operations.
    void openContextMenu(const QPoint& pos);
    void history(int step);
    void folderUp();
    void newFolder();
    void copySelection(bool cut);
    void paste();
    void deleteSelection();
    void turnSelection(bool right);
    void properties();
    void fullView();
    void zoom();
    void openTool(const std::string& tool);
    void importScan();
    void rename();
    void help();
    void saveSettings();
    void loadSettings();
    void status(const std::string& text);

    std::string programDirectory_;
    Prompter& prompter_;
    Language language_;
    ToolOpener toolOpener_;
    Scanner scanner_;
    std::shared_ptr<std::function<void()>> thumbnailHook_ =
        std::make_shared<std::function<void()>>();

    std::string folder_;
    std::vector<FileEntry> rows_;  // in the order shown
    std::vector<QIcon> icons_;     // per row; null until its thumbnail came
    std::vector<int> feedRows_;    // the row of each entry given to the pool
    bool toldStampFailure_ = false;
    int thumbsShown_ = 0;
    ViewMode mode_ = ViewMode::LargeIcons;
    int sortColumn_ = kColName;
    bool sortDescending_ = false;
    int patternIndex_ = kFilterAllPictures;
    int thumbSize_ = 120;
    ExplorerOptions options_;
    FileOperations operations_;
    std::uint64_t generation_ = 0;
    int poolEpoch_ = 0;  // a new pool counts its generations from the start again
    std::vector<std::string> back_;
    std::vector<std::string> forward_;
    ExplorerClipboard clipboard_;  // cutMode: its mode is Move
    std::string pendingSelection_;
    QImage preview_;
    int previewRequest_ = 0;

    QToolBar* tbToolBar_ = nullptr;
    QTreeView* dirTree_ = nullptr;
    QFileSystemModel* dirModel_ = nullptr;
    QComboBox* cmbPattern_ = nullptr;
    QLabel* lblPattern_ = nullptr;
    QLabel* lblFolder_ = nullptr;
    QStandardItemModel* model_ = nullptr;
    QStackedWidget* stack_ = nullptr;
    QTreeView* details_ = nullptr;
    QListView* ListView1_ = nullptr;
    QLabel* picBild_ = nullptr;
    QPlainTextEdit* TxtFileinfo_ = nullptr;
    QWidget* picMedia_ = nullptr;
    QLabel* lblMedia_ = nullptr;
    QPushButton* cmdPlay_ = nullptr;
    QPushButton* cmdStop_ = nullptr;
    QMediaPlayer* player_ = nullptr;
    QAudioOutput* audio_ = nullptr;
    QMenu* mnuAnsicht_ = nullptr;
    QMenu* mnuDatei_ = nullptr;
    QMenu* mnuSortieren_ = nullptr;
    QActionGroup* viewGroup_ = nullptr;
    QTimer* visibleTimer_ = nullptr;
    QDialogButtonBox* dialogButtons_ = nullptr;

    QThreadPool previewPool_;
    std::shared_ptr<ThumbnailCache> cache_;
    std::unique_ptr<ThumbnailPool> pool_;  // last: its workers stop first
};

}  // namespace brindle::explorer
