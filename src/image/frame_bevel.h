// The bevel of a frame as a factor per pixel, so that a frame can be drawn
// over a whole picture or asked for at single pixels only.
#pragma once

#include <cstdint>

namespace brindle::effects {

// Channels below 75 are first raised to 75, so that the bevel also shows
// on dark pictures. A factor of exactly 1 leaves the pixel alone.
void scalePixel(std::uint8_t* p, double g);

// The two side bands share their shape between the button and the frame.
struct FrameBands {
    int d, r, t;
    bool left(int px, int y) const;
    bool right(int px, int y) const;
};

// Rows and pixels as effectRahmen scales them; y is the buffer row.
class FrameBevel {
  public:
    FrameBevel(int light, int shadow, int thickness, int width, int height);
    // The factor of row y outside the side bands; 1 only between the top
    // and the bottom bands.
    double row(int y) const;
    // The factor of pixel px in row y, whose row factor is `rowFactor`.
    double at(int px, int y, double rowFactor) const;
    // The first and one past the last column that may change in a row of
    // factor 1.
    int leftEnd() const;
    int rightStart() const;

  private:
    double t0_[21], t1_[21];
    int width_;
    FrameBands bands_;
};

}  // namespace brindle::effects
