#include <cstddef>
#include <cstdint>
#include <string_view>

#include "image/image_info.h"

// Reading never goes past the bytes; a recognised file has a known type.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    brindle::CImageInfo info;
    const bool ok =
        info.ReadImageInfoFromBytes(std::string_view(reinterpret_cast<const char*>(data), size));
    if (ok && (info.ImageType < 1 || info.ImageType > 4 || info.Width < 0 || info.Height < 0))
        __builtin_trap();
    if (!ok && (info.ImageType != 0 || info.Width != 0 || info.Height != 0 || info.Depth != 0))
        __builtin_trap();
    return 0;
}
