// The options file "optionen": the OptionsRecord alone, no head.
#pragma once

#include <string>
#include <string_view>

#include "album/file_result.h"
#include "album/options.h"

namespace brindle {

inline constexpr const char* kOptionsFileName = "optionen";

FileResult decodeOptions(std::string_view bytes, OptionsRecord& out, const std::string& path = {});
FileResult encodeOptions(const OptionsRecord& options, std::string& bytes);

FileResult readOptionsFile(const std::string& path, OptionsRecord& out);
FileResult writeOptionsFile(const std::string& path, const OptionsRecord& options);

// Reads the options of the program directory; a missing or broken file
// gives the start-up defaults and the start goes on.
OptionsRecord loadOptions(const std::string& programDirectory);

}  // namespace brindle
