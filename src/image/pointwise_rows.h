// Pointwise effects (each byte or pixel depends only on itself) as work on
// one row at a time, so that several of them run over a row while it is
// still in the cache. The bytes equal those of the effects run one after
// another over the whole picture.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "image/dib_section.h"
#include "image/progress.h"
#include "image/row_feed.h"
#include "image/saturation_lanes.h"

namespace brindle {

class ByteTable;

// The saturation of one row, as effectFarbeSaturation does it.
class SaturationRow {
  public:
    // False for a mode outside 1 .. 7, which changes nothing. `widest`
    // caps the lanes the processor would otherwise choose (for tests).
    bool prepare(int percent, int mode,
                 effects::SaturationWidth widest = effects::SaturationWidth::lanes32);
    void apply(std::uint8_t* row, int width) const;
    // As a table over the row's colour bytes and then apply, in one pass
    // where the lanes allow it.
    void applyAfter(std::uint8_t* row, int width, const ByteTable& before) const;

  private:
    // `before`: a table the 32-pixel lanes look up first (null: none).
    void run(std::uint8_t* row, int width, const std::uint8_t* before) const;

    int mode_ = 0;
    std::vector<std::uint8_t> table_;  // entry mean x 256 + channel
    effects::SaturationWidth lanes_ = effects::SaturationWidth::plain;
    effects::SaturationSplit split_;
};

class PointwiseRows {
  public:
    // `widest` caps the lanes of every step (for tests).
    explicit PointwiseRows(effects::SaturationWidth widest = effects::SaturationWidth::lanes32);
    ~PointwiseRows();
    PointwiseRows(const PointwiseRows&) = delete;
    PointwiseRows& operator=(const PointwiseRows&) = delete;

    // The steps, in order, each as the effect named beside it.
    void contrast(int contrast);              // effectKontrastBits
    void brightness(int brightness);          // effectBrightnessBits
    void brightnessFlat(int brightness);      // effectBrightnessBitsFast
    void saturation(int percent, int mode);   // effectFarbeSaturation
    std::size_t size() const;

    // Runs every step on each row in turn; the progress word follows the rows.
    void run(cDIBSection& dib, ProgressWord* progress = nullptr) const;

  private:
    friend class PointwiseFeed;
    struct Step;
    void addTable(const std::uint8_t (&table)[256], bool flat);
    effects::SaturationWidth widest_;
    std::vector<std::unique_ptr<Step>> steps_;
};

// The steps as work a row at a time for an effect that asks for rows as it
// goes (the sharpening); the picture's empty() must be false.
class PointwiseFeed : public RowFeed {
  public:
    PointwiseFeed(const PointwiseRows& rows, cDIBSection& dib);
    ~PointwiseFeed() override;
    PointwiseFeed(const PointwiseFeed&) = delete;
    PointwiseFeed& operator=(const PointwiseFeed&) = delete;

    void upTo(int row) override;

  private:
    struct TablePair;
    void applyRow(int y);

    std::unique_ptr<ByteTable> table(const std::uint8_t (&entries)[256]) const;

    const std::vector<std::unique_ptr<PointwiseRows::Step>>& steps_;
    effects::SaturationWidth widest_;
    cDIBSection& dib_;
    std::vector<std::unique_ptr<ByteTable>> lookups_;
    std::vector<TablePair> pairs_;
    int done_ = 0;  // rows below this one have had the steps
};

}  // namespace brindle
