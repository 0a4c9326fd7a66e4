// Writing ZIP archives (template exchange, mail album) with libzip.
#pragma once

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

// Unpacks every entry into `dir`; false when the archive is damaged or
// holds an entry that would land outside `dir` (absolute, "..", a drive).
bool extractZipArchive(const std::string& archive, const std::string& dir);

}  // namespace brindle
