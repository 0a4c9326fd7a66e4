// Frames and the effects that change a picture's size or layout.
#include <gtest/gtest.h>

#include "image/dib_section.h"
#include "image_compare.h"
#include "support/temp_home.h"

namespace brindle::test {
namespace {

// Every test runs in its own temporary program directory.
class Frames : public TempHomeTest {};
class Geometry : public TempHomeTest {};

cDIBSection flat(int w, int h, int v) {
    return makeDib(w, h, [v](int, int) { return Bgr{v, v, v}; });
}
// Blue holds x, green y (from the top), red 50.
cDIBSection coordinates(int w, int h) {
    return makeDib(w, h, [](int x, int y) { return Bgr{x, y, 50}; });
}

void expectGreyRows(const cDIBSection& dib, const std::vector<std::vector<int>>& bufferRows) {
    for (std::size_t row = 0; row < bufferRows.size(); ++row)
        for (std::size_t x = 0; x < bufferRows[row].size(); ++x) {
            const int v = bufferRows[row][x];
            EXPECT_EQ(bufferPixel(dib, static_cast<int>(x), static_cast<int>(row)), (Bgr{v, v, v}))
                << "x " << x << " buffer row " << row;
        }
}

TEST_F(Frames, FrameOfThicknessZeroIsTheFrameOfThicknessOne) {
    const cDIBSection noise = noisePicture(12, 9, 31);
    cDIBSection zero = noise, one = noise;
    zero.effectRahmen(60, 40, 0);
    one.effectRahmen(60, 40, 1);
    EXPECT_TRUE(sameImage(one, zero));
    EXPECT_FALSE(sameImage(noise, one));
}

TEST_F(Frames, FrameProfileAtThicknessOne) {
    // 4 x 4, light = shadow = 50 (no scaling), d = 1, r = t = 2. The bottom
    // buffer row takes T0[20] = -7: 0.3; the top row T1[20] = 1: 1.1; the
    // left band 1.1 and the right band 0.3 join along the diagonals.
    cDIBSection bright = flat(4, 4, 100);
    bright.effectRahmen(50, 50, 1);
    expectGreyRows(
        bright, {{30, 30, 30, 30}, {110, 100, 100, 30}, {110, 100, 100, 30}, {110, 110, 110, 30}});
    // Light 100 doubles the light side (1.2), shadow 0 flattens the dark one
    // (factor 1). Dark channels are raised to 75 before scaling; a frame row
    // whose factor is exactly 1 still counts as 1.00001 and is raised, a
    // band pixel with factor 1 stays as it was.
    cDIBSection dark = flat(4, 4, 10);
    dark.effectRahmen(100, 0, 1);
    expectGreyRows(dark, {{75, 75, 75, 75}, {90, 10, 10, 10}, {90, 10, 10, 10}, {90, 90, 90, 10}});
}

TEST_F(Frames, ButtonEdgesRampWithTheDistanceFromTheBorder) {
    // 6 x 6, light 6, shadow 1, d = 2: up = 1.5, down = 0.05, r = t = 3.
    cDIBSection dib = flat(6, 6, 100);
    dib.effectButtonize(6, 1, 2);
    expectGreyRows(dib, {
                            {90, 90, 90, 90, 90, 90},
                            {200, 95, 95, 95, 95, 90},
                            {200, 150, 100, 100, 95, 90},
                            {200, 150, 100, 100, 95, 90},
                            {200, 150, 150, 150, 95, 90},
                            {200, 200, 200, 200, 200, 90},
                        });
}

TEST_F(Geometry, FitToKeepsTheAspectRatioAndReducesBySampling) {
    struct Case {
        const char* name;
        int w, h, expectedW, expectedH, pixelOne;  // blue of buffer row 5, pixel 1
    } cases[] = {
        {"smaller both ways: sampling", 50, 30, 50, 20, 2},
        {"taller box: stretch", 50, 50, 50, 20, 3},
        {"wider box, still smaller: stretch", 150, 20, 50, 20, 3},
        {"larger: stretch", 300, 300, 300, 120, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        cDIBSection dib = coordinates(100, 40);
        dib.effectFitTo(c.w, c.h);
        EXPECT_EQ(dib.Width(), c.expectedW);
        EXPECT_EQ(dib.Height(), c.expectedH);
        EXPECT_EQ(bufferPixel(dib, 1, 5).b, c.pixelOne);
    }
    cDIBSection empty;
    empty.effectFitTo(10, 10);
    EXPECT_TRUE(empty.empty());
}

TEST_F(Geometry, ReduceSamplesAtRoundedPositionsAndKeepsBufferRowZero) {
    cDIBSection dib = coordinates(6, 4);
    const cDIBSection original = dib;
    dib.effectVerkleinern(7, 2, 0, 0);
    EXPECT_TRUE(sameImage(original, dib)) << "larger than the picture: nothing";
    dib.effectVerkleinern(3, 2, 0, 0);
    ASSERT_EQ(dib.Width(), 3);
    ASSERT_EQ(dib.Height(), 2);
    for (int x = 0; x < 3; ++x) {
        EXPECT_EQ(bufferPixel(dib, x, 1), bufferPixel(original, 2 * x, 2)) << x;
        EXPECT_EQ(bufferPixel(dib, x, 0), bufferPixel(original, x, 0)) << x;
    }
    cDIBSection margins = coordinates(6, 4);
    margins.effectVerkleinern(3, 2, 1, 2);
    ASSERT_EQ(margins.Width(), 5);
    ASSERT_EQ(margins.Height(), 6);
    EXPECT_EQ(bufferPixel(margins, 1, 3), bufferPixel(original, 0, 2));
    EXPECT_EQ(bufferPixel(margins, 0, 3), (Bgr{}));
    EXPECT_EQ(bufferPixel(margins, 4, 5), (Bgr{}));
}

TEST_F(Geometry, CutStretchAndEnlargeGiveTheStatedSizes) {
    cDIBSection cut = coordinates(5, 6);
    cut.effectCut(1, 2, 0, 1);
    ASSERT_EQ(cut.Width(), 4);
    ASSERT_EQ(cut.Height(), 3);
    EXPECT_EQ(pixelAt(cut, 0, 0), (Bgr{1, 2, 50}));
    EXPECT_EQ(pixelAt(cut, 3, 2), (Bgr{4, 4, 50}));
    cDIBSection tooMuch = coordinates(5, 6);
    tooMuch.effectCut(0, 3, 0, 3);
    EXPECT_EQ(tooMuch.Height(), 6);

    cDIBSection sized = coordinates(4, 3);
    sized.effectGröße(2, 3);
    ASSERT_EQ(sized.Width(), 2);
    EXPECT_EQ(pixelAt(sized, 0, 1), (Bgr{1, 1, 50}));
    EXPECT_EQ(pixelAt(sized, 1, 2), (Bgr{3, 2, 50}));

    cDIBSection larger = coordinates(2, 2);
    larger.effectErweitern(1, 2, 3, 0);
    ASSERT_EQ(larger.Width(), 6);
    ASSERT_EQ(larger.Height(), 4);
    EXPECT_EQ(pixelAt(larger, 1, 2), (Bgr{0, 0, 50}));
    EXPECT_EQ(pixelAt(larger, 2, 3), (Bgr{1, 1, 50}));
    EXPECT_EQ(pixelAt(larger, 0, 0), (Bgr{}));
    EXPECT_EQ(pixelAt(larger, 5, 3), (Bgr{}));
}

TEST_F(Geometry, TilingRepeatsThePicture) {
    cDIBSection tiles = coordinates(2, 3);
    tiles.effectKachelnSelbst(2, 1);
    ASSERT_EQ(tiles.Width(), 6);
    ASSERT_EQ(tiles.Height(), 6);
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 6; ++x) EXPECT_EQ(pixelAt(tiles, x, y), (Bgr{x % 2, y % 3, 50}));
    cDIBSection none = coordinates(2, 3);
    none.effectKachelnSelbst(0, 0);
    EXPECT_EQ(none.Width(), 2);
}

TEST_F(Geometry, MirroredTileFlipsTheFourQuarters) {
    cDIBSection doubled = coordinates(2, 2);
    doubled.effectKachel(0, 0);
    ASSERT_EQ(doubled.Width(), 4);
    ASSERT_EQ(doubled.Height(), 4);
    const cDIBSection expected = makeDib(4, 4, [](int x, int y) {
        return Bgr{x < 2 ? x : 3 - x, y < 2 ? y : 3 - y, 50};
    });
    EXPECT_TRUE(sameImage(expected, doubled));
    cDIBSection kept = coordinates(2, 2);
    kept.effectKachel(0, 1);
    ASSERT_EQ(kept.Width(), 2);
    // Halving takes columns and rows 1 and 3 of the doubled picture.
    EXPECT_TRUE(sameImage(makeDib(2, 2,
                                  [](int x, int y) {
                                      return Bgr{x == 0 ? 1 : 0, y == 0 ? 1 : 0, 50};
                                  }),
                          kept));
    for (auto [method, keep] : {std::pair{1, 0}, std::pair{0, 2}}) {
        cDIBSection same = coordinates(2, 2);
        same.effectKachel(method, keep);
        EXPECT_TRUE(sameImage(coordinates(2, 2), same)) << method << " " << keep;
    }
}

TEST_F(Geometry, QuarterTurnsMovePixelsBothWays) {
    const cDIBSection src = coordinates(3, 2);
    cDIBSection right = src;
    right.effectBildDrehen90(90);
    ASSERT_EQ(right.Width(), 2);
    ASSERT_EQ(right.Height(), 3);
    // Clockwise: new (x, y) = old (y, 1 - x).
    EXPECT_TRUE(sameImage(makeDib(2, 3, [](int x, int y) { return Bgr{y, 1 - x, 50}; }), right));
    cDIBSection left = src;
    left.effectBildDrehen90(-90);
    // Anticlockwise: new (x, y) = old (2 - y, x).
    EXPECT_TRUE(sameImage(makeDib(2, 3, [](int x, int y) { return Bgr{2 - y, x, 50}; }), left));
    cDIBSection target;
    src.effectBildDrehen90power(90, target);
    EXPECT_TRUE(sameImage(right, target));
    cDIBSection back = right;
    back.effectBildDrehen90(-90);
    EXPECT_TRUE(sameImage(src, back));
}

}  // namespace
}  // namespace brindle::test
