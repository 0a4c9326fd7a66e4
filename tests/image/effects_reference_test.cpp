// The sharpen and the saturation look their results up in tables; these
// cases hold them to the plain formulas, pixel for pixel, over noise.
#include <gtest/gtest.h>

#include "image/dib_section.h"
#include "image/rounding.h"
#include "image_compare.h"

namespace brindle::test {
namespace {

// In place, three by three, integer division: the formula as written.
void sharpenByFormula(cDIBSection& dib, int strength) {
    const int divisor = strength + 8, centre = strength + 24;
    if (divisor == 0) return;
    const int last = dib.Width() * 3 - 4;  // the red byte of the last pixel but one
    for (int y = 2; y <= dib.Height() - 2; ++y) {
        std::uint8_t* p = dib.rowBits(y);
        const std::uint8_t* lo = dib.rowBits(y - 1);
        const std::uint8_t* hi = dib.rowBits(y + 1);
        for (int x = 6; x <= last; ++x) {
            const int s = lo[x - 3] + lo[x] + lo[x + 3] + p[x - 3] + p[x + 3] + hi[x - 3] + hi[x] + hi[x + 3];
            p[x] = clampByte((p[x] * centre - 2 * s) / divisor);
        }
    }
}

// Every channel moved away from the pixel's mean by the factor (mode 7: all pixels).
void saturateByFormula(cDIBSection& dib, int percent) {
    const double factor = percent / 100.0;
    for (int y = 0; y < dib.Height(); ++y) {
        std::uint8_t* p = dib.rowBits(y);
        for (int x = 0; x < dib.Width() * 3; x += 3) {
            const int mean = roundEven((p[x] + p[x + 1] + p[x + 2]) / 3.0);
            for (int c = 0; c < 3; ++c) p[x + c] = roundClamp((p[x + c] - mean) * factor + p[x + c]);
        }
    }
}

TEST(EffectsByFormula, SharpenEqualsItsFormulaForEveryStrength) {
    const cDIBSection noise = noisePicture(37, 23, 11);
    for (int strength : {-40, -30, -9, -7, 0, 1, 5, 9, 40, 300}) {
        SCOPED_TRACE(strength);
        cDIBSection expected = noise, actual = noise;
        sharpenByFormula(expected, strength);
        actual.effectSchärfen2(strength);
        EXPECT_TRUE(sameImage(expected, actual));
    }
}

TEST(EffectsByFormula, SaturationEqualsItsFormulaForEveryFactor) {
    const cDIBSection noise = noisePicture(41, 19, 12);
    for (int percent : {-250, -100, -50, 0, 25, 50, 120, 150, 333}) {
        SCOPED_TRACE(percent);
        cDIBSection expected = noise, actual = noise;
        saturateByFormula(expected, percent);
        actual.effectFarbeSaturation(percent, 7);
        EXPECT_TRUE(sameImage(expected, actual));
    }
}

}  // namespace
}  // namespace brindle::test
