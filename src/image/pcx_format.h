// PCX (ZSoft Paintbrush) on disk; numbers are little-endian.
//
// Header, 128 bytes:
//   offset size field
//    0     1   manufacturer   always 10
//    1     1   version        0, 2, 3, 4 or 5; 5 may carry a tail palette
//    2     1   encoding       1 run-length coded, 0 stored
//    3     1   bitsPerPlane   1, 4 or 8 here (2 exists and is not read)
//    4     2   xMin           the picture window, both ends inclusive
//    6     2   yMin
//    8     2   xMax
//   10     2   yMax
//   12     2   hDpi           resolution, not used
//   14     2   vDpi
//   16    48   palette16      16 entries of red, green, blue
//   64     1   reserved       0
//   65     1   planes         colour planes per row: 1, 3 or 4
//   66     2   bytesPerLine   bytes of one plane of one row (even)
//   68     2   paletteType    1 colour or mono, 2 grey; not relied on
//   70    58   rest           screen size (version 5) and filler
//
// Pixel data follows at 128: rows from top to bottom, each row holding its
// planes one after another, each plane bytesPerLine bytes. Run-length rule:
// a byte with both top bits set (0xC0..0xFF) repeats the byte after it
// (byte & 0x3F) times; any other byte stands for itself. Runs may go on
// across row ends.
//
// Colour kinds (bitsPerPlane x planes):
//   1 x 1  black and white, one bit per pixel, high bit first
//   1 x 4  16 colours: bit n of the index comes from plane n
//   4 x 1  16 colours: two pixels per byte, high nibble first
//   8 x 1  256 colours from the tail palette, or grey when there is none
//   8 x 3  true colour: planes red, green, blue
// 16-colour kinds take palette16.
//
// Tail palette: the last 769 bytes of the file, a marker byte 0x0C then
// 256 entries of red, green, blue.
#pragma once

#include <cstddef>
#include <cstdint>

namespace brindle::pcx {

inline constexpr std::size_t kHeaderSize = 128;
inline constexpr std::uint8_t kManufacturer = 10;
inline constexpr std::size_t kTailPaletteSize = 769;
inline constexpr std::uint8_t kTailPaletteMarker = 0x0C;

struct Header {
    std::uint8_t manufacturer = 0;
    std::uint8_t version = 0;
    std::uint8_t encoding = 0;
    std::uint8_t bitsPerPlane = 0;
    std::uint16_t xMin = 0, yMin = 0, xMax = 0, yMax = 0;
    std::uint16_t hDpi = 0, vDpi = 0;
    std::uint8_t palette16[48] = {};
    std::uint8_t reserved = 0;
    std::uint8_t planes = 0;
    std::uint16_t bytesPerLine = 0;
    std::uint16_t paletteType = 0;
};

}  // namespace brindle::pcx
