#include "properties/frame_preview.h"

#include <algorithm>

#include "image/reduce.h"
#include "image/surface.h"

namespace brindle::properties {

bool drawFramePreview(const cDIBSection& picture, const FrameSettings& frame, int frameWidth,
                      const cDIBSection* texture, cDIBSection& out) {
    const int w = picture.Width(), h = picture.Height();
    if (w <= 0 || h <= 0) return false;
    const int t = frame.on ? std::max(1, frameWidth) : 0;
    if (!out.Create(w + 2 * t, h + 2 * t)) return false;
    if (t == 0) return bitBlt(out.hdc(), 0, 0, w, h, picture.hdc(), 0, 0, SRCCOPY);
    if (texture && texture->Width() > 0 && texture->Height() > 0) {
        for (int y = 0; y < out.Height(); y += texture->Height())
            for (int x = 0; x < out.Width(); x += texture->Width())
                bitBlt(out.hdc(), x, y, texture->Width(), texture->Height(), texture->hdc(), 0, 0, SRCCOPY);
    } else {
        out.effectFarbfläche(frame.colour);
    }
    // The same call as the web picture's, so the preview shows what the album will.
    out.effectRahmen(frame.light, frame.shadow, t);
    return bitBlt(out.hdc(), t, t, w, h, picture.hdc(), 0, 0, SRCCOPY);
}

}  // namespace brindle::properties
