#include <cstddef>
#include <cstdint>
#include <string_view>

#include "image/packed_dib.h"

// A file that is taken has its pointers inside it: every bit byte can be
// read. Its packed part can be made into a file again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    brindle::cDib dib;
    if (!dib.CreateFromBytes(std::string_view(reinterpret_cast<const char*>(data), size))) return 0;
    unsigned sum = 0;
    const std::uint8_t* bits = dib.PointerToBits();
    for (std::size_t i = 0; i < dib.SizeBits(); ++i) sum += bits[i];
    const std::uint8_t* info = dib.PointerToBitmapInfo();
    for (std::size_t i = 0; i < dib.SizeBitmapInfo(); ++i) sum += info[i];
    brindle::cDib again;
    again.CreateFromPackedDIBPointer(info, dib.bytes().size() - 14);
    return static_cast<int>(sum & 0);
}
