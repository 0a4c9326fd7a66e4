#include "image/exif_orientation.h"

#include <exiv2/exiv2.hpp>

#include <mutex>

#include "image/jpeg_markers.h"

namespace brindle {
namespace {

// exiv2 would print its warnings about odd blocks on stderr; the program
// has nothing to tell the user about them.
void quietExiv2() {
    static std::once_flag once;
    std::call_once(once, [] { Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute); });
}

// Decodes `tiff` into `data`; false on anything exiv2 will not read.
bool decodeExif(std::string_view tiff, Exiv2::ExifData& data, Exiv2::ByteOrder& order) {
    if (tiff.empty() || tiff.size() > kMaxSegmentPayload) return false;
    quietExiv2();
    try {
        order = Exiv2::ExifParser::decode(data, reinterpret_cast<const Exiv2::byte*>(tiff.data()),
                                          static_cast<std::uint32_t>(tiff.size()));
        return order != Exiv2::invalidByteOrder;
    } catch (...) {
        return false;
    }
}

void setIfPresent(Exiv2::ExifData& data, const char* key, int value) {
    const auto it = data.findKey(Exiv2::ExifKey(key));
    if (it != data.end()) it->setValue(std::to_string(value));
}

}  // namespace

int exifOrientation(std::string_view tiff) {
    Exiv2::ExifData data;
    Exiv2::ByteOrder order = Exiv2::invalidByteOrder;
    if (!decodeExif(tiff, data, order)) return kOrientationUpright;
    try {
        const auto it = data.findKey(Exiv2::ExifKey("Exif.Image.Orientation"));
        if (it == data.end() || it->count() < 1) return kOrientationUpright;
        const long value = it->toLong();
        return value >= 1 && value <= 8 ? static_cast<int>(value) : kOrientationUpright;
    } catch (...) {
        return kOrientationUpright;
    }
}

int jpegOrientation(std::string_view jpeg) { return exifOrientation(findExifTiff(jpeg)); }

std::string exifForUpright(std::string_view tiff, int width, int height) {
    Exiv2::ExifData data;
    Exiv2::ByteOrder order = Exiv2::invalidByteOrder;
    if (!decodeExif(tiff, data, order)) return {};
    try {
        if (data.findKey(Exiv2::ExifKey("Exif.Image.Orientation")) != data.end())
            data["Exif.Image.Orientation"] = static_cast<std::uint16_t>(kOrientationUpright);
        setIfPresent(data, "Exif.Photo.PixelXDimension", width);
        setIfPresent(data, "Exif.Photo.PixelYDimension", height);
        Exiv2::ExifThumb(data).erase();
        // exiv2 patches the block in place when it can, so it gets a copy.
        std::string patched(tiff);
        Exiv2::Blob blob;
        const Exiv2::WriteMethod method = Exiv2::ExifParser::encode(
            blob, reinterpret_cast<const Exiv2::byte*>(patched.data()),
            static_cast<std::uint32_t>(patched.size()), order, data);
        std::string out = method == Exiv2::wmNonIntrusive
                              ? std::move(patched)
                              : std::string(reinterpret_cast<const char*>(blob.data()), blob.size());
        if (out.empty() || out.size() + 6 > kMaxSegmentPayload) return {};
        return out;
    } catch (...) {
        return {};
    }
}

}  // namespace brindle
