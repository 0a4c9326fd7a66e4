#include "image/surface.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace brindle {
namespace {

void applyRop(std::uint8_t* d, const std::uint8_t* s, int bytes, std::uint32_t rop) {
    switch (rop) {
        case SRCCOPY:
            std::memmove(d, s, static_cast<std::size_t>(bytes));
            break;
        case SRCPAINT:
            for (int i = 0; i < bytes; ++i) d[i] |= s[i];
            break;
        case SRCAND:
            for (int i = 0; i < bytes; ++i) d[i] &= s[i];
            break;
        case SRCINVERT:
            for (int i = 0; i < bytes; ++i) d[i] ^= s[i];
            break;
        case NOTSRCCOPY:
            for (int i = 0; i < bytes; ++i) d[i] = static_cast<std::uint8_t>(~s[i]);
            break;
        case DSTINVERT: {
            int i = 0;
            for (; i + 8 <= bytes; i += 8) {  // eight bytes a step
                std::uint64_t v;
                std::memcpy(&v, d + i, 8);
                v = ~v;
                std::memcpy(d + i, &v, 8);
            }
            for (; i < bytes; ++i) d[i] = static_cast<std::uint8_t>(~d[i]);
            break;
        }
        case BLACKNESS:
            std::memset(d, 0, static_cast<std::size_t>(bytes));
            break;
        case WHITENESS:
            std::memset(d, 255, static_cast<std::size_t>(bytes));
            break;
        default:
            break;
    }
}

// A copy of the whole source, for blits of a buffer onto itself.
struct SourceCopy {
    std::vector<std::uint8_t> bytes;
    Surface surface;
    explicit SourceCopy(const Surface& src) {
        bytes.assign(src.bits, src.bits + static_cast<std::ptrdiff_t>(src.stride) * src.height);
        surface = src;
        surface.bits = bytes.data();
    }
};

// Destination and source index pairs along one axis of a stretch.
struct AxisMap {
    std::vector<int> dst, src;
};

AxisMap mapAxis(int pos, int extent, int srcPos, int srcExtent, int dstLimit, int srcLimit) {
    AxisMap map;
    if (extent == 0 || srcExtent == 0) return map;
    const long long dStart = extent < 0 ? static_cast<long long>(pos) + extent : pos;
    const long long dn = extent < 0 ? -static_cast<long long>(extent) : extent;
    const long long sStart = srcExtent < 0 ? static_cast<long long>(srcPos) + srcExtent : srcPos;
    const long long sn = srcExtent < 0 ? -static_cast<long long>(srcExtent) : srcExtent;
    const bool mirror = (extent < 0) != (srcExtent < 0);
    const long long first = std::max<long long>(0, -dStart);
    const long long last = std::min<long long>(dn, dstLimit - dStart);  // exclusive
    for (long long i = first; i < last; ++i) {
        long long j = (2 * i + 1) * sn / (2 * dn);  // the source pixel under the target's centre
        if (mirror) j = sn - 1 - j;
        const long long s = sStart + j;
        if (s < 0 || s >= srcLimit) continue;
        map.dst.push_back(static_cast<int>(dStart + i));
        map.src.push_back(static_cast<int>(s));
    }
    return map;
}

}  // namespace

bool isKnownRasterOp(std::uint32_t rop) {
    switch (rop) {
        case SRCCOPY:
        case SRCPAINT:
        case SRCAND:
        case SRCINVERT:
        case NOTSRCCOPY:
        case DSTINVERT:
        case BLACKNESS:
        case WHITENESS:
            return true;
        default:
            return false;
    }
}

bool bitBlt(const Surface& dst, int x, int y, int w, int h, const Surface& srcIn, int sx, int sy,
            std::uint32_t rop) {
    const bool needsSource = rop != DSTINVERT && rop != BLACKNESS && rop != WHITENESS;
    if (!dst || !isKnownRasterOp(rop) || (needsSource && !srcIn)) return false;
    const Surface src = needsSource ? srcIn : dst;
    if (w <= 0 || h <= 0) return true;
    // Clip against the source, then the destination, moving both origins together.
    long long x0 = x, y0 = y, sx0 = sx, sy0 = sy, ww = w, hh = h;
    auto clip = [](long long& a, long long& b, long long& extent, long long limit) {
        if (a < 0) {
            b -= a;
            extent += a;
            a = 0;
        }
        if (a + extent > limit) extent = limit - a;
    };
    clip(sx0, x0, ww, src.width);
    clip(sy0, y0, hh, src.height);
    clip(x0, sx0, ww, dst.width);
    clip(y0, sy0, hh, dst.height);
    if (ww <= 0 || hh <= 0) return true;
    std::vector<std::uint8_t> rowCopy;
    const int bytes = static_cast<int>(ww) * 3;
    // On one buffer, walk rows in the order that reads each before it is written.
    const bool upward = dst.sameBuffer(src) && y0 > sy0;
    for (long long k = 0; k < hh; ++k) {
        const long long r = upward ? hh - 1 - k : k;
        std::uint8_t* d = dst.row(static_cast<int>(y0 + r)) + x0 * 3;
        const std::uint8_t* s = src.row(static_cast<int>(sy0 + r)) + sx0 * 3;
        if (needsSource && rop != SRCCOPY && dst.sameBuffer(src)) {
            rowCopy.assign(s, s + bytes);
            s = rowCopy.data();
        }
        applyRop(d, s, bytes, rop);
    }
    return true;
}

bool stretchBlt(const Surface& dst, int x, int y, int w, int h, const Surface& srcIn, int sx,
                int sy, int sw, int sh, std::uint32_t rop) {
    if (!dst || !srcIn || !isKnownRasterOp(rop)) return false;
    std::vector<std::uint8_t> scratch;
    Surface src = srcIn;
    if (dst.sameBuffer(srcIn)) {
        scratch.assign(srcIn.bits,
                       srcIn.bits + static_cast<std::ptrdiff_t>(srcIn.stride) * srcIn.height);
        src.bits = scratch.data();
    }
    const AxisMap cols = mapAxis(x, w, sx, sw, dst.width, src.width);
    const AxisMap rows = mapAxis(y, h, sy, sh, dst.height, src.height);
    const std::size_t n = cols.dst.size();
    // Target columns side by side (no source column clipped away between).
    bool contiguous = true;
    for (std::size_t c = 1; c < n && contiguous; ++c) contiguous = cols.dst[c] == cols.dst[c - 1] + 1;
    std::vector<std::size_t> srcBytes(n);
    std::size_t furthest = 0;
    for (std::size_t c = 0; c < n; ++c) {
        srcBytes[c] = static_cast<std::size_t>(cols.src[c]) * 3;
        furthest = std::max(furthest, srcBytes[c]);
    }
    const std::size_t srcSize = static_cast<std::size_t>(src.stride) * src.height;
    for (std::size_t r = 0; r < rows.dst.size(); ++r) {
        std::uint8_t* d = dst.row(rows.dst[r]);
        const std::uint8_t* s = src.row(rows.src[r]);
        // The fourth byte read must lie inside the source buffer too.
        const bool wide = contiguous && n > 0 &&
                          static_cast<std::size_t>(s - src.bits) + furthest + 4 <= srcSize;
        if (rop == SRCCOPY && wide) {
            // Four bytes a pixel: the fourth is overwritten by the next
            // pixel, and the last pixel of the run takes three.
            std::uint8_t* dp = d + cols.dst[0] * 3;
            for (std::size_t c = 0; c + 1 < n; ++c, dp += 3) std::memcpy(dp, s + srcBytes[c], 4);
            std::memcpy(dp, s + srcBytes[n - 1], 3);
        } else if (rop == SRCCOPY) {
            for (std::size_t c = 0; c < n; ++c) {
                std::uint8_t* dp = d + cols.dst[c] * 3;
                const std::uint8_t* sp = s + cols.src[c] * 3;
                dp[0] = sp[0];
                dp[1] = sp[1];
                dp[2] = sp[2];
            }
        } else {
            for (std::size_t c = 0; c < n; ++c)
                applyRop(d + cols.dst[c] * 3, s + cols.src[c] * 3, 3, rop);
        }
    }
    return true;
}

bool invertRect(const Surface& dst, int x, int y, int w, int h) {
    return bitBlt(dst, x, y, w, h, dst, x, y, DSTINVERT);
}

}  // namespace brindle
