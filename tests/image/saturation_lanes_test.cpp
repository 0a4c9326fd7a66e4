// The saturation's 16-pixel lanes against the formula written out plainly:
// their integer steps over every input they meet, and whole pictures of
// widths around the lane count, at percents with and without exact halves.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "image/dib_section.h"
#include "image/image_compare.h"
#include "image/plain_effects.h"
#include "image/pointwise_rows.h"
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
    for (int y = -25600; y <= 43689; ++y) {
        const int q = y >= 0 ? y / 100 : -((99 - y) / 100);
        ASSERT_EQ(y < 0 && y % 100 == 0 ? q - 1 : q, effects::laneFloor100(y)) << y;
    }
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

// Random channels, a quarter of them at the ends of the range, so that
// every mode meets equal channels and means at 0 and 255.
cDIBSection extremesPicture(int width, int height, unsigned seed) {
    std::mt19937 rng(seed);
    const int ends[] = {0, 1, 2, 253, 254, 255};
    auto channel = [&] { return rng() % 4 == 0 ? ends[rng() % 6] : static_cast<int>(rng() % 256); };
    return makeDib(width, height, [&](int, int) {
        const int b = channel(), g = channel();
        return test::Bgr{b, g, channel()};
    });
}

const std::uint8_t kGuard = 0xA5;

// The saturation of every row through the lanes named, each row copied
// into a buffer with guard bytes after it that must stay untouched.
::testing::AssertionResult saturateRows(cDIBSection& d, const SaturationRow& s) {
    const std::size_t bytes = static_cast<std::size_t>(d.Width()) * 3;
    std::vector<std::uint8_t> buffer(bytes + 128);
    for (int y = 0; y < d.Height(); ++y) {
        std::memset(buffer.data() + bytes, kGuard, 128);
        std::memcpy(buffer.data(), d.rowBits(y), bytes);
        s.apply(buffer.data(), d.Width());
        for (std::size_t i = bytes; i < buffer.size(); ++i)
            if (buffer[i] != kGuard) return ::testing::AssertionFailure() << "wrote past the row at " << i;
        std::memcpy(d.rowBits(y), buffer.data(), bytes);
    }
    return ::testing::AssertionSuccess();
}

// Each mode and percent through the lanes of `width` against the formula on
// widths 1 .. 70 and a few hundred, and on the picture of every channel
// against every mean (exact halves).
void holdPathToFormula(effects::SaturationWidth width) {
    std::vector<cDIBSection> pictures;
    unsigned seed = 7;
    for (int w = 1; w <= 70; ++w) pictures.push_back(extremesPicture(w, 3, seed++));
    for (int w : {255, 256, 257, 319, 511}) pictures.push_back(extremesPicture(w, 2, seed++));
    const cDIBSection every = allChannelsAndMeans(256);
    for (int mode = 1; mode <= 7; ++mode)
        for (int percent : {120, 110, 150, 125, 50, -50, -75, 0, 1, 99, 100, -1, -100, -101, 333,
                            -12800, -12799, 12899, 12900, -12801, 1000000, -1000000}) {
            SCOPED_TRACE(testing::Message() << "mode " << mode << " percent " << percent);
            SaturationRow s;
            ASSERT_TRUE(s.prepare(percent, mode, width));
            for (const cDIBSection& in : pictures) {
                SCOPED_TRACE(in.Width());
                cDIBSection fast = in, plain = in;
                ASSERT_TRUE(saturateRows(fast, s));
                plainSaturation(plain, percent, mode);
                ASSERT_TRUE(sameImage(plain, fast));
            }
            if (mode != 7 && mode != 1) continue;
            cDIBSection fast = every, plain = every;
            ASSERT_TRUE(saturateRows(fast, s));
            plainSaturation(plain, percent, mode);
            ASSERT_TRUE(sameImage(plain, fast));
        }
}

TEST(SaturationLanes, Lanes32EqualTheFormula) {
    if (!effects::saturationLanes512Available()) GTEST_SKIP() << "no AVX-512 VBMI";
    holdPathToFormula(effects::SaturationWidth::lanes32);
}

TEST(SaturationLanes, Lanes16EqualTheFormula) {
    if (!effects::saturationLanesAvailable()) GTEST_SKIP() << "no AVX2";
    holdPathToFormula(effects::SaturationWidth::lanes16);
}

TEST(SaturationLanes, TableEqualsTheFormula) { holdPathToFormula(effects::SaturationWidth::plain); }

}  // namespace
}  // namespace brindle
