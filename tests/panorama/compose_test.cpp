#include "panorama/compose.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>

#include "image/picture_limits.h"
#include "image_compare.h"
#include "support/temp_home.h"

namespace brindle::panorama {
namespace {

using test::Bgr;
using test::makeDib;
using test::pixelAt;
using test::sameImage;

Bgr scaled(Bgr c, double gain) {
    auto one = [gain](int v) { return static_cast<int>(std::lround(std::min(255.0, v * gain))); };
    return {one(c.b), one(c.g), one(c.r)};
}

// The part of `source` with its top-left corner at (x, y), its levels times `gain`.
cDIBSection tile(const cDIBSection& source, int x, int y, int w, int h, double gain = 1.0) {
    return makeDib(w, h, [&](int c, int r) { return scaled(pixelAt(source, x + c, y + r), gain); });
}

cDIBSection flat(int w, int h, Bgr c) {
    return makeDib(w, h, [c](int, int) { return c; });
}

// A row of tiles cut from one wide picture at known places.
struct TileRow {
    cDIBSection source;
    std::vector<int> x, y;  // of each tile in the source
    int w = 0, h = 0;
    std::vector<cDIBSection> tiles;
    PanoLayout layout;

    TileRow(cDIBSection src, std::vector<int> xs, std::vector<int> ys, int tw, int th,
            const std::vector<double>& gains = {})
        : source(std::move(src)), x(std::move(xs)), y(std::move(ys)), w(tw), h(th) {
        for (std::size_t i = 0; i < x.size(); ++i) {
            tiles.push_back(tile(source, x[i], y[i], w, h, gains.empty() ? 1.0 : gains[i]));
            if (i + 1 < x.size()) {
                layout.xStep.push_back(x[i + 1] - x[i]);
                layout.yStep.push_back(y[i + 1] - y[i]);
            }
        }
    }
    int minY() const { return *std::min_element(y.begin(), y.end()); }
};

ComposeOptions plain(int smooth, bool gain = false) {
    ComposeOptions o;
    o.smoothWidth = smooth;
    o.matchGain = gain;
    return o;
}

// Written from the rules, independently of the library: paint in list
// order, then cross-fade s columns from the left edge of each right tile.
cDIBSection composeByHand(const TileRow& row, int s) {
    const int top = row.minY();
    int height = 0;
    for (int y : row.y) height = std::max(height, y - top + row.h);
    cDIBSection out = flat(row.x.back() + row.w - row.x[0], height, {0, 0, 0});
    for (std::size_t i = 0; i < row.tiles.size(); ++i)
        for (int r = 0; r < row.h; ++r)
            for (int c = 0; c < row.w; ++c)
                test::setPixel(out, row.x[i] - row.x[0] + c, row.y[i] - top + r, pixelAt(row.tiles[i], c, r));
    for (std::size_t i = 0; i + 1 < row.tiles.size(); ++i) {
        const int dx = row.x[i + 1] - row.x[i];
        for (int t = std::max(row.y[i], row.y[i + 1]); t < std::min(row.y[i], row.y[i + 1]) + row.h; ++t) {
            for (int j = 0; j < s; ++j) {
                const Bgr l = pixelAt(row.tiles[i], dx + j, t - row.y[i]);
                const Bgr r = pixelAt(row.tiles[i + 1], j, t - row.y[i + 1]);
                auto mix = [&](int a, int b) {
                    return static_cast<int>(std::nearbyint(static_cast<double>(a * (s - j) + b * j) / s));
                };
                test::setPixel(out, row.x[i + 1] - row.x[0] + j, t - top,
                               {mix(l.b, r.b), mix(l.g, r.g), mix(l.r, r.r)});
            }
        }
    }
    return out;
}

class Compose : public test::TempHomeTest {};

TEST_F(Compose, OnePictureAloneEqualsTheInput) {
    const cDIBSection one = test::noisePicture(37, 23, 5);
    for (bool ring : {false, true}) {
        for (bool gain : {false, true}) {
            SCOPED_TRACE(std::string(ring ? "360" : "open") + (gain ? " with gain" : ""));
            ComposeOptions o = plain(8, gain);
            o.ring360 = ring;
            o.padding = o.crop = true;
            cDIBSection out;
            const ComposeResult r = composePanorama({&one, 1}, PanoLayout{}, o, out);
            ASSERT_TRUE(r.ok) << r.message;
            EXPECT_TRUE(sameImage(one, out));
        }
    }
}

TEST_F(Compose, TilesOfAWidePictureComposeBackToTheirSource) {
    // Equal pixels blend to themselves, so every covered pixel is the source's.
    const TileRow row(test::noisePicture(220, 70, 11), {0, 45, 95, 140}, {10, 13, 7, 12}, 60, 40);
    for (bool gain : {false, true}) {
        SCOPED_TRACE(gain ? "with gain" : "without gain");
        cDIBSection out;
        ASSERT_TRUE(composePanorama(row.tiles, row.layout, plain(6, gain), out).ok);
        ASSERT_EQ(out.Width(), 200);
        ASSERT_EQ(out.Height(), 46);  // 40 rows and a spread of 6
        for (int c = 0; c < 200; ++c) {
            for (int t = 0; t < 46; ++t) {
                bool covered = false;
                for (std::size_t i = 0; i < 4; ++i)
                    covered |= c >= row.x[i] && c < row.x[i] + 60 && t + 7 >= row.y[i] && t + 7 < row.y[i] + 40;
                const Bgr want = covered ? pixelAt(row.source, c, t + 7) : Bgr{0, 0, 0};
                ASSERT_EQ(pixelAt(out, c, t), want) << "at " << c << "," << t;
            }
        }
    }
}

TEST_F(Compose, PaddingTakesTheNearestRowAndCropKeepsTheCommonBand) {
    const TileRow row(test::noisePicture(220, 70, 12), {0, 45, 95, 140}, {10, 13, 7, 12}, 60, 40);
    ComposeOptions o = plain(6);
    o.padding = true;
    cDIBSection padded;
    ASSERT_TRUE(composePanorama(row.tiles, row.layout, o, padded).ok);
    ASSERT_EQ(padded.Width(), 200);
    ASSERT_EQ(padded.Height(), 46);
    for (int c = 0; c < 200; ++c) {
        int first = 1000, end = -1;  // rows of the source that cover column c
        for (std::size_t i = 0; i < 4; ++i)
            if (c >= row.x[i] && c < row.x[i] + 60) {
                first = std::min(first, row.y[i]);
                end = std::max(end, row.y[i] + 40);
            }
        for (int t = 0; t < 46; ++t) {
            const int sourceRow = std::clamp(t + 7, first, end - 1);
            ASSERT_EQ(pixelAt(padded, c, t), pixelAt(row.source, c, sourceRow)) << "at " << c << "," << t;
        }
    }
    o.crop = true;
    cDIBSection cropped;
    ASSERT_TRUE(composePanorama(row.tiles, row.layout, o, cropped).ok);
    // Rows 13 (the lowest top) to 46 (the highest bottom) of the source.
    EXPECT_TRUE(sameImage(tile(row.source, 0, 13, 200, 34), cropped));
    int w = 0, h = 0;
    composedSize(4, 60, 40, row.layout, o, w, h);
    EXPECT_EQ(w, 200);
    EXPECT_EQ(h, 34);
}

TEST_F(Compose, SeamBlendValuesForSmoothFour) {
    EXPECT_EQ(blendByte(100, 201, 1, 4), 125);  // 125.25
    EXPECT_EQ(blendByte(50, 0, 1, 4), 38);      // 37.5 goes to the even 38
    EXPECT_EQ(blendByte(100, 201, 2, 4), 150);  // 150.5 goes to the even 150
    EXPECT_EQ(blendByte(10, 255, 3, 4), 194);   // 193.75
    const std::vector<cDIBSection> pair{flat(10, 3, {100, 50, 10}), flat(10, 3, {201, 0, 255})};
    const PanoLayout layout{{6}, {0}};
    const std::vector<Bgr> band{{100, 50, 10}, {125, 38, 71}, {150, 25, 132}, {176, 12, 194}};
    for (int smooth : {4, 9}) {  // a band wider than the overlap is cut to it
        SCOPED_TRACE(smooth);
        cDIBSection out;
        ASSERT_TRUE(composePanorama(pair, layout, plain(smooth), out).ok);
        ASSERT_EQ(out.Width(), 16);
        ASSERT_EQ(out.Height(), 3);
        for (int t = 0; t < 3; ++t) {
            for (int c = 0; c < 6; ++c) EXPECT_EQ(pixelAt(out, c, t), (Bgr{100, 50, 10}));
            for (int j = 0; j < 4; ++j) EXPECT_EQ(pixelAt(out, 6 + j, t), band[j]) << j;
            for (int c = 10; c < 16; ++c) EXPECT_EQ(pixelAt(out, c, t), (Bgr{201, 0, 255}));
        }
    }
    cDIBSection hard;
    ASSERT_TRUE(composePanorama(pair, layout, plain(0), hard).ok);
    EXPECT_EQ(pixelAt(hard, 5, 1), (Bgr{100, 50, 10}));
    EXPECT_EQ(pixelAt(hard, 6, 1), (Bgr{201, 0, 255}));
}

TEST_F(Compose, A360RowIsOneTurnWideAndItsEndRunsIntoItsStart) {
    // A scene that repeats every 150 columns, photographed in three steps of 50.
    const cDIBSection scene = test::noisePicture(150, 30, 3);
    const cDIBSection wide = makeDib(260, 30, [&](int x, int y) { return pixelAt(scene, x % 150, y); });
    TileRow row(wide, {0, 50, 100}, {0, 0, 0}, 60, 30);
    row.layout.xStep.push_back(50);  // from the last picture back to the first
    row.layout.yStep.push_back(0);
    ComposeOptions o = plain(4);
    o.ring360 = true;
    cDIBSection out;
    ASSERT_TRUE(composePanorama(row.tiles, row.layout, o, out).ok);
    EXPECT_TRUE(sameImage(scene, out));

    const Bgr a{10, 20, 30}, b{110, 120, 130}, c{210, 220, 230};
    const std::vector<cDIBSection> three{flat(60, 5, a), flat(60, 5, b), flat(60, 5, c)};
    ASSERT_TRUE(composePanorama(three, row.layout, o, out).ok);
    ASSERT_EQ(out.Width(), 150);
    auto mix = [](Bgr l, Bgr r, int j) {
        return Bgr{blendByte(l.b, r.b, j, 4), blendByte(l.g, r.g, j, 4), blendByte(l.r, r.r, j, 4)};
    };
    for (int j = 0; j < 4; ++j) {
        EXPECT_EQ(pixelAt(out, j, 2), mix(c, a, j)) << "closing seam, column " << j;
        EXPECT_EQ(pixelAt(out, 50 + j, 2), mix(a, b, j));
        EXPECT_EQ(pixelAt(out, 100 + j, 2), mix(b, c, j));
    }
    EXPECT_EQ(pixelAt(out, 4, 2), a);
    EXPECT_EQ(pixelAt(out, 9, 2), a);  // the first picture lies on top of the last one's end
    EXPECT_EQ(pixelAt(out, 54, 2), b);
    EXPECT_EQ(pixelAt(out, 149, 2), c);
    // The open row of the same pictures ignores the closing step.
    o.ring360 = false;
    ASSERT_TRUE(composePanorama(three, row.layout, o, out).ok);
    EXPECT_EQ(out.Width(), 160);
    EXPECT_EQ(pixelAt(out, 0, 2), a);
    EXPECT_EQ(pixelAt(out, 159, 2), c);
}

// The mean over the rows of column `c` of the green channel.
double columnMean(const cDIBSection& dib, int c, int firstRow, int rows) {
    double sum = 0;
    for (int t = firstRow; t < firstRow + rows; ++t) sum += pixelAt(dib, c, t).g;
    return sum / rows;
}

TEST_F(Compose, GainMatchingTakesTheExposureStepOutOfEverySeam) {
    // Five shots of one scene, every other one 15 % brighter.
    const std::vector<double> gains{1.0, 1.15, 1.0, 1.15, 1.0};
    const TileRow row(test::smoothPicture(420, 60), {0, 80, 160, 240, 320}, {5, 8, 4, 6, 5}, 100, 50, gains);
    for (bool match : {true, false}) {
        SCOPED_TRACE(match ? "matched" : "not matched");
        cDIBSection out;
        ASSERT_TRUE(composePanorama(row.tiles, row.layout, plain(8, match), out).ok);
        for (std::size_t i = 1; i < 5; ++i) {
            SCOPED_TRACE(i);
            const int before = row.x[i] - 1, after = row.x[i] + 8;
            // Rows 8..53 of the source are covered by every tile.
            const double stepOut = columnMean(out, after, 4, 46) - columnMean(out, before, 4, 46);
            const double stepScene = columnMean(row.source, after, 8, 46) - columnMean(row.source, before, 8, 46);
            if (match)
                EXPECT_LT(std::abs(stepOut - stepScene), 1.0);
            else
                EXPECT_GT(std::abs(stepOut - stepScene), 5.0);
        }
    }
}

TEST_F(Compose, WithoutGainMatchingTheResultIsTheRuleByHand) {
    const std::vector<double> gains{1.0, 1.15, 0.9, 1.1};
    const TileRow row(test::smoothPicture(300, 70), {0, 61, 130, 190}, {9, 3, 14, 8}, 90, 50, gains);
    cDIBSection out;
    ASSERT_TRUE(composePanorama(row.tiles, row.layout, plain(12), out).ok);
    EXPECT_TRUE(sameImage(composeByHand(row, 12), out));
    // And matching does change it.
    cDIBSection matched;
    ASSERT_TRUE(composePanorama(row.tiles, row.layout, plain(12, true), matched).ok);
    EXPECT_FALSE(sameImage(out, matched));
}

TEST_F(Compose, A360RowOfThreeExposuresComesOutEven) {
    const std::vector<cDIBSection> three{flat(40, 6, {100, 100, 100}), flat(40, 6, {115, 115, 115}),
                                         flat(40, 6, {132, 132, 132})};
    ComposeOptions o = plain(5, true);
    o.ring360 = true;
    cDIBSection out;
    ASSERT_TRUE(composePanorama(three, {{30, 30, 30}, {0, 0, 0}}, o, out).ok);
    EXPECT_TRUE(sameImage(flat(90, 6, {100, 100, 100}), out));
}

TEST_F(Compose, FaultsAreNamedAndNothingIsAllocated) {
    const std::vector<cDIBSection> pair{flat(10, 10, {1, 2, 3}), flat(10, 10, {1, 2, 3})};
    cDIBSection out;
    ComposeResult r = composePanorama(pair, {{16'000'000}, {0}}, plain(4), out);
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.message, "The panorama would be too large: 16000010 x 10");
    EXPECT_TRUE(out.empty());
    r = composePanorama(pair, {{16'000'000}, {0}}, plain(4), out, Language::German);
    EXPECT_EQ(r.message, "Das Panorama wäre zu groß: 16000010 x 10");
    r = composePanorama(pair, {{0}, {0}}, plain(4), out);
    EXPECT_EQ(r.message, "The offsets do not fit the pictures: a picture does not stand right of its neighbour");
    r = composePanorama(pair, {{}, {}}, plain(4), out);
    EXPECT_EQ(r.message, "The offsets do not fit the pictures: fewer offsets than seams");
    const std::vector<cDIBSection> odd{flat(10, 10, {1, 2, 3}), flat(11, 10, {1, 2, 3})};
    r = composePanorama(odd, {{5}, {0}}, plain(4), out, Language::German);
    EXPECT_EQ(r.message, "Die Bilder des Panoramas sind nicht alle gleich groß.");
    ComposeOptions crop = plain(4);
    crop.crop = true;
    r = composePanorama(pair, {{5}, {10}}, crop, out);
    EXPECT_EQ(r.message, "Cropping leaves no row.");

    // Five 12-megapixel shots with a fifth of overlap fit the limits.
    int w = 0, h = 0;
    composedSize(5, 4000, 3000, {{3200, 3200, 3200, 3200}, {4, -3, 2, 1}}, plain(40), w, h);
    EXPECT_EQ(w, 16800);
    EXPECT_EQ(h, 3004);  // offsets 0, 4, 1, 3, 4
    EXPECT_LE(static_cast<long long>(w) * h, kMaxPicturePixels);
}

TEST_F(Compose, TheTickCanStopTheWork) {
    const std::vector<cDIBSection> pair{flat(10, 10, {1, 2, 3}), flat(10, 10, {1, 2, 3})};
    cDIBSection out;
    std::vector<int> seen;
    ComposeResult r = composePanorama(pair, {{5}, {0}}, plain(4), out, Language::English,
                                      [&](int done, int total) {
                                          seen.push_back(done * 10 + total);
                                          return done < 2;
                                      });
    EXPECT_FALSE(r.ok);
    EXPECT_TRUE(r.cancelled);
    EXPECT_TRUE(out.empty());
    EXPECT_EQ(seen, (std::vector<int>{14, 24}));
    seen.clear();
    r = composePanorama(pair, {{5}, {0}}, plain(4), out, Language::English, [&](int done, int total) {
        seen.push_back(done * 10 + total);
        return true;
    });
    EXPECT_TRUE(r.ok);
    EXPECT_EQ(seen, (std::vector<int>{14, 24, 34, 44}));
}

}  // namespace
}  // namespace brindle::panorama
