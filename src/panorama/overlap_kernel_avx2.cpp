// Only the functions marked for AVX2 use its instructions; the rest of the
// program runs on any x86-64, and the caller asks the processor first.
#include <algorithm>

#include "panorama/overlap_kernel_blocks.h"
#include "panorama/overlap_search.h"

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define BRINDLE_AVX2 __attribute__((target("avx2")))
#endif

namespace brindle::panorama::detail {

#if defined(BRINDLE_AVX2)

namespace {

constexpr int kPixels = 16;

// The reference pixel of one row spread over the 48 bytes of 16 pixels,
// as 16-bit lanes: blue, green, red, blue, ... .
struct RowPattern {
    __m256i part[3];
};

BRINDLE_AVX2 std::vector<RowPattern> makePatterns(const RefColumn& ref, int rows) {
    std::vector<RowPattern> patterns(static_cast<std::size_t>(rows));
    for (int j = 0; j < rows; ++j) {
        const std::size_t q = static_cast<std::size_t>(j + kMaxShift);
        short lanes[3 * kPixels];
        for (int i = 0; i < 3 * kPixels; ++i)
            lanes[i] = static_cast<short>(ref[static_cast<std::size_t>(i % 3)][q]);
        for (int part = 0; part < 3; ++part)
            patterns[static_cast<std::size_t>(j)].part[part] =
                _mm256_loadu_si256(reinterpret_cast<const __m256i*>(lanes + 16 * part));
    }
    return patterns;
}

// The 16-bit lanes of one part in the order unpacking leaves them: within
// each 128-bit half, the low four go to `lo`, the high four to `hi`.
constexpr int laneByte(int part, bool hi, int dword) {
    return 16 * part + (dword < 4 ? dword : dword + 4) + (hi ? 4 : 0);
}

BRINDLE_AVX2 inline void addSquares(__m256i d, __m256i& lo, __m256i& hi) {
    const __m256i zero = _mm256_setzero_si256();
    const __m256i sq = _mm256_mullo_epi16(d, d);  // |d| <= 255: fits unsigned 16 bits
    lo = _mm256_add_epi32(lo, _mm256_unpacklo_epi16(sq, zero));
    hi = _mm256_add_epi32(hi, _mm256_unpackhi_epi16(sq, zero));
}

BRINDLE_AVX2 void sliceSums(const cDIBSection& other, const std::vector<RowPattern>& patterns,
                            int x, int k, int j0, int j1, std::uint64_t (&bytes)[3 * kPixels]) {
    const __m256i zero = _mm256_setzero_si256();
    __m256i acc[6] = {zero, zero, zero, zero, zero, zero};
    for (int j = j0; j < j1; ++j) {
        const std::uint8_t* p = other.rowBits(j + k) + 3 * x;
        const RowPattern& pat = patterns[static_cast<std::size_t>(j)];
        for (int part = 0; part < 3; ++part) {
            const __m128i raw = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16 * part));
            addSquares(_mm256_sub_epi16(_mm256_cvtepu8_epi16(raw), pat.part[part]), acc[2 * part],
                       acc[2 * part + 1]);
        }
    }
    alignas(32) std::uint32_t lanes[8];
    for (int part = 0; part < 3; ++part) {
        for (int half = 0; half < 2; ++half) {
            _mm256_store_si256(reinterpret_cast<__m256i*>(lanes), acc[2 * part + half]);
            for (int i = 0; i < 8; ++i) bytes[laneByte(part, half == 1, i)] += lanes[i];
        }
    }
}

}  // namespace

BRINDLE_AVX2 int avx2Blocks(const cDIBSection& other, const RefColumn& ref, int rows, int xa,
                            int xb, const SumTable& out) {
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

int avx2Blocks(const cDIBSection&, const RefColumn&, int, int xa, int, const SumTable&) {
    return xa;
}

#endif

}  // namespace brindle::panorama::detail
