#include <cstddef>
#include <cstdint>
#include <string>

#include "image/freeimage_io.h"
#include "image/picture_guard.h"

// The FreeImage road as the loaders take it: the size check, then the
// single-page and the multi-page read from memory. Whatever is taken has
// every row readable.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    if (!brindle::pictureSizeAllowed(bytes)) return 0;
    const brindle::ImageEnv env;
    unsigned sum = 0;
    for (int road = 0; road < 2; ++road) {
        brindle::cDIBSection dib;
        const bool ok = road == 0 ? brindle::freeImageReadBytes(bytes, dib, env)
                                  : brindle::freeImageMultiPageReadBytes(bytes, dib, env);
        if (!ok) continue;
        for (int y = 0; y < dib.Height(); ++y)
            for (int x = 0; x < dib.Width() * 3; ++x) sum += dib.rowBits(y)[x];
    }
    return static_cast<int>(sum & 0);
}
