#include <cstddef>
#include <cstdint>
#include <string>

#include "album/album_file.h"

// Decoding must fail cleanly; what decodes must encode and decode the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    brindle::AlbumFile file;
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (!brindle::decodeAlbum(bytes, file).ok()) return 0;
    std::string out;
    if (!brindle::encodeAlbum(file.album, out).ok()) return 0;
    brindle::AlbumFile again;
    if (!brindle::decodeAlbum(out, again).ok() || !(again.album == file.album)) __builtin_trap();
    return 0;
}
