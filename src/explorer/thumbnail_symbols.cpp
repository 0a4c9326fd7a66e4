#include "explorer/thumbnail_symbols.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace brindle::explorer {
namespace {

struct Colour {
    std::uint8_t r, g, b;
};

// Pixel (x, y) from the top left.
void put(cDIBSection& dib, int x, int y, Colour c) {
    if (x < 0 || y < 0 || x >= dib.Width() || y >= dib.Height()) return;
    std::uint8_t* p = dib.rowBits(dib.Height() - 1 - y) + x * 3;
    p[0] = c.b;
    p[1] = c.g;
    p[2] = c.r;
}

void fillRect(cDIBSection& dib, int x0, int y0, int x1, int y1, Colour c) {
    for (int y = y0; y < y1; ++y)
        for (int x = x0; x < x1; ++x) put(dib, x, y, c);
}

cDIBSection card(int size, Colour background) {
    const int w = std::max(8, size), h = std::max(6, size * 3 / 4);
    cDIBSection dib;
    if (dib.Create(w, h)) fillRect(dib, 0, 0, w, h, background);
    return dib;
}

}  // namespace

cDIBSection errorPicture(int size) {
    cDIBSection dib = card(size, {224, 224, 224});
    if (dib.empty()) return dib;
    const int w = dib.Width(), h = dib.Height();
    const Colour border{96, 96, 96}, red{200, 30, 30};
    fillRect(dib, 0, 0, w, 1, border);
    fillRect(dib, 0, h - 1, w, h, border);
    fillRect(dib, 0, 0, 1, h, border);
    fillRect(dib, w - 1, 0, w, h, border);
    // A cross over the middle half, as thick as a twentieth of the card.
    const int side = std::min(w, h) / 2, x0 = (w - side) / 2, y0 = (h - side) / 2;
    const int pen = std::max(1, std::min(w, h) / 20);
    for (int i = 0; i < side; ++i)
        for (int t = -pen; t <= pen; ++t) {
            put(dib, x0 + i + t, y0 + i, red);
            put(dib, x0 + side - 1 - i + t, y0 + i, red);
        }
    return dib;
}

cDIBSection mediaSymbol(int size) {
    cDIBSection dib = card(size, {40, 44, 52});
    if (dib.empty()) return dib;
    const int w = dib.Width(), h = dib.Height();
    // Perforation along the top and bottom edges.
    const int hole = std::max(2, h / 12), step = hole * 2;
    for (int x = hole / 2; x + hole <= w; x += step) {
        fillRect(dib, x, hole / 2, x + hole, hole / 2 + hole, {235, 235, 235});
        fillRect(dib, x, h - hole / 2 - hole, x + hole, h - hole / 2, {235, 235, 235});
    }
    // A play triangle pointing right, centred.
    const int th = h / 2, tw = th * 7 / 8, tx = (w - tw) / 2, ty = (h - th) / 2;
    for (int y = 0; y < th; ++y) {
        const int reach = tw * (th / 2 - std::abs(y - th / 2)) / std::max(1, th / 2);
        fillRect(dib, tx, ty + y, tx + reach, ty + y + 1, {250, 250, 250});
    }
    return dib;
}

}  // namespace brindle::explorer
