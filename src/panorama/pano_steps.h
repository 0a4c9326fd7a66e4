// The stitcher's steps as the panorama window runs them, one call each:
// construct (import and search every pair), compose, save. Every step runs
// on a worker thread; it reports through the callbacks and returns its
// failure as a message instead of asking anybody.
#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <vector>

#include "album/language.h"
#include "image/dib_section.h"
#include "panorama/pano_record.h"

namespace brindle::panorama {

struct PanoSettings {
    int testLines = 40;      // txtTestzeilen
    int smooth = 20;         // txtSmoth: blend band in pixels
    bool balanceY = true;    // chkYversatzNivelieren
    bool ring360 = false;    // Opt360 (else optPanoNormal)
    bool padding = true;     // chkAuffüllen
    bool crop = false;       // chkZuschneiden
    bool matchGain = true;   // exposure matched before blending
    int targetHeight = 400;  // height of the reduced pictures
    Language language = Language::German;
};

struct PanoStepCallbacks {
    std::function<void(const std::string&)> status;
    std::function<void(int)> progress;  // 0 .. 1000
    const std::atomic<bool>* stop = nullptr;
};

// Imports `pictures` into "PanoTemp" and searches each neighbouring pair
// (and the closing pair in a ring). False with `message` set when the run
// cannot go on; false with an empty message when it was stopped.
bool constructPanorama(const std::vector<std::string>& pictures, const PanoSettings& settings,
                       const std::string& programDirectory, const PanoStepCallbacks& callbacks,
                       std::vector<PanoBild>& records, std::string& message);

// Builds the picture from the reduced copies and the records (balancing
// the y offsets first when asked to).
bool composePanorama(std::vector<PanoBild>& records, const PanoSettings& settings,
                     const std::string& programDirectory, const PanoStepCallbacks& callbacks,
                     cDIBSection& result, std::string& message);

// Crops when asked to and writes `path`: a ".bmp" name as a bitmap, any
// other as JPEG of quality 95.
bool savePanorama(const cDIBSection& result, const std::vector<PanoBild>& records, const PanoSettings& settings,
                  const std::string& path, std::string& message);

// The reduced copy of a record's picture in "PanoTemp".
std::string reducedPicture(const std::string& programDirectory, const PanoBild& record);

// Seams of a row of `count` pictures: one fewer than pictures, as many in a ring.
inline int seamCount(int count, bool ring360) { return count < 2 ? 0 : (ring360 ? count : count - 1); }

}  // namespace brindle::panorama
