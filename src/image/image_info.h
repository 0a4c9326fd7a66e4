// CImageInfo: width, height, colour depth and type of a picture file, read
// from its first bytes without decoding it.
#pragma once

#include <string>
#include <string_view>

namespace brindle {

enum ImageInfoType : int {
    kImageUnknown = 0,
    kImageGif = 1,
    kImageJpeg = 2,
    kImagePng = 3,
    kImageBmp = 4,
};

class CImageInfo {
  public:
    int Width = 0;
    int Height = 0;
    int Depth = 0;  // bits per pixel
    int ImageType = kImageUnknown;

    // Reads the start of `path`. Sizes are those of the picture as shown
    // (a JPEG turned by its EXIF orientation). An unknown, short or missing file leaves
    // every member 0; the result says whether a type was recognised.
    bool ReadImageInfo(const std::string& path);
    bool ReadImageInfoFromBytes(std::string_view bytes);

  private:
    // Multi-byte numbers are joined from (low, high) bytes.
    static int join(unsigned char low, unsigned char high) { return low | (high << 8); }
    bool readPng(std::string_view b);
    bool readGif(std::string_view b);
    bool readJpeg(std::string_view b);
    // A JPEG whose EXIF orientation stands it on its side swaps the sizes.
    bool uprightJpegSize(std::string_view b);
    bool readBmp(std::string_view b);
};

}  // namespace brindle
