// Cutting pictures into tiles: the tiles' pixels against the source, their
// names and both numberings, the dropped remainder, and every message.
#include "studio/split_pictures.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "image/jpeg_io.h"
#include "image/jpeg_quality.h"
#include "image/picture_io.h"
#include "image/image_compare.h"
#include "support/scripted_prompter.h"
#include "support/temp_home.h"

namespace brindle::test {
namespace {

namespace fs = std::filesystem;
using studio::SplitOptions;
using studio::TileOrder;

// Every pixel tells where it came from.
Bgr origin(int x, int y) { return {x * 20 % 256, y * 30 % 256, (x * 7 + y * 13) % 256}; }

std::set<std::string> filesIn(const std::string& dir) {
    std::set<std::string> names;
    for (const auto& e : fs::directory_iterator(dir)) names.insert(e.path().filename().string());
    return names;
}

cDIBSection load(const std::string& path) {
    const PictureFile file = LoadPictureFile(path);
    return file.picture ? *file.picture.Handle() : cDIBSection{};
}

class SplitPicturesTest : public TempHomeTest {
  protected:
    // An 11 x 7 picture: 3 columns of 3 leave 2 columns over, 2 rows of 3 leave one row.
    std::string writeSource(const std::string& name, int width = 11, int height = 7) {
        const std::string p = path(name);
        fs::create_directories(fs::path(p).parent_path());
        EXPECT_TRUE(SaveDIBFile(makeDib(width, height, origin), p, 100));
        return p;
    }
    ScriptedPrompter prompter;
};

TEST(TileNumbers, StartAtOneAndFollowTheChosenOrder) {
    // Two rows of three columns.
    const int rowByRow[2][3] = {{1, 2, 3}, {4, 5, 6}};
    const int columnByColumn[2][3] = {{1, 3, 5}, {2, 4, 6}};
    for (int r = 0; r < 2; ++r) {
        for (int c = 0; c < 3; ++c) {
            SCOPED_TRACE("row " + std::to_string(r) + " column " + std::to_string(c));
            EXPECT_EQ(studio::tileNumber(r, c, 2, 3, TileOrder::RowByRow), rowByRow[r][c]);
            EXPECT_EQ(studio::tileNumber(r, c, 2, 3, TileOrder::ColumnByColumn), columnByColumn[r][c]);
        }
    }
}

TEST(TileNames, StemNrNumberAndTheExtension) {
    EXPECT_EQ(studio::tilePath("/a/urlaub.jpg", 3), "/a/urlaubNr3.jpg");
    EXPECT_EQ(studio::tilePath("/a/Urlaub.JPG", 12), "/a/UrlaubNr12.JPG");
    EXPECT_EQ(studio::tilePath("/a/b.c/bild.tiff", 1), "/a/b.c/bildNr1.tiff");
    // The last "." of the name splits, not a "." of a folder.
    EXPECT_EQ(studio::tilePath("/a/b.c/bild.v2.png", 4), "/a/b.c/bild.v2Nr4.png");
    // Types the tiles cannot be written in become PNG.
    EXPECT_EQ(studio::tilePath("/a/anim.gif", 2), "/a/animNr2.png");
    EXPECT_EQ(studio::tilePath("/a/b.c/ohne", 2), "/a/b.c/ohneNr2.png");
}

TEST_F(SplitPicturesTest, TilesHoldTheirPartNumberedRowByRowAndTheRemainderIsDropped) {
    const std::string source = writeSource("pics/feld.png");
    const studio::SplitResult result = studio::splitPictures({source}, SplitOptions{2, 3}, prompter, Language::English);
    EXPECT_TRUE(prompter.asked.empty());
    EXPECT_EQ(result.pictures, 1);
    EXPECT_EQ(result.failed, 0);
    ASSERT_EQ(result.written.size(), 6u);
    for (int n = 1; n <= 6; ++n) {
        SCOPED_TRACE("tile " + std::to_string(n));
        const std::string tile = path("pics/feldNr" + std::to_string(n) + ".png");
        EXPECT_EQ(result.written[static_cast<std::size_t>(n - 1)], tile);
        const int row = (n - 1) / 3, column = (n - 1) % 3;
        // 11 / 3 = 3 wide, 7 / 2 = 3 high: columns 9, 10 and row 6 are in no tile.
        const cDIBSection expected =
            makeDib(3, 3, [&](int x, int y) { return origin(column * 3 + x, row * 3 + y); });
        EXPECT_TRUE(sameImage(expected, load(tile)));
    }
    // Nothing else was written, and nowhere else.
    EXPECT_EQ(filesIn(path("pics")), (std::set<std::string>{"feld.png", "feldNr1.png", "feldNr2.png", "feldNr3.png",
                                                             "feldNr4.png", "feldNr5.png", "feldNr6.png"}));
}

TEST_F(SplitPicturesTest, ColumnByColumnCountsDownEachColumnFirst) {
    const std::string source = writeSource("feld.bmp", 12, 8);
    SplitOptions options{2, 3, TileOrder::ColumnByColumn};
    const studio::SplitResult result = studio::splitPictures({source}, options, prompter, Language::German);
    EXPECT_TRUE(prompter.asked.empty());
    ASSERT_EQ(result.written.size(), 6u);
    for (int n = 1; n <= 6; ++n) {
        SCOPED_TRACE("tile " + std::to_string(n));
        const int column = (n - 1) / 2, row = (n - 1) % 2;
        const cDIBSection expected =
            makeDib(4, 4, [&](int x, int y) { return origin(column * 4 + x, row * 4 + y); });
        EXPECT_TRUE(sameImage(expected, load(path("feldNr" + std::to_string(n) + ".bmp"))));
    }
}

TEST_F(SplitPicturesTest, JpegTilesAreJpegsOfQualityEighty) {
    const std::string source = path("foto.jpg");
    ASSERT_TRUE(SaveJPG(smoothPicture(64, 48), source, 95));
    const studio::SplitResult result = studio::splitPictures({source}, SplitOptions{1, 2}, prompter, Language::German);
    ASSERT_EQ(result.written, (std::vector<std::string>{path("fotoNr1.jpg"), path("fotoNr2.jpg")}));
    for (const std::string& tile : result.written) {
        SCOPED_TRACE(tile);
        std::ifstream in(tile, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(in), {}};
        int quality = 0, width = 0, height = 0;
        ASSERT_TRUE(estimateJpegQuality(bytes, quality));
        EXPECT_EQ(quality, 80);
        ASSERT_TRUE(readJpegSize(bytes, width, height));
        EXPECT_EQ(width, 32);
        EXPECT_EQ(height, 48);
    }
}

TEST_F(SplitPicturesTest, BadGridsAndUnreadablePicturesAreToldAndTheRunGoesOn) {
    const std::string small = writeSource("klein.png", 4, 3);
    const std::string large = writeSource("gross.png", 10, 10);
    const std::string broken = path("kaputt.png");
    writeBytes("kaputt.png", "not a picture at all");

    // Rows below 1: told once in the session's language, nothing cut.
    studio::SplitResult result = studio::splitPictures({large}, SplitOptions{0, 2}, prompter, Language::German);
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0],
              "message|Fehler|16|Die Zahl der Zeilen und der Spalten muss mindestens 1 sein.");
    EXPECT_TRUE(result.written.empty());
    prompter.asked.clear();
    result = studio::splitPictures({large}, SplitOptions{2, -1}, prompter, Language::English);
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0], "message|Error|16|The numbers of rows and columns must be at least 1.");
    prompter.asked.clear();

    // Five columns do not fit a picture 4 pixels wide; the next pictures are still cut.
    result = studio::splitPictures({small, broken, large}, SplitOptions{1, 5}, prompter, Language::English);
    ASSERT_EQ(prompter.asked.size(), 2u);
    EXPECT_EQ(prompter.asked[0], "message|Error|16|The picture is too small for 1 x 5 tiles: " + small);
    EXPECT_EQ(prompter.asked[1].rfind("message|", 0), 0u);
    EXPECT_NE(prompter.asked[1].find("kaputt.png"), std::string::npos) << prompter.asked[1];
    EXPECT_EQ(result.failed, 2);
    EXPECT_EQ(result.pictures, 1);
    EXPECT_EQ(result.written.size(), 5u);
    EXPECT_FALSE(fs::exists(path("kleinNr1.png")));
    EXPECT_TRUE(fs::exists(path("grossNr5.png")));
}

TEST_F(SplitPicturesTest, AFailedTileIsToldAndStopsThatPicture) {
    const std::string source = writeSource("teil.png", 9, 3);
    // A folder where the second tile should go makes its write fail, also as root.
    fs::create_directories(path("teilNr2.png"));
    const studio::SplitResult result = studio::splitPictures({source}, SplitOptions{1, 3}, prompter, Language::German);
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0], "message|Fehler|16|Fehler beim Schreiben der Datei: " + path("teilNr2.png"));
    EXPECT_EQ(result.written, std::vector<std::string>{path("teilNr1.png")});
    EXPECT_EQ(result.failed, 1);
    EXPECT_FALSE(fs::exists(path("teilNr3.png")));
}

TEST_F(SplitPicturesTest, ARunOverManyPicturesWritesTheBytesOfOneAtATime) {
    std::vector<std::string> together, alone;
    for (int i = 0; i < 4; ++i) {
        const std::string name = "p" + std::to_string(i) + ".jpg";
        fs::create_directories(path("zusammen"));
        fs::create_directories(path("einzeln"));
        ASSERT_TRUE(SaveJPG(smoothPicture(90 + i * 7, 60 + i * 5), path("zusammen/" + name), 92));
        fs::copy_file(path("zusammen/" + name), path("einzeln/" + name));
        together.push_back(path("zusammen/" + name));
        alone.push_back(path("einzeln/" + name));
    }
    const SplitOptions options{3, 2, TileOrder::ColumnByColumn};
    const studio::SplitResult all = studio::splitPictures(together, options, prompter, Language::German);
    ASSERT_EQ(all.written.size(), 24u);
    for (std::size_t i = 0; i < alone.size(); ++i) {
        const studio::SplitResult one = studio::splitPictures({alone[i]}, options, prompter, Language::German);
        ASSERT_EQ(one.written.size(), 6u);
        for (std::size_t t = 0; t < 6; ++t) {
            SCOPED_TRACE(one.written[t]);
            EXPECT_EQ(all.written[i * 6 + t], path("zusammen/p" + std::to_string(i) + "Nr" + std::to_string(t + 1) + ".jpg"));
            EXPECT_EQ(readBytes("zusammen/" + fs::path(all.written[i * 6 + t]).filename().string()),
                      readBytes("einzeln/" + fs::path(one.written[t]).filename().string()));
        }
    }
    EXPECT_TRUE(prompter.asked.empty());
}

TEST_F(SplitPicturesTest, ProgressAndCancelBetweenPictures) {
    const std::string a = writeSource("a.png", 4, 4);
    const std::string b = writeSource("b.png", 4, 4);
    std::vector<std::string> events;
    studio::SplitCallbacks callbacks;
    callbacks.status = [&](const std::string& s) { events.push_back("status " + s); };
    callbacks.progress = [&](int done, int total) {
        events.push_back("progress " + std::to_string(done) + "/" + std::to_string(total));
    };
    callbacks.cancelled = [&] { return events.size() >= 2; };
    const studio::SplitResult result =
        studio::splitPictures({a, b}, SplitOptions{2, 2}, prompter, Language::German, callbacks);
    EXPECT_EQ(events, (std::vector<std::string>{"status " + a, "progress 1/2"}));
    EXPECT_TRUE(result.cancelled);
    EXPECT_EQ(result.pictures, 1);
    EXPECT_EQ(result.written.size(), 4u);
    EXPECT_FALSE(fs::exists(path("bNr1.png")));
}

}  // namespace
}  // namespace brindle::test
