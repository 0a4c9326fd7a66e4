#include "shell/main_window.h"

#include <QActionGroup>
#include <QApplication>
#include <QComboBox>
#include <QDockWidget>
#include <QFontComboBox>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QProgressBar>
#include <QStatusBar>
#include <QTabBar>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

#include "editor/gui_thread.h"
#include "shell/album_explorer.h"
#include "shell/tool_icons.h"

namespace brindle::shell {

using editor::FrmNotePad;
using editor::runOnGui;

MainWindow::MainWindow(std::string programDirectory, Prompter& prompter, SettingsStore& settings, LogSink log,
                       QWidget* parent)
    : QMainWindow(parent), prompter_(prompter), settings_(settings) {
    setObjectName("frmMDI");
    setWindowIcon(QIcon(brandMark(64)));
    setAcceptDrops(true);
    mdi_ = new QMdiArea(this);
    mdi_->setObjectName("MDIArea");
    mdi_->setViewMode(QMdiArea::TabbedView);
    mdi_->setDocumentMode(true);
    mdi_->setTabsClosable(true);
    mdi_->setTabsMovable(true);
    mdi_->setBackground(QColor(0xE9, 0xEC, 0xF0));
    setCentralWidget(mdi_);
    if (auto* tabs = mdi_->findChild<QTabBar*>()) {
        tabs->setExpanding(false);
        tabs->setElideMode(Qt::ElideRight);
    }
    factory_ = std::make_unique<editor::NotePadFactory>(mdi_, *this);
    session_ = std::make_unique<Session>(std::move(programDirectory), prompter, settings, *factory_, std::move(log));
    factory_->setSession(session_.get());

    buildActions();
    buildMenus();
    buildToolbars();
    buildStatusBar();
    buildExplorer();
    wireSession();
    wireActions();
    connect(mdi_, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow* w) { onSubWindowActivated(w); });
    auto* memoryTimer = new QTimer(this);  // tmrSystemstatus
    connect(memoryTimer, &QTimer::timeout, this, [this] { updateMemory(); });
    memoryTimer->start(5000);
    updateMemory();
    Sprachumschaltung();
    updateTitle();
    pageStateChanged(nullptr);
    resize(1280, 820);
}

MainWindow::~MainWindow() {
    // Children still send signals while QWidget takes them down; nothing here listens any more.
    for (QObject* child : findChildren<QObject*>()) disconnect(child, nullptr, this, nullptr);
    releaseRecovery();
    unloadAll();
    session_.reset();
}

QAction* MainWindow::action(const QString& name) const {
    auto it = actions_.find(name);
    return it == actions_.end() ? nullptr : it->second;
}

QAction* MainWindow::makeAction(const QString& name, const QString& icon, const QKeySequence& keys) {
    auto* a = new QAction(this);
    a->setObjectName(name);
    if (!icon.isEmpty()) a->setIcon(toolIcon(icon));
    if (!keys.isEmpty()) a->setShortcut(keys);
    actions_[name] = a;
    return a;
}

// ---------------------------------------------------------------- building

void MainWindow::buildActions() {
    makeAction("mnuNeuAlbum", "new", QKeySequence::New);
    makeAction("mnuAlbumOeffnen", "open", QKeySequence::Open);
    makeAction("mnuAlbumSpeichern", "save", QKeySequence::Save);
    makeAction("mnuAlbumSpeichernUnter");
    makeAction("mnuSpezial")->setEnabled(false);
    makeAction("mnuBeenden", {}, QKeySequence::Quit);
    makeAction("mnuNeueSeite", "page", QKeySequence("Ctrl+Shift+N"));
    makeAction("mnuVorhSeite");
    makeAction("mnuFSave", {}, QKeySequence("Ctrl+Shift+S"));
    makeAction("mnuFSaveAs");
    makeAction("mnuFClose", {}, QKeySequence("Ctrl+W"));
    makeAction("mnuSeiteEntfernen");
    makeAction("mnuZurSeitenvorlage");
    makeAction("mnuZurUmschlagvorlage");
    makeAction("mnuNeuzeichnen", {}, QKeySequence("F5"));
    makeAction("mnuZoom", {}, QKeySequence("Ctrl+0"));
    makeAction("mnuUndo", "undo", QKeySequence::Undo);
    makeAction("mnuRedo", "redo", QKeySequence("Ctrl+Y"));
    makeAction("mnuECut", "cut", QKeySequence::Cut);
    makeAction("mnuECopy", "copy", QKeySequence::Copy);
    makeAction("mnuEPaste", "paste", QKeySequence::Paste);
    makeAction("mnuEDelete", "delete", QKeySequence::Delete);
    makeAction("mnuESelectAll", {}, QKeySequence::SelectAll);
    makeAction("mnuEigenschaften", {}, QKeySequence("Alt+Return"));
    makeAction("mnuNavigation");
    makeAction("mnuTextGanzVorne", {}, QKeySequence("Ctrl+Shift+]"));
    makeAction("mnuTextNachVorne", {}, QKeySequence("Ctrl+]"));
    makeAction("mnuTextNachHinten", {}, QKeySequence("Ctrl+["));
    makeAction("mnuTextGanzHinten", {}, QKeySequence("Ctrl+Shift+["));
    makeAction("setleft", "alignLeft");
    makeAction("setcenterver", "alignCenterH");
    makeAction("setright", "alignRight");
    makeAction("settop", "alignTop");
    makeAction("setcenterhor", "alignCenterV");
    makeAction("setdown", "alignBottom");
    makeAction("setaufthor", "distributeH");
    makeAction("setauftver", "distributeV");
    makeAction("mnuAlbumExplorer")->setCheckable(true);
    makeAction("mnuBrindleseeExplorer");
    makeAction("mnuFotodesign");
    makeAction("mnuRoteAugen");
    makeAction("mnuBildgroesse");
    makeAction("mnuBilderTeilen");
    makeAction("mnuPanorama");
    makeAction("mnuDrucken");
    makeAction("mnuVideo");
    makeAction("mnuWizzard");
    makeAction("mnuSpezialseiten");
    makeAction("mnuHTMLAlbum", "html");
    makeAction("mnuHTMLMail", "mail");
    makeAction("mnuVorlagen");
    makeAction("mnuOptionen", "options");
    makeAction("mnuDeutsch")->setCheckable(true);
    makeAction("mnuEnglisch")->setCheckable(true);
    makeAction("mnuHilfe", {}, QKeySequence::HelpContents);
    makeAction("mnuInfo");
    makeAction("tbBold", "bold")->setCheckable(true);
    makeAction("tbItalic", "italic")->setCheckable(true);
    makeAction("tbUnderline", "underline")->setCheckable(true);

    insertGroup_ = new QActionGroup(this);
    insertGroup_->setExclusive(true);
    const std::pair<const char*, const char*> modes[] = {{"tbZeiger", "pointer"},  {"tbBild", "picture"},
                                                         {"tbText", "text"},       {"tbPanorama", "panorama"},
                                                         {"tbSuchmaschine", "search"}, {"tbBilder", "pictures"}};
    for (const auto& [name, icon] : modes) {
        QAction* a = makeAction(name, icon);
        a->setCheckable(true);
        insertGroup_->addAction(a);
    }
    action("tbZeiger")->setChecked(true);
    makeAction("tbPlay", "play", QKeySequence("F9"))->setCheckable(true);
}

void MainWindow::buildMenus() {
    auto menu = [this](const QString& name) {
        QMenu* m = menuBar()->addMenu(QString());
        m->setObjectName(name);
        menus_[name] = m;
        return m;
    };
    auto add = [this](QMenu* m, std::initializer_list<const char*> names) {
        for (const char* n : names) {
            if (std::string(n) == "-") m->addSeparator();
            else m->addAction(action(n));
        }
    };
    QMenu* file = menu("mnuDatei");
    add(file, {"mnuNeuAlbum", "mnuAlbumOeffnen", "mnuAlbumSpeichern", "mnuAlbumSpeichernUnter", "-", "mnuSpezial", "-"});
    QMenu* recent = file->addMenu(QString());
    recent->setObjectName("mnuZuletzt");
    menus_["mnuZuletzt"] = recent;
    add(file, {"-", "mnuBeenden"});
    add(menu("mnuAlbum"), {"mnuNeueSeite", "mnuVorhSeite"});
    add(menu("mnuSeite"), {"mnuFSave", "mnuFSaveAs", "mnuFClose", "-", "mnuSeiteEntfernen", "-", "mnuZurSeitenvorlage",
                           "mnuZurUmschlagvorlage", "-", "mnuNavigation", "-", "mnuNeuzeichnen", "mnuZoom"});
    QMenu* edit = menu("mnuBearbeiten");
    add(edit, {"mnuUndo", "mnuRedo", "-", "mnuECut", "mnuECopy", "mnuEPaste", "mnuEDelete", "-", "mnuESelectAll",
               "mnuEigenschaften", "-",
               "mnuTextGanzVorne", "mnuTextNachVorne", "mnuTextNachHinten", "mnuTextGanzHinten", "-"});
    QMenu* insert = edit->addMenu(QString());
    insert->setObjectName("mnuEinfuegen");
    menus_["mnuEinfuegen"] = insert;
    insert->addActions(insertGroup_->actions());
    QMenu* align = edit->addMenu(QString());
    align->setObjectName("mnuAusrichten");
    menus_["mnuAusrichten"] = align;
    add(align, {"setleft", "setcenterver", "setright", "-", "settop", "setcenterhor", "setdown", "-", "setaufthor",
                "setauftver"});
    add(menu("mnuAnsicht"), {"mnuAlbumExplorer", "mnuBrindleseeExplorer"});
    add(menu("mnuWerkzeug"), {"mnuFotodesign", "mnuRoteAugen", "mnuBildgroesse", "mnuBilderTeilen", "-", "mnuPanorama", "mnuDrucken", "mnuVideo"});
    QMenu* extras = menu("mnuExtras");
    add(extras, {"mnuWizzard", "mnuSpezialseiten", "-", "mnuHTMLAlbum", "mnuHTMLMail", "-", "mnuVorlagen",
                 "mnuOptionen", "-"});
    QMenu* language = extras->addMenu(QString());
    language->setObjectName("mnuSprache");
    menus_["mnuSprache"] = language;
    add(language, {"mnuDeutsch", "mnuEnglisch"});
    add(menu("mnuHilfeMenue"), {"mnuHilfe", "mnuInfo"});
}

void MainWindow::buildToolbars() {
    mainBar_ = addToolBar(QString());
    mainBar_->setObjectName("Toolbar1");
    mainBar_->setMovable(false);
    mainBar_->setIconSize(QSize(22, 22));
    mainBar_->setToolButtonStyle(Qt::ToolButtonIconOnly);
    const char* const items[] = {"mnuNeuAlbum", "mnuAlbumOeffnen", "mnuAlbumSpeichern", "-",  "tbZeiger",
                                 "tbBild",      "tbText",          "tbPanorama",        "tbSuchmaschine",
                                 "tbBilder",    "-",               "mnuUndo",           "mnuRedo", "-",
                                 "mnuECut",     "mnuECopy",        "mnuEPaste",         "mnuEDelete", "-",
                                 "setleft",     "setcenterver",    "setright",          "settop", "setcenterhor",
                                 "setdown",     "setaufthor",      "setauftver",        "-", "tbPlay", "mnuHTMLAlbum"};
    for (const char* n : items) {
        if (std::string(n) == "-") mainBar_->addSeparator();
        else mainBar_->addAction(action(n));
    }
    // The insert modes carry their names beside the icon.
    for (const char* n : {"tbBild", "tbText", "tbPanorama", "tbSuchmaschine", "tbBilder"})
        if (auto* b = qobject_cast<QToolButton*>(mainBar_->widgetForAction(action(n))))
            b->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);

    addToolBarBreak();
    formatBar_ = addToolBar(QString());
    formatBar_->setObjectName("ToolbarSchrift");
    formatBar_->setMovable(false);
    formatBar_->setIconSize(QSize(18, 18));
    fontBox_ = new QFontComboBox(formatBar_);
    fontBox_->setObjectName("cboFont");
    fontBox_->setMinimumWidth(200);
    sizeBox_ = new QComboBox(formatBar_);
    sizeBox_->setObjectName("cboFontSize");
    sizeBox_->setEditable(true);
    sizeBox_->setMinimumWidth(64);
    formatBar_->addWidget(fontBox_);
    formatBar_->addWidget(sizeBox_);
    formatBar_->addAction(action("tbBold"));
    formatBar_->addAction(action("tbItalic"));
    formatBar_->addAction(action("tbUnderline"));
}

void MainWindow::buildStatusBar() {
    lblStatus_ = new QLabel(this);
    lblStatus_->setObjectName("lblStatus");
    lblStatus_->setMinimumWidth(300);
    progress_ = new QProgressBar(this);
    progress_->setObjectName("ProgressBar1");
    progress_->setMaximumWidth(180);
    progress_->setTextVisible(false);
    progress_->setRange(0, 10);
    progress_->setValue(0);
    progress_->setVisible(false);
    lblMemory_ = new QLabel(this);
    lblMemory_->setObjectName("frmSysinfo");
    statusBar()->addWidget(lblStatus_, 1);
    statusBar()->addPermanentWidget(progress_);
    statusBar()->addPermanentWidget(lblMemory_);
}

void MainWindow::buildExplorer() {
    explorer_ = new AlbumExplorer(*session_, this);
    explorerDock_ = new QDockWidget(this);
    explorerDock_->setObjectName("dockAlbumExplorer");
    explorerDock_->setWidget(explorer_);
    explorerDock_->setFeatures(QDockWidget::DockWidgetClosable | QDockWidget::DockWidgetMovable);
    addDockWidget(Qt::LeftDockWidgetArea, explorerDock_);
    resizeDocks({explorerDock_}, {240}, Qt::Horizontal);
    connect(explorer_, &AlbumExplorer::pageWanted, this, [this](int i) { session_->SeiteOeffnen(i, "", false); });
    connect(explorer_, &AlbumExplorer::newPageWanted, this, [this] { session_->neueSeite("", false); });
    connect(explorer_, &AlbumExplorer::pageRemovalWanted, this, [this](int index) {
        // A closed page is opened first, so the removal can ask about it like any other.
        if (session_->album().pages[index].slot == 0) session_->SeiteOeffnen(index, "", false);
        if (const int slot = session_->album().pages[index].slot) session_->seiteEntfernen(slot);
    });
    connect(explorer_, &AlbumExplorer::optionsWanted, this, [this] { showOptions(); });
    connect(explorer_, &AlbumExplorer::templateWanted, this, [this](bool cover) { openTemplatePage(cover); });
    connect(explorerDock_, &QDockWidget::visibilityChanged, this,
            [this](bool visible) { action("mnuAlbumExplorer")->setChecked(visible); });
}

void MainWindow::wireSession() {
    SessionHooks& h = session_->hooks();
    h.refreshExplorer = [this] {
        runOnGui(this, [this] {
            explorer_->AktualisiereAlbumExplorer();
            updateTitle();
        });
    };
    h.rebuildRecentMenu = [this](const std::vector<std::string>& shown) {
        runOnGui(this, [this, shown] { rebuildRecentMenu(shown); });
    };
}

// ---------------------------------------------------------------- host

QString MainWindow::insertMode() const {
    QAction* checked = insertGroup_->checkedAction();
    if (!checked || checked->objectName() == "tbZeiger") return {};
    return checked->objectName().mid(2);
}

void MainWindow::setInsertMode(const QString& mode) {
    QAction* a = action(mode.isEmpty() ? "tbZeiger" : "tb" + mode);
    if (a) a->setChecked(true);
}

void MainWindow::insertDone() { action("tbZeiger")->setChecked(true); }

void MainWindow::showStatus(const QString& text) {
    runOnGui(this, [this, text] { lblStatus_->setText(text); });
}

void MainWindow::showProgress(int value, int maximum) {
    runOnGui(this, [this, value, maximum] {
        progress_->setRange(0, std::max(1, maximum));
        progress_->setValue(value);
        progress_->setVisible(value > 0);  // only long work shows the bar
    });
}

FrmNotePad* MainWindow::activeNotePad() const {
    QMdiSubWindow* w = mdi_->activeSubWindow();
    auto* pad = w ? qobject_cast<FrmNotePad*>(w->widget()) : nullptr;
    return pad && !pad->unloading() ? pad : nullptr;
}

std::vector<FrmNotePad*> MainWindow::notePads() const {
    std::vector<FrmNotePad*> pads;
    for (QMdiSubWindow* w : mdi_->subWindowList())
        if (auto* pad = qobject_cast<FrmNotePad*>(w->widget())) pads.push_back(pad);
    return pads;
}

void MainWindow::pageStateChanged(FrmNotePad* pad) {
    if (pad && pad != activeNotePad()) return;
    editor::PageDocument* doc = pad ? &pad->document() : nullptr;
    const std::size_t selected = doc ? doc->auswahl().size() : 0;
    for (const char* n : {"mnuFSave", "mnuFSaveAs", "mnuFClose", "mnuSeiteEntfernen", "mnuZurSeitenvorlage",
                          "mnuZurUmschlagvorlage", "mnuNeuzeichnen", "mnuZoom", "mnuESelectAll", "mnuEigenschaften",
                          "mnuNavigation"})
        action(n)->setEnabled(pad);
    for (const char* n : {"mnuECut", "mnuECopy", "mnuEDelete", "mnuTextGanzVorne", "mnuTextNachVorne",
                          "mnuTextNachHinten", "mnuTextGanzHinten"})
        action(n)->setEnabled(selected > 0);
    for (const char* n : {"setleft", "setcenterver", "setright", "settop", "setcenterhor", "setdown", "setaufthor",
                          "setauftver"})
        action(n)->setEnabled(selected > 1);
    action("mnuEPaste")->setEnabled(doc && doc->canPaste());
    action("mnuUndo")->setEnabled(doc && doc->undoRing().canUndo());
    action("mnuRedo")->setEnabled(doc && doc->undoRing().canRedo());
    insertGroup_->setEnabled(pad);
    if (pad) action("mnuSeiteEntfernen")->setText(removeMenuCaption(*pad));
    // The font bar shows the active text.
    const bool text = doc && doc->aktiv() && doc->aktiv()->kind == editor::Kind::Text &&
                      editor::isLive(doc->page(), *doc->aktiv());
    formatBar_->setEnabled(text);
    if (text) {
        updatingFormat_ = true;
        const FontSpec& f = doc->page().texts[doc->aktiv()->index].font;
        fontBox_->setCurrentFont(QFont(QString::fromStdString(editor::fontNameOf(f))));
        sizeBox_->setEditText(QString::number(editor::fontSizeOf(f)));
        action("tbBold")->setChecked(isTrue(f.bold));
        action("tbItalic")->setChecked(isTrue(f.italic));
        action("tbUnderline")->setChecked(isTrue(f.underline));
        updatingFormat_ = false;
    }
}

// "Seite1 entfernen" / "Delete Seite1" in the present language, with its
// access key on the verb; an ampersand in the page's name shows as itself.
QString MainWindow::removeMenuCaption(const FrmNotePad& pad) const {
    if (pad.removeMenuText().isEmpty()) return t("Seite &entfernen", "&Delete page");
    QString name = pad.caption();
    name.replace('&', "&&");
    return session_->language() == Language::German ? name + " &entfernen" : "&Delete " + name;
}

void MainWindow::onSubWindowActivated(QMdiSubWindow* window) {
    if (lastActive_ && lastActive_ != window)
        if (auto* old = qobject_cast<FrmNotePad*>(lastActive_->widget())) old->deactivated();
    lastActive_ = window;
    // In the tabbed view the page that comes forward fills the area, also
    // when another page was closed and Qt left this one in its normal state.
    if (window && mdi_->viewMode() == QMdiArea::TabbedView && !window->isMaximized()) window->showMaximized();
    FrmNotePad* pad = activeNotePad();
    if (pad) {
        pad->activated();
        explorer_->markPage(session_->entryOfSlot(pad->tag()));
    }
    pageStateChanged(pad);
}

void MainWindow::updateTitle() {
    setWindowTitle(QString::fromStdString("Brindlesee [" + session_->album().title + "]"));
}

void MainWindow::unloadAll() {
    if (!session_) return;
    for (FrmNotePad* pad : notePads()) {
        pad->setUnloading();
        if (QWidget* w = pad->parentWidget()) w->close();
    }
}

}  // namespace brindle::shell
