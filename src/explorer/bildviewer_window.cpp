#include "explorer/bildviewer_window.h"

#include <QAction>
#include <QActionGroup>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileSystemModel>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QListView>
#include <QMenuBar>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSplitter>
#include <QStackedWidget>
#include <QStandardItemModel>
#include <QStatusBar>
#include <QStyle>
#include <QTimer>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>

#include "explorer/thumbnail_pool.h"

namespace brindle::explorer {

namespace {

struct ToolEntry {
    const char* key;
    const char* glyph;  // drawn when the style has no icon of its own
    QStyle::StandardPixmap standard;
    const char* german;
    const char* english;
};

constexpr auto kNoIcon = QStyle::SP_CustomBase;

// The toolbar in its order; an empty key is a separator.
const ToolEntry kTools[] = {
    {"zurück", "", QStyle::SP_ArrowBack, "zurück", "back"},
    {"weiter", "", QStyle::SP_ArrowForward, "vorwärts", "forward"},
    {"pfadrunter", "", QStyle::SP_FileDialogToParent, "Ordner nach oben", "Folder Down"},
    {"folder", "", QStyle::SP_DirIcon, "Ordnerliste ein / aus", "Folder list on / off"},
    {"neuverz", "", QStyle::SP_FileDialogNewFolder, "Neuer Ordner", "New Folder"},
    {"", "", kNoIcon, "", ""},
    {"ausschneiden", "\u2702", kNoIcon, "ausschneiden", "cut"},
    {"kopieren", "\u2750", kNoIcon, "kopieren", "copy"},
    {"einfügen", "\u2398", kNoIcon, "einfügen", "paste"},
    {"löschen", "\u2715", kNoIcon, "löschen", "delete"},
    {"", "", kNoIcon, "", ""},
    {"drehl", "\u21BA", kNoIcon, "90° nach links drehen", "turn left 90°"},
    {"drehr", "\u21BB", kNoIcon, "90° nach rechts drehen", "turn right 90°"},
    {"eigenschaften", "i", kNoIcon, "Eigenschaften", "properties"},
    {"vollbild", "\u26F6", kNoIcon, "Vollbild", "fullscreen"},
    {"zoom", "\u2295", kNoIcon, "Größe der Vorschaubilder", "Size Thumbs"},
    {"", "", kNoIcon, "", ""},
    {"zeichnen", "\u270E", kNoIcon, "Fotobearbeitung", "Foto Working"},
    {"redeye", "\u25C9", kNoIcon, "Rote Augen entfernen", "Red eyes"},
    {"panorama", "\u25AD", kNoIcon, "Panorama erstellen", "Panorama"},
    {"print", "\u2399", kNoIcon, "Drucken", "Print"},
    {"twain", "\u2B73", kNoIcon, "Import Kamera / Scanner", "Import Cam / Scan"},
    {"", "", kNoIcon, "", ""},
    {"hilfe", "?", kNoIcon, "Hilfe", "Help"},
};

struct ModeEntry {
    ViewMode mode;
    const char* name;
    const char* german;
    const char* english;
};
const ModeEntry kModes[] = {
    {ViewMode::Details, "mnuDetails", "Details", "Details"},
    {ViewMode::List, "mnuListe", "Liste", "List"},
    {ViewMode::SmallIcons, "mnuKleineSymbole", "kleine Symbole", "Small icons"},
    {ViewMode::LargeIcons, "mnuGrosseSymbole", "große Symbole", "Large icons"},
    {ViewMode::Picture, "mnuBildansicht", "Bildansicht", "Picture view"},
};

// The commands the style has no icon for, drawn as simple line art; the
// others as a glyph.
QIcon drawnIcon(const char* key, const char* glyph) {
    QPixmap pm(24, 24);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    const QColor ink(0x44, 0x55, 0x66);
    p.setPen(QPen(ink, 1.6));
    const std::string k = key;
    if (k == "einfügen") {  // a clipboard
        p.drawRoundedRect(QRectF(5, 5, 14, 16), 2, 2);
        p.setBrush(ink);
        p.drawRect(QRectF(9, 3, 6, 4));
        p.drawLine(QPointF(8, 12), QPointF(16, 12));
        p.drawLine(QPointF(8, 16), QPointF(14, 16));
    } else if (k == "vollbild") {  // four corners
        for (int sx : {-1, 1})
            for (int sy : {-1, 1}) {
                const QPointF c(12 + sx * 8, 12 + sy * 7);
                p.drawLine(c, c - QPointF(sx * 5, 0));
                p.drawLine(c, c - QPointF(0, sy * 5));
            }
    } else if (k == "print") {  // a printer
        p.drawRect(QRectF(7, 3, 10, 6));
        p.drawRoundedRect(QRectF(3, 9, 18, 8), 2, 2);
        p.drawRect(QRectF(7, 14, 10, 7));
    } else if (k == "twain") {  // a camera
        p.drawRoundedRect(QRectF(3, 7, 18, 13), 2, 2);
        p.drawRect(QRectF(8, 4, 7, 3));
        p.drawEllipse(QPointF(12, 13.5), 4, 4);
    } else if (k == "panorama") {  // a wide picture with hills
        p.drawRect(QRectF(2, 7, 20, 10));
        p.drawPolyline(QPolygonF(
            {QPointF(2, 16), QPointF(7, 11), QPointF(11, 14), QPointF(16, 9), QPointF(22, 15)}));
    } else {
        QFont f = p.font();
        f.setPixelSize(17);
        f.setBold(true);
        p.setFont(f);
        p.drawText(pm.rect(), Qt::AlignCenter, QString::fromUtf8(glyph));
    }
    return QIcon(pm);
}

}  // namespace

FrmBildviewer::FrmBildviewer(std::string programDirectory, std::string startFolder,
                             Prompter& prompter, Language language, QWidget* parent)
    : QMainWindow(parent),
      programDirectory_(std::move(programDirectory)),
      prompter_(prompter),
      language_(language),
      operations_(prompter, language,
                  {[this](const std::string& s) { status(s); },
                   [this](const std::string& p) { dropThumbnail(p); }}) {
    setObjectName("FrmBildviewer");
    // A window of its own, also when another window opens it.
    setWindowFlag(Qt::Window, true);
    previewPool_.setMaxThreadCount(1);
    build();
    loadSettings();
    makePool();
    applyTexts();
    applyViewMode();
    resize(1100, 720);
    if (!startFolder.empty()) showFolder(startFolder);
}

FrmBildviewer::~FrmBildviewer() {
    // Workers and preview reads end before the widgets they report to.
    pool_.reset();
    previewPool_.waitForDone();
}

void FrmBildviewer::build() {
    buildToolBar();
    buildMenus();
    buildViews();
    statusBar()->setObjectName("StatusBar1");
}

void FrmBildviewer::buildToolBar() {
    tbToolBar_ = addToolBar(QString());
    tbToolBar_->setObjectName("tbToolBar");
    tbToolBar_->setMovable(false);
    for (const ToolEntry& e : kTools) {
        if (!*e.key) {
            tbToolBar_->addSeparator();
            continue;
        }
        const QIcon icon =
            e.standard != kNoIcon ? style()->standardIcon(e.standard) : drawnIcon(e.key, e.glyph);
        QAction* a = tbToolBar_->addAction(icon, QString());
        a->setObjectName(QString::fromUtf8(e.key));
        const std::string key = e.key;
        connect(a, &QAction::triggered, this, [this, key] { MenüGeklickt(key); });
    }
    // Enabled once the program hands over a scanner.
    findChild<QAction*>("twain")->setEnabled(false);
    findChild<QAction*>("folder")->setCheckable(true);
    findChild<QAction*>("folder")->setChecked(true);
}

void FrmBildviewer::buildMenus() {
    mnuDatei_ = menuBar()->addMenu(QString());
    mnuDatei_->setObjectName("mnuDatei");
    QAction* close = mnuDatei_->addAction(QString(), this, &QWidget::close);
    close->setObjectName("mnuSchliessen");
    mnuAnsicht_ = menuBar()->addMenu(QString());
    mnuAnsicht_->setObjectName("mnuAnsicht");
    viewGroup_ = new QActionGroup(this);
    for (const ModeEntry& m : kModes) {
        QAction* a = mnuAnsicht_->addAction(QString());
        a->setObjectName(m.name);
        a->setCheckable(true);
        viewGroup_->addAction(a);
        const ViewMode mode = m.mode;
        connect(a, &QAction::triggered, this, [this, mode] { setViewMode(mode); });
    }
    mnuAnsicht_->addSeparator();
    mnuSortieren_ = mnuAnsicht_->addMenu(QString());
    mnuSortieren_->setObjectName("mnuSortieren");
    // The sort keys of the old list, by name, size and time; the Details
    // view also sorts by any column head.
    const std::pair<SortKey, int> keys[] = {
        {SortKey::Name, kColName}, {SortKey::Size, kColSize}, {SortKey::Time, kColTime}};
    for (const auto& [key, column] : keys) {
        QAction* a = mnuSortieren_->addAction(QString());
        a->setObjectName(sortKeyName(key));
        const int c = column;
        connect(a, &QAction::triggered, this,
                [this, c] { sortBy(c, c == sortColumn_ ? !sortDescending_ : false); });
    }
}

void FrmBildviewer::buildViews() {
    dirModel_ = new QFileSystemModel(this);
    dirModel_->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
    dirModel_->setRootPath("/");
    dirTree_ = new QTreeView;
    dirTree_->setObjectName("dirTree");
    dirTree_->setModel(dirModel_);
    for (int c = 1; c < dirModel_->columnCount(); ++c) dirTree_->hideColumn(c);
    dirTree_->setHeaderHidden(true);
    connect(dirTree_, &QTreeView::clicked, this,
            [this](const QModelIndex& i) { showFolder(dirModel_->filePath(i).toStdString()); });

    model_ = new QStandardItemModel(this);
    details_ = new QTreeView;
    details_->setObjectName("ListView1Details");
    details_->setModel(model_);
    details_->setRootIsDecorated(false);
    details_->setUniformRowHeights(true);
    details_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    details_->header()->setSectionsClickable(true);
    details_->header()->setSortIndicatorShown(true);
    connect(details_->header(), &QHeaderView::sectionClicked, this, [this](int section) {
        sortBy(section, section == sortColumn_ ? !sortDescending_ : false);
    });
    ListView1_ = new QListView;
    ListView1_->setObjectName("ListView1");
    ListView1_->setModel(model_);
    ListView1_->setSelectionModel(details_->selectionModel());
    ListView1_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    ListView1_->setLayoutMode(QListView::Batched);
    ListView1_->setBatchSize(200);
    for (QAbstractItemView* v :
         {static_cast<QAbstractItemView*>(details_), static_cast<QAbstractItemView*>(ListView1_)}) {
        v->setContextMenuPolicy(Qt::CustomContextMenu);
        v->setEditTriggers(QAbstractItemView::NoEditTriggers);
        connect(v, &QWidget::customContextMenuRequested, this,
                [this](const QPoint& p) { openContextMenu(p); });
        v->installEventFilter(this);
        // In the open-dialog role a double click chooses, else it shows the picture.
        connect(v, &QAbstractItemView::doubleClicked, this, [this] {
            if (!dialogButtons_->isHidden())
                emit dialogButtons_->accepted();
            else
                MenüGeklickt("vollbild");
        });
    }
    connect(details_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { selectionChanged(); });

    visibleTimer_ = new QTimer(this);
    visibleTimer_->setSingleShot(true);
    visibleTimer_->setInterval(0);
    connect(visibleTimer_, &QTimer::timeout, this, [this] { requestVisible(); });
    for (QAbstractItemView* v :
         {static_cast<QAbstractItemView*>(details_), static_cast<QAbstractItemView*>(ListView1_)})
        connect(v->verticalScrollBar(), &QScrollBar::valueChanged, visibleTimer_,
                qOverload<>(&QTimer::start));
    connect(ListView1_->horizontalScrollBar(), &QScrollBar::valueChanged, visibleTimer_,
            qOverload<>(&QTimer::start));

    picBild_ = new QLabel;
    picBild_->setObjectName("picBild");
    picBild_->setAlignment(Qt::AlignCenter);
    picBild_->setMinimumSize(200, 150);
    picBild_->setStyleSheet("background: #202326; color: #c8c8c8;");
    picBild_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);

    // Details and the icon modes share one model and one selection; the
    // picture view puts the large picture above a strip of thumbnails.
    auto* pictureSplit = new QSplitter(Qt::Vertical);
    pictureSplit->setObjectName("picBildSplitter");
    pictureSplit->addWidget(picBild_);
    stack_ = new QStackedWidget;
    stack_->setObjectName("listStack");
    stack_->addWidget(details_);
    stack_->addWidget(ListView1_);
    pictureSplit->addWidget(stack_);
    pictureSplit->setStretchFactor(0, 1);
    pictureSplit->setStretchFactor(1, 0);

    cmbPattern_ = new QComboBox;
    cmbPattern_->setObjectName("cmbPattern");
    lblPattern_ = new QLabel;
    lblFolder_ = new QLabel;
    lblFolder_->setObjectName("lblPfad");
    lblFolder_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    connect(cmbPattern_, &QComboBox::activated, this, [this](int i) { setPattern(i); });

    TxtFileinfo_ = new QPlainTextEdit;
    TxtFileinfo_->setObjectName("TxtFileinfo");
    TxtFileinfo_->setReadOnly(true);
    TxtFileinfo_->setMaximumHeight(130);
    buildMedia();

    auto* left = new QSplitter(Qt::Vertical);
    left->addWidget(dirTree_);
    left->addWidget(TxtFileinfo_);
    left->addWidget(picMedia_);
    left->setStretchFactor(0, 1);

    auto* right = new QWidget;
    auto* rightLayout = new QVBoxLayout(right);
    rightLayout->setContentsMargins(0, 0, 0, 0);
    auto* top = new QHBoxLayout;
    top->addWidget(lblFolder_, 1);
    top->addWidget(lblPattern_);
    top->addWidget(cmbPattern_);
    rightLayout->addLayout(top);
    rightLayout->addWidget(pictureSplit, 1);
    dialogButtons_ = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    dialogButtons_->setObjectName("dialogButtons");
    dialogButtons_->hide();
    rightLayout->addWidget(dialogButtons_);

    auto* split = new QSplitter;
    split->setObjectName("mainSplitter");
    split->addWidget(left);
    split->addWidget(right);
    split->setStretchFactor(1, 1);
    split->setSizes({260, 840});
    setCentralWidget(split);
}

void FrmBildviewer::setLanguage(Language language) {
    language_ = language;
    operations_.setLanguage(language);
    applyTexts();
    const std::vector<std::string> selected = selectedFiles();
    fillModel();  // the column heads and texts in the new language
    reselect(selected);
    selectionChanged();
}

void FrmBildviewer::applyTexts() {
    setWindowTitle(QString::fromUtf8(t("Brindlesee Explorer", "Brindlesee Explorer")) +
                   (folder_.empty() ? QString() : " - " + QString::fromStdString(folder_)));
    for (const ToolEntry& e : kTools)
        if (*e.key) {
            QAction* a = findChild<QAction*>(QString::fromUtf8(e.key));
            const QString tip = QString::fromUtf8(t(e.german, e.english));
            a->setText(tip);
            a->setToolTip(tip);
        }
    mnuDatei_->setTitle(QString::fromUtf8(t("&Datei", "&File")));
    findChild<QAction*>("mnuSchliessen")->setText(QString::fromUtf8(t("Schließen", "Close")));
    mnuAnsicht_->setTitle(QString::fromUtf8(t("&Ansicht", "&View")));
    for (const ModeEntry& m : kModes)
        findChild<QAction*>(m.name)->setText(QString::fromUtf8(t(m.german, m.english)));
    mnuSortieren_->setTitle(QString::fromUtf8(t("Sortieren nach", "Sort by")));
    findChild<QAction*>("Sortname")->setText(QString::fromUtf8(t("Name", "Name")));
    findChild<QAction*>("SortSize")->setText(QString::fromUtf8(t("Größe", "Size")));
    findChild<QAction*>("SortTime")->setText(QString::fromUtf8(t("Datum", "Date")));
    lblPattern_->setText(QString::fromUtf8(t("Dateityp:", "File type:")));
    const int keep = patternIndex_;
    cmbPattern_->clear();
    for (const FileFilter& f : fileFilters(language_))
        cmbPattern_->addItem(QString::fromStdString(f.label));
    cmbPattern_->setCurrentIndex(keep);
    dialogButtons_->button(QDialogButtonBox::Ok)->setText("OK");
    dialogButtons_->button(QDialogButtonBox::Cancel)
        ->setText(QString::fromUtf8(t("Abbrechen", "Cancel")));
    cmdPlay_->setText(QString::fromUtf8(t("Abspielen", "Play")));
    cmdStop_->setText(QString::fromUtf8(t("Stopp", "Stop")));
}

}  // namespace brindle::explorer
