#include "image/picture_limits.h"

#include <algorithm>
#include <cstdint>

#include "image/byte_reader.h"

namespace brindle {
namespace {

bool u16be(ByteReader& r, std::uint16_t& v) {
    std::uint8_t hi = 0, lo = 0;
    if (!r.u8(hi) || !r.u8(lo)) return false;
    v = static_cast<std::uint16_t>(hi << 8 | lo);
    return true;
}

bool u32be(ByteReader& r, std::uint32_t& v) {
    std::uint16_t hi = 0, lo = 0;
    if (!u16be(r, hi) || !u16be(r, lo)) return false;
    v = static_cast<std::uint32_t>(hi) << 16 | lo;
    return true;
}

bool startsWith(std::string_view bytes, std::string_view magic) {
    return bytes.substr(0, magic.size()) == magic;
}

// Skips GIF data sub-blocks up to and including the terminator.
bool skipSubBlocks(ByteReader& r) {
    std::uint8_t n = 0;
    do {
        if (!r.u8(n) || !r.skip(n)) return false;
    } while (n != 0);
    return true;
}

}  // namespace

bool plausiblePictureSize(long long width, long long height, std::size_t fileBytes,
                          int bitsPerPixel, std::string* why) {
    auto refuse = [&](const char* text) {
        if (why) *why = text;
        return false;
    };
    if (width <= 0 || height <= 0) return refuse("the picture has no size");
    if (width > kMaxPicturePixels || height > kMaxPicturePixels)
        return refuse("the picture is too large");
    const long long pixels = width * height;
    if (pixels > kMaxPicturePixels) return refuse("the picture is too large");
    if (pixels > kFreePicturePixels &&
        pixels / kPixelsPerFileByte > static_cast<long long>(fileBytes))
        return refuse("the picture claims more pixels than the file can hold");
    const long long decoderBytes = pixels * (bitsPerPixel > 0 ? bitsPerPixel : 24) / 8;
    if (decoderBytes + pixels * 6 > kPictureMemoryBudget) return refuse("the picture is too large");
    return true;
}

bool gifPictureSize(std::string_view bytes, long long& width, long long& height) {
    if (!startsWith(bytes, "GIF87a") && !startsWith(bytes, "GIF89a")) return false;
    ByteReader r(bytes);
    std::uint16_t w = 0, h = 0;
    std::uint8_t flags = 0;
    if (!r.skip(6) || !r.u16le(w) || !r.u16le(h) || !r.u8(flags) || !r.skip(2)) return false;
    if (flags & 0x80 && !r.skip(3u << ((flags & 7) + 1))) return false;
    width = w;
    height = h;
    // The decoder allocates the first image's own size, which may exceed
    // the screen's; whichever is larger counts.
    for (;;) {
        std::uint8_t block = 0;
        if (!r.u8(block)) return true;  // no image: the screen alone
        if (block == 0x21) {
            if (!r.skip(1) || !skipSubBlocks(r)) return true;
        } else if (block == 0x2C) {
            std::uint16_t left = 0, top = 0, iw = 0, ih = 0;
            if (!r.u16le(left) || !r.u16le(top) || !r.u16le(iw) || !r.u16le(ih)) return true;
            width = std::max<long long>(width, iw);
            height = std::max<long long>(height, ih);
            return true;
        } else {
            return true;
        }
    }
}

bool iffPictureSize(std::string_view bytes, long long& width, long long& height, int& bits) {
    if (!startsWith(bytes, "FORM")) return false;
    ByteReader r(bytes);
    if (!r.skip(12)) return false;  // "FORM", length, "ILBM" or "PBM "
    // Chunks follow one another, each padded to an even length; the bitmap
    // header comes before the body in every valid file.
    while (r.left() >= 8) {
        const std::uint8_t* id = r.take(4);
        std::uint32_t length = 0;
        if (!u32be(r, length)) return false;
        if (std::string_view(reinterpret_cast<const char*>(id), 4) == "BMHD") {
            std::uint16_t w = 0, h = 0;
            std::uint8_t planes = 0;
            if (!u16be(r, w) || !u16be(r, h) || !r.skip(4) || !r.u8(planes)) return false;
            width = w;
            height = h;
            bits = planes <= 8 ? 8 : 24;
            return true;
        }
        if (!r.skip(length + (length & 1))) return false;
    }
    return false;
}

bool sgiPictureSize(std::string_view bytes, long long& width, long long& height, int& bits) {
    ByteReader r(bytes);
    std::uint16_t magic = 0, dimension = 0, w = 0, h = 0, channels = 0;
    std::uint8_t storage = 0, bytesPerChannel = 0;
    if (!u16be(r, magic) || magic != 474 || !r.u8(storage) || !r.u8(bytesPerChannel) ||
        !u16be(r, dimension) || !u16be(r, w) || !u16be(r, h) || !u16be(r, channels))
        return false;
    width = w;
    height = dimension < 2 ? 1 : h;
    bits = 8 * std::max<int>(1, bytesPerChannel) * std::max<int>(1, channels);
    return true;
}

bool ddsPictureSize(std::string_view bytes, long long& width, long long& height) {
    if (!startsWith(bytes, "DDS ")) return false;
    ByteReader r(bytes);
    std::uint32_t h = 0, w = 0;
    if (!r.skip(12) || !r.u32le(h) || !r.u32le(w)) return false;
    width = w;
    height = h;
    return true;
}

bool mngPictureSize(std::string_view bytes, long long& width, long long& height) {
    if (!startsWith(bytes, "\x8AMNG\r\n\x1A\n") && !startsWith(bytes, "\x8BJNG\r\n\x1A\n"))
        return false;
    ByteReader r(bytes);
    std::uint32_t length = 0, w = 0, h = 0;
    if (!r.skip(8) || !u32be(r, length) || !r.skip(4) || !u32be(r, w) || !u32be(r, h))
        return false;
    width = w;
    height = h;
    return true;
}

}  // namespace brindle
