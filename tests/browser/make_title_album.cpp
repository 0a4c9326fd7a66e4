// Writes an album whose page titles a script string or a file name could
// trip over, with our own writers. Usage: make_title_album OUTDIR
#include <cstdio>
#include <string>

#include "album/album_file.h"
#include "album/page_file.h"
#include "album/stacking.h"

using namespace brindle;

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_title_album OUTDIR\n");
        return 2;
    }
    std::string dir = argv[1];
    if (dir.back() != '/') dir += '/';
    AlbumRecord album;
    ladeStandards(album, "");
    album.title = "Titel";
    album.pageDefaults.background.clear();
    album.pageDefaults.props = PageProps{};

    bool ok = true;
    int n = 0;
    auto addPage = [&](const std::string& title, const std::string& words, bool searchBox) {
        PageRecord page = album.pageDefaults;
        page.title = title;
        page.description = "Seite " + title;
        TextElement& t = page.texts.add();
        t.top = 40;
        t.left = 40;
        t.width = 400;
        t.height = 30;
        t.text = words;
        t.font.name = "Arial";
        t.font.size = 14;
        if (searchBox) {
            SearchElement& s = page.searchBoxes.add();
            s.top = 120;
            s.left = 40;
            s.width = 500;
            s.height = 120;
        }
        ReihenfolgePruefen(page);
        PageEntry& e = album.pages.add();
        e.title = title;
        e.fileName = "Seite" + std::to_string(++n) + ".apg";
        e.directory = dir;
        ++album.pageCount;
        FileResult r = writePageFile(dir + e.fileName, page);
        if (!r.ok()) std::fprintf(stderr, "%s\n", r.detail.c_str());
        ok = ok && r.ok();
    };
    addPage("\xC5\x81\xC3\xB3" "d\xC5\xBA", "Stadt \xC5\x81\xC3\xB3" "d\xC5\xBA am Fluss", false);  // Łódź
    addPage("a\"b</script>", "Zitat und Skript", false);
    addPage("Suchen", "Suche im Album", true);
    FileResult r = writeAlbumFile(dir + "Titel.apr", album);
    if (!r.ok()) std::fprintf(stderr, "%s\n", r.detail.c_str());
    return ok && r.ok() ? 0 : 1;
}
