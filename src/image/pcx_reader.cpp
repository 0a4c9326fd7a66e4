#include "image/pcx_reader.h"

#include <algorithm>
#include <vector>

#include "image/byte_reader.h"
#include "image/file_stamp.h"
#include "image/picture_limits.h"
#include "image/pcx_format.h"

namespace brindle {
namespace {

using pcx::Header;

bool fail(std::string* error, const char* why) {
    if (error) *error = why;
    return false;
}

bool readHeader(ByteReader& r, Header& h) {
    return r.u8(h.manufacturer) && r.u8(h.version) && r.u8(h.encoding) && r.u8(h.bitsPerPlane) &&
           r.u16le(h.xMin) && r.u16le(h.yMin) && r.u16le(h.xMax) && r.u16le(h.yMax) &&
           r.u16le(h.hDpi) && r.u16le(h.vDpi) && r.bytes(h.palette16, sizeof h.palette16) &&
           r.u8(h.reserved) && r.u8(h.planes) && r.u16le(h.bytesPerLine) &&
           r.u16le(h.paletteType) && r.seek(pcx::kHeaderSize);
}

bool knownKind(const Header& h) {
    const int bits = h.bitsPerPlane, planes = h.planes;
    return (bits == 1 && (planes == 1 || planes == 4)) || (bits == 4 && planes == 1) ||
           (bits == 8 && (planes == 1 || planes == 3));
}

// The rows of all planes, decoded into one block.
bool unpack(ByteReader& r, bool runLength, std::size_t total, std::vector<std::uint8_t>& out) {
    out.resize(total);
    std::size_t n = 0;
    while (n < total) {
        std::uint8_t b = 0;
        if (!r.u8(b)) return false;
        if (runLength && (b & 0xC0) == 0xC0) {
            std::uint8_t value = 0;
            if (!r.u8(value)) return false;
            std::size_t count = b & 0x3F;
            if (count > total - n) count = total - n;
            std::fill_n(out.begin() + static_cast<std::ptrdiff_t>(n), count, value);
            n += count;
        } else {
            out[n++] = b;
        }
    }
    return true;
}

struct Palette {
    std::uint8_t rgb[256][3] = {};
};

// The index of pixel x in a row, for the paletted kinds.
int indexAt(const Header& h, const std::uint8_t* row, int x) {
    const int bpl = h.bytesPerLine;
    if (h.bitsPerPlane == 1) {
        const int bit = 7 - (x & 7);
        int index = 0;
        for (int p = 0; p < h.planes; ++p) index |= ((row[p * bpl + (x >> 3)] >> bit) & 1) << p;
        return index;
    }
    if (h.bitsPerPlane == 4) return (x & 1) ? row[x >> 1] & 0x0F : row[x >> 1] >> 4;
    return row[x];
}

}  // namespace

bool LoadPCX::Load(const std::string& path, std::string* error) {
    std::string bytes;
    if (!readPictureBytes(path, bytes, error)) {
        isPcx_ = false;
        pixels_.ClearUp();
        return false;
    }
    return LoadFromBytes(bytes, error);
}

bool LoadPCX::LoadFromBytes(std::string_view bytes, std::string* error) {
    pixels_.ClearUp();
    isPcx_ = compressed_ = false;
    bpp_ = 0;
    ByteReader r(bytes);
    Header h;
    if (!readHeader(r, h) || h.manufacturer != pcx::kManufacturer || h.encoding > 1 ||
        !knownKind(h))
        return fail(error, "not a PCX file");
    isPcx_ = true;
    compressed_ = h.encoding == 1;
    bpp_ = h.bitsPerPlane * h.planes;
    if (h.xMax < h.xMin || h.yMax < h.yMin) return fail(error, "PCX window is empty");
    const int width = h.xMax - h.xMin + 1, height = h.yMax - h.yMin + 1;
    std::string why;
    if (!plausiblePictureSize(width, height, bytes.size(), 24, &why)) return fail(error, why.c_str());
    if (static_cast<long long>(h.bytesPerLine) * 8 < static_cast<long long>(width) * h.bitsPerPlane)
        return fail(error, "PCX rows are shorter than the picture");
    const std::size_t lineBytes = static_cast<std::size_t>(h.bytesPerLine) * h.planes;
    const std::size_t total = lineBytes * static_cast<std::size_t>(height);
    // Two coded bytes make at most 63: a file cannot hold more than that.
    if (total > r.left() * (compressed_ ? 32 : 1))
        return fail(error, "PCX data is shorter than its header says");

    Palette palette;
    if (h.bitsPerPlane == 8 && h.planes == 1) {
        const bool tail = bytes.size() >= pcx::kHeaderSize + pcx::kTailPaletteSize &&
                          static_cast<std::uint8_t>(bytes[bytes.size() - pcx::kTailPaletteSize]) ==
                              pcx::kTailPaletteMarker;
        for (int i = 0; i < 256; ++i)
            for (int c = 0; c < 3; ++c)
                palette.rgb[i][c] =
                    tail ? static_cast<std::uint8_t>(bytes[bytes.size() - 768 + i * 3 + c])
                         : static_cast<std::uint8_t>(i);
    } else if (h.bitsPerPlane == 1 && h.planes == 1) {
        for (int c = 0; c < 3; ++c) palette.rgb[1][c] = 255;
    } else {
        for (int i = 0; i < 16; ++i)
            for (int c = 0; c < 3; ++c) palette.rgb[i][c] = h.palette16[i * 3 + c];
    }

    std::vector<std::uint8_t> data;
    if (!unpack(r, compressed_, total, data)) return fail(error, "PCX data ends early");
    cDIBSection dib;
    if (!dib.Create(width, height)) return fail(error, "PCX picture too large");
    const bool trueColour = h.planes == 3;
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* row = data.data() + static_cast<std::size_t>(y) * lineBytes;
        std::uint8_t* out = dib.rowBits(height - 1 - y);
        for (int x = 0; x < width; ++x) {
            if (trueColour) {
                out[x * 3] = row[2 * h.bytesPerLine + x];
                out[x * 3 + 1] = row[h.bytesPerLine + x];
                out[x * 3 + 2] = row[x];
            } else {
                const std::uint8_t* c = palette.rgb[indexAt(h, row, x)];
                out[x * 3] = c[2];
                out[x * 3 + 1] = c[1];
                out[x * 3 + 2] = c[0];
            }
        }
    }
    pixels_ = std::move(dib);
    return true;
}

}  // namespace brindle
