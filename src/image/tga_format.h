// TGA (Truevision Targa) on disk; numbers are little-endian.
//
// Header, 18 bytes:
//   offset size field
//    0     1   idLength        bytes of the image id after the header
//    1     1   colourMapType   0 none, 1 a colour map follows the id
//    2     1   imageType       1 colour-mapped, 2 true colour, 3 grey;
//                              9, 10, 11 the same, run-length coded
//    3     2   mapFirst        index of the first colour map entry
//    5     2   mapLength       number of colour map entries
//    7     1   mapEntryBits    15, 16, 24 or 32
//    8     2   xOrigin         screen position, not used
//   10     2   yOrigin
//   12     2   width
//   14     2   height
//   16     1   pixelBits       8 or 16 (colour-mapped, grey), 15, 16, 24, 32
//   17     1   descriptor      bits 0-3 alpha bits, bit 4 rows run right to
//                              left, bit 5 rows run top to bottom
//
// Then the image id (idLength bytes), the colour map (mapLength entries of
// (mapEntryBits + 7) / 8 bytes, also present and skipped for the other
// image types), then the pixels. A TGA 2.0 footer may follow; it is ignored.
//
// Pixel values: 15 and 16 bits are one little-endian word x RRRRR GGGGG
// BBBBB; 24 bits blue, green, red; 32 bits blue, green, red, alpha; grey 8
// bits one byte, 16 bits grey then alpha. Colour-mapped pixels are indexes
// (8 or 16 bits) counted from mapFirst; colour map entries take the same
// forms as true-colour pixels.
//
// Run-length packets: a head byte; with bit 7 set, one pixel value follows
// and stands (head & 0x7F) + 1 times; with bit 7 clear, (head & 0x7F) + 1
// pixel values follow. Packets may go on across row ends.
#pragma once

#include <cstddef>
#include <cstdint>

namespace brindle::tga {

inline constexpr std::size_t kHeaderSize = 18;
inline constexpr std::uint8_t kDescriptorRightToLeft = 0x10;
inline constexpr std::uint8_t kDescriptorTopToBottom = 0x20;

enum ImageType : std::uint8_t {
    kColourMapped = 1,
    kTrueColour = 2,
    kGrey = 3,
    kRunLengthFlag = 8,  // added to the three above
};

struct Header {
    std::uint8_t idLength = 0;
    std::uint8_t colourMapType = 0;
    std::uint8_t imageType = 0;
    std::uint16_t mapFirst = 0;
    std::uint16_t mapLength = 0;
    std::uint8_t mapEntryBits = 0;
    std::uint16_t xOrigin = 0, yOrigin = 0;
    std::uint16_t width = 0, height = 0;
    std::uint8_t pixelBits = 0;
    std::uint8_t descriptor = 0;
};

}  // namespace brindle::tga
