// Play mode of a page window: the page as the HTML album shows it. Animated
// pictures play their effects, panoramas and search boxes work, and a
// click follows links instead of selecting.
#include <QScrollArea>

#include "editor/display_picture.h"
#include "editor/effect_widgets.h"
#include "editor/frm_notepad.h"
#include "editor/frm_vollbild.h"
#include "editor/panorama_viewer.h"
#include "editor/search_form.h"
#include "editor/sound_player.h"

namespace brindle::editor {

namespace {

// Control names of the effects, by the first item of the animation.
QString effectPrefix(const std::string& kind) {
    if (kind == "AnyGif") return "uscEffectGif";
    if (kind == "Lake") return "uscEffectLake";
    if (kind == "Rain" || kind == "Snow") return "uscEffectRain";
    if (kind == "UnderWater") return "uscEffectUnderWater";
    if (kind == "Pano") return "uscEffectPano";
    return {};
}

}  // namespace

QString FrmNotePad::resolvePath(const std::string& stored) const {
    const SessionState& s = session_.state();
    return displayPath(stored, s.album.directory, s.programDirectory);
}

bool FrmNotePad::coveredInPlay(ElementRef ref) const {
    for (const QPointer<QWidget>& w : playControls_)
        if (w && !w->objectName().isEmpty() && w->property("elementKind").toInt() == static_cast<int>(ref.kind) &&
            w->property("elementIndex").toInt() == ref.index)
            return true;
    return false;
}

void FrmNotePad::removePlayControls() {
    // Later, as a control may be the one whose click led here.
    for (QPointer<QWidget>& w : playControls_) {
        if (!w) continue;
        w->hide();
        w->setObjectName(QString());
        w->deleteLater();
    }
    playControls_.clear();
}

void FrmNotePad::dropPlayControl(ElementRef ref) {
    for (QPointer<QWidget>& w : playControls_) {
        if (!w || w->property("elementKind").toInt() != static_cast<int>(ref.kind) ||
            w->property("elementIndex").toInt() != ref.index)
            continue;
        w->hide();
        w->setObjectName(QString());
        w->deleteLater();
    }
}

void FrmNotePad::PlaymodeEinstellen() {
    removePlayControls();
    if (!host_.playMode()) {
        canvas_->update();
        return;
    }
    const PageRecord& page = doc_.page();
    for (int i = 1; i <= page.pictures.upper(); ++i)
        if (isLive(page, {Kind::Bild, i})) addEffect(i);
    for (int i = 1; i <= page.panoramas.upper(); ++i)
        if (isLive(page, {Kind::Panorama, i})) addPanorama(i);
    for (int i = 1; i <= page.searchBoxes.upper(); ++i)
        if (isLive(page, {Kind::Suchmaschine, i})) addSearch(i);
    if (host_.activeNotePad() == this) playPageMusic();
    canvas_->update();  // the pictures under their effects are no longer drawn
}

void FrmNotePad::placePlayControl(QWidget* w, ElementRef ref, const QString& name) {
    const Control* c = doc_.control(ref);
    w->setObjectName(name);
    w->setProperty("elementKind", static_cast<int>(ref.kind));
    w->setProperty("elementIndex", ref.index);
    if (c) {
        const QPointF a = canvas_->toWidget(QPointF(c->box.left, c->box.top));
        const QPointF b = canvas_->toWidget(QPointF(c->box.right(), c->box.bottom()));
        w->setGeometry(QRectF(a, b).toRect());
    }
    w->show();
    w->raise();
    playControls_.emplace_back(w);
}

void FrmNotePad::addEffect(int index) {
    const PictureElement& pic = doc_.page().pictures[index];
    const std::string kind = effects::specTokens(pic.ext.extText[1])[0];
    const QString prefix = effectPrefix(kind);
    if (prefix.isEmpty()) return;  // "None", an empty or an unknown animation: the plain picture
    const Control* c = doc_.control({Kind::Bild, index});
    if (!c) return;
    // As the album's web picture: the frame inside the box, the effect within it.
    EffectOptions options;
    options.frameSpec = pic.ext.extText[0];
    options.file = resolvePath(pic.path);
    options.pageBox = QSize(c->box.width, c->box.height);
    if (!pic.hyperlink.empty()) {
        if (kind == "Rain" || kind == "Snow") options.clicked = [this, index] { rainclick(index); };
        else if (kind == "UnderWater") options.clicked = [this, index] { underwaterclick(index); };
        else options.clicked = [this, index] {
            SpiegelLink(doc_.page().pictures[index].hyperlink, Kind::Bild, slot_, index);
        };
    }
    const bool reduced = isTrue(session_.state().album.loadReduced);
    // "Pano" scrolls the whole picture; the others need it at about the box's size.
    const QSize wanted = kind == "Pano" ? QSize() : QSize(c->box.width, c->box.height);
    const QImage picture = loadDisplayPicture(options.file, wanted, reduced && kind != "Pano");
    QWidget* w = createEffectWidget(pic.ext.extText[1], picture, options, canvas_);
    if (w) placePlayControl(w, {Kind::Bild, index}, prefix + QString::number(index));
}

void FrmNotePad::addPanorama(int index) {
    auto* viewer = new PanoramaViewer(doc_.page().panoramas[index],
                                      [this](const std::string& stored) { return resolvePath(stored); }, canvas_);
    placePlayControl(viewer, {Kind::Panorama, index}, "PANVO" + QString::number(index));
}

void FrmNotePad::addSearch(int index) {
    auto search = [this](const std::string& words, bool matchCase) { return host_.searchAlbum(words, matchCase); };
    auto open = [this, index](const std::string& link) { SpiegelLink(link, Kind::Suchmaschine, slot_, index); };
    auto* form = new SearchForm(doc_.page().searchBoxes[index], session_.language(), search, open, canvas_);
    placePlayControl(form, {Kind::Suchmaschine, index}, "SuchMaschine" + QString::number(index));
}

void FrmNotePad::playPageMusic() {
    const std::string& music = doc_.page().music;
    if (music.empty()) SoundPlayer::instance().stop();
    else SoundPlayer::instance().play(resolvePath(music), true);
}

void FrmNotePad::rainclick(int index) {
    if (isLive(doc_.page(), {Kind::Bild, index}))
        SpiegelLink(doc_.page().pictures[index].hyperlink, Kind::Bild, slot_, index);
}

void FrmNotePad::underwaterclick(int index) { rainclick(index); }

void FrmNotePad::SpiegelLink(const std::string& target, Kind kind, int /*page*/, int number) {
    if (target.empty()) return;
    if (target == "<vollbild>") {
        if (kind != Kind::Bild || !isLive(doc_.page(), {kind, number})) return;
        const QImage picture = loadDisplayPicture(resolvePath(doc_.page().pictures[number].path), {}, false);
        if (vollbild_) vollbild_->close();
        auto* view = new FrmVollbild(picture, session_.language());
        vollbild_ = view;
        view->showFullScreen();
        view->activateWindow();
        return;
    }
    const QString link = QString::fromStdString(target);
    if (isSoundFile(link)) {
        SoundPlayer::instance().play(resolvePath(target), false);
        return;
    }
    host_.followLink(this, link);
}

}  // namespace brindle::editor
