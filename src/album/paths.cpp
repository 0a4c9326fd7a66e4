#include "album/paths.h"

#include <sys/stat.h>

namespace brindle {

void teilePfad(const std::string& path, std::string& directory, std::string& fileName) {
    std::size_t cut = path.find_last_of("/\\");
    if (cut == std::string::npos) {
        directory.clear();
        fileName = path;
        return;
    }
    directory = path.substr(0, cut + 1);
    fileName = path.substr(cut + 1);
}

bool dateiVorhanden(const std::string& path, bool /*silent*/) {
    std::string p = path;
    if (!p.empty() && isSeparator(p.back())) p.pop_back();
    if (p.empty() || p.find('\0') != std::string::npos) return false;
    struct stat st {};
    return ::stat(p.c_str(), &st) == 0;
}

std::string withTrailingSeparator(std::string dir) {
    if (dir.empty() || !isSeparator(dir.back())) dir += '/';
    return dir;
}

std::string withoutTrailingSeparator(std::string dir) {
    while (!dir.empty() && isSeparator(dir.back())) dir.pop_back();
    return dir;
}

std::string asciiLower(std::string_view s) {
    std::string out(s);
    for (char& c : out)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return out;
}

bool endsWithNoCase(std::string_view s, std::string_view suffix) {
    return s.size() >= suffix.size() && asciiLower(s.substr(s.size() - suffix.size())) == asciiLower(suffix);
}

}  // namespace brindle
