// A whole panorama run for the command line and the stitcher window:
// import into "PanoTemp", the overlap search of each pair (and of the last
// with the first in a 360 degree row), the records written to the project
// file, the composition and the saved JPEG.
//
// The search works on the reduced pictures; the composition takes the
// source pictures at full size, with each offset carried over by the ratio
// of the heights and polished on the full-size overlap, so the saved
// panorama keeps the resolution of the photos.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "album/language.h"
#include "image/dib_section.h"
#include "image/image_env.h"
#include "panorama/compose.h"
#include "panorama/pano_layout.h"
#include "panorama/pano_record.h"

namespace brindle::panorama {

struct PanoRunOptions {
    ComposeOptions compose;
    bool fullSize = true;     // false: compose the reduced pictures themselves
    int workHeight = 600;     // height of the reduced pictures (never above the photos')
    int quality = 95;         // of the saved JPEG
};

struct PanoCallbacks {
    std::function<void(const std::string&)> status;  // one line of what is being done
    std::function<void(int)> progress;               // 0 .. 1000
    std::function<bool()> cancelled;                 // true stops the run between steps
};

struct PanoRunResult {
    bool ok = false;
    bool cancelled = false;
    std::string message;  // what went wrong, in the language asked for
    std::vector<PanoBild> records;
    cDIBSection picture;  // the composed panorama
};

// The steps between neighbours in the pictures the composition takes,
// from the records' xVersatz and yVersatz times `scale`. With balancing,
// the rounded mean of all yVersatz values is taken out of each step.
PanoLayout layoutFromRecords(const std::vector<PanoBild>& records, bool balanceY, double scale = 1.0);

// Builds the panorama from records whose pictures were imported before
// (the reduced copies stand in "PanoTemp"): run again after a seam was
// corrected by hand.
ComposeResult composeFromRecords(const std::vector<PanoBild>& records, const PanoRunOptions& options,
                                 const std::string& programDirectory, cDIBSection& out,
                                 Language language = Language::English, const ComposeTick& tick = {});

// Import, search, balancing, project file and composition.
PanoRunResult constructPanorama(const std::vector<std::string>& paths, const PanoRunOptions& options,
                                const std::string& programDirectory, const PanoCallbacks& callbacks,
                                Language language = Language::English);

// Writes the panorama as JPEG.
ImageStatus savePanorama(const cDIBSection& picture, const std::string& path, int quality = 95,
                         Language language = Language::English);

// constructPanorama, then savePanorama to `output`.
PanoRunResult makePanorama(const std::vector<std::string>& paths, const std::string& output,
                           const PanoRunOptions& options, const std::string& programDirectory,
                           const PanoCallbacks& callbacks, Language language = Language::English);

}  // namespace brindle::panorama
