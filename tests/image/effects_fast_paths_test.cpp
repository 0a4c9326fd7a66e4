// The fast inner loops of the effects against the formulas written out
// plainly: the same bytes on random pictures of many sizes.
#include <gtest/gtest.h>

#include "image/dib_section.h"
#include "image/image_compare.h"
#include "image/rounding.h"

namespace brindle {
namespace {

using test::noisePicture;
using test::sameImage;

bool selects(int mode, int b, int g, int r) {
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

void plainSaturation(cDIBSection& d, int percent, int mode) {
    if (mode < 1 || mode > 7) return;
    const double factor = percent / 100.0;
    for (int y = 0; y < d.Height(); ++y) {
        std::uint8_t* p = d.rowBits(y);
        for (int x = 0; x < d.Width() * 3; x += 3) {
            const int b = p[x], g = p[x + 1], r = p[x + 2];
            if (!selects(mode, b, g, r)) continue;
            const int mean = roundEven((b + g + r) / 3.0);
            p[x] = roundClamp((b - mean) * factor + b);
            p[x + 1] = roundClamp((g - mean) * factor + g);
            p[x + 2] = roundClamp((r - mean) * factor + r);
        }
    }
}

void plainSharpen(cDIBSection& d, int strength) {
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

const std::pair<int, int> kSizes[] = {{1, 1}, {2, 2}, {3, 3}, {4, 5}, {5, 4}, {37, 23}, {64, 9}};

TEST(EffectFastPaths, SaturationEqualsTheFormula) {
    unsigned seed = 1;
    for (const auto& [w, h] : kSizes)
        for (int mode = 0; mode <= 8; ++mode)
            for (int percent : {0, 1, 50, 120, 125, -50, -100, 250, 333, 100000, -2147483647}) {
                SCOPED_TRACE(testing::Message() << w << "x" << h << " mode " << mode << " percent " << percent);
                const cDIBSection in = noisePicture(w, h, seed++);
                cDIBSection fast = in, plain = in;
                fast.effectFarbeSaturation(percent, mode);
                plainSaturation(plain, percent, mode);
                ASSERT_TRUE(sameImage(plain, fast));
            }
}

TEST(EffectFastPaths, SharpenEqualsTheFormula) {
    unsigned seed = 100;
    for (const auto& [w, h] : kSizes)
        for (int strength : {-100, -30, -24, -9, -8, -7, 0, 3, 5, 9, 100, 4000, 5000, 1000000000}) {
            SCOPED_TRACE(testing::Message() << w << "x" << h << " strength " << strength);
            const cDIBSection in = noisePicture(w, h, seed++);
            cDIBSection fast = in, plain = in;
            fast.effectSchärfen2(strength);
            plainSharpen(plain, strength);
            ASSERT_TRUE(sameImage(plain, fast));
        }
}

}  // namespace
}  // namespace brindle
