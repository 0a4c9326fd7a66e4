// The photo design's batch over camera-sized JPEGs, for bench/design/run.
//   bench_design make DIR COUNT          COUNT photo-like 4000x3000 JPEGs (quality 90)
//   bench_design chain OUTDIR THREADS PICTURE...   the six-step design
//   bench_design plain OUTDIR THREADS PICTURE...   decode, the same halving, encode
// Prints nothing but errors; the script takes the times.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "image/dib_section.h"
#include "image/jpeg_io.h"
#include "studio/batch_run.h"

namespace {

using brindle::cDIBSection;

// A landscape: sky gradient, a sun, hills, and fine texture so that the
// files are as large as camera pictures of that size.
cDIBSection photo(int width, int height, unsigned seed) {
    cDIBSection dib;
    if (!dib.Create(width, height)) return dib;
    const double sunX = 0.2 + 0.6 * ((seed * 37) % 100) / 100.0, sunY = 0.25;
    std::uint32_t noise = seed * 2654435761u + 1;
    for (int y = 0; y < height; ++y) {
        std::uint8_t* row = dib.rowBits(height - 1 - y);
        const double v = static_cast<double>(y) / height;
        for (int x = 0; x < width; ++x) {
            const double u = static_cast<double>(x) / width;
            const double hill = 0.55 + 0.08 * std::sin(7.0 * u + seed) + 0.04 * std::sin(23.0 * u);
            double r, g, b;
            if (v < hill) {
                const double d = std::hypot((u - sunX) * 1.33, v - sunY);
                const double sun = d < 0.05 ? 1.0 : std::exp(-(d - 0.05) * 12.0);
                r = 90 + 80 * v + 160 * sun;
                g = 140 + 60 * v + 120 * sun;
                b = 230 - 40 * v + 20 * sun;
            } else {
                const double depth = (v - hill) / (1.0 - hill);
                r = 60 + 50 * depth + 25 * std::sin(90.0 * u + 40.0 * v);
                g = 110 + 40 * depth + 20 * std::sin(70.0 * u - 55.0 * v);
                b = 40 + 30 * depth;
            }
            noise = noise * 1664525u + 1013904223u;
            const int grain = static_cast<int>(noise >> 28) - 8;
            auto clamp = [](double c) { return static_cast<std::uint8_t>(c < 0 ? 0 : c > 255 ? 255 : c); };
            row[x * 3 + 0] = clamp(b + grain);
            row[x * 3 + 1] = clamp(g + grain);
            row[x * 3 + 2] = clamp(r + grain);
        }
    }
    return dib;
}

// Messages go to stderr; there are no questions in a batch.
class StderrPrompter : public brindle::Prompter {
  public:
    int shown = 0;
    int message(const std::string& text, int, const std::string& title) override {
        std::fprintf(stderr, "%s: %s\n", title.c_str(), text.c_str());
        ++shown;
        return brindle::kOk;
    }
    int askYesNoAll(const std::string& text, const std::string& title) override {
        return message(text, 0, title);
    }
    std::string openFile(const brindle::FileDialog&) override { return {}; }
    std::string saveFile(const brindle::FileDialog&) override { return {}; }
    std::string chooseDirectory(const std::string&, const std::string&) override { return {}; }
    std::optional<std::string> inputText(const std::string&, const std::string&,
                                         const std::string&) override {
        return std::nullopt;
    }
    int unsavedFiles(const std::vector<std::string>&, const std::string&) override { return brindle::kNo; }
};

int make(const std::string& dir, int count) {
    for (int i = 0; i < count; ++i) {
        const std::string path = dir + "/photo_" + std::to_string(i) + ".jpg";
        if (!brindle::SaveJPG(photo(4000, 3000, static_cast<unsigned>(i + 1)), path, 90)) {
            std::fprintf(stderr, "cannot write %s\n", path.c_str());
            return 1;
        }
    }
    return 0;
}

int run(const std::vector<std::string>& steps, const std::string& outDir, int threads,
        std::vector<std::string> pictures) {
    brindle::studio::BatchOptions options;
    options.pictures = std::move(pictures);
    options.saveMode = brindle::studio::SaveMode::OtherDirectory;
    options.targetDirectory = outDir;
    options.jpegQuality = 90;
    options.threads = threads;
    StderrPrompter prompter;
    const auto result = brindle::studio::runDesignBatch(steps, options, prompter, brindle::Language::English);
    return prompter.shown == 0 && result.treated == static_cast<int>(options.pictures.size()) ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string mode = argc > 1 ? argv[1] : "";
    if (mode == "make" && argc == 4) return make(argv[2], std::atoi(argv[3]));
    if ((mode == "chain" || mode == "plain") && argc > 4) {
        const std::vector<std::string> pictures(argv + 4, argv + argc);
        // The frame colour is a light grey, 0x00BBGGRR.
        const std::vector<std::string> chain = {"Kontrast(20)",    "Helligkeit(10,0)",
                                                "Color(120,7)",    "Schärfen(5)",
                                                "Rahmen(50,50,20,14737632,)", "Größe(0,0,50,50,1)"};
        const std::vector<std::string> plain = {"Größe(0,0,50,50,1)"};
        return run(mode == "chain" ? chain : plain, argv[2], std::atoi(argv[3]), pictures);
    }
    std::fprintf(stderr,
                 "usage: bench_design make DIR COUNT | chain|plain OUTDIR THREADS PICTURE...\n");
    return 2;
}
