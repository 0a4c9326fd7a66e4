// Strings are UTF-8 in memory. On disk a string is Windows-1252 when every
// character fits (so files match those of earlier versions byte for byte),
// otherwise UTF-8. Reading takes valid UTF-8 holding a multi-byte sequence
// as UTF-8, and anything else as Windows-1252.
#pragma once

#include <string>
#include <string_view>

namespace brindle {

std::string decodeFileString(std::string_view bytes);
std::string encodeFileString(std::string_view utf8);

// Windows-1252 byte to Unicode code point. The five bytes that Windows-1252
// leaves undefined map to the C1 controls of the same value, so that every
// byte survives a round trip.
char32_t cp1252ToUnicode(unsigned char b);
// Unicode code point to Windows-1252, or -1 when it has no byte.
int unicodeToCp1252(char32_t c);

bool isValidUtf8(std::string_view s);
void appendUtf8(std::string& out, char32_t c);
// Decodes valid UTF-8 into code points (invalid bytes become U+FFFD).
std::u32string utf8ToUtf32(std::string_view s);

// Character-wise helpers over UTF-8 text.
std::size_t utf8Length(std::string_view s);
std::string utf8Left(std::string_view s, std::size_t chars);
std::string utf8From(std::string_view s, std::size_t chars);  // drops the first `chars`
std::string utf8Right(std::string_view s, std::size_t chars);
std::string utf8Lower(std::string_view s);

}  // namespace brindle
