#include "explorer/thumbnail_cache.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <filesystem>
#include <vector>

#include "explorer/cache_folder.h"
#include "explorer/thumbnail_symbols.h"
#include "image/exif_test_files.h"
#include "image/image_compare.h"
#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "support/temp_home.h"
#include "thumbnail_test_support.h"

using namespace brindle;
using namespace brindle::explorer;
using brindle::test::Bgr;
using brindle::test::pixelAt;
using brindle::test::sameImage;
using namespace brindle::test;

namespace {

class ThumbnailCacheTest : public brindle::test::TempHomeTest {
  protected:
    std::string folder() const { return path("Bilder/"); }
    std::string picture(const std::string& name) const { return folder() + name; }
    std::string thumb(const std::string& name) const {
        return thumbnailPath(home(), picture(name));
    }
    ThumbnailCache cache(int size = 160, Language lang = Language::German) const {
        ThumbnailSettings s;
        s.size = size;
        s.language = lang;
        s.log = [this](const std::string& line) { log_.push_back(line); };
        return ThumbnailCache(home(), s);
    }
    mutable std::vector<std::string> log_;
};

const Bgr kRed{30, 40, 210}, kBlue{200, 60, 20};

// Within JPEG noise of `want`.
::testing::AssertionResult near(Bgr want, Bgr got, int tolerance = 6) {
    if (std::abs(want.b - got.b) <= tolerance && std::abs(want.g - got.g) <= tolerance &&
        std::abs(want.r - got.r) <= tolerance)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "expected about " << want << " but got " << got;
}

}  // namespace

TEST(ThumbnailTrailer, ThirteenBytesOfTheSourceSize) {
    EXPECT_EQ(thumbnailTrailer(4000, 3000), std::string("\r004000003000"));
    EXPECT_EQ(thumbnailTrailer(7, 123456), std::string("\r000007123456"));
    EXPECT_EQ(thumbnailTrailer(1000000, -3), std::string("\r999999000000"));
    int w = 0, h = 0;
    ASSERT_TRUE(parseThumbnailTrailer("JPEG...\r004000003000", w, h));
    EXPECT_EQ(w, 4000);
    EXPECT_EQ(h, 3000);
    EXPECT_FALSE(parseThumbnailTrailer("\n004000003000", w, h));
    EXPECT_FALSE(parseThumbnailTrailer("\r00400000300x", w, h));
    EXPECT_FALSE(parseThumbnailTrailer("\r00400000300", w, h));

    int tw = 0, th = 0;
    thumbnailSize(4000, 3000, 160, tw, th);
    EXPECT_EQ(tw * 1000 + th, 160120);
    thumbnailSize(1000, 3000, 160, tw, th);
    EXPECT_EQ(tw * 1000 + th, 53160);
    thumbnailSize(50, 30, 160, tw, th);  // never enlarged
    EXPECT_EQ(tw * 1000 + th, 50030);
    thumbnailSize(5000, 1, 160, tw, th);
    EXPECT_EQ(tw * 1000 + th, 160001);
    EXPECT_EQ(thumbnailPath("/p/", "/home/u/Bilder/a.png"),
              "/p/Thumbnails/&home&u&Bilder/a.png.jpg");
}

TEST_F(ThumbnailCacheTest, AThumbnailIsAJpegWithTheTrailerAndTheSourcesTime) {
    // Left half red, right half blue, 400 x 300.
    writePicture(picture("a.jpg"), twoColours(400, 300, kRed, kBlue, false));
    const Thumbnail t = cache().get(picture("a.jpg"));
    ASSERT_EQ(t.kind, ThumbnailKind::Picture);
    EXPECT_FALSE(t.fromCache);
    EXPECT_EQ(t.sourceWidth, 400);
    EXPECT_EQ(t.sourceHeight, 300);
    ASSERT_EQ(t.pixels.Width(), 160);
    ASSERT_EQ(t.pixels.Height(), 120);
    EXPECT_TRUE(near(kRed, pixelAt(t.pixels, 20, 60)));
    EXPECT_TRUE(near(kBlue, pixelAt(t.pixels, 140, 60)));
    EXPECT_FALSE(t.message);

    ASSERT_EQ(thumb("a.jpg"),
              home() + "Thumbnails/" + thumbnailFolderName(folder()) + "/a.jpg.jpg");
    const std::string bytes = readFile(thumb("a.jpg"));
    ASSERT_GT(bytes.size(), 13u + 4u);
    EXPECT_EQ(bytes.substr(bytes.size() - 13), std::string("\r000400000300"));
    EXPECT_EQ(bytes.substr(0, 2), std::string("\xFF\xD8"));
    EXPECT_EQ(bytes.substr(bytes.size() - 15, 2), std::string("\xFF\xD9"));
    // The JPEG alone, read by our decoder, is the thumbnail the caller got.
    cDIBSection alone;
    ASSERT_TRUE(decodeJpeg(bytes.substr(0, bytes.size() - 13), alone));
    EXPECT_TRUE(sameImage(alone, t.pixels));
    EXPECT_EQ(modified(thumb("a.jpg")), modified(picture("a.jpg")));
    EXPECT_EQ(jpegQualityOf(bytes), 90);
}

TEST_F(ThumbnailCacheTest, AnUnchangedPictureIsNotDecodedAgainAndANewerOneIsRemade) {
    writePicture(picture("a.jpg"), twoColours(400, 300, kRed, kRed, false));
    setModified(picture("a.jpg"), 1'600'000'000);
    const ThumbnailCache first = cache();
    ASSERT_EQ(first.get(picture("a.jpg")).kind, ThumbnailKind::Picture);
    EXPECT_EQ(first.decodes(), 1);

    // The source is not even opened: unreadable bytes under the same time
    // still give the cached picture and size.
    writeFile(picture("a.jpg"), "not a picture any more");
    setModified(picture("a.jpg"), 1'600'000'000);
    const ThumbnailCache second = cache();
    const Thumbnail again = second.get(picture("a.jpg"));
    EXPECT_EQ(second.decodes(), 0);
    ASSERT_EQ(again.kind, ThumbnailKind::Picture);
    EXPECT_TRUE(again.fromCache);
    EXPECT_EQ(again.sourceWidth, 400);
    EXPECT_EQ(again.sourceHeight, 300);
    EXPECT_TRUE(near(kRed, pixelAt(again.pixels, 80, 60)));

    // A newer picture under the same name gets a new thumbnail.
    writePicture(picture("a.jpg"), twoColours(300, 600, kBlue, kBlue, false));
    setModified(picture("a.jpg"), 1'600'000'010);
    const Thumbnail remade = second.get(picture("a.jpg"));
    EXPECT_EQ(second.decodes(), 1);
    EXPECT_FALSE(remade.fromCache);
    EXPECT_EQ(remade.sourceWidth, 300);
    EXPECT_EQ(remade.sourceHeight, 600);
    EXPECT_EQ(remade.pixels.Width(), 80);
    EXPECT_TRUE(near(kBlue, pixelAt(remade.pixels, 40, 80)));
    EXPECT_EQ(modified(thumb("a.jpg")).tv_sec, 1'600'000'010);
    EXPECT_EQ(second.get(picture("a.jpg")).fromCache, true);
    EXPECT_EQ(second.decodes(), 1);

    // A picture turned with its time kept has its thumbnail dropped.
    EXPECT_TRUE(dropThumbnail(home(), picture("a.jpg")));
    EXPECT_FALSE(std::filesystem::exists(thumb("a.jpg")));
    EXPECT_TRUE(dropThumbnail(home(), picture("a.jpg"))) << "none left is fine";
    EXPECT_FALSE(second.get(picture("a.jpg")).fromCache);
    EXPECT_EQ(second.decodes(), 2);
    std::filesystem::remove(thumb("a.jpg"));
    std::filesystem::create_directories(thumb("a.jpg") + "/x");
    EXPECT_FALSE(dropThumbnail(home(), picture("a.jpg"))) << "something in the way stays";
    std::filesystem::remove_all(thumb("a.jpg"));

    // Another "Größe Thumbnails:" makes them again, at that size.
    const ThumbnailCache larger = cache(200);
    const Thumbnail big = larger.get(picture("a.jpg"));
    EXPECT_EQ(larger.decodes(), 1);
    EXPECT_EQ(big.pixels.Height(), 200);
    EXPECT_EQ(big.pixels.Width(), 100);
}

TEST_F(ThumbnailCacheTest, ACorruptPictureGivesTheErrorPictureAndTheRunGoesOn) {
    writeFile(picture("bad.jpg"), std::string("\xFF\xD8\xFF\xE0 broken", 11));
    writeFile(picture("bad.png"), "no png at all");
    writePicture(picture("good.jpg"), twoColours(320, 240, kRed, kBlue, false));
    const ThumbnailCache c = cache(120);

    const Thumbnail bad = c.get(picture("bad.jpg"));
    EXPECT_EQ(bad.kind, ThumbnailKind::Error);
    EXPECT_TRUE(sameImage(errorPicture(120), bad.pixels));
    EXPECT_EQ(bad.sourceWidth, 0);
    EXPECT_FALSE(std::filesystem::exists(thumb("bad.jpg")));
    ASSERT_EQ(log_.size(), 1u);
    const std::string head =
        "FrmBildviewer - erzeugeThumbNail --> Fehler beim laden: " + picture("bad.jpg") + "  ";
    EXPECT_EQ(log_[0].substr(0, head.size()), head);
    EXPECT_GT(log_[0].size(), head.size()) << "the error is named";

    EXPECT_EQ(c.get(picture("bad.png")).kind, ThumbnailKind::Error);
    EXPECT_EQ(log_.size(), 2u);
    const Thumbnail good = c.get(picture("good.jpg"));
    EXPECT_EQ(good.kind, ThumbnailKind::Picture);
    EXPECT_EQ(good.pixels.Width(), 120);
    EXPECT_EQ(good.pixels.Height(), 90);
    EXPECT_TRUE(std::filesystem::exists(thumb("good.jpg")));

    // The error picture: a grey card, red in the middle, dark border.
    const cDIBSection e = errorPicture(120);
    EXPECT_EQ(e.Width(), 120);
    EXPECT_EQ(e.Height(), 90);
    EXPECT_EQ(pixelAt(e, 10, 45), (Bgr{224, 224, 224}));
    EXPECT_EQ(pixelAt(e, 0, 0), (Bgr{96, 96, 96}));
    EXPECT_EQ(pixelAt(e, 60, 45), (Bgr{30, 30, 200}));
}

TEST_F(ThumbnailCacheTest, ATurnedCameraPictureGivesAnUprightThumbnailAndSize) {
    // Stored 400 x 200, top half red, bottom half blue, tagged "turn right":
    // upright it is 200 x 400 with red on the right.
    std::string jpeg;
    ASSERT_TRUE(encodeJpeg(twoColours(400, 200, kRed, kBlue, true), 95, jpeg));
    brindle::test::ExifSpec spec;
    spec.orientation = 6;
    writeFile(picture("cam.jpg"), brindle::test::jpegWithExif(jpeg, brindle::test::exifTiff(spec)));

    const Thumbnail t = cache().get(picture("cam.jpg"));
    ASSERT_EQ(t.kind, ThumbnailKind::Picture);
    EXPECT_EQ(t.sourceWidth, 200);
    EXPECT_EQ(t.sourceHeight, 400);
    ASSERT_EQ(t.pixels.Width(), 80);
    ASSERT_EQ(t.pixels.Height(), 160);
    EXPECT_TRUE(near(kRed, pixelAt(t.pixels, 70, 80)));
    EXPECT_TRUE(near(kBlue, pixelAt(t.pixels, 10, 80)));
    const std::string bytes = readFile(thumb("cam.jpg"));
    EXPECT_EQ(bytes.substr(bytes.size() - 13), std::string("\r000200000400"));
    EXPECT_EQ(bytes.find("Exif"), std::string::npos) << "no camera data in a thumbnail";

    // Read back from the cache the same way round.
    const Thumbnail again = cache().get(picture("cam.jpg"));
    EXPECT_TRUE(again.fromCache);
    EXPECT_TRUE(sameImage(t.pixels, again.pixels));
}

TEST_F(ThumbnailCacheTest, MediaFilesGetTheMediaSymbolAndNoThumbnail) {
    for (const char* name : {"song.MP3", "clip.avi", "film.mpeg", "track01.cda", "a.mid"}) {
        SCOPED_TRACE(name);
        writeFile(picture(name), "RIFF....");
        const ThumbnailCache c = cache(100);
        const Thumbnail t = c.get(picture(name));
        EXPECT_EQ(t.kind, ThumbnailKind::Media);
        EXPECT_TRUE(sameImage(mediaSymbol(100), t.pixels));
        EXPECT_EQ(c.decodes(), 0);
        EXPECT_FALSE(std::filesystem::exists(thumb(name)));
    }
    EXPECT_FALSE(isMediaFile("a.mpeg.jpg"));
    EXPECT_TRUE(isMediaFile("/x/A.WAV"));
    EXPECT_TRUE(log_.empty());
}

TEST_F(ThumbnailCacheTest, AFailedTimeStampIsToldAndTheThumbnailDeleted) {
    writePicture(picture("a.jpg"), twoColours(200, 100, kRed, kRed, false));
    // An older thumbnail stands there.
    ASSERT_EQ(cache().get(picture("a.jpg")).kind, ThumbnailKind::Picture);
    setModified(picture("a.jpg"), 1'700'000'000);
    for (Language lang : {Language::German, Language::English}) {
        ThumbnailSettings s;
        s.language = lang;
        s.setFileTime = [](const std::string&, const struct timespec&) { return false; };
        const Thumbnail t = ThumbnailCache(home(), s).get(picture("a.jpg"));
        EXPECT_EQ(t.kind, ThumbnailKind::Picture) << "still shown";
        ASSERT_TRUE(t.message);
        if (lang == Language::German) {
            EXPECT_EQ(t.message->title, "Fehler");
            EXPECT_EQ(t.message->text,
                      "Fehler beim schreiben des Zeitstempels der Datei (Filetime) aufgetreten ");
        } else {
            EXPECT_EQ(t.message->title, "Error");
            EXPECT_EQ(t.message->text, "Error while writing the filetimestamp ");
        }
        EXPECT_FALSE(std::filesystem::exists(thumb("a.jpg")));
        EXPECT_TRUE(std::filesystem::is_empty(std::filesystem::path(thumb("a.jpg")).parent_path()))
            << "no temporary file is left";
    }
}

TEST_F(ThumbnailCacheTest, OtherPicturesGoThroughTheGeneralLoader) {
    std::filesystem::create_directories(folder());
    ASSERT_TRUE(SaveDIBFile(twoColours(300, 100, kRed, kBlue, false), picture("b.bmp"), 0).ok);
    ASSERT_TRUE(SaveDIBFile(twoColours(40, 30, kBlue, kBlue, false), picture("small.png"), 0).ok);
    const ThumbnailCache c = cache();
    const Thumbnail b = c.get(picture("b.bmp"));
    ASSERT_EQ(b.kind, ThumbnailKind::Picture);
    EXPECT_EQ(b.pixels.Width(), 160);
    EXPECT_EQ(b.pixels.Height(), 53);
    EXPECT_TRUE(near(kRed, pixelAt(b.pixels, 10, 26)));
    EXPECT_TRUE(near(kBlue, pixelAt(b.pixels, 150, 26)));
    const std::string bytes = readFile(thumb("b.bmp"));
    EXPECT_EQ(bytes.substr(bytes.size() - 13), std::string("\r000300000100"));
    const Thumbnail small = c.get(picture("small.png"));
    EXPECT_EQ(small.pixels.Width(), 40);
    EXPECT_EQ(small.pixels.Height(), 30);
}

TEST_F(ThumbnailCacheTest, AHostileCachedFileIsNotTaken) {
    cDIBSection pixels;
    int w = 0, h = 0;
    std::string jpeg;
    ASSERT_TRUE(encodeJpeg(twoColours(60, 40, kRed, kRed, false), 90, jpeg));
    EXPECT_TRUE(decodeThumbnailFile(jpeg + thumbnailTrailer(600, 400), pixels, w, h));
    EXPECT_FALSE(decodeThumbnailFile(jpeg, pixels, w, h)) << "no trailer";
    EXPECT_FALSE(decodeThumbnailFile(jpeg + thumbnailTrailer(0, 400), pixels, w, h)) << "no size";
    EXPECT_FALSE(decodeThumbnailFile("garbage" + thumbnailTrailer(6, 4), pixels, w, h));
    std::string wide;
    ASSERT_TRUE(encodeJpeg(twoColours(kMaxThumbnailSize + 1, 8, kRed, kRed, false), 90, wide));
    EXPECT_FALSE(decodeThumbnailFile(wide + thumbnailTrailer(6, 4), pixels, w, h)) << "too large";
    std::string huge = jpeg;
    huge.resize(kMaxThumbnailFileBytes + 1, '\0');
    EXPECT_FALSE(decodeThumbnailFile(huge + thumbnailTrailer(6, 4), pixels, w, h)) << "too long";

    // In the cache, a file that is not a thumbnail of ours is replaced.
    writePicture(picture("a.jpg"), twoColours(200, 100, kRed, kRed, false));
    writeFile(thumb("a.jpg"), "garbage" + thumbnailTrailer(200, 100));
    const struct timespec source = modified(picture("a.jpg"));
    setModified(thumb("a.jpg"), source.tv_sec, source.tv_nsec);
    const ThumbnailCache c = cache();
    const Thumbnail t = c.get(picture("a.jpg"));
    EXPECT_EQ(c.decodes(), 1);
    EXPECT_EQ(t.kind, ThumbnailKind::Picture);
    EXPECT_FALSE(t.fromCache);
    EXPECT_TRUE(cache().get(picture("a.jpg")).fromCache);
}
