// Number helpers shared by all pixel code. Doubles become integers by
// round-half-to-even, the rule of the processor's default rounding mode.
#pragma once

#include <cmath>
#include <cstdint>

namespace brindle {

inline int roundEven(double v) {
    // lrint follows the current mode, which nobody in this program changes.
    if (!(v > -2147483648.0)) return v != v ? 0 : INT32_MIN;  // NaN or far below
    if (v >= 2147483647.0) return INT32_MAX;
    return static_cast<int>(std::lrint(v));
}

inline std::uint8_t clampByte(int v) {
    return static_cast<std::uint8_t>(v < 0 ? 0 : (v > 255 ? 255 : v));
}

inline std::uint8_t roundClamp(double v) { return clampByte(roundEven(v)); }

// Colours travel as 0x00BBGGRR.
struct Rgb {
    std::uint8_t red = 0, green = 0, blue = 0;
};

inline Rgb splitColour(std::uint32_t colour) {
    return {static_cast<std::uint8_t>(colour & 0xFF),
            static_cast<std::uint8_t>((colour >> 8) & 0xFF),
            static_cast<std::uint8_t>((colour >> 16) & 0xFF)};
}

inline std::uint32_t joinColour(int red, int green, int blue) {
    return static_cast<std::uint32_t>(clampByte(red)) |
           (static_cast<std::uint32_t>(clampByte(green)) << 8) |
           (static_cast<std::uint32_t>(clampByte(blue)) << 16);
}

}  // namespace brindle
