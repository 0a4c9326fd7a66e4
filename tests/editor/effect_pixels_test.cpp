// The pixel work of the animations against values worked out by hand and
// against what the HTML album's runtime (bseffects.js) computes for the
// same parameters.
#include <gtest/gtest.h>

#include <QImage>

#include "editor/effect_pixels.h"
#include "support/temp_home.h"

using namespace brindle::editor::effects;

namespace {

class EffectPixels : public brindle::test::TempHomeTest {};

// Every row one flat colour: R = 10 + 5y, G = 100, B = 200 - 4y.
QImage stripedRows(int w, int h) {
    QImage img(w, h, QImage::Format_RGB32);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) img.setPixel(x, y, qRgb(10 + 5 * y, 100, 200 - 4 * y));
    return img;
}

::testing::AssertionResult pixelIs(const QImage& img, int x, int y, int r, int g, int b) {
    const QRgb c = img.pixel(x, y);
    if (qRed(c) == r && qGreen(c) == g && qBlue(c) == b) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "pixel (" << x << ", " << y << "): expected " << r << "," << g << "," << b
                                         << " but got " << qRed(c) << "," << qGreen(c) << "," << qBlue(c);
}

}  // namespace

TEST_F(EffectPixels, SpecTokensAndTheInnerBoxReadAsTheAlbumDoes) {
    const auto t = specTokens("Lake,3,50,0,0,0");
    ASSERT_GE(t.size(), 6u);
    EXPECT_EQ(t[0], "Lake");
    EXPECT_EQ(t[2], "50");
    EXPECT_EQ(specTokens("")[0], "None");
    EXPECT_EQ(specTokens("AnyGif,")[0], "AnyGif");
    EXPECT_EQ(tokenNumber(" 7 ", 0), 7);
    EXPECT_EQ(tokenNumber("None", 3), 3);
    const Inner framed = innerBox(300, 200, 6);
    EXPECT_EQ(framed.x, 6);
    EXPECT_EQ(framed.w, 288);
    EXPECT_EQ(framed.h, 188);
    EXPECT_EQ(innerBox(10, 10, 50).x, 4);  // at most half the box less one
    EXPECT_EQ(innerBox(1, 1, 3).w, 1);     // a box too small for a frame has none
}

TEST_F(EffectPixels, BoxedPictureWearsItsFrameColourAround) {
    QImage green(8, 8, QImage::Format_RGB32);
    green.fill(qRgb(30, 160, 40));
    const QImage boxed = boxedPicture(green, QSize(40, 30), 5, 0x0000FF, false, 0);  // 0x00BBGGRR: red
    ASSERT_EQ(boxed.size(), QSize(40, 30));
    EXPECT_TRUE(pixelIs(boxed, 0, 0, 255, 0, 0));
    EXPECT_TRUE(pixelIs(boxed, 4, 15, 255, 0, 0));
    EXPECT_TRUE(pixelIs(boxed, 20, 15, 30, 160, 40));
    EXPECT_TRUE(pixelIs(boxed, 34, 24, 30, 160, 40));  // the inside is 30 x 20 from (5, 5)
    EXPECT_TRUE(pixelIs(boxed, 35, 24, 255, 0, 0));
    EXPECT_TRUE(pixelIs(boxed, 34, 25, 255, 0, 0));
}

TEST_F(EffectPixels, LakeRowsMirrorTheRowsAboveTheWaterLine) {
    // Water line at 20 of 40 rows, depth 20. At phase 0:
    // d = 0: wobble sin(0) = 0, source row 20 - 1 - 0 = 19, no shift.
    // d = 1: k = 0.05, wobble = sin(0.42 x 0.975) x 1.125 = 0.4479, row round(18.448) = 18.
    // d = 3: wobble = sin(1.26 x 0.925) x 1.375 = 1.2636, row round(17.264) = 17.
    EXPECT_EQ(lakeRow(0, 20, 20, 0, 0).source, 19);
    EXPECT_EQ(lakeRow(0, 20, 20, 0, 0).shift, 0);
    EXPECT_EQ(lakeRow(1, 20, 20, 0, 0).source, 18);
    EXPECT_NEAR(lakeRow(1, 20, 20, 0, 0).shift, 0.2189, 1e-4);  // sin(0.21) x 3 x 0.35
    EXPECT_EQ(lakeRow(3, 20, 20, 0, 0).source, 17);
    // Phase 1, d = 5: k = 0.25, wobble = sin(2.1 x 0.875 - 1.3) x 1.625 = 0.8322 -> row round(14.83) = 15;
    // shift = sin(1.05 + 1) x 3 x 0.55 = 1.464.
    EXPECT_EQ(lakeRow(5, 20, 20, 0, 1.0).source, 15);
    EXPECT_NEAR(lakeRow(5, 20, 20, 0, 1.0).shift, 1.4641, 1e-4);
    // Rows never come from below the line or above the box.
    EXPECT_EQ(lakeRow(19, 20, 20, 0, 0).source, 0);
    EXPECT_EQ(lakePhase(1000, 3), 3.6);  // one second at speed 3: (1 + 3) x 0.9
}

TEST_F(EffectPixels, LakeWaterDarkensTheReflectionWithDepth) {
    const QImage boxed = stripedRows(20, 40);
    QImage out;
    renderLake(out, boxed, innerBox(20, 40, 0), 0, 3);
    ASSERT_EQ(out.size(), boxed.size());
    // Above the line the picture stands as it is.
    EXPECT_TRUE(pixelIs(out, 10, 5, 35, 100, 180));
    // d = 1: row 18 (100, 100, 128) under the water colour at t = 0.075:
    // alpha 0.16 + 0.34 x 0.075 = 0.1855, colour (17.25, 57.6, 88.7)
    // -> 100 x 0.8145 + 17.25 x 0.1855 = 84.65 -> 85; 92.135 -> 92; 120.71 -> 121.
    EXPECT_TRUE(pixelIs(out, 10, 21, 85, 92, 121));
    // d = 0: row 19 at alpha 0.1685 gives (90, 93, 118); the line's white at 0.18 on top:
    // 90 x 0.82 + 45.9 = 119.7 -> 120; 122.16 -> 122; 142.66 -> 143.
    EXPECT_TRUE(pixelIs(out, 10, 20, 120, 122, 143));
    // d = 2: row 18 at alpha 0.2025 gives (83, 91, 120); a glint of
    // sin(1.1)^12 x 0.09 x 0.9 = 0.02033 -> 86.5 -> 86 (86.497), 94, 123.
    EXPECT_TRUE(pixelIs(out, 10, 22, 86, 94, 123));
}

TEST_F(EffectPixels, RainAndSnowUseTheRuntimesDropsAndSteps) {
    // The runtime's first three flakes for speed 2 (bseffects.js, seed 12345).
    const std::vector<Drop> drops = makeDrops(3, true, 2);
    ASSERT_EQ(drops.size(), 3u);
    EXPECT_NEAR(drops[0].size, 0.6551540487702722, 1e-12);
    EXPECT_NEAR(drops[0].x, 0.30481433882602227, 1e-12);
    EXPECT_NEAR(drops[0].y, 0.6324834826553629, 1e-12);
    EXPECT_NEAR(drops[0].v, 31.17194364851897, 1e-9);  // (14 + 18) x (0.45 + 0.8 x size)
    EXPECT_NEAR(drops[2].sway, 2.1220938928652298, 1e-12);
    // A flake's step: where the runtime draws it at 0 and 1 second in a 300 x 200 box framed by 6.
    const Inner r = innerBox(300, 200, 6);
    const QPointF at0 = flakeAt(drops[0], 0, r), at1 = flakeAt(drops[0], 1, r);
    EXPECT_NEAR(at0.x(), 93.60717776336742, 1e-9);
    EXPECT_NEAR(at0.y(), 125.32626618856523, 1e-9);
    EXPECT_NEAR(at1.x(), 99.10240415915246, 1e-9);
    EXPECT_NEAR(at1.y(), 156.4982098370842, 1e-9);
    // Past the bottom it comes in again at the top.
    EXPECT_NEAR(flakeAt(drops[0], 2.5, r).y(), 12.090663163551817, 1e-9);
    EXPECT_NEAR(flakeAt(drops[2], 30, r).x(), 238.89866758938592, 1e-9);
    // Counts as the album writes `anzahl`: frame token 2 x area / 1000 / (1 snow, 11 rain).
    EXPECT_EQ(appletAnzahl("6,50,55,0,None,1,", "Rain", 200, 100), 100);
    EXPECT_EQ(appletAnzahl("6,50,55,0,None,1,", "Snow", 200, 100), 1100);
    EXPECT_EQ(appletAnzahl("", "Rain", 200, 100), 0);
    EXPECT_EQ(dropCount(720, true, r), 720);
    EXPECT_EQ(dropCount(0, true, r), 135);   // 288 x 188 / 400 = 135.36
    EXPECT_EQ(dropCount(0, false, r), 217);  // 288 x 188 / 250 = 216.58
    EXPECT_EQ(dropCount(99999, false, r), 5000);
}

TEST_F(EffectPixels, PanoStripAndUnderwaterMoveByTheirParameters) {
    EXPECT_EQ(panoVelocity(5, 2), 40);   // 2 pixels per 50 ms
    EXPECT_EQ(panoVelocity(0, 0), 100);  // at least 10 ms, at least 1 pixel
    EXPECT_EQ(panoOffset(40, 2500, 300), 100);
    EXPECT_EQ(panoOffset(40, 10000, 300), 100);  // round and round
    const Underwater u{3, 5, 4, 4};              // wave 40 pixels, period 5 x 3 x 40 = 600 ms
    EXPECT_EQ(underwaterShift(10, 0, u), 4);     // 4 x sin(2 pi x 10 / 40)
    EXPECT_EQ(underwaterShift(10, 150, u), 0);   // a quarter period later: 4 x sin(pi)
    EXPECT_EQ(underwaterShift(0, 150, u), 4);
    EXPECT_EQ(underwaterShift(30, 0, u), -4);
    QImage columns(20, 20, QImage::Format_RGB32);
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 20; ++x) columns.setPixel(x, y, qRgb(x * 10, y, 0));
    QImage out;
    renderUnderwater(out, columns, innerBox(20, 20, 0), 0, u);
    EXPECT_TRUE(pixelIs(out, 10, 10, 60, 10, 0));  // row 10 moved 4 to the right
    EXPECT_TRUE(pixelIs(out, 2, 10, 0, 10, 0));    // the edge column fills the gap
    EXPECT_TRUE(pixelIs(out, 10, 0, 100, 0, 0));   // row 0 does not move at ms 0
}
