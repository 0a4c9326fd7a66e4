// The batch sharpening (cDIBSection::effectSchärfen2) with its widest band of
// rows capped, so that each of its paths can be held against the formula on
// a processor that would otherwise take the widest one.
#pragma once

namespace brindle {
class cDIBSection;
}

namespace brindle::effects {

// Bands of 30 (AVX-512), 16 (AVX2), 8 (SSE2) rows, or 1: row by row.
inline constexpr int kWidestSharpenBand = 30;

void sharpenWithBandsUpTo(cDIBSection& d, int strength, int widest);

}  // namespace brindle::effects
