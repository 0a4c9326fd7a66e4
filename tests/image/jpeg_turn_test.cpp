// Turning JPEGs: whole blocks move bit-exactly, partial edge blocks are
// kept (re-encoded at the file's own quality), and a photo with an EXIF
// orientation comes out upright with orientation 1.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <turbojpeg.h>

#include "exif_test_files.h"
#include "image/file_stamp.h"
#include "image/jpeg_io.h"
#include "image/jpeg_quality.h"
#include "image_compare.h"
#include "support/temp_home.h"

namespace brindle::test {
namespace {

// Pixels exactly as stored, whatever the EXIF says: TurboJPEG alone.
cDIBSection storedPixels(const std::string& jpeg) {
    cDIBSection dib;
    tjhandle h = tjInitDecompress();
    int w = 0, hgt = 0, sub = 0, cs = 0;
    const auto* p = reinterpret_cast<const unsigned char*>(jpeg.data());
    if (tjDecompressHeader3(h, p, jpeg.size(), &w, &hgt, &sub, &cs) == 0 && dib.Create(w, hgt))
        tjDecompress2(h, p, jpeg.size(), dib.DIBSectionBitsPtr(), w, dib.BytesPerScanLine(), hgt,
                      TJPF_BGR, TJFLAG_BOTTOMUP);
    tjDestroy(h);
    return dib;
}

int subsamplingOf(const std::string& jpeg) {
    tjhandle h = tjInitDecompress();
    int w = 0, hgt = 0, sub = -1, cs = 0;
    tjDecompressHeader3(h, reinterpret_cast<const unsigned char*>(jpeg.data()), jpeg.size(), &w,
                        &hgt, &sub, &cs);
    tjDestroy(h);
    return sub;
}

std::string turboTransform(const std::string& jpeg, int op) {
    tjhandle h = tjInitTransform();
    tjtransform xf{};
    xf.op = op;
    xf.options = TJXOPT_PERFECT;
    unsigned char* out = nullptr;
    unsigned long size = 0;
    std::string result;
    if (tjTransform(h, reinterpret_cast<const unsigned char*>(jpeg.data()), jpeg.size(), 1, &out,
                    &size, &xf, 0) == 0)
        result.assign(reinterpret_cast<const char*>(out), size);
    tjFree(out);
    tjDestroy(h);
    return result;
}

class JpegTurn : public TempHomeTest {
  protected:
    void setStamp(const std::string& file, time_t seconds, mode_t mode) {
        FileStamp stamp = readFileStamp(path(file));
        stamp.modified = stamp.accessed = {seconds, 0};
        stamp.mode = mode;
        ASSERT_TRUE(applyFileStamp(path(file), stamp));
    }
    void expectStamp(const std::string& file, time_t seconds, mode_t mode) {
        const FileStamp stamp = readFileStamp(path(file));
        EXPECT_EQ(stamp.modified.tv_sec, seconds);
        EXPECT_EQ(stamp.mode & 07777, mode);
    }
};

TEST_F(JpegTurn, WholeBlocksTurnBitExactly) {
    ASSERT_TRUE(SaveJPG(smoothPicture(64, 48), path("a.jpg"), 90).ok);
    const std::string original = readBytes("a.jpg");
    struct Case {
        int transform, op;
    } cases[] = {{kJpegRotate90, TJXOP_ROT90},     {kJpegRotate180, TJXOP_ROT180},
                 {kJpegRotate270, TJXOP_ROT270},   {kJpegFlipHorizontal, TJXOP_HFLIP},
                 {kJpegFlipVertical, TJXOP_VFLIP}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.transform);
        std::string error;
        ASSERT_TRUE(SaveAsRotatedJpgLossless(path("a.jpg"), path("t.jpg"), c.transform, &error))
            << error;
        const std::string expected = turboTransform(original, c.op);
        ASSERT_FALSE(expected.empty());
        EXPECT_TRUE(readBytes("t.jpg") == expected);
    }
    // Right and back left: the very pixels of the start.
    ASSERT_TRUE(SaveAsRotatedJpgLossless(path("a.jpg"), path("b.jpg"), kJpegRotate90));
    ASSERT_TRUE(SaveAsRotatedJpgLossless(path("b.jpg"), path("b.jpg"), kJpegRotate270));
    EXPECT_TRUE(sameImage(storedPixels(original), storedPixels(readBytes("b.jpg"))));
}

TEST_F(JpegTurn, PartialEdgeBlocksAreKeptFourTurnsRound) {
    // 100 x 75 with 4:2:0 chroma: neither side is a whole number of 16-pixel blocks.
    const cDIBSection picture = smoothPicture(100, 75);
    ASSERT_TRUE(SaveJPG(picture, path("p.jpg"), 90).ok);
    setStamp("p.jpg", 981173106, 0640);
    const cDIBSection start = storedPixels(readBytes("p.jpg"));
    cDIBSection expected = start;
    for (int turn = 1; turn <= 4; ++turn) {
        SCOPED_TRACE(turn);
        std::string error;
        ASSERT_TRUE(SaveAsRotatedJpgLossless(path("p.jpg"), path("p.jpg"), kJpegRotate90, &error))
            << error;
        expected = turnedRightByHand(expected);
        const std::string bytes = readBytes("p.jpg");
        const cDIBSection got = storedPixels(bytes);
        ASSERT_EQ(got.Width(), expected.Width());
        ASSERT_EQ(got.Height(), expected.Height());
        EXPECT_TRUE(sameImage(expected, got, 12 * turn));
        EXPECT_TRUE(similarImage(expected, got, 1.0 * turn));
        int quality = 0;
        EXPECT_TRUE(estimateJpegQuality(bytes, quality));
        EXPECT_EQ(quality, 90);
        EXPECT_EQ(subsamplingOf(bytes), TJSAMP_420);
        expectStamp("p.jpg", 981173106, 0640);
    }
    EXPECT_EQ(expected.Width(), 100);
    EXPECT_TRUE(similarImage(start, storedPixels(readBytes("p.jpg")), 4.0));
}

TEST_F(JpegTurn, ReEncodingKeepsTheFilesSubsamplingAndQuality) {
    const cDIBSection picture = smoothPicture(30, 21);
    for (int sub : {TJSAMP_444, TJSAMP_422, TJSAMP_GRAY}) {
        for (int quality : {35, 75, 97}) {
            SCOPED_TRACE(testing::Message() << "subsampling " << sub << " quality " << quality);
            std::string bytes;
            ASSERT_TRUE(encodeJpeg(picture, quality, bytes, nullptr, sub));
            int estimated = 0;
            ASSERT_TRUE(estimateJpegQuality(bytes, estimated));
            EXPECT_EQ(estimated, quality);
            writeBytes("s.jpg", bytes);
            ASSERT_TRUE(SaveAsRotatedJpgLossless(path("s.jpg"), path("s.jpg"), kJpegRotate270));
            const std::string turned = readBytes("s.jpg");
            EXPECT_EQ(subsamplingOf(turned), sub);
            ASSERT_TRUE(estimateJpegQuality(turned, estimated));
            EXPECT_EQ(estimated, quality);
            EXPECT_EQ(storedPixels(turned).Width(), 21);
        }
    }
    int unused = 0;
    EXPECT_FALSE(estimateJpegQuality("no jpeg", unused));
}

TEST_F(JpegTurn, PhotosWithAnOrientationTurnAsShownAndComeOutUpright) {
    ASSERT_TRUE(SaveJPG(smoothPicture(12, 8), path("thumb.jpg"), 80).ok);
    struct Size {
        int w, h;
    } sizes[] = {{64, 32}, {40, 24}};  // whole blocks, partial blocks
    for (const Size& size : sizes) {
        ASSERT_TRUE(SaveJPG(smoothPicture(size.w, size.h), path("plain.jpg"), 92).ok);
        const std::string plain = readBytes("plain.jpg");
        const cDIBSection stored = storedPixels(plain);
        for (int o = 1; o <= 8; ++o) {
            SCOPED_TRACE(testing::Message() << size.w << "x" << size.h << " orientation " << o);
            ExifSpec spec;
            spec.orientation = o;
            if (o % 2) spec.thumbnail = readBytes("thumb.jpg");  // with and without
            spec.pixelWidth = size.w;
            spec.pixelHeight = size.h;
            writeBytes("photo.jpg", jpegWithExif(plain, exifTiff(spec)));
            std::string error;
            ASSERT_TRUE(SaveAsRotatedJpgLossless(path("photo.jpg"), path("photo.jpg"),
                                                 kJpegRotate90, &error))
                << error;
            const cDIBSection expected = turnedRightByHand(shownByHand(stored, o));
            const ExifSeen seen = exifSeenByExiv2(path("photo.jpg"));
            EXPECT_EQ(seen.orientation, 1);
            EXPECT_FALSE(seen.hasThumbnail);
            EXPECT_EQ(seen.make, "Brindle Test Camera");
            EXPECT_EQ(seen.pixelWidth, expected.Width());
            EXPECT_EQ(seen.pixelHeight, expected.Height());
            const cDIBSection got = storedPixels(readBytes("photo.jpg"));
            ASSERT_EQ(got.Width(), expected.Width());
            ASSERT_EQ(got.Height(), expected.Height());
            EXPECT_TRUE(sameImage(expected, got, 14));
            cDIBSection ours;
            ASSERT_TRUE(LoadJPG(ours, path("photo.jpg")));
            EXPECT_TRUE(sameImage(got, ours));
        }
    }
}

// An XMP packet that repeats the orientation, in both of its spellings.
std::string withXmpAfterExif(const std::string& jpeg, int orientation) {
    const std::string o = std::to_string(orientation);
    const std::string payload = std::string("http://ns.adobe.com/xap/1.0/\0", 29) +
                                "<x:xmpmeta><rdf:Description tiff:Orientation=\"" + o +
                                "\" tiff:Make=\"Brindle\"><tiff:Orientation>" + o +
                                "</tiff:Orientation></rdf:Description></x:xmpmeta>";
    const std::size_t exifEnd = 4 + ((static_cast<unsigned char>(jpeg[4]) << 8) | static_cast<unsigned char>(jpeg[5]));
    std::string segment = "\xFF\xE1";
    segment += static_cast<char>((payload.size() + 2) >> 8);
    segment += static_cast<char>((payload.size() + 2) & 0xFF);
    return jpeg.substr(0, exifEnd) + segment + payload + jpeg.substr(exifEnd);
}

TEST_F(JpegTurn, AnXmpOrientationIsMadeUprightWithTheExifOne) {
    for (const int width : {64, 40}) {  // blocks moved, pixels re-encoded
        SCOPED_TRACE(width);
        ASSERT_TRUE(SaveJPG(smoothPicture(width, 24), path("plain.jpg"), 92).ok);
        ExifSpec spec;
        spec.orientation = 6;
        writeBytes("photo.jpg", withXmpAfterExif(jpegWithExif(readBytes("plain.jpg"), exifTiff(spec)), 6));
        std::string error;
        ASSERT_TRUE(SaveAsRotatedJpgLossless(path("photo.jpg"), path("photo.jpg"), kJpegRotate90, &error)) << error;
        const std::string turned = readBytes("photo.jpg");
        EXPECT_EQ(exifSeenByExiv2(path("photo.jpg")).orientation, 1);
        EXPECT_NE(turned.find("tiff:Orientation=\"1\" tiff:Make=\"Brindle\"><tiff:Orientation>1</tiff:Orientation>"),
                  std::string::npos);
        EXPECT_EQ(turned.find("tiff:Orientation=\"6\""), std::string::npos);
    }
}

}  // namespace
}  // namespace brindle::test
