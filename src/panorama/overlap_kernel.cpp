#include "panorama/overlap_kernel.h"

#include <algorithm>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "panorama/overlap_search.h"

namespace brindle::panorama {

namespace {

// 32-bit lanes hold at most this many squares of byte differences
// (65536 x 255 x 255 < 2^32); taller columns are summed in slices.
constexpr int kRowsPerSlice = 65536;

std::uint64_t columnSum(const cDIBSection& other, const RefColumn& ref, int x, int k, int rows) {
    std::uint64_t sum = 0;
    for (int j = 0; j < rows; ++j) {
        const std::uint8_t* p = other.rowBits(j + k) + 3 * x;
        const std::size_t q = static_cast<std::size_t>(j + kMaxShift);
        const int d0 = p[0] - ref[0][q];
        const int d1 = p[1] - ref[1][q];
        const int d2 = p[2] - ref[2][q];
        sum += static_cast<std::uint32_t>(d0 * d0 + d1 * d1 + d2 * d2);
    }
    return sum;
}

#if defined(__SSE2__)

// The reference pixel of one row spread over the 24 bytes of 8 pixels,
// as 16-bit lanes: blue, green, red, blue, ... .
struct RowPattern {
    __m128i part[3];
};

std::vector<RowPattern> makePatterns(const RefColumn& ref, int rows) {
    std::vector<RowPattern> patterns(static_cast<std::size_t>(rows));
    for (int j = 0; j < rows; ++j) {
        const std::size_t q = static_cast<std::size_t>(j + kMaxShift);
        const short b = static_cast<short>(ref[0][q]);
        const short g = static_cast<short>(ref[1][q]);
        const short r = static_cast<short>(ref[2][q]);
        patterns[static_cast<std::size_t>(j)] = {{_mm_setr_epi16(b, g, r, b, g, r, b, g),
                                                  _mm_setr_epi16(r, b, g, r, b, g, r, b),
                                                  _mm_setr_epi16(g, r, b, g, r, b, g, r)}};
    }
    return patterns;
}

// Adds the squares of the 16-bit differences `d` to two accumulators of
// four 32-bit lanes. |d| <= 255, so d * d fits an unsigned 16-bit lane.
inline void addSquares(__m128i d, __m128i& lo, __m128i& hi) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i sq = _mm_mullo_epi16(d, d);
    lo = _mm_add_epi32(lo, _mm_unpacklo_epi16(sq, zero));
    hi = _mm_add_epi32(hi, _mm_unpackhi_epi16(sq, zero));
}

// Per-byte sums of rows j0 .. j1 - 1 for the 8 pixels from column x at shift k.
void sliceSums(const cDIBSection& other, const std::vector<RowPattern>& patterns, int x, int k,
               int j0, int j1, std::uint64_t (&bytes)[24]) {
    const __m128i zero = _mm_setzero_si128();
    __m128i acc[6] = {zero, zero, zero, zero, zero, zero};
    for (int j = j0; j < j1; ++j) {
        const std::uint8_t* p = other.rowBits(j + k) + 3 * x;
        const RowPattern& pat = patterns[static_cast<std::size_t>(j)];
        const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        const __m128i b = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p + 16));
        addSquares(_mm_sub_epi16(_mm_unpacklo_epi8(a, zero), pat.part[0]), acc[0], acc[1]);
        addSquares(_mm_sub_epi16(_mm_unpackhi_epi8(a, zero), pat.part[1]), acc[2], acc[3]);
        addSquares(_mm_sub_epi16(_mm_unpacklo_epi8(b, zero), pat.part[2]), acc[4], acc[5]);
    }
    alignas(16) std::uint32_t lanes[24];
    for (int i = 0; i < 6; ++i) _mm_store_si128(reinterpret_cast<__m128i*>(lanes + 4 * i), acc[i]);
    for (int i = 0; i < 24; ++i) bytes[i] += lanes[i];
}

void blockSums(const cDIBSection& other, const std::vector<RowPattern>& patterns, int rows, int x,
               int k, std::uint64_t* out) {
    std::uint64_t bytes[24] = {};
    for (int j0 = 0; j0 < rows; j0 += kRowsPerSlice)
        sliceSums(other, patterns, x, k, j0, std::min(rows, j0 + kRowsPerSlice), bytes);
    for (int p = 0; p < kKernelPixels; ++p) out[p] = bytes[3 * p] + bytes[3 * p + 1] + bytes[3 * p + 2];
}

#endif

}  // namespace

void columnSums(const cDIBSection& other, const RefColumn& ref, int tableX0, int xa, int xb,
                std::vector<std::uint64_t>& sums) {
    const std::size_t columns = sums.size() / kShiftCount;
    const int rows = std::max(0, other.Height() - (kShiftCount - 1));
    auto at = [&](int k, int x) { return &sums[static_cast<std::size_t>(k) * columns + (x - tableX0)]; };
    int x = xa;
#if defined(__SSE2__)
    if (xb - xa + 1 >= kKernelPixels) {
        const std::vector<RowPattern> patterns = makePatterns(ref, rows);
        std::uint64_t block[kKernelPixels];
        // Shift innermost: the rows of one narrow strip stay in the cache
        // for all 41 shifts.
        for (; x + kKernelPixels - 1 <= xb; x += kKernelPixels) {
            for (int k = 0; k < kShiftCount; ++k) {
                blockSums(other, patterns, rows, x, k, block);
                std::copy(block, block + kKernelPixels, at(k, x));
            }
        }
    }
#endif
    for (; x <= xb; ++x)
        for (int k = 0; k < kShiftCount; ++k) *at(k, x) = columnSum(other, ref, x, k, rows);
}

}  // namespace brindle::panorama
