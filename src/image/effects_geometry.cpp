// Effects that change the size or the layout of the picture. Each builds
// the result in a second section and then takes it over, since a section
// copied onto itself must go through another object.
#include <algorithm>

#include "image/dib_section.h"
#include "image/rounding.h"

namespace brindle {

void cDIBSection::effectFitTo(int width, int height, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    if (empty() || width < 1 || height < 1) return rp.done();
    const cDIBSection copy = *this;
    const double fx = static_cast<double>(width) / Width();
    const double fy = static_cast<double>(height) / Height();
    const double f = fy < fx ? fy : fx;
    const int newWidth = std::max(1, roundEven(Width() * f));
    const int newHeight = std::max(1, roundEven(Height() * f));
    if (width <= Width() && height <= Height() && newWidth <= Width() && newHeight <= Height()) {
        effectVerkleinern(newWidth, newHeight, 0, 0, progress);
        return;
    }
    if (Create(newWidth, newHeight))
        copy.StretchPicture(hdc(), 0, 0, newWidth, newHeight, 0, 0, copy.Width(), copy.Height());
    rp.done();
}

// Sampling in place: target (x, y) takes source (round(x sx), round(y sy)),
// which never lies before it, so nothing is read after it was written.
// Buffer row 0 keeps what it had.
void cDIBSection::effectVerkleinern(int width, int height, int xMargin, int yMargin,
                                    ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    if (empty() || width < 1 || height < 1 || width > Width() || height > Height())
        return rp.done();
    xMargin = std::max(0, xMargin);
    yMargin = std::max(0, yMargin);
    const double sx = static_cast<double>(Width()) / width;
    const double sy = static_cast<double>(Height()) / height;
    std::vector<int> column(static_cast<std::size_t>(width));
    for (int x = 0; x < width; ++x) column[x] = roundEven(x * sx) * 3;
    for (int y = 1; y < height; ++y) {
        const std::uint8_t* s = rowBits(roundEven(y * sy));
        std::uint8_t* d = rowBits(y);
        for (int x = 0; x < width; ++x) {
            const std::uint8_t* sp = s + column[x];
            d[x * 3] = sp[0];
            d[x * 3 + 1] = sp[1];
            d[x * 3 + 2] = sp[2];
        }
        rp.step(y, height);
    }
    cDIBSection part;
    if (part.Create(width + 2 * xMargin, height + 2 * yMargin)) {
        for (int y = 0; y < height; ++y)
            std::copy_n(rowBits(y), static_cast<std::size_t>(width) * 3,
                        part.rowBits(y + yMargin) + xMargin * 3);
        takeFrom(part);
    }
    rp.done();
}

void cDIBSection::effectCut(int left, int top, int right, int bottom, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    if (empty() || left < 0 || top < 0 || right < 0 || bottom < 0) return rp.done();
    if (top + bottom >= Height() || left + right >= Width()) return rp.done();
    cDIBSection part;
    if (part.Create(Width() - left - right, Height() - top - bottom)) {
        part.LoadPictureBlt(hdc(), left, top, -1, -1, SRCCOPY);
        takeFrom(part);
    }
    rp.done();
}

void cDIBSection::effectGröße(int width, int height, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    if (!empty() && shrinkInPlace(width, height)) return rp.done();
    cDIBSection sized;
    if (!empty() && sized.Create(width, height)) {
        StretchPicture(sized.hdc(), 0, 0, width, height, 0, 0, Width(), Height());
        takeFrom(sized);
    }
    rp.done();
}

void cDIBSection::effectErweitern(int left, int top, int right, int bottom,
                                  ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    cDIBSection larger;
    if (!empty() && larger.Create(Width() + left + right, Height() + top + bottom)) {
        PaintPicture(larger.hdc(), left, top, Width(), Height(), 0, 0, SRCCOPY);
        takeFrom(larger);
    }
    rp.done();
}

void cDIBSection::effectKachelnSelbst(int xRepeats, int yRepeats, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    if (empty() || (xRepeats == 0 && yRepeats == 0) || xRepeats < 0 || yRepeats < 0)
        return rp.done();
    const long long w = static_cast<long long>(Width()) * (xRepeats + 1);
    const long long h = static_cast<long long>(Height()) * (yRepeats + 1);
    cDIBSection tiles;
    if (w <= INT32_MAX && h <= INT32_MAX &&
        tiles.Create(static_cast<int>(w), static_cast<int>(h))) {
        for (int b = 0; b <= yRepeats; ++b) {
            for (int a = 0; a <= xRepeats; ++a)
                PaintPicture(tiles.hdc(), a * Width(), b * Height(), Width(), Height(), 0, 0,
                             SRCCOPY);
            rp.step(b, yRepeats + 1);
        }
        takeFrom(tiles);
    }
    rp.done();
}

void cDIBSection::effectKachel(int method, int keepSize, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    if (empty() || method != 0 || (keepSize != 0 && keepSize != 1)) return rp.done();
    const int w = Width(), h = Height();
    cDIBSection quad;
    if (!quad.Create(2 * w, 2 * h)) return rp.done();
    const Surface dc = quad.hdc();
    StretchPicture(dc, 0, 0, w, h, 0, 0, w, h);
    StretchPicture(dc, 0, 2 * h, w, -h, 0, 0, w, h);       // flipped vertically, below
    StretchPicture(dc, 2 * w, 0, -w, h, 0, 0, w, h);       // flipped horizontally, right
    StretchPicture(dc, 2 * w, 2 * h, -w, -h, 0, 0, w, h);  // both ways, diagonal
    if (keepSize == 1)
        StretchLoadPicture(dc, 0, 0, w, h, 0, 0, 2 * w, 2 * h);
    else
        takeFrom(quad);
    rp.done();
}

void cDIBSection::effectBildDrehen90power(int direction, cDIBSection& target,
                                          ProgressWord* progress) const {
    RowProgress rp(progress_, progress);
    const int w = Width(), h = Height();
    if (empty() || !target.Create(h, w)) return rp.done();
    // Buffer coordinates: turning right, target (x', row') takes source
    // (w-1-row', x'); turning left, source (row', h-1-x').
    for (int row = 0; row < h; ++row) {
        const std::uint8_t* s = rowBits(row);
        const int targetX = direction > 0 ? row : h - 1 - row;
        for (int x = 0; x < w; ++x) {
            const int targetRow = direction > 0 ? w - 1 - x : x;
            std::uint8_t* d = target.rowBits(targetRow) + targetX * 3;
            d[0] = s[x * 3];
            d[1] = s[x * 3 + 1];
            d[2] = s[x * 3 + 2];
        }
        rp.step(row, h);
    }
    rp.done();
}

void cDIBSection::effectBildDrehen90(int direction, ProgressWord* progress) {
    cDIBSection turned;
    effectBildDrehen90power(direction, turned, progress);
    if (!turned.empty()) takeFrom(turned);
}

}  // namespace brindle
