#include "media/video_writer.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "image/picture_io.h"
#include "media/video_encoder.h"
#include "media/video_texts.h"

namespace brindle::media {
namespace {

namespace fs = std::filesystem;

// The bitmap at `path` as a section; empty when it cannot be read.
cDIBSection loadBitmap(const std::string& path, Language lang) {
    ImageEnv env;
    env.language = lang;
    const PictureFile file = LoadPictureFile(path, env);
    if (!file.picture || !file.picture.Handle()) return {};
    return *file.picture.Handle();
}

VideoResult failure(const ImageMessage& message) {
    VideoResult r;
    r.message = message;
    return r;
}

// A name beside the target for the file while it is written.
std::string partPath(const std::string& path) {
    const fs::path p(path);
    return (p.parent_path() / ("." + p.filename().string() + ".part")).string();
}

struct Run {
    const std::vector<std::string>& bitmaps;
    Language lang;
    const VideoCallbacks& callbacks;
};

// Encodes every bitmap; false with `result` filled when the run stops.
bool writeFrames(const Run& run, VideoEncoder& encoder, const cDIBSection& first, VideoResult& result) {
    const int total = static_cast<int>(run.bitmaps.size());
    for (int i = 0; i < total; ++i) {
        if (run.callbacks.cancelled && run.callbacks.cancelled()) {
            result.cancelled = true;
            return false;
        }
        const cDIBSection dib = i == 0 ? first : loadBitmap(run.bitmaps[i], run.lang);
        if (dib.empty() || dib.Width() != first.Width() || dib.Height() != first.Height()) {
            result.message = dib.empty() ? writeErrorMessage(run.lang) : differentFormatMessage(run.lang);
            return false;
        }
        std::string error;
        if (!encoder.addFrame(dib, error)) {
            result.message = writeErrorMessage(run.lang);
            return false;
        }
        result.frames = i + 1;
        if (run.callbacks.status) run.callbacks.status(frameSavedStatus(run.lang, i));
        if (run.callbacks.progress) run.callbacks.progress(i + 1, total);
    }
    return true;
}

}  // namespace

std::optional<VideoKind> videoKindFor(const std::string& path) {
    std::string ext = fs::path(path).extension().string();
    std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return std::tolower(c); });
    if (ext == ".avi") return VideoKind::Avi;
    if (ext == ".mp4") return VideoKind::Mp4;
    return std::nullopt;
}

VideoResult writeVideo(const std::vector<std::string>& bitmaps, const std::string& path,
                       const VideoOptions& options, Language lang, const VideoCallbacks& callbacks) {
    if (bitmaps.empty()) return {};
    const std::optional<VideoKind> kind = videoKindFor(path);
    if (!kind) return failure(videoTypeMessage(lang));
    const cDIBSection first = loadBitmap(bitmaps.front(), lang);
    if (first.empty()) return failure(firstBitmapMessage(lang));

    const int fps = std::clamp(options.fps, kMinFps, kMaxFps);
    const std::string part = partPath(path);
    VideoResult result;
    bool written = false;
    {
        VideoEncoder encoder;
        std::string error;
        if (encoder.open(part, *kind, first.Width(), first.Height(), fps, error)) {
            result.codec = encoder.codecName();
            written = writeFrames(Run{bitmaps, lang, callbacks}, encoder, first, result) &&
                      encoder.finish(error);
        }
        if (!written && !result.cancelled && !result.message) result.message = writeErrorMessage(lang);
    }
    std::error_code ec;
    if (written) fs::rename(part, path, ec);
    if (!written || ec) {
        fs::remove(part, ec);
        if (written) result.message = writeErrorMessage(lang);
        return result;
    }
    result.ok = true;
    if (callbacks.status) callbacks.status(finishedStatus(lang));
    return result;
}

}  // namespace brindle::media
