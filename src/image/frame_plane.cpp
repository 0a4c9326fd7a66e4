#include "image/frame_plane.h"

#include <cstring>
#include <vector>

#include "image/frame_bevel.h"
#include "image/rounding.h"

namespace brindle {
namespace {

// Runs of target columns whose sources lie side by side: one copy each.
struct Run {
    int dst, src, count;
};

std::vector<Run> columnRuns(int d, int width) {
    const int inside = width - 2 * d;
    std::vector<Run> runs;
    for (int i = 0; i < inside; ++i) {
        const int s = pixelUnder(i, width, inside);
        if (!runs.empty() && runs.back().src + runs.back().count == s)
            ++runs.back().count;
        else
            runs.push_back({d + i, s, 1});
    }
    return runs;
}

// The picture squeezed into the inside of its own buffer; the border rows
// and columns are left for the painting. A shrink never has to cover a row
// still to be read, so this is false only where that check would fail.
bool shrinkInside(cDIBSection& dib, int d) {
    const int w = dib.Width(), h = dib.Height();
    const std::vector<Run> runs = columnRuns(d, w);
    const int inside = h - 2 * d;
    std::vector<int> source(static_cast<std::size_t>(h), -1);  // by buffer row, from the bottom
    for (int i = 0; i < inside; ++i) source[h - 1 - (d + i)] = h - 1 - pixelUnder(i, h, inside);
    return dib.rebuildSmaller(w, h, source, [&](int, std::uint8_t* out, const std::uint8_t* in) {
        if (!in) return;
        for (const Run& r : runs)
            std::memcpy(out + r.dst * 3, in + r.src * 3, static_cast<std::size_t>(r.count) * 3);
    });
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
    if (!shrinkInside(dib, d)) return false;
    paintBorder(dib, colour, d);
    dib.effectRahmen(light, shadow, d, progress);
    return true;
}

// Every pixel the shrink keeps is either the frame's, a bevelled colour, or
// the picture's pixel under it; only those are made, in one pass.
bool frameOnColourAndShrink(cDIBSection& dib, std::uint32_t colour, int light, int shadow,
                            int thickness, int width, int height, ProgressWord* progress) {
    const int w = dib.Width(), h = dib.Height(), d = thickness;
    if (dib.empty() || d < 1 || w <= 2LL * d || h <= 2LL * d || width <= 0 || height <= 0 ||
        width > w || height > h)
        return false;
    const int insideWidth = w - 2 * d, insideHeight = h - 2 * d;
    // Per kept column the framed column, and the byte of the picture under
    // it (-1 on the frame).
    std::vector<int> column(static_cast<std::size_t>(width)), from(column.size());
    for (int x = 0; x < width; ++x) {
        column[x] = pixelUnder(x, w, width);
        const bool inside = column[x] >= d && column[x] < w - d;
        from[x] = inside ? pixelUnder(column[x] - d, w, insideWidth) * 3 : -1;
    }
    // Per kept buffer row the framed buffer row, and the picture's (-1 on the frame).
    std::vector<int> framedRow(static_cast<std::size_t>(height)), source(framedRow.size());
    for (int k = 0; k < height; ++k) {
        const int top = pixelUnder(height - 1 - k, h, height);  // counted from the top
        framedRow[k] = h - 1 - top;
        const bool inside = top >= d && top < h - d;
        source[k] = inside ? h - 1 - pixelUnder(top - d, h, insideHeight) : -1;
    }
    // The kept columns inside the frame are one span.
    int spanBegin = 0, spanEnd = 0;
    while (spanBegin < width && from[spanBegin] < 0) ++spanBegin;
    for (spanEnd = spanBegin; spanEnd < width && from[spanEnd] >= 0;) ++spanEnd;
    const effects::FrameBevel bevel(light, shadow, d, w, h);
    const Rgb c = splitColour(colour);
    if (progress) progress->store(0);
    const bool done = dib.rebuildSmaller(width, height, source, [&](int k, std::uint8_t* out,
                                                                    const std::uint8_t* in) {
        const int y = framedRow[k];
        const double f = bevel.row(y);
        double lastFactor = -1;
        std::uint8_t framed[3] = {};
        const auto frame = [&](int x) {
            const double g = bevel.at(column[x], y, f);
            if (g != lastFactor) {
                framed[0] = c.blue;
                framed[1] = c.green;
                framed[2] = c.red;
                effects::scalePixel(framed, g);
                lastFactor = g;
            }
            std::memcpy(out + 3 * x, framed, 3);
        };
        if (!in) {
            for (int x = 0; x < width; ++x) frame(x);
            return;
        }
        for (int x = 0; x < spanBegin; ++x) frame(x);
        // Four bytes a pixel, the fourth overwritten by the next; three for the last.
        for (int x = spanBegin; x + 1 < spanEnd; ++x) std::memcpy(out + 3 * x, in + from[x], 4);
        std::memcpy(out + 3 * (spanEnd - 1), in + from[spanEnd - 1], 3);
        for (int x = spanEnd; x < width; ++x) frame(x);
    });
    if (progress) progress->store(100);
    return done;
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
