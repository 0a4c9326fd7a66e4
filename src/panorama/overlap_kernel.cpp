#include "panorama/overlap_kernel.h"

#include <algorithm>

#include "panorama/overlap_kernel_blocks.h"
#include "panorama/overlap_search.h"

namespace brindle::panorama {

namespace {

std::uint64_t columnSum(const cDIBSection& other, const RefColumn& ref, int x, int k, int rows) {
    std::uint64_t sum = 0;
    for (int j = 0; j < rows; ++j) {
        const std::uint8_t* p = other.rowBits(j + k) + 3 * x;
        const std::size_t q = static_cast<std::size_t>(j + kMaxShift);
        const int d0 = p[0] - ref[0][q];
        const int d1 = p[1] - ref[1][q];
        const int d2 = p[2] - ref[2][q];
        sum += static_cast<std::uint32_t>(d0 * d0 + d1 * d1 + d2 * d2);
    }
    return sum;
}

std::vector<SumKernel> probeKernels() {
    std::vector<SumKernel> kernels{SumKernel::Portable};
#if defined(__x86_64__) || defined(__i386__)
#if defined(__SSE2__)
    kernels.push_back(SumKernel::Sse2);
#endif
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx2")) kernels.push_back(SumKernel::Avx2);
#endif
    return kernels;
}

}  // namespace

const std::vector<SumKernel>& availableKernels() {
    static const std::vector<SumKernel> kernels = probeKernels();
    return kernels;
}

SumKernel fastestKernel() { return availableKernels().back(); }

void columnSums(const cDIBSection& other, const RefColumn& ref, int tableX0, int xa, int xb,
                std::vector<std::uint64_t>& sums, SumKernel kernel) {
    const detail::SumTable table{sums.data(), sums.size() / kShiftCount, tableX0};
    const int rows = std::max(0, other.Height() - (kShiftCount - 1));
    int x = xa;
    if (kernel == SumKernel::Avx2) x = detail::avx2Blocks(other, ref, rows, x, xb, table);
    if (kernel != SumKernel::Portable) x = detail::sse2Blocks(other, ref, rows, x, xb, table);
    for (; x <= xb; ++x)
        for (int k = 0; k < kShiftCount; ++k) *table.at(k, x) = columnSum(other, ref, x, k, rows);
}

}  // namespace brindle::panorama
