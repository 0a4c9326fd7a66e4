// Writing ZIP archives (template exchange, mail album) with libzip.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace brindle {

struct ZipEntry {
    std::string name;      // name inside the archive
    std::string filePath;  // file to pack
};

// Packs the files at the best compression. The archive is written beside
// its target and renamed, so a failure leaves no half archive. A name that
// comes twice is packed once. False with `error` set on failure.
bool writeZipArchive(const std::string& zipPath, const std::vector<ZipEntry>& entries, std::string& error);

// What unpacking may write: an archive of a megabyte can claim (or really
// hold) gigabytes, so entries are streamed to disk and counted.
struct ZipLimits {
    std::uint64_t entryBytes = 256ull << 20;  // one unpacked entry
    std::uint64_t totalBytes = 1ull << 30;    // all entries together
};

// Unpacks every entry into `dir`, streaming each to a temporary file that
// is renamed when complete. False when the archive is damaged, an entry
// would land outside `dir` (absolute, "..", a drive) or passes a limit;
// the entry being written then leaves nothing behind.
bool extractZipArchive(const std::string& archive, const std::string& dir, const ZipLimits& limits = {});

}  // namespace brindle
