// Megapixels per second of the effects on a 12-megapixel picture, against
// a plain memcpy of the same buffer as the memory-bandwidth reference.
// Times are the thread's CPU time, so that other work on the machine does
// not count. Usage: bench_effects [REPEATS]
#include <time.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <random>
#include <vector>

#include "image/byte_table.h"
#include "image/dib_section.h"
#include "image/filter_bank.h"

namespace {

using brindle::cDIBSection;

constexpr int kWidth = 4000, kHeight = 3000;

double cpuSeconds() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + t.tv_nsec / 1e9;
}

cDIBSection photoLike() {
    cDIBSection dib;
    dib.Create(kWidth, kHeight);
    std::mt19937 rng(1);
    for (int y = 0; y < kHeight; ++y) {
        std::uint8_t* p = dib.rowBits(y);
        for (int x = 0; x < kWidth; ++x) {
            p[x * 3] = static_cast<std::uint8_t>((x / 16 + (rng() & 15)) & 255);
            p[x * 3 + 1] = static_cast<std::uint8_t>((y / 12 + (rng() & 15)) & 255);
            p[x * 3 + 2] = static_cast<std::uint8_t>(((x + y) / 28 + (rng() & 15)) & 255);
        }
    }
    return dib;
}

// A table effect's lookup as processors without byte permutes run it.
void portableTable(cDIBSection& d) {
    std::uint8_t table[256];
    for (int i = 0; i < 256; ++i) table[i] = static_cast<std::uint8_t>(255 - i / 2);
    const brindle::ByteTable lookup(table, false);
    for (int y = 0; y < d.Height(); ++y) lookup.apply(d.rowBits(y), static_cast<std::size_t>(d.Width()) * 3);
}

// The best of `repeats` runs, each on a fresh copy (copying not timed).
double bestSeconds(const cDIBSection& source, int repeats,
                   const std::function<void(cDIBSection&)>& effect) {
    double best = 1e9;
    for (int i = 0; i < repeats; ++i) {
        cDIBSection work = source;
        const double start = cpuSeconds();
        effect(work);
        best = std::min(best, cpuSeconds() - start);
    }
    return best;
}

}  // namespace

int main(int argc, char** argv) {
    const int repeats = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    const cDIBSection source = photoLike();
    const double megapixels = kWidth * static_cast<double>(kHeight) / 1e6;
    const std::size_t bytes = static_cast<std::size_t>(source.BytesPerScanLine()) * kHeight;

    std::vector<std::uint8_t> copy(bytes);
    double memcpySeconds = 1e9;
    for (int i = 0; i < repeats; ++i) {
        const double start = cpuSeconds();
        std::memcpy(copy.data(), source.DIBSectionBitsPtr(), bytes);
        memcpySeconds = std::min(memcpySeconds, cpuSeconds() - start);
    }
    std::printf("effects on %dx%d (%.0f MP), best of %d, CPU time; ratio = time / memcpy time\n", kWidth,
                kHeight, megapixels, repeats);
    std::printf("  %-34s %8.0f MP/s  %6.2fx\n", "memcpy of the buffer (reference)",
                megapixels / memcpySeconds, 1.0);

    struct Case {
        const char* name;
        std::function<void(cDIBSection&)> run;
    };
    const Case cases[] = {
        {"table: effectKontrastBits", [](cDIBSection& d) { d.effectKontrastBits(30); }},
        {"table: effectBrightnessBits", [](cDIBSection& d) { d.effectBrightnessBits(20); }},
        {"table: effectBrightnessBitsFast", [](cDIBSection& d) { d.effectBrightnessBitsFast(20); }},
        {"table: effectIntensiv", [](cDIBSection& d) { d.effectIntensiv(60); }},
        {"table: effectGamma", [](cDIBSection& d) { d.effectGamma(150); }},
        {"table: effectInvert", [](cDIBSection& d) { d.effectInvert(); }},
        {"table: portable path (byte pairs)", [](cDIBSection& d) { portableTable(d); }},
        {"pixel: effectGrayBits", [](cDIBSection& d) { d.effectGrayBits(); }},
        {"pixel: effectFarbeSaturation", [](cDIBSection& d) { d.effectFarbeSaturation(40, 7); }},
        {"pixel: effectMetallic", [](cDIBSection& d) { d.effectMetallic(1); }},
        {"blur: effectWeichzeichnen", [](cDIBSection& d) { d.effectWeichzeichnen(1); }},
        {"blur: filter bank 3",
         [](cDIBSection& d) { brindle::filterBitmap(brindle::kFilterBlur, d, 0); }},
        {"sharpen: effectSchärfenBits", [](cDIBSection& d) { d.effectSchärfenBits(); }},
        {"sharpen: effectSchärfen2", [](cDIBSection& d) { d.effectSchärfen2(8); }},
        {"Resample to 2000x1500", [](cDIBSection& d) { d = d.Resample(1500, 2000); }},
        {"Resample to 6000x4500", [](cDIBSection& d) { d = d.Resample(4500, 6000); }},
    };
    for (const Case& c : cases) {
        const double s = bestSeconds(source, repeats, c.run);
        std::printf("  %-34s %8.0f MP/s  %6.2fx\n", c.name, megapixels / s, s / memcpySeconds);
    }
    return 0;
}
