#include "studio/red_eye.h"

#include <algorithm>

#include "image/file_stamp.h"
#include "image/picture_io.h"

namespace brindle::studio {
namespace {

int bufferRow(const cDIBSection& dib, int y) { return dib.Height() - 1 - y; }

bool inside(const cDIBSection& dib, int x, int y) {
    return x >= 0 && y >= 0 && x < dib.Width() && y < dib.Height();
}

// Halves round up: the pixels are never negative.
int halfOf(int sum) { return (sum + 1) / 2; }
int thirdOf(int sum) { return (sum + 1) / 3; }

// One step of the ring walk: the direction turns after L steps of a side;
// leaving the last side, one diagonal step leads to the next, wider ring.
struct Spiral {
    int dx = 1;
    int dy = -1;
    int side = 0;   // L
    int grow = 1;   // s
    int count = 0;  // c

    void turn() {
        if (count == side) {
            if (dx == 1 && dy == -1) {
                dx = -1, dy = 0, side += grow, grow = 2, count = -1;
            } else if (dx == -1 && dy == 0) {
                dx = 0, dy = 1, count = -1;
            } else if (dx == 0 && dy == 1) {
                dx = 1, dy = 0, count = -1;
            } else if (dx == 1 && dy == 0) {
                dx = 0, dy = -1, count = -1;
            } else {
                dx = 1, dy = -1, count = side - 1;
            }
        }
        ++count;
    }
};

}  // namespace

double sensitivityDivisor(int sensitivity) { return (sensitivity - 9) / 20.0 + 1.0; }

bool isEyeRed(const Rgb& c, int sensitivity) {
    return (c.g + c.b) / sensitivityDivisor(sensitivity) < c.r && c.r > c.b && c.r > c.g;
}

Rgb correctEyeRed(const Rgb& c, int sensitivity) {
    if (!isEyeRed(c, sensitivity)) return c;
    return {halfOf(c.g + c.b), c.g, c.b};
}

Rgb selectionColour(const Rgb& c, const SelectionThresholds& t) {
    if (!(c.r > t.red && c.g < t.other && c.b < t.other)) return c;
    const int mean = t.grey ? thirdOf(c.r + c.g + c.b) : halfOf(c.g + c.b);
    const int v = std::clamp(mean + t.bright, 0, 255);
    return {v, v, v};
}

Rgb pixelAt(const cDIBSection& dib, int x, int y) {
    const std::uint8_t* p = dib.rowBits(bufferRow(dib, y)) + x * 3;
    return {p[2], p[1], p[0]};
}

void setPixel(cDIBSection& dib, int x, int y, const Rgb& c) {
    std::uint8_t* p = dib.rowBits(bufferRow(dib, y)) + x * 3;
    p[0] = static_cast<std::uint8_t>(c.b);
    p[1] = static_cast<std::uint8_t>(c.g);
    p[2] = static_cast<std::uint8_t>(c.r);
}

SpiralResult spiralSearch(cDIBSection& dib, int x, int y, int sensitivity, int searchWidth,
                          const std::function<void(int, int)>& visit) {
    SpiralResult result;
    long long budget = static_cast<long long>(std::max(searchWidth, 0)) * 10;
    // A corrected pixel is never red again, so red pixels can be met at most
    // once each; the bound only guards that reasoning.
    const long long maxSteps = static_cast<long long>(dib.Width()) * dib.Height() + budget;
    Spiral walk;
    for (long long step = 0; budget > 0 && step < maxSteps; ++step) {
        if (visit) visit(x, y);
        ++result.visited;
        bool red = false;
        if (inside(dib, x, y)) {
            const Rgb c = pixelAt(dib, x, y);
            red = isEyeRed(c, sensitivity);
            if (red) {
                setPixel(dib, x, y, correctEyeRed(c, sensitivity));
                ++result.corrected;
            }
        }
        if (!red) --budget;
        x += walk.dx;
        y += walk.dy;
        walk.turn();
    }
    return result;
}

long long RedEyeRemoval(cDIBSection& dib, int left, int top, int right, int bottom,
                        const SelectionThresholds& thresholds,
                        const std::function<bool(int, int)>& rowDone) {
    left = std::max(left, 0);
    top = std::max(top, 0);
    right = std::min(right, dib.Width());
    bottom = std::min(bottom, dib.Height());
    long long changed = 0;
    if (dib.empty() || left >= right || top >= bottom) return 0;
    const int rows = bottom - top;
    for (int y = top; y < bottom; ++y) {
        for (int x = left; x < right; ++x) {
            const Rgb c = pixelAt(dib, x, y);
            const Rgb n = selectionColour(c, thresholds);
            if (n == c) continue;
            setPixel(dib, x, y, n);
            ++changed;
        }
        if (rowDone && !rowDone(y - top + 1, rows)) break;
    }
    return changed;
}

void RedEyeSession::reset(cDIBSection picture) {
    original_ = std::move(picture);
    picture_ = original_;
    slots_[0] = slots_[1] = Click{};
    nextSlot_ = 0;
    modified_ = false;
    fileIsOriginal_ = true;
}

void RedEyeSession::setSensitivity(int t) {
    sensitivity_ = std::clamp(t, kSensitivityMin, kSensitivityMax);
    rerun();
}

void RedEyeSession::setSearchWidth(int w) {
    searchWidth_ = std::clamp(w, kSearchWidthMin, kSearchWidthMax);
    rerun();
}

SpiralResult RedEyeSession::click(int x, int y) {
    if (!inside(picture_, x, y)) return {};
    slots_[nextSlot_] = Click{x, y};
    nextSlot_ = (nextSlot_ + 1) % 2;
    modified_ = true;
    return spiralSearch(picture_, x, y, sensitivity_, searchWidth_);
}

void RedEyeSession::rerun() {
    if (empty()) return;
    picture_ = original_;
    modified_ = !fileIsOriginal_;
    searchSlots();
}

void RedEyeSession::searchSlots() {
    for (const Click& c : slots_) {
        if (!c.used()) continue;
        spiralSearch(picture_, c.x, c.y, sensitivity_, searchWidth_);
        modified_ = true;
    }
}

long long RedEyeSession::removeInRectangle(int left, int top, int right, int bottom,
                                           const std::function<bool(int, int)>& rowDone) {
    const long long changed = RedEyeRemoval(picture_, left, top, right, bottom, thresholds, rowDone);
    if (changed > 0) modified_ = true;
    return changed;
}

void RedEyeSession::restoreOriginal() {
    picture_ = original_;
    slots_[0] = slots_[1] = Click{};
    nextSlot_ = 0;
    modified_ = !fileIsOriginal_;
}

void RedEyeSession::markSaved() {
    modified_ = false;
    fileIsOriginal_ = false;
}

void RedEyeSession::adoptPicture(cDIBSection picture) {
    picture_ = std::move(picture);
    modified_ = true;
}

ImageStatus saveRedEyePicture(const cDIBSection& picture, const std::string& path,
                              Language language) {
    const auto failed = [&](const char* german, const char* english) {
        return ImageStatus::failure(
            ImageMessage{"Brindlesee", std::string(tr(language, german, english)) + kLineEnd + path, 0});
    };
    if (picture.empty()) return ImageStatus::failure();
    if (writerFor(path, false) == PictureWriter::None)
        return failed("Dieser Bildtyp kann nicht geschrieben werden:",
                      "This picture type cannot be written:");
    const FileStamp stamp = readFileStamp(path);
    const ImageStatus saved =
        SavePictureFile(Picture::fromDib(picture), path, 90, ImageEnv{language, {}, true});
    if (!saved) {
        if (saved.message) return saved;
        return failed("Das Bild konnte nicht gespeichert werden:", "The picture could not be saved:");
    }
    applyFileStamp(path, stamp);
    return saved;
}

}  // namespace brindle::studio
