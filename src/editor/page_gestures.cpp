// Mouse and keyboard on the handles: the drag of a selection and its release.
#include <algorithm>
#include <cstdlib>

#include "editor/page_document.h"

namespace brindle::editor {

namespace {
int frameWidthOf(const std::string& frameSpec) {
    // The first item of a frame spec is its width; the frame counts only when
    // the sixth item is "1", as in the HTML album.
    std::string flag;
    int commas = 0;
    for (char c : frameSpec) {
        if (c == ',') ++commas;
        else if (commas == 5) flag += c;
    }
    if (flag != "1") return 0;
    return std::max(0, std::atoi(frameSpec.c_str()));
}
}  // namespace

void PageDocument::pressHandle(int handle, Point p) {
    if (auswahl_.empty()) return;
    fokusGedrueckt_ = true;
    moved_ = false;
    mausStart_ = mausLetzte_ = p;
    handle_ = auswahl_.size() > 1 ? 8 : handle;
    pending_.clear();
    for (SelectionEntry& e : auswahl_)
        if (const Control* c = control(e.ref)) e.start = c->box;
    const ElementRef first = auswahl_.front().ref;
    if (auswahl_.size() == 1 && first.kind == Kind::Bild && control(first)) {
        const Control& c = *control(first);
        const PictureElement& pic = page().pictures[first.index];
        bildStart_ = {c.box, c.angle, c.imageWidth, c.imageHeight, isTrue(pic.proportional), pic.pictureWidth,
                      pic.pictureHeight};
    }
}

void PageDocument::pressElement(ElementRef ref, Point p, bool shift) {
    if (!control(ref)) return;
    if (aktiv_ != ref || !isSelected(ref)) SetzAnker(ref, shift ? 1 : 0);
    pressHandle(8, p);
}

Control PageDocument::dragged(const SelectionEntry& e, int dx, int dy) {
    Control c = *control(e.ref);
    const Grid g = grid();
    if (e.ref.kind == Kind::Bild) {
        if (auswahl_.size() == 1) {
            PictureShape s = dragPicture(bildStart_, handle_, dx, dy, g);
            c.box = s.box;
            c.imageWidth = s.width;
            c.imageHeight = s.height;
        } else {
            c.box = dragBox(e.start, 8, dx, dy, g);
        }
        return c;
    }
    if (e.ref.kind != Kind::Text) {
        c.box = dragBox(e.start, handle_, dx, dy, g);
        return c;
    }
    const TextElement& text = page().texts[e.ref.index];
    const int mode = text.ext.extLong[1];
    const int handle = mode == 2 && (handle_ == 1 || handle_ == 5) ? 8 : handle_;
    c.box = dragBox(e.start, handle, dx, dy, g);
    if (handle != 8 && metrics_ && mode == 1) {
        c.fontSize = SchriftAnpassen(*metrics_, c.box.width, c.box.height, text.text, text.font).size;
    } else if (handle != 8 && metrics_ && mode == 2) {
        // The words wrap to the new width and the height follows them.
        c.shownText = TextUmbrechen(*metrics_, c.box.width, c.box.height, text.text, text.font);
        std::string laidOut;
        for (const std::string& line : metrics_->boxLines(text.font, c.box.width + 10, c.shownText))
            laidOut += (laidOut.empty() ? "" : "\n") + line;
        c.box.height = std::max(kMinimumBox, metrics_->labelSize(text.font, c.fontSize, laidOut).height);
    }
    status("B" + std::to_string(c.box.width) + " H" + std::to_string(c.box.height));
    return c;
}

void PageDocument::moveHandle(Point p) {
    if (!fokusGedrueckt_ || p == mausLetzte_) return;  // a move without a change is dropped
    mausLetzte_ = p;
    moved_ = true;
    const int dx = p.x - mausStart_.x, dy = p.y - mausStart_.y;
    Box frame;
    for (const SelectionEntry& e : auswahl_) {
        if (!control(e.ref)) continue;
        Control next = dragged(e, dx, dy);
        frame = unite(frame, next.box);
        pending_[e.ref] = std::move(next);
    }
    if (isTrue(session_.state().options.liveMove)) {
        for (const auto& [ref, c] : pending_) controls_[ref] = c;
        gummi_.reset();
    } else {
        gummi_ = frame;
    }
    if (hooks_.geometryChanged) hooks_.geometryChanged();
}

void PageDocument::commitControl(ElementRef ref, const Control& c) {
    setBox(page(), ref, c.box);
    if (ref.kind == Kind::Text) {
        TextElement& text = page().texts[ref.index];
        if (text.ext.extLong[1] == 1) text.font.size = c.fontSize;
        if (text.ext.extLong[1] == 2) text.ext.extText[0] = c.shownText;
    } else if (ref.kind == Kind::Bild) {
        PictureElement& pic = page().pictures[ref.index];
        if (!pic.ext.extText[2].empty() || !pic.ext.extText[3].empty()) {
            const int frame = 2 * frameWidthOf(pic.ext.extText[0]);
            pic.ext.extText[2] = std::to_string(c.box.width + frame);
            pic.ext.extText[3] = std::to_string(c.box.height + frame);
        }
    }
}

void PageDocument::releaseHandle() {
    if (!fokusGedrueckt_) return;
    fokusGedrueckt_ = false;
    gummi_.reset();
    if (!moved_ || auswahl_.empty()) {  // a press without a move changes nothing
        if (hooks_.geometryChanged) hooks_.geometryChanged();
        return;
    }
    for (const auto& [ref, c] : pending_)
        if (controls_.count(ref)) controls_[ref] = c;
    pending_.clear();
    markChanged();
    for (const SelectionEntry& e : auswahl_) {
        const Control* c = control(e.ref);
        if (!c || !hasRecord(page(), e.ref)) continue;
        takeBeforeCopy(e.ref);
        commitControl(e.ref, *c);
        NeuUndo("Größenänderung", e.ref.kind, e.ref.index);
        fitExtent(c->box);
    }
    placeFrame(aktiv_.value_or(auswahl_.front().ref));
    if (hooks_.geometryChanged) hooks_.geometryChanged();
}

// ---------------------------------------------------------------- keyboard

void PageDocument::rotatePicture(int delta) {
    const ElementRef ref = auswahl_.front().ref;
    auto it = controls_.find(ref);
    if (it == controls_.end() || !hasRecord(page(), ref)) return;
    takeBeforeCopy(ref);
    PictureElement& pic = page().pictures[ref.index];
    Control& c = it->second;
    c.angle = normaliseAngle(pic.ext.extLong[5] + delta);
    pic.ext.extLong[5] = c.angle;  // the control's value goes back into the record
    const EckPunkte points = calcEckPointsImage(boxOf(page(), ref), c.angle, c.imageWidth, c.imageHeight);
    setBox(page(), ref, calcAutoSizeImage(points, c.angle));
    c.box = boxOf(page(), ref);
    SetzAnkerImage(ref.index);
    markChanged();
    NeuUndo("Größenänderung", Kind::Bild, ref.index);
    fitExtent(c.box);
    if (hooks_.geometryChanged) hooks_.geometryChanged();
}

bool PageDocument::keyDown(ArrowKey key, KeyModifiers m) {
    if (!handlesVisible_ || auswahl_.empty()) return false;
    const bool horizontal = key == ArrowKey::Left || key == ArrowKey::Right;
    const int sign = key == ArrowKey::Left || key == ArrowKey::Up ? -1 : 1;
    const bool single = auswahl_.size() == 1;
    if (m.alt) {
        if (horizontal && single && auswahl_.front().ref.kind == Kind::Bild) rotatePicture(sign * (m.shift ? 5 : 1));
        return true;
    }
    if (fokusGedrueckt_ && tastaturModus_) releaseHandle();  // a repeated key is one step each
    int factor = m.ctrl ? 5 : 1;
    if (m.shift && single && auswahl_.front().ref.kind == Kind::Text) {
        page().texts[auswahl_.front().ref.index].ext.extLong[1] = 1;
        factor = m.ctrl ? 20 : 10;
    }
    const int handle = m.shift ? (horizontal ? 3 : 5) : 8;
    const int step = sign * factor * (horizontal ? stepX(grid()) : stepY(grid()));
    tastaturModus_ = true;
    pressHandle(handle, {100, 100});
    moveHandle(horizontal ? Point{100 + step, 100} : Point{100, 100 + step});
    return true;
}

void PageDocument::keyUp() {
    if (fokusGedrueckt_ && tastaturModus_) releaseHandle();
    tastaturModus_ = false;
}

}  // namespace brindle::editor
