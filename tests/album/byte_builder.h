// Builds file contents byte by byte, so tests state the layout independently
// of the codec they check.
#pragma once

#include <cstdint>
#include <string>

namespace brindle::test {

class Bytes {
public:
    Bytes& u8(std::uint8_t v) { s_ += static_cast<char>(v); return *this; }
    Bytes& u16(std::uint16_t v) { return u8(v & 0xFF).u8(v >> 8); }
    Bytes& i16(std::int16_t v) { return u16(static_cast<std::uint16_t>(v)); }
    Bytes& u32(std::uint32_t v) { return u16(v & 0xFFFF).u16(v >> 16); }
    Bytes& i32(std::int32_t v) { return u32(static_cast<std::uint32_t>(v)); }
    Bytes& str(const std::string& raw) { u16(static_cast<std::uint16_t>(raw.size())); s_ += raw; return *this; }
    Bytes& zeros(std::size_t n) { s_.append(n, '\0'); return *this; }
    // Head of a dynamic array holding `entries` entries after the dummy.
    Bytes& dyn(std::uint32_t entries) { return u16(1).u32(entries + 1).u32(0); }
    Bytes& unallocated() { return u16(0); }
    Bytes& raw(const std::string& bytes) { s_ += bytes; return *this; }
    // FontSpec with an empty name.
    Bytes& font(std::uint32_t color, const std::string& name, std::int32_t size) {
        return u32(color).str(name).i32(size).i16(0).i16(0).i16(0);
    }
    // An ExtBlock with all fields zero, empty or unallocated.
    Bytes& emptyExt(bool withFont = true) {
        for (int i = 0; i < 7; ++i) i32(0);
        unallocated().unallocated();
        for (int i = 0; i < 7; ++i) str("");
        unallocated().unallocated();
        if (withFont) font(0, "", 0);
        return *this;
    }

    const std::string& bytes() const { return s_; }

private:
    std::string s_;
};

}  // namespace brindle::test
