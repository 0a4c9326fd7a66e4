// The picture dialog's model: frame and animation strings, opening on a
// record, OK as one undo step, Cancel leaving the record alone, and the
// frame copied to the pictures of this page and of closed pages on disk.
#include <gtest/gtest.h>

#include "html/html_text.h"

#include <array>
#include <cstring>
#include <filesystem>

#include "album/album_file.h"
#include "album/page_file.h"
#include "album/stacking.h"
#include "editor/page_document.h"
#include "image/dib_section.h"
#include "image/picture_io.h"
#include "properties/frame_preview.h"
#include "properties/picture_properties_model.h"
#include "support/session_fixture.h"

using namespace brindle;
using namespace brindle::properties;
using brindle::editor::ElementRef;
using brindle::editor::Kind;

namespace {

// A w x h picture of two colours, split at mid-height, saved as `path`.
void writePicture(const std::string& path, int w, int h) {
    cDIBSection dib;
    ASSERT_TRUE(dib.Create(w, h));
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            std::uint8_t* p = dib.hdc().row(y) + 3 * x;
            p[0] = y < h / 2 ? 200 : 40;
            p[1] = 120;
            p[2] = static_cast<std::uint8_t>(x * 255 / std::max(1, w - 1));
        }
    ASSERT_TRUE(SaveDIBFile(dib, path, 90));
}

PictureElement picture(int left, int top, int w, int h, const std::string& path) {
    PictureElement p;
    p.left = std::int16_t(left);
    p.top = std::int16_t(top);
    p.width = std::int16_t(w);
    p.height = std::int16_t(h);
    p.path = path;
    p.pictureWidth = 80;
    p.pictureHeight = 40;
    p.ext.extText[2] = std::to_string(w);
    p.ext.extText[3] = std::to_string(h);
    return p;
}

// A 4 x 2 icon of one 24-bit image, built byte by byte.
std::string iconBytes() {
    auto le16 = [](std::string& s, int v) { s += char(v & 0xFF); s += char((v >> 8) & 0xFF); };
    auto le32 = [&](std::string& s, std::uint32_t v) { le16(s, int(v & 0xFFFF)); le16(s, int(v >> 16)); };
    std::string image;
    le32(image, 40);
    le32(image, 4);
    le32(image, 4);  // twice the height: colour rows, then the mask
    le16(image, 1);
    le16(image, 24);
    for (int i = 0; i < 6; ++i) le32(image, 0);
    for (int i = 0; i < 8; ++i) image += std::string("\x20\x80\xE0", 3);  // 2 rows of 12 bytes
    image += std::string(8, '\0');  // the mask, 4 bytes a row
    std::string s;
    le16(s, 0);
    le16(s, 1);
    le16(s, 1);
    s += char(4);
    s += char(2);
    s += char(0);
    s += char(0);
    le16(s, 1);
    le16(s, 24);
    le32(s, std::uint32_t(image.size()));
    le32(s, 22);
    return s + image;
}

class PicturePropertiesTest : public test::SessionTest {
protected:
    // An album of three pages: the first opens with two pictures and a
    // deleted one, the second holds two pictures, the third none.
    void SetUp() override {
        SessionTest::SetUp();
        writePicture(path("see.bmp"), 80, 40);
        writePicture(path("berg.bmp"), 60, 90);
        AlbumRecord a;
        ladeStandards(a, home());
        a.title = "Test";
        for (int i = 1; i <= 3; ++i) {
            const std::string title = "Seite" + std::to_string(i);
            PageRecord p = a.pageDefaults;
            p.title = title;
            p.description = "Beschreibung " + title;  // nothing is filled in on reading
            if (i == 1) {
                p.pictures.add() = picture(40, 60, 200, 100, path("see.bmp"));
                p.pictures.add() = picture(300, 60, 60, 90, path("berg.bmp"));
                p.pictures.add() = picture(10, 10, 60, 90, path("berg.bmp"));
                p.pictures[3].deleted = kTrue;
            } else if (i == 2) {
                p.pictures.add() = picture(10, 20, 120, 60, path("see.bmp"));
                p.pictures.add() = picture(10, 200, 60, 90, path("berg.bmp"));
                p.pictures[2].deleted = kTrue;
            } else {
                p.texts.add().text = "Nur Text";
            }
            ReihenfolgePruefen(p);
            ASSERT_TRUE(writePageFile(path(title + ".apg"), p).ok());
            a.pages.add() = PageEntry{title, title + ".apg", home(), 0};
        }
        a.pageCount = 3;
        ASSERT_TRUE(writeAlbumFile(path("Test.apr"), a).ok());
        start();
        ASSERT_TRUE(session->albumOeffnen(path("Test.apr")));
        slot = session->album().pages[1].slot;
        ASSERT_GT(slot, 0);
        doc = std::make_unique<editor::PageDocument>(*session, slot);
        doc->NeuZeichnen();
    }

    PictureElement& pic(int i) { return session->page(slot).pictures[i]; }

    int slot = 0;
    std::unique_ptr<editor::PageDocument> doc;
};

TEST(PictureSpecs, AnimationStringsForEachKindAndSlider) {
    AnimationSettings a;
    a.sliders = {7, 35, 4, 80, 9, 12, 6, 20, 15, 3};
    const std::pair<AnimationKind, const char*> rows[] = {
        {AnimationKind::None, ""},
        {AnimationKind::Lake, "Lake,7,35,0,0,0"},
        {AnimationKind::Rain, "Rain,4,80,0,0,0"},
        {AnimationKind::Snow, "Snow,4,80,0,0,0"},
        {AnimationKind::UnderWater, "UnderWater,9,12,6,20,0,0,0"},
        {AnimationKind::Pano, "Pano,15,3,0,0,0"},
        {AnimationKind::AnyGif, "AnyGif,"},
    };
    for (const auto& [kind, expected] : rows) {
        SCOPED_TRACE(expected);
        a.kind = kind;
        EXPECT_EQ(buildAnimationSpec(a), expected);
        AnimationSettings back;
        readAnimationSpec(expected, back);
        EXPECT_EQ(back.kind, kind);
        EXPECT_EQ(buildAnimationSpec(back), expected);
    }
    EXPECT_EQ(machLake(0, 100), "Lake,0,100,0,0,0");
    EXPECT_EQ(machRainSnow(true, 10, 1), "Snow,10,1,0,0,0");
    EXPECT_EQ(machUnderwater(1, 2, 3, 4), "UnderWater,1,2,3,4,0,0,0");
    EXPECT_EQ(machPano(50, 20), "Pano,50,20,0,0,0");
    EXPECT_EQ(machAniGif(), "AnyGif,");
}

TEST(PictureSpecs, ReadingAnimationSetsOnlyItsKindsSliders) {
    AnimationSettings a;
    readAnimationSpec("UnderWater,9,x,None,20,0,0,0", a);
    EXPECT_EQ(a.kind, AnimationKind::UnderWater);
    EXPECT_EQ(a.sliders.underwaterDelay, 9);
    EXPECT_EQ(a.sliders.underwaterFrames, kUnderwaterFramesRange.start);  // not a number
    EXPECT_EQ(a.sliders.underwaterWaveHigh, kUnderwaterWaveHighRange.start);  // "None"
    EXPECT_EQ(a.sliders.underwaterWaveWidth, 20);
    EXPECT_EQ(a.sliders.lakeSpeed, kLakeSpeedRange.start);
    readAnimationSpec("Lake,99,5", a);  // beyond the sliders' ends
    EXPECT_EQ(a.kind, AnimationKind::Lake);
    EXPECT_EQ(a.sliders.lakeSpeed, kLakeSpeedRange.maximum);
    EXPECT_EQ(a.sliders.lakeGrenze, kLakeGrenzeRange.minimum);
    for (const char* unknown : {"Fire,1,2", "lake,3,4,0,0,0", "", "None,None,None,None,None,None"}) {
        SCOPED_TRACE(unknown);
        readAnimationSpec(unknown, a);
        EXPECT_EQ(a.kind, AnimationKind::None);
        EXPECT_EQ(buildAnimationSpec(a), "");
    }
}

TEST(PictureSpecs, FrameStringHasSixItemsAndNoneLeavesControls) {
    FrameSettings f;
    EXPECT_EQ(buildFrameSpec(f), "15,50,50,8421504,None,0,");
    f.on = true;
    f.width = 12;
    f.light = 60;
    f.shadow = 40;
    f.colour = 3355443;
    EXPECT_EQ(buildFrameSpec(f), "12,60,40,3355443,None,1,");
    f.texture = "/bilder/holz.jpg";
    EXPECT_EQ(buildFrameSpec(f), "12,60,40,3355443,/bilder/holz.jpg,1,");
    // The HTML album reads the string with its padding appended directly.
    EXPECT_TRUE(html::hasFrame(html::specTokens(buildFrameSpec(f))));
    f.on = false;
    EXPECT_FALSE(html::hasFrame(html::specTokens(buildFrameSpec(f))));

    FrameSettings read;
    readFrameSpec("8,70,30,255,/t/stein.png,1,", read);
    EXPECT_EQ(read, (FrameSettings{true, 8, 70, 30, 255, "/t/stein.png"}));
    FrameSettings kept = read;
    readFrameSpec("None,None,None,None,None,None", kept);
    EXPECT_EQ(kept, read);
    readFrameSpec("abc,20,None,x,None,0", kept);
    EXPECT_EQ(kept, (FrameSettings{false, 8, 20, 30, 255, "/t/stein.png"}));

    EXPECT_EQ(drawnFrameWidth("12,60,40,3355443,None,1"), 12);
    EXPECT_EQ(drawnFrameWidth("12,60,40,3355443,None,1,"), 12);
    EXPECT_EQ(drawnFrameWidth("12,60,40,3355443,None,0"), 0);
    EXPECT_EQ(drawnFrameWidth(""), 0);
}

TEST(PictureSpecs, AngleBoxTakesDigitsAndOneLeadingMinus) {
    EXPECT_TRUE(isAngleText(""));
    EXPECT_TRUE(isAngleText("-"));
    EXPECT_TRUE(isAngleText("-45"));
    EXPECT_TRUE(isAngleText("270"));
    EXPECT_FALSE(isAngleText("4-5"));
    EXPECT_FALSE(isAngleText("--4"));
    EXPECT_FALSE(isAngleText("4.5"));
    EXPECT_FALSE(isAngleText("+4"));
    EXPECT_EQ(angleOf("-"), 0);
    EXPECT_EQ(angleOf("-45"), -45);
    EXPECT_EQ(angleOf("725"), 5);
    EXPECT_EQ(angleOf("99999999999999999999"), 279);  // (10^20 - 1) mod 360, without overflow
}

TEST(FramePreview, FrameAroundThePictureFromTheFrameEffect) {
    cDIBSection photo;
    ASSERT_TRUE(photo.Create(6, 4));
    photo.effectFarbfläche(0x102030);
    FrameSettings f{true, 2, 50, 50, 0x646464, ""};
    cDIBSection out;
    ASSERT_TRUE(drawFramePreview(photo, f, 2, nullptr, out));
    ASSERT_EQ(out.Width(), 10);
    ASSERT_EQ(out.Height(), 8);
    // The picture sits inside untouched.
    const std::uint8_t* inside = out.hdc().row(2) + 3 * 2;
    EXPECT_EQ((std::array<int, 3>{inside[0], inside[1], inside[2]}), (std::array<int, 3>{0x10, 0x20, 0x30}));
    // The frame is the colour through the frame effect, computed the same way by hand.
    cDIBSection expected;
    ASSERT_TRUE(expected.Create(10, 8));
    expected.effectFarbfläche(0x646464);
    expected.effectRahmen(50, 50, 2);
    for (int y : {0, 1, 6, 7})
        for (int x = 0; x < 10; ++x) {
            SCOPED_TRACE(testing::Message() << "pixel " << x << "," << y);
            EXPECT_EQ(0, std::memcmp(out.hdc().row(y) + 3 * x, expected.hdc().row(y) + 3 * x, 3));
        }
    EXPECT_NE(out.hdc().row(0)[0], 0x64);  // the bevel changed the colour

    f.on = false;
    ASSERT_TRUE(drawFramePreview(photo, f, 2, nullptr, out));
    EXPECT_EQ(out.Width(), 6);
    EXPECT_EQ(out.hdc().row(0)[0], 0x10);
}

TEST_F(PicturePropertiesTest, OpensOnTheRecordsFields) {
    pic(1).hyperlink = "<vor>";
    pic(1).ext.extLong[4] = 2;
    pic(1).proportional = kTrue;
    pic(1).ext.extLong[0] = -1;
    pic(1).ext.extLong[5] = -30;
    pic(1).ext.extText[0] = "9,70,20,255,None,1,";
    pic(1).ext.extText[1] = "Snow,2,40,0,0,0";
    PicturePropertiesModel m(*session, slot, 1);
    m.open(prompter);
    const PictureFields& f = m.fields();
    EXPECT_EQ(f.path, path("see.bmp"));
    EXPECT_EQ(f.pictureWidth, 80);
    EXPECT_EQ(f.pictureHeight, 40);
    EXPECT_EQ(f.hyperlink, "<vor>");
    EXPECT_EQ(f.linkBehaviour, 2);
    EXPECT_TRUE(f.proportional);
    EXPECT_TRUE(f.originalSize);
    EXPECT_EQ(f.angle, "-30");
    EXPECT_EQ(f.frame, (FrameSettings{true, 9, 70, 20, 255, ""}));
    EXPECT_EQ(f.animation.kind, AnimationKind::Snow);
    EXPECT_EQ(f.animation.sliders.rainSnowSpeed, 2);
    EXPECT_EQ(f.animation.sliders.rainSnowAnzahl, 40);
    EXPECT_FALSE(f.allOnThisPage);
    EXPECT_FALSE(f.allOnAllPages);
    EXPECT_TRUE(prompter.asked.empty());
}

TEST_F(PicturePropertiesTest, MissingTextureIsWarnedAboutInBothLanguages) {
    pic(1).ext.extText[0] = "9,70,20,255,/nirgends/holz.jpg,1";
    PicturePropertiesModel m(*session, slot, 1);
    m.open(prompter);
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0],
              "message|Warnung|48|Fehler beim laden des Bildes: /nirgends/holz.jpg\r\nBitte laden Sie ein neues Bild!");
    session->state().language = Language::English;
    m.open(prompter);
    EXPECT_EQ(prompter.asked[1],
              "message|Warning|48|Error while loading the picture: /nirgends/holz.jpg\r\nPlease load another picture!");
    // A texture that moved beside the album is found again without a word.
    writePicture(path("holz.bmp"), 8, 8);
    pic(1).ext.extText[0] = "9,70,20,255,C:\\Alt\\holz.bmp,1";
    m.open(prompter);
    EXPECT_EQ(prompter.asked.size(), 2u);
    EXPECT_EQ(m.fields().frame.texture, path("holz.bmp"));
}

TEST_F(PicturePropertiesTest, OkStoresEveryFieldAsOneChangeStepAndUndoRestores) {
    const PictureElement before = pic(1);
    PicturePropertiesModel m(*session, slot, 1);
    m.open(prompter);
    PictureFields& f = m.fields();
    ASSERT_TRUE(m.choosePicture(path("berg.bmp"), prompter));
    f.hyperlink = "<vollbild>";
    f.linkBehaviour = 1;
    f.proportional = true;
    f.angle = "90";
    f.frame = FrameSettings{true, 10, 60, 40, 0x3355, ""};
    f.animation.kind = AnimationKind::Pano;
    f.animation.sliders.panoDelay = 7;
    f.animation.sliders.panoStartSpeed = 4;
    const int stepsBefore = doc->undoRing().pos;
    m.ok(*doc);

    const PictureElement& p = pic(1);
    EXPECT_EQ(p.path, path("berg.bmp"));
    EXPECT_EQ(p.hyperlink, "<vollbild>");
    EXPECT_EQ(p.ext.extLong[4], 1);
    EXPECT_EQ(p.proportional, kTrue);
    EXPECT_EQ(p.ext.extLong[0], 0);
    EXPECT_EQ(p.ext.extLong[5], 90);
    EXPECT_EQ(p.pictureWidth, 60);
    EXPECT_EQ(p.pictureHeight, 90);
    EXPECT_EQ(p.ext.extText[0], "10,60,40,13141,None,1,");
    EXPECT_EQ(p.ext.extText[1], "Pano,7,4,0,0,0");
    // 200 wide keeps its width, the new picture's aspect gives 300 high,
    // and the quarter turn lays that box on its side round the same centre.
    EXPECT_EQ((editor::Box{p.left, p.top, p.width, p.height}), (editor::Box{-10, 10, 300, 200}));
    EXPECT_EQ(p.ext.extText[2], "320");
    EXPECT_EQ(p.ext.extText[3], "220");
    EXPECT_TRUE(isTrue(session->state().pageSlots[slot].modified));
    // Everything else stayed.
    PictureElement rest = p;
    rest.path = before.path;
    rest.hyperlink = before.hyperlink;
    rest.ext = before.ext;
    rest.proportional = before.proportional;
    rest.pictureWidth = before.pictureWidth;
    rest.pictureHeight = before.pictureHeight;
    rest.left = before.left;
    rest.top = before.top;
    rest.width = before.width;
    rest.height = before.height;
    rest.ext.extLong[1] = p.ext.extLong[1];  // the stacking position is the page's
    EXPECT_EQ(rest, before);
    EXPECT_EQ(pic(2), session->page(slot).pictures[2]);

    ASSERT_EQ(doc->undoRing().pos, stepsBefore + 1);
    EXPECT_EQ(doc->undoRing().aktion[static_cast<std::size_t>(doc->undoRing().pos)], "ändern");
    doc->MachUndo();
    EXPECT_EQ(pic(1), before);
}

TEST_F(PicturePropertiesTest, OriginalSizeTakesThePicturesSize) {
    PicturePropertiesModel m(*session, slot, 1);
    m.open(prompter);
    m.fields().originalSize = true;
    m.ok(*doc);
    EXPECT_EQ((editor::Box{pic(1).left, pic(1).top, pic(1).width, pic(1).height}), (editor::Box{40, 60, 80, 40}));
    EXPECT_EQ(pic(1).ext.extLong[0], -1);
    EXPECT_EQ(pic(1).ext.extText[0], "15,50,50,8421504,None,0,");
    EXPECT_EQ(pic(1).ext.extText[1], "");
    EXPECT_EQ(pic(1).ext.extText[2], "80");
}

TEST_F(PicturePropertiesTest, CancelLeavesThePageByteIdentical) {
    pic(1).ext.extText[1] = "Feuer,1,2";  // unknown: kept until an OK
    ASSERT_TRUE(writePageFile(path("vorher.apg"), session->page(slot)).ok());
    const std::string second = readBytes("Seite2.apg");
    const int steps = doc->undoRing().pos;
    {
        PicturePropertiesModel m(*session, slot, 1);
        m.open(prompter);
        EXPECT_EQ(m.fields().animation.kind, AnimationKind::None);
        m.choosePicture(path("berg.bmp"), prompter);
        m.fields().frame.on = true;
        m.fields().hyperlink = "http://example.org/";
        m.fields().allOnAllPages = true;
        m.setFrameFromBackground(true);
    }  // Cancel: the dialog goes without OK
    ASSERT_TRUE(writePageFile(path("nachher.apg"), session->page(slot)).ok());
    EXPECT_EQ(readBytes("nachher.apg"), readBytes("vorher.apg"));
    EXPECT_EQ(doc->undoRing().pos, steps);
    EXPECT_EQ(readBytes("Seite2.apg"), second);
}

TEST_F(PicturePropertiesTest, FrameFromThePageBackgroundIsItsTexture) {
    session->page(slot).background = path("see.bmp");
    PicturePropertiesModel m(*session, slot, 1);
    m.open(prompter);
    m.fields().frame.on = true;
    m.setFrameFromBackground(true);
    EXPECT_EQ(m.frameSpec(), "15,50,50,8421504," + path("see.bmp") + ",1,");
    m.ok(*doc);
    PicturePropertiesModel again(*session, slot, 1);
    again.open(prompter);
    EXPECT_TRUE(again.fields().frameFromBackground);
    again.setFrameFromBackground(false);
    EXPECT_EQ(again.frameSpec(), "15,50,50,8421504,None,1,");
}

TEST_F(PicturePropertiesTest, IconIsOfferedAsJpeg) {
    writeBytes("symbol.ico", iconBytes());
    PicturePropertiesModel m(*session, slot, 1);
    m.open(prompter);
    prompter.answers = {kNo};
    ASSERT_TRUE(m.choosePicture(path("symbol.ico"), prompter));
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0],
              "message|Frage|36|Der ausgewählte Dateityp: ico wird nicht von allen Internetbrowsern unterstützt!\r\n"
              "Soll dieser Dateityp ins JPEG Format umgewandelt werden?");
    EXPECT_EQ(m.fields().path, path("symbol.ico"));
    EXPECT_FALSE(std::filesystem::exists(path("symbol.jpg")));

    session->state().language = Language::English;
    prompter.answers = {kYes};
    ASSERT_TRUE(m.choosePicture(path("symbol.ico"), prompter));
    EXPECT_EQ(prompter.asked[1],
              "message|Question|36|The selected filetype: ico is not provided at all internet browsers!\r\n"
              "Should this filetype transformed to JPEG format?");
    ASSERT_EQ(prompter.asked.size(), 2u) << prompter.asked.back();
    EXPECT_EQ(m.fields().path, path("symbol.jpg"));
    EXPECT_EQ(m.fields().pictureWidth, 4);
    EXPECT_EQ(m.fields().pictureHeight, 2);
    EXPECT_TRUE(std::filesystem::exists(path("symbol.jpg")));
}

TEST_F(PicturePropertiesTest, AllPicturesOnThisPageGetTheFrame) {
    PicturePropertiesModel m(*session, slot, 1);
    m.open(prompter);
    m.fields().frame = FrameSettings{true, 6, 50, 50, 0, ""};
    m.fields().allOnThisPage = true;
    const int steps = doc->undoRing().pos;
    m.ok(*doc);
    EXPECT_EQ(pic(1).ext.extText[0], "6,50,50,0,None,1,");
    EXPECT_EQ(pic(2).ext.extText[0], "6,50,50,0,None,1,");
    EXPECT_EQ(pic(2).ext.extText[2], "72");
    EXPECT_EQ(pic(2).ext.extText[3], "102");
    EXPECT_EQ(pic(3).ext.extText[0], "");  // deleted
    EXPECT_EQ(doc->undoRing().pos, steps + 2);
    // Nothing on the closed pages.
    EXPECT_EQ(session->album().pages[2].slot, 0);
}

TEST_F(PicturePropertiesTest, AllPicsOnAllPagesChangesAClosedPageOnDiskAndNothingElse) {
    const std::string album = readBytes("Test.apr");
    const std::string third = readBytes("Seite3.apg");
    PageFile before;
    ASSERT_TRUE(readPageFile(path("Seite2.apg"), {}, before).ok());
    PicturePropertiesModel m(*session, slot, 1);
    m.open(prompter);
    m.fields().frame = FrameSettings{true, 7, 30, 70, 0xFF, ""};
    m.fields().allOnAllPages = true;
    m.ok(*doc);

    EXPECT_EQ(pic(2).ext.extText[0], "7,30,70,255,None,1,");  // this page too
    PageFile after;
    ASSERT_TRUE(readPageFile(path("Seite2.apg"), {}, after).ok());
    PageRecord expected = before.page;
    expected.pictures[1].ext.extText[0] = "7,30,70,255,None,1,";
    expected.pictures[1].ext.extText[2] = "134";
    expected.pictures[1].ext.extText[3] = "74";
    EXPECT_EQ(after.page.pictures[2], before.page.pictures[2]);  // deleted
    EXPECT_EQ(after.page, expected);
    EXPECT_EQ(readBytes("Seite3.apg"), third);  // no pictures: not written
    EXPECT_EQ(readBytes("Test.apr"), album);
    // The closed pages stay closed; the open page waits for its save.
    EXPECT_EQ(session->album().pages[2].slot, 0);
    EXPECT_EQ(session->album().pages[3].slot, 0);
    EXPECT_TRUE(isTrue(session->state().pageSlots[slot].modified));
    EXPECT_TRUE(prompter.asked.empty());
}

}  // namespace
