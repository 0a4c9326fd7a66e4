// The GIF class: writes one picture as a single-frame GIF with our own
// palette and LZW coder.
#pragma once

#include <cstdint>
#include <string>

#include "image/dib_section.h"
#include "image/picture.h"

namespace brindle {

class GIF {
  public:
    // Writes `picture` to `path`, replacing a file of that name. With
    // `transparent`, the exact colour `transparentColour` (0x00BBGGRR) gets
    // its own palette entry, which the file marks as transparent.
    static bool SaveGIF(const cDIBSection& picture, const std::string& path,
                        bool transparent = false, std::uint32_t transparentColour = 0,
                        std::string* error = nullptr);
    static bool SaveGIF(const Picture& picture, const std::string& path, bool transparent = false,
                        std::uint32_t transparentColour = 0, std::string* error = nullptr);

    // The file's bytes; false for an empty picture or one wider or taller
    // than 65535.
    static bool encode(const cDIBSection& picture, bool transparent,
                       std::uint32_t transparentColour, std::string& out);
};

}  // namespace brindle
