#include "album/file_io.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <random>

namespace brindle {
namespace {

IoResult failure(int err) { return {false, std::strerror(err)}; }

bool writeAll(int fd, const char* data, std::size_t size) {
    while (size > 0) {
        ssize_t n = ::write(fd, data, size);
        if (n < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        data += n;
        size -= static_cast<std::size_t>(n);
    }
    return true;
}

std::string temporaryNameBeside(const std::string& path) {
    static std::mt19937 rng{std::random_device{}()};
    return path + ".~" + std::to_string(rng() % 1000000) + ".tmp";
}

}  // namespace

IoResult readWholeFile(const std::string& path, std::string& out, std::size_t maxBytes) {
    out.clear();
    int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return failure(errno);
    struct stat st {};
    if (::fstat(fd, &st) != 0) {
        int err = errno;
        ::close(fd);
        return failure(err);
    }
    if (S_ISDIR(st.st_mode)) {
        ::close(fd);
        return failure(EISDIR);
    }
    if (static_cast<std::size_t>(st.st_size) > maxBytes) {
        ::close(fd);
        return {false, "file too large"};
    }
    out.resize(static_cast<std::size_t>(st.st_size));
    std::size_t got = 0;
    while (got < out.size()) {
        ssize_t n = ::read(fd, out.data() + got, out.size() - got);
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) {
            int err = errno;
            ::close(fd);
            return failure(err);
        }
        if (n == 0) break;  // the file shrank meanwhile
        got += static_cast<std::size_t>(n);
    }
    out.resize(got);
    ::close(fd);
    return {true, {}};
}

IoResult writeFileAtomic(const std::string& path, const std::string& bytes) {
    std::string tmp = temporaryNameBeside(path);
    int fd = ::open(tmp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (fd < 0) return failure(errno);
    if (!writeAll(fd, bytes.data(), bytes.size()) || ::fsync(fd) != 0) {
        int err = errno;
        ::close(fd);
        ::unlink(tmp.c_str());
        return failure(err);
    }
    if (::close(fd) != 0 || ::rename(tmp.c_str(), path.c_str()) != 0) {
        int err = errno;
        ::unlink(tmp.c_str());
        return failure(err);
    }
    return {true, {}};
}

}  // namespace brindle
