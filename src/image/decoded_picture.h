// What the PCX and TGA readers share: the decoded pixels and the drawing
// face (ScaleMode, Autoscale, draw).
#pragma once

#include "image/dib_section.h"
#include "image/surface.h"

namespace brindle {

// ScaleMode values: the unit of the drawing arguments.
inline constexpr int kScaleTwips = 1;
inline constexpr int kScalePixels = 3;

class DecodedPicture {
  public:
    // True: drawing stretches to the given size; false: natural size.
    bool Autoscale = false;
    int ScaleMode = kScalePixels;

    const cDIBSection& pixels() const { return pixels_; }

  protected:
    // Draws at (x, y); stretched into width x height with Autoscale.
    bool draw(const Surface& target, int x, int y, int width, int height) const {
        if (pixels_.empty()) return false;
        const int unit = ScaleMode == kScaleTwips ? 15 : 1;  // 15 twips to the pixel
        x /= unit;
        y /= unit;
        if (!Autoscale) return pixels_.PaintPicture(target, x, y, -1, -1, 0, 0, SRCCOPY);
        return pixels_.StretchPicture(target, x, y, width / unit, height / unit, 0, 0,
                                      pixels_.Width(), pixels_.Height());
    }

    cDIBSection pixels_;
};

}  // namespace brindle
