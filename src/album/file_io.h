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

// Only regular files are read: a FIFO, device or folder is refused at once
// instead of blocking or reading forever.
IoResult readWholeFile(const std::string& path, std::string& out,
                       std::size_t maxBytes = kMaxAlbumFileBytes);

// Opens a regular file for reading without blocking on FIFOs; -1 with
// `error` set otherwise. The caller closes the descriptor.
int openRegularFile(const std::string& path, std::string& error);

// Writes through a symbolic link to the file it names, keeps the
// permission bits of a file it replaces, and removes temporary files that
// an earlier, killed save of the same target left behind.
IoResult writeFileAtomic(const std::string& path, const std::string& bytes);
IoResult writeFileAtomic(const std::string& path, const void* data, std::size_t size);

// The file a save of `path` really replaces: symbolic links followed (also
// a link whose target does not exist yet).
std::string resolveSaveTarget(const std::string& path);

}  // namespace brindle
