// The frame on a colour done in the picture's own buffer against the plane
// it replaces: the same bytes, pad bytes included, for every thickness
// that leaves an inside, on odd and tiny sizes.
#include <gtest/gtest.h>

#include <cstring>

#include "image/dib_section.h"
#include "image/frame_plane.h"
#include "image/image_compare.h"

namespace brindle {
namespace {

using test::noisePicture;
using test::sameImage;

// Pad bytes are garbage in the input so that the result must set them.
cDIBSection dirtyPads(int w, int h, unsigned seed) {
    cDIBSection dib = noisePicture(w, h, seed);
    for (int y = 0; y < h; ++y)
        for (int i = w * 3; i < dib.BytesPerScanLine(); ++i) dib.rowBits(y)[i] = 0xA5;
    return dib;
}

bool sameBytes(const cDIBSection& a, const cDIBSection& b) {
    return a.Width() == b.Width() && a.Height() == b.Height() &&
           std::memcmp(a.DIBSectionBitsPtr(), b.DIBSectionBitsPtr(),
                       static_cast<std::size_t>(a.BytesPerScanLine()) * a.Height()) == 0;
}

TEST(FramePlane, InPlaceEqualsThePlaneForEveryThickness) {
    const std::pair<int, int> sizes[] = {{3, 3}, {4, 5}, {5, 4}, {7, 3}, {37, 23},
                                         {64, 9}, {101, 77}, {400, 300}};
    unsigned seed = 1;
    for (const auto& [w, h] : sizes)
        for (int d = 1; 2 * d < w && 2 * d < h; d += (d < 6 ? 1 : 7))
            for (const auto& [light, shadow, colour] :
                 {std::tuple{50, 50, 3368601u}, {0, 100, 0u}, {100, 0, 0xFFFFFFu}, {73, 12, 0x123456u}}) {
                SCOPED_TRACE(testing::Message() << w << "x" << h << " d " << d << " light "
                                                << light << " shadow " << shadow);
                const cDIBSection in = dirtyPads(w, h, seed++);
                cDIBSection fast = in, plain = in;
                ASSERT_TRUE(frameOnColourInPlace(fast, colour, light, shadow, d));
                ASSERT_TRUE(frameOnColourPlane(plain, colour, light, shadow, d));
                ASSERT_TRUE(sameImage(plain, fast));
                ASSERT_TRUE(sameBytes(plain, fast));
            }
}

TEST(FramePlane, FrameAndShrinkAtOnceEqualTheTwoSteps) {
    // Halving (the batch's usual size step), odd shrinks, one pixel, the
    // same size, and thick frames whose kept rows are all frame.
    const std::tuple<int, int, int, int, int> cases[] = {
        {400, 300, 20, 200, 150}, {401, 301, 20, 200, 150}, {37, 23, 3, 18, 11},
        {37, 23, 3, 37, 23},      {64, 9, 2, 13, 4},        {101, 77, 1, 1, 1},
        {101, 77, 30, 50, 38},    {5, 4, 1, 2, 2},          {3, 3, 1, 3, 1},
        {120, 90, 7, 119, 89},    {90, 120, 11, 31, 97},    {4000, 3000, 20, 2000, 1500}};
    unsigned seed = 11;
    for (const auto& [w, h, d, width, height] : cases)
        for (const auto& [light, shadow, colour] :
             {std::tuple{50, 50, 14737632u}, {0, 100, 0u}, {100, 0, 0xFFFFFFu}, {73, 12, 0x9060C0u}}) {
            SCOPED_TRACE(testing::Message() << w << "x" << h << " d " << d << " to " << width << "x"
                                            << height << " light " << light << " shadow " << shadow);
            const cDIBSection in = dirtyPads(w, h, seed++);
            cDIBSection fused = in, plain = in;
            ProgressWord progress;
            ASSERT_TRUE(frameOnColourAndShrink(fused, colour, light, shadow, d, width, height, &progress));
            EXPECT_EQ(100, progress.load());
            ASSERT_TRUE(frameOnColourInPlace(plain, colour, light, shadow, d));
            plain.effectGröße(width, height);
            ASSERT_TRUE(sameBytes(plain, fused));
            if (w > 1000) break;  // the camera size once is enough
        }
}

TEST(FramePlane, FrameAndShrinkRefusesWhatItCannotDoInPlace) {
    const cDIBSection in = noisePicture(40, 30, 5);
    for (const auto& [d, width, height] : {std::tuple{0, 20, 15}, {20, 20, 15}, {15, 20, 15},
                                           {3, 41, 15}, {3, 20, 31}, {3, 0, 15}, {3, 20, -1}}) {
        SCOPED_TRACE(testing::Message() << "d " << d << " to " << width << "x" << height);
        cDIBSection fused = in;
        EXPECT_FALSE(frameOnColourAndShrink(fused, 0x808080u, 50, 50, d, width, height));
        EXPECT_TRUE(sameBytes(in, fused));
    }
}

TEST(FramePlane, InPlaceRefusesWhenNoInsideIsLeft) {
    for (const auto& [w, h, d] : {std::tuple{1, 1, 1}, {2, 9, 1}, {9, 2, 1}, {10, 10, 5},
                                  {10, 11, 0}, {10, 11, -3}, {3, 3, 2147483647}}) {
        SCOPED_TRACE(testing::Message() << w << "x" << h << " d " << d);
        const cDIBSection in = noisePicture(w, h, 7);
        cDIBSection fast = in;
        EXPECT_FALSE(frameOnColourInPlace(fast, 0x808080u, 50, 50, d));
        EXPECT_TRUE(sameBytes(in, fast));
    }
}

TEST(FramePlane, KeepsTheExifBlockAndReportsProgress) {
    cDIBSection fast = noisePicture(40, 30, 3);
    fast.setExif(std::string("Exif block"));
    ProgressWord progress;
    ASSERT_TRUE(frameOnColourInPlace(fast, 0, 50, 50, 4, &progress));
    EXPECT_EQ("Exif block", fast.exif());
    EXPECT_EQ(100, progress.load());
}

}  // namespace
}  // namespace brindle
