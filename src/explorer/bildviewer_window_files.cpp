// The file operations of FrmBildviewer on its selection, and its settings
// in option.loo. The work and its questions are FileOperations'; the
// window gives it the selection and shows the folder afterwards.
#include <QAction>
#include <QSplitter>
#include <QStandardItemModel>
#include <QStatusBar>
#include <QTreeView>
#include <filesystem>

#include "explorer/bildviewer_window.h"
#include "explorer/rename_many_dialog.h"

namespace brindle::explorer {

namespace fs = std::filesystem;

void FrmBildviewer::copySelection(bool cut) {
    const std::vector<std::string> files = selectedFiles();
    if (files.empty()) return;
    clipboard_.paths = files;
    clipboard_.mode = cut ? ClipboardMode::Move : ClipboardMode::Copy;
}

void FrmBildviewer::paste() {
    if (clipboard_.empty() || folder_.empty()) return;
    const OperationResult result = operations_.paste(clipboard_, folder_ + "/");
    // Moved files are gone from where they were: the clipboard is spent.
    if (clipboard_.mode == ClipboardMode::Move) clipboard_.clear();
    const std::string select =
        result.done.empty() ? std::string() : fs::path(result.done.back()).filename().string();
    pendingSelection_ = select;
    refresh();
}

void FrmBildviewer::deleteSelection() {
    const std::vector<std::string> files = selectedFiles();
    if (files.empty()) return;
    const bool templates = fs::path(folder_) == fs::path(programDirectory_ + "Vorlagen");
    if (operations_.deleteFiles(files, templates).done.empty()) return;  // the selection stays
    refresh();
}

void FrmBildviewer::turnSelection(bool right) {
    std::vector<std::string> files;
    for (const std::string& f : selectedFiles())
        if (!isMediaName(f)) files.push_back(f);
    if (files.empty()) return;
    const OperationResult result = operations_.turnMany(files, right);
    if (result.done.empty()) return;
    // The turned pictures keep their times, so their icons are made again here.
    for (int r = 0; r < int(rows_.size()); ++r)
        if (std::find(result.done.begin(), result.done.end(), rows_[r].path) != result.done.end()) {
            icons_[r] = QIcon();
            if (thumbsShown_ > 0) --thumbsShown_;
        }
    const std::vector<std::string> selected = selectedFiles();
    fillModel();
    reselect(selected);
    startFeed();
    emit thumbnailsChanged();
}

void FrmBildviewer::newFolder() {
    if (folder_.empty()) return;
    if (const auto made = operations_.newFolder(folder_ + "/")) status(*made);
}

void FrmBildviewer::rename() {
    const std::vector<std::string> files = selectedFiles();
    if (files.empty()) return;
    std::optional<std::string> renamed;
    if (files.size() == 1) {
        renamed = operations_.renameOne(files.front());
    } else {
        FrmUmbenennenMulti dialog(language_, this);
        if (dialog.exec() != QDialog::Accepted) return;
        operations_.renameMany(files, dialog.rule());
    }
    if (renamed) pendingSelection_ = fs::path(*renamed).filename().string();
    refresh();
}

void FrmBildviewer::loadSettings() {
    options_ = loadExplorerOptions(programDirectory_);
    mode_ = options_.view;
    sortColumn_ = options_.sort == SortKey::Size   ? kColSize
                  : options_.sort == SortKey::Time ? kColTime
                                                   : kColName;
    sortDescending_ = options_.descending;
    thumbSize_ =
        std::clamp(options_.thumbnailSize, kMinOptionsThumbnailSize, kMaxOptionsThumbnailSize);
    patternIndex_ = std::max(0, options_.filter);
    if (options_.width > 0 && options_.height > 0) {
        resize(options_.width, options_.height);
        if (options_.x >= 0 && options_.y >= 0) move(options_.x, options_.y);
    }
}

void FrmBildviewer::saveSettings() {
    options_.view = mode_;
    options_.sort = sortKeyForColumn(sortColumn_);
    options_.descending = sortDescending_;
    options_.thumbnailSize = thumbSize_;
    options_.filter = patternIndex_;
    options_.folder = folder_;
    for (int c = 0; c < kColumnCount; ++c)
        if (int w = details_->columnWidth(c); w > 0) options_.columnWidths[c] = w;
    options_.maximized = isMaximized();
    if (!isMaximized()) {
        options_.x = x();
        options_.y = y();
        options_.width = width();
        options_.height = height();
    }
    options_.treeWidth = dirTree_->width();
    saveExplorerOptions(programDirectory_, options_, prompter_, language_);
}

}  // namespace brindle::explorer
