// Shrinking by dropping pixels in the picture's own buffer: no new section
// to fault in, and only the rows that are kept are read. The bytes equal a
// stretch into a new section (pad bytes zero).
#include <algorithm>
#include <cstring>
#include <vector>

#include "image/dib_section.h"

namespace brindle {
namespace {

// The order the rows are made in: rows written at or above their source
// downwards, then those written below it upwards, then the rows that read
// nothing; empty when some row would cover a row still to be read.
std::vector<int> rebuildOrder(const std::vector<int>& source, long long oldStride,
                              long long newStride, int oldHeight) {
    const int height = static_cast<int>(source.size());
    std::vector<int> order;
    for (int k = height - 1; k >= 0; --k)
        if (source[k] >= 0 && k * newStride >= source[k] * oldStride) order.push_back(k);
    for (int k = 0; k < height; ++k)
        if (source[k] >= 0 && k * newStride < source[k] * oldStride) order.push_back(k);
    std::vector<int> readersLeft(static_cast<std::size_t>(oldHeight), 0);
    for (int k : order) ++readersLeft[source[k]];
    for (int k : order) {
        --readersLeft[source[k]];  // read (or copied aside) before the row is written
        const long long first = k * newStride / oldStride, last = ((k + 1) * newStride - 1) / oldStride;
        for (long long r = first; r <= last; ++r)
            if (readersLeft[r] > 0) return {};
    }
    for (int k = 0; k < height; ++k)
        if (source[k] < 0) order.push_back(k);
    return order;
}

}  // namespace

bool cDIBSection::rebuildSmaller(int width, int height, const std::vector<int>& source,
                                 const RowMaker& make) {
    const int h0 = Height();
    if (empty() || width <= 0 || height <= 0 || width > Width() || height > h0 ||
        source.size() != static_cast<std::size_t>(height))
        return false;
    for (int row : source)
        if (row < -1 || row >= h0) return false;
    const long long oldStride = stride(), newStride = BytesPerScanLine(width);
    const std::vector<int> order = rebuildOrder(source, oldStride, newStride, h0);
    if (order.empty()) return false;
    std::vector<std::uint8_t> line(static_cast<std::size_t>(oldStride));
    std::uint8_t* bits = bits_.data();
    const std::size_t colours = static_cast<std::size_t>(width) * 3;
    for (int k : order) {
        std::uint8_t* out = bits + k * newStride;
        const std::uint8_t* in = source[k] >= 0 ? bits + source[k] * oldStride : nullptr;
        if (in && in < out + newStride && out < in + oldStride) {  // read it before covering it
            std::memcpy(line.data(), in, line.size());
            in = line.data();
        }
        make(k, out, in);
        std::memset(out + colours, 0, static_cast<std::size_t>(newStride) - colours);
    }
    bits_.resize(static_cast<std::size_t>(newStride * height));
    header_.width = width;
    header_.height = height;
    header_.sizeImage = static_cast<std::uint32_t>(newStride * height);
    return true;
}

// Target row k (counted from the bottom, as stored) reads source row r(k).
bool cDIBSection::shrinkInPlace(int width, int height) {
    const int w0 = Width(), h0 = Height();
    if (width <= 0 || height <= 0 || width > w0 || height > h0) return false;
    std::vector<int> rows(static_cast<std::size_t>(height));
    for (int k = 0; k < height; ++k) rows[k] = h0 - 1 - pixelUnder(height - 1 - k, h0, height);
    std::vector<int> from(static_cast<std::size_t>(width));
    for (int x = 0; x < width; ++x) from[x] = pixelUnder(x, w0, width) * 3;
    return rebuildSmaller(width, height, rows, [&](int, std::uint8_t* out, const std::uint8_t* in) {
        // Four bytes a pixel, the fourth overwritten by the next; three for the last.
        for (int x = 0; x + 1 < width; ++x) std::memcpy(out + 3 * x, in + from[x], 4);
        std::memcpy(out + 3 * (width - 1), in + from[width - 1], 3);
    });
}

}  // namespace brindle
