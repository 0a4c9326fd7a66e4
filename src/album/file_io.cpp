#include "album/file_io.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>

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
        if (n == 0) {
            errno = ENOSPC;
            return false;
        }
        data += n;
        size -= static_cast<std::size_t>(n);
    }
    return true;
}

std::string folderOf(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

std::string nameOf(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

// Temporary files are named "<target>.~<pid>-<n>.tmp", so a later save can
// tell which ones belong to a process that no longer runs.
constexpr const char* kTempMark = ".~";
constexpr const char* kTempEnd = ".tmp";

std::string temporaryNameBeside(const std::string& path) {
    static std::atomic<unsigned> counter{0};
    return path + kTempMark + std::to_string(::getpid()) + "-" + std::to_string(counter++) +
           kTempEnd;
}

bool processGone(long pid) {
    if (pid <= 0) return true;
    return ::kill(static_cast<pid_t>(pid), 0) != 0 && errno == ESRCH;
}

// A leftover of a killed save: "<name>.~<pid>-<digits>.tmp" with a pid that
// is no longer running.
bool isStaleTemporary(const std::string& entry, const std::string& name) {
    const std::string head = name + kTempMark;
    if (entry.size() <= head.size() + 4 || entry.compare(0, head.size(), head) != 0) return false;
    if (entry.compare(entry.size() - 4, 4, kTempEnd) != 0) return false;
    const std::string middle = entry.substr(head.size(), entry.size() - head.size() - 4);
    const auto dash = middle.find('-');
    if (dash == std::string::npos || dash == 0 || dash + 1 == middle.size()) return false;
    for (std::size_t i = 0; i < middle.size(); ++i) {
        if (i != dash && (middle[i] < '0' || middle[i] > '9')) return false;
    }
    return processGone(std::strtol(middle.substr(0, dash).c_str(), nullptr, 10));
}

void removeStaleTemporaries(const std::string& target) {
    const std::string folder = folderOf(target);
    const std::string name = nameOf(target);
    DIR* dir = ::opendir(folder.empty() ? "." : folder.c_str());
    if (!dir) return;
    while (const dirent* e = ::readdir(dir)) {
        if (isStaleTemporary(e->d_name, name)) ::unlink((folder + e->d_name).c_str());
    }
    ::closedir(dir);
}

}  // namespace

int openRegularFile(const std::string& path, std::string& error) {
    int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        error = std::strerror(errno);
        return -1;
    }
    struct stat st {};
    const bool statted = ::fstat(fd, &st) == 0;
    if (!statted || !S_ISREG(st.st_mode)) {
        error = !statted              ? std::strerror(errno)
                : S_ISDIR(st.st_mode) ? std::strerror(EISDIR)
                                      : "not a regular file";
        ::close(fd);
        return -1;
    }
    // Regular files never block; reads after this behave as usual.
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    return fd;
}

IoResult readWholeFile(const std::string& path, std::string& out, std::size_t maxBytes) {
    out.clear();
    std::string error;
    const int fd = openRegularFile(path, error);
    if (fd < 0) return {false, error};
    struct stat st {};
    if (::fstat(fd, &st) != 0) {
        int err = errno;
        ::close(fd);
        return failure(err);
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
            out.clear();
            return failure(err);
        }
        if (n == 0) break;  // the file shrank meanwhile
        got += static_cast<std::size_t>(n);
    }
    out.resize(got);
    ::close(fd);
    return {true, {}};
}

std::string resolveSaveTarget(const std::string& path) {
    std::string target = path;
    // A bounded walk: a loop of links ends as a failed open later.
    for (int hops = 0; hops < 40; ++hops) {
        struct stat st {};
        if (::lstat(target.c_str(), &st) != 0 || !S_ISLNK(st.st_mode)) break;
        std::string link(static_cast<std::size_t>(st.st_size > 0 ? st.st_size : 4096) + 1, '\0');
        const ssize_t n = ::readlink(target.c_str(), link.data(), link.size());
        if (n <= 0 || static_cast<std::size_t>(n) >= link.size()) break;
        link.resize(static_cast<std::size_t>(n));
        target = link.front() == '/' ? link : folderOf(target) + link;
    }
    return target;
}

IoResult writeFileAtomic(const std::string& path, const std::string& bytes) {
    return writeFileAtomic(path, bytes.data(), bytes.size());
}

IoResult writeFileAtomic(const std::string& path, const void* data, std::size_t size) {
    const std::string target = resolveSaveTarget(path);
    removeStaleTemporaries(target);

    struct stat old {};
    const bool replacing = ::stat(target.c_str(), &old) == 0;
    if (replacing && !S_ISREG(old.st_mode)) return failure(S_ISDIR(old.st_mode) ? EISDIR : EINVAL);

    const std::string tmp = temporaryNameBeside(target);
    int fd = ::open(tmp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd < 0) return failure(errno);
    if ((replacing && ::fchmod(fd, old.st_mode & 07777) != 0) ||
        !writeAll(fd, static_cast<const char*>(data), size) || ::fsync(fd) != 0) {
        int err = errno;
        ::close(fd);
        ::unlink(tmp.c_str());
        return failure(err);
    }
    if (::close(fd) != 0 || ::rename(tmp.c_str(), target.c_str()) != 0) {
        int err = errno;
        ::unlink(tmp.c_str());
        return failure(err);
    }
    return {true, {}};
}

}  // namespace brindle
