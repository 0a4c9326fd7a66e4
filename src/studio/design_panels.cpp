#include "studio/design_panels.h"
#include "studio/panel_controls.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>
#include <tuple>

namespace brindle::studio {

namespace {

using panel::checked;
using panel::child;
using panel::pageLayout;
using panel::valueOf;

}  // namespace

DesignPanels::DesignPanels(Captions& captions, QWidget* parent) : QStackedWidget(parent), captions_(captions) {
    auto* start = newPage("Start", "Wählen Sie links im Baum ein Design aus. Seine Einstellungen erscheinen hier.",
                          "Choose a design in the tree on the left. Its settings appear here.");
    pageLayout(start)->addStretch(1);
    buildColourPanels();
    buildSharpnessPanels();
    buildShapePanels();
    buildFramePanels();
    buildGeneralPanel();
    setCurrentWidget(start);
}

QWidget* DesignPanels::newPage(const QString& name, const char* germanHint, const char* englishHint) {
    auto* page = new QWidget(this);
    page->setObjectName("frm" + name);
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(4, 4, 4, 4);
    auto* hint = new QLabel(page);
    hint->setObjectName("lbl" + name + "Hinweis");
    hint->setWordWrap(true);
    captions_.add(hint, germanHint, englishHint);
    layout->addWidget(hint);
    addWidget(page);
    return page;
}

void DesignPanels::finishPage(QWidget* page, const QString& name) {
    pageLayout(page)->addStretch(1);
    auto* row = new QHBoxLayout;
    auto* test = new QPushButton(page);
    test->setObjectName("cmd" + name + "Test");
    captions_.add(test, "Testen", "Test");
    auto* add = new QPushButton(page);
    add->setObjectName("cmd" + name + "Übern");
    captions_.add(add, "Zur Liste hinzufügen", "Add to the list");
    row->addWidget(test);
    row->addStretch(1);
    row->addWidget(add);
    pageLayout(page)->addLayout(row);
    connect(test, &QPushButton::clicked, this, &DesignPanels::testRequested);
    connect(add, &QPushButton::clicked, this, &DesignPanels::addRequested);
    for (auto* box : page->findChildren<QAbstractButton*>())
        if (box->isCheckable()) connect(box, &QAbstractButton::toggled, this, &DesignPanels::valuesChanged);
}

// A caption, a slider and a number box that follow each other.
QSpinBox* DesignPanels::addValue(QWidget* page, const QString& name, const char* german, const char* english,
                                 int minimum, int maximum, int value, int step) {
    auto* row = new QHBoxLayout;
    auto* label = new QLabel(page);
    label->setMinimumWidth(120);
    captions_.add(label, german, english);
    auto* slider = new QSlider(Qt::Horizontal, page);
    slider->setObjectName("sld" + name);
    slider->setRange(minimum, maximum);
    slider->setPageStep(step);
    slider->setValue(value);
    auto* box = new QSpinBox(page);
    box->setObjectName("txt" + name);
    box->setRange(minimum, maximum);
    box->setValue(value);
    box->setMinimumWidth(70);
    connect(slider, &QSlider::valueChanged, box, &QSpinBox::setValue);
    connect(box, &QSpinBox::valueChanged, slider, &QSlider::setValue);
    connect(box, &QSpinBox::valueChanged, this, &DesignPanels::valuesChanged);
    row->addWidget(label);
    row->addWidget(slider, 1);
    row->addWidget(box);
    pageLayout(page)->addLayout(row);
    return box;
}

// A slider whose value shows in a label beside it (the frame and button panels).
QSlider* DesignPanels::addLabelledSlider(QWidget* page, const QString& name, const char* german, const char* english,
                                         int minimum, int maximum, int value) {
    auto* row = new QHBoxLayout;
    auto* caption = new QLabel(page);
    caption->setMinimumWidth(120);
    captions_.add(caption, german, english);
    auto* slider = new QSlider(Qt::Horizontal, page);
    slider->setObjectName("sld" + name);
    slider->setRange(minimum, maximum);
    slider->setValue(value);
    auto* shown = new QLabel(QString::number(value), page);
    shown->setObjectName("lbl" + name);
    shown->setMinimumWidth(40);
    shown->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    connect(slider, &QSlider::valueChanged, shown, [shown](int v) { shown->setText(QString::number(v)); });
    connect(slider, &QSlider::valueChanged, this, &DesignPanels::valuesChanged);
    row->addWidget(caption);
    row->addWidget(slider, 1);
    row->addWidget(shown);
    pageLayout(page)->addLayout(row);
    return slider;
}

void DesignPanels::buildColourPanels() {
    QWidget* p = newPage("Kontrast", "Verstärkt oder mindert den Unterschied zwischen hellen und dunklen Stellen.",
                         "Raises or lowers the difference between light and dark parts.");
    addValue(p, "Kontrast", "Kontrast", "Contrast", -100, 100, 20);
    finishPage(p, "Kontrast");
    panels_["Kontrast"] = {p, [p] { return kontrastLine(valueOf(p, "txtKontrast")); }};

    p = newPage("Helligkeit", "Macht das Bild heller oder dunkler.", "Makes the picture lighter or darker.");
    addValue(p, "Brightness", "Helligkeit", "Brightness", -100, 100, 20);
    auto* exact = new QCheckBox(p);
    exact->setObjectName("chkMethode");
    captions_.add(exact, "Genaue Methode (nur bei der Stapelverarbeitung)", "Exact method (batch run only)");
    pageLayout(p)->addWidget(exact);
    finishPage(p, "Helligkeit");
    panels_["Helligkeit"] = {p, [p] { return helligkeitLine(valueOf(p, "txtBrightness"), checked(p, "chkMethode")); }};

    p = newPage("Sättigung", "Ändert die Farbsättigung; ohne Haken alle Farben, sonst nur die gewählten Farbtöne.",
                "Changes the colour saturation; all colours when nothing is ticked, else only the hues ticked.");
    addValue(p, "Color", "Sättigung in %", "Saturation in %", 0, 200, 120);
    for (auto [name, german, english] : {std::tuple{"chkRotColorInt", "Rottöne", "Red hues"},
                                         std::tuple{"chkGrünColorInt", "Grüntöne", "Green hues"},
                                         std::tuple{"chkBlauColorInt", "Blautöne", "Blue hues"}}) {
        auto* box = new QCheckBox(p);
        box->setObjectName(QString::fromUtf8(name));
        captions_.add(box, german, english);
        pageLayout(p)->addWidget(box);
    }
    finishPage(p, "Sättigung");
    panels_["Sättigung"] = {p, [p] {
                               return colorLine(valueOf(p, "txtColor"), checked(p, "chkRotColorInt"),
                                                checked(p, "chkGrünColorInt"), checked(p, "chkBlauColorInt"));
                           }};

    p = newPage("SchwarzWeiss", "Macht aus dem Bild ein Schwarzweiß-Foto in Graustufen.",
                "Turns the picture into a black and white photo in shades of grey.");
    finishPage(p, "SchwarzWeiss");
    panels_["SchwarzWeiss"] = {p, [] { return std::string(kGrayLine); }};
}

void DesignPanels::buildSharpnessPanels() {
    QWidget* p = newPage("Schärfen",
                         "Schärft die Kanten. Der Test zeigt eine feste Stärke, die Stapelverarbeitung nimmt den Wert.",
                         "Sharpens the edges. The test shows a fixed strength; the batch run takes the value.");
    addValue(p, "Schärfen", "Stärke", "Strength", 1, 20, 5, 2);
    finishPage(p, "Schärfen");
    panels_["Schärfen"] = {p, [p] { return schaerfenLine(valueOf(p, "txtSchärfen")); }};

    p = newPage("Weichzeichnen", "Zeichnet das Bild weich.", "Softens the picture.");
    addValue(p, "Weichz", "Stärke", "Strength", 1, 10, 3, 2);
    finishPage(p, "Weichzeichnen");
    panels_["Weichzeichnen"] = {p, [p] { return weichzLine(valueOf(p, "txtWeichz")); }};

    p = newPage("Blur", "Verwischt das Bild leicht.", "Blurs the picture slightly.");
    finishPage(p, "Blur");
    panels_["Blur"] = {p, [] { return std::string(kBlurLine); }};

    p = newPage("Störungen", "Streut zufällige Störungen über das Bild.", "Scatters random noise over the picture.");
    finishPage(p, "Störungen");
    panels_["Störungen"] = {p, [] { return std::string(kNoiseLine); }};

    p = newPage("Rauschen", "Entfernt Rauschen: Punkte, die von ihrer Umgebung abweichen, werden geglättet.",
                "Removes noise: dots that differ from their surroundings are smoothed.");
    addValue(p, "RedNoiseRadius", "Radius", "Radius", 0, 8, 4, 1);
    QSpinBox* lower = addValue(p, "RedNoiseSchwelle", "Untere Schwelle", "Lower threshold", 0, 255, 20);
    QSpinBox* upper = addValue(p, "RedNoiseSchwelleOben", "Obere Schwelle", "Upper threshold", 0, 255, 200);
    // The lower threshold never passes the upper one: moving one pushes the other.
    connect(lower, &QSpinBox::valueChanged, upper, [upper](int v) { if (upper->value() < v) upper->setValue(v); });
    connect(upper, &QSpinBox::valueChanged, lower, [lower](int v) { if (lower->value() > v) lower->setValue(v); });
    auto* methods = new QHBoxLayout;
    for (int m = 1; m <= 4; ++m) {
        auto* option = new QRadioButton(p);
        option->setObjectName(QString("OptRedNoiseMethode%1").arg(m));
        option->setChecked(m == 1);
        static const char* const german[] = {"Methode 1", "Methode 2", "Methode 3", "Methode 4"};
        static const char* const english[] = {"Method 1", "Method 2", "Method 3", "Method 4"};
        captions_.add(option, german[m - 1], english[m - 1]);
        methods->addWidget(option);
    }
    pageLayout(p)->addLayout(methods);
    finishPage(p, "Rauschen");
    panels_["Rauschen"] = {p, [p] {
                              int method = 1;
                              for (int m = 1; m <= 4; ++m)
                                  if (checked(p, QString("OptRedNoiseMethode%1").arg(m).toUtf8().constData())) method = m;
                              return redNoiseLine(valueOf(p, "txtRedNoiseRadius"), valueOf(p, "txtRedNoiseSchwelle"),
                                                  valueOf(p, "txtRedNoiseSchwelleOben"), method);
                          }};
}

bool DesignPanels::showPanel(const QString& key) {
    auto it = panels_.find(key);
    if (it == panels_.end()) return false;
    key_ = key;
    general_ = generalItem(key.toStdString());
    if (general_) chooseGeneralItem(*general_);
    setCurrentWidget(it->second.page);
    return true;
}

std::string DesignPanels::currentLine() const {
    auto it = panels_.find(key_);
    return it == panels_.end() ? std::string() : it->second.line();
}

// The general panel takes the item's labels, ranges and starting values.
void DesignPanels::chooseGeneralItem(const GeneralItem& item) {
    QWidget* p = panels_.at(key_).page;
    const GeneralSlider* sliders[] = {&item.slider1, &item.slider2};
    for (int i = 0; i < 2; ++i) {
        const GeneralSlider& s = *sliders[i];
        auto* label = p->findChild<QLabel*>(i == 0 ? "LblParameter1" : "lblParameter2");
        auto* slider = p->findChild<QSlider*>(QString("sldParameter%1").arg(i + 1));
        auto* box = p->findChild<QSpinBox*>(QString("txtParameter%1").arg(i + 1));
        const QSignalBlocker quietSlider(slider), quietBox(box);
        label->setText(trq(language_, s.labelGerman, s.labelEnglish));
        slider->setRange(s.minimum, s.maximum);
        slider->setPageStep(s.step);
        box->setRange(s.minimum, s.maximum);
        box->setSingleStep(std::max(1, s.step / 5));
        slider->setValue(s.value);
        box->setValue(s.value);
        label->setVisible(s.shown);
        slider->setVisible(s.shown);
        box->setVisible(s.shown);
    }
    tintRow_->setVisible(item.args == GeneralArgs::FirstSecondColour);
}

void DesignPanels::setLanguage(Language language) {
    language_ = language;
    showFrameFile();
    if (!general_) return;
    QWidget* p = panels_.at(key_).page;
    p->findChild<QLabel*>("LblParameter1")->setText(trq(language, general_->slider1.labelGerman, general_->slider1.labelEnglish));
    p->findChild<QLabel*>("lblParameter2")->setText(trq(language, general_->slider2.labelGerman, general_->slider2.labelEnglish));
}

void DesignPanels::showColour(QLabel* swatch, std::uint32_t colour) {
    const QColor c(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF);
    swatch->setStyleSheet(QString("background-color: %1; border: 1px solid #707070;").arg(c.name()));
}

void DesignPanels::setFrameColour(std::uint32_t colour) {
    frameColour_ = colour & 0x00FFFFFF;
    showColour(frameSwatch_, frameColour_);
    emit valuesChanged();
}

void DesignPanels::setTintColour(std::uint32_t colour) {
    tintColour_ = colour & 0x00FFFFFF;
    showColour(tintSwatch_, tintColour_);
    emit valuesChanged();
}

void DesignPanels::setFrameFile(const std::string& path) {
    frameFile_ = path;
    showFrameFile();
    emit valuesChanged();
}

void DesignPanels::showFrameFile() {
    frameFileLabel_->setText(frameFile_.empty()
                                 ? trq(language_, "Kein Hintergrundbild: der Rahmen hat die Farbe.",
                                       "No background picture: the frame takes the colour.")
                                 : QString::fromStdString(frameFile_));
}

}  // namespace brindle::studio
