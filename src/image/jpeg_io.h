// JPEG roads through libjpeg-turbo: reading into and writing from a
// cDIBSection (with DCT-scaled decoding when a smaller picture is wanted),
// saving a picture with a quality, and turning a JPEG without re-encoding.
#pragma once

#include <string>
#include <string_view>

#include "image/dib_section.h"
#include "image/image_env.h"
#include "image/picture.h"

namespace brindle {

// The lossless transforms, numbered as the encoder values of the older
// platform that album scripts and settings still carry.
enum JpegTransform : int {
    kJpegRotate90 = 13,
    kJpegRotate180 = 14,
    kJpegRotate270 = 15,
    kJpegFlipHorizontal = 16,
    kJpegFlipVertical = 17,
};

// A DCT scale factor num / denom; 1/1 decodes at full size.
struct JpegScale {
    int num = 1;
    int denom = 1;
    int scaled(int side) const {
        return static_cast<int>((static_cast<long long>(side) * num + denom - 1) / denom);
    }
};

// The smallest of the decoder's reducing scale factors that still gives at
// least wantWidth x wantHeight; 1/1 when nothing smaller is wanted.
JpegScale chooseJpegScale(int width, int height, int wantWidth, int wantHeight);

// The size in the file's frame header; false for anything the decoder
// cannot read as a JPEG.
bool readJpegSize(const std::string& bytes, int& width, int& height, std::string* error = nullptr);

// Decodes `bytes` into `dib`, upright by the EXIF orientation, with the
// EXIF block kept on `dib`. With wantWidth x wantHeight above 0 (upright),
// decodes at the scale chooseJpegScale picks. On failure `error` gets the
// reason.
bool decodeJpeg(const std::string& bytes, cDIBSection& dib, int wantWidth = 0, int wantHeight = 0,
                std::string* error = nullptr);

// Turns `dib`, read from the JPEG file `jpeg` by another reader, upright by
// the file's EXIF orientation and keeps the EXIF block on it. (jpeg_turn.cpp)
void applyJpegOrientation(std::string_view jpeg, cDIBSection& dib);

// Only for paths ending in "jpg" or "jpeg" (any case).
bool LoadJPG(cDIBSection& dib, const std::string& path, std::string* error = nullptr,
             int wantWidth = 0, int wantHeight = 0);

// Encodes at `quality` (limited to 0..100; 0 and 1 are the same to the
// encoder) with the chroma subsampling given as a TurboJPEG TJSAMP value
// (2 is 4:2:0); false when the encoder refused. The EXIF block of `dib`
// goes along with its orientation set to 1.
bool encodeJpeg(const cDIBSection& dib, int quality, std::string& out,
                std::string* error = nullptr, int subsampling = 2);

// Writes `dib` to `path`. A file that stood there keeps its modification
// time and permissions.
ImageStatus SaveJPG(const cDIBSection& dib, const std::string& path, int quality,
                    const ImageEnv& env = {});

// The encoders pictures can be saved with, looked up by MIME type (any
// case); only "image/jpeg" has one here.
bool hasEncoderFor(const std::string& mimeType);

// Writes `picture` with `quality` limited to 0..100.
ImageStatus SavePictureAsJPG(const Picture& picture, const std::string& path, int quality,
                             const ImageEnv& env = {});

// Reads any picture file FreeImage knows, by its content.
Picture LoadPicturePlus(const std::string& path, const ImageEnv& env = {});

// Turns or flips `source` as it is shown (upright by its EXIF orientation)
// and writes `target` (which may be the same file) with orientation 1.
// Whole blocks move without re-encoding; when partial edge blocks stand in
// the way, the picture is decoded, turned and encoded at the file's own
// quality and subsampling, so nothing is cut off. The target keeps the
// time and mode of the file it replaces (or of the source when new).
// (jpeg_turn.cpp)
bool SaveAsRotatedJpgLossless(const std::string& source, const std::string& target,
                              int transformation, std::string* error = nullptr);

}  // namespace brindle
