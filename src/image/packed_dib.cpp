#include "image/packed_dib.h"

#include <cstring>

#include "image/bmp_format.h"
#include "image/byte_reader.h"
#include "image/file_stamp.h"

namespace brindle {
namespace {

void put16(std::vector<std::uint8_t>& out, std::size_t at, std::uint32_t v) {
    out[at] = static_cast<std::uint8_t>(v);
    out[at + 1] = static_cast<std::uint8_t>(v >> 8);
}

void put32(std::vector<std::uint8_t>& out, std::size_t at, std::uint32_t v) {
    put16(out, at, v);
    put16(out, at + 2, v >> 16);
}

// Bytes of colour table (and bit-field masks) that follow an info header.
bool tableSize(std::uint32_t infoSize, int bitCount, std::uint32_t compression,
               std::uint32_t clrUsed, std::uint64_t& size) {
    const bool core = infoSize == bmp::kCoreHeaderSize;
    std::uint64_t entries = clrUsed;
    if (entries == 0 && bitCount <= 8) entries = 1u << bitCount;
    size = entries * (core ? 3 : 4);
    if (!core && infoSize == bmp::kInfoHeaderSize && compression == bmp::kBitFields) size += 12;
    return size <= (1u << 20);
}

}  // namespace

void cDib::clear() { *this = cDib{}; }

bool cDib::parse() {
    ByteReader r(file_.data(), file_.size());
    std::uint8_t b = 0, m = 0;
    std::uint32_t fileSize = 0, reserved = 0, infoSize = 0;
    if (!r.u8(b) || !r.u8(m) || b != 'B' || m != 'M') return false;
    if (!r.u32le(fileSize) || !r.u32le(reserved) || !r.u32le(bitOffset_) || !r.u32le(infoSize))
        return false;
    if (infoSize != bmp::kCoreHeaderSize && (infoSize < bmp::kInfoHeaderSize || infoSize > 1024))
        return false;
    if (infoSize > r.left() + 4) return false;
    sizeInfoHeader_ = infoSize;
    if (infoSize == bmp::kCoreHeaderSize) {
        std::uint16_t w = 0, h = 0, planes = 0, bits = 0;
        if (!r.u16le(w) || !r.u16le(h) || !r.u16le(planes) || !r.u16le(bits)) return false;
        width_ = w, height_ = h, planes_ = planes, bitCount_ = bits;
    } else {
        std::uint16_t planes = 0, bits = 0;
        if (!r.i32le(width_) || !r.i32le(height_) || !r.u16le(planes) || !r.u16le(bits) ||
            !r.u32le(compression_) || !r.u32le(sizeImage_) || !r.i32le(xppm_) || !r.i32le(yppm_) ||
            !r.u32le(clrUsed_) || !r.u32le(clrImportant_))
            return false;
        planes_ = planes, bitCount_ = bits;
    }
    if (width_ <= 0 || height_ == 0 || height_ == INT32_MIN) return false;
    if (bitCount_ != 1 && bitCount_ != 4 && bitCount_ != 8 && bitCount_ != 16 && bitCount_ != 24 &&
        bitCount_ != 32)
        return false;
    std::uint64_t table = 0;
    if (!tableSize(infoSize, bitCount_, compression_, clrUsed_, table)) return false;
    if (bitOffset_ < bmp::kFileHeaderSize + infoSize || bitOffset_ > file_.size()) return false;
    // Uncompressed bits must all be there; run-length bits end where they end.
    if (compression_ == 0 || compression_ == bmp::kBitFields) {
        const std::uint64_t stride =
            ((static_cast<std::uint64_t>(width_) * bitCount_ + 31) / 32) * 4;
        const std::uint64_t rows = height_ < 0 ? -static_cast<std::int64_t>(height_) : height_;
        if (stride * rows > file_.size() - bitOffset_) return false;
    }
    return true;
}

bool cDib::CreateFromBytes(std::string_view bytes) {
    clear();
    file_.assign(bytes.begin(), bytes.end());
    if (!parse()) {
        clear();
        return false;
    }
    return true;
}

bool cDib::CreateFromFile(const std::string& path, std::string* error) {
    clear();
    auto failWith = [&](const char* text) {
        if (error) *error = text + std::string(kLineEnd) + path;
        return false;
    };
    if (!fileExists(path)) return failWith("File does not exist:");
    std::string bytes;
    if (!readPictureBytes(path, bytes)) return failWith("File is locked - cannot access:");
    if (!CreateFromBytes(bytes)) return failWith("File is not a supported bitmap format:");
    return true;
}

bool cDib::CreateFromPackedDIBPointer(const std::uint8_t* packed, std::size_t size) {
    clear();
    ByteReader r(packed, size);
    std::uint32_t infoSize = 0, compression = 0, clrUsed = 0;
    std::uint16_t bits = 0;
    if (!r.u32le(infoSize)) return false;
    if (infoSize == bmp::kCoreHeaderSize) {
        if (!r.skip(6) || !r.u16le(bits)) return false;
    } else {
        if (!r.skip(10) || !r.u16le(bits) || !r.u32le(compression) || !r.skip(12) ||
            !r.u32le(clrUsed))
            return false;
    }
    std::uint64_t table = 0;
    if (bits > 32 || !tableSize(infoSize, bits, compression, clrUsed, table)) return false;
    const std::uint64_t offset = bmp::kFileHeaderSize + infoSize + table;
    if (offset > bmp::kFileHeaderSize + size || bmp::kFileHeaderSize + size > UINT32_MAX)
        return false;
    file_.assign(bmp::kFileHeaderSize, 0);
    file_[0] = 'B';
    file_[1] = 'M';
    put32(file_, 2, static_cast<std::uint32_t>(bmp::kFileHeaderSize + size));
    put32(file_, 10, static_cast<std::uint32_t>(offset));
    file_.insert(file_.end(), packed, packed + size);
    if (!parse()) {
        clear();
        return false;
    }
    return true;
}

bool cDib::CreateFromDIBSection(const cDIBSection& dib) {
    clear();
    if (dib.empty()) return false;
    const BitmapInfoHeader& h = dib.header();
    std::vector<std::uint8_t> packed(bmp::kInfoHeaderSize + h.sizeImage);
    put32(packed, 0, h.size);
    put32(packed, 4, static_cast<std::uint32_t>(h.width));
    put32(packed, 8, static_cast<std::uint32_t>(h.height));
    put16(packed, 12, h.planes);
    put16(packed, 14, h.bitCount);
    put32(packed, 16, h.compression);
    put32(packed, 20, h.sizeImage);
    put32(packed, 24, static_cast<std::uint32_t>(h.xPelsPerMeter));
    put32(packed, 28, static_cast<std::uint32_t>(h.yPelsPerMeter));
    put32(packed, 32, h.clrUsed);
    put32(packed, 36, h.clrImportant);
    std::memcpy(packed.data() + bmp::kInfoHeaderSize, dib.DIBSectionBitsPtr(), h.sizeImage);
    return CreateFromPackedDIBPointer(packed.data(), packed.size());
}

bool cDib::WriteToFile(const std::string& path, std::string* error) const {
    if (empty()) {
        if (error) *error = "no bitmap";
        return false;
    }
    return writeBytesAtomic(path, file_.data(), file_.size(), error);
}

}  // namespace brindle
