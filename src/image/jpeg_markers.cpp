#include "image/jpeg_markers.h"

#include <functional>
#include <utility>

namespace brindle {
namespace {

constexpr unsigned char kApp0 = 0xE0, kApp1 = 0xE1, kApp14 = 0xEE, kApp15 = 0xEF, kComment = 0xFE,
                        kStartOfScan = 0xDA, kEndOfImage = 0xD9;
constexpr std::string_view kExifHead("Exif\0\0", 6);
constexpr std::string_view kJfifHead("JFIF\0", 5);

unsigned char at(std::string_view b, std::size_t i) { return static_cast<unsigned char>(b[i]); }

bool startsWithSoi(std::string_view b) { return b.size() >= 2 && at(b, 0) == 0xFF && at(b, 1) == 0xD8; }

struct Segment {
    unsigned char code = 0;
    std::size_t start = 0;  // the 0xFF of the marker
    std::size_t end = 0;    // one past the payload
    std::string_view payload;
};

// Calls `visit` for each head segment with a length until it returns false,
// the scan starts, or the bytes run out or stop making sense.
void walkHead(std::string_view b, const std::function<bool(const Segment&)>& visit) {
    if (!startsWithSoi(b)) return;
    std::size_t pos = 2;
    while (pos + 2 <= b.size()) {
        if (at(b, pos) != 0xFF) return;
        const unsigned char code = at(b, pos + 1);
        if (code == 0xFF) {  // fill byte
            ++pos;
            continue;
        }
        if (code == 0x01 || (code >= 0xD0 && code <= 0xD7)) {
            pos += 2;
            continue;
        }
        if (code == kStartOfScan || code == kEndOfImage || code == 0xD8 || pos + 4 > b.size())
            return;
        const std::size_t length = (std::size_t{at(b, pos + 2)} << 8) | at(b, pos + 3);
        if (length < 2 || pos + 2 + length > b.size()) return;
        const Segment s{code, pos, pos + 2 + length, b.substr(pos + 4, length - 2)};
        if (!visit(s)) return;
        pos = s.end;
    }
}

bool isExif(const Segment& s) { return s.code == kApp1 && s.payload.substr(0, 6) == kExifHead; }
bool isJfif(const Segment& s) { return s.code == kApp0 && s.payload.substr(0, 5) == kJfifHead; }

// Where new head segments go: after the start of image and a leading JFIF
// segment (EXIF readers expect the block first, JFIF readers want theirs).
std::size_t insertionPoint(std::string_view b) {
    std::size_t point = 2;
    walkHead(b, [&](const Segment& s) {
        if (s.start == 2 && isJfif(s)) point = s.end;
        return false;
    });
    return point;
}

std::string segment(unsigned char code, std::string_view head, std::string_view payload) {
    const std::size_t length = head.size() + payload.size() + 2;
    std::string s;
    s.reserve(length + 2);
    s += '\xFF';
    s += static_cast<char>(code);
    s += static_cast<char>(length >> 8);
    s += static_cast<char>(length & 0xFF);
    s += head;
    s += payload;
    return s;
}

}  // namespace

std::vector<std::string_view> headSegments(std::string_view jpeg, unsigned char code) {
    std::vector<std::string_view> found;
    walkHead(jpeg, [&](const Segment& s) {
        if (s.code == code) found.push_back(s.payload);
        return true;
    });
    return found;
}

std::string_view findExifTiff(std::string_view jpeg) {
    std::string_view tiff;
    walkHead(jpeg, [&](const Segment& s) {
        if (!isExif(s)) return true;
        tiff = s.payload.substr(kExifHead.size());
        return false;
    });
    return tiff;
}

std::string replaceExifBlock(std::string_view jpeg, std::string_view tiff) {
    if (!startsWithSoi(jpeg)) return std::string(jpeg);
    std::string out(jpeg);
    // Remove from the back so earlier offsets stay right.
    std::vector<Segment> exifs;
    walkHead(jpeg, [&](const Segment& s) {
        if (isExif(s)) exifs.push_back(s);
        return true;
    });
    for (auto it = exifs.rbegin(); it != exifs.rend(); ++it)
        out.erase(it->start, it->end - it->start);
    if (tiff.empty() || tiff.size() + kExifHead.size() > kMaxSegmentPayload) return out;
    out.insert(insertionPoint(out), segment(kApp1, kExifHead, tiff));
    return out;
}

std::string carriedSegments(std::string_view jpeg) {
    std::string out;
    walkHead(jpeg, [&](const Segment& s) {
        const bool app = s.code >= kApp0 && s.code <= kApp15;
        if ((app && s.code != kApp0 && s.code != kApp14 && !isExif(s)) || s.code == kComment)
            out.append(jpeg.substr(s.start, s.end - s.start));
        return true;
    });
    return out;
}

std::string insertSegments(std::string_view jpeg, std::string_view segments) {
    std::string out(jpeg);
    if (segments.empty() || !startsWithSoi(jpeg)) return out;
    std::size_t point = insertionPoint(jpeg);
    walkHead(jpeg, [&](const Segment& s) {
        if (s.start == point && isExif(s)) point = s.end;
        return s.end <= point;
    });
    out.insert(point, segments);
    return out;
}

namespace {

constexpr std::string_view kXmpHead("http://ns.adobe.com/xap/1.0/\0", 29);

// Sets every single-digit orientation value after `key` in `text` to 1.
void uprightAfter(std::string& text, std::size_t from, std::size_t to, std::string_view key,
                  char close) {
    for (std::size_t i = text.find(key, from); i != std::string::npos && i < to;
         i = text.find(key, i + 1)) {
        const std::size_t digit = i + key.size();
        if (digit + 1 < to && text[digit] >= '1' && text[digit] <= '8' && text[digit + 1] == close)
            text[digit] = '1';
    }
}

}  // namespace

std::string uprightXmpOrientation(std::string jpeg) {
    std::vector<std::pair<std::size_t, std::size_t>> xmp;
    walkHead(jpeg, [&](const Segment& s) {
        if (s.code == kApp1 && s.payload.substr(0, kXmpHead.size()) == kXmpHead)
            xmp.emplace_back(s.start, s.end);
        return true;
    });
    // Same length in place: the segment lengths stay right.
    for (const auto& [from, to] : xmp) {
        uprightAfter(jpeg, from, to, "tiff:Orientation=\"", '"');
        uprightAfter(jpeg, from, to, "tiff:Orientation='", '\'');
        uprightAfter(jpeg, from, to, "<tiff:Orientation>", '<');
    }
    return jpeg;
}

}  // namespace brindle
