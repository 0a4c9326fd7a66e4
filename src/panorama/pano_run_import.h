// The import step of a run: the pictures read, checked for one size and
// written reduced as "BSPano" copies into "PanoTemp".
#pragma once

#include <string>
#include <vector>

#include "album/language.h"
#include "panorama/pano_record.h"
#include "panorama/pano_run.h"

namespace brindle::panorama {

struct ImportedRow {
    bool ok = false;
    bool cancelled = false;
    std::string message;
    std::vector<PanoBild> records;  // datei set, one per imported picture
};

ImportedRow importForRun(const std::vector<std::string>& paths, const std::string& programDirectory,
                         int workHeight, const PanoCallbacks& callbacks, Language language);

// The rounded mean of all yVersatz values taken out of each step, as
// yMittel and yKorrektur of the records.
void balanceRecords(std::vector<PanoBild>& records);

}  // namespace brindle::panorama
