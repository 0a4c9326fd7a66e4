// File times and atomic picture writes. An edited picture keeps the
// modification time (and permissions) of the file it replaces, so that it
// still sorts by the day it was taken.
#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <string>

namespace brindle {

// Picture files past this size are not read.
inline constexpr std::size_t kMaxPictureFileBytes = std::size_t{1} << 30;

struct FileStamp {
    bool exists = false;
    struct timespec accessed {};
    struct timespec modified {};
    mode_t mode = 0;
};

FileStamp readFileStamp(const std::string& path);
// Puts the times and permission bits back; false when there were none or
// the system refused.
bool applyFileStamp(const std::string& path, const FileStamp& stamp);

// Writes beside `path` and renames over it. On failure `error` gets the
// system's text and the old file stays as it was.
bool writeBytesAtomic(const std::string& path, const void* data, std::size_t size,
                      std::string* error = nullptr);

// Reads the whole file; false (with the system's text) when it cannot.
bool readPictureBytes(const std::string& path, std::string& bytes, std::string* error = nullptr);

bool fileExists(const std::string& path);

}  // namespace brindle
