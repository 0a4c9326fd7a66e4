// Effects written out plainly from their formulas: the reference the fast
// paths are held against, byte for byte.
#pragma once

#include <cstdint>

#include "image/dib_section.h"
#include "image/rounding.h"

namespace brindle::test {

// Which pixels a saturation mode changes (1 red, 2 green, 4 blue, 3/5/6 all
// but that colour, 7 all).
inline bool saturationSelects(int mode, int b, int g, int r) {
    switch (mode) {
        case 1: return r > g && r > b;
        case 2: return g > r && g > b;
        case 4: return b > r && b > g;
        case 3: return b < r || b < g;
        case 5: return g < r || g < b;
        case 6: return r < g || r < b;
        case 7: return true;
        default: return false;
    }
}

inline void plainSaturation(cDIBSection& d, int percent, int mode) {
    if (mode < 1 || mode > 7) return;
    const double factor = percent / 100.0;
    for (int y = 0; y < d.Height(); ++y) {
        std::uint8_t* p = d.rowBits(y);
        for (int x = 0; x < d.Width() * 3; x += 3) {
            const int b = p[x], g = p[x + 1], r = p[x + 2];
            if (!saturationSelects(mode, b, g, r)) continue;
            const int mean = roundEven((b + g + r) / 3.0);
            p[x] = roundClamp((b - mean) * factor + b);
            p[x + 1] = roundClamp((g - mean) * factor + g);
            p[x + 2] = roundClamp((r - mean) * factor + r);
        }
    }
}

// In place: each byte sees its left and lower neighbours already sharpened.
inline void plainSharpen(cDIBSection& d, int strength) {
    const long long divisor = static_cast<long long>(strength) + 8;
    if (divisor == 0) return;
    const long long centre = static_cast<long long>(strength) + 24;
    for (int y = 2; y <= d.Height() - 2; ++y) {
        std::uint8_t* p = d.rowBits(y);
        const std::uint8_t* lo = d.rowBits(y - 1);
        const std::uint8_t* hi = d.rowBits(y + 1);
        for (int c = 6; c <= d.Width() * 3 - 6 + 2; ++c) {
            const long long s = lo[c - 3] + lo[c] + lo[c + 3] + p[c - 3] + p[c + 3] + hi[c - 3] +
                                hi[c] + hi[c + 3];
            const long long q = (p[c] * centre - 2 * s) / divisor;
            p[c] = static_cast<std::uint8_t>(q < 0 ? 0 : (q > 255 ? 255 : q));
        }
    }
}

}  // namespace brindle::test
