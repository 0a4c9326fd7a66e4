#include "print/print_file.h"

#include <charconv>
#include <cmath>
#include <fstream>
#include <optional>

namespace brindle::print {
namespace {

constexpr std::size_t kLinesPerBox = 4;

std::string text(Language language, const char* german, const char* english) {
    return language == Language::German ? german : english;
}

// One number line: an optional sign, digits and one decimal separator ('.'
// or the German ','). Anything else (exponents, "inf", spaces) is foreign.
std::optional<float> parseNumber(std::string_view line) {
    if (line.empty() || line.size() > kMaxLineLength) return std::nullopt;
    std::string s(line);
    std::size_t digits = 0, points = 0;
    for (std::size_t i = 0; i < s.size(); ++i) {
        char& c = s[i];
        if (c >= '0' && c <= '9') ++digits;
        else if (c == '.' || c == ',') { c = '.'; ++points; }
        else if (c != '-' || i != 0) return std::nullopt;
    }
    if (digits == 0 || points > 1) return std::nullopt;
    const char* first = s.data() + (s[0] == '-' ? 1 : 0);
    float v = 0;
    const auto [end, ec] = std::from_chars(first, s.data() + s.size(), v, std::chars_format::fixed);
    if (ec != std::errc() || end != s.data() + s.size()) return std::nullopt;
    if (s[0] == '-') v = -v;
    if (!std::isfinite(v) || std::fabs(v) > kMaxCoordinate) return std::nullopt;
    // Far below a hundredth of a millimetre: zero, so that writing stays short.
    if (std::fabs(v) < 1e-6F) v = 0;
    return v;
}

// Splits into lines at LF, dropping a CR before it; a final line ending adds no line.
std::vector<std::string_view> splitLines(std::string_view bytes) {
    std::vector<std::string_view> lines;
    std::size_t start = 0;
    while (start < bytes.size()) {
        std::size_t end = bytes.find('\n', start);
        const std::size_t next = end == std::string_view::npos ? bytes.size() : end + 1;
        if (end == std::string_view::npos) end = bytes.size();
        std::string_view line = bytes.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        lines.push_back(line);
        start = next;
    }
    return lines;
}

void appendNumber(std::string& out, float v) {
    char buf[64];
    const auto [end, ec] = std::to_chars(buf, buf + sizeof buf, v, std::chars_format::fixed);
    out.append(buf, ec == std::errc() ? end : buf);
    out += "\r\n";
}

}  // namespace

std::string encodeLayout(const std::vector<Box>& boxes) {
    std::string out;
    for (const Box& b : boxes) {
        appendNumber(out, b.left);
        appendNumber(out, b.top);
        appendNumber(out, b.width);
        appendNumber(out, b.height);
    }
    return out;
}

bool decodeLayout(std::string_view bytes, std::size_t wanted, std::vector<Box>& boxes,
                  std::string& error, Language language) {
    if (bytes.size() > kMaxLayoutBytes) {
        error = text(language, "Die Datei ist zu groß für eine Druckvorlage.",
                     "The file is too large for a print layout.");
        return false;
    }
    const std::vector<std::string_view> lines = splitLines(bytes);
    const std::size_t inFile = lines.size() / kLinesPerBox;
    if (lines.empty() || (wanted == kAllBoxes && lines.size() % kLinesPerBox != 0)) {
        error = text(language, "Die Druckvorlage ist leer oder unvollständig.",
                     "The print layout is empty or incomplete.");
        return false;
    }
    const std::size_t count = wanted == kAllBoxes ? inFile : wanted;
    // Numbers first, so that a foreign file is named as such and not as short.
    std::vector<float> values;
    for (std::size_t i = 0; i < lines.size() && i < count * kLinesPerBox; ++i) {
        const std::optional<float> v = parseNumber(lines[i]);
        if (!v) {
            error = text(language, "Zeile ", "Line ") + std::to_string(i + 1) +
                    text(language, " der Druckvorlage ist keine Zahl.",
                         " of the print layout is not a number.");
            return false;
        }
        values.push_back(*v);
    }
    if (inFile < count) {
        error = text(language, "Die Druckvorlage enthält nur ", "The print layout holds only ") +
                std::to_string(inFile) +
                text(language, " Bilder, gewählt sind ", " pictures, but ") + std::to_string(count) +
                text(language, ".", " are selected.");
        return false;
    }
    std::vector<Box> read(count);
    for (std::size_t i = 0; i < count; ++i) {
        const float* v = &values[i * kLinesPerBox];
        read[i] = Box{v[0], v[1], v[2], v[3]};
    }
    boxes = std::move(read);
    return true;
}

bool saveLayoutFile(const std::string& path, const std::vector<Box>& boxes, std::string& error,
                    Language language) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    const std::string bytes = encodeLayout(boxes);
    if (out) out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) {
        error = text(language, "Die Druckvorlage kann nicht geschrieben werden: ",
                     "Cannot write the print layout: ") + path;
        return false;
    }
    return true;
}

bool loadLayoutFile(const std::string& path, std::size_t wanted, std::vector<Box>& boxes,
                    std::string& error, Language language) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error = text(language, "Die Druckvorlage kann nicht gelesen werden: ",
                     "Cannot read the print layout: ") + path;
        return false;
    }
    // One byte more than allowed is enough to tell that a file is too large.
    std::string bytes(kMaxLayoutBytes + 1, '\0');
    in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(in.gcount()));
    if (!decodeLayout(bytes, wanted, boxes, error, language)) {
        error = path + ": " + error;
        return false;
    }
    return true;
}

}  // namespace brindle::print
