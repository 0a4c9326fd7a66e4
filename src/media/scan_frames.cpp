#include "media/scan_frames.h"

#include <algorithm>
#include <cstring>

#include "image/dib_section.h"

namespace brindle::media {
namespace {

int channelsOf(int kind) { return kind == static_cast<int>(ScanFrameKind::Rgb) ? 3 : 1; }

bool isSinglePass(int kind) {
    return kind == static_cast<int>(ScanFrameKind::Gray) || kind == static_cast<int>(ScanFrameKind::Rgb);
}

}  // namespace

ScanAssembler::ScanAssembler(Language language, ScanLimits limits)
    : language_(language), limits_(limits) {}

bool ScanAssembler::fail(const std::string& text) {
    error_ = text;
    inFrame_ = false;
    return false;
}

bool ScanAssembler::checkSize(std::int64_t width, std::int64_t lines) {
    if (width <= limits_.maxSide && lines <= limits_.maxSide && width * lines <= limits_.maxPixels)
        return true;
    const std::string size = std::to_string(width) + " x " + std::to_string(lines);
    return fail(tr(language_, "Das Bild des Scanners ist zu groß (", "The scanner's picture is too large (") +
                size + tr(language_, " Pixel).", " pixels)."));
}

bool ScanAssembler::beginFrame(const ScanFrameFormat& format) {
    if (!error_.empty() || complete_ || inFrame_) return false;
    const bool known = format.kind >= 0 && format.kind <= static_cast<int>(ScanFrameKind::Blue);
    if (!known || format.depth != 8 || format.pixelsPerLine <= 0 ||
        format.bytesPerLine < format.pixelsPerLine * channelsOf(format.kind)) {
        return fail(tr(language_, "Der Scanner liefert ein Bildformat, das nicht gelesen werden kann (Tiefe ",
                       "The scanner delivers a picture format that cannot be read (depth ") +
                    std::to_string(format.depth) + ").");
    }
    if (format.lines == 0)
        return fail(tr(language_, "Der Scanner hat kein Bild geliefert.", "The scanner delivered no picture."));
    if (!checkSize(format.pixelsPerLine, format.lines < 0 ? 1 : format.lines)) return false;
    // A padded line is fine, but not one longer than a whole row of the largest picture.
    if (format.bytesPerLine > 3 * limits_.maxSide + 16)
        return fail(tr(language_, "Der Scanner liefert ein Bildformat, das nicht gelesen werden kann (Tiefe ",
                       "The scanner delivers a picture format that cannot be read (depth ") +
                    std::to_string(format.depth) + ").");
    if (framesSeen_ == 0) {
        width_ = format.pixelsPerLine;
        expectedLines_ = format.lines;
        rgb_.clear();
        rows_ = 0;
        if (format.lines > 0 && !growTo(static_cast<std::size_t>(format.lines))) return false;
    } else if (isSinglePass(format.kind) || isSinglePass(format_.kind) || format.pixelsPerLine != width_ ||
               (expectedLines_ > 0 && format.lines != expectedLines_)) {
        // Later frames of a three-pass scan must match the first.
        return fail(tr(language_, "Der Scanner hat das Bild nicht vollständig geliefert.",
                       "The scanner did not deliver the whole picture."));
    }
    format_ = format;
    inFrame_ = true;
    lineInFrame_ = 0;
    partial_.clear();
    ++framesSeen_;
    return true;
}

bool ScanAssembler::growTo(std::size_t rows) {
    if (!checkSize(width_, static_cast<std::int64_t>(rows))) return false;
    rgb_.resize(rows * static_cast<std::size_t>(width_) * 3, 0);
    rows_ = rows;
    return true;
}

bool ScanAssembler::takeLine(const std::uint8_t* line) {
    const bool firstFrame = framesSeen_ == 1;
    if (lineInFrame_ >= rows_) {
        // Only the first frame of a picture of unknown height may grow it.
        if (expectedLines_ > 0 || !firstFrame)
            return fail(tr(language_, "Der Scanner hat mehr Zeilen geliefert als angekündigt.",
                           "The scanner delivered more lines than it announced."));
        if (!growTo(std::max<std::size_t>(rows_ * 2, 64))) return false;
    }
    std::uint8_t* out = rgb_.data() + lineInFrame_ * static_cast<std::size_t>(width_) * 3;
    const auto kind = static_cast<ScanFrameKind>(format_.kind);
    if (kind == ScanFrameKind::Rgb) {
        std::memcpy(out, line, static_cast<std::size_t>(width_) * 3);
    } else if (kind == ScanFrameKind::Gray) {
        for (int x = 0; x < width_; ++x) out[3 * x] = out[3 * x + 1] = out[3 * x + 2] = line[x];
    } else {
        const int channel = format_.kind - static_cast<int>(ScanFrameKind::Red);
        for (int x = 0; x < width_; ++x) out[3 * x + channel] = line[x];
    }
    ++lineInFrame_;
    return true;
}

bool ScanAssembler::add(const std::uint8_t* data, std::size_t size) {
    if (!inFrame_) return false;
    const auto lineBytes = static_cast<std::size_t>(format_.bytesPerLine);
    while (size > 0) {
        if (partial_.empty() && size >= lineBytes) {
            if (!takeLine(data)) return false;
            data += lineBytes;
            size -= lineBytes;
            continue;
        }
        const std::size_t take = std::min(lineBytes - partial_.size(), size);
        partial_.insert(partial_.end(), data, data + take);
        data += take;
        size -= take;
        if (partial_.size() == lineBytes) {
            if (!takeLine(partial_.data())) return false;
            partial_.clear();
        }
    }
    return true;
}

bool ScanAssembler::endFrame() {
    if (!inFrame_) return false;
    inFrame_ = false;
    const bool firstFrame = framesSeen_ == 1;
    if (firstFrame && expectedLines_ < 0 && partial_.empty()) {
        // A scanner that did not know the height has now told it.
        if (lineInFrame_ == 0)
            return fail(tr(language_, "Der Scanner hat kein Bild geliefert.", "The scanner delivered no picture."));
        rows_ = lineInFrame_;
        rgb_.resize(rows_ * static_cast<std::size_t>(width_) * 3);
        rgb_.shrink_to_fit();
        expectedLines_ = static_cast<int>(rows_);
    }
    if (!partial_.empty() || lineInFrame_ != rows_)
        return fail(tr(language_, "Der Scanner hat das Bild nicht vollständig geliefert.",
                       "The scanner did not deliver the whole picture."));
    if (format_.lastFrame || isSinglePass(format_.kind)) complete_ = true;
    return true;
}

int ScanAssembler::percent() const {
    if (complete_) return 100;
    if (expectedLines_ <= 0) return 0;
    return static_cast<int>(lineInFrame_ * 100 / static_cast<std::size_t>(expectedLines_));
}

Picture ScanAssembler::picture() const {
    if (!complete_ || !error_.empty()) return {};
    cDIBSection dib;
    if (!dib.Create(width_, static_cast<int>(rows_))) return {};
    const int height = static_cast<int>(rows_);
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* in = rgb_.data() + static_cast<std::size_t>(y) * width_ * 3;
        std::uint8_t* out = dib.rowBits(height - 1 - y);  // the section is bottom-up
        for (int x = 0; x < width_; ++x) {
            out[3 * x] = in[3 * x + 2];
            out[3 * x + 1] = in[3 * x + 1];
            out[3 * x + 2] = in[3 * x];
        }
    }
    return Picture::fromDib(std::move(dib));
}

}  // namespace brindle::media
