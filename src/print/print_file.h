// The print layout file (.bsp): plain text, one number per line, every line
// ended by CR LF, no header and no count. For each picture, in order:
//
//   line 1  left of the box on the sheet   (decimal text, '.' as separator)
//   line 2  top of the box
//   line 3  width of the box
//   line 4  height of the box
//
// A file for n pictures therefore has exactly 4 x n lines. The pictures
// themselves are not stored: a layout belongs to the selection it was made for.
#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "album/language.h"
#include "print/sheet_layout.h"

namespace brindle::print {

// Read every box the file holds.
inline constexpr std::size_t kAllBoxes = std::numeric_limits<std::size_t>::max();
// Larger files are not print layouts: 4 lines of at most a few dozen bytes a picture.
inline constexpr std::size_t kMaxLayoutBytes = 1 << 20;
// A number line longer than this is not one of ours.
inline constexpr std::size_t kMaxLineLength = 40;
// Values beyond this many sheet units (millimetres) are not a layout.
inline constexpr float kMaxCoordinate = 100000.0F;

// The file's text for the boxes, in the order above.
std::string encodeLayout(const std::vector<Box>& boxes);

// Reads `wanted` boxes (or all with kAllBoxes) from `bytes`. A file with more
// boxes than wanted is read only as far as needed. A file with fewer, with a
// broken last group of four, or with a line that is not a number is refused:
// `boxes` is then left untouched and `error` names the line.
bool decodeLayout(std::string_view bytes, std::size_t wanted, std::vector<Box>& boxes,
                  std::string& error, Language language = Language::English);

// The same for files; `error` names the file on failure.
bool saveLayoutFile(const std::string& path, const std::vector<Box>& boxes, std::string& error,
                    Language language = Language::English);
bool loadLayoutFile(const std::string& path, std::size_t wanted, std::vector<Box>& boxes,
                    std::string& error, Language language = Language::English);

}  // namespace brindle::print
