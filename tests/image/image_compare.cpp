#include "image_compare.h"

#include <cmath>
#include <random>
#include <sstream>

namespace brindle::test {

std::ostream& operator<<(std::ostream& os, const Bgr& c) {
    return os << "(b " << c.b << ", g " << c.g << ", r " << c.r << ")";
}

cDIBSection makeDib(int width, int height, const std::function<Bgr(int, int)>& fn) {
    cDIBSection dib;
    if (!dib.Create(width, height)) return dib;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) setPixel(dib, x, y, fn(x, y));
    return dib;
}

cDIBSection makeDib(const std::vector<std::vector<Bgr>>& rows) {
    return makeDib(static_cast<int>(rows[0].size()), static_cast<int>(rows.size()),
                   [&](int x, int y) { return rows[y][x]; });
}

Bgr pixelAt(const cDIBSection& dib, int x, int y) {
    return bufferPixel(dib, x, dib.Height() - 1 - y);
}

Bgr bufferPixel(const cDIBSection& dib, int x, int row) {
    const std::uint8_t* p = dib.rowBits(row) + x * 3;
    return {p[0], p[1], p[2]};
}

void setPixel(cDIBSection& dib, int x, int y, Bgr c) {
    std::uint8_t* p = dib.rowBits(dib.Height() - 1 - y) + x * 3;
    p[0] = static_cast<std::uint8_t>(c.b);
    p[1] = static_cast<std::uint8_t>(c.g);
    p[2] = static_cast<std::uint8_t>(c.r);
}

cDIBSection smoothPicture(int width, int height) {
    return makeDib(width, height, [&](int x, int y) {
        const double u = static_cast<double>(x) / width, v = static_cast<double>(y) / height;
        return Bgr{static_cast<int>(128 + 100 * std::sin(6.0 * u + 2.0 * v)),
                   static_cast<int>(40 + 180 * v),
                   static_cast<int>(30 + 200 * u * (1 - v) + 20 * std::cos(5.0 * v))};
    });
}

cDIBSection noisePicture(int width, int height, unsigned seed) {
    std::mt19937 rng(seed);
    return makeDib(width, height, [&](int, int) {
        return Bgr{static_cast<int>(rng() & 255), static_cast<int>(rng() & 255),
                   static_cast<int>(rng() & 255)};
    });
}

::testing::AssertionResult sameImage(const cDIBSection& expected, const cDIBSection& actual,
                                     int tolerance) {
    if (expected.Width() != actual.Width() || expected.Height() != actual.Height())
        return ::testing::AssertionFailure()
               << "expected a " << expected.Width() << "x" << expected.Height()
               << " picture but got " << actual.Width() << "x" << actual.Height();
    for (int y = 0; y < expected.Height(); ++y)
        for (int x = 0; x < expected.Width(); ++x) {
            const Bgr e = pixelAt(expected, x, y), a = pixelAt(actual, x, y);
            if (std::abs(e.b - a.b) > tolerance || std::abs(e.g - a.g) > tolerance ||
                std::abs(e.r - a.r) > tolerance)
                return ::testing::AssertionFailure()
                       << "first differing pixel at (" << x << ", " << y
                       << ") from the top left: expected " << e << " but got " << a
                       << " (tolerance " << tolerance << ")";
        }
    return ::testing::AssertionSuccess();
}

::testing::AssertionResult similarImage(const cDIBSection& expected, const cDIBSection& actual,
                                        double mean) {
    if (expected.Width() != actual.Width() || expected.Height() != actual.Height())
        return ::testing::AssertionFailure()
               << "expected a " << expected.Width() << "x" << expected.Height()
               << " picture but got " << actual.Width() << "x" << actual.Height();
    double sum = 0;
    for (int y = 0; y < expected.Height(); ++y)
        for (int x = 0; x < expected.Width(); ++x) {
            const Bgr e = pixelAt(expected, x, y), a = pixelAt(actual, x, y);
            sum += std::abs(e.b - a.b) + std::abs(e.g - a.g) + std::abs(e.r - a.r);
        }
    const double got = sum / (3.0 * expected.Width() * expected.Height());
    if (got <= mean) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "mean channel difference " << got << " is above " << mean;
}

Bytes& Bytes::u8(int v) {
    s_.push_back(static_cast<char>(v & 0xFF));
    return *this;
}
Bytes& Bytes::u16(int v) { return u8(v).u8(v >> 8); }
Bytes& Bytes::u32(std::uint32_t v) {
    return u16(static_cast<int>(v & 0xFFFF)).u16(static_cast<int>(v >> 16));
}
Bytes& Bytes::u16be(int v) { return u8(v >> 8).u8(v); }
Bytes& Bytes::u32be(std::uint32_t v) {
    return u16be(static_cast<int>(v >> 16)).u16be(static_cast<int>(v & 0xFFFF));
}
Bytes& Bytes::text(const std::string& s) {
    s_ += s;
    return *this;
}
Bytes& Bytes::fill(std::size_t n, int v) {
    s_.append(n, static_cast<char>(v));
    return *this;
}
Bytes& Bytes::append(const std::string& s) { return text(s); }

}  // namespace brindle::test
