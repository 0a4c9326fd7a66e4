#include "studio/design_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QRegularExpression>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QSplitter>
#include <QTabWidget>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "studio/design_panels.h"
#include "studio/picture_view.h"

namespace brindle::studio {

namespace {

struct Node {
    const char* key;  // panel name or general item, "" for a group
    const char* german;
    const char* english;
};

// The tree: groups, each followed by its designs.
const std::vector<std::vector<Node>>& treeNodes() {
    static const std::vector<std::vector<Node>> groups = {
        {{"", "Farbe und Licht", "Colour and light"},
         {"Kontrast", "Kontrast", "Contrast"},
         {"Helligkeit", "Helligkeit", "Brightness"},
         {"Sättigung", "Sättigung", "Saturation"},
         {"Gamma", "Gamma", "Gamma"},
         {"Intensiv", "Intensiv", "Intensity"},
         {"Einfärben", "Einfärben", "Tint"},
         {"SchwarzWeiss", "Schwarzweiß-Foto", "Black and white photo"},
         {"Schwarz/Weiss", "Schwarz/Weiß", "Black/white"},
         {"Negativ", "Negativ", "Negative"},
         {"Neon", "Neon", "Neon"}},
        {{"", "Schärfe", "Sharpness"},
         {"Schärfen", "Schärfen", "Sharpen"},
         {"Weichzeichnen", "Weichzeichnen", "Soften"},
         {"Blur", "Verwischen", "Blur"},
         {"Rauschen", "Rauschen entfernen", "Remove noise"},
         {"Störungen", "Störungen", "Noise"}},
        {{"", "Verfremden", "Distort"},
         {"Ripple", "Ripple", "Ripple"},
         {"Wave", "Wellen", "Waves"},
         {"Emboss", "Relief", "Emboss"},
         {"3D Effekt", "3D Effekt", "3D effect"},
         {"Frost-Glas", "Frost-Glas", "Frosted glass"}},
        {{"", "Metall", "Metal"},
         {"Gold", "Gold", "Gold"},
         {"Eis", "Eis", "Ice"},
         {"Stahl", "Stahl", "Steel"}},
        {{"", "Form und Größe", "Shape and size"},
         {"Größe", "Größe", "Size"},
         {"Spiegeln", "Spiegeln", "Mirror"},
         {"Drehen", "Drehen", "Rotate"},
         {"Kachel", "Kacheln", "Tiles"}},
        {{"", "Rahmen", "Frames"},
         {"Rahmen", "Rahmen", "Frame"},
         {"Button", "Button", "Button"}},
    };
    return groups;
}

constexpr int kKeyRole = Qt::UserRole;
constexpr int kGermanRole = Qt::UserRole + 1;
constexpr int kEnglishRole = Qt::UserRole + 2;

QPushButton* button(QWidget* parent, const char* name) {
    auto* b = new QPushButton(parent);
    b->setObjectName(QString::fromUtf8(name));
    return b;
}

}  // namespace

DesignWindow::DesignWindow(std::vector<std::string> pictures, Prompter& prompter, Language language, QWidget* parent)
    : QWidget(parent, Qt::Window), prompter_(prompter), language_(language) {
    setObjectName("frmBildbearbeitung");
    tabs_ = new QTabWidget(this);
    tabs_->setObjectName("tabSeiten");
    tabs_->addTab(buildDesignPage(), QString());
    tabs_->addTab(buildBatchPage(), QString());
    auto* split = new QSplitter(Qt::Horizontal, this);
    split->addWidget(tabs_);
    split->addWidget(buildTestView());
    split->setStretchFactor(0, 0);
    split->setStretchFactor(1, 1);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->addWidget(split);

    progressTimer_ = new QTimer(this);
    progressTimer_->setObjectName("tmrProgress");
    progressTimer_->setInterval(50);
    connect(progressTimer_, &QTimer::timeout, this, &DesignWindow::showProgress);
    waveTimer_ = new QTimer(this);
    waveTimer_->setObjectName("tmrWave");
    waveTimer_->setInterval(150);
    connect(waveTimer_, &QTimer::timeout, this, &DesignWindow::waveTick);

    connect(panels_, &DesignPanels::addRequested, this, &DesignWindow::addCurrentLine);
    connect(panels_, &DesignPanels::testRequested, this, &DesignWindow::testCurrentPanel);
    connect(panels_, &DesignPanels::valuesChanged, this, &DesignWindow::panelValuesChanged);
    connect(panels_, &DesignPanels::chooseFrameColour, this, &DesignWindow::chooseFrameColour);
    connect(panels_, &DesignPanels::chooseTintColour, this, &DesignWindow::chooseTintColour);
    connect(panels_, &DesignPanels::chooseFrameFile, this, &DesignWindow::chooseFrameFile);
    connect(panels_, &DesignPanels::waveAnimation, this, [this](bool on) { on ? waveTimer_->start() : waveTimer_->stop(); });

    for (const std::string& p : pictures) {
        auto* item = new QListWidgetItem(QString::fromStdString(p.substr(p.find_last_of("/\\") + 1)), pictureList_);
        item->setData(Qt::UserRole, QString::fromStdString(p));
        item->setToolTip(QString::fromStdString(p));
    }
    retranslate();
    goToStep(1);
    resize(1460, 860);
    if (pictureList_->count() > 0) pictureList_->setCurrentRow(0);
}

DesignWindow::~DesignWindow() {
    cancel_ = true;
    if (worker_.joinable()) worker_.join();
}

QWidget* DesignWindow::buildDesignPage() {
    auto* page = new QWidget;
    auto* grid = new QGridLayout(page);
    grid->addWidget(buildTreeAndPictures(), 0, 0, 2, 1);
    stepLabel_ = new QLabel(page);
    stepLabel_->setObjectName("lblSchritt");
    QFont bold = stepLabel_->font();
    bold.setBold(true);
    stepLabel_->setFont(bold);
    grid->addWidget(stepLabel_, 0, 1);
    auto* right = new QWidget(page);
    auto* rightLayout = new QVBoxLayout(right);
    rightLayout->setContentsMargins(0, 0, 0, 0);
    auto* panelBox = new QGroupBox(right);
    panelBox->setObjectName("fraPanel");
    auto* panelLayout = new QVBoxLayout(panelBox);
    panels_ = new DesignPanels(captions_, panelBox);
    panels_->setMinimumHeight(270);
    panelLayout->addWidget(panels_);
    auto* wizard = new QHBoxLayout;
    back_ = button(panelBox, "cmdZurück");
    next_ = button(panelBox, "cmdWeiter");
    captions_.add(back_, "< Zurück", "< Back");
    captions_.add(next_, "Weiter >", "Next >");
    wizard->addStretch(1);
    wizard->addWidget(back_);
    wizard->addWidget(next_);
    panelLayout->addLayout(wizard);
    rightLayout->addWidget(panelBox, 1);
    rightLayout->addWidget(buildListBox(), 1);
    grid->addWidget(right, 1, 1);
    grid->setColumnStretch(1, 1);
    connect(back_, &QPushButton::clicked, this, [this] { goToStep(step_ - 1); });
    connect(next_, &QPushButton::clicked, this, [this] { goToStep(step_ + 1); });
    return page;
}

QWidget* DesignWindow::buildTreeAndPictures() {
    auto* column = new QWidget;
    column->setMinimumWidth(210);
    column->setMaximumWidth(260);
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    tree_ = new QTreeWidget(column);
    tree_->setObjectName("TrvFotoDesign");
    tree_->setHeaderHidden(true);
    fillTree();
    layout->addWidget(tree_, 5);
    auto* picturesLabel = new QLabel(column);
    captions_.add(picturesLabel, "Bilder:", "Pictures:");
    layout->addWidget(picturesLabel);
    pictureList_ = new QListWidget(column);
    pictureList_->setObjectName("listeAlleBilder");
    pictureList_->setMaximumHeight(140);
    captions_.addTip(pictureList_, "Das gewählte Bild zeigt der Test.", "The test shows the chosen picture.");
    layout->addWidget(pictureList_, 1);
    auto* row = new QHBoxLayout;
    auto* add = button(column, "cmdBilderHinzufügen");
    auto* remove = button(column, "cmdBildEntfernen");
    captions_.add(add, "Hinzufügen ...", "Add ...");
    captions_.add(remove, "Entfernen", "Remove");
    row->addWidget(add);
    row->addWidget(remove);
    layout->addLayout(row);
    connect(tree_, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item) { nodeChosen(item); });
    connect(tree_, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) { nodeChosen(item); });
    connect(pictureList_, &QListWidget::currentRowChanged, this, &DesignWindow::loadTestPicture);
    connect(add, &QPushButton::clicked, this, &DesignWindow::addPictures);
    connect(remove, &QPushButton::clicked, this, &DesignWindow::removePicture);
    return column;
}

QWidget* DesignWindow::buildListBox() {
    auto* box = new QGroupBox;
    box->setObjectName("fraListe");
    captions_.add(box, "Liste der Bildanpassungen", "List of image adjustments");
    auto* layout = new QHBoxLayout(box);
    list_ = new QListWidget(box);
    list_->setObjectName("List1");
    layout->addWidget(list_, 1);
    auto* buttons = new QVBoxLayout;
    const std::pair<const char*, std::pair<const char*, const char*>> names[] = {
        {"cmdHoch", {"Nach oben", "Up"}},          {"cmdRunter", {"Nach unten", "Down"}},
        {"cmdLöschen", {"Entfernen", "Remove"}},   {"cmdListeLaden", {"Laden ...", "Load ..."}},
        {"cmdListeSpeichern", {"Speichern ...", "Save ..."}}};
    for (const auto& [name, texts] : names) {
        auto* b = button(box, name);
        captions_.add(b, texts.first, texts.second);
        buttons->addWidget(b);
    }
    buttons->addStretch(1);
    layout->addLayout(buttons);
    connect(box->findChild<QPushButton*>("cmdHoch"), &QPushButton::clicked, this, [this] { moveLine(-1); });
    connect(box->findChild<QPushButton*>("cmdRunter"), &QPushButton::clicked, this, [this] { moveLine(1); });
    connect(box->findChild<QPushButton*>("cmdLöschen"), &QPushButton::clicked, this, &DesignWindow::removeLine);
    connect(box->findChild<QPushButton*>("cmdListeLaden"), &QPushButton::clicked, this, &DesignWindow::loadList);
    connect(box->findChild<QPushButton*>("cmdListeSpeichern"), &QPushButton::clicked, this, &DesignWindow::saveList);
    connect(list_, &QListWidget::itemDoubleClicked, this, &DesignWindow::removeLine);
    connect(list_, &QListWidget::currentRowChanged, this, &DesignWindow::updateButtons);
    return box;
}

QWidget* DesignWindow::buildBatchPage() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    pictureCount_ = new QLabel(page);
    pictureCount_->setObjectName("lblBilderAnzahl");
    layout->addWidget(pictureCount_);

    auto* filter = new QGroupBox(page);
    captions_.add(filter, "Größenfilter", "Size filter");
    auto* filterLayout = new QGridLayout(filter);
    auto* filterText = new QLabel(filter);
    filterText->setWordWrap(true);
    captions_.add(filterText, "Nur Bilder bearbeiten, die breiter oder höher sind als:",
                  "Only treat pictures wider or higher than:");
    filterLayout->addWidget(filterText, 0, 0, 1, 4);
    auto* widthLabel = new QLabel(filter);
    auto* heightLabel = new QLabel(filter);
    captions_.add(widthLabel, "Breite (Pixel)", "Width (pixels)");
    captions_.add(heightLabel, "Höhe (Pixel)", "Height (pixels)");
    widthFilter_ = new QSpinBox(filter);
    widthFilter_->setObjectName("txtBreiteFilter");
    heightFilter_ = new QSpinBox(filter);
    heightFilter_->setObjectName("txtHöheFilter");
    for (QSpinBox* box : {widthFilter_, heightFilter_}) box->setRange(0, 100000);
    filterLayout->addWidget(widthLabel, 1, 0);
    filterLayout->addWidget(widthFilter_, 1, 1);
    filterLayout->addWidget(heightLabel, 1, 2);
    filterLayout->addWidget(heightFilter_, 1, 3);
    layout->addWidget(filter);

    auto* save = new QGroupBox(page);
    captions_.add(save, "Speichern", "Saving");
    auto* saveLayout = new QGridLayout(save);
    overwrite_ = new QRadioButton(save);
    overwrite_->setObjectName("OpSpeichernÜberschreiben");
    captions_.add(overwrite_, "Originale überschreiben", "Overwrite the originals");
    otherDirectory_ = new QRadioButton(save);
    otherDirectory_->setObjectName("OpSpeichernVerzeichnis");
    captions_.add(otherDirectory_, "In einem anderen Verzeichnis speichern:", "Save in another directory:");
    otherDirectory_->setChecked(true);
    directory_ = new QLineEdit(save);
    directory_->setObjectName("txtSpeichernVerzeichnis");
    auto* chooseDir = button(save, "cmdVerzeichnis");
    captions_.add(chooseDir, "Wählen ...", "Choose ...");
    auto* appendLabel = new QLabel(save);
    captions_.add(appendLabel, "An den Namen anhängen:", "Append to the name:");
    appendText_ = new QLineEdit(save);
    appendText_->setObjectName("txtSpeichernNameAnhängen");
    auto* typeLabel = new QLabel(save);
    captions_.add(typeLabel, "Dateityp:", "File type:");
    fileType_ = new QComboBox(save);
    fileType_->setObjectName("cmbDateityp");
    fileType_->addItems({"normal", "*.bmp", "*.jpg", "*.png", "*.tif", "*.tiff"});
    auto* qualityLabel = new QLabel(save);
    captions_.add(qualityLabel, "JPEG-Qualität:", "JPEG quality:");
    jpegQuality_ = new QSpinBox(save);
    jpegQuality_->setObjectName("txtJPGKompression");
    jpegQuality_->setRange(1, 100);
    jpegQuality_->setValue(90);
    saveLayout->addWidget(overwrite_, 0, 0, 1, 3);
    saveLayout->addWidget(otherDirectory_, 1, 0, 1, 3);
    saveLayout->addWidget(directory_, 2, 0, 1, 2);
    saveLayout->addWidget(chooseDir, 2, 2);
    saveLayout->addWidget(appendLabel, 3, 0);
    saveLayout->addWidget(appendText_, 3, 1, 1, 2);
    saveLayout->addWidget(typeLabel, 4, 0);
    saveLayout->addWidget(fileType_, 4, 1, 1, 2);
    saveLayout->addWidget(qualityLabel, 5, 0);
    saveLayout->addWidget(jpegQuality_, 5, 1, 1, 2);
    saveLayout->setColumnStretch(1, 1);
    layout->addWidget(save);

    showEach_ = new QCheckBox(page);
    showEach_->setObjectName("chkTestAnzeigen");
    captions_.add(showEach_, "Jedes fertige Bild im Test anzeigen", "Show each finished picture in the test view");
    showEach_->setChecked(true);
    layout->addWidget(showEach_);

    auto* run = new QHBoxLayout;
    finish_ = button(page, "cmdFertig");
    captions_.add(finish_, "Alle Bilder bearbeiten", "Treat all pictures");
    batchCancel_ = button(page, "cmdAbbrechen");
    captions_.add(batchCancel_, "Abbrechen", "Cancel");
    run->addWidget(finish_, 1);
    run->addWidget(batchCancel_);
    layout->addLayout(run);
    batchProgress_ = new QProgressBar(page);
    batchProgress_->setObjectName("ProgressBatch");
    layout->addWidget(batchProgress_);
    status_ = new QLabel(page);
    status_->setObjectName("lblStatus");
    status_->setWordWrap(true);
    status_->setMinimumHeight(status_->fontMetrics().height() * 3);
    status_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    layout->addWidget(status_);
    layout->addStretch(1);

    connect(chooseDir, &QPushButton::clicked, this, &DesignWindow::chooseDirectory);
    connect(overwrite_, &QRadioButton::toggled, this, &DesignWindow::updateButtons);
    connect(finish_, &QPushButton::clicked, this, &DesignWindow::runBatch);
    connect(batchCancel_, &QPushButton::clicked, this, [this] { cancel_ = true; });
    return page;
}

QWidget* DesignWindow::buildTestView() {
    auto* view = new QWidget;
    auto* layout = new QGridLayout(view);
    layout->setContentsMargins(6, 0, 0, 0);
    auto* before = new QLabel(view);
    auto* after = new QLabel(view);
    captions_.add(before, "Original", "Original");
    captions_.add(after, "Ergebnis", "Result");
    picture1_ = new PictureView(view);
    picture1_->setObjectName("Picture1");
    picture2_ = new PictureView(view);
    picture2_->setObjectName("Picture2");
    for (PictureView* v : {picture1_, picture2_}) v->setMinimumSize(300, 300);
    layout->addWidget(before, 0, 0);
    layout->addWidget(after, 0, 1);
    layout->addWidget(picture1_, 1, 0);
    layout->addWidget(picture2_, 1, 1);
    layout->setRowStretch(1, 1);

    auto* row = new QHBoxLayout;
    auto* oneToOne = button(view, "cmdOriginal1zu1");
    oneToOne->setText("1:1");
    auto* fit = button(view, "cmdOriginalEinpassen");
    captions_.add(fit, "Einpassen", "Adapt");
    autoTest_ = new QCheckBox(view);
    autoTest_->setObjectName("chkAutoTest");
    captions_.add(autoTest_, "Sofort testen", "Test at once");
    listTest_ = button(view, "cmdListeTest");
    captions_.add(listTest_, "Ganze Liste testen", "Test the whole list");
    testProgress_ = new QProgressBar(view);
    testProgress_->setObjectName("ProgressBar1");
    testCancel_ = button(view, "cmdTestAbbrechen");
    captions_.add(testCancel_, "Abbrechen", "Cancel");
    row->addWidget(oneToOne);
    row->addWidget(fit);
    row->addWidget(autoTest_);
    row->addStretch(1);
    row->addWidget(listTest_);
    row->addWidget(testProgress_, 1);
    row->addWidget(testCancel_);
    layout->addLayout(row, 2, 0, 1, 2);
    connect(oneToOne, &QPushButton::clicked, this, [this] {
        picture1_->setZoom(1.0);
        picture2_->setZoom(1.0);
    });
    connect(fit, &QPushButton::clicked, this, [this] {
        picture1_->setFitted(true);
        picture2_->setFitted(true);
    });
    connect(listTest_, &QPushButton::clicked, this, &DesignWindow::testList);
    connect(testCancel_, &QPushButton::clicked, this, [this] { cancel_ = true; });
    return view;
}

void DesignWindow::fillTree() {
    for (const auto& group : treeNodes()) {
        auto* top = new QTreeWidgetItem(tree_);
        top->setData(0, kGermanRole, QString::fromUtf8(group[0].german));
        top->setData(0, kEnglishRole, QString::fromUtf8(group[0].english));
        top->setFlags(Qt::ItemIsEnabled);
        for (std::size_t i = 1; i < group.size(); ++i) {
            auto* node = new QTreeWidgetItem(top);
            node->setData(0, kKeyRole, QString::fromUtf8(group[i].key));
            node->setData(0, kGermanRole, QString::fromUtf8(group[i].german));
            node->setData(0, kEnglishRole, QString::fromUtf8(group[i].english));
        }
    }
    tree_->expandAll();
}

void DesignWindow::setLanguage(Language language) {
    language_ = language;
    retranslate();
}

void DesignWindow::retranslate() {
    setWindowTitle(t("Assistent Fotodesign", "Assistant Photo Design"));
    captions_.apply(language_);
    panels_->setLanguage(language_);
    tabs_->setTabText(0, t("Design", "Design"));
    tabs_->setTabText(1, t("Stapelverarbeitung", "Batch run"));
    retranslateTree();
    updateStepText();
    updateButtons();
}

void DesignWindow::retranslateTree() {
    const int role = language_ == Language::German ? kGermanRole : kEnglishRole;
    for (int g = 0; g < tree_->topLevelItemCount(); ++g) {
        QTreeWidgetItem* top = tree_->topLevelItem(g);
        top->setText(0, top->data(0, role).toString());
        for (int i = 0; i < top->childCount(); ++i) top->child(i)->setText(0, top->child(i)->data(0, role).toString());
    }
}

void DesignWindow::updateStepText() {
    QString name;
    if (QTreeWidgetItem* item = tree_->currentItem(); item && !item->data(0, kKeyRole).toString().isEmpty())
        name = item->text(0);
    if (auto* general = panels_->findChild<QLabel*>("lblAllgemeinName")) general->setText("<b>" + name + "</b>");
    switch (step_) {
        case 1:
            stepLabel_->setText(t("1) Bilddesign auswählen ", "1) Select Image Design "));
            break;
        case 2:
            stepLabel_->setText(t("2) Parameter auswählen (", "2) Select a parameter (") + name + ")");
            break;
        default:
            stepLabel_->setText(t("3) Alle Bildanpassungen zur Liste hinzufügen", "3) Add to the list all image adjustments"));
    }
}

void DesignWindow::updateButtons() {
    const bool chosen = !panels_->currentKey().isEmpty();
    back_->setEnabled(!busy_ && step_ > 1);
    next_->setEnabled(!busy_ && step_ < 3 && chosen);
    const bool hasLines = list_->count() > 0;
    const bool hasPictures = pictureList_->count() > 0;
    finish_->setEnabled(!busy_ && hasLines && hasPictures);
    listTest_->setEnabled(!busy_ && hasLines && !original_.empty());
    testCancel_->setEnabled(busy_ && !batchRunning_);
    batchCancel_->setEnabled(busy_ && batchRunning_);
    directory_->setEnabled(otherDirectory_->isChecked());
    pictureCount_->setText(t("Bilder in der Liste: ", "Pictures in the list: ") + QString::number(pictureList_->count()) +
                           "    " + t("Schritte: ", "Steps: ") + QString::number(list_->count()));
}

// Step 1 is the tree, step 2 the panel's values, step 3 its add button.
void DesignWindow::goToStep(int step) {
    step_ = std::clamp(step, 1, 3);
    if (step_ == 1) tree_->setFocus();
    if (step_ == 3) {
        const auto adds = panels_->currentWidget()->findChildren<QPushButton*>(QRegularExpression("Übern$"));
        if (!adds.isEmpty()) {
            adds.first()->setDefault(true);
            adds.first()->setFocus();
        }
    }
    updateStepText();
    updateButtons();
}

void DesignWindow::nodeChosen(QTreeWidgetItem* item) {
    if (!item) return;
    const QString key = item->data(0, kKeyRole).toString();
    if (key.isEmpty() || !panels_->showPanel(key)) return;
    goToStep(2);
}

bool DesignWindow::chooseDesign(const QString& key) {
    for (int g = 0; g < tree_->topLevelItemCount(); ++g) {
        QTreeWidgetItem* top = tree_->topLevelItem(g);
        for (int i = 0; i < top->childCount(); ++i) {
            if (top->child(i)->data(0, kKeyRole).toString() != key) continue;
            tree_->setCurrentItem(top->child(i));
            nodeChosen(top->child(i));
            return true;
        }
    }
    return false;
}

std::vector<std::string> DesignWindow::lines() const {
    std::vector<std::string> out;
    for (int i = 0; i < list_->count(); ++i) out.push_back(list_->item(i)->text().toStdString());
    return out;
}

void DesignWindow::setLines(const std::vector<std::string>& lines) {
    list_->clear();
    for (const std::string& line : lines) list_->addItem(QString::fromStdString(line));
    updateButtons();
}

std::vector<std::string> DesignWindow::pictures() const {
    std::vector<std::string> out;
    for (int i = 0; i < pictureList_->count(); ++i)
        out.push_back(pictureList_->item(i)->data(Qt::UserRole).toString().toStdString());
    return out;
}

}  // namespace brindle::studio
