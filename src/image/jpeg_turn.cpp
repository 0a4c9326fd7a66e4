// Turning a JPEG as the user sees it. The stored rows are turned by the
// EXIF orientation and the user's turn in one step, so the file comes out
// upright with orientation 1 and every viewer, EXIF-aware or not, shows
// the same picture.
#include <turbojpeg.h>


#include "image/exif_orientation.h"
#include "image/file_stamp.h"
#include "image/jpeg_io.h"
#include "image/jpeg_markers.h"
#include "image/jpeg_quality.h"
#include "image/picture_turn.h"

namespace brindle {
namespace {

void setError(std::string* error, const std::string& text) {
    if (error) *error = text;
}

bool turnForTransform(int transformation, Turn& turn) {
    switch (transformation) {
        case kJpegRotate90:
            turn = kTurnRight;
            return true;
        case kJpegRotate180:
            turn = kTurnHalf;
            return true;
        case kJpegRotate270:
            turn = kTurnLeft;
            return true;
        case kJpegFlipHorizontal:
            turn = kTurnMirrorX;
            return true;
        case kJpegFlipVertical:
            turn = kTurnMirrorY;
            return true;
        default:
            return false;
    }
}

int transformOp(Turn t) {
    if (t == kTurnMirrorX) return TJXOP_HFLIP;
    if (t == kTurnMirrorY) return TJXOP_VFLIP;
    if (t == kTurnTranspose) return TJXOP_TRANSPOSE;
    if (t == kTurnTransverse) return TJXOP_TRANSVERSE;
    if (t == kTurnRight) return TJXOP_ROT90;
    if (t == kTurnHalf) return TJXOP_ROT180;
    if (t == kTurnLeft) return TJXOP_ROT270;
    return TJXOP_NONE;
}

// Moves the coded blocks; false when partial edge blocks are in the way
// (they would have to be dropped) or the file cannot be read.
bool turnBlocks(const std::string& bytes, Turn turn, std::string& out, std::string* error) {
    if (turn.isIdentity()) {
        out = bytes;
        return true;
    }
    tjhandle h = tjInitTransform();
    if (!h) return setError(error, "no JPEG transformer"), false;
    tjtransform xf{};
    xf.op = transformOp(turn);
    xf.options = TJXOPT_PERFECT;
    unsigned char* buffer = nullptr;
    unsigned long size = 0;
    const int rc = tjTransform(h, reinterpret_cast<const unsigned char*>(bytes.data()),
                               bytes.size(), 1, &buffer, &size, &xf, 0);
    if (rc == 0) out.assign(reinterpret_cast<const char*>(buffer), size);
    else setError(error, tjGetErrorStr2(h));
    tjFree(buffer);
    tjDestroy(h);
    return rc == 0;
}

// Decodes upright, turns the pixels and encodes them as the file was coded,
// keeping its EXIF (made upright) and its other describing segments.
bool turnPixels(const std::string& bytes, Turn userTurn, std::string& out, std::string* error) {
    cDIBSection upright;
    if (!decodeJpeg(bytes, upright, 0, 0, error)) return false;
    const cDIBSection turned = turnedPicture(upright, userTurn);
    if (turned.empty()) return setError(error, "out of memory"), false;
    const JpegCoding coding = readJpegCoding(bytes);
    std::string encoded;
    if (!encodeJpeg(turned, coding.quality, encoded, error, coding.subsampling)) return false;
    out = insertSegments(encoded, carriedSegments(bytes));
    return true;
}

}  // namespace

void applyJpegOrientation(std::string_view jpeg, cDIBSection& dib) {
    const std::string_view exif = findExifTiff(jpeg);
    if (exif.empty()) return;
    cDIBSection upright = turnedPicture(dib, turnForOrientation(exifOrientation(exif)));
    if (upright.empty()) return;
    upright.setExif(std::string(exif));
    dib = std::move(upright);
}

bool SaveAsRotatedJpgLossless(const std::string& source, const std::string& target,
                              int transformation, std::string* error) {
    Turn userTurn;
    if (!turnForTransform(transformation, userTurn))
        return setError(error, "unknown transformation"), false;
    std::string bytes;
    if (!readPictureBytes(source, bytes, error)) return false;
    const std::string_view exif = findExifTiff(bytes);
    const Turn total = thenTurn(turnForOrientation(exifOrientation(exif)), userTurn);
    std::string out;
    if (turnBlocks(bytes, total, out, error)) {
        // The copied EXIF block still tells the old orientation and holds a
        // thumbnail the old way round.
        int width = 0, height = 0;
        if (!exif.empty() && readJpegSize(out, width, height))
            out = replaceExifBlock(out, exifForUpright(exif, width, height));
    } else if (!turnPixels(bytes, userTurn, out, error)) {
        return false;
    }
    out = uprightXmpOrientation(std::move(out));
    FileStamp stamp = readFileStamp(target);
    if (!stamp.exists) stamp = readFileStamp(source);
    if (!writeBytesAtomic(target, out.data(), out.size(), error)) return false;
    applyFileStamp(target, stamp);
    return true;
}

}  // namespace brindle
