// The saturation's 16-pixel lanes against the formula written out plainly:
// their integer steps over every input they meet, and whole pictures of
// widths around the lane count, at percents with and without exact halves.
#include <gtest/gtest.h>

#include <cmath>

#include "image/dib_section.h"
#include "image/image_compare.h"
#include "image/plain_effects.h"
#include "image/rounding.h"
#include "image/saturation_lanes.h"

namespace brindle {
namespace {

using test::makeDib;
using test::noisePicture;
using test::sameImage;
using test::plainSaturation;

TEST(SaturationLanes, IntegerStepsAreExact) {
    for (int x = 0; x <= 51199; ++x) ASSERT_EQ(x / 100, effects::laneDivide100(x)) << x;
    for (int s = 0; s <= 765; ++s) ASSERT_EQ(roundEven(s / 3.0), effects::laneThird(s)) << s;
    // The split's sum against the double formula for every channel and mean.
    for (int percent : {-12800, -12799, -150, -101, -100, -50, -1, 0, 1, 5, 50, 99, 110, 115,
                        120, 125, 333, 12899}) {
        SCOPED_TRACE(percent);
        effects::SaturationSplit s;
        ASSERT_TRUE(effects::splitSaturation(percent, s));
        ASSERT_EQ(percent, 100 * s.a + s.b);
        ASSERT_GE(s.b, 0);
        ASSERT_LT(s.b, 100);
        for (int c = 0; c < 256; ++c)
            for (int mean = 0; mean < 256; ++mean) {
                const int delta = c - mean, t = delta * s.b + 25650;
                if (t % 100 == 0) continue;  // an exact half: the table's
                const int lane = clampByte(c + delta * s.a + effects::laneDivide100(t) - 256);
                ASSERT_EQ(roundClamp(delta * (percent / 100.0) + c), lane) << c << " " << mean;
            }
    }
    effects::SaturationSplit s;
    EXPECT_FALSE(effects::splitSaturation(12900, s));
    EXPECT_FALSE(effects::splitSaturation(-12801, s));
    EXPECT_FALSE(effects::splitSaturation(-2147483647 - 1, s));
    ASSERT_TRUE(effects::splitSaturation(120, s));
    EXPECT_FALSE(s.ties);
    ASSERT_TRUE(effects::splitSaturation(110, s));
    EXPECT_TRUE(s.ties);
}

// Exact halves in the doubles: the picture holds every channel against
// every mean, so each lane meets them.
cDIBSection allChannelsAndMeans(int width) {
    int i = 0;
    return makeDib(width, 65536 / width + 1, [&](int, int) {
        const int c = i & 255, other = (i >> 8) & 255;
        ++i;
        return test::Bgr{c, other, (i * 7) & 255};
    });
}

TEST(SaturationLanes, PicturesEqualTheFormula) {
    if (!effects::saturationLanesAvailable()) GTEST_SKIP() << "no AVX2";
    unsigned seed = 1;
    for (int width : {15, 16, 17, 31, 32, 33, 47, 48, 49, 64, 100})
        for (int mode = 1; mode <= 7; ++mode)
            for (int percent : {120, 110, 50, -50, 5, 115, 0, -12800, 12899, 12900, 1000000}) {
                SCOPED_TRACE(testing::Message() << width << " mode " << mode << " percent " << percent);
                const cDIBSection in = noisePicture(width, 7, seed++);
                cDIBSection fast = in, plain = in;
                fast.effectFarbeSaturation(percent, mode);
                plainSaturation(plain, percent, mode);
                ASSERT_TRUE(sameImage(plain, fast));
            }
    for (int percent : {110, 150, 125, 120, -75}) {
        SCOPED_TRACE(percent);
        const cDIBSection in = allChannelsAndMeans(256);
        cDIBSection fast = in, plain = in;
        fast.effectFarbeSaturation(percent, 7);
        plainSaturation(plain, percent, 7);
        ASSERT_TRUE(sameImage(plain, fast));
    }
}

}  // namespace
}  // namespace brindle
