#include "properties/colour_value.h"

#include <cstdio>

namespace brindle::properties {

Rgb rgbOfColour(std::uint32_t colour) {
    return {static_cast<int>(colour & 0xFF), static_cast<int>((colour >> 8) & 0xFF),
            static_cast<int>((colour >> 16) & 0xFF)};
}

std::uint32_t colourOfRgb(const Rgb& rgb) {
    auto byte = [](int v) { return static_cast<std::uint32_t>(v < 0 ? 0 : v > 255 ? 255 : v); };
    return byte(rgb.red) | (byte(rgb.green) << 8) | (byte(rgb.blue) << 16);
}

std::string colourHex(std::uint32_t colour) {
    const Rgb c = rgbOfColour(colour);
    char text[8];
    std::snprintf(text, sizeof text, "#%02X%02X%02X", c.red, c.green, c.blue);
    return text;
}

}  // namespace brindle::properties
