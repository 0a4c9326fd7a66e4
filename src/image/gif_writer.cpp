#include "image/gif_writer.h"

#include "image/file_stamp.h"
#include "image/gif_format.h"
#include "image/lzw_encoder.h"
#include "image/palette.h"

namespace brindle {
namespace {

void put8(std::string& out, int v) { out.push_back(static_cast<char>(v & 0xFF)); }
void put16(std::string& out, int v) {
    put8(out, v);
    put8(out, v >> 8);
}

}  // namespace

bool GIF::encode(const cDIBSection& picture, bool transparent, std::uint32_t transparentColour,
                 std::string& out) {
    out.clear();
    if (picture.empty() || picture.Width() > gif::kMaxSide || picture.Height() > gif::kMaxSide)
        return false;
    const std::optional<Rgb> reserved =
        transparent ? std::optional<Rgb>(splitColour(transparentColour)) : std::nullopt;
    const Palette palette = buildPalette(picture, 256, reserved);
    const std::vector<std::uint8_t> indices = mapToPalette(picture, palette);

    out += transparent ? gif::kSignature89 : gif::kSignature87;
    put16(out, picture.Width());
    put16(out, picture.Height());
    put8(out, gif::kScreenFlags);
    put8(out, 0);  // background index
    put8(out, 0);  // aspect ratio
    for (int i = 0; i < 256; ++i) {
        const Rgb c = i < palette.count ? palette.entries[i] : Rgb{};
        put8(out, c.red);
        put8(out, c.green);
        put8(out, c.blue);
    }
    put8(out, gif::kExtensionIntroducer);
    put8(out, gif::kGraphicControlLabel);
    put8(out, 4);
    put8(out, transparent ? 1 : 0);
    put16(out, 0);  // delay
    put8(out, transparent ? palette.reserved : 0);
    put8(out, 0);
    put8(out, gif::kImageSeparator);
    put16(out, 0);
    put16(out, 0);
    put16(out, picture.Width());
    put16(out, picture.Height());
    put8(out, 0);
    put8(out, gif::kMinCodeSize);
    const std::vector<std::uint8_t> stream =
        lzwEncode(indices.data(), indices.size(), gif::kMinCodeSize);
    for (std::size_t at = 0; at < stream.size(); at += gif::kMaxSubBlock) {
        const std::size_t n = std::min<std::size_t>(gif::kMaxSubBlock, stream.size() - at);
        put8(out, static_cast<int>(n));
        out.append(reinterpret_cast<const char*>(stream.data() + at), n);
    }
    put8(out, 0);
    put8(out, gif::kTrailer);
    return true;
}

bool GIF::SaveGIF(const cDIBSection& picture, const std::string& path, bool transparent,
                  std::uint32_t transparentColour, std::string* error) {
    std::string bytes;
    if (!encode(picture, transparent, transparentColour, bytes)) {
        if (error) *error = "the picture cannot be written as GIF";
        return false;
    }
    return writeBytesAtomic(path, bytes.data(), bytes.size(), error);
}

bool GIF::SaveGIF(const Picture& picture, const std::string& path, bool transparent,
                  std::uint32_t transparentColour, std::string* error) {
    if (!picture) {
        if (error) *error = "no picture";
        return false;
    }
    return SaveGIF(*picture.Handle(), path, transparent, transparentColour, error);
}

}  // namespace brindle
