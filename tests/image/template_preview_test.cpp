// The catalogue preview, step by step: each step's pixels worked out by
// hand from the page scale 17/50 and the sheet at (24, 18).
#include "image/template_preview.h"

#include <gtest/gtest.h>

#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "image_compare.h"
#include "support/temp_home.h"

namespace brindle::test {
namespace {

constexpr Bgr kTable{0x2F, 0x3F, 0x5A};
constexpr Bgr kWhite{255, 255, 255};
constexpr Bgr kRed{0, 0, 255};
constexpr Bgr kGreen{0, 255, 0};
constexpr Bgr kBlue{255, 0, 0};
constexpr Bgr kYellow{0, 255, 255};

Bgr bgr(Color c) { return {int(c >> 16) & 0xFF, int(c >> 8) & 0xFF, int(c) & 0xFF}; }

class TemplatePreviewTest : public TempHomeTest {
protected:
    std::string solid(const std::string& name, int w, int h, Bgr c) {
        EXPECT_TRUE(SaveDIBFile(makeDib(w, h, [c](int, int) { return c; }), path(name), 90).ok);
        return path(name);
    }
    cDIBSection blankPreview() {
        cDIBSection p;
        previewSheet(p, cDIBSection{});
        return p;
    }
};

TEST_F(TemplatePreviewTest, StepOneLaysTheSheetOnTheTableOrTakesTheSheetPicture) {
    cDIBSection p = blankPreview();
    ASSERT_EQ(p.Width(), 320);
    ASSERT_EQ(p.Height(), 240);
    EXPECT_EQ(pixelAt(p, 0, 0), kTable);
    EXPECT_EQ(pixelAt(p, 23, 18), kTable);
    EXPECT_EQ(pixelAt(p, 24, 18), kWhite);
    EXPECT_EQ(pixelAt(p, 295, 221), kWhite);
    EXPECT_EQ(pixelAt(p, 296, 221), kTable);
    EXPECT_EQ(pixelAt(p, 24, 222), kTable);
    EXPECT_EQ(pixelAt(p, 24, 17), kTable);

    // A sheet picture of twice the size is made 320 x 240.
    const Bgr wood{10, 20, 30};
    cDIBSection q;
    previewSheet(q, makeDib(640, 480, [&](int, int) { return wood; }));
    EXPECT_TRUE(sameImage(makeDib(320, 240, [&](int, int) { return wood; }), q));
}

TEST_F(TemplatePreviewTest, StepTwoFillsTheSheetWithTheColourAndTilesThePictureAtPageScale) {
    PageRecord page;
    page.backgroundColor = 0x112233;
    cDIBSection p = blankPreview();
    previewBackground(p, page);
    EXPECT_EQ(pixelAt(p, 24, 18), (Bgr{0x11, 0x22, 0x33}));
    EXPECT_EQ(pixelAt(p, 295, 221), (Bgr{0x11, 0x22, 0x33}));
    EXPECT_EQ(pixelAt(p, 23, 100), kTable);

    // 50 x 100, red left of x 25, blue from it: a 17 x 34 tile whose columns
    // 0..7 stay red and 9..16 blue; 16 tiles across, 6 down fill the sheet.
    EXPECT_TRUE(SaveDIBFile(makeDib(50, 100, [](int x, int) { return x < 25 ? kRed : kBlue; }), path("bg.bmp"), 90).ok);
    page.background = path("bg.bmp");
    previewBackground(p, page);
    for (int tile : {0, 1, 15}) {
        SCOPED_TRACE(tile);
        const int x = 24 + 17 * tile;
        EXPECT_EQ(pixelAt(p, x, 18), kRed);
        EXPECT_EQ(pixelAt(p, x + 7, 18 + 34 * 5), kRed);
        EXPECT_EQ(pixelAt(p, x + 9, 18 + 33), kBlue);
        EXPECT_EQ(pixelAt(p, x + 16, 221), kBlue);
    }
    EXPECT_EQ(pixelAt(p, 23, 18), kTable);
    EXPECT_EQ(pixelAt(p, 296, 221), kTable);
    EXPECT_EQ(pixelAt(p, 100, 222), kTable);
}

TEST_F(TemplatePreviewTest, StepThreeCentresTheThreeButtonsAboveTheFoot) {
    PageRecord page;
    page.backgroundColor = 0x000000;
    page.props.backButton = solid("zurueck.bmp", 30, 15, kRed);       // 10 x 5
    page.props.contentsButton = solid("inhalt.bmp", 60, 30, kGreen);  // 20 x 10
    page.props.forwardButton = solid("vor.bmp", 30, 15, kBlue);       // 10 x 5
    cDIBSection p = blankPreview();
    previewBackground(p, page);
    previewButtons(p, page);
    // 10 + 4 + 20 + 4 + 10 = 48 wide from x 24 + (272 - 48) / 2 = 136; the
    // tallest is 10 high, its top at 18 + 204 - 6 - 10 = 206; the small ones
    // are centred on it (top 208).
    const Bgr black{0, 0, 0};
    EXPECT_EQ(pixelAt(p, 136, 208), kRed);
    EXPECT_EQ(pixelAt(p, 145, 212), kRed);
    EXPECT_EQ(pixelAt(p, 136, 207), black);
    EXPECT_EQ(pixelAt(p, 136, 213), black);
    EXPECT_EQ(pixelAt(p, 146, 210), black);
    EXPECT_EQ(pixelAt(p, 135, 210), black);
    EXPECT_EQ(pixelAt(p, 150, 206), kGreen);
    EXPECT_EQ(pixelAt(p, 169, 215), kGreen);
    EXPECT_EQ(pixelAt(p, 170, 210), black);
    EXPECT_EQ(pixelAt(p, 174, 208), kBlue);
    EXPECT_EQ(pixelAt(p, 183, 212), kBlue);
    EXPECT_EQ(pixelAt(p, 184, 210), black);
}

TEST_F(TemplatePreviewTest, StepFourDrawsPicturesInTheirBoxesOrTwoSamplePhotos) {
    PageRecord page;
    page.backgroundColor = 0x000000;
    cDIBSection empty = blankPreview();
    previewBackground(empty, page);
    previewPictures(empty, page);
    // Sample photo 1: page box (60, 110, 300, 220) is (44, 55, 102, 74); a
    // white border of 2, sky over land in the rest (rows 57..91 and 92..126).
    EXPECT_EQ(pixelAt(empty, 44, 55), kWhite);
    EXPECT_EQ(pixelAt(empty, 45, 100), kWhite);
    EXPECT_EQ(pixelAt(empty, 46, 57), bgr(kSampleSky));
    EXPECT_EQ(pixelAt(empty, 143, 91), bgr(kSampleSky));
    EXPECT_EQ(pixelAt(empty, 46, 92), bgr(kSampleLand));
    EXPECT_EQ(pixelAt(empty, 143, 126), bgr(kSampleLand));
    EXPECT_EQ(pixelAt(empty, 144, 126), kWhite);
    EXPECT_EQ(pixelAt(empty, 145, 128), kWhite);
    EXPECT_EQ(pixelAt(empty, 146, 128), (Bgr{0, 0, 0}));
    EXPECT_EQ(pixelAt(empty, 44, 129), (Bgr{0, 0, 0}));

    PictureElement& shown = page.pictures.add();
    shown.left = 100, shown.top = 50, shown.width = 200, shown.height = 100;
    shown.path = solid("gelb.bmp", 40, 20, kYellow);
    // A copy first: adding to the array may move the element `shown` names.
    PictureElement deleted = shown;
    deleted.left = 400, deleted.top = 400;
    deleted.deleted = kTrue;
    page.pictures.add() = deleted;
    PictureElement& missing = page.pictures.add();
    missing.left = 500, missing.top = 300, missing.width = 100, missing.height = 50;
    missing.path = path("fehlt.jpg");
    cDIBSection p = blankPreview();
    previewBackground(p, page);
    previewPictures(p, page);
    // (100, 50, 200, 100) is (58, 35, 68, 34).
    EXPECT_EQ(pixelAt(p, 58, 35), kYellow);
    EXPECT_EQ(pixelAt(p, 125, 68), kYellow);
    EXPECT_EQ(pixelAt(p, 126, 50), (Bgr{0, 0, 0}));
    EXPECT_EQ(pixelAt(p, 57, 50), (Bgr{0, 0, 0}));
    EXPECT_EQ(pixelAt(p, 58, 69), (Bgr{0, 0, 0}));
    // The deleted one at (160, 154) is not drawn, nor are the samples.
    EXPECT_EQ(pixelAt(p, 170, 160), (Bgr{0, 0, 0}));
    EXPECT_EQ(pixelAt(p, 50, 60), (Bgr{0, 0, 0}));
    // (500, 300, 100, 50) is (194, 120, 34, 17), light grey for a missing file.
    EXPECT_EQ(pixelAt(p, 194, 120), bgr(kMissingPicture));
    EXPECT_EQ(pixelAt(p, 227, 136), bgr(kMissingPicture));
    EXPECT_EQ(pixelAt(p, 228, 136), (Bgr{0, 0, 0}));
}

TEST_F(TemplatePreviewTest, StepFiveShowsEachPanoramaWithItsFirstPicture) {
    PageRecord page;
    page.backgroundColor = 0x000000;
    PanoramaElement& bare = page.panoramas.add();
    bare.left = 0, bare.top = 500, bare.width = 800, bare.height = 50;  // (24, 188, 272, 17)
    PanoramaElement& shown = page.panoramas.add();
    shown.left = 0, shown.top = 0, shown.width = 100, shown.height = 100;  // (24, 18, 34, 34)
    shown.hotspots[1].urlName = solid("pano.bmp", 200, 50, kGreen);
    cDIBSection p = blankPreview();
    previewBackground(p, page);
    previewPanoramas(p, page);
    EXPECT_EQ(pixelAt(p, 24, 188), bgr(kEmptyPanorama));
    EXPECT_EQ(pixelAt(p, 295, 204), bgr(kEmptyPanorama));
    EXPECT_EQ(pixelAt(p, 295, 205), (Bgr{0, 0, 0}));
    EXPECT_EQ(pixelAt(p, 24, 18), kGreen);
    EXPECT_EQ(pixelAt(p, 57, 51), kGreen);
    EXPECT_EQ(pixelAt(p, 58, 51), (Bgr{0, 0, 0}));
}

TEST_F(TemplatePreviewTest, StepSixDrawsTextLinesInTheirColourOrTheAlbumsSampleText) {
    AlbumRecord album;
    album.style.headingFont.color = 0x0000FF;
    album.style.textFont.color = 0x00FF00;
    PageRecord page;
    page.backgroundColor = 0x000000;
    cDIBSection sample = blankPreview();
    previewBackground(sample, page);
    previewTexts(sample, album, page);
    // Heading (60, 40, 360, 24) is (44, 31, 122, 8); the first line
    // (60, 420, 680, 10) is (44, 160, 231, 3).
    EXPECT_EQ(pixelAt(sample, 44, 31), kRed);
    EXPECT_EQ(pixelAt(sample, 165, 38), kRed);
    EXPECT_EQ(pixelAt(sample, 166, 38), (Bgr{0, 0, 0}));
    EXPECT_EQ(pixelAt(sample, 44, 39), (Bgr{0, 0, 0}));
    EXPECT_EQ(pixelAt(sample, 44, 160), kGreen);
    EXPECT_EQ(pixelAt(sample, 274, 162), kGreen);
    EXPECT_EQ(pixelAt(sample, 275, 162), (Bgr{0, 0, 0}));

    // Size 10: lines 6 apart, bars 3 high, 17/50 of five pixels a character.
    TextElement& t = page.texts.add();
    t.left = 50, t.top = 100, t.width = 400, t.height = 100;  // (41, 52, 136, 34)
    t.font.size = 10;
    t.font.color = 0xFF0000;
    t.text = "abcdefghij\r\nabcd";
    // A copy first: adding to the array may move the element `t` names.
    TextElement deleted = t;
    deleted.top = 300;
    deleted.deleted = kTrue;
    page.texts.add() = deleted;
    cDIBSection p = blankPreview();
    previewBackground(p, page);
    previewTexts(p, album, page);
    EXPECT_EQ(pixelAt(p, 41, 52), kBlue);
    EXPECT_EQ(pixelAt(p, 57, 54), kBlue);   // 50 pixels make 17
    EXPECT_EQ(pixelAt(p, 58, 52), (Bgr{0, 0, 0}));
    EXPECT_EQ(pixelAt(p, 41, 55), (Bgr{0, 0, 0}));
    EXPECT_EQ(pixelAt(p, 46, 58), kBlue);   // 20 pixels make 6
    EXPECT_EQ(pixelAt(p, 47, 58), (Bgr{0, 0, 0}));
    EXPECT_EQ(pixelAt(p, 41, 61), (Bgr{0, 0, 0}));
    EXPECT_EQ(pixelAt(p, 41, 120), (Bgr{0, 0, 0}));  // the deleted one
    EXPECT_EQ(pixelAt(p, 44, 31), (Bgr{0, 0, 0}));   // no sample heading
}

TEST_F(TemplatePreviewTest, StepSevenSavesTheJpegAfterReportingEveryStepInOrder) {
    AlbumRecord album;
    ladeStandards(album, home());
    album.pageDefaults.background.clear();
    album.pageDefaults.backgroundColor = 0x808080;
    std::vector<int> steps;
    ASSERT_TRUE(zeichneVorlagenVorschau(album, path("kein Blatt.jpg"), path("v.jpg"),
                                        [&](int s) { steps.push_back(s); }));
    EXPECT_EQ(steps, (std::vector<int>{0, 1, 2, 3, 4, 5, 6}));
    cDIBSection jpeg;
    ASSERT_TRUE(LoadJPG(jpeg, path("v.jpg")));
    ASSERT_EQ(jpeg.Width(), 320);
    ASSERT_EQ(jpeg.Height(), 240);
    cDIBSection expected;
    previewSheet(expected, cDIBSection{});
    previewBackground(expected, album.pageDefaults);
    previewButtons(expected, album.pageDefaults);
    previewPictures(expected, album.pageDefaults);
    previewTexts(expected, album, album.pageDefaults);
    EXPECT_TRUE(similarImage(expected, jpeg, 3.0));
    // An unwritable target is reported.
    EXPECT_FALSE(zeichneVorlagenVorschau(album, "", path("no/such/folder/v.jpg")));
}

}  // namespace
}  // namespace brindle::test
