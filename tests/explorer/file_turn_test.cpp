#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fcntl.h>

#include <filesystem>

#include "explorer/file_operations.h"
#include "image/image_compare.h"
#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "support/scripted_prompter.h"
#include "support/temp_home.h"

namespace brindle::explorer {
namespace {

using test::Bgr;

class TurnManyTest : public test::TempHomeTest {
protected:
    test::ScriptedPrompter prompter;
    std::vector<std::string> statuses;
    std::vector<std::string> dropped;

    FileOperations ops(Language language = Language::German) {
        OperationCallbacks cb;
        cb.status = [this](const std::string& s) { statuses.push_back(s); };
        cb.dropThumbnail = [this](const std::string& p) { dropped.push_back(p); };
        return FileOperations(prompter, language, cb);
    }
    void setTime(const std::string& name, long seconds, long nanoseconds) {
        struct timespec times[2] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
        ASSERT_EQ(utimensat(AT_FDCWD, path(name).c_str(), times, 0), 0);
    }
    struct timespec modified(const std::string& name) {
        struct stat st {};
        EXPECT_EQ(stat(path(name).c_str(), &st), 0);
        return st.st_mtim;
    }
    cDIBSection load(const std::string& name) {
        PictureFile f = LoadPictureFile(path(name));
        EXPECT_TRUE(f.picture) << name;
        return f.picture ? *f.picture.Handle() : cDIBSection();
    }
};

// Four distinct corners, so every turn tells itself apart.
Bgr corner(int x, int y, int w, int h) {
    const bool right = x >= w / 2, bottom = y >= h / 2;
    return Bgr{right ? 255 : 0, bottom ? 255 : 0, (right != bottom) ? 255 : 0};
}

TEST_F(TurnManyTest, TurnsKeepTheFileTimeAndDropTheThumbnail) {
    std::filesystem::create_directories(path("pics"));
    const int w = 64, h = 32;
    const cDIBSection picture = test::makeDib(w, h, [&](int x, int y) { return corner(x, y, w, h); });
    ASSERT_TRUE(SaveDIBFile(picture, path("pics/a.jpg"), 95).ok);
    ASSERT_TRUE(SaveDIBFile(picture, path("pics/b.bmp"), 95).ok);
    setTime("pics/a.jpg", 981173106, 250000000);
    setTime("pics/b.bmp", 981173107, 0);

    prompter.answers = {kYes};
    OperationResult r = ops().turnMany({path("pics/a.jpg"), path("pics/b.bmp")}, true);

    EXPECT_EQ(prompter.asked, std::vector<std::string>{
                                  "message|Brindlesee|36|Wollen Sie alle ausgewählten Bilder um 90 Grad nach rechts "
                                  "drehen?"});
    EXPECT_EQ(statuses, (std::vector<std::string>{"Start drehen", "Fertig drehen"}));
    EXPECT_EQ(r.done, (std::vector<std::string>{path("pics/a.jpg"), path("pics/b.bmp")}));
    EXPECT_EQ(dropped, r.done);
    EXPECT_EQ(modified("pics/a.jpg").tv_sec, 981173106);
    EXPECT_EQ(modified("pics/a.jpg").tv_nsec, 250000000);
    EXPECT_EQ(modified("pics/b.bmp").tv_sec, 981173107);

    // Turned right: the old bottom-left corner is now top-left.
    const cDIBSection jpeg = load("pics/a.jpg");
    ASSERT_EQ(jpeg.Width(), h);
    ASSERT_EQ(jpeg.Height(), w);
    const cDIBSection bmp = load("pics/b.bmp");
    ASSERT_EQ(bmp.Width(), h);
    ASSERT_EQ(bmp.Height(), w);
    EXPECT_EQ(readBytes("pics/b.bmp").substr(0, 2), "BM");
    for (int y = 0; y < w; ++y)
        for (int x = 0; x < h; ++x) {
            // new (x, y) is old (y, h - 1 - x)
            ASSERT_EQ(test::pixelAt(bmp, x, y), corner(y, h - 1 - x, w, h)) << x << "," << y;
        }
    EXPECT_EQ(test::pixelAt(jpeg, 4, 4).r, 255);  // old bottom-left: green and red
    EXPECT_GT(test::pixelAt(jpeg, 4, 4).g, 240);
    EXPECT_LT(test::pixelAt(jpeg, 4, 4).b, 16);

    // Left turns the bitmap back to where it was.
    prompter.asked.clear();
    prompter.answers = {kYes};
    ops(Language::English).turnMany({path("pics/b.bmp")}, false);
    EXPECT_EQ(prompter.asked.front(),
              "message|Brindlesee|36|Do you want turn all selected pictures about 90 degrees to the left?");
    EXPECT_TRUE(test::sameImage(picture, load("pics/b.bmp")));
    EXPECT_EQ(modified("pics/b.bmp").tv_sec, 981173107);
}

TEST_F(TurnManyTest, NoTurnsNothingAndAnUnwritableTypeFails) {
    std::filesystem::create_directories(path("pics"));
    const cDIBSection picture = test::makeDib(8, 4, [](int x, int y) { return Bgr{x * 30, y * 60, 9}; });
    ASSERT_TRUE(SaveDIBFile(picture, path("pics/a.bmp"), 90).ok);
    writeBytes("pics/c.gif", "GIF89a not really");
    setTime("pics/c.gif", 1000000000, 0);
    const std::string before = readBytes("pics/a.bmp");

    prompter.answers = {kNo};
    OperationResult r = ops().turnMany({path("pics/a.bmp")}, true);
    EXPECT_TRUE(r.cancelled);
    EXPECT_EQ(readBytes("pics/a.bmp"), before);
    EXPECT_TRUE(statuses.empty());

    prompter.asked.clear();
    prompter.answers = {kYes};
    r = ops().turnMany({path("pics/c.gif"), path("pics/a.bmp")}, false);
    ASSERT_EQ(prompter.asked.size(), 2u);
    EXPECT_EQ(prompter.asked[1], "message|Fehler|16|Fehler beim Schreiben der Datei: " + path("pics/c.gif"));
    EXPECT_EQ(r.failed, 1);
    EXPECT_EQ(r.done, std::vector<std::string>{path("pics/a.bmp")});
    EXPECT_EQ(dropped, r.done);
    EXPECT_EQ(readBytes("pics/c.gif"), "GIF89a not really");
    EXPECT_EQ(modified("pics/c.gif").tv_sec, 1000000000);
    EXPECT_EQ(load("pics/a.bmp").Width(), 4);
}

}  // namespace
}  // namespace brindle::explorer
