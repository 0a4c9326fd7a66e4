#include "studio/step_tokens.h"

#include <charconv>

namespace brindle::studio {

namespace {
bool isSeparator(char c) { return c == '(' || c == ')' || c == ',' || c == ' '; }
}  // namespace

std::vector<std::string> splitStepLine(std::string_view line) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= line.size(); ++i) {
        if (i < line.size() && !isSeparator(line[i])) continue;
        if (i > start) parts.emplace_back(line.substr(start, i - start));
        start = i + 1;
    }
    return parts;
}

int stepInt(const std::vector<std::string>& parts, std::size_t index) {
    if (index >= parts.size()) return 0;
    const std::string& s = parts[index];
    const char* begin = s.data();
    if (!s.empty() && s[0] == '+') ++begin;
    double value = 0;
    auto [end, ec] = std::from_chars(begin, s.data() + s.size(), value);
    if (ec != std::errc() || end == begin) return 0;
    if (value > 2147483647.0) return 2147483647;
    if (value < -2147483648.0) return -2147483647 - 1;
    return static_cast<int>(value);
}

}  // namespace brindle::studio
