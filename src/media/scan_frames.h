// Turns the byte stream of a scanner into a picture. Kept apart from the
// scanner library so that any stream, however broken, can be tested and
// fuzzed without a device.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "album/language.h"
#include "image/picture.h"

namespace brindle::media {

// The kinds of frame a scanner sends; the values are those of SANE_Frame.
enum class ScanFrameKind : int { Gray = 0, Rgb = 1, Red = 2, Green = 3, Blue = 4 };

// One frame as the scanner announces it after starting it.
struct ScanFrameFormat {
    int kind = 0;           // a ScanFrameKind value, checked on use
    bool lastFrame = true;  // false while more frames (three-pass) follow
    int bytesPerLine = 0;
    int pixelsPerLine = 0;
    int lines = 0;  // below 0 when the scanner does not know (hand scanners)
    int depth = 8;
};

struct ScanLimits {
    // A4 at 1200 dpi is about 140 million pixels; more is refused before
    // anything is allocated for it.
    std::int64_t maxPixels = 150'000'000;
    int maxSide = 65'000;
};

// Collects frames line by line into 8-bit RGB rows; holds at most one
// partial line besides the picture itself.
class ScanAssembler {
  public:
    explicit ScanAssembler(Language language = Language::German, ScanLimits limits = {});

    // Checks a frame's format against the limits and earlier frames; false
    // with error() set when it cannot be taken.
    bool beginFrame(const ScanFrameFormat& format);
    // Takes the next bytes of the current frame; false when they overrun
    // the announced lines or the limits.
    bool add(const std::uint8_t* data, std::size_t size);
    // The frame's end as the scanner reports it; false when it is short.
    bool endFrame();

    // The picture once the last frame has ended; empty before.
    Picture picture() const;
    bool complete() const { return complete_; }
    // Progress of the current frame, 0 to 100 (0 while lines are unknown).
    int percent() const;
    int width() const { return width_; }
    int height() const { return static_cast<int>(rows_); }
    const std::string& error() const { return error_; }

  private:
    bool fail(const std::string& text);
    bool takeLine(const std::uint8_t* line);
    bool growTo(std::size_t rows);
    bool checkSize(std::int64_t width, std::int64_t lines);

    Language language_;
    ScanLimits limits_;
    ScanFrameFormat format_;
    bool inFrame_ = false;
    bool complete_ = false;
    int framesSeen_ = 0;
    int width_ = 0;
    int expectedLines_ = -1;  // of the whole picture, once known
    std::size_t rows_ = 0;     // rows allocated so far
    std::size_t lineInFrame_ = 0;
    std::vector<std::uint8_t> rgb_;  // top-down, 3 bytes a pixel, no padding
    std::vector<std::uint8_t> partial_;
    std::string error_;
};

}  // namespace brindle::media
