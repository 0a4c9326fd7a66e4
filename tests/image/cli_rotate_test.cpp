// brindlesee-cli rotate on camera photos: the turned file is what both an
// EXIF-aware reader and our own loader show turned, nothing is cut off,
// and the file keeps its time and mode.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>

#include "exif_test_files.h"
#include "image/file_stamp.h"
#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "image_compare.h"
#include "support/temp_home.h"

namespace brindle::test {
namespace {

class CliRotate : public TempHomeTest {
  protected:
    int rotate(const std::string& direction, const std::string& name) {
        const std::string command = std::string(BRINDLESEE_CLI) + " rotate " + direction + " '" +
                                    path(name) + "' 2>'" + path("err.txt") + "'";
        const int raw = std::system(command.c_str());
        return WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    }
    cDIBSection load(const std::string& name) {
        const PictureFile f = LoadPictureFile(path(name));
        return f.picture ? *f.picture.Handle() : cDIBSection{};
    }
    void stamp(const std::string& name) {
        FileStamp s = readFileStamp(path(name));
        s.modified = s.accessed = {981173106, 0};
        s.mode = 0640;
        ASSERT_TRUE(applyFileStamp(path(name), s));
    }
    void expectStamp(const std::string& name) {
        const FileStamp s = readFileStamp(path(name));
        EXPECT_EQ(s.modified.tv_sec, 981173106);
        EXPECT_EQ(s.mode & 07777, 0640u);
    }
};

TEST_F(CliRotate, ACameraPhotoTurnsAsShownAndStandsUprightForEveryReader) {
    ASSERT_TRUE(SaveJPG(smoothPicture(64, 32), path("plain.jpg"), 92).ok);
    ASSERT_TRUE(SaveJPG(smoothPicture(16, 8), path("thumb.jpg"), 80).ok);
    ExifSpec spec;
    spec.orientation = 6;  // taken with the camera turned right
    spec.thumbnail = readBytes("thumb.jpg");
    writeBytes("photo.jpg", jpegWithExif(readBytes("plain.jpg"), exifTiff(spec)));
    stamp("photo.jpg");
    const cDIBSection shown = load("photo.jpg");
    ASSERT_EQ(shown.Width(), 32);

    ASSERT_EQ(rotate("right", "photo.jpg"), 0) << readBytes("err.txt");
    const ExifSeen seen = exifSeenByExiv2(path("photo.jpg"));
    EXPECT_EQ(seen.orientation, 1);
    EXPECT_FALSE(seen.hasThumbnail);
    EXPECT_EQ(seen.make, "Brindle Test Camera");
    // Orientation 1 means the stored rows are what a viewer shows.
    cDIBSection stored;
    ASSERT_TRUE(decodeJpeg(readBytes("photo.jpg"), stored));
    const cDIBSection ours = load("photo.jpg");
    EXPECT_TRUE(sameImage(stored, ours));
    EXPECT_TRUE(sameImage(turnedRightByHand(shown), ours, 8));
    expectStamp("photo.jpg");
}

TEST_F(CliRotate, APictureOfPartialBlocksKeepsItsWholeSizeAndContent) {
    const cDIBSection picture = smoothPicture(100, 75);
    ASSERT_TRUE(SaveJPG(picture, path("p.jpg"), 90).ok);
    stamp("p.jpg");
    const cDIBSection start = load("p.jpg");
    cDIBSection expected = start;
    for (int turn = 1; turn <= 4; ++turn) {
        SCOPED_TRACE(turn);
        ASSERT_EQ(rotate("right", "p.jpg"), 0) << readBytes("err.txt");
        expected = turnedRightByHand(expected);
        const cDIBSection got = load("p.jpg");
        ASSERT_EQ(got.Width(), turn % 2 ? 75 : 100);
        ASSERT_EQ(got.Height(), turn % 2 ? 100 : 75);
        EXPECT_TRUE(sameImage(expected, got, 12 * turn));
        expectStamp("p.jpg");
    }
    EXPECT_TRUE(similarImage(start, load("p.jpg"), 4.0));
    EXPECT_TRUE(sameImage(picture, load("p.jpg"), 40));
}

}  // namespace
}  // namespace brindle::test
