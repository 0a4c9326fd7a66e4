// The working copies of a panorama run live in "PanoTemp" under the
// program directory: "BScopy" + name for a JPEG copy of a source that was
// no JPEG, "BSPano" + name for the reduced picture the search works on.
#pragma once

#include <string>

namespace brindle::panorama {

inline constexpr const char* kCopyPrefix = "BScopy";
inline constexpr const char* kReducedPrefix = "BSPano";

// programDirectory + "PanoTemp/" + prefix + the file name of `source` with
// everything behind its last "." replaced by "jpg" ("jpg" appended after a
// "." when the name has none).
std::string panoTempName(const std::string& programDirectory, const std::string& source, const std::string& prefix);

}  // namespace brindle::panorama
