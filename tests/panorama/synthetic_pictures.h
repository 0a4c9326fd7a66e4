// Photo-like pictures made by the tests: soft gradients with fine texture,
// so that every column differs from its neighbours, and pieces cut from
// them at known places.
#pragma once

#include <cstdint>
#include <random>

#include "image/dib_section.h"

namespace brindle::test {

// Writes one pixel, y counted from the top as a viewer sees it. (The
// names differ from image_compare.h's, which the same tests link.)
inline void setPixel(cDIBSection& dib, int x, int y, int b, int g, int r) {
    std::uint8_t* p = dib.rowBits(dib.Height() - 1 - y) + 3 * x;
    p[0] = static_cast<std::uint8_t>(b);
    p[1] = static_cast<std::uint8_t>(g);
    p[2] = static_cast<std::uint8_t>(r);
}

inline const std::uint8_t* pixelBytes(const cDIBSection& dib, int x, int y) {
    return dib.rowBits(dib.Height() - 1 - y) + 3 * x;
}

// A sky-to-ground gradient with hills and a grain of noise.
inline cDIBSection landscape(int width, int height, unsigned seed = 7) {
    cDIBSection dib;
    dib.Create(width, height);
    std::mt19937 rng(seed);
    std::uniform_int_distribution<int> grain(0, 23);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int hill = height / 2 + ((x * 7) % 53) - ((x * 3) % 29);
            const bool ground = y > hill;
            const int base = ground ? 60 + (x * 5 + y * 3) % 90 : 200 - (y * 120) / height;
            setPixel(dib, x, y, std::min(255, base + grain(rng) + (ground ? 0 : 30)),
                     std::min(255, base + grain(rng) + (ground ? 40 : 10)),
                     std::min(255, base / 2 + grain(rng)));
        }
    }
    return dib;
}

inline cDIBSection uniformNoise(int width, int height, std::mt19937& rng, int levels = 256) {
    cDIBSection dib;
    dib.Create(width, height);
    std::uniform_int_distribution<int> value(0, levels - 1);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) setPixel(dib, x, y, value(rng), value(rng), value(rng));
    return dib;
}

inline cDIBSection filled(int width, int height, int b, int g, int r) {
    cDIBSection dib;
    dib.Create(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) setPixel(dib, x, y, b, g, r);
    return dib;
}

// The w x h piece of `src` whose top-left corner is (x, y).
inline cDIBSection cut(const cDIBSection& src, int x, int y, int w, int h) {
    cDIBSection dib;
    dib.Create(w, h);
    for (int row = 0; row < h; ++row)
        for (int col = 0; col < w; ++col) {
            const std::uint8_t* p = pixelBytes(src, x + col, y + row);
            setPixel(dib, col, row, p[0], p[1], p[2]);
        }
    return dib;
}

}  // namespace brindle::test
