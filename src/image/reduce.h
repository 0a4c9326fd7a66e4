// Smooth reduction for pictures shown or published smaller than they are:
// each target pixel is the average of the source pixels it covers, pixels
// on its edges weighted by the part of them it covers (an area filter).
// Sampling one pixel per target, as the stretch blit does, aliases thin
// lines and hard edges into jagged patterns.
#pragma once

#include "image/dib_section.h"
#include "image/surface.h"

namespace brindle {

// Resizes the rectangle (sx, sy, sw, sh) of `src` onto (x, y, w, h) of
// `dst`. An axis made smaller is averaged; an axis kept or made larger
// takes the pixel under each target's centre, as stretchBlt does. Extents
// must be positive; the source rectangle is clipped to `src`, the target
// to `dst`. Works in 14-bit fixed point. False for empty or overlapping
// surfaces.
bool smoothStretch(const Surface& dst, int x, int y, int w, int h, const Surface& src, int sx,
                   int sy, int sw, int sh);

// The whole of `src` made w x h.
bool smoothResize(const cDIBSection& src, cDIBSection& out, int w, int h);

}  // namespace brindle
