// brindlesee-cli convert, imageinfo and rotate, run as a user would.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>

#include "image/file_stamp.h"
#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "image_compare.h"
#include "support/temp_home.h"

namespace brindle::test {
namespace {

class CliImage : public TempHomeTest {
  protected:
    struct Run {
        int status = -1;
        std::string out, err;
    };
    Run cli(const std::string& args) {
        const std::string command = std::string(BRINDLESEE_CLI) + " " + args + " >'" +
                                    path("out.txt") + "' 2>'" + path("err.txt") + "'";
        Run r;
        const int raw = std::system(command.c_str());
        r.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
        r.out = readBytes("out.txt");
        r.err = readBytes("err.txt");
        return r;
    }
    std::string q(const std::string& name) { return "'" + path(name) + "'"; }
    cDIBSection loadFile(const std::string& name) {
        PictureFile f = LoadPictureFile(path(name));
        EXPECT_TRUE(f.picture) << name;
        return f.picture ? *f.picture.Handle() : cDIBSection{};
    }
};

TEST_F(CliImage, ConvertReadsAnyTypeAndWritesTheTypeTheNameSays) {
    const cDIBSection dib = smoothPicture(120, 80);
    ASSERT_TRUE(SaveDIBFile(dib, path("in.png"), 90).ok);
    Run r = cli("convert " + q("in.png") + " " + q("out.bmp"));
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(sameImage(dib, loadFile("out.bmp")));
    r = cli("convert " + q("out.bmp") + " " + q("small.jpg") + " --quality 70 --size 60x40");
    EXPECT_EQ(r.status, 0) << r.err;
    const cDIBSection small = loadFile("small.jpg");
    EXPECT_EQ(small.Width(), 60);
    EXPECT_EQ(small.Height(), 40);
    r = cli("convert " + q("small.jpg") + " " + q("small.gif"));
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(readBytes("small.gif").substr(0, 6), "GIF87a");
}

TEST_F(CliImage, ImageInfoPrintsJson) {
    ASSERT_TRUE(SaveDIBFile(smoothPicture(31, 17), path("a.png"), 90).ok);
    const Run r = cli("imageinfo " + q("a.png"));
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out,
              "{\n  \"width\": 31,\n  \"height\": 17,\n  \"depth\": 24,\n  \"imageType\": 3\n}\n");
}

TEST_F(CliImage, RotateTurnsJpegsLosslesslyAndKeepsTheFileTime) {
    ASSERT_TRUE(SaveJPG(smoothPicture(64, 32), path("p.jpg"), 90).ok);
    FileStamp stamp = readFileStamp(path("p.jpg"));
    stamp.modified = {981173106, 0};
    ASSERT_TRUE(applyFileStamp(path("p.jpg"), stamp));
    ASSERT_TRUE(SaveAsRotatedJpgLossless(path("p.jpg"), path("expected.jpg"), kJpegRotate90));
    Run r = cli("rotate right " + q("p.jpg"));
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(readBytes("p.jpg"), readBytes("expected.jpg"));
    EXPECT_EQ(readFileStamp(path("p.jpg")).modified.tv_sec, 981173106);

    const cDIBSection dib = noisePicture(5, 3, 71);
    ASSERT_TRUE(SaveDIBFile(dib, path("n.png"), 90).ok);
    r = cli("rotate left " + q("n.png"));
    EXPECT_EQ(r.status, 0) << r.err;
    cDIBSection left = dib;
    left.effectBildDrehen90(-90);
    EXPECT_TRUE(sameImage(left, loadFile("n.png")));
}

TEST_F(CliImage, BadInputGivesOneLineAndExitOne) {
    writeBytes("text.png", "just text");
    ASSERT_TRUE(SaveDIBFile(smoothPicture(8, 8), path("ok.png"), 90).ok);
    struct Case {
        std::string args, message;
    } cases[] = {
        {"convert " + q("none.png") + " " + q("x.jpg"), "file not found: " + path("none.png")},
        {"convert " + q("ok.png") + " " + q("x.xyz"),
         "cannot write this picture type: " + path("x.xyz") +
             " (.jpg, .jpeg, .bmp, .png, .tif, .tiff or .gif)"},
        {"convert " + q("ok.png") + " " + q("x.jpg") + " --quality 101",
         "quality must be a number from 0 to 100: 101"},
        {"convert " + q("ok.png") + " " + q("x.jpg") + " --size 10y10",
         "size must be WIDTHxHEIGHT, both above 0: 10y10"},
        {"convert " + q("text.png") + " " + q("x.jpg"),
         "cannot read the picture: " + path("text.png")},
        {"imageinfo " + q("text.png"), "not a PNG, GIF, JPEG or BMP picture: " + path("text.png")},
        {"rotate up " + q("ok.png"), "usage: brindlesee-cli rotate left|right FILE"},
        {"rotate left " + q("none.jpg"), "file not found: " + path("none.jpg")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.args);
        const Run r = cli(c.args);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.err, "brindlesee-cli: " + c.message + "\n");
        EXPECT_EQ(r.out, "");
    }
}

}  // namespace
}  // namespace brindle::test
