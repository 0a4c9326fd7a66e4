#include "image/picture_turn.h"

#include <array>
#include <cstring>

namespace brindle {
namespace {

struct Point {
    int x, y;  // 0 or 1: a corner of the unit square
    bool operator==(const Point&) const = default;
};

Point apply(Turn t, Point p) {
    if (t.transpose) p = {p.y, p.x};
    if (t.flipX) p.x = 1 - p.x;
    if (t.flipY) p.y = 1 - p.y;
    return p;
}

constexpr std::array<Turn, 8> kAllTurns = {kTurnNone,      kTurnMirrorX,  kTurnHalf,
                                           kTurnMirrorY,   kTurnTranspose, kTurnRight,
                                           kTurnTransverse, kTurnLeft};

}  // namespace

Turn thenTurn(Turn first, Turn second) {
    // Three corners tell the eight turns apart.
    const Point corners[] = {{0, 0}, {1, 0}, {0, 1}};
    for (const Turn& candidate : kAllTurns) {
        bool same = true;
        for (const Point& c : corners)
            same = same && apply(candidate, c) == apply(second, apply(first, c));
        if (same) return candidate;
    }
    return kTurnNone;
}

Turn turnForOrientation(int orientation) {
    // The table is in orientation order 1..8.
    return orientation >= 1 && orientation <= 8 ? kAllTurns[orientation - 1] : kTurnNone;
}

cDIBSection turnedPicture(const cDIBSection& dib, Turn turn) {
    if (turn.isIdentity() || dib.empty()) return dib;
    const int w = dib.Width(), h = dib.Height();
    const int tw = turn.transpose ? h : w, th = turn.transpose ? w : h;
    cDIBSection out;
    if (!out.Create(tw, th)) return out;
    out.setExif(dib.sharedExif());
    // Top-down picture coordinates; buffer row = height - 1 - y.
    for (int y = 0; y < h; ++y) {
        const std::uint8_t* s = dib.rowBits(h - 1 - y);
        for (int x = 0; x < w; ++x) {
            int dx = turn.transpose ? y : x, dy = turn.transpose ? x : y;
            if (turn.flipX) dx = tw - 1 - dx;
            if (turn.flipY) dy = th - 1 - dy;
            std::memcpy(out.rowBits(th - 1 - dy) + dx * 3, s + x * 3, 3);
        }
    }
    return out;
}

}  // namespace brindle
