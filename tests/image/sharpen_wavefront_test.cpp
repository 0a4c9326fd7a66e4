// The banded sharpening against the formula written out plainly, and the
// multiply-shift division it uses against true division.
#include <gtest/gtest.h>

#include <random>

#include "image/dib_section.h"
#include "image/image_compare.h"
#include "image/plain_effects.h"
#include "image/sharpen_bands.h"
#include "image/sharpen_wavefront.h"
#include "image/sharpen_wavefront_512.h"
#include "image/sharpen_wavefront_wide.h"

namespace brindle {
namespace {

using test::noisePicture;
using test::sameImage;
using test::plainSharpen;

TEST(SharpenWavefront, LaneDivisionIsExactForEveryNumerator) {
    for (int divisor = 2; divisor <= 112; ++divisor) {
        SCOPED_TRACE(divisor);
        const int most = 255 * (divisor + 16);  // 255 x centre for this divisor
        effects::LaneDivision d;
        ASSERT_TRUE(effects::findLaneDivision(divisor, most, d));
        ASSERT_LE(d.multiplier, 65535);
        for (int n = 0; n <= most; ++n) {
            const int q = ((n * d.multiplier) >> 16) >> d.shift;
            ASSERT_EQ(n / divisor, q) << "numerator " << n;
        }
    }
    // Division by one has no 16-bit multiplier; nor do numerators past 15 bits.
    effects::LaneDivision d;
    EXPECT_FALSE(effects::findLaneDivision(1, 4335, d));
    EXPECT_FALSE(effects::findLaneDivision(5, 32768, d));
    EXPECT_FALSE(effects::findLaneDivision(0, 100, d));
}

TEST(SharpenWavefront, PreparesOnlyStrengthsTheLanesHold) {
    effects::SharpenWavefront wave;
    EXPECT_TRUE(wave.prepare(-6, 100));
    EXPECT_TRUE(wave.prepare(104, 100));   // 255 x 128 = 32640
    EXPECT_FALSE(wave.prepare(105, 100));  // 255 x 129 passes 32767
    EXPECT_FALSE(wave.prepare(-7, 100));   // divisor 1
    EXPECT_FALSE(wave.prepare(-8, 100));
    EXPECT_FALSE(wave.prepare(5, 3));      // no column to sharpen
    EXPECT_TRUE(wave.prepare(5, 4));
}

TEST(SharpenWavefront, WideBandsPrepareWhatTheNarrowOneDoes) {
    effects::SharpenWavefront512 widest;
    effects::SharpenWavefrontWide wide;
    effects::SharpenWavefront narrow;
    for (const auto& [strength, width] : {std::pair{-6, 100}, {104, 100}, {105, 100}, {-7, 100},
                                          {-8, 100}, {5, 3}, {5, 4}, {0, 4000}}) {
        const bool expected = narrow.prepare(strength, width);
        EXPECT_EQ(expected, wide.prepare(strength, width)) << strength;
        EXPECT_EQ(expected, widest.prepare(strength, width)) << strength;
    }
}

cDIBSection flat(int w, int h, std::uint8_t v) {
    cDIBSection d;
    d.Create(w, h);
    for (int y = 0; y < h; ++y) std::fill_n(d.rowBits(y), w * 3, v);
    return d;
}

// Black and white pixels: sums at both ends of their range.
cDIBSection extremes(int w, int h, unsigned seed) {
    cDIBSection d = flat(w, h, 0);
    std::mt19937 rng(seed);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w * 3; ++x) d.rowBits(y)[x] = (rng() & 1) ? 255 : 0;
    return d;
}

TEST(SharpenWavefront, BandsGiveTheFormulasBytes) {
    // Widths around the transpose blocks and tiny ones, and wide ones whose
    // bands go in several pieces; heights with and without rows left over
    // after the bands of sixteen and of eight.
    const std::pair<int, int> sizes[] = {{4, 11}, {5, 10}, {6, 12}, {7, 19}, {8, 18}, {13, 27},
                                         {16, 11}, {17, 26}, {21, 35}, {33, 12}, {64, 30},
                                         {101, 43}, {4, 3}, {9, 9}, {5, 19}, {40, 50},
                                         {200, 37}, {11, 34}, {300, 17}, {257, 35}};
    unsigned seed = 7;
    for (const auto& [w, h] : sizes)
        for (int strength : {-6, -5, -1, 0, 1, 5, 9, 50, 99, 100, 103, 104, 105}) {
            SCOPED_TRACE(testing::Message() << w << "x" << h << " strength " << strength);
            for (const cDIBSection& in :
                 {noisePicture(w, h, seed++), extremes(w, h, seed++), flat(w, h, 255), flat(w, h, 0)}) {
                cDIBSection fast = in, plain = in;
                fast.effectSchärfen2(strength);
                plainSharpen(plain, strength);
                ASSERT_TRUE(sameImage(plain, fast));
            }
        }
}

// Each path alone against the formula: bands no wider than `widest`, then the
// narrower ones and single rows for what is left.
void checkBandsUpTo(int widest) {
    // Widths around the 16-, 32- and 64-byte blocks, tiny ones, and ones whose
    // bands end just before or after a piece of 192 or 384 steps.
    const int widths[] = {4, 5, 6, 10, 11, 16, 21, 22, 32, 43, 64, 65, 69, 70, 133, 134, 300};
    // One band of 30 and nothing left; rows left after 30, 16 and 8 at once;
    // rows left after 16 and 8 only; two bands of 30 and a few rows.
    const int heights[] = {33, 34, 60, 29, 66, 95};
    unsigned seed = 11;
    for (int w : widths)
        for (int h : heights)
            for (int strength : {-7, -6, -1, 0, 5, 50, 104, 105}) {
                SCOPED_TRACE(testing::Message() << w << "x" << h << " strength " << strength);
                for (const cDIBSection& in : {noisePicture(w, h, seed++), extremes(w, h, seed++),
                                              flat(w, h, 255), flat(w, h, 0)}) {
                    cDIBSection fast = in, plain = in;
                    effects::sharpenWithBandsUpTo(fast, strength, widest);
                    plainSharpen(plain, strength);
                    ASSERT_TRUE(sameImage(plain, fast));
                }
            }
}

TEST(SharpenWavefront, BandsOfThirtyGiveTheFormulasBytes) {
    if (!effects::SharpenWavefront512::available()) GTEST_SKIP() << "no AVX-512 here";
    checkBandsUpTo(effects::SharpenWavefront512::kRows);
}

TEST(SharpenWavefront, BandsOfThirtyGiveTheFormulasBytesAtEveryRowLength) {
    // The band moves its rows in chunks of 16 steps, taken whole only where
    // all 32 rows lie inside them: every row length from below the first
    // whole chunk to a few chunks past it, so that each row end falls on
    // each byte of a chunk, in one band alone and in two.
    if (!effects::SharpenWavefront512::available()) GTEST_SKIP() << "no AVX-512 here";
    unsigned seed = 3;
    for (int w = 58; w <= 110; ++w)
        for (int h : {32, 62})
            for (int strength : {-6, 5, 104}) {
                SCOPED_TRACE(testing::Message() << w << "x" << h << " strength " << strength);
                for (const cDIBSection& in : {noisePicture(w, h, seed++), extremes(w, h, seed++)}) {
                    cDIBSection fast = in, plain = in;
                    effects::sharpenWithBandsUpTo(fast, strength, effects::SharpenWavefront512::kRows);
                    plainSharpen(plain, strength);
                    ASSERT_TRUE(sameImage(plain, fast));
                }
            }
}

TEST(SharpenWavefront, BandsOfSixteenGiveTheFormulasBytes) {
    if (!effects::SharpenWavefrontWide::available()) GTEST_SKIP() << "no AVX2 here";
    checkBandsUpTo(effects::SharpenWavefrontWide::kLanes);
}

TEST(SharpenWavefront, BandsOfEightGiveTheFormulasBytes) {
    checkBandsUpTo(effects::SharpenWavefront::kLanes);
}

TEST(SharpenWavefront, SingleRowsGiveTheFormulasBytes) { checkBandsUpTo(1); }

TEST(SharpenWavefront, TheBatchSharpeningTakesTheWidestBand) {
    // The same picture through the member and through the widest cap.
    cDIBSection a = noisePicture(150, 97, 5), b = a;
    a.effectSchärfen2(9);
    effects::sharpenWithBandsUpTo(b, 9, effects::kWidestSharpenBand);
    EXPECT_TRUE(sameImage(a, b));
    EXPECT_EQ(effects::SharpenWavefront512::kRows, effects::kWidestSharpenBand);
}

}  // namespace
}  // namespace brindle
