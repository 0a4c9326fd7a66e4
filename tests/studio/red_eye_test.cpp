// Red-eye removal: the pixel rules with hand-computed values, the spiral
// walk step by step, the click slots, selection thresholds and the CLI.
#include "studio/red_eye.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <utility>
#include <vector>

#include "image/file_stamp.h"
#include "image/picture_io.h"
#include "support/temp_home.h"
#include "../shell/cli_run.h"

using namespace brindle;
using namespace brindle::studio;

namespace {

cDIBSection filled(int w, int h, Rgb c) {
    cDIBSection dib;
    EXPECT_TRUE(dib.Create(w, h));
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) setPixel(dib, x, y, c);
    return dib;
}

::testing::AssertionResult sameColour(const Rgb& got, const Rgb& want) {
    if (got == want) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "expected (" << want.r << "," << want.g << "," << want.b
                                         << ") but got (" << got.r << "," << got.g << "," << got.b << ")";
}

// A face: skin, two eye whites with red pupils of radius 5, a mouth.
constexpr Rgb kSkin{224, 172, 140};
constexpr Rgb kPinkSkin{230, 150, 130};
constexpr Rgb kWhite{235, 235, 230};
constexpr Rgb kPupil{190, 40, 45};
constexpr Rgb kDullPupil{120, 60, 70};
constexpr int kEyeY = 40, kLeftEyeX = 35, kRightEyeX = 85;

bool inPupil(int x, int y, int cx) { return (x - cx) * (x - cx) + (y - kEyeY) * (y - kEyeY) <= 25; }
bool inWhite(int x, int y, int cx) { return std::abs(x - cx) <= 12 && std::abs(y - kEyeY) <= 7; }

cDIBSection face() {
    cDIBSection dib = filled(120, 90, kSkin);
    for (int y = 0; y < 90; ++y)
        for (int x = 0; x < 120; ++x) {
            if (x < 60 && y > 60) setPixel(dib, x, y, kPinkSkin);  // a pink cheek
            for (int cx : {kLeftEyeX, kRightEyeX}) {
                if (inWhite(x, y, cx)) setPixel(dib, x, y, kWhite);
                if (inPupil(x, y, cx)) setPixel(dib, x, y, cx == kLeftEyeX ? kPupil : kDullPupil);
            }
        }
    return dib;
}

}  // namespace

TEST(RedEyePixel, ClickTestAndCorrectionFollowTheSlider) {
    // s = (t - 9) / 20 + 1 as a floating-point division.
    EXPECT_DOUBLE_EQ(sensitivityDivisor(9), 1.0);
    EXPECT_DOUBLE_EQ(sensitivityDivisor(29), 2.0);
    EXPECT_DOUBLE_EQ(sensitivityDivisor(10), 1.05);
    EXPECT_DOUBLE_EQ(sensitivityDivisor(0), 0.55);

    const Rgb c{100, 50, 50};
    EXPECT_FALSE(isEyeRed(c, 9));  // 100 is not less than 100
    EXPECT_TRUE(sameColour(correctEyeRed(c, 9), c));
    EXPECT_TRUE(isEyeRed(c, 29));  // 50 < 100
    EXPECT_TRUE(sameColour(correctEyeRed(c, 29), {50, 50, 50}));
    // t = 10: 100 / 1.05 = 95.2 < 100, red; integer division would say 100.
    EXPECT_TRUE(isEyeRed(c, 10));
    // Halves round up; green and blue stay.
    EXPECT_TRUE(sameColour(correctEyeRed({200, 41, 60}, 29), {51, 41, 60}));
    EXPECT_TRUE(sameColour(correctEyeRed({200, 40, 60}, 29), {50, 40, 60}));

    // R equal to G (or to B) is never red, whatever the slider.
    for (int t = kSensitivityMin; t <= kSensitivityMax; ++t) {
        SCOPED_TRACE(t);
        EXPECT_FALSE(isEyeRed({200, 200, 0}, t));
        EXPECT_FALSE(isEyeRed({200, 0, 200}, t));
        EXPECT_FALSE(isEyeRed({1, 1, 0}, t));
        // A corrected pixel is never red again.
        EXPECT_FALSE(isEyeRed(correctEyeRed({255, 0, 1}, t), t));
    }
    // The default takes dull pupil red but no skin.
    EXPECT_TRUE(isEyeRed(kDullPupil, kSensitivityDefault));
    EXPECT_FALSE(isEyeRed(kSkin, kSensitivityDefault));
    EXPECT_FALSE(isEyeRed(kPinkSkin, kSensitivityDefault));
}

TEST(RedEyePixel, PicturePixelsAreCountedFromTheTop) {
    cDIBSection dib = filled(3, 2, {0, 0, 0});
    setPixel(dib, 1, 0, {10, 20, 30});
    // Buffer rows are bottom-up: picture row 0 is buffer row 1.
    const std::uint8_t* top = dib.rowBits(1) + 3;
    EXPECT_EQ(top[0], 30);
    EXPECT_EQ(top[1], 20);
    EXPECT_EQ(top[2], 10);
    EXPECT_TRUE(sameColour(pixelAt(dib, 1, 0), {10, 20, 30}));
    EXPECT_TRUE(sameColour(pixelAt(dib, 1, 1), {0, 0, 0}));
}

TEST(RedEyeSpiral, VisitsSquareRingsInTheDefinedOrder) {
    cDIBSection dib = filled(21, 21, {0, 90, 0});
    std::vector<std::pair<int, int>> seen;
    const SpiralResult r =
        spiralSearch(dib, 10, 10, 29, 2, [&](int x, int y) { seen.emplace_back(x - 10, y - 10); });
    // Nothing is red: the budget of 20 allows exactly 20 steps. The corner
    // where a ring starts is met again before the diagonal step outward.
    const std::vector<std::pair<int, int>> want = {
        {0, 0},   {1, -1},  {0, -1},  {-1, -1}, {-1, 0},  {-1, 1}, {0, 1},
        {1, 1},   {1, 0},   {1, -1},  {2, -2},  {1, -2},  {0, -2}, {-1, -2},
        {-2, -2}, {-2, -1}, {-2, 0},  {-2, 1},  {-2, 2},  {-1, 2}};
    EXPECT_EQ(seen, want);
    EXPECT_EQ(r.visited, 20);
    EXPECT_EQ(r.corrected, 0);

    // Budget 10 (width 1) covers the first ring exactly.
    seen.clear();
    spiralSearch(dib, 10, 10, 29, 1, [&](int x, int y) { seen.emplace_back(x - 10, y - 10); });
    EXPECT_EQ(seen, (std::vector<std::pair<int, int>>(want.begin(), want.begin() + 10)));

    // Further out: the second ring closes on its corner, then ring three.
    seen.clear();
    spiralSearch(dib, 10, 10, 29, 3, [&](int x, int y) { seen.emplace_back(x - 10, y - 10); });
    ASSERT_EQ(seen.size(), 30u);
    const std::vector<std::pair<int, int>> tail = {{0, 2}, {1, 2}, {2, 2}, {2, 1}, {2, 0},
                                                   {2, -1}, {2, -2}, {3, -3}, {2, -3}, {1, -3}};
    EXPECT_EQ((std::vector<std::pair<int, int>>(seen.begin() + 20, seen.end())), tail);
}

TEST(RedEyeSpiral, RedPixelsAreFreeAndTheWalkStaysInThePicture) {
    // A 3x3 red spot in grey: all nine corrected, budget spent on the rest.
    cDIBSection dib = filled(15, 15, {90, 90, 90});
    for (int y = 6; y <= 8; ++y)
        for (int x = 6; x <= 8; ++x) setPixel(dib, x, y, {200, 50, 60});
    int steps = 0;
    SpiralResult r = spiralSearch(dib, 7, 7, 29, 1, [&](int, int) { ++steps; });
    EXPECT_EQ(r.corrected, 9);
    // Ring one (8 positions + the corner again) is all red or corrected:
    // the 9 red cost nothing, the corner revisit costs 1, and 9 more
    // steps of ring two spend the rest.
    EXPECT_EQ(r.visited, 19);
    for (int y = 6; y <= 8; ++y)
        for (int x = 6; x <= 8; ++x) EXPECT_TRUE(sameColour(pixelAt(dib, x, y), {55, 50, 60}));
    EXPECT_TRUE(sameColour(pixelAt(dib, 5, 5), {90, 90, 90}));

    // A corner click: positions outside cost budget and are never touched.
    cDIBSection small = filled(4, 3, {200, 10, 10});
    const cDIBSection before = small;
    int outside = 0;
    r = spiralSearch(small, 0, 0, 29, 5, [&](int x, int y) {
        if (x < 0 || y < 0 || x >= 4 || y >= 3) ++outside;
    });
    EXPECT_EQ(r.corrected, 12);  // the whole picture was red
    EXPECT_EQ(outside, 50);  // every inside position was red, so only outside ones cost
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x) EXPECT_TRUE(sameColour(pixelAt(small, x, y), {10, 10, 10}));

    // A wholly red picture: the search ends, bounded by pixels + budget.
    cDIBSection red = filled(40, 30, {250, 20, 30});
    r = spiralSearch(red, 20, 15, 100, 100);
    EXPECT_EQ(r.corrected, 40 * 30);
    EXPECT_LE(r.visited, 40 * 30 + 1000);

    // A click far outside ends after the budget and changes nothing.
    cDIBSection far = filled(5, 5, {250, 20, 30});
    r = spiralSearch(far, 1000, -1000, 29, 1);
    EXPECT_EQ(r.visited, 10);
    EXPECT_EQ(r.corrected, 0);
}

TEST(RedEyeSession, TwoClicksCorrectThePupilsAndLeaveTheSkin) {
    RedEyeSession s(face());
    ASSERT_EQ(s.sensitivity(), kSensitivityDefault);
    ASSERT_EQ(s.searchWidth(), kSearchWidthDefault);
    EXPECT_FALSE(s.modified());
    s.click(kLeftEyeX + 1, kEyeY);
    s.click(kRightEyeX, kEyeY - 1);
    EXPECT_TRUE(s.modified());
    EXPECT_EQ(s.slot(0).x, kLeftEyeX + 1);
    EXPECT_EQ(s.slot(1).y, kEyeY - 1);
    const cDIBSection& pic = s.picture();
    int checked = 0;
    for (int y = 0; y < 90; ++y)
        for (int x = 0; x < 120; ++x) {
            const Rgb was = pixelAt(s.original(), x, y);
            Rgb want = was;
            if (inPupil(x, y, kLeftEyeX)) want = {43, 40, 45};
            if (inPupil(x, y, kRightEyeX)) want = {65, 60, 70};
            if (!sameColour(pixelAt(pic, x, y), want)) {
                ADD_FAILURE() << "at " << x << "," << y << ": " << sameColour(pixelAt(pic, x, y), want).message();
                if (++checked > 5) return;
            }
        }

    // The third click overwrites slot 0; a click outside does nothing.
    s.click(10, 10);
    EXPECT_EQ(s.slot(0).x, 10);
    EXPECT_EQ(s.slot(1).x, kRightEyeX);
    EXPECT_EQ(s.nextSlot(), 1);
    EXPECT_EQ(s.click(120, 5).visited, 0);
    EXPECT_EQ(s.nextSlot(), 1);
}

TEST(RedEyeSession, SliderReRunsFromTheOriginalAndOriginalRestores) {
    RedEyeSession s(face());
    s.click(kRightEyeX, kEyeY);
    ASSERT_TRUE(sameColour(pixelAt(s.picture(), kRightEyeX, kEyeY), {65, 60, 70}));
    // At t = 0 (s = 0.55) dull pupil red is no longer red: the original comes
    // back, the stored click is searched again and finds nothing.
    s.setSensitivity(0);
    EXPECT_TRUE(sameColour(pixelAt(s.picture(), kRightEyeX, kEyeY), kDullPupil));
    s.setSensitivity(kSensitivityDefault);
    EXPECT_TRUE(sameColour(pixelAt(s.picture(), kRightEyeX, kEyeY), {65, 60, 70}));
    // The cheek is pink: at 14 it counts as red, but the search from the
    // eye does not reach it while the skin in between is not red.
    s.setSensitivity(14);
    EXPECT_TRUE(sameColour(pixelAt(s.picture(), 10, 80), kPinkSkin));
    EXPECT_EQ(s.sensitivity(), 14);
    s.setSensitivity(500);
    EXPECT_EQ(s.sensitivity(), kSensitivityMax);
    s.setSearchWidth(0);
    EXPECT_EQ(s.searchWidth(), kSearchWidthMin);

    s.restoreOriginal();
    EXPECT_FALSE(s.modified());
    EXPECT_FALSE(s.slot(0).used());
    EXPECT_EQ(s.nextSlot(), 0);
    EXPECT_TRUE(sameColour(pixelAt(s.picture(), kRightEyeX, kEyeY), kDullPupil));
    // Freed slots: a slider move keeps the original.
    s.setSensitivity(kSensitivityDefault);
    EXPECT_TRUE(sameColour(pixelAt(s.picture(), kRightEyeX, kEyeY), kDullPupil));
    EXPECT_FALSE(s.modified());

    // After a save the file no longer holds the original.
    s.click(kRightEyeX, kEyeY);
    s.markSaved();
    EXPECT_FALSE(s.modified());
    s.restoreOriginal();
    EXPECT_TRUE(s.modified());
}

TEST(RedEyeSelection, ThresholdsGreyRuleAndClipping) {
    SelectionThresholds t;  // 60, 160, 0, mean of green and blue
    EXPECT_TRUE(sameColour(selectionColour({60, 10, 10}, t), {60, 10, 10}));  // R = 60: not treated
    EXPECT_TRUE(sameColour(selectionColour({61, 10, 11}, t), {11, 11, 11}));  // (10 + 11) / 2 rounds up
    EXPECT_TRUE(sameColour(selectionColour({200, 160, 10}, t), {200, 160, 10}));  // G = 160
    EXPECT_TRUE(sameColour(selectionColour({200, 10, 160}, t), {200, 10, 160}));  // B = 160
    EXPECT_TRUE(sameColour(selectionColour({200, 159, 159}, t), {159, 159, 159}));
    t.grey = true;
    EXPECT_TRUE(sameColour(selectionColour({200, 40, 60}, t), {100, 100, 100}));
    EXPECT_TRUE(sameColour(selectionColour({200, 41, 60}, t), {100, 100, 100}));  // 100.33
    EXPECT_TRUE(sameColour(selectionColour({200, 42, 60}, t), {101, 101, 101}));  // 100.67
    t.bright = 200;
    EXPECT_TRUE(sameColour(selectionColour({200, 40, 60}, t), {255, 255, 255}));  // 300 -> 255
    t.bright = -150;
    EXPECT_TRUE(sameColour(selectionColour({200, 40, 60}, t), {0, 0, 0}));  // -50 -> 0
    t = SelectionThresholds{};
    t.bright = 20;
    EXPECT_TRUE(sameColour(selectionColour({200, 40, 60}, t), {70, 70, 70}));
    t.red = 199;
    t.other = 41;
    EXPECT_TRUE(sameColour(selectionColour({200, 40, 40}, t), {60, 60, 60}));
    EXPECT_TRUE(sameColour(selectionColour({200, 41, 40}, t), {200, 41, 40}));

    // Right and bottom are exclusive; a box past the edges is clipped.
    cDIBSection dib = filled(6, 4, {200, 40, 60});
    EXPECT_EQ(RedEyeRemoval(dib, 1, 1, 3, 2, SelectionThresholds{}), 2);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 6; ++x) {
            SCOPED_TRACE(testing::Message() << x << "," << y);
            const bool in = y == 1 && (x == 1 || x == 2);
            EXPECT_TRUE(sameColour(pixelAt(dib, x, y), in ? Rgb{50, 50, 50} : Rgb{200, 40, 60}));
        }
    EXPECT_EQ(RedEyeRemoval(dib, -100, 3, 1000, 1000, SelectionThresholds{}), 6);
    EXPECT_EQ(RedEyeRemoval(dib, 10, 0, 20, 4, SelectionThresholds{}), 0);
    std::vector<int> rows;
    EXPECT_EQ(RedEyeRemoval(dib, 0, 0, 6, 4, SelectionThresholds{}, [&](int done, int total) {
                  rows.push_back(done * 10 + total);
                  return done < 2;  // stop after two rows
              }),
              12 - 2);
    EXPECT_EQ(rows, (std::vector<int>{14, 24}));
}

class RedEyeCli : public brindle::test::TempHomeTest {
  protected:
    brindle::test::CliRun run(const std::string& args) { return brindle::test::runCli(args, path("err.txt")); }
    std::string err() { return readBytes("err.txt"); }
    Rgb at(const std::string& file, int x, int y) {
        const PictureFile f = LoadPictureFile(path(file));
        EXPECT_TRUE(f.picture) << file;
        return f.picture ? pixelAt(*f.picture.Handle(), x, y) : Rgb{-1, -1, -1};
    }
};

TEST_F(RedEyeCli, ClicksBoxesAndMessages) {
    ASSERT_TRUE(SaveDIBFile(face(), path("face.png"), 90));
    auto r = run("redeye '" + path("face.png") + "' --at 35,40 --at 85,40 -o '" + path("fixed.png") + "'");
    EXPECT_EQ(r.status, 0) << err();
    EXPECT_TRUE(sameColour(at("fixed.png", 35, 40), {43, 40, 45}));
    EXPECT_TRUE(sameColour(at("fixed.png", 85, 44), {65, 60, 70}));
    EXPECT_TRUE(sameColour(at("fixed.png", 60, 40), kSkin));
    EXPECT_TRUE(sameColour(at("face.png", 35, 40), kPupil));
    EXPECT_EQ(r.out, std::to_string(81 + 81) + " pixels corrected\n");
    EXPECT_NE(err().find("redeye: search from 35,40"), std::string::npos);

    // At sensitivity 0 the dull pupil stays.
    r = run("redeye '" + path("face.png") + "' --at 85,40 --sensitivity 0 -o '" + path("strict.png") + "'");
    EXPECT_EQ(r.status, 0) << err();
    EXPECT_TRUE(sameColour(at("strict.png", 85, 40), kDullPupil));

    // A box in place: the left pupil turns grey with the grey rule and +10.
    r = run("redeye '" + path("face.png") + "' --box 30,35,11,11 --grey --bright 10");
    EXPECT_EQ(r.status, 0) << err();
    EXPECT_TRUE(sameColour(at("face.png", 35, 40), {102, 102, 102}));  // (190+40+45)/3 = 91.67 -> 92, +10
    EXPECT_TRUE(sameColour(at("face.png", 85, 40), kDullPupil));
    EXPECT_TRUE(sameColour(at("face.png", 30, 35), kWhite));
    EXPECT_EQ(r.out, "81 pixels corrected\n");

    const std::pair<std::string, std::string> bad[] = {
        {"'" + path("face.png") + "'", "give --at points or one --box, not both"},
        {"'" + path("face.png") + "' --at 1,2 --box 1,2,3,4", "give --at points or one --box, not both"},
        {"'" + path("face.png") + "' --at 1,2 --at 3,4 --at 5,6", "at most two --at points (one in each eye)"},
        {"'" + path("face.png") + "' --at 1", "--at must be X,Y: 1"},
        {"'" + path("face.png") + "' --box 1,2,0,4", "--box must be X,Y,W,H with W and H above 0: 1,2,0,4"},
        {"'" + path("face.png") + "' --at 1,2 --sensitivity 101", "--sensitivity must be a number from 0 to 100: 101"},
        {"'" + path("face.png") + "' --at 1,2 --width 0", "--width must be a number from 1 to 100: 0"},
        {"'" + path("face.png") + "' --box 1,2,3,4 --red x", "--red must be a number from 0 to 255: x"},
        {"'" + path("face.png") + "' --box 1,2,3,4 --width 3", "--sensitivity and --width go with --at"},
        {"'" + path("face.png") + "' --at 1,2 --grey", "--red, --other, --bright and --grey go with --box"},
        {"'" + path("face.png") + "' --at 120,3", "the point 120,3 lies outside the picture (120x90)"},
        {"'" + path("face.png") + "' --box 120,0,5,5", "the box lies outside the picture (120x90)"},
        {"'" + path("face.png") + "' --at 1,2 --shout", "--shout needs a value"},
        {"'" + path("none.png") + "' --at 1,2", "file not found: " + path("none.png")},
        {"'" + path("face.png") + "' --at 1,2 -o '" + path("x.gif") + "'",
         "cannot write this picture type: " + path("x.gif") + " (.jpg, .jpeg, .bmp, .png, .tif or .tiff)"},
    };
    for (const auto& [args, message] : bad) {
        SCOPED_TRACE(args);
        r = run("redeye " + args);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(err(), "brindlesee-cli: " + message + "\n");
    }
}

TEST_F(RedEyeCli, AFailedWriteKeepsTheOriginal) {
    ASSERT_TRUE(SaveDIBFile(face(), path("face.jpg"), 95));
    const std::string before = readBytes("face.jpg");
    // A folder where the output should go.
    std::filesystem::create_directories(path("taken.jpg"));
    auto r = run("redeye '" + path("face.jpg") + "' --at 35,40 -o '" + path("taken.jpg") + "'");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(err(), "redeye: search from 35,40\nbrindlesee-cli: The picture could not be saved: " + path("taken.jpg") + "\n");
    EXPECT_EQ(readBytes("face.jpg"), before);

    // In place, as a user without rights to the folder: nothing is lost.
    std::filesystem::create_directories(path("locked"));
    ASSERT_TRUE(SaveDIBFile(face(), path("locked/face.jpg"), 95));
    const std::string locked = readBytes("locked/face.jpg");
    ASSERT_EQ(::chmod(home().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(path("locked").c_str(), 0555), 0);
    ASSERT_EQ(::chmod(path("locked/face.jpg").c_str(), 0666), 0);
    const std::string asNobody = ::geteuid() == 0 ? "setpriv --reuid=65534 --regid=65534 --clear-groups " : "";
    r = brindle::test::runCli("redeye '" + path("locked/face.jpg") + "' --at 35,40", path("err.txt"), asNobody);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(err(), "redeye: search from 35,40\nbrindlesee-cli: The picture could not be saved: " +
                         path("locked/face.jpg") + "\n");
    EXPECT_EQ(readBytes("locked/face.jpg"), locked);

    // And a good in-place save keeps the file's time.
    const FileStamp stamp = readFileStamp(path("face.jpg"));
    r = run("redeye '" + path("face.jpg") + "' --at 35,40");
    EXPECT_EQ(r.status, 0) << err();
    EXPECT_NE(readBytes("face.jpg"), before);
    EXPECT_EQ(readFileStamp(path("face.jpg")).modified.tv_sec, stamp.modified.tv_sec);
}
