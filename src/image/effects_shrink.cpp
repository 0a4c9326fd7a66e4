// Shrinking by dropping pixels in the picture's own buffer: no new section
// to fault in, and only the rows that are kept are read. The bytes equal a
// stretch into a new section (pad bytes zero).
#include <cstring>
#include <vector>

#include "image/dib_section.h"

namespace brindle {
namespace {

// The source pixel under the centre of target pixel i when n become m.
int sourceUnder(int i, int n, int m) { return static_cast<int>((2LL * i + 1) * n / (2LL * m)); }

}  // namespace

// Target row k (counted from the bottom, as stored) is written at k x the
// new stride and reads source row r(k) >= k; rows run upwards, so a row
// may only cover source rows already read.
bool cDIBSection::shrinkInPlace(int width, int height) {
    const int w0 = Width(), h0 = Height();
    if (width <= 0 || height <= 0 || width > w0 || height > h0) return false;
    const long long oldStride = stride(), newStride = BytesPerScanLine(width);
    const auto sourceRow = [&](int k) { return h0 - 1 - sourceUnder(height - 1 - k, h0, height); };
    for (int k = 0; k + 1 < height; ++k)
        if ((k + 1) * newStride > sourceRow(k + 1) * oldStride) return false;
    std::vector<int> from(static_cast<std::size_t>(width));
    for (int x = 0; x < width; ++x) from[x] = sourceUnder(x, w0, width) * 3;
    std::vector<std::uint8_t> line(static_cast<std::size_t>(w0) * 3 + 1);
    std::uint8_t* bits = bits_.data();
    const std::size_t colours = static_cast<std::size_t>(width) * 3;
    for (int k = 0; k < height; ++k) {
        std::uint8_t* out = bits + k * newStride;
        const std::uint8_t* in = bits + sourceRow(k) * oldStride;
        if (in < out + newStride) {  // the row overlaps its source: read it first
            std::memcpy(line.data(), in, line.size() - 1);
            in = line.data();
        }
        // Four bytes a pixel, the fourth overwritten by the next; three for the last.
        for (int x = 0; x + 1 < width; ++x) std::memcpy(out + 3 * x, in + from[x], 4);
        std::memcpy(out + 3 * (width - 1), in + from[width - 1], 3);
        std::memset(out + colours, 0, static_cast<std::size_t>(newStride) - colours);
    }
    bits_.resize(static_cast<std::size_t>(newStride * height));
    header_.width = width;
    header_.height = height;
    header_.sizeImage = static_cast<std::uint32_t>(newStride * height);
    return true;
}

}  // namespace brindle
