#include "properties/panorama_view_math.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>

namespace brindle::properties {

namespace {

std::string lower(std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

// The number at the start of a text, with a comma as decimal point too; 0 when none.
double leadingNumber(std::string text) {
    std::replace(text.begin(), text.end(), ',', '.');
    return std::strtod(text.c_str(), nullptr);
}

double wrapped(double x, double period) { return std::fmod(std::fmod(x, period) + period, period); }

}  // namespace

ViewLimits viewLimits(double bw, double bh, double iw, double ih) {
    ViewLimits l;
    if (iw <= 0 || ih <= 0 || bw <= 0 || bh <= 0) return l;
    const double contain = std::min(bw / iw, bh / ih);
    l.cover = std::max(bw / iw, bh / ih);
    l.wrap = iw >= 2.5 * ih;
    l.minScale = l.wrap ? bh / ih : contain;
    l.maxScale = std::max(l.cover, 1.0) * 4;
    return l;
}

double startScale(const std::string& zoom, const ViewLimits& limits) {
    const std::string z = lower(zoom);
    double scale;
    if (z == "min") scale = limits.minScale;
    else if (z == "max") scale = limits.maxScale;
    else if (z == "full" || !(leadingNumber(z) > 0)) scale = limits.cover;
    else scale = leadingNumber(z) / 100;
    return std::clamp(scale, limits.minScale, limits.maxScale);
}

void limitView(ViewTransform& view, double bw, double bh, double iw, double ih, bool wrap) {
    const double vw = bw / view.scale;
    const double vh = bh / view.scale;
    if (wrap) view.vx = wrapped(view.vx, iw);
    else if (vw >= iw) view.vx = (iw - vw) / 2;
    else view.vx = std::clamp(view.vx, 0.0, iw - vw);
    if (vh >= ih) view.vy = (ih - vh) / 2;
    else view.vy = std::clamp(view.vy, 0.0, ih - vh);
}

PicturePoint boxToPicture(const ViewTransform& view, double bx, double by) {
    return {view.vx + bx / view.scale, view.vy + by / view.scale};
}

PixelRect hotspotFromDrag(const ViewTransform& view, double bx0, double by0, double bx1, double by1, int iw,
                          int ih) {
    const PicturePoint a = boxToPicture(view, bx0, by0);
    const PicturePoint b = boxToPicture(view, bx1, by1);
    auto px = [iw](double x) { return static_cast<int>(std::clamp(std::lround(x), 0L, static_cast<long>(iw))); };
    auto py = [ih](double y) { return static_cast<int>(std::clamp(std::lround(y), 0L, static_cast<long>(ih))); };
    PixelRect r{px(std::min(a.x, b.x)), px(std::max(a.x, b.x)), py(std::min(a.y, b.y)), py(std::max(a.y, b.y))};
    return r;
}

void zoomAt(ViewTransform& view, double factor, double bx, double by, const ViewLimits& limits) {
    const PicturePoint before = boxToPicture(view, bx, by);
    view.scale = std::clamp(view.scale * factor, limits.minScale, limits.maxScale);
    view.vx = before.x - bx / view.scale;
    view.vy = before.y - by / view.scale;
}

std::string checkZoom(double percent) {
    if (percent < 75) return "50";
    if (percent < 150) return "100";
    return "200";
}

std::string checkZoom(const std::string& zoom) {
    const std::string z = lower(zoom);
    if (z == "min") return "Min";
    if (z == "max") return "Max";
    const double n = leadingNumber(z);
    if (z == "full" || !(n > 0)) return "Full";
    return checkZoom(n);
}

}  // namespace brindle::properties
