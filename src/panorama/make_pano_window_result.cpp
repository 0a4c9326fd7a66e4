// The result of the panorama window: the scaled view with its scrolling
// animation, the seam list and the seam editor, saving and placing.
#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>

#include "editor/qimage_dib.h"
#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "panorama/make_pano_window.h"
#include "panorama/pano_import.h"
#include "panorama/pano_temp.h"
#include "panorama/seam_window.h"

namespace brindle::panorama {

namespace {

// Pixels the animation scrolls per tick.
constexpr int kAnimationStep = 2;

// Seams of a row of `count` pictures: one fewer than pictures, as many in a ring.
int seamCount(int count, bool ring360) { return count < 2 ? 0 : (ring360 ? count : count - 1); }

// A ".bmp" name gets a bitmap, any other a JPEG.
bool writePicture(const cDIBSection& picture, const std::string& path, Language lang, std::string& message) {
    const bool bitmap = QFileInfo(QString::fromStdString(path)).suffix().compare("bmp", Qt::CaseInsensitive) == 0;
    const ImageStatus st = bitmap ? SaveDIBFile(picture, path, kPanoJpegQuality, ImageEnv{lang, {}, true})
                                  : savePanorama(picture, path, kPanoJpegQuality, lang);
    if (!st.ok)
        message = st.message ? st.message->text
                             : std::string(brindle::tr(lang, "Das Bild kann nicht gespeichert werden: ",
                                              "The picture cannot be saved: ")) + path;
    return st.ok;
}

}  // namespace

void MakePanoWindow::showResult() { showPicture(result_); }

void MakePanoWindow::showPicture(const cDIBSection& picture) {
    shown_ = editor::imageOfDib(picture);
    fitResult();
}

// Picture3 shows the whole height; the width scrolls.
void MakePanoWindow::fitResult() {
    if (shown_.isNull()) {
        picture3_->clear();
        picture3_->resize(0, 0);
        return;
    }
    const int h = std::max(1, picture3Area_->viewport()->height());
    const QImage scaled = shown_.scaledToHeight(h, Qt::SmoothTransformation);
    picture3_->setPixmap(QPixmap::fromImage(scaled));
    picture3_->resize(scaled.size());
}

void MakePanoWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    fitResult();
}

void MakePanoWindow::cmdPhase2_Click() {
    if (!seamListOpen_) toggleSeamList();
}

void MakePanoWindow::toggleSeamList() {
    seamListOpen_ = !seamListOpen_ && !records_.empty();
    seamList_->setVisible(seamListOpen_);
    retranslate();
}

// One button "Naht n laden" per seam.
void MakePanoWindow::fillSeamList() {
    QLayout* layout = seamList_->layout();
    while (QLayoutItem* item = layout->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    const int seams = seamCount(static_cast<int>(records_.size()), builtRing360_);
    for (int n = 1; n <= seams; ++n) {
        auto* b = new QPushButton(QString(t("Naht ", "Load seam ")) + QString::number(n) + t(" laden", ""), seamList_);
        b->setObjectName(QString("cmdNaht%1").arg(n));
        connect(b, &QPushButton::clicked, this, [this, n] { cmdNaht_Click(n); });
        layout->addWidget(b);
    }
    static_cast<QHBoxLayout*>(layout)->addStretch();
}

void MakePanoWindow::cmdNaht_Click(int number) {
    const int count = static_cast<int>(records_.size());
    if (isRunning() || number < 1 || number > seamCount(count, builtRing360_)) return;
    const std::size_t i = static_cast<std::size_t>(number - 1);
    const std::size_t j = static_cast<std::size_t>(number % count);
    cDIBSection left, right;
    std::string error;
    if (!LoadJPG(left, panoTempName(programDirectory_, records_[i].datei, kReducedPrefix), &error) ||
        !LoadJPG(right, panoTempName(programDirectory_, records_[j].datei, kReducedPrefix), &error)) {
        prompter_.message(error, kButtonsOk | kIconExclamation, "Brindlesee");
        return;
    }
    PanoBild edited = records_[i];
    SeamWindow editor(prompter_, lang_, this);
    editor.SetPicture(left, right, edited, number);
    if (editor.exec() != QDialog::Accepted) return;
    records_[i] = edited;
    startComposition();
}

void MakePanoWindow::cmdAnimate_Click() {
    if (tmrAnimateCut_->isActive()) {
        tmrAnimateCut_->stop();
    } else if (!shown_.isNull()) {
        tmrAnimateCut_->start();
    }
    cmdAnimate_->setChecked(tmrAnimateCut_->isActive());
}

// Scrolls on and starts again at the left end.
void MakePanoWindow::animateStep() {
    QScrollBar* bar = picture3Area_->horizontalScrollBar();
    bar->setValue(bar->value() >= bar->maximum() ? 0 : bar->value() + kAnimationStep);
}

void MakePanoWindow::cmdPhase3_Click() { cmdSpeichern_Click(); }

void MakePanoWindow::cmdSpeichern_Click() {
    if (isRunning() || result_.empty()) return;
    FileDialog d;
    d.title = t("Wähle Datei zum Speichern des Panoramabildes", "Choose the file to save the panorama picture");
    d.filter = t("Alle Dateien (*.*)|*.*|JPEG Bild (*.jpeg;*.jpg)|*.jpeg;*.jpg|Bitmap (*.bmp)|*.bmp",
                 "All files (*.*)|*.*|JPEG picture (*.jpeg;*.jpg)|*.jpeg;*.jpg|Bitmap (*.bmp)|*.bmp");
    d.filterIndex = 2;
    d.proposedName = "Panorama.jpg";
    if (!records_.empty()) d.startDirectory = QFileInfo(QString::fromStdString(records_.front().datei)).absolutePath().toStdString() + "/";
    std::string path = prompter_.saveFile(d);
    if (path.empty()) return;
    if (QFileInfo(QString::fromStdString(path)).suffix().isEmpty()) path += ".jpg";
    auto picture = std::make_shared<cDIBSection>(result_);
    showStatus(std::string(t("Speichern: ", "Saving: ")) + path);
    run(
        [picture, path, lang = lang_](const PanoCallbacks&, std::string& message) {
            return writePicture(*picture, path, lang, message);
        },
        [this, path](bool ok, const std::string& message) {
            if (!ok) return showFailure(message);
            savedPath_ = path;
            showStatus(std::string(t("Gespeichert: ", "Saved: ")) + path);
            if (chkErgebnisAnzeigen_->isChecked()) {
                const PictureFile saved = LoadPictureFile(path);
                if (saved.picture) showPicture(*saved.picture.Handle());
            }
            updateEnabled();
        });
}

void MakePanoWindow::cmdAufSeite_Click() {
    if (!savedPath_.empty()) emit placeOnPage(QString::fromStdString(savedPath_));
}

}  // namespace brindle::panorama
