#include "panorama/seam_overlay.h"

#include <algorithm>
#include <cstring>

namespace brindle::panorama {

namespace {

// Columns [x, x + width) of `src` into `dst` at column 0, row r of `dst`
// taking row r - shift of `src` (rows counted from the top).
void copyBand(const cDIBSection& src, cDIBSection& dst, int x, int shift) {
    const int width = std::min(dst.Width(), src.Width() - x);
    if (width <= 0) return;
    const Surface from = src.hdc();
    const Surface to = dst.hdc();
    for (int r = 0; r < dst.Height(); ++r) {
        const int sr = r - shift;
        if (sr < 0 || sr >= src.Height()) continue;
        std::memcpy(to.row(r), from.row(sr) + static_cast<std::size_t>(x) * 3, static_cast<std::size_t>(width) * 3);
    }
}

}  // namespace

cDIBSection seamOverlay(const cDIBSection& left, const cDIBSection& right, int x, int y) {
    cDIBSection band;
    if (left.empty() || right.empty() || x < 0 || x >= left.Width()) return band;
    const int width = left.Width() - x;
    cDIBSection over;
    if (!band.Create(width, left.Height()) || !over.Create(width, left.Height())) return {};
    copyBand(left, band, x, 0);
    copyBand(right, over, 0, y);
    band.effectAlphaBlending(50, Picture::fromDib(std::move(over)));
    return band;
}

}  // namespace brindle::panorama
