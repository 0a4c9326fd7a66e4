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
    if (!prepareLaneStrength(strength, width, division_, centre_)) return false;
    bytes_ = width * 3;
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

// 16 bytes of a row from `offset`, zeros outside 0 .. bytes - 1.
BRINDLE_AVX512 inline __m128i loadChunk(const std::uint8_t* row, int offset, int bytes) {
    if (offset >= 0 && offset + 16 <= bytes)
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(row + offset));
    const std::uint32_t mask = laneBits(std::max(0, -offset), std::min(16, bytes - offset));
    if (mask == 0) return _mm_setzero_si128();
    return _mm_maskz_loadu_epi8(static_cast<__mmask16>(mask), offsetBy(row, offset));
}

// Writes the bytes of v that fall on columns 6 .. bytes - 4 of the row.
BRINDLE_AVX512 inline void storeChunk(std::uint8_t* row, int offset, int bytes, __m128i v) {
    if (offset >= 6 && offset + 16 <= bytes - 3) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(row + offset), v);
        return;
    }
    const std::uint32_t mask = laneBits(std::max(0, 6 - offset), std::min(16, bytes - 3 - offset));
    if (mask != 0) _mm_mask_storeu_epi8(offsetBy(row, offset), static_cast<__mmask16>(mask), v);
}

// Storing: the low bytes of two steps' words interleaved step by step, rows
// 8q .. 8q + 7 in quarter q; three rounds of unpacks then leave 16 steps of
// one row in each quarter.
BRINDLE_AVX512 inline __m512i narrowIndex() {
    alignas(64) std::uint8_t idx[64];
    for (int q = 0; q < 4; ++q)
        for (int u = 0; u < 8; ++u)
            for (int f = 0; f < 2; ++f)
                idx[16 * q + 2 * u + f] = static_cast<std::uint8_t>(64 * f + 2 * (8 * q + u));
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

namespace {

// Loading: a vector holds 16 bytes of four rows, one to a 128-bit quarter,
// so that filling it costs loads and blends rather than shuffles: rows
// first + 8j in quarter j, from step s.
template <bool kInside>
BRINDLE_AVX512 inline __attribute__((always_inline)) __m512i fourRows(std::uint8_t* const* rows,
                                                                      int first, int s, int bytes) {
    const auto at = [&](int j) BRINDLE_AVX512 {
        const int r = first + 8 * j;
        if constexpr (kInside)
            return _mm_loadu_si128(reinterpret_cast<const __m128i*>(rows[r] + (s - 6 * r)));
        else
            return loadChunk(rows[r], s - 6 * r, bytes);
    };
    __m512i v = _mm512_zextsi128_si512(at(0));
    v = _mm512_mask_broadcast_i32x4(v, 0x00F0, at(1));
    v = _mm512_mask_broadcast_i32x4(v, 0x0F00, at(2));
    return _mm512_mask_broadcast_i32x4(v, 0xF000, at(3));
}

// Steps s .. s + 15 of all 32 lanes as words at `at`. Three rounds of
// unpacks leave in quarter j of each vector two steps of the rows 8j ..
// 8j + 7 in order (the rows go in bit-reversed, which the unpacks undo);
// unpacking with zeros then widens each step into its lanes.
template <bool kInside>
BRINDLE_AVX512 inline __attribute__((always_inline)) void loadSteps(std::uint8_t* const* rows,
                                                                    int s, int bytes,
                                                                    std::int16_t* at) {
    static constexpr int kRowOf[8] = {0, 4, 2, 6, 1, 5, 3, 7};
    __m512i x[8];
#pragma GCC unroll 8
    for (int k = 0; k < 8; ++k) x[k] = fourRows<kInside>(rows, kRowOf[k], s, bytes);
    __m512i y[4][2];  // steps 0..7 or 8..15
#pragma GCC unroll 4
    for (int k = 0; k < 4; ++k) {
        y[k][0] = _mm512_unpacklo_epi8(x[k], x[k + 4]);
        y[k][1] = _mm512_unpackhi_epi8(x[k], x[k + 4]);
    }
    const __m512i zero = _mm512_setzero_si512();
#pragma GCC unroll 2
    for (int a = 0; a < 2; ++a)
#pragma GCC unroll 2
        for (int b = 0; b < 2; ++b) {
            // Steps 8a + 4b .. 8a + 4b + 3.
            const __m512i z0 = b == 0 ? _mm512_unpacklo_epi16(y[0][a], y[2][a])
                                      : _mm512_unpackhi_epi16(y[0][a], y[2][a]);
            const __m512i z1 = b == 0 ? _mm512_unpacklo_epi16(y[1][a], y[3][a])
                                      : _mm512_unpackhi_epi16(y[1][a], y[3][a]);
#pragma GCC unroll 2
            for (int c = 0; c < 2; ++c) {
                const __m512i w = c == 0 ? _mm512_maskz_unpacklo_epi32(0xFFFF, z0, z1)
                                         : _mm512_maskz_unpackhi_epi32(0xFFFF, z0, z1);
                std::int16_t* step = at + (8 * a + 4 * b + 2 * c) * kLanes;
                _mm512_store_si512(step, _mm512_unpacklo_epi8(w, zero));
                _mm512_store_si512(step + kLanes, _mm512_unpackhi_epi8(w, zero));
            }
        }
}

}  // namespace

BRINDLE_AVX512 void SharpenWavefront512::loadLanes(std::uint8_t* const* rows, int from, int to,
                                                   int base) {
    for (int s = from; s < to; s += 16) {
        // Every row's 16 bytes inside it: no masks.
        if (s >= 6 * (kLanes - 1) && s + 16 <= bytes_)
            loadSteps<true>(rows, s, bytes_, lanesAt(s, base));
        else
            loadSteps<false>(rows, s, bytes_, lanesAt(s, base));
    }
}

namespace {

// What every step of the sweep uses.
struct SweepConstants {
    __m512i centre, multiplier, shift, top, up;
};

// One chain of steps (s mod 3): its outputs three, six and nine steps back,
// and the rows above three and six steps on.
struct Chain {
    __m512i last, prev, prevprev, ahead3, ahead6;
};

// One step of one chain at `at`; lanes outside `keep` keep their byte.
BRINDLE_AVX512 inline __attribute__((always_inline)) void sweepStep(std::int16_t* at,
                                                                    __mmask32 keep, Chain& c,
                                                                    const SweepConstants& k) {
    const __m512i raw = _mm512_load_si512(at);
    const __m512i ahead9 = above(at + 9 * kLanes);
    const __m512i known =
        _mm512_add_epi16(_mm512_load_si512(at + 3 * kLanes),
                         _mm512_add_epi16(c.ahead3, _mm512_add_epi16(c.ahead6, ahead9)));
    const __m512i scaled = _mm512_mullo_epi16(raw, k.centre);
    const __m512i down = _mm512_add_epi16(c.last, _mm512_add_epi16(c.prev, c.prevprev));
    const __m512i sum =
        _mm512_add_epi16(_mm512_permutexvar_epi16(k.up, down), _mm512_add_epi16(c.last, known));
    // Both sides are at least 0, so the unsigned saturation is the clamp at 0.
    const __m512i n = _mm512_subs_epu16(scaled, _mm512_add_epi16(sum, sum));
    const __m512i q = _mm512_srlv_epi16(_mm512_mulhi_epu16(n, k.multiplier), k.shift);
    const __m512i out = _mm512_mask_min_epu16(raw, keep, q, k.top);
    _mm512_store_si512(at, out);
    c.prevprev = c.prev;
    c.prev = c.last;
    c.last = out;
    c.ahead3 = c.ahead6;
    c.ahead6 = ahead9;
}

// Steps s .. until - 1 (s a multiple of 3) from `at`, keepOf(s) the lanes
// sharpened at step s. The chains stay in registers for the whole run.
template <class Keep>
BRINDLE_AVX512 inline __attribute__((always_inline)) void sweepSteps(std::int16_t*& at, int& s,
                                                                     int until, Chain (&chains)[3],
                                                                     const SweepConstants& k,
                                                                     Keep keepOf) {
    Chain c0 = chains[0], c1 = chains[1], c2 = chains[2];
    std::int16_t* p = at;
    int t = s;
    for (; t < until; t += 3, p += 3 * kLanes) {
        sweepStep(p, keepOf(t), c0, k);
        sweepStep(p + kLanes, keepOf(t + 1), c1, k);
        sweepStep(p + 2 * kLanes, keepOf(t + 2), c2, k);
    }
    chains[0] = c0;
    chains[1] = c1;
    chains[2] = c2;
    at = p;
    s = t;
}

}  // namespace

// Sums and sweep in one pass. For lane i at step s, with q the sharpened
// bytes: centre x raw(s) - 2 x (raw(s + 3) + q(s - 3) + lane i - 1's q at
// s - 9, s - 6, s - 3 + lane i + 1's raw at s + 3, s + 6, s + 9). The part
// without this lane's q(s - 3) and the lane below is summed beside the
// chain; what is left on it is one permute, four adds and the division.
BRINDLE_AVX512 void SharpenWavefront512::sweepPiece(int base, int end, Carry& carry) {
    alignas(64) std::int16_t upIdx[kLanes];
    for (int i = 0; i < kLanes; ++i) upIdx[i] = static_cast<std::int16_t>(i > 0 ? i - 1 : 0);
    const SweepConstants k{_mm512_set1_epi16(static_cast<short>(centre_)),
                           _mm512_set1_epi16(static_cast<short>(division_.multiplier)),
                           _mm512_set1_epi16(static_cast<short>(division_.shift)),
                           _mm512_set1_epi16(255), _mm512_load_si512(upIdx)};
    // Lanes 1 .. 30 whose byte lies in 6 .. bytes - 4; the others keep their byte.
    const int lastFull = bytes_ - 4;
    const auto inside = [lastFull](int s) -> __mmask32 {
        const int hi = s >= 6 ? std::min(kRows, (s - 6) / 6) : 0;
        const int beyond = s - lastFull;
        const int lo = beyond > 0 ? std::max(1, (beyond + 5) / 6) : 1;
        return laneBits(lo, hi + 1);
    };
    const auto allInside = [](int) -> __mmask32 { return laneBits(1, kRows + 1); };
    std::int16_t* at = lanesAt(base, base);
    Chain chains[3];
    for (int j = 0; j < 3; ++j)
        chains[j] = Chain{carry.last[j], carry.prev[j], carry.prevprev[j],
                          above(at + (3 + j) * kLanes), above(at + (6 + j) * kLanes)};
    const int firstFull = 6 + 6 * kRows;
    int s = base;
    // Before the middle, the middle, and after it.
    const int middle = std::max(s, std::min(end, (firstFull + 2) / 3 * 3));
    const int after = std::max(middle, std::min(end, (lastFull + 6 - 2) / 3 * 3 + 3));
    sweepSteps(at, s, middle, chains, k, inside);
    sweepSteps(at, s, after, chains, k, allInside);
    sweepSteps(at, s, end, chains, k, inside);
    for (int j = 0; j < 3; ++j) {
        carry.last[j] = chains[j].last;
        carry.prev[j] = chains[j].prev;
        carry.prevprev[j] = chains[j].prevprev;
    }
}

namespace {

// Quarter q of v holds 16 steps of row 8q + u from step s; rows 0 (below)
// and 31 (above) are not the band's. In the middle of the row the extracts
// fold into their stores and cost no shuffle.
// GCC 12 warns of the undefined value the extract intrinsic starts from.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
template <int kQuarter, bool kInside>
BRINDLE_AVX512 inline __attribute__((always_inline)) void storeQuarter(std::uint8_t* const* rows,
                                                                       int u, __m512i v, int s,
                                                                       int bytes) {
    const int r = 8 * kQuarter + u;
    if (r == 0 || r == kLanes - 1) return;
    if constexpr (kInside && kQuarter == 0) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(rows[r] + (s - 6 * r)),
                         _mm512_castsi512_si128(v));
    } else if constexpr (kInside) {
        // GCC 12 extracts into a register first, a shuffle, unless told.
        asm("vextracti32x4 %[q], %[v], %[m]"
            : [m] "=m"(*reinterpret_cast<__m128i_u*>(rows[r] + (s - 6 * r)))
            : [v] "v"(v), [q] "i"(kQuarter));
    } else {
        storeChunk(rows[r], s - 6 * r, bytes, _mm512_extracti32x4_epi32(v, kQuarter));
    }
}
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif

template <bool kInside>
BRINDLE_AVX512 inline __attribute__((always_inline)) void storeQuarters(std::uint8_t* const* rows,
                                                                        int u, __m512i v, int s,
                                                                        int bytes) {
    storeQuarter<0, kInside>(rows, u, v, s, bytes);
    storeQuarter<1, kInside>(rows, u, v, s, bytes);
    storeQuarter<2, kInside>(rows, u, v, s, bytes);
    storeQuarter<3, kInside>(rows, u, v, s, bytes);
}

// Steps s .. s + 15 at `at` back into the rows: a two-vector byte permute
// that narrows, then three rounds of unpacks.
template <bool kInside>
BRINDLE_AVX512 inline __attribute__((always_inline)) void storeSteps(std::uint8_t* const* rows,
                                                                     int s, int bytes,
                                                                     __m512i narrow,
                                                                     const std::int16_t* at) {
    __m512i p[8];
#pragma GCC unroll 8
    for (int e = 0; e < 8; ++e)
        p[e] = _mm512_permutex2var_epi8(_mm512_load_si512(at + 2 * e * kLanes), narrow,
                                        _mm512_load_si512(at + (2 * e + 1) * kLanes));
    __m512i q[4][2];  // steps 4e .. 4e + 3; rows u 0..3 or 4..7 of each quarter
#pragma GCC unroll 4
    for (int e = 0; e < 4; ++e) {
        q[e][0] = _mm512_unpacklo_epi16(p[2 * e], p[2 * e + 1]);
        q[e][1] = _mm512_unpackhi_epi16(p[2 * e], p[2 * e + 1]);
    }
#pragma GCC unroll 2
    for (int b2 = 0; b2 < 2; ++b2) {
        __m512i r[2][2];  // steps 8e .. 8e + 7; rows u + 0, 1 or + 2, 3
#pragma GCC unroll 2
        for (int e = 0; e < 2; ++e) {
            r[e][0] = _mm512_maskz_unpacklo_epi32(0xFFFF, q[2 * e][b2], q[2 * e + 1][b2]);
            r[e][1] = _mm512_maskz_unpackhi_epi32(0xFFFF, q[2 * e][b2], q[2 * e + 1][b2]);
        }
#pragma GCC unroll 2
        for (int b3 = 0; b3 < 2; ++b3) {
            const int u = 4 * b2 + 2 * b3;
            storeQuarters<kInside>(rows, u, _mm512_maskz_unpacklo_epi64(0xFF, r[0][b3], r[1][b3]),
                                   s, bytes);
            storeQuarters<kInside>(rows, u + 1,
                                   _mm512_maskz_unpackhi_epi64(0xFF, r[0][b3], r[1][b3]), s, bytes);
        }
    }
}

}  // namespace

BRINDLE_AVX512 void SharpenWavefront512::storeLanes(std::uint8_t* const* rows, int from, int to,
                                                    int base) const {
    const __m512i narrow = narrowIndex();
    for (int s = from; s < to; s += 16) {
        // Rows 1 .. 30 take their 16 bytes whole.
        if (s >= 6 + 6 * kRows && s + 10 <= bytes_ - 3)
            storeSteps<true>(rows, s, bytes_, narrow, lanesAt(s, base));
        else
            storeSteps<false>(rows, s, bytes_, narrow, lanesAt(s, base));
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
            std::memmove(lanesAt(0, 0), lanesAt(kPiece, 0), kAhead * kLanes * sizeof(std::int16_t));
    }
}

#else

bool SharpenWavefront512::available() { return false; }
void SharpenWavefront512::band(std::uint8_t* const*) {}

#endif

}  // namespace brindle::effects
