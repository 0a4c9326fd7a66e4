// BMP files and packed DIBs on disk; numbers are little-endian.
//
// File header, 14 bytes:
//   offset size field
//    0     2   type           "BM"
//    2     4   fileSize       bytes of the whole file (often not trusted)
//    6     2   reserved1      0
//    8     2   reserved2      0
//   10     4   bitOffset      where the pixel bits start, from byte 0
//
// Info header, at 14 (a packed DIB starts here):
//   BITMAPINFOHEADER, 40 bytes (later versions 108 and 124 add fields
//   after these and say so in `size`):
//   14     4   size           40, 108 or 124
//   18     4   width          signed
//   22     4   height         signed; negative means rows run top-down
//   26     2   planes         1
//   28     2   bitCount       1, 4, 8, 16, 24 or 32
//   30     4   compression    0 none, 1 RLE8, 2 RLE4, 3 bit fields
//   34     4   sizeImage      bytes of the bits; may be 0 when uncompressed
//   38     4   xPelsPerMeter
//   42     4   yPelsPerMeter
//   46     4   clrUsed        colour table entries; 0 means 2^bitCount
//                             for 8 bits or fewer
//   50     4   clrImportant
//   BITMAPCOREHEADER, 12 bytes (older files):
//   14     4   size           12
//   18     2   width
//   20     2   height
//   22     2   planes
//   24     2   bitCount
//
// Colour table: after the info header (and the three masks of bit-field
// compression with a 40-byte header); 4 bytes per entry (blue, green, red,
// 0), 3 with a core header. Bits: rows padded to 4 bytes.
#pragma once

#include <cstddef>
#include <cstdint>

namespace brindle::bmp {

inline constexpr std::size_t kFileHeaderSize = 14;
inline constexpr std::size_t kInfoHeaderSize = 40;
inline constexpr std::size_t kCoreHeaderSize = 12;
inline constexpr std::uint32_t kBitFields = 3;

}  // namespace brindle::bmp
