// Bevelled frames. A factor per row, replaced by a factor per column in the
// side bands, scales the pixel. Corner joins follow the diagonals.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "image/dib_section.h"
#include "image/frame_bevel.h"
#include "image/rounding.h"

namespace brindle {
namespace effects {

void scalePixel(std::uint8_t* p, double g) {
    if (g == 1.0) return;
    for (int c = 0; c < 3; ++c) {
        const int v = p[c] < 75 ? 75 : p[c];
        const int s = roundEven(v * g);
        p[c] = static_cast<std::uint8_t>(s > 255 ? 255 : s);
    }
}

bool FrameBands::left(int px, int y) const { return px < d && std::abs(t - y + d) >= px && px < y; }

bool FrameBands::right(int px, int y) const {
    return px > r && std::abs(r - px + d) < y && px - r >= y - t;
}

}  // namespace effects

using effects::FrameBands;
using effects::scalePixel;

void cDIBSection::effectButtonize(int light, int shadow, int thickness, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    // A thickness below 1 would divide by zero; it is taken as 1.
    const int d = thickness < 1 ? 1 : thickness;
    const double up = (light / 2.0) / d;
    const double down = (shadow / 10.0) / d;
    const FrameBands bands{d, (Width() * 3 - 3) / 3 - d, (Height() - 1) - d};
    for (int y = 0; y < Height(); ++y) {
        double f = 1;
        if (y < d) f = std::max(0.0, 1 - std::abs(d - y) * down);
        if (y > bands.t) f = std::abs(y - bands.t) * up / 3 + 1;
        std::uint8_t* p = rowBits(y);
        for (int px = 0; px < Width(); ++px) {
            double g = f;
            if (bands.left(px, y)) g = std::abs(px - d) * up / 3 + 1;
            if (bands.right(px, y)) g = 1 - std::abs(px - bands.r) * down;
            if (g < 0) g = 0;
            scalePixel(p + px * 3, g);
        }
        rp.step(y, Height());
    }
    rp.done();
}

namespace effects {
namespace {

// The frame's profile: up, a crest, and down into the shadow.
constexpr double kProfile[21] = {1,   2, 3, 4,    6,    7,  8,  9,  10, 9, 8,
                                 6.5, 5, 3, 0.01, -1.5, -3, -4, -5, -6, -7};

int profileIndex(int distance, int d) {
    const int i = roundEven(std::abs(distance) / static_cast<double>(d) * 20);
    return i < 0 ? 0 : (i > 20 ? 20 : i);
}

// Rows of the frame never stay exactly as they were.
double rowFactor(double f) {
    if (f < 0) f = 0;
    return f == 1.0 ? 1.00001 : f;
}

int atLeastOne(int thickness) { return thickness < 1 ? 1 : thickness; }

}  // namespace

FrameBevel::FrameBevel(int light, int shadow, int thickness, int width, int height)
    : width_(width),
      bands_{atLeastOne(thickness), (width * 3 - 3) / 3 - atLeastOne(thickness),
             (height - 1) - atLeastOne(thickness)} {
    for (int i = 0; i < 21; ++i) {
        t0_[i] = kProfile[i];
        t1_[i] = kProfile[20 - i];
    }
    const double lightScale = (light - 50) / 50.0 + 1;
    const double shadowScale = (shadow - 50) / 50.0 + 1;
    for (int i = 1; i <= 20; ++i) {
        t0_[i] *= t0_[i] < 0 ? shadowScale : lightScale;
        t1_[i] *= t1_[i] < 0 ? shadowScale : lightScale;
    }
}

double FrameBevel::row(int y) const {
    const int d = bands_.d;
    double f = 1;
    if (y < d) f = rowFactor(1 + t0_[profileIndex(d - y, d)] / 10);
    if (y > bands_.t) f = rowFactor(1 + t1_[profileIndex(y - bands_.t, d)] / 10);
    return f;
}

double FrameBevel::at(int px, int y, double rowFactor) const {
    const int d = bands_.d;
    double g = rowFactor;
    if (bands_.left(px, y)) g = 1 + t1_[profileIndex(px - d, d)] / 10;
    if (bands_.right(px, y)) g = 1 + t0_[profileIndex(px - bands_.r, d)] / 10;
    return g < 0 ? 0 : g;
}

int FrameBevel::leftEnd() const { return bands_.d < width_ ? bands_.d : width_; }

int FrameBevel::rightStart() const { return bands_.r + 1 > leftEnd() ? bands_.r + 1 : leftEnd(); }

}  // namespace effects

void cDIBSection::effectRahmen(int light, int shadow, int thickness, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    const effects::FrameBevel bevel(light, shadow, thickness, Width(), Height());
    for (int y = 0; y < Height(); ++y) {
        const double f = bevel.row(y);
        std::uint8_t* p = rowBits(y);
        const auto column = [&](int px) { scalePixel(p + px * 3, bevel.at(px, y, f)); };
        if (f != 1.0) {
            for (int px = 0; px < Width(); ++px) column(px);
        } else {
            // Between the top and bottom bands only the side bands change:
            // elsewhere the factor is exactly 1 and the pixel stays.
            for (int px = 0; px < bevel.leftEnd(); ++px) column(px);
            for (int px = bevel.rightStart(); px < Width(); ++px) column(px);
        }
        rp.step(y, Height());
    }
    rp.done();
}

}  // namespace brindle
