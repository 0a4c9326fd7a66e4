// Design list files: one step line per text line, no header.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brindle::studio {

struct DesignListRead {
    bool ok = false;
    std::vector<std::string> lines;
    std::string error;  // the system's reason when !ok
};

DesignListRead readDesignList(const std::string& path);
// The same on the bytes of a file, and the bytes a list is written as.
DesignListRead parseDesignList(std::string_view bytes);
std::string encodeDesignList(const std::vector<std::string>& lines);
// Written atomically; false with the reason in `error`.
bool writeDesignList(const std::string& path, const std::vector<std::string>& lines, std::string* error = nullptr);

}  // namespace brindle::studio
