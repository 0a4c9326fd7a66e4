// Writes the benchmark album: PAGES pages with 8 pictures each, boxes of
// about 600x400, the pictures named in DIR/pictures/p<page>_<n>.jpg.
// Usage: make_bench_album DIR PAGES WIDTH HEIGHT
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "album/album_file.h"
#include "album/page_file.h"
#include "album/stacking.h"

using namespace brindle;

int main(int argc, char** argv) {
    if (argc != 5) {
        std::fprintf(stderr, "usage: make_bench_album DIR PAGES WIDTH HEIGHT\n");
        return 2;
    }
    const std::string dir = std::string(argv[1]) + "/";
    const int pages = std::atoi(argv[2]), pw = std::atoi(argv[3]), ph = std::atoi(argv[4]);
    AlbumRecord album;
    ladeStandards(album, "");
    album.htmlReduce = kTrue;
    album.pageDefaults.background.clear();
    album.pageDefaults.props = PageProps{};
    for (int p = 1; p <= pages; ++p) {
        PageRecord page = album.pageDefaults;
        for (int n = 0; n < 8; ++n) {
            PictureElement& e = page.pictures.add();
            e.top = static_cast<std::int16_t>(20 + (n / 2) * 420);
            e.left = static_cast<std::int16_t>(20 + (n % 2) * 620);
            e.width = 600;
            e.height = 400;
            e.path = dir + "pictures/p" + std::to_string(p) + "_" + std::to_string(n) + ".jpg";
            e.pictureWidth = static_cast<std::int16_t>(pw);
            e.pictureHeight = static_cast<std::int16_t>(ph);
        }
        ReihenfolgePruefen(page);
        PageEntry& entry = album.pages.add();
        entry.title = "Seite" + std::to_string(p);
        entry.fileName = entry.title + ".apg";
        entry.directory = dir;
        if (!writePageFile(dir + entry.fileName, page).ok()) return 1;
    }
    album.pageCount = static_cast<std::int16_t>(pages);
    return writeAlbumFile(dir + "Bench.apr", album).ok() ? 0 : 1;
}
