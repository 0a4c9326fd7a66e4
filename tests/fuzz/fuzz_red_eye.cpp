// Red-eye positions and boxes come from the user (clicks, command-line
// numbers): any of them, on any small picture, must stay inside the pixel
// buffer, end, and change nothing outside the box.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "studio/red_eye.h"

using namespace brindle;
using namespace brindle::studio;

namespace {

struct Reader {
    const std::uint8_t* data;
    std::size_t size;
    int next() {
        std::int32_t v = 0;
        const std::size_t n = size < 4 ? size : 4;
        std::memcpy(&v, data, n);
        data += n;
        size -= n;
        return v;
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Reader in{data, size};
    const int w = 1 + (in.next() & 31), h = 1 + (in.next() & 31);
    cDIBSection dib;
    if (!dib.Create(w, h)) return 0;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            const int v = in.size ? in.data[(x + y * w) % in.size] : 0;
            setPixel(dib, x, y, {v, (v * 7) & 255, (v * 13) & 255});
        }
    const int sensitivity = in.next(), width = std::abs(in.next() % 101);
    const int cx = in.next(), cy = in.next();
    const SpiralResult r = spiralSearch(dib, cx, cy, sensitivity % 101, width);
    if (r.visited > w * h + width * 10 || r.corrected > w * h) std::abort();

    const cDIBSection before = dib;
    SelectionThresholds t;
    t.red = in.next();
    t.other = in.next();
    t.bright = in.next() % 512;
    t.grey = in.next() & 1;
    const int left = in.next(), top = in.next(), right = in.next(), bottom = in.next();
    RedEyeRemoval(dib, left, top, right, bottom, t);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            if (!(x >= left && x < right && y >= top && y < bottom) && !(pixelAt(dib, x, y) == pixelAt(before, x, y)))
                std::abort();
    return 0;
}
