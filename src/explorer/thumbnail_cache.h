// The explorer's thumbnails and their cache. Each picture of a folder has
// one file in the folder's thumbnail folder (cache_folder.h), named after
// the picture: "<file name>.jpg" ("a.png" gives "a.png.jpg"), so pictures
// that differ only in their suffix never share a thumbnail. The file is a
// JPEG at quality 90 followed by a 13-byte trailer: a carriage return, then
// the upright width and height of the SOURCE picture as six decimal digits
// each. Its modification time is the source's; it is valid while the two
// times agree, so a replaced picture gets a new thumbnail and the cache is
// read without ever opening the source.
#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "album/diagnose.h"
#include "album/language.h"
#include "image/dib_section.h"
#include "image/image_env.h"

namespace brindle::explorer {

inline constexpr int kThumbnailQuality = 90;
inline constexpr std::size_t kThumbnailTrailerBytes = 13;
// The largest side of a thumbnail when the options say nothing.
inline constexpr int kDefaultThumbnailSize = 160;
// Thumbnail sides are limited to this; a cached file larger than
// kMaxThumbnailFileBytes is not a thumbnail of ours and is not read.
inline constexpr int kMaxThumbnailSize = 1024;
inline constexpr std::size_t kMaxThumbnailFileBytes = std::size_t{4} << 20;

// ".mid", ".wav", ".avi", ".wmv", "mpeg", ".mp3", ".mpg", ".mp2", ".mp1",
// ".cda" at the end of the path, in any case.
bool isMediaFile(const std::string& path);

// "\r" + width and height as six digits each; sides are limited to 0..999999.
std::string thumbnailTrailer(int width, int height);
// The source size from the last 13 bytes of a thumbnail file; false when
// they are not a trailer.
bool parseThumbnailTrailer(std::string_view bytes, int& width, int& height);

// The thumbnail file of `picturePath` under `programDirectory`.
std::string thumbnailPath(const std::string& programDirectory, const std::string& picturePath);

// Removes the cached thumbnail of `picturePath`, for a picture deleted or
// changed in a way its time does not show (a turn that keeps the time).
// True when no thumbnail is left.
bool dropThumbnail(const std::string& programDirectory, const std::string& picturePath);

// The size a picture of width x height gets: inside size x size with its
// aspect kept, never larger than the picture itself, at least 1 x 1.
void thumbnailSize(int width, int height, int size, int& outWidth, int& outHeight);

// A cached thumbnail's picture and the source size from its trailer; false
// for anything that is not one (too long, no trailer, no JPEG, too large a
// picture).
bool decodeThumbnailFile(const std::string& bytes, cDIBSection& pixels, int& sourceWidth,
                         int& sourceHeight);

enum class ThumbnailKind {
    Picture,  // pixels hold the thumbnail
    Media,    // a media file: pixels hold the media symbol, nothing is cached
    Error,    // the picture could not be read: pixels hold the error picture
};

struct Thumbnail {
    ThumbnailKind kind = ThumbnailKind::Error;
    cDIBSection pixels;
    int sourceWidth = 0;  // upright; 0 for media and errors
    int sourceHeight = 0;
    bool fromCache = false;
    // For the user: the time stamp could not be written (the thumbnail is
    // shown but not kept).
    std::optional<ImageMessage> message;
};

struct ThumbnailSettings {
    int size = kDefaultThumbnailSize;  // "Größe Thumbnails:"
    Language language = Language::German;
    LogSink log;  // the test-mode log
    // Sets a file's modification time; empty uses the system. Tests put a
    // failing one in.
    std::function<bool(const std::string& path, const struct timespec& modified)> setFileTime;
};

// Reads thumbnails from the cache and makes the missing and stale ones.
// Picture paths are absolute (the cache folder is named after the path).
// get() may be called from several threads at once.
class ThumbnailCache {
  public:
    ThumbnailCache(std::string programDirectory, ThumbnailSettings settings);

    // The cached thumbnail while it is valid and of the wanted size, else a
    // new one, made and written to the cache.
    Thumbnail get(const std::string& picturePath) const;
    // The cached thumbnail alone; nothing when it is missing or stale.
    std::optional<Thumbnail> cached(const std::string& picturePath) const;
    // Makes the thumbnail from the source and writes it to the cache.
    Thumbnail make(const std::string& picturePath) const;

    const std::string& programDirectory() const { return programDirectory_; }
    const ThumbnailSettings& settings() const { return settings_; }
    // Source pictures decoded so far (media files and cache hits decode none).
    int decodes() const { return decodes_.load(); }

  private:
    // Writes the file (JPEG and trailer) with the source's time.
    bool store(const std::string& picturePath, const std::string& bytes,
               const struct timespec& sourceTime, std::optional<ImageMessage>& message) const;

    std::string programDirectory_;
    ThumbnailSettings settings_;
    mutable std::atomic<int> decodes_{0};
};

}  // namespace brindle::explorer
