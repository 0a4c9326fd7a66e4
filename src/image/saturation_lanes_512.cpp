// The saturation 32 pixels at a time with byte permutes (AVX-512 VBMI). One
// two-source permute takes a plane of 32 pixels out of 96 bytes straight into
// 16-bit lanes (the high bytes zeroed by its mask); two packs and two permutes
// put the bytes back. The arithmetic is that of the 16-pixel lanes with a
// signed division by 100. A table step just before the saturation can be
// looked up on the 96 bytes as they come in (two permutes and a blend per 64
// bytes), so that the row is read and written once for both. Only the
// functions marked for AVX-512 use its instructions; the caller asks the
// processor first.
#include <array>
#include <cstdint>
#include <cstring>

#include "image/saturation_lanes.h"

#if defined(__x86_64__)
#include <immintrin.h>
#define BRINDLE_AVX512 __attribute__((target("avx512f,avx512bw,avx512vbmi")))
#endif

namespace brindle::effects {

#if defined(BRINDLE_AVX512)

bool saturationLanes512Available() {
    static const bool supported = __builtin_cpu_supports("avx512f") &&
                                  __builtin_cpu_supports("avx512bw") &&
                                  __builtin_cpu_supports("avx512vbmi");
    return supported;
}

namespace {

using Index = std::array<std::uint8_t, 64>;

// Byte 2j of the result is byte 3j + channel of the 96 pixel bytes (indices
// from 64 on select the second source); the odd bytes are zeroed by the mask.
constexpr Index splitIndex(int channel) {
    Index m{};
    for (int j = 0; j < 32; ++j) m[2 * j] = static_cast<std::uint8_t>(3 * j + channel);
    return m;
}

// Byte `half` x 64 + i of the pixels from the packs: per 128-bit part q,
// bytes 0..7 and 8..15 of the first are blue and green of pixels 8q .. 8q+7,
// bytes 0..7 of the second (index + 64) their red.
constexpr Index joinIndex(int half) {
    Index m{};
    for (int i = 0; i < 64; ++i) {
        const int k = 64 * half + i;
        if (k >= 96) break;
        const int pixel = k / 3, channel = k % 3;
        const int at = 16 * (pixel / 8) + pixel % 8;
        m[i] = static_cast<std::uint8_t>(channel == 0 ? at : channel == 1 ? at + 8 : at + 64);
    }
    return m;
}

constexpr Index kSplit0 = splitIndex(0), kSplit1 = splitIndex(1), kSplit2 = splitIndex(2);
constexpr Index kJoin0 = joinIndex(0), kJoin1 = joinIndex(1);
constexpr __mmask64 kLowBytes = 0x5555555555555555ull;

struct Lanes {
    __m512i a, b, half, hundred, divide, one, third;
    __m512i split0, split1, split2, join0, join1;
};

BRINDLE_AVX512 __m512i load(const Index& index) { return _mm512_loadu_si512(index.data()); }

// A 256-entry byte table as four registers of 64 entries.
struct Lookup {
    __m512i t0, t1, t2, t3;
};

BRINDLE_AVX512 Lookup makeLookup(const std::uint8_t* table) {
    if (!table) return Lookup{};
    return Lookup{_mm512_loadu_si512(table), _mm512_loadu_si512(table + 64),
                  _mm512_loadu_si512(table + 128), _mm512_loadu_si512(table + 192)};
}

// Each byte by its entry: the low and high halves of the table looked up
// apart, the byte's top bit choosing between them.
BRINDLE_AVX512 __m512i lookUp(__m512i v, const Lookup& t) {
    const __m512i low = _mm512_permutex2var_epi8(t.t0, v, t.t1);
    const __m512i high = _mm512_permutex2var_epi8(t.t2, v, t.t3);
    return _mm512_mask_blend_epi8(_mm512_movepi8_mask(v), low, high);
}

BRINDLE_AVX512 Lanes makeLanes(const SaturationSplit& split) {
    return Lanes{_mm512_set1_epi16(static_cast<short>(split.a)),
                 _mm512_set1_epi16(static_cast<short>(split.b)),
                 _mm512_set1_epi16(50),
                 _mm512_set1_epi16(100),
                 _mm512_set1_epi16(static_cast<short>(kSignedDivide100)),
                 _mm512_set1_epi16(1),
                 _mm512_set1_epi16(21846),
                 load(kSplit0),
                 load(kSplit1),
                 load(kSplit2),
                 load(kJoin0),
                 load(kJoin1)};
}

// One channel of 32 pixels: the new value (not yet held to 0 .. 255) and, in
// `ties`, the lanes at an exact half when the split has any. The quotient
// is signed (laneFloor100); c + q never overflows, so one saturating add
// holds the result where the clamp to 0 .. 255 gives the right byte.
template <bool Ties>
BRINDLE_AVX512 __m512i channel(__m512i c, __m512i mean, const Lanes& k, __mmask32& ties) {
    const __m512i delta = _mm512_sub_epi16(c, mean);
    const __m512i y = _mm512_add_epi16(_mm512_mullo_epi16(delta, k.b), k.half);
    const __m512i q = _mm512_srai_epi16(_mm512_mulhi_epi16(y, k.divide), 5);
    if constexpr (Ties) {
        // y a multiple of 100: q x 100 is y, or y - 100 below zero.
        const __m512i whole = _mm512_mullo_epi16(q, k.hundred);
        ties |= _mm512_cmpeq_epi16_mask(y, whole) |
                _mm512_cmpeq_epi16_mask(_mm512_sub_epi16(y, k.hundred), whole);
    }
    return _mm512_adds_epi16(_mm512_add_epi16(c, q), _mm512_mullo_epi16(delta, k.a));
}

template <int Mode>
BRINDLE_AVX512 __mmask32 selected(__m512i b, __m512i g, __m512i r) {
    switch (Mode) {
        case 1: return _mm512_cmpgt_epi16_mask(r, g) & _mm512_cmpgt_epi16_mask(r, b);
        case 2: return _mm512_cmpgt_epi16_mask(g, r) & _mm512_cmpgt_epi16_mask(g, b);
        case 4: return _mm512_cmpgt_epi16_mask(b, r) & _mm512_cmpgt_epi16_mask(b, g);
        case 3: return _mm512_cmpgt_epi16_mask(r, b) | _mm512_cmpgt_epi16_mask(g, b);
        case 5: return _mm512_cmpgt_epi16_mask(r, g) | _mm512_cmpgt_epi16_mask(b, g);
        case 6: return _mm512_cmpgt_epi16_mask(g, r) | _mm512_cmpgt_epi16_mask(b, r);
        default: return ~__mmask32{0};
    }
}

template <int Mode>
BRINDLE_AVX512 __m512i pick(__mmask32 take, __m512i old, __m512i changed) {
    if constexpr (Mode == 7) return changed;
    return _mm512_mask_blend_epi16(take, old, changed);
}

// Which of the 96 bytes at p a block reads and writes: `front` of the
// first 64, `back` of the 32 after them; `valid` the pixels among the 32.
struct Block {
    __mmask64 front, back;
    __mmask32 valid;
};

constexpr Block kWhole{~__mmask64{0}, 0xFFFFFFFFull, ~__mmask32{0}};

// The last 1 .. 31 pixels of a row, read and written through masks so that
// nothing past the row is touched.
constexpr Block tailBlock(int pixels) {
    const int bytes = 3 * pixels;
    return Block{bytes >= 64 ? ~__mmask64{0} : (__mmask64{1} << bytes) - 1,
                 bytes > 64 ? (__mmask64{1} << (bytes - 64)) - 1 : 0,
                 (__mmask32{1} << pixels) - 1};
}

struct Bytes {
    __m512i front, back;
};

BRINDLE_AVX512 Bytes loadBlock(const std::uint8_t* p, Block m) {
    return Bytes{_mm512_maskz_loadu_epi8(m.front, p), _mm512_maskz_loadu_epi8(m.back, p + 64)};
}

// The back's upper half is left undefined: no index reads it.
BRINDLE_AVX512 Bytes loadWhole(const std::uint8_t* p) {
    const __m256i back = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + 64));
    return Bytes{_mm512_loadu_si512(p), _mm512_castsi256_si512(back)};
}

BRINDLE_AVX512 void storeWhole(std::uint8_t* p, __m512i front, __m512i back) {
    __m256i low;
    std::memcpy(&low, &back, sizeof low);
    _mm512_storeu_si512(p, front);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(p + 64), low);
}

// Whole blocks read and write plainly: masked stores cost more, and a load
// that overlaps the full width of an earlier masked store (the back one
// reaches into the next block) waits for it to reach the cache.
// With `Looked`, the bytes read are first replaced by their entries in `t`;
// the ties are taken from those, as the table step would have left them.
template <int Mode, bool Ties, bool Whole, bool Looked>
BRINDLE_AVX512 void saturateBlock(std::uint8_t* p, Block m, const Lanes& k, const Lookup& t,
                                  const std::uint8_t* table) {
    Bytes in = Whole ? loadWhole(p) : loadBlock(p, m);
    if constexpr (Looked) in = Bytes{lookUp(in.front, t), lookUp(in.back, t)};
    const __m512i b = _mm512_maskz_permutex2var_epi8(kLowBytes, in.front, k.split0, in.back);
    const __m512i g = _mm512_maskz_permutex2var_epi8(kLowBytes, in.front, k.split1, in.back);
    const __m512i r = _mm512_maskz_permutex2var_epi8(kLowBytes, in.front, k.split2, in.back);
    const __m512i sum = _mm512_add_epi16(_mm512_add_epi16(b, g), _mm512_add_epi16(r, k.one));
    const __m512i mean = _mm512_mulhi_epu16(sum, k.third);
    const __mmask32 take = selected<Mode>(b, g, r);
    __mmask32 ties = 0;
    const __m512i nb = pick<Mode>(take, b, channel<Ties>(b, mean, k, ties));
    const __m512i ng = pick<Mode>(take, g, channel<Ties>(g, mean, k, ties));
    const __m512i nr = pick<Mode>(take, r, channel<Ties>(r, mean, k, ties));
    const __m512i blueGreen = _mm512_packus_epi16(nb, ng), red = _mm512_packus_epi16(nr, nr);
    const __m512i front = _mm512_permutex2var_epi8(blueGreen, k.join0, red);
    const __m512i back = _mm512_permutex2var_epi8(blueGreen, k.join1, red);
    if constexpr (Whole) {
        storeWhole(p, front, back);
    } else {
        _mm512_mask_storeu_epi8(p, m.front, front);
        _mm512_mask_storeu_epi8(p + 64, m.back, back);
    }
    if constexpr (Ties) {
        std::uint32_t half = ties & take & m.valid;
        if (half == 0) return;
        alignas(64) std::uint8_t original[128];
        _mm512_store_si512(original, in.front);
        _mm512_store_si512(original + 64, in.back);
        for (; half != 0; half &= half - 1) {
            const int i = __builtin_ctz(half);
            saturateFromTable(p + 3 * i, original + 3 * i, table);
        }
    }
}

// The rows come cold from memory and the hardware's prefetcher stops at each
// page's end, so every block asks for the bytes a page ahead (into the
// second-level cache, where the next rows wait without crowding the first).
// A prefetch never faults, past the row's end or the picture's; the address
// is reckoned as a number, as it may lie outside the buffer.
constexpr std::uintptr_t kAhead = 4096;

BRINDLE_AVX512 void fetchAhead(const std::uint8_t* p) {
    const std::uintptr_t at = reinterpret_cast<std::uintptr_t>(p) + kAhead;
    _mm_prefetch(reinterpret_cast<const char*>(at), _MM_HINT_T2);
    _mm_prefetch(reinterpret_cast<const char*>(at + 64), _MM_HINT_T2);
}

template <int Mode, bool Ties, bool Looked>
BRINDLE_AVX512 void saturateRow(std::uint8_t* row, int pixels, const SaturationSplit& split,
                                const std::uint8_t* table, const std::uint8_t* before) {
    const Lanes k = makeLanes(split);
    const Lookup t = makeLookup(before);
    int x = 0;
    for (; x + 32 <= pixels; x += 32) {
        fetchAhead(row + 3 * x);
        saturateBlock<Mode, Ties, true, Looked>(row + 3 * x, kWhole, k, t, table);
    }
    if (x < pixels)
        saturateBlock<Mode, Ties, false, Looked>(row + 3 * x, tailBlock(pixels - x), k, t, table);
}

template <int Mode>
void saturateMode(std::uint8_t* row, int pixels, const SaturationSplit& split, const std::uint8_t* table,
                  const std::uint8_t* before) {
    if (before) {
        if (split.ties)
            saturateRow<Mode, true, true>(row, pixels, split, table, before);
        else
            saturateRow<Mode, false, true>(row, pixels, split, table, before);
    } else if (split.ties) {
        saturateRow<Mode, true, false>(row, pixels, split, table, before);
    } else {
        saturateRow<Mode, false, false>(row, pixels, split, table, before);
    }
}

}  // namespace

int saturateLanes512(std::uint8_t* row, int pixels, int mode, const SaturationSplit& split,
                     const std::uint8_t* table, const std::uint8_t* before) {
    if (pixels <= 0) return 0;
    switch (mode) {
        case 1: saturateMode<1>(row, pixels, split, table, before); break;
        case 2: saturateMode<2>(row, pixels, split, table, before); break;
        case 3: saturateMode<3>(row, pixels, split, table, before); break;
        case 4: saturateMode<4>(row, pixels, split, table, before); break;
        case 5: saturateMode<5>(row, pixels, split, table, before); break;
        case 6: saturateMode<6>(row, pixels, split, table, before); break;
        case 7: saturateMode<7>(row, pixels, split, table, before); break;
        default: return 0;
    }
    return pixels;
}

#else

bool saturationLanes512Available() { return false; }

int saturateLanes512(std::uint8_t*, int, int, const SaturationSplit&, const std::uint8_t*,
                     const std::uint8_t*) {
    return 0;
}

#endif

}  // namespace brindle::effects
