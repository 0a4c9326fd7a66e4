// The page operations that keep a page's stacking list and its elements'
// ZPos in step, and the next-free-number search per kind.
#pragma once

#include <string_view>

#include "album/records.h"
#include "editor/elements.h"

namespace brindle::editor {

// Verbs "neu", "löschen", "einfügen", "nachvorn", "nachhinten", "ganzvorn",
// "ganzhinten" on the element `number` of `kind` ("bild", "text",
// "panorama", "suchmaschine"); both compared in lower case. Marks the page
// changed. Returns true for the four ordering verbs, after which the
// caller brings the view in order; an unknown verb or kind does nothing.
bool SeitenElement(PageRecord& page, PageSlot& slot, int number, std::string_view kind, std::string_view verb);

// A free element number of the kind: the first deleted slot, its record
// cleared, or a new slot at the end of the array.
int NaechstesBild(PageRecord& page);
int NaechsterText(PageRecord& page);
int NaechstesPanorama(PageRecord& page);
int NaechsteSuchmaschine(PageRecord& page);
int naechstesElement(PageRecord& page, Kind kind);

}  // namespace brindle::editor
