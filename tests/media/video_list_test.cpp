#include <gtest/gtest.h>

#include <filesystem>

#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "media/video_list.h"
#include "support/temp_home.h"
#include "video_probe.h"

namespace brindle {
namespace {

namespace fs = std::filesystem;

class VideoListTest : public test::TempHomeTest {
protected:
    std::string bitmap(const std::string& name, int w, int h, int n = 0) {
        const std::string p = path(name);
        EXPECT_TRUE(SaveDIBFile(test::framePicture(w, h, n), p, 100)) << p;
        return p;
    }
};

TEST_F(VideoListTest, HeadersGiveSizeAndDepth) {
    media::BitmapFormat f;
    ASSERT_TRUE(media::readBitmapFormat(bitmap("a.bmp", 37, 21), f));
    EXPECT_EQ(f, (media::BitmapFormat{37, 21, 24}));
    // A top-down 32-bit file built by hand: negative height, depth 32.
    std::string bytes = "BM" + std::string(12, '\0');
    std::string info(40, '\0');
    info[0] = 40;
    info[4] = 5;                                          // width 5
    info[8] = static_cast<char>(0xFD);                    // height -3
    info[9] = info[10] = info[11] = static_cast<char>(0xFF);
    info[12] = 1;
    info[14] = 32;
    writeBytes("b.bmp", bytes + info);
    ASSERT_TRUE(media::readBitmapFormat(path("b.bmp"), f));
    EXPECT_EQ(f, (media::BitmapFormat{5, 3, 32}));
    info[8] = info[9] = info[10] = 0;
    info[11] = static_cast<char>(0x80);  // height -2^31 has no positive twin
    writeBytes("huge.bmp", bytes + info);
    EXPECT_FALSE(media::readBitmapFormat(path("huge.bmp"), f));
    writeBytes("short.bmp", "BM1234");
    EXPECT_FALSE(media::readBitmapFormat(path("short.bmp"), f));
    writeBytes("c.txt", std::string(64, 'x'));
    EXPECT_FALSE(media::readBitmapFormat(path("c.txt"), f));
}

TEST_F(VideoListTest, EveryEntryMatchesTheFirstInSizeAndDepth) {
    media::VideoList list;
    EXPECT_FALSE(list.add(bitmap("1.bmp", 40, 30, 0), Language::English));
    EXPECT_FALSE(list.add(bitmap("2.bmp", 40, 30, 1), Language::English));

    auto refused = list.add(bitmap("3.bmp", 41, 30), Language::English);
    ASSERT_TRUE(refused);
    EXPECT_EQ(refused->text, "Chosen bitmap file is a different format!");
    EXPECT_EQ(refused->title, "Brindlesee Videomaker");
    refused = list.add(path("3.bmp"), Language::German);
    ASSERT_TRUE(refused);
    EXPECT_EQ(refused->text, "Gewähltes Bitmap hat ein unterschiedliches Format!");

    refused = list.add(path("missing.bmp"), Language::German);
    ASSERT_TRUE(refused);
    EXPECT_EQ(refused->title, "Fehler");
    EXPECT_EQ(refused->text, "Diese Datei wird nicht unterstützt.");

    EXPECT_EQ(list.paths(), (std::vector<std::string>{path("1.bmp"), path("2.bmp")}));
    list.clear();
    EXPECT_TRUE(list.empty());
    EXPECT_FALSE(list.add(path("3.bmp"), Language::English));  // a new first entry sets the format
    EXPECT_EQ(list.format().width, 41);
}

TEST_F(VideoListTest, OtherFormatsBecomeBitmapsInAviTemp) {
    const std::string bmp = bitmap("as_is.bmp", 20, 10);
    ASSERT_TRUE(SaveJPG(test::framePicture(20, 10, 1), path("photo.jpeg"), 95));
    writeBytes("notes.png", "not looked at");
    touch("AVITemp/old/stale.bmp");

    std::vector<std::string> said;
    const media::ProvidedBitmaps got = media::provideBitmaps(
        {bmp, path("photo.jpeg"), path("notes.png")}, home(), Language::English,
        [&said](const std::string& s) { said.push_back(s); });

    EXPECT_EQ(said, (std::vector<std::string>{"Please wait while the bitmaps will be provided"}));
    ASSERT_EQ(got.bitmaps.size(), 2u);
    EXPECT_EQ(got.bitmaps[0], bmp);
    EXPECT_EQ(got.bitmaps[1], path("AVITemp/2_photo.bmp"));
    media::BitmapFormat f;
    ASSERT_TRUE(media::readBitmapFormat(got.bitmaps[1], f));
    EXPECT_EQ(f, (media::BitmapFormat{20, 10, 24}));
    ASSERT_EQ(got.messages.size(), 1u);
    EXPECT_EQ(got.messages[0].title, "Fehler");
    EXPECT_EQ(got.messages[0].text, "This filetype is not supported.");
    EXPECT_FALSE(fs::exists(path("AVITemp/old")));  // emptied first
}

}  // namespace
}  // namespace brindle
