// Picture files for wizard tests: just the start of a PNG, enough for the
// picture header reader to tell the size.
#pragma once

#include <string>

namespace brindle::test {

inline std::string pngHeader(int width, int height) {
    std::string b = "\x89PNG\r\n\x1a\n";
    b += std::string("\0\0\0\x0dIHDR", 8);
    for (int v : {width, height})
        for (int shift : {24, 16, 8, 0}) b += static_cast<char>((v >> shift) & 0xFF);
    b += std::string("\x08\x02\0\0\0", 5);
    b += std::string(4, '\0');  // the CRC, which the header reader does not check
    return b;
}

}  // namespace brindle::test
