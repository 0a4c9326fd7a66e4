// brindlesee-cli: Brindlesee's work without windows.
#include <cstring>
#include <iostream>
#include <map>

#include "shell/cli_commands.h"

#ifndef BRINDLESEE_VERSION
#define BRINDLESEE_VERSION "0"
#endif

namespace {

struct Command {
    int (*run)(const brindle::cli::Args&);
    const char* usage;
};

const std::map<std::string, Command>& commands() {
    using namespace brindle::cli;
    static const std::map<std::string, Command> table = {
        {"html", {html, "html ALBUM.apr OUTDIR [--mail] [--overwrite all|none]\n"
                        "                       generates the HTML album; without --overwrite a file of\n"
                        "                       another size is asked about on a terminal, else kept"}},
        {"index", {pictureIndex, "index ALBUM.apr [--begin|--end] [--yes|--no]\n"
                                 "                       adds the picture index page with its thumbnails and saves\n"
                                 "                       the album; --yes/--no answer whether an index is rebuilt"}},
        {"pages", {pages, "pages ALBUM.apr [--front] [--back] [--contents end|begin] [--search] [--index]\n"
                          "                       [--yes|--no] adds covers, contents, search page and picture\n"
                          "                       index (at the contents' place) to the album and\n"
                          "                       saves it; --yes/--no answer whether to rebuild a page"}},
        {"info", {info, "info FILE            print an album, page or options file as JSON"}},
        {"resave", {resave, "resave IN OUT        read IN and write it again to OUT"}},
        {"new", {newAlbum, "new ALBUM.apr        a new album from the default template with one page,\n"
                           "                       saved beside it  [--english|--german]"}},
        {"add-page", {addPage, "add-page ALBUM.apr PAGE.apg\n"
                               "                       adds a page file to the album and saves it;\n"
                               "                       --yes/--no answer every question (default yes)"}},
        {"convert", {convert, "convert IN OUT [--quality Q] [--size WxH]\n                       read a picture and write it in the type OUT names"}},
        {"imageinfo", {imageinfo, "imageinfo FILE       width, height, depth and type of a picture as JSON"}},
        {"wizard", {wizardAlbum, "wizard OUTDIR --page \"NAME:PIC,PIC,...\" ... [--design NAME]\n"
                                  "                       [--frame WIDTH,LIGHT,SHADOW,COLOUR] [--english|--german]\n"
                                  "                       a whole album: one page per --page, its pictures in rows"}},
        {"redeye", {redeye, "redeye PICTURE --at X,Y [--at X,Y] [--sensitivity T] [--width W]\n"
                            "                       | --box X,Y,W,H [--red N] [--other N] [--bright N] [--grey]\n"
                            "                       [-o OUT] removes red eyes: a search from each point, or\n"
                            "                       the box's red pixels made grey; without -o in place"}},
        {"design", {design, "design LIST PICTURE... [--out DIR] [--append TEXT] [--type jpg|png|bmp|tif]\n"
                            "                       [--min-size WxH] [--quality Q] [--threads N] [--english|--german]\n"
                            "                       run a design list's steps over the pictures; without --out\n"
                            "                       the originals are overwritten (through a safe copy)"}},
        {"resize", {resize, "resize PICTURE... (--size WxH | --percent P) [--out DIR]\n"
                            "                       new sizes, beside each picture (name + _WxH or _Ppct) or in DIR"}},
        {"split", {split, "split PICTURE... --rows R --cols C [--by-column]\n"
                          "                       cuts each picture into tiles NAMENr1.ext, NAMENr2.ext, ... beside it"}},
        {"pano", {pano, "pano PICTURE... -o OUT.jpg [--360] [--smooth N] [--crop] [--no-gain] [--padding]\n"
                        "                       [--balance] stitches overlapping pictures of one size into\n"
                        "                       one panorama"}},
        {"thumbs", {thumbs, "thumbs FOLDER [--size N] [--threads N] [--english|--german]\n"
                            "                       makes the explorer's missing and stale thumbnails of the\n"
                            "                       folder's pictures (N pixels, default 160) on both cores"}},
        {"scan", {scan, "scan -o OUT.jpg [--device NAME] [--resolution DPI] | scan --list\n"
                        "                       one picture from a scanner (SANE), or the scanners' names"}},
        {"video", {video, "video PICTURE... -o OUT.avi|OUT.mp4 [--fps N]\n"
                          "                       a silent video of pictures of one size (.bmp, .jpg, .gif),\n"
                          "                       one frame each, N (1 - 30, default 15) per second"}},
        {"print", {printSheet, "print LAYOUT.bsp PICTURE... -o OUT.pdf [--paper A4|Letter] [--landscape]\n"
                               "                       the pictures in the boxes of a print layout, on one PDF page"}},
        {"rotate", {rotate, "rotate left|right FILE\n                       turn a picture by 90 degrees (JPEG without re-encoding)"}},
    };
    return table;
}

void printHelp() {
    std::cout << "usage: brindlesee-cli COMMAND [ARGS] | --version\n\ncommands:\n";
    for (const auto& [name, cmd] : commands()) std::cout << "  " << cmd.usage << "\n";
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2 || !std::strcmp(argv[1], "--help") || !std::strcmp(argv[1], "-h")) {
        printHelp();
        return argc < 2 ? 1 : 0;
    }
    if (!std::strcmp(argv[1], "--version")) {
        std::cout << "brindlesee-cli " << BRINDLESEE_VERSION << "\n";
        return 0;
    }
    auto it = commands().find(argv[1]);
    if (it == commands().end()) return brindle::cli::fail(std::string("unknown command: ") + argv[1]);
    return it->second.run(brindle::cli::Args(argv + 2, argv + argc));
}
