// Binary encoding of the album files: little-endian numbers, strings with a
// u16 length, fixed arrays in place, dynamic arrays with a head of
// dimensions (u16), count (u32, dummy included) and lower bound (u32).
//
// Each record lists its fields once, in file order, in visitFields(); the
// reader, the writer and the JSON dump walk that same list.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "album/dyn_array.h"
#include "album/encoding.h"

namespace brindle {

// Thrown inside the codec only; the file functions turn it into an error value.
struct CodecError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

template <class V, class T>
concept Visitable = requires(V& v, T& t) { visitFields(v, t); };

// Smallest number of bytes one T can take in a file; used to refuse counts
// that the rest of the file cannot hold before anything is allocated.
template <class T>
constexpr std::size_t minEncodedSize() {
    if constexpr (std::is_arithmetic_v<T>) return sizeof(T);
    else return 2;  // strings, nested records and arrays all take 2 bytes or more
}

class BinaryReader {
public:
    explicit BinaryReader(std::string_view data) : data_(data) {}

    std::size_t position() const { return pos_; }
    std::size_t remaining() const { return data_.size() - pos_; }

    template <class T>
    void operator()(const char*, T& value) { read(value); }

    template <class T>
        requires std::is_arithmetic_v<T>
    void read(T& value) {
        unsigned char buf[sizeof(T)];
        take(buf, sizeof(T));
        std::make_unsigned_t<T> u = 0;
        for (std::size_t i = 0; i < sizeof(T); ++i)
            u |= static_cast<std::make_unsigned_t<T>>(static_cast<std::make_unsigned_t<T>>(buf[i]) << (8 * i));
        std::memcpy(&value, &u, sizeof(T));
    }

    void read(std::string& s) {
        std::uint16_t len = 0;
        read(len);
        if (len > remaining()) throw CodecError("string longer than the rest of the file");
        s = decodeFileString(data_.substr(pos_, len));
        pos_ += len;
    }

    template <std::size_t N>
    void read(std::array<std::uint8_t, N>& bytes) { take(bytes.data(), N); }

    template <class T, std::size_t N>
    void read(std::array<T, N>& items) {
        for (auto& item : items) read(item);
    }

    template <class T>
    void read(DynArray<T>& array) {
        std::uint16_t dims = 0;
        read(dims);
        if (dims == 0) {
            array.release();
            return;
        }
        if (dims != 1) throw CodecError("array with more than one dimension");
        std::uint32_t count = 0, lower = 0;
        read(count);
        read(lower);
        if (lower != 0) throw CodecError("array lower bound is not 0");
        if (count > remaining() / minEncodedSize<T>()) throw CodecError("array count larger than the file");
        array.release();
        array.setAllocated(true);
        auto& items = array.items();
        for (std::uint32_t i = 0; i < count; ++i) read(items.emplace_back());
    }

    template <class T>
        requires Visitable<BinaryReader, T>
    void read(T& record) { visitFields(*this, record); }

private:
    void take(void* out, std::size_t n) {
        if (n > remaining()) throw CodecError("unexpected end of file");
        std::memcpy(out, data_.data() + pos_, n);
        pos_ += n;
    }

    std::string_view data_;
    std::size_t pos_ = 0;
};

class BinaryWriter {
public:
    const std::string& bytes() const { return out_; }

    template <class T>
    void operator()(const char*, const T& value) { write(value); }

    template <class T>
        requires std::is_arithmetic_v<T>
    void write(T value) {
        std::make_unsigned_t<T> u;
        std::memcpy(&u, &value, sizeof(T));
        for (std::size_t i = 0; i < sizeof(T); ++i) out_ += static_cast<char>((u >> (8 * i)) & 0xFF);
    }

    void write(const std::string& s) {
        std::string bytes = encodeFileString(s);
        if (bytes.size() > 0xFFFF) throw CodecError("text longer than 65535 bytes");
        write(static_cast<std::uint16_t>(bytes.size()));
        out_ += bytes;
    }

    template <std::size_t N>
    void write(const std::array<std::uint8_t, N>& bytes) {
        out_.append(reinterpret_cast<const char*>(bytes.data()), N);
    }

    template <class T, std::size_t N>
    void write(const std::array<T, N>& items) {
        for (const auto& item : items) write(item);
    }

    template <class T>
    void write(const DynArray<T>& array) {
        if (!array.allocated()) {
            write(std::uint16_t{0});
            return;
        }
        write(std::uint16_t{1});
        write(static_cast<std::uint32_t>(array.count()));
        write(std::uint32_t{0});
        for (const auto& item : array.items()) write(item);
    }

    // Records list their fields through non-const references; writing never
    // changes them.
    template <class T>
        requires Visitable<BinaryWriter, T>
    void write(const T& record) { visitFields(*this, const_cast<T&>(record)); }

private:
    std::string out_;
};

}  // namespace brindle
