#include "image/lzw_encoder.h"

#include <algorithm>

namespace brindle {
namespace {

constexpr int kMaxBits = 12;
constexpr int kTableCodes = 1 << kMaxBits;
constexpr int kHashSize = 8192;  // a power of two, about twice the codes

class BitPacker {
  public:
    explicit BitPacker(std::vector<std::uint8_t>& out) : out_(out) {}
    void put(int code, int width) {
        buffer_ |= static_cast<std::uint32_t>(code) << bits_;
        bits_ += width;
        while (bits_ >= 8) {
            out_.push_back(static_cast<std::uint8_t>(buffer_));
            buffer_ >>= 8;
            bits_ -= 8;
        }
    }
    void flush() {
        if (bits_ > 0) out_.push_back(static_cast<std::uint8_t>(buffer_));
        buffer_ = 0;
        bits_ = 0;
    }

  private:
    std::vector<std::uint8_t>& out_;
    std::uint32_t buffer_ = 0;
    int bits_ = 0;
};

// The string table: (prefix code, next index) -> code, by open addressing.
// A generation number per slot makes clearing free.
class StringTable {
  public:
    StringTable() : keys_(kHashSize), codes_(kHashSize), generation_(kHashSize, 0) {}
    void clear() { ++current_; }
    int find(int prefix, int index) const {
        const std::uint32_t k = key(prefix, index);
        for (std::uint32_t s = slot(k);; s = (s + 1) & (kHashSize - 1)) {
            if (generation_[s] != current_) return -1;
            if (keys_[s] == k) return codes_[s];
        }
    }
    void add(int prefix, int index, int code) {
        const std::uint32_t k = key(prefix, index);
        std::uint32_t s = slot(k);
        while (generation_[s] == current_) s = (s + 1) & (kHashSize - 1);
        generation_[s] = current_;
        keys_[s] = k;
        codes_[s] = static_cast<std::uint16_t>(code);
    }

  private:
    static std::uint32_t key(int prefix, int index) {
        return static_cast<std::uint32_t>(prefix) << 8 | index;
    }
    static std::uint32_t slot(std::uint32_t k) { return (k * 2654435761u) >> (32 - 13); }
    std::vector<std::uint32_t> keys_;
    std::vector<std::uint16_t> codes_;
    std::vector<std::uint32_t> generation_;
    std::uint32_t current_ = 1;
};

}  // namespace

std::vector<std::uint8_t> lzwEncode(const std::uint8_t* indices, std::size_t count, int minCodeSize,
                                    LzwStats* stats) {
    minCodeSize = std::clamp(minCodeSize, 2, 8);
    const int clearCode = 1 << minCodeSize, endCode = clearCode + 1;
    std::vector<std::uint8_t> out;
    BitPacker packer(out);
    StringTable table;
    LzwStats local;
    int nextCode = endCode + 1;
    // Codes written since the last clear code. The decoder adds a string
    // for each of them but the first, so its table, and with it the code
    // width, is one behind ours: code n goes out in the smallest width w
    // with endCode + n < 2^w.
    int sinceClear = 0;
    auto width = [&] {
        int w = minCodeSize + 1;
        while (w < kMaxBits && endCode + sinceClear >= (1 << w)) ++w;
        return w;
    };
    auto emit = [&](int code) {
        const int w = width();
        packer.put(code, w);
        local.widestCode = std::max(local.widestCode, w);
        ++local.codes;
        ++sinceClear;
    };
    auto clear = [&] {
        emit(clearCode);
        ++local.clearCodes;
        table.clear();
        nextCode = endCode + 1;
        sinceClear = 0;
    };

    clear();
    if (count > 0) {
        int current = indices[0] & (clearCode - 1);
        for (std::size_t i = 1; i < count; ++i) {
            const int index = indices[i] & (clearCode - 1);
            const int found = table.find(current, index);
            if (found >= 0) {
                current = found;
                continue;
            }
            emit(current);
            if (nextCode < kTableCodes)
                table.add(current, index, nextCode++);
            else
                clear();
            current = index;
        }
        emit(current);
    }
    emit(endCode);
    packer.flush();
    if (stats) *stats = local;
    return out;
}

}  // namespace brindle
