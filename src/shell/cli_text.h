// Small text helpers of the brindlesee-cli commands.
#pragma once

#include <charconv>
#include <string>

namespace brindle::cli {

// The core's texts may hold line breaks; a command prints one line: CRs
// dropped, each LF a single blank.
inline std::string oneLine(const std::string& text) {
    std::string out;
    for (char c : text) {
        if (c == '\r') continue;
        if (c == '\n') {
            if (!out.empty() && out.back() != ' ') out += ' ';
            continue;
        }
        out += c;
    }
    return out;
}

// Every CR and LF a blank, so the text keeps its length.
inline std::string blankLineBreaks(std::string text) {
    for (char& c : text)
        if (c == '\r' || c == '\n') c = ' ';
    return text;
}

// The whole of `s` as a decimal int.
inline bool parseInt(const std::string& s, int& value) {
    const char* end = s.data() + s.size();
    auto [p, ec] = std::from_chars(s.data(), end, value);
    return ec == std::errc() && p == end;
}

}  // namespace brindle::cli
