// The banded sharpening with sixteen rows at once in the lanes of AVX2
// vectors; the same scheme as SharpenWavefront, each row two pixels behind
// the one below it. Only for processors that have AVX2 (available()).
#pragma once

#include <cstdint>
#include <vector>

#include "image/sharpen_wavefront.h"

namespace brindle::effects {

class SharpenWavefrontWide {
  public:
    static constexpr int kLanes = 16;

    static bool available();
    // As SharpenWavefront::prepare.
    bool prepare(int strength, int width);
    // Sharpens rows[1] .. rows[16] in place; rows[0] is the row below, already
    // sharpened, rows[17] the row above, still as it was.
    void band(std::uint8_t* const* rows);

  private:
    void loadLanes(std::uint8_t* const* rows);
    void buildSums(const std::uint8_t* below, const std::uint8_t* above);
    void sweep();
    void storeLanes(std::uint8_t* const* rows) const;

    int bytes_ = 0;  // width x 3
    int lastStep_ = 0;
    int steps_ = 0;
    int centre_ = 0;
    LaneDivision division_;
    // Per step sixteen lanes: the raw bytes, and the sums known before the
    // sweep, which the sweep replaces by the sharpened bytes (one buffer
    // less to keep in the cache).
    std::vector<std::int16_t> raw_, known_;
};

}  // namespace brindle::effects
