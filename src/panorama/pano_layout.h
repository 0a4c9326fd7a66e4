// The places of the pictures of one panorama row: the steps found between
// neighbours and the absolute positions and seams that follow from them.
#pragma once

#include <string>
#include <vector>

namespace brindle::panorama {

// Where the pictures stand relative to each other. Entry i is the step
// from picture i to picture i + 1; in a 360 degree row the last entry is
// the step from the last picture back to the first. Open rows may carry
// that closing entry too; it is then ignored.
struct PanoLayout {
    std::vector<int> xStep;  // columns the next picture starts right of this one (at least 1)
    std::vector<int> yStep;  // rows the next picture stands lower than this one
};

// Where two neighbours meet. The right picture starts at column `x` of the
// row (taken modulo the row's width in a 360 degree row) and shares
// `overlap` columns with the left one.
struct PanoSeam {
    int left = 0, right = 0;  // picture indices
    int x = 0;
    int overlap = 0;  // 0 when the pictures do not touch
};

// Absolute places of the pictures: x from 0, the highest picture's top at 0.
struct PanoGeometry {
    int pictureWidth = 0, pictureHeight = 0;
    std::vector<int> x, top;
    std::vector<PanoSeam> seams;  // n - 1 in an open row, n in a 360 degree row
    int width = 0;                // of the whole row (360: one full turn)
    int height = 0;               // before cropping
    int cropTop = 0, cropBottom = 0;  // rows at each end not covered by every picture
};

// False when the layout does not fit the picture count or has a step
// below 1; `why` names the fault in English.
bool placePictures(int count, int pictureWidth, int pictureHeight, const PanoLayout& layout,
                   bool ring360, PanoGeometry& out, std::string* why = nullptr);

}  // namespace brindle::panorama
