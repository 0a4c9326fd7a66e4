#include "album/prompter.h"

namespace brindle {

std::string albumFileFilter(bool german) {
    return german ? "Alle Dateien (*.*)|*.*|Bilder|*.jpg;*.jpeg;*.gif;*.png;*.bmp|Albumvorlage (*.vor)|*.vor|"
                    "Albumseite (*.apg)|*.apg|Album Projekt (*.apr)|*.apr"
                  : "All files (*.*)|*.*|Pictures|*.jpg;*.jpeg;*.gif;*.png;*.bmp|Album template (*.vor)|*.vor|"
                    "Album page (*.apg)|*.apg|Album project (*.apr)|*.apr";
}

std::vector<std::string> splitFileList(const std::string& answer) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    while (start <= answer.size()) {
        const std::size_t end = answer.find(';', start);
        const std::string part = answer.substr(start, end == std::string::npos ? std::string::npos : end - start);
        if (!part.empty()) parts.push_back(part);
        if (end == std::string::npos) break;
        start = end + 1;
    }
    if (parts.size() < 2) return parts;
    std::string dir = parts.front();
    if (dir.back() != '/' && dir.back() != '\\') dir += '/';
    std::vector<std::string> files;
    for (std::size_t i = 1; i < parts.size(); ++i) files.push_back(dir + parts[i]);
    return files;
}

}  // namespace brindle
