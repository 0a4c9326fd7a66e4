// The four tabs of the picture dialog. Every control starts from the
// model's fields and writes back into them as it changes.
#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QSlider>
#include <QSpinBox>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "properties/picture_dialog.h"

namespace brindle::properties {

namespace {

QPushButton* button(const QString& text, const char* name, QWidget* parent) {
    auto* b = new QPushButton(text, parent);
    b->setObjectName(name);
    b->setAutoDefault(false);
    return b;
}

QLabel* previewLabel(const char* name, QSize size, QWidget* parent) {
    auto* l = new QLabel(parent);
    l->setObjectName(name);
    l->setAlignment(Qt::AlignCenter);
    l->setMinimumSize(size);
    l->setFrameShape(QFrame::StyledPanel);
    l->setStyleSheet("QLabel { background: #3a3d42; }");
    return l;
}

}  // namespace

QSlider* PictureDialog::addSlider(QGridLayout* grid, int row, const char* name, const char* twin, const QString& label,
                                  const SliderRange& range, int* value, bool twinIsBox, void (PictureDialog::*changed)()) {
    QWidget* parent = grid->parentWidget();
    auto* caption = new QLabel(label, parent);
    auto* slider = new QSlider(Qt::Horizontal, parent);
    slider->setObjectName(name);
    slider->setRange(range.minimum, range.maximum);
    slider->setValue(range.clamp(*value));
    slider->setMinimumWidth(180);
    caption->setBuddy(slider);
    grid->addWidget(caption, row, 0);
    grid->addWidget(slider, row, 1);
    if (twinIsBox) {
        auto* box = new QSpinBox(parent);
        box->setObjectName(twin);
        box->setRange(range.minimum, range.maximum);
        box->setValue(slider->value());
        grid->addWidget(box, row, 2);
        connect(slider, &QSlider::valueChanged, box, &QSpinBox::setValue);
        connect(box, &QSpinBox::valueChanged, slider, &QSlider::setValue);
    } else {
        auto* shown = new QLabel(QString::number(slider->value()), parent);
        shown->setObjectName(twin);
        shown->setMinimumWidth(shown->fontMetrics().horizontalAdvance("0000"));
        shown->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        grid->addWidget(shown, row, 2);
        connect(slider, &QSlider::valueChanged, shown, [shown](int v) { shown->setNum(v); });
    }
    connect(slider, &QSlider::valueChanged, this, [this, value, changed](int v) {
        *value = v;
        (this->*changed)();
    });
    return slider;
}

QWidget* PictureDialog::buildPictureTab() {
    auto* page = new QWidget;
    auto* layout = new QHBoxLayout(page);
    picPreview_ = previewLabel("picBild", QSize(300, 220), page);
    layout->addWidget(picPreview_, 1);

    auto* right = new QVBoxLayout;
    auto* fileBox = new QGroupBox(t("Bilddatei", "Picture file"), page);
    auto* fileLayout = new QVBoxLayout(fileBox);
    txtPfad_ = new QLineEdit(QString::fromStdString(f_.path), fileBox);
    txtPfad_->setObjectName("txtPfad");
    txtPfad_->setReadOnly(true);
    txtPfad_->setMinimumWidth(260);
    fileLayout->addWidget(txtPfad_);
    auto* fileRow = new QHBoxLayout;
    lblGroesse_ = new QLabel(fileBox);
    lblGroesse_->setObjectName("lblGroesse");
    fileRow->addWidget(lblGroesse_, 1);
    QPushButton* choose = button(t("Bild wählen ...", "Choose picture ..."), "cmdBildDatei", fileBox);
    fileRow->addWidget(choose);
    fileLayout->addLayout(fileRow);
    right->addWidget(fileBox);
    connect(choose, &QPushButton::clicked, this, &PictureDialog::choosePicture);

    auto* sizeBox = new QGroupBox(t("Größe und Drehung", "Size and rotation"), page);
    auto* sizeLayout = new QGridLayout(sizeBox);
    chkProportional_ = new QCheckBox(t("Seitenverhältnis beibehalten", "Keep aspect ratio"), sizeBox);
    chkProportional_->setObjectName("ChkProportional");
    chkProportional_->setChecked(f_.proportional);
    chkOriginal_ = new QCheckBox(t("Originalgröße", "Original size"), sizeBox);
    chkOriginal_->setObjectName("chkOriginalgröße");
    chkOriginal_->setChecked(f_.originalSize);
    txtWinkel_ = new QLineEdit(QString::fromStdString(f_.angle), sizeBox);
    txtWinkel_->setObjectName("txtWinkel");
    txtWinkel_->setValidator(new QRegularExpressionValidator(QRegularExpression("-?[0-9]*"), txtWinkel_));
    txtWinkel_->setMaximumWidth(80);
    auto* angleLabel = new QLabel(t("Drehwinkel (Grad):", "Rotation angle (degrees):"), sizeBox);
    angleLabel->setBuddy(txtWinkel_);
    sizeLayout->addWidget(chkProportional_, 0, 0, 1, 2);
    sizeLayout->addWidget(chkOriginal_, 1, 0, 1, 2);
    sizeLayout->addWidget(angleLabel, 2, 0);
    sizeLayout->addWidget(txtWinkel_, 2, 1, Qt::AlignLeft);
    right->addWidget(sizeBox);
    right->addStretch(1);
    layout->addLayout(right);
    connect(chkProportional_, &QCheckBox::toggled, this, [this](bool on) { f_.proportional = on; });
    connect(chkOriginal_, &QCheckBox::toggled, this, [this](bool on) { f_.originalSize = on; });
    connect(txtWinkel_, &QLineEdit::textChanged, this, [this](const QString& s) { f_.angle = s.toStdString(); });
    return page;
}

QWidget* PictureDialog::buildLinkTab() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* targetBox = new QGroupBox(t("Linkziel", "Link target"), page);
    auto* targetLayout = new QGridLayout(targetBox);
    txtHyperlink_ = new QLineEdit(QString::fromStdString(f_.hyperlink), targetBox);
    txtHyperlink_->setObjectName("txtHyperlink");
    txtHyperlink_->setPlaceholderText(t("Adresse, Datei oder Sprungziel", "Address, file or jump target"));
    targetLayout->addWidget(txtHyperlink_, 0, 0, 1, 3);
    QPushButton* file = button(t("Datei ...", "File ..."), "CmdDatei", targetBox);
    targetLayout->addWidget(file, 0, 3);
    connect(file, &QPushButton::clicked, this, &PictureDialog::chooseLinkFile);
    const std::tuple<const char*, const char*, const char*, const char*> targets[] = {
        {"cmdLinkZurück", "Vorige Seite", "Previous page", kLinkBack},
        {"CmdLinkVor", "Nächste Seite", "Next page", kLinkForward},
        {"cmdLinkInhalt", "Inhaltsseite", "Contents page", kLinkContents},
        {"cmdVollbild", "Bild in voller Größe", "Picture in full size", kLinkFullView},
    };
    int column = 0;
    for (const auto& [name, de, en, target] : targets) {
        QPushButton* b = button(t(de, en), name, targetBox);
        b->setToolTip(QString::fromUtf8(target));
        targetLayout->addWidget(b, 1, column++);
        connect(b, &QPushButton::clicked, this, [this, target] { txtHyperlink_->setText(QString::fromUtf8(target)); });
    }
    connect(txtHyperlink_, &QLineEdit::textChanged, this, [this](const QString& s) { f_.hyperlink = s.toStdString(); });
    layout->addWidget(targetBox);

    auto* behaviourBox = new QGroupBox(t("Verhalten", "Behaviour"), page);
    auto* behaviourLayout = new QVBoxLayout(behaviourBox);
    optLink_ = new QButtonGroup(this);
    const std::pair<const char*, const char*> options[] = {
        {"Link im selben Frame öffnen", "Open link in the same frame"},
        {"Link im neuen Browser öffnen", "Open link in the new browser"},
        {"Link in einem neuen Fenster öffnen", "Open link in a new window"},
    };
    for (int i = 0; i < 3; ++i) {
        auto* r = new QRadioButton(t(options[i].first, options[i].second), behaviourBox);
        r->setObjectName(QString("optLinkVerhalten%1").arg(i));
        r->setChecked(f_.linkBehaviour == i);
        optLink_->addButton(r, i);
        behaviourLayout->addWidget(r);
    }
    connect(optLink_, &QButtonGroup::idClicked, this, [this](int id) { f_.linkBehaviour = id; });
    layout->addWidget(behaviourBox);
    auto* hint = new QLabel(t("Vorige Seite, nächste Seite und Inhaltsseite führen im HTML-Album zu diesen Seiten. "
                              "\"Bild in voller Größe\" zeigt dieses Bild allein in seiner ganzen Größe.",
                              "Previous page, next page and contents page lead to those pages of the HTML album. "
                              "\"Picture in full size\" shows this picture alone at its whole size."),
                            page);
    hint->setWordWrap(true);
    hint->setEnabled(false);
    layout->addWidget(hint);
    layout->addStretch(1);
    return page;
}

QWidget* PictureDialog::buildFrameTab() {
    auto* page = new QWidget;
    auto* layout = new QHBoxLayout(page);
    auto* left = new QVBoxLayout;
    chkRahmen_ = new QCheckBox(t("   Diesem Bild dynamisch einen Rahmen erzeugen",
                                 "   Create to this picture a frame dynamically"), page);
    chkRahmen_->setObjectName("chkRahmen");
    chkRahmen_->setChecked(f_.frame.on);
    left->addWidget(chkRahmen_);

    auto* settings = new QGroupBox(t("Rahmen", "Frame"), page);
    auto* grid = new QGridLayout(settings);
    frameSliders_ = {
        addSlider(grid, 0, "sldRahmenDicke", "lblRahmenDicke", t("Breite", "Width"), kFrameWidthRange,
                  &f_.frame.width, false, &PictureDialog::updateFramePreview),
        addSlider(grid, 1, "sldRahmenLicht", "lblRahmenLicht", t("Licht", "Light"), kFrameLightRange,
                  &f_.frame.light, false, &PictureDialog::updateFramePreview),
        addSlider(grid, 2, "sldRahmenSchatten", "lblRahmenSchatten", t("Schatten", "Shadow"), kFrameShadowRange,
                  &f_.frame.shadow, false, &PictureDialog::updateFramePreview),
    };
    cmdColor_ = button(t("Farbe ...", "Colour ..."), "CmdColor", settings);
    grid->addWidget(new QLabel(t("Farbe", "Colour"), settings), 3, 0);
    grid->addWidget(cmdColor_, 3, 1, 1, 2, Qt::AlignLeft);
    connect(cmdColor_, &QPushButton::clicked, this, &PictureDialog::chooseColour);
    left->addWidget(settings);

    auto* textureBox = new QGroupBox(t("Textur", "Texture"), page);
    auto* textureLayout = new QGridLayout(textureBox);
    chkAusHintergrund_ = new QCheckBox(t("Rahmen wie Seitenhintergrund", "Frame as page background"), textureBox);
    chkAusHintergrund_->setObjectName("chkRahmenAusSeitenHintergrund");
    chkAusHintergrund_->setChecked(f_.frameFromBackground);
    txtTextur_ = new QLineEdit(textureBox);
    txtTextur_->setObjectName("txtRahmentextur");
    txtTextur_->setReadOnly(true);
    txtTextur_->setPlaceholderText(t("keine: der Rahmen hat seine Farbe", "none: the frame has its colour"));
    QPushButton* search = button(t("Textur wählen ...", "Choose texture ..."), "cmdSuchenRahmentextur", textureBox);
    QPushButton* clear = button(t("Keine Textur", "No texture"), "cmdKeineRahmentextur", textureBox);
    textureLayout->addWidget(chkAusHintergrund_, 0, 0, 1, 2);
    textureLayout->addWidget(txtTextur_, 1, 0, 1, 2);
    textureLayout->addWidget(search, 2, 0);
    textureLayout->addWidget(clear, 2, 1);
    left->addWidget(textureBox);
    left->addStretch(1);
    layout->addLayout(left);
    connect(search, &QPushButton::clicked, this, &PictureDialog::chooseTexture);
    connect(clear, &QPushButton::clicked, this, [this] {
        model_.setTexture("");
        updateFramePreview();
    });
    connect(chkAusHintergrund_, &QCheckBox::toggled, this, [this](bool on) {
        model_.setFrameFromBackground(on);
        updateFramePreview();
    });
    connect(chkRahmen_, &QCheckBox::toggled, this, [this](bool on) {
        f_.frame.on = on;
        updateFramePreview();
    });

    framePreview_ = previewLabel("picRahmenVorschau", QSize(320, 240), page);
    layout->addWidget(framePreview_, 1);
    return page;
}

QWidget* PictureDialog::buildAnimationTab() {
    auto* page = new QWidget;
    auto* layout = new QHBoxLayout(page);
    auto* left = new QVBoxLayout;
    auto* kinds = new QGroupBox(t("Art", "Kind"), page);
    auto* kindsLayout = new QVBoxLayout(kinds);
    optAnimation_ = new QButtonGroup(this);
    const std::tuple<const char*, const char*, const char*> options[] = {
        {"optKeineAnimation", "Keine Animation", "No animation"},
        {"optLake", "See", "Lake"},
        {"optRain", "Regen", "Rain"},
        {"optSnow", "Schnee", "Snow"},
        {"optUnderWater", "Unterwasser", "Underwater"},
        {"optPano", "Panoramastreifen", "Panorama strip"},
        {"optAnimatedGif", "Animiertes GIF", "Animated GIF"},
    };
    int id = 0;
    for (const auto& [name, de, en] : options) {
        auto* r = new QRadioButton(t(de, en), kinds);
        r->setObjectName(name);
        r->setChecked(static_cast<int>(f_.animation.kind) == id);
        optAnimation_->addButton(r, id++);
        kindsLayout->addWidget(r);
    }
    left->addWidget(kinds);

    AnimationSliders& s = f_.animation.sliders;
    animationPages_ = new QStackedWidget(page);
    auto pageOf = [&](const QString& title) {
        auto* box = new QGroupBox(title, animationPages_);
        auto* grid = new QGridLayout(box);
        grid->setRowStretch(4, 1);
        animationPages_->addWidget(box);
        return grid;
    };
    auto* none = new QLabel(t("Das Bild steht still.", "The picture stands still."), animationPages_);
    none->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    animationPages_->addWidget(none);
    const auto changed = &PictureDialog::scheduleAnimationPreview;
    QGridLayout* g = pageOf(t("See", "Lake"));
    addSlider(g, 0, "sldLakeSpeed", "txtLakeSpeed", t("Geschwindigkeit", "Speed"), kLakeSpeedRange, &s.lakeSpeed, true, changed);
    addSlider(g, 1, "sldLakeGrenze", "txtLakeGrenze", t("Wasserlinie (%)", "Water line (%)"), kLakeGrenzeRange,
              &s.lakeGrenze, true, changed);
    g = pageOf(t("Regen und Schnee", "Rain and snow"));
    addSlider(g, 0, "SldRainSnowSpeed", "txtRainSnowSpeed", t("Geschwindigkeit", "Speed"), kRainSnowSpeedRange,
              &s.rainSnowSpeed, true, changed);
    addSlider(g, 1, "sldRainSnowAnzahl", "txtRainSnowAnzahl", t("Dichte", "Density"), kRainSnowAnzahlRange,
              &s.rainSnowAnzahl, true, changed);
    g = pageOf(t("Unterwasser", "Underwater"));
    addSlider(g, 0, "sldUnderwaterSpeedDelay", "txtUnderwaterSpeedDelay", t("Verzögerung", "Delay"),
              kUnderwaterDelayRange, &s.underwaterDelay, true, changed);
    addSlider(g, 1, "sldUnderwaterSpeedFrames", "txtUnderwaterSpeedFrames", t("Bilder", "Frames"),
              kUnderwaterFramesRange, &s.underwaterFrames, true, changed);
    addSlider(g, 2, "sldUnderwaterWavehigh", "txtUnderwaterWavehigh", t("Wellenhöhe", "Wave height"),
              kUnderwaterWaveHighRange, &s.underwaterWaveHigh, true, changed);
    addSlider(g, 3, "sldUnderwaterWaveWidth", "txtUnderwaterWaveWidth", t("Wellenbreite", "Wave width"),
              kUnderwaterWaveWidthRange, &s.underwaterWaveWidth, true, changed);
    g = pageOf(t("Panoramastreifen", "Panorama strip"));
    addSlider(g, 0, "sldPanoSpeedDelay", "txtPanoSpeedDelay", t("Verzögerung", "Delay"), kPanoDelayRange,
              &s.panoDelay, true, changed);
    addSlider(g, 1, "sldPanoStartSpeed", "txtPanoStartSpeed", t("Schrittweite", "Start speed"), kPanoStartSpeedRange,
              &s.panoStartSpeed, true, changed);
    auto* gif = new QLabel(t("Das Bild ist ein animiertes GIF und läuft so, wie es ist.",
                             "The picture is an animated GIF and plays as it is."),
                           animationPages_);
    gif->setWordWrap(true);
    gif->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    animationPages_->addWidget(gif);
    left->addWidget(animationPages_, 1);
    layout->addLayout(left);

    animationBox_ = new QWidget(page);
    animationBox_->setObjectName("picAnimationVorschau");
    animationBox_->setMinimumSize(320, 240);
    animationBox_->setStyleSheet("#picAnimationVorschau { background: #3a3d42; }");
    animationBox_->setAttribute(Qt::WA_StyledBackground);
    animationBoxLayout_ = new QVBoxLayout(animationBox_);
    animationBoxLayout_->setAlignment(Qt::AlignCenter);
    layout->addWidget(animationBox_, 1);
    connect(optAnimation_, &QButtonGroup::idToggled, this, [this](int which, bool on) {
        if (!on) return;
        f_.animation.kind = static_cast<AnimationKind>(which);
        showAnimationPage();
        scheduleAnimationPreview();
    });
    return page;
}

}  // namespace brindle::properties
