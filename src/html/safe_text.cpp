#include "html/safe_text.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "album/encoding.h"

namespace brindle::html {

namespace {

// Characters a file name of the album must not carry: folder separators,
// what a URL reads as query, fragment, escape or scheme, and what Windows
// refuses in a file name.
bool unsafeInFileName(char c) {
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F || std::strchr("/\\:*?\"<>|#%", c) != nullptr;
}

// Longest stem in bytes: ".htm", ".html" or a "bs…zip" still fit in a
// file name of 255 bytes.
constexpr std::size_t kMaxStemBytes = 240;

void appendHex4(std::string& out, unsigned v) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "\\u%04X", v & 0xFFFFu);
    out += buf;
}

int hexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// Reads `digits` hex digits at `at`; -1 when they are not there.
long readHex(const std::string& s, std::size_t at, int digits) {
    if (at + static_cast<std::size_t>(digits) > s.size()) return -1;
    long v = 0;
    for (int i = 0; i < digits; ++i) {
        const int h = hexValue(s[at + static_cast<std::size_t>(i)]);
        if (h < 0) return -1;
        v = v * 16 + h;
    }
    return v;
}

}  // namespace

std::string safeFileStem(const std::string& title) {
    std::string stem;
    for (char c : title) stem += unsafeInFileName(c) ? '_' : c;
    if (stem.size() > kMaxStemBytes) {
        // Cut at a character boundary of the UTF-8 text.
        std::size_t cut = kMaxStemBytes;
        while (cut > 0 && (static_cast<unsigned char>(stem[cut]) & 0xC0) == 0x80) --cut;
        stem.resize(cut);
    }
    if (stem.empty() || stem == "." || stem == "..") stem = "_" + stem;
    return stem;
}

std::string pageFileName(const std::string& title) { return safeFileStem(title) + ".htm"; }

int albumPageCount(const AlbumRecord& album) {
    const int listed = album.pages.upper();
    return album.pageCount < listed ? std::max(0, static_cast<int>(album.pageCount)) : listed;
}

std::string attributeUrl(const std::string& url) {
    std::string out;
    for (char c : url) {
        switch (c) {
            case '"': out += "%22"; break;
            case '<': out += "%3C"; break;
            case '>': out += "%3E"; break;
            case '`': out += "%60"; break;
            default: out += c;
        }
    }
    return out;
}

std::string jsString(const std::string& utf8, char quote) {
    std::string out;
    for (char32_t c : utf8ToUtf32(utf8)) {
        if (c == static_cast<char32_t>(quote) || c == U'\\') {
            out += '\\';
            out += static_cast<char>(c);
        } else if (c == U'\r') {
            out += "\\r";
        } else if (c == U'\n') {
            out += "\\n";
        } else if (c == U'<') {
            out += "\\x3C";  // neither "</script>" nor "<!--" can stand in the file
        } else if (c < 0x20 || c == 0x7F || c == 0x2028 || c == 0x2029) {
            appendHex4(out, static_cast<unsigned>(c));
        } else if (c >= 0x80 && unicodeToCp1252(c) < 0) {
            // A script reads no character references: outside the file's
            // code page a character goes as an escape.
            if (c > 0xFFFF) {
                const unsigned v = static_cast<unsigned>(c) - 0x10000;
                appendHex4(out, 0xD800 + (v >> 10));
                appendHex4(out, 0xDC00 + (v & 0x3FF));
            } else {
                appendHex4(out, static_cast<unsigned>(c));
            }
        } else {
            appendUtf8(out, c);
        }
    }
    return out;
}

std::string jsUnescape(const std::string& s) {
    std::string out;
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (s[i] != '\\' || i + 1 == s.size()) {
            out += s[i];
            continue;
        }
        const char e = s[++i];
        long v = -1;
        if (e == 'x' && (v = readHex(s, i + 1, 2)) >= 0) {
            i += 2;
        } else if (e == 'u' && (v = readHex(s, i + 1, 4)) >= 0) {
            i += 4;
            // A surrogate pair joins into one character.
            if (v >= 0xD800 && v < 0xDC00 && i + 2 < s.size() && s[i + 1] == '\\' && s[i + 2] == 'u') {
                const long low = readHex(s, i + 3, 4);
                if (low >= 0xDC00 && low < 0xE000) {
                    v = 0x10000 + ((v - 0xD800) << 10) + (low - 0xDC00);
                    i += 6;
                }
            }
        } else if (e == 'n') {
            v = '\n';
        } else if (e == 'r') {
            v = '\r';
        } else if (e == 't') {
            v = '\t';
        } else {
            v = static_cast<unsigned char>(e);
            if (v >= 0x80) {  // a UTF-8 sequence behind the backslash stays whole
                out += e;
                continue;
            }
        }
        appendUtf8(out, static_cast<char32_t>(v));
    }
    return out;
}

}  // namespace brindle::html
