// The panorama benchmark's work, one sub-command per step of bench/pano/run:
//   search [THREADS]            the overlap search on a 12-MP pair: plain
//                               against fast, same run, same pictures
//   make DIR                    five 12-MP JPEG tiles of one landscape
//   ours HOME HEIGHT OUT FILES  our whole stitch: import, search, compose, save
//   seams TIFF...               seam error of remapped RGBA pictures (Hugin's)
#include <FreeImage.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "image/jpeg_io.h"
#include "panorama/compose.h"
#include "panorama/overlap_search.h"
#include "panorama/pair_match.h"
#include "panorama/pano_import.h"
#include "scene.h"

namespace {

using brindle::cDIBSection;
using namespace brindle::panorama;
using Clock = std::chrono::steady_clock;

double since(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// Processor time of the whole process (all threads), which stays fair when
// other work shares the machine.
double cpuSeconds() {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + t.tv_nsec * 1e-9;
}

constexpr int kTileWidth = 4000, kTileHeight = 3000;
// Steps between the five tiles: multiples of 5, so they stay whole at the
// reduced height of 1200 rows (0.4 x).
constexpr int kStepX[] = {2600, 2550, 2700, 2625};
constexpr int kStepY[] = {-10, 0, 15, 25};

int search(int threads) {
    const int dx = 2600, dy = 9;
    const cDIBSection wide = bench::landscape(kTileWidth + dx, kTileHeight + 20, 1);
    const cDIBSection a = bench::cut(wide, 0, 0, kTileWidth, kTileHeight);
    const cDIBSection b = bench::cut(wide, dx, dy, kTileWidth, kTileHeight);
    const SearchBand band = defaultSearchBand(kTileWidth);
    auto start = Clock::now();
    double cpu = cpuSeconds();
    const OverlapResult plain = findOverlapScalar(a, b, band);
    const double plainSeconds = since(start), plainCpu = cpuSeconds() - cpu;
    start = Clock::now();
    cpu = cpuSeconds();
    const OverlapResult fast = findOverlap(a, b, band, nullptr, threads);
    const double fastSeconds = since(start), fastCpu = cpuSeconds() - cpu;
    const bool same = fast.xVersatz == plain.xVersatz && fast.yVersatz == plain.yVersatz &&
                      fast.sum == plain.sum && fast.pass == plain.pass;
    const bool right = fast.found && fast.xVersatz == dx && fast.yVersatz == dy;
    std::printf(
        "overlap search, one pair of %dx%d pictures, band %d..%d (%d columns), 41 shifts, 2 "
        "passes\n",
        kTileWidth, kTileHeight, band.first, band.last, band.last - band.first + 1);
    std::printf("  plain column search:            %8.3f s wall %8.3f s cpu\n", plainSeconds,
                plainCpu);
    std::printf("  fast search (%d thread%s):       %8.3f s wall %8.3f s cpu\n", threads,
                threads == 1 ? " " : "s", fastSeconds, fastCpu);
    std::printf("  ratio plain / fast:             %8.1f x wall %8.1f x cpu\n",
                plainSeconds / fastSeconds, plainCpu / fastCpu);
    std::printf("  results %s, offset %s (x %d, y %d)\n", same ? "identical" : "DIFFER",
                right ? "right" : "WRONG", fast.xVersatz, fast.yVersatz);
    return same && right ? 0 : 1;
}

int make(const std::string& dir) {
    int width = kTileWidth, height = kTileHeight + 60;
    for (int s : kStepX) width += s;
    const cDIBSection wide = bench::landscape(width, height, 2);
    int x = 0, y = 20;
    for (int i = 0; i < 5; ++i) {
        const std::string path = dir + "/tile" + std::to_string(i) + ".jpg";
        if (!brindle::SaveJPG(bench::cut(wide, x, y, kTileWidth, kTileHeight), path, 92)) {
            std::fprintf(stderr, "cannot write %s\n", path.c_str());
            return 1;
        }
        if (i < 4) x += kStepX[i], y += kStepY[i];
    }
    return 0;
}

// Mean absolute difference of two aligned pictures over their overlap:
// b's top-left corner lies at (dx, dy) of a.
double seamError(const cDIBSection& a, const cDIBSection& b, int dx, int dy) {
    double total = 0;
    long long count = 0;
    for (int y = std::max(0, dy); y < std::min(a.Height(), b.Height() + dy); ++y) {
        const std::uint8_t* pa = a.rowBits(a.Height() - 1 - y);
        const std::uint8_t* pb = b.rowBits(b.Height() - 1 - (y - dy));
        for (int x = std::max(0, dx); x < std::min(a.Width(), b.Width() + dx); ++x)
            for (int c = 0; c < 3; ++c)
                total += std::abs(pa[3 * x + c] - pb[3 * (x - dx) + c]), ++count;
    }
    return count ? total / count : -1;
}

int ours(const std::string& home, int height, const std::string& out,
         const std::vector<std::string>& files) {
    auto start = Clock::now();
    double cpu = cpuSeconds();
    ImportResult imported = importPictures(files, height, home + "/", {});
    if (!imported.ok) {
        std::fprintf(stderr, "import: %s\n", imported.message.c_str());
        return 1;
    }
    const double importSeconds = since(start), importCpu = cpuSeconds() - cpu;
    start = Clock::now();
    cpu = cpuSeconds();
    std::vector<PanoBild>& records = imported.records;
    for (std::size_t i = 0; i + 1 < records.size(); ++i) {
        const OverlapResult r = matchPair(home + "/", records, i, i + 1);
        if (!r.found) {
            std::fprintf(stderr, "pair %zu: %s\n", i, r.problem.c_str());
            return 1;
        }
    }
    const double searchSeconds = since(start), searchCpu = cpuSeconds() - cpu;
    std::vector<cDIBSection> pictures(records.size());
    for (std::size_t i = 0; i < records.size(); ++i)
        if (!brindle::LoadJPG(pictures[i], imported.reduced[i])) return 1;
    PanoLayout layout;
    for (const PanoBild& r : records)
        layout.xStep.push_back(r.xVersatz), layout.yStep.push_back(r.yVersatz);
    cDIBSection result;
    if (!composePanorama(pictures, layout, ComposeOptions{}, result).ok ||
        !brindle::SaveJPG(result, out, 95))
        return 1;
    const double stitchSeconds = since(start), stitchCpu = cpuSeconds() - cpu;
    // Wall and processor seconds of the import, the searches, and the
    // searches with composition and saving.
    std::printf("ours %.3f %.3f %.3f %.3f %.3f %.3f %dx%d\n", importSeconds, importCpu,
                searchSeconds, searchCpu, stitchSeconds, stitchCpu, result.Width(),
                result.Height());
    for (std::size_t i = 0; i + 1 < records.size(); ++i)
        std::printf(
            "seam %zu %d %d %.2f\n", i, records[i].xVersatz, records[i].yVersatz,
            seamError(pictures[i], pictures[i + 1], records[i].xVersatz, records[i].yVersatz));
    return 0;
}

int seams(const std::vector<std::string>& files) {
    FreeImage_Initialise();
    // libtiff's notes on the EXIF tags Hugin copies are not our business.
    FreeImage_SetOutputMessage([](FREE_IMAGE_FORMAT, const char*) {});
    std::vector<FIBITMAP*> layers;
    for (const std::string& f : files) {
        FIBITMAP* raw = FreeImage_Load(FIF_TIFF, f.c_str());
        FIBITMAP* rgba = raw ? FreeImage_ConvertTo32Bits(raw) : nullptr;
        if (raw) FreeImage_Unload(raw);
        if (!rgba) {
            std::fprintf(stderr, "cannot read %s\n", f.c_str());
            return 1;
        }
        layers.push_back(rgba);
    }
    for (std::size_t i = 0; i + 1 < layers.size(); ++i) {
        FIBITMAP* a = layers[i];
        FIBITMAP* b = layers[i + 1];
        const unsigned w = FreeImage_GetWidth(a), h = FreeImage_GetHeight(a);
        if (FreeImage_GetWidth(b) != w || FreeImage_GetHeight(b) != h) {
            std::fprintf(stderr, "the remapped pictures must all be the canvas size (uncropped)\n");
            return 1;
        }
        double total = 0;
        long long count = 0;
        for (unsigned y = 0; y < h; ++y) {
            const BYTE* pa = FreeImage_GetScanLine(a, static_cast<int>(y));
            const BYTE* pb = FreeImage_GetScanLine(b, static_cast<int>(y));
            for (unsigned x = 0; x < w; ++x) {
                if (pa[4 * x + 3] < 255 || pb[4 * x + 3] < 255) continue;  // both fully inside
                for (int c = 0; c < 3; ++c)
                    total += std::abs(pa[4 * x + c] - pb[4 * x + c]), ++count;
            }
        }
        std::printf("seam %zu %.2f\n", i, count ? total / count : -1.0);
    }
    for (FIBITMAP* l : layers) FreeImage_Unload(l);
    FreeImage_DeInitialise();
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string cmd = argc > 1 ? argv[1] : "";
    const std::vector<std::string> rest(argv + std::min(argc, 2), argv + argc);
    if (cmd == "search") return search(rest.empty() ? 2 : std::atoi(rest[0].c_str()));
    if (cmd == "make" && rest.size() == 1) return make(rest[0]);
    if (cmd == "ours" && rest.size() > 3)
        return ours(rest[0], std::atoi(rest[1].c_str()), rest[2], {rest.begin() + 3, rest.end()});
    if (cmd == "seams" && rest.size() > 1) return seams(rest);
    std::fprintf(stderr,
                 "usage: bench_pano search [THREADS] | make DIR | ours HOME HEIGHT OUT FILE... | "
                 "seams TIFF...\n");
    return 2;
}
