#include "properties/text_properties_model.h"

#include <algorithm>
#include <limits>

namespace brindle::properties {

namespace {

constexpr int kOnPage = 5;

std::int16_t toI16(int v) {
    return static_cast<std::int16_t>(
        std::clamp(v, int(std::numeric_limits<std::int16_t>::min()), int(std::numeric_limits<std::int16_t>::max())));
}

std::string joinLines(const std::vector<std::string>& lines) {
    std::string out;
    for (std::size_t i = 0; i < lines.size(); ++i) out += (i ? "\r\n" : "") + lines[i];
    return out;
}

// The length of the hard line break at `pos` (CR LF or LF), or 0.
std::size_t hardBreakAt(const std::string& text, std::size_t pos) {
    if (text.compare(pos, 2, "\r\n") == 0) return 2;
    return pos < text.size() && text[pos] == '\n' ? 1 : 0;
}

}  // namespace

TextProperties textPropertiesOf(const TextElement& t) {
    TextProperties p;
    p.text = t.text;
    p.hyperlink = t.hyperlink;
    p.link = static_cast<LinkBehaviour>(std::clamp(t.ext.extLong[3], 0, 2));
    p.resize = static_cast<ResizeMode>(std::clamp(t.ext.extLong[1], 0, 2));
    p.breakInWords = t.ext.extLong[2] != 0;
    p.tipOfTheDay = t.ext.extLong[4] > 0;
    p.tipWrapped = t.ext.extLong[4] > 1;
    p.tips = t.ext.extText[1];
    p.font = t.font;
    return p;
}

std::string brecheText(editor::TextMetrics& metrics, int width, int /*height*/, const std::string& text,
                       const FontSpec& font, bool breakInWords) {
    const std::vector<std::string> lines = metrics.boxLines(font, width + 10, text);
    std::string out;
    std::size_t pos = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string& line = lines[i];
        // The lines are the text cut into pieces; anything else is taken as it came.
        if (text.compare(pos, line.size(), line) != 0) return joinLines(lines);
        out += line;
        pos += line.size();
        if (i + 1 == lines.size()) break;
        if (const std::size_t hard = hardBreakAt(text, pos)) {
            pos += hard;
            out += "\r\n";
            continue;
        }
        const bool insideWord = !line.empty() && line.back() != ' ' && pos < text.size() && text[pos] != ' ';
        if (breakInWords || !insideWord) out += "\r\n";
    }
    return out;
}

void keepOnPage(TextElement& t) {
    if (t.left + t.width < kOnPage) t.left = toI16(kOnPage - t.width);
    if (t.top + t.height < kOnPage) t.top = toI16(kOnPage - t.height);
}

void applyTextProperties(TextElement& t, const TextProperties& p, editor::TextMetrics* metrics) {
    const std::string before = t.text;
    t.hyperlink = p.hyperlink;
    t.ext.extLong[3] = static_cast<std::int32_t>(p.link);
    t.ext.extLong[1] = static_cast<std::int32_t>(p.resize);
    t.ext.extLong[2] = p.breakInWords ? 1 : 0;
    t.font = p.font;
    if (p.text != before) t.text = p.text;
    if (!before.empty() && p.resize == ResizeMode::BreaksFollow && metrics)
        t.ext.extText[0] = brecheText(*metrics, t.width, t.height, t.text, t.font, p.breakInWords);
    else
        t.ext.extText[0] = t.text;
    if (before.empty() && metrics) {
        const editor::TextSize size = metrics->labelSize(t.font, editor::fontSizeOf(t.font), t.text);
        t.width = toI16(size.width);
        t.height = toI16(size.height);
    }
    t.ext.extText[1] = p.tips;
    t.ext.extLong[4] = p.tipOfTheDay ? (p.tipWrapped ? 2 : 1) : 0;
    keepOnPage(t);
}

}  // namespace brindle::properties
