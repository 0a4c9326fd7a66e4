#include "panorama/overlap_search.h"

#include <algorithm>
#include <limits>
#include <system_error>
#include <thread>
#include <vector>

#include "panorama/overlap_kernel.h"

namespace brindle::panorama {

namespace {

// The best position of one pass: k is the shift index, x the tried column.
struct Best {
    std::uint64_t sum = std::numeric_limits<std::uint64_t>::max();
    int k = 0;
    int x = 0;
    bool any = false;
};

void consider(Best& best, std::uint64_t sum, int k, int x) {
    if (!best.any || sum < best.sum) best = {sum, k, x, true};
}

std::string unsuitable(const cDIBSection& left, const cDIBSection& right, SearchBand band) {
    if (left.empty() || right.empty()) return "a picture of the pair is empty";
    if (left.Height() != right.Height()) return "the pictures of the pair differ in height";
    if (band.first < 0 || band.first > band.last || band.last >= left.Width())
        return "the search band lies outside the left picture";
    if (band.last - band.first >= right.Width())
        return "the search band is wider than the right picture";
    return {};
}

// One column of `s`, one array per channel, as the reference of a pass.
RefColumn readColumn(const cDIBSection& s, int x) {
    RefColumn col;
    const int h = s.Height();
    for (auto& channel : col) channel.resize(static_cast<std::size_t>(h));
    for (int r = 0; r < h; ++r) {
        const std::uint8_t* p = s.rowBits(r) + 3 * x;
        for (int c = 0; c < 3; ++c) col[c][static_cast<std::size_t>(r)] = p[c];
    }
    return col;
}

Best scalarPass(const cDIBSection& other, const RefColumn& ref, int x0, int x1) {
    Best best;
    const int h = other.Height();
    for (int k = 0; k < kShiftCount; ++k) {
        for (int x = x0; x <= x1; ++x) {
            std::uint64_t sum = 0;
            for (int r = k; r <= h + k - kShiftCount; ++r) {
                const std::size_t q = static_cast<std::size_t>(r + kMaxShift - k);
                const std::uint8_t* p = other.rowBits(r) + 3 * x;
                const std::int64_t d0 = p[0] - ref[0][q];
                const std::int64_t d1 = p[1] - ref[1][q];
                const std::int64_t d2 = p[2] - ref[2][q];
                sum += static_cast<std::uint64_t>(d0 * d0 + d1 * d1 + d2 * d2);
            }
            consider(best, sum, k, x);
        }
    }
    return best;
}

int workerCount(int threads, int columns) {
    if (threads <= 0) threads = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
    // Too narrow a share costs more in starting a thread than it saves.
    return std::clamp(columns / 64, 1, threads);
}

Best fastPass(const cDIBSection& other, const RefColumn& ref, int x0, int x1, int threads) {
    const int columns = x1 - x0 + 1;
    std::vector<std::uint64_t> sums(static_cast<std::size_t>(kShiftCount) * columns);
    const int workers = workerCount(threads, columns);
    // Shares start on whole blocks of the widest kernel.
    constexpr int kBlock = 16;
    const int blocks = (columns + kBlock - 1) / kBlock;
    auto share = [&](int i) { return x0 + std::min(columns, blocks * i / workers * kBlock); };
    auto work = [&](int i) { columnSums(other, ref, x0, share(i), share(i + 1) - 1, sums); };
    std::vector<std::thread> pool;
    for (int i = 1; i < workers; ++i) {
        try {
            pool.emplace_back(work, i);
        } catch (const std::system_error&) {
            work(i);  // no thread to be had: the same share, here
        }
    }
    work(0);
    for (std::thread& t : pool) t.join();

    Best best;
    for (int k = 0; k < kShiftCount; ++k)
        for (int i = 0; i < columns; ++i)
            consider(best, sums[static_cast<std::size_t>(k) * columns + i], k, x0 + i);
    return best;
}

template <class Pass>
OverlapResult search(const cDIBSection& left, const cDIBSection& right, SearchBand band,
                     const std::atomic<bool>* stop, Pass pass) {
    OverlapResult result;
    result.problem = unsuitable(left, right, band);
    if (!result.problem.empty()) return result;
    auto stopped = [&] { return stop && stop->load(); };
    if (stopped()) {
        result.stopped = true;
        return result;
    }
    // Pass 1: B's first column against A's band.
    const Best first = pass(left, readColumn(right, 0), band.first, band.last);
    result = {true, false, {}, first.x, kMaxShift - first.k, first.sum, 1};
    if (stopped()) return {false, true, {}, 0, 0, 0, 0};
    // Pass 2: A's column at the band's far end against B from its left edge;
    // column c of B there means B starts at A's column band.last - c.
    const Best second = pass(right, readColumn(left, band.last), 0, band.last - band.first);
    if (second.sum < first.sum)
        result = {true, false, {}, band.last - second.x, second.k - kMaxShift, second.sum, 2};
    return result;
}

}  // namespace

SearchBand defaultSearchBand(int width) {
    SearchBand band;
    band.first = width / 2;
    band.last = std::max(band.first, width - 1 - width / 10);
    return band;
}

OverlapResult findOverlapScalar(const cDIBSection& left, const cDIBSection& right, SearchBand band,
                                const std::atomic<bool>* stop) {
    return search(left, right, band, stop, scalarPass);
}

OverlapResult findOverlap(const cDIBSection& left, const cDIBSection& right, SearchBand band,
                          const std::atomic<bool>* stop, int threads) {
    return search(left, right, band, stop,
                  [threads](const cDIBSection& other, const RefColumn& ref, int x0, int x1) {
                      return fastPass(other, ref, x0, x1, threads);
                  });
}

void storeMatch(PanoBild& record, const OverlapResult& result) {
    if (!result.found) return;
    record.xVersatz = result.xVersatz;
    record.yVersatz = result.yVersatz;
    record.gematcht = 65535;
}

}  // namespace brindle::panorama
