// Text measuring with Qt's font metrics. Font sizes are points at 96
// pixels per inch, as the generated pages show them in a browser.
#pragma once

#include <QFont>

#include "editor/text_fit.h"

namespace brindle::editor {

QFont qtFont(const FontSpec& font, int points);

class QtTextMetrics : public TextMetrics {
public:
    TextSize labelSize(const FontSpec& font, int size, const std::string& text) override;
    std::vector<std::string> boxLines(const FontSpec& font, int width, const std::string& text) override;
};

}  // namespace brindle::editor
