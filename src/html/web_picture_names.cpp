#include "html/web_picture_names.h"

namespace brindle::html {

namespace {

// Everything that decides the pixels of a web picture. The box sizes only
// matter for a turned picture.
std::string preparationKey(const WebPicture& p) {
    const bool turned = p.rotation != 0;
    return p.source + '\n' + std::to_string(p.width) + 'x' + std::to_string(p.height) + '\n' +
           std::to_string(p.quality) + '\n' + p.frameSpec + '\n' + p.animationSpec + '\n' +
           std::to_string(p.rotation) + '\n' + std::to_string(turned ? p.boxWidth : 0) + 'x' +
           std::to_string(turned ? p.boxHeight : 0);
}

std::string numbered(const std::string& name, int n) {
    const std::size_t dot = name.rfind('.');
    const std::string suffix = "_" + std::to_string(n);
    return dot == std::string::npos ? name + suffix : name.substr(0, dot) + suffix + name.substr(dot);
}

}  // namespace

std::string webPictureName(HtmlRun& run, const std::string& wanted, const WebPicture& picture, bool claim,
                           bool& drawn) {
    const std::string key = preparationKey(picture);
    drawn = false;
    for (int n = 1;; ++n) {
        const std::string name = n == 1 ? wanted : numbered(wanted, n);
        auto it = run.webPictures.find(name);
        if (it == run.webPictures.end()) {
            if (claim) run.webPictures.emplace(name, key);
            return name;
        }
        if (it->second == key) {
            drawn = claim;
            return name;
        }
    }
}

}  // namespace brindle::html
