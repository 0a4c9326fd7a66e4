#include "studio/red_eye_window.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QCloseEvent>
#include <QEventLoop>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <QSplitter>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <thread>

#include "editor/qimage_dib.h"
#include "image/picture_io.h"
#include "studio/picture_view.h"

namespace brindle::studio {
namespace {

QPushButton* button(const char* name, QWidget* parent) {
    auto* b = new QPushButton(parent);
    b->setObjectName(name);
    return b;
}

QLabel* label(const char* name, QWidget* parent) {
    auto* l = new QLabel(parent);
    l->setObjectName(name);
    return l;
}

QSlider* slider(const char* name, int low, int high, int value, QWidget* parent) {
    auto* s = new QSlider(Qt::Horizontal, parent);
    s->setObjectName(name);
    s->setRange(low, high);
    s->setValue(value);
    s->setPageStep(5);
    return s;
}

QSpinBox* spin(const char* name, int low, int high, int value, QWidget* parent) {
    auto* s = new QSpinBox(parent);
    s->setObjectName(name);
    s->setRange(low, high);
    s->setValue(value);
    return s;
}

// A threshold's caption: flat, and a click puts the default back.
QPushButton* resettingLabel(const char* name, QSpinBox* box, int defaultValue, QWidget* parent) {
    QPushButton* b = button(name, parent);
    b->setFlat(true);
    b->setStyleSheet("text-align: left; padding: 2px;");
    b->setCursor(Qt::PointingHandCursor);
    QObject::connect(b, &QPushButton::clicked, box, [box, defaultValue] { box->setValue(defaultValue); });
    return b;
}

std::string fileName(const std::string& path) { return QFileInfo(QString::fromStdString(path)).fileName().toStdString(); }

}  // namespace

RedEyeWindow::RedEyeWindow(const std::string& picturePath, Prompter& prompter, Language language, QWidget* parent)
    : QWidget(parent, Qt::Window), path_(picturePath), prompter_(prompter), language_(language) {
    setObjectName("frmRedEYe");
    setAttribute(Qt::WA_DeleteOnClose, false);
    buildControls();
    connectViews();
    setLanguage(language);
    resize(1120, 740);
    load();
    setMode(Mode::Click);
}

RedEyeWindow::~RedEyeWindow() = default;

void RedEyeWindow::buildControls() {
    auto* panel = new QWidget(this);
    panel->setObjectName("controls");
    panel->setFixedWidth(300);
    auto* side = new QVBoxLayout(panel);
    side->setContentsMargins(8, 8, 8, 8);

    clickMode_ = button("cmdKlickmethode", panel);
    selectionMode_ = button("cmdAuswahlmethode", panel);
    auto* modes = new QButtonGroup(this);
    for (QPushButton* b : {clickMode_, selectionMode_}) {
        b->setCheckable(true);
        b->setMinimumHeight(30);
        b->setStyleSheet("QPushButton:checked { font-weight: bold; }");
        modes->addButton(b);
    }
    auto* modeRow = new QHBoxLayout;
    modeRow->addWidget(clickMode_);
    modeRow->addWidget(selectionMode_);
    side->addLayout(modeRow);

    panels_ = new QStackedWidget(panel);
    panels_->addWidget(buildClickPanel());
    panels_->addWidget(buildSelectionPanel());
    side->addWidget(panels_);
    side->addWidget(buildViewButtons());
    side->addStretch(1);

    original_ = button("cmdOriginal", panel);
    save_ = button("cmdSpeichern", panel);
    saveAs_ = button("cmdSPeicher6nUnter", panel);
    cancelButton_ = button("cmdAbbrechen", panel);
    side->addWidget(original_);
    auto* saveRow = new QHBoxLayout;
    saveRow->addWidget(save_);
    saveRow->addWidget(saveAs_);
    side->addLayout(saveRow);
    progress_ = new QProgressBar(panel);
    progress_->setObjectName("progress");
    progress_->setRange(0, 100);
    progress_->setVisible(false);
    side->addWidget(progress_);
    side->addWidget(cancelButton_);
    fileLabel_ = label("lblDatei", panel);
    fileLabel_->setWordWrap(true);
    fileLabel_->setStyleSheet("color: palette(mid);");
    side->addWidget(fileLabel_);

    // The original (shown on request) beside the result.
    views_ = new QSplitter(Qt::Horizontal, this);
    const auto column = [this](QLabel*& caption, PictureView*& view, const char* name) {
        auto* box = new QWidget(views_);
        auto* v = new QVBoxLayout(box);
        v->setContentsMargins(0, 0, 0, 0);
        caption = label(name, box);
        caption->setAlignment(Qt::AlignCenter);
        view = new PictureView(box);
        view->setObjectName(QString(name) + "View");
        v->addWidget(caption);
        v->addWidget(view, 1);
        views_->addWidget(box);
        return box;
    };
    QWidget* before = column(originalCaption_, originalView_, "Original");
    column(resultCaption_, resultView_, "Picture1");
    // The captions only matter while both pictures show.
    before->setVisible(false);
    resultCaption_->setVisible(false);

    auto* main = new QHBoxLayout(this);
    main->setContentsMargins(0, 0, 6, 6);
    main->addWidget(panel);
    main->addWidget(views_, 1);

    connect(clickMode_, &QPushButton::clicked, this, [this] { setMode(Mode::Click); });
    connect(selectionMode_, &QPushButton::clicked, this, [this] { setMode(Mode::Selection); });
    connect(original_, &QPushButton::clicked, this, &RedEyeWindow::showOriginal);
    connect(save_, &QPushButton::clicked, this, &RedEyeWindow::save);
    connect(saveAs_, &QPushButton::clicked, this, &RedEyeWindow::saveAs);
    connect(cancelButton_, &QPushButton::clicked, this, [this] {
        if (busy_ && cancel_) *cancel_ = true;
        else close();
    });
}

QWidget* RedEyeWindow::buildClickPanel() {
    clickBox_ = new QGroupBox(this);
    clickBox_->setObjectName("picKlick");
    auto* g = new QGridLayout(clickBox_);
    clickHint_ = label("lblKlickHinweis", clickBox_);
    clickHint_->setWordWrap(true);
    g->addWidget(clickHint_, 0, 0, 1, 2);
    sensitivityLabel_ = label("lblRottoleranz", clickBox_);
    sensitivity_ = slider("HScrRottolleranz", kSensitivityMin, kSensitivityMax, kSensitivityDefault, clickBox_);
    sensitivityValue_ = label("lblRottoleranzWert", clickBox_);
    searchWidthLabel_ = label("lblSuchweite", clickBox_);
    searchWidth_ = slider("HScrSuchweite", kSearchWidthMin, kSearchWidthMax, kSearchWidthDefault, clickBox_);
    searchWidthValue_ = label("lblSuchweiteWert", clickBox_);
    for (QLabel* v : {sensitivityValue_, searchWidthValue_}) {
        v->setMinimumWidth(28);
        v->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    }
    g->addWidget(sensitivityLabel_, 1, 0, 1, 2);
    g->addWidget(sensitivity_, 2, 0);
    g->addWidget(sensitivityValue_, 2, 1);
    g->addWidget(searchWidthLabel_, 3, 0, 1, 2);
    g->addWidget(searchWidth_, 4, 0);
    g->addWidget(searchWidthValue_, 4, 1);
    g->setRowStretch(5, 1);
    connect(sensitivity_, &QSlider::valueChanged, this, [this](int v) {
        session_.setSensitivity(v);
        updateValueLabels();
        refreshPicture();
    });
    connect(searchWidth_, &QSlider::valueChanged, this, [this](int v) {
        session_.setSearchWidth(v);
        updateValueLabels();
        refreshPicture();
    });
    return clickBox_;
}

QWidget* RedEyeWindow::buildSelectionPanel() {
    selectionBox_ = new QGroupBox(this);
    selectionBox_->setObjectName("PicAuswahl");
    auto* g = new QGridLayout(selectionBox_);
    selectionHint_ = label("lblAuswahlHinweis", selectionBox_);
    selectionHint_->setWordWrap(true);
    lasso_ = button("Command4", selectionBox_);
    lasso_->setCheckable(true);
    lasso_->setChecked(true);
    red_ = spin("hred", kThresholdMin, kThresholdMax, SelectionThresholds::kDefaultRed, selectionBox_);
    other_ = spin("hother", kThresholdMin, kThresholdMax, SelectionThresholds::kDefaultOther, selectionBox_);
    bright_ = spin("hbright", kBrightMin, kBrightMax, SelectionThresholds::kDefaultBright, selectionBox_);
    redLabel_ = resettingLabel("lblhred", red_, SelectionThresholds::kDefaultRed, selectionBox_);
    otherLabel_ = resettingLabel("lblhother", other_, SelectionThresholds::kDefaultOther, selectionBox_);
    brightLabel_ = resettingLabel("lblhbright", bright_, SelectionThresholds::kDefaultBright, selectionBox_);
    grey_ = new QCheckBox(selectionBox_);
    grey_->setObjectName("Check2");
    run_ = button("Command8", selectionBox_);
    g->addWidget(selectionHint_, 0, 0, 1, 2);
    g->addWidget(lasso_, 1, 0, 1, 2);
    g->addWidget(redLabel_, 2, 0);
    g->addWidget(red_, 2, 1);
    g->addWidget(otherLabel_, 3, 0);
    g->addWidget(other_, 3, 1);
    g->addWidget(brightLabel_, 4, 0);
    g->addWidget(bright_, 4, 1);
    g->addWidget(grey_, 5, 0, 1, 2);
    g->addWidget(run_, 6, 0, 1, 2);
    g->setRowStretch(7, 1);
    g->setColumnStretch(0, 1);
    const auto sync = [this] {
        session_.thresholds.red = red_->value();
        session_.thresholds.other = other_->value();
        session_.thresholds.bright = bright_->value();
        session_.thresholds.grey = grey_->isChecked();
    };
    for (QSpinBox* s : {red_, other_, bright_}) connect(s, &QSpinBox::valueChanged, this, sync);
    connect(grey_, &QCheckBox::toggled, this, sync);
    connect(lasso_, &QPushButton::toggled, this, [this](bool on) {
        if (!on) resultView_->setMark({});
        updateEnabled();
    });
    connect(run_, &QPushButton::clicked, this, &RedEyeWindow::runSelection);
    return selectionBox_;
}

QWidget* RedEyeWindow::buildViewButtons() {
    auto* box = new QWidget(this);
    auto* g = new QGridLayout(box);
    g->setContentsMargins(0, 4, 0, 4);
    compare_ = new QCheckBox(box);
    compare_->setObjectName("chkOriginalBild");
    zoomOne_ = button("cmdZoom1", box);
    zoomFit_ = button("cmdEinpassen", box);
    zoomIn_ = button("cmdZoomPlus", box);
    zoomOut_ = button("cmdZoomMinus", box);
    zoomOne_->setText("1:1");
    zoomIn_->setText("+");
    zoomOut_->setText("-");
    scrollCentre_ = button("Command35", box);
    g->addWidget(compare_, 0, 0, 1, 4);
    g->addWidget(zoomOne_, 1, 0);
    g->addWidget(zoomFit_, 1, 1);
    g->addWidget(zoomIn_, 1, 2);
    g->addWidget(zoomOut_, 1, 3);
    g->addWidget(scrollCentre_, 2, 0, 1, 4);
    const auto zoomBoth = [this](const std::function<void(PictureView*)>& apply) {
        for (PictureView* v : {resultView_, originalView_}) apply(v);
    };
    connect(zoomOne_, &QPushButton::clicked, this, [zoomBoth] { zoomBoth([](PictureView* v) { v->setZoom(1.0); }); });
    connect(zoomFit_, &QPushButton::clicked, this, [zoomBoth] { zoomBoth([](PictureView* v) { v->setFitted(true); }); });
    connect(zoomIn_, &QPushButton::clicked, this, [this, zoomBoth] {
        const double z = resultView_->zoom() * 1.25;
        zoomBoth([z](PictureView* v) { v->setZoom(z); });
    });
    connect(zoomOut_, &QPushButton::clicked, this, [this, zoomBoth] {
        const double z = resultView_->zoom() / 1.25;
        zoomBoth([z](PictureView* v) { v->setZoom(z); });
    });
    connect(scrollCentre_, &QPushButton::clicked, this, [zoomBoth] { zoomBoth([](PictureView* v) { v->scrollToCentre(); }); });
    connect(compare_, &QCheckBox::toggled, this, [this](bool on) {
        originalView_->parentWidget()->setVisible(on);
        resultCaption_->setVisible(on);
        if (on) {
            refreshOriginal();
            views_->setSizes({views_->width() / 2, views_->width() / 2});
        }
    });
    return box;
}

// Both views scroll together, so the same eye shows before and after.
void RedEyeWindow::connectViews() {
    const auto follow = [this](QScrollBar* from, QScrollBar* to) {
        connect(from, &QScrollBar::valueChanged, to, [to](int v) {
            if (to->value() != v) to->setValue(v);
        });
    };
    follow(resultView_->horizontalScrollBar(), originalView_->horizontalScrollBar());
    follow(resultView_->verticalScrollBar(), originalView_->verticalScrollBar());
    follow(originalView_->horizontalScrollBar(), resultView_->horizontalScrollBar());
    follow(originalView_->verticalScrollBar(), resultView_->verticalScrollBar());
    connect(resultView_, &PictureView::pictureDoubleClicked, this, [this](QPoint p) {
        if (mode_ == Mode::Click) searchAt(p);
    });
    connect(resultView_, &PictureView::pictureRectDragged, this, &RedEyeWindow::onRectangle);
}

void RedEyeWindow::load() {
    const PictureFile file = LoadPictureFile(path_, ImageEnv{language_, {}, true});
    if (file.picture) {
        session_.reset(*file.picture.Handle());
    } else {
        session_.reset(cDIBSection{});
        if (file.message)
            prompter_.message(file.message->text, kButtonsOk | kIconExclamation,
                              file.message->title.empty() ? "Brindlesee" : file.message->title);
        else
            prompter_.message(std::string(t("Das Bild kann nicht geladen werden:", "The picture cannot be loaded:")) +
                                  kLineEnd + path_,
                              kButtonsOk | kIconExclamation, "Brindlesee");
    }
    refreshPicture();
    refreshOriginal();
    updateEnabled();
}

void RedEyeWindow::refreshPicture() {
    resultView_->setImage(session_.empty() ? QImage() : editor::imageOfDib(session_.picture()));
    updateEnabled();
}

void RedEyeWindow::refreshOriginal() {
    if (!compare_->isChecked() && !originalView_->image().isNull()) return;
    originalView_->setImage(session_.empty() ? QImage() : editor::imageOfDib(session_.original()));
}

void RedEyeWindow::setMode(Mode mode) {
    mode_ = mode;
    panels_->setCurrentIndex(mode == Mode::Click ? 0 : 1);
    clickMode_->setChecked(mode == Mode::Click);
    selectionMode_->setChecked(mode == Mode::Selection);
    if (mode == Mode::Click) resultView_->setMark({});
    updateEnabled();
}

void RedEyeWindow::updateEnabled() {
    const bool have = !session_.empty() && !busy_;
    for (QWidget* w : std::initializer_list<QWidget*>{clickMode_, selectionMode_, panels_, compare_, zoomOne_, zoomFit_,
                                                     zoomIn_, zoomOut_, scrollCentre_, saveAs_})
        w->setEnabled(have);
    original_->setEnabled(have && session_.modified());
    save_->setEnabled(have && session_.modified());
    run_->setEnabled(have && lasso_->isChecked() && !resultView_->mark().isEmpty());
}

void RedEyeWindow::updateValueLabels() {
    sensitivityValue_->setText(QString::number(sensitivity_->value()));
    searchWidthValue_->setText(QString::number(searchWidth_->value()));
}

void RedEyeWindow::searchAt(QPoint p) {
    if (session_.empty() || busy_) return;
    session_.click(p.x(), p.y());
    refreshPicture();
}

void RedEyeWindow::onRectangle(QRect rect) {
    if (mode_ != Mode::Selection || !lasso_->isChecked()) {
        resultView_->setMark({});
        return;
    }
    resultView_->setMark(rect);
    updateEnabled();
}

void RedEyeWindow::runSelection() {
    const QRect r = resultView_->mark();
    if (session_.empty() || busy_ || r.isEmpty()) return;
    // The worker changes a copy; Cancel leaves the picture as it was.
    cDIBSection work = session_.picture();
    const SelectionThresholds thresholds = session_.thresholds;
    long long changed = 0;
    bool stopped = false;
    runInBackground(
        [&](std::atomic<bool>& cancel, std::atomic<int>& percent) {
            changed = RedEyeRemoval(work, r.left(), r.top(), r.right() + 1, r.bottom() + 1, thresholds,
                                    [&](int done, int rows) {
                                        percent = done * 100 / rows;
                                        return !(stopped = cancel.load());
                                    });
        },
        true);
    if (!stopped && changed > 0) session_.adoptPicture(std::move(work));
    refreshPicture();
}

void RedEyeWindow::showOriginal() {
    if (session_.empty() || busy_) return;
    session_.restoreOriginal();
    resultView_->setMark({});
    refreshPicture();
}

bool RedEyeWindow::save() {
    if (session_.empty() || busy_) return false;
    return saveTo(path_);
}

bool RedEyeWindow::saveAs() {
    if (session_.empty() || busy_) return false;
    FileDialog d;
    d.title = t("Speichern unter ...", "Save as ...");
    d.filter = "JPEG|*.jpg;*.jpeg|PNG|*.png|Bitmap|*.bmp|TIFF|*.tif;*.tiff";
    const std::string key = pictureKey(path_);
    d.filterIndex = key == ".png" ? 2 : key == ".bmp" ? 3 : (key == ".tif" || key == "tiff") ? 4 : 1;
    d.startDirectory = QFileInfo(QString::fromStdString(path_)).absolutePath().toStdString() + "/";
    d.proposedName = path_;
    const std::string chosen = prompter_.saveFile(d);
    if (chosen.empty()) return false;
    if (!saveTo(chosen)) return false;
    path_ = chosen;
    setLanguage(language_);  // the file line names the new file
    return true;
}

bool RedEyeWindow::saveTo(const std::string& path) {
    const cDIBSection picture = session_.picture();
    ImageStatus saved;
    runInBackground([&](std::atomic<bool>&, std::atomic<int>&) { saved = saveRedEyePicture(picture, path, language_); },
                    false);
    if (!saved) {
        const std::string text = saved.message ? saved.message->text
                                               : std::string(t("Das Bild konnte nicht gespeichert werden:",
                                                               "The picture could not be saved:")) +
                                                     kLineEnd + path;
        prompter_.message(text, kButtonsOk | kIconExclamation, "Brindlesee");
        return false;
    }
    session_.markSaved();
    updateEnabled();
    return true;
}

void RedEyeWindow::runInBackground(
    const std::function<void(std::atomic<bool>& cancel, std::atomic<int>& percent)>& work, bool cancellable) {
    std::atomic<bool> cancel{false};
    std::atomic<int> percent{0};
    busy_ = true;
    cancel_ = &cancel;
    updateEnabled();
    progress_->setRange(0, cancellable ? 100 : 0);  // a save shows a busy bar
    progress_->setValue(0);
    progress_->setVisible(true);
    cancelButton_->setEnabled(cancellable);
    QApplication::setOverrideCursor(Qt::WaitCursor);
    QTimer tick;
    connect(&tick, &QTimer::timeout, this, [&] { progress_->setValue(percent.load()); });
    tick.start(50);
    QEventLoop loop;
    std::thread worker([&] {
        work(cancel, percent);
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec();
    worker.join();
    tick.stop();
    QApplication::restoreOverrideCursor();
    progress_->setVisible(false);
    cancelButton_->setEnabled(true);
    cancel_ = nullptr;
    busy_ = false;
    updateEnabled();
}

void RedEyeWindow::closeEvent(QCloseEvent* event) {
    if (busy_) {
        if (cancel_) *cancel_ = true;
        event->ignore();
        return;
    }
    if (session_.modified()) {
        const int answer = prompter_.message(
            std::string(t("Die Änderungen am Bild sind noch nicht gespeichert:", "The changes to the picture are not saved yet:")) +
                kLineEnd + path_ + kLineEnd + kLineEnd + t("Jetzt speichern?", "Save them now?"),
            kButtonsYesNoCancel | kIconQuestion, t("Brindlesee Rote Augen", "Brindlesee Red Eye"));
        if (answer == kCancel || (answer == kYes && !save())) {
            event->ignore();
            return;
        }
    }
    event->accept();
}

void RedEyeWindow::setLanguage(Language language) {
    language_ = language;
    setWindowTitle(t("Brindlesee Rote Augen", "Brindlesee Red Eye"));
    clickMode_->setText(t("1.Klick", "1.Click"));
    selectionMode_->setText(t("2.Auswahl", "2.Selection"));
    clickHint_->setText(t("In jedes Auge einmal doppelklicken.      Dann einstellen.",
                          "In each eye once doubleclick.      Then adjust."));
    sensitivityLabel_->setText(t("     ROT Empfindlichkeit", "     RED Sensitivity"));
    searchWidthLabel_->setText(t("Suchweite", "Searchwidth"));
    selectionHint_->setText(t("Auge wählen, mit der rechten Maustaste Lasso ziehen, positionieren.",
                              "Choose Eye, right mouse lasso draw, positioning."));
    lasso_->setText(t("Auge wählen ...", "Choose an eye ..."));
    redLabel_->setText(t("     ROT Empfindlichkeit", "     RED sensitivity"));
    otherLabel_->setText(t("Grün und Blau unter", "Green and blue below"));
    brightLabel_->setText(t("Helligkeit", "Brightness"));
    const QString reset = t("Klick: Standardwert", "Click: default value");
    for (QPushButton* b : {redLabel_, otherLabel_, brightLabel_}) b->setToolTip(reset);
    grey_->setText(t("Grau aus allen drei Farben", "Grey from all three colours"));
    run_->setText(t("Ausführen", "Run"));
    compare_->setText(t("Originalbild daneben", "Original Image"));
    zoomFit_->setText(t("Einpassen", "Fit"));
    zoomOne_->setToolTip(t("Originalgröße", "Actual size"));
    zoomIn_->setToolTip(t("Vergrößern", "Zoom in"));
    zoomOut_->setToolTip(t("Verkleinern", "Zoom out"));
    scrollCentre_->setText(t("Zur Mitte", "Scroll Center"));
    original_->setText(t("Originalbild zurückholen", "Original image"));
    save_->setText(t("Speichern", "Save"));
    saveAs_->setText(t("Speichern unter ...", "Save as ..."));
    cancelButton_->setText(t("Abbrechen", "Cancel"));
    originalCaption_->setText(t("Originalbild", "Original Image"));
    resultCaption_->setText(t("Ergebnis", "Result"));
    fileLabel_->setText(QString::fromStdString(fileName(path_)));
    fileLabel_->setToolTip(QString::fromStdString(path_));
    updateValueLabels();
}

}  // namespace brindle::studio
