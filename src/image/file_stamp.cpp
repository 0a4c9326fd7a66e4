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

std::string temporaryBeside(const std::string& path) {
    static std::atomic<unsigned> counter{0};
    return path + ".~" + std::to_string(::getpid()) + "-" + std::to_string(counter++) + ".tmp";
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
    const std::string tmp = temporaryBeside(path);
    const int fd = ::open(tmp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (fd < 0) {
        setError(error, std::strerror(errno));
        return false;
    }
    const char* p = static_cast<const char*>(data);
    std::size_t left = size;
    while (left > 0) {
        const ssize_t n = ::write(fd, p, left);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            setError(error, std::strerror(errno));
            ::close(fd);
            ::unlink(tmp.c_str());
            return false;
        }
        p += n;
        left -= static_cast<std::size_t>(n);
    }
    if (::close(fd) != 0 || ::rename(tmp.c_str(), path.c_str()) != 0) {
        setError(error, std::strerror(errno));
        ::unlink(tmp.c_str());
        return false;
    }
    return true;
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
