#include "properties/text_dialog.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QFontDialog>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include "album/prompter.h"
#include "album/session.h"
#include "editor/frm_notepad.h"
#include "editor/qt_text_metrics.h"
#include "properties/colour_value.h"
#include "properties/property_dialogs.h"

namespace brindle::properties {

namespace {

QString qs(const std::string& s) { return QString::fromStdString(s); }

// A text box's words with CR LF line ends, as the album stores them; an
// unchanged box gives back what it got, whatever its line ends were.
std::string boxText(const QPlainTextEdit* box, const std::string& start) {
    const QString shown = box->toPlainText();
    if (shown == qs(start).replace("\r\n", "\n")) return start;
    return QString(shown).replace("\n", "\r\n").toStdString();
}

// A group of radio buttons in a column; the ids are the stored values.
QButtonGroup* radioColumn(QWidget* owner, QVBoxLayout* column, const char* name, const std::vector<QString>& texts) {
    auto* group = new QButtonGroup(owner);
    for (int i = 0; i < int(texts.size()); ++i) {
        auto* option = new QRadioButton(texts[std::size_t(i)]);
        option->setObjectName(QString("%1%2").arg(name).arg(i));
        group->addButton(option, i);
        column->addWidget(option);
    }
    return group;
}

}  // namespace

FrmFrageText::FrmFrageText(Language language, const TextProperties& start, Prompter& prompter, QWidget* parent)
    : QDialog(parent), language_(language), prompter_(prompter), start_(start), font_(start.font) {
    setObjectName("FrmFrageText");
    setWindowTitle(t("Texteigenschaften", "Text properties"));
    tabs_ = new QTabWidget;
    tabs_->addTab(textTab(), t("Text", "Text "));
    tabs_->addTab(linkTab(), t("Hyperlink", "Hyperlink "));
    tabs_->addTab(behaviourTab(), t("Verhalten", "Behavior "));
    tabs_->addTab(animationTab(), t("Animation", "Animation "));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Ok)->setObjectName("cmdOK");
    buttons->button(QDialogButtonBox::Ok)->setText(t("OK", "OK"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName("cmdAbbrechen");
    buttons->button(QDialogButtonBox::Cancel)->setText(t("Abbrechen", "Cancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs_);
    layout->addWidget(buttons);

    txtEingabe_->setPlainText(qs(start.text));
    txtHyperlink_->setText(qs(start.hyperlink));
    optLinkVerhalten_->button(int(start.link))->setChecked(true);
    optBearbeiten_->button(int(start.resize))->setChecked(true);
    chkUmbruchImWort_->setChecked(start.breakInWords);
    if (!start.tips.empty()) txtTippDatenbank_->setPlainText(qs(start.tips));
    chkTagestipp_->setChecked(start.tipOfTheDay);
    optTagestippEinzeilig_->button(start.tipWrapped ? 1 : 0)->setChecked(true);
    enableTips();
    showFont();
    resize(sizeHint().expandedTo(QSize(560, 400)));
    setMinimumSize(size());  // never smaller than at its start
}

QWidget* FrmFrageText::textTab() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    txtEingabe_ = new QPlainTextEdit;
    txtEingabe_->setObjectName("txtEingabe");
    layout->addWidget(txtEingabe_, 1);
    auto* row = new QHBoxLayout;
    lblSchrift_ = new QLabel;
    lblSchrift_->setObjectName("lblSchrift");
    lblSchrift_->setMinimumHeight(40);
    lblSchrift_->setFrameShape(QFrame::StyledPanel);
    lblSchrift_->setAutoFillBackground(true);
    auto* cmdSchrift = new QPushButton(t("Schriftart ...", "Font ..."));
    cmdSchrift->setObjectName("cmdSchrift");
    auto* cmdFarbe = new QPushButton(t("Schriftfarbe ...", "Font colour ..."));
    cmdFarbe->setObjectName("cmdFarbe");
    connect(cmdSchrift, &QPushButton::clicked, this, &FrmFrageText::chooseFont);
    connect(cmdFarbe, &QPushButton::clicked, this, &FrmFrageText::chooseColour);
    row->addWidget(lblSchrift_, 1);
    row->addWidget(cmdSchrift);
    row->addWidget(cmdFarbe);
    layout->addLayout(row);
    return page;
}

QWidget* FrmFrageText::linkTab() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(new QLabel(t("Ziel des Links (Seite, Datei oder Internetadresse):",
                                   "Link target (page, file or internet address):")));
    auto* row = new QHBoxLayout;
    txtHyperlink_ = new QLineEdit;
    txtHyperlink_->setObjectName("txtHyperlink");
    auto* cmdDatei = new QPushButton(t("Datei ...", "File ..."));
    cmdDatei->setObjectName("CmdDatei");
    connect(cmdDatei, &QPushButton::clicked, this, &FrmFrageText::chooseFile);
    row->addWidget(txtHyperlink_, 1);
    row->addWidget(cmdDatei);
    layout->addLayout(row);
    auto* targets = new QHBoxLayout;
    const std::pair<const char*, const char*> kTargets[] = {
        {"cmdLinkZurück", kLinkBack}, {"CmdLinkVor", kLinkForward}, {"cmdLinkInhalt", kLinkContents}};
    for (const auto& [name, target] : kTargets) {
        auto* button = new QPushButton(qs(target));
        button->setObjectName(name);
        connect(button, &QPushButton::clicked, this, [this, target = target] { txtHyperlink_->setText(qs(target)); });
        targets->addWidget(button);
    }
    targets->addStretch();
    layout->addLayout(targets);
    auto* box = new QGroupBox(t("Verhalten des Links", "Link behaviour"));
    auto* column = new QVBoxLayout(box);
    optLinkVerhalten_ = radioColumn(this, column, "optLinkVerhalten",
                                    {t("Neuen Link im selben Rahmen öffnen", "Open new link in the same Frame"),
                                     t("Neuen Link im ganzen Browserfenster öffnen", "Open new link in the browser"),
                                     t("Link in einem neuen Fenster öffnen", "Open link in a new window")});
    layout->addWidget(box);
    layout->addStretch();
    return page;
}

QWidget* FrmFrageText::behaviourTab() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* box = new QGroupBox(t("Beim Ändern der Größe", "When the box is resized"));
    auto* column = new QVBoxLayout(box);
    optBearbeiten_ = radioColumn(this, column, "OptBearbeiten",
                                 {t("Nur verschieben", "Only move"),
                                  t("Beim Ändern der Größe die Schriftgröße anpassen", "When resizing fond size adjust"),
                                  t("Beim Ändern der Größe die Zeilenumbrüche anpassen",
                                    "When resizing text breaks through adjust")});
    layout->addWidget(box);
    chkUmbruchImWort_ = new QCheckBox(t("Bei Bedarf einen Umbruch im Wort erlauben",
                                        "If you need permit any break in the word"));
    chkUmbruchImWort_->setObjectName("chkUmbruchImWort");
    layout->addWidget(chkUmbruchImWort_);
    layout->addStretch();
    return page;
}

QWidget* FrmFrageText::animationTab() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    chkTagestipp_ = new QCheckBox(t("Tipp des Tages anzeigen", "Show TIP of the day"));
    chkTagestipp_->setObjectName("chkTagestipp");
    connect(chkTagestipp_, &QCheckBox::toggled, this, &FrmFrageText::enableTips);
    layout->addWidget(chkTagestipp_);
    auto* column = new QVBoxLayout;
    column->setContentsMargins(24, 0, 0, 0);
    optTagestippEinzeilig_ = radioColumn(this, column, "optTagestippEinzeilig",
                                         {t("Text in einer Zeile", "Text in one line"),
                                          t("Umbruch bei der Breite des Starttextes",
                                            "Wrapping at the width of start text")});
    layout->addLayout(column);
    auto* label = new QLabel(t("Bitte geben Sie für jeden Kalendertag einen Tipp ein. Die Tipps werden durch ein "
                               "Semikolon ; getrennt.",
                               "Please input for each calendar day a tip. Every tip will separated with a semicolon ; "));
    label->setWordWrap(true);
    layout->addWidget(label);
    txtTippDatenbank_ = new QPlainTextEdit;
    txtTippDatenbank_->setObjectName("txtTippDatenbank");
    layout->addWidget(txtTippDatenbank_, 1);
    return page;
}

void FrmFrageText::enableTips() {
    for (QAbstractButton* b : optTagestippEinzeilig_->buttons()) b->setEnabled(chkTagestipp_->isChecked());
}

void FrmFrageText::setFont(const FontSpec& font) {
    font_ = font;
    showFont();
}

void FrmFrageText::showFont() {
    const int points = editor::fontSizeOf(font_);
    lblSchrift_->setText(QString("%1, %2 pt").arg(qs(editor::fontNameOf(font_))).arg(points));
    lblSchrift_->setFont(editor::qtFont(font_, std::min(points, 16)));
    QPalette palette = lblSchrift_->palette();
    const Rgb c = rgbOfColour(font_.color);
    const QColor colour(c.red, c.green, c.blue);
    palette.setColor(QPalette::WindowText, colour);
    // A light colour is shown on a dark ground so it can be read.
    palette.setColor(QPalette::Window, colour.lightness() > 160 ? QColor(0x40, 0x40, 0x40) : QColor(Qt::white));
    lblSchrift_->setPalette(palette);
}

void FrmFrageText::chooseFont() {
    bool ok = false;
    const QFont chosen = QFontDialog::getFont(&ok, editor::qtFont(font_, editor::fontSizeOf(font_)), this,
                                              t("Schriftart", "Font"));
    if (!ok) return;
    FontSpec f = font_;
    f.name = chosen.family().toStdString();
    f.size = chosen.pointSize() > 0 ? chosen.pointSize() : f.size;
    f.bold = chosen.bold() ? kTrue : kFalse;
    f.italic = chosen.italic() ? kTrue : kFalse;
    f.underline = chosen.underline() ? kTrue : kFalse;
    setFont(f);
}

void FrmFrageText::chooseColour() {
    const Rgb c = rgbOfColour(font_.color);
    const QColor chosen = QColorDialog::getColor(QColor(c.red, c.green, c.blue), this, t("Schriftfarbe", "Font colour"));
    if (!chosen.isValid()) return;
    FontSpec f = font_;
    f.color = colourOfRgb({chosen.red(), chosen.green(), chosen.blue()});
    setFont(f);
}

void FrmFrageText::chooseFile() {
    FileDialog d;
    d.title = t("Ziel des Links", "Link target");
    d.filter = t("Alle Dateien|*", "All files|*");
    const std::string file = prompter_.openFile(d);
    if (!file.empty()) txtHyperlink_->setText(qs(file));
}

TextProperties FrmFrageText::properties() const {
    TextProperties p = start_;
    p.text = boxText(txtEingabe_, start_.text);
    p.hyperlink = txtHyperlink_->text().toStdString();
    p.link = static_cast<LinkBehaviour>(std::max(0, optLinkVerhalten_->checkedId()));
    p.resize = static_cast<ResizeMode>(std::max(0, optBearbeiten_->checkedId()));
    p.breakInWords = chkUmbruchImWort_->isChecked();
    p.tipOfTheDay = chkTagestipp_->isChecked();
    p.tipWrapped = optTagestippEinzeilig_->checkedId() == 1;
    p.tips = boxText(txtTippDatenbank_, start_.tips);
    p.font = font_;
    return p;
}

bool showTextProperties(DialogContext& context, int index) {
    editor::PageDocument& doc = context.pad.document();
    const editor::ElementRef ref{editor::Kind::Text, index};
    if (!editor::isLive(doc.page(), ref)) return false;
    FrmFrageText dialog(context.session.language(), textPropertiesOf(doc.page().texts[index]), context.prompter,
                        context.parent);
    if (dialog.exec() != QDialog::Accepted) return false;
    const TextProperties chosen = dialog.properties();
    doc.changeElement(ref, [&] { applyTextProperties(doc.page().texts[index], chosen, doc.textMetrics()); });
    context.pad.canvas()->update();
    return true;
}

// The search box has nothing of its own to set but its place.
bool showSearchProperties(DialogContext&, int) { return false; }

}  // namespace brindle::properties
