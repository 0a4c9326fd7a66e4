// The list of FrmBildviewer: rows of the shown folder, its view modes and
// order, and thumbnails that arrive from the worker threads.
#include <sys/stat.h>

#include <QAction>
#include <QComboBox>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QLabel>
#include <QListView>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QStackedWidget>
#include <QStandardItemModel>
#include <QTimer>
#include <QTreeView>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <unordered_map>

#include "explorer/bildviewer_window.h"
#include "explorer/thumbnail_pool.h"
#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "image/reduce.h"

namespace brindle::explorer {

namespace {

constexpr int kIndexRole = Qt::UserRole + 1;

// The core's pictures are bottom-up rows of blue-green-red.
QImage imageOfSection(const cDIBSection& dib) {
    if (dib.empty()) return {};
    const QImage view(dib.DIBSectionBitsPtr(), dib.Width(), dib.Height(), dib.BytesPerScanLine(),
                      QImage::Format_BGR888);
    return view.mirrored(false, true);  // a deep copy, upright
}

QIcon symbolIcon(const char* glyph, QColor back, QColor fore) {
    QPixmap pm(96, 96);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    p.setBrush(back);
    p.drawRoundedRect(QRectF(8, 8, 80, 80), 10, 10);
    p.setPen(fore);
    QFont f = p.font();
    f.setPixelSize(48);
    p.setFont(f);
    p.drawText(pm.rect(), Qt::AlignCenter, QString::fromUtf8(glyph));
    return QIcon(pm);
}

// The source size from a valid cached thumbnail's trailer: its last bytes,
// without decoding it or opening the picture.
bool cachedPictureSize(const std::string& programDirectory, const std::string& path, int& width,
                       int& height) {
    const std::string thumb = thumbnailPath(programDirectory, path);
    struct stat source {
    }, cached{};
    if (::stat(path.c_str(), &source) != 0 || ::stat(thumb.c_str(), &cached) != 0) return false;
    if (source.st_mtim.tv_sec != cached.st_mtim.tv_sec ||
        source.st_mtim.tv_nsec != cached.st_mtim.tv_nsec)
        return false;
    if (cached.st_size < off_t(kThumbnailTrailerBytes) ||
        std::size_t(cached.st_size) > kMaxThumbnailFileBytes)
        return false;
    std::ifstream in(thumb, std::ios::binary);
    in.seekg(-off_t(kThumbnailTrailerBytes), std::ios::end);
    std::string tail(kThumbnailTrailerBytes, '\0');
    if (!in.read(tail.data(), std::streamsize(tail.size()))) return false;
    return parseThumbnailTrailer(tail, width, height);
}

const QIcon& waitingIcon() {
    static const QIcon icon = [] {
        QPixmap pm(96, 96);
        pm.fill(Qt::transparent);
        QPainter p(&pm);
        p.setPen(QColor(0xC8, 0xC8, 0xC8));
        p.setBrush(QColor(0xEE, 0xEE, 0xEE));
        p.drawRect(QRect(10, 18, 75, 58));
        return QIcon(pm);
    }();
    return icon;
}
const QIcon& mediaIcon() {
    static const QIcon icon = symbolIcon("\u266B", QColor(0x3A, 0x6E, 0xA5), Qt::white);
    return icon;
}
// BildFehler: what stands for a picture that did not load.
const QIcon& errorIcon() {
    static const QIcon icon =
        symbolIcon("\u2715", QColor(0xF4, 0xD6, 0xD6), QColor(0xB0, 0x20, 0x20));
    return icon;
}

}  // namespace

void FrmBildviewer::showFolder(const std::string& folder, bool remember) {
    std::string f = folder;
    while (f.size() > 1 && f.back() == '/') f.pop_back();
    if (remember && !folder_.empty() && f != folder_) {
        back_.push_back(folder_);
        forward_.clear();
    }
    folder_ = f;
    const QModelIndex dir = dirModel_->index(QString::fromStdString(folder_));
    if (dir.isValid()) {
        dirTree_->setCurrentIndex(dir);
        dirTree_->scrollTo(dir);
    }
    lblFolder_->setText(QString::fromStdString(folder_));
    applyTexts();
    refresh();
}

void FrmBildviewer::selectFile(const std::string& path) {
    const std::filesystem::path p(path);
    pendingSelection_ = p.filename().string();
    showFolder(p.parent_path().string());
}

void FrmBildviewer::refresh() {
    const auto filters = fileFilters(language_);
    const std::string pattern =
        filters[std::clamp(patternIndex_, 0, int(filters.size()) - 1)].patterns;
    // Names, sizes and times only: listing never opens a picture.
    rows_ = listFolder(folder_, pattern, [this](const std::string& path, int& w, int& h) {
                return cachedPictureSize(programDirectory_, path, w, h);
            }).entries;
    toldStampFailure_ = false;
    sortRows();
    icons_.assign(rows_.size(), QIcon());
    thumbsShown_ = 0;
    fillModel();
    startFeed();
    if (!pendingSelection_.empty()) {
        for (int r = 0; r < int(rows_.size()); ++r)
            if (rows_[r].name == pendingSelection_) {
                const QModelIndex i = model_->index(r, 0);
                details_->selectionModel()->setCurrentIndex(
                    i, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
                currentView()->scrollTo(i);
            }
        pendingSelection_.clear();
    }
    selectionChanged();
    visibleTimer_->start();
    emit thumbnailsChanged();
}

void FrmBildviewer::startFeed() {
    feedRows_.clear();
    std::vector<std::string> paths;
    for (int r = 0; r < int(rows_.size()); ++r)
        if (icons_[r].isNull()) {
            feedRows_.push_back(r);
            paths.push_back(rows_[r].path);
        }
    generation_ = pool_->setFolder(std::move(paths));
    visibleTimer_->start();
}

// A new model for every fill: the views take it in one step rather than
// laying out row after row.
void FrmBildviewer::fillModel() {
    auto* model = new QStandardItemModel(int(rows_.size()), kColumnCount, this);
    QStringList heads;
    for (const std::string& h : columnHeads(language_)) heads << QString::fromStdString(h);
    model->setHorizontalHeaderLabels(heads);
    for (int r = 0; r < int(rows_.size()); ++r) {
        const FileEntry& row = rows_[r];
        auto* name = new QStandardItem(QString::fromStdString(row.name));
        name->setData(r, kIndexRole);
        name->setIcon(!icons_[r].isNull()     ? icons_[r]
                      : isMediaName(row.name) ? mediaIcon()
                                              : waitingIcon());
        name->setToolTip(QString::fromStdString(row.name));
        model->setItem(r, 0, name);
        const std::vector<std::string> texts = columnTexts(row, language_);
        for (int c = 1; c < kColumnCount; ++c) {
            auto* cell = new QStandardItem(QString::fromStdString(texts[c]));
            if (c == kColSize || c >= kColWidth)
                cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            model->setItem(r, c, cell);
        }
    }
    replaceModel(model);
    details_->header()->setSortIndicator(
        sortColumn_, sortDescending_ ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void FrmBildviewer::replaceModel(QStandardItemModel* model) {
    QStandardItemModel* old = model_;
    QItemSelectionModel* oldSelection = details_->selectionModel();
    model_ = model;
    details_->setModel(model_);
    ListView1_->setModel(model_);
    ListView1_->setSelectionModel(details_->selectionModel());
    connect(details_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { selectionChanged(); });
    if (oldSelection) oldSelection->deleteLater();
    if (old) old->deleteLater();
    for (int c = 0; c < kColumnCount; ++c) {
        const int width = options_.columnWidths[c];
        // The date needs room for its seconds.
        details_->header()->resizeSection(c, c == kColTime ? std::max(width, 150) : width);
    }
}

// Name, size and time by their keys; the other columns by their values,
// equal ones by name.
void FrmBildviewer::sortRows() {
    const SortKey key = sortKeyForColumn(sortColumn_);
    sortEntries(rows_, key, sortDescending_);
    if (sortColumn_ == kColName || sortColumn_ == kColSize || sortColumn_ == kColTime) return;
    sortEntries(rows_, key, false);
    const int column = sortColumn_;
    auto value = [column, this](const FileEntry& e) -> std::string {
        return column == kColType         ? fileTypeText(e.name, language_)
               : column == kColAttributes ? attributeText(e.permissions)
                                          : std::string();
    };
    auto number = [column](const FileEntry& e) -> std::int64_t {
        return column == kColWidth ? e.width : column == kColHeight ? e.height : e.pixels();
    };
    const bool text = column == kColType || column == kColAttributes;
    std::stable_sort(rows_.begin(), rows_.end(), [&](const FileEntry& a, const FileEntry& b) {
        const FileEntry& x = sortDescending_ ? b : a;
        const FileEntry& y = sortDescending_ ? a : b;
        return text ? value(x) < value(y) : number(x) < number(y);
    });
}

void FrmBildviewer::sortBy(int column, bool descending) {
    const std::vector<std::string> selected = selectedFiles();
    sortColumn_ = std::clamp(column, 0, kColumnCount - 1);
    sortDescending_ = descending;
    // The icons that came already go along with their rows.
    std::unordered_map<std::string, QIcon> arrived;
    for (int i = 0; i < int(rows_.size()); ++i)
        if (!icons_[i].isNull()) arrived.emplace(rows_[i].path, icons_[i]);
    sortRows();
    std::vector<QIcon> icons(rows_.size());
    for (int i = 0; i < int(rows_.size()); ++i)
        if (auto it = arrived.find(rows_[i].path); it != arrived.end()) icons[i] = it->second;
    icons_ = std::move(icons);
    fillModel();
    startFeed();
    reselect(selected);
    emit thumbnailsChanged();
}

void FrmBildviewer::setPattern(int index) {
    patternIndex_ = index;
    if (cmbPattern_->currentIndex() != index) cmbPattern_->setCurrentIndex(index);
    refresh();
}

void FrmBildviewer::setViewMode(ViewMode mode) {
    mode_ = mode;
    applyViewMode();
    selectionChanged();
    visibleTimer_->start();
}

void FrmBildviewer::applyViewMode() {
    static const char* const names[] = {"mnuDetails", "mnuListe", "mnuKleineSymbole",
                                        "mnuGrosseSymbole", "mnuBildansicht"};
    findChild<QAction*>(names[int(mode_)])->setChecked(true);
    picBild_->setVisible(mode_ == ViewMode::Picture);
    // The picture view keeps one row of thumbnails under the large picture.
    stack_->setMaximumHeight(mode_ == ViewMode::Picture ? 160 : QWIDGETSIZE_MAX);
    if (mode_ == ViewMode::Details) {
        stack_->setCurrentWidget(details_);
        details_->setIconSize(QSize(20, 20));
        return;
    }
    stack_->setCurrentWidget(ListView1_);
    ListView1_->setWrapping(true);
    ListView1_->setResizeMode(QListView::Adjust);
    ListView1_->setMovement(QListView::Static);
    ListView1_->setWordWrap(mode_ == ViewMode::LargeIcons || mode_ == ViewMode::Picture);
    switch (mode_) {
        case ViewMode::List:
            ListView1_->setViewMode(QListView::ListMode);
            ListView1_->setFlow(QListView::TopToBottom);
            ListView1_->setIconSize(QSize(20, 20));
            ListView1_->setGridSize(QSize(240, 26));
            break;
        case ViewMode::SmallIcons:
            ListView1_->setViewMode(QListView::ListMode);
            ListView1_->setFlow(QListView::LeftToRight);
            ListView1_->setIconSize(QSize(40, 40));
            ListView1_->setGridSize(QSize(200, 48));
            break;
        case ViewMode::Picture:
            ListView1_->setViewMode(QListView::IconMode);
            ListView1_->setFlow(QListView::LeftToRight);
            ListView1_->setWrapping(false);
            ListView1_->setIconSize(QSize(80, 80));
            ListView1_->setGridSize(QSize(110, 112));
            break;
        default:
            ListView1_->setViewMode(QListView::IconMode);
            ListView1_->setFlow(QListView::LeftToRight);
            ListView1_->setIconSize(QSize(thumbSize_, thumbSize_));
            ListView1_->setGridSize(QSize(thumbSize_ + 40, thumbSize_ + 40));
            break;
    }
}

QAbstractItemView* FrmBildviewer::currentView() const {
    return mode_ == ViewMode::Details ? static_cast<QAbstractItemView*>(details_)
                                      : static_cast<QAbstractItemView*>(ListView1_);
}

// The rows on screen go to the feed, which makes theirs first.
void FrmBildviewer::requestVisible() {
    if (feedRows_.empty() || !model_) return;
    QAbstractItemView* view = currentView();
    const QRect port = view->viewport()->rect();
    int first = -1, last = -1;
    for (int r = 0; r < int(rows_.size()); ++r)
        if (view->visualRect(model_->index(r, 0)).intersects(port)) {
            if (first < 0) first = r;
            last = r;
        }
    if (first < 0) first = last = 0;
    // Rows to positions in the feed's list (which holds the rows without icons).
    const int a =
        int(std::lower_bound(feedRows_.begin(), feedRows_.end(), first) - feedRows_.begin());
    const int b =
        int(std::upper_bound(feedRows_.begin(), feedRows_.end(), last) - feedRows_.begin()) - 1;
    pool_->setVisibleRange(std::size_t(std::min(a, int(feedRows_.size()) - 1)),
                           std::size_t(std::max(a, b)));
}

// The cache of the thumbnail size, and workers that read or make from it.
void FrmBildviewer::makePool() {
    pool_.reset();
    ThumbnailSettings settings;
    settings.size = thumbSize_;
    settings.language = language_;
    settings.log = diagnoseSink(programDirectory_);
    cache_ = std::make_shared<ThumbnailCache>(programDirectory_, settings);
    pool_ = std::make_unique<ThumbnailPool>(
        [cache = cache_, hook = thumbnailHook_](const std::string& path) {
            if (*hook) (*hook)();
            return cache->get(path);
        },
        [this, epoch = ++poolEpoch_](ThumbnailResult&& r) { deliver(epoch, std::move(r)); });
}

// On a worker thread: the picture becomes a QImage here, so the GUI thread
// only puts it into the list.
void FrmBildviewer::deliver(int epoch, ThumbnailResult&& r) {
    const Thumbnail& t = r.thumbnail;
    const QImage image = imageOfSection(t.pixels);
    QMetaObject::invokeMethod(
        this,
        [this, epoch, generation = r.generation, index = r.index, image, w = t.sourceWidth,
         h = t.sourceHeight, failed = t.kind == ThumbnailKind::Error,
         message = t.message ? t.message->text : std::string()] {
            showThumbnail(epoch, generation, index, image, w, h, failed, message);
        },
        Qt::QueuedConnection);
}

void FrmBildviewer::showThumbnail(int epoch, std::uint64_t generation, std::size_t index,
                                  const QImage& image, int width, int height, bool failed,
                                  const std::string& message) {
    if (epoch != poolEpoch_ || generation != generation_ || index >= feedRows_.size()) return;
    const int r = feedRows_[index];
    if (!icons_[r].isNull()) return;
    FileEntry& row = rows_[r];
    icons_[r] =
        image.isNull() ? (failed ? errorIcon() : mediaIcon()) : QIcon(QPixmap::fromImage(image));
    row.width = width;
    row.height = height;
    model_->item(r, 0)->setIcon(icons_[r]);
    const std::vector<std::string> texts = columnTexts(row, language_);
    for (int c : {kColWidth, kColHeight, kColPixels})
        model_->item(r, c)->setText(QString::fromStdString(texts[c]));
    ++thumbsShown_;
    emit thumbnailsChanged();
    // A time stamp that could not be written is told once per folder.
    if (!message.empty() && !toldStampFailure_) {
        toldStampFailure_ = true;
        prompter_.message(message, kButtonsOk | kIconCritical, t("Fehler", "Error"));
    }
}

void FrmBildviewer::dropThumbnail(const std::string& picture) {
    std::error_code ec;
    std::filesystem::remove(thumbnailPath(programDirectory_, picture), ec);
}

// After the model was made anew: the same files selected again.
void FrmBildviewer::reselect(const std::vector<std::string>& paths) {
    QItemSelectionModel* selection = details_->selectionModel();
    for (int r = 0; r < int(rows_.size()); ++r)
        if (std::find(paths.begin(), paths.end(), rows_[r].path) != paths.end()) {
            const QModelIndex i = model_->index(r, 0);
            selection->select(i, QItemSelectionModel::Select | QItemSelectionModel::Rows);
            if (!selection->currentIndex().isValid())
                selection->setCurrentIndex(i, QItemSelectionModel::NoUpdate);
        }
}

std::vector<int> FrmBildviewer::selectedRows() const {
    std::vector<int> rows;
    for (const QModelIndex& i : details_->selectionModel()->selectedRows()) rows.push_back(i.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}

std::vector<std::string> FrmBildviewer::selectedFiles() const {
    std::vector<std::string> files;
    for (int r : selectedRows()) files.push_back(rows_[r].path);
    return files;
}

void FrmBildviewer::selectionChanged() {
    const QModelIndex current = details_->selectionModel()->currentIndex();
    const std::vector<int> selected = selectedRows();
    const int r = current.isValid() && details_->selectionModel()->isRowSelected(current.row(), {})
                      ? current.row()
                  : selected.empty() ? -1
                                     : selected.front();
    const FileEntry* row = r >= 0 && r < int(rows_.size()) ? &rows_[r] : nullptr;
    TxtFileinfo_->setPlainText(row ? QString::fromStdString(fileInfoText(*row, language_))
                                   : QString());
    showMedia(row);
    showPreview(row);
}

// The large picture of "Bildansicht", read on the preview thread.
void FrmBildviewer::showPreview(const FileEntry* row) {
    const int request = ++previewRequest_;
    if (mode_ != ViewMode::Picture || !row) {
        preview_ = QImage();
        picBild_->clear();
        return;
    }
    if (isMediaName(row->name)) {
        preview_ = QImage();
        picBild_->setText(QString::fromStdString(row->name));
        return;
    }
    picBild_->setText(QString::fromUtf8(t("Bild wird geladen ...", "Loading picture ...")));
    const QSize box = picBild_->size().expandedTo(QSize(400, 300));
    previewPool_.start([this, request, path = row->path, box, hook = thumbnailHook_] {
        if (*hook) (*hook)();
        cDIBSection dib;
        if (!LoadJPG(dib, path, nullptr, box.width(), box.height())) {
            PictureFile f = LoadPictureFile(path);
            if (f.picture && f.picture.Handle()) dib = *f.picture.Handle();
        }
        cDIBSection fitted;
        if (!dib.empty()) {
            const double s = std::min(1.0, std::min(double(box.width()) / dib.Width(),
                                                    double(box.height()) / dib.Height()));
            const int w = std::max(1, int(dib.Width() * s + 0.5)),
                      h = std::max(1, int(dib.Height() * s + 0.5));
            if (w == dib.Width() && h == dib.Height())
                fitted = std::move(dib);
            else
                smoothResize(dib, fitted, w, h);
        }
        const QImage image = imageOfSection(fitted);
        QMetaObject::invokeMethod(
            this,
            [this, request, image] {
                if (request != previewRequest_) return;
                preview_ = image;
                if (image.isNull())
                    picBild_->setText(QString::fromUtf8(t("Das Bild konnte nicht geladen werden.",
                                                          "The picture could not be loaded.")));
                else
                    picBild_->setPixmap(QPixmap::fromImage(image).scaled(
                        picBild_->size(), Qt::KeepAspectRatio, Qt::SmoothTransformation));
                emit previewChanged();
            },
            Qt::QueuedConnection);
    });
}

}  // namespace brindle::explorer
