#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "image/exif_orientation.h"
#include "image/jpeg_markers.h"

// The EXIF reader and rewriter on any bytes, as a bare block and inside a
// JPEG head: orientations stay in 1..8 and nothing reads past the bytes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const int bare = brindle::exifOrientation(bytes);
    if (bare < 1 || bare > 8) __builtin_trap();
    const std::string upright = brindle::exifForUpright(bytes, 640, 480);
    if (upright.size() > brindle::kMaxSegmentPayload) __builtin_trap();
    if (!upright.empty()) {
        const int again = brindle::exifOrientation(upright);
        if (again < 1 || again > 8) __builtin_trap();
    }

    // The same bytes as the TIFF part of a camera's EXIF segment.
    const std::string_view tiff = bytes.substr(0, brindle::kMaxSegmentPayload - 6);
    std::string jpeg("\xFF\xD8\xFF\xE1", 4);
    jpeg += static_cast<char>((tiff.size() + 8) >> 8);
    jpeg += static_cast<char>((tiff.size() + 8) & 0xFF);
    jpeg += std::string("Exif\0\0", 6);
    jpeg += tiff;
    jpeg += "\xFF\xD9";
    const int inJpeg = brindle::jpegOrientation(jpeg);
    if (inJpeg < 1 || inJpeg > 8) __builtin_trap();

    // The marker walker on the raw bytes as a JPEG head.
    (void)brindle::jpegOrientation(bytes);
    const std::string replaced = brindle::replaceExifBlock(bytes, upright);
    (void)brindle::insertSegments(replaced, brindle::carriedSegments(bytes));
    return 0;
}
