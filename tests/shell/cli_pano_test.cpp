#include <gtest/gtest.h>

#include <filesystem>

#include "album/file_io.h"
#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "panorama/synthetic_pictures.h"
#include "shell/cli_run.h"
#include "support/temp_home.h"

namespace brindle {
namespace {

class CliPano : public test::TempHomeTest {
protected:
    // Five 320 x 240 shots of one landscape at known places, as JPEG.
    std::string writeTiles() {
        const cDIBSection scene = test::landscape(1400, 280);
        const int xs[] = {0, 260, 530, 790, 1060};
        const int ys[] = {12, 6, 18, 10, 14};
        std::string args;
        for (int i = 0; i < 5; ++i) {
            const std::string p = path("shot" + std::to_string(i) + ".jpg");
            EXPECT_TRUE(SaveJPG(test::cut(scene, xs[i], ys[i], 320, 240), p, 95));
            args += "'" + p + "' ";
        }
        return args;
    }

    static void pictureSize(const std::string& file, int& w, int& h) {
        std::string bytes;
        ASSERT_TRUE(readWholeFile(file, bytes, 1 << 26).ok) << file;
        ASSERT_TRUE(readJpegSize(bytes, w, h));
    }

    std::string lastLine(const std::string& file) const {
        std::string text = readBytes(file);
        while (!text.empty() && text.back() == '\n') text.pop_back();
        return text.substr(text.rfind('\n') == std::string::npos ? 0 : text.rfind('\n') + 1);
    }
};

TEST_F(CliPano, FiveShotsGiveOnePictureOfTheRowsSize) {
    const std::string tiles = writeTiles();
    test::CliRun r = test::runCli("pano " + tiles + "-o '" + path("pano.jpg") + "' --smooth 24", path("err.txt"));
    ASSERT_EQ(r.status, 0) << readBytes("err.txt");
    int w = 0, h = 0;
    pictureSize(path("pano.jpg"), w, h);
    EXPECT_EQ(w, 1060 + 320);
    EXPECT_EQ(h, 240 + 12);  // the tops lie 6 .. 18
    const std::string err = readBytes("err.txt");
    EXPECT_NE(err.find("Searching the overlap: shot3.jpg - shot4.jpg\n"), std::string::npos) << err;
    EXPECT_NE(err.find("100 %\n"), std::string::npos);
    EXPECT_EQ(lastLine("err.txt"), "wrote " + path("pano.jpg") + " (1380 x 252)");
    EXPECT_TRUE(r.out.empty());

    r = test::runCli("pano " + tiles + "-o '" + path("crop.jpg") + "' --crop --no-gain --padding", path("err.txt"));
    ASSERT_EQ(r.status, 0) << readBytes("err.txt");
    pictureSize(path("crop.jpg"), w, h);
    EXPECT_EQ(w, 1380);
    EXPECT_EQ(h, 240 - 12);

    // Closed into a ring: the last shot is matched to the first, which it
    // overlaps by 60 columns in this scene.
    r = test::runCli("pano " + tiles + "-o '" + path("ring.jpg") + "' --360", path("err.txt"));
    ASSERT_EQ(r.status, 0) << readBytes("err.txt");
    EXPECT_NE(readBytes("err.txt").find("Searching the overlap: shot4.jpg - shot0.jpg"), std::string::npos);
}

TEST_F(CliPano, BadInputExitsWithTheMessage) {
    const cDIBSection scene = test::landscape(800, 300);
    ASSERT_TRUE(SaveJPG(test::cut(scene, 0, 0, 320, 240), path("a.jpg"), 95));
    ASSERT_TRUE(SaveJPG(test::cut(scene, 250, 0, 300, 240), path("b.jpg"), 95));
    test::CliRun r = test::runCli("pano '" + path("a.jpg") + "' '" + path("b.jpg") + "' -o '" + path("o.jpg") + "'",
                                  path("err.txt"));
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(lastLine("err.txt"),
              "brindlesee-cli: Brindlesee panorama check that not all images have the same size. Rezise "
              "the images or use other images with the same size.");
    EXPECT_FALSE(std::filesystem::exists(path("o.jpg")));

    r = test::runCli("pano '" + path("a.jpg") + "'", path("err.txt"));
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(lastLine("err.txt"),
              "brindlesee-cli: usage: brindlesee-cli pano PICTURE... -o OUT.jpg [--360] [--smooth N] "
              "[--crop] [--no-gain] [--padding] [--balance]");
    r = test::runCli("pano '" + path("a.jpg") + "' -o x.jpg --smooth wide", path("err.txt"));
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(lastLine("err.txt"), "brindlesee-cli: smooth must be a number of pixels from 0 to 10000: wide");
    r = test::runCli("pano '" + path("missing.jpg") + "' -o x.jpg", path("err.txt"));
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(lastLine("err.txt"), "brindlesee-cli: file not found: " + path("missing.jpg"));

    // A file stands where the output's folder should be: the write fails.
    touch("blocked");
    r = test::runCli("pano '" + path("a.jpg") + "' -o '" + path("blocked/o.jpg") + "'", path("err.txt"));
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(lastLine("err.txt").rfind("brindlesee-cli: ", 0), 0u) << lastLine("err.txt");
    EXPECT_FALSE(std::filesystem::exists(path("blocked/o.jpg")));
}

}  // namespace
}  // namespace brindle
