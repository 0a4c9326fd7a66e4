// Writes the small sample album that scripts/run opens: two pages with a
// text each, made with our own writers. Usage: make_sample_album OUTDIR
#include <cstdio>
#include <filesystem>
#include <string>

#include "album/album_file.h"
#include "album/page_file.h"
#include "album/stacking.h"

using namespace brindle;

namespace {

PageRecord samplePage(const AlbumRecord& album, const std::string& words, int top) {
    PageRecord page = album.pageDefaults;
    TextElement& t = page.texts.add();
    t.top = static_cast<std::int16_t>(top);
    t.left = 40;
    t.width = 400;
    t.height = 60;
    t.text = words;
    t.font = album.style.headingFont;
    t.ext.extText[0] = words;
    page.title = words;
    ReihenfolgePruefen(page);
    return page;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_sample_album OUTDIR\n");
        return 2;
    }
    std::string dir = std::string(argv[1]) + "/";
    std::filesystem::create_directories(dir);

    AlbumRecord album;
    ladeStandards(album, "");
    const char* titles[] = {"Seite1", "Seite2"};
    const char* words[] = {"Willkommen im Beispielalbum", "Urlaub am Meer – Grüße aus Sankt Peter"};
    for (int i = 0; i < 2; ++i) {
        PageEntry& entry = album.pages.add();
        entry.title = titles[i];
        entry.fileName = std::string(titles[i]) + ".apg";
        entry.directory = dir;
        FileResult r = writePageFile(dir + entry.fileName, samplePage(album, words[i], 40 + 40 * i));
        if (!r.ok()) return std::fprintf(stderr, "%s\n", r.detail.c_str()), 1;
    }
    album.pageCount = 2;
    prepareAlbumSave(album, dir + "Beispielalbum.apr");
    FileResult r = writeAlbumFile(dir + "Beispielalbum.apr", album);
    if (!r.ok()) return std::fprintf(stderr, "%s\n", r.detail.c_str()), 1;
    return 0;
}
