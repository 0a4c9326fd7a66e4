// cDib: a BMP file held whole in memory, with its headers read out and
// pointers to the info and the bits. Also builds a file from a packed DIB
// or from a cDIBSection, which is how BMP files are written.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "image/dib_section.h"

namespace brindle {

class cDib {
  public:
    // Reads `path`. On failure the object is empty and `error` holds one of
    // "File does not exist:", "File is locked - cannot access:" or "File is
    // not a supported bitmap format:", a line end and the path.
    bool CreateFromFile(const std::string& path, std::string* error = nullptr);
    // The same from bytes already read; false when they are not a BMP file
    // whose headers and bits fit inside them.
    bool CreateFromBytes(std::string_view bytes);
    // Takes an info header, its colour table and the bits (`size` bytes in
    // all) and puts a file header in front.
    bool CreateFromPackedDIBPointer(const std::uint8_t* packed, std::size_t size);
    // A 24-bit file of the section's pixels.
    bool CreateFromDIBSection(const cDIBSection& dib);
    bool WriteToFile(const std::string& path, std::string* error = nullptr) const;

    bool empty() const { return file_.empty(); }
    const std::vector<std::uint8_t>& bytes() const { return file_; }

    int BitCount() const { return bitCount_; }
    int Width() const { return width_; }
    int Height() const { return height_; }  // negative for top-down rows
    std::uint32_t Compression() const { return compression_; }
    std::uint32_t SizeInfoHeader() const { return sizeInfoHeader_; }
    std::uint32_t SizeImage() const { return sizeImage_; }
    int Planes() const { return planes_; }
    std::uint32_t ClrImportant() const { return clrImportant_; }
    std::uint32_t ClrUsed() const { return clrUsed_; }
    std::int32_t XPPM() const { return xppm_; }
    std::int32_t YPPM() const { return yppm_; }
    std::uint16_t Filetype() const { return 0x4D42; }  // "BM"
    std::uint32_t SizeFileHeader() const { return 14; }
    std::uint32_t BitOffset() const { return bitOffset_; }
    // Inside bytes(); valid until the object changes. nullptr when empty.
    const std::uint8_t* PointerToBits() const {
        return empty() ? nullptr : file_.data() + bitOffset_;
    }
    const std::uint8_t* PointerToBitmapInfo() const {
        return empty() ? nullptr : file_.data() + 14;
    }
    // Info header and colour table together.
    std::uint32_t SizeBitmapInfo() const { return bitOffset_ - 14; }
    // Bytes from PointerToBits() to the end of the file.
    std::size_t SizeBits() const { return empty() ? 0 : file_.size() - bitOffset_; }

  private:
    bool parse();
    void clear();

    std::vector<std::uint8_t> file_;
    int bitCount_ = 0, width_ = 0, height_ = 0, planes_ = 0;
    std::uint32_t compression_ = 0, sizeInfoHeader_ = 0, sizeImage_ = 0, clrImportant_ = 0,
                  clrUsed_ = 0;
    std::int32_t xppm_ = 0, yppm_ = 0;
    std::uint32_t bitOffset_ = 0;
};

}  // namespace brindle
