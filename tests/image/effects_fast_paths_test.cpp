// The fast inner loops of the effects against the formulas written out
// plainly: the same bytes on random pictures of many sizes.
#include <gtest/gtest.h>

#include "image/dib_section.h"
#include "image/image_compare.h"
#include "image/plain_effects.h"
#include "image/rounding.h"

namespace brindle {
namespace {

using test::noisePicture;
using test::sameImage;
using test::plainSaturation;
using test::plainSharpen;

const std::pair<int, int> kSizes[] = {{1, 1}, {2, 2}, {3, 3}, {4, 5}, {5, 4}, {37, 23}, {64, 9}};

TEST(EffectFastPaths, SaturationEqualsTheFormula) {
    unsigned seed = 1;
    for (const auto& [w, h] : kSizes)
        for (int mode = 0; mode <= 8; ++mode)
            for (int percent : {0, 1, 50, 120, 125, -50, -100, 250, 333, 100000, -2147483647}) {
                SCOPED_TRACE(testing::Message() << w << "x" << h << " mode " << mode << " percent " << percent);
                const cDIBSection in = noisePicture(w, h, seed++);
                cDIBSection fast = in, plain = in;
                fast.effectFarbeSaturation(percent, mode);
                plainSaturation(plain, percent, mode);
                ASSERT_TRUE(sameImage(plain, fast));
            }
}

TEST(EffectFastPaths, SharpenEqualsTheFormula) {
    unsigned seed = 100;
    for (const auto& [w, h] : kSizes)
        for (int strength : {-100, -30, -24, -9, -8, -7, 0, 3, 5, 9, 100, 4000, 5000, 1000000000}) {
            SCOPED_TRACE(testing::Message() << w << "x" << h << " strength " << strength);
            const cDIBSection in = noisePicture(w, h, seed++);
            cDIBSection fast = in, plain = in;
            fast.effectSchärfen2(strength);
            plainSharpen(plain, strength);
            ASSERT_TRUE(sameImage(plain, fast));
        }
}

// A stretch written out: each target pixel takes the source pixel under its
// centre, in top-left coordinates, mirrored by negative extents.
cDIBSection plainStretch(const cDIBSection& src, int w, int h, int x0, int y0, int dw, int dh,
                         int sx, int sy, int sw, int sh) {
    cDIBSection out = noisePicture(w, h, 77);
    const cDIBSection before = out;
    const auto map = [](int i, int dn, int sn, bool mirror) {
        long long j = (2LL * i + 1) * sn / (2LL * dn);
        return mirror ? sn - 1 - j : j;
    };
    const int adw = dw < 0 ? -dw : dw, adh = dh < 0 ? -dh : dh;
    const int asw = sw < 0 ? -sw : sw, ash = sh < 0 ? -sh : sh;
    const int dxs = dw < 0 ? x0 + dw : x0, dys = dh < 0 ? y0 + dh : y0;
    const int sxs = sw < 0 ? sx + sw : sx, sys = sh < 0 ? sy + sh : sy;
    for (int i = 0; i < adh; ++i)
        for (int k = 0; k < adw; ++k) {
            const int tx = dxs + k, ty = dys + i;
            const long long fx = sxs + map(k, adw, asw, (dw < 0) != (sw < 0));
            const long long fy = sys + map(i, adh, ash, (dh < 0) != (sh < 0));
            if (tx < 0 || ty < 0 || tx >= w || ty >= h) continue;
            if (fx < 0 || fy < 0 || fx >= src.Width() || fy >= src.Height()) continue;
            test::setPixel(out, tx, ty, test::pixelAt(src, static_cast<int>(fx), static_cast<int>(fy)));
        }
    return out;
}

TEST(EffectFastPaths, StretchEqualsTheCentreRule) {
    unsigned seed = 300;
    struct Case { int w, h, x, y, dw, dh, sx, sy, sw, sh; };
    for (const auto& [sw0, sh0] : kSizes) {
        const cDIBSection src = noisePicture(sw0, sh0, seed++);
        const Case cases[] = {
            {sw0, sh0, 0, 0, sw0, sh0, 0, 0, sw0, sh0},
            {7, 5, 1, 1, 5, 3, 0, 0, sw0, sh0},
            {9, 9, -2, -1, 12, 11, 0, 0, sw0, sh0},
            {4, 4, 0, 0, 4, 4, sw0, 0, -sw0, sh0},
            {6, 3, 0, 3, 6, -3, 0, 0, sw0, sh0},
            {5, 5, 0, 0, 5, 5, 1, 1, sw0 + 3, sh0 + 2},
        };
        for (const Case& c : cases) {
            SCOPED_TRACE(testing::Message() << sw0 << "x" << sh0 << " into " << c.w << "x" << c.h
                                            << " at " << c.x << "," << c.y << " " << c.dw << "x" << c.dh);
            cDIBSection fast = noisePicture(c.w, c.h, 77);
            src.StretchPicture(fast.hdc(), c.x, c.y, c.dw, c.dh, c.sx, c.sy, c.sw, c.sh);
            ASSERT_TRUE(sameImage(plainStretch(src, c.w, c.h, c.x, c.y, c.dw, c.dh, c.sx, c.sy, c.sw, c.sh), fast));
        }
    }
}

TEST(EffectFastPaths, FlatFillAndFrameKeepTheirPixels) {
    cDIBSection fill = noisePicture(5, 4, 9);
    fill.effectFarbfläche(0x00336699);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 5; ++x) ASSERT_EQ(test::pixelAt(fill, x, y), (test::Bgr{0x33, 0x66, 0x99}));

    // Between the top and bottom bands, pixels outside the side bands stay.
    const cDIBSection in = noisePicture(40, 30, 4);
    cDIBSection framed = in;
    framed.effectRahmen(50, 50, 6);
    for (int y = 7; y < 23; ++y)
        for (int x = 7; x < 33; ++x) ASSERT_EQ(test::pixelAt(framed, x, y), test::pixelAt(in, x, y));
    // The side bands change: 200 x 1.1 at the outer edge.
    cDIBSection grey = test::makeDib(40, 30, [](int, int) { return test::Bgr{200, 200, 200}; });
    grey.effectRahmen(50, 50, 6);
    EXPECT_EQ(test::pixelAt(grey, 0, 15), (test::Bgr{220, 220, 220}));
    EXPECT_EQ(test::pixelAt(grey, 39, 15).b, roundClamp(200 * (1 + -7 / 10.0)));
}

}  // namespace
}  // namespace brindle
