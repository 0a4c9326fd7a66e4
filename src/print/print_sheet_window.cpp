#include "print/print_sheet_window.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPageSetupDialog>
#include <QPainter>
#include <QPrintDialog>
#include <QPushButton>
#include <QVBoxLayout>

#include "print/print_file.h"
#include "print/sheet_painter.h"
#include "print/sheet_preview.h"

namespace brindle::print {
namespace {

// Thumbnails in the preview need no more pixels than this on their long side.
constexpr int kThumbnailSide = 400;
// A picture's natural size in millimetres, as a screen shows it.
constexpr double kMmPerPixel = 25.4 / 96.0;

struct Command {
    const char* name;
    const char* german;
    const char* english;
    void (PrintSheetWindow::*run)();
};

constexpr Command kCommands[] = {
    {"cmdDrehen", "Drehen", "Rotate", &PrintSheetWindow::cmdDrehen_Click},
    {"cmdRandlos", "Randlos", "Randlos", &PrintSheetWindow::cmdRandlos_Click},
    {"cmdZentrieren", "Zentrieren", "Centering", &PrintSheetWindow::cmdZentrieren_Click},
    {"cmdNeuBerechnen", "Neu berechnen", "Arrange", &PrintSheetWindow::cmdNeuBerechnen_Click},
    {"cmdDruckerEigenschaften", "Eigenschaften", "Properties",
     &PrintSheetWindow::cmdDruckerEigenschaften_Click},
    {"cmdSave", "Speichern", "Save", &PrintSheetWindow::cmdSave_Click},
    {"cmdLoad", "Laden", "Load", &PrintSheetWindow::cmdLoad_Click},
    {"cmdDrucken", "Drucken", "Printing", &PrintSheetWindow::cmdDrucken_Click},
};

struct ValueText {
    const char* german;
    const char* english;
};
constexpr ValueText kValueTexts[] = {{"Breite: ", "Width: "},       {"Höhe: ", "Height: "},
                                     {"Breite (%):", "Beam (%):"}, {"Höhe (%):", "Height (%):"},
                                     {"Links:", "Links"},          {"Oben:", "Above:"}};

std::vector<SizeF> naturalSizes(const std::vector<QImage>& images) {
    std::vector<SizeF> sizes;
    for (const QImage& img : images) sizes.push_back({img.width() * kMmPerPixel, img.height() * kMmPerPixel});
    return sizes;
}

std::vector<QImage> loadUpright(const std::vector<std::string>& paths, std::string& error) {
    std::vector<QImage> images;
    if (!loadSheetPictures(paths, {}, images, error)) return {};
    return images;
}

}  // namespace

PrintSheetWindow::PrintSheetWindow(std::vector<std::string> pictures, Prompter& prompter, Language lang,
                                   QWidget* parent)
    : QWidget(parent),
      pictures_(std::move(pictures)),
      prompter_(prompter),
      lang_(lang),
      printer_(QPrinter::HighResolution),
      layout_({210, 297}, {}),
      rows_{{{Field::Width, "BreiteAbs"},
             {Field::Height, "HöheAbs"},
             {Field::WidthPercent, "BreiteZoom"},
             {Field::HeightPercent, "HöheZoom"},
             {Field::Left, "Links"},
             {Field::Top, "Oben"}}} {
    setObjectName("frmDruckenMulti");
    printDialog = [this](QPrinter& p) { return QPrintDialog(&p, this).exec() == QDialog::Accepted; };
    propertiesDialog = [this](QPrinter& p) { return QPageSetupDialog(&p, this).exec() == QDialog::Accepted; };
    printer_.setFullPage(true);

    auto* row = new QHBoxLayout(this);
    preview_ = new SheetPreview(layout_, this);
    row->addWidget(preview_, 1);
    row->addWidget(buildControls());
    connect(preview_, &SheetPreview::focusChanged, this, [this](int) { refresh(); });
    connect(preview_, &SheetPreview::moved, this, [this] { refresh(); });
    retranslate();

    status("Bitte warten ...", "Please wait ...");
    status("Laden der Bilder...", "Loading Pictures...");
    std::string error;
    std::vector<QImage> images = loadUpright(pictures_, error);
    if (!error.empty()) {
        prompter_.message(error, kButtonsOk | kIconExclamation, tr2("Drucken", "Print"));
        pictures_.clear();
    }
    status("Vorschau...", "Preview...");
    layout_ = SheetLayout({210, 297}, naturalSizes(images));
    takeSheetFromPrinter();
    layout_.arrange();
    std::vector<QImage> thumbnails;
    for (const QImage& img : images)
        thumbnails.push_back(img.scaled(kThumbnailSide, kThumbnailSide, Qt::KeepAspectRatio,
                                        Qt::SmoothTransformation));
    preview_->setImages(std::move(thumbnails));
    refresh();
    status("Fertig...", "Finish...");
}

PrintSheetWindow::~PrintSheetWindow() = default;

QWidget* PrintSheetWindow::buildControls() {
    auto* box = new QWidget(this);
    auto* col = new QVBoxLayout(box);
    lblPrinter_ = new QLabel(box);
    lblPrinter_->setObjectName("lblAktiverDrucker");
    col->addWidget(lblPrinter_);
    auto check = [&](QCheckBox*& c, const char* name, bool on) {
        c = new QCheckBox(box);
        c->setObjectName(QString::fromUtf8(name));
        c->setChecked(on);
        connect(c, &QCheckBox::toggled, this, [this] { readOptions(); });
        col->addWidget(c);
    };
    check(chkSameSize_, "chkAlleBilderGleicheGröße", false);
    check(chkDistortion_, "chkVerzerrungZulassen", false);
    check(chkTakeAll_, "chkAllBilerMitNehmen", false);
    check(chkFit_, "chkAnSeiteAnpassen", true);
    col->addWidget(buildValues());
    auto* grid = new QGridLayout;
    for (std::size_t i = 0; i < std::size(kCommands); ++i) {
        auto* b = new QPushButton(box);
        b->setObjectName(kCommands[i].name);
        const auto run = kCommands[i].run;
        connect(b, &QPushButton::clicked, this, [this, run] { (this->*run)(); });
        commands_.push_back(b);
        grid->addWidget(b, static_cast<int>(i / 2), static_cast<int>(i % 2));
    }
    auto* cancel = new QPushButton(box);
    cancel->setObjectName("cmdAbbrechen");
    connect(cancel, &QPushButton::clicked, this, &QWidget::close);
    commands_.push_back(cancel);
    grid->addWidget(cancel, static_cast<int>(std::size(kCommands) / 2), 1);
    col->addLayout(grid);
    lblStatus_ = new QLabel(box);
    lblStatus_->setObjectName("lblStatus");
    col->addWidget(lblStatus_);
    col->addStretch(1);
    return box;
}

// A label, the value and four step buttons (large and small, up and down) per row.
QWidget* PrintSheetWindow::buildValues() {
    auto* box = new QWidget(this);
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(0, 0, 0, 0);
    for (std::size_t r = 0; r < rows_.size(); ++r) {
        ValueRow& row = rows_[r];
        const QString base = QString::fromUtf8(row.name);
        row.label = new QLabel(box);
        row.edit = new QLineEdit(box);
        row.edit->setObjectName("txt" + base);
        row.edit->setMaximumWidth(80);
        connect(row.edit, &QLineEdit::editingFinished, this, [this, r] { valueTyped(rows_[r]); });
        grid->addWidget(row.label, static_cast<int>(r), 0);
        grid->addWidget(row.edit, static_cast<int>(r), 1);
        const struct {
            const char* suffix;
            const char* text;
            bool up, small;
        } steps[] = {{"Minus", "--", false, false}, {"MinusSmall", "-", false, true},
                     {"PlusSmall", "+", true, true}, {"Plus", "++", true, false}};
        int column = 2;
        for (const auto& s : steps) {
            auto* b = new QPushButton(s.text, box);
            b->setObjectName("cmd" + base + s.suffix);
            b->setMaximumWidth(32);
            const Field field = row.field;
            const bool up = s.up, small = s.small;
            connect(b, &QPushButton::clicked, this, [this, field, up, small] {
                layout_.step(static_cast<std::size_t>(preview_->focus()), field, up, small);
                refresh();
            });
            grid->addWidget(b, static_cast<int>(r), column++);
        }
    }
    return box;
}

void PrintSheetWindow::setLanguage(Language lang) {
    lang_ = lang;
    retranslate();
}

void PrintSheetWindow::retranslate() {
    setWindowTitle(QString::fromStdString(tr2("Drucken", "Print")));
    const auto text = [this](const char* g, const char* e) { return QString::fromUtf8(german() ? g : e); };
    chkSameSize_->setText(text("Alle Bilder gleiche Größe", "Picture all the same size"));
    chkDistortion_->setText(text("Verzerrung zulassen", "Distortion allow"));
    chkTakeAll_->setText(text("Alle Bilder mitnehmen", "Take all the pictures"));
    chkFit_->setText(text("An Seite anpassen", "Fit to page"));
    for (std::size_t r = 0; r < rows_.size(); ++r)
        rows_[r].label->setText(text(kValueTexts[r].german, kValueTexts[r].english));
    for (std::size_t i = 0; i < std::size(kCommands); ++i)
        commands_[i]->setText(text(kCommands[i].german, kCommands[i].english));
    commands_.back()->setText(text("Abbrechen", "Cancel"));
    const QString name = printer_.outputFormat() == QPrinter::PdfFormat || printer_.printerName().isEmpty()
                             ? text("PDF-Datei", "PDF file")
                             : printer_.printerName();
    lblPrinter_->setText(text("Drucker: ", "Printer: ") + name);
    if (status_.first) status(status_.first, status_.second);
}

void PrintSheetWindow::status(const char* de, const char* en) {
    status_ = {de, en};
    lblStatus_->setText(QString::fromUtf8(german() ? de : en));
}

void PrintSheetWindow::takeSheetFromPrinter() {
    const QRectF full = printer_.pageLayout().fullRect(QPageLayout::Millimeter);
    layout_.setSheet({full.width(), full.height()});
}

void PrintSheetWindow::readOptions() {
    layout_.options = {chkSameSize_->isChecked(), chkDistortion_->isChecked(), chkTakeAll_->isChecked(),
                       chkFit_->isChecked()};
}

void PrintSheetWindow::refresh() {
    const bool any = layout_.count() > 0;
    for (ValueRow& row : rows_) {
        row.edit->setEnabled(any);
        row.edit->setText(any ? QString::number(layout_.value(static_cast<std::size_t>(preview_->focus()),
                                                              row.field), 'f', 2)
                              : QString());
    }
    preview_->update();
}

void PrintSheetWindow::valueTyped(ValueRow& row) {
    if (layout_.count() == 0) return;
    QString t = row.edit->text().trimmed();
    t.replace(',', '.');
    bool ok = false;
    const double v = t.toDouble(&ok);
    if (ok) layout_.setValue(static_cast<std::size_t>(preview_->focus()), row.field, v);
    refresh();
}

void PrintSheetWindow::cmdDrehen_Click() {
    if (layout_.count() == 0) return;
    layout_.rotate(static_cast<std::size_t>(preview_->focus()));
    refresh();
}

void PrintSheetWindow::cmdRandlos_Click() { layout_.borderless(); refresh(); }
void PrintSheetWindow::cmdZentrieren_Click() { layout_.centre(); refresh(); }
void PrintSheetWindow::cmdNeuBerechnen_Click() { layout_.arrange(); refresh(); }

void PrintSheetWindow::cmdDruckerEigenschaften_Click() {
    if (!propertiesDialog(printer_)) return;
    printer_.setFullPage(true);
    takeSheetFromPrinter();
    retranslate();
    refresh();
}

void PrintSheetWindow::cmdDrucken_Click() {
    if (layout_.count() == 0 || !printDialog(printer_)) return;
    retranslate();
    if (printTo(printer_)) status("Fertig...", "Finish...");
}

bool PrintSheetWindow::printTo(QPrinter& target) {
    std::string error;
    std::vector<QImage> images;
    bool ok = loadSheetPictures(pictures_, layout_.boxes(), images, error);
    QPainter painter;
    if (ok && !painter.begin(&target)) {
        ok = false;
        error = tr2("Der Drucker kann nicht beginnen.", "The printer cannot start.");
    }
    if (ok) {
        paintSheet(painter, target.resolution() / 25.4, layout_.boxes(), images);
        ok = painter.end();
        if (!ok) error = tr2("Der Druck ist fehlgeschlagen.", "Printing failed.");
    }
    if (!ok) prompter_.message(error, kButtonsOk | kIconExclamation, tr2("Drucken", "Print"));
    return ok;
}

bool PrintSheetWindow::printToPdf(const QString& path) {
    QPrinter pdf(QPrinter::HighResolution);
    pdf.setOutputFormat(QPrinter::PdfFormat);
    pdf.setOutputFileName(path);
    pdf.setPageLayout(printer_.pageLayout());
    pdf.setFullPage(true);
    return printTo(pdf);
}

void PrintSheetWindow::cmdSave_Click() {
    FileDialog d;
    d.title = tr2("Wähle Datei zum Speichern der Druckvorlage", "Choose the file to save the print layout in");
    d.filter = tr2("Alle Dateien (*.*)|*.*|Druckvorlage (*.bsp)|*.bsp", "All files (*.*)|*.*|Print layout (*.bsp)|*.bsp");
    d.filterIndex = 2;
    const std::string path = prompter_.saveFile(d);
    if (path.empty()) return;
    std::string error;
    if (!saveLayoutFile(path, layout_.boxes(), error, lang_))
        prompter_.message(error, kButtonsOk | kIconExclamation, tr2("Speichern", "Save"));
}

void PrintSheetWindow::cmdLoad_Click() {
    FileDialog d;
    d.title = tr2("Wähle Datei zum Öffnen der Druckvorlage", "Choose the print layout to open");
    d.filter = tr2("Alle Dateien (*.*)|*.*|Druckvorlage (*.bsp)|*.bsp", "All files (*.*)|*.*|Print layout (*.bsp)|*.bsp");
    d.filterIndex = 2;
    const std::string path = prompter_.openFile(d);
    if (path.empty()) return;
    std::string error;
    std::vector<Box> boxes;
    if (!loadLayoutFile(path, layout_.count(), boxes, error, lang_)) {
        prompter_.message(error, kButtonsOk | kIconExclamation, tr2("Laden", "Load"));
        return;
    }
    layout_.setBoxes(boxes);
    refresh();
}

}  // namespace brindle::print
