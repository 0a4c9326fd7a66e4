#include "studio/resize_window.h"

#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "studio/tool_run.h"

namespace brindle::studio {
namespace {

QSpinBox* numberBox(const char* name, int low, int high, int value, QWidget* parent) {
    auto* box = new QSpinBox(parent);
    box->setObjectName(QString::fromUtf8(name));
    box->setRange(low, high);
    box->setValue(value);
    box->setAccelerated(true);
    return box;
}

QLabel* fieldLabel(QWidget* buddy, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setBuddy(buddy);
    return label;
}

}  // namespace

ResizeWindow::ResizeWindow(std::vector<std::string> pictures, Prompter& prompter, Language language,
                           QWidget* parent)
    : QDialog(parent), pictures_(std::move(pictures)), prompter_(prompter), language_(language) {
    setObjectName("frmRezise");
    build();
    connectFields();
    setLanguage(language);
    updateEnabled();
}

void ResizeWindow::build() {
    auto* top = new QVBoxLayout(this);
    lblBilder_ = new QLabel(this);
    listeAlleBilder_ = new QListWidget(this);
    listeAlleBilder_->setObjectName("listeAlleBilder");
    for (const std::string& p : pictures_) {
        auto* item = new QListWidgetItem(QFileInfo(QString::fromStdString(p)).fileName(), listeAlleBilder_);
        item->setToolTip(QDir::toNativeSeparators(QString::fromStdString(p)));
    }
    listeAlleBilder_->setMaximumHeight(120);
    top->addWidget(lblBilder_);
    top->addWidget(listeAlleBilder_);

    fraGröße_ = new QGroupBox(this);
    fraGröße_->setObjectName("optGröße");
    auto* grid = new QGridLayout(fraGröße_);
    optPixel_ = new QRadioButton(fraGröße_);
    optPixel_->setObjectName("optGröße0");
    optPixel_->setChecked(true);
    optProzent_ = new QRadioButton(fraGröße_);
    optProzent_->setObjectName("optGröße1");
    txtBreitePixel_ = numberBox("txtBreitePixel", 1, 30000, 800, fraGröße_);
    txtHöhePixel_ = numberBox("txtHöhePixel", 1, 30000, 600, fraGröße_);
    txtBreiteProzent_ = numberBox("txtBreitePozent", 1, 1000, 50, fraGröße_);
    txtHöheProzent_ = numberBox("txtHöheProzent", 1, 1000, 50, fraGröße_);
    txtBreiteProzent_->setSuffix(" %");
    txtHöheProzent_->setSuffix(" %");
    lblBreitePixel_ = fieldLabel(txtBreitePixel_, fraGröße_);
    lblHöhePixel_ = fieldLabel(txtHöhePixel_, fraGröße_);
    lblBreiteProzent_ = fieldLabel(txtBreiteProzent_, fraGröße_);
    lblHöheProzent_ = fieldLabel(txtHöheProzent_, fraGröße_);
    chkProzgleich_ = new QCheckBox(fraGröße_);
    chkProzgleich_->setObjectName("chkProzgleich");
    chkProzgleich_->setChecked(true);
    grid->addWidget(optPixel_, 0, 0, 1, 5);
    grid->addWidget(lblBreitePixel_, 1, 1);
    grid->addWidget(txtBreitePixel_, 1, 2);
    grid->addWidget(lblHöhePixel_, 1, 3);
    grid->addWidget(txtHöhePixel_, 1, 4);
    grid->addWidget(optProzent_, 2, 0, 1, 5);
    grid->addWidget(lblBreiteProzent_, 3, 1);
    grid->addWidget(txtBreiteProzent_, 3, 2);
    grid->addWidget(lblHöheProzent_, 3, 3);
    grid->addWidget(txtHöheProzent_, 3, 4);
    grid->addWidget(chkProzgleich_, 4, 1, 1, 4);
    grid->setColumnMinimumWidth(0, 16);
    grid->setColumnStretch(2, 1);
    grid->setColumnStretch(4, 1);
    top->addWidget(fraGröße_);

    chkOriginaleÜberschreiben_ = new QCheckBox(this);
    chkOriginaleÜberschreiben_->setObjectName("chkOriginaleÜberschreiben");
    lblZiel_ = new QLabel(this);
    lblZiel_->setObjectName("lblZiel");
    lblZiel_->setWordWrap(true);
    top->addWidget(chkOriginaleÜberschreiben_);
    top->addWidget(lblZiel_);

    lblStatus_ = new QLabel(this);
    lblStatus_->setObjectName("lblStatus");
    lblStatus_->setTextFormat(Qt::PlainText);
    progress_ = new QProgressBar(this);
    progress_->setObjectName("progress");
    progress_->setRange(0, std::max<int>(1, static_cast<int>(pictures_.size())));
    progress_->setValue(0);
    top->addStretch(1);
    top->addWidget(lblStatus_);
    top->addWidget(progress_);

    auto* buttons = new QHBoxLayout;
    cmdAusführen_ = new QPushButton(this);
    cmdAusführen_->setObjectName("cmdAusführen");
    cmdAusführen_->setDefault(true);
    cmdAbbrechen_ = new QPushButton(this);
    cmdAbbrechen_->setObjectName("cmdAbbrechen");
    buttons->addStretch(1);
    buttons->addWidget(cmdAusführen_);
    buttons->addWidget(cmdAbbrechen_);
    top->addLayout(buttons);
    setMinimumWidth(480);
}

void ResizeWindow::connectFields() {
    connect(optPixel_, &QRadioButton::toggled, this, [this] {
        updateEnabled();
        updateTargetText();
    });
    connect(chkProzgleich_, &QCheckBox::toggled, this, [this](bool on) {
        if (on) txtHöheProzent_->setValue(txtBreiteProzent_->value());
    });
    connect(txtBreiteProzent_, &QSpinBox::valueChanged, this,
            [this] { percentChanged(txtBreiteProzent_, txtHöheProzent_); });
    connect(txtHöheProzent_, &QSpinBox::valueChanged, this,
            [this] { percentChanged(txtHöheProzent_, txtBreiteProzent_); });
    for (QSpinBox* box : {txtBreitePixel_, txtHöhePixel_})
        connect(box, &QSpinBox::valueChanged, this, [this] { updateTargetText(); });
    connect(chkOriginaleÜberschreiben_, &QCheckBox::toggled, this, [this] { updateTargetText(); });
    connect(cmdAusführen_, &QPushButton::clicked, this, &ResizeWindow::run);
    connect(cmdAbbrechen_, &QPushButton::clicked, this, &ResizeWindow::reject);
}

void ResizeWindow::percentChanged(QSpinBox* changed, QSpinBox* other) {
    if (chkProzgleich_->isChecked() && other->value() != changed->value()) other->setValue(changed->value());
    updateTargetText();
}

void ResizeWindow::setLanguage(Language language) {
    language_ = language;
    setWindowTitle(t("Bildgröße ändern", "Resize Pictures"));
    lblBilder_->setText(QString::number(pictures_.size()) + " " + t("Bilder:", "pictures:"));
    fraGröße_->setTitle(t("Neue Größe", "New size"));
    optPixel_->setText(t("In Pixel", "In pixels"));
    optProzent_->setText(t("In Prozent der Bildgröße", "In percent of the picture's size"));
    lblBreitePixel_->setText(t("&Breite:", "&Width:"));
    lblHöhePixel_->setText(t("&Höhe:", "&Height:"));
    lblBreiteProzent_->setText(t("B&reite:", "W&idth:"));
    lblHöheProzent_->setText(t("H&öhe:", "H&eight:"));
    chkProzgleich_->setText(t("Beide Prozentwerte &gleich", "Both percentages &alike"));
    chkOriginaleÜberschreiben_->setText(t("&Originale überschreiben", "&Overwrite originals"));
    cmdAusführen_->setText(t("&Ausführen", "&Run"));
    cmdAbbrechen_->setText(t("Abbrechen", "Cancel"));
    updateTargetText();
}

ResizeOptions ResizeWindow::options() const {
    ResizeOptions o;
    o.widthPixels = txtBreitePixel_->value();
    o.heightPixels = txtHöhePixel_->value();
    o.widthPercent = txtBreiteProzent_->value();
    o.heightPercent = txtHöheProzent_->value();
    o.byPercent = optProzent_->isChecked();
    o.percentsAlike = chkProzgleich_->isChecked();
    o.overwriteOriginals = chkOriginaleÜberschreiben_->isChecked();
    return o;
}

void ResizeWindow::updateEnabled() {
    const bool percent = optProzent_->isChecked();
    for (QWidget* w : std::initializer_list<QWidget*>{lblBreitePixel_, txtBreitePixel_, lblHöhePixel_, txtHöhePixel_})
        w->setEnabled(!percent && !running_);
    for (QWidget* w : std::initializer_list<QWidget*>{lblBreiteProzent_, txtBreiteProzent_, lblHöheProzent_,
                                                      txtHöheProzent_, chkProzgleich_})
        w->setEnabled(percent && !running_);
    for (QWidget* w : std::initializer_list<QWidget*>{optPixel_, optProzent_, chkOriginaleÜberschreiben_, listeAlleBilder_})
        w->setEnabled(!running_);
    cmdAusführen_->setEnabled(!running_ && !pictures_.empty());
    cmdAbbrechen_->setText(t("Abbrechen", "Cancel"));
}

// Tells where the results go, with the name the first picture gets.
void ResizeWindow::updateTargetText() {
    if (chkOriginaleÜberschreiben_->isChecked()) {
        lblZiel_->setText(t("Die Originale werden durch die neuen Bilder ersetzt.",
                            "The originals are replaced by the new pictures."));
        return;
    }
    QString example;
    if (!pictures_.empty()) {
        const QFileInfo first(QString::fromStdString(pictures_.front()));
        const QString suffix = first.suffix().isEmpty() ? QString() : "." + first.suffix();
        example = ": " + first.completeBaseName() + QString::fromStdString(resizeAppendText(options())) + suffix;
    }
    lblZiel_->setText(QString(t("Die neuen Bilder kommen neben die Originale", "The new pictures go beside the originals")) +
                      example);
}

void ResizeWindow::run() {
    if (running_) return;
    const ResizeOptions o = options();
    const Language lang = language_;
    result_ = runWindowBatch<BatchCallbacks, BatchResult>(
        this, lblStatus_, progress_, cancel_, [this](bool busy) { running_ = busy; updateEnabled(); },
        [&](const BatchCallbacks& c) { return resizePictures(pictures_, o, prompter_, lang, c); });
    tellResult();
}

void ResizeWindow::tellResult() {
    const std::string count = std::to_string(result_.written.size());
    std::string text = result_.cancelled ? t("Abgebrochen. ", "Cancelled. ") : "";
    text += t("Geschriebene Bilder: ", "Pictures written: ") + count;
    if (result_.skipped > 0)
        text += std::string("\r") + t("Nicht lesbare Bilder: ", "Pictures that could not be read: ") +
                std::to_string(result_.skipped);
    prompter_.message(text, kButtonsOk | kIconInformation, "Brindlesee");
    // A complete run closes the window; after a cancel or a failure the user may try again.
    if (!result_.cancelled && result_.failed == 0 && result_.treated == static_cast<int>(pictures_.size()))
        accept();
}

// Escape, the window's close box and "Abbrechen" stop a run at the next
// picture instead of hiding a window that still works.
void ResizeWindow::reject() {
    if (running_) {
        cancel_ = true;
        cmdAbbrechen_->setText(t("Wird abgebrochen ...", "Cancelling ..."));
        return;
    }
    QDialog::reject();
}

}  // namespace brindle::studio
