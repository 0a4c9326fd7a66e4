#include <cstddef>
#include <cstdint>
#include <string_view>

#include "image/bmp_reader.h"

// Every header version, mask and palette from hostile bytes: a picture that
// is taken has the size its header says and every row readable.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    brindle::cDIBSection dib;
    if (brindle::decodeBmp(std::string_view(reinterpret_cast<const char*>(data), size), dib) !=
        brindle::BmpResult::Ok)
        return 0;
    unsigned sum = 0;
    for (int y = 0; y < dib.Height(); ++y)
        for (int x = 0; x < dib.Width() * 3; ++x) sum += dib.rowBits(y)[x];
    return static_cast<int>(sum & 0);
}
