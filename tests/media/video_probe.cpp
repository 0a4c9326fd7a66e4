#include "video_probe.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <sstream>

namespace brindle::test {

std::string shellOutput(const std::string& command) {
    std::string out;
    FILE* p = ::popen(command.c_str(), "r");
    if (!p) return out;
    std::array<char, 4096> buf{};
    for (std::size_t n; (n = std::fread(buf.data(), 1, buf.size(), p)) > 0;) out.append(buf.data(), n);
    ::pclose(p);
    return out;
}

ProbedVideo probeVideo(const std::string& path) {
    const std::string text = shellOutput(
        "ffprobe -v error -count_frames -select_streams v:0 -show_entries "
        "stream=nb_read_frames,r_frame_rate,codec_name,width,height:format=format_name "
        "-of default=noprint_wrappers=1 '" + path + "'");
    ProbedVideo v;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t eq = line.find('=');
        if (eq == std::string::npos) continue;
        const std::string key = line.substr(0, eq), value = line.substr(eq + 1);
        if (key == "nb_read_frames") v.frames = std::atoi(value.c_str());
        if (key == "r_frame_rate") v.rate = value;
        if (key == "codec_name") v.codec = value;
        if (key == "format_name") v.container = value;
        if (key == "width") v.width = std::atoi(value.c_str());
        if (key == "height") v.height = std::atoi(value.c_str());
    }
    return v;
}

bool decodeFrame(const std::string& video, int index, const std::string& png) {
    const std::string cmd = "ffmpeg -v error -y -i '" + video + "' -vf 'select=eq(n\\," +
                            std::to_string(index) + ")' -frames:v 1 -pix_fmt rgb24 '" + png +
                            "' && echo ok";
    return shellOutput(cmd).find("ok") != std::string::npos;
}

double psnr(const cDIBSection& a, const cDIBSection& b) {
    if (a.Width() != b.Width() || a.Height() != b.Height() || a.empty()) return 0;
    double sum = 0;
    for (int row = 0; row < a.Height(); ++row) {
        const std::uint8_t* pa = a.DIBSectionBitsPtr() + static_cast<std::size_t>(row) * a.BytesPerScanLine();
        const std::uint8_t* pb = b.DIBSectionBitsPtr() + static_cast<std::size_t>(row) * b.BytesPerScanLine();
        for (int i = 0; i < a.Width() * 3; ++i) {
            const double d = static_cast<double>(pa[i]) - pb[i];
            sum += d * d;
        }
    }
    const double mse = sum / (3.0 * a.Width() * a.Height());
    return mse == 0 ? 99 : 10 * std::log10(255.0 * 255.0 / mse);
}

cDIBSection framePicture(int width, int height, int n) {
    cDIBSection dib;
    dib.Create(width, height);
    for (int row = 0; row < height; ++row) {
        std::uint8_t* p = dib.DIBSectionBitsPtr() + static_cast<std::size_t>(row) * dib.BytesPerScanLine();
        const int y = height - 1 - row;
        for (int x = 0; x < width; ++x) {
            // No wrap-around: hard edges are not what a photo has.
            p[x * 3] = static_cast<std::uint8_t>(x * 160 / width + 30 * (n % 3));
            p[x * 3 + 1] = static_cast<std::uint8_t>(y * 160 / height + 40 * (n % 3));
            p[x * 3 + 2] = static_cast<std::uint8_t>(220 - (x + y) * 100 / (width + height) - 50 * (n % 3));
        }
    }
    return dib;
}

}  // namespace brindle::test
