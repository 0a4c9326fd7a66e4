#include "editor/page_document.h"

#include <algorithm>

#include "album/stacking.h"
#include "editor/page_operations.h"

namespace brindle::editor {

namespace {
constexpr Kind kKinds[] = {Kind::Bild, Kind::Text, Kind::Panorama, Kind::Suchmaschine};

std::string shownTextOf(const TextElement& t) {
    return t.ext.extLong[1] == 2 && !t.ext.extText[0].empty() ? t.ext.extText[0] : t.text;
}
}  // namespace

PageDocument::PageDocument(Session& session, int slot, TextMetrics* metrics)
    : session_(session), slot_(slot), metrics_(metrics) {
    const OptionsRecord& o = session_.state().options;
    extentWidth_ = baseWidth_ = o.scrollSmallStep > 0 ? o.scrollSmallStep : 200;
    extentHeight_ = baseHeight_ = o.scrollLargeStep > 0 ? o.scrollLargeStep : 600;
}

void PageDocument::status(const std::string& text) {
    if (hooks_.status) hooks_.status(text);
}

void PageDocument::markChanged() { session_.state().pageSlots[slot_].modified = kTrue; }

// ---------------------------------------------------------------- view

const Control* PageDocument::control(ElementRef ref) const {
    auto it = controls_.find(ref);
    return it == controls_.end() ? nullptr : &it->second;
}

std::vector<ElementRef> PageDocument::drawOrder() const {
    std::vector<ElementRef> order;
    const PageRecord& p = page();
    for (int i = 1; i <= p.stack.upper(); ++i) {
        std::optional<Kind> kind = kindFromName(p.stack[i].kind);
        if (!kind) continue;
        ElementRef ref{*kind, p.stack[i].index};
        if (control(ref) && std::find(order.begin(), order.end(), ref) == order.end()) order.push_back(ref);
    }
    for (const auto& [ref, c] : controls_)
        if (std::find(order.begin(), order.end(), ref) == order.end()) order.push_back(ref);
    return order;
}

std::optional<ElementRef> PageDocument::elementAt(Point p) const {
    const std::vector<ElementRef> order = drawOrder();
    for (auto it = order.rbegin(); it != order.rend(); ++it) {
        const Box& b = controls_.at(*it).box;
        if (p.x >= b.left && p.x < b.right() && p.y >= b.top && p.y < b.bottom()) return *it;
    }
    return std::nullopt;
}

bool PageDocument::canGrow(bool horizontal, bool plus) const {
    const OptionsRecord& o = session_.state().options;
    const int step = horizontal ? std::max(1, o.scrollSmallStep) : std::max(1, o.scrollLargeStep);
    const int extent = horizontal ? extentWidth_ : extentHeight_;
    return plus ? extent < 8 * step : extent > step;
}

void PageDocument::grow(bool horizontal, bool plus) {
    if (!canGrow(horizontal, plus)) return;
    const OptionsRecord& o = session_.state().options;
    const int step = horizontal ? std::max(1, o.scrollSmallStep) : std::max(1, o.scrollLargeStep);
    (horizontal ? extentWidth_ : extentHeight_) += plus ? step : -step;
    (horizontal ? baseWidth_ : baseHeight_) = horizontal ? extentWidth_ : extentHeight_;
    if (hooks_.geometryChanged) hooks_.geometryChanged();
}

void PageDocument::fitExtent(const Box& b) {
    extentWidth_ = std::max(extentWidth_, b.right());
    extentHeight_ = std::max(extentHeight_, b.bottom());
}

void PageDocument::fitExtentToControls() {
    for (const auto& [ref, c] : controls_) fitExtent(c.box);
}

void PageDocument::refitExtent() {
    extentWidth_ = baseWidth_;
    extentHeight_ = baseHeight_;
    fitExtentToControls();
}

// ---------------------------------------------------------------- controls

Control PageDocument::controlFromRecord(ElementRef ref) {
    Control c;
    c.box = boxOf(page(), ref);
    if (ref.kind == Kind::Bild) {
        const PictureElement& pic = page().pictures[ref.index];
        c.angle = normaliseAngle(pic.ext.extLong[5]);
        const auto size = c.angle == 0 ? std::array<int, 2>{c.box.width, c.box.height}
                                       : unrotatedSize(c.box, c.angle, pic.pictureWidth, pic.pictureHeight);
        c.imageWidth = size[0];
        c.imageHeight = size[1];
    } else if (ref.kind == Kind::Text) {
        const TextElement& text = page().texts[ref.index];
        c.fontSize = fontSizeOf(text.font);
        c.shownText = shownTextOf(text);
    } else if (ref.kind == Kind::Suchmaschine) {
        c.fontSize = fontSizeOf(page().searchBoxes[ref.index].font);
    }
    return c;
}

void PageDocument::aktivieren(ElementRef ref) {
    if (!hasRecord(page(), ref)) return;
    controls_[ref] = controlFromRecord(ref);
    if (hooks_.elementAktiviert) hooks_.elementAktiviert(ref);
}

void PageDocument::applyGeometryFromRecord(ElementRef ref) {
    auto it = controls_.find(ref);
    if (it == controls_.end() || !hasRecord(page(), ref)) return;
    if (ref.kind != Kind::Bild) {
        aktivieren(ref);
        return;
    }
    it->second = controlFromRecord(ref);
    if (hooks_.geometryChanged) hooks_.geometryChanged();
}

void PageDocument::removeControl(ElementRef ref) {
    controls_.erase(ref);
    std::erase_if(auswahl_, [&](const SelectionEntry& e) { return e.ref == ref; });
    if (hooks_.elementEntfernt) hooks_.elementEntfernt(ref);
}

// ---------------------------------------------------------------- selection

bool PageDocument::isSelected(ElementRef ref) const {
    return std::any_of(auswahl_.begin(), auswahl_.end(), [&](const SelectionEntry& e) { return e.ref == ref; });
}

void PageDocument::SetzAnker(ElementRef ref, int mode) {
    const Control* c = control(ref);
    if (!c) return;  // an element that is gone is skipped
    if (auswahl_.empty()) status("");
    if (mode == 0) {
        auswahl_.assign(1, SelectionEntry{ref, c->box});
    } else if (mode == 1 && !isSelected(ref)) {
        auswahl_.push_back({ref, c->box});
    }
    if (auswahl_.empty()) return;
    if (mode != -1) aktiv_ = ref;
    placeFrame(ref);
}

void PageDocument::placeFrame(ElementRef ref) {
    if (auswahl_.size() > 1 || ref.kind != Kind::Bild || !control(ref)) {
        Box frame;
        for (const SelectionEntry& e : auswahl_)
            if (const Control* c = control(e.ref)) frame = unite(frame, c->box);
        SetzAnkerAlt(frame);
        status("B:" + std::to_string(frame.width) + " H:" + std::to_string(frame.height) +
               "   L:" + std::to_string(frame.left) + " T:" + std::to_string(frame.top));
    } else {
        SetzAnkerImage(ref.index);
    }
}

void PageDocument::SetzAnkerAlt(const Box& frame) {
    anker_ = frame;
    handles_ = frameHandles(frame);
    handlesVisible_ = true;
    if (hooks_.selectionChanged) hooks_.selectionChanged();
}

void PageDocument::SetzAnkerImage(int index) {
    const Control* c = control({Kind::Bild, index});
    if (!c) return;
    anker_ = c->box;
    eckPunkte_ = calcEckPointsImage(c->box, c->angle, c->imageWidth, c->imageHeight);
    handles_ = imageHandles(eckPunkte_, c->box);
    handlesVisible_ = true;
    if (hooks_.selectionChanged) hooks_.selectionChanged();
}

void PageDocument::PicWorkspace_Click() {
    // The size text belongs to a selection; with none it goes too.
    if (!auswahl_.empty() || handlesVisible_) status("");
    auswahl_.clear();
    aktiv_.reset();
    handlesVisible_ = false;
    if (hooks_.selectionChanged) hooks_.selectionChanged();
}

void PageDocument::selectInBand(const Box& band) {
    PicWorkspace_Click();
    bool first = true;
    for (Kind kind : kKinds) {
        for (int i = 1; i <= upperOf(page(), kind); ++i) {
            const ElementRef ref{kind, i};
            const Control* c = control(ref);
            if (!c || !isLive(page(), ref) || !hitsBand(c->box, band)) continue;
            SetzAnker(ref, first ? 0 : 1);
            first = false;
        }
    }
}

// ---------------------------------------------------------------- page operations

void PageDocument::SeitenElement(int number, Kind kind, const std::string& verb) {
    if (editor::SeitenElement(page(), session_.state().pageSlots[slot_], number, stackKind(kind), verb))
        ReihenfolgeAnwenden(1);
}

void PageDocument::ReihenfolgeAnwenden(int start) {
    ReihenfolgePruefen(page());
    if (hooks_.reihenfolgeAnwenden) hooks_.reihenfolgeAnwenden(start);
}

void PageDocument::NeuZeichnen() {
    const bool de = language() == Language::German;
    auto step = [&](int n, const char* german, const char* english) {
        status(de ? german : english);
        if (hooks_.neuZeichnenSchritt) hooks_.neuZeichnenSchritt(n);
    };
    auto load = [&](Kind kind) {
        for (int i = 1; i <= upperOf(page(), kind); ++i) {
            if (isDeleted(page(), {kind, i})) continue;
            if (kind == Kind::Bild)
                status(de ? "Bild" + std::to_string(i) + " wird geladen ..."
                          : "Picture" + std::to_string(i) + " will be loaded ...");
            if (kind == Kind::Panorama)
                status(de ? "Panorama" + std::to_string(i) + " wird geladen ..."
                          : "Panorama" + std::to_string(i) + " will be loaded...");
            aktivieren({kind, i});
            fitExtent(controls_[{kind, i}].box);
        }
    };
    step(1, "Seite wird geladen ...", "Page will be loaded ...");
    for (auto it = controls_.begin(); it != controls_.end();) {
        const ElementRef ref = it->first;
        it = controls_.erase(it);
        if (hooks_.elementEntfernt) hooks_.elementEntfernt(ref);
    }
    PicWorkspace_Click();
    const OptionsRecord& o = session_.state().options;
    extentWidth_ = baseWidth_ = o.scrollSmallStep > 0 ? o.scrollSmallStep : 200;
    extentHeight_ = baseHeight_ = o.scrollLargeStep > 0 ? o.scrollLargeStep : 600;
    step(2, "Texte werden geladen ...", "Text will be loaded ...");
    load(Kind::Text);
    step(3, "Suchmaschinen werden geladen ...", "Searchmachine will be loaded...");
    load(Kind::Suchmaschine);
    step(4, "Bilder werden geladen ...", "Picture will be loaded ...");
    load(Kind::Bild);
    step(5, "Panoramen werden geladen ...", "Panorama will be loaded ...");
    load(Kind::Panorama);
    step(6, "Button werden geladen ...", "Button will be loaded ...");
    step(7, "Scrollleisten werden geladen ...", "Scroll wil be loaded ...");
    step(8, "Reihenfolge wird angepasst ...", "Arrangement will be loaded ...");
    ReihenfolgeAnwenden(1);
    step(9, "Hintergrund wird angepasst ...", "Background will be loaded ...");
    step(10, "Playmode wird eingestellt ...", "Playmode will be loaded ...");
    status("");
    ToolUndoRedo();
}

}  // namespace brindle::editor
