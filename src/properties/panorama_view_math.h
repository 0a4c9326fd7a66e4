// The geometry of a panorama view: which part of a picture a box shows at
// which scale, and how a drag in the box becomes a hotspot rectangle in
// picture pixels. The dialog's live view and the album's browser player
// follow the same rules, so a start view looks alike in both.
#pragma once

#include <string>

namespace brindle::properties {

// A view of a picture in a box: (vx, vy) is the picture point at the box's
// top left corner, `scale` box pixels per picture pixel.
struct ViewTransform {
    double vx = 0, vy = 0, scale = 1;
};

struct PicturePoint {
    double x = 0, y = 0;
};

// A hotspot rectangle in whole picture pixels, x1 <= x2 and y1 <= y2.
struct PixelRect {
    int x1 = 0, x2 = 0, y1 = 0, y2 = 0;
    bool empty() const { return x1 == x2 || y1 == y2; }
    bool operator==(const PixelRect&) const = default;
};

struct ViewLimits {
    double minScale = 1, maxScale = 4, cover = 1;
    bool wrap = false;  // the picture goes round (a wide panorama)
};

// Limits of a picture of iw x ih in a box of bw x bh. A picture at least two
// and a half times as wide as high goes round and fills the box's height.
ViewLimits viewLimits(double bw, double bh, double iw, double ih);

// The start scale of a zoom text: "Min", "Full" (and "Max") or a percentage,
// kept within the limits.
double startScale(const std::string& zoom, const ViewLimits& limits);

// Keeps the view on the picture; a picture smaller than the box is centred.
void limitView(ViewTransform& view, double bw, double bh, double iw, double ih, bool wrap);

PicturePoint boxToPicture(const ViewTransform& view, double bx, double by);

// The rectangle dragged from (bx0, by0) to (bx1, by1) in box pixels, in
// picture pixels rounded to whole pixels and kept inside the picture.
PixelRect hotspotFromDrag(const ViewTransform& view, double bx0, double by0, double bx1, double by1, int iw,
                          int ih);

// Zoom by `factor` keeping the picture point under (bx, by) in place.
void zoomAt(ViewTransform& view, double factor, double bx, double by, const ViewLimits& limits);

// checkZoom: a zoom limited to the entries of the start-zoom list, "Min",
// "Max", "Full", "50", "100", "200"; a number goes to the nearest entry.
std::string checkZoom(const std::string& zoom);
std::string checkZoom(double percent);

}  // namespace brindle::properties
