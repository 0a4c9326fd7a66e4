#include "panorama/pano_run.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "album/file_io.h"
#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "panorama/pano_project.h"
#include "panorama/pano_import.h"
#include "panorama/refine.h"
#include "support/temp_home.h"
#include "synthetic_pictures.h"

namespace brindle::panorama {
namespace {

::testing::AssertionResult samePixels(const cDIBSection& want, const cDIBSection& got) {
    if (want.Width() != got.Width() || want.Height() != got.Height())
        return ::testing::AssertionFailure() << "expected " << want.Width() << "x" << want.Height()
                                             << " but got " << got.Width() << "x" << got.Height();
    for (int y = 0; y < want.Height(); ++y)
        for (int x = 0; x < want.Width(); ++x) {
            const std::uint8_t* a = test::pixelBytes(want, x, y);
            const std::uint8_t* b = test::pixelBytes(got, x, y);
            if (a[0] != b[0] || a[1] != b[1] || a[2] != b[2])
                return ::testing::AssertionFailure()
                       << "first difference at " << x << "," << y << ": expected " << int(a[0]) << ","
                       << int(a[1]) << "," << int(a[2]) << " but got " << int(b[0]) << "," << int(b[1])
                       << "," << int(b[2]);
        }
    return ::testing::AssertionSuccess();
}

PanoBild record(int x, int y, const std::string& path = {}) {
    PanoBild r;
    r.xVersatz = x;
    r.yVersatz = y;
    r.datei = path;
    return r;
}

class PanoRun : public test::TempHomeTest {
protected:
    // Five 400 x 300 shots of one landscape, written as BMP, at known places.
    const std::vector<int> xs{0, 330, 680, 1010, 1350};
    const std::vector<int> ys{10, 4, 16, 8, 12};
    cDIBSection scene = test::landscape(1800, 340);

    std::vector<std::string> writeTiles() {
        std::vector<std::string> paths;
        for (std::size_t i = 0; i < xs.size(); ++i) {
            paths.push_back(path("shot" + std::to_string(i) + ".bmp"));
            EXPECT_TRUE(SaveDIBFile(test::cut(scene, xs[i], ys[i], 400, 300), paths.back(), 0));
        }
        return paths;
    }
};

TEST_F(PanoRun, LayoutFromRecordsScalesAndBalances) {
    const std::vector<PanoBild> records{record(100, 3), record(90, -5), record(0, 0)};
    PanoLayout l = layoutFromRecords(records, false);
    EXPECT_EQ(l.xStep, (std::vector<int>{100, 90, 0}));
    EXPECT_EQ(l.yStep, (std::vector<int>{3, -5, 0}));
    // The mean of 3, -5 and 0 is -2/3, rounded -1, taken out of each step.
    l = layoutFromRecords(records, true);
    EXPECT_EQ(l.yStep, (std::vector<int>{4, -4, 1}));
    std::vector<PanoBild> balanced = records;
    balanceYOffsets(balanced);
    EXPECT_EQ(balanced[1].yKorrektur, 4);  // the step into picture 1
    EXPECT_EQ(balanced[2].yKorrektur, -4);
    EXPECT_EQ(balanced[0].yKorrektur, 1);
    EXPECT_EQ(balanced[0].yMittel, -1);
    // Halves go to the even neighbour: 7.5 to 8, -12.5 to -12.
    l = layoutFromRecords(records, false, 2.5);
    EXPECT_EQ(l.xStep, (std::vector<int>{250, 225, 0}));
    EXPECT_EQ(l.yStep, (std::vector<int>{8, -12, 0}));
}

TEST_F(PanoRun, RefineFindsTheStepOnTheFullSizePictures) {
    const cDIBSection left = test::cut(scene, 200, 10, 300, 200);
    const cDIBSection right = test::cut(scene, 337, 13, 300, 200);
    EXPECT_EQ(refineStep(left, right, {135, 1}, 3), (SeamStep{137, 3}));
    EXPECT_EQ(refineStep(left, right, {139, 5}, 3), (SeamStep{137, 3}));
    EXPECT_EQ(refineStep(left, right, {137, 3}, 0), (SeamStep{137, 3}));
    // Out of reach: the best within the radius, never further.
    const SeamStep far = refineStep(left, right, {120, 3}, 2);
    EXPECT_LE(std::abs(far.x - 120), 2);
}

TEST_F(PanoRun, FiveShotsBecomeTheSceneAtFullSizeWithTheProjectWritten) {
    const std::vector<std::string> paths = writeTiles();
    PanoRunOptions options;
    options.workHeight = 150;  // the search sees half the size
    options.compose.crop = true;
    options.compose.smoothWidth = 30;
    std::vector<std::string> statuses;
    int lastProgress = -1;
    PanoCallbacks callbacks;
    callbacks.status = [&](const std::string& s) { statuses.push_back(s); };
    callbacks.progress = [&](int p) {
        EXPECT_GE(p, lastProgress);
        lastProgress = p;
    };
    const std::string out = path("pano.jpg");
    const PanoRunResult r = makePanorama(paths, out, options, home(), callbacks);
    ASSERT_TRUE(r.ok) << r.message;
    // Cropped to the rows every shot covers: rows 16 .. 303 of the scene.
    EXPECT_TRUE(samePixels(test::cut(scene, 0, 16, 1750, 288), r.picture));
    int w = 0, h = 0;
    std::string bytes;
    ASSERT_TRUE(readWholeFile(out, bytes, 1 << 26).ok);
    ASSERT_TRUE(readJpegSize(bytes, w, h));
    EXPECT_EQ(w, 1750);
    EXPECT_EQ(h, 288);
    EXPECT_EQ(lastProgress, 1000);
    ASSERT_FALSE(statuses.empty());
    EXPECT_EQ(statuses.back(), "Saving: " + out);

    std::vector<PanoBild> saved;
    ASSERT_TRUE(readPanoProject(home(), saved).ok);
    ASSERT_EQ(saved.size(), 5u);
    for (std::size_t i = 0; i < 4; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(saved[i].datei, paths[i]);
        EXPECT_NE(saved[i].gematcht, 0);
        EXPECT_LE(std::abs(2 * saved[i].xVersatz - (xs[i + 1] - xs[i])), 2);
    }
    EXPECT_TRUE(std::filesystem::exists(path("PanoTemp/BSPanoshot4.jpg")));

    // Drawn again from the records, the same picture comes out.
    cDIBSection again;
    ASSERT_TRUE(composeFromRecords(saved, options, home(), again).ok);
    EXPECT_TRUE(samePixels(r.picture, again));
}

TEST_F(PanoRun, PicturesOfDifferentSizesStopTheRunWithTheMessage) {
    ASSERT_TRUE(SaveDIBFile(test::cut(scene, 0, 0, 400, 300), path("a.bmp"), 0));
    ASSERT_TRUE(SaveDIBFile(test::cut(scene, 300, 0, 401, 300), path("b.bmp"), 0));
    const PanoRunResult r = makePanorama({path("a.bmp"), path("b.bmp")}, path("out.jpg"), {}, home(), {});
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.message,
              "Brindlesee panorama check that not all images have the same size. Rezise the images or "
              "use other images with the same size.");
    EXPECT_FALSE(std::filesystem::exists(path("out.jpg")));
}

TEST_F(PanoRun, CancelStopsBeforeAnythingIsSaved) {
    const std::vector<std::string> paths = writeTiles();
    PanoCallbacks callbacks;
    int asked = 0;
    callbacks.cancelled = [&] { return ++asked > 6; };
    const PanoRunResult r = makePanorama(paths, path("out.jpg"), {}, home(), callbacks);
    EXPECT_FALSE(r.ok);
    EXPECT_TRUE(r.cancelled);
    EXPECT_FALSE(std::filesystem::exists(path("out.jpg")));
}

}  // namespace
}  // namespace brindle::panorama
