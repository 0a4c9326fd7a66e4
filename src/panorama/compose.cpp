#include "panorama/compose.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "image/picture_limits.h"

namespace brindle::panorama {
namespace {

// Per picture one table per channel: the exposure gain as a lookup.
struct ChannelTables {
    std::array<std::array<std::uint8_t, 256>, 3> channel;
    bool identity = true;
};

std::vector<ChannelTables> gainTables(std::span<const cDIBSection> pictures,
                                      const PanoGeometry& geometry, bool matchGain) {
    std::vector<ChannelTables> tables(pictures.size());
    const std::vector<ChannelGains> gains = matchGain ? matchGains(pictures, geometry)
                                                      : std::vector<ChannelGains>(pictures.size(), {1.0, 1.0, 1.0});
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        for (int c = 0; c < 3; ++c) {
            gainTable(gains[i][c], tables[i].channel[c]);
            if (gains[i][c] != 1.0) tables[i].identity = false;
        }
    }
    return tables;
}

// The rows of the uncropped row that the result holds, and where.
struct Target {
    Surface surface;
    int rowOffset = 0;  // uncropped row of the result's top row
    int width = 0;      // of one full row (the wrap width in a ring)
    bool ring = false;
    int column(int c) const { return ring ? c % width : c; }
    std::uint8_t* row(int t) const {
        const int r = t - rowOffset;
        return r >= 0 && r < surface.height ? surface.row(r) : nullptr;
    }
};

void copyPixels(std::uint8_t* dst, const std::uint8_t* src, int count, const ChannelTables& t) {
    if (t.identity) {
        std::memcpy(dst, src, static_cast<std::size_t>(count) * 3);
        return;
    }
    for (int i = 0; i < 3 * count; i += 3) {
        dst[i] = t.channel[0][src[i]];
        dst[i + 1] = t.channel[1][src[i + 1]];
        dst[i + 2] = t.channel[2][src[i + 2]];
    }
}

// Columns [from, to) of the picture placed with its left edge at `x`.
void paintColumns(const Target& target, const cDIBSection& picture, const ChannelTables& tables,
                  int x, int top, int from, int to) {
    const Surface src = picture.hdc();
    for (int r = 0; r < src.height; ++r) {
        std::uint8_t* dst = target.row(top + r);
        if (!dst) continue;
        // In a ring a span may run over the row's end and on at its start.
        for (int c = from; c < to;) {
            const int at = target.column(x + c);
            const int n = std::min(to - c, target.width - at);
            copyPixels(dst + 3 * at, src.row(r) + 3 * c, n, tables);
            c += n;
        }
    }
}

void blendSeam(const Target& target, const PanoGeometry& g, const PanoSeam& seam,
               std::span<const cDIBSection> pictures, const std::vector<ChannelTables>& tables,
               int smoothWidth) {
    const int s = std::min(smoothWidth, seam.overlap);
    if (s <= 0) return;
    const int topL = g.top[seam.left], topR = g.top[seam.right];
    const Surface l = pictures[seam.left].hdc(), r = pictures[seam.right].hdc();
    const ChannelTables& tl = tables[seam.left];
    const ChannelTables& tr = tables[seam.right];
    const int leftColumn = seam.x - g.x[seam.left];
    const int end = std::min(topL, topR) + g.pictureHeight;
    for (int t = std::max(topL, topR); t < end; ++t) {
        std::uint8_t* dst = target.row(t);
        if (!dst) continue;
        const std::uint8_t* a = l.row(t - topL) + 3 * leftColumn;
        const std::uint8_t* b = r.row(t - topR);
        for (int j = 0; j < s; ++j) {
            std::uint8_t* o = dst + 3 * target.column(seam.x + j);
            for (int c = 0; c < 3; ++c)
                o[c] = blendByte(tl.channel[c][a[3 * j + c]], tr.channel[c][b[3 * j + c]], j, s);
        }
    }
}

// Rows no picture covers take the nearest covered row of their column.
void padFreeRows(const Target& target, const PanoGeometry& g) {
    std::vector<int> first(static_cast<std::size_t>(g.width), INT_MAX);
    std::vector<int> end(static_cast<std::size_t>(g.width), INT_MIN);
    for (std::size_t i = 0; i < g.x.size(); ++i) {
        for (int c = 0; c < g.pictureWidth; ++c) {
            const int col = target.column(g.x[i] + c);
            if (col >= g.width) break;  // open row: nothing lies right of the last picture
            first[col] = std::min(first[col], g.top[i]);
            end[col] = std::max(end[col], g.top[i] + g.pictureHeight);
        }
    }
    const int lowestFirst = g.cropTop, highestEnd = g.height - g.cropBottom;
    for (int t = 0; t < g.height; ++t) {
        if (t >= lowestFirst && t < highestEnd) continue;  // covered by every picture
        std::uint8_t* dst = target.row(t);
        if (!dst) continue;
        for (int c = 0; c < g.width; ++c) {
            if (first[c] == INT_MAX) continue;  // a gap between pictures stays black
            int from = t;
            if (t < first[c]) from = first[c];
            else if (t >= end[c]) from = end[c] - 1;
            if (from == t) continue;
            const std::uint8_t* src = target.row(from);
            if (src) std::memcpy(dst + 3 * c, src + 3 * c, 3);
        }
    }
}

ComposeResult failure(Language language, const char* german, const char* english,
                      const std::string& detail = {}) {
    return {false, false, tr(language, german, english) + detail};
}

}  // namespace

void composedSize(int count, int pictureWidth, int pictureHeight, const PanoLayout& layout,
                  const ComposeOptions& options, int& width, int& height) {
    width = height = 0;
    PanoGeometry g;
    if (!placePictures(count, pictureWidth, pictureHeight, layout, options.ring360, g)) return;
    const int h = options.crop ? g.height - g.cropTop - g.cropBottom : g.height;
    if (h < 1) return;
    width = g.width;
    height = h;
}

ComposeResult composePanorama(std::span<const cDIBSection> pictures, const PanoLayout& layout,
                              const ComposeOptions& options, cDIBSection& out, Language language,
                              const ComposeTick& tick) {
    out.ClearUp();
    if (pictures.empty())
        return failure(language, "Keine Bilder für das Panorama.", "No pictures for the panorama.");
    const int w = pictures[0].Width(), h = pictures[0].Height();
    for (const cDIBSection& p : pictures)
        if (p.empty() || p.Width() != w || p.Height() != h)
            return failure(language, "Die Bilder des Panoramas sind nicht alle gleich groß.",
                           "The pictures of the panorama are not all of one size.");
    PanoGeometry g;
    std::string why;
    if (!placePictures(static_cast<int>(pictures.size()), w, h, layout, options.ring360, g, &why))
        return failure(language, "Die Versätze passen nicht zu den Bildern: ",
                       "The offsets do not fit the pictures: ", why);
    const int outHeight = options.crop ? g.height - g.cropTop - g.cropBottom : g.height;
    if (outHeight < 1)
        return failure(language, "Beim Zuschneiden bleibt keine Zeile übrig.",
                       "Cropping leaves no row.");
    // Checked before anything is allocated: a wild offset must not ask for gigabytes.
    if (static_cast<long long>(g.width) * outHeight > kMaxPicturePixels)
        return failure(language, "Das Panorama wäre zu groß: ", "The panorama would be too large: ",
                       std::to_string(g.width) + " x " + std::to_string(outHeight));
    const std::vector<ChannelTables> tables = gainTables(pictures, g, options.matchGain);
    if (!out.Create(g.width, outHeight))
        return failure(language, "Zu wenig Speicher für das Panorama.",
                       "Not enough memory for the panorama.");
    Target target{out.hdc(), options.crop ? g.cropTop : 0, g.width, g.seams.size() == pictures.size()};
    const int total = static_cast<int>(pictures.size() + g.seams.size()) + 1;
    int done = 0;
    auto step = [&]() { return !tick || tick(++done, total); };
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        paintColumns(target, pictures[i], tables[i], g.x[i], g.top[i], 0, w);
        if (!step()) return out.ClearUp(), ComposeResult{false, true, {}};
    }
    if (target.ring) {
        // The first picture is the right one of the closing seam: it lies on
        // top of the last one's end, as every right picture does.
        const int cover = std::min(g.seams.back().overlap, g.x[1]);
        paintColumns(target, pictures[0], tables[0], 0, g.top[0], 0, cover);
    }
    for (const PanoSeam& seam : g.seams) {
        blendSeam(target, g, seam, pictures, tables, options.smoothWidth);
        if (!step()) return out.ClearUp(), ComposeResult{false, true, {}};
    }
    if (options.padding && !options.crop) padFreeRows(target, g);
    step();
    return {true, false, {}};
}

}  // namespace brindle::panorama
