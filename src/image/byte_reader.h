// A bounded reader over bytes in memory. Every read checks what is left;
// a read past the end fails and leaves the position where it was.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace brindle {

class ByteReader {
  public:
    ByteReader(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
    explicit ByteReader(std::string_view bytes)
        : data_(reinterpret_cast<const std::uint8_t*>(bytes.data())), size_(bytes.size()) {}

    std::size_t size() const { return size_; }
    std::size_t pos() const { return pos_; }
    std::size_t left() const { return size_ - pos_; }
    const std::uint8_t* data() const { return data_; }

    bool seek(std::size_t pos) {
        if (pos > size_) return false;
        pos_ = pos;
        return true;
    }
    bool skip(std::size_t n) { return n <= left() && seek(pos_ + n); }

    bool u8(std::uint8_t& v) {
        if (left() < 1) return false;
        v = data_[pos_++];
        return true;
    }
    bool u16le(std::uint16_t& v) {
        if (left() < 2) return false;
        v = static_cast<std::uint16_t>(data_[pos_] | (data_[pos_ + 1] << 8));
        pos_ += 2;
        return true;
    }
    bool u32le(std::uint32_t& v) {
        if (left() < 4) return false;
        v = static_cast<std::uint32_t>(data_[pos_]) |
            (static_cast<std::uint32_t>(data_[pos_ + 1]) << 8) |
            (static_cast<std::uint32_t>(data_[pos_ + 2]) << 16) |
            (static_cast<std::uint32_t>(data_[pos_ + 3]) << 24);
        pos_ += 4;
        return true;
    }
    bool i32le(std::int32_t& v) {
        std::uint32_t u = 0;
        if (!u32le(u)) return false;
        v = static_cast<std::int32_t>(u);
        return true;
    }
    // A pointer to the next n bytes, which the reader then passes; nullptr
    // when fewer are left.
    const std::uint8_t* take(std::size_t n) {
        if (n > left()) return nullptr;
        const std::uint8_t* p = data_ + pos_;
        pos_ += n;
        return p;
    }
    bool bytes(void* out, std::size_t n) {
        const std::uint8_t* p = take(n);
        if (!p) return false;
        std::memcpy(out, p, n);
        return true;
    }

  private:
    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t pos_ = 0;
};

}  // namespace brindle
