#include "image/tga_reader.h"

#include <algorithm>
#include <vector>

#include "image/byte_reader.h"
#include "image/file_stamp.h"
#include "image/picture_limits.h"
#include "image/tga_format.h"

namespace brindle {
namespace {

using tga::Header;

bool fail(std::string* error, const char* why) {
    if (error) *error = why;
    return false;
}

bool readHeader(ByteReader& r, Header& h) {
    return r.u8(h.idLength) && r.u8(h.colourMapType) && r.u8(h.imageType) && r.u16le(h.mapFirst) &&
           r.u16le(h.mapLength) && r.u8(h.mapEntryBits) && r.u16le(h.xOrigin) &&
           r.u16le(h.yOrigin) && r.u16le(h.width) && r.u16le(h.height) && r.u8(h.pixelBits) &&
           r.u8(h.descriptor);
}

bool colourBits(int bits) { return bits == 15 || bits == 16 || bits == 24 || bits == 32; }

// The header fields fit together as a TGA file's do.
bool plausible(const Header& h) {
    const int base = h.imageType & ~tga::kRunLengthFlag;
    if (h.colourMapType > 1 || base < tga::kColourMapped || base > tga::kGrey) return false;
    if ((h.imageType & ~(tga::kRunLengthFlag | 3)) != 0) return false;
    if (h.colourMapType == 1 && !colourBits(h.mapEntryBits)) return false;
    switch (base) {
        case tga::kColourMapped:
            return h.colourMapType == 1 && (h.pixelBits == 8 || h.pixelBits == 16);
        case tga::kTrueColour:
            return colourBits(h.pixelBits);
        default:
            return h.pixelBits == 8 || h.pixelBits == 16;
    }
}

struct Bgr {
    std::uint8_t b = 0, g = 0, r = 0;
};

Bgr colourValue(const std::uint8_t* p, int bits) {
    if (bits == 15 || bits == 16) {
        const int v = p[0] | (p[1] << 8);
        auto widen = [](int five) { return static_cast<std::uint8_t>((five << 3) | (five >> 2)); };
        return {widen(v & 31), widen((v >> 5) & 31), widen((v >> 10) & 31)};
    }
    return {p[0], p[1], p[2]};
}

// Reads `count` raw pixel values, each `size` bytes, run-length coded or not.
bool unpack(ByteReader& r, bool runLength, std::size_t count, int size,
            std::vector<std::uint8_t>& out) {
    out.resize(count * static_cast<std::size_t>(size));
    if (!runLength) return r.bytes(out.data(), out.size());
    std::size_t n = 0;
    while (n < count) {
        std::uint8_t head = 0;
        if (!r.u8(head)) return false;
        std::size_t len = (head & 0x7F) + 1u;
        if (len > count - n) len = count - n;
        if (head & 0x80) {
            const std::uint8_t* v = r.take(static_cast<std::size_t>(size));
            if (!v) return false;
            for (std::size_t i = 0; i < len; ++i) std::copy_n(v, size, out.data() + (n + i) * size);
        } else if (!r.bytes(out.data() + n * size, len * static_cast<std::size_t>(size))) {
            return false;
        }
        n += len;
    }
    return true;
}

}  // namespace

bool LoadTGA::Load(const std::string& path, std::string* error) {
    std::string bytes;
    if (!readPictureBytes(path, bytes, error)) {
        isTga_ = false;
        pixels_.ClearUp();
        return false;
    }
    return LoadFromBytes(bytes, error);
}

bool LoadTGA::LoadFromBytes(std::string_view bytes, std::string* error) {
    pixels_.ClearUp();
    isTga_ = compressed_ = false;
    bpp_ = 0;
    ByteReader r(bytes);
    Header h;
    if (!readHeader(r, h) || !plausible(h)) return fail(error, "not a TGA file");
    isTga_ = true;
    compressed_ = (h.imageType & tga::kRunLengthFlag) != 0;
    bpp_ = h.pixelBits;
    if (h.width == 0 || h.height == 0) return fail(error, "TGA picture is empty");
    if (!r.skip(h.idLength)) return fail(error, "TGA id ends early");

    const int base = h.imageType & ~tga::kRunLengthFlag;
    const int entrySize = (h.mapEntryBits + 7) / 8;
    std::vector<Bgr> map;
    if (h.colourMapType == 1) {
        const std::uint8_t* entries = r.take(static_cast<std::size_t>(h.mapLength) * entrySize);
        if (!entries) return fail(error, "TGA colour map ends early");
        if (base == tga::kColourMapped) {
            map.resize(h.mapLength);
            for (int i = 0; i < h.mapLength; ++i)
                map[i] = colourValue(entries + i * entrySize, h.mapEntryBits);
        }
    }

    const int size = (h.pixelBits + 7) / 8;
    const std::size_t count = static_cast<std::size_t>(h.width) * h.height;
    // A packet of one head and one value stands for at most 128 pixels.
    const std::size_t most = compressed_ ? r.left() / (1 + size) * 128 + 128 : r.left() / size;
    if (count > most) return fail(error, "TGA data is shorter than its header says");
    std::vector<std::uint8_t> raw;
    if (!unpack(r, compressed_, count, size, raw)) return fail(error, "TGA data ends early");

    cDIBSection dib;
    std::string why;
    if (!plausiblePictureSize(h.width, h.height, bytes.size(), 24, &why)) return fail(error, why.c_str());
    if (!dib.Create(h.width, h.height)) return fail(error, "TGA picture too large");
    const bool topDown = h.descriptor & tga::kDescriptorTopToBottom;
    const bool rightToLeft = h.descriptor & tga::kDescriptorRightToLeft;
    for (int row = 0; row < h.height; ++row) {
        std::uint8_t* out = dib.rowBits(topDown ? h.height - 1 - row : row);
        for (int col = 0; col < h.width; ++col) {
            const std::uint8_t* v =
                raw.data() + (static_cast<std::size_t>(row) * h.width + col) * size;
            Bgr c;
            if (base == tga::kColourMapped) {
                const int index = (size == 1 ? v[0] : v[0] | (v[1] << 8)) - h.mapFirst;
                if (index >= 0 && index < static_cast<int>(map.size()))
                    c = map[index];  // else black
            } else if (base == tga::kGrey) {
                c = {v[0], v[0], v[0]};
            } else {
                c = colourValue(v, h.pixelBits);
            }
            std::uint8_t* p = out + (rightToLeft ? h.width - 1 - col : col) * 3;
            p[0] = c.b;
            p[1] = c.g;
            p[2] = c.r;
        }
    }
    pixels_ = std::move(dib);
    return true;
}

}  // namespace brindle
