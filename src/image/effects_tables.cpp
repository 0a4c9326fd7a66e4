// Table and per-pixel effects. Where a result depends on one byte only, a
// 256-entry table is filled once and every colour byte is looked up.
#include <chrono>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "image/byte_table.h"
#include "image/dib_section.h"
#include "image/effects_internal.h"
#include "image/rounding.h"
#include "image/pointwise_rows.h"

namespace brindle {
namespace effects {
namespace {

std::mt19937& generator() {
    thread_local std::mt19937 gen(
        static_cast<unsigned>(std::chrono::steady_clock::now().time_since_epoch().count()));
    return gen;
}

using Table = std::uint8_t[256];

}  // namespace

void contrastTable(int c, Table& t) {
    int k = roundEven(c / 2.0) + 93;
    if (k < 0) k = 0;
    const double f = std::exp(k / 30.0) / 20.0 - 0.05;
    for (int i = 0; i < 256; ++i) t[i] = roundClamp((i - 127) * f + 127);
}

void brightnessTable(int b, Table& t) {
    int k = b + 100;
    k = k < 0 ? 0 : (k > 200 ? 200 : k);
    const double f = std::exp(k / 50.0) / 5.0 - 0.2;
    for (int i = 0; i < 256; ++i) {
        const int v = roundEven(i * f);
        t[i] = static_cast<std::uint8_t>(v > 255 ? 255 : v);
    }
}

double rnd() { return std::generate_canonical<double, 32>(generator()); }

}  // namespace effects

using effects::rnd;

void cDIBSection::seedRandom(unsigned seed) { effects::generator().seed(seed); }

void cDIBSection::applyTable(const std::uint8_t (&table)[256], RowProgress& progress) {
    const ByteTable lookup(table);
    const std::size_t bytes = static_cast<std::size_t>(Width()) * 3;
    const int rows = Height();
    for (int y = 0; y < rows; ++y) {
        lookup.apply(rowBits(y), bytes);
        progress.step(y, rows);
    }
    progress.done();
}

void cDIBSection::effectKontrastBits(int contrast, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    std::uint8_t table[256];
    effects::contrastTable(contrast, table);
    applyTable(table, rp);
}

void cDIBSection::effectBrightnessBits(int brightness, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    std::uint8_t table[256];
    effects::brightnessTable(brightness, table);
    applyTable(table, rp);
}

// The whole buffer as one flat array, over bytes 0 .. (Height - 1) x
// (BytesPerScanLine - 1), pad bytes included: the older fast path, kept as it was.
void cDIBSection::effectBrightnessBitsFast(int brightness, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    std::uint8_t table[256];
    effects::brightnessTable(brightness, table);
    if (!empty()) {
        const std::size_t last = static_cast<std::size_t>(Height() - 1) * (BytesPerScanLine() - 1);
        ByteTable(table).apply(bits_.data(), last + 1);
    }
    rp.done();
}

double cDIBSection::effectBrightnessBitsTest(int brightness, ProgressWord* progress) {
    const auto start = std::chrono::steady_clock::now();
    RowProgress rp(progress_, progress);
    std::uint8_t table[256];
    effects::brightnessTable(brightness, table);
    const int rows = Height() < 31 ? Height() : 31;
    for (int y = 0; y < rows; ++y) {
        std::uint8_t* p = rowBits(y);
        for (int i = 0; i < Width() * 3; ++i) p[i] = table[p[i]];
        rp.step(y, rows);
    }
    rp.done();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

void cDIBSection::effectIntensiv(int strength, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    const int p = strength < 1 ? 1 : (strength > 100 ? 100 : strength);
    std::uint8_t table[256];
    for (int i = 0; i < 256; ++i) {
        if (i < 128)
            table[i] = roundClamp(i * p / 100.0);
        else
            table[i] = roundClamp(static_cast<double>(i) / p * 100.0);
    }
    applyTable(table, rp);
}

void cDIBSection::effectNeon(int phase, int mode, bool gray, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    const double step = 2 * M_PI / 256;
    std::uint8_t table[256];
    for (int i = 0; i < 256; ++i) {
        const double c = std::cos((i + phase) * step) * 127;
        if (mode == 0)
            table[i] = roundClamp(std::fabs(c - 127));
        else if (mode == 1)
            table[i] = static_cast<std::uint8_t>((roundEven(std::fabs(c)) & 127) | 128);
        else
            table[i] = roundClamp(std::fabs(c));
    }
    const int rows = Height();
    for (int y = 0; y < rows; ++y) {
        std::uint8_t* p = rowBits(y);
        for (int x = 0; x < Width() * 3; x += 3) {
            int b = table[(p[x] + y) & 255];
            int g = table[roundEven(p[x + 1] - x / 4.0) & 255];
            int r = table[(p[x + 2] + y) & 255];
            if (gray) b = g = r = roundEven((71 * b + 707 * g + 222 * r) / 1000.0) & 255;
            p[x] = static_cast<std::uint8_t>(b);
            p[x + 1] = static_cast<std::uint8_t>(g);
            p[x + 2] = static_cast<std::uint8_t>(r);
        }
        rp.step(y, rows);
    }
    rp.done();
}

void cDIBSection::effectGamma(int gammaTimes100, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    // A gamma of 0 or less has no power to raise to; the picture stays.
    if (gammaTimes100 <= 0) return rp.done();
    const double gamma = gammaTimes100 / 100.0;
    std::uint8_t table[256];
    for (int i = 0; i < 256; ++i) table[i] = roundClamp(255 * std::pow(i / 255.0, 1 / gamma));
    applyTable(table, rp);
}

void cDIBSection::effectGrayBits(ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    std::uint8_t third[766];
    for (int i = 0; i < 766; ++i) third[i] = static_cast<std::uint8_t>(roundEven(i / 3.0));
    for (int y = 0; y < Height(); ++y) {
        std::uint8_t* p = rowBits(y);
        for (int x = 0; x < Width() * 3; x += 3)
            p[x] = p[x + 1] = p[x + 2] = third[p[x] + p[x + 1] + p[x + 2]];
        rp.step(y, Height());
    }
    rp.done();
}

void cDIBSection::effectBlackAndWhite(int threshold, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    for (int y = 0; y < Height(); ++y) {
        std::uint8_t* p = rowBits(y);
        for (int x = 0; x < Width() * 3; x += 3) {
            const double mean = (p[x] + p[x + 1] + p[x + 2]) / 3.0;
            p[x] = p[x + 1] = p[x + 2] = mean > threshold ? 255 : 0;
        }
        rp.step(y, Height());
    }
    rp.done();
}

void cDIBSection::effectBlackAndWhite2(int threshold, ProgressWord* progress) {
    effectBlackAndWhite(threshold, progress);
}

void cDIBSection::effectFarbeSaturation(int percent, int mode, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    SaturationRow saturation;
    if (!saturation.prepare(percent, mode)) return rp.done();
    for (int y = 0; y < Height(); ++y) {
        saturation.apply(rowBits(y), Width());
        rp.step(y, Height());
    }
    rp.done();
}

// The hold argument is how much of the picture's own colour stays, in percent.
void cDIBSection::effectEinfärben(int red, int green, int blue, int brightness, int hold,
                                  ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    const int mean0 = roundEven((red + green + blue) / 3.0);
    const double keep = hold / 100.0;
    const double greyShare = (hold - 100) / -100.0;
    for (int y = 1; y < Height(); ++y) {
        std::uint8_t* p = rowBits(y);
        for (int x = 0; x < Width() * 3; x += 3) {
            const int m = roundEven((p[x] + p[x + 1] + p[x + 2]) / 3.0 * greyShare);
            const int d = m - mean0;
            p[x] = roundClamp(p[x] * keep + d + blue + brightness);
            p[x + 1] = roundClamp(p[x + 1] * keep + d + green + brightness);
            p[x + 2] = roundClamp(p[x + 2] * keep + d + red + brightness);
        }
        rp.step(y, Height());
    }
    rp.done();
}

void cDIBSection::effectRandomiseBits(bool gray, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    for (int y = 0; y < Height(); ++y) {
        std::uint8_t* p = rowBits(y);
        for (int x = 0; x < Width() * 3; x += 3) {
            if (gray) {
                p[x] = p[x + 1] = p[x + 2] = roundClamp(rnd() * 255);
            } else {
                p[x] = 0;
                p[x + 1] = roundClamp(rnd() * 255);
                p[x + 2] = roundClamp(rnd() * 255);
            }
        }
        rp.step(y, Height());
    }
    rp.done();
}

void cDIBSection::effectFarbfläche(std::uint32_t colour, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    const Rgb c = splitColour(colour);
    // One row is filled pixel by pixel, the others are copies of it.
    const std::size_t bytes = static_cast<std::size_t>(Width()) * 3;
    for (int y = 0; y < Height(); ++y) {
        std::uint8_t* p = rowBits(y);
        if (y == 0) {
            for (std::size_t x = 0; x < bytes; x += 3) {
                p[x] = c.blue;
                p[x + 1] = c.green;
                p[x + 2] = c.red;
            }
        } else {
            std::memcpy(p, rowBits(0), bytes);
        }
        rp.step(y, Height());
    }
    rp.done();
}

void cDIBSection::effectGrid(int xStep, int yStep, ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    if (xStep <= 0 || yStep <= 0) return rp.done();
    int start = Width() % xStep - 1;
    if (start < 0) start = 0;
    for (int y = yStep; y < Height(); y += yStep) {
        std::uint8_t* p = rowBits(y);
        for (int x = start; x < Width(); x += xStep) p[x * 3] = p[x * 3 + 1] = p[x * 3 + 2] = 0;
        rp.step(y, Height());
    }
    rp.done();
}

void cDIBSection::effectInvert(ProgressWord* progress) {
    RowProgress rp(progress_, progress);
    if (!empty()) bitBlt(hdc(), 0, 0, Width(), Height(), hdc(), 0, 0, DSTINVERT);
    rp.done();
}

}  // namespace brindle
