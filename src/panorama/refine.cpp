#include "panorama/refine.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace brindle::panorama {

SeamStep refineStep(const cDIBSection& left, const cDIBSection& right, SeamStep guess, int radius) {
    const int w = left.Width(), h = left.Height();
    if (radius < 1 || left.empty() || right.Width() != w || right.Height() != h) return guess;
    // One set of right-picture pixels for every candidate, so that the sums compare.
    const int columns = w - guess.x - radius;
    const int firstRow = std::max(0, radius - guess.y);
    const int endRow = std::min(h, h - guess.y - radius);
    if (columns < 1 || endRow <= firstRow) return guess;
    const long long area = static_cast<long long>(columns) * (endRow - firstRow);
    const int every = std::max(1, static_cast<int>(std::ceil(std::sqrt(static_cast<double>(area) / kRefineSamples))));
    const Surface l = left.hdc(), r = right.hdc();
    auto sum = [&](int dx, int dy) {
        std::uint64_t total = 0;
        for (int row = firstRow; row < endRow; row += every) {
            const std::uint8_t* a = l.row(row + dy) + 3 * dx;
            const std::uint8_t* b = r.row(row);
            for (int j = 0; j < columns; j += every)
                for (int c = 0; c < 3; ++c) {
                    const int d = a[3 * j + c] - b[3 * j + c];
                    total += static_cast<std::uint64_t>(d * d);
                }
        }
        return total;
    };
    SeamStep best = guess;
    std::uint64_t bestSum = sum(guess.x, guess.y);
    for (int dy = guess.y - radius; dy <= guess.y + radius; ++dy) {
        for (int dx = std::max(1, guess.x - radius); dx <= guess.x + radius; ++dx) {
            if (dx == guess.x && dy == guess.y) continue;
            const std::uint64_t s = sum(dx, dy);
            if (s < bestSum) {
                bestSum = s;
                best = {dx, dy};
            }
        }
    }
    return best;
}

}  // namespace brindle::panorama
