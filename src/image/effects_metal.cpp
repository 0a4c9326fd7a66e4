// Our metal tone: the picture's brightness runs through a curve with two
// crests, which gives the banded sheen of polished metal, and is then
// tinted. Highlights run to white whatever the tint, as on real metal.
#include <cmath>

#include "image/dib_section.h"
#include "image/rounding.h"

namespace brindle {
namespace {

struct Tint {
    double red, green, blue;
};

// Presets 1, 2, 3: gold, ice, steel.
constexpr Tint kTints[3] = {
    {1.00, 0.80, 0.36},
    {0.72, 0.88, 1.00},
    {0.80, 0.83, 0.88},
};

}  // namespace

void cDIBSection::effectMetallic(int preset, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    if (preset < 1 || preset > 3) return rp.done();
    const Tint tint = kTints[preset - 1];
    std::uint8_t red[256], green[256], blue[256];
    for (int l = 0; l < 256; ++l) {
        const double v = l / 255.0;
        // Two crests over the range, lifted so that the darkest parts stay grey.
        const double sheen = 0.5 - 0.5 * std::cos(v * 3 * M_PI);
        const double m = 0.15 + 0.85 * (0.55 * sheen + 0.45 * v);
        const double highlight = std::pow(m, 6);
        red[l] = roundClamp(255 * (m * tint.red + highlight * (1 - tint.red)));
        green[l] = roundClamp(255 * (m * tint.green + highlight * (1 - tint.green)));
        blue[l] = roundClamp(255 * (m * tint.blue + highlight * (1 - tint.blue)));
    }
    for (int y = 0; y < Height(); ++y) {
        std::uint8_t* p = rowBits(y);
        for (int x = 0; x < Width() * 3; x += 3) {
            const int l = (29 * p[x] + 150 * p[x + 1] + 77 * p[x + 2] + 128) >> 8;
            p[x] = blue[l];
            p[x + 1] = green[l];
            p[x + 2] = red[l];
        }
        rp.step(y, Height());
    }
    rp.done();
}

}  // namespace brindle
