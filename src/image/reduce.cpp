#include "image/reduce.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace brindle {
namespace {

constexpr int kWeightBits = 14;
constexpr std::uint32_t kOne = 1u << kWeightBits;

// The source pixels one target pixel draws on, and their weights (summing
// to kOne).
struct Taps {
    std::vector<int> first;              // per target: first source pixel
    std::vector<int> count;              // per target: how many
    std::vector<std::size_t> offset;     // per target: where its weights start
    std::vector<std::uint16_t> weights;  // all targets' weights in a row
};

// Source pixel j spans [j dn, (j + 1) dn) and target i spans [i sn, (i + 1) sn)
// in units of 1 / (sn dn). The weights are differences of rounded running
// totals, so they always sum to kOne, even when a target covers thousands
// of source pixels.
Taps areaTaps(int sn, int dn, int firstTarget, int lastTarget) {
    Taps t;
    for (int i = firstTarget; i < lastTarget; ++i) {
        const long long from = static_cast<long long>(i) * sn, to = from + sn;
        const int j0 = static_cast<int>(from / dn), j1 = static_cast<int>((to - 1) / dn);
        t.first.push_back(j0);
        t.count.push_back(j1 - j0 + 1);
        t.offset.push_back(t.weights.size());
        long long covered = 0;
        std::uint32_t given = 0;
        for (int j = j0; j <= j1; ++j) {
            const long long lo = std::max(from, static_cast<long long>(j) * dn);
            const long long hi = std::min(to, static_cast<long long>(j + 1) * dn);
            covered += hi - lo;
            const auto total = static_cast<std::uint32_t>((covered * kOne + sn / 2) / sn);
            t.weights.push_back(static_cast<std::uint16_t>(total - given));
            given = total;
        }
    }
    return t;
}

// An axis kept or enlarged: the pixel under the target's centre.
Taps centreTaps(int sn, int dn, int firstTarget, int lastTarget) {
    Taps t;
    for (int i = firstTarget; i < lastTarget; ++i) {
        t.first.push_back(static_cast<int>((2LL * i + 1) * sn / (2LL * dn)));
        t.count.push_back(1);
        t.offset.push_back(t.weights.size());
        t.weights.push_back(static_cast<std::uint16_t>(kOne));
    }
    return t;
}

Taps axisTaps(int sn, int dn, int firstTarget, int lastTarget) {
    return sn > dn ? areaTaps(sn, dn, firstTarget, lastTarget)
                   : centreTaps(sn, dn, firstTarget, lastTarget);
}

// Rows into `column`: the weighted sum of the source rows, kept with eight
// more bits than a byte (up to 255 << 8).
void blendRows(const Surface& src, int sx, int bytes, const Taps& rows, std::size_t target,
               int sy, std::vector<std::uint32_t>& acc, std::vector<std::uint16_t>& column) {
    const std::uint16_t* w = rows.weights.data() + rows.offset[target];
    const int n = rows.count[target];
    std::uint32_t* a = acc.data();
    {
        const std::uint8_t* s = src.row(sy + rows.first[target]) + sx * 3;
        const std::uint32_t wt = w[0];
        for (int k = 0; k < bytes; ++k) a[k] = wt * s[k];
    }
    for (int t = 1; t < n; ++t) {
        const std::uint8_t* s = src.row(sy + rows.first[target] + t) + sx * 3;
        const std::uint32_t wt = w[t];
        if (wt == 0) continue;
        for (int k = 0; k < bytes; ++k) a[k] += wt * s[k];
    }
    std::uint16_t* c = column.data();
    for (int k = 0; k < bytes; ++k)
        c[k] = static_cast<std::uint16_t>((a[k] + (1u << (kWeightBits - 9))) >> (kWeightBits - 8));
}

void blendColumns(const std::vector<std::uint16_t>& column, const Taps& cols, std::uint8_t* d) {
    const std::size_t targets = cols.first.size();
    for (std::size_t i = 0; i < targets; ++i, d += 3) {
        const std::uint16_t* w = cols.weights.data() + cols.offset[i];
        const std::uint16_t* c = column.data() + static_cast<std::size_t>(cols.first[i]) * 3;
        std::uint32_t b = 0, g = 0, r = 0;
        for (int t = 0; t < cols.count[i]; ++t, c += 3) {
            b += w[t] * static_cast<std::uint32_t>(c[0]);
            g += w[t] * static_cast<std::uint32_t>(c[1]);
            r += w[t] * static_cast<std::uint32_t>(c[2]);
        }
        constexpr int shift = kWeightBits + 8;
        constexpr std::uint32_t half = 1u << (shift - 1);
        d[0] = static_cast<std::uint8_t>((b + half) >> shift);
        d[1] = static_cast<std::uint8_t>((g + half) >> shift);
        d[2] = static_cast<std::uint8_t>((r + half) >> shift);
    }
}

}  // namespace

bool smoothStretch(const Surface& dst, int x, int y, int w, int h, const Surface& src, int sx,
                   int sy, int sw, int sh) {
    if (!dst || !src || dst.sameBuffer(src) || w <= 0 || h <= 0 || sw <= 0 || sh <= 0)
        return false;
    // The source rectangle inside the source.
    if (sx < 0) sw += sx, sx = 0;
    if (sy < 0) sh += sy, sy = 0;
    sw = std::min(sw, src.width - sx);
    sh = std::min(sh, src.height - sy);
    if (sw <= 0 || sh <= 0) return true;
    // Only the targets that land inside the destination are made.
    const int c0 = std::max(0, -x), c1 = std::min(w, dst.width - x);
    const int r0 = std::max(0, -y), r1 = std::min(h, dst.height - y);
    if (c0 >= c1 || r0 >= r1) return true;
    const Taps cols = axisTaps(sw, w, c0, c1);
    const Taps rows = axisTaps(sh, h, r0, r1);
    const int bytes = sw * 3;
    std::vector<std::uint32_t> acc(static_cast<std::size_t>(bytes));
    std::vector<std::uint16_t> column(static_cast<std::size_t>(bytes));
    for (int r = r0; r < r1; ++r) {
        blendRows(src, sx, bytes, rows, static_cast<std::size_t>(r - r0), sy, acc, column);
        blendColumns(column, cols, dst.row(y + r) + static_cast<std::ptrdiff_t>(x + c0) * 3);
    }
    return true;
}

bool smoothResize(const cDIBSection& src, cDIBSection& out, int w, int h) {
    if (src.empty() || !out.Create(w, h)) return false;
    return smoothStretch(out.hdc(), 0, 0, w, h, src.hdc(), 0, 0, src.Width(), src.Height());
}

}  // namespace brindle
