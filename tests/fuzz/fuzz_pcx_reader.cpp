#include <cstddef>
#include <cstdint>
#include <string_view>

#include "image/pcx_reader.h"

// Any input either fails cleanly or gives a picture that can be drawn.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    brindle::LoadPCX pcx;
    if (!pcx.LoadFromBytes(std::string_view(reinterpret_cast<const char*>(data), size))) {
        if (!pcx.pixels().empty()) __builtin_trap();
        return 0;
    }
    brindle::cDIBSection target;
    target.Create(8, 8);
    pcx.Autoscale = true;
    pcx.DrawPCX(target.hdc(), 0, 0, 8, 8);
    return 0;
}
