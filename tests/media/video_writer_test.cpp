#include <gtest/gtest.h>

#include <filesystem>

#include "image/picture_io.h"
#include "media/video_writer.h"
#include "support/temp_home.h"
#include "video_probe.h"

namespace brindle {
namespace {

namespace fs = std::filesystem;

class VideoWriterTest : public test::TempHomeTest {
protected:
    std::vector<std::string> bitmaps(int count, int w, int h) {
        std::vector<std::string> out;
        for (int n = 0; n < count; ++n) {
            out.push_back(path("frame" + std::to_string(n) + ".bmp"));
            EXPECT_TRUE(SaveDIBFile(test::framePicture(w, h, n), out.back(), 100));
        }
        return out;
    }

    cDIBSection decoded(const std::string& video, int index) {
        const std::string png = path("decoded" + std::to_string(index) + ".png");
        EXPECT_TRUE(test::decodeFrame(video, index, png));
        const PictureFile f = LoadPictureFile(png);
        return f.picture ? *f.picture.Handle() : cDIBSection();
    }

    // No file besides the pictures and the given names is left in home().
    bool onlyBitmapsLeft() const {
        for (const auto& e : fs::directory_iterator(home()))
            if (e.path().extension() != ".bmp") return false;
        return true;
    }
};

TEST_F(VideoWriterTest, AviOfThreePicturesHasThreeFramesAtTheRate) {
    const std::vector<std::string> list = bitmaps(3, 96, 64);
    std::vector<std::string> said;
    std::vector<int> done;
    media::VideoCallbacks cb;
    cb.status = [&said](const std::string& s) { said.push_back(s); };
    cb.progress = [&done](int n, int total) { done.push_back(n * 10 + total); };
    const media::VideoResult r = media::writeVideo(list, path("clip.avi"), {7}, Language::English, cb);
    ASSERT_TRUE(r.ok) << (r.message ? r.message->text : "");
    EXPECT_EQ(r.frames, 3);
    EXPECT_EQ(r.codec, "mjpeg");
    EXPECT_EQ(said, (std::vector<std::string>{"Frame number 0 saved", "Frame number 1 saved",
                                              "Frame number 2 saved", "Finished!"}));
    EXPECT_EQ(done, (std::vector<int>{13, 23, 33}));

    const test::ProbedVideo v = test::probeVideo(path("clip.avi"));
    EXPECT_EQ(v.container, "avi");
    EXPECT_EQ(v.codec, "mjpeg");
    EXPECT_EQ(v.frames, 3);
    EXPECT_EQ(v.rate, "7/1");
    EXPECT_EQ(v.width, 96);
    EXPECT_EQ(v.height, 64);

    const cDIBSection first = decoded(path("clip.avi"), 0);
    EXPECT_GE(test::psnr(test::framePicture(96, 64, 0), first), 35.0);
    // The frames keep their order: the last is the third picture, not the first.
    const cDIBSection last = decoded(path("clip.avi"), 2);
    EXPECT_GE(test::psnr(test::framePicture(96, 64, 2), last), 35.0);
    EXPECT_LT(test::psnr(test::framePicture(96, 64, 0), last), 25.0);
    EXPECT_FALSE(fs::exists(path(".clip.avi.part")));
}

TEST_F(VideoWriterTest, Mp4TakesOddSizesAndTheGermanTexts) {
    const std::vector<std::string> list = bitmaps(3, 75, 51);
    std::vector<std::string> said;
    media::VideoCallbacks cb;
    cb.status = [&said](const std::string& s) { said.push_back(s); };
    const media::VideoResult r = media::writeVideo(list, path("Clip.MP4"), {30}, Language::German, cb);
    ASSERT_TRUE(r.ok) << (r.message ? r.message->text : "");
    EXPECT_TRUE(r.codec == "libx264" || r.codec == "mpeg4") << r.codec;
    ASSERT_EQ(said.size(), 4u);
    EXPECT_EQ(said[1], "Frame Nummer 1 gespeichert");
    EXPECT_EQ(said[3], "Fertig!");

    const test::ProbedVideo v = test::probeVideo(path("Clip.MP4"));
    EXPECT_NE(v.container.find("mp4"), std::string::npos) << v.container;
    EXPECT_EQ(v.codec, r.codec == "libx264" ? "h264" : "mpeg4");
    EXPECT_EQ(v.frames, 3);
    EXPECT_EQ(v.rate, "30/1");
    // 4:2:0 needs even sides: one column and one row repeated.
    EXPECT_EQ(v.width, 76);
    EXPECT_EQ(v.height, 52);
}

TEST_F(VideoWriterTest, RefusalsLeaveNoFile) {
    std::vector<std::string> list = bitmaps(2, 40, 30);

    media::VideoResult r = media::writeVideo({}, path("empty.avi"), {}, Language::English);
    EXPECT_FALSE(r.ok);
    EXPECT_FALSE(r.message);  // nothing to say, nothing written

    r = media::writeVideo(list, path("clip.mov"), {}, Language::English);
    ASSERT_TRUE(r.message);
    EXPECT_EQ(r.message->text, "Videos are written as .avi or .mp4.");

    r = media::writeVideo({path("gone.bmp")}, path("clip.avi"), {}, Language::German);
    ASSERT_TRUE(r.message);
    EXPECT_EQ(r.message->text, "Laden es ersten Bitmaps gescheitert!");
    r = media::writeVideo({path("gone.bmp")}, path("clip.avi"), {}, Language::English);
    ASSERT_TRUE(r.message);
    EXPECT_EQ(r.message->text, "Could not load first bitmap file in list!");

    ASSERT_TRUE(SaveDIBFile(test::framePicture(42, 30, 2), path("wide.bmp"), 100));
    r = media::writeVideo({list[0], path("wide.bmp")}, path("clip.avi"), {}, Language::English);
    ASSERT_TRUE(r.message);
    EXPECT_EQ(r.message->text, "Chosen bitmap file is a different format!");

    r = media::writeVideo({list[0], path("gone.bmp")}, path("clip.avi"), {}, Language::English);
    ASSERT_TRUE(r.message);
    EXPECT_EQ(r.message->text, "There was an error writing the file.");

    r = media::writeVideo(list, path("no/such/folder/clip.avi"), {}, Language::German);
    ASSERT_TRUE(r.message);
    EXPECT_EQ(r.message->text, "Beim schreiben der Datei ist ein Fehler aufgetreten.");

    int asked = 0;
    media::VideoCallbacks cb;
    cb.cancelled = [&asked] { return ++asked == 2; };
    r = media::writeVideo(list, path("clip.avi"), {}, Language::English, cb);
    EXPECT_TRUE(r.cancelled);
    EXPECT_FALSE(r.message);
    EXPECT_EQ(r.frames, 1);
    EXPECT_TRUE(onlyBitmapsLeft());
}

}  // namespace
}  // namespace brindle
