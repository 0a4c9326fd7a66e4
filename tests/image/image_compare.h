// Helpers for image tests: pictures built from a function, pixel access in
// picture coordinates (top-left origin), and comparisons that name the
// first differing pixel.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>

#include "image/dib_section.h"
#include "image/rounding.h"

namespace brindle::test {

struct Bgr {
    int b = 0, g = 0, r = 0;
    bool operator==(const Bgr&) const = default;
};

std::ostream& operator<<(std::ostream& os, const Bgr& c);

// A picture whose pixel (x, y), counted from the top left, is fn(x, y).
cDIBSection makeDib(int width, int height, const std::function<Bgr(int x, int y)>& fn);
// A picture from a list of rows, top row first.
cDIBSection makeDib(const std::vector<std::vector<Bgr>>& rows);
// Pixel (x, y) counted from the top left.
Bgr pixelAt(const cDIBSection& dib, int x, int y);
void setPixel(cDIBSection& dib, int x, int y, Bgr c);
// Pixel (x, row) with row counted from the bottom, as the effects count.
Bgr bufferPixel(const cDIBSection& dib, int x, int row);

// A smooth, photo-like picture: gradients and soft waves, no noise.
cDIBSection smoothPicture(int width, int height);
// Every pixel different from its neighbours.
cDIBSection noisePicture(int width, int height, unsigned seed);

// Equal sizes and every channel within `tolerance`; otherwise the first
// differing pixel (from the top left) with both values.
::testing::AssertionResult sameImage(const cDIBSection& expected, const cDIBSection& actual,
                                     int tolerance = 0);
// Equal sizes and a mean absolute channel difference of at most `mean`.
::testing::AssertionResult similarImage(const cDIBSection& expected, const cDIBSection& actual,
                                        double mean);

// Byte-building for files made in tests.
class Bytes {
  public:
    Bytes& u8(int v);
    Bytes& u16(int v);            // little-endian
    Bytes& u32(std::uint32_t v);  // little-endian
    Bytes& u16be(int v);
    Bytes& u32be(std::uint32_t v);
    Bytes& text(const std::string& s);
    Bytes& fill(std::size_t n, int v);
    Bytes& append(const std::string& s);
    const std::string& str() const { return s_; }
    std::size_t size() const { return s_.size(); }

  private:
    std::string s_;
};

}  // namespace brindle::test
