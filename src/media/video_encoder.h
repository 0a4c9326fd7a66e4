// The FFmpeg side of the video writer: one video stream in one container,
// fed with bottom-up BGR pictures of one size.
#pragma once

#include <memory>
#include <string>

#include "image/dib_section.h"

namespace brindle::media {

enum class VideoKind;

class VideoEncoder {
  public:
    VideoEncoder();
    ~VideoEncoder();
    VideoEncoder(const VideoEncoder&) = delete;
    VideoEncoder& operator=(const VideoEncoder&) = delete;

    // Opens `path` for a video of width x height at `fps`; false with
    // `error` set when the container or the encoder refuses.
    bool open(const std::string& path, VideoKind kind, int width, int height, int fps,
              std::string& error);
    // Encodes `dib` (the size given to open) as the next frame.
    bool addFrame(const cDIBSection& dib, std::string& error);
    // Drains the encoder, writes the trailer and closes the file.
    bool finish(std::string& error);
    // The encoder's name ("mjpeg", "libx264", "mpeg4").
    std::string codecName() const;

    struct State;  // FFmpeg's contexts, kept out of this header

  private:
    std::unique_ptr<State> state_;
};

}  // namespace brindle::media
