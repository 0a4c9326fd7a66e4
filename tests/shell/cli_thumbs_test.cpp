// brindlesee-cli thumbs: the explorer's cache filled from the command
// line, its progress, and the exit status.
#include <gtest/gtest.h>

#include <filesystem>

#include "cli_run.h"
#include "explorer/cache_folder.h"
#include "image/image_compare.h"
#include "image/jpeg_io.h"
#include "support/temp_home.h"

namespace brindle::test {
namespace {

namespace fs = std::filesystem;

class CliThumbsTest : public TempHomeTest {
  protected:
    CliRun cli(const std::string& args) { return runCli(args, path("err")); }
    std::string err() { return readBytes("err"); }
    void jpeg(const std::string& name, int width, int height) {
        fs::create_directories(fs::path(path(name)).parent_path());
        ASSERT_TRUE(SaveJPG(smoothPicture(width, height), path(name), 90).ok);
    }
};

TEST_F(CliThumbsTest, FillsTheCacheAndTellsWhatItCouldNotRead) {
    jpeg("Bilder/a.jpg", 400, 300);
    jpeg("Bilder/b.JPG", 90, 240);
    writeBytes("Bilder/kaputt.jpg", "not a picture");
    writeBytes("Bilder/lied.mp3", "ID3");
    writeBytes("Bilder/notiz.txt", "not listed");

    const std::string cacheFolder =
        path("Thumbnails/") + explorer::thumbnailFolderName(path("Bilder")) + "/";
    CliRun r = cli("thumbs '" + path("Bilder") + "' --size 100");
    EXPECT_EQ(r.status, 1) << "one picture could not be read";
    EXPECT_EQ(r.out, cacheFolder + "\n");
    const std::string e = err();
    EXPECT_NE(e.find("[4/4] "), std::string::npos) << e;
    EXPECT_NE(e.find("brindlesee-cli: cannot read: " + path("Bilder/kaputt.jpg") + "\n"),
              std::string::npos)
        << e;
    EXPECT_NE(e.find("4 files: 2 made, 0 from the cache, 1 media, 1 unreadable\n"),
              std::string::npos)
        << e;
    EXPECT_EQ(e.find("notiz"), std::string::npos);

    const std::string a =
        readBytes("Thumbnails/" + explorer::thumbnailFolderName(path("Bilder")) + "/a.jpg.jpg");
    ASSERT_GT(a.size(), 13u);
    EXPECT_EQ(a.substr(a.size() - 13), std::string("\r000400000300"));
    int w = 0, h = 0;
    ASSERT_TRUE(readJpegSize(a, w, h));
    EXPECT_EQ(w * 1000 + h, 100075);
    const std::string b =
        readBytes("Thumbnails/" + explorer::thumbnailFolderName(path("Bilder")) + "/b.JPG.jpg");
    ASSERT_GT(b.size(), 13u);
    EXPECT_EQ(b.substr(b.size() - 13), std::string("\r000090000240"));
    EXPECT_FALSE(fs::exists(cacheFolder + "kaputt.jpg.jpg"));
    EXPECT_FALSE(fs::exists(cacheFolder + "lied.mp3.jpg"));

    // Once the broken one is gone, a second run reads the cache alone.
    fs::remove(path("Bilder/kaputt.jpg"));
    r = cli("thumbs '" + path("Bilder/") + "' --size 100 --threads 1");
    EXPECT_EQ(r.status, 0) << err();
    EXPECT_NE(err().find("3 files: 0 made, 2 from the cache, 1 media, 0 unreadable\n"),
              std::string::npos)
        << err();
}

TEST_F(CliThumbsTest, BadInputEndsWithTheMessage) {
    CliRun r = cli("thumbs '" + path("fehlt") + "'");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(err(), "brindlesee-cli: no such folder: " + path("fehlt") + "\n");
    EXPECT_FALSE(fs::exists(path("Thumbnails")));

    fs::create_directories(path("Bilder"));
    const std::string usage =
        "brindlesee-cli: usage: brindlesee-cli thumbs FOLDER [--size N] [--threads N] "
        "[--english|--german]\n";
    for (const char* bad : {"--size 0", "--size x", "--size", "--fast", "--threads 0"}) {
        SCOPED_TRACE(bad);
        r = cli("thumbs '" + path("Bilder") + "' " + bad);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(err(), usage);
    }
    r = cli("thumbs");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(err(), usage);
    r = cli("thumbs '" + path("Bilder") + "'");
    EXPECT_EQ(r.status, 0) << "an empty folder is done at once";
    EXPECT_EQ(err(), "0 files: 0 made, 0 from the cache, 0 media, 0 unreadable\n");
}

}  // namespace
}  // namespace brindle::test
