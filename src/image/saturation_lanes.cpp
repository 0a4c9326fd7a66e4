// Only the functions marked for AVX2 use its instructions; the caller asks
// the processor first.
#include "image/saturation_lanes.h"

#include <array>
#include <cstring>

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define BRINDLE_AVX2 __attribute__((target("avx2")))
#endif

namespace brindle::effects {

bool splitSaturation(int percent, SaturationSplit& out) {
    if (percent < -12800 || percent > 12899) return false;
    const int a = percent >= 0 ? percent / 100 : -((99 - percent) / 100);
    if (a < -128 || a > 128) return false;
    out.a = a;
    out.b = percent - 100 * a;
    out.ties = false;
    for (int delta = -255; delta <= 255 && !out.ties; ++delta)
        out.ties = ((delta * out.b + 50) % 100 + 100) % 100 == 0;
    return true;
}

void saturateFromTable(std::uint8_t* p, const std::uint8_t* original, const std::uint8_t* table) {
    const int b = original[0], g = original[1], r = original[2];
    const std::uint8_t* row = table + laneThird(b + g + r) * 256;
    p[0] = row[b];
    p[1] = row[g];
    p[2] = row[r];
}

#if defined(BRINDLE_AVX2)

bool saturationLanesAvailable() { return __builtin_cpu_supports("avx2"); }

namespace {

using Mask = std::array<std::int8_t, 16>;

// Byte j of plane `channel` from the 16-byte part `part` of 48 bytes of
// blue-green-red pixels (-128: not in this part).
constexpr Mask splitMask(int channel, int part) {
    Mask m{};
    for (int j = 0; j < 16; ++j) {
        const int at = 3 * j + channel - 16 * part;
        m[j] = static_cast<std::int8_t>(at >= 0 && at < 16 ? at : -128);
    }
    return m;
}

// Byte j of the 16-byte part `part` of the pixels, from plane `channel`.
constexpr Mask joinMask(int channel, int part) {
    Mask m{};
    for (int j = 0; j < 16; ++j) {
        const int g = 16 * part + j;
        m[j] = static_cast<std::int8_t>(g % 3 == channel ? g / 3 : -128);
    }
    return m;
}

template <int Channel, int Part>
constexpr Mask kSplit = splitMask(Channel, Part);
template <int Channel, int Part>
constexpr Mask kJoin = joinMask(Channel, Part);

template <const Mask& M>
BRINDLE_AVX2 __m128i shuffle(__m128i v) {
    return _mm_shuffle_epi8(v, _mm_loadu_si128(reinterpret_cast<const __m128i*>(M.data())));
}

template <int C>
BRINDLE_AVX2 __m128i plane(__m128i p0, __m128i p1, __m128i p2) {
    return _mm_or_si128(_mm_or_si128(shuffle<kSplit<C, 0>>(p0), shuffle<kSplit<C, 1>>(p1)),
                        shuffle<kSplit<C, 2>>(p2));
}

template <int Part>
BRINDLE_AVX2 __m128i part(__m128i b, __m128i g, __m128i r) {
    return _mm_or_si128(_mm_or_si128(shuffle<kJoin<0, Part>>(b), shuffle<kJoin<1, Part>>(g)),
                        shuffle<kJoin<2, Part>>(r));
}

struct Lanes {
    __m256i a, b, offset, bias, hundred, divide;
};

// One channel of 16 pixels in 16-bit lanes: the new value (not yet held
// to 0 .. 255) and, in `ties`, the lanes at an exact half.
BRINDLE_AVX2 __m256i channel(__m256i c, __m256i mean, const Lanes& k, __m256i& ties) {
    const __m256i delta = _mm256_sub_epi16(c, mean);
    const __m256i x = _mm256_add_epi16(_mm256_mullo_epi16(delta, k.b), k.offset);
    const __m256i q = _mm256_srli_epi16(_mm256_mulhi_epu16(_mm256_srli_epi16(x, 2), k.divide), 4);
    ties = _mm256_or_si256(ties, _mm256_cmpeq_epi16(x, _mm256_mullo_epi16(q, k.hundred)));
    const __m256i change = _mm256_adds_epi16(_mm256_mullo_epi16(delta, k.a), _mm256_sub_epi16(q, k.bias));
    return _mm256_adds_epi16(c, change);
}

BRINDLE_AVX2 inline __m256i gt(__m256i x, __m256i y) { return _mm256_cmpgt_epi16(x, y); }

template <int Mode>
BRINDLE_AVX2 __m256i selected(__m256i b, __m256i g, __m256i r) {
    switch (Mode) {
        case 1: return _mm256_and_si256(gt(r, g), gt(r, b));
        case 2: return _mm256_and_si256(gt(g, r), gt(g, b));
        case 4: return _mm256_and_si256(gt(b, r), gt(b, g));
        case 3: return _mm256_or_si256(gt(r, b), gt(g, b));
        case 5: return _mm256_or_si256(gt(r, g), gt(b, g));
        case 6: return _mm256_or_si256(gt(g, r), gt(b, r));
        default: return _mm256_set1_epi16(-1);
    }
}

// 16 channel values back to bytes 0 .. 255.
BRINDLE_AVX2 __m128i toBytes(__m256i v) {
    const __m256i packed = _mm256_packus_epi16(v, v);
    return _mm256_castsi256_si128(_mm256_permute4x64_epi64(packed, 0x08));
}

template <int Mode>
BRINDLE_AVX2 int saturateMode(std::uint8_t* row, int pixels, const SaturationSplit& split,
                              const std::uint8_t* table) {
    const Lanes k{_mm256_set1_epi16(static_cast<short>(split.a)),
                  _mm256_set1_epi16(static_cast<short>(split.b)),
                  _mm256_set1_epi16(static_cast<short>(25650)),
                  _mm256_set1_epi16(256),
                  _mm256_set1_epi16(100),
                  _mm256_set1_epi16(static_cast<short>(41944))};
    const __m256i one = _mm256_set1_epi16(1), third = _mm256_set1_epi16(21846);
    int x = 0;
    for (; x + 16 <= pixels; x += 16) {
        std::uint8_t* p = row + 3 * x;
        const __m128i p0 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        const __m128i p1 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16));
        const __m128i p2 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 32));
        const __m256i b = _mm256_cvtepu8_epi16(plane<0>(p0, p1, p2));
        const __m256i g = _mm256_cvtepu8_epi16(plane<1>(p0, p1, p2));
        const __m256i r = _mm256_cvtepu8_epi16(plane<2>(p0, p1, p2));
        const __m256i sum = _mm256_add_epi16(_mm256_add_epi16(b, g), _mm256_add_epi16(r, one));
        const __m256i mean = _mm256_mulhi_epu16(sum, third);
        __m256i ties = _mm256_setzero_si256();
        const __m256i take = selected<Mode>(b, g, r);
        const __m256i nb = _mm256_blendv_epi8(b, channel(b, mean, k, ties), take);
        const __m256i ng = _mm256_blendv_epi8(g, channel(g, mean, k, ties), take);
        const __m256i nr = _mm256_blendv_epi8(r, channel(r, mean, k, ties), take);
        const __m128i ob = toBytes(nb), og = toBytes(ng), orr = toBytes(nr);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p), part<0>(ob, og, orr));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p + 16), part<1>(ob, og, orr));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p + 32), part<2>(ob, og, orr));
        if (!split.ties) continue;
        const unsigned half = static_cast<unsigned>(
            _mm256_movemask_epi8(_mm256_and_si256(ties, take)));
        if (half == 0) continue;
        std::uint8_t original[48];
        _mm_storeu_si128(reinterpret_cast<__m128i*>(original), p0);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(original + 16), p1);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(original + 32), p2);
        for (int i = 0; i < 16; ++i)
            if (half & (3u << (2 * i))) saturateFromTable(p + 3 * i, original + 3 * i, table);
    }
    return x;
}

}  // namespace

int saturateLanes(std::uint8_t* row, int pixels, int mode, const SaturationSplit& split,
                  const std::uint8_t* table) {
    switch (mode) {
        case 1: return saturateMode<1>(row, pixels, split, table);
        case 2: return saturateMode<2>(row, pixels, split, table);
        case 3: return saturateMode<3>(row, pixels, split, table);
        case 4: return saturateMode<4>(row, pixels, split, table);
        case 5: return saturateMode<5>(row, pixels, split, table);
        case 6: return saturateMode<6>(row, pixels, split, table);
        case 7: return saturateMode<7>(row, pixels, split, table);
        default: return 0;
    }
}

#else

bool saturationLanesAvailable() { return false; }

int saturateLanes(std::uint8_t*, int, int, const SaturationSplit&, const std::uint8_t*) { return 0; }

#endif

}  // namespace brindle::effects
