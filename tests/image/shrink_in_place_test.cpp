// Shrinking in the picture's own buffer against a stretch into a new
// section: the same bytes, pad bytes included, for halving, odd sizes,
// single rows and columns, and sizes that grow (the new section's path).
#include <gtest/gtest.h>

#include <cstring>

#include "image/dib_section.h"
#include "image/image_compare.h"

namespace brindle {
namespace {

using test::noisePicture;

cDIBSection stretchedIntoNew(const cDIBSection& in, int w, int h) {
    cDIBSection out;
    EXPECT_TRUE(out.Create(w, h));
    in.StretchPicture(out.hdc(), 0, 0, w, h, 0, 0, in.Width(), in.Height());
    return out;
}

::testing::AssertionResult sameBytes(const cDIBSection& a, const cDIBSection& b) {
    if (a.Width() != b.Width() || a.Height() != b.Height())
        return ::testing::AssertionFailure() << "sizes differ";
    const std::size_t n = static_cast<std::size_t>(a.BytesPerScanLine()) * a.Height();
    if (std::memcmp(a.DIBSectionBitsPtr(), b.DIBSectionBitsPtr(), n) != 0)
        return ::testing::AssertionFailure() << "bytes differ";
    return ::testing::AssertionSuccess();
}

TEST(ShrinkInPlace, EqualsAStretchIntoANewSection) {
    const std::tuple<int, int, int, int> cases[] = {
        {400, 300, 200, 150}, {401, 301, 200, 150}, {37, 23, 18, 12}, {5, 4, 2, 2}, {2, 2, 1, 1},
        {1, 1, 1, 1},         {7, 9, 7, 9},         {7, 9, 1, 9},     {7, 9, 7, 1}, {64, 9, 63, 8},
        {33, 17, 3, 16},      {10, 10, 20, 20},     {10, 10, 5, 20},  {3, 50, 1, 49}};
    unsigned seed = 1;
    for (const auto& [w0, h0, w, h] : cases) {
        SCOPED_TRACE(testing::Message() << w0 << "x" << h0 << " to " << w << "x" << h);
        cDIBSection in = noisePicture(w0, h0, seed++);
        for (int y = 0; y < h0; ++y)  // pads that are not zero
            for (int i = w0 * 3; i < in.BytesPerScanLine(); ++i) in.rowBits(y)[i] = 0x5A;
        in.setExif(std::string("Exif"));
        cDIBSection sized = in;
        ProgressWord progress;
        sized.effectGröße(w, h, &progress);
        EXPECT_EQ(100, progress.load());
        EXPECT_EQ("Exif", sized.exif());
        EXPECT_EQ(static_cast<std::uint32_t>(sized.BytesPerScanLine() * h), sized.header().sizeImage);
        ASSERT_TRUE(sameBytes(stretchedIntoNew(in, w, h), sized));
    }
}

}  // namespace
}  // namespace brindle
