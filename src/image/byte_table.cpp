#include "image/byte_table.h"

#include <cstring>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace brindle {
namespace {

#if defined(__x86_64__)
// Processors with byte permutes look up 64 bytes in a few instructions:
// two 128-entry lookups, chosen between by each byte's top bit.
__attribute__((target("avx512f,avx512bw,avx512vbmi"))) void applyWide(std::uint8_t* p,
                                                                      std::size_t n,
                                                                      const std::uint8_t* table) {
    const __m512i t0 = _mm512_loadu_si512(table), t1 = _mm512_loadu_si512(table + 64);
    const __m512i t2 = _mm512_loadu_si512(table + 128), t3 = _mm512_loadu_si512(table + 192);
    std::size_t i = 0;
    for (; i + 64 <= n; i += 64) {
        const __m512i v = _mm512_loadu_si512(p + i);
        const __m512i low = _mm512_permutex2var_epi8(t0, v, t1);
        const __m512i high = _mm512_permutex2var_epi8(t2, v, t3);
        _mm512_storeu_si512(p + i, _mm512_mask_blend_epi8(_mm512_movepi8_mask(v), low, high));
    }
    for (; i < n; ++i) p[i] = table[p[i]];
}

bool wideSupported() {
    static const bool supported = __builtin_cpu_supports("avx512f") &&
                                  __builtin_cpu_supports("avx512bw") &&
                                  __builtin_cpu_supports("avx512vbmi");
    return supported;
}
#else
void applyWide(std::uint8_t*, std::size_t, const std::uint8_t*) {}
bool wideSupported() { return false; }
#endif

}  // namespace

ByteTable::ByteTable(const std::uint8_t (&table)[256], bool allowWide)
    : wide_(allowWide && wideSupported()) {
    std::memcpy(table_, table, sizeof table_);
    if (wide_) return;
    // Two bytes per lookup through a 65536-entry table of pairs, which stays
    // in the second-level cache.
    pairs_ = new std::uint16_t[65536];
    for (int hi = 0; hi < 256; ++hi)
        for (int lo = 0; lo < 256; ++lo)
            pairs_[hi << 8 | lo] = static_cast<std::uint16_t>(table[lo] | table[hi] << 8);
}

ByteTable::~ByteTable() { delete[] pairs_; }

void ByteTable::apply(std::uint8_t* p, std::size_t n) const {
    if (wide_) return applyWide(p, n, table_);
    const std::uint16_t* t = pairs_;
    std::size_t i = 0;
    for (; i + 8 <= n; i += 8) {
        std::uint64_t v;
        std::memcpy(&v, p + i, 8);
        v = static_cast<std::uint64_t>(t[v & 0xFFFF]) |
            static_cast<std::uint64_t>(t[(v >> 16) & 0xFFFF]) << 16 |
            static_cast<std::uint64_t>(t[(v >> 32) & 0xFFFF]) << 32 |
            static_cast<std::uint64_t>(t[v >> 48]) << 48;
        std::memcpy(p + i, &v, 8);
    }
    for (; i < n; ++i) p[i] = table_[p[i]];
}

}  // namespace brindle
