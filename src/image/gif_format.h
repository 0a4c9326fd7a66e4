// A single-frame GIF as our writer lays it out; numbers are little-endian.
//
//   block                 bytes
//   signature             6    "GIF89a" with transparency, "GIF87a" without
//   logical screen        7    width u16, height u16, packed flags,
//                              background index, aspect ratio (0)
//                              flags 0xF7: a global colour table (bit 7),
//                              8 bits of colour resolution (bits 4-6 = 7),
//                              not sorted (bit 3), 2^(7+1) = 256 entries
//   global colour table   768  256 entries of red, green, blue
//   graphic control       8    0x21 0xF9, block size 4, flags (bit 0: the
//                              transparent index is valid), delay u16 (0),
//                              transparent index, terminator 0
//   image descriptor      10   0x2C, left u16, top u16, width u16,
//                              height u16, packed flags (0: no local colour
//                              table, not interlaced)
//   LZW minimum code size 1    8
//   image data            n    sub-blocks: a length byte (1..255), then
//                              that many bytes of the LZW bit stream
//   block terminator      1    0
//   trailer               1    0x3B
//
// Pixels are palette indexes, rows from top to bottom.
#pragma once

#include <cstdint>

namespace brindle::gif {

inline constexpr char kSignature87[] = "GIF87a";
inline constexpr char kSignature89[] = "GIF89a";
inline constexpr std::uint8_t kScreenFlags = 0xF7;
inline constexpr std::uint8_t kExtensionIntroducer = 0x21;
inline constexpr std::uint8_t kGraphicControlLabel = 0xF9;
inline constexpr std::uint8_t kImageSeparator = 0x2C;
inline constexpr std::uint8_t kTrailer = 0x3B;
inline constexpr std::uint8_t kMinCodeSize = 8;
inline constexpr int kMaxSubBlock = 255;
inline constexpr int kMaxSide = 65535;

}  // namespace brindle::gif
