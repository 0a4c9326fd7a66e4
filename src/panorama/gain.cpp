#include "panorama/gain.h"

#include <algorithm>
#include <cmath>

#include "image/rounding.h"

namespace brindle::panorama {
namespace {

// Every second row and column is enough for a mean over thousands of pixels.
constexpr int kSampleStep = 2;

}  // namespace

ChannelGains seamGainRatio(const cDIBSection& left, const cDIBSection& right,
                           const PanoGeometry& geometry, const PanoSeam& seam) {
    ChannelGains ratio{1.0, 1.0, 1.0};
    if (seam.overlap <= 0) return ratio;
    const int topL = geometry.top[seam.left], topR = geometry.top[seam.right];
    const int first = std::max(topL, topR);
    const int end = std::min(topL, topR) + geometry.pictureHeight;
    const int leftColumn = seam.x - geometry.x[seam.left];
    const Surface l = left.hdc(), r = right.hdc();
    double sumL[3] = {0, 0, 0}, sumR[3] = {0, 0, 0};
    long long count = 0;
    for (int t = first; t < end; t += kSampleStep) {
        const std::uint8_t* rowL = l.row(t - topL) + 3 * leftColumn;
        const std::uint8_t* rowR = r.row(t - topR);
        for (int j = 0; j < seam.overlap; j += kSampleStep) {
            const std::uint8_t* a = rowL + 3 * j;
            const std::uint8_t* b = rowR + 3 * j;
            if (std::max({a[0], a[1], a[2], b[0], b[1], b[2]}) >= kGainClipLevel) continue;
            for (int c = 0; c < 3; ++c) {
                sumL[c] += a[c];
                sumR[c] += b[c];
            }
            ++count;
        }
    }
    if (count == 0) return ratio;
    for (int c = 0; c < 3; ++c) {
        // Means below one level are noise; their ratio would be wild.
        if (sumL[c] < count || sumR[c] < count) continue;
        ratio[c] = std::clamp(sumL[c] / sumR[c], 1.0 / kMaxSeamGain, kMaxSeamGain);
    }
    return ratio;
}

std::vector<ChannelGains> matchGains(std::span<const cDIBSection> pictures,
                                     const PanoGeometry& geometry) {
    const std::size_t n = pictures.size();
    std::vector<ChannelGains> gains(n, ChannelGains{1.0, 1.0, 1.0});
    if (n < 2 || geometry.seams.empty()) return gains;
    ChannelGains loop{1.0, 1.0, 1.0};
    for (const PanoSeam& seam : geometry.seams) {
        const ChannelGains ratio =
            seamGainRatio(pictures[seam.left], pictures[seam.right], geometry, seam);
        for (int c = 0; c < 3; ++c) {
            if (seam.right != 0)
                gains[seam.right][c] = gains[seam.left][c] * ratio[c];
            else
                loop[c] = gains[seam.left][c] * ratio[c];
        }
    }
    if (geometry.seams.size() == n) {
        // Closed row: the first picture would need `loop` after a full turn.
        for (std::size_t i = 1; i < n; ++i)
            for (int c = 0; c < 3; ++c)
                gains[i][c] *= std::pow(loop[c], -static_cast<double>(i) / static_cast<double>(n));
    }
    return gains;
}

void gainTable(double gain, std::array<std::uint8_t, 256>& table) {
    for (int v = 0; v < 256; ++v)
        table[static_cast<std::size_t>(v)] = gain == 1.0 ? static_cast<std::uint8_t>(v)
                                                         : roundClamp(v * gain);
}

}  // namespace brindle::panorama
