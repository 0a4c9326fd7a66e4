// The colour saturation sixteen pixels at a time (AVX2) or 32 (AVX-512).
// The effect's formula is round((c - mean) x percent / 100 + c) in doubles; apart from
// exact halves that equals c + floor(((c - mean) x percent + 50) / 100) in
// integers, and with percent = 100 a + b every product fits 16 bits:
// c + (c - mean) a + floor(((c - mean) b + 50) / 100). Pixels that meet an
// exact half take the effect's own table, as the plain loop does.
#pragma once

#include <cstdint>

namespace brindle::effects {

struct SaturationSplit {
    int a = 0;          // percent / 100, rounded down
    int b = 0;          // the rest, 0 .. 99
    bool ties = false;  // some (c - mean) x b ends in exactly 50
};

// False when the percent lies beyond the lanes (a outside -128 .. 128).
bool splitSaturation(int percent, SaturationSplit& out);

// floor(x / 100) as the lanes compute it; exact for x in 0 .. 51199.
constexpr int laneDivide100(int x) { return (((x >> 2) * 41944) >> 16) >> 4; }
// The rounded third of a channel sum as the lanes compute it; exact for
// sums 0 .. 765 (a third never ends in a half).
constexpr int laneThird(int sum) { return ((sum + 1) * 21846) >> 16; }

// floor(y / 100) as the 32-pixel lanes compute it (a signed high multiply
// and a shift); exact for y in -25600 .. 43689 but at the negative multiples
// of 100 (exact halves), where it is one less.
constexpr int kSignedDivide100 = 20972;
constexpr int laneFloor100(int y) { return ((y * kSignedDivide100) >> 16) >> 5; }

// A pixel at an exact half, by the effect's table (entry mean x 256 + channel):
// p takes the results for the channels at `original`.
void saturateFromTable(std::uint8_t* p, const std::uint8_t* original, const std::uint8_t* table);

// True when this processor runs the lanes.
bool saturationLanesAvailable();

// Saturates the first (pixels / 16) x 16 pixels of a row in place for a
// mode of 1 .. 7 and returns how many it did. `table` is the effect's
// table (entry mean x 256 + channel), for the pixels at an exact half.
int saturateLanes(std::uint8_t* row, int pixels, int mode, const SaturationSplit& split,
                  const std::uint8_t* table);

// True when this processor runs the 32-pixel lanes (byte permutes).
bool saturationLanes512Available();

// As saturateLanes, 32 pixels at a time and the row's end through masks:
// does the whole row and returns `pixels`. With `before` (256 entries),
// every colour byte is first replaced by its entry there, as a table step
// right before the saturation would leave it.
int saturateLanes512(std::uint8_t* row, int pixels, int mode, const SaturationSplit& split,
                     const std::uint8_t* table, const std::uint8_t* before = nullptr);

// The widest lanes a saturation may take; tests cap it to hold each path
// against the formula on a processor that runs them all.
enum class SaturationWidth { plain, lanes16, lanes32 };

}  // namespace brindle::effects
