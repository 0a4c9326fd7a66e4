// The marker segments at the head of a JPEG file, before its first scan:
// finding the EXIF block, putting a new one in, and the segments a
// re-encoded file should carry over.
//
// Layout: 0xFF 0xD8 (start of image), then segments of 0xFF, a code and a
// 2-byte big-endian length that counts itself and the payload (at most
// 65533 payload bytes). Codes 0x01 and 0xD0-0xD7 stand alone. The EXIF
// block is an APP1 segment (code 0xE1) whose payload starts "Exif\0\0",
// followed by TIFF data. The walk ends at the start of scan (0xDA).
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brindle {

// The largest payload one segment can hold.
inline constexpr std::size_t kMaxSegmentPayload = 65533;

// The payloads of the head segments with marker `code`, in file order.
std::vector<std::string_view> headSegments(std::string_view jpeg, unsigned char code);

// The TIFF bytes of the first EXIF block among the head segments, a view
// into `jpeg`; empty when there is none or the head is broken before it.
std::string_view findExifTiff(std::string_view jpeg);

// `jpeg` without its EXIF blocks and with an EXIF block holding `tiff`
// put in after the start of image (and after a JFIF segment that leads).
// An empty `tiff` only removes; a `tiff` too big for one segment is left
// out. A file that does not start with a start of image comes back as it
// was.
std::string replaceExifBlock(std::string_view jpeg, std::string_view tiff);

// The head segments of `jpeg` that describe the photo rather than its
// coding and so belong in a re-encoded copy: APP1 to APP13, APP15 and
// comments, but not EXIF (written anew), JFIF (the encoder writes its own)
// or APP14 (a colour-transform flag for the old coding). Whole segments,
// markers included.
std::string carriedSegments(std::string_view jpeg);

// `jpeg` with `segments` put in where replaceExifBlock puts the EXIF block
// (after it, when there is one).
std::string insertSegments(std::string_view jpeg, std::string_view segments);

// `jpeg` with the orientation an XMP packet may repeat set to upright as
// well, so viewers that read XMP before EXIF do not turn a turned photo again.
std::string uprightXmpOrientation(std::string jpeg);

}  // namespace brindle
