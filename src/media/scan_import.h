// Scanner import through SANE: list the sources, acquire one picture and
// save it. Every call starts and ends its own SANE session, so nothing
// stays open between two scans.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "album/language.h"
#include "image/picture.h"
#include "media/scan_frames.h"

namespace brindle::media {

// The JPEG quality a scan is saved with.
inline constexpr int kScanQuality = 90;

struct ScanSource {
    std::string name;  // what sane_open takes, e.g. "test:0"
    std::string vendor;
    std::string model;
    std::string type;
};

struct ScanSourceList {
    std::vector<ScanSource> sources;
    std::string error;  // set when SANE itself could not be started
};

ScanSourceList listScanSources(Language language);

// What the user is told when no source is found.
std::string noScannerMessage(Language language);

struct ScanRequest {
    std::string device;   // empty: the first source found
    int resolution = 0;   // dots per inch; 0 keeps the source's own setting
    ScanLimits limits;
    // A source that sends nothing for this long is given up (where SANE
    // lets us wait without blocking).
    std::chrono::milliseconds stallTimeout{30'000};
    // Called with the progress (0..100) while waiting and after each block
    // of data; answering false cancels the scan.
    std::function<bool(int percent)> progress;
};

struct ScanResult {
    Picture picture;     // empty on failure or cancel
    std::string error;   // the message for the user; empty on success
    bool cancelled = false;

    explicit operator bool() const { return static_cast<bool>(picture); }
};

ScanResult acquireScan(const ScanRequest& request, Language language);

// Acquires one picture and writes it to `path` through SavePictureFile at
// kScanQuality; the result's picture is what was written.
ScanResult scanToFile(const ScanRequest& request, const std::string& path, Language language);

}  // namespace brindle::media
