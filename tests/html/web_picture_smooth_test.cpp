// Web pictures are reduced by averaging and written like every other save.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "html/web_picture.h"
#include "image/dib_section.h"
#include "image/picture_io.h"
#include "support/temp_home.h"

namespace brindle::html {
namespace {

class WebPictureSmoothTest : public test::TempHomeTest {
  protected:
    // 200 x 200, rows alternating black and white.
    std::string lines() {
        cDIBSection dib;
        EXPECT_TRUE(dib.Create(200, 200));
        for (int y = 0; y < 200; ++y)
            std::fill_n(dib.hdc().row(y), 600, static_cast<std::uint8_t>(y % 2 ? 255 : 0));
        EXPECT_TRUE(SaveDIBFile(dib, path("lines.png"), 90));
        return path("lines.png");
    }
    cDIBSection load(const std::string& name) {
        PictureFile f = LoadPictureFile(path(name));
        EXPECT_TRUE(static_cast<bool>(f.picture)) << name;
        return f.picture ? *f.picture.Handle() : cDIBSection{};
    }
    std::string error;
};

TEST_F(WebPictureSmoothTest, LinesReducedFourTimesBecomeEvenGrey) {
    WebPicture p;
    p.source = lines();
    p.target = path("web.png");
    p.width = 50;
    p.height = 50;
    ASSERT_TRUE(speichereWebBild(p, error)) << error;
    const cDIBSection web = load("web.png");
    ASSERT_EQ(web.Width(), 50);
    ASSERT_EQ(web.Height(), 50);
    // Two white rows of four under every pixel: 127.5, rounded up.
    for (int y = 0; y < 50; y += 7)
        for (int x = 0; x < 50; x += 7) {
            const std::uint8_t* px = web.hdc().row(y) + 3 * x;
            ASSERT_EQ(px[0], 128) << x << "," << y;
            ASSERT_EQ(px[1], 128) << x << "," << y;
            ASSERT_EQ(px[2], 128) << x << "," << y;
        }
}

TEST_F(WebPictureSmoothTest, TurnedPngIsWrittenThroughALinkKeepingItsMode) {
    writeBytes("real.png", "old");
    ASSERT_EQ(::chmod(path("real.png").c_str(), 0640), 0);
    ASSERT_EQ(::symlink(path("real.png").c_str(), path("link.png").c_str()), 0);
    WebPicture p;
    p.source = lines();
    p.target = path("link.png");
    p.width = 40;
    p.height = 30;
    p.rotation = 10;
    p.boxWidth = 40;
    p.boxHeight = 30;
    ASSERT_TRUE(speichereWebBild(p, error)) << error;
    struct stat st {};
    ASSERT_EQ(::lstat(path("link.png").c_str(), &st), 0);
    EXPECT_TRUE(S_ISLNK(st.st_mode));
    ASSERT_EQ(::stat(path("real.png").c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 0640u);
    EXPECT_EQ(load("real.png").Width(), 40);
}

}  // namespace
}  // namespace brindle::html
