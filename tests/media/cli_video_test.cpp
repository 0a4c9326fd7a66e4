#include <gtest/gtest.h>

#include <filesystem>

#include "cli_run.h"
#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "support/temp_home.h"
#include "video_probe.h"

namespace brindle {
namespace {

namespace fs = std::filesystem;

class CliVideo : public test::TempHomeTest {};

TEST_F(CliVideo, BitmapsAndJpegsMakeOneVideo) {
    ASSERT_TRUE(SaveDIBFile(test::framePicture(64, 48, 0), path("a.bmp"), 100));
    ASSERT_TRUE(SaveJPG(test::framePicture(64, 48, 1), path("b.jpg"), 95));
    ASSERT_TRUE(SaveDIBFile(test::framePicture(64, 48, 2), path("c.bmp"), 100));
    const std::string pics = "'" + path("a.bmp") + "' '" + path("b.jpg") + "' '" + path("c.bmp") + "'";

    test::CliRun r = test::runCli("video " + pics + " -o '" + path("out.avi") + "' --fps 12", path("err.txt"));
    ASSERT_EQ(r.status, 0) << readBytes("err.txt");
    EXPECT_TRUE(r.out.empty());
    EXPECT_EQ(readBytes("err.txt"),
              "Please wait while the bitmaps will be provided\nFrame number 0 saved\nFrame number 1 saved\n"
              "Frame number 2 saved\nFinished!\nwrote " + path("out.avi") + " (3 frames, mjpeg, 12 fps)\n");
    test::ProbedVideo v = test::probeVideo(path("out.avi"));
    EXPECT_EQ(v.frames, 3);
    EXPECT_EQ(v.rate, "12/1");
    EXPECT_TRUE(fs::exists(path("AVITemp/2_b.bmp")));  // the JPEG went through "AVITemp"
    ASSERT_TRUE(test::decodeFrame(path("out.avi"), 0, path("first.png")));
    const PictureFile first = LoadPictureFile(path("first.png"));
    ASSERT_TRUE(first.picture);
    EXPECT_GE(test::psnr(test::framePicture(64, 48, 0), *first.picture.Handle()), 35.0);

    r = test::runCli("video " + pics + " -o '" + path("out.mp4") + "'", path("err.txt"));
    ASSERT_EQ(r.status, 0) << readBytes("err.txt");
    v = test::probeVideo(path("out.mp4"));
    EXPECT_EQ(v.frames, 3);
    EXPECT_EQ(v.rate, "15/1");
}

TEST_F(CliVideo, BadInputIsRefusedWithTheReason) {
    ASSERT_TRUE(SaveDIBFile(test::framePicture(64, 48, 0), path("a.bmp"), 100));
    ASSERT_TRUE(SaveDIBFile(test::framePicture(65, 48, 1), path("wide.bmp"), 100));
    writeBytes("n.png", "x");
    const std::string a = "'" + path("a.bmp") + "' ";
    const std::string out = " -o '" + path("out.avi") + "'";
    struct Case {
        std::string args, message;
    } cases[] = {
        {a + "'" + path("wide.bmp") + "'" + out,
         "Chosen bitmap file is a different format! (" + path("wide.bmp") + ")"},
        {a + "'" + path("n.png") + "'" + out, "This filetype is not supported. (" + path("n.png") + ")"},
        {a + "'" + path("none.bmp") + "'" + out, "file not found: " + path("none.bmp")},
        {a + out + " --fps 31", "fps must be a number from 1 to 30: 31"},
        {a + out + " --fps 0", "fps must be a number from 1 to 30: 0"},
        {a + "-o '" + path("out.mkv") + "'", "Videos are written as .avi or .mp4."},
        {a, "usage: brindlesee-cli video PICTURE... -o OUT.avi|OUT.mp4 [--fps N]"},
        {a + "-o '" + path("no/dir/out.avi") + "'", "There was an error writing the file."},
    };
    for (const Case& c : cases) {
        const test::CliRun r = test::runCli("video " + c.args, path("err.txt"));
        EXPECT_EQ(r.status, 1) << c.args;
        const std::string err = readBytes("err.txt");
        EXPECT_NE(err.find("brindlesee-cli: " + c.message + "\n"), std::string::npos) << err;
    }
    EXPECT_FALSE(fs::exists(path("out.avi")));
}

}  // namespace
}  // namespace brindle
