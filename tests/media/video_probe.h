// Looks at written videos from outside, with FFmpeg's own command-line
// tools, and measures how close a decoded frame is to its picture.
#pragma once

#include <string>

#include "image/dib_section.h"

namespace brindle::test {

struct ProbedVideo {
    int frames = 0;         // counted by decoding
    std::string rate;       // "7/1"
    std::string codec;      // "mjpeg", "h264", ...
    std::string container;  // "avi", "mov,mp4,m4a,3gp,3g2,mj2"
    int width = 0;
    int height = 0;
};

// Runs `command` in a shell; its standard output.
std::string shellOutput(const std::string& command);

ProbedVideo probeVideo(const std::string& path);

// Frame `index` of the video decoded to a PNG at `png`; true when ffmpeg wrote it.
bool decodeFrame(const std::string& video, int index, const std::string& png);

// Peak signal-to-noise ratio over the three channels in dB; 0 for
// pictures of different sizes, 99 for equal ones.
double psnr(const cDIBSection& a, const cDIBSection& b);

// A picture of its own kind for frame `n`: smooth gradients that differ
// from frame to frame.
cDIBSection framePicture(int width, int height, int n);

}  // namespace brindle::test
