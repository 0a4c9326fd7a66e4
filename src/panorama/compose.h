// Composition of a panorama: the pictures of one row, all of one size, are
// placed at their found offsets, painted in list order, and each seam is
// cross-faded over a band of `smoothWidth` pixels that starts at the left
// edge of the right picture. In a 360 degree row the last picture also
// meets the first: the result is one full turn wide and its right end runs
// into its start without a seam.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "album/language.h"
#include "image/dib_section.h"
#include "panorama/gain.h"
#include "panorama/pano_layout.h"

namespace brindle::panorama {

struct ComposeOptions {
    bool ring360 = false;  // closed row: n seams instead of n - 1
    bool padding = false;  // rows left free by the vertical offsets take the nearest row
    bool crop = false;     // keep only the rows that every picture covers
    int smoothWidth = 20;  // pixels of the blend band at each seam
    bool balanceY = false; // y from the balanced offsets (read by the record adapter)
    bool matchGain = true; // exposure of each picture matched to its neighbours
};

// Called after each picture and seam with the work done so far out of
// `total`; false stops the composition.
using ComposeTick = std::function<bool(int done, int total)>;

struct ComposeResult {
    bool ok = false;
    bool cancelled = false;
    std::string message;  // what went wrong, in the language asked for
};

// The size the result will have (after cropping when asked); 0 x 0 when
// the layout is unusable.
void composedSize(int count, int pictureWidth, int pictureHeight, const PanoLayout& layout,
                  const ComposeOptions& options, int& width, int& height);

// Builds the panorama into `out`. The result's size is checked against the
// picture limits before anything is allocated.
ComposeResult composePanorama(std::span<const cDIBSection> pictures, const PanoLayout& layout,
                              const ComposeOptions& options, cDIBSection& out,
                              Language language = Language::English,
                              const ComposeTick& tick = {});

// The out value of a blend pixel: (left x w1 + right x w2) / s rounded to
// the nearest byte, halves to even, with w1 = s - j, w2 = j.
inline std::uint8_t blendByte(int left, int right, int j, int s) {
    const int num = left * (s - j) + right * j;
    int q = num / s;
    const int twice = 2 * (num % s);
    if (twice > s || (twice == s && (q & 1))) ++q;
    return static_cast<std::uint8_t>(q > 255 ? 255 : q);
}

}  // namespace brindle::panorama
