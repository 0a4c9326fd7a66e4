// FreeImage bitmaps of any pixel type to the 24-bit rows of a cDIBSection.
#pragma once

#include <FreeImage.h>

#include "image/dib_section.h"

namespace brindle {

// 16-bit samples keep their tones: each becomes the nearest 8-bit value,
// never stretched between the picture's darkest and brightest pixel.
// Alpha is dropped. False when the type cannot be shown or memory is short.
bool freeImageToDib(FIBITMAP* source, cDIBSection& dib);

// The nearest 8-bit value of a 16-bit sample.
inline std::uint8_t sample16To8(unsigned v) {
    return static_cast<std::uint8_t>((v * 255u + 32767u) / 65535u);
}

}  // namespace brindle
