#include "panorama/seam_overlay.h"

#include <gtest/gtest.h>

using brindle::cDIBSection;
using brindle::panorama::seamOverlay;

namespace {

// Blue, green and red of each pixel follow from its place, so every pixel
// of the band can be worked out by hand.
cDIBSection patterned(int w, int h, int base) {
    cDIBSection d;
    d.Create(w, h);
    const brindle::Surface s = d.hdc();
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            std::uint8_t* p = s.row(y) + x * 3;
            p[0] = static_cast<std::uint8_t>(base + x);
            p[1] = static_cast<std::uint8_t>(base + 2 * y);
            p[2] = static_cast<std::uint8_t>(base + x + y);
        }
    return d;
}

const std::uint8_t* pixel(const cDIBSection& d, int x, int y) { return d.hdc().row(y) + x * 3; }

// The mean of two bytes, halves to the even neighbour.
int mean(int a, int b) {
    const int q = (a + b) / 2;
    return (a + b) % 2 == 1 && q % 2 == 1 ? q + 1 : q;
}

}  // namespace

TEST(SeamOverlay, MixesTheBandOfBothPicturesHalfAndHalf) {
    const cDIBSection left = patterned(12, 8, 10);
    const cDIBSection right = patterned(12, 8, 100);
    // The right picture starts at column 7 of the left one, two rows lower.
    const cDIBSection band = seamOverlay(left, right, 7, 2);
    ASSERT_EQ(band.Width(), 5);
    ASSERT_EQ(band.Height(), 8);
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 5; ++x) {
            SCOPED_TRACE(testing::Message() << "band pixel " << x << "," << y);
            const std::uint8_t* l = pixel(left, x + 7, y);
            const int ry = y - 2;
            for (int c = 0; c < 3; ++c) {
                const int r = ry >= 0 ? pixel(right, x, ry)[c] : 0;  // black where the right one is missing
                EXPECT_EQ(pixel(band, x, y)[c], mean(l[c], r));
            }
        }
    // Upwards: the bottom rows lose the right picture.
    const cDIBSection up = seamOverlay(left, right, 10, -3);
    ASSERT_EQ(up.Width(), 2);
    EXPECT_EQ(pixel(up, 1, 0)[2], mean(pixel(left, 11, 0)[2], pixel(right, 1, 3)[2]));
    EXPECT_EQ(pixel(up, 0, 7)[0], mean(pixel(left, 10, 7)[0], 0));
}

TEST(SeamOverlay, IsEmptyOutsideTheLeftPicture) {
    const cDIBSection left = patterned(12, 8, 10);
    const cDIBSection right = patterned(12, 8, 100);
    EXPECT_TRUE(seamOverlay(left, right, 12, 0).empty());
    EXPECT_TRUE(seamOverlay(left, right, -1, 0).empty());
    EXPECT_TRUE(seamOverlay(left, cDIBSection(), 3, 0).empty());
    EXPECT_EQ(seamOverlay(left, right, 0, 0).Width(), 12);
}
