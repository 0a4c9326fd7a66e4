// What the pixel work of a design costs next to reading and writing the
// picture: the six-step chain of the batch benchmark (contrast, brightness,
// colour, sharpen, frame, half size) on 12-megapixel JPEGs, one thread.
// Prints per picture the decode time, each step's time (steps run in one
// pass share one) and the encode time, then the ratio of the chain to
// decode + encode.
// Times are the thread's CPU time. Usage: bench_chain_cost [PICTURES] [DIR]
#include <time.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "image/dib_section.h"
#include "image/jpeg_io.h"
#include "image/rounding.h"
#include "studio/design_chain.h"

namespace {

using brindle::cDIBSection;

constexpr int kWidth = 4000, kHeight = 3000, kQuality = 90;

const std::vector<std::string> kChain = {
    "Kontrast(20)",         "Helligkeit(10,0)", "Color(120,7)", "Schärfen(5)",
    "Rahmen(50,50,20,3368601,)", "Größe(0,0,50,50,1)"};

double cpuMs() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return t.tv_sec * 1e3 + t.tv_nsec / 1e6;
}

// Sky, hills and grain: smooth areas and some texture, as in a photo.
cDIBSection photoLike(unsigned seed) {
    cDIBSection dib;
    dib.Create(kWidth, kHeight);
    std::mt19937 rng(seed);
    for (int row = 0; row < kHeight; ++row) {
        const int y = kHeight - 1 - row;
        std::uint8_t* p = dib.rowBits(row);
        for (int x = 0; x < kWidth; ++x) {
            const double hill = kHeight * (0.55 + 0.08 * std::sin(x / 300.0 + seed));
            const int grain = static_cast<int>(rng() % 13) - 6;
            int b, g, r;
            if (y < hill) {
                b = 230 - y / 20;
                g = 170 - y / 30;
                r = 110 + y / 40;
            } else {
                const double leaf = 40 * std::sin(x / 7.0) * std::cos(y / 9.0);
                b = 40 + static_cast<int>(leaf / 2);
                g = 110 + static_cast<int>(leaf);
                r = 60 + (y - static_cast<int>(hill)) / 30;
            }
            p[x * 3] = brindle::clampByte(b + grain);
            p[x * 3 + 1] = brindle::clampByte(g + grain);
            p[x * 3 + 2] = brindle::clampByte(r + grain);
        }
    }
    return dib;
}

}  // namespace

int main(int argc, char** argv) {
    const int pictures = argc > 1 ? std::max(1, std::atoi(argv[1])) : 3;
    const std::filesystem::path dir =
        argc > 2 ? std::filesystem::path(argv[2])
                 : std::filesystem::temp_directory_path() / "brindlesee-chain-cost";
    std::filesystem::create_directories(dir);

    std::vector<std::string> files;
    for (int i = 0; i < pictures; ++i) {
        const std::string file = (dir / ("foto" + std::to_string(i) + ".jpg")).string();
        if (!std::filesystem::exists(file)) {
            std::string bytes;
            if (!brindle::encodeJpeg(photoLike(static_cast<unsigned>(i + 1)), kQuality, bytes)) return 1;
            std::ofstream(file, std::ios::binary) << bytes;
        }
        files.push_back(file);
    }

    std::printf("%-10s %9s", "picture", "decode");
    for (const std::string& step : kChain) std::printf(" %9.9s", brindle::studio::stepName(step).c_str());
    std::printf(" %9s %9s %9s %7s\n", "chain", "encode", "io", "ratio");
    double sumChain = 0, sumIo = 0;
    for (const std::string& file : files) {
        cDIBSection dib;
        double t = cpuMs();
        if (!brindle::LoadJPG(dib, file)) return 1;
        const double decode = cpuMs() - t;
        std::printf("%-10s %9.1f", std::filesystem::path(file).filename().c_str(), decode);
        brindle::studio::StepEnv env;
        env.mode = brindle::studio::ChainMode::Batch;
        double chain = 0;
        // Steps the chain runs in one pass share a time, shown under the
        // first of them ("+" under the others).
        for (std::size_t i = 0; i < kChain.size();) {
            t = cpuMs();
            const std::size_t ran = brindle::studio::applySteps(dib, kChain, i, env);
            const double ms = cpuMs() - t;
            chain += ms;
            std::printf(" %9.1f", ms);
            for (std::size_t k = 1; k < ran; ++k) std::printf(" %9s", "+");
            i += ran;
        }
        std::string out;
        t = cpuMs();
        if (!brindle::encodeJpeg(dib, kQuality, out)) return 1;
        const double encode = cpuMs() - t;
        std::printf(" %9.1f %9.1f %9.1f %7.3f\n", chain, encode, decode + encode,
                    chain / (decode + encode));
        sumChain += chain;
        sumIo += decode + encode;
    }
    std::printf("all: chain %.1f ms, decode + encode %.1f ms, ratio %.3f (target below 0.30)\n",
                sumChain, sumIo, sumChain / sumIo);
    return 0;
}
