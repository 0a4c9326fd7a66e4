// Whole-file reads with a size limit, and atomic writes: a file is written
// beside its target and renamed over it, so a crash or a full disk never
// leaves half a file behind.
#pragma once

#include <cstddef>
#include <string>

namespace brindle {

struct IoResult {
    bool ok = false;
    std::string error;  // the system's error text when !ok
};

// Album files are small; anything past this is not one of ours.
constexpr std::size_t kMaxAlbumFileBytes = 64u << 20;

IoResult readWholeFile(const std::string& path, std::string& out,
                       std::size_t maxBytes = kMaxAlbumFileBytes);
IoResult writeFileAtomic(const std::string& path, const std::string& bytes);

}  // namespace brindle
