// The saturation's 16-pixel lanes against the formula written out plainly:
// their integer steps over every input they meet, and whole pictures of
// widths around the lane count, at percents with and without exact halves.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "image/byte_table.h"
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

// Tables a step before the saturation may leave: the identity, one value,
// a reversed and a stepped one, and shuffles (far from monotone).
std::vector<std::vector<std::uint8_t>> lookupTables() {
    std::vector<std::vector<std::uint8_t>> tables(6, std::vector<std::uint8_t>(256));
    std::mt19937 rng(11);
    for (int v = 0; v < 256; ++v) {
        tables[0][v] = static_cast<std::uint8_t>(v);
        tables[1][v] = 200;
        tables[2][v] = static_cast<std::uint8_t>(255 - v);
        tables[3][v] = static_cast<std::uint8_t>(v < 128 ? v * 2 : 255 - (v - 128) * 2);
        tables[4][v] = static_cast<std::uint8_t>(rng());
        tables[5][v] = static_cast<std::uint8_t>(v ^ 0x80);
    }
    std::shuffle(tables[5].begin(), tables[5].end(), rng);
    return tables;
}

// A table and then the saturation in one call, through the lanes of
// `width`, against the table applied plainly and the formula after it;
// guard bytes after each row must stay untouched.
void holdLookupAndSaturationToFormula(effects::SaturationWidth width) {
    std::vector<cDIBSection> pictures;
    unsigned seed = 70;
    for (int w = 1; w <= 70; ++w) pictures.push_back(extremesPicture(w, 2, seed++));
    for (int w : {95, 96, 97, 256, 257, 319, 511}) pictures.push_back(extremesPicture(w, 2, seed++));
    pictures.push_back(allChannelsAndMeans(256));
    const bool wide = width == effects::SaturationWidth::lanes32;
    for (const std::vector<std::uint8_t>& entries : lookupTables()) {
        std::uint8_t raw[256];
        std::copy(entries.begin(), entries.end(), raw);
        const ByteTable before(raw, wide);
        for (int mode = 1; mode <= 7; ++mode)
            for (int percent : {120, 110, 125, -75, 0, 100, -100, 333, 12899, -12800, 12900}) {
                SCOPED_TRACE(testing::Message() << "mode " << mode << " percent " << percent << " table "
                                                << int(raw[0]) << "," << int(raw[1]) << "," << int(raw[255]));
                SaturationRow s;
                ASSERT_TRUE(s.prepare(percent, mode, width));
                for (const cDIBSection& in : pictures) {
                    SCOPED_TRACE(in.Width());
                    cDIBSection fast = in, plain = in;
                    const std::size_t bytes = static_cast<std::size_t>(in.Width()) * 3;
                    std::vector<std::uint8_t> buffer(bytes + 128);
                    for (int y = 0; y < in.Height(); ++y) {
                        std::memset(buffer.data() + bytes, kGuard, 128);
                        std::memcpy(buffer.data(), fast.rowBits(y), bytes);
                        s.applyAfter(buffer.data(), in.Width(), before);
                        for (std::size_t i = bytes; i < buffer.size(); ++i)
                            ASSERT_EQ(kGuard, buffer[i]) << "wrote past the row at " << i;
                        std::memcpy(fast.rowBits(y), buffer.data(), bytes);
                        std::uint8_t* p = plain.rowBits(y);
                        for (std::size_t i = 0; i < bytes; ++i) p[i] = raw[p[i]];
                    }
                    plainSaturation(plain, percent, mode);
                    ASSERT_TRUE(sameImage(plain, fast));
                }
            }
    }
}

TEST(SaturationLanes, Lanes32WithATableFirstEqualTheFormula) {
    if (!effects::saturationLanes512Available()) GTEST_SKIP() << "no AVX-512 VBMI";
    holdLookupAndSaturationToFormula(effects::SaturationWidth::lanes32);
}

TEST(SaturationLanes, Lanes16WithATableFirstEqualTheFormula) {
    if (!effects::saturationLanesAvailable()) GTEST_SKIP() << "no AVX2";
    holdLookupAndSaturationToFormula(effects::SaturationWidth::lanes16);
}

TEST(SaturationLanes, PlainTableFirstEqualsTheFormula) {
    holdLookupAndSaturationToFormula(effects::SaturationWidth::plain);
}

// Runs of contrast, brightness (flat over the buffer or on the colour
// bytes) and saturation, with every lane width capped, against the effects
// one after another: pad bytes included, and the flat brightness's end
// inside the picture's last rows.
TEST(SaturationLanes, PointwiseRunsWithEachLaneWidthEqualTheEffects) {
    using W = effects::SaturationWidth;
    struct Step {
        char kind;  // c contrast, b brightness, f flat brightness, s saturation
        int a, b;
    };
    const std::vector<std::vector<Step>> runs = {
        {{'c', 20, 0}, {'f', 10, 0}, {'s', 120, 7}},
        {{'f', 10, 0}, {'c', -40, 0}, {'s', 110, 1}, {'s', 50, 3}},
        {{'b', 30, 0}, {'s', 125, 2}, {'c', 300, 0}},
        {{'f', -30, 0}, {'s', -75, 6}, {'b', 25, 0}, {'s', 333, 5}},
        {{'c', 60, 0}, {'s', 120, 4}},
        {{'c', 15, 0}, {'b', -20, 0}, {'f', 40, 0}, {'s', 115, 7}},
    };
    std::vector<int> widths;
    for (int w = 1; w <= 70; ++w) widths.push_back(w);
    for (int w : {97, 255, 301}) widths.push_back(w);
    unsigned seed = 500;
    for (const W cap : {W::lanes32, W::lanes16, W::plain})
        for (const auto& run : runs)
            for (const int w : widths) {
                SCOPED_TRACE(testing::Message() << "cap " << int(cap) << " width " << w << " first " << run[0].kind);
                cDIBSection in = extremesPicture(w, 4, seed++);
                for (int y = 0; y < in.Height(); ++y)
                    for (int i = w * 3; i < in.BytesPerScanLine(); ++i)
                        in.rowBits(y)[i] = static_cast<std::uint8_t>(37 * i + 11 * y);
                cDIBSection together = in, oneByOne = in;
                PointwiseRows rows(cap);
                for (const Step& step : run) {
                    switch (step.kind) {
                        case 'c': rows.contrast(step.a); oneByOne.effectKontrastBits(step.a); break;
                        case 'b': rows.brightness(step.a); oneByOne.effectBrightnessBits(step.a); break;
                        case 'f': rows.brightnessFlat(step.a); oneByOne.effectBrightnessBitsFast(step.a); break;
                        default: rows.saturation(step.a, step.b); oneByOne.effectFarbeSaturation(step.a, step.b);
                    }
                }
                rows.run(together);
                const std::size_t n = static_cast<std::size_t>(in.BytesPerScanLine()) * in.Height();
                ASSERT_EQ(0, std::memcmp(oneByOne.DIBSectionBitsPtr(), together.DIBSectionBitsPtr(), n));
            }
}

}  // namespace
}  // namespace brindle
