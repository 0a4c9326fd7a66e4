#include <cstddef>
#include <cstdint>
#include <string>

#include "album/page_file.h"
#include "fuzz_support.h"

static void check(std::string_view bytes, const brindle::PageRecord& defaults) {
    brindle::PageFile file;
    if (!brindle::decodePage(bytes, defaults, file).ok()) return;
    std::string out;
    if (!brindle::encodePage(file.page, out).ok()) return;
    brindle::PageFile again;
    if (!brindle::decodePage(out, defaults, again).ok() || !(again.page == file.page)) __builtin_trap();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const brindle::AlbumRecord album = [] {
        brindle::AlbumRecord a;
        brindle::ladeStandards(a, "/prog/");
        return a;
    }();
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    check(bytes, album.pageDefaults);
    check(brindle::fuzz::withHead(brindle::kPageFormat, bytes), album.pageDefaults);
    check(brindle::fuzz::withHead(brindle::kPageFormatOlder, bytes), album.pageDefaults);
    return 0;
}
