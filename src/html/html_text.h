// Small text rules of the generated HTML.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "album/records.h"

namespace brindle::html {

// Lines of generated files end in CR LF.
inline constexpr const char* kEol = "\r\n";

// Red, green, blue from the low, middle and high byte, each in upper-case
// hex without a leading zero, then cut to two characters after "00" is
// appended: 5 gives "50". Kept as older albums show it.
std::string farbeHex(Color color);
// CR LF becomes "<br>", then every blank "&nbsp;". Nothing else is escaped.
std::string textZuHTML(const std::string& text);
// Decimal text without a leading blank.
std::string zahl(long long v);
// The number as written in boxes of blocks: the text of the value with its
// first character (the blank of a positive number, the minus of a negative
// one) removed.
std::string ohneVorzeichen(long long v);
std::string ohneVorzeichen(double v);

// frameSpec / animationSpec as tokens: "None,None,None,None,None,None" is
// appended directly and the result split at ",", "(" and ")".
std::vector<std::string> specTokens(const std::string& spec);
bool hasFrame(const std::vector<std::string>& frameTokens);       // token 5 is "1"
bool hasAnimation(const std::vector<std::string>& animTokens);    // token 0 is not "None"
// The number at the start of a text as a string-to-number conversion would
// read it; 0 when it does not start with one.
double numericValue(const std::string& text);

// File bytes of generated text: Windows-1252, with characters outside it
// written as numeric character references.
std::string toHtmlBytes(const std::string& utf8);

}  // namespace brindle::html
