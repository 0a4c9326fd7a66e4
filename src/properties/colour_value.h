// Album colours are u32 0x00BBGGRR; dialogs show and pick them as RGB.
#pragma once

#include <cstdint>
#include <string>

namespace brindle::properties {

struct Rgb {
    int red = 0, green = 0, blue = 0;
    bool operator==(const Rgb&) const = default;
};

Rgb rgbOfColour(std::uint32_t colour);
std::uint32_t colourOfRgb(const Rgb& rgb);
// "#RRGGBB", as the colour buttons show it.
std::string colourHex(std::uint32_t colour);

}  // namespace brindle::properties
