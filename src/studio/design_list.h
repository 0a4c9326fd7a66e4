// Design list files: one step line per text line, no header.
#pragma once

#include <string>
#include <vector>

namespace brindle::studio {

struct DesignListRead {
    bool ok = false;
    std::vector<std::string> lines;
    std::string error;  // the system's reason when !ok
};

DesignListRead readDesignList(const std::string& path);
// Written atomically; false with the reason in `error`.
bool writeDesignList(const std::string& path, const std::vector<std::string>& lines, std::string* error = nullptr);

}  // namespace brindle::studio
