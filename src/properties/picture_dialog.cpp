// frmFrageBild: the dialog around the picture model, its previews and its
// file choices; and showPictureProperties, which runs it for a page window.
#include "properties/picture_dialog.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <cmath>
#include <cstring>

#include "album/paths.h"
#include "editor/display_picture.h"
#include "editor/effect_widgets.h"
#include "editor/frm_notepad.h"
#include "properties/colour_value.h"
#include "properties/frame_preview.h"
#include "properties/property_dialogs.h"
#include "editor/qimage_dib.h"

namespace brindle::properties {

namespace {

constexpr QSize kPreviewBox(300, 220);

std::string pictureFilter(Language lang) {
    return std::string(brindle::tr(lang, "Bilder", "Pictures")) +
           "|*.jpg;*.jpeg;*.png;*.bmp;*.gif;*.tif;*.tiff;*.pcx;*.tga;*.ico;*.wmf;*.emf|" +
           brindle::tr(lang, "Alle Dateien", "All files") + "|*.*";
}

}  // namespace

PictureDialog::PictureDialog(PicturePropertiesModel& model, Prompter& prompter, QWidget* parent)
    : QDialog(parent), model_(model), prompter_(prompter), f_(model.fields()) {
    setObjectName("frmFrageBild");
    setWindowTitle(t("Bildeigenschaften", "Picture properties"));
    auto* layout = new QVBoxLayout(this);
    tabs_ = new QTabWidget(this);
    tabs_->setObjectName("tabBild");
    tabs_->addTab(buildPictureTab(), t("Bild", "Picture"));
    tabs_->addTab(buildLinkTab(), "Hyperlink");
    tabs_->addTab(buildFrameTab(), t("Rahmen", "Frame"));
    tabs_->addTab(buildAnimationTab(), "Animation");
    layout->addWidget(tabs_, 1);

    auto* bottom = new QHBoxLayout;
    chkFuerDieseSeite_ = new QCheckBox(t("Alle Bilder auf dieser Seite", "All pictures on this page"), this);
    chkFuerDieseSeite_->setObjectName("chkFürDieseSeite");
    chkFuerDieseSeite_->setToolTip(t("Gibt allen Bildern dieser Seite diesen Rahmen.",
                                     "Gives every picture of this page this frame."));
    chkFuerAlle_ = new QCheckBox(t("Alle Bilder auf allen Seiten", "All Pics. on all pages"), this);
    chkFuerAlle_->setObjectName("chkFürAlle");
    chkFuerAlle_->setToolTip(t("Gibt allen Bildern des Albums diesen Rahmen; geschlossene Seiten werden gespeichert.",
                               "Gives every picture of the album this frame; closed pages are saved."));
    bottom->addWidget(chkFuerDieseSeite_);
    bottom->addWidget(chkFuerAlle_);
    bottom->addStretch(1);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName("cmdOK");
    buttons->button(QDialogButtonBox::Cancel)->setObjectName("cmdAbbrechen");
    buttons->button(QDialogButtonBox::Ok)->setText("OK");
    buttons->button(QDialogButtonBox::Cancel)->setText(t("Abbrechen", "Cancel"));
    bottom->addWidget(buttons);
    layout->addLayout(bottom);
    connect(chkFuerDieseSeite_, &QCheckBox::toggled, this, [this](bool on) { f_.allOnThisPage = on; });
    connect(chkFuerAlle_, &QCheckBox::toggled, this, [this](bool on) { f_.allOnAllPages = on; });
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    animationTimer_ = new QTimer(this);
    animationTimer_->setSingleShot(true);
    animationTimer_->setInterval(120);  // slider drags rebuild the effect once they rest
    connect(animationTimer_, &QTimer::timeout, this, &PictureDialog::updateAnimationPreview);

    loadPicture();
    showAnimationPage();
    updateAnimationPreview();
}

QImage PictureDialog::pictureAt(QSize box) const {
    if (picture_.isNull()) return {};
    return picture_.scaled(box, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

void PictureDialog::loadPicture() {
    const SessionState& s = model_.session().state();
    const QString file = editor::displayPath(f_.path, s.album.directory, s.programDirectory);
    picture_ = editor::loadDisplayPicture(file, kPreviewBox * 2, true);
    txtPfad_->setText(QString::fromStdString(f_.path));
    lblGroesse_->setText(f_.pictureWidth > 0 ? QString("%1 x %2 %3").arg(f_.pictureWidth).arg(f_.pictureHeight).arg(t("Pixel", "pixels"))
                                             : QString(t("Bild nicht lesbar", "Picture not readable")));
    if (picture_.isNull()) picPreview_->setText(t("Kein Bild", "No picture"));
    else picPreview_->setPixmap(QPixmap::fromImage(pictureAt(kPreviewBox)));
    updateFramePreview();
    scheduleAnimationPreview();
}

void PictureDialog::updateFramePreview() {
    if (!framePreview_) return;
    txtTextur_->setText(QString::fromStdString(f_.frame.texture));
    chkAusHintergrund_->blockSignals(true);
    chkAusHintergrund_->setChecked(f_.frameFromBackground);
    chkAusHintergrund_->blockSignals(false);
    const Rgb c = rgbOfColour(f_.frame.colour);
    QPixmap swatch(28, 14);
    swatch.fill(QColor(c.red, c.green, c.blue));
    cmdColor_->setIcon(QIcon(swatch));
    cmdColor_->setIconSize(swatch.size());
    for (QSlider* s : frameSliders_) s->setEnabled(f_.frame.on);
    if (picture_.isNull()) {
        framePreview_->setText(t("Kein Bild", "No picture"));
        return;
    }
    // The frame keeps its share of the element's box in the reduced picture.
    const PictureElement& record = model_.record();
    const QImage inner = pictureAt(QSize(280, 200));
    const int boxWidth = std::max<int>(1, record.width);
    const int width = std::max(1, static_cast<int>(std::lround(f_.frame.width * double(inner.width()) / boxWidth)));
    const cDIBSection* texture = nullptr;
    if (!f_.frame.texture.empty()) {
        auto it = textures_.find(f_.frame.texture);
        if (it == textures_.end()) {
            const QImage tile = editor::loadDisplayPicture(QString::fromStdString(f_.frame.texture), {}, false);
            it = textures_.emplace(f_.frame.texture, tile.isNull() ? cDIBSection() : editor::dibOfImage(tile)).first;
        }
        if (it->second.Width() > 0) texture = &it->second;
    }
    cDIBSection out;
    if (drawFramePreview(editor::dibOfImage(inner), f_.frame, width, texture, out))
        framePreview_->setPixmap(QPixmap::fromImage(editor::imageOfDib(out)));
}

void PictureDialog::showAnimationPage() {
    static const int kPage[] = {0, 1, 2, 2, 3, 4, 5};
    animationPages_->setCurrentIndex(kPage[static_cast<int>(f_.animation.kind)]);
}

void PictureDialog::scheduleAnimationPreview() {
    if (animationTimer_) animationTimer_->start();
}

void PictureDialog::updateAnimationPreview() {
    if (!animationBox_) return;
    delete animationPreview_;
    animationPreview_ = nullptr;
    const QImage shown = pictureAt(QSize(300, 220));
    QWidget* effect = shown.isNull() ? nullptr : editor::createEffectWidget(model_.animationSpec(), shown, animationBox_);
    if (effect) {
        effect->setFixedSize(shown.size());
        animationPreview_ = effect;
    } else {
        // No effect (none chosen, or none can be made): the plain picture.
        auto* plain = new QLabel(animationBox_);
        if (shown.isNull()) plain->setText(t("Kein Bild", "No picture"));
        else plain->setPixmap(QPixmap::fromImage(shown));
        animationPreview_ = plain;
    }
    animationPreview_->setObjectName("uscEffectVorschau");
    animationBoxLayout_->addWidget(animationPreview_, 0, Qt::AlignCenter);
    animationPreview_->show();
}

void PictureDialog::choosePicture() {
    SessionState& s = model_.session().state();
    FileDialog d;
    d.title = t("Bild wählen", "Choose picture");
    d.filter = pictureFilter(model_.language());
    d.startDirectory = s.pictureDirectory.empty() ? s.album.directory : s.pictureDirectory;
    const std::string path = prompter_.openFile(d);
    if (path.empty() || !model_.choosePicture(path, prompter_)) return;
    std::string name;
    teilePfad(path, s.pictureDirectory, name);
    loadPicture();
}

void PictureDialog::chooseLinkFile() {
    FileDialog d;
    d.title = t("Linkziel wählen", "Choose link target");
    d.filter = std::string(t("Alle Dateien", "All files")) + "|*.*";
    d.startDirectory = model_.session().album().directory;
    const std::string path = prompter_.openFile(d);
    if (!path.empty()) txtHyperlink_->setText(QString::fromStdString(path));
}

void PictureDialog::chooseTexture() {
    FileDialog d;
    d.title = t("Rahmentextur wählen", "Choose frame texture");
    d.filter = pictureFilter(model_.language());
    d.startDirectory = model_.session().state().programDirectory;
    const std::string path = prompter_.openFile(d);
    if (path.empty()) return;
    model_.setTexture(path);
    updateFramePreview();
}

void PictureDialog::chooseColour() {
    const Rgb c = rgbOfColour(f_.frame.colour);
    const QColor chosen = QColorDialog::getColor(QColor(c.red, c.green, c.blue), this, t("Rahmenfarbe", "Frame colour"));
    if (!chosen.isValid()) return;
    f_.frame.colour = colourOfRgb({chosen.red(), chosen.green(), chosen.blue()});
    updateFramePreview();
}

bool showPictureProperties(DialogContext& context, int index) {
    editor::PageDocument& document = context.pad.document();
    if (!editor::isLive(document.page(), {editor::Kind::Bild, index})) return false;
    PicturePropertiesModel model(context.session, context.pad.tag(), index);
    model.open(context.prompter);
    PictureDialog dialog(model, context.prompter, context.parent);
    if (dialog.exec() != QDialog::Accepted) return false;
    Session& session = context.session;
    model.ok(document, [&session](int slot) -> editor::PageDocument* {
        auto* e = dynamic_cast<editor::NotePadEditor*>(session.editor(slot));
        return e && e->window() ? &e->window()->pad()->document() : nullptr;
    });
    return true;
}

}  // namespace brindle::properties
