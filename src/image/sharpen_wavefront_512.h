// The banded sharpening in the 32 lanes of AVX-512 vectors, the same
// wavefront as SharpenWavefront. Lane 0 carries the row below the band and
// lane 31 the row above, so neither needs inserting step by step: a band
// sharpens the thirty rows between them. Only for processors with AVX-512
// byte and word instructions and byte permutes (available()).
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "image/sharpen_wavefront.h"

namespace brindle::effects {

class SharpenWavefront512 {
  public:
    static constexpr int kLanes = 32;
    static constexpr int kRows = kLanes - 2;  // rows sharpened per band

    static bool available();
    // As SharpenWavefront::prepare.
    bool prepare(int strength, int width);
    // Sharpens rows[1] .. rows[30] in place; rows[0] is the row below, already
    // sharpened, rows[31] the row above, still as it was.
    void band(std::uint8_t* const* rows);

  private:
    // Steps of one piece: a multiple of 3 (the three chains) and of 32 (the
    // transposes); the buffer stays in the first-level cache.
    static constexpr int kPiece = 192;
    // Steps loaded past a piece: the sums look up to ten steps ahead.
    static constexpr int kAhead = 32;

    // Steps from .. to - 1 (multiples of 32) into buffer_, which starts at step base.
    void loadLanes(std::uint8_t* const* rows, int from, int to, int base);
    struct Carry;
    void sweepPiece(int base, int end, Carry& carry);
    void storeLanes(std::uint8_t* const* rows, int from, int to, int base) const;

    // Step `step` of the piece that starts at step base.
    std::int16_t* lanesAt(int step, int base) {
        return buffer_.data() + skip_ + static_cast<std::ptrdiff_t>(step - base) * kLanes;
    }
    const std::int16_t* lanesAt(int step, int base) const {
        return buffer_.data() + skip_ + static_cast<std::ptrdiff_t>(step - base) * kLanes;
    }

    int bytes_ = 0;  // width x 3
    int lastStep_ = 0;
    int centre_ = 0;
    LaneDivision division_;
    // Per step of the piece and the steps ahead 32 lanes: the raw bytes,
    // which the sweep replaces by the sharpened ones.
    std::vector<std::int16_t> buffer_;
    std::size_t skip_ = 0;  // words before the first 64-byte boundary
};

}  // namespace brindle::effects
