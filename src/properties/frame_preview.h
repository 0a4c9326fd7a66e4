// The frame tab's preview: a reduced copy of the picture inside the frame
// that the image core's frame effect draws, as the web picture shows it.
#pragma once

#include "image/dib_section.h"
#include "properties/picture_specs.h"

namespace brindle::properties {

// `picture` inside a frame of `frameWidth` pixels: the ground filled with
// `texture` tiled (when it holds pixels) or the frame's colour, the frame
// effect with the frame's light and shadow over it, the picture inside.
// Without a frame `out` is a copy of `picture`. False when out of memory.
bool drawFramePreview(const cDIBSection& picture, const FrameSettings& frame, int frameWidth,
                      const cDIBSection* texture, cDIBSection& out);

}  // namespace brindle::properties
