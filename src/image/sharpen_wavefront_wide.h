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
    // Steps of one piece of the band: a multiple of 3 (the three chains of
    // the sweep) and of 16 (the transposes); the buffers fit the L1 cache.
    static constexpr int kPiece = 384;

    // Steps from .. to - 1 (multiples of 16) into raw_, which starts at step base.
    void loadLanes(std::uint8_t* const* rows, int from, int to, int base);
    // Steps base .. end - 1; the carry holds the sweep's vectors between pieces.
    struct SweepCarry;
    void sweepPiece(int base, int end, SweepCarry& carry);
    void storeLanes(std::uint8_t* const* rows, int from, int to, int base) const;

    int bytes_ = 0;  // width x 3
    int lastStep_ = 0;
    int steps_ = 0;
    int centre_ = 0;
    LaneDivision division_;
    // Per step of the piece sixteen lanes: the raw bytes (and sixteen steps
    // of the next piece), and the sums known before the sweep, which the
    // sweep replaces by the sharpened bytes.
    std::vector<std::int16_t> raw_, known_;
};

}  // namespace brindle::effects
