#include <gtest/gtest.h>

#include <FreeImage.h>

#include <filesystem>

#include "html/web_picture.h"
#include "image/dib_section.h"
#include "image/picture_io.h"
#include "support/temp_home.h"

namespace brindle::html {
namespace {

class WebPictureTest : public test::TempHomeTest {
protected:
    // A 400 x 300 JPEG: upper half red, lower half blue.
    std::string source() {
        cDIBSection dib;
        EXPECT_TRUE(dib.Create(400, 300));
        for (int y = 0; y < 300; ++y) {
            std::uint8_t* row = dib.hdc().row(y);
            for (int x = 0; x < 400; ++x) {
                row[3 * x] = y < 150 ? 0 : 255;
                row[3 * x + 1] = 0;
                row[3 * x + 2] = y < 150 ? 255 : 0;
            }
        }
        EXPECT_TRUE(SaveDIBFile(dib, path("quelle.jpg"), 95));
        return path("quelle.jpg");
    }
    cDIBSection load(const std::string& name) {
        PictureFile f = LoadPictureFile(path(name));
        EXPECT_TRUE(static_cast<bool>(f.picture)) << name;
        return f.picture ? *f.picture.Handle() : cDIBSection{};
    }
    // Blue, green, red of a pixel counted from the top.
    std::array<int, 3> at(const cDIBSection& d, int x, int y) {
        const std::uint8_t* p = d.hdc().row(y) + 3 * x;
        return {p[0], p[1], p[2]};
    }
    bool near(std::array<int, 3> a, std::array<int, 3> b) {
        for (int i = 0; i < 3; ++i)
            if (std::abs(a[i] - b[i]) > 40) return false;
        return true;
    }
    WebPicture request(const std::string& target, int w, int h, const std::string& frame = "",
                       const std::string& anim = "") {
        WebPicture p;
        p.source = source();
        p.target = path(target);
        p.width = w;
        p.height = h;
        p.frameSpec = frame;
        p.animationSpec = anim;
        return p;
    }
    std::string error;
};

const std::array<int, 3> kRed{0, 0, 255}, kBlue{255, 0, 0}, kBlack{0, 0, 0};

TEST_F(WebPictureTest, ReducedStretchedAndLakeHalves) {
    ASSERT_TRUE(speichereWebBild(request("klein.jpg", 100, 60), error)) << error;
    cDIBSection small = load("klein.jpg");
    EXPECT_EQ(small.Width(), 100);
    EXPECT_EQ(small.Height(), 60);
    EXPECT_TRUE(near(at(small, 50, 10), kRed));
    EXPECT_TRUE(near(at(small, 50, 50), kBlue));

    // The lake keeps the upper 50 % + 2 rows of the source in the upper half
    // + 2 rows of the target; the applet draws the reflection below.
    ASSERT_TRUE(speichereWebBild(request("see.jpg", 100, 80, "", "Lake,3,50,0,0,0"), error));
    cDIBSection lake = load("see.jpg");
    EXPECT_TRUE(near(at(lake, 50, 20), kRed));
    EXPECT_TRUE(near(at(lake, 50, 70), kBlack));
}

TEST_F(WebPictureTest, PanoramaStripKeepsItsAspectAtTheBoxHeight) {
    ASSERT_TRUE(speichereWebBild(request("streifen.jpg", 100, 60, "", "Pano,5,2,0,0,0"), error));
    cDIBSection strip = load("streifen.jpg");
    EXPECT_EQ(strip.Height(), 60);
    EXPECT_EQ(strip.Width(), 80);  // 400 x 60 / 300
}

TEST_F(WebPictureTest, FrameAroundThePictureInItsColour) {
    ASSERT_TRUE(speichereWebBild(request("rahmen.jpg", 120, 100, "10,0,0,65280,None,1,"), error));
    cDIBSection framed = load("rahmen.jpg");
    EXPECT_TRUE(near(at(framed, 60, 30), kRed));
    EXPECT_TRUE(near(at(framed, 60, 80), kBlue));
    // The green ground shows on all four sides, 10 pixels wide: the picture
    // stays inside the frame. The frame's light lifts red and blue of its
    // upper and lower band a little.
    auto green = [](std::array<int, 3> c) { return c[1] >= 220 && c[0] <= 100 && c[2] <= 100; };
    const std::pair<int, int> edges[] = {{3, 30},  {3, 70},  {8, 50},  {116, 30}, {116, 70}, {111, 50},
                                         {30, 3},  {90, 3},  {60, 8},  {30, 96},  {90, 96},  {60, 91}};
    for (const auto& [x, y] : edges) {
        const auto c = at(framed, x, y);
        EXPECT_TRUE(green(c)) << x << "," << y << ": " << c[0] << " " << c[1] << " " << c[2];
    }
    EXPECT_TRUE(near(at(framed, 13, 30), kRed));
    EXPECT_TRUE(near(at(framed, 106, 70), kBlue));
}

TEST_F(WebPictureTest, TurnedPictureIsAPngOnTransparentGround) {
    WebPicture p = request("gedreht.png", 200, 150);
    p.rotation = 45;
    ASSERT_TRUE(speichereWebBild(p, error));
    FIBITMAP* png = FreeImage_Load(FIF_PNG, path("gedreht.png").c_str(), 0);
    ASSERT_NE(png, nullptr);
    EXPECT_EQ(FreeImage_GetWidth(png), 120u);  // 60 % of the box without shown sizes
    EXPECT_EQ(FreeImage_GetHeight(png), 90u);
    EXPECT_EQ(FreeImage_GetBPP(png), 32u);
    RGBQUAD corner, centre;
    FreeImage_GetPixelColor(png, 0, 0, &corner);
    FreeImage_GetPixelColor(png, 60, 45, &centre);
    EXPECT_EQ(corner.rgbReserved, 0);
    EXPECT_EQ(centre.rgbReserved, 255);
    FreeImage_Unload(png);

    // A missing source writes nothing and is no error.
    WebPicture missing = request("fehlt.jpg", 10, 10);
    missing.source = path("gibtsnicht.jpg");
    EXPECT_TRUE(speichereWebBild(missing, error));
    EXPECT_FALSE(std::filesystem::exists(path("fehlt.jpg")));
}

}  // namespace
}  // namespace brindle::html
