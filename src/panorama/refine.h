// The search runs on reduced pictures, so an offset carried over to the
// full-size pictures is only as exact as one reduced pixel. This polishes
// it: every step within `radius` of the carried one is tried on the
// full-size overlap and the one with the smallest sum of squared
// differences is kept (the carried one when none is strictly smaller).
#pragma once

#include "image/dib_section.h"

namespace brindle::panorama {

struct SeamStep {
    int x = 0;  // columns the right picture starts right of the left one
    int y = 0;  // rows it stands lower
    bool operator==(const SeamStep&) const = default;
};

// Sampled pixels per candidate at most; a grid of every n-th row and
// column keeps a 12-megapixel overlap fast to compare.
inline constexpr long long kRefineSamples = 200000;

SeamStep refineStep(const cDIBSection& left, const cDIBSection& right, SeamStep guess, int radius);

}  // namespace brindle::panorama
