// Bevelled frames. A factor per row, replaced by a factor per column in the
// side bands, scales the pixel. Corner joins follow the diagonals.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "image/dib_section.h"
#include "image/rounding.h"

namespace brindle {
namespace {

// Channels below 75 are first raised to 75, so that the bevel also shows
// on dark pictures. A factor of exactly 1 leaves the pixel alone.
void scalePixel(std::uint8_t* p, double g) {
    if (g == 1.0) return;
    for (int c = 0; c < 3; ++c) {
        const int v = p[c] < 75 ? 75 : p[c];
        const int s = roundEven(v * g);
        p[c] = static_cast<std::uint8_t>(s > 255 ? 255 : s);
    }
}

// The two side bands share their shape between the button and the frame.
struct Bands {
    int d, r, t;
    bool left(int px, int y) const { return px < d && std::abs(t - y + d) >= px && px < y; }
    bool right(int px, int y) const {
        return px > r && std::abs(r - px + d) < y && px - r >= y - t;
    }
};

}  // namespace

void cDIBSection::effectButtonize(int light, int shadow, int thickness, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    // A thickness below 1 would divide by zero; it is taken as 1.
    const int d = thickness < 1 ? 1 : thickness;
    const double up = (light / 2.0) / d;
    const double down = (shadow / 10.0) / d;
    const Bands bands{d, (Width() * 3 - 3) / 3 - d, (Height() - 1) - d};
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

}  // namespace

void cDIBSection::effectRahmen(int light, int shadow, int thickness, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    double t0[21], t1[21];
    for (int i = 0; i < 21; ++i) {
        t0[i] = kProfile[i];
        t1[i] = kProfile[20 - i];
    }
    const double lightScale = (light - 50) / 50.0 + 1;
    const double shadowScale = (shadow - 50) / 50.0 + 1;
    for (int i = 1; i <= 20; ++i) {
        t0[i] *= t0[i] < 0 ? shadowScale : lightScale;
        t1[i] *= t1[i] < 0 ? shadowScale : lightScale;
    }
    const int d = thickness < 1 ? 1 : thickness;
    const Bands bands{d, (Width() * 3 - 3) / 3 - d, (Height() - 1) - d};
    for (int y = 0; y < Height(); ++y) {
        double f = 1;
        if (y < d) f = rowFactor(1 + t0[profileIndex(d - y, d)] / 10);
        if (y > bands.t) f = rowFactor(1 + t1[profileIndex(y - bands.t, d)] / 10);
        std::uint8_t* p = rowBits(y);
        const auto column = [&](int px) {
            double g = f;
            if (bands.left(px, y)) g = 1 + t1[profileIndex(px - d, d)] / 10;
            if (bands.right(px, y)) g = 1 + t0[profileIndex(px - bands.r, d)] / 10;
            if (g < 0) g = 0;
            scalePixel(p + px * 3, g);
        };
        if (f != 1.0) {
            for (int px = 0; px < Width(); ++px) column(px);
        } else {
            // Between the top and bottom bands only the side bands change:
            // elsewhere the factor is exactly 1 and the pixel stays.
            const int leftEnd = std::min(d, Width());
            for (int px = 0; px < leftEnd; ++px) column(px);
            for (int px = std::max(leftEnd, bands.r + 1); px < Width(); ++px) column(px);
        }
        rp.step(y, Height());
    }
    rp.done();
}

}  // namespace brindle
