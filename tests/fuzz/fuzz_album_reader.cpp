#include <cstddef>
#include <cstdint>
#include <string>

#include "album/album_file.h"
#include "fuzz_support.h"

// Decoding must fail cleanly; what decodes must encode and decode the same.
static void check(std::string_view bytes) {
    brindle::AlbumFile file;
    if (!brindle::decodeAlbum(bytes, file).ok()) return;
    std::string out;
    if (!brindle::encodeAlbum(file.album, out).ok()) return;
    brindle::AlbumFile again;
    if (!brindle::decodeAlbum(out, again).ok() || !(again.album == file.album)) __builtin_trap();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    check(bytes);
    // Behind a valid head the fuzzer reaches the record at once.
    check(brindle::fuzz::withHead(brindle::kAlbumFormat, bytes));
    return 0;
}
