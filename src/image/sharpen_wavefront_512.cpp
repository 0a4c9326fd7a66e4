// Lane i of step s holds byte c = s - 6i of band row i, as in the narrower
// bands; lane 0 is the finished row below and lane 31 the row above. The
// sharpened lanes take the raw bytes' place in one buffer, as a step is
// never read again once it is done. Only the functions marked for AVX-512
// use its instructions; the caller asks available() first.
#include "image/sharpen_wavefront_512.h"

#include <algorithm>
#include <cstring>

#if defined(__x86_64__)
#include <immintrin.h>
#define BRINDLE_AVX512 __attribute__((target("avx512f,avx512bw,avx512vl,avx512vbmi")))
#endif

namespace brindle::effects {

bool SharpenWavefront512::prepare(int strength, int width) {
    const long long centre = static_cast<long long>(strength) + 24;
    const long long divisor = static_cast<long long>(strength) + 8;
    if (divisor < 1 || centre < 0 || 255 * centre > 32767 || width < 4) return false;
    if (!findLaneDivision(static_cast<int>(divisor), static_cast<int>(255 * centre), division_))
        return false;
    bytes_ = width * 3;
    centre_ = static_cast<int>(centre);
    lastStep_ = bytes_ - 4 + 6 * kRows;
    // One step more than the buffer holds, for the lanes read one word late.
    // and room to start the steps on a 64-byte boundary.
    buffer_.assign(static_cast<std::size_t>(kPiece + kAhead + 2) * kLanes, 0);
    const auto address = reinterpret_cast<std::uintptr_t>(buffer_.data());
    skip_ = (64 - address % 64) % 64 / sizeof(std::int16_t);
    return true;
}

#if defined(BRINDLE_AVX512)

bool SharpenWavefront512::available() {
    static const bool supported =
        __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
        __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512vbmi");
    return supported;
}

namespace {

constexpr int kLanes = SharpenWavefront512::kLanes;

// Bits lo .. hi - 1 of a lane mask; none when hi <= lo.
inline std::uint32_t laneBits(int lo, int hi) {
    if (hi <= lo) return 0;
    return static_cast<std::uint32_t>(((1ULL << hi) - 1) & ~((1ULL << lo) - 1));
}

// The address of row + offset, worked out without forming a pointer before
// the row: masked loads and stores touch only the bytes their mask selects.
inline std::uint8_t* offsetBy(const std::uint8_t* row, int offset) {
    return reinterpret_cast<std::uint8_t*>(reinterpret_cast<std::uintptr_t>(row) +
                                           static_cast<std::uintptr_t>(offset));
}

// 32 bytes of a row from `offset`, zeros outside 0 .. bytes - 1.
BRINDLE_AVX512 inline __m256i loadRow(const std::uint8_t* row, int offset, int bytes) {
    if (offset >= 0 && offset + 32 <= bytes)
        return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(row + offset));
    const std::uint32_t mask = laneBits(std::max(0, -offset), std::min(32, bytes - offset));
    if (mask == 0) return _mm256_setzero_si256();
    return _mm256_maskz_loadu_epi8(mask, offsetBy(row, offset));
}

// Writes the bytes of v that fall on columns 6 .. bytes - 4 of the row.
BRINDLE_AVX512 inline void storeRow(std::uint8_t* row, int offset, int bytes, __m256i v) {
    if (offset >= 6 && offset + 32 <= bytes - 3) {
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(row + offset), v);
        return;
    }
    const std::uint32_t mask = laneBits(std::max(0, 6 - offset), std::min(32, bytes - 3 - offset));
    if (mask != 0) _mm256_mask_storeu_epi8(offsetBy(row, offset), mask, v);
}

// The low 256 bits; the cast intrinsic makes GCC 12 warn of an undefined value.
BRINDLE_AVX512 inline __m256i lowHalf(__m512i v) {
    return reinterpret_cast<__m256i>(
        __builtin_shufflevector(reinterpret_cast<__v8di>(v), reinterpret_cast<__v8di>(v), 0, 1, 2, 3));
}

// Four 16x16 byte transposes at once, one in each 128-bit quarter: quarter
// q of v[r] holds row r of block q before and column r of it after.
BRINDLE_AVX512 inline __attribute__((always_inline)) void transpose(__m512i v[16]) {
    __m512i a[16];
    for (int i = 0; i < 8; ++i) {
        a[2 * i] = _mm512_unpacklo_epi8(v[2 * i], v[2 * i + 1]);
        a[2 * i + 1] = _mm512_unpackhi_epi8(v[2 * i], v[2 * i + 1]);
    }
    // a[2i]: rows 2i, 2i+1 interleaved for columns 0..7; a[2i+1] for 8..15.
    for (int i = 0; i < 4; ++i)
        for (int h = 0; h < 2; ++h) {
            v[4 * i + 2 * h] = _mm512_unpacklo_epi16(a[4 * i + h], a[4 * i + 2 + h]);
            v[4 * i + 2 * h + 1] = _mm512_unpackhi_epi16(a[4 * i + h], a[4 * i + 2 + h]);
        }
    // v[4i + k]: rows 4i .. 4i+3, columns 4k .. 4k+3.
    for (int i = 0; i < 2; ++i)
        for (int k = 0; k < 4; ++k) {
            a[8 * i + 2 * k] = _mm512_maskz_unpacklo_epi32(0xFFFF, v[8 * i + k], v[8 * i + 4 + k]);
            a[8 * i + 2 * k + 1] = _mm512_maskz_unpackhi_epi32(0xFFFF, v[8 * i + k], v[8 * i + 4 + k]);
        }
    // a[8i + j]: rows 8i .. 8i+7, columns 2j, 2j+1.
    for (int j = 0; j < 8; ++j) {
        v[2 * j] = _mm512_maskz_unpacklo_epi64(0xFF, a[j], a[8 + j]);
        v[2 * j + 1] = _mm512_maskz_unpackhi_epi64(0xFF, a[j], a[8 + j]);
    }
}

// Byte indices for the widening after the load: word i of a step takes byte
// i of quarter 0 or 2 (steps 0..15 of the block) or of quarter 1 or 3 (16..31).
BRINDLE_AVX512 inline __m512i widenIndex(int firstQuarter) {
    alignas(64) std::uint8_t idx[64] = {};
    for (int i = 0; i < kLanes; ++i)
        idx[2 * i] = static_cast<std::uint8_t>((i < 16 ? 0 : 32) + 16 * firstQuarter + i % 16);
    return _mm512_load_si512(idx);
}

// Byte indices for the narrowing before the store: the inverse of the above,
// the low bytes of two steps' words into the four quarters.
BRINDLE_AVX512 inline __m512i narrowIndex() {
    alignas(64) std::uint8_t idx[64];
    static constexpr int kFrom[4] = {0, 64, 32, 96};  // word 0 or 16 of the first or second step
    for (int j = 0; j < 64; ++j) idx[j] = static_cast<std::uint8_t>(kFrom[j / 16] + 2 * (j % 16));
    return _mm512_load_si512(idx);
}

// The row above lane i at a step: lane i + 1's word, read one word on.
BRINDLE_AVX512 inline __m512i above(const std::int16_t* lanes) {
    return _mm512_loadu_si512(lanes + 1);
}

}  // namespace

struct SharpenWavefront512::Carry {
    // Per chain of steps (s mod 3) its outputs three, six and nine steps back.
    __m512i last[3], prev[3], prevprev[3];
};

BRINDLE_AVX512 void SharpenWavefront512::loadLanes(std::uint8_t* const* rows, int from, int to,
                                                   int base) {
    const __m512i low = widenIndex(0), high = widenIndex(1);
    constexpr __mmask64 kLowBytes = 0x5555555555555555ULL;
    for (int s0 = from; s0 < to; s0 += 32) {
        __m512i v[16];
        for (int r = 0; r < 16; ++r) {
            const __m256i a = loadRow(rows[r], s0 - 6 * r, bytes_);
            const __m256i b = loadRow(rows[r + 16], s0 - 6 * (r + 16), bytes_);
            v[r] = _mm512_maskz_inserti64x4(0xFF, _mm512_castsi256_si512(a), b, 1);
        }
        transpose(v);
        std::int16_t* at = lanesAt(s0, base);
        for (int k = 0; k < 16; ++k) {
            _mm512_storeu_si512(at + k * kLanes, _mm512_maskz_permutexvar_epi8(kLowBytes, low, v[k]));
            _mm512_storeu_si512(at + (16 + k) * kLanes,
                                _mm512_maskz_permutexvar_epi8(kLowBytes, high, v[k]));
        }
    }
}

// Sums and sweep in one pass. For lane i at step s, with q the sharpened
// bytes: centre x raw(s) - 2 x (raw(s + 3) + q(s - 3) + lane i - 1's q at
// s - 9, s - 6, s - 3 + lane i + 1's raw at s + 3, s + 6, s + 9). The part
// without this lane's q(s - 3) and the lane below is summed beside the
// chain; what is left on it is one permute, four adds and the division.
BRINDLE_AVX512 void SharpenWavefront512::sweepPiece(int base, int end, Carry& carry) {
    const __m512i centre = _mm512_set1_epi16(static_cast<short>(centre_));
    const __m512i multiplier = _mm512_set1_epi16(static_cast<short>(division_.multiplier));
    const __m512i shift = _mm512_set1_epi16(static_cast<short>(division_.shift));
    const __m512i top = _mm512_set1_epi16(255);
    alignas(64) std::int16_t upIdx[kLanes];
    for (int i = 0; i < kLanes; ++i) upIdx[i] = static_cast<std::int16_t>(i > 0 ? i - 1 : 0);
    const __m512i up = _mm512_load_si512(upIdx);
    // Lanes 1 .. 30 whose byte lies in 6 .. bytes - 4; the others keep their byte.
    const int lastFull = bytes_ - 4;
    const auto inside = [&](int s) -> __mmask32 {
        const int hi = s >= 6 ? std::min(kRows, (s - 6) / 6) : 0;
        const int beyond = s - lastFull;
        const int lo = beyond > 0 ? std::max(1, (beyond + 5) / 6) : 1;
        return laneBits(lo, hi + 1);
    };
    const __mmask32 allInside = laneBits(1, kRows + 1);
    // One step of one chain at `at`: its outputs three, six and nine steps
    // back, and the rows above three and six steps on.
    const auto step = [&](std::int16_t* at, __mmask32 keep, __m512i& last, __m512i& prev,
                          __m512i& prevprev, __m512i& ahead3, __m512i& ahead6) BRINDLE_AVX512 {
        const __m512i raw = _mm512_load_si512(at);
        const __m512i ahead9 = above(at + 9 * kLanes);
        const __m512i known = _mm512_add_epi16(_mm512_load_si512(at + 3 * kLanes),
                                               _mm512_add_epi16(ahead3, _mm512_add_epi16(ahead6, ahead9)));
        const __m512i scaled = _mm512_mullo_epi16(raw, centre);
        const __m512i down = _mm512_add_epi16(last, _mm512_add_epi16(prev, prevprev));
        const __m512i sum = _mm512_add_epi16(_mm512_permutexvar_epi16(up, down),
                                             _mm512_add_epi16(last, known));
        // Both sides are at least 0, so the unsigned saturation is the clamp at 0.
        const __m512i n = _mm512_subs_epu16(scaled, _mm512_add_epi16(sum, sum));
        const __m512i q = _mm512_srlv_epi16(_mm512_mulhi_epu16(n, multiplier), shift);
        const __m512i out = _mm512_mask_min_epu16(raw, keep, q, top);
        _mm512_store_si512(at, out);
        prevprev = prev;
        prev = last;
        last = out;
        ahead3 = ahead6;
        ahead6 = ahead9;
    };
    __m512i l0 = carry.last[0], l1 = carry.last[1], l2 = carry.last[2];
    __m512i p0 = carry.prev[0], p1 = carry.prev[1], p2 = carry.prev[2];
    __m512i pp0 = carry.prevprev[0], pp1 = carry.prevprev[1], pp2 = carry.prevprev[2];
    std::int16_t* at = lanesAt(base, base);
    __m512i a30 = above(at + 3 * kLanes), a31 = above(at + 4 * kLanes), a32 = above(at + 5 * kLanes);
    __m512i a60 = above(at + 6 * kLanes), a61 = above(at + 7 * kLanes), a62 = above(at + 8 * kLanes);
    const int firstFull = 6 + 6 * kRows;
    int s = base;
    // Before the middle, the middle, and after it.
    const int middle = std::max(s, std::min(end, (firstFull + 2) / 3 * 3));
    const int after = std::max(middle, std::min(end, (lastFull + 6 - 2) / 3 * 3 + 3));
    const auto edges = [&](int until) BRINDLE_AVX512 {
        for (; s < until; s += 3, at += 3 * kLanes) {
            step(at, inside(s), l0, p0, pp0, a30, a60);
            step(at + kLanes, inside(s + 1), l1, p1, pp1, a31, a61);
            step(at + 2 * kLanes, inside(s + 2), l2, p2, pp2, a32, a62);
        }
    };
    edges(middle);
    for (; s < after; s += 3, at += 3 * kLanes) {
        step(at, allInside, l0, p0, pp0, a30, a60);
        step(at + kLanes, allInside, l1, p1, pp1, a31, a61);
        step(at + 2 * kLanes, allInside, l2, p2, pp2, a32, a62);
    }
    edges(end);
    carry = Carry{{l0, l1, l2}, {p0, p1, p2}, {pp0, pp1, pp2}};
}

BRINDLE_AVX512 void SharpenWavefront512::storeLanes(std::uint8_t* const* rows, int from, int to,
                                                    int base) const {
    const __m512i narrow = narrowIndex();
    for (int s0 = from; s0 < to; s0 += 32) {
        const std::int16_t* at = lanesAt(s0, base);
        __m512i v[16];
        for (int k = 0; k < 16; ++k)
            v[k] = _mm512_permutex2var_epi8(_mm512_loadu_si512(at + k * kLanes), narrow,
                                            _mm512_loadu_si512(at + (16 + k) * kLanes));
        transpose(v);
        // Lane 0 (the row below) and lane 31 (the row above) are not the band's.
        for (int r = 0; r < 16; ++r) {
            if (r > 0) storeRow(rows[r], s0 - 6 * r, bytes_, lowHalf(v[r]));
            if (r < 15)
                storeRow(rows[r + 16], s0 - 6 * (r + 16), bytes_, _mm512_maskz_extracti64x4_epi64(0xF, v[r], 1));
        }
    }
}

// The band goes along in pieces of kPiece steps so that its buffer stays in
// the first-level cache; the steps loaded ahead for the sums move to the
// front for the next piece rather than being transposed again.
BRINDLE_AVX512 void SharpenWavefront512::band(std::uint8_t* const* rows) {
    const __m512i zero = _mm512_setzero_si512();
    Carry carry{{zero, zero, zero}, {zero, zero, zero}, {zero, zero, zero}};
    const int end = (lastStep_ / 3 + 1) * 3;
    // The last step reads ten steps on.
    const int loaded = (end + 10 + 31) / 32 * 32;
    for (int base = 0; base < end; base += kPiece) {
        const int pieceEnd = std::min(base + kPiece, end);
        const int from = base == 0 ? 0 : base + kAhead;
        const int to = std::min(base + kPiece + kAhead, loaded);
        if (from < to) loadLanes(rows, from, to, base);
        sweepPiece(base, pieceEnd, carry);
        storeLanes(rows, base, (pieceEnd + 31) / 32 * 32, base);
        if (pieceEnd < end)
            std::memmove(lanesAt(0, 0), lanesAt(kPiece, 0),
                         kAhead * kLanes * sizeof(std::int16_t));
    }
}

#else

bool SharpenWavefront512::available() { return false; }
void SharpenWavefront512::band(std::uint8_t* const*) {}

#endif

}  // namespace brindle::effects
