#include "explorer/cache_folder.h"

namespace brindle::explorer {

std::string thumbnailFolderName(const std::string& pictureFolder) {
    std::string name = pictureFolder;
    while (name.size() > 1 && (name.back() == '/' || name.back() == '\\')) name.pop_back();
    for (char& c : name)
        if (c == '/' || c == '\\') c = '&';
    if (name.size() >= 2 && name[1] == ':') name[1] = '&';
    return name;
}

std::string thumbnailFolder(const std::string& programDirectory, const std::string& pictureFolder) {
    std::string dir = programDirectory;
    if (!dir.empty() && dir.back() != '/') dir += '/';
    return dir + "Thumbnails/" + thumbnailFolderName(pictureFolder) + "/";
}

}  // namespace brindle::explorer
