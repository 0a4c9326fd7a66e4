// The eight ways a picture can be turned and mirrored in steps of 90
// degrees, as one value: first swap the axes (transpose) if asked, then
// mirror left-right, then top-bottom. They compose, they map to the EXIF
// orientations and to the lossless JPEG transforms, and they turn pixels.
#pragma once

#include "image/dib_section.h"

namespace brindle {

struct Turn {
    bool transpose = false;
    bool flipX = false;
    bool flipY = false;

    bool operator==(const Turn&) const = default;
    bool isIdentity() const { return !transpose && !flipX && !flipY; }
};

inline constexpr Turn kTurnNone{};
inline constexpr Turn kTurnRight{true, true, false};  // 90 degrees clockwise
inline constexpr Turn kTurnLeft{true, false, true};   // 90 degrees counter-clockwise
inline constexpr Turn kTurnHalf{false, true, true};
inline constexpr Turn kTurnMirrorX{false, true, false};
inline constexpr Turn kTurnMirrorY{false, false, true};
inline constexpr Turn kTurnTranspose{true, false, false};
inline constexpr Turn kTurnTransverse{true, true, true};

// `first`, then `second`.
Turn thenTurn(Turn first, Turn second);
// What brings rows stored with EXIF `orientation` upright (none for values
// outside 1..8).
Turn turnForOrientation(int orientation);

// A new section holding `dib` turned; the EXIF block goes along.
cDIBSection turnedPicture(const cDIBSection& dib, Turn turn);

}  // namespace brindle
