// The commands of the page window: clipboard, delete, select all, z-order,
// alignment, and new elements drawn on the canvas.
#include <algorithm>
#include <cmath>
#include <iterator>
#include <type_traits>

#include "album/paths.h"

#include "editor/page_document.h"
#include "editor/page_operations.h"

namespace brindle::editor {

namespace {
template <class Fn>
void withClipArray(ElementClipboard& clip, Kind kind, Fn&& fn) {
    switch (kind) {
        case Kind::Bild: fn(clip.pictures); return;
        case Kind::Text: fn(clip.texts); return;
        case Kind::Panorama: fn(clip.panoramas); return;
        case Kind::Suchmaschine: fn(clip.searchBoxes); return;
    }
}
}  // namespace

// ---------------------------------------------------------------- clipboard

bool PageDocument::canPaste() const { return session_.state().clipboard.stack.upper() > 0; }

void PageDocument::copy() {
    if (auswahl_.empty()) return;
    ElementClipboard& clip = session_.state().clipboard;
    clip = ElementClipboard{};
    clip.pictures.resetToDummy();
    clip.texts.resetToDummy();
    clip.panoramas.resetToDummy();
    clip.searchBoxes.resetToDummy();
    clip.stack.resetToDummy();
    for (const SelectionEntry& e : auswahl_) {
        if (!hasRecord(page(), e.ref)) continue;
        withClipArray(clip, e.ref.kind, [&](auto& array) {
            withRecord(page(), e.ref, [&](const auto& record) {
                if constexpr (std::is_same_v<std::decay_t<decltype(record)>,
                                             std::decay_t<decltype(array[0])>>)
                    array.add() = record;
            });
            clip.stack.add() = StackEntry{array.upper(), kindName(e.ref.kind)};
        });
    }
    if (hooks_.pasteAvailable) hooks_.pasteAvailable(true);
}

void PageDocument::cut() {
    copy();
    deleteSelection();
}

void PageDocument::paste() {
    ElementClipboard clip = session_.state().clipboard;  // a copy: pasting never changes it
    if (clip.stack.upper() < 1) return;
    PicWorkspace_Click();
    for (int i = 1; i <= clip.stack.upper(); ++i) {
        std::optional<Kind> kind = kindFromName(clip.stack[i].kind);
        if (!kind) continue;
        const int n = naechstesElement(page(), *kind);
        const ElementRef ref{*kind, n};
        withClipArray(clip, *kind, [&](auto& array) {
            if (clip.stack[i].index > array.upper()) return;
            withRecord(page(), ref, [&](auto& record) {
                if constexpr (std::is_same_v<std::decay_t<decltype(record)>,
                                             std::decay_t<decltype(array[0])>>)
                    record = array[clip.stack[i].index];
            });
        });
        setDeleted(page(), ref, false);
        aktivieren(ref);
        SeitenElement(n, *kind, "neu");
        SetzAnker(ref, i == 1 ? 0 : 1);
        takeBeforeCopy(ref);
        NeuUndo("Eingefügt", *kind, n);
        fitExtent(boxOf(page(), ref));
    }
}

void PageDocument::deleteSelection() {
    const std::vector<SelectionEntry> entries = auswahl_;
    for (const SelectionEntry& e : entries) {
        if (!hasRecord(page(), e.ref)) continue;
        SeitenElement(e.ref.index, e.ref.kind, "löschen");
        if (isDeleted(page(), e.ref)) continue;
        takeBeforeCopy(e.ref);
        NeuUndo("löschen", e.ref.kind, e.ref.index);
        setDeleted(page(), e.ref, true);
        markChanged();
        removeControl(e.ref);
    }
    PicWorkspace_Click();
}

void PageDocument::selectAll() {
    PicWorkspace_Click();
    bool first = true;
    for (Kind kind : {Kind::Bild, Kind::Text, Kind::Panorama}) {
        for (int i = 1; i <= upperOf(page(), kind); ++i) {
            if (!isLive(page(), {kind, i}) || !control({kind, i})) continue;
            SetzAnker({kind, i}, first ? 0 : 1);
            first = false;
        }
    }
}

void PageDocument::zOrder(const std::string& verb) {
    const std::vector<SelectionEntry> entries = auswahl_;
    for (const SelectionEntry& e : entries) SeitenElement(e.ref.index, e.ref.kind, verb);
}

void PageDocument::changeSelectedTexts(const std::function<void(TextElement&)>& change) {
    for (const SelectionEntry& e : std::vector<SelectionEntry>(auswahl_)) {
        if (e.ref.kind != Kind::Text || !isLive(page(), e.ref)) continue;
        changeElement(e.ref, [&] { change(page().texts[e.ref.index]); });
    }
    if (aktiv_) SetzAnker(*aktiv_, -1);
}

void PageDocument::changeElement(ElementRef ref, const std::function<void()>& change) {
    if (!isLive(page(), ref)) return;
    takeBeforeCopy(ref);
    change();
    markChanged();
    aktivieren(ref);
    NeuUndo("ändern", ref.kind, ref.index);
}

// ---------------------------------------------------------------- alignment

void PageDocument::Ausrichten(const std::string& keyText) {
    static const char* const kKeys[] = {"setleft",      "settop",       "setright",   "setdown",
                                        "setcenterver", "setcenterhor", "setaufthor", "setauftver"};
    const std::string key = asciiLower(keyText);
    if (std::find(std::begin(kKeys), std::end(kKeys), key) == std::end(kKeys)) return;
    const int count = static_cast<int>(auswahl_.size());
    const bool distribute = key == "setaufthor" || key == "setauftver";
    if (count == 0 || (distribute && count < 2)) return;  // distribution divides by count - 1
    const Grid g = grid();
    double m = 0;
    if (key == "setleft" || key == "settop") m = 99999999;
    if (key == "setright" || key == "setdown") m = -99999999;
    for (const SelectionEntry& e : auswahl_) {
        const Box b = controls_.at(e.ref).box;
        if (key == "setleft") m = std::min<double>(m, b.left);
        if (key == "settop") m = std::min<double>(m, b.top);
        if (key == "setright") m = std::max<double>(m, b.right());
        if (key == "setdown") m = std::max<double>(m, b.bottom());
    }
    if (key == "setleft" || key == "setright") m = RasterX(m, g);
    if (key == "settop" || key == "setdown") m = RasterY(m, g);
    const Box a = anker_;
    const double stepH = count > 1 ? std::floor(double(a.width) / (count - 1)) : 0;
    const double stepV = count > 1 ? std::floor(double(a.height) / (count - 1)) : 0;
    int i = 0;
    for (const SelectionEntry& e : std::vector<SelectionEntry>(auswahl_)) {
        ++i;
        Control& c = controls_.at(e.ref);
        const double w = c.box.width, h = c.box.height;
        double left = c.box.left, top = c.box.top;
        if (key == "setleft") left = m;
        else if (key == "settop") top = m;
        else if (key == "setright") left = m - w;
        else if (key == "setdown") top = m - h;
        else if (key == "setcenterver") left = RasterX(std::floor(a.width / 2.0) + a.left - w / 2, g);
        else if (key == "setcenterhor") top = RasterY(std::floor(a.height / 2.0) + a.top - h / 2, g);
        else if (key == "setaufthor" && i == count) left = a.left + a.width - w;
        else if (key == "setaufthor" && i > 1) left = RasterX((i - 1) * stepH + a.left - w / 2, g);
        else if (key == "setauftver" && i == count) top = a.top + a.height - h;
        // The vertical distribution rounds with the horizontal grid step, as it always did.
        else if (key == "setauftver" && i > 1) top = RasterX((i - 1) * stepV + a.top - h / 2, g);
        takeBeforeCopy(e.ref);
        c.box.left = toPixel(left);
        c.box.top = toPixel(top);
        Box record = boxOf(page(), e.ref);
        record.left = c.box.left;
        record.top = c.box.top;
        setBox(page(), e.ref, record);
        markChanged();
        NeuUndo("Größenänderung", e.ref.kind, e.ref.index);
        fitExtent(c.box);
    }
    if (aktiv_) SetzAnker(*aktiv_, -1);
    if (hooks_.geometryChanged) hooks_.geometryChanged();
}

// ---------------------------------------------------------------- new elements

FontSpec PageDocument::defaultFont() const {
    FontSpec f = session_.state().options.font;
    if (f.name.empty()) f.name = "Arial";
    if (f.size <= 0) f.size = 12;
    return f;
}

// A new text takes the album's text style, so it is readable on the album's pages.
FontSpec PageDocument::textFont() const {
    FontSpec f = session_.album().style.textFont;
    const FontSpec fallback = defaultFont();
    if (f.name.empty()) f.name = fallback.name;
    if (f.size <= 0) f.size = fallback.size;
    return f;
}

ElementRef PageDocument::finishCreate(ElementRef ref) {
    aktivieren(ref);
    SeitenElement(ref.index, ref.kind, "neu");
    SetzAnker(ref, 0);
    takeBeforeCopy(ref);
    NeuUndo("Eingefügt", ref.kind, ref.index);
    fitExtent(boxOf(page(), ref));
    return ref;
}

ElementRef PageDocument::createPicture(Box box, const std::string& path, int pw, int ph) {
    const AlbumRecord& album = session_.album();
    const int n = NaechstesBild(page());
    PictureElement& pic = page().pictures[n];
    pic.path = path;
    pic.pictureWidth = static_cast<std::int16_t>(std::clamp(pw, 0, 32767));
    pic.pictureHeight = static_cast<std::int16_t>(std::clamp(ph, 0, 32767));
    pic.proportional = album.keepAspect;
    if (box.width < kMinimumBox || box.height < kMinimumBox) {
        // A click without a box places the picture at the album's insert size.
        box.width = album.insertWidth > 0 ? album.insertWidth : 500;
        box.height = album.insertHeight > 0 ? album.insertHeight : 300;
    }
    if (isTrue(pic.proportional) && pw > 0 && ph > 0) {
        const Groesse fit = BerechneGroesse(box.width, box.height, pw, ph, 0);
        box.width = std::max(kMinimumBox, toPixel(fit.width));
        box.height = std::max(kMinimumBox, toPixel(fit.height));
    }
    setBox(page(), {Kind::Bild, n}, box);
    pic.ext.extText[2] = std::to_string(box.width);
    pic.ext.extText[3] = std::to_string(box.height);
    return finishCreate({Kind::Bild, n});
}

ElementRef PageDocument::createText(Box box, const std::string& words) {
    const int n = NaechsterText(page());
    TextElement& text = page().texts[n];
    text.text = words;
    text.ext.extText[0] = words;
    text.ext.extLong[1] = 1;  // a drawn text lets its font follow the box
    text.font = textFont();
    if (metrics_ && box.width >= kMinimumBox && box.height >= kMinimumBox) {
        text.font.size = SchriftAnpassen(*metrics_, box.width, box.height, words, text.font).size;
    } else if (metrics_) {
        const TextSize size = metrics_->labelSize(text.font, text.font.size, words);
        box.width = std::max(kMinimumBox, size.width);
        box.height = std::max(kMinimumBox, size.height);
    }
    setBox(page(), {Kind::Text, n}, box);
    return finishCreate({Kind::Text, n});
}

ElementRef PageDocument::createPanorama(Box box) {
    const int n = NaechstesPanorama(page());
    setBox(page(), {Kind::Panorama, n}, box);
    return finishCreate({Kind::Panorama, n});
}

ElementRef PageDocument::createPanorama(Box box, const std::string& picture, bool wraps) {
    const int n = NaechstesPanorama(page());
    PanoHotspot& shown = page().panoramas[n].hotspots[0];
    shown.urlName = picture;
    shown.zoomStart = "Full";
    shown.ext.extLong[0] = wraps ? -1 : 0;  // the viewer's "360"
    setBox(page(), {Kind::Panorama, n}, box);
    return finishCreate({Kind::Panorama, n});
}

ElementRef PageDocument::createSearch(Box box) {
    const int n = NaechsteSuchmaschine(page());
    SearchElement& search = page().searchBoxes[n];
    search.caption = t("Suchen", "Search");
    search.font = defaultFont();
    setBox(page(), {Kind::Suchmaschine, n}, box);
    return finishCreate({Kind::Suchmaschine, n});
}

}  // namespace brindle::editor
