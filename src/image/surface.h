// The device context of a picture: a view on 24-bit blue-green-red rows
// stored bottom-up, with the blits the program needs (copy with a raster
// operation, stretch by dropping pixels, invert). Coordinates are those of
// the picture: (0, 0) is the top-left pixel.
#pragma once

#include <cstdint>

namespace brindle {

// The raster operations the blits understand (the published values).
enum RasterOp : std::uint32_t {
    SRCCOPY = 0x00CC0020,
    SRCPAINT = 0x00EE0086,   // destination OR source
    SRCAND = 0x008800C6,     // destination AND source
    SRCINVERT = 0x00660046,  // destination XOR source
    NOTSRCCOPY = 0x00330008,
    DSTINVERT = 0x00550009,
    BLACKNESS = 0x00000042,
    WHITENESS = 0x00FF0062,
};

bool isKnownRasterOp(std::uint32_t rop);

// The source pixel under the centre of target pixel i when n pixels become
// m (the colour-on-colour rule of the stretches).
inline int pixelUnder(int i, int n, int m) {
    return static_cast<int>((2LL * i + 1) * n / (2LL * m));
}

struct Surface {
    std::uint8_t* bits = nullptr;  // byte 0 of the bottom row
    int width = 0;
    int height = 0;
    int stride = 0;  // bytes per row, a multiple of 4

    explicit operator bool() const { return bits != nullptr && width > 0 && height > 0; }
    // Row y counted from the top of the picture.
    std::uint8_t* row(int y) const {
        return bits + static_cast<std::ptrdiff_t>(height - 1 - y) * stride;
    }
    bool sameBuffer(const Surface& other) const { return bits == other.bits; }
};

// Copies w x h pixels from (sx, sy) of `src` to (x, y) of `dst`, clipped to
// both. Overlapping copies on one buffer behave as if read before written.
// Returns false for an unknown raster operation or an empty surface.
bool bitBlt(const Surface& dst, int x, int y, int w, int h, const Surface& src, int sx, int sy,
            std::uint32_t rop);

// Stretches the rectangle (sx, sy, sw, sh) of `src` onto (x, y, w, h) of
// `dst` in colour-on-colour mode: each target pixel takes the source pixel
// under its centre, nothing is averaged. A rectangle spans from its corner
// (x, y) to (x + w, y + h); a negative extent runs the other way and so
// mirrors. Clipped to both surfaces.
bool stretchBlt(const Surface& dst, int x, int y, int w, int h, const Surface& src, int sx, int sy,
                int sw, int sh, std::uint32_t rop);

// Inverts every byte of the rectangle (the destination-invert operation).
bool invertRect(const Surface& dst, int x, int y, int w, int h);

}  // namespace brindle
