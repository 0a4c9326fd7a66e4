#include "properties/panorama_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "album/paths.h"
#include "editor/display_picture.h"
#include "editor/frm_notepad.h"
#include "properties/panorama_export.h"
#include "properties/panorama_live_view.h"

namespace brindle::properties {

namespace {

constexpr int kHeldSide = 3000;  // pictures are held at most this large for the view

QString fileNameOf(const std::string& path) {
    return QFileInfo(QString::fromStdString(path).replace('\\', '/')).fileName();
}

QPushButton* button(QWidget* parent, const char* name) {
    auto* b = new QPushButton(parent);
    b->setObjectName(name);
    return b;
}

QLineEdit* numberBox(QWidget* parent, const char* name) {
    auto* e = new QLineEdit(parent);
    e->setObjectName(name);
    e->setValidator(new QIntValidator(-32768, 32767, e));
    e->setMaximumWidth(72);
    return e;
}

}  // namespace

FrmFragePanVo::FrmFragePanVo(DialogContext& context, const PanoramaElement& element, QWidget* parent)
    : QDialog(parent), context_(context), element_(element), model_(PanoramaModel::fromElement(element)) {
    setObjectName("FrmFragePanVo");
    build();
    Sprachumschaltung();
    wire();
    view_->setBox(element.width, element.height);
    refillPictureLists();
    showCurrent();
}

const char* FrmFragePanVo::t(const char* de, const char* en) const { return brindle::tr(context_.session.language(), de, en); }

PanoramaElement FrmFragePanVo::result() const {
    PanoramaElement e = element_;
    model_.applyTo(e);
    return e;
}

void FrmFragePanVo::build() {
    view_ = new PanoramaLiveView(this);
    HotspotX_ = new QLabel(this);
    HotspotX_->setObjectName("HotspotX");
    HotspotX_->setWordWrap(true);
    OptLeftMouse_ = new QRadioButton(this);
    OptLeftMouse_->setObjectName("OptLeftMouse");
    OptLeftMouse_->setChecked(true);
    OptRightMouse_ = new QRadioButton(this);
    OptRightMouse_->setObjectName("OptRightMouse");
    Check360_ = new QCheckBox(this);
    Check360_->setObjectName("Check360");
    auto* mouseRow = new QHBoxLayout;
    mouseRow->addWidget(OptLeftMouse_);
    mouseRow->addWidget(OptRightMouse_);
    mouseRow->addStretch();
    mouseRow->addWidget(Check360_);
    auto* left = new QVBoxLayout;
    left->addWidget(view_, 1);
    left->addLayout(mouseRow);
    left->addWidget(HotspotX_);

    grpBilder_ = new QGroupBox(this);
    Cbo_URLs_ = new QComboBox(grpBilder_);
    Cbo_URLs_->setObjectName("Cbo_URLs");
    Cbo_URLs_->setMinimumContentsLength(18);
    CmdSucheDatei_ = button(grpBilder_, "CmdSucheDatei");
    cmdEntfernen_ = button(grpBilder_, "cmdEntfernen");
    Cmd_Startbild_ = button(grpBilder_, "Cmd_Startbild");
    lblAlternative_ = new QLabel(grpBilder_);
    txtAlternative_ = new QLineEdit(grpBilder_);
    txtAlternative_->setObjectName("txtAlternative");
    auto* gb = new QGridLayout(grpBilder_);
    gb->addWidget(Cbo_URLs_, 0, 0, 1, 3);
    gb->addWidget(CmdSucheDatei_, 1, 0);
    gb->addWidget(cmdEntfernen_, 1, 1);
    gb->addWidget(Cmd_Startbild_, 1, 2);
    gb->addWidget(lblAlternative_, 2, 0);
    gb->addWidget(txtAlternative_, 2, 1, 1, 2);

    grpHotspot_ = new QGroupBox(this);
    Cbo_Hotspot_ = new QComboBox(grpHotspot_);
    Cbo_Hotspot_->setObjectName("Cbo_Hotspot");
    for (int n = 1; n <= kHotspotsPerPicture; ++n) Cbo_Hotspot_->addItem("Hotspot " + QString::number(n) + " ");
    CmdHotspot_ = button(grpHotspot_, "CmdHotspot");
    CmdHotspot_->setCheckable(true);
    CmdHotspot_->setChecked(true);
    Txt_X1_ = numberBox(grpHotspot_, "Txt_X1");
    Txt_X2_ = numberBox(grpHotspot_, "Txt_X2");
    Txt_Y1_ = numberBox(grpHotspot_, "Txt_Y1");
    Txt_Y2_ = numberBox(grpHotspot_, "Txt_Y2");
    lblZiel_ = new QLabel(grpHotspot_);
    cboHotspotZiel_ = new QComboBox(grpHotspot_);
    cboHotspotZiel_->setObjectName("cboHotspotZiel");
    cmdHotspotLoeschen_ = button(grpHotspot_, "cmdHotspotLoeschen");
    auto* gh = new QGridLayout(grpHotspot_);
    auto label = [](const char* text, QWidget* parent) {
        auto* l = new QLabel(text, parent);
        l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        return l;
    };
    gh->addWidget(Cbo_Hotspot_, 0, 0, 1, 2);
    gh->addWidget(cmdHotspotLoeschen_, 0, 2, 1, 2);
    gh->addWidget(CmdHotspot_, 1, 0, 1, 4);
    gh->addWidget(label("X1", grpHotspot_), 2, 0);
    gh->addWidget(Txt_X1_, 2, 1);
    gh->addWidget(label("X2", grpHotspot_), 2, 2);
    gh->addWidget(Txt_X2_, 2, 3);
    gh->addWidget(label("Y1", grpHotspot_), 3, 0);
    gh->addWidget(Txt_Y1_, 3, 1);
    gh->addWidget(label("Y2", grpHotspot_), 3, 2);
    gh->addWidget(Txt_Y2_, 3, 3);
    gh->addWidget(lblZiel_, 4, 0);
    gh->addWidget(cboHotspotZiel_, 4, 1, 1, 3);

    grpStart_ = new QGroupBox(this);
    lblZoom_ = new QLabel(grpStart_);
    CMB_ZoomStartwerte_ = new QComboBox(grpStart_);
    CMB_ZoomStartwerte_->setObjectName("CMB_ZoomStartwerte");
    CMB_ZoomStartwerte_->setEditable(true);
    CMB_ZoomStartwerte_->addItems({"Min", "Max", "Full", "50", "100", "200"});
    txtX_Startwert_ = numberBox(grpStart_, "txtX_Startwert");
    txtY_Startwert_ = numberBox(grpStart_, "txtY_Startwert");
    txtX_Startwert_->setValidator(new QIntValidator(txtX_Startwert_));
    txtY_Startwert_->setValidator(new QIntValidator(txtY_Startwert_));
    cmdDieseAnsicht_ = button(grpStart_, "cmdDieseAnsicht");
    CmdMin_ = button(grpStart_, "CmdMin");
    Cmd_Full_ = button(grpStart_, "Cmd_Full");
    auto* gs = new QGridLayout(grpStart_);
    gs->addWidget(lblZoom_, 0, 0);
    gs->addWidget(CMB_ZoomStartwerte_, 0, 1);
    gs->addWidget(CmdMin_, 0, 2);
    gs->addWidget(Cmd_Full_, 0, 3);
    gs->addWidget(new QLabel("X", grpStart_), 1, 0);
    gs->addWidget(txtX_Startwert_, 1, 1);
    gs->addWidget(label("Y", grpStart_), 1, 2);
    gs->addWidget(txtY_Startwert_, 1, 3);
    gs->addWidget(cmdDieseAnsicht_, 2, 0, 1, 4);

    grpZeit_ = new QGroupBox(this);
    lblSekunden_ = new QLabel(grpZeit_);
    Txt_Timebild_ = new QSpinBox(grpZeit_);
    Txt_Timebild_->setObjectName("Txt_Timebild");
    Txt_Timebild_->setRange(0, 3600);
    lblTimeBild_ = new QLabel(grpZeit_);
    Cbo_TimeBild_ = new QComboBox(grpZeit_);
    Cbo_TimeBild_->setObjectName("Cbo_TimeBild");
    auto* gz = new QGridLayout(grpZeit_);
    gz->addWidget(lblSekunden_, 0, 0);
    gz->addWidget(Txt_Timebild_, 0, 1);
    gz->addWidget(lblTimeBild_, 1, 0);
    gz->addWidget(Cbo_TimeBild_, 1, 1);
    gz->setColumnStretch(2, 1);
    Txt_Timebild_->setMinimumWidth(90);
    Cbo_TimeBild_->setMinimumContentsLength(20);

    left->addWidget(grpZeit_);
    auto* right = new QVBoxLayout;
    right->addWidget(grpBilder_);
    right->addWidget(grpHotspot_);
    right->addWidget(grpStart_);
    right->addStretch();

    Cmd_Export_ = button(this, "Cmd_Export");
    cmdOK_ = button(this, "cmdOK");
    cmdOK_->setDefault(true);
    CmdSchliessen_ = button(this, "CmdSchliessen");
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(Cmd_Export_);
    buttons->addStretch();
    buttons->addWidget(cmdOK_);
    buttons->addWidget(CmdSchliessen_);

    auto* top = new QHBoxLayout;
    top->addLayout(left, 1);
    top->addLayout(right);
    auto* all = new QVBoxLayout(this);
    all->addLayout(top, 1);
    all->addLayout(buttons);
    resize(1020, 560);
}

void FrmFragePanVo::Sprachumschaltung() {
    setWindowTitle(t("Panorama Eigenschaften", "Panorama properties"));
    grpBilder_->setTitle(t("Bilder", "Images"));
    CmdSucheDatei_->setText(t("Hinzufügen ...", "Add ..."));
    cmdEntfernen_->setText(t("Entfernen", "Remove"));
    Cmd_Startbild_->setText(t("Startbild", "Start image"));
    lblAlternative_->setText(t("Ersatzbild", "Alternative"));
    grpHotspot_->setTitle("Hotspots");
    CmdHotspot_->setText(t("Hotspot definieren (linke Maustaste)", "Hotspot define (left mouse button)"));
    lblZiel_->setText(t("Ziel", "Target"));
    cmdHotspotLoeschen_->setText(t("Löschen", "Clear"));
    grpStart_->setTitle(t("Startansicht", "Start view"));
    lblZoom_->setText("Zoom");
    cmdDieseAnsicht_->setText(t("Diese Ansicht", "This view"));
    CmdMin_->setText("Min");
    Cmd_Full_->setText("Full");
    grpZeit_->setTitle(t("Bild nach Zeit (Videoanimation)", "Image after time (video animation)"));
    lblSekunden_->setText(t("Sekunden", "Seconds"));
    lblTimeBild_->setText(t("Nächstes Bild", "Next image"));
    Check360_->setText(t("360° Rundblick", "360° all round"));
    OptLeftMouse_->setText(t("Hotspot mit linker Maustaste", "Hotspot with left mouse button"));
    OptRightMouse_->setText(t("Hotspot mit rechter Maustaste", "Hotspot with right mouse button"));
    Cmd_Export_->setText(t("Exportieren ...", "Export ..."));
    cmdOK_->setText("OK");
    CmdSchliessen_->setText(t("Abbrechen", "Cancel"));
}

void FrmFragePanVo::wire() {
    connect(Cbo_URLs_, &QComboBox::currentIndexChanged, this, [this](int i) {
        if (filling_ || i < 0) return;
        model_.select(i);
        showCurrent();
    });
    connect(CmdSucheDatei_, &QPushButton::clicked, this, [this] { CmdSucheDatei_Click(); });
    connect(cmdEntfernen_, &QPushButton::clicked, this, [this] {
        model_.removeCurrent();
        refillPictureLists();
        showCurrent();
    });
    connect(Cmd_Startbild_, &QPushButton::clicked, this, [this] {
        model_.setStartPicture(model_.index());
        refillPictureLists();
    });
    connect(txtAlternative_, &QLineEdit::editingFinished, this, [this] {
        if (model_.count() > 0) model_.current().alternative = txtAlternative_->text().toStdString();
    });
    connect(Cbo_Hotspot_, &QComboBox::currentIndexChanged, this, [this] { showHotspot(); });
    for (QLineEdit* e : {Txt_X1_, Txt_X2_, Txt_Y1_, Txt_Y2_})
        connect(e, &QLineEdit::editingFinished, this, [this] { hotspotTyped(); });
    connect(cboHotspotZiel_, &QComboBox::currentIndexChanged, this, [this](int i) {
        if (!filling_ && i >= 0) model_.setHotspotTarget(Cbo_Hotspot_->currentIndex() + 1, i);
    });
    connect(cmdHotspotLoeschen_, &QPushButton::clicked, this, [this] {
        model_.clearHotspot(Cbo_Hotspot_->currentIndex() + 1);
        showHotspot();
    });
    auto mouse = [this] {
        const bool on = CmdHotspot_->isChecked();
        view_->setHotspotButton(!on ? Qt::NoButton : OptRightMouse_->isChecked() ? Qt::RightButton : Qt::LeftButton);
    };
    connect(CmdHotspot_, &QPushButton::toggled, this, mouse);
    connect(OptLeftMouse_, &QRadioButton::toggled, this, mouse);
    connect(view_, &PanoramaLiveView::hotspotDragged, this, [this](PixelRect r, bool finished) {
        Txt_X1_->setText(QString::number(r.x1));
        Txt_X2_->setText(QString::number(r.x2));
        Txt_Y1_->setText(QString::number(r.y1));
        Txt_Y2_->setText(QString::number(r.y2));
        if (finished) hotspotTyped();
    });
    connect(Check360_, &QCheckBox::toggled, this, [this](bool on) {
        if (filling_) return;
        model_.setWraps(on);
        view_->setWraps(on);
    });
    auto zoom = [this](const QString& z) {
        if (filling_ || model_.count() == 0) return;
        model_.setZoom(z.toStdString());
        filling_ = true;
        CMB_ZoomStartwerte_->setCurrentText(QString::fromStdString(model_.current().zoomStart));
        filling_ = false;
        view_->setZoomText(model_.current().zoomStart);
    };
    connect(CMB_ZoomStartwerte_, &QComboBox::textActivated, this, zoom);
    connect(CMB_ZoomStartwerte_->lineEdit(), &QLineEdit::editingFinished, this,
            [this, zoom] { zoom(CMB_ZoomStartwerte_->currentText()); });
    connect(CmdMin_, &QPushButton::clicked, this, [zoom] { zoom("Min"); });
    connect(Cmd_Full_, &QPushButton::clicked, this, [zoom] { zoom("Full"); });
    auto startTyped = [this] {
        if (filling_ || model_.count() == 0) return;
        model_.current().xStart = txtX_Startwert_->text().toInt();
        model_.current().yStart = txtY_Startwert_->text().toInt();
        ViewTransform v = model_.startView();
        v.scale = view_->view().scale;
        view_->setView(v);
    };
    connect(txtX_Startwert_, &QLineEdit::editingFinished, this, startTyped);
    connect(txtY_Startwert_, &QLineEdit::editingFinished, this, startTyped);
    connect(cmdDieseAnsicht_, &QPushButton::clicked, this, [this] {
        model_.setStartView(view_->view());
        showCurrent();
    });
    auto timed = [this] {
        if (!filling_) model_.setNextPicture(Txt_Timebild_->value(), Cbo_TimeBild_->currentIndex() - 1);
    };
    connect(Txt_Timebild_, &QSpinBox::valueChanged, this, timed);
    connect(Cbo_TimeBild_, &QComboBox::currentIndexChanged, this, timed);
    connect(Cmd_Export_, &QPushButton::clicked, this, [this] { Cmd_Export_Click(); });
    connect(cmdOK_, &QPushButton::clicked, this, [this] {
        hotspotTyped();
        accept();
    });
    connect(CmdSchliessen_, &QPushButton::clicked, this, &QDialog::reject);
}

void FrmFragePanVo::refillPictureLists() {
    filling_ = true;
    Cbo_URLs_->clear();
    cboHotspotZiel_->clear();
    for (int i = 0; i < model_.count(); ++i) {
        const QString name = fileNameOf(model_.picture(i).urlName);
        const QString mark = i == model_.startPicture() ? t("  (Startbild)", "  (start image)") : QString();
        Cbo_URLs_->addItem(QString::number(i + 1) + ". " + name + mark);
        cboHotspotZiel_->addItem(QString::number(i + 1) + ". " + name);
    }
    Cbo_URLs_->setCurrentIndex(model_.index());
    filling_ = false;
}

void FrmFragePanVo::showCurrent() {
    const bool any = model_.count() > 0;
    for (QWidget* w : std::initializer_list<QWidget*>{cmdEntfernen_, Cmd_Startbild_, txtAlternative_, grpHotspot_,
                                                      grpStart_, grpZeit_, Check360_})
        w->setEnabled(any);
    CmdSucheDatei_->setEnabled(model_.count() < kMaxPanoramaPictures);
    filling_ = true;
    Cbo_URLs_->setCurrentIndex(any ? model_.index() : -1);
    txtAlternative_->setText(any ? QString::fromStdString(model_.current().alternative) : QString());
    CMB_ZoomStartwerte_->setCurrentText(any ? QString::fromStdString(model_.current().zoomStart) : "Full");
    txtX_Startwert_->setText(any ? QString::number(model_.current().xStart) : QString());
    txtY_Startwert_->setText(any ? QString::number(model_.current().yStart) : QString());
    Check360_->setChecked(model_.wraps());
    Cbo_TimeBild_->clear();
    Cbo_TimeBild_->addItem(t("(keins)", "(none)"));
    for (int i = 0; i < model_.count(); ++i)
        Cbo_TimeBild_->addItem(QString::number(i + 1) + ". " + fileNameOf(model_.picture(i).urlName));
    Txt_Timebild_->setValue(any ? model_.current().nextTime : 0);
    Cbo_TimeBild_->setCurrentIndex(model_.nextPicture() + 1);
    filling_ = false;
    loadPicture();
    showHotspot();
    HotspotX_->setText(any ? t("Ziehen Sie ein Rechteck über das Bild, um den gewählten Hotspot zu setzen; mit der "
                               "anderen Maustaste verschieben, mit dem Mausrad zoomen.",
                               "Drag a rectangle over the image to set the chosen hotspot; drag with the other "
                               "mouse button to pan, use the wheel to zoom.")
                           : t("Fügen Sie mit \"Hinzufügen ...\" die Bilder des Panoramas hinzu.",
                               "Add the images of the panorama with \"Add ...\"."));
}

void FrmFragePanVo::loadPicture() {
    if (model_.count() == 0) {
        view_->setPicture({}, 0, 0);
        return;
    }
    const SessionState& s = context_.session.state();
    const QString path = editor::displayPath(model_.current().urlName, s.album.directory, s.programDirectory);
    const QSize size = editor::pictureFileSize(path);
    QImage img;
    if (size.isValid()) {
        const double f = std::min(1.0, static_cast<double>(kHeldSide) / std::max(size.width(), size.height()));
        img = editor::loadDisplayPicture(path, QSize(std::max(1, int(size.width() * f)), std::max(1, int(size.height() * f))),
                                         true);
    }
    view_->setWraps(model_.wraps());
    view_->setPicture(img, size.width(), size.height());
    view_->setZoomText(model_.current().zoomStart);
    ViewTransform v = model_.startView();
    v.scale = view_->view().scale;
    view_->setView(v);
}

void FrmFragePanVo::showHotspot() {
    const int n = Cbo_Hotspot_->currentIndex() + 1;
    const HotspotBox h = model_.hotspot(n);
    filling_ = true;
    Txt_X1_->setText(QString::number(h.rect.x1));
    Txt_X2_->setText(QString::number(h.rect.x2));
    Txt_Y1_->setText(QString::number(h.rect.y1));
    Txt_Y2_->setText(QString::number(h.rect.y2));
    cboHotspotZiel_->setCurrentIndex(model_.count() ? h.target : -1);
    filling_ = false;
    std::array<PixelRect, 9> rects{};
    for (int k = 1; k <= kHotspotsPerPicture; ++k) rects[static_cast<std::size_t>(k - 1)] = model_.hotspot(k).rect;
    view_->setHotspots(rects, n);
}

void FrmFragePanVo::hotspotTyped() {
    if (filling_ || model_.count() == 0) return;
    const int n = Cbo_Hotspot_->currentIndex() + 1;
    const int x1 = Txt_X1_->text().toInt(), x2 = Txt_X2_->text().toInt();
    const int y1 = Txt_Y1_->text().toInt(), y2 = Txt_Y2_->text().toInt();
    const PixelRect typed{std::min(x1, x2), std::max(x1, x2), std::min(y1, y2), std::max(y1, y2)};
    if (typed == model_.hotspot(n).rect) return;
    model_.setHotspotRect(n, typed);
    // The boxes keep what was typed: a half-typed pair is not swapped under the user.
    std::array<PixelRect, 9> rects{};
    for (int k = 1; k <= kHotspotsPerPicture; ++k) rects[static_cast<std::size_t>(k - 1)] = model_.hotspot(k).rect;
    view_->setHotspots(rects, n);
}

void FrmFragePanVo::CmdSucheDatei_Click() {
    SessionState& s = context_.session.state();
    FileDialog d;
    d.title = t("Bilder zum Panorama", "Images for the panorama");
    d.filter = std::string(t("Bilder", "Pictures")) + "|*.jpg;*.jpeg;*.gif;*.png;*.bmp;*.ico;*.wmf;*.emf|" +
               t("Alle Dateien", "All files") + "|*.*";
    d.startDirectory = s.pictureDirectory.empty() ? s.album.directory : s.pictureDirectory;
    d.multiSelect = true;
    const std::vector<std::string> files = splitFileList(context_.prompter.openFile(d));
    if (files.empty()) return;
    std::string name;
    teilePfad(files.front(), s.pictureDirectory, name);
    addPanoramaPictures(model_, files, context_.prompter, context_.session.language(), imageCoreJpegConverter());
    refillPictureLists();
    showCurrent();
}

void FrmFragePanVo::Cmd_Export_Click() {
    AlbumRecord& a = context_.session.album();
    std::string dir = context_.prompter.chooseDirectory(t("Panorama exportieren", "Export panorama"),
                                                        a.htmlDirectory.empty() ? a.directory : a.htmlDirectory);
    if (dir.empty()) return;
    if (dir.back() != '/') dir += '/';
    const std::string path = exportPanorama(context_.session, result(), dir);
    if (!path.empty())
        context_.prompter.message(std::string(t("Das Panorama wurde exportiert: ", "The panorama was exported: ")) +
                                      path,
                                  kButtonsOk | kIconInformation, "Panorama");
}

bool showPanoramaProperties(DialogContext& context, int index) {
    editor::PageDocument& doc = context.pad.document();
    const editor::ElementRef ref{editor::Kind::Panorama, index};
    if (!editor::isLive(doc.page(), ref)) return false;
    FrmFragePanVo dialog(context, doc.page().panoramas[index], context.parent);
    if (dialog.exec() != QDialog::Accepted) return false;
    const PanoramaElement changed = dialog.result();
    if (changed == doc.page().panoramas[index]) return false;
    doc.changeElement(ref, [&] { doc.page().panoramas[index] = changed; });
    return true;
}

}  // namespace brindle::properties
