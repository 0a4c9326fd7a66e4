// Import of the pictures of a panorama into "PanoTemp": each picture is
// read (a non-JPEG source is first kept as a "BScopy" JPEG), checked to be
// the size of the first, made the target height and saved as the "BSPano"
// JPEG that the overlap search and the composition read.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "image/image_env.h"
#include "panorama/pano_record.h"

namespace brindle::panorama {

inline constexpr int kPanoJpegQuality = 95;

struct ImportCallbacks {
    std::function<void(const std::string&)> status;  // "Lade:" + name and so on
    std::function<void(int)> progress;               // 0 .. 1000
    std::function<bool()> cancelled;                 // asked between steps
};

struct ImportResult {
    bool ok = false;
    bool cancelled = false;
    // Why the run stopped (the same-size message, a folder or file that
    // could not be written); empty when it was cancelled.
    std::string message;
    // One record per picture that could be read, in list order, `datei`
    // the source path; the reduced pictures are panoTempName(.., "BSPano").
    std::vector<PanoBild> records;
    std::vector<std::string> reduced;
    int width = 0;  // size of the source pictures
    int height = 0;
};

// The pictures are made 1.2 times the height of the view that shows the
// panorama.
int importTargetHeight(int viewHeight);

// The message when a picture is not the size of the first. There is only
// an English text; both languages show it.
std::string sameSizeMessage(Language language);

// `programDirectory` ends in '/'. Status texts: "Starte Import:", "Import
// Bilder", per picture "Lade:", "Skalieren:", "Speichern:" + the file name,
// at the end "Fertig". A picture that no reader takes is left out with a
// line in the log of `env`.
ImportResult importPictures(const std::vector<std::string>& paths, int targetHeight,
                            const std::string& programDirectory, const ImageEnv& env,
                            const ImportCallbacks& callbacks = {});

// Takes the slope of the whole row out of each seam: yMittel is the
// rounded mean of all yVersatz, and yKorrektur(i) = yVersatz(i - 1) -
// yMittel, the predecessor of the first picture being the last.
void balanceYOffsets(std::vector<PanoBild>& records);

}  // namespace brindle::panorama
