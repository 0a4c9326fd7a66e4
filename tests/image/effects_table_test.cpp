// Table and per-pixel effects against pixels worked out by hand.
#include <gtest/gtest.h>

#include <random>

#include "image/byte_table.h"
#include "image/dib_section.h"
#include "image_compare.h"
#include "support/temp_home.h"

namespace brindle::test {
namespace {

// Every test runs in its own temporary program directory.
class ByteTableLookup : public TempHomeTest {};
class TableEffects : public TempHomeTest {};

cDIBSection onePixel(Bgr c) {
    return makeDib(1, 1, [&](int, int) { return c; });
}

template <class Effect>
Bgr after(Bgr c, Effect effect) {
    cDIBSection dib = onePixel(c);
    effect(dib);
    return pixelAt(dib, 0, 0);
}

TEST_F(TableEffects, ContrastFollowsTheExponentialFactor) {
    // c = 0: k = 93, f = e^3.1 / 20 - 0.05 = 1.0599.
    //   0 -> (0 - 127) f + 127 = -7.6 -> 0; 100 -> 98.38 -> 98; 200 -> 204.37 -> 204.
    EXPECT_EQ(after({0, 100, 200}, [](cDIBSection& d) { d.effectKontrastBits(0); }),
              (Bgr{0, 98, 204}));
    EXPECT_EQ(after({127, 127, 127}, [](cDIBSection& d) { d.effectKontrastBits(0); }),
              (Bgr{127, 127, 127}));
    // c = -186 or less: k = 0, f = 0, everything 127.
    for (int c : {-186, -300})
        EXPECT_EQ(after({0, 90, 255}, [c](cDIBSection& d) { d.effectKontrastBits(c); }),
                  (Bgr{127, 127, 127}));
    // c / 2 rounds half to even: 1 gives k = 93 like 0, 3 gives k = 95.
    const cDIBSection noise = noisePicture(16, 16, 11);
    cDIBSection zero = noise, one = noise, three = noise;
    zero.effectKontrastBits(0);
    one.effectKontrastBits(1);
    three.effectKontrastBits(3);
    EXPECT_TRUE(sameImage(zero, one));
    EXPECT_FALSE(sameImage(zero, three));
}

TEST_F(TableEffects, BrightnessZeroBrightensByOnePointTwoEightAndIsCappedAt255) {
    // b = 0: k = 100, f = e^2 / 5 - 0.2 = 1.27781.
    EXPECT_EQ(after({50, 100, 200}, [](cDIBSection& d) { d.effectBrightnessBits(0); }),
              (Bgr{64, 128, 255}));
    // b = -100: f = 0.
    EXPECT_EQ(after({50, 100, 200}, [](cDIBSection& d) { d.effectBrightnessBits(-100); }),
              (Bgr{0, 0, 0}));
    // Near -10 the factor is about 1: no byte moves by more than 3.
    const cDIBSection noise = noisePicture(16, 16, 12);
    cDIBSection almost = noise;
    almost.effectBrightnessBits(-10);
    EXPECT_TRUE(sameImage(noise, almost, 3));
}

TEST_F(TableEffects, FastBrightnessRunsOverTheFlatBufferUpToItsOldLimit) {
    // Width 2: 8 bytes per row. Height 2: bytes 0 .. (2 - 1) x (8 - 1) = 7,
    // which is the whole bottom row with its pad bytes, and nothing above.
    cDIBSection dib = makeDib(2, 2, [](int, int) { return Bgr{10, 10, 10}; });
    dib.effectBrightnessBitsFast(100);  // f = e^4 / 5 - 0.2 = 10.72: 10 -> 107
    for (int i = 0; i < 6; ++i) EXPECT_EQ(dib.rowBits(0)[i], 107) << "byte " << i;
    EXPECT_EQ(dib.rowBits(0)[6], 0);  // pad bytes: table[0] = 0
    for (int i = 0; i < 6; ++i) EXPECT_EQ(dib.rowBits(1)[i], 10) << "byte " << i;
    // A single row reaches byte 0 only.
    cDIBSection flat = makeDib(2, 1, [](int, int) { return Bgr{10, 10, 10}; });
    flat.effectBrightnessBitsFast(100);
    EXPECT_EQ(bufferPixel(flat, 0, 0), (Bgr{107, 10, 10}));
}

TEST_F(TableEffects, BrightnessTestChangesRowsZeroToThirtyOnly) {
    cDIBSection dib = makeDib(3, 40, [](int, int) { return Bgr{100, 100, 100}; });
    EXPECT_GE(dib.effectBrightnessBitsTest(0), 0.0);
    EXPECT_EQ(bufferPixel(dib, 2, 30), (Bgr{128, 128, 128}));
    EXPECT_EQ(bufferPixel(dib, 2, 31), (Bgr{100, 100, 100}));
}

TEST_F(TableEffects, IntensivDarkensBelow128AndBrightensAbove) {
    const cDIBSection noise = noisePicture(16, 16, 13);
    cDIBSection same = noise;
    same.effectIntensiv(100);
    EXPECT_TRUE(sameImage(noise, same));
    // p = 50: 127 -> 63.5 -> 64, 101 -> 50.5 -> 50, 100 -> 50; 200 -> 400 -> 255; 128 -> 256 ->
    // 255.
    EXPECT_EQ(after({127, 101, 100}, [](cDIBSection& d) { d.effectIntensiv(50); }),
              (Bgr{64, 50, 50}));
    EXPECT_EQ(after({200, 128, 130}, [](cDIBSection& d) { d.effectIntensiv(80); }),
              (Bgr{250, 160, 162}));
    // Limited to 1..100: 0 acts as 1.
    EXPECT_EQ(after({10, 200, 127}, [](cDIBSection& d) { d.effectIntensiv(0); }), (Bgr{0, 255, 1}));
}

TEST_F(TableEffects, GammaRaisesToOneOverGamma) {
    const cDIBSection noise = noisePicture(16, 16, 14);
    cDIBSection same = noise;
    same.effectGamma(100);
    EXPECT_TRUE(sameImage(noise, same));
    // gamma 2: 255 sqrt(c / 255): 64 -> 127.75, 16 -> 63.87.
    EXPECT_EQ(after({64, 16, 255}, [](cDIBSection& d) { d.effectGamma(200); }),
              (Bgr{128, 64, 255}));
    // gamma 0.5: 255 (c / 255)^2: 128 -> 64.25.
    EXPECT_EQ(after({128, 0, 255}, [](cDIBSection& d) { d.effectGamma(50); }), (Bgr{64, 0, 255}));
}

TEST_F(TableEffects, IntensityWeighsGreenMost) {
    EXPECT_DOUBLE_EQ(cDIBSection::GetIntensity(100, 200, 50), 30 + 118 + 5.5);
    EXPECT_DOUBLE_EQ(cDIBSection::GetIntensity(255, 255, 255), 255.0);
}

TEST_F(TableEffects, GreyAndBlackAndWhiteUseThePlainMean) {
    EXPECT_EQ(after({10, 20, 40}, [](cDIBSection& d) { d.effectGrayBits(); }), (Bgr{23, 23, 23}));
    EXPECT_EQ(after({1, 2, 2}, [](cDIBSection& d) { d.effectGrayBits(); }), (Bgr{2, 2, 2}));
    EXPECT_EQ(after({100, 100, 101}, [](cDIBSection& d) { d.effectBlackAndWhite(100); }),
              (Bgr{255, 255, 255}));
    EXPECT_EQ(after({100, 100, 100}, [](cDIBSection& d) { d.effectBlackAndWhite(100); }),
              (Bgr{0, 0, 0}));
    const cDIBSection noise = noisePicture(16, 16, 15);
    cDIBSection a = noise, b = noise;
    a.effectBlackAndWhite(128);
    b.effectBlackAndWhite2(128);
    EXPECT_TRUE(sameImage(a, b));
}

TEST_F(TableEffects, SaturationModesSelectPixelsByTheirStrongestChannel) {
    const Bgr red{50, 60, 200}, green{50, 200, 60}, blue{200, 60, 50}, grey{100, 100, 100};
    // p = 50, mean 103: red (50, 60, 200) -> (23.5, 38.5, 248.5) -> (24, 38, 248).
    const Bgr redOut{24, 38, 248}, greenOut{24, 248, 38}, blueOut{248, 38, 24};
    struct Case {
        int mode;
        bool red, green, blue;
    } cases[] = {{1, true, false, false}, {2, false, true, false},  {4, false, false, true},
                 {3, true, true, false},  {5, true, false, true},   {6, false, true, true},
                 {7, true, true, true},   {0, false, false, false}, {8, false, false, false}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.mode);
        auto run = [&](Bgr in) {
            return after(in, [&](cDIBSection& d) { d.effectFarbeSaturation(50, c.mode); });
        };
        EXPECT_EQ(run(red), c.red ? redOut : red);
        EXPECT_EQ(run(green), c.green ? greenOut : green);
        EXPECT_EQ(run(blue), c.blue ? blueOut : blue);
        EXPECT_EQ(run(grey), grey);
    }
    // -100 percent pulls every channel onto the mean.
    EXPECT_EQ(after(red, [](cDIBSection& d) { d.effectFarbeSaturation(-100, 7); }),
              (Bgr{103, 103, 103}));
}

TEST_F(TableEffects, TintAddsTheColourAndKeepsTheHeldShare) {
    // Tint (30, 0, 0): mean0 = 10. Picture pixel (b 50, g 60, r 70), mean 60.
    struct Case {
        int hold, brightness;
        Bgr expected;
    } cases[] = {
        {100, 0, {40, 50, 90}},  // m = 0, d = -10
        {0, 0, {50, 50, 80}},    // m = 60, d = 50
        {0, 5, {55, 55, 85}},
        {50, 0, {45, 50, 85}},  // m = 30, d = 20: 25 + 20, 30 + 20, 35 + 20 + 30
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.hold);
        cDIBSection dib = makeDib(1, 2, [](int, int) { return Bgr{50, 60, 70}; });
        dib.effectEinfärben(30, 0, 0, c.brightness, c.hold);
        EXPECT_EQ(bufferPixel(dib, 0, 1), c.expected);
        EXPECT_EQ(bufferPixel(dib, 0, 0), (Bgr{50, 60, 70})) << "buffer row 0 stays";
    }
}

TEST_F(TableEffects, RandomPicturesNeverHoldBlueUnlessGrey) {
    cDIBSection::seedRandom(1);
    cDIBSection colour = noisePicture(20, 20, 16);
    colour.effectRandomiseBits(false);
    cDIBSection grey = colour;
    grey.effectRandomiseBits(true);
    bool varied = false;
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 20; ++x) {
            const Bgr c = pixelAt(colour, x, y), g = pixelAt(grey, x, y);
            EXPECT_EQ(c.b, 0);
            EXPECT_TRUE(g.b == g.g && g.g == g.r);
            varied |= !(c == pixelAt(colour, 0, 0));
        }
    EXPECT_TRUE(varied);
}

TEST_F(TableEffects, FlatFillSplitsTheColourWord) {
    cDIBSection dib = noisePicture(3, 3, 17);
    dib.effectFarbfläche(0x00332211);
    EXPECT_TRUE(sameImage(makeDib(3, 3, [](int, int) { return Bgr{0x33, 0x22, 0x11}; }), dib));
}

TEST_F(TableEffects, GridBlackensEveryNthRowAndColumn) {
    struct Case {
        int width, xStep, yStep;
        std::vector<int> columns;
    } cases[] = {{7, 3, 2, {0, 3, 6}}, {8, 3, 2, {1, 4, 7}}, {8, 4, 3, {0, 4}}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.width);
        cDIBSection dib = makeDib(c.width, 7, [](int, int) { return Bgr{9, 9, 9}; });
        dib.effectGrid(c.xStep, c.yStep);
        for (int row = 0; row < 7; ++row)
            for (int x = 0; x < c.width; ++x) {
                const bool onRow = row > 0 && row % c.yStep == 0;
                const bool onColumn =
                    std::find(c.columns.begin(), c.columns.end(), x) != c.columns.end();
                EXPECT_EQ(bufferPixel(dib, x, row), (onRow && onColumn ? Bgr{} : Bgr{9, 9, 9}))
                    << "x " << x << " row " << row;
            }
    }
}

TEST_F(TableEffects, NeonLooksUpACosineTableShiftedByRowAndColumn) {
    // Buffer row 0: pixel 0 (b 0, g 64, r 128); row 1: pixel 1 (b 63, g 1, r 255).
    cDIBSection dib;
    ASSERT_TRUE(dib.Create(2, 2));
    auto set = [&](int x, int row, Bgr c) {
        std::uint8_t* p = dib.rowBits(row) + x * 3;
        p[0] = static_cast<std::uint8_t>(c.b), p[1] = static_cast<std::uint8_t>(c.g),
        p[2] = static_cast<std::uint8_t>(c.r);
    };
    set(0, 0, {0, 64, 128});
    set(1, 1, {63, 1, 255});
    cDIBSection mode2 = dib;
    mode2.effectNeon(0, 2, false);
    // table[i] = |cos(i 2 pi / 256) 127|: table[0] = 127, table[64] = 0, table[128] = 127.
    EXPECT_EQ(bufferPixel(mode2, 0, 0), (Bgr{127, 0, 127}));
    // blue: (63 + 1) -> table[64] = 0; green: round(1 - 3 / 4) = 0 -> 127; red: (255 + 1) & 255 = 0
    // -> 127.
    EXPECT_EQ(bufferPixel(mode2, 1, 1), (Bgr{0, 127, 127}));
    cDIBSection mode0 = dib;
    mode0.effectNeon(0, 0, false);  // |cos 127 - 127|: 0, 127, 254
    EXPECT_EQ(bufferPixel(mode0, 0, 0), (Bgr{0, 127, 254}));
    cDIBSection mode1 = dib;
    mode1.effectNeon(0, 1, false);  // (round |cos 127| AND 127) OR 128: 255, 128, 255
    EXPECT_EQ(bufferPixel(mode1, 0, 0), (Bgr{255, 128, 255}));
    cDIBSection grey = dib;
    grey.effectNeon(0, 2, true);  // (71 x 127 + 0 + 222 x 127) / 1000 = 37.2
    EXPECT_EQ(bufferPixel(grey, 0, 0), (Bgr{37, 37, 37}));
}

TEST_F(TableEffects, MetalToneHasThreeTintsAndFollowsBrightnessOnly) {
    const Bgr mid{128, 128, 128};
    const Bgr gold = after(mid, [](cDIBSection& d) { d.effectMetallic(1); });
    const Bgr ice = after(mid, [](cDIBSection& d) { d.effectMetallic(2); });
    const Bgr steel = after(mid, [](cDIBSection& d) { d.effectMetallic(3); });
    EXPECT_GT(gold.r, gold.g);
    EXPECT_GT(gold.g, gold.b);
    EXPECT_GT(ice.b, ice.g);
    EXPECT_GT(ice.g, ice.r);
    EXPECT_GE(steel.b, steel.r);
    EXPECT_LT(steel.b - steel.r, gold.r - gold.b) << "steel is nearly neutral";
    // Two colours of the same brightness come out alike.
    EXPECT_EQ(after({0, 100, 0}, [](cDIBSection& d) { d.effectMetallic(1); }),
              after({59, 59, 59}, [](cDIBSection& d) { d.effectMetallic(1); }));
    EXPECT_EQ(after(mid, [](cDIBSection& d) { d.effectMetallic(4); }), mid);
}

}  // namespace
}  // namespace brindle::test

namespace brindle::test {
namespace {

TEST_F(ByteTableLookup, WideAndPortablePathsAgreeAtEveryLength) {
    std::uint8_t table[256];
    for (int i = 0; i < 256; ++i) table[i] = static_cast<std::uint8_t>((i * 37 + 11) ^ 0x5A);
    const ByteTable wide(table), portable(table, false);
    std::mt19937 rng(3);
    for (std::size_t n : {0, 1, 7, 8, 9, 63, 64, 65, 200, 1000}) {
        SCOPED_TRACE(n);
        std::vector<std::uint8_t> in(n);
        for (auto& b : in) b = static_cast<std::uint8_t>(rng());
        std::vector<std::uint8_t> a = in, b = in;
        wide.apply(a.data(), n);
        portable.apply(b.data(), n);
        for (std::size_t i = 0; i < n; ++i) ASSERT_EQ(b[i], table[in[i]]) << i;
        EXPECT_EQ(a, b);
    }
}

}  // namespace
}  // namespace brindle::test
