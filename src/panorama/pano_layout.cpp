#include "panorama/pano_layout.h"

#include <algorithm>
#include <limits>

namespace brindle::panorama {
namespace {

bool refuse(std::string* why, const char* text) {
    if (why) *why = text;
    return false;
}

// Steps beyond this would make sizes no picture can have; refusing them
// here keeps every sum below in range.
constexpr long long kMaxStep = 1LL << 24;

}  // namespace

bool placePictures(int count, int pictureWidth, int pictureHeight, const PanoLayout& layout,
                   bool ring360, PanoGeometry& out, std::string* why) {
    out = PanoGeometry{};
    if (count < 1) return refuse(why, "no pictures");
    if (pictureWidth < 1 || pictureHeight < 1) return refuse(why, "the pictures have no size");
    const bool ring = ring360 && count > 1;
    const std::size_t steps = static_cast<std::size_t>(ring ? count : count - 1);
    if (layout.xStep.size() < steps || layout.yStep.size() < steps)
        return refuse(why, "fewer offsets than seams");
    long long x = 0, y = 0, minY = 0, maxY = 0;
    std::vector<long long> ys{0};
    out.x.push_back(0);
    for (std::size_t i = 0; i < steps; ++i) {
        if (layout.xStep[i] < 1) return refuse(why, "a picture does not stand right of its neighbour");
        if (layout.xStep[i] > kMaxStep || layout.yStep[i] > kMaxStep || layout.yStep[i] < -kMaxStep)
            return refuse(why, "an offset is too large");
        x += layout.xStep[i];
        if (x > std::numeric_limits<int>::max() / 2) return refuse(why, "the row is too wide");
        if (i + 1 == static_cast<std::size_t>(count)) break;  // the closing step of a ring
        y += layout.yStep[i];
        minY = std::min(minY, y);
        maxY = std::max(maxY, y);
        out.x.push_back(static_cast<int>(x));
        ys.push_back(y);
    }
    if (maxY - minY > kMaxStep) return refuse(why, "the offsets are too large");
    out.pictureWidth = pictureWidth;
    out.pictureHeight = pictureHeight;
    out.width = ring ? static_cast<int>(x) : out.x.back() + pictureWidth;
    if (ring && out.width < pictureWidth) return refuse(why, "the row is shorter than one picture");
    out.height = static_cast<int>(pictureHeight + maxY - minY);
    for (long long v : ys) out.top.push_back(static_cast<int>(v - minY));
    const int lowestTop = *std::max_element(out.top.begin(), out.top.end());
    const int highestBottom = *std::min_element(out.top.begin(), out.top.end()) + pictureHeight;
    out.cropTop = lowestTop;
    out.cropBottom = out.height - highestBottom;
    for (int i = 0; i + 1 < count || (ring && i < count); ++i) {
        PanoSeam seam;
        seam.left = i;
        seam.right = (i + 1) % count;
        seam.x = i + 1 < count ? out.x[i + 1] : out.width;
        seam.overlap = std::clamp(out.x[i] + pictureWidth - seam.x, 0, pictureWidth);
        out.seams.push_back(seam);
    }
    return true;
}

}  // namespace brindle::panorama
