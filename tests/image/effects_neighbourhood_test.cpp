// Neighbourhood, remapping and mixing effects, and the filter bank.
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "image/dib_section.h"
#include "image/filter_bank.h"
#include "image_compare.h"
#include "support/temp_home.h"

namespace brindle::test {
namespace {

// Every test runs in its own temporary program directory.
class FilterBank : public TempHomeTest {};
class MixEffects : public TempHomeTest {};
class NeighbourhoodEffects : public TempHomeTest {};
class RemappingEffects : public TempHomeTest {};

// A grey picture given by buffer rows (row 0 at the bottom), one value per pixel.
cDIBSection greyRows(const std::vector<std::vector<int>>& bufferRows) {
    const int h = static_cast<int>(bufferRows.size()), w = static_cast<int>(bufferRows[0].size());
    return makeDib(w, h, [&](int x, int y) {
        const int v = bufferRows[h - 1 - y][x];
        return Bgr{v, v, v};
    });
}

int grey(const cDIBSection& dib, int x, int row) { return bufferPixel(dib, x, row).g; }

cDIBSection spot(int size, int at, int value, int background = 0) {
    std::vector<std::vector<int>> rows(size, std::vector<int>(size, background));
    rows[at][at] = value;
    return greyRows(rows);
}

TEST_F(NeighbourhoodEffects, EmbossTakesTheByteAboveRightAndCentresOn128) {
    struct Case {
        int below, above, expected;
    } cases[] = {{100, 60, 168}, {10, 200, 62}, {255, 0, 255}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.expected);
        cDIBSection dib =
            greyRows({{c.below, c.below, c.below, c.below}, {c.above, c.above, c.above, c.above}});
        dib.effectEmbossBits();
        // Byte columns 3 .. 4 x 3 - 6 = 6 of buffer row 0: pixel 1 and the blue of pixel 2.
        EXPECT_EQ(bufferPixel(dib, 1, 0), (Bgr{c.expected, c.expected, c.expected}));
        EXPECT_EQ(bufferPixel(dib, 2, 0), (Bgr{c.expected, c.below, c.below}));
        EXPECT_EQ(bufferPixel(dib, 0, 0), (Bgr{c.below, c.below, c.below}));
        EXPECT_EQ(bufferPixel(dib, 1, 1), (Bgr{c.above, c.above, c.above}));
    }
}

TEST_F(NeighbourhoodEffects, OneTapSharpenSeesItsAlreadySharpenedLeftNeighbour) {
    cDIBSection dib = greyRows({{10, 50, 50, 50, 10}});
    dib.effectSchärfenBits();
    // Bytes 3 .. 9: 50 + (50 - 10) / 2 = 70, then 50 + (50 - 70) / 2 = 40, then 50 + (50 - 40) / 2
    // = 55.
    EXPECT_EQ(bufferPixel(dib, 1, 0), (Bgr{70, 70, 70}));
    EXPECT_EQ(bufferPixel(dib, 2, 0), (Bgr{40, 40, 40}));
    EXPECT_EQ(bufferPixel(dib, 3, 0), (Bgr{55, 50, 50}));
    EXPECT_EQ(bufferPixel(dib, 4, 0), (Bgr{10, 10, 10}));
}

TEST_F(NeighbourhoodEffects, OneTapSharpenFollowsItsFormulaOnNoise) {
    const cDIBSection noise = noisePicture(40, 6, 23);
    cDIBSection expected = noise;
    for (int row = 0; row < 6; ++row) {
        std::uint8_t* p = expected.rowBits(row);
        for (int x = 3; x <= 40 * 3 - 6; ++x) {
            const double v = std::nearbyint(p[x] + 0.5 * (p[x] - p[x - 3]));  // half to even
            p[x] = static_cast<std::uint8_t>(v < 0 ? 0 : (v > 255 ? 255 : v));
        }
    }
    cDIBSection dib = noise;
    dib.effectSchärfenBits();
    EXPECT_TRUE(sameImage(expected, dib));
}

TEST_F(NeighbourhoodEffects, ThreeByThreeSharpenWorksInPlaceWithIntegerDivision) {
    const cDIBSection flat = greyRows(std::vector<std::vector<int>>(6, std::vector<int>(6, 90)));
    for (int k : {0, 5, 40}) {
        cDIBSection same = flat;
        same.effectSchärfen2(k);
        EXPECT_TRUE(sameImage(flat, same)) << "k " << k;
    }
    // k = 0: out = (24 c - 2 S) / 8 over rows 2..3 and pixels 2..3.
    cDIBSection dib = spot(5, 2, 180, 100);
    dib.effectSchärfen2(0);
    EXPECT_EQ(grey(dib, 2, 2), 255);  // (4320 - 1600) / 8 = 340
    EXPECT_EQ(grey(dib, 3, 2), 61);   // S = 955 with the new 255: 490 / 8
    EXPECT_EQ(grey(dib, 2, 3), 71);   // S = 916: 568 / 8
    EXPECT_EQ(grey(dib, 3, 3), 78);   // S = 887: 626 / 8
    EXPECT_EQ(grey(dib, 1, 1), 100);
    EXPECT_EQ(grey(dib, 4, 4), 100);
}

TEST_F(NeighbourhoodEffects, FivePointBlurIgnoresItsArgumentAndWorksInPlace) {
    const cDIBSection noise = noisePicture(12, 9, 21);
    cDIBSection one = noise, nine = noise;
    one.effectWeichzeichnen(1);
    nine.effectWeichzeichnen(9);
    EXPECT_TRUE(sameImage(one, nine));
    EXPECT_FALSE(sameImage(noise, one));

    cDIBSection dib = spot(5, 2, 100);
    dib.effectWeichzeichnen(1);
    EXPECT_EQ(grey(dib, 2, 2), 20);
    EXPECT_EQ(grey(dib, 3, 2), 4);  // its left neighbour is already 20
    EXPECT_EQ(grey(dib, 2, 3), 4);  // its lower neighbour is already 20
    EXPECT_EQ(grey(dib, 3, 3), 1);  // (4 + 4) / 5
    EXPECT_EQ(grey(dib, 1, 2), 0);
}

TEST_F(FilterBank, FilterFiveIsTheFivePointMeanOverTheInterior) {
    cDIBSection dib = spot(5, 2, 100);
    EXPECT_TRUE(filterBitmap(kFilterSoft, dib, 77));
    const int expected[5][5] = {
        {0, 0, 0, 0, 0}, {0, 0, 20, 4, 0}, {0, 20, 28, 6, 0}, {0, 4, 6, 2, 0}, {0, 0, 0, 0, 0}};
    for (int row = 0; row < 5; ++row)
        for (int x = 0; x < 5; ++x)
            EXPECT_EQ(grey(dib, x, row), expected[row][x]) << "x " << x << " row " << row;
}

TEST_F(FilterBank, FilterThreeWeighsTheCentreFourTimes) {
    const cDIBSection flat = greyRows(std::vector<std::vector<int>>(5, std::vector<int>(5, 77)));
    cDIBSection same = flat;
    EXPECT_TRUE(filterBitmap(kFilterBlur, same, 0));
    EXPECT_TRUE(sameImage(flat, same));
    cDIBSection dib = spot(5, 2, 80);
    EXPECT_TRUE(filterBitmap(kFilterBlur, dib, 0));
    EXPECT_EQ(grey(dib, 2, 1), 10);  // 80 above: 80 >> 3
    EXPECT_EQ(grey(dib, 1, 2), 10);  // 80 right
    EXPECT_EQ(grey(dib, 2, 2), 42);  // (320 + 10 + 10) >> 3
    EXPECT_EQ(grey(dib, 2, 0), 0);   // the outer rows stay
    EXPECT_FALSE(filterBitmap(4, dib, 0));
}

TEST_F(RemappingEffects, WavesTakeRowsFromTheMap) {
    // Height 10, phase 0: map = 9 8 7 6 6 5 5 4 0 1 (worked out for rows 0..9;
    // row 8 needs the floor of -0.15, which is -1).
    std::vector<std::vector<int>> rows;
    for (int r = 0; r < 10; ++r) rows.push_back({r * 10, r * 10});
    cDIBSection dib = greyRows(rows);
    dib.effectWaves(0);
    const int map[10] = {9, 8, 7, 6, 6, 5, 5, 4, 0, 1};
    for (int r = 0; r < 10; ++r) EXPECT_EQ(grey(dib, 1, r), map[r] * 10) << "row " << r;
    // Phase 5 turns the waves: 9 8 7 6 4 3 1 0 0 0.
    cDIBSection turned = greyRows(rows);
    turned.effectWaves(5);
    const int map5[10] = {9, 8, 7, 6, 4, 3, 1, 0, 0, 0};
    for (int r = 0; r < 10; ++r) EXPECT_EQ(grey(turned, 0, r), map5[r] * 10) << "row " << r;
}

TEST_F(RemappingEffects, RippleMovesRowsAndColumnsBySines) {
    const cDIBSection src = makeDib(20, 40, [](int x, int y) {
        return Bgr{x, 39 - y, 0};
    });  // b = x, g = buffer row
    cDIBSection same = src;
    same.effectRippleBits(0, 0);
    EXPECT_TRUE(sameImage(src, same));
    cDIBSection vertical = src;
    vertical.effectRippleBits(2, 0);
    // Y[i] = round(2 sin(i / 10) + i): 0 -> 0, 16 -> 18, 39 -> 38.
    EXPECT_EQ(bufferPixel(vertical, 5, 0).g, 0);
    EXPECT_EQ(bufferPixel(vertical, 5, 16).g, 18);
    EXPECT_EQ(bufferPixel(vertical, 5, 39).g, 38);
    cDIBSection horizontal = src;
    horizontal.effectRippleBits(0, 3);
    // X = x + round(3 sin(x / 30)) x 3: pixel 16 -> 19; pixel 17 -> 20, limited to 19.
    EXPECT_EQ(bufferPixel(horizontal, 16, 7).b, 19);
    EXPECT_EQ(bufferPixel(horizontal, 17, 7).b, 19);
    EXPECT_EQ(bufferPixel(horizontal, 0, 7).b, 0);
}

TEST_F(RemappingEffects, ThreeDimensionalDrawsBrightPixelsDownTheirColumn) {
    // Height 3, depth 1: k = 0.01. Buffer row 2 pixel 0 has the sum 300:
    // t = round(2 - 3) -> 1, so row 1 takes its colour; pixel 1 (sum 30) stays.
    cDIBSection dib = greyRows({{1, 1}, {2, 2}, {100, 10}});
    dib.effect3D(1);
    EXPECT_EQ(grey(dib, 0, 1), 100);
    EXPECT_EQ(grey(dib, 1, 1), 2);
    EXPECT_EQ(grey(dib, 0, 0), 1);
    cDIBSection none = greyRows({{1, 1}, {2, 2}, {100, 10}});
    none.effect3D(0);
    EXPECT_TRUE(sameImage(greyRows({{1, 1}, {2, 2}, {100, 10}}), none));
}

TEST_F(RemappingEffects, FrostedGlassOnlyMovesColoursAround) {
    cDIBSection::seedRandom(3);
    const cDIBSection src = noisePicture(10, 10, 22);
    cDIBSection weak = src;
    weak.effectFrostglas(1);  // r = round(37 / 300) = 0: nothing moves
    EXPECT_TRUE(sameImage(src, weak));
    cDIBSection strong = src;
    strong.effectFrostglas(3);
    EXPECT_FALSE(sameImage(src, strong));
    std::set<std::tuple<int, int, int>> colours;
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 10; ++x) {
            const Bgr c = pixelAt(src, x, y);
            colours.insert({c.b, c.g, c.r});
        }
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 10; ++x) {
            const Bgr c = pixelAt(strong, x, y);
            EXPECT_TRUE(colours.count({c.b, c.g, c.r})) << "new colour at " << x << ", " << y;
        }
}

TEST_F(MixEffects, AlphaBlendingMixesWithTheSecondPictureAndRoundsHalfToEven) {
    struct Case {
        int alpha, a, b, expected;
    } cases[] = {
        {0, 100, 200, 150},  // 0 is taken as 50
        {100, 100, 200, 100}, {150, 100, 200, 100}, {25, 100, 200, 175}, {50, 1, 2, 2},  // 1.5 -> 2
        {50, 3, 2, 2},                                                                   // 2.5 -> 2
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.alpha << " " << c.a << " " << c.b);
        cDIBSection dib = greyRows({{c.a}});
        dib.effectAlphaBlending(c.alpha, greyRows({{c.b}}).Picture());
        EXPECT_EQ(grey(dib, 0, 0), c.expected);
    }
}

TEST_F(MixEffects, NoiseRemovalReplacesPixelsThatStandOut) {
    auto picture = [] { return spot(7, 3, 200, 100); };
    // Method 1: a pixel stays when every channel is within `low` of its
    // neighbours' mean (or at least `high` away). The spot and its eight
    // neighbours (mean 112.5 -> 112) are not.
    cDIBSection one = picture();
    one.EffectReduceNoise(4, 5, 250, 1, false);
    EXPECT_EQ(grey(one, 3, 3), 100);
    EXPECT_EQ(grey(one, 2, 2), 112);
    EXPECT_EQ(grey(one, 4, 4), 112);
    EXPECT_EQ(grey(one, 1, 1), 100);
    cDIBSection marked = picture();
    marked.EffectReduceNoise(4, 5, 250, 1, true);
    EXPECT_EQ(bufferPixel(marked, 3, 3), (Bgr{0, 255, 0}));
    EXPECT_EQ(bufferPixel(marked, 2, 4), (Bgr{0, 255, 0}));
    EXPECT_EQ(bufferPixel(marked, 1, 1), (Bgr{100, 100, 100}));
    cDIBSection two = picture();
    two.EffectReduceNoise(8, 5, 250, 2, false);
    EXPECT_TRUE(sameImage(one, two));
    // Methods 3 and 4 count differing neighbours: only the spot has more than 4.
    for (int method : {3, 4}) {
        cDIBSection dib = picture();
        dib.EffectReduceNoise(4, 5, 250, method, false);
        EXPECT_TRUE(sameImage(spot(7, 3, 100, 100), dib)) << "method " << method;
    }
    cDIBSection other = picture();
    other.EffectReduceNoise(4, 5, 250, 5, false);
    EXPECT_TRUE(sameImage(picture(), other));
}

}  // namespace
}  // namespace brindle::test
