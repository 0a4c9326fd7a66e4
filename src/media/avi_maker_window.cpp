#include "media/avi_maker_window.h"

#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPixmap>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>
#include <filesystem>

#include "editor/qimage_dib.h"
#include "image/picture_io.h"
#include "media/video_texts.h"
#include "studio/tool_run.h"

namespace brindle::media {
namespace {

constexpr int kPreviewWidth = 200;
constexpr int kPreviewHeight = 150;

QPushButton* button(const char* name, QWidget* parent) {
    auto* b = new QPushButton(parent);
    b->setObjectName(QString::fromUtf8(name));
    return b;
}

QString native(const std::string& path) { return QDir::toNativeSeparators(QString::fromStdString(path)); }

}  // namespace

AviMakerWindow::AviMakerWindow(std::vector<std::string> pictures, std::string programDirectory,
                               Prompter& prompter, Language language, QWidget* parent)
    : QWidget(parent), programDirectory_(std::move(programDirectory)), prompter_(prompter), language_(language) {
    setObjectName("frmAVImaker");
    setWindowTitle(kVideoTitle);
    build();
    setLanguage(language);
    if (!pictures.empty()) provide(pictures);
    updateEnabled();
}

void AviMakerWindow::build() {
    auto* top = new QVBoxLayout(this);
    lblList_ = new QLabel(this);
    top->addWidget(lblList_);

    auto* middle = new QHBoxLayout;
    lstDIBList_ = new QListWidget(this);
    lstDIBList_->setObjectName("lstDIBList");
    middle->addWidget(lstDIBList_, 1);
    auto* side = new QVBoxLayout;
    cmdFileOpen_ = button("cmdFileOpen", this);
    cmdRemove_ = button("cmdRemove", this);
    cmdUp_ = button("cmdUp", this);
    cmdDown_ = button("cmdDown", this);
    for (QPushButton* b : {cmdFileOpen_, cmdRemove_, cmdUp_, cmdDown_}) side->addWidget(b);
    imgPreview_ = new QLabel(this);
    imgPreview_->setObjectName("imgPreview");
    imgPreview_->setFixedSize(kPreviewWidth, kPreviewHeight);
    imgPreview_->setAlignment(Qt::AlignCenter);
    imgPreview_->setFrameShape(QFrame::StyledPanel);
    side->addWidget(imgPreview_);
    side->addStretch(1);
    middle->addLayout(side);
    top->addLayout(middle, 1);

    auto* rate = new QHBoxLayout;
    lblFPS_ = new QLabel(this);
    txtFPS_ = new QSpinBox(this);
    txtFPS_->setObjectName("txtFPS");
    txtFPS_->setRange(kMinFps, kMaxFps);
    txtFPS_->setValue(VideoOptions{}.fps);
    lblFPS_->setBuddy(txtFPS_);
    rate->addWidget(lblFPS_);
    rate->addWidget(txtFPS_);
    rate->addStretch(1);
    top->addLayout(rate);

    lblStatus_ = new QLabel(this);
    lblStatus_->setObjectName("lblStatus");
    lblStatus_->setTextFormat(Qt::PlainText);
    progress_ = new QProgressBar(this);
    progress_->setObjectName("progress");
    progress_->setRange(0, 1);
    progress_->setValue(0);
    top->addWidget(lblStatus_);
    top->addWidget(progress_);

    auto* buttons = new QHBoxLayout;
    cmdWriteAVI_ = button("cmdWriteAVI", this);
    cmdWriteAVI_->setDefault(true);
    cmdCancel_ = button("cmdCancel", this);
    buttons->addStretch(1);
    buttons->addWidget(cmdWriteAVI_);
    buttons->addWidget(cmdCancel_);
    top->addLayout(buttons);
    resize(560, 420);

    connect(cmdFileOpen_, &QPushButton::clicked, this, &AviMakerWindow::chooseBitmaps);
    connect(cmdRemove_, &QPushButton::clicked, this, &AviMakerWindow::removeSelected);
    connect(cmdUp_, &QPushButton::clicked, this, [this] { moveSelected(-1); });
    connect(cmdDown_, &QPushButton::clicked, this, [this] { moveSelected(1); });
    connect(cmdWriteAVI_, &QPushButton::clicked, this, &AviMakerWindow::writeVideoFile);
    connect(cmdCancel_, &QPushButton::clicked, this, &AviMakerWindow::cancel);
    connect(lstDIBList_, &QListWidget::currentRowChanged, this, [this] {
        showPreview();
        updateEnabled();
    });
}

void AviMakerWindow::setLanguage(Language language) {
    language_ = language;
    lblList_->setText(t("Bitmaps des Videos:", "Bitmaps of the video:"));
    cmdFileOpen_->setText(t("&Hinzufügen ...", "&Add ..."));
    cmdRemove_->setText(t("&Entfernen", "&Remove"));
    cmdUp_->setText(t("Nach &oben", "Move &up"));
    cmdDown_->setText(t("Nach &unten", "Move &down"));
    lblFPS_->setText(t("&Bilder pro Sekunde (1 - 30):", "&Frames per second (1 - 30):"));
    cmdWriteAVI_->setText(t("AVI &schreiben ...", "&Write AVI ..."));
    cmdCancel_->setText(running_ ? t("Wird abgebrochen ...", "Cancelling ...") : t("Abbrechen", "Cancel"));
}

// Pictures from the explorer: other formats become bitmaps in "AVITemp".
void AviMakerWindow::provide(const std::vector<std::string>& pictures) {
    lblStatus_->setText(QString::fromStdString(provideStatus(language_)));
    const ProvidedBitmaps provided = provideBitmaps(pictures, programDirectory_, language_);
    for (const ImageMessage& m : provided.messages) tell(m, kIconCritical);
    for (const std::string& bitmap : provided.bitmaps) addBitmap(bitmap);
    lblStatus_->clear();
}

void AviMakerWindow::tell(const ImageMessage& message, int icon) {
    prompter_.message(message.text, kButtonsOk | icon, message.title);
}

bool AviMakerWindow::addBitmap(const std::string& path) {
    BitmapFormat format;
    if (!readBitmapFormat(path, format)) {
        tell(unsupportedFileMessage(language_), kIconCritical);
        return false;
    }
    if (!bitmaps_.empty() && format != format_) {
        tell(differentFormatMessage(language_), kIconExclamation);
        return false;
    }
    if (bitmaps_.empty()) format_ = format;
    bitmaps_.push_back(path);
    auto* item = new QListWidgetItem(QFileInfo(QString::fromStdString(path)).fileName(), lstDIBList_);
    item->setToolTip(native(path));
    lstDIBList_->setCurrentRow(lstDIBList_->count() - 1);
    updateEnabled();
    return true;
}

void AviMakerWindow::chooseBitmaps() {
    FileDialog dialog;
    dialog.title = t("BMP-Datei für den Videostrom wählen", "Choose BMP file to add to video stream");
    dialog.filter = t("BMP-Dateien|*.bmp|DIB-Dateien|*.dib", "BMP Files|*.bmp|DIB Files|*.dib");
    dialog.multiSelect = true;
    const std::string answer = prompter_.openFile(dialog);
    if (answer.empty()) return;
    for (const std::string& path : splitFileList(answer))
        if (!addBitmap(path)) break;
}

void AviMakerWindow::removeSelected() {
    const int row = lstDIBList_->currentRow();
    if (running_ || row < 0 || row >= static_cast<int>(bitmaps_.size())) return;
    bitmaps_.erase(bitmaps_.begin() + row);
    delete lstDIBList_->takeItem(row);
    // The rest all matched the first, so they still agree with each other.
    if (bitmaps_.empty()) format_ = {};
    showPreview();
    updateEnabled();
}

void AviMakerWindow::moveSelected(int step) {
    const int row = lstDIBList_->currentRow();
    const int target = row + step;
    if (running_ || row < 0 || target < 0 || target >= static_cast<int>(bitmaps_.size())) return;
    std::swap(bitmaps_[row], bitmaps_[target]);
    QListWidgetItem* item = lstDIBList_->takeItem(row);
    lstDIBList_->insertItem(target, item);
    lstDIBList_->setCurrentRow(target);
}

void AviMakerWindow::showPreview() {
    imgPreview_->clear();
    const int row = lstDIBList_->currentRow();
    if (row < 0 || row >= static_cast<int>(bitmaps_.size())) return;
    const PictureFile loaded = LoadPictureFile(bitmaps_[row]);
    if (!loaded.picture) return;
    const QImage image = editor::imageOfDib(*loaded.picture.Handle());
    imgPreview_->setPixmap(QPixmap::fromImage(
        image.scaled(kPreviewWidth - 4, kPreviewHeight - 4, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
}

void AviMakerWindow::updateEnabled() {
    const int row = lstDIBList_->currentRow();
    const bool chosen = row >= 0 && !running_;
    cmdFileOpen_->setEnabled(!running_);
    cmdRemove_->setEnabled(chosen);
    cmdUp_->setEnabled(chosen && row > 0);
    cmdDown_->setEnabled(chosen && row + 1 < lstDIBList_->count());
    txtFPS_->setEnabled(!running_);
    lstDIBList_->setEnabled(!running_);
    cmdWriteAVI_->setEnabled(!running_ && !bitmaps_.empty());
}

// The video's name; ".avi" is added to a name without an extension.
std::string AviMakerWindow::askVideoPath() {
    FileDialog dialog;
    dialog.title = t("Dateiname zum Speichern des AVI", "File name to save the AVI");
    dialog.filter = t("AVI-Dateien|*.avi|MP4-Dateien|*.mp4", "AVI Files|*.avi|MP4 Files|*.mp4");
    dialog.proposedName = "MyAVI.avi";
    std::string path = prompter_.saveFile(dialog);
    if (!path.empty() && std::filesystem::path(path).extension().empty()) path += ".avi";
    return path;
}

void AviMakerWindow::writeVideoFile() {
    // An empty list writes nothing.
    if (running_ || bitmaps_.empty()) return;
    const std::string path = askVideoPath();
    if (path.empty()) return;
    if (!videoKindFor(path)) {
        tell(videoTypeMessage(language_), kIconExclamation);
        return;
    }
    running_ = true;
    cancel_ = false;
    setLanguage(language_);
    updateEnabled();
    progress_->setRange(0, static_cast<int>(bitmaps_.size()));
    progress_->setValue(0);
    const auto callbacks = studio::windowFeedback<VideoCallbacks>(this, lblStatus_, progress_, cancel_);
    VideoOptions options;
    options.fps = txtFPS_->value();
    const Language lang = language_;
    const std::vector<std::string> frames = bitmaps_;
    VideoResult result;
    studio::runOffGuiThread([&] { result = writeVideo(frames, path, options, lang, callbacks); });
    result_ = std::move(result);
    running_ = false;
    setLanguage(language_);
    updateEnabled();
    if (result_.cancelled) lblStatus_->setText(t("Abgebrochen.", "Cancelled."));
    else if (!result_.ok && result_.message) tell(*result_.message, kIconCritical);
}

void AviMakerWindow::cancel() {
    if (running_) {
        cancel_ = true;
        cmdCancel_->setText(t("Wird abgebrochen ...", "Cancelling ..."));
        return;
    }
    close();
}

// The close box stops a run instead of leaving a worker without its window.
void AviMakerWindow::closeEvent(QCloseEvent* event) {
    if (running_) {
        cancel_ = true;
        event->ignore();
        return;
    }
    QWidget::closeEvent(event);
}

}  // namespace brindle::media
