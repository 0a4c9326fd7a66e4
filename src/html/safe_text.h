// Names and strings that must stay what they are when they reach a file
// name, an attribute or a script: a page title never names a file outside
// the album's folder, a file name never ends its attribute, a title never
// ends its script string.
#pragma once

#include <string>

#include "album/records.h"

namespace brindle::html {

// The file name (without ".htm") under which a page or the frameset is
// written: separators, "..", characters a URL or a Windows folder reads
// otherwise, and control characters are replaced by "_". Ordinary titles
// stay as they are.
std::string safeFileStem(const std::string& title);

// The page's HTML file as every link names it.
std::string pageFileName(const std::string& title);

// The pages the generation handles: the album's list, never past it, even
// when the stored count says more.
int albumPageCount(const AlbumRecord& album);

// A URL or file name as an attribute value: '"', '<', '>' and '`' are
// percent-escaped so the value can neither end its attribute nor start a
// tag; everything else stays as the user wrote it.
std::string attributeUrl(const std::string& url);

// The inside of a JavaScript string literal quoted with `quote`: quotes,
// backslashes, line breaks, '<' and characters outside Windows-1252 are
// written as escapes, so the text survives an ANSI file and no title can
// end the string or the script element.
std::string jsString(const std::string& utf8, char quote);

// Undoes jsString (and any \xNN, \uXXXX, \n, \r, \t or \c escape).
std::string jsUnescape(const std::string& escaped);

}  // namespace brindle::html
