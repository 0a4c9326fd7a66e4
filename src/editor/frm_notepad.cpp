#include "editor/frm_notepad.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMdiArea>
#include <QMenu>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolButton>
#include <QVBoxLayout>

#include "album/paths.h"
#include "editor/display_picture.h"
#include "editor/gui_thread.h"

namespace brindle::editor {

namespace {
QToolButton* footerButton(QWidget* parent, const char* name, const QString& text) {
    auto* b = new QToolButton(parent);
    b->setObjectName(name);
    b->setText(text);
    b->setAutoRaise(true);
    b->setFocusPolicy(Qt::NoFocus);
    return b;
}
}  // namespace

FrmNotePad::FrmNotePad(Session& session, int slot, NotePadHost& host, QWidget* parent)
    : QWidget(parent), session_(session), slot_(slot), host_(host), doc_(session, slot, &metrics_) {
    setObjectName("frmNotePad");
    scroll_ = new QScrollArea(this);
    scroll_->setObjectName("scrollPage");
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setWidgetResizable(false);
    scroll_->setBackgroundRole(QPalette::Dark);
    canvas_ = new PageCanvas(doc_, scroll_);
    scroll_->setWidget(canvas_);
    scroll_->viewport()->installEventFilter(this);  // the canvas fills the view whatever its size
    canvas_->insertModeActive = [this] { return !host_.insertMode().isEmpty(); };
    canvas_->playModeActive = [this] { return host_.playMode(); };
    canvas_->followLink = [this](const std::string& link) { SpiegelLink(link, Kind::Bild, slot_, 0); };
    canvas_->coveredInPlay = [this](ElementRef ref) { return coveredInPlay(ref); };
    canvas_->elementPressed = [this](ElementRef ref) {
        const PageRecord& page = doc_.page();
        std::string link;
        if (ref.kind == Kind::Bild) link = page.pictures[ref.index].hyperlink;
        if (ref.kind == Kind::Text) link = page.texts[ref.index].hyperlink;
        if (ref.kind == Kind::Suchmaschine) link = page.searchBoxes[ref.index].hyperlink;
        SpiegelLink(link, ref.kind, slot_, ref.index);
    };

    auto* footer = new QWidget(this);
    footer->setObjectName("pageFooter");
    auto* row = new QHBoxLayout(footer);
    row->setContentsMargins(8, 2, 8, 2);
    row->setSpacing(2);
    cmdZoom_ = footerButton(footer, "cmdZoom", "100 %");
    lblBreite_ = new QLabel(footer);
    cmdHminus_ = footerButton(footer, "cmdHminus", QStringLiteral("\u2212"));
    cmdHplus_ = footerButton(footer, "cmdHplus", "+");
    lblHoehe_ = new QLabel(footer);
    cmdVminus_ = footerButton(footer, "cmdVminus", QStringLiteral("\u2212"));
    cmdVplus_ = footerButton(footer, "cmdVplus", "+");
    row->addWidget(cmdZoom_);
    row->addStretch(1);
    for (QWidget* w : std::initializer_list<QWidget*>{lblBreite_, cmdHminus_, cmdHplus_}) row->addWidget(w);
    row->addSpacing(12);
    for (QWidget* w : std::initializer_list<QWidget*>{lblHoehe_, cmdVminus_, cmdVplus_}) row->addWidget(w);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(scroll_, 1);
    layout->addWidget(footer);

    connect(cmdZoom_, &QToolButton::clicked, this, [this] { cmdZoom_Click(); });
    connect(cmdHminus_, &QToolButton::clicked, this, [this] { grow(true, false); });
    connect(cmdHplus_, &QToolButton::clicked, this, [this] { grow(true, true); });
    connect(cmdVminus_, &QToolButton::clicked, this, [this] { grow(false, false); });
    connect(cmdVplus_, &QToolButton::clicked, this, [this] { grow(false, true); });
    connect(canvas_, &PageCanvas::boxDrawn, this, [this](Box b) { insertInBox(b); });
    connect(canvas_, &PageCanvas::contextMenuWanted, this,
            [this](ElementRef r, QPoint at) { showContextMenu(r, at); });
    connect(canvas_, &PageCanvas::canvasMenuWanted, this, [this](QPoint at) {
        QMenu menu(this);
        menu.addAction(t("&Einfügen", "&Paste"), this, [this] { doc_.paste(); })->setEnabled(doc_.canPaste());
        menu.addAction(t("Alles &markieren", "Select &all"), this, [this] { doc_.selectAll(); });
        menu.addSeparator();
        menu.addAction(t("&Neuzeichnen", "&Redraw"), this, [this] { NeuZeichnen(); });
        menu.addSeparator();
        menu.addAction(t("&Seiteneigenschaften ...", "Pa&ge properties ..."), this,
                       [this] { host_.showProperties(this, std::nullopt); });
        menu.exec(at);
    });
    connect(canvas_, &PageCanvas::propertiesWanted, this, [this](ElementRef r) { host_.showProperties(this, r); });
    connect(canvas_, &PageCanvas::deleteWanted, this, [this] { doc_.deleteSelection(); });
    connect(canvas_, &PageCanvas::picturesDropped, this, [this](Point at, const std::vector<std::string>& files) {
        insertPictures(at, files);
    });
    wireDocument();
    Sprachumschaltung();
    resize(900, 640);
}

void FrmNotePad::wireDocument() {
    PageHooks& h = doc_.hooks();
    h.elementAktiviert = [this](ElementRef ref) { canvas_->reloadElement(ref); };
    connect(canvas_, &PageCanvas::pictureFailed, this, [this] { reportPictureFailure(); });
    // Told after the page is built, never in the middle of it.
    connect(
        canvas_, &PageCanvas::hintWanted, this,
        [this](int number, const QString& text) { host_.showHint(number, text.toStdString()); }, Qt::QueuedConnection);
    h.elementEntfernt = [this](ElementRef ref) {
        canvas_->dropElement(ref);
        dropPlayControl(ref);
    };
    h.reihenfolgeAnwenden = [this](int) { canvas_->update(); };
    h.geometryChanged = [this] {
        updateCanvasSize();
        canvas_->update();
    };
    h.selectionChanged = [this] {
        canvas_->update();
        notifyHost();
    };
    h.toolUndoRedo = [this](bool, bool) { notifyHost(); };
    h.pasteAvailable = [this](bool) { notifyHost(); };
    h.status = [this](const std::string& s) { host_.showStatus(QString::fromStdString(s)); };
    h.neuZeichnenSchritt = [this](int step) {
        host_.showProgress(step == 10 ? 0 : step, 10);
        if (step == 1) setUpdatesEnabled(false);
        if (step == 6) canvas_->reloadPage();
        if (step == 9) {
            updateCanvasSize();
            setUpdatesEnabled(true);
        }
    };
}

// Pictures arrive from the workers one by one; their failures are told one
// after another, never as boxes stacked over each other.
void FrmNotePad::reportPictureFailure() {
    ++failuresToTell_;
    if (tellingFailures_) return;
    tellingFailures_ = true;
    QPointer<FrmNotePad> alive(this);
    while (alive && failuresToTell_ > 0) {
        --failuresToTell_;
        host_.prompter().message(t("Fehler beim Aktivieren des Bildes aufgetreten.", "Error while activating the Picture."),
                                 kIconCritical, t("Fehler", "Error"));
    }
    if (alive) tellingFailures_ = false;
}

void FrmNotePad::notifyHost() {
    if (host_.activeNotePad() == this) host_.pageStateChanged(this);
    emit stateChanged();
}

void FrmNotePad::setCaption(const QString& caption) {
    setWindowTitle(caption);
    if (auto* w = qobject_cast<QMdiSubWindow*>(parentWidget())) w->setWindowTitle(caption);
}

void FrmNotePad::Sprachumschaltung() {
    lblBreite_->setText(t("Breite", "Width"));
    lblHoehe_->setText(t("Höhe", "Height"));
    cmdZoom_->setToolTip(t("Ansicht 100 % / 50 %", "View 100 % / 50 %"));
    cmdHplus_->setToolTip(t("Seite breiter", "Wider page"));
    cmdHminus_->setToolTip(t("Seite schmaler", "Narrower page"));
    cmdVplus_->setToolTip(t("Seite höher", "Taller page"));
    cmdVminus_->setToolTip(t("Seite niedriger", "Lower page"));
    if (!playControls_.empty()) PlaymodeEinstellen();  // the search forms speak the new language
}

void FrmNotePad::NeuZeichnen() {
    doc_.NeuZeichnen();
    canvas_->update();
    notifyHost();
    PlaymodeEinstellen();
}

void FrmNotePad::updateCanvasSize() {
    const QSize page = canvas_->pageSize();
    const QSize view = scroll_->viewport()->size();
    canvas_->resize(std::max(page.width(), view.width()), std::max(page.height(), view.height()));
    cmdHplus_->setEnabled(doc_.canGrow(true, true));
    cmdHminus_->setEnabled(doc_.canGrow(true, false));
    cmdVplus_->setEnabled(doc_.canGrow(false, true));
    cmdVminus_->setEnabled(doc_.canGrow(false, false));
}

void FrmNotePad::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    updateCanvasSize();
}

bool FrmNotePad::eventFilter(QObject* watched, QEvent* event) {
    if (watched == scroll_->viewport() && event->type() == QEvent::Resize) updateCanvasSize();
    return QWidget::eventFilter(watched, event);
}

void FrmNotePad::cmdZoom_Click() {
    canvas_->setZoom(canvas_->zoom() != 100 ? 100 : 50);
    cmdZoom_->setText(QString::number(canvas_->zoom()) + " %");
    NeuZeichnen();
}

void FrmNotePad::grow(bool horizontal, bool plus) {
    doc_.grow(horizontal, plus);
    updateCanvasSize();
}

// ---------------------------------------------------------------- templates

bool FrmNotePad::isTemplatePage() const {
    const QString c = windowTitle().toLower();
    return c == "seitenvorlage" || c == "page template" || c == "umschlagvorlage" || c == "cover template";
}

void FrmNotePad::copyTemplateBack() {
    if (!isTemplatePage()) return;
    const QString c = windowTitle().toLower();
    AlbumRecord& album = session_.album();
    (c == "umschlagvorlage" || c == "cover template" ? album.coverDefaults : album.pageDefaults) = doc_.page();
}

void FrmNotePad::mnuZurSeitenvorlage_Click(bool cover) {
    (cover ? session_.album().coverDefaults : session_.album().pageDefaults) = doc_.page();
    session_.album().modified = kTrue;
}

void FrmNotePad::activated() {
    notifyHost();
    if (host_.playMode()) playPageMusic();
}

void FrmNotePad::deactivated() { copyTemplateBack(); }

// ---------------------------------------------------------------- saving and closing

bool FrmNotePad::mnuFSave_Click() {
    if (session_.SpeicherDieseForm(slot_, false) != kCancel) return true;
    host_.prompter().message(t("Sie haben das Speichern von noch nicht gespeicherten Seiten abgebrochen",
                               "You have canceled the saving of not saved pages"),
                             kIconExclamation, t("Abbruch", "Cancel"));
    return false;
}

bool FrmNotePad::mnuFSaveAs_Click() {
    FileDialog d;
    d.filter = albumFileFilter(session_.language() == Language::German);
    d.filterIndex = kFilterPage;
    d.startDirectory = session_.album().directory;
    d.proposedName = session_.album().directory + windowTitle().toStdString() + ".apg";
    const std::string path = host_.prompter().saveFile(d);
    if (path.empty()) return false;
    session_.state().pageSlots[slot_].modified = kTrue;
    return session_.schreibeSeite(path, slot_);
}

void FrmNotePad::mnuSeiteEntfernen_Click() { session_.seiteEntfernen(slot_); }

bool FrmNotePad::queryClose() {
    if (unloading_) return true;
    if (isTemplatePage()) {
        copyTemplateBack();
        return true;
    }
    return session_.SpeicherDieseForm(slot_, true) != kCancel;
}

// ---------------------------------------------------------------- new elements

void FrmNotePad::insertInBox(Box box) {
    const QString mode = host_.insertMode();
    auto sized = [&](int w, int h) {
        if (box.width < kMinimumBox || box.height < kMinimumBox) box = {box.left, box.top, w, h};
    };
    if (mode == "Bild") {
        insertPicture(box);
    } else if (mode == "Bilder") {
        insertPictures({box.left, box.top}, askPictureFiles(true));
    } else if (mode == "Text") {
        const std::optional<std::string> words =
            host_.prompter().inputText(t("Bitte geben Sie den Text ein:", "Please enter the text:"), "Text", "");
        if (words && !words->empty()) doc_.createText(box, *words);
    } else if (mode == "Panorama") {
        sized(480, 220);
        doc_.createPanorama(box);
    } else if (mode == "Suchmaschine") {
        sized(320, 90);
        doc_.createSearch(box);
    }
    host_.insertDone();
    updateCanvasSize();
    canvas_->setFocus();
}

std::vector<std::string> FrmNotePad::askPictureFiles(bool several) {
    SessionState& s = session_.state();
    FileDialog d;
    d.title = several ? t("Bilder einfügen", "Insert pictures") : t("Bild einfügen", "Insert picture");
    d.filter = std::string(t("Bilder", "Pictures")) + "|*.jpg;*.jpeg;*.png;*.bmp;*.gif;*.tif;*.tiff;*.pcx;*.tga|" +
               t("Alle Dateien", "All files") + "|*.*";
    d.startDirectory = s.pictureDirectory.empty() ? s.album.directory : s.pictureDirectory;
    d.multiSelect = several;
    std::vector<std::string> files = splitFileList(host_.prompter().openFile(d));
    if (!files.empty()) {
        std::string name;
        teilePfad(files.front(), s.pictureDirectory, name);
    }
    return files;
}

void FrmNotePad::insertPicture(Box box) {
    const std::vector<std::string> files = askPictureFiles(false);
    if (files.empty()) return;
    const QSize size = pictureFileSize(QString::fromStdString(files.front()));
    doc_.createPicture(box, files.front(), size.width(), size.height());
}

void FrmNotePad::insertPictures(Point start, const std::vector<std::string>& paths) {
    if (paths.empty()) return;
    std::vector<PageDocument::PictureFile> files;
    for (const std::string& path : paths) {
        const QSize size = pictureFileSize(QString::fromStdString(path));
        files.push_back({path, size.isValid() ? size.width() : 0, size.isValid() ? size.height() : 0});
    }
    const Grid g = doc_.grid();
    const Point at{toPixel(RasterX(start.x, g)), toPixel(RasterY(start.y, g))};
    doc_.insertManyPictures(at, files, toPixel(canvas_->toPage(QPointF(scroll_->viewport()->width(), 0)).x()));
    updateCanvasSize();
}

void FrmNotePad::editText(ElementRef ref) {
    if (ref.kind != Kind::Text || !isLive(doc_.page(), ref)) return;
    if (!doc_.isSelected(ref)) doc_.SetzAnker(ref, 0);
    const std::optional<std::string> words = host_.prompter().inputText(
        t("Bitte geben Sie den Text ein:", "Please enter the text:"), "Text", doc_.page().texts[ref.index].text);
    if (!words) return;
    doc_.changeSelectedTexts([&](TextElement& text) {
        text.text = *words;
        text.ext.extText[0] = *words;
    });
}

void FrmNotePad::showContextMenu(ElementRef ref, QPoint globalPos) {
    QMenu menu(this);
    if (ref.kind == Kind::Text) {
        menu.addAction(t("Text &bearbeiten ...", "&Edit text ..."), this, [this, ref] { editText(ref); });
        menu.addSeparator();
    }
    menu.addAction(t("&Ausschneiden", "Cu&t"), this, [this] { doc_.cut(); });
    menu.addAction(t("&Kopieren", "&Copy"), this, [this] { doc_.copy(); });
    menu.addAction(t("&Löschen", "&Delete"), this, [this] { doc_.deleteSelection(); });
    menu.addSeparator();
    menu.addAction(t("Ganz nach &vorne", "Bring to &front"), this, [this] { doc_.zOrder("ganzvorn"); });
    menu.addAction(t("Eine Ebene nach v&orne", "Bring f&orward"), this, [this] { doc_.zOrder("nachvorn"); });
    menu.addAction(t("Eine Ebene nach h&inten", "Send back&ward"), this, [this] { doc_.zOrder("nachhinten"); });
    menu.addAction(t("Ganz nach &hinten", "Send to &back"), this, [this] { doc_.zOrder("ganzhinten"); });
    menu.addSeparator();
    menu.addAction(t("&Eigenschaften ...", "P&roperties ..."), this, [this, ref] { host_.showProperties(this, ref); });
    menu.exec(globalPos);
}

// ---------------------------------------------------------------- sub-window, editor, factory

NotePadWindow::NotePadWindow(Session& session, FrmNotePad* pad) : session_(session), pad_(pad) {
    setWidget(pad);
    setAttribute(Qt::WA_DeleteOnClose);
    setObjectName("notePadWindow");
}

void NotePadWindow::closeEvent(QCloseEvent* event) {
    if (pad_->unloading()) {
        event->accept();
        return;
    }
    if (!pad_->queryClose()) {
        event->ignore();
        return;
    }
    event->accept();
    // A page that left the album with "No" was closed by the flows already.
    if (session_.editor(pad_->tag()) == editor_) session_.seiteGeschlossen(pad_->tag());
}

NotePadEditor::NotePadEditor(QMdiArea* area, NotePadWindow* window) : area_(area), window_(window) {}

NotePadEditor::~NotePadEditor() {
    runOnGui(area_, [this] {
        if (!window_) return;
        window_->pad()->setUnloading();
        window_->setEditor(nullptr);
        window_->close();
    });
}

void NotePadEditor::show() {
    runOnGui(area_, [this] {
        if (!window_) return;
        window_->pad()->NeuZeichnen();
        // In the tabbed view every page fills the area.
        if (area_ && area_->viewMode() == QMdiArea::TabbedView) window_->showMaximized();
        else window_->show();
        if (area_) area_->setActiveSubWindow(window_);
        window_->pad()->canvas()->setFocus();
    });
}

void NotePadEditor::activate() {
    runOnGui(area_, [this] {
        if (window_ && area_ && window_->isVisible()) area_->setActiveSubWindow(window_);
    });
}

void NotePadEditor::unload() {
    runOnGui(area_, [this] {
        if (!window_) return;
        window_->pad()->setUnloading();
        window_->close();
    });
}

void NotePadEditor::setCaption(const std::string& caption) {
    runOnGui(area_, [this, caption] {
        if (window_) window_->pad()->setCaption(QString::fromStdString(caption));
    });
}

std::string NotePadEditor::caption() const {
    std::string c;
    runOnGui(area_, [&] {
        if (window_) c = window_->pad()->caption().toStdString();
    });
    return c;
}

void NotePadEditor::setRemoveMenuText(const std::string& text) {
    runOnGui(area_, [this, text] {
        if (window_) window_->pad()->setRemoveMenuText(QString::fromStdString(text));
    });
}

std::unique_ptr<PageEditor> NotePadFactory::create(int slot, std::string& error) {
    std::unique_ptr<PageEditor> made;
    runOnGui(area_, [&] {
        if (!session_ || !area_) {
            error = "no window area";
            return;
        }
        auto* pad = new FrmNotePad(*session_, slot, host_);
        auto* window = new NotePadWindow(*session_, pad);
        area_->addSubWindow(window);
        window->hide();  // shown when the flows show the page
        auto editor = std::make_unique<NotePadEditor>(area_, window);
        window->setEditor(editor.get());
        made = std::move(editor);
    });
    return made;
}

}  // namespace brindle::editor
