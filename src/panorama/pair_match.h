// Matching one neighbouring pair of an imported row on its reduced
// ("BSPano") pictures and keeping the result in the left picture's record.
#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "panorama/overlap_search.h"
#include "panorama/pano_record.h"

namespace brindle::panorama {

struct PairMatchOptions {
    std::optional<SearchBand> band;           // default: defaultSearchBand of the reduced width
    const std::atomic<bool>* stop = nullptr;  // the window's stop word
    std::function<void(const std::string&)> status;  // gets "Zeit: " + seconds
    int threads = 0;                                 // 0: one per core
};

// Matches picture `left` with picture `right` (left + 1, or 0 for the seam
// that closes a 360 degree row) and stores the match in records[left]. A
// record whose match is stored already (gematcht) is kept and its values
// returned. When a reduced picture cannot be read, `problem` holds the
// reader's reason.
OverlapResult matchPair(const std::string& programDirectory, std::vector<PanoBild>& records,
                        std::size_t left, std::size_t right, const PairMatchOptions& options = {});

}  // namespace brindle::panorama
