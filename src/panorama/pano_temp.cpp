#include "panorama/pano_temp.h"

namespace brindle::panorama {

std::string panoTempName(const std::string& programDirectory, const std::string& source, const std::string& prefix) {
    const std::size_t slash = source.find_last_of("/\\");
    std::string name = slash == std::string::npos ? source : source.substr(slash + 1);
    const std::size_t dot = name.rfind('.');
    name = dot == std::string::npos ? name + ".jpg" : name.substr(0, dot + 1) + "jpg";
    std::string dir = programDirectory;
    if (!dir.empty() && dir.back() != '/') dir += '/';
    return dir + "PanoTemp/" + prefix + name;
}

}  // namespace brindle::panorama
