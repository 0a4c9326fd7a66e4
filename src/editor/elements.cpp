#include "editor/elements.h"

#include <algorithm>

#include "album/paths.h"

namespace brindle::editor {

const char* kindName(Kind kind) {
    switch (kind) {
        case Kind::Bild: return "Bild";
        case Kind::Text: return "Text";
        case Kind::Panorama: return "Panorama";
        case Kind::Suchmaschine: break;
    }
    return "Suchmaschine";
}

const char* stackKind(Kind kind) {
    switch (kind) {
        case Kind::Bild: return "bild";
        case Kind::Text: return "text";
        case Kind::Panorama: return "panorama";
        case Kind::Suchmaschine: break;
    }
    return "suchmaschine";
}

std::optional<Kind> kindFromName(std::string_view name) {
    const std::string n = asciiLower(name);
    if (n == "bild") return Kind::Bild;
    if (n == "text") return Kind::Text;
    if (n == "panorama" || n == "pan360") return Kind::Panorama;
    if (n == "suchmaschine") return Kind::Suchmaschine;
    return std::nullopt;
}

Box unite(const Box& a, const Box& b) {
    if (a == Box{}) return b;
    const int l = std::min(a.left, b.left), t = std::min(a.top, b.top);
    return {l, t, std::max(a.right(), b.right()) - l, std::max(a.bottom(), b.bottom()) - t};
}

int upperOf(const PageRecord& page, Kind kind) {
    switch (kind) {
        case Kind::Bild: return page.pictures.upper();
        case Kind::Text: return page.texts.upper();
        case Kind::Panorama: return page.panoramas.upper();
        case Kind::Suchmaschine: break;
    }
    return page.searchBoxes.upper();
}

bool hasRecord(const PageRecord& page, ElementRef ref) {
    return ref.index >= 1 && ref.index <= upperOf(page, ref.kind);
}

bool isLive(const PageRecord& page, ElementRef ref) {
    return hasRecord(page, ref) && !isDeleted(page, ref);
}

namespace {
template <class Fn>
decltype(auto) withConst(const PageRecord& page, ElementRef ref, Fn&& fn) {
    return withRecord(const_cast<PageRecord&>(page), ref, [&](const auto& r) { return fn(r); });
}
}  // namespace

Box boxOf(const PageRecord& page, ElementRef ref) {
    return withConst(page, ref, [](const auto& r) { return Box{r.left, r.top, r.width, r.height}; });
}

void setBox(PageRecord& page, ElementRef ref, const Box& b) {
    withRecord(page, ref, [&](auto& r) {
        r.left = static_cast<std::int16_t>(b.left);
        r.top = static_cast<std::int16_t>(b.top);
        r.width = static_cast<std::int16_t>(b.width);
        r.height = static_cast<std::int16_t>(b.height);
    });
}

void setDeleted(PageRecord& page, ElementRef ref, bool deleted) {
    withRecord(page, ref, [&](auto& r) { r.deleted = toBool16(deleted); });
}

bool isDeleted(const PageRecord& page, ElementRef ref) {
    return withConst(page, ref, [](const auto& r) { return isTrue(r.deleted); });
}

std::int32_t& zPosOf(PageRecord& page, ElementRef ref) {
    return withRecord(page, ref, [](auto& r) -> std::int32_t& { return zPos(r); });
}

}  // namespace brindle::editor
