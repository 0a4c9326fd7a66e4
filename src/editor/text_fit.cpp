#include "editor/text_fit.h"

#include "album/encoding.h"

namespace brindle::editor {

int fontSizeOf(const FontSpec& font) { return font.size > 0 ? font.size : 9; }

std::string fontNameOf(const FontSpec& font) { return font.name.empty() ? "Arial" : font.name; }

FontFit SchriftAnpassen(TextMetrics& m, int width, int height, const std::string& text, const FontSpec& font) {
    constexpr int kRounds = 10000;
    FontFit fit{fontSizeOf(font), {}};
    fit.label = m.labelSize(font, fit.size, text);
    int round = 0;
    while (round < kRounds && fit.label.width + 5 <= width && fit.label.height + 5 <= height) {
        fit.size += 2;
        fit.label = m.labelSize(font, fit.size, text);
        ++round;
    }
    while (round < kRounds && fit.size > 1 && (fit.label.width - 5 > width || fit.label.height - 5 > height)) {
        fit.size -= 1;
        fit.label = m.labelSize(font, fit.size, text);
        ++round;
    }
    return fit;
}

std::string TextUmbrechen(TextMetrics& m, int width, int /*height*/, const std::string& text, const FontSpec& font) {
    constexpr std::size_t kLineBuffer = 254;
    std::string out, previous;
    bool first = true;
    for (std::string line : m.boxLines(font, width + 10, text)) {
        if (utf8Length(line) > kLineBuffer) line = utf8Left(line, kLineBuffer);
        if (!first && !previous.ends_with(' ') && !line.starts_with(' ')) out += "\r\n";
        out += line;
        previous = line;
        first = false;
    }
    return out;
}

}  // namespace brindle::editor
