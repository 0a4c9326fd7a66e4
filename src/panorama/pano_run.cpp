#include "panorama/pano_run.h"

#include <atomic>
#include <cmath>

#include "album/file_io.h"
#include "image/image_info.h"
#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "image/rounding.h"
#include "panorama/overlap_search.h"
#include "panorama/pano_project.h"
#include "panorama/pair_match.h"
#include "panorama/pano_import.h"
#include "panorama/pano_temp.h"
#include "panorama/refine.h"

namespace brindle::panorama {
namespace {

std::string fileName(const std::string& path) {
    const std::size_t slash = path.find_last_of("/\\");
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

// JPEG first, any other type through the general loader, whose message
// names what is wrong with the file.
bool loadPicture(const std::string& path, cDIBSection& dib, std::string& message, Language language) {
    if (LoadJPG(dib, path)) return true;
    const PictureFile file = LoadPictureFile(path, ImageEnv{language, {}, true});
    if (file.picture && dib.PictureFromHandle(file.picture.Handle())) return true;
    message = file.message ? file.message->text
                           : tr(language, "Das Bild kann nicht geladen werden: ",
                                "The picture cannot be loaded: ") + path;
    return false;
}

std::vector<SeamStep> measuredSteps(const std::vector<PanoBild>& records, double scale) {
    std::vector<SeamStep> steps;
    for (const PanoBild& r : records)
        steps.push_back({roundEven(r.xVersatz * scale), roundEven(r.yVersatz * scale)});
    return steps;
}

PanoLayout toLayout(const std::vector<SeamStep>& steps, bool balanceY) {
    PanoLayout layout;
    long long total = 0;
    for (const SeamStep& s : steps) total += s.y;
    const int mean = balanceY && !steps.empty() ? roundEven(static_cast<double>(total) / static_cast<double>(steps.size())) : 0;
    for (const SeamStep& s : steps) {
        layout.xStep.push_back(s.x);
        layout.yStep.push_back(s.y - mean);
    }
    return layout;
}

// The search works on pictures of `wanted` rows, but never on enlarged
// ones: enlarging adds nothing to find and narrows the +-20 rows it can
// shift in terms of the photo.
int workHeightFor(const std::string& firstPicture, int wanted) {
    CImageInfo info;
    if (info.ReadImageInfo(firstPicture) && info.Height > 0) return std::min(wanted, info.Height);
    return wanted;
}

std::string directoryOf(std::string path) {
    if (!path.empty() && path.back() != '/') path += '/';
    return path;
}

bool stopAsked(const PanoCallbacks& callbacks) { return callbacks.cancelled && callbacks.cancelled(); }

void say(const PanoCallbacks& callbacks, const std::string& text) {
    if (callbacks.status) callbacks.status(text);
}

// The search of each neighbouring pair on the reduced pictures; the match
// goes into the record of the left picture.
PanoRunResult searchPairs(std::vector<PanoBild> records, bool ring, const std::string& programDirectory,
                          const PanoCallbacks& callbacks, Language language) {
    PanoRunResult result;
    const std::size_t n = records.size();
    const std::size_t pairs = ring && n > 1 ? n : n - 1;
    std::atomic<bool> stop{false};
    PairMatchOptions options;
    options.stop = &stop;
    options.status = callbacks.status;
    for (std::size_t i = 0; i < pairs; ++i) {
        if (stopAsked(callbacks)) return result.cancelled = true, result;
        const std::size_t j = (i + 1) % n;
        say(callbacks, tr(language, "Suche Überlappung: ", "Searching the overlap: ") + fileName(records[i].datei) +
                           " - " + fileName(records[j].datei));
        const OverlapResult found = matchPair(programDirectory, records, i, j, options);
        if (!found.found) {
            result.message = tr(language, "Die Überlappung wurde nicht gefunden: ", "No overlap was found: ") + found.problem;
            return result;
        }
        if (callbacks.progress) callbacks.progress(300 + static_cast<int>(400 * (i + 1) / pairs));
    }
    result.ok = true;
    result.records = std::move(records);
    return result;
}

}  // namespace

PanoLayout layoutFromRecords(const std::vector<PanoBild>& records, bool balanceY, double scale) {
    return toLayout(measuredSteps(records, scale), balanceY);
}

ComposeResult composeFromRecords(const std::vector<PanoBild>& records, const PanoRunOptions& options,
                                 const std::string& programDirectory, cDIBSection& out, Language language,
                                 const ComposeTick& tick) {
    out.ClearUp();
    std::vector<cDIBSection> pictures(records.size());
    std::string message;
    for (std::size_t i = 0; i < records.size(); ++i) {
        const std::string reduced = panoTempName(programDirectory, records[i].datei, kReducedPrefix);
        if (!loadPicture(options.fullSize ? records[i].datei : reduced, pictures[i], message, language))
            return {false, false, message};
    }
    std::vector<SeamStep> steps = measuredSteps(records, 1.0);
    if (options.fullSize && !pictures.empty()) {
        cDIBSection first;
        if (!loadPicture(panoTempName(programDirectory, records[0].datei, kReducedPrefix), first, message, language))
            return {false, false, message};
        const double scale = static_cast<double>(pictures[0].Height()) / first.Height();
        steps = measuredSteps(records, scale);
        if (scale > 1.0) {
            const int radius = static_cast<int>(std::ceil(scale)) + 1;
            const std::size_t seams = options.compose.ring360 ? steps.size() : steps.size() - 1;
            for (std::size_t i = 0; i < seams && pictures.size() > 1; ++i)
                steps[i] = refineStep(pictures[i], pictures[(i + 1) % pictures.size()], steps[i], radius);
        }
    }
    return composePanorama(pictures, toLayout(steps, options.compose.balanceY), options.compose, out, language, tick);
}

PanoRunResult constructPanorama(const std::vector<std::string>& paths, const PanoRunOptions& options,
                                const std::string& programDirectory, const PanoCallbacks& callbacks,
                                Language language) {
    PanoRunResult result;
    if (paths.empty()) {
        result.message = tr(language, "Keine Bilder für das Panorama.", "No pictures for the panorama.");
        return result;
    }
    ImportCallbacks importing;
    importing.status = callbacks.status;
    importing.cancelled = callbacks.cancelled;
    importing.progress = [&](int permille) {
        if (callbacks.progress) callbacks.progress(permille * 3 / 10);
    };
    ImportResult row = importPictures(paths, workHeightFor(paths[0], options.workHeight), directoryOf(programDirectory),
                                      ImageEnv{language, {}, true}, importing);
    if (!row.ok) {
        result.cancelled = row.cancelled;
        result.message = row.message;
        return result;
    }
    result = searchPairs(std::move(row.records), options.compose.ring360, programDirectory, callbacks, language);
    if (!result.ok) return result;
    balanceYOffsets(result.records);
    const IoResult written = writePanoProject(programDirectory, result.records);
    if (!written.ok) {
        result.ok = false;
        result.message = tr(language, "Die Projektdatei kann nicht geschrieben werden: ",
                            "The project file cannot be written: ") + written.error;
        return result;
    }
    say(callbacks, tr(language, "Zeichne Panorama", "Drawing the panorama"));
    const ComposeResult composed = composeFromRecords(
        result.records, options, programDirectory, result.picture, language, [&](int done, int total) {
            if (callbacks.progress) callbacks.progress(700 + 300 * done / total);
            return !stopAsked(callbacks);
        });
    result.ok = composed.ok;
    result.cancelled = composed.cancelled;
    result.message = composed.message;
    if (result.ok) say(callbacks, "Fertig");
    return result;
}

ImageStatus savePanorama(const cDIBSection& picture, const std::string& path, int quality, Language language) {
    return SaveJPG(picture, path, quality, ImageEnv{language, {}, true});
}

PanoRunResult makePanorama(const std::vector<std::string>& paths, const std::string& output,
                           const PanoRunOptions& options, const std::string& programDirectory,
                           const PanoCallbacks& callbacks, Language language) {
    PanoRunResult result = constructPanorama(paths, options, programDirectory, callbacks, language);
    if (!result.ok) return result;
    say(callbacks, tr(language, "Speichern: ", "Saving: ") + output);
    const ImageStatus saved = savePanorama(result.picture, output, options.quality, language);
    if (!saved) {
        result.ok = false;
        result.message = saved.message ? saved.message->text
                                       : tr(language, "Das Panorama kann nicht gespeichert werden: ",
                                            "The panorama cannot be saved: ") + output;
    }
    return result;
}

}  // namespace brindle::panorama
