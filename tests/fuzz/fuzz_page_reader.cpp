#include <cstddef>
#include <cstdint>
#include <string>

#include "album/page_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    brindle::AlbumRecord album;
    brindle::ladeStandards(album, "/prog/");
    brindle::PageFile file;
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (!brindle::decodePage(bytes, album.pageDefaults, file).ok()) return 0;
    std::string out;
    if (!brindle::encodePage(file.page, out).ok()) return 0;
    brindle::PageFile again;
    if (!brindle::decodePage(out, album.pageDefaults, again).ok() || !(again.page == file.page)) __builtin_trap();
    return 0;
}
