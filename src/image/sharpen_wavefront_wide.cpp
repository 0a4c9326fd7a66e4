// Lane i of step s holds byte c = s - 6i of band row i, as in the eight-lane
// band. Only the functions marked for AVX2 use its instructions; the caller
// asks available() first.
#include "image/sharpen_wavefront_wide.h"

#include <algorithm>
#include <cstring>

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define BRINDLE_AVX2 __attribute__((target("avx2")))
#endif

namespace brindle::effects {

bool SharpenWavefrontWide::prepare(int strength, int width) {
    if (!prepareLaneStrength(strength, width, division_, centre_)) return false;
    bytes_ = width * 3;
    lastStep_ = bytes_ - 4 + 6 * (kLanes - 1);
    steps_ = (lastStep_ + 1 + 16 + 15) / 16 * 16;
    raw_.assign(static_cast<std::size_t>(kPiece + 16) * kLanes, 0);
    known_.assign(static_cast<std::size_t>(kPiece) * kLanes, 0);
    return true;
}

#if defined(BRINDLE_AVX2)

bool SharpenWavefrontWide::available() { return __builtin_cpu_supports("avx2"); }

namespace {

BRINDLE_AVX2 inline __m256i at(const std::vector<std::int16_t>& v, int step) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(v.data() + step * 16));
}

BRINDLE_AVX2 inline void put(std::vector<std::int16_t>& v, int step, __m256i x) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(v.data() + step * 16), x);
}

// Lane i takes lane i + 1; the top lane is zero.
BRINDLE_AVX2 inline __m256i laneDown(__m256i x) {
    return _mm256_alignr_epi8(_mm256_permute2x128_si256(x, x, 0x81), x, 2);
}

// Lane i takes lane i - 1; lane 0 is zero.
BRINDLE_AVX2 inline __m256i laneUp(__m256i x) {
    return _mm256_alignr_epi8(x, _mm256_permute2x128_si256(x, x, 0x08), 14);
}

// Sixteen bytes of a row from `offset`, zeros outside 0 .. bytes - 1.
BRINDLE_AVX2 inline __m128i loadSixteen(const std::uint8_t* row, int offset, int bytes) {
    if (offset >= 0 && offset + 16 <= bytes)
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(row + offset));
    alignas(16) std::uint8_t b[16] = {};
    for (int k = 0; k < 16; ++k)
        if (offset + k >= 0 && offset + k < bytes) b[k] = row[offset + k];
    return _mm_load_si128(reinterpret_cast<const __m128i*>(b));
}

// A 16x16 byte transpose: in[r] is row r, out[c] column c.
BRINDLE_AVX2 void transpose(const __m128i in[16], __m128i out[16]) {
    __m128i a[16], b[16];
    for (int i = 0; i < 8; ++i) {
        a[2 * i] = _mm_unpacklo_epi8(in[2 * i], in[2 * i + 1]);
        a[2 * i + 1] = _mm_unpackhi_epi8(in[2 * i], in[2 * i + 1]);
    }
    // a[2i]: rows 2i, 2i+1 interleaved for columns 0..7; a[2i+1] for 8..15.
    for (int i = 0; i < 4; ++i)
        for (int h = 0; h < 2; ++h) {
            b[4 * i + 2 * h] = _mm_unpacklo_epi16(a[4 * i + h], a[4 * i + 2 + h]);
            b[4 * i + 2 * h + 1] = _mm_unpackhi_epi16(a[4 * i + h], a[4 * i + 2 + h]);
        }
    // b[4i + k]: rows 4i .. 4i+3, columns 4k .. 4k+3.
    for (int i = 0; i < 2; ++i)
        for (int k = 0; k < 4; ++k) {
            a[8 * i + 2 * k] = _mm_unpacklo_epi32(b[8 * i + k], b[8 * i + 4 + k]);
            a[8 * i + 2 * k + 1] = _mm_unpackhi_epi32(b[8 * i + k], b[8 * i + 4 + k]);
        }
    // a[8i + j]: rows 8i .. 8i+7, columns 2j, 2j+1.
    for (int j = 0; j < 8; ++j) {
        out[2 * j] = _mm_unpacklo_epi64(a[j], a[8 + j]);
        out[2 * j + 1] = _mm_unpackhi_epi64(a[j], a[8 + j]);
    }
}

}  // namespace

// What the sums and the sweep carry from one piece of the band to the next:
// per chain of steps (s mod 3) the last vectors they saw.
struct SumCarry {
    __m256i now[3], back[3];
};
struct SharpenWavefrontWide::SweepCarry {
    __m256i last[3], prev[3], prevprev[3];
};

BRINDLE_AVX2 void SharpenWavefrontWide::loadLanes(std::uint8_t* const* rows, int from, int to,
                                                  int base) {
    for (int s0 = from; s0 < to; s0 += 16) {
        __m128i in[16], out[16];
        for (int lane = 0; lane < kLanes; ++lane)
            in[lane] = loadSixteen(rows[1 + lane], s0 - 6 * lane, bytes_);
        transpose(in, out);
        for (int k = 0; k < 16; ++k) put(raw_, s0 + k - base, _mm256_cvtepu8_epi16(out[k]));
    }
}

namespace {

// Lanes moved one row up with the row above's byte t - 90 in the top lane.
BRINDLE_AVX2 inline __m256i overAt(const std::vector<std::int16_t>& raw, int t, int base,
                                   const std::uint8_t* above, int bytes) {
    const int c = t - 6 * (SharpenWavefrontWide::kLanes - 1);
    const int top = c >= 0 && c < bytes ? above[c] : 0;
    return _mm256_insert_epi16(laneDown(at(raw, t + 6 - base)), static_cast<short>(top),
                               SharpenWavefrontWide::kLanes - 1);
}

}  // namespace

BRINDLE_AVX2 static void buildSumsPiece(const std::vector<std::int16_t>& raw,
                                        std::vector<std::int16_t>& known, int base, int end,
                                        const std::uint8_t* below, const std::uint8_t* above,
                                        int bytes, int centreValue, SumCarry& carry) {
    const __m256i centre = _mm256_set1_epi16(static_cast<short>(centreValue));
    __m256i n0 = carry.now[0], n1 = carry.now[1], n2 = carry.now[2];
    __m256i b0 = carry.back[0], b1 = carry.back[1], b2 = carry.back[2];
    const auto step = [&](int s, __m256i& now, __m256i& back) BRINDLE_AVX2 {
        const int below3 = s >= 6 && s <= bytes - 4 ? below[s - 3] + below[s] + below[s + 3] : 0;
        const __m256i ahead = overAt(raw, s + 3, base, above, bytes);
        __m256i sum = _mm256_add_epi16(at(raw, s + 3 - base),
                                       _mm256_zextsi128_si256(_mm_cvtsi32_si128(below3)));
        sum = _mm256_add_epi16(sum, _mm256_add_epi16(_mm256_add_epi16(back, now), ahead));
        put(known, s - base,
            _mm256_sub_epi16(_mm256_mullo_epi16(at(raw, s - base), centre),
                             _mm256_slli_epi16(sum, 1)));
        back = now;
        now = ahead;
    };
    for (int s = base; s < end; s += 3) {
        step(s, n0, b0);
        step(s + 1, n1, b1);
        step(s + 2, n2, b2);
    }
    carry = SumCarry{{n0, n1, n2}, {b0, b1, b2}};
}

BRINDLE_AVX2 void SharpenWavefrontWide::sweepPiece(int base, int end, SweepCarry& carry) {
    const __m256i multiplier = _mm256_set1_epi16(static_cast<short>(division_.multiplier));
    const __m128i shift = _mm_cvtsi32_si128(division_.shift);
    const __m256i zero = _mm256_setzero_si256();
    const __m256i top = _mm256_set1_epi16(255);
    const int firstFull = 6 + 6 * (kLanes - 1), lastFull = bytes_ - 4;
    const auto limits = [&](int s, __m256i& low, __m256i& high) BRINDLE_AVX2 {
        alignas(32) std::int16_t inside[kLanes];
        for (int i = 0; i < kLanes; ++i) {
            const int c = s - 6 * i;
            inside[i] = c >= 6 && c <= lastFull ? -1 : 0;
        }
        const __m256i mask = _mm256_load_si256(reinterpret_cast<const __m256i*>(inside));
        low = _mm256_andnot_si256(mask, at(raw_, s - base));
        high = _mm256_or_si256(low, _mm256_and_si256(mask, top));
    };
    const auto step = [&](int s, __m256i& last, __m256i& prev, __m256i& prevprev) BRINDLE_AVX2 {
        const __m256i l = last;
        const __m256i down = _mm256_add_epi16(l, _mm256_add_epi16(prev, prevprev));
        const __m256i x = _mm256_add_epi16(laneUp(down), l);
        __m256i n = _mm256_sub_epi16(at(known_, s - base), _mm256_add_epi16(x, x));
        n = _mm256_max_epi16(n, zero);
        __m256i q = _mm256_srl_epi16(_mm256_mulhi_epu16(n, multiplier), shift);
        if (s >= firstFull && s <= lastFull) {
            q = _mm256_min_epi16(q, top);
        } else {
            __m256i low, high;
            limits(s, low, high);
            q = _mm256_max_epi16(_mm256_min_epi16(q, high), low);
        }
        put(known_, s - base, q);  // the sum is used up: the result takes its place
        prevprev = prev;
        prev = l;
        last = q;
    };
    __m256i l0 = carry.last[0], l1 = carry.last[1], l2 = carry.last[2];
    __m256i p0 = carry.prev[0], p1 = carry.prev[1], p2 = carry.prev[2];
    __m256i pp0 = carry.prevprev[0], pp1 = carry.prevprev[1], pp2 = carry.prevprev[2];
    for (int s = base; s < end; s += 3) {
        step(s, l0, p0, pp0);
        step(s + 1, l1, p1, pp1);
        step(s + 2, l2, p2, pp2);
    }
    carry = SweepCarry{{l0, l1, l2}, {p0, p1, p2}, {pp0, pp1, pp2}};
}

BRINDLE_AVX2 void SharpenWavefrontWide::storeLanes(std::uint8_t* const* rows, int from, int to,
                                                   int base) const {
    for (int s0 = from; s0 < to; s0 += 16) {
        __m128i in[16], out[16];
        for (int k = 0; k < 16; ++k) {
            const __m256i v = at(known_, s0 + k - base);
            in[k] = _mm_packus_epi16(_mm256_castsi256_si128(v), _mm256_extracti128_si256(v, 1));
        }
        transpose(in, out);
        for (int lane = 0; lane < kLanes; ++lane) {
            const int c0 = s0 - 6 * lane;
            std::uint8_t* row = rows[1 + lane];
            if (c0 >= 6 && c0 + 16 <= bytes_ - 3) {
                _mm_storeu_si128(reinterpret_cast<__m128i*>(row + c0), out[lane]);
                continue;
            }
            alignas(16) std::uint8_t b[16];
            _mm_store_si128(reinterpret_cast<__m128i*>(b), out[lane]);
            for (int k = 0; k < 16; ++k)
                if (c0 + k >= 6 && c0 + k <= bytes_ - 4) row[c0 + k] = b[k];
        }
    }
}

// The band goes along in pieces of kPiece steps so that its lane buffers stay
// in the first-level cache; the sixteen steps the sums look ahead into the
// next piece are kept rather than transposed again.
BRINDLE_AVX2 void SharpenWavefrontWide::band(std::uint8_t* const* rows) {
    const __m256i zero = _mm256_setzero_si256();
    SumCarry sums{{zero, zero, zero}, {zero, zero, zero}};
    SweepCarry sweep{{zero, zero, zero}, {zero, zero, zero}, {zero, zero, zero}};
    const int end = (lastStep_ / 3 + 1) * 3;
    loadLanes(rows, 0, 16, 0);
    for (int base = 0; base < end; base += kPiece) {
        const int pieceEnd = std::min(base + kPiece, end);
        loadLanes(rows, base + 16, std::min(base + kPiece + 16, steps_), base);
        if (base == 0)
            for (int j = 0; j < 3; ++j)
                sums.now[j] = overAt(raw_, j, 0, rows[kLanes + 1], bytes_);
        buildSumsPiece(raw_, known_, base, pieceEnd, rows[0], rows[kLanes + 1], bytes_, centre_,
                       sums);
        sweepPiece(base, pieceEnd, sweep);
        storeLanes(rows, base, (pieceEnd + 15) / 16 * 16, base);
        std::memcpy(raw_.data(), raw_.data() + kPiece * kLanes, 16 * kLanes * sizeof(std::int16_t));
    }
}

#else

bool SharpenWavefrontWide::available() { return false; }
void SharpenWavefrontWide::band(std::uint8_t* const*) {}

#endif

}  // namespace brindle::effects
