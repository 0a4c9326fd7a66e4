// The inner work of the fast overlap search: the sums of squared
// differences of many candidate columns against one reference column, for
// all 41 vertical shifts. Exact integer arithmetic, so every kernel gives
// the sums of the plain column-at-a-time loop.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "image/dib_section.h"

namespace brindle::panorama {

// The reference column, one array per byte of a pixel (blue, green, red),
// indexed by buffer row.
using RefColumn = std::array<std::vector<int>, 3>;

enum class SumKernel {
    Portable,  // one column at a time, any processor
    Sse2,      // 8 pixels per step; every x86-64 has it
    Avx2,      // 16 pixels per step, when the processor has it
};

// The kernels this processor runs, Portable first, fastest last.
const std::vector<SumKernel>& availableKernels();
SumKernel fastestKernel();

// Fills sums[k * columns + (x - tableX0)] for the candidate columns xa..xb
// of `other` and every shift index k, where columns = sums.size() / 41.
// Row r of `other` meets ref row r + 20 - k, for r = k .. H + k - 41.
// Workers may fill disjoint column ranges of one table at the same time.
void columnSums(const cDIBSection& other, const RefColumn& ref, int tableX0, int xa, int xb,
                std::vector<std::uint64_t>& sums, SumKernel kernel = fastestKernel());

}  // namespace brindle::panorama
