#include "image/pointwise_rows.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "image/byte_table.h"
#include "image/effects_internal.h"
#include "image/rounding.h"

namespace brindle {
namespace {

template <int Mode>
bool saturationSelects(int b, int g, int r) {
    switch (Mode) {
        case 1:
            return r > g && r > b;
        case 2:
            return g > r && g > b;
        case 4:
            return b > r && b > g;
        case 3:
            return b < r || b < g;
        case 5:
            return g < r || g < b;
        case 6:
            return r < g || r < b;
        default:
            return true;
    }
}

const std::array<std::uint8_t, 766>& thirds() {
    static const std::array<std::uint8_t, 766> third = [] {
        std::array<std::uint8_t, 766> t{};
        for (int i = 0; i < 766; ++i) t[i] = static_cast<std::uint8_t>(roundEven(i / 3.0));
        return t;
    }();
    return third;
}

// The lanes do what they can of the row and this loop the rest.
// `before`, a table looked up first, is only for the 32-pixel lanes.
template <int Mode>
void saturateRow(std::uint8_t* p, int width, const std::uint8_t* table,
                 effects::SaturationWidth lanes, const effects::SaturationSplit& split,
                 const std::uint8_t* before = nullptr) {
    const std::uint8_t* third = thirds().data();
    int done = 0;
    if (lanes == effects::SaturationWidth::lanes32)
        done = effects::saturateLanes512(p, width, Mode, split, table, before);
    else if (lanes == effects::SaturationWidth::lanes16)
        done = effects::saturateLanes(p, width, Mode, split, table);
    for (int x = done * 3; x < width * 3; x += 3) {
        const int b = p[x], g = p[x + 1], r = p[x + 2];
        if (!saturationSelects<Mode>(b, g, r)) continue;
        const std::uint8_t* row = table + third[b + g + r] * 256;
        p[x] = row[b];
        p[x + 1] = row[g];
        p[x + 2] = row[r];
    }
}

}  // namespace

// Each channel depends on itself and the pixel's mean only, so one table of
// 256 x 256 holds every result, computed by the formula itself.
bool SaturationRow::prepare(int percent, int mode, effects::SaturationWidth widest) {
    if (mode < 1 || mode > 7) return false;
    mode_ = mode;
    const double factor = percent / 100.0;
    table_.resize(256 * 256);
    for (int mean = 0; mean < 256; ++mean)
        for (int c = 0; c < 256; ++c) table_[mean * 256 + c] = roundClamp((c - mean) * factor + c);
    using effects::SaturationWidth;
    lanes_ = SaturationWidth::plain;
    if (!effects::splitSaturation(percent, split_)) return true;
    if (widest >= SaturationWidth::lanes32 && effects::saturationLanes512Available())
        lanes_ = SaturationWidth::lanes32;
    else if (widest >= SaturationWidth::lanes16 && effects::saturationLanesAvailable())
        lanes_ = SaturationWidth::lanes16;
    return true;
}

void SaturationRow::apply(std::uint8_t* row, int width) const { run(row, width, nullptr); }

void SaturationRow::applyAfter(std::uint8_t* row, int width, const ByteTable& before) const {
    if (lanes_ != effects::SaturationWidth::lanes32 || mode_ < 1 || mode_ > 7) {
        before.apply(row, static_cast<std::size_t>(width) * 3);
        return apply(row, width);
    }
    run(row, width, before.entries());
}

void SaturationRow::run(std::uint8_t* row, int width, const std::uint8_t* before) const {
    const std::uint8_t* t = table_.data();
    switch (mode_) {
        case 1: return saturateRow<1>(row, width, t, lanes_, split_, before);
        case 2: return saturateRow<2>(row, width, t, lanes_, split_, before);
        case 3: return saturateRow<3>(row, width, t, lanes_, split_, before);
        case 4: return saturateRow<4>(row, width, t, lanes_, split_, before);
        case 5: return saturateRow<5>(row, width, t, lanes_, split_, before);
        case 6: return saturateRow<6>(row, width, t, lanes_, split_, before);
        case 7: return saturateRow<7>(row, width, t, lanes_, split_, before);
        default: return;
    }
}

// A table over the colour bytes of each row, or (`flat`) over the buffer
// as one array from byte 0 to (Height - 1) x (BytesPerScanLine - 1), pad
// bytes included, as the older brightness path does it. A saturation when
// `table` is unused.
struct PointwiseRows::Step {
    bool isTable = true;
    bool flat = false;
    std::uint8_t table[256] = {};
    SaturationRow saturation;
};

PointwiseRows::PointwiseRows(effects::SaturationWidth widest) : widest_(widest) {}
PointwiseRows::~PointwiseRows() = default;

std::size_t PointwiseRows::size() const { return steps_.size(); }

// Two tables over the same bytes in a row are one table.
void PointwiseRows::addTable(const std::uint8_t (&table)[256], bool flat) {
    if (!steps_.empty() && steps_.back()->isTable && steps_.back()->flat == flat) {
        std::uint8_t* t = steps_.back()->table;
        for (int i = 0; i < 256; ++i) t[i] = table[t[i]];
        return;
    }
    auto step = std::make_unique<Step>();
    step->flat = flat;
    std::memcpy(step->table, table, sizeof table);
    steps_.push_back(std::move(step));
}

void PointwiseRows::contrast(int contrast) {
    std::uint8_t t[256];
    effects::contrastTable(contrast, t);
    addTable(t, false);
}

void PointwiseRows::brightness(int brightness) {
    std::uint8_t t[256];
    effects::brightnessTable(brightness, t);
    addTable(t, false);
}

void PointwiseRows::brightnessFlat(int brightness) {
    std::uint8_t t[256];
    effects::brightnessTable(brightness, t);
    addTable(t, true);
}

void PointwiseRows::saturation(int percent, int mode) {
    auto step = std::make_unique<Step>();
    step->isTable = false;
    if (step->saturation.prepare(percent, mode, widest_)) steps_.push_back(std::move(step));
}

// A colour-byte table followed or preceded by a flat one: on rows the flat
// range covers whole, the colour bytes take both tables at once and the pad
// bytes the flat one only.
struct PointwiseFeed::TablePair {
    std::unique_ptr<ByteTable> both;
    std::size_t first = 0;  // index of the pair's first step
};

PointwiseFeed::PointwiseFeed(const PointwiseRows& rows, cDIBSection& dib)
    : steps_(rows.steps_), widest_(rows.widest_), dib_(dib) {
    for (std::size_t i = 0; i < steps_.size(); ++i) {
        const PointwiseRows::Step& step = *steps_[i];
        lookups_.push_back(step.isTable ? table(step.table) : nullptr);
        if (i == 0 || !step.isTable || !steps_[i - 1]->isTable) continue;
        if (!pairs_.empty() && pairs_.back().first + 1 == i - 1) continue;  // pairs never overlap
        std::uint8_t both[256];
        for (int v = 0; v < 256; ++v) both[v] = step.table[steps_[i - 1]->table[v]];
        pairs_.push_back({table(both), i - 1});
    }
}

PointwiseFeed::~PointwiseFeed() = default;

std::unique_ptr<ByteTable> PointwiseFeed::table(const std::uint8_t (&entries)[256]) const {
    return std::make_unique<ByteTable>(entries, widest_ == effects::SaturationWidth::lanes32);
}

void PointwiseFeed::upTo(int row) {
    for (row = std::min(row, dib_.Height() - 1); done_ <= row; ++done_) applyRow(done_);
}

// A table over the colour bytes just before a saturation is looked up inside
// the saturation's pass; pad bytes take their table apart.
void PointwiseFeed::applyRow(int y) {
    const std::size_t stride = static_cast<std::size_t>(dib_.BytesPerScanLine());
    const std::size_t colours = static_cast<std::size_t>(dib_.Width()) * 3;
    const std::size_t flatEnd = static_cast<std::size_t>(dib_.Height() - 1) * (stride - 1) + 1;
    std::uint8_t* row = dib_.rowBits(y);
    const std::size_t start = static_cast<std::size_t>(y) * stride;
    const std::size_t flatBytes = flatEnd > start ? std::min(stride, flatEnd - start) : 0;
    auto pair = pairs_.begin();
    for (std::size_t i = 0; i < steps_.size(); ++i) {
        const bool paired = pair != pairs_.end() && pair->first == i;
        const ByteTable* both = paired ? (pair++)->both.get() : nullptr;
        if (!steps_[i]->isTable) {
            steps_[i]->saturation.apply(row, dib_.Width());
            continue;
        }
        const ByteTable* colour = lookups_[i].get();
        const ByteTable* pad = nullptr;
        if (both && flatBytes == stride) {
            colour = both;
            pad = lookups_[steps_[i]->flat ? i : i + 1].get();
            ++i;
        } else if (steps_[i]->flat) {
            if (flatBytes < stride) {
                colour->apply(row, flatBytes);
                continue;
            }
            pad = colour;
        }
        if (pad) pad->apply(row + colours, stride - colours);
        if (i + 1 < steps_.size() && !steps_[i + 1]->isTable)
            steps_[++i]->saturation.applyAfter(row, dib_.Width(), *colour);
        else
            colour->apply(row, colours);
    }
}

void PointwiseRows::run(cDIBSection& dib, ProgressWord* progress) const {
    ProgressWord own;
    RowProgress rp(own, progress);
    if (dib.empty()) return rp.done();
    PointwiseFeed feed(*this, dib);
    for (int y = 0; y < dib.Height(); ++y) {
        feed.upTo(y);
        rp.step(y, dib.Height());
    }
    rp.done();
}

}  // namespace brindle
