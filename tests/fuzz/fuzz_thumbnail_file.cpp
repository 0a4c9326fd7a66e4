#include <cstddef>
#include <cstdint>
#include <string>

#include "explorer/thumbnail_cache.h"

// A cached thumbnail is read without trusting it: a file that is accepted
// gives a bounded picture and a positive source size.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    brindle::cDIBSection pixels;
    int width = 0, height = 0;
    if (!brindle::explorer::decodeThumbnailFile(bytes, pixels, width, height)) return 0;
    using brindle::explorer::kMaxThumbnailSize;
    if (width <= 0 || height <= 0 || width > 999999 || height > 999999) __builtin_trap();
    if (pixels.empty() || pixels.Width() > kMaxThumbnailSize || pixels.Height() > kMaxThumbnailSize)
        __builtin_trap();
    return 0;
}
