// The smooth reduction: averages that can be worked out by hand, fractional
// edge weights, and the centre pixel where an axis is not made smaller.
#include "image/reduce.h"

#include <gtest/gtest.h>

#include "image_compare.h"

namespace brindle::test {
namespace {

Bgr grey(int v) { return {v, v, v}; }

TEST(SmoothReduction, OnePixelPatternsBecomeTheirAverageGrey) {
    const cDIBSection checker =
        makeDib(16, 16, [](int x, int y) { return grey((x + y) % 2 ? 255 : 0); });
    const cDIBSection lines = makeDib(16, 16, [](int, int y) { return grey(y % 2 ? 255 : 0); });
    for (const cDIBSection* source : {&checker, &lines}) {
        cDIBSection small;
        ASSERT_TRUE(smoothResize(*source, small, 4, 4));
        // Eight of the sixteen pixels under each target are white:
        // 255 x 8 / 16 = 127.5, which rounds up.
        EXPECT_TRUE(sameImage(makeDib(4, 4, [](int, int) { return grey(128); }), small));
    }
    // Sampling one pixel per target would have given one of the two.
    cDIBSection sampled;
    ASSERT_TRUE(sampled.Create(4, 4));
    checker.StretchPicture(sampled.hdc(), 0, 0, 4, 4, 0, 0, 16, 16);
    EXPECT_NE(pixelAt(sampled, 0, 0), grey(128));
}

TEST(SmoothReduction, EdgesGetTheWeightOfTheirCoveredPart) {
    // Eight pixels to three: each target covers 8/3 source pixels. Target 1
    // covers a third of pixel 2, pixels 3 and 4, and a third of pixel 5;
    // only pixel 5 is white: 255 x (1/3) / (8/3) = 31.875.
    const cDIBSection edge = makeDib(8, 1, [](int x, int) { return grey(x >= 5 ? 255 : 0); });
    cDIBSection small;
    ASSERT_TRUE(smoothResize(edge, small, 3, 1));
    EXPECT_TRUE(sameImage(makeDib({{grey(0), grey(32), grey(255)}}), small));
    // Nine to three with the edge inside the middle third: two of three white.
    const cDIBSection third = makeDib(9, 1, [](int x, int) { return grey(x >= 4 ? 255 : 0); });
    ASSERT_TRUE(smoothResize(third, small, 3, 1));
    EXPECT_TRUE(sameImage(makeDib({{grey(0), grey(170), grey(255)}}), small));
    // The same down the rows, channel by channel.
    const cDIBSection column =
        makeDib(1, 8, [](int, int y) { return y >= 5 ? Bgr{255, 80, 0} : Bgr{0, 0, 0}; });
    ASSERT_TRUE(smoothResize(column, small, 1, 3));
    EXPECT_TRUE(sameImage(makeDib({{Bgr{0, 0, 0}}, {Bgr{32, 10, 0}}, {Bgr{255, 80, 0}}}), small));
}

TEST(SmoothReduction, AxesNotMadeSmallerTakeTheCentrePixel) {
    const cDIBSection dib = noisePicture(12, 5, 3);
    for (auto [w, h] : {std::pair{12, 5}, std::pair{24, 10}}) {
        SCOPED_TRACE(testing::Message() << w << "x" << h);
        cDIBSection stretched, smooth;
        ASSERT_TRUE(stretched.Create(w, h));
        dib.StretchPicture(stretched.hdc(), 0, 0, w, h, 0, 0, 12, 5);
        ASSERT_TRUE(smoothResize(dib, smooth, w, h));
        EXPECT_TRUE(sameImage(stretched, smooth));
    }
    // Narrower but taller: columns averaged in pairs (0 and 80, 160 and 240), rows doubled.
    const cDIBSection pairs = makeDib(4, 1, [](int x, int) { return grey(x * 80); });
    cDIBSection out;
    ASSERT_TRUE(smoothResize(pairs, out, 2, 2));
    EXPECT_TRUE(sameImage(makeDib({{grey(40), grey(200)}, {grey(40), grey(200)}}), out));
}

TEST(SmoothReduction, ExtremeFactorsStillAverage) {
    // 3000 columns into one: half black, half white.
    const cDIBSection wide = makeDib(3000, 2, [](int x, int) { return grey(x < 1500 ? 0 : 255); });
    cDIBSection one;
    ASSERT_TRUE(smoothResize(wide, one, 1, 1));
    EXPECT_TRUE(sameImage(makeDib({{grey(128)}}), one, 1));
}

TEST(SmoothReduction, TargetsAreClippedAndPlacedInsideTheDestination) {
    const cDIBSection src = makeDib(4, 4, [](int, int) { return grey(200); });
    cDIBSection dst = makeDib(3, 3, [](int, int) { return grey(7); });
    ASSERT_TRUE(smoothStretch(dst.hdc(), 1, 1, 2, 2, src.hdc(), 0, 0, 4, 4));
    EXPECT_TRUE(sameImage(makeDib({{grey(7), grey(7), grey(7)},
                                   {grey(7), grey(200), grey(200)},
                                   {grey(7), grey(200), grey(200)}}),
                          dst));
    ASSERT_TRUE(smoothStretch(dst.hdc(), -1, -1, 2, 2, src.hdc(), 0, 0, 4, 4));
    EXPECT_EQ(pixelAt(dst, 0, 0), grey(200));
    EXPECT_EQ(pixelAt(dst, 1, 0), grey(7));
    EXPECT_FALSE(smoothStretch(dst.hdc(), 0, 0, 2, 2, dst.hdc(), 0, 0, 3, 3));
}

}  // namespace
}  // namespace brindle::test
