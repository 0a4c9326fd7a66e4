#include "media/scan_window.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace brindle::media {

ScanDialog::ScanDialog(std::string targetPath, Prompter& prompter, Language language, QWidget* parent)
    : QDialog(parent), targetPath_(std::move(targetPath)), prompter_(prompter), language_(language) {
    setObjectName("frmScan");
    build();
    applyTexts();
    startListing();
}

ScanDialog::~ScanDialog() {
    stop_ = true;
    joinWorker();
}

void ScanDialog::joinWorker() {
    if (worker_.joinable()) worker_.join();
}

void ScanDialog::build() {
    lblQuelle_ = new QLabel(this);
    cboQuelle_ = new QComboBox(this);
    cboQuelle_->setObjectName("cboQuelle");
    cboQuelle_->setMinimumWidth(320);
    lblAuflösung_ = new QLabel(this);
    cboAuflösung_ = new QComboBox(this);
    cboAuflösung_->setObjectName("cboAuflösung");
    for (int dpi : kScanResolutions) cboAuflösung_->addItem(QString(), dpi);
    lblStatus_ = new QLabel(this);
    lblStatus_->setObjectName("lblStatus");
    lblStatus_->setWordWrap(true);
    progressBar1_ = new QProgressBar(this);
    progressBar1_->setObjectName("ProgressBar1");
    progressBar1_->setRange(0, 100);
    progressBar1_->setValue(0);
    cmdScannen_ = new QPushButton(this);
    cmdScannen_->setObjectName("cmdScannen");
    cmdScannen_->setDefault(true);
    cmdAbbrechen_ = new QPushButton(this);
    cmdAbbrechen_->setObjectName("cmdAbbrechen");
    connect(cmdScannen_, &QPushButton::clicked, this, [this] { startScan(); });
    connect(cmdAbbrechen_, &QPushButton::clicked, this, [this] { reject(); });

    auto* grid = new QGridLayout;
    grid->addWidget(lblQuelle_, 0, 0);
    grid->addWidget(cboQuelle_, 0, 1);
    grid->addWidget(lblAuflösung_, 1, 0);
    grid->addWidget(cboAuflösung_, 1, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdScannen_);
    buttons->addWidget(cmdAbbrechen_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addWidget(lblStatus_);
    layout->addWidget(progressBar1_);
    layout->addLayout(buttons);
}

void ScanDialog::setLanguage(Language language) {
    language_ = language;
    applyTexts();
}

void ScanDialog::applyTexts() {
    setWindowTitle(QString::fromUtf8(t("Bild vom Scanner holen", "Picture from the scanner")));
    lblQuelle_->setText(QString::fromUtf8(t("Quelle:", "Source:")));
    lblAuflösung_->setText(QString::fromUtf8(t("Auflösung:", "Resolution:")));
    for (int i = 0; i < cboAuflösung_->count(); ++i) {
        const int dpi = cboAuflösung_->itemData(i).toInt();
        cboAuflösung_->setItemText(i, dpi == 0 ? QString::fromUtf8(t("wie eingestellt", "as set"))
                                               : QStringLiteral("%1 dpi").arg(dpi));
    }
    cmdScannen_->setText(QString::fromUtf8(t("Scannen", "Scan")));
    cmdAbbrechen_->setText(QString::fromUtf8(t("Abbrechen", "Cancel")));
    setStatus(status_, message_);
}

void ScanDialog::setStatus(Status status, std::string message) {
    status_ = status;
    message_ = std::move(message);
    const char* text = "";
    switch (status_) {
        case Status::Listing:
            text = t("Suche Scanner …", "Looking for scanners …");
            break;
        case Status::Ready:
            text = "";
            break;
        case Status::NoScanner:
            message_ = noScannerMessage(language_);
            text = message_.c_str();
            break;
        case Status::Scanning:
            text = t("Scanne …", "Scanning …");
            break;
        case Status::Message:
            text = message_.c_str();
            break;
    }
    lblStatus_->setText(QString::fromUtf8(text));
    updateButtons();
}

void ScanDialog::updateButtons() {
    cmdScannen_->setEnabled(!listing_ && !scanning_ && !sources_.empty());
    cboQuelle_->setEnabled(!listing_ && !scanning_ && !sources_.empty());
    cboAuflösung_->setEnabled(!scanning_);
}

void ScanDialog::startListing() {
    listing_ = true;
    setStatus(Status::Listing);
    const Language language = language_;
    // The dialog joins the thread before it goes, so `this` outlives it; a
    // queued call to a deleted dialog is dropped by Qt.
    worker_ = std::thread([this, language] {
        ScanSourceList list = listScanSources(language);
        QMetaObject::invokeMethod(
            this, [this, list = std::move(list)]() mutable { showSources(std::move(list)); },
            Qt::QueuedConnection);
    });
}

void ScanDialog::showSources(ScanSourceList list) {
    joinWorker();
    listing_ = false;
    sources_ = std::move(list.sources);
    cboQuelle_->clear();
    for (const ScanSource& s : sources_) {
        const std::string label = s.vendor + " " + s.model + " (" + s.name + ")";
        cboQuelle_->addItem(QString::fromStdString(label), QString::fromStdString(s.name));
    }
    if (!list.error.empty()) {
        setStatus(Status::Message, list.error);
        prompter_.message(list.error, kButtonsOk | kIconExclamation, "Brindlesee");
    } else if (sources_.empty()) {
        setStatus(Status::NoScanner);
        prompter_.message(noScannerMessage(language_), kButtonsOk | kIconExclamation, "Brindlesee");
    } else {
        setStatus(Status::Ready);
    }
    emit sourcesListed();
}

void ScanDialog::startScan() {
    if (listing_ || scanning_ || sources_.empty()) return;
    ScanRequest request;
    request.device = cboQuelle_->currentData().toString().toStdString();
    request.resolution = cboAuflösung_->currentData().toInt();
    request.progress = [this](int percent) {
        QMetaObject::invokeMethod(
            this, [this, percent] { progressBar1_->setValue(percent); }, Qt::QueuedConnection);
        return !stop_.load();
    };
    stop_ = false;
    scanning_ = true;
    progressBar1_->setValue(0);
    setStatus(Status::Scanning);
    const Language language = language_;
    const std::string path = targetPath_;
    worker_ = std::thread([this, request = std::move(request), path, language] {
        ScanResult result = scanToFile(request, path, language);
        QMetaObject::invokeMethod(
            this, [this, result = std::move(result)]() mutable { scanDone(std::move(result)); },
            Qt::QueuedConnection);
    });
}

void ScanDialog::scanDone(ScanResult result) {
    joinWorker();
    scanning_ = false;
    if (result) {
        progressBar1_->setValue(100);
        savedPath_ = targetPath_;
        setStatus(Status::Ready);
        emit scanFinished();
        accept();
        return;
    }
    progressBar1_->setValue(0);
    setStatus(Status::Message, result.error);
    // A cancel was the user's own wish: the status line says it, no box.
    if (!result.cancelled) prompter_.message(result.error, kButtonsOk | kIconExclamation, "Brindlesee");
    emit scanFinished();
}

void ScanDialog::reject() {
    if (scanning_) {
        stop_ = true;
        return;
    }
    QDialog::reject();
}

}  // namespace brindle::media
