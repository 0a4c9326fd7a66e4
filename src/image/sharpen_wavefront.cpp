// Lane i of step s holds byte c = s - 6i of band row i. Row i's byte c needs
// bytes c - 3, c and c + 3 of row i - 1 (steps s - 9, s - 6, s - 3, one lane
// down) and its own byte c - 3 (step s - 3): all from earlier steps, so a
// step is one vector operation. Steps s, s + 1 and s + 2 are independent
// chains (the three channels), which hides the latency of each step.
#include "image/sharpen_wavefront.h"

#include <emmintrin.h>

#include <cstring>

namespace brindle::effects {

bool findLaneDivision(int divisor, int maxNumerator, LaneDivision& out) {
    if (divisor < 1 || maxNumerator < 0 || maxNumerator > 32767) return false;
    for (int shift = 0; shift < 16; ++shift) {
        const long long scale = 1LL << (16 + shift);
        const long long multiplier = (scale + divisor - 1) / divisor;
        if (multiplier > 65535) continue;
        bool exact = true;
        for (long long n = 0; n <= maxNumerator && exact; ++n)
            exact = ((n * multiplier) >> (16 + shift)) == n / divisor;
        if (!exact) continue;
        out.multiplier = static_cast<int>(multiplier);
        out.shift = shift;
        return true;
    }
    return false;
}

bool prepareLaneStrength(int strength, int width, LaneDivision& division, int& centre) {
    const long long c = static_cast<long long>(strength) + 24;
    const long long divisor = static_cast<long long>(strength) + 8;
    // The largest sum is 255 x centre; the smallest stays above -6000.
    if (divisor < 1 || c < 0 || 255 * c > 32767 || width < 4) return false;
    if (!findLaneDivision(static_cast<int>(divisor), static_cast<int>(255 * c), division))
        return false;
    centre = static_cast<int>(c);
    return true;
}

bool SharpenWavefront::prepare(int strength, int width) {
    if (!prepareLaneStrength(strength, width, division_, centre_)) return false;
    width_ = width;
    bytes_ = width * 3;
    lastStep_ = bytes_ - 4 + 6 * (kLanes - 1);
    steps_ = (lastStep_ + 1 + 16 + 7) / 8 * 8;
    const std::size_t size = static_cast<std::size_t>(steps_) * kLanes;
    raw_.assign(size, 0);
    known_.assign(size, 0);
    out_.assign(size, 0);
    return true;
}

namespace {

__m128i at(std::vector<std::int16_t>& v, int step) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(v.data() + step * 8));
}

__m128i at(const std::vector<std::int16_t>& v, int step) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(v.data() + step * 8));
}

void put(std::vector<std::int16_t>& v, int step, __m128i x) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(v.data() + step * 8), x);
}

// Eight bytes of a row from `offset`, zeros outside 0 .. bytes - 1.
__m128i loadEdge(const std::uint8_t* row, int offset, int bytes) {
    std::uint8_t b[8] = {};
    for (int k = 0; k < 8; ++k)
        if (offset + k >= 0 && offset + k < bytes) b[k] = row[offset + k];
    return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(b));
}

inline __m128i loadEight(const std::uint8_t* row, int offset, int bytes) {
    if (offset >= 0 && offset + 8 <= bytes)
        return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(row + offset));
    return loadEdge(row, offset, bytes);
}

// An 8x8 byte transpose: wJ holds rows 2J and 2J + 1 (eight bytes each);
// the results hold columns 0|1, 2|3, 4|5 and 6|7.
void transpose(const __m128i w[4], __m128i o[4]) {
    const __m128i a = _mm_unpacklo_epi8(w[0], w[1]), b = _mm_unpackhi_epi8(w[0], w[1]);
    const __m128i c = _mm_unpacklo_epi8(w[2], w[3]), d = _mm_unpackhi_epi8(w[2], w[3]);
    const __m128i e = _mm_unpacklo_epi8(a, b), f = _mm_unpackhi_epi8(a, b);
    const __m128i g = _mm_unpacklo_epi8(c, d), h = _mm_unpackhi_epi8(c, d);
    o[0] = _mm_unpacklo_epi32(e, g);
    o[1] = _mm_unpackhi_epi32(e, g);
    o[2] = _mm_unpacklo_epi32(f, h);
    o[3] = _mm_unpackhi_epi32(f, h);
}

}  // namespace

void SharpenWavefront::loadLanes(std::uint8_t* const* rows) {
    const __m128i zero = _mm_setzero_si128();
    for (int s0 = 0; s0 < steps_; s0 += 8) {
        __m128i w[4], o[4];
        for (int j = 0; j < 4; ++j) {
            const int lane = 2 * j;
            w[j] = _mm_unpacklo_epi64(loadEight(rows[1 + lane], s0 - 6 * lane, bytes_),
                                      loadEight(rows[2 + lane], s0 - 6 * (lane + 1), bytes_));
        }
        transpose(w, o);
        for (int j = 0; j < 4; ++j) {
            put(raw_, s0 + 2 * j, _mm_unpacklo_epi8(o[j], zero));
            put(raw_, s0 + 2 * j + 1, _mm_unpackhi_epi8(o[j], zero));
        }
    }
}

// Everything but the sharpened neighbours of this band:
// centre x c - 2 x (right + the three above), and in lane 0 also the three
// below, which the band before has finished.
void SharpenWavefront::buildSums(const std::uint8_t* below, const std::uint8_t* above) {
    const int aboveSkew = 6 * (kLanes - 1);
    // The row above lane i at step t: lane i + 1's raw bytes, and for the
    // top lane the row above the band.
    const auto over = [&](int t) {
        const int c = t - aboveSkew;
        const int top = c >= 0 && c < bytes_ ? above[c] : 0;
        return _mm_insert_epi16(_mm_srli_si128(at(raw_, t + 6), 2), top, kLanes - 1);
    };
    const __m128i centre = _mm_set1_epi16(static_cast<short>(centre_));
    const __m128i zero = _mm_setzero_si128();
    // `now` and `back` are the rows above at steps s and s - 3 of one chain.
    const auto step = [&](int s, __m128i& now, __m128i& back) {
        const int below3 =
            s >= 6 && s <= bytes_ - 4 ? below[s - 3] + below[s] + below[s + 3] : 0;
        const __m128i ahead = over(s + 3);
        __m128i sum = _mm_add_epi16(at(raw_, s + 3), _mm_cvtsi32_si128(below3));
        sum = _mm_add_epi16(sum, _mm_add_epi16(_mm_add_epi16(back, now), ahead));
        put(known_, s, _mm_sub_epi16(_mm_mullo_epi16(at(raw_, s), centre), _mm_slli_epi16(sum, 1)));
        back = now;
        now = ahead;
    };
    __m128i n0 = over(0), n1 = over(1), n2 = over(2), b0 = zero, b1 = zero, b2 = zero;
    // raw_ has room past the last step for whole triples.
    for (int s = 0; s <= lastStep_; s += 3) {
        step(s, n0, b0);
        step(s + 1, n1, b1);
        step(s + 2, n2, b2);
    }
}

void SharpenWavefront::sweep() {
    const __m128i multiplier = _mm_set1_epi16(static_cast<short>(division_.multiplier));
    const __m128i shift = _mm_cvtsi32_si128(division_.shift);
    const __m128i zero = _mm_setzero_si128();
    const __m128i top = _mm_set1_epi16(255);
    const int firstFull = 6 + 6 * (kLanes - 1), lastFull = bytes_ - 4;
    // Lanes outside 6 .. bytes - 4 keep their byte: both limits are the byte.
    const auto limits = [&](int s, __m128i& low, __m128i& high) {
        alignas(16) std::int16_t inside[kLanes];
        for (int i = 0; i < kLanes; ++i) {
            const int c = s - 6 * i;
            inside[i] = c >= 6 && c <= lastFull ? -1 : 0;
        }
        const __m128i mask = _mm_load_si128(reinterpret_cast<const __m128i*>(inside));
        low = _mm_andnot_si128(mask, at(raw_, s));
        high = _mm_or_si128(low, _mm_and_si128(mask, top));
    };
    // One step of one chain; `last`, `prev` and `prevprev` are its outputs
    // three, six and nine steps back.
    const auto step = [&](int s, __m128i& last, __m128i& prev, __m128i& prevprev) {
        const __m128i l = last;
        // Lane i - 1's bytes c - 3, c and c + 3, moved up one lane, and the left one.
        const __m128i down = _mm_add_epi16(l, _mm_add_epi16(prev, prevprev));
        const __m128i x = _mm_add_epi16(_mm_slli_si128(down, 2), l);
        __m128i n = _mm_sub_epi16(at(known_, s), _mm_add_epi16(x, x));
        n = _mm_max_epi16(n, zero);
        __m128i q = _mm_srl_epi16(_mm_mulhi_epu16(n, multiplier), shift);
        if (s >= firstFull && s <= lastFull) {
            q = _mm_min_epi16(q, top);
        } else {
            __m128i low, high;
            limits(s, low, high);
            q = _mm_max_epi16(_mm_min_epi16(q, high), low);
        }
        put(out_, s, q);
        prevprev = prev;
        prev = l;
        last = q;
    };
    __m128i l0 = zero, l1 = zero, l2 = zero, p0 = zero, p1 = zero, p2 = zero, pp0 = zero,
            pp1 = zero, pp2 = zero;
    // known_ has room past the last step, so whole triples may run.
    for (int s = 0; s <= lastStep_; s += 3) {
        step(s, l0, p0, pp0);
        step(s + 1, l1, p1, pp1);
        step(s + 2, l2, p2, pp2);
    }
}

void SharpenWavefront::storeLanes(std::uint8_t* const* rows) const {
    for (int s0 = 0; s0 < steps_; s0 += 8) {
        __m128i w[4], o[4];
        for (int j = 0; j < 4; ++j)
            w[j] = _mm_packus_epi16(at(out_, s0 + 2 * j), at(out_, s0 + 2 * j + 1));
        transpose(w, o);
        for (int j = 0; j < 4; ++j) {
            for (int half = 0; half < 2; ++half) {
                const int lane = 2 * j + half;
                const int c0 = s0 - 6 * lane;
                std::uint8_t* row = rows[1 + lane];
                const __m128i v = half ? _mm_srli_si128(o[j], 8) : o[j];
                if (c0 >= 6 && c0 + 8 <= bytes_ - 3) {
                    _mm_storel_epi64(reinterpret_cast<__m128i*>(row + c0), v);
                    continue;
                }
                alignas(16) std::uint8_t b[16];
                _mm_store_si128(reinterpret_cast<__m128i*>(b), v);
                for (int k = 0; k < 8; ++k)
                    if (c0 + k >= 6 && c0 + k <= bytes_ - 4) row[c0 + k] = b[k];
            }
        }
    }
}

void SharpenWavefront::band(std::uint8_t* const* rows) {
    loadLanes(rows);
    buildSums(rows[0], rows[kLanes + 1]);
    sweep();
    storeLanes(rows);
}

}  // namespace brindle::effects
