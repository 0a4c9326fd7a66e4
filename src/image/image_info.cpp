#include "image/image_info.h"

#include <cstdint>
#include <fstream>
#include <utility>
#include <vector>

#include "image/exif_orientation.h"
#include "image/image_info_format.h"

namespace brindle {
namespace {

unsigned char at(std::string_view b, std::size_t i) { return static_cast<unsigned char>(b[i]); }

bool startsWith(std::string_view b, std::initializer_list<unsigned char> prefix) {
    if (b.size() < prefix.size()) return false;
    std::size_t i = 0;
    for (unsigned char c : prefix)
        if (at(b, i++) != c) return false;
    return true;
}

}  // namespace

bool CImageInfo::ReadImageInfo(const std::string& path) {
    *this = CImageInfo{};
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    std::vector<char> buffer(imageinfo::kBufferSize);
    in.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
    return ReadImageInfoFromBytes(
        std::string_view(buffer.data(), static_cast<std::size_t>(in.gcount())));
}

bool CImageInfo::ReadImageInfoFromBytes(std::string_view bytes) {
    *this = CImageInfo{};
    std::string_view b = bytes.substr(0, imageinfo::kBufferSize);
    bool ok = false;
    if (startsWith(b, {137, 'P', 'N'}))
        ok = readPng(b);
    else if (startsWith(b, {'G', 'I', 'F'}))
        ok = readGif(b);
    else if (startsWith(b, {255, 216, 255}))
        ok = readJpeg(b) && uprightJpegSize(b);
    else if (startsWith(b, {'B', 'M'}))
        ok = readBmp(b);
    if (!ok) *this = CImageInfo{};
    return ok;
}

bool CImageInfo::readPng(std::string_view b) {
    if (b.size() < 26) return false;
    ImageType = kImagePng;
    Width = join(at(b, 19), at(b, 18));
    Height = join(at(b, 23), at(b, 22));
    const int bitDepth = at(b, 24);
    switch (at(b, 25)) {
        case 0:
            Depth = bitDepth;
            break;
        case 2:
            Depth = bitDepth * 3;
            break;
        case 3:
            Depth = 8;
            break;  // a palette index, whatever its bit depth
        case 4:
            Depth = bitDepth * 2;
            break;
        case 6:
            Depth = bitDepth * 4;
            break;
        default:
            return false;
    }
    return true;
}

bool CImageInfo::readGif(std::string_view b) {
    if (b.size() < 11) return false;
    ImageType = kImageGif;
    Width = join(at(b, 6), at(b, 7));
    Height = join(at(b, 8), at(b, 9));
    Depth = (at(b, 10) & 7) + 1;
    return true;
}

bool CImageInfo::uprightJpegSize(std::string_view b) {
    if (orientationSwapsSides(jpegOrientation(b))) std::swap(Width, Height);
    return true;
}

bool CImageInfo::readJpeg(std::string_view b) {
    std::size_t pos = 2;
    while (pos + 4 <= b.size()) {
        if (at(b, pos) != 0xFF) return false;
        const unsigned char code = at(b, pos + 1);
        if (code == 0xFF) {  // fill byte before a marker
            ++pos;
            continue;
        }
        if (code == 0x01 || (code >= 0xD0 && code <= 0xD8)) {
            pos += 2;
            continue;
        }
        if (code == 0xD9 || code == 0xDA) return false;  // no frame before the image data
        const bool frame =
            code >= 0xC0 && code <= 0xCF && code != 0xC4 && code != 0xC8 && code != 0xCC;
        if (frame) {
            if (pos + 10 > b.size()) return false;
            ImageType = kImageJpeg;
            Height = join(at(b, pos + 6), at(b, pos + 5));
            Width = join(at(b, pos + 8), at(b, pos + 7));
            Depth = at(b, pos + 4) * at(b, pos + 9);
            return true;
        }
        const int length = join(at(b, pos + 3), at(b, pos + 2));
        if (length < 2) return false;
        pos += 2 + static_cast<std::size_t>(length);
    }
    return false;
}

bool CImageInfo::readBmp(std::string_view b) {
    if (b.size() < 26) return false;
    const long infoSize =
        join(at(b, 14), at(b, 15)) | (static_cast<long>(join(at(b, 16), at(b, 17))) << 16);
    ImageType = kImageBmp;
    if (infoSize == 12) {
        Width = join(at(b, 18), at(b, 19));
        Height = join(at(b, 20), at(b, 21));
        Depth = join(at(b, 24), at(b, 25));
        return true;
    }
    if (b.size() < 30) return false;
    auto i32 = [&](std::size_t i) {
        const unsigned long u =
            static_cast<unsigned long>(join(at(b, i), at(b, i + 1))) |
            (static_cast<unsigned long>(join(at(b, i + 2), at(b, i + 3))) << 16);
        return static_cast<long>(static_cast<std::int32_t>(static_cast<std::uint32_t>(u)));
    };
    const long w = i32(18), h = i32(22);
    if (w <= 0 || w > INT32_MAX || h == 0 || h < -INT32_MAX) return false;
    Width = static_cast<int>(w);
    Height = static_cast<int>(h < 0 ? -h : h);
    Depth = join(at(b, 28), at(b, 29));
    return true;
}

}  // namespace brindle
