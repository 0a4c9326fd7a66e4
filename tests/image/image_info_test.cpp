// CImageInfo on file starts built in the test, and cDib packed-DIB files.
#include "image/image_info.h"

#include <gtest/gtest.h>

#include <cstring>

#include "image/image_info_format.h"
#include "image/jpeg_io.h"
#include "image/packed_dib.h"
#include "image/picture_io.h"
#include "image_compare.h"
#include "support/temp_home.h"

namespace brindle::test {
namespace {

// Every test runs in its own temporary program directory.
class ImageInfo : public TempHomeTest {};
class PackedDibBytes : public TempHomeTest {};

std::string png(int width, int height, int bitDepth, int colourType) {
    Bytes b;
    b.u8(137).text("PNG").u8(13).u8(10).u8(26).u8(10).u32be(13).text("IHDR");
    b.u32be(static_cast<std::uint32_t>(width))
        .u32be(static_cast<std::uint32_t>(height))
        .u8(bitDepth)
        .u8(colourType);
    b.u8(0).u8(0).u8(0).u32be(0);
    return b.str();
}

struct Info {
    int width, height, depth, type;
    bool operator==(const Info&) const = default;
};
std::ostream& operator<<(std::ostream& os, const Info& i) {
    return os << i.width << "x" << i.height << " depth " << i.depth << " type " << i.type;
}

Info infoOf(const std::string& bytes) {
    CImageInfo info;
    info.ReadImageInfoFromBytes(bytes);
    return {info.Width, info.Height, info.Depth, info.ImageType};
}

TEST_F(ImageInfo, PngDepthFollowsTheColourType) {
    struct Case {
        int bitDepth, colourType, depth;
    } cases[] = {{1, 0, 1}, {16, 0, 16}, {8, 2, 24}, {16, 2, 48}, {8, 3, 8},
                 {4, 3, 8}, {1, 3, 8},   {8, 4, 16}, {8, 6, 32}};
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.bitDepth << " " << c.colourType);
        EXPECT_EQ(infoOf(png(640, 480, c.bitDepth, c.colourType)),
                  (Info{640, 480, c.depth, kImagePng}));
    }
    EXPECT_EQ(infoOf(png(640, 480, 8, 5)), (Info{0, 0, 0, kImageUnknown}));
    EXPECT_EQ(infoOf(png(640, 480, 8, 2).substr(0, 25)), (Info{0, 0, 0, kImageUnknown}));
}

TEST_F(ImageInfo, GifSizesComeFromTheLogicalScreen) {
    Bytes b;
    b.text("GIF87a").u16(300).u16(200).u8(0xF4).u8(0).u8(0);
    EXPECT_EQ(infoOf(b.str()), (Info{300, 200, 5, kImageGif}));
}

Bytes jpegStart() {
    Bytes b;
    b.u8(0xFF).u8(0xD8).u8(0xFF).u8(0xE0).u16be(16).text("JFIF").u8(0).fill(9, 1);
    return b;
}

Bytes frame(Bytes b, int code, int width, int height, int components) {
    b.u8(0xFF).u8(code).u16be(8 + 3 * components).u8(8).u16be(height).u16be(width).u8(components);
    for (int i = 0; i < components; ++i) b.u8(i + 1).u8(0x11).u8(0);
    return b;
}

TEST_F(ImageInfo, JpegIsWalkedMarkerByMarker) {
    EXPECT_EQ(infoOf(frame(jpegStart(), 0xC0, 1024, 768, 3).str()),
              (Info{1024, 768, 24, kImageJpeg}));
    EXPECT_EQ(infoOf(frame(jpegStart(), 0xC2, 33, 44, 1).str()), (Info{33, 44, 8, kImageJpeg}));
    // Fill bytes and a table before the frame are stepped over.
    Bytes tables = jpegStart();
    tables.u8(0xFF).u8(0xFF).u8(0xC4).u16be(5).u8(0).u8(0).u8(0);
    EXPECT_EQ(infoOf(frame(tables, 0xC1, 7, 9, 3).str()), (Info{7, 9, 24, kImageJpeg}));
    // The scan before any frame ends the walk.
    Bytes scanFirst = jpegStart();
    scanFirst.u8(0xFF).u8(0xDA).u16be(4).u16be(0);
    EXPECT_EQ(infoOf(frame(scanFirst, 0xC0, 5, 5, 3).str()), (Info{0, 0, 0, kImageUnknown}));
}

TEST_F(ImageInfo, JpegFrameBeyondTheBufferReadsAsZero) {
    Bytes big = jpegStart();
    const std::size_t segments = imageinfo::kBufferSize / 65000 + 1;
    for (std::size_t i = 0; i < segments; ++i) big.u8(0xFF).u8(0xE1).u16be(65002).fill(65000, 0);
    EXPECT_EQ(infoOf(frame(big, 0xC0, 100, 100, 3).str()), (Info{0, 0, 0, kImageUnknown}));
    Bytes near = jpegStart();
    near.u8(0xFF).u8(0xE1).u16be(65002).fill(65000, 0);
    EXPECT_EQ(infoOf(frame(near, 0xC0, 100, 100, 3).str()), (Info{100, 100, 24, kImageJpeg}));
}

TEST_F(ImageInfo, BmpInfoAndCoreHeaders) {
    Bytes info;
    info.text("BM")
        .u32(0)
        .u32(0)
        .u32(54)
        .u32(40)
        .u32(320)
        .u32(static_cast<std::uint32_t>(-240))
        .u16(1)
        .u16(8);
    info.fill(24, 0);
    EXPECT_EQ(infoOf(info.str()), (Info{320, 240, 8, kImageBmp}));
    Bytes core;
    core.text("BM").u32(0).u32(0).u32(26).u32(12).u16(31).u16(17).u16(1).u16(24);
    EXPECT_EQ(infoOf(core.str()), (Info{31, 17, 24, kImageBmp}));
}

TEST_F(ImageInfo, UnknownOrShortFilesReadAsZero) {
    for (const std::string& bytes :
         {std::string("hello world, not a picture"), std::string("GI"), std::string()})
        EXPECT_EQ(infoOf(bytes), (Info{0, 0, 0, kImageUnknown}));
    CImageInfo info;
    EXPECT_FALSE(info.ReadImageInfo("/nonexistent/picture.png"));
    EXPECT_EQ(info.Width, 0);
}

class ImageInfoFiles : public TempHomeTest {};

TEST_F(ImageInfoFiles, ReadsOurOwnJpegAndPngFiles) {
    const cDIBSection dib = smoothPicture(37, 21);
    ASSERT_TRUE(SaveDIBFile(dib, path("a.jpg"), 90).ok);
    ASSERT_TRUE(SaveDIBFile(dib, path("a.png"), 90).ok);
    ASSERT_TRUE(SaveDIBFile(dib, path("a.bmp"), 90).ok);
    for (const auto& [name, type] :
         {std::pair{"a.jpg", kImageJpeg}, {"a.png", kImagePng}, {"a.bmp", kImageBmp}}) {
        CImageInfo info;
        EXPECT_TRUE(info.ReadImageInfo(path(name))) << name;
        EXPECT_EQ((Info{info.Width, info.Height, info.Depth, info.ImageType}),
                  (Info{37, 21, 24, type}))
            << name;
    }
}

class PackedDib : public TempHomeTest {};

TEST_F(PackedDib, SectionsBecomeBmpFilesOthersRead) {
    const cDIBSection dib = noisePicture(5, 3, 41);
    cDib file;
    ASSERT_TRUE(file.CreateFromDIBSection(dib));
    ASSERT_TRUE(file.WriteToFile(path("n.bmp")));
    cDib read;
    std::string error;
    ASSERT_TRUE(read.CreateFromFile(path("n.bmp"), &error)) << error;
    EXPECT_EQ(read.BitCount(), 24);
    EXPECT_EQ(read.Width(), 5);
    EXPECT_EQ(read.Height(), 3);
    EXPECT_EQ(read.Planes(), 1);
    EXPECT_EQ(read.Compression(), 0u);
    EXPECT_EQ(read.SizeInfoHeader(), 40u);
    EXPECT_EQ(read.SizeImage(), 48u);
    EXPECT_EQ(read.BitOffset(), 54u);
    EXPECT_EQ(read.SizeBitmapInfo(), 40u);
    EXPECT_EQ(read.Filetype(), 0x4D42);
    EXPECT_EQ(read.PointerToBits() - read.PointerToBitmapInfo(), 40);
    EXPECT_EQ(read.SizeBits(), 48u);
    EXPECT_EQ(std::memcmp(read.PointerToBits(), dib.DIBSectionBitsPtr(), 48), 0);
    // FreeImage reads the file to the same pixels.
    PictureFile loaded = LoadPictureFile(path("n.bmp"));
    ASSERT_TRUE(loaded.picture);
    EXPECT_TRUE(sameImage(dib, *loaded.picture.Handle()));
}

TEST_F(PackedDib, PackedPointerGetsAFileHeaderCountingTheColourTable) {
    Bytes packed;
    packed.u32(40).u32(2).u32(2).u16(1).u16(8).u32(0).u32(8).u32(0).u32(0).u32(2).u32(0);
    packed.u32(0x000000).u32(0xFFFFFF);                      // two colours
    packed.u8(0).u8(1).u8(0).u8(0).u8(1).u8(0).u8(0).u8(0);  // 2 rows of 4 bytes
    cDib dib;
    const auto* p = reinterpret_cast<const std::uint8_t*>(packed.str().data());
    ASSERT_TRUE(dib.CreateFromPackedDIBPointer(p, packed.size()));
    EXPECT_EQ(dib.BitOffset(), 14u + 40u + 8u);
    EXPECT_EQ(dib.ClrUsed(), 2u);
    EXPECT_EQ(dib.PointerToBits()[1], 1);
    ASSERT_TRUE(dib.WriteToFile(path("p.bmp")));
    PictureFile loaded = LoadPictureFile(path("p.bmp"));
    ASSERT_TRUE(loaded.picture);
    EXPECT_EQ(pixelAt(*loaded.picture.Handle(), 1, 1), (Bgr{255, 255, 255}));
    EXPECT_EQ(pixelAt(*loaded.picture.Handle(), 0, 1), (Bgr{0, 0, 0}));
}

TEST_F(PackedDib, FailuresNameTheFile) {
    cDib dib;
    std::string error;
    EXPECT_FALSE(dib.CreateFromFile(path("none.bmp"), &error));
    EXPECT_EQ(error, "File does not exist:\r\n" + path("none.bmp"));
    writeBytes("text.bmp", "this is text, not a bitmap");
    EXPECT_FALSE(dib.CreateFromFile(path("text.bmp"), &error));
    EXPECT_EQ(error, "File is not a supported bitmap format:\r\n" + path("text.bmp"));
    EXPECT_TRUE(dib.empty());
    EXPECT_EQ(dib.PointerToBits(), nullptr);
}

TEST_F(PackedDibBytes, HostileHeadersAreRefused) {
    auto file = [](std::uint32_t bitOffset, std::int32_t width, std::int32_t height, int bits,
                   std::size_t bitBytes) {
        Bytes b;
        b.text("BM").u32(0).u32(0).u32(bitOffset).u32(40).u32(static_cast<std::uint32_t>(width));
        b.u32(static_cast<std::uint32_t>(height))
            .u16(1)
            .u16(bits)
            .u32(0)
            .u32(0)
            .u32(0)
            .u32(0)
            .u32(0)
            .u32(0);
        b.fill(bitBytes, 0);
        return b.str();
    };
    struct Case {
        const char* name;
        std::string bytes;
    } cases[] = {
        {"bits start past the end", file(4000, 2, 2, 24, 16)},
        {"bits start inside the header", file(20, 2, 2, 24, 16)},
        {"fewer bits than rows", file(54, 2, 2, 24, 15)},
        {"huge height", file(54, 2, 0x7FFFFFFF, 24, 16)},
        {"zero width", file(54, 0, 2, 24, 16)},
        {"odd bit count", file(54, 2, 2, 7, 16)},
        {"header cut short", file(54, 2, 2, 24, 16).substr(0, 30)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        cDib dib;
        EXPECT_FALSE(dib.CreateFromBytes(c.bytes));
        EXPECT_TRUE(dib.empty());
    }
    cDib good;
    EXPECT_TRUE(good.CreateFromBytes(file(54, 2, -2, 24, 16)));
    EXPECT_EQ(good.Height(), -2);
}

}  // namespace
}  // namespace brindle::test
