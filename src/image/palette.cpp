#include "image/palette.h"

#include <algorithm>
#include <unordered_map>

namespace brindle {
namespace {

std::uint32_t key(const std::uint8_t* bgr) {
    return static_cast<std::uint32_t>(bgr[2]) << 16 | static_cast<std::uint32_t>(bgr[1]) << 8 |
           bgr[0];
}
Rgb rgbOf(std::uint32_t k) {
    return {static_cast<std::uint8_t>(k >> 16), static_cast<std::uint8_t>(k >> 8),
            static_cast<std::uint8_t>(k)};
}
std::uint32_t key(Rgb c) { return static_cast<std::uint32_t>(c.red) << 16 | c.green << 8 | c.blue; }

int bin(const std::uint8_t* bgr) {
    return (bgr[2] >> 3) << 10 | (bgr[1] >> 3) << 5 | (bgr[0] >> 3);
}

// The distinct colours other than `skip`, or nothing when there are more than `limit`.
// A colour left out of the palette building (the reserved one).
struct Skip {
    bool active = false;
    std::uint32_t key = 0;
    bool operator()(std::uint32_t k) const { return active && k == key; }
};

std::optional<std::vector<std::uint32_t>> distinctColours(const cDIBSection& dib, int limit,
                                                          Skip skip) {
    std::vector<bool> seen(1u << 24);
    std::vector<std::uint32_t> colours;
    for (int y = 0; y < dib.Height(); ++y) {
        const std::uint8_t* p = dib.rowBits(y);
        for (int x = 0; x < dib.Width(); ++x) {
            const std::uint32_t k = key(p + x * 3);
            if (seen[k] || skip(k)) continue;
            seen[k] = true;
            colours.push_back(k);
            if (static_cast<int>(colours.size()) > limit) return std::nullopt;
        }
    }
    std::sort(colours.begin(), colours.end());
    return colours;
}

struct Cell {
    std::uint64_t count = 0, red = 0, green = 0, blue = 0;
};

struct Box {
    std::vector<int> cells;  // histogram bins with pixels
    std::uint64_t population = 0;
};

int channelOf(int cellIndex, int axis) {
    return (cellIndex >> (10 - 5 * axis)) & 31;
}  // 0 red, 1 green, 2 blue

// The axis with the widest spread of bins, and that spread.
int widestAxis(const Box& box, int& spread) {
    int best = 0;
    spread = -1;
    for (int axis = 0; axis < 3; ++axis) {
        int lo = 31, hi = 0;
        for (int c : box.cells) {
            lo = std::min(lo, channelOf(c, axis));
            hi = std::max(hi, channelOf(c, axis));
        }
        if (hi - lo > spread) {
            spread = hi - lo;
            best = axis;
        }
    }
    return best;
}

// Splits at the population median along the widest axis.
bool split(Box& box, Box& other, const std::vector<Cell>& cells) {
    int spread = 0;
    const int axis = widestAxis(box, spread);
    if (spread <= 0) return false;
    std::sort(box.cells.begin(), box.cells.end(),
              [axis](int a, int b) { return channelOf(a, axis) < channelOf(b, axis); });
    std::uint64_t running = 0;
    std::size_t cut = 0;
    while (cut + 1 < box.cells.size() &&
           running + cells[box.cells[cut]].count <= box.population / 2)
        running += cells[box.cells[cut++]].count;
    if (cut == 0) running += cells[box.cells[cut++]].count;
    other.cells.assign(box.cells.begin() + static_cast<std::ptrdiff_t>(cut), box.cells.end());
    box.cells.resize(cut);
    other.population = box.population - running;
    box.population = running;
    return true;
}

// A running weighted mean of true colours.
struct Mean {
    std::uint64_t count = 0, red = 0, green = 0, blue = 0;
    void add(const Cell& c) {
        count += c.count;
        red += c.red;
        green += c.green;
        blue += c.blue;
    }
    Rgb colour() const {
        auto mean = [&](std::uint64_t s) {
            return static_cast<std::uint8_t>((s + count / 2) / count);
        };
        return {mean(red), mean(green), mean(blue)};
    }
};

// A few rounds of moving each histogram cell to its nearest entry and each
// entry to the mean of its cells, which evens out the median cut's boxes.
void refine(const std::vector<Cell>& cells, std::vector<Mean>& means) {
    std::vector<int> used;
    for (int i = 0; i < static_cast<int>(cells.size()); ++i)
        if (cells[i].count) used.push_back(i);
    for (int round = 0; round < 4; ++round) {
        std::vector<Rgb> centres;
        for (const Mean& m : means) centres.push_back(m.count ? m.colour() : Rgb{});
        std::vector<Mean> next(means.size());
        for (int i : used) {
            const Cell& c = cells[i];
            const long r = static_cast<long>(c.red / c.count),
                       g = static_cast<long>(c.green / c.count),
                       b = static_cast<long>(c.blue / c.count);
            std::size_t best = 0;
            long bestDistance = -1;
            for (std::size_t k = 0; k < centres.size(); ++k) {
                if (!means[k].count) continue;
                const long d = (centres[k].red - r) * (centres[k].red - r) +
                               (centres[k].green - g) * (centres[k].green - g) +
                               (centres[k].blue - b) * (centres[k].blue - b);
                if (bestDistance < 0 || d < bestDistance) bestDistance = d, best = k;
            }
            next[best].add(c);
        }
        means.swap(next);
    }
}

std::vector<Rgb> medianCut(const cDIBSection& dib, int colours, Skip skip) {
    std::vector<Cell> cells(1 << 15);
    for (int y = 0; y < dib.Height(); ++y) {
        const std::uint8_t* p = dib.rowBits(y);
        for (int x = 0; x < dib.Width(); ++x) {
            const std::uint8_t* px = p + x * 3;
            if (skip(key(px))) continue;
            Cell& c = cells[bin(px)];
            ++c.count;
            c.red += px[2];
            c.green += px[1];
            c.blue += px[0];
        }
    }
    std::vector<Box> boxes(1);
    for (int i = 0; i < (1 << 15); ++i)
        if (cells[i].count) {
            boxes[0].cells.push_back(i);
            boxes[0].population += cells[i].count;
        }
    if (boxes[0].cells.empty()) return {};
    while (static_cast<int>(boxes.size()) < colours) {
        // The box with the most pixels times the widest spread goes next:
        // big boxes of one colour stay whole, small colourful ones split.
        int pick = -1;
        std::uint64_t best = 0;
        for (int i = 0; i < static_cast<int>(boxes.size()); ++i) {
            int spread = 0;
            widestAxis(boxes[i], spread);
            const std::uint64_t score = boxes[i].population * static_cast<std::uint64_t>(spread);
            if (spread > 0 && score > best) best = score, pick = i;
        }
        if (pick < 0) break;
        Box other;
        if (!split(boxes[pick], other, cells)) break;
        boxes.push_back(std::move(other));
    }
    std::vector<Mean> means;
    for (const Box& box : boxes) {
        Mean m;
        for (int c : box.cells) m.add(cells[c]);
        means.push_back(m);
    }
    refine(cells, means);
    std::vector<Rgb> out;
    for (const Mean& m : means)
        if (m.count) out.push_back(m.colour());
    return out;
}

int nearest(const Palette& palette, int r, int g, int b) {
    int best = 0;
    long bestDistance = -1;
    for (int i = 0; i < palette.count; ++i) {
        if (i == palette.reserved) continue;
        const Rgb& e = palette.entries[i];
        const long d =
            (e.red - r) * (e.red - r) + (e.green - g) * (e.green - g) + (e.blue - b) * (e.blue - b);
        if (bestDistance < 0 || d < bestDistance) {
            bestDistance = d;
            best = i;
        }
    }
    return best;
}

}  // namespace

Palette buildPalette(const cDIBSection& dib, int maxColours, std::optional<Rgb> reserved) {
    Palette palette;
    maxColours = std::clamp(maxColours, 2, 256);
    const Skip skip{reserved.has_value(), reserved ? key(*reserved) : 0u};
    const int room = reserved ? maxColours - 1 : maxColours;
    std::vector<Rgb> colours;
    if (auto exact = distinctColours(dib, room, skip)) {
        for (std::uint32_t k : *exact) colours.push_back(rgbOf(k));
    } else {
        colours = medianCut(dib, room, skip);
    }
    for (const Rgb& c : colours) palette.entries[palette.count++] = c;
    if (reserved) {
        palette.reserved = palette.count;
        palette.entries[palette.count++] = *reserved;
    }
    if (palette.count == 0) palette.entries[palette.count++] = Rgb{};
    return palette;
}

std::vector<std::uint8_t> mapToPalette(const cDIBSection& dib, const Palette& palette) {
    std::vector<std::uint8_t> out;
    out.reserve(static_cast<std::size_t>(dib.Width()) * dib.Height());
    std::unordered_map<std::uint32_t, std::uint8_t> cache;
    cache.reserve(4096);
    const std::uint32_t reservedKey =
        palette.reserved >= 0 ? key(palette.entries[palette.reserved]) : 0;
    for (int y = dib.Height() - 1; y >= 0; --y) {
        const std::uint8_t* p = dib.rowBits(y);
        for (int x = 0; x < dib.Width(); ++x) {
            const std::uint8_t* px = p + x * 3;
            const std::uint32_t k = key(px);
            if (palette.reserved >= 0 && k == reservedKey) {
                out.push_back(static_cast<std::uint8_t>(palette.reserved));
                continue;
            }
            auto it = cache.find(k);
            if (it == cache.end())
                it = cache
                         .emplace(k,
                                  static_cast<std::uint8_t>(nearest(palette, px[2], px[1], px[0])))
                         .first;
            out.push_back(it->second);
        }
    }
    return out;
}

}  // namespace brindle
