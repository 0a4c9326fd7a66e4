#include "image/picture_guard.h"

#include "image/bmp_format.h"
#include "image/byte_reader.h"
#include "image/freeimage_io.h"
#include "image/jpeg_io.h"
#include "image/picture_limits.h"

namespace brindle {
namespace {

bool bmpSize(const std::string& bytes, long long& width, long long& height) {
    ByteReader r(bytes);
    std::uint32_t infoSize = 0;
    if (!r.seek(bmp::kFileHeaderSize) || !r.u32le(infoSize)) return false;
    if (infoSize == bmp::kCoreHeaderSize) {
        std::uint16_t w = 0, h = 0;
        if (!r.u16le(w) || !r.u16le(h)) return false;
        width = w, height = h;
        return true;
    }
    std::int32_t w = 0, h = 0;
    if (!r.i32le(w) || !r.i32le(h)) return false;
    width = w;
    height = h < 0 ? -static_cast<long long>(h) : h;
    return true;
}

}  // namespace

bool pictureSizeAllowed(const std::string& bytes, std::string* why) {
    long long width = 0, height = 0;
    int bits = 24;
    if (bytes.size() >= 3 && bytes.compare(0, 3, "\xFF\xD8\xFF") == 0) {
        int w = 0, h = 0;
        // Our decoder says what is wrong with a JPEG it cannot read.
        if (!readJpegSize(bytes, w, h)) return true;
        width = w, height = h;
    } else if (bytes.compare(0, 2, "BM") == 0) {
        if (!bmpSize(bytes, width, height)) return true;
    } else {
        std::string error;
        if (!freeImageClaimedSize(bytes, width, height, bits, &error)) {
            if (error == "unknown file type") return true;
            if (why) *why = error;
            return false;
        }
    }
    return plausiblePictureSize(width, height, bytes.size(), bits, why);
}

}  // namespace brindle
