// The picture explorer opening a folder of camera pictures, for
// bench/explorer/run.
//   bench_explorer make DIR COUNT
//       COUNT photo-like 4000x3000 JPEGs (quality 90), photo_000.jpg ...;
//       files already there are kept
//   bench_explorer open HOME FOLDER SIZE THREADS
//       opens FOLDER as the explorer window does (the top 40 visible, the
//       thumbnail cache under HOME, thumbnails of SIZE pixels), then opens
//       it a second time with the warm cache. Prints one line:
//       "first40 S all S cpu S warm S warmcpu S files N maxrss KB" (wall
//       seconds, and the process's processor seconds of each opening)
#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "explorer/thumbnail_pool.h"
#include "image/dib_section.h"
#include "image/file_stamp.h"
#include "image/jpeg_io.h"

namespace {

using brindle::cDIBSection;
using Clock = std::chrono::steady_clock;

// A landscape with fine grain, so that the files are as large as camera
// pictures of that size: a sky that brightens towards a sun, a wavy hill
// line, and fields with a texture. Made from tables per row and column so
// that 400 of them take a minute, not an hour.
cDIBSection photo(int width, int height, unsigned seed) {
    cDIBSection dib;
    if (!dib.Create(width, height)) return dib;
    std::vector<int> hill(width), texX(width), sunX(width);
    const double sun = 0.15 + 0.7 * ((seed * 53) % 100) / 100.0;
    for (int x = 0; x < width; ++x) {
        const double u = static_cast<double>(x) / width;
        hill[x] = static_cast<int>(height * (0.55 + 0.07 * std::sin(6.0 * u + seed) +
                                             0.03 * std::sin(31.0 * u + 2 * seed)));
        texX[x] = static_cast<int>(22 * std::sin(80.0 * u + seed));
        sunX[x] = static_cast<int>(90 * std::exp(-std::abs(u - sun) * 9.0));
    }
    std::uint32_t noise = seed * 2654435761u + 7;
    for (int y = 0; y < height; ++y) {
        std::uint8_t* row = dib.rowBits(height - 1 - y);
        const int v = y * 256 / height;
        const int texY = static_cast<int>(18 * std::sin(0.05 * y + seed));
        const int sunY = static_cast<int>(100 * std::exp(-std::abs(v - 64) / 40.0));
        for (int x = 0; x < width; ++x) {
            noise = noise * 1664525u + 1013904223u;
            const int grain = static_cast<int>(noise >> 28) - 8;
            int r, g, b;
            if (y < hill[x]) {
                const int glow = sunX[x] * sunY / 100;
                r = 90 + v / 3 + glow;
                g = 140 + v / 4 + glow * 3 / 4;
                b = 230 - v / 6 + glow / 8;
            } else {
                r = 60 + v / 5 + texX[x] + texY;
                g = 110 + v / 6 + texX[x] - texY;
                b = 40 + v / 8 + texY / 2;
            }
            row[x * 3 + 0] = static_cast<std::uint8_t>(std::clamp(b + grain, 0, 255));
            row[x * 3 + 1] = static_cast<std::uint8_t>(std::clamp(g + grain, 0, 255));
            row[x * 3 + 2] = static_cast<std::uint8_t>(std::clamp(r + grain, 0, 255));
        }
    }
    return dib;
}

std::string photoName(const std::string& dir, int i) {
    char name[32];
    std::snprintf(name, sizeof name, "/photo_%03d.jpg", i);
    return dir + name;
}

int make(const std::string& dir, int count) {
    std::filesystem::create_directories(dir);
    std::atomic<int> next{0}, failed{0};
    auto work = [&] {
        for (int i; (i = next++) < count;) {
            const std::string path = photoName(dir, i);
            if (brindle::fileExists(path)) continue;
            if (!brindle::SaveJPG(photo(4000, 3000, static_cast<unsigned>(i + 1)), path, 90)) {
                std::fprintf(stderr, "cannot write %s\n", path.c_str());
                ++failed;
            }
        }
    };
    std::thread other(work);
    work();
    other.join();
    return failed == 0 ? 0 : 1;
}

std::vector<std::string> listJpegs(const std::string& folder) {
    std::vector<std::string> files;
    for (const auto& e : std::filesystem::directory_iterator(folder))
        if (e.path().extension() == ".jpg") files.push_back(e.path().string());
    std::sort(files.begin(), files.end());
    return files;
}

struct Opening {
    double first40 = 0, all = 0, cpu = 0;
    int failed = 0;
};

// User and system time of this process so far, in seconds.
double cpuSeconds() {
    struct rusage usage {};
    ::getrusage(RUSAGE_SELF, &usage);
    auto s = [](const timeval& t) { return static_cast<double>(t.tv_sec) + t.tv_usec / 1e6; };
    return s(usage.ru_utime) + s(usage.ru_stime);
}

// One opening of the folder: the window's top 40 are visible.
Opening open(const brindle::explorer::ThumbnailCache& cache, const std::vector<std::string>& files,
             int threads) {
    using namespace brindle::explorer;
    std::mutex mutex;
    std::condition_variable done;
    std::size_t visibleLeft = std::min<std::size_t>(40, files.size()), left = files.size();
    Opening o;
    const double cpuStart = cpuSeconds();
    const auto start = Clock::now();
    auto seconds = [&] { return std::chrono::duration<double>(Clock::now() - start).count(); };
    ThumbnailPool pool([&](const std::string& p) { return cache.get(p); },
                       [&](ThumbnailResult&& r) {
                           std::lock_guard lock(mutex);
                           if (r.thumbnail.kind != ThumbnailKind::Picture) ++o.failed;
                           if (r.index < 40 && --visibleLeft == 0) o.first40 = seconds();
                           if (--left == 0) {
                               o.all = seconds();
                               done.notify_all();
                           }
                       },
                       threads);
    pool.setVisibleRange(0, 39);
    pool.setFolder(files);
    pool.setVisibleRange(0, 39);
    std::unique_lock lock(mutex);
    done.wait(lock, [&] { return left == 0; });
    o.cpu = cpuSeconds() - cpuStart;
    return o;
}

int openTwice(const std::string& home, const std::string& folder, int size, int threads) {
    const std::vector<std::string> files = listJpegs(folder);
    brindle::explorer::ThumbnailSettings settings;
    settings.size = size;
    const Opening cold = open(brindle::explorer::ThumbnailCache(home, settings), files, threads);
    const brindle::explorer::ThumbnailCache warmCache(home, settings);
    const Opening warm = open(warmCache, files, threads);
    struct rusage usage {};
    ::getrusage(RUSAGE_SELF, &usage);
    std::printf("first40 %.3f all %.3f cpu %.3f warm %.3f warmcpu %.3f files %zu maxrss %ld\n",
                cold.first40, cold.all, cold.cpu, warm.all, warm.cpu, files.size(),
                usage.ru_maxrss);
    if (warmCache.decodes() != 0) std::fprintf(stderr, "the warm opening decoded pictures\n");
    return cold.failed == 0 && warm.failed == 0 && warmCache.decodes() == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string mode = argc > 1 ? argv[1] : "";
    if (mode == "make" && argc == 4) return make(argv[2], std::atoi(argv[3]));
    if (mode == "open" && argc == 6)
        return openTwice(argv[2], argv[3], std::atoi(argv[4]), std::atoi(argv[5]));
    std::fprintf(stderr, "usage: bench_explorer make DIR COUNT | open HOME FOLDER SIZE THREADS\n");
    return 2;
}
