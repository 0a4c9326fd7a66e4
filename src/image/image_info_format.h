// Where the size and depth stand in the first bytes of the files that
// CImageInfo tells apart. Numbers in PNG and JPEG are big-endian, in GIF and
// BMP little-endian.
//
// PNG: signature 137 'P' 'N' 'G' 13 10 26 10, then the IHDR chunk:
//    8  4  chunk length (13)      12  4  "IHDR"
//   16  4  width                  20  4  height
//   24  1  bit depth              25  1  colour type (0 grey, 2 RGB,
//                                        3 palette, 4 grey+alpha, 6 RGBA)
//   Only bytes 18-19 and 22-23 of the sizes are read: pictures wider or
//   taller than 65535 do not occur in albums.
//
// GIF: "GIF87a" or "GIF89a", then the logical screen record:
//    6  2  width     8  2  height
//   10  1  packed flags; (flags & 7) + 1 is the bits per colour
//
// JPEG: 0xFF 0xD8 (start of image), then markers: 0xFF, a code, and for
//   most codes a 2-byte length that counts itself and the segment. Codes
//   0x01 and 0xD0-0xD7 stand alone. The frame header (a start-of-frame code
//   0xC0-0xCF other than 0xC4, 0xC8, 0xCC) holds, after its length:
//   +4 1 precision   +5 2 height   +7 2 width   +9 1 components
//   A start of scan (0xDA) before any frame ends the walk.
//
// BMP: "BM", then the file and info headers of bmp_format.h: width and
//   height at 18 and 22 (4 bytes each, or 2 each in a 12-byte core header),
//   bit count at 28 (24 in a core header).
#pragma once

#include <cstddef>

namespace brindle::imageinfo {

// ReadImageInfo looks at this many bytes from the start and no further.
inline constexpr std::size_t kBufferSize = 128 * 1024;

}  // namespace brindle::imageinfo
