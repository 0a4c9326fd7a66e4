// The wide kernels of overlap_kernel.cpp, each in its own file so that
// only its own functions are built for its instruction set.
#pragma once

#include <cstdint>

#include "image/dib_section.h"
#include "panorama/overlap_kernel.h"

namespace brindle::panorama::detail {

// Where the sums of the columns go.
struct SumTable {
    std::uint64_t* sums;
    std::size_t columns;
    int tableX0;
    std::uint64_t* at(int k, int x) const {
        return sums + static_cast<std::size_t>(k) * columns + static_cast<std::size_t>(x - tableX0);
    }
};

// 32-bit lanes hold at most this many squares of byte differences
// (65536 x 255 x 255 < 2^32); taller columns are summed in slices.
inline constexpr int kRowsPerSlice = 65536;

// Each fills whole blocks of columns from xa on and returns the first
// column it left for the plain loop. The block loops keep the shift
// innermost, so that the rows of one narrow strip stay in the cache for
// all 41 shifts.
int sse2Blocks(const cDIBSection& other, const RefColumn& ref, int rows, int xa, int xb,
               const SumTable& out);
int avx2Blocks(const cDIBSection& other, const RefColumn& ref, int rows, int xa, int xb,
               const SumTable& out);

}  // namespace brindle::panorama::detail
