#include "panorama/pair_match.h"

#include <chrono>
#include <cstdio>

#include "image/jpeg_io.h"
#include "panorama/pano_temp.h"

namespace brindle::panorama {

OverlapResult matchPair(const std::string& programDirectory, std::vector<PanoBild>& records,
                        std::size_t left, std::size_t right, const PairMatchOptions& options) {
    OverlapResult result;
    if (left >= records.size() || right >= records.size()) {
        result.problem = "no such picture in the row";
        return result;
    }
    PanoBild& record = records[left];
    if (record.gematcht != 0) {
        result.found = true;
        result.xVersatz = record.xVersatz;
        result.yVersatz = record.yVersatz;
        return result;
    }
    const auto start = std::chrono::steady_clock::now();
    cDIBSection a, b;
    for (auto [dib, index] : {std::pair{&a, left}, std::pair{&b, right}}) {
        const std::string path =
            panoTempName(programDirectory, records[index].datei, kReducedPrefix);
        std::string error;
        if (!LoadJPG(*dib, path, &error)) {
            result.problem = path + ": " + error;
            return result;
        }
    }
    const SearchBand band = options.band ? *options.band : defaultSearchBand(a.Width());
    result = findOverlap(a, b, band, options.stop, options.threads);
    storeMatch(record, result);
    if (options.status) {
        const double seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        char text[32];
        std::snprintf(text, sizeof text, "Zeit: %.2f", seconds);
        options.status(text);
    }
    return result;
}

}  // namespace brindle::panorama
