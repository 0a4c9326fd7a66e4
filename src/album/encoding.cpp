#include "album/encoding.h"

#include <array>

namespace brindle {
namespace {

// 0x80..0x9F of Windows-1252; undefined bytes keep their own value.
constexpr std::array<char16_t, 32> kHigh = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// Length of the UTF-8 sequence at s[i], or 0 when it is not valid there.
std::size_t sequenceLength(std::string_view s, std::size_t i, char32_t* cp) {
    auto b0 = static_cast<unsigned char>(s[i]);
    if (b0 < 0x80) {
        if (cp) *cp = b0;
        return 1;
    }
    std::size_t n;
    char32_t c;
    if (b0 >= 0xC2 && b0 <= 0xDF) { n = 2; c = b0 & 0x1F; }
    else if (b0 >= 0xE0 && b0 <= 0xEF) { n = 3; c = b0 & 0x0F; }
    else if (b0 >= 0xF0 && b0 <= 0xF4) { n = 4; c = b0 & 0x07; }
    else return 0;
    if (i + n > s.size()) return 0;
    for (std::size_t k = 1; k < n; ++k) {
        auto b = static_cast<unsigned char>(s[i + k]);
        if ((b & 0xC0) != 0x80) return 0;
        c = (c << 6) | (b & 0x3F);
    }
    // Overlong forms, surrogates and values past U+10FFFF are invalid.
    if ((n == 3 && c < 0x800) || (n == 4 && (c < 0x10000 || c > 0x10FFFF)) ||
        (c >= 0xD800 && c <= 0xDFFF))
        return 0;
    if (cp) *cp = c;
    return n;
}

}  // namespace

char32_t cp1252ToUnicode(unsigned char b) {
    if (b >= 0x80 && b <= 0x9F) return kHigh[b - 0x80];
    return b;
}

int unicodeToCp1252(char32_t c) {
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) return static_cast<int>(c);
    for (std::size_t i = 0; i < kHigh.size(); ++i)
        if (kHigh[i] == c) return static_cast<int>(0x80 + i);
    return -1;
}

bool isValidUtf8(std::string_view s) {
    for (std::size_t i = 0; i < s.size();) {
        std::size_t n = sequenceLength(s, i, nullptr);
        if (n == 0) return false;
        i += n;
    }
    return true;
}

void appendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

std::u32string utf8ToUtf32(std::string_view s) {
    std::u32string out;
    out.reserve(s.size());
    for (std::size_t i = 0; i < s.size();) {
        char32_t c = 0;
        std::size_t n = sequenceLength(s, i, &c);
        if (n == 0) {
            out += U'\uFFFD';
            ++i;
        } else {
            out += c;
            i += n;
        }
    }
    return out;
}

std::string decodeFileString(std::string_view bytes) {
    bool multiByte = false;
    for (char ch : bytes)
        if (static_cast<unsigned char>(ch) >= 0x80) multiByte = true;
    if (!multiByte) return std::string(bytes);
    if (isValidUtf8(bytes)) return std::string(bytes);
    std::string out;
    out.reserve(bytes.size() * 2);
    for (char ch : bytes) appendUtf8(out, cp1252ToUnicode(static_cast<unsigned char>(ch)));
    return out;
}

std::string encodeFileString(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size();) {
        char32_t c = 0;
        std::size_t n = sequenceLength(utf8, i, &c);
        int b = n ? unicodeToCp1252(c) : -1;
        if (b < 0) return std::string(utf8);  // something does not fit: keep UTF-8
        out += static_cast<char>(b);
        i += n;
    }
    // Windows-1252 bytes that happen to form UTF-8 ("Ã¾" is C3 BE, read back
    // as "þ") would come back as other characters: such a text is stored as
    // UTF-8, which reads back as itself.
    if (decodeFileString(out) != utf8) return std::string(utf8);
    return out;
}

std::size_t utf8Length(std::string_view s) { return utf8ToUtf32(s).size(); }

namespace {
std::size_t byteOffsetOfChar(std::string_view s, std::size_t chars) {
    std::size_t i = 0;
    while (chars > 0 && i < s.size()) {
        std::size_t n = sequenceLength(s, i, nullptr);
        i += n ? n : 1;
        --chars;
    }
    return i;
}
}  // namespace

std::string utf8Left(std::string_view s, std::size_t chars) {
    return std::string(s.substr(0, byteOffsetOfChar(s, chars)));
}

std::string utf8From(std::string_view s, std::size_t chars) {
    return std::string(s.substr(byteOffsetOfChar(s, chars)));
}

std::string utf8Right(std::string_view s, std::size_t chars) {
    std::size_t len = utf8Length(s);
    return chars >= len ? std::string(s) : utf8From(s, len - chars);
}

std::string utf8Lower(std::string_view s) {
    std::string out;
    out.reserve(s.size());
    for (char32_t c : utf8ToUtf32(s)) {
        if ((c >= U'A' && c <= U'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7)) c += 32;
        appendUtf8(out, c);
    }
    return out;
}

}  // namespace brindle
