// What FrmFrageText edits of one text element, without windows: the words,
// the link, what the text does when its box changes, the tip of the day,
// and the font with its colour.
#pragma once

#include <string>

#include "album/records.h"
#include "editor/text_fit.h"
#include "properties/link_targets.h"

namespace brindle::properties {

// How a followed link opens in the HTML album (extLong4).
enum class LinkBehaviour { SameFrame = 0, Browser = 1, NewWindow = 2 };
// What a text does when its box changes (extLong2).
enum class ResizeMode { OnlyMove = 0, FontFollows = 1, BreaksFollow = 2 };

struct TextProperties {
    std::string text;
    std::string hyperlink;
    LinkBehaviour link = LinkBehaviour::SameFrame;
    ResizeMode resize = ResizeMode::OnlyMove;
    bool breakInWords = false;
    bool tipOfTheDay = false;
    bool tipWrapped = false;  // wrapped at the width of the start text, else one line
    std::string tips;         // one per calendar day, separated by semicolons
    FontSpec font;

    bool operator==(const TextProperties&) const = default;
};


TextProperties textPropertiesOf(const TextElement& text);

// The text as a multi-line box 10 pixels larger than width x height lays
// it out, with CR LF at every line end of the box. Without `breakInWords`
// a break the box made inside a word is taken back.
std::string brecheText(editor::TextMetrics& metrics, int width, int height, const std::string& text,
                       const FontSpec& font, bool breakInWords);

// OK of the dialog: the fields stored as FrmFrageText stores them. Without
// metrics a text keeps its box and its shown text is the text unbroken.
void applyTextProperties(TextElement& text, const TextProperties& p, editor::TextMetrics* metrics);

// At least 5 pixels of a box stay on the page.
void keepOnPage(TextElement& text);

}  // namespace brindle::properties
