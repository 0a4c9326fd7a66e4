// Writes a silent video from a list of bitmaps of one size through FFmpeg:
// an AVI with Motion JPEG, or an MP4 with H.264 (MPEG-4 part 2 when no
// H.264 encoder is installed), chosen by the output's extension. Every
// bitmap is one frame at the chosen rate.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "album/language.h"
#include "image/image_env.h"

namespace brindle::media {

enum class VideoKind { Avi, Mp4 };

// By the extension, in any case: ".avi" or ".mp4"; nothing for others.
std::optional<VideoKind> videoKindFor(const std::string& path);

inline constexpr int kMinFps = 1;
inline constexpr int kMaxFps = 30;

struct VideoOptions {
    int fps = 15;  // limited to kMinFps .. kMaxFps
};

struct VideoCallbacks {
    std::function<void(const std::string&)> status;  // one line per frame and at the end
    std::function<void(int done, int total)> progress;
    std::function<bool()> cancelled;  // checked before each frame
};

struct VideoResult {
    bool ok = false;
    bool cancelled = false;
    int frames = 0;
    std::string codec;  // the encoder that was used
    std::optional<ImageMessage> message;
};

// Writes `bitmaps` to `path`. The file is written beside the target and
// renamed over it at the end, so a failed or cancelled run leaves nothing.
// An empty list writes nothing and is not an error worth a message.
VideoResult writeVideo(const std::vector<std::string>& bitmaps, const std::string& path,
                       const VideoOptions& options, Language lang, const VideoCallbacks& callbacks = {});

}  // namespace brindle::media
