#include "image/frame_plane.h"

#include <cstring>
#include <vector>

#include "image/rounding.h"

namespace brindle {
namespace {

// The source pixel under the centre of target pixel i when n pixels are
// squeezed into m (the stretch's colour-on-colour rule).
int sourceUnder(int i, int n, int m) {
    return static_cast<int>((2LL * i + 1) * n / (2LL * m));
}

// Runs of target columns whose sources lie side by side: one copy each.
struct Run {
    int dst, src, count;
};

std::vector<Run> columnRuns(int d, int width) {
    const int inside = width - 2 * d;
    std::vector<Run> runs;
    for (int i = 0; i < inside; ++i) {
        const int s = sourceUnder(i, width, inside);
        if (!runs.empty() && runs.back().src + runs.back().count == s)
            ++runs.back().count;
        else
            runs.push_back({d + i, s, 1});
    }
    return runs;
}

// Target row d + i reads source row j(i) >= i (the picture only shrinks),
// and j(i) - i never falls. Rows whose source lies above them are done
// from the middle upwards, the others from the middle downwards, so that
// every source row is read before the shrink writes over it.
void shrinkInside(cDIBSection& dib, int d) {
    const int w = dib.Width(), h = dib.Height();
    const Surface s = dib.hdc();
    const std::vector<Run> runs = columnRuns(d, w);
    const int inside = h - 2 * d;
    std::vector<std::uint8_t> line(static_cast<std::size_t>(w) * 3);
    const auto shrinkRow = [&](int i) {
        const int from = sourceUnder(i, h, inside);
        const std::uint8_t* in = s.row(from);
        // A row shrunk into itself is read whole first.
        if (from == d + i) {
            std::memcpy(line.data(), in, line.size());
            in = line.data();
        }
        std::uint8_t* out = s.row(d + i);
        for (const Run& r : runs)
            std::memcpy(out + r.dst * 3, in + r.src * 3, static_cast<std::size_t>(r.count) * 3);
    };
    int split = 0;  // the first row whose source is not above it
    while (split < inside && sourceUnder(split, h, inside) < d + split) ++split;
    for (int i = split - 1; i >= 0; --i) shrinkRow(i);
    for (int i = split; i < inside; ++i) shrinkRow(i);
}

// The border in the colour; pad bytes at the row ends are zero as in a
// new section.
void paintBorder(cDIBSection& dib, std::uint32_t colour, int d) {
    const int w = dib.Width(), h = dib.Height();
    const Rgb c = splitColour(colour);
    std::vector<std::uint8_t> plane(static_cast<std::size_t>(w) * 3);
    for (std::size_t x = 0; x < plane.size(); x += 3) {
        plane[x] = c.blue;
        plane[x + 1] = c.green;
        plane[x + 2] = c.red;
    }
    const std::size_t side = static_cast<std::size_t>(d) * 3;
    const std::size_t pad = static_cast<std::size_t>(dib.BytesPerScanLine()) - plane.size();
    for (int y = 0; y < h; ++y) {
        std::uint8_t* p = dib.rowBits(y);
        if (y < d || y >= h - d) {
            std::memcpy(p, plane.data(), plane.size());
        } else {
            std::memcpy(p, plane.data(), side);
            std::memcpy(p + plane.size() - side, plane.data(), side);
        }
        std::memset(p + plane.size(), 0, pad);
    }
}

}  // namespace

// The frame never touches the inside rows' inside columns, so drawing it
// after the shrink on the painted border gives the same bytes.
bool frameOnColourInPlace(cDIBSection& dib, std::uint32_t colour, int light, int shadow,
                          int thickness, ProgressWord* progress) {
    const int d = thickness;
    if (dib.empty() || d < 1 || dib.Width() <= 2LL * d || dib.Height() <= 2LL * d) return false;
    shrinkInside(dib, d);
    paintBorder(dib, colour, d);
    dib.effectRahmen(light, shadow, d, progress);
    return true;
}

bool frameOnColourPlane(cDIBSection& dib, std::uint32_t colour, int light, int shadow,
                        int thickness, ProgressWord* progress) {
    const int w = dib.Width(), h = dib.Height(), d = thickness;
    cDIBSection back;
    if (!back.Create(w, h)) return false;
    back.effectFarbfläche(colour);
    back.effectRahmen(light, shadow, d, progress);
    back.StretchLoadPicture(dib.hdc(), d, d, w - 2 * d, h - 2 * d, 0, 0, w, h);
    back.setExif(dib.sharedExif());
    dib = std::move(back);
    return true;
}

}  // namespace brindle
