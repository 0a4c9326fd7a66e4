// Replacing every byte of a buffer by its entry in a 256-entry table: the
// inner loop of all table effects.
#pragma once

#include <cstddef>
#include <cstdint>

namespace brindle {

class ByteTable {
  public:
    // `allowWide` false keeps to the portable path (for tests).
    explicit ByteTable(const std::uint8_t (&table)[256], bool allowWide = true);
    // p[i] = table[p[i]] for i in 0 .. n - 1.
    void apply(std::uint8_t* p, std::size_t n) const;
    const std::uint8_t* entries() const { return table_; }

  private:
    std::uint8_t table_[256];
    // Byte pairs for the portable path; empty when the processor can look
    // up 64 bytes at once.
    std::uint16_t* pairs_ = nullptr;
    bool wide_ = false;

  public:
    ~ByteTable();
    ByteTable(const ByteTable&) = delete;
    ByteTable& operator=(const ByteTable&) = delete;
};

}  // namespace brindle
