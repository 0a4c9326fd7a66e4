#include <cstddef>
#include <cstdint>
#include <string_view>

#include "image/tga_reader.h"

// Any input either fails cleanly or gives a picture that can be drawn.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    brindle::LoadTGA tga;
    if (!tga.LoadFromBytes(std::string_view(reinterpret_cast<const char*>(data), size))) {
        if (!tga.pixels().empty()) __builtin_trap();
        return 0;
    }
    brindle::cDIBSection target;
    target.Create(8, 8);
    tga.DrawTGA(target.hdc(), -2, -2, 8, 8);
    return 0;
}
