#include "explorer/thumbnail_cache.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>

#include "album/file_io.h"
#include "album/paths.h"
#include "explorer/cache_folder.h"
#include "explorer/thumbnail_symbols.h"
#include "image/exif_orientation.h"
#include "image/file_stamp.h"
#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "image/reduce.h"

namespace brindle::explorer {
namespace {

constexpr int kMaxTrailerSide = 999999;

bool sameTime(const struct timespec& a, const struct timespec& b) {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

bool regularFile(const std::string& path, struct stat& st) {
    return ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

bool isJpegName(const std::string& path) {
    return endsWithNoCase(path, ".jpg") || endsWithNoCase(path, ".jpeg");
}

std::string oneLine(std::string text) {
    for (char& c : text)
        if (c == '\r' || c == '\n') c = ' ';
    return text;
}

// A JPEG decoded at the smallest DCT scale that still covers the thumbnail;
// the size is the upright one, from the frame header and the EXIF tag.
bool decodeJpegSource(const std::string& path, int size, cDIBSection& dib, int& width, int& height,
                      std::string& error) {
    std::string bytes;
    if (!readPictureBytes(path, bytes, &error)) return false;
    if (!readJpegSize(bytes, width, height, &error)) return false;
    if (orientationSwapsSides(jpegOrientation(bytes))) std::swap(width, height);
    int tw = 0, th = 0;
    thumbnailSize(width, height, size, tw, th);
    return decodeJpeg(bytes, dib, tw, th, &error);
}

// Any picture: the JPEG road first, then the general loader.
bool decodeSource(const std::string& path, int size, cDIBSection& dib, int& width, int& height,
                  std::string& error) {
    if (isJpegName(path) && decodeJpegSource(path, size, dib, width, height, error)) return true;
    const PictureFile file = LoadPictureFile(path);
    if (file.picture && file.picture.Handle()) {
        dib = *file.picture.Handle();
        width = dib.Width();
        height = dib.Height();
        return true;
    }
    if (file.message)
        error = oneLine(file.message->text);
    else if (error.empty())
        error = fileExists(path) ? "unknown picture type" : "file not found";
    return false;
}

bool setModifiedTime(const std::string& path, const struct timespec& modified) {
    const struct timespec times[2] = {{0, UTIME_NOW}, modified};
    return ::utimensat(AT_FDCWD, path.c_str(), times, 0) == 0;
}

// A name beside `target` that no other thread or process writes to.
std::string temporaryName(const std::string& target) {
    static std::atomic<unsigned> counter{0};
    return target + "." + std::to_string(::getpid()) + "-" + std::to_string(counter++) + ".tmp";
}

bool writeWhole(const std::string& path, const std::string& bytes) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (fd < 0) return false;
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        done += static_cast<std::size_t>(n);
    }
    return ::close(fd) == 0 && done == bytes.size();
}

}  // namespace

bool isMediaFile(const std::string& path) {
    static const char* const suffixes[] = {".mid", ".wav", ".avi", ".wmv", "mpeg",
                                           ".mp3", ".mpg", ".mp2", ".mp1", ".cda"};
    for (const char* s : suffixes)
        if (endsWithNoCase(path, s)) return true;
    return false;
}

std::string thumbnailTrailer(int width, int height) {
    char text[kThumbnailTrailerBytes + 1];
    std::snprintf(text, sizeof text, "\r%06d%06d", std::clamp(width, 0, kMaxTrailerSide),
                  std::clamp(height, 0, kMaxTrailerSide));
    return std::string(text, kThumbnailTrailerBytes);
}

bool parseThumbnailTrailer(std::string_view bytes, int& width, int& height) {
    if (bytes.size() < kThumbnailTrailerBytes) return false;
    const std::string_view t = bytes.substr(bytes.size() - kThumbnailTrailerBytes);
    if (t[0] != '\r') return false;
    int values[2] = {0, 0};
    for (int i = 0; i < 12; ++i) {
        const char c = t[1 + i];
        if (c < '0' || c > '9') return false;
        values[i / 6] = values[i / 6] * 10 + (c - '0');
    }
    width = values[0];
    height = values[1];
    return true;
}

std::string thumbnailPath(const std::string& programDirectory, const std::string& picturePath) {
    std::string folder, name;
    teilePfad(picturePath, folder, name);
    return thumbnailFolder(programDirectory, folder) + name + ".jpg";
}

bool dropThumbnail(const std::string& programDirectory, const std::string& picturePath) {
    const std::string path = thumbnailPath(programDirectory, picturePath);
    return ::unlink(path.c_str()) == 0 || errno == ENOENT;
}

void thumbnailSize(int width, int height, int size, int& outWidth, int& outHeight) {
    size = std::clamp(size, 1, kMaxThumbnailSize);
    width = std::max(1, width);
    height = std::max(1, height);
    if (width <= size && height <= size) {
        outWidth = width;
        outHeight = height;
    } else if (width >= height) {
        outWidth = size;
        outHeight = static_cast<int>((static_cast<long long>(height) * size + width / 2) / width);
    } else {
        outHeight = size;
        outWidth = static_cast<int>((static_cast<long long>(width) * size + height / 2) / height);
    }
    outWidth = std::max(1, outWidth);
    outHeight = std::max(1, outHeight);
}

bool decodeThumbnailFile(const std::string& bytes, cDIBSection& pixels, int& sourceWidth,
                         int& sourceHeight) {
    if (bytes.size() > kMaxThumbnailFileBytes) return false;
    if (!parseThumbnailTrailer(bytes, sourceWidth, sourceHeight)) return false;
    if (sourceWidth <= 0 || sourceHeight <= 0) return false;
    int w = 0, h = 0;
    if (!readJpegSize(bytes, w, h) || w > kMaxThumbnailSize || h > kMaxThumbnailSize) return false;
    return decodeJpeg(bytes, pixels);
}

ThumbnailCache::ThumbnailCache(std::string programDirectory, ThumbnailSettings settings)
    : programDirectory_(withTrailingSeparator(std::move(programDirectory))),
      settings_(std::move(settings)) {
    settings_.size = std::clamp(settings_.size, 1, kMaxThumbnailSize);
}

Thumbnail ThumbnailCache::get(const std::string& picturePath) const {
    if (std::optional<Thumbnail> hit = cached(picturePath)) return std::move(*hit);
    return make(picturePath);
}

std::optional<Thumbnail> ThumbnailCache::cached(const std::string& picturePath) const {
    if (isMediaFile(picturePath)) return std::nullopt;
    struct stat source {
    }, thumb{};
    const std::string path = thumbnailPath(programDirectory_, picturePath);
    if (!regularFile(picturePath, source) || !regularFile(path, thumb)) return std::nullopt;
    if (!sameTime(source.st_mtim, thumb.st_mtim)) return std::nullopt;
    if (static_cast<std::size_t>(thumb.st_size) > kMaxThumbnailFileBytes) return std::nullopt;
    std::string bytes;
    if (!readWholeFile(path, bytes, kMaxThumbnailFileBytes).ok) return std::nullopt;
    Thumbnail t;
    if (!decodeThumbnailFile(bytes, t.pixels, t.sourceWidth, t.sourceHeight)) return std::nullopt;
    // One made at another "Größe Thumbnails:" is made again.
    int w = 0, h = 0;
    thumbnailSize(t.sourceWidth, t.sourceHeight, settings_.size, w, h);
    if (t.pixels.Width() != w || t.pixels.Height() != h) return std::nullopt;
    t.kind = ThumbnailKind::Picture;
    t.fromCache = true;
    return t;
}

Thumbnail ThumbnailCache::make(const std::string& picturePath) const {
    Thumbnail t;
    if (isMediaFile(picturePath)) {
        t.kind = ThumbnailKind::Media;
        t.pixels = mediaSymbol(settings_.size);
        return t;
    }
    // The source's time before it is read: a picture replaced while it is
    // decoded then gets a thumbnail that is already stale.
    struct stat source {};
    const bool stamped = regularFile(picturePath, source);
    ++decodes_;
    cDIBSection decoded;
    int width = 0, height = 0;
    std::string error;
    if (!decodeSource(picturePath, settings_.size, decoded, width, height, error)) {
        logLine(settings_.log, "FrmBildviewer - erzeugeThumbNail --> Fehler beim laden: " +
                                   picturePath + "  " + error);
        t.kind = ThumbnailKind::Error;
        t.pixels = errorPicture(settings_.size);
        return t;
    }
    int w = 0, h = 0;
    thumbnailSize(width, height, settings_.size, w, h);
    if (decoded.Width() == w && decoded.Height() == h) {
        t.pixels = std::move(decoded);
    } else if (!smoothResize(decoded, t.pixels, w, h)) {
        t.pixels = errorPicture(settings_.size);
        return t;
    }
    t.pixels.setExif(std::string());  // a thumbnail carries no camera data
    t.kind = ThumbnailKind::Picture;
    t.sourceWidth = width;
    t.sourceHeight = height;
    // The caller gets the pixels the cache gives back later, so a folder
    // looks the same on its first and every later opening.
    std::string bytes;
    if (!encodeJpeg(t.pixels, kThumbnailQuality, bytes)) return t;
    cDIBSection coded;
    if (decodeJpeg(bytes, coded)) t.pixels = std::move(coded);
    bytes += thumbnailTrailer(width, height);
    if (stamped) store(picturePath, bytes, source.st_mtim, t.message);
    return t;
}

bool ThumbnailCache::store(const std::string& picturePath, const std::string& bytes,
                           const struct timespec& sourceTime,
                           std::optional<ImageMessage>& message) const {
    const std::string target = thumbnailPath(programDirectory_, picturePath);
    std::error_code ec;
    std::filesystem::create_directories(std::filesystem::path(target).parent_path(), ec);
    // Written beside and renamed with its time already set, so that no
    // reader ever sees a thumbnail without its time.
    const std::string tmp = temporaryName(target);
    if (!writeWhole(tmp, bytes)) {
        ::unlink(tmp.c_str());
        return false;
    }
    const bool timed = settings_.setFileTime ? settings_.setFileTime(tmp, sourceTime)
                                             : setModifiedTime(tmp, sourceTime);
    if (!timed) {
        ::unlink(tmp.c_str());
        ::unlink(target.c_str());  // the old one is stale; nothing is kept
        const Language lang = settings_.language;
        message = ImageMessage{
            tr(lang, "Fehler", "Error"),
            tr(lang, "Fehler beim schreiben des Zeitstempels der Datei (Filetime) aufgetreten ",
               "Error while writing the filetimestamp "),
            0};
        return false;
    }
    if (::rename(tmp.c_str(), target.c_str()) != 0) {
        ::unlink(tmp.c_str());
        return false;
    }
    return true;
}

}  // namespace brindle::explorer
