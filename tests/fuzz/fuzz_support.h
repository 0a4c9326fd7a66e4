#pragma once

#include <string>
#include <string_view>

namespace brindle::fuzz {

// A file head (format, empty contact) followed by the fuzzer's bytes.
inline std::string withHead(std::string_view format, std::string_view rest) {
    std::string s;
    s += static_cast<char>(format.size() & 0xFF);
    s += static_cast<char>(format.size() >> 8);
    s += format;
    s += std::string(2, '\0');
    s += rest;
    return s;
}

}  // namespace brindle::fuzz
