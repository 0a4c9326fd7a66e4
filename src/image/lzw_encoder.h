// The variable-width LZW coder of GIF image data. Codes are packed low bit
// first. With a minimum code size of 8: clear code 256, end code 257, new
// strings from 258, codes start 9 bits wide and grow with the table up to
// 12 bits; when all 4096 codes are taken, a clear code starts a new table.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace brindle {

struct LzwStats {
    int widestCode = 0;  // in bits; never above 12
    int clearCodes = 0;  // including the one at the start
    std::size_t codes = 0;
};

// Codes `indices` (each below 2^minCodeSize) into the packed bit stream,
// without the sub-block framing.
std::vector<std::uint8_t> lzwEncode(const std::uint8_t* indices, std::size_t count,
                                    int minCodeSize = 8, LzwStats* stats = nullptr);

}  // namespace brindle
