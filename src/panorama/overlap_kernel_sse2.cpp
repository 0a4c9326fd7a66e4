#include <algorithm>

#include "panorama/overlap_kernel_blocks.h"
#include "panorama/overlap_search.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace brindle::panorama::detail {

#if defined(__SSE2__)

namespace {

constexpr int kPixels = 8;

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

// Adds the per-byte sums of rows j0 .. j1 - 1 of the 8 pixels from column x
// at shift k to `bytes`.
void sliceSums(const cDIBSection& other, const std::vector<RowPattern>& patterns, int x, int k,
               int j0, int j1, std::uint64_t (&bytes)[3 * kPixels]) {
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
    alignas(16) std::uint32_t lanes[3 * kPixels];
    for (int i = 0; i < 6; ++i) _mm_store_si128(reinterpret_cast<__m128i*>(lanes + 4 * i), acc[i]);
    for (int i = 0; i < 3 * kPixels; ++i) bytes[i] += lanes[i];
}

}  // namespace

int sse2Blocks(const cDIBSection& other, const RefColumn& ref, int rows, int xa, int xb,
               const SumTable& out) {
    if (xb - xa + 1 < kPixels) return xa;
    const std::vector<RowPattern> patterns = makePatterns(ref, rows);
    int x = xa;
    for (; x + kPixels - 1 <= xb; x += kPixels) {
        for (int k = 0; k < kShiftCount; ++k) {
            std::uint64_t bytes[3 * kPixels] = {};
            for (int j0 = 0; j0 < rows; j0 += kRowsPerSlice)
                sliceSums(other, patterns, x, k, j0, std::min(rows, j0 + kRowsPerSlice), bytes);
            std::uint64_t* sums = out.at(k, x);
            for (int p = 0; p < kPixels; ++p)
                sums[p] = bytes[3 * p] + bytes[3 * p + 1] + bytes[3 * p + 2];
        }
    }
    return x;
}

#else

int sse2Blocks(const cDIBSection&, const RefColumn&, int, int xa, int, const SumTable&) {
    return xa;
}

#endif

}  // namespace brindle::panorama::detail
