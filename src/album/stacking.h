// Brings a page's stacking list in order from its element records alone,
// so that the HTML writer and the page editor can rely on it.
#pragma once

#include "album/records.h"

namespace brindle {

// A list that exists, has one entry per live element and points only at
// live elements stays; any other is rebuilt with texts at the back, then
// pictures, panoramas and search boxes, and every ZPos renumbered.
void ReihenfolgePruefen(PageRecord& page);

}  // namespace brindle
