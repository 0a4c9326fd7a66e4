// Makes 160-pixel-wide thumbnails of JPEG files the way the picture
// explorer does: the size from the file's header, then the load-reduced
// path of Loadpicture (DCT-scaled decoding and the averaging reduction),
// then a JPEG.
// Usage: bench_thumbnails OUTDIR WIDTH FILE...   Prints the seconds taken.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "image/image_info.h"
#include "image/jpeg_io.h"
#include "image/picture_io.h"

int main(int argc, char** argv) {
    if (argc < 4) {
        std::fprintf(stderr, "usage: bench_thumbnails OUTDIR WIDTH FILE...\n");
        return 2;
    }
    const std::string outDir = std::string(argv[1]) + "/";
    const int width = std::atoi(argv[2]);
    const auto start = std::chrono::steady_clock::now();
    int made = 0;
    for (int i = 3; i < argc; ++i) {
        const std::string path = argv[i];
        brindle::CImageInfo info;
        if (!info.ReadImageInfo(path) || info.Width <= 0) continue;
        int w = width, h = std::max(1, (info.Height * width + info.Width / 2) / info.Width);
        brindle::PictureHolder holder;
        if (!brindle::Loadpicture(holder, path, w, h).ok) continue;
        const std::string name = path.substr(path.find_last_of('/') + 1);
        if (brindle::SaveJPG(*holder.picture.Handle(), outDir + name, 85).ok) ++made;
    }
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::printf("%.3f\n", seconds);
    std::fprintf(stderr, "%d thumbnails\n", made);
    return made == argc - 3 ? 0 : 1;
}
