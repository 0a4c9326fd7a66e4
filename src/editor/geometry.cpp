#include "editor/geometry.h"

#include <algorithm>

namespace brindle::editor {
namespace {

constexpr double kPi = 3.14159265358979;

double raster(double v, bool use, int g) {
    if (!use || g <= 0) return v;
    const double r = v - std::floor(v / g) * g;
    return r <= g - r ? v - r : v + (g - r);
}

Point rounded(double x, double y) { return {toPixel(x), toPixel(y)}; }

Point middle(Point a, Point b) { return rounded(a.x + (b.x - a.x) / 2.0, a.y + (b.y - a.y) / 2.0); }

bool oneOf(int h, std::initializer_list<int> list) { return std::find(list.begin(), list.end(), h) != list.end(); }

// Which side of the unrotated picture a handle pulls: -1 left/top, +1 right/bottom.
int sideX(int h) { return oneOf(h, {2, 3, 4}) ? 1 : oneOf(h, {0, 6, 7}) ? -1 : 0; }
int sideY(int h) { return oneOf(h, {4, 5, 6}) ? 1 : oneOf(h, {0, 1, 2}) ? -1 : 0; }

bool spans(int start, int size, int edge) { return start <= edge && edge <= start + size; }

bool hitsAxis(int start, int size, int edge1, int edge2) {
    const int lo = std::min(edge1, edge2), hi = std::max(edge1, edge2);
    return spans(start, size, lo) || spans(start, size, hi) || (lo <= start && start <= hi);
}

}  // namespace

Grid gridFromOptions(const OptionsRecord& o) {
    return {isTrue(o.gridUse), isTrue(o.gridShow), o.gridWidth, o.gridHeight};
}

double RasterX(double v, const Grid& g) { return raster(v, g.use, g.width); }
double RasterY(double v, const Grid& g) { return raster(v, g.use, g.height); }

int stepX(const Grid& g) { return g.use && g.width > 0 ? g.width : 1; }
int stepY(const Grid& g) { return g.use && g.height > 0 ? g.height : 1; }

Groesse BerechneGroesse(double w, double h, double ow, double oh, int mode, bool limit) {
    if (ow == 0 || oh == 0) ow = oh = 1;
    const double r = ow / oh;
    Groesse g{w, h, 0, 0};
    switch (mode) {
        case 0:
            if (r <= 1) {
                g.height = w / r;
                g.width = w;
                if (g.height > h) {
                    g.width = w * h / g.height;
                    g.height = h;
                }
            } else {
                g.width = h * r;
                g.height = h;
                if (g.width >= w) {
                    g.height = w * h / g.width;
                    g.width = w;
                }
            }
            break;
        case 1:
            g.width = w;
            g.height = w / r;
            break;
        case 2:
            g.height = h;
            g.width = h * r;
            break;
        case 3:
            if (h == 0 || r < w / h) {
                g.height = w / r;
                g.width = w;
            } else {
                g.width = h * r;
                g.height = h;
            }
            break;
        default:
            break;
    }
    if (limit) {
        if (g.width > ow) {
            g.height = g.height * ow / g.width;
            g.width = ow;
        }
        if (g.height > oh) {
            g.width = g.width * oh / g.height;
            g.height = oh;
        }
    }
    g.offX = (w - g.width) / 2;
    g.offY = (h - g.width) / 2;  // subtracts the width: kept as the program always had it
    return g;
}

EckPunkte calcEckPoints(double cx, double cy, int angle, double w, double h) {
    const double phi = angle * kPi / 180;
    const double theta = w != 0 ? std::atan(h / w) : kPi / 2;
    const double r = std::sqrt(w * w / 4 + h * h / 4);
    EckPunkte p{};
    p[8] = rounded(cx, cy);
    p[6] = rounded(cx - r * std::cos(phi - theta), cy - r * std::sin(phi - theta));
    p[0] = rounded(cx - r * std::cos(phi + theta), cy - r * std::sin(phi + theta));
    p[4] = rounded(cx + r * std::cos(phi + theta), cy + r * std::sin(phi + theta));
    p[2] = rounded(cx + r * std::cos(phi - theta), cy + r * std::sin(phi - theta));
    p[7] = middle(p[0], p[6]);
    p[1] = middle(p[0], p[2]);
    p[3] = middle(p[4], p[2]);
    p[5] = middle(p[4], p[6]);
    return p;
}

EckPunkte calcEckPointsImage(const Box& b, int angle, int w, int h) {
    return calcEckPoints(b.left + b.width / 2.0, b.top + b.height / 2.0, angle, w, h);
}

Box calcAutoSizeImage(const EckPunkte& p, int angle) {
    int a = angle;
    while (a > 360) a -= 360;
    while (a < -360) a += 360;
    if ((a >= 0 && a <= 90) || (a >= -360 && a <= -270)) return {p[6].x, p[0].y, p[2].x - p[6].x, p[4].y - p[0].y};
    if ((a >= 91 && a <= 180) || (a >= -269 && a <= -180))
        return {p[4].x, p[6].y, p[0].x - p[4].x, p[2].y - p[6].y};
    if ((a >= 181 && a <= 270) || (a >= -179 && a <= -90))
        return {p[2].x, p[4].y, p[6].x - p[2].x, p[0].y - p[4].y};
    return {p[0].x, p[2].y, p[4].x - p[0].x, p[6].y - p[2].y};
}

int normaliseAngle(int angle) { return angle % 360; }

std::array<int, 2> unrotatedSize(const Box& b, int angle, int pictureWidth, int pictureHeight) {
    const double phi = normaliseAngle(angle) * kPi / 180;
    const double c = std::abs(std::cos(phi)), s = std::abs(std::sin(phi));
    const double det = c * c - s * s;
    if (std::abs(det) > 0.05) {
        const double w = (b.width * c - b.height * s) / det, h = (b.height * c - b.width * s) / det;
        if (w >= 1 && h >= 1) return {toPixel(w), toPixel(h)};
    }
    const double r = pictureWidth > 0 && pictureHeight > 0 ? double(pictureWidth) / pictureHeight : 1.0;
    const double k = std::min(b.width / (r * c + s), b.height / (r * s + c));
    return {std::max(1, toPixel(r * k)), std::max(1, toPixel(k))};
}

std::array<Point, 9> frameHandles(const Box& f) {
    const double l = f.left, t = f.top, w = f.width, h = f.height;
    return {rounded(l - 8, t - 8),         rounded(l + w / 2 - 4, t - 8), rounded(l + w, t - 8),
            rounded(l + w, t + h / 2 - 4), rounded(l + w, t + h),         rounded(l + w / 2 - 4, t + h),
            rounded(l - 8, t + h),         rounded(l - 8, t + h / 2 - 4), rounded(l + w / 2 - 4, t + h / 2 - 4)};
}

std::array<Point, 9> imageHandles(const EckPunkte& p, const Box& b) {
    std::array<Point, 9> out{};
    for (int i = 0; i < 8; ++i) out[static_cast<std::size_t>(i)] = {p[static_cast<std::size_t>(i)].x - 4,
                                                                     p[static_cast<std::size_t>(i)].y - 4};
    out[8] = rounded(b.left + b.width / 2.0 - 4, b.top + b.height / 2.0 - 4);
    return out;
}

Box dragBox(const Box& s, int handle, int dx, int dy, const Grid& g) {
    Box b = s;
    if (handle == 8) {
        b.left = toPixel(RasterX(s.left + dx, g));
        b.top = toPixel(RasterY(s.top + dy, g));
        return b;
    }
    const bool left = oneOf(handle, {0, 6, 7}), top = oneOf(handle, {0, 1, 2});
    if (left) {
        b.left = toPixel(RasterX(s.left + dx, g));
        b.width = s.right() - b.left;
    } else if (oneOf(handle, {2, 3, 4})) {
        b.width = toPixel(RasterX(s.right() + dx, g)) - s.left;
    }
    if (top) {
        b.top = toPixel(RasterY(s.top + dy, g));
        b.height = s.bottom() - b.top;
    } else if (oneOf(handle, {4, 5, 6})) {
        b.height = toPixel(RasterY(s.bottom() + dy, g)) - s.top;
    }
    if (b.width < kMinimumBox + 1) {
        b.width = kMinimumBox;
        if (left) b.left = s.right() - kMinimumBox;
    }
    if (b.height < kMinimumBox + 1) {
        b.height = kMinimumBox;
        if (top) b.top = s.bottom() - kMinimumBox;
    }
    return b;
}

SizeDelta pictureDelta(int handle, int angle, int dx, int dy) {
    // The vector runs from the current point back to the press point.
    const double vx = -dx, vy = -dy;
    const double phi = angle * kPi / 180;
    const double a = vx != 0 ? std::atan(vy / std::abs(vx)) : (vy > 0 ? 1 : vy < 0 ? -1 : 0) * kPi / 2;
    const double len = std::sqrt(vx * vx + vy * vy);
    SizeDelta d;
    if (oneOf(handle, {0, 2, 3, 4, 6, 7})) {
        d.width = std::cos((vx >= 0 ? phi : kPi - phi) - a) * len;
        if (oneOf(handle, {2, 3, 4})) d.width = -d.width;
    }
    if (oneOf(handle, {0, 1, 2, 4, 5, 6})) {
        d.height = (vx >= 0 ? std::sin(phi - a + kPi) : std::cos(a - (kPi / 2 - phi))) * len;
        if (oneOf(handle, {4, 5, 6})) d.height = -d.height;
    }
    return d;
}

int aspectMode(int handle) {
    if (handle == 1 || handle == 5) return 2;
    if (handle == 3 || handle == 7) return 1;
    return 3;
}

PictureShape dragPicture(const PictureStart& s, int handle, int dx, int dy, const Grid& g) {
    if (handle == 8) {
        Box b = s.box;
        b.left = toPixel(RasterX(s.box.left + dx, g));
        b.top = toPixel(RasterY(s.box.top + dy, g));
        return {b, s.width, s.height};
    }
    const SizeDelta d = pictureDelta(handle, s.angle, dx, dy);
    double w = std::max(5.0, s.width + d.width), h = std::max(5.0, s.height + d.height);
    if (s.proportional) {
        const Groesse fit = BerechneGroesse(w, h, s.originalWidth, s.originalHeight, aspectMode(handle));
        w = std::max(5.0, fit.width);
        h = std::max(5.0, fit.height);
    }
    const int nw = toPixel(w), nh = toPixel(h);
    // The side or corner opposite the handle stays where it was.
    const double phi = s.angle * kPi / 180;
    const double lx = sideX(handle) * (nw - s.width) / 2.0, ly = sideY(handle) * (nh - s.height) / 2.0;
    const double cx = s.box.left + s.box.width / 2.0 + lx * std::cos(phi) - ly * std::sin(phi);
    const double cy = s.box.top + s.box.height / 2.0 + lx * std::sin(phi) + ly * std::cos(phi);
    return {calcAutoSizeImage(calcEckPoints(cx, cy, s.angle, nw, nh), s.angle), nw, nh};
}

bool hitsBand(const Box& e, const Box& band) {
    return hitsAxis(e.left, e.width, band.left, band.right()) && hitsAxis(e.top, e.height, band.top, band.bottom());
}

}  // namespace brindle::editor
