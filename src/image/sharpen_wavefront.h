// The 3x3 sharpening in bands of eight rows at once. Each byte depends on
// its sharpened left neighbour and on the sharpened row below, so a row is
// a serial chain; but row y + i at byte c - 6i only needs work that row
// y + i - 1 finished earlier, so eight rows run side by side in the lanes
// of one vector, each two pixels behind the one before.
#pragma once

#include <cstdint>
#include <vector>

namespace brindle::effects {

// n / divisor as (n x multiplier) >> (16 + shift) in 16-bit lanes, exact
// for every n in 0 .. maxNumerator.
struct LaneDivision {
    int multiplier = 0;
    int shift = 0;
};

// Finds an exact multiply-shift for the divisor, trying every numerator;
// false when none fits in 16 bits.
bool findLaneDivision(int divisor, int maxNumerator, LaneDivision& out);

// The strengths every band takes: sums within 16-bit lanes and a divisor
// with an exact multiply-shift; false otherwise (the caller keeps its
// scalar path). `centre` is the centre weight.
bool prepareLaneStrength(int strength, int width, LaneDivision& division, int& centre);

class SharpenWavefront {
  public:
    static constexpr int kLanes = 8;

    // False for strengths whose sums leave the 16-bit lanes or whose
    // divisor has no exact multiply-shift: the caller keeps its scalar path.
    bool prepare(int strength, int width);

    // Sharpens rows[1] .. rows[8] in place; rows[0] is the row below, already
    // sharpened, rows[9] the row above, still as it was.
    void band(std::uint8_t* const* rows);

  private:
    void loadLanes(std::uint8_t* const* rows);
    void buildSums(const std::uint8_t* below, const std::uint8_t* above);
    void sweep();
    void storeLanes(std::uint8_t* const* rows) const;

    int width_ = 0;
    int bytes_ = 0;  // width x 3
    int lastStep_ = 0;
    int steps_ = 0;
    int centre_ = 0;
    LaneDivision division_;
    // Per step eight 16-bit lanes: the raw bytes, the sums known before
    // the sweep, and the sharpened bytes.
    std::vector<std::int16_t> raw_, known_, out_;
};

}  // namespace brindle::effects
