// Our small face on exiv2: the EXIF Orientation of a JPEG, and the EXIF
// block rewritten for pixels that are already upright. exiv2 only ever sees
// the TIFF bytes of one EXIF segment (at most 64 KB), and whatever it
// throws stays in here: a broken block reads as orientation 1.
#pragma once

#include <string>
#include <string_view>

namespace brindle {

// EXIF Orientation: how the stored rows must be turned to stand upright.
// 1 upright, 2 mirrored, 3 turned half round, 4 upside down mirrored,
// 5 transposed, 6 to be turned right, 7 transversed, 8 to be turned left.
inline constexpr int kOrientationUpright = 1;

// 5 to 8 stand on their side: the upright picture is as wide as the stored
// one is high.
inline bool orientationSwapsSides(int orientation) {
    return orientation >= 5 && orientation <= 8;
}

// The Orientation tag of IFD0 in `tiff` (1..8); 1 when there is none, it
// is out of range, or the block cannot be read.
int exifOrientation(std::string_view tiff);

// The orientation of a JPEG held in `jpeg` (its first bytes are enough).
int jpegOrientation(std::string_view jpeg);

// `tiff` rewritten for upright pixels of width x height: Orientation 1, the
// pixel dimensions set, and the embedded thumbnail dropped (it would show
// the old way round). Empty when the block cannot be read or rewritten or
// no longer fits one segment; the caller then writes no EXIF at all.
std::string exifForUpright(std::string_view tiff, int width, int height);

}  // namespace brindle
