// JPEG paths: round trip, quality limits, file times, lossless turns
// compared with jpegtran, and DCT-scaled decoding.
#include <gtest/gtest.h>

#include <cstdlib>

#include "image/file_stamp.h"
#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "image_compare.h"
#include "support/temp_home.h"

namespace brindle::test {
namespace {

// Every test runs in its own temporary program directory.
class JpegEncoders : public TempHomeTest {};
class JpegScaleChoice : public TempHomeTest {};

TEST_F(JpegScaleChoice, TheSmallestScaleThatStillCoversTheWantedSize) {
    struct Case {
        int w, h, wantW, wantH, num, denom;
    } cases[] = {
        {4000, 3000, 160, 120, 1, 8}, {1001, 800, 100, 100, 1, 8}, {1000, 800, 200, 200, 1, 4},
        {64, 64, 40, 40, 5, 8},       {100, 100, 100, 100, 1, 1},  {100, 100, 0, 0, 1, 1},
        {100, 100, 300, 50, 1, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message()
                     << c.w << "x" << c.h << " for " << c.wantW << "x" << c.wantH);
        const JpegScale s = chooseJpegScale(c.w, c.h, c.wantW, c.wantH);
        EXPECT_EQ(s.num * c.denom, c.num * s.denom) << s.num << "/" << s.denom;
        if (c.wantW > 0) {
            EXPECT_GE(s.scaled(c.w), std::min(c.w, c.wantW));
            EXPECT_GE(s.scaled(c.h), std::min(c.h, c.wantH));
        }
    }
}

TEST_F(JpegEncoders, LookedUpByMimeTypeInAnyCase) {
    EXPECT_TRUE(hasEncoderFor("image/jpeg"));
    EXPECT_TRUE(hasEncoderFor("IMAGE/JPEG"));
    EXPECT_FALSE(hasEncoderFor("image/gif"));
}

class JpegFiles : public TempHomeTest {
  protected:
    cDIBSection decode(const std::string& file) {
        cDIBSection dib;
        std::string error;
        EXPECT_TRUE(LoadJPG(dib, path(file), &error)) << file << ": " << error;
        return dib;
    }
    void setTime(const std::string& file, time_t seconds) {
        FileStamp stamp = readFileStamp(path(file));
        stamp.modified = {seconds, 0};
        stamp.accessed = {seconds, 0};
        ASSERT_TRUE(applyFileStamp(path(file), stamp));
    }
    time_t modified(const std::string& file) { return readFileStamp(path(file)).modified.tv_sec; }
    int run(const std::string& command) { return std::system(command.c_str()); }
};

TEST_F(JpegFiles, RoundTripStaysCloseToTheInput) {
    const cDIBSection dib = smoothPicture(123, 77);
    ASSERT_TRUE(SaveJPG(dib, path("r.jpg"), 95).ok);
    const cDIBSection back = decode("r.jpg");
    EXPECT_TRUE(sameImage(dib, back, 24));
    EXPECT_TRUE(similarImage(dib, back, 1.5));
    int w = 0, h = 0;
    EXPECT_TRUE(readJpegSize(readBytes("r.jpg"), w, h));
    EXPECT_EQ(w, 123);
    EXPECT_EQ(h, 77);
}

TEST_F(JpegFiles, LoadPicturePlusReadsByContent) {
    const cDIBSection dib = noisePicture(9, 4, 62);
    ASSERT_TRUE(SaveDIBFile(dib, path("a.png"), 90).ok);
    writeBytes("named-wrong.jpg", readBytes("a.png"));
    const Picture picture = LoadPicturePlus(path("named-wrong.jpg"));
    ASSERT_TRUE(picture);
    EXPECT_TRUE(sameImage(dib, *picture.Handle()));
    EXPECT_FALSE(LoadPicturePlus(path("none.png")));
}

TEST_F(JpegFiles, LoadJpgTakesOnlyJpgAndJpegNames) {
    const cDIBSection dib = smoothPicture(16, 16);
    ASSERT_TRUE(SaveJPG(dib, path("a.JPEG"), 90).ok);
    writeBytes("a.png", readBytes("a.JPEG"));
    cDIBSection out;
    EXPECT_TRUE(LoadJPG(out, path("a.JPEG")));
    EXPECT_FALSE(LoadJPG(out, path("a.png")));
}

TEST_F(JpegFiles, QualityIsLimitedToZeroToOneHundred) {
    const Picture picture = smoothPicture(64, 48).Picture();
    for (auto [asked, limited] : {std::pair{120, 100}, std::pair{-5, 0}}) {
        SCOPED_TRACE(asked);
        ASSERT_TRUE(SavePictureAsJPG(picture, path("asked.jpg"), asked).ok);
        ASSERT_TRUE(SavePictureAsJPG(picture, path("limited.jpg"), limited).ok);
        EXPECT_EQ(readBytes("asked.jpg"), readBytes("limited.jpg"));
    }
    ASSERT_TRUE(SavePictureAsJPG(picture, path("fifty.jpg"), 50).ok);
    ASSERT_TRUE(SavePictureAsJPG(picture, path("hundred.jpg"), 100).ok);
    EXPECT_LT(readBytes("fifty.jpg").size(), readBytes("hundred.jpg").size());
}

TEST_F(JpegFiles, SaveJpgKeepsTheTimeAndModeOfTheFileItReplaces) {
    ASSERT_TRUE(SaveJPG(smoothPicture(32, 32), path("old.jpg"), 90).ok);
    setTime("old.jpg", 981173106);  // 2001-02-03
    ASSERT_EQ(::chmod(path("old.jpg").c_str(), 0600), 0);
    const std::string before = readBytes("old.jpg");
    ASSERT_TRUE(SaveJPG(noisePicture(32, 32, 61), path("old.jpg"), 90).ok);
    EXPECT_NE(readBytes("old.jpg"), before);
    EXPECT_EQ(modified("old.jpg"), 981173106);
    EXPECT_EQ(readFileStamp(path("old.jpg")).mode, 0600u);
    EXPECT_FALSE(SaveJPG(smoothPicture(8, 8), path("no/such/dir/x.jpg"), 90).ok);
}

TEST_F(JpegFiles, LosslessTurnsMatchJpegtran) {
    ASSERT_TRUE(SaveJPG(smoothPicture(64, 48), path("a.jpg"), 90).ok);
    struct Case {
        int transform;
        const char* jpegtran;
    } cases[] = {{kJpegRotate90, "-rotate 90"},
                 {kJpegRotate270, "-rotate 270"},
                 {kJpegRotate180, "-rotate 180"},
                 {kJpegFlipHorizontal, "-flip horizontal"},
                 {kJpegFlipVertical, "-flip vertical"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.jpegtran);
        std::string error;
        ASSERT_TRUE(SaveAsRotatedJpgLossless(path("a.jpg"), path("ours.jpg"), c.transform, &error))
            << error;
        ASSERT_EQ(run(std::string("jpegtran ") + c.jpegtran + " -outfile '" + path("ref.jpg") +
                      "' '" + path("a.jpg") + "'"),
                  0);
        EXPECT_TRUE(sameImage(decode("ref.jpg"), decode("ours.jpg")));
    }
    // The turned picture is the decoded picture turned (up to the chroma
    // upsampling, which runs the other way round).
    ASSERT_TRUE(SaveAsRotatedJpgLossless(path("a.jpg"), path("right.jpg"), kJpegRotate90));
    cDIBSection turned = decode("a.jpg");
    turned.effectBildDrehen90(90);
    EXPECT_TRUE(sameImage(turned, decode("right.jpg"), 6));
}

TEST_F(JpegFiles, TurningInPlaceKeepsTheFileTime) {
    ASSERT_TRUE(SaveJPG(smoothPicture(64, 32), path("p.jpg"), 90).ok);
    setTime("p.jpg", 1000000000);
    ASSERT_TRUE(SaveAsRotatedJpgLossless(path("p.jpg"), path("p.jpg"), kJpegRotate270));
    EXPECT_EQ(modified("p.jpg"), 1000000000);
    EXPECT_EQ(decode("p.jpg").Width(), 32);
    std::string error;
    EXPECT_FALSE(SaveAsRotatedJpgLossless(path("p.jpg"), path("q.jpg"), 99, &error));
    EXPECT_FALSE(SaveAsRotatedJpgLossless(path("none.jpg"), path("q.jpg"), kJpegRotate90, &error));
}

TEST_F(JpegFiles, ScaledDecodingMatchesAFullDecodeWithinTolerance) {
    const cDIBSection dib = smoothPicture(800, 600);
    ASSERT_TRUE(SaveJPG(dib, path("big.jpg"), 92).ok);
    const std::string bytes = readBytes("big.jpg");
    const cDIBSection full = decode("big.jpg");
    struct Case {
        int wantW, wantH, gotW, gotH;
    } cases[] = {
        {100, 75, 100, 75}, {200, 150, 200, 150}, {160, 120, 200, 150}, {500, 300, 500, 375}};
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.wantW << "x" << c.wantH);
        cDIBSection scaled;
        ASSERT_TRUE(decodeJpeg(bytes, scaled, c.wantW, c.wantH));
        ASSERT_EQ(scaled.Width(), c.gotW);
        ASSERT_EQ(scaled.Height(), c.gotH);
        cDIBSection stretched;
        ASSERT_TRUE(stretched.Create(c.gotW, c.gotH));
        full.StretchPicture(stretched.hdc(), 0, 0, c.gotW, c.gotH, 0, 0, 800, 600);
        EXPECT_TRUE(similarImage(stretched, scaled, 2.0));
        EXPECT_TRUE(sameImage(stretched, scaled, 16));
    }
}

TEST_F(JpegFiles, HostileJpegHeadersAreNotBelieved) {
    // A frame header promising 60000 x 60000 pixels in a few bytes.
    Bytes b;
    b.u8(0xFF).u8(0xD8);
    b.u8(0xFF).u8(0xDB).u16be(67).u8(0).fill(64, 1);
    b.u8(0xFF).u8(0xC0).u16be(17).u8(8).u16be(60000).u16be(60000).u8(3);
    for (int i = 1; i <= 3; ++i) b.u8(i).u8(0x11).u8(0);
    b.u8(0xFF).u8(0xD9);
    cDIBSection dib;
    std::string error;
    EXPECT_FALSE(decodeJpeg(b.str(), dib, 0, 0, &error));
    EXPECT_TRUE(dib.empty());
    EXPECT_FALSE(error.empty());
}

}  // namespace
}  // namespace brindle::test
