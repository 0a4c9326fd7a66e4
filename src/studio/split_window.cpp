#include "studio/split_window.h"

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

#include "editor/qimage_dib.h"
#include "studio/tile_grid_preview.h"
#include "studio/tool_io.h"
#include "studio/tool_run.h"

namespace brindle::studio {
namespace {

// The picture for the preview, quietly: a picture that cannot be read is
// told when it is split.
bool readQuietly(const std::string& path, cDIBSection& dib, Language lang) {
    ToolMessage ignored;
    return readToolPicture(path, dib, lang, ignored);
}

QString fileName(const std::string& path) { return QFileInfo(QString::fromStdString(path)).fileName(); }

}  // namespace

SplitWindow::SplitWindow(std::vector<std::string> pictures, Prompter& prompter, Language language, QWidget* parent)
    : QDialog(parent), pictures_(std::move(pictures)), prompter_(prompter), language_(language) {
    setObjectName("frmBildteilen");
    build();
    connectFields();
    setLanguage(language);
    if (!pictures_.empty()) listeAlleBilder_->setCurrentRow(0);
    updateEnabled();
}

void SplitWindow::build() {
    auto* top = new QVBoxLayout(this);
    auto* body = new QHBoxLayout;
    auto* left = new QVBoxLayout;
    listeAlleBilder_ = new QListWidget(this);
    listeAlleBilder_->setObjectName("listeAlleBilder");
    for (const std::string& p : pictures_) {
        auto* item = new QListWidgetItem(fileName(p), listeAlleBilder_);
        item->setToolTip(QDir::toNativeSeparators(QString::fromStdString(p)));
    }
    listeAlleBilder_->setMaximumWidth(190);
    preview_ = new TileGridPreview(this);
    preview_->setObjectName("picVorschau");
    left->addWidget(listeAlleBilder_);
    body->addLayout(left);
    body->addWidget(preview_, 1);

    auto* right = new QVBoxLayout;
    right->addWidget(buildNumberBox());
    right->addWidget(buildOrderBox());
    lblTeile_ = new QLabel(this);
    lblTeile_->setObjectName("lblTeile");
    lblTeile_->setWordWrap(true);
    lblTeile_->setMinimumWidth(200);
    right->addWidget(lblTeile_);
    right->addStretch(1);
    body->addLayout(right);
    top->addLayout(body, 1);

    lblStatus_ = new QLabel(this);
    lblStatus_->setObjectName("lblStatus");
    lblStatus_->setTextFormat(Qt::PlainText);
    progress_ = new QProgressBar(this);
    progress_->setObjectName("progress");
    progress_->setRange(0, std::max<int>(1, static_cast<int>(pictures_.size())));
    progress_->setValue(0);
    top->addWidget(lblStatus_);
    top->addWidget(progress_);
    auto* buttons = new QHBoxLayout;
    cmdSpeichern_ = new QPushButton(this);
    cmdSpeichern_->setObjectName("cmdSpeichern");
    cmdSpeichern_->setDefault(true);
    cmdAbbrechen_ = new QPushButton(this);
    cmdAbbrechen_->setObjectName("cmdAbbrechen");
    buttons->addStretch(1);
    buttons->addWidget(cmdSpeichern_);
    buttons->addWidget(cmdAbbrechen_);
    top->addLayout(buttons);
    resize(820, 460);
}

QGroupBox* SplitWindow::buildNumberBox() {
    fraAnzahl_ = new QGroupBox(this);
    fraAnzahl_->setObjectName("fraAnzahl");
    auto* grid = new QGridLayout(fraAnzahl_);
    txtZeilen_ = new QSpinBox(fraAnzahl_);
    txtZeilen_->setObjectName("txtZeilen");
    txtSpalten_ = new QSpinBox(fraAnzahl_);
    txtSpalten_->setObjectName("txtSpalten");
    for (QSpinBox* box : {txtZeilen_, txtSpalten_}) {
        box->setRange(1, 999);
        box->setValue(2);
    }
    lblZeilen_ = new QLabel(fraAnzahl_);
    lblZeilen_->setBuddy(txtZeilen_);
    lblSpalten_ = new QLabel(fraAnzahl_);
    lblSpalten_->setBuddy(txtSpalten_);
    grid->addWidget(lblZeilen_, 0, 0);
    grid->addWidget(txtZeilen_, 0, 1);
    grid->addWidget(lblSpalten_, 1, 0);
    grid->addWidget(txtSpalten_, 1, 1);
    return fraAnzahl_;
}

QGroupBox* SplitWindow::buildOrderBox() {
    optReihenfolge_ = new QGroupBox(this);
    optReihenfolge_->setObjectName("optReihenfolge");
    auto* box = new QVBoxLayout(optReihenfolge_);
    optZeilenweise_ = new QRadioButton(optReihenfolge_);
    optZeilenweise_->setObjectName("optReihenfolge0");
    optZeilenweise_->setChecked(true);
    optSpaltenweise_ = new QRadioButton(optReihenfolge_);
    optSpaltenweise_->setObjectName("optReihenfolge1");
    box->addWidget(optZeilenweise_);
    box->addWidget(optSpaltenweise_);
    return optReihenfolge_;
}

void SplitWindow::connectFields() {
    connect(listeAlleBilder_, &QListWidget::currentRowChanged, this, &SplitWindow::showPicture);
    for (QSpinBox* box : {txtZeilen_, txtSpalten_})
        connect(box, &QSpinBox::valueChanged, this, [this] { updateGrid(); });
    connect(optZeilenweise_, &QRadioButton::toggled, this, [this] { updateGrid(); });
    connect(cmdSpeichern_, &QPushButton::clicked, this, &SplitWindow::save);
    connect(cmdAbbrechen_, &QPushButton::clicked, this, &SplitWindow::reject);
}

void SplitWindow::setLanguage(Language language) {
    language_ = language;
    setWindowTitle(t("Bilder teilen", "Split Images"));
    fraAnzahl_->setTitle(t("Anzahl", "Number"));
    lblZeilen_->setText(t("&Zeilen: ", "&Rows: "));
    lblSpalten_->setText(t("S&palten: ", "&Columns: "));
    optReihenfolge_->setTitle(t("Reihenfolge", "Order"));
    optZeilenweise_->setText(t("Zeile für Zeile", "Row by row"));
    optSpaltenweise_->setText(t("Spalte für Spalte", "Column by column"));
    cmdSpeichern_->setText(t("&Speichern", "&Save"));
    cmdAbbrechen_->setText(t("Abbrechen", "Cancel"));
    showPicture(listeAlleBilder_->currentRow());
}

SplitOptions SplitWindow::options() const {
    SplitOptions o;
    o.rows = txtZeilen_->value();
    o.columns = txtSpalten_->value();
    o.order = optSpaltenweise_->isChecked() ? TileOrder::ColumnByColumn : TileOrder::RowByRow;
    return o;
}

void SplitWindow::showPicture(int index) {
    shownSize_ = QSize();
    cDIBSection dib;
    if (index < 0 || index >= static_cast<int>(pictures_.size())) {
        preview_->setPlaceholder(t("Kein Bild gewählt", "No picture chosen"));
    } else if (!readQuietly(pictures_[static_cast<std::size_t>(index)], dib, language_)) {
        preview_->setPlaceholder(t("Das Bild kann nicht gelesen werden.", "The picture cannot be read."));
    } else {
        shownSize_ = QSize(dib.Width(), dib.Height());
        const QImage image = editor::imageOfDib(dib);
        preview_->setPicture(image.width() > 720 || image.height() > 720
                                 ? image.scaled(720, 720, Qt::KeepAspectRatio, Qt::SmoothTransformation)
                                 : image,
                             shownSize_);
    }
    updateGrid();
}

// The grid on the preview and the tiles the shown picture gives.
void SplitWindow::updateGrid() {
    const SplitOptions o = options();
    preview_->setGrid(o.rows, o.columns, o.order);
    const int index = listeAlleBilder_->currentRow();
    if (shownSize_.isEmpty() || index < 0) {
        lblTeile_->clear();
        return;
    }
    const std::string& picture = pictures_[static_cast<std::size_t>(index)];
    if (o.columns > shownSize_.width() || o.rows > shownSize_.height()) {
        lblTeile_->setText(QString(t("Das Bild ist zu klein für %1 x %2 Teile.", "The picture is too small for %1 x %2 tiles."))
                               .arg(o.rows)
                               .arg(o.columns));
        return;
    }
    const QString size = QString("%1 x %2").arg(shownSize_.width() / o.columns).arg(shownSize_.height() / o.rows);
    lblTeile_->setText(QString(t("%1 Teile von %2 Pixel:\n%3 bis %4", "%1 tiles of %2 pixels:\n%3 to %4"))
                           .arg(o.rows * o.columns)
                           .arg(size, fileName(tilePath(picture, 1)), fileName(tilePath(picture, o.rows * o.columns))));
}

void SplitWindow::updateEnabled() {
    for (QWidget* w : std::initializer_list<QWidget*>{fraAnzahl_, optReihenfolge_, listeAlleBilder_})
        w->setEnabled(!running_);
    cmdSpeichern_->setEnabled(!running_ && !pictures_.empty());
    cmdAbbrechen_->setText(t("Abbrechen", "Cancel"));
}

void SplitWindow::save() {
    if (running_) return;
    const SplitOptions o = options();
    const Language lang = language_;
    result_ = runWindowBatch<SplitCallbacks, SplitResult>(
        this, lblStatus_, progress_, cancel_, [this](bool busy) { running_ = busy; updateEnabled(); },
        [&](const SplitCallbacks& c) { return splitPictures(pictures_, o, prompter_, lang, c); });
    tellResult();
}

void SplitWindow::tellResult() {
    std::string text = result_.cancelled ? t("Abgebrochen. ", "Cancelled. ") : "";
    text += t("Geschriebene Teilbilder: ", "Tiles written: ") + std::to_string(result_.written.size());
    prompter_.message(text, kButtonsOk | kIconInformation, "Brindlesee");
    if (!result_.cancelled && result_.failed == 0) accept();
}

// Escape, the close box and "Abbrechen" stop a run after the current picture.
void SplitWindow::reject() {
    if (running_) {
        cancel_ = true;
        cmdAbbrechen_->setText(t("Wird abgebrochen ...", "Cancelling ..."));
        return;
    }
    QDialog::reject();
}

}  // namespace brindle::studio
