// frmWizzard: the window, its five step panels and the buttons between them.
#include "shell/wizard_window.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLinearGradient>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QStackedWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "album/paths.h"
#include "editor/effect_widgets.h"

namespace brindle::shell {

namespace {

QLabel* heading(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    QFont f = label->font();
    f.setBold(true);
    f.setPointSizeF(f.pointSizeF() * 1.15);
    label->setFont(f);
    label->setWordWrap(true);
    label->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    return label;
}

QLabel* previewBox(const QString& name, QSize size, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setFixedSize(size);
    label->setAlignment(Qt::AlignCenter);
    label->setFrameShape(QFrame::StyledPanel);
    label->setStyleSheet("background: #f4f4f4;");
    return label;
}

constexpr QSize kWelcomeSize(420, 240);

QImage welcomePicture() {
    QImage img(kWelcomeSize, QImage::Format_RGB32);
    QPainter p(&img);
    const int h = img.height(), w = img.width();
    QLinearGradient sky(0, 0, 0, h / 2);
    sky.setColorAt(0, QColor(0x6F, 0xA8, 0xDC));
    sky.setColorAt(1, QColor(0xF2, 0xD3, 0xA2));
    p.fillRect(img.rect(), sky);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0xF6, 0xE2, 0x9A));
    p.drawEllipse(QPointF(w * 0.74, h * 0.22), h * 0.07, h * 0.07);
    p.setBrush(QColor(0x55, 0x7A, 0x4A));
    p.drawEllipse(QPointF(w * 0.25, h * 0.56), w * 0.45, h * 0.2);
    p.setBrush(QColor(0x3C, 0x5E, 0x3A));
    p.drawEllipse(QPointF(w * 0.85, h * 0.58), w * 0.4, h * 0.18);
    return img;
}

}  // namespace

FrmWizzard::FrmWizzard(std::string programDirectory, std::string picturesDirectory, Language lang,
                       Prompter& prompter, SettingsStore& settings, QWidget* parent)
    : QDialog(parent), programDirectory_(std::move(programDirectory)), lang_(lang), prompter_(prompter),
      settings_(settings) {
    setObjectName("frmWizzard");
    setWindowTitle("Brindlesee Wizzard");
    designs_ = wizard::listDesigns(programDirectory_);
    folder_ = wizard::defaultTargetDirectory(picturesDirectory);

    auto* layout = new QVBoxLayout(this);
    steps_ = new QStackedWidget(this);
    steps_->addWidget(buildStartStep());
    steps_->addWidget(buildDesignStep());
    steps_->addWidget(buildPagesStep());
    steps_->addWidget(buildFrameStep());
    steps_->addWidget(buildFolderStep());
    layout->addWidget(steps_, 1);
    auto* line = new QFrame(this);
    line->setFrameShape(QFrame::HLine);
    layout->addWidget(line);
    auto* bar = new QWidget(this);
    buildButtons(bar);
    layout->addWidget(bar);

    cmdSeiteHinzufuegen();  // the first page, "WSeite1"
    showDesign();
    updateFrameControls();
    showStep();
    resize(760, 540);
}

bool FrmWizzard::hiddenAtStart(SettingsStore& settings) {
    return settings.get(kSettingsApp, kWizardSection, kWizardHiddenKey) == "1";
}

// ---------------------------------------------------------------- steps

QWidget* FrmWizzard::buildStartStep() {
    auto* w = new QWidget;
    w->setObjectName("Frame1");
    auto* v = new QVBoxLayout(w);
    v->addWidget(heading(t("Willkommen bei Brindlesee!", "Welcome to Brindlesee!"), w));
    v->addSpacing(12);
    startGroup_ = new QButtonGroup(w);
    const QString texts[] = {t("Brindlesee &normal starten!", "Start Brindlesee re&gular!"),
                             t("Brindlesee mit dem zuletzt geöffneten &Album starten!",
                               "Start Brindlesee with the recently &opened album!"),
                             t("Mit Hilfe des Wizzards ein neues Album &erstellen!",
                               "Create with the help of the &wizard a new album!")};
    const char* names[] = {"optStartNormal", "optStartZuletzt", "optStartWizzard"};
    for (int i = 0; i < 3; ++i) {
        auto* b = new QRadioButton(texts[i], w);
        b->setObjectName(names[i]);
        startGroup_->addButton(b, i);
        v->addWidget(b);
    }
    startGroup_->button(2)->setChecked(true);
    v->addSpacing(16);
    // The welcome picture: hills over a lake that ripples.
    if (QWidget* lake = editor::createEffectWidget(properties::machLake(3, 50), welcomePicture(), w)) {
        lake->setObjectName("uscEffectLake1");
        lake->setFixedSize(kWelcomeSize);
        v->addWidget(lake, 0, Qt::AlignHCenter);
    }
    v->addStretch(1);
    chkNichtAnzeigen_ = new QCheckBox(t("  &Dieses Fenster nicht mehr anzeigen", "  Don't show this window no &longer"), w);
    chkNichtAnzeigen_->setObjectName("chkNichtAnzeigen");
    chkNichtAnzeigen_->setChecked(hiddenAtStart(settings_));
    v->addWidget(chkNichtAnzeigen_);
    connect(startGroup_, &QButtonGroup::idClicked, this, [this] { showStep(); });
    return w;
}

QWidget* FrmWizzard::buildDesignStep() {
    auto* w = new QWidget;
    w->setObjectName("Frame2");
    auto* v = new QVBoxLayout(w);
    lblDesign_ = heading({}, w);
    lblDesign_->setObjectName("lblDesign");
    v->addWidget(lblDesign_);
    auto* row = new QHBoxLayout;
    cmdAlbumZurueck_ = new QPushButton("<", w);
    cmdAlbumZurueck_->setObjectName("cmdAlbumZurück");
    cmdAlbumVor_ = new QPushButton(">", w);
    cmdAlbumVor_->setObjectName("cmdAlbumVor");
    for (QPushButton* b : {cmdAlbumZurueck_, cmdAlbumVor_}) b->setFixedWidth(40);
    image2_ = previewBox("Image2", QSize(560, 360), w);
    row->addStretch(1);
    row->addWidget(cmdAlbumZurueck_);
    row->addWidget(image2_);
    row->addWidget(cmdAlbumVor_);
    row->addStretch(1);
    v->addLayout(row);
    v->addStretch(1);
    connect(cmdAlbumZurueck_, &QPushButton::clicked, this, [this] {
        --designIndex_;
        showDesign();
    });
    connect(cmdAlbumVor_, &QPushButton::clicked, this, [this] {
        ++designIndex_;
        showDesign();
    });
    return w;
}

QWidget* FrmWizzard::buildPagesStep() {
    auto* w = new QWidget;
    w->setObjectName("Frame3");
    auto* grid = new QGridLayout(w);
    grid->addWidget(heading(t("Fügen Sie Ihrem Album Seiten und Bilder hinzu.", "Add pages and pictures to your album."), w),
                    0, 0, 1, 2);
    treeView1_ = new QTreeWidget(w);
    treeView1_->setObjectName("TreeView1");
    treeView1_->setHeaderHidden(true);
    auto* root = new QTreeWidgetItem(treeView1_, {"Album"});
    root->setData(0, Qt::UserRole, "AlbumZu");
    root->setExpanded(true);
    grid->addWidget(treeView1_, 1, 0);
    listView1_ = previewBox("ListView1", QSize(300, 240), w);
    auto* right = new QVBoxLayout;
    right->addWidget(listView1_);
    chkVoransicht_ = new QCheckBox(t("&Vorschau", "Pre&view"), w);
    chkVoransicht_->setObjectName("chkVoransicht");
    chkVoransicht_->setChecked(true);
    right->addWidget(chkVoransicht_);
    right->addStretch(1);
    grid->addLayout(right, 1, 1);
    auto* buttons = new QHBoxLayout;
    auto* addPage = new QPushButton(t("&Seite hinzufügen", "Add &Page"), w);
    addPage->setObjectName("cmdSeiteHinzufügen");
    auto* addPicture = new QPushButton(t("&Bild hinzufügen", "Add P&icture"), w);
    addPicture->setObjectName("cmdBildHinzufügen");
    cmdBildLoeschen_ = new QPushButton(t("Bild &löschen", "&Delete Picture"), w);
    cmdBildLoeschen_->setObjectName("cmdBildLöschen");
    for (QPushButton* b : {addPage, addPicture, cmdBildLoeschen_}) buttons->addWidget(b);
    buttons->addStretch(1);
    grid->addLayout(buttons, 2, 0, 1, 2);
    grid->setColumnStretch(0, 1);
    connect(addPage, &QPushButton::clicked, this, [this] { cmdSeiteHinzufuegen(); });
    connect(addPicture, &QPushButton::clicked, this, [this] { cmdBildHinzufuegen(); });
    connect(cmdBildLoeschen_, &QPushButton::clicked, this, [this] { cmdBildLoeschen(); });
    connect(treeView1_, &QTreeWidget::currentItemChanged, this, [this] { showPicturePreview(); });
    connect(chkVoransicht_, &QCheckBox::toggled, this, [this] { showPicturePreview(); });
    return w;
}

QWidget* FrmWizzard::buildFrameStep() {
    auto* w = new QWidget;
    w->setObjectName("Frame4");
    auto* grid = new QGridLayout(w);
    grid->addWidget(heading(t("Sollen alle Bilder einen Bilderrahmen bekommen?:", "Should all pictures get a picture frame?:"), w),
                    0, 0, 1, 3);
    optRahmenJa_ = new QRadioButton(t("&Ja", "&Yes"), w);
    optRahmenJa_->setObjectName("optBilderRahmen");
    optRahmenNein_ = new QRadioButton(t("&Nein.", "N&o."), w);
    optRahmenNein_->setObjectName("optBilderRahmenNein");
    optRahmenNein_->setChecked(true);
    auto* yesNo = new QHBoxLayout;
    yesNo->addWidget(optRahmenJa_);
    yesNo->addWidget(optRahmenNein_);
    yesNo->addStretch(1);
    grid->addLayout(yesNo, 1, 0, 1, 3);
    grid->addWidget(new QLabel(t("Rahmen: Licht und Breite", "Frame: light and width"), w), 2, 0, 1, 2);
    const QString names[] = {t("Breite", "Width"), t("Licht", "Light"), t("Schatten", "Shadow")};
    const char* labelNames[] = {"lblRahmenDicke", "lblRahmenLicht", "lblRahmenSchatten"};
    const properties::SliderRange ranges[] = {properties::kFrameWidthRange, properties::kFrameLightRange,
                                              properties::kFrameShadowRange};
    for (int i = 0; i < 3; ++i) {
        grid->addWidget(new QLabel(names[i], w), 3 + i, 0);
        auto* s = new QSlider(Qt::Horizontal, w);
        s->setObjectName(QString("sldRahmen%1").arg(i));
        s->setRange(ranges[i].minimum, ranges[i].maximum);
        s->setValue(ranges[i].start);
        s->setMinimumWidth(180);
        auto* value = new QLabel(QString::number(ranges[i].start), w);
        value->setObjectName(labelNames[i]);
        value->setMinimumWidth(30);
        grid->addWidget(s, 3 + i, 1);
        grid->addWidget(value, 3 + i, 2);
        sliders_[i] = s;
        sliderLabels_[i] = value;
        connect(s, &QSlider::valueChanged, this, [this] { updateFrameControls(); });
    }
    cmdFarbe_ = new QPushButton(t("Far&be ...", "Co&lor ..."), w);
    cmdFarbe_->setObjectName("cmdFarbe");
    grid->addWidget(cmdFarbe_, 6, 0);
    grid->addWidget(new QLabel(t("Textur für den Rahmen", "Texture for frame"), w), 7, 0, 1, 3);
    txtTextur_ = new QLineEdit(w);
    txtTextur_->setObjectName("txtTextur");
    cmdTextur_ = new QPushButton(t("&Suchen", "&Search"), w);
    cmdTextur_->setObjectName("cmdSuchenRahmentextur");
    grid->addWidget(txtTextur_, 8, 0, 1, 2);
    grid->addWidget(cmdTextur_, 8, 2);
    chkRahmenVorschau_ = new QCheckBox(t("&Vorschau", "Pre&view"), w);
    chkRahmenVorschau_->setObjectName("chkRahmenVorschau");
    chkRahmenVorschau_->setChecked(true);
    framePreview_ = previewBox("picRahmenVorschau", QSize(300, 220), w);
    grid->addWidget(chkRahmenVorschau_, 1, 3);
    grid->addWidget(framePreview_, 2, 3, 7, 1, Qt::AlignTop);
    grid->addItem(new QSpacerItem(0, 0, QSizePolicy::Minimum, QSizePolicy::Expanding), 9, 0);
    grid->setRowStretch(9, 1);
    connect(optRahmenJa_, &QRadioButton::toggled, this, [this] { updateFrameControls(); });
    connect(chkRahmenVorschau_, &QCheckBox::toggled, this, [this] { updateFramePreview(); });
    connect(cmdFarbe_, &QPushButton::clicked, this, [this] { chooseColour(); });
    connect(cmdTextur_, &QPushButton::clicked, this, [this] { chooseTexture(); });
    connect(txtTextur_, &QLineEdit::editingFinished, this, [this] { updateFrameControls(); });
    return w;
}

QWidget* FrmWizzard::buildFolderStep() {
    auto* w = new QWidget;
    w->setObjectName("Frame5");
    auto* v = new QVBoxLayout(w);
    v->addWidget(heading(t("Verzeichnis, unter dem das Album gespeichert werden soll:",
                           "Directory under which the album should saved:"), w));
    auto* row = new QHBoxLayout;
    lblVerzeichnis_ = new QLabel(QString::fromStdString(folder_), w);
    lblVerzeichnis_->setObjectName("lblVerzeichnis");
    lblVerzeichnis_->setFrameShape(QFrame::StyledPanel);
    lblVerzeichnis_->setWordWrap(true);
    lblVerzeichnis_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* change = new QPushButton(t("Ä&ndern ...", "C&hange ..."), w);
    change->setObjectName("cmdVerzeichnis");
    row->addWidget(lblVerzeichnis_, 1);
    row->addWidget(change);
    v->addLayout(row);
    v->addSpacing(24);
    auto* hint = new QLabel(t("Klicken Sie jetzt auf die Schaltfläche „Fertig“, um das Album zu erstellen!",
                              "Now click on the button to generate the album!"), w);
    hint->setWordWrap(true);
    v->addWidget(hint);
    v->addStretch(1);
    connect(change, &QPushButton::clicked, this, [this] { chooseFolder(); });
    return w;
}

void FrmWizzard::buildButtons(QWidget* bar) {
    auto* h = new QHBoxLayout(bar);
    h->setContentsMargins(0, 0, 0, 0);
    cmdAbbrechen_ = new QPushButton(t("Abbre&chen", "&Cancel"), bar);
    cmdAbbrechen_->setObjectName("cmdAbbrechen");
    cmdZurueck_ = new QPushButton(t("< &Zurück", "< &Back"), bar);
    cmdZurueck_->setObjectName("cmdZurück");
    cmdWeiter_ = new QPushButton(t("&Weiter >", "&Next >"), bar);
    cmdWeiter_->setObjectName("cmdWeiter");
    cmdFertig_ = new QPushButton(t("&Fertig", "&Ready"), bar);
    cmdFertig_->setObjectName("cmdFertig");
    h->addWidget(cmdAbbrechen_);
    h->addStretch(1);
    h->addWidget(cmdZurueck_);
    h->addWidget(cmdWeiter_);
    h->addWidget(cmdFertig_);
    cmdWeiter_->setDefault(true);
    connect(cmdAbbrechen_, &QPushButton::clicked, this, [this] {
        choice_ = StartChoice::Regular;
        leave();
        reject();
    });
    connect(cmdZurueck_, &QPushButton::clicked, this, [this] { Schritt(-1); });
    connect(cmdWeiter_, &QPushButton::clicked, this, [this] { Schritt(+1); });
    connect(cmdFertig_, &QPushButton::clicked, this, [this] { cmdFertig(); });
}

void FrmWizzard::Schritt(int direction) {
    if (step_ == 1 && direction > 0 && startGroup_->checkedId() != 2) {
        // The first two choices start the program without the wizard.
        choice_ = startGroup_->checkedId() == 1 ? StartChoice::Recent : StartChoice::Regular;
        leave();
        accept();
        return;
    }
    step_ = std::clamp(step_ + direction, 1, 5);
    showStep();
}

void FrmWizzard::showStep() {
    steps_->setCurrentIndex(step_ - 1);
    const bool wizardChosen = startGroup_->checkedId() == 2;
    cmdZurueck_->setEnabled(step_ > 1);
    cmdWeiter_->setEnabled(step_ < 5);
    cmdWeiter_->setText(step_ == 1 && !wizardChosen ? t("&Starten", "&Start") : t("&Weiter >", "&Next >"));
    cmdFertig_->setEnabled(step_ == 5);
    if (step_ == 5) cmdFertig_->setDefault(true);
    else cmdWeiter_->setDefault(true);
    if (step_ == 4) updateFramePreview();
}

void FrmWizzard::leave() {
    settings_.save(kSettingsApp, kWizardSection, kWizardHiddenKey, chkNichtAnzeigen_->isChecked() ? "1" : "0");
}

}  // namespace brindle::shell
