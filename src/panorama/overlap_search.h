// The overlap search of a neighbouring pair: where the right picture B
// starts in the left picture A, and how far it lies lower or higher.
//
// The criterion is the smallest sum of squared differences of one pixel
// column: over H - 40 rows, for 41 vertical shifts (k = 0 .. 40 stands for
// an offset of 20 - k rows), the rows being buffer rows of the bottom-up
// cDIBSection. Pass 1 takes B's first column as the reference and tries
// every column of A's search band; pass 2 takes A's column at the far end
// of the band and tries B's columns from the other side. A sum replaces the
// best only when it is strictly smaller, so among equal sums the first in
// the order (pass, k, x) wins.
//
// The result: `xVersatz` is the column of A at which B's first column
// lies; `yVersatz` is how many rows B's top lies below A's top (negative:
// above).
#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "image/dib_section.h"
#include "panorama/pano_record.h"

namespace brindle::panorama {

inline constexpr int kMaxShift = 20;
inline constexpr int kShiftCount = 2 * kMaxShift + 1;

// Columns of A where B's first column may lie, both ends included.
struct SearchBand {
    int first = 0;
    int last = -1;
};

// Overlaps from a tenth to a half of the width: photos for a panorama
// overlap by a quarter to a third as a rule, and a band that wide keeps the
// search short on the reduced pictures while leaving room either side.
SearchBand defaultSearchBand(int width);

struct OverlapResult {
    bool found = false;
    bool stopped = false;  // the stop word was set; nothing found
    std::string problem;   // why the pair cannot be searched (English, for logs)
    int xVersatz = 0;
    int yVersatz = 0;
    std::uint64_t sum = 0;  // the winning sum of squared differences
    int pass = 0;           // 1 or 2: which pass found it
};

// The plain search, one column at a time, as the reference for the fast one.
OverlapResult findOverlapScalar(const cDIBSection& left, const cDIBSection& right, SearchBand band,
                                const std::atomic<bool>* stop = nullptr);

// The same search vectorised and split over `threads` workers (0: one per
// core); the result equals findOverlapScalar's on every input.
OverlapResult findOverlap(const cDIBSection& left, const cDIBSection& right, SearchBand band,
                          const std::atomic<bool>* stop = nullptr, int threads = 0);

// Puts a found match into the record of the left picture.
void storeMatch(PanoBild& record, const OverlapResult& result);

}  // namespace brindle::panorama
