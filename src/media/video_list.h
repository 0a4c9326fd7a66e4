// The list of bitmaps a video is made of: every entry matches the first in
// size and depth. Pictures of other formats are first written as bitmaps
// into "AVITemp" in the program directory.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "album/language.h"
#include "image/image_env.h"

namespace brindle::media {

struct BitmapFormat {
    int width = 0;
    int height = 0;  // always positive, whatever the row order
    int bitCount = 0;
    bool operator==(const BitmapFormat&) const = default;
};

// Reads the size and depth from a BMP file's headers; false for anything
// that is not a BMP.
bool readBitmapFormat(const std::string& path, BitmapFormat& out);
// The same from the first bytes of a file (30 are enough).
bool parseBitmapFormat(std::string_view head, BitmapFormat& out);

class VideoList {
  public:
    // Adds the bitmap at `path`; the message when it is refused (not a
    // bitmap, or not the size and depth of the first entry).
    std::optional<ImageMessage> add(const std::string& path, Language lang);
    void clear();
    bool empty() const { return paths_.empty(); }
    const std::vector<std::string>& paths() const { return paths_; }
    const BitmapFormat& format() const { return format_; }

  private:
    std::vector<std::string> paths_;
    BitmapFormat format_;
};

// "AVITemp/" in `programDirectory` (which ends in '/').
std::string aviTempFolder(const std::string& programDirectory);

struct ProvidedBitmaps {
    std::vector<std::string> bitmaps;     // in the order of the pictures given
    std::vector<ImageMessage> messages;  // one per picture left out
    std::vector<std::string> refused;     // the pictures left out, as `messages`
};

// Pictures handed over by the explorer or the command line: "AVITemp" is
// created and emptied; a ".bmp" is used where it stands, a ".jpg", ".jpeg"
// or ".gif" is written as a bitmap into "AVITemp", anything else is left
// out with the unsupported-file message. `status` gets the wait text once.
ProvidedBitmaps provideBitmaps(const std::vector<std::string>& pictures,
                               const std::string& programDirectory, Language lang,
                               const std::function<void(const std::string&)>& status = {});

}  // namespace brindle::media
