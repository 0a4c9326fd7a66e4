#include "image/freeimage_pixels.h"

#include <cstring>
#include <memory>

namespace brindle {
namespace {

struct BitmapUnload {
    void operator()(FIBITMAP* b) const {
        if (b) FreeImage_Unload(b);
    }
};
using Bitmap = std::unique_ptr<FIBITMAP, BitmapUnload>;

// Grey, RGB or RGBA with 16 bits a sample; FreeImage keeps red first.
bool sixteenBitToDib(FIBITMAP* source, FREE_IMAGE_TYPE type, cDIBSection& dib) {
    const int w = static_cast<int>(FreeImage_GetWidth(source));
    const int h = static_cast<int>(FreeImage_GetHeight(source));
    if (!dib.Create(w, h)) return false;
    const int samples = type == FIT_UINT16 ? 1 : (type == FIT_RGB16 ? 3 : 4);
    for (int y = 0; y < h; ++y) {
        const auto* s = reinterpret_cast<const std::uint16_t*>(FreeImage_GetScanLine(source, y));
        std::uint8_t* d = dib.rowBits(y);
        for (int x = 0; x < w; ++x, s += samples, d += 3) {
            if (samples == 1) {
                d[0] = d[1] = d[2] = sample16To8(s[0]);
            } else {
                d[0] = sample16To8(s[2]);
                d[1] = sample16To8(s[1]);
                d[2] = sample16To8(s[0]);
            }
        }
    }
    return true;
}

}  // namespace

bool freeImageToDib(FIBITMAP* source, cDIBSection& dib) {
    const FREE_IMAGE_TYPE type = FreeImage_GetImageType(source);
    if (type == FIT_UINT16 || type == FIT_RGB16 || type == FIT_RGBA16)
        return sixteenBitToDib(source, type, dib);
    Bitmap standard;
    if (type != FIT_BITMAP) {
        // Signed, 32-bit and floating-point samples have no fixed white;
        // FreeImage scales them to their range.
        standard.reset(FreeImage_ConvertToStandardType(source, TRUE));
        if (!standard) return false;
        source = standard.get();
    }
    Bitmap rgb(FreeImage_ConvertTo24Bits(source));
    if (!rgb) return false;
    standard.reset();
    const int w = static_cast<int>(FreeImage_GetWidth(rgb.get()));
    const int h = static_cast<int>(FreeImage_GetHeight(rgb.get()));
    if (!dib.Create(w, h)) return false;
    // Both keep rows bottom-up in blue, green, red order.
    for (int y = 0; y < h; ++y)
        std::memcpy(dib.rowBits(y), FreeImage_GetScanLine(rgb.get(), y),
                    static_cast<std::size_t>(w) * 3);
    return true;
}

}  // namespace brindle
