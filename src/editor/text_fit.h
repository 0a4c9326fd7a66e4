// Text measuring for the canvas: font sizes that fill a box and texts
// rewrapped to a box. The measuring itself is injected (the GUI measures
// with Qt's font metrics, tests with fixed numbers).
#pragma once

#include <string>
#include <vector>

#include "album/records.h"

namespace brindle::editor {

struct TextSize {
    int width = 0, height = 0;
    bool operator==(const TextSize&) const = default;
};

class TextMetrics {
public:
    virtual ~TextMetrics() = default;
    // A self-sizing label showing `text` (lines end at CR LF or LF) in `font` at `size` points.
    virtual TextSize labelSize(const FontSpec& font, int size, const std::string& text) = 0;
    // The lines of a multi-line text box `width` pixels wide as the box reports
    // them: a soft break keeps its blank at the end of the line, a hard break
    // loses its CR LF, and a word wider than the box breaks inside.
    virtual std::vector<std::string> boxLines(const FontSpec& font, int width, const std::string& text) = 0;
};

// A font size of 0 means 9 points.
int fontSizeOf(const FontSpec& font);
// The family a font name means: empty is "Arial".
std::string fontNameOf(const FontSpec& font);

struct FontFit {
    int size = 0;
    TextSize label;  // measured at that size
};
// Grows the font by 2 while the label stays 5 pixels inside the box, then
// shrinks by 1 while it sticks out more than 5, never below 1; at most
// 10000 rounds in all.
FontFit SchriftAnpassen(TextMetrics& metrics, int width, int height, const std::string& text, const FontSpec& font);

// The text as a box 10 pixels larger than width x height lays it out: its
// lines (at most 254 characters each) joined again, with CR LF only where a
// line neither ends nor the next begins with a blank.
std::string TextUmbrechen(TextMetrics& metrics, int width, int height, const std::string& text, const FontSpec& font);

}  // namespace brindle::editor
