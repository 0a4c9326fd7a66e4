#include "image/file_stamp.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>

#include "album/file_io.h"

namespace brindle {
namespace {

void setError(std::string* error, const std::string& text) {
    if (error) *error = text;
}

}  // namespace

FileStamp readFileStamp(const std::string& path) {
    FileStamp stamp;
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) return stamp;
    stamp.exists = true;
    stamp.accessed = st.st_atim;
    stamp.modified = st.st_mtim;
    stamp.mode = st.st_mode & 07777;
    return stamp;
}

bool applyFileStamp(const std::string& path, const FileStamp& stamp) {
    if (!stamp.exists) return false;
    const struct timespec times[2] = {stamp.accessed, stamp.modified};
    const bool timesOk = ::utimensat(AT_FDCWD, path.c_str(), times, 0) == 0;
    const bool modeOk = ::chmod(path.c_str(), stamp.mode) == 0;
    return timesOk && modeOk;
}

bool writeBytesAtomic(const std::string& path, const void* data, std::size_t size,
                      std::string* error) {
    const IoResult r = writeFileAtomic(path, data, size);
    if (!r.ok) setError(error, r.error);
    return r.ok;
}

bool readPictureBytes(const std::string& path, std::string& bytes, std::string* error) {
    const IoResult r = readWholeFile(path, bytes, kMaxPictureFileBytes);
    if (!r.ok) setError(error, r.error);
    return r.ok;
}

bool fileExists(const std::string& path) {
    struct stat st {};
    return !path.empty() && ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

}  // namespace brindle
