// An off-screen picture holder: a drawing surface that can be resized and
// cleared, shows a picture, and hands its surface back as a picture. The
// GUI's picture boxes wrap one; the loaders draw into it.
#pragma once

#include <cstdint>

#include "image/dib_section.h"
#include "image/picture.h"

namespace brindle {

class PictureHolder {
  public:
    // While on, drawing goes to the persistent surface.
    bool AutoRedraw = false;
    // The picture the holder shows.
    brindle::Picture picture;
    std::uint32_t BackColor = 0xFFFFFF;
    // Set by the loader's mode argument: mode 0 shows, 1 and 2 do not, 3
    // also sets the second flag.
    bool showFlag = true;
    bool secondFlag = false;

    // Gives the surface this size; its content is lost.
    bool resize(int width, int height) {
        if (!surface_.Create(width, height)) return false;
        clear();
        return true;
    }
    void clear() {
        if (!surface_.empty()) surface_.effectFarbfläche(BackColor);
    }
    Surface hdc() const { return surface_.hdc(); }
    int ScaleWidth() const { return surface_.Width(); }
    int ScaleHeight() const { return surface_.Height(); }
    const cDIBSection& surface() const { return surface_; }
    // The surface as a picture.
    brindle::Picture Image() const { return brindle::Picture::fromDib(surface_); }

  private:
    cDIBSection surface_;
};

}  // namespace brindle
