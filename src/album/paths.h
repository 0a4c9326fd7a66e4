// Path helpers. Paths are native in memory and directories end in '/', but
// albums made on other systems carry '\' separators, so splitting accepts both.
#pragma once

#include <string>
#include <string_view>

namespace brindle {

inline bool isSeparator(char c) { return c == '/' || c == '\\'; }

// Splits at the last separator; the directory keeps it.
void teilePfad(const std::string& path, std::string& directory, std::string& fileName);

// True when the file or directory exists (a trailing separator is ignored).
// Never fails, whatever the path holds. `silent` is kept for callers that
// pass it; nothing is ever shown.
bool dateiVorhanden(const std::string& path, bool silent = true);

std::string withTrailingSeparator(std::string dir);
std::string withoutTrailingSeparator(std::string dir);

std::string asciiLower(std::string_view s);
bool endsWithNoCase(std::string_view s, std::string_view suffix);

}  // namespace brindle
