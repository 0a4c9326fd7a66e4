// A bevelled frame around a picture on a plain colour, done in place: the
// picture is shrunk into the inside of its own buffer and only the border
// is painted. The bytes equal those of drawing the frame on a plane of the
// colour and stretching the whole picture into the inside.
#pragma once

#include <cstdint>

#include "image/dib_section.h"
#include "image/progress.h"

namespace brindle {

// False, with the picture unchanged, when the thickness is below 1 or
// leaves no inside; those cases take the plane and the stretch.
bool frameOnColourInPlace(cDIBSection& dib, std::uint32_t colour, int light, int shadow,
                          int thickness, ProgressWord* progress = nullptr);

// The frame on a colour followed by a shrink to width x height by dropping
// pixels (effectGröße to a size no larger), done at once in the picture's
// own buffer; false, with the picture unchanged, where either would not
// run in place.
bool frameOnColourAndShrink(cDIBSection& dib, std::uint32_t colour, int light, int shadow,
                            int thickness, int width, int height,
                            ProgressWord* progress = nullptr);

// The reference: a new plane of the colour, the frame drawn on it and the
// picture stretched into the inside. False when memory runs out.
bool frameOnColourPlane(cDIBSection& dib, std::uint32_t colour, int light, int shadow,
                        int thickness, ProgressWord* progress = nullptr);

}  // namespace brindle
