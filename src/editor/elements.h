// Element kinds, references and kind-independent access to the element
// records of a page. Kinds are strings at the interfaces ("Bild" in
// commands and undo, "bild" in the stacking list); inside they are an enum.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "album/records.h"

namespace brindle::editor {

enum class Kind { Bild, Text, Panorama, Suchmaschine };

// "Bild", "Text", "Panorama", "Suchmaschine".
const char* kindName(Kind kind);
// "bild", "text", "panorama", "suchmaschine".
const char* stackKind(Kind kind);
// Either spelling in any case; older pages write "pan360" for a panorama.
std::optional<Kind> kindFromName(std::string_view name);

struct ElementRef {
    Kind kind = Kind::Bild;
    int index = 0;

    auto operator<=>(const ElementRef&) const = default;
};

// Whole page pixels; width and height may be anything while a gesture runs.
struct Box {
    int left = 0, top = 0, width = 0, height = 0;

    int right() const { return left + width; }
    int bottom() const { return top + height; }
    bool operator==(const Box&) const = default;
};

// The smallest box round both; an empty `a` (width and height 0 at 0,0) counts.
Box unite(const Box& a, const Box& b);

// Upper bound of the kind's array in the page.
int upperOf(const PageRecord& page, Kind kind);
// The element has a record (1 to the upper bound).
bool hasRecord(const PageRecord& page, ElementRef ref);
// The element has a record whose deleted mark is not set.
bool isLive(const PageRecord& page, ElementRef ref);

Box boxOf(const PageRecord& page, ElementRef ref);
void setBox(PageRecord& page, ElementRef ref, const Box& box);
void setDeleted(PageRecord& page, ElementRef ref, bool deleted);
bool isDeleted(const PageRecord& page, ElementRef ref);
// The element's position in the stacking list, by kind.
std::int32_t& zPosOf(PageRecord& page, ElementRef ref);

// Calls fn with the record of `ref` (PictureElement&, TextElement&, ...).
template <class Fn>
decltype(auto) withRecord(PageRecord& page, ElementRef ref, Fn&& fn) {
    switch (ref.kind) {
        case Kind::Bild: return fn(page.pictures[ref.index]);
        case Kind::Text: return fn(page.texts[ref.index]);
        case Kind::Panorama: return fn(page.panoramas[ref.index]);
        case Kind::Suchmaschine: break;
    }
    return fn(page.searchBoxes[ref.index]);
}

}  // namespace brindle::editor
