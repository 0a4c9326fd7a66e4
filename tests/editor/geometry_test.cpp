#include <gtest/gtest.h>

#include "editor/geometry.h"
#include "printers.h"

namespace brindle::editor {

namespace {

// ---------------------------------------------------------------- grid

struct RasterRow {
    bool use;
    int size;
    double in, out;
};

TEST(Raster, RoundsToTheNearestLineAndTheLowerOnATie) {
    const RasterRow rows[] = {
        {true, 10, 14, 10}, {true, 10, 15, 10}, {true, 10, 16, 20}, {true, 10, 20, 20},
        {true, 10, -4, 0},  {true, 10, -6, -10}, {true, 3, 4, 3},   {true, 3, 5, 6},
        {false, 10, 17, 17}, {true, 0, 17, 17},
    };
    for (const RasterRow& r : rows) {
        SCOPED_TRACE(testing::Message() << "grid " << r.size << (r.use ? " used" : " off") << ", v=" << r.in);
        EXPECT_EQ(RasterX(r.in, {r.use, false, r.size, 99}), r.out);
        EXPECT_EQ(RasterY(r.in, {r.use, false, 99, r.size}), r.out);
    }
}

TEST(Raster, KeyboardStepsAreTheGridSizeWhenUsed) {
    EXPECT_EQ(stepX({true, false, 12, 7}), 12);
    EXPECT_EQ(stepY({true, false, 12, 7}), 7);
    EXPECT_EQ(stepX({false, true, 12, 7}), 1);
    EXPECT_EQ(stepY({true, false, 12, 0}), 1);
}

// ---------------------------------------------------------------- aspect

struct GroesseRow {
    double w, h, ow, oh;
    int mode;
    bool limit;
    double outW, outH, offX, offY;
};

TEST(BerechneGroesse, ModesAndTheKeptOffsetQuirk) {
    const GroesseRow rows[] = {
        {200, 100, 400, 300, 0, false, 133.333, 100, 33.333, -16.667},  // offY subtracts the width
        {200, 100, 300, 400, 0, false, 75, 100, 62.5, 12.5},
        {200, 100, 400, 300, 1, false, 200, 150, 0, -50},
        {200, 100, 400, 300, 2, false, 133.333, 100, 33.333, -16.667},
        {200, 100, 400, 300, 3, false, 200, 150, 0, -50},
        {200, 100, 400, 300, -1, false, 200, 100, 0, -50},
        {200, 100, 0, 300, 1, false, 200, 200, 0, -50},  // a zero side is a ratio of 1
        {200, 100, 300, 0, 2, false, 100, 100, 50, 0},
        {800, 600, 400, 300, 1, true, 400, 300, 200, 100},
    };
    for (const GroesseRow& r : rows) {
        SCOPED_TRACE(testing::Message() << r.w << "x" << r.h << " of " << r.ow << "x" << r.oh << " mode " << r.mode);
        const Groesse g = BerechneGroesse(r.w, r.h, r.ow, r.oh, r.mode, r.limit);
        EXPECT_NEAR(g.width, r.outW, 0.001);
        EXPECT_NEAR(g.height, r.outH, 0.001);
        EXPECT_NEAR(g.offX, r.offX, 0.001);
        EXPECT_NEAR(g.offY, r.offY, 0.001);
    }
}

// ---------------------------------------------------------------- turned pictures

TEST(EckPunkte, FortyFiveDegreesTurnTheCornersAndRoundHalfToEven) {
    const EckPunkte p = calcEckPoints(300, 200, 45, 200, 100);
    const Point expected[] = {{265, 94},  {336, 164}, {406, 235}, {370, 270}, {335, 306},
                              {264, 236}, {194, 165}, {230, 130}, {300, 200}};
    for (int i = 0; i < 9; ++i) {
        SCOPED_TRACE(testing::Message() << "point " << i);
        EXPECT_EQ(p[static_cast<std::size_t>(i)], expected[i]);
    }
    EXPECT_EQ(calcAutoSizeImage(p, 45), (Box{194, 94, 212, 212}));
}

TEST(EckPunkte, AngleZeroIsThePlainBox) {
    const EckPunkte p = calcEckPointsImage({100, 50, 200, 100}, 0, 200, 100);
    EXPECT_EQ(p[0], (Point{100, 50}));
    EXPECT_EQ(p[4], (Point{300, 150}));
    EXPECT_EQ(p[3], (Point{300, 100}));
    EXPECT_EQ(calcAutoSizeImage(p, 0), (Box{100, 50, 200, 100}));
}

struct QuadrantRow {
    int angle;
    Box box;
};

TEST(EckPunkte, EveryQuadrantGivesTheBoundingBox) {
    // A 200 x 100 picture round (300, 200): the box is the same for an angle and its negative twin.
    const QuadrantRow rows[] = {
        {90, {250, 100, 100, 200}},  {-270, {250, 100, 100, 200}}, {135, {194, 94, 212, 212}},
        {-225, {194, 94, 212, 212}}, {180, {200, 150, 200, 100}},  {-180, {200, 150, 200, 100}},
        {270, {250, 100, 100, 200}}, {-90, {250, 100, 100, 200}},  {315, {194, 94, 212, 212}},
        {-45, {194, 94, 212, 212}},  {-1, {199, 148, 202, 104}},
    };
    for (const QuadrantRow& r : rows) {
        SCOPED_TRACE(testing::Message() << "angle " << r.angle);
        EXPECT_EQ(calcAutoSizeImage(calcEckPoints(300, 200, r.angle, 200, 100), r.angle), r.box);
    }
}

TEST(EckPunkte, HandlesOfAFortyFiveDegreePictureSitOnTheTurnedPoints) {
    const Box box{194, 94, 212, 212};
    const auto size = unrotatedSize(box, 45, 1200, 600);
    ASSERT_EQ(size, (std::array<int, 2>{200, 100}));
    const auto h = imageHandles(calcEckPointsImage(box, 45, size[0], size[1]), box);
    const Point expected[] = {{261, 90},  {332, 160}, {402, 231}, {366, 266}, {331, 302},
                              {260, 232}, {190, 161}, {226, 126}, {296, 196}};
    for (int i = 0; i < 9; ++i) {
        SCOPED_TRACE(testing::Message() << "handle " << i);
        EXPECT_EQ(h[static_cast<std::size_t>(i)], expected[i]);
    }
}

TEST(EckPunkte, UnrotatedSizeInvertsTheBoundingBox) {
    EXPECT_EQ(unrotatedSize({250, 100, 100, 200}, 90, 0, 0), (std::array<int, 2>{200, 100}));
    const Box turned = calcAutoSizeImage(calcEckPoints(300, 200, 30, 240, 120), 30);
    EXPECT_EQ(unrotatedSize(turned, 30, 0, 0), (std::array<int, 2>{240, 120}));
    EXPECT_EQ(normaliseAngle(361), 1);
    EXPECT_EQ(normaliseAngle(-360), 0);
    EXPECT_EQ(normaliseAngle(-365), -5);
}

// ---------------------------------------------------------------- handles and drags

TEST(Handles, FrameHandlesSurroundTheFrame) {
    const auto h = frameHandles({100, 50, 200, 80});
    const Point expected[] = {{92, 42},  {196, 42}, {300, 42}, {300, 86}, {300, 130},
                              {196, 130}, {92, 130}, {92, 86},  {196, 86}};
    for (int i = 0; i < 9; ++i) EXPECT_EQ(h[static_cast<std::size_t>(i)], expected[i]) << "handle " << i;
}

struct DragRow {
    int handle, dx, dy;
    Grid grid;
    Box out;
};

TEST(DragBox, RulesOfEveryHandleAndTheMinimumOfTen) {
    const Box start{100, 100, 50, 40};
    const Grid off{};
    const Grid ten{true, false, 10, 10};
    const DragRow rows[] = {
        {0, -5, -6, off, {95, 94, 55, 46}},   {1, -5, -6, off, {100, 94, 50, 46}},
        {2, 5, -6, off, {100, 94, 55, 46}},   {3, 5, 6, off, {100, 100, 55, 40}},
        {4, 5, 6, off, {100, 100, 55, 46}},   {5, 5, 6, off, {100, 100, 50, 46}},
        {6, -5, 6, off, {95, 100, 55, 46}},   {7, -5, 6, off, {95, 100, 55, 40}},
        {8, -20, 5, off, {80, 105, 50, 40}},
        {7, 45, 0, off, {140, 100, 10, 40}},  // width 5 becomes 10, the right edge stays
        {7, 100, 0, off, {140, 100, 10, 40}}, // dragged past the right edge
        {7, 39, 0, off, {139, 100, 11, 40}},  // 11 is allowed
        {7, 40, 0, off, {140, 100, 10, 40}},
        {3, -45, 0, off, {100, 100, 10, 40}},
        {1, 0, 35, off, {100, 130, 50, 10}},
        {5, 0, -29, off, {100, 100, 50, 11}},
        {0, 60, 60, off, {140, 130, 10, 10}},
        {4, 13, -4, ten, {100, 100, 60, 40}},
        {8, 14, 16, ten, {110, 120, 50, 40}},
        {0, 4, 6, ten, {100, 110, 50, 30}},
    };
    for (const DragRow& r : rows) {
        SCOPED_TRACE(testing::Message() << "handle " << r.handle << " by " << r.dx << "," << r.dy
                                        << (r.grid.use ? " on the grid" : ""));
        EXPECT_EQ(dragBox(start, r.handle, r.dx, r.dy, r.grid), r.out);
    }
}

struct DeltaRow {
    int handle, angle, dx, dy;
    double width, height;
};

TEST(PictureDrag, TheMouseIsProjectedOnTheTurnedSides) {
    const DeltaRow rows[] = {
        {4, 0, 10, 0, 10, 0},    {4, 0, 0, 10, 0, 10},  {0, 0, -10, -10, 10, 10}, {0, 0, 10, 0, -10, 0},
        {1, 0, 0, -10, 0, 10},   {3, 0, 10, 10, 10, 0}, {3, 90, 0, 10, 10, 0},    {5, 90, 10, 0, 0, -10},
        {4, 45, 10, 10, 14.142, 0},                     {2, 180, -10, 0, 10, 0},
    };
    for (const DeltaRow& r : rows) {
        SCOPED_TRACE(testing::Message() << "handle " << r.handle << " at " << r.angle << " by " << r.dx << ","
                                        << r.dy);
        const SizeDelta d = pictureDelta(r.handle, r.angle, r.dx, r.dy);
        EXPECT_NEAR(d.width, r.width, 0.001);
        EXPECT_NEAR(d.height, r.height, 0.001);
    }
}

TEST(PictureDrag, TheOppositeCornerStaysAndTheSizeKeepsFive) {
    PictureStart s{{100, 100, 200, 100}, 0, 200, 100, false, 0, 0};
    Grid off{};
    PictureShape bottomRight = dragPicture(s, 4, 20, 10, off);
    EXPECT_EQ(bottomRight.box, (Box{100, 100, 220, 110}));
    EXPECT_EQ(dragPicture(s, 0, 20, 10, off).box, (Box{120, 110, 180, 90}));
    EXPECT_EQ(dragPicture(s, 8, -7, 3, off).box, (Box{93, 103, 200, 100}));
    PictureShape tiny = dragPicture(s, 3, -300, 0, off);
    EXPECT_EQ(tiny.width, 5);
    EXPECT_EQ(tiny.box, (Box{100, 100, 5, 100}));
    s.proportional = true;
    s.originalWidth = 400;
    s.originalHeight = 200;
    EXPECT_EQ(dragPicture(s, 3, 40, 0, off).box, (Box{100, 90, 240, 120}));
    EXPECT_EQ(aspectMode(0), 3);
    EXPECT_EQ(aspectMode(5), 2);
    EXPECT_EQ(aspectMode(7), 1);
}

TEST(PictureDrag, AFortyFiveDegreeCornerGrowsAlongItsSide) {
    const PictureStart s{{194, 94, 212, 212}, 45, 200, 100, false, 0, 0};
    const PictureShape shape = dragPicture(s, 4, 10, 10, Grid{});
    EXPECT_EQ(shape.width, 214);
    EXPECT_EQ(shape.height, 100);
    EXPECT_EQ(shape.box, (Box{194, 94, 222, 222}));
}

// ---------------------------------------------------------------- rubber band

struct BandRow {
    Box band;
    bool hit;
};

TEST(RubberBand, HitRulePerAxis) {
    const Box element{100, 100, 50, 50};
    const BandRow rows[] = {
        {{90, 90, 20, 20}, true},   {{120, 120, 5, 5}, true},  {{50, 50, 200, 200}, true},
        {{160, 100, 10, 10}, false}, {{150, 150, 0, 0}, true}, {{200, 200, -100, -100}, true},
        {{100, 40, 10, 50}, false},  {{40, 120, 50, 5}, false},
    };
    for (const BandRow& r : rows) {
        SCOPED_TRACE(testing::Message() << r.band.left << "," << r.band.top << " " << r.band.width << "x"
                                        << r.band.height);
        EXPECT_EQ(hitsBand(element, r.band), r.hit);
    }
}

}  // namespace
}  // namespace brindle::editor
