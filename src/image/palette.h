// A palette of at most 256 colours for a picture, and the mapping of its
// pixels onto it. Pictures with few enough colours keep them exactly; the
// others get a median cut over a 5-bit-per-channel histogram, each entry
// the mean of the colours in its box. Pixels take the nearest entry; there
// is no dithering, so flat areas stay flat.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "image/dib_section.h"
#include "image/rounding.h"

namespace brindle {

struct Palette {
    std::array<Rgb, 256> entries{};
    int count = 0;
    // The entry kept for one exact colour (the transparent one), or -1.
    int reserved = -1;
};

// Builds a palette of at most `maxColours` (2..256). With `reserved`, that
// colour gets an entry of its own which only that exact colour maps to.
Palette buildPalette(const cDIBSection& dib, int maxColours = 256,
                     std::optional<Rgb> reserved = std::nullopt);

// The palette index of every pixel, rows from top to bottom.
std::vector<std::uint8_t> mapToPalette(const cDIBSection& dib, const Palette& palette);

}  // namespace brindle
