// The panels that move pixels or draw frames, and the general panel.
#include <QCheckBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>

#include "studio/design_panels.h"
#include "studio/panel_controls.h"

namespace brindle::studio {

namespace {

using panel::checked;
using panel::child;
using panel::pageLayout;
using panel::valueOf;

QRadioButton* option(QWidget* page, Captions& captions, const char* name, const char* german, const char* english,
                     bool on) {
    auto* button = new QRadioButton(page);
    button->setObjectName(QString::fromUtf8(name));
    button->setChecked(on);
    captions.add(button, german, english);
    pageLayout(page)->addWidget(button);
    return button;
}

QCheckBox* check(QWidget* page, Captions& captions, const char* name, const char* german, const char* english) {
    auto* box = new QCheckBox(page);
    box->setObjectName(QString::fromUtf8(name));
    captions.add(box, german, english);
    pageLayout(page)->addWidget(box);
    return box;
}

}  // namespace

void DesignPanels::buildShapePanels() {
    QWidget* p = newPage("Ripple", "Legt Wellen über das Bild, senkrecht und waagerecht.",
                         "Lays ripples over the picture, vertical and horizontal.");
    addValue(p, "Ripple", "Senkrecht", "Vertical", 0, 50, 5, 5);
    addValue(p, "RippleVert", "Waagerecht", "Horizontal", 0, 50, 5, 5);
    finishPage(p, "Ripple");
    panels_["Ripple"] = {p, [p] { return rippleLine(valueOf(p, "txtRipple"), valueOf(p, "txtRippleVert")); }};

    p = newPage("Wave", "Wellen wie auf einer Wasserfläche; der Regler wählt die Phase.",
                "Waves as on water; the slider chooses the phase.");
    addLabelledSlider(p, "Wave", "Phase", "Phase", 0, 11, 3);
    p->findChild<QSlider*>("sldWave")->setObjectName("SldWave");
    check(p, captions_, "chkWaveBildHalb", "Bild auf halbe Höhe stauchen", "Squeeze the picture to half its height");
    QCheckBox* animate = check(p, captions_, "chkWaveAnimation", "Wellen im Test bewegen", "Animate the waves in the test");
    finishPage(p, "Wave");
    connect(animate, &QCheckBox::toggled, this, &DesignPanels::waveAnimation);
    panels_["Wave"] = {p, [p] { return waveLine(valueOf(p, "SldWave"), checked(p, "chkWaveBildHalb")); }};

    p = newPage("Emboss", "Prägt das Bild wie ein Relief.", "Embosses the picture like a relief.");
    finishPage(p, "Emboss");
    panels_["Emboss"] = {p, [] { return std::string(kEmbossLine); }};

    p = newPage("Spiegeln", "Spiegelt das Bild.", "Mirrors the picture.");
    option(p, captions_, "optHorizontal", "Waagerecht (links und rechts tauschen)", "Horizontally (swap left and right)",
           true);
    option(p, captions_, "optVertikal", "Senkrecht (oben und unten tauschen)", "Vertically (swap top and bottom)", false);
    finishPage(p, "Spiegeln");
    panels_["Spiegeln"] = {p, [p] { return spiegelnLine(checked(p, "optHorizontal")); }};

    p = newPage("Drehen", "Dreht das Bild um 90 Grad.", "Turns the picture by 90 degrees.");
    option(p, captions_, "opt90GradLinks", "90° nach links", "90° to the left", false);
    option(p, captions_, "opt90GradRechts", "90° nach rechts", "90° to the right", true);
    finishPage(p, "Drehen");
    panels_["Drehen"] = {p, [p] { return drehenLine(checked(p, "opt90GradRechts")); }};

    p = newPage("Kachel", "Legt das Bild gespiegelt zweimal zwei Mal nebeneinander.",
                "Lays the picture mirrored two by two times side by side.");
    option(p, captions_, "optKachelMethode", "Gespiegelte Kacheln", "Mirrored tiles", true);
    check(p, captions_, "chkKachelGrößeBeibehalten", "Größe beibehalten", "Keep the size");
    finishPage(p, "Kachel");
    panels_["Kachel"] = {p, [p] { return kachelLine(0, checked(p, "chkKachelGrößeBeibehalten")); }};

    p = newPage("Größe", "Ändert die Bildgröße. Wirkt nur bei der Stapelverarbeitung, nicht im Test.",
                "Changes the picture size. Works in the batch run only, not in the test.");
    option(p, captions_, "optGrößePixel", "In Pixel", "In pixels", true);
    addValue(p, "BreitePixel", "Breite (Pixel)", "Width (pixels)", 1, 20000, 800, 100);
    addValue(p, "HöhePixel", "Höhe (Pixel)", "Height (pixels)", 1, 20000, 600, 100);
    option(p, captions_, "optGrößeProzent", "In Prozent", "In percent", false);
    addValue(p, "BreitePozent", "Breite (%)", "Width (%)", 1, 400, 50);
    addValue(p, "HöheProzent", "Höhe (%)", "Height (%)", 1, 400, 50);
    finishPage(p, "Größe");
    panels_["Größe"] = {p, [p] {
                           return groesseLine(valueOf(p, "txtBreitePixel"), valueOf(p, "txtHöhePixel"),
                                              valueOf(p, "txtBreitePozent"), valueOf(p, "txtHöheProzent"),
                                              checked(p, "optGrößeProzent"));
                       }};
}

void DesignPanels::buildFramePanels() {
    QWidget* p = newPage("Button", "Lässt das Bild wie eine erhabene Schaltfläche aussehen.",
                         "Makes the picture look like a raised button.");
    addLabelledSlider(p, "ButtonLicht", "Licht", "Light", 0, 255, 120);
    addLabelledSlider(p, "ButtonSchatten", "Schatten", "Shadow", 0, 255, 120);
    addLabelledSlider(p, "ButtonDicke", "Dicke", "Thickness", 1, 100, 12);
    finishPage(p, "Button");
    panels_["Button"] = {p, [p] {
                            return buttonLine(valueOf(p, "sldButtonLicht"), valueOf(p, "sldButtonSchatten"),
                                              valueOf(p, "sldButtonDicke"));
                        }};

    p = newPage("Rahmen", "Zeichnet einen Rahmen in einer Farbe oder aus einem Hintergrundbild um das Bild.",
                "Draws a frame in a colour or from a background picture around the picture.");
    addLabelledSlider(p, "RahmenLicht", "Licht", "Light", 0, 255, 50);
    addLabelledSlider(p, "RahmenSchatten", "Schatten", "Shadow", 0, 255, 50);
    addLabelledSlider(p, "RahmenDicke", "Dicke", "Thickness", 1, 200, 20);
    auto* colourRow = new QHBoxLayout;
    auto* colour = new QPushButton(p);
    colour->setObjectName("cmdRahmenFarbe");
    captions_.add(colour, "Rahmenfarbe ...", "Frame colour ...");
    frameSwatch_ = new QLabel(p);
    frameSwatch_->setObjectName("lblRahmenFarbe");
    frameSwatch_->setFixedSize(48, 22);
    colourRow->addWidget(colour);
    colourRow->addWidget(frameSwatch_);
    colourRow->addStretch(1);
    pageLayout(p)->addLayout(colourRow);
    auto* fileRow = new QHBoxLayout;
    auto* file = new QPushButton(p);
    file->setObjectName("cmdRahmenDatei");
    captions_.add(file, "Hintergrundbild ...", "Background picture ...");
    auto* noFile = new QPushButton(p);
    noFile->setObjectName("cmdRahmenOhneDatei");
    captions_.add(noFile, "Ohne Bild", "No picture");
    fileRow->addWidget(file);
    fileRow->addWidget(noFile);
    fileRow->addStretch(1);
    pageLayout(p)->addLayout(fileRow);
    frameFileLabel_ = new QLabel(p);
    frameFileLabel_->setObjectName("lblRahmenDatei");
    frameFileLabel_->setWordWrap(true);
    pageLayout(p)->addWidget(frameFileLabel_);
    finishPage(p, "Rahmen");
    connect(colour, &QPushButton::clicked, this, &DesignPanels::chooseFrameColour);
    connect(file, &QPushButton::clicked, this, &DesignPanels::chooseFrameFile);
    connect(noFile, &QPushButton::clicked, this, [this] { setFrameFile({}); });
    showColour(frameSwatch_, frameColour_);
    panels_["Rahmen"] = {p, [this, p] {
                            return rahmenLine(valueOf(p, "sldRahmenLicht"), valueOf(p, "sldRahmenSchatten"),
                                              valueOf(p, "sldRahmenDicke"), frameColour_, frameFile_);
                        }};
}

void DesignPanels::buildGeneralPanel() {
    QWidget* p = newPage("Allgemein", "", "");
    p->findChild<QLabel*>("lblAllgemeinHinweis")->setObjectName("lblAllgemeinName");
    for (int i = 1; i <= 2; ++i) {
        auto* row = new QHBoxLayout;
        auto* label = new QLabel(p);
        label->setObjectName(i == 1 ? "LblParameter1" : "lblParameter2");
        label->setMinimumWidth(120);
        auto* slider = new QSlider(Qt::Horizontal, p);
        slider->setObjectName(QString("sldParameter%1").arg(i));
        auto* box = new QSpinBox(p);
        box->setObjectName(QString("txtParameter%1").arg(i));
        box->setMinimumWidth(70);
        connect(slider, &QSlider::valueChanged, box, &QSpinBox::setValue);
        connect(box, &QSpinBox::valueChanged, slider, &QSlider::setValue);
        connect(box, &QSpinBox::valueChanged, this, &DesignPanels::valuesChanged);
        row->addWidget(label);
        row->addWidget(slider, 1);
        row->addWidget(box);
        pageLayout(p)->addLayout(row);
    }
    tintRow_ = new QWidget(p);
    auto* tintLayout = new QHBoxLayout(tintRow_);
    tintLayout->setContentsMargins(0, 0, 0, 0);
    auto* tint = new QPushButton(tintRow_);
    tint->setObjectName("cmdAllgemeinFarbe");
    captions_.add(tint, "Farbe ...", "Colour ...");
    tintSwatch_ = new QLabel(tintRow_);
    tintSwatch_->setObjectName("lblAllgemeinFarbe");
    tintSwatch_->setFixedSize(48, 22);
    tintLayout->addWidget(tint);
    tintLayout->addWidget(tintSwatch_);
    tintLayout->addStretch(1);
    pageLayout(p)->addWidget(tintRow_);
    connect(tint, &QPushButton::clicked, this, &DesignPanels::chooseTintColour);
    showColour(tintSwatch_, tintColour_);
    finishPage(p, "Allgemein");
    for (const GeneralItem& item : generalItems()) {
        panels_[QString::fromUtf8(item.name)] = {p, [this, p] {
                                                     if (!general_) return std::string();
                                                     return generalLine(*general_, valueOf(p, "txtParameter1"),
                                                                        valueOf(p, "txtParameter2"), tintColour_);
                                                 }};
    }
}

}  // namespace brindle::studio
