#include "media/video_list.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <filesystem>
#include <fstream>

#include "image/picture_io.h"
#include "media/video_texts.h"

namespace brindle::media {
namespace {

namespace fs = std::filesystem;

std::uint32_t le(const unsigned char* p, int bytes) {
    std::uint32_t v = 0;
    for (int i = bytes - 1; i >= 0; --i) v = (v << 8) | p[i];
    return v;
}

std::string lower(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return std::tolower(c); });
    return s;
}

bool endsWith(const std::string& s, const std::string& tail) {
    return s.size() >= tail.size() && s.compare(s.size() - tail.size(), tail.size(), tail) == 0;
}

// A name in "AVITemp" for the n-th picture, kept unique when two pictures
// share a name.
std::string tempBitmapPath(const std::string& folder, const std::string& picture, std::size_t n) {
    return folder + std::to_string(n + 1) + "_" + fs::path(picture).stem().string() + ".bmp";
}

void emptyFolder(const std::string& folder) {
    std::error_code ec;
    fs::create_directories(folder, ec);
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, ec))
        fs::remove_all(entry.path(), ec);
}

}  // namespace

bool parseBitmapFormat(std::string_view bytes, BitmapFormat& out) {
    if (bytes.size() < 30) return false;
    const auto* head = reinterpret_cast<const unsigned char*>(bytes.data());
    if (head[0] != 'B' || head[1] != 'M') return false;
    const std::uint32_t infoSize = le(head + 14, 4);
    if (infoSize == 12) {
        out = {static_cast<int>(le(head + 18, 2)), static_cast<int>(le(head + 20, 2)),
               static_cast<int>(le(head + 24, 2))};
    } else if (infoSize >= 40) {
        const auto height = static_cast<std::int64_t>(static_cast<std::int32_t>(le(head + 22, 4)));
        const auto width = static_cast<std::int32_t>(le(head + 18, 4));
        // A height of -2^31 has no positive twin in an int: refused below.
        const std::int64_t rows = height < 0 ? -height : height;
        out = {static_cast<int>(width), rows > INT32_MAX ? 0 : static_cast<int>(rows),
               static_cast<int>(le(head + 28, 2))};
    } else {
        return false;
    }
    return out.width > 0 && out.height > 0 && out.bitCount > 0;
}

bool readBitmapFormat(const std::string& path, BitmapFormat& out) {
    std::ifstream in(path, std::ios::binary);
    char head[30] = {};
    if (!in.read(head, sizeof head)) return false;
    return parseBitmapFormat(std::string_view(head, sizeof head), out);
}

std::optional<ImageMessage> VideoList::add(const std::string& path, Language lang) {
    BitmapFormat format;
    if (!readBitmapFormat(path, format)) return unsupportedFileMessage(lang);
    if (!paths_.empty() && format != format_) return differentFormatMessage(lang);
    if (paths_.empty()) format_ = format;
    paths_.push_back(path);
    return std::nullopt;
}

void VideoList::clear() {
    paths_.clear();
    format_ = {};
}

std::string aviTempFolder(const std::string& programDirectory) {
    return programDirectory + "AVITemp/";
}

ProvidedBitmaps provideBitmaps(const std::vector<std::string>& pictures,
                               const std::string& programDirectory, Language lang,
                               const std::function<void(const std::string&)>& status) {
    if (status) status(provideStatus(lang));
    const std::string folder = aviTempFolder(programDirectory);
    emptyFolder(folder);
    ProvidedBitmaps out;
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        const std::string& picture = pictures[i];
        const std::string key = lower(picture);
        if (endsWith(key, ".bmp")) {
            out.bitmaps.push_back(picture);
            continue;
        }
        if (!endsWith(key, ".jpg") && !endsWith(key, "jpeg") && !endsWith(key, ".gif")) {
            out.messages.push_back(unsupportedFileMessage(lang));
            out.refused.push_back(picture);
            continue;
        }
        ImageEnv env;
        env.language = lang;
        const PictureFile loaded = LoadPictureFile(picture, env);
        const std::string target = tempBitmapPath(folder, picture, i);
        if (!loaded.picture || !SavePictureFile(loaded.picture, target, 100, env)) {
            out.messages.push_back(loaded.message ? *loaded.message : unsupportedFileMessage(lang));
            out.refused.push_back(picture);
            continue;
        }
        out.bitmaps.push_back(target);
    }
    return out;
}

}  // namespace brindle::media
