// The resize batch: sizes by pixels and by percent, the names of the
// results, and originals that survive.
#include "studio/resize_pictures.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "image/gif_writer.h"
#include "image/jpeg_io.h"
#include "image/jpeg_quality.h"
#include "image/picture_io.h"
#include "image/image_compare.h"
#include "support/scripted_prompter.h"
#include "support/temp_home.h"

namespace brindle::test {
namespace {

namespace fs = std::filesystem;
using studio::ResizeOptions;

Bgr origin(int x, int y) { return {x * 11 % 256, y * 23 % 256, (x * 3 + y * 5) % 256}; }

cDIBSection load(const std::string& path) {
    const PictureFile file = LoadPictureFile(path);
    return file.picture ? *file.picture.Handle() : cDIBSection{};
}

std::string fileBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

ResizeOptions byPixels(int w, int h) {
    ResizeOptions o;
    o.widthPixels = w;
    o.heightPixels = h;
    return o;
}

ResizeOptions byPercent(int pw, int ph, bool alike) {
    ResizeOptions o;
    o.byPercent = true;
    o.widthPercent = pw;
    o.heightPercent = ph;
    o.percentsAlike = alike;
    return o;
}

class ResizePicturesTest : public TempHomeTest {
  protected:
    std::string picture(const std::string& name, int width, int height) {
        const std::string p = path(name);
        fs::create_directories(fs::path(p).parent_path());
        EXPECT_TRUE(SaveDIBFile(makeDib(width, height, origin), p, 100));
        return p;
    }
    ScriptedPrompter prompter;
};

TEST(ResizeSizes, PixelsAsGivenPercentsOfEachSideTruncated) {
    int w = 0, h = 0;
    studio::resizedSize(byPixels(640, 480), 4000, 3000, w, h);
    EXPECT_EQ(w, 640);
    EXPECT_EQ(h, 480);
    // 333 x 25 / 100 = 83.25, 201 x 25 / 100 = 50.25.
    studio::resizedSize(byPercent(25, 90, true), 333, 201, w, h);
    EXPECT_EQ(w, 83);
    EXPECT_EQ(h, 50);
    studio::resizedSize(byPercent(25, 90, false), 333, 201, w, h);
    EXPECT_EQ(w, 83);
    EXPECT_EQ(h, 180);
    // A tiny picture keeps at least one pixel.
    studio::resizedSize(byPercent(10, 10, true), 5, 3, w, h);
    EXPECT_EQ(w, 1);
    EXPECT_EQ(h, 1);
    studio::resizedSize(byPercent(200, 10, true), 50, 30, w, h);
    EXPECT_EQ(w, 100);
    EXPECT_EQ(h, 60);
}

TEST(ResizeNames, TheAppendedTextTellsTheSize) {
    EXPECT_EQ(studio::resizeAppendText(byPixels(800, 600)), "_800x600");
    EXPECT_EQ(studio::resizeAppendText(byPercent(50, 20, true)), "_50pct");
    EXPECT_EQ(studio::resizeAppendText(byPercent(50, 20, false)), "_50x20pct");
    EXPECT_EQ(studio::resizeAppendText(byPercent(50, 50, false)), "_50pct");
}

TEST(ResizeOptionsCheck, SizesAndPercentsOutOfRangeAreNamed) {
    EXPECT_EQ(studio::resizeOptionsError(byPixels(1, 1), Language::German), "");
    EXPECT_EQ(studio::resizeOptionsError(byPixels(0, 10), Language::German),
              "Breite und Höhe müssen mindestens 1 Pixel sein.");
    EXPECT_EQ(studio::resizeOptionsError(byPixels(10, -1), Language::English),
              "Width and height must be at least 1 pixel.");
    EXPECT_EQ(studio::resizeOptionsError(byPixels(20000, 20000), Language::English),
              "The picture would be too large.");
    EXPECT_EQ(studio::resizeOptionsError(byPercent(1000, 0, true), Language::German), "");
    // The height's percent only counts when it is not tied to the width's.
    EXPECT_EQ(studio::resizeOptionsError(byPercent(50, 0, false), Language::German),
              "Die Prozentwerte müssen zwischen 1 und 1000 liegen.");
    EXPECT_EQ(studio::resizeOptionsError(byPercent(1001, 50, false), Language::English),
              "The percentages must lie between 1 and 1000.");
}

TEST_F(ResizePicturesTest, ByPixelsBesideEachOriginalInItsOwnFolder) {
    const std::string a = picture("urlaub/a.png", 40, 30);
    const std::string b = picture("feier/b.bmp", 16, 16);
    const std::string c = picture("urlaub/c.png", 8, 8);
    std::vector<std::string> progress;
    studio::BatchCallbacks callbacks;
    callbacks.progress = [&](int done, int total) {
        progress.push_back(std::to_string(done) + "/" + std::to_string(total));
    };
    const studio::BatchResult result =
        studio::resizePictures({a, b, c}, byPixels(20, 10), prompter, Language::German, callbacks);
    EXPECT_TRUE(prompter.asked.empty());
    EXPECT_EQ(result.treated, 3);
    EXPECT_EQ(result.written, (std::vector<std::string>{path("urlaub/a_20x10.png"), path("feier/b_20x10.bmp"),
                                                          path("urlaub/c_20x10.png")}));
    EXPECT_EQ(progress.back(), "3/3");
    for (const std::string& source : {a, b, c}) {
        SCOPED_TRACE(source);
        cDIBSection expected = load(source);
        expected.effectGröße(20, 10);
        const std::string target = source.substr(0, source.rfind('.')) + "_20x10" + source.substr(source.rfind('.'));
        EXPECT_TRUE(sameImage(expected, load(target)));
    }
    // The originals are untouched.
    EXPECT_TRUE(sameImage(makeDib(40, 30, origin), load(a)));
}

TEST_F(ResizePicturesTest, ByPercentIntoAFolderAsJpegOfQualityNinety) {
    const std::string a = path("foto.jpg");
    ASSERT_TRUE(SaveJPG(smoothPicture(200, 100), a, 95));
    ResizeOptions options = byPercent(50, 30, false);
    options.targetDirectory = path("klein");
    fs::create_directories(options.targetDirectory);
    const studio::BatchResult result = studio::resizePictures({a}, options, prompter, Language::German);
    EXPECT_TRUE(prompter.asked.empty());
    ASSERT_EQ(result.written, std::vector<std::string>{path("klein/foto.jpg")});
    const std::string bytes = fileBytes(path("klein/foto.jpg"));
    int width = 0, height = 0, quality = 0;
    ASSERT_TRUE(readJpegSize(bytes, width, height));
    EXPECT_EQ(width, 100);
    EXPECT_EQ(height, 30);
    ASSERT_TRUE(estimateJpegQuality(bytes, quality));
    EXPECT_EQ(quality, 90);
}

TEST_F(ResizePicturesTest, OverwritingReplacesTheOriginalAndLeavesNoCopy) {
    const std::string a = picture("a.png", 30, 20);
    ResizeOptions options = byPercent(50, 50, true);
    options.overwriteOriginals = true;
    const studio::BatchResult result = studio::resizePictures({a}, options, prompter, Language::German);
    EXPECT_TRUE(prompter.asked.empty());
    EXPECT_EQ(result.written, std::vector<std::string>{a});
    cDIBSection expected = makeDib(30, 20, origin);
    expected.effectGröße(15, 10);
    EXPECT_TRUE(sameImage(expected, load(a)));
    EXPECT_FALSE(fs::exists(a + "Brind.Bak"));
}

TEST_F(ResizePicturesTest, APictureWhoseTypeCannotBeWrittenBecomesAPngInItsPlaceInTheOrder) {
    const std::string a = picture("a.png", 20, 20);
    const std::string b = path("b.gif");
    ASSERT_TRUE(GIF::SaveGIF(makeDib(20, 20, [](int, int) { return Bgr{0, 0, 255}; }), b, false, 0));
    const std::string c = picture("c.bmp", 20, 20);
    std::vector<std::string> progress;
    studio::BatchCallbacks callbacks;
    callbacks.progress = [&](int done, int total) {
        progress.push_back(std::to_string(done) + "/" + std::to_string(total));
    };
    const studio::BatchResult result =
        studio::resizePictures({a, b, c}, byPixels(4, 2), prompter, Language::German, callbacks);
    EXPECT_TRUE(prompter.asked.empty()) << prompter.asked.front();
    EXPECT_EQ(result.written,
              (std::vector<std::string>{path("a_4x2.png"), path("b_4x2.png"), path("c_4x2.bmp")}));
    EXPECT_EQ(progress.back(), "3/3");
    const cDIBSection red = load(path("b_4x2.png"));
    ASSERT_EQ(red.Width(), 4);
    EXPECT_EQ(pixelAt(red, 3, 1), (Bgr{0, 0, 255}));
}

TEST_F(ResizePicturesTest, BadOptionsAreToldAndNothingIsWritten) {
    const std::string a = picture("a.png", 30, 20);
    const studio::BatchResult result = studio::resizePictures({a}, byPixels(0, 5), prompter, Language::English);
    EXPECT_EQ(prompter.asked, std::vector<std::string>{"message|Error|16|Width and height must be at least 1 pixel."});
    EXPECT_TRUE(result.written.empty());
    EXPECT_FALSE(fs::exists(path("a_0x5.png")));
}

TEST_F(ResizePicturesTest, AnOriginalThatCannotBeReplacedStaysAsItWas) {
    if (::geteuid() != 0) GTEST_SKIP() << "needs root to drop to another user";
    const std::string a = picture("ro/a.png", 30, 20);
    const std::string before = fileBytes(a);
    ASSERT_EQ(::chmod(home().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(path("ro").c_str(), 0555), 0);
    int pipeFds[2];
    ASSERT_EQ(::pipe(pipeFds), 0);
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::close(pipeFds[0]);
        if (::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(2);
        ResizeOptions options = byPixels(10, 10);
        options.overwriteOriginals = true;
        ScriptedPrompter child;
        const studio::BatchResult r = studio::resizePictures({a}, options, child, Language::English);
        std::string text = std::to_string(r.written.size()) + "\n";
        for (const std::string& q : child.asked) text += q + "\n";
        if (::write(pipeFds[1], text.data(), text.size()) < 0) ::_exit(3);
        ::_exit(0);
    }
    ::close(pipeFds[1]);
    std::string got;
    char buffer[512];
    for (ssize_t n; (n = ::read(pipeFds[0], buffer, sizeof buffer)) > 0;) got.append(buffer, static_cast<std::size_t>(n));
    ::close(pipeFds[0]);
    int raw = 0;
    ::waitpid(pid, &raw, 0);
    ::chmod(path("ro").c_str(), 0755);
    ASSERT_TRUE(WIFEXITED(raw) && WEXITSTATUS(raw) == 0) << raw;
    EXPECT_EQ(got.rfind("0\nmessage|Error|16|Error while overwriting the File: " + a + " in ", 0), 0u) << got;
    EXPECT_EQ(fileBytes(a), before);
    EXPECT_FALSE(fs::exists(a + "Brind.Bak"));
}

}  // namespace
}  // namespace brindle::test
