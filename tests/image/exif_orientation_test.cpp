// Camera pictures show upright: the EXIF orientation is honoured by every
// JPEG load, by the header sizes, and re-encoded photos keep their EXIF.
#include <gtest/gtest.h>
#include <turbojpeg.h>

#include <vector>

#include "exif_test_files.h"
#include "image/exif_orientation.h"
#include "image/image_info.h"
#include "image/jpeg_io.h"
#include "image/jpeg_markers.h"
#include "image/picture_io.h"
#include "image_compare.h"
#include "support/temp_home.h"

namespace brindle::test {
namespace {

class ExifOrientation : public TempHomeTest {
  protected:
    // A picture with no symmetry, 64 x 32: whole blocks, so a decode of
    // any copy of its coded data gives the same pixels.
    void SetUp() override {
        TempHomeTest::SetUp();
        ASSERT_TRUE(SaveJPG(noisePicture(64, 32, 7), path("plain.jpg"), 95).ok);
        plain_ = readBytes("plain.jpg");
        ASSERT_TRUE(decodeJpeg(plain_, stored_));
    }
    std::string withOrientation(int orientation, const std::string& name) {
        ExifSpec spec;
        spec.orientation = orientation;
        writeBytes(name, jpegWithExif(plain_, exifTiff(spec)));
        return path(name);
    }
    std::string plain_;
    cDIBSection stored_;
};

TEST_F(ExifOrientation, EachOfTheEightOrientationsLoadsUprightEverywhere) {
    for (int o = 1; o <= 8; ++o) {
        SCOPED_TRACE(testing::Message() << "orientation " << o);
        const std::string file = withOrientation(o, "o" + std::to_string(o) + ".jpg");
        const cDIBSection expected = shownByHand(stored_, o);

        cDIBSection viaLoadJpg;
        ASSERT_TRUE(LoadJPG(viaLoadJpg, file));
        EXPECT_TRUE(sameImage(expected, viaLoadJpg));
        const PictureFile viaFile = LoadPictureFile(file);
        ASSERT_TRUE(viaFile.picture);
        EXPECT_TRUE(sameImage(expected, *viaFile.picture.Handle()));
        PictureHolder holder;
        int w = 0, h = 0;
        ASSERT_TRUE(Loadpicture(holder, file, w, h).ok);
        EXPECT_EQ(w, expected.Width());
        EXPECT_EQ(h, expected.Height());
        EXPECT_TRUE(sameImage(expected, *holder.picture.Handle()));

        // A reduced load asks for the upright size and decodes at half scale.
        cDIBSection half;
        ASSERT_TRUE(LoadJPG(half, file, nullptr, expected.Width() / 2, expected.Height() / 2));
        cDIBSection storedHalf;
        ASSERT_TRUE(decodeJpeg(plain_, storedHalf, 32, 16));
        EXPECT_TRUE(sameImage(shownByHand(storedHalf, o), half));

        CImageInfo info;
        ASSERT_TRUE(info.ReadImageInfo(file));
        EXPECT_EQ(info.Width, expected.Width());
        EXPECT_EQ(info.Height, expected.Height());
    }
}

TEST_F(ExifOrientation, BigEndianBlocksAndBlocksWithoutTheTagAreRead) {
    ExifSpec spec;
    spec.orientation = 8;
    spec.bigEndian = true;
    writeBytes("mm.jpg", jpegWithExif(plain_, exifTiff(spec)));
    cDIBSection dib;
    ASSERT_TRUE(LoadJPG(dib, path("mm.jpg")));
    EXPECT_TRUE(sameImage(shownByHand(stored_, 8), dib));
    spec.orientation = 0;
    writeBytes("none.jpg", jpegWithExif(plain_, exifTiff(spec)));
    ASSERT_TRUE(LoadJPG(dib, path("none.jpg")));
    EXPECT_TRUE(sameImage(stored_, dib));
}

TEST_F(ExifOrientation, JpegsTheFastDecoderRefusesStandUprightToo) {
    // A CMYK JPEG, left half cyan and right half yellow: the platform loader reads it.
    std::vector<unsigned char> cmyk(16 * 8 * 4, 0);
    for (std::size_t i = 0; i < cmyk.size(); i += 4) {
        cmyk[i + ((i / 4) % 16 < 8 ? 0 : 2)] = 255;
        cmyk[i + 3] = 255;  // stored inverted, as Adobe writes it: no black
    }
    tjhandle h = tjInitCompress();
    unsigned char* out = nullptr;
    unsigned long size = 0;
    ASSERT_EQ(tjCompress2(h, cmyk.data(), 16, 64, 8, TJPF_CMYK, &out, &size, TJSAMP_444, 95, 0), 0);
    writeBytes("cmyk.jpg", std::string(reinterpret_cast<char*>(out), size));
    tjFree(out);
    tjDestroy(h);
    ExifSpec spec;
    spec.orientation = 6;
    writeBytes("cmyk6.jpg", jpegWithExif(readBytes("cmyk.jpg"), exifTiff(spec)));
    const PictureFile plain = LoadPictureFile(path("cmyk.jpg"));
    const PictureFile turned = LoadPictureFile(path("cmyk6.jpg"));
    ASSERT_TRUE(plain.picture);
    ASSERT_TRUE(turned.picture);
    EXPECT_FALSE(pixelAt(*plain.picture.Handle(), 0, 0) == pixelAt(*plain.picture.Handle(), 15, 0));
    EXPECT_TRUE(sameImage(shownByHand(*plain.picture.Handle(), 6), *turned.picture.Handle()));
}

TEST_F(ExifOrientation, BrokenBlocksReadAsUprightAndNeverFailTheLoad) {
    ExifSpec spec;
    spec.orientation = 9;
    const std::string nine = exifTiff(spec);
    spec.orientation = 6;
    const std::string six = exifTiff(spec);
    struct Case {
        const char* name;
        std::string tiff;
    } cases[] = {
        {"orientation out of range", nine},
        {"cut inside IFD0", six.substr(0, 20)},
        {"only the byte order", "II"},
        {"not TIFF at all", std::string(300, '\x5A')},
        {"an entry count past the end", std::string("II*\0\x08\0\0\0\xFF\xFF", 10)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        writeBytes("broken.jpg", jpegWithExif(plain_, c.tiff));
        const PictureFile file = LoadPictureFile(path("broken.jpg"));
        ASSERT_TRUE(file.picture);
        EXPECT_TRUE(sameImage(stored_, *file.picture.Handle()));
        CImageInfo info;
        ASSERT_TRUE(info.ReadImageInfo(path("broken.jpg")));
        EXPECT_EQ(info.Width, 64);
        EXPECT_EQ(exifOrientation(c.tiff), 1);
    }
    // An IFD whose next-IFD link points at itself: read once, not forever.
    const std::string loop("II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0\x06\0\0\0\x08\0\0\0",
                           26);
    EXPECT_EQ(exifOrientation(loop), 6);
    writeBytes("loop.jpg", jpegWithExif(plain_, loop));
    cDIBSection dib;
    ASSERT_TRUE(LoadJPG(dib, path("loop.jpg")));
    EXPECT_TRUE(sameImage(shownByHand(stored_, 6), dib));
}

TEST_F(ExifOrientation, ReEncodedPhotosKeepTheirExifStandingUpright) {
    ExifSpec spec;
    spec.orientation = 6;
    spec.pixelWidth = 64;
    spec.pixelHeight = 32;
    ASSERT_TRUE(SaveJPG(smoothPicture(16, 8), path("thumb.jpg"), 80).ok);
    spec.thumbnail = readBytes("thumb.jpg");
    writeBytes("camera.jpg", jpegWithExif(plain_, exifTiff(spec)));
    ASSERT_TRUE(exifSeenByExiv2(path("camera.jpg")).hasThumbnail);  // the input is what we think
    const cDIBSection upright = shownByHand(stored_, 6);

    // Saved back as it was loaded, and after an effect on a copy.
    const PictureFile loaded = LoadPictureFile(path("camera.jpg"));
    ASSERT_TRUE(loaded.picture);
    ASSERT_TRUE(SavePictureFile(loaded.picture, path("saved.jpg"), 95).ok);
    cDIBSection edited;
    ASSERT_TRUE(edited.CreateFromPicture(loaded.picture));
    edited.effectGrayBits();
    ASSERT_TRUE(SaveDIBFile(edited, path("edited.jpg"), 95).ok);
    ASSERT_TRUE(SaveJPG(edited, path("ijl.jpg"), 95).ok);
    // Reduced for display and saved.
    PictureHolder holder;
    int w = 16, h = 32;
    ASSERT_TRUE(Loadpicture(holder, path("camera.jpg"), w, h).ok);
    ASSERT_TRUE(SavePictureFile(holder.picture, path("small.jpg"), 90).ok);

    // The photo in memory still tells how its file stood.
    EXPECT_EQ(exifOrientation(loaded.picture.Handle()->exif()), 6);
    // Without a thumbnail exiv2 can patch the block in place.
    spec.thumbnail.clear();
    writeBytes("nothumb.jpg", jpegWithExif(plain_, exifTiff(spec)));
    const PictureFile noThumb = LoadPictureFile(path("nothumb.jpg"));
    ASSERT_TRUE(noThumb.picture);
    ASSERT_TRUE(SavePictureFile(noThumb.picture, path("nothumb-saved.jpg"), 95).ok);

    for (const char* name : {"saved.jpg", "edited.jpg", "ijl.jpg", "small.jpg", "nothumb-saved.jpg"}) {
        SCOPED_TRACE(name);
        const ExifSeen seen = exifSeenByExiv2(path(name));
        EXPECT_TRUE(seen.hasExif);
        EXPECT_EQ(seen.orientation, 1);
        EXPECT_EQ(seen.make, "Brindle Test Camera");
        EXPECT_FALSE(seen.hasThumbnail);
        const bool small = std::string(name) == "small.jpg";
        EXPECT_EQ(seen.pixelWidth, small ? 16 : 32);
        EXPECT_EQ(seen.pixelHeight, small ? 32 : 64);
    }
    // The pixels are the upright picture's, coded as any other picture.
    ASSERT_TRUE(SaveJPG(upright, path("reference.jpg"), 95).ok);
    cDIBSection back, reference;
    ASSERT_TRUE(LoadJPG(back, path("saved.jpg")));
    ASSERT_TRUE(LoadJPG(reference, path("reference.jpg")));
    EXPECT_TRUE(sameImage(reference, back));

    // A picture that never had EXIF gets none.
    ASSERT_TRUE(SaveJPG(smoothPicture(8, 8), path("fresh.jpg"), 90).ok);
    EXPECT_TRUE(findExifTiff(readBytes("fresh.jpg")).empty());
}

}  // namespace
}  // namespace brindle::test
