#include "panorama/make_pano_window.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QTimer>
#include <QVBoxLayout>

#include "panorama/pano_import.h"

namespace brindle::panorama {

namespace {

QPushButton* makeButton(QWidget* parent, const char* name) {
    auto* b = new QPushButton(parent);
    b->setObjectName(name);
    return b;
}

}  // namespace

MakePanoWindow::MakePanoWindow(std::vector<std::string> pictures, std::string programDirectory, Prompter& prompter,
                               Language lang, QWidget* parent)
    : QWidget(parent, Qt::Window),
      prompter_(prompter),
      lang_(lang),
      programDirectory_(std::move(programDirectory)) {
    setObjectName("frmMakePano");
    auto* root = new QVBoxLayout(this);
    auto* top = new QHBoxLayout;
    top->addWidget(buildPictureList(), 3);
    top->addWidget(buildSettings(), 2);
    top->addWidget(buildPhases(), 2);
    root->addLayout(top);

    picture3_ = new QLabel;
    picture3_->setObjectName("Picture3");
    picture3_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    picture3Area_ = new QScrollArea(this);
    picture3Area_->setObjectName("Picture3Area");
    picture3Area_->setWidget(picture3_);
    picture3Area_->setWidgetResizable(false);
    picture3Area_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    picture3Area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    picture3Area_->setMinimumHeight(260);
    picture3Area_->setBackgroundRole(QPalette::Dark);
    root->addWidget(picture3Area_, 1);

    seamList_ = new QWidget(this);
    seamList_->setObjectName("seamList");
    new QHBoxLayout(seamList_);
    seamList_->layout()->setContentsMargins(0, 0, 0, 0);
    seamList_->hide();
    root->addWidget(seamList_);
    root->addWidget(buildResultBar());

    tmrAnimateCut_ = new QTimer(this);
    tmrAnimateCut_->setObjectName("tmrAnimateCut");
    tmrAnimateCut_->setInterval(30);
    connect(tmrAnimateCut_, &QTimer::timeout, this, [this] { animateStep(); });

    fillList(pictures);
    resize(1100, 720);
    retranslate();
    updateEnabled();
}

MakePanoWindow::~MakePanoWindow() {
    stopRun();
}

QWidget* MakePanoWindow::buildPictureList() {
    auto* box = new QGroupBox(this);
    box->setObjectName("fraBilder");
    auto* layout = new QVBoxLayout(box);
    listBilder_ = new QListWidget(box);
    listBilder_->setObjectName("ListBilder");
    listBilder_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    connect(listBilder_, &QListWidget::itemSelectionChanged, this, [this] { updateEnabled(); });
    layout->addWidget(listBilder_);
    auto* buttons = new QHBoxLayout;
    cmdHinzufuegen_ = makeButton(box, "cmdHinzufügen");
    cmdEntfernen_ = makeButton(box, "cmdEntfernen");
    cmdHoch_ = makeButton(box, "cmdHoch");
    cmdRunter_ = makeButton(box, "cmdRunter");
    connect(cmdHinzufuegen_, &QPushButton::clicked, this, [this] { cmdHinzufuegen_Click(); });
    connect(cmdEntfernen_, &QPushButton::clicked, this, [this] { cmdEntfernen_Click(); });
    connect(cmdHoch_, &QPushButton::clicked, this, [this] { moveSelected(-1); });
    connect(cmdRunter_, &QPushButton::clicked, this, [this] { moveSelected(1); });
    for (QPushButton* b : {cmdHinzufuegen_, cmdEntfernen_, cmdHoch_, cmdRunter_}) buttons->addWidget(b);
    layout->addLayout(buttons);
    return box;
}

QWidget* MakePanoWindow::buildSettings() {
    auto* box = new QGroupBox(this);
    box->setObjectName("fraEinstellungen");
    auto* layout = new QVBoxLayout(box);
    auto* form = new QFormLayout;
    lblTestzeilen_ = new QLabel(box);
    txtTestzeilen_ = new QLineEdit("40", box);
    txtTestzeilen_->setObjectName("txtTestzeilen");
    txtTestzeilen_->setValidator(new QIntValidator(1, 9999, txtTestzeilen_));
    lblSmoth_ = new QLabel(box);
    txtSmoth_ = new QLineEdit("20", box);
    txtSmoth_->setObjectName("txtSmoth");
    txtSmoth_->setValidator(new QIntValidator(1, 999, txtSmoth_));
    for (QLineEdit* e : {txtTestzeilen_, txtSmoth_}) e->setMaximumWidth(70);
    form->addRow(lblTestzeilen_, txtTestzeilen_);
    form->addRow(lblSmoth_, txtSmoth_);
    layout->addLayout(form);
    auto check = [&](QCheckBox*& c, const char* name, bool on) {
        c = new QCheckBox(box);
        c->setObjectName(name);
        c->setChecked(on);
        layout->addWidget(c);
    };
    check(chkYversatzNivelieren_, "chkYversatzNivelieren", true);
    optPanoNormal_ = new QRadioButton(box);
    optPanoNormal_->setObjectName("optPanoNormal");
    optPanoNormal_->setChecked(true);
    opt360_ = new QRadioButton(box);
    opt360_->setObjectName("Opt360");
    layout->addWidget(optPanoNormal_);
    layout->addWidget(opt360_);
    check(chkAuffuellen_, "chkAuffüllen", true);
    check(chkZuschneiden_, "chkZuschneiden", false);
    check(chkHelligkeit_, "chkHelligkeit", true);
    layout->addStretch();
    return box;
}

QWidget* MakePanoWindow::buildPhases() {
    auto* box = new QGroupBox(this);
    box->setObjectName("fraPhasen");
    auto* layout = new QVBoxLayout(box);
    cmdPhase1_ = makeButton(box, "cmdPhase1");
    cmdPhase2_ = makeButton(box, "cmdPhase2");
    cmdPhase3_ = makeButton(box, "cmdPhase3");
    cmdStop_ = makeButton(box, "cmdAbbrechen");
    for (QPushButton* b : {cmdPhase1_, cmdPhase2_, cmdPhase3_}) {
        b->setMinimumHeight(34);
        layout->addWidget(b);
    }
    connect(cmdPhase1_, &QPushButton::clicked, this, [this] { cmdPhase1_Click(); });
    connect(cmdPhase2_, &QPushButton::clicked, this, [this] { cmdPhase2_Click(); });
    connect(cmdPhase3_, &QPushButton::clicked, this, [this] { cmdPhase3_Click(); });
    connect(cmdStop_, &QPushButton::clicked, this, [this] { stop_ = true; });
    layout->addStretch();
    progressBar1_ = new QProgressBar(box);
    progressBar1_->setObjectName("ProgressBar1");
    progressBar1_->setRange(0, 1000);
    progressBar1_->setValue(0);
    progressBar1_->setTextVisible(false);
    layout->addWidget(progressBar1_);
    lblStatus_ = new QLabel(box);
    lblStatus_->setObjectName("lblStatus");
    lblStatus_->setMinimumWidth(200);
    layout->addWidget(lblStatus_);
    layout->addWidget(cmdStop_);
    return box;
}

QWidget* MakePanoWindow::buildResultBar() {
    auto* bar = new QWidget(this);
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    cmdNeuZeichnen_ = makeButton(bar, "cmdNeuZeichnen");
    cmdNaehte_ = makeButton(bar, "cmdNähte");
    cmdAnimate_ = makeButton(bar, "cmdAnimate");
    cmdAnimate_->setCheckable(true);
    chkErgebnisAnzeigen_ = new QCheckBox(bar);
    chkErgebnisAnzeigen_->setObjectName("chkErgebnisAnzeigen");
    chkErgebnisAnzeigen_->setChecked(true);
    cmdSpeichern_ = makeButton(bar, "cmdSpeichern");
    cmdAufSeite_ = makeButton(bar, "cmdAufSeite");
    connect(cmdNeuZeichnen_, &QPushButton::clicked, this, [this] { cmdNeuZeichnen_Click(); });
    connect(cmdNaehte_, &QPushButton::clicked, this, [this] { toggleSeamList(); });
    connect(cmdAnimate_, &QPushButton::clicked, this, [this] { cmdAnimate_Click(); });
    connect(cmdSpeichern_, &QPushButton::clicked, this, [this] { cmdSpeichern_Click(); });
    connect(cmdAufSeite_, &QPushButton::clicked, this, [this] { cmdAufSeite_Click(); });
    layout->addWidget(cmdNeuZeichnen_);
    layout->addWidget(cmdNaehte_);
    layout->addWidget(cmdAnimate_);
    layout->addStretch();
    layout->addWidget(chkErgebnisAnzeigen_);
    layout->addWidget(cmdSpeichern_);
    layout->addWidget(cmdAufSeite_);
    return bar;
}

void MakePanoWindow::setLanguage(Language lang) {
    lang_ = lang;
    retranslate();
}

void MakePanoWindow::retranslate() {
    setWindowTitle(t("Brindlesee Panorama erstellen", "Brindlesee make panorama"));
    findChild<QGroupBox*>("fraBilder")->setTitle(t("Bilder (von links nach rechts)", "Pictures (left to right)"));
    findChild<QGroupBox*>("fraEinstellungen")->setTitle(t("Einstellungen", "Settings"));
    findChild<QGroupBox*>("fraPhasen")->setTitle(t("Arbeitsschritte", "Phases"));
    cmdHinzufuegen_->setText(t("Hinzufügen ...", "Add ..."));
    cmdEntfernen_->setText(t("Entfernen", "Remove"));
    cmdHoch_->setText(t("Nach oben", "Up"));
    cmdRunter_->setText(t("Nach unten", "Down"));
    lblTestzeilen_->setText(t("Testzeilen:", "Test lines:"));
    lblSmoth_->setText(t("Glätten:", "Smoth:"));
    chkYversatzNivelieren_->setText(t("Y-Versatz ausgleichen", "Y offset balancing"));
    optPanoNormal_->setText(t("Einfaches Panorama", "Simple Panorma"));
    opt360_->setText(t("360 ° Panorama", "360 ° Panorma"));
    chkAuffuellen_->setText(t("Auffüllen", "Padding"));
    chkZuschneiden_->setText(t("Zuschneiden", "Crop"));
    chkHelligkeit_->setText(t("Helligkeit angleichen", "Match exposure"));
    cmdPhase1_->setText(t("1.Erstellen", "1.Construct"));
    cmdPhase2_->setText(t("2.Bearbeiten", "2.Edit"));
    cmdPhase3_->setText(t("3.Speichern", "3.Save"));
    cmdStop_->setText(t("Abbrechen", "Cancel"));
    cmdNeuZeichnen_->setText(t("Neu zeichnen", "Drawing"));
    cmdNaehte_->setText(seamListOpen_ ? t("Fertig", "Done") : t("Nähte anzeigen", "Seams"));
    cmdAnimate_->setText("Animation");
    chkErgebnisAnzeigen_->setText(t("  Ergebnis anzeigen", "  Display the result"));
    cmdSpeichern_->setText(t("Speichern", "Save"));
    cmdAufSeite_->setText(t("Auf die Seite legen", "Place on page"));
    fillSeamList();
}

void MakePanoWindow::fillList(const std::vector<std::string>& paths) {
    for (const std::string& p : paths) {
        auto* item = new QListWidgetItem(QFileInfo(QString::fromStdString(p)).fileName(), listBilder_);
        item->setData(Qt::UserRole, QString::fromStdString(p));
        item->setToolTip(QString::fromStdString(p));
    }
}

std::vector<std::string> MakePanoWindow::pictures() const {
    std::vector<std::string> out;
    for (int i = 0; i < listBilder_->count(); ++i)
        out.push_back(listBilder_->item(i)->data(Qt::UserRole).toString().toStdString());
    return out;
}

PanoRunOptions MakePanoWindow::options() const {
    PanoRunOptions o;
    o.compose.smoothWidth = std::max(1, txtSmoth_->text().toInt());
    o.compose.balanceY = chkYversatzNivelieren_->isChecked();
    o.compose.ring360 = opt360_->isChecked();
    o.compose.padding = chkAuffuellen_->isChecked();
    o.compose.crop = chkZuschneiden_->isChecked();
    o.compose.matchGain = chkHelligkeit_->isChecked();
    o.workHeight = importTargetHeight(picture3Area_->viewport()->height());
    return o;
}

void MakePanoWindow::cmdHinzufuegen_Click() {
    FileDialog d;
    d.title = t("Bilder für das Panorama wählen", "Choose the pictures of the panorama");
    d.filter = std::string(t("Bilder", "Pictures")) + "|*.jpg;*.jpeg;*.png;*.bmp;*.tif;*.tiff;*.gif;*.pcx;*.tga|" +
               t("Alle Dateien", "All files") + "|*.*";
    d.multiSelect = true;
    if (listBilder_->count() > 0) {
        const QFileInfo last(listBilder_->item(listBilder_->count() - 1)->data(Qt::UserRole).toString());
        d.startDirectory = last.absolutePath().toStdString() + "/";
    }
    fillList(splitFileList(prompter_.openFile(d)));
    updateEnabled();
}

void MakePanoWindow::cmdEntfernen_Click() {
    for (QListWidgetItem* item : listBilder_->selectedItems()) delete item;
    updateEnabled();
}

// Moves the selected picture one place up (-1) or down (+1).
void MakePanoWindow::moveSelected(int step) {
    const int row = listBilder_->currentRow();
    const int to = row + step;
    if (row < 0 || to < 0 || to >= listBilder_->count()) return;
    QListWidgetItem* item = listBilder_->takeItem(row);
    listBilder_->insertItem(to, item);
    listBilder_->setCurrentRow(to);
}

void MakePanoWindow::updateEnabled() {
    const bool idle = !isRunning();
    const bool composed = idle && !result_.empty();
    for (QWidget* w : {static_cast<QWidget*>(listBilder_), static_cast<QWidget*>(cmdHinzufuegen_)}) w->setEnabled(idle);
    cmdEntfernen_->setEnabled(idle && !listBilder_->selectedItems().isEmpty());
    cmdHoch_->setEnabled(idle && listBilder_->currentRow() > 0);
    cmdRunter_->setEnabled(idle && listBilder_->currentRow() >= 0 && listBilder_->currentRow() < listBilder_->count() - 1);
    cmdPhase1_->setEnabled(idle && listBilder_->count() > 0);
    cmdPhase2_->setEnabled(composed && records_.size() > 1);
    cmdNaehte_->setEnabled(composed && records_.size() > 1);
    cmdPhase3_->setEnabled(composed);
    cmdSpeichern_->setEnabled(composed);
    cmdNeuZeichnen_->setEnabled(idle && !records_.empty());
    cmdAnimate_->setEnabled(!result_.empty());
    cmdAufSeite_->setEnabled(idle && !savedPath_.empty());
    cmdStop_->setEnabled(!idle);
    seamList_->setEnabled(idle);
}

void MakePanoWindow::closeEvent(QCloseEvent* event) {
    tmrAnimateCut_->stop();
    stopRun();
    updateEnabled();
    QWidget::closeEvent(event);
}

}  // namespace brindle::panorama
