#include <cstddef>
#include <cstdint>
#include <string_view>

#include "media/video_list.h"

// The video maker's size and depth check from hostile header bytes: a
// format that is taken has positive sides and depth.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    brindle::media::BitmapFormat f;
    if (!brindle::media::parseBitmapFormat(std::string_view(reinterpret_cast<const char*>(data), size), f))
        return 0;
    if (f.width <= 0 || f.height <= 0 || f.bitCount <= 0) __builtin_trap();
    return 0;
}
