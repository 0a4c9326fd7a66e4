// The picture the seam editor shows: the overlap band of a pair with the
// right picture laid over the left one half transparent, so a misfit shows
// up as a double image.
#pragma once

#include "image/dib_section.h"

namespace brindle::panorama {

// The band is the left picture from column `x` to its right edge, as tall
// as the left picture. The right picture lies over it with its left edge
// at column `x` of the left picture and its top `y` rows lower (negative:
// higher); what it does not cover blends with black. Empty when a picture
// is empty or `x` lies outside the left picture.
cDIBSection seamOverlay(const cDIBSection& left, const cDIBSection& right, int x, int y);

}  // namespace brindle::panorama
