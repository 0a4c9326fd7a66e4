// brindlesee-cli resize and split: what is written, what is printed, and
// the exit status on bad input and failed writes.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <sstream>

#include "cli_run.h"
#include "image/picture_io.h"
#include "image/image_compare.h"
#include "support/temp_home.h"

namespace brindle::test {
namespace {

namespace fs = std::filesystem;

Bgr origin(int x, int y) { return {x * 9 % 256, y * 17 % 256, (x + y) * 5 % 256}; }

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> out;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) out.push_back(line);
    return out;
}

cDIBSection load(const std::string& path) {
    const PictureFile file = LoadPictureFile(path);
    return file.picture ? *file.picture.Handle() : cDIBSection{};
}

class CliResizeSplitTest : public TempHomeTest {
  protected:
    CliRun cli(const std::string& args, const std::string& prefix = "") { return runCli(args, path("err"), prefix); }
    std::string err() { return readBytes("err"); }
    std::string q(const std::string& name) { return "'" + path(name) + "'"; }
    void picture(const std::string& name, int width, int height) {
        fs::create_directories(fs::path(path(name)).parent_path());
        ASSERT_TRUE(SaveDIBFile(makeDib(width, height, origin), path(name), 100));
    }
};

TEST_F(CliResizeSplitTest, SplitPrintsTheTilesItWroteAndTheProgress) {
    picture("bilder/feld.png", 12, 8);
    const CliRun r = cli("split " + q("bilder/feld.png") + " --rows 2 --cols 3 --by-column");
    ASSERT_EQ(r.status, 0) << err();
    std::vector<std::string> expected;
    for (int n = 1; n <= 6; ++n) expected.push_back(path("bilder/feldNr" + std::to_string(n) + ".png"));
    EXPECT_EQ(lines(r.out), expected);
    EXPECT_EQ(err(), "[1/1] " + path("bilder/feld.png") + "\n");
    // Column by column: tile 2 is the lower left one.
    const cDIBSection expectedTile = makeDib(4, 4, [](int x, int y) { return origin(x, 4 + y); });
    EXPECT_TRUE(sameImage(expectedTile, load(path("bilder/feldNr2.png"))));
}

TEST_F(CliResizeSplitTest, SplitRefusesBadInputWithTheMessage) {
    picture("feld.png", 12, 8);
    struct Case {
        std::string args;
        std::string message;
    };
    const std::vector<Case> cases = {
        {"split " + q("feld.png") + " --rows 0 --cols 2", "The numbers of rows and columns must be at least 1."},
        {"split " + q("feld.png") + " --rows 2", "usage: brindlesee-cli split PICTURE... --rows R --cols C [--by-column]"},
        {"split " + q("fehlt.png") + " --rows 2 --cols 2", "file not found: " + path("fehlt.png")},
        {"split " + q("feld.png") + " --rows 2 --cols zwei", "columns must be a number: zwei"},
        {"split " + q("feld.png") + " --rows 1 --cols 13", "The picture is too small for 1 x 13 tiles: " + path("feld.png")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.args);
        const CliRun r = cli(c.args);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.out, "");
        EXPECT_NE(err().find("brindlesee-cli: " + c.message + "\n"), std::string::npos) << err();
    }
    EXPECT_FALSE(fs::exists(path("feldNr1.png")));
}

TEST_F(CliResizeSplitTest, SplitWithATileThatCannotBeWrittenExitsWithOne) {
    picture("feld.png", 12, 8);
    fs::create_directories(path("feldNr3.png"));
    const CliRun r = cli("split " + q("feld.png") + " --rows 2 --cols 2");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(lines(r.out), (std::vector<std::string>{path("feldNr1.png"), path("feldNr2.png")}));
    EXPECT_NE(err().find("brindlesee-cli: Error while writing the file: " + path("feldNr3.png") + "\n"),
              std::string::npos)
        << err();
}

TEST_F(CliResizeSplitTest, ResizeByPixelsAndByPercentBesideTheOriginalOrIntoAFolder) {
    picture("a/foto.png", 40, 30);
    picture("b/bild.bmp", 10, 20);
    CliRun r = cli("resize " + q("a/foto.png") + " " + q("b/bild.bmp") + " --size 20x10");
    ASSERT_EQ(r.status, 0) << err();
    EXPECT_EQ(lines(r.out), (std::vector<std::string>{path("a/foto_20x10.png"), path("b/bild_20x10.bmp")}));
    EXPECT_EQ(load(path("a/foto_20x10.png")).Width(), 20);
    EXPECT_EQ(load(path("a/foto_20x10.png")).Height(), 10);
    EXPECT_NE(err().find("[2/2] "), std::string::npos) << err();

    r = cli("resize " + q("a/foto.png") + " --percent 50");
    ASSERT_EQ(r.status, 0) << err();
    EXPECT_EQ(lines(r.out), std::vector<std::string>{path("a/foto_50pct.png")});
    const cDIBSection half = load(path("a/foto_50pct.png"));
    EXPECT_EQ(half.Width(), 20);
    EXPECT_EQ(half.Height(), 15);

    r = cli("resize " + q("a/foto.png") + " --percent 25 --out " + q("klein"));
    ASSERT_EQ(r.status, 0) << err();
    EXPECT_EQ(lines(r.out), std::vector<std::string>{path("klein/foto.png")});
    EXPECT_EQ(load(path("klein/foto.png")).Width(), 10);
    EXPECT_EQ(load(path("klein/foto.png")).Height(), 7);
    // The original is untouched.
    EXPECT_TRUE(sameImage(makeDib(40, 30, origin), load(path("a/foto.png"))));
}

TEST_F(CliResizeSplitTest, ResizeRefusesBadInputWithTheMessage) {
    picture("foto.png", 40, 30);
    writeBytes("datei", "x");
    const std::string usage = "usage: brindlesee-cli resize PICTURE... (--size WxH | --percent P) [--out DIR]";
    struct Case {
        std::string args;
        std::string message;
    };
    const std::vector<Case> cases = {
        {"resize " + q("foto.png"), usage},
        {"resize " + q("foto.png") + " --size 10x10 --percent 20", usage},
        {"resize " + q("foto.png") + " --size 0x10", "Width and height must be at least 1 pixel."},
        {"resize " + q("foto.png") + " --size 10", "size must be WIDTHxHEIGHT: 10"},
        {"resize " + q("foto.png") + " --percent 0", "The percentages must lie between 1 and 1000."},
        {"resize " + q("fehlt.jpg") + " --percent 50", "file not found: " + path("fehlt.jpg")},
        {"resize " + q("foto.png") + " --percent 50 --out " + q("datei/unter"),
         "cannot make the folder: " + path("datei/unter")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.args);
        const CliRun r = cli(c.args);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.out, "");
        EXPECT_EQ(err(), "brindlesee-cli: " + c.message + "\n");
    }
    EXPECT_FALSE(fs::exists(path("foto_50pct.png")));
}

TEST_F(CliResizeSplitTest, ResizeOfAnUnreadablePictureSaysSoAndExitsWithOne) {
    picture("gut.png", 40, 30);
    writeBytes("leer.png", "");
    const CliRun r = cli("resize " + q("leer.png") + " " + q("gut.png") + " --size 4x3");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(lines(r.out), std::vector<std::string>{path("gut_4x3.png")});
    EXPECT_NE(err().find("brindlesee-cli: 1 of 2 pictures could not be read\n"), std::string::npos) << err();
}

TEST_F(CliResizeSplitTest, ResizeIntoAFolderItMayNotWriteExitsWithOne) {
    picture("ro/foto.png", 40, 30);
    ::chmod(home().c_str(), 0755);
    ::chmod(path("ro/foto.png").c_str(), 0644);
    ::chmod(path("ro").c_str(), 0555);
    // Root writes anywhere, so the program runs as "nobody".
    const std::string asNobody = ::geteuid() == 0 ? "setpriv --reuid=65534 --regid=65534 --clear-groups " : "";
    const CliRun r = cli("resize " + q("ro/foto.png") + " --size 20x10", asNobody);
    ::chmod(path("ro").c_str(), 0755);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_NE(err().find("brindlesee-cli: "), std::string::npos) << err();
    EXPECT_NE(err().find(path("ro/foto_20x10.png")), std::string::npos) << err();
    EXPECT_FALSE(fs::exists(path("ro/foto_20x10.png")));
}

}  // namespace
}  // namespace brindle::test
