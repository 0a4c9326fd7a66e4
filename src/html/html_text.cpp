#include "html/html_text.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "album/encoding.h"

namespace brindle::html {

namespace {
std::string hexComponent(unsigned v) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "%X", v);
    return (std::string(buf) + "00").substr(0, 2);
}
}  // namespace

std::string farbeHex(Color color) {
    return hexComponent(color & 0xFF) + hexComponent((color >> 8) & 0xFF) + hexComponent((color >> 16) & 0xFF);
}

std::string textZuHTML(const std::string& text) {
    std::string withBreaks;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
            withBreaks += "<br>";
            ++i;
        } else {
            withBreaks += text[i];
        }
    }
    std::string out;
    for (char c : withBreaks) out += c == ' ' ? std::string("&nbsp;") : std::string(1, c);
    return out;
}

std::string zahl(long long v) { return std::to_string(v); }

std::string ohneVorzeichen(long long v) { return std::to_string(v < 0 ? -v : v); }

std::string ohneVorzeichen(double v) {
    // Fifteen significant digits, as a number turns into text for display:
    // 101 * 1.2 is 121.2, not 121.19999999999999.
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.15g", std::fabs(v));
    return buf;
}

std::vector<std::string> specTokens(const std::string& spec) {
    std::string s = spec + "None,None,None,None,None,None";
    std::vector<std::string> tokens(1);
    for (char c : s) {
        if (c == ',' || c == '(' || c == ')') tokens.emplace_back();
        else tokens.back() += c;
    }
    return tokens;
}

bool hasFrame(const std::vector<std::string>& t) { return t.size() > 5 && t[5] == "1"; }
bool hasAnimation(const std::vector<std::string>& t) { return !t.empty() && t[0] != "None"; }

double numericValue(const std::string& text) {
    std::size_t i = text.find_first_not_of(' ');
    if (i == std::string::npos) return 0;
    const char* start = text.c_str() + i;
    char* end = nullptr;
    double v = std::strtod(start, &end);
    return end == start ? 0 : v;
}

std::string toHtmlBytes(const std::string& utf8) {
    std::string out;
    out.reserve(utf8.size());
    for (char32_t c : utf8ToUtf32(utf8)) {
        int b = unicodeToCp1252(c);
        if (b >= 0) out += static_cast<char>(b);
        else out += "&#" + std::to_string(static_cast<unsigned long>(c)) + ";";
    }
    return out;
}

}  // namespace brindle::html
