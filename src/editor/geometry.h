// Selection geometry of the page canvas: grid rounding, the aspect
// computation, the turned corner points of a picture, handle placement,
// the drag rules for boxes and turned pictures, and the rubber-band hit rule.
#pragma once

#include <array>
#include <cmath>

#include "album/options.h"
#include "editor/elements.h"

namespace brindle::editor {

struct Point {
    int x = 0, y = 0;
    bool operator==(const Point&) const = default;
};

struct Grid {
    bool use = false;
    bool show = false;
    int width = 0;
    int height = 0;
};
Grid gridFromOptions(const OptionsRecord& options);

// Assignment of a fraction to a whole pixel rounds half to even, as the
// program's integer conversion always did.
inline int toPixel(double v) { return static_cast<int>(std::nearbyint(v)); }

// The nearest grid line, the lower one on a tie; v itself when the grid is off.
double RasterX(double v, const Grid& grid);
double RasterY(double v, const Grid& grid);

// Keyboard steps: the grid size when the grid is used, else 1.
int stepX(const Grid& grid);
int stepY(const Grid& grid);

struct Groesse {
    double width = 0, height = 0;
    double offX = 0, offY = 0;  // offY is (h - width) / 2, not a height centring
};
// Fits an original of ow x oh to w x h by `mode` (-1 as given, 0 inside,
// 1 by width, 2 by height, 3 covering); `limit` never enlarges the original.
Groesse BerechneGroesse(double w, double h, double ow, double oh, int mode, bool limit = false);

// 0 top-left, 1 top-middle, 2 top-right, 3 right-middle, 4 bottom-right,
// 5 bottom-middle, 6 bottom-left, 7 left-middle, 8 centre; they turn with
// the picture. Entry 9 is kept free.
using EckPunkte = std::array<Point, 10>;

// The corners of a w x h picture turned by `angle` degrees round (cx, cy).
EckPunkte calcEckPoints(double cx, double cy, int angle, double w, double h);
// The same round the centre of `box`.
EckPunkte calcEckPointsImage(const Box& box, int angle, int w, int h);
// The bounding box of the turned points, read by the quadrant of `angle`.
Box calcAutoSizeImage(const EckPunkte& p, int angle);
// The picture control keeps its angle within -359..359.
int normaliseAngle(int angle);
// The unrotated size a picture control shows in `box` at `angle`; pictures
// near 45 degrees, where the box does not tell, keep the file's aspect.
std::array<int, 2> unrotatedSize(const Box& box, int angle, int pictureWidth, int pictureHeight);

inline constexpr int kHandleSize = 8;
// The nine handle positions (top-left of each 8-pixel square) round a frame.
std::array<Point, 9> frameHandles(const Box& frame);
// Handles of one picture: on its turned points, handle 8 on the box centre.
std::array<Point, 9> imageHandles(const EckPunkte& points, const Box& box);

inline constexpr int kMinimumBox = 10;
// A text, panorama or search box dragged by `handle` by (dx, dy), moved
// edges through the grid; below 11 a side becomes 10 with the far edge kept.
Box dragBox(const Box& start, int handle, int dx, int dy, const Grid& grid);

// The change of a turned picture's unrotated width and height when
// `handle` is dragged by (dx, dy) from the press point.
struct SizeDelta {
    double width = 0, height = 0;
};
SizeDelta pictureDelta(int handle, int angle, int dx, int dy);
// BerechneGroesse mode of a handle: corners 3, top and bottom 2, sides 1.
int aspectMode(int handle);

struct PictureStart {
    Box box;        // bounding box at the press
    int angle = 0;
    int width = 0;  // unrotated size at the press
    int height = 0;
    bool proportional = false;
    int originalWidth = 0, originalHeight = 0;
};
struct PictureShape {
    Box box;
    int width = 0, height = 0;  // unrotated
};
// A picture dragged by `handle`: handle 8 moves; the others size the
// unrotated picture (at least 5) and keep the opposite corner or side.
PictureShape dragPicture(const PictureStart& start, int handle, int dx, int dy, const Grid& grid);

// Rubber band: on each axis the element spans the band's first edge, or
// its second edge, or starts between them.
bool hitsBand(const Box& element, const Box& band);

}  // namespace brindle::editor
