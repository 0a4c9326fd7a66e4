#include "image/bmp_reader.h"

#include <array>
#include <bit>
#include <cstdint>

#include "image/bmp_format.h"
#include "image/byte_reader.h"
#include "image/packed_dib.h"
#include "image/picture_limits.h"

namespace brindle {
namespace {

// One channel's mask: where it sits and how wide it is.
struct Channel {
    std::uint32_t mask = 0;
    int shift = 0;
    int bits = 0;
    std::uint8_t value(std::uint32_t pixel) const {
        if (bits == 0) return 0;
        std::uint32_t v = (pixel & mask) >> shift;
        if (bits < 32) v &= (1u << bits) - 1;  // a mask with gaps counts its lowest run
        if (bits >= 8) return static_cast<std::uint8_t>(v >> (bits - 8));
        const std::uint32_t top = (1u << bits) - 1;
        return static_cast<std::uint8_t>((v * 255 + top / 2) / top);
    }
};

Channel channelOf(std::uint32_t mask) {
    Channel c;
    c.mask = mask;
    if (mask == 0) return c;
    c.shift = std::countr_zero(mask);
    c.bits = std::countr_one(mask >> c.shift);
    return c;
}

struct Masks {
    Channel red, green, blue;
};

// The masks of bit-field files: inside the header from version 2 on (52
// bytes and longer), after a 40-byte header otherwise. Without bit fields,
// 16 bits are 5-5-5 and 32 bits are blue, green, red and a spare byte.
bool readMasks(std::string_view bytes, const cDib& head, Masks& out) {
    if (head.Compression() != bmp::kBitFields) {
        if (head.BitCount() == 16)
            out = {channelOf(0x7C00), channelOf(0x03E0), channelOf(0x001F)};
        else
            out = {channelOf(0xFF0000), channelOf(0x00FF00), channelOf(0x0000FF)};
        return true;
    }
    ByteReader r(bytes);
    std::uint32_t red = 0, green = 0, blue = 0;
    if (!r.seek(bmp::kFileHeaderSize + bmp::kInfoHeaderSize) || !r.u32le(red) ||
        !r.u32le(green) || !r.u32le(blue))
        return false;
    out = {channelOf(red), channelOf(green), channelOf(blue)};
    return true;
}

using Palette = std::array<std::array<std::uint8_t, 3>, 256>;

// The colour table; entries the file does not hold stay black.
bool readPalette(std::string_view bytes, const cDib& head, Palette& out) {
    out = {};
    const bool core = head.SizeInfoHeader() == bmp::kCoreHeaderSize;
    const std::size_t entrySize = core ? 3 : 4;
    std::size_t entries = head.ClrUsed() != 0 ? head.ClrUsed() : (1u << head.BitCount());
    if (entries > 256) entries = 256;
    std::size_t start = bmp::kFileHeaderSize + head.SizeInfoHeader();
    if (!core && head.SizeInfoHeader() == bmp::kInfoHeaderSize &&
        head.Compression() == bmp::kBitFields)
        start += 12;
    // The table ends where the bits begin, whatever the header says.
    const std::size_t room = head.BitOffset() > start ? (head.BitOffset() - start) / entrySize : 0;
    if (entries > room) entries = room;
    for (std::size_t i = 0; i < entries; ++i) {
        const std::size_t at = start + i * entrySize;
        if (at + 3 > bytes.size()) return false;
        for (int c = 0; c < 3; ++c) out[i][c] = static_cast<std::uint8_t>(bytes[at + c]);
    }
    return true;
}

void decodeRow(const std::uint8_t* s, std::uint8_t* d, int width, int bitCount,
               const Palette& palette, const Masks& masks) {
    for (int x = 0; x < width; ++x, d += 3) {
        switch (bitCount) {
            case 1:
            case 4:
            case 8: {
                const int bitPos = x * bitCount;
                const int index = (s[bitPos / 8] >> (8 - bitCount - bitPos % 8)) &
                                  ((1 << bitCount) - 1);
                d[0] = palette[index][0];
                d[1] = palette[index][1];
                d[2] = palette[index][2];
                break;
            }
            case 24:
                d[0] = s[3 * x];
                d[1] = s[3 * x + 1];
                d[2] = s[3 * x + 2];
                break;
            default: {
                const std::uint8_t* p = s + x * (bitCount / 8);
                std::uint32_t v = p[0] | (p[1] << 8);
                if (bitCount == 32) v |= static_cast<std::uint32_t>(p[2]) << 16 |
                                         static_cast<std::uint32_t>(p[3]) << 24;
                d[0] = masks.blue.value(v);
                d[1] = masks.green.value(v);
                d[2] = masks.red.value(v);
            }
        }
    }
}

BmpResult fail(std::string* error, const std::string& text, BmpResult result) {
    if (error) *error = text;
    return result;
}

}  // namespace

BmpResult decodeBmp(std::string_view bytes, cDIBSection& dib, std::string* error) {
    cDib head;
    if (bytes.substr(0, 2) != "BM") return fail(error, "not a BMP file", BmpResult::NotBmp);
    if (!head.CreateFromBytes(bytes))
        return fail(error, "not a supported BMP file", BmpResult::NotBmp);
    const std::uint32_t compression = head.Compression();
    const int bits = head.BitCount();
    if (compression != 0 && compression != bmp::kBitFields)
        return fail(error, "compressed BMP", BmpResult::Unsupported);
    if (compression == bmp::kBitFields && bits != 16 && bits != 32)
        return fail(error, "not a supported BMP file", BmpResult::NotBmp);
    const long long width = head.Width();
    const bool topDown = head.Height() < 0;
    const long long height = topDown ? -static_cast<long long>(head.Height()) : head.Height();
    std::string why;
    if (!plausiblePictureSize(width, height, bytes.size(), 24, &why))
        return fail(error, why, BmpResult::Refused);
    Masks masks;
    Palette palette;
    if (!readMasks(bytes, head, masks) || (bits <= 8 && !readPalette(bytes, head, palette)))
        return fail(error, "not a supported BMP file", BmpResult::NotBmp);
    if (!dib.Create(static_cast<int>(width), static_cast<int>(height)))
        return fail(error, "out of memory", BmpResult::Refused);
    // cDib has checked that every row lies inside the file.
    const std::size_t stride = ((static_cast<std::size_t>(width) * bits + 31) / 32) * 4;
    const std::uint8_t* rows = head.PointerToBits();
    for (long long r = 0; r < height; ++r) {
        const long long bufferRow = topDown ? height - 1 - r : r;
        decodeRow(rows + r * stride, dib.rowBits(static_cast<int>(bufferRow)),
                  static_cast<int>(width), bits, palette, masks);
    }
    return BmpResult::Ok;
}

}  // namespace brindle
