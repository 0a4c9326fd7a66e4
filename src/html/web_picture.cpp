#include "html/web_picture.h"

#include <filesystem>

namespace brindle::html {

namespace fs = std::filesystem;

bool speichereWebBild(const WebPicture& p, std::string& error) {
    if (!fs::exists(p.source)) return true;  // nothing happens for a missing source
    std::error_code ec;
    fs::copy_file(p.source, p.target, fs::copy_options::overwrite_existing, ec);
    error = ec.message();
    return !ec;
}

PictureServices defaultPictureServices() {
    PictureServices s;
    s.writeWebPicture = speichereWebBild;
    s.pictureSize = [](const std::string&, int&, int&) { return false; };
    return s;
}

}  // namespace brindle::html
