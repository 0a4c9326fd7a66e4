// The test view and the batch: both run on a worker thread while a timer
// shows the progress; the window stays live and the cancel buttons work.
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>
#include <QTimer>
#include <QTreeWidget>
#include <memory>

#include "editor/qimage_dib.h"
#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "studio/batch_run.h"
#include "studio/design_chain.h"
#include "studio/design_panels.h"
#include "studio/design_window.h"
#include "studio/picture_view.h"

namespace brindle::studio {

namespace {

// The test view works on a picture no larger than this on its longer side,
// so every step answers quickly; the batch works on the full pictures.
constexpr int kPreviewSide = 1600;

bool isJpeg(const std::string& path) {
    const std::size_t dot = path.find_last_of('.');
    if (dot == std::string::npos) return false;
    QString ext = QString::fromStdString(path.substr(dot + 1)).toLower();
    return ext == "jpg" || ext == "jpeg";
}

}  // namespace

static cDIBSection loadPreview(const std::string& path, Prompter& prompter, Language language) {
    cDIBSection dib;
    ImageEnv env;
    env.language = language;
    if (isJpeg(path)) {
        if (!LoadJPG(dib, path, nullptr, kPreviewSide, kPreviewSide)) dib = cDIBSection();
    } else {
        PictureFile file = LoadPictureFile(path, env);
        if (file.message) prompter.message(file.message->text, kButtonsOk | kIconExclamation, file.message->title);
        if (file.picture) dib.CreateFromPicture(file.picture);
    }
    const int longer = std::max(dib.Width(), dib.Height());
    if (longer > kPreviewSide) {
        const double f = static_cast<double>(kPreviewSide) / longer;
        dib = dib.Resample(std::max(1, static_cast<int>(dib.Height() * f)), std::max(1, static_cast<int>(dib.Width() * f)));
    }
    return dib;
}

void DesignWindow::loadTestPicture(int row) {
    original_ = cDIBSection();
    originalPath_.clear();
    if (row >= 0 && row < pictureList_->count()) {
        originalPath_ = pictureList_->item(row)->data(Qt::UserRole).toString().toStdString();
        original_ = loadPreview(originalPath_, prompter_, language_);
    }
    const QImage image = original_.empty() ? QImage() : editor::imageOfDib(original_);
    picture1_->setImage(image);
    picture2_->setImage(image);
    updateButtons();
}

void DesignWindow::testCurrentPanel() {
    const std::string line = panels_->currentLine();
    if (line.empty()) return;
    startTest({line});
}

void DesignWindow::testList() { startTest(lines()); }

void DesignWindow::startTest(std::vector<std::string> steps) {
    if (original_.empty() || steps.empty()) return;
    if (busy_) {
        // The newest values are tried as soon as the running test ends.
        if (!batchRunning_) testAgain_ = true;
        return;
    }
    auto result = std::make_shared<cDIBSection>(original_);
    stepsDone_ = 0;
    stepsTotal_ = static_cast<int>(steps.size());
    const Language language = language_;
    startWork(
        [this, result, steps = std::move(steps), language] {
            StepEnv env;
            env.mode = ChainMode::TestView;
            env.progress = &stepProgress_;
            env.image.language = language;
            for (std::size_t i = 0; i < steps.size() && !cancel_; ++i) {
                stepProgress_.store(0);
                applyStep(*result, steps[i], env);
                stepsDone_ = static_cast<int>(i) + 1;
            }
        },
        [this, result] {
            if (!cancel_) picture2_->setImage(editor::imageOfDib(*result));
        });
}

void DesignWindow::panelValuesChanged() {
    if (autoTest_->isChecked() || waveTimer_->isActive()) testCurrentPanel();
}

// The wave panel's animation: the phase runs round while the panel shows.
void DesignWindow::waveTick() {
    if (panels_->currentKey() != "Wave") {
        waveTimer_->stop();
        if (auto* animate = panels_->findChild<QCheckBox*>("chkWaveAnimation")) animate->setChecked(false);
        return;
    }
    if (busy_) return;
    if (auto* slider = panels_->findChild<QSlider*>("SldWave"))
        slider->setValue((slider->value() + 1) % (slider->maximum() + 1));
}

void DesignWindow::runBatch() {
    if (busy_) return;
    const std::string title = t("Assistent Fotodesign", "Assistant Photo Design").toStdString();
    BatchOptions options;
    options.pictures = pictures();
    options.minWidth = widthFilter_->value();
    options.minHeight = heightFilter_->value();
    options.saveMode = overwrite_->isChecked() ? SaveMode::OverwriteOriginals : SaveMode::OtherDirectory;
    options.targetDirectory = directory_->text().trimmed().toStdString();
    options.appendText = appendText_->text().toStdString();
    options.fileType = fileType_->currentText().toStdString();
    options.jpegQuality = jpegQuality_->value();
    if (options.saveMode == SaveMode::OtherDirectory && options.targetDirectory.empty()) {
        prompter_.message(t("Bitte wählen Sie ein Verzeichnis für die fertigen Bilder.",
                            "Please choose a directory for the finished pictures.").toStdString(),
                          kButtonsOk | kIconExclamation, title);
        return;
    }
    if (options.saveMode == SaveMode::OverwriteOriginals &&
        prompter_.message(t("Die Originalbilder werden überschrieben. Fortfahren?",
                            "The original pictures will be overwritten. Continue?").toStdString(),
                          kButtonsYesNo | kIconQuestion, title) != kYes)
        return;

    const std::vector<std::string> steps = lines();
    const bool showEach = showEach_->isChecked();
    const Language language = language_;
    auto result = std::make_shared<BatchResult>();
    picturesDone_ = 0;
    picturesTotal_ = static_cast<int>(options.pictures.size());
    batchRunning_ = true;
    BatchCallbacks callbacks;
    callbacks.status = [this](const std::string& s) {
        QMetaObject::invokeMethod(this, [this, s] { status_->setText(QString::fromStdString(s)); }, Qt::QueuedConnection);
    };
    callbacks.progress = [this](int done, int total) {
        picturesDone_ = done;
        picturesTotal_ = total;
    };
    callbacks.cancelled = [this] { return cancel_.load(); };
    if (showEach) {
        callbacks.finished = [this](const cDIBSection& dib) {
            QImage image = editor::imageOfDib(dib);
            if (image.width() > kPreviewSide || image.height() > kPreviewSide)
                image = image.scaled(kPreviewSide, kPreviewSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
            QMetaObject::invokeMethod(this, [this, image] { picture2_->setImage(image); }, Qt::QueuedConnection);
        };
    }
    startWork(
        [this, steps, options, language, callbacks, result] {
            *result = runDesignBatch(steps, options, prompter_, language, callbacks);
        },
        [this, result, title] {
            batchRunning_ = false;
            const QString counts = QString::number(result->treated) + t(" Bild(er) gespeichert, ", " picture(s) saved, ") +
                                   QString::number(result->skipped) + t(" übersprungen, ", " skipped, ") +
                                   QString::number(result->failed) + t(" fehlgeschlagen.", " failed.");
            const QString summary = (result->cancelled ? t("Abgebrochen: ", "Cancelled: ") : t("Fertig: ", "Done: ")) + counts;
            status_->setText(summary);
            updateButtons();
            prompter_.message(summary.toStdString(), kButtonsOk | kIconInformation, title);
        });
}

void DesignWindow::startWork(std::function<void()> work, std::function<void()> done) {
    if (worker_.joinable()) worker_.join();
    cancel_ = false;
    stepProgress_.store(0);
    setRunning(true);
    worker_ = std::thread([this, work = std::move(work), done = std::move(done)] {
        work();
        QMetaObject::invokeMethod(this, [this, done] { workDone(done); }, Qt::QueuedConnection);
    });
}

void DesignWindow::workDone(const std::function<void()>& done) {
    if (worker_.joinable()) worker_.join();
    showProgress();
    setRunning(false);
    done();
    emit workFinished();
    if (closeWhenDone_) {
        close();
        return;
    }
    if (testAgain_) {
        testAgain_ = false;
        testCurrentPanel();
    }
}

void DesignWindow::closeEvent(QCloseEvent* event) {
    waveTimer_->stop();
    if (!busy_) return QWidget::closeEvent(event);
    cancel_ = true;
    closeWhenDone_ = true;
    event->ignore();
}

void DesignWindow::showProgress() {
    if (batchRunning_) {
        batchProgress_->setMaximum(std::max(1, picturesTotal_.load()));
        batchProgress_->setValue(std::min(picturesDone_.load(), batchProgress_->maximum()));
        return;
    }
    const int total = std::max(1, stepsTotal_.load());
    const int done = std::min(stepsDone_.load(), total);
    const int word = done < total ? std::clamp(stepProgress_.load(), 0, 100) : 0;
    testProgress_->setValue((done * 100 + word) / total);
}

// While the batch runs only its cancel button and the views stay live; a
// test leaves the panels live so a slider can be dragged on.
void DesignWindow::setRunning(bool running) {
    busy_ = running;
    if (running) {
        progressTimer_->start();
        if (batchRunning_) batchProgress_->setValue(0);
        else testProgress_->setValue(0);
    } else {
        progressTimer_->stop();
    }
    const bool editable = !(running && batchRunning_);
    for (QWidget* w : std::initializer_list<QWidget*>{tree_, panels_, list_, pictureList_, widthFilter_, heightFilter_,
                                                      overwrite_, otherDirectory_, appendText_, fileType_, jpegQuality_})
        w->setEnabled(editable);
    for (auto* b : findChildren<QPushButton*>())
        if (b->objectName().startsWith("cmdHoch") || b->objectName().startsWith("cmdRunter") ||
            b->objectName().startsWith("cmdLöschen") || b->objectName().startsWith("cmdListe") ||
            b->objectName().startsWith("cmdBild") || b->objectName() == "cmdVerzeichnis")
            b->setEnabled(!running);
    updateButtons();
}

}  // namespace brindle::studio
