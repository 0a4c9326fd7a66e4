#include "panorama/pano_run_import.h"

#include <filesystem>

#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "image/reduce.h"
#include "image/rounding.h"
#include "panorama/pano_temp.h"

namespace brindle::panorama {
namespace {

bool loadAny(const std::string& path, cDIBSection& dib, std::string& message, Language language) {
    if (LoadJPG(dib, path)) return true;
    const PictureFile file = LoadPictureFile(path, ImageEnv{language, {}, true});
    if (file.picture) return dib.PictureFromHandle(file.picture.Handle());
    message = file.message ? file.message->text : std::string(tr(language, "Das Bild kann nicht gelesen werden: ", "The picture cannot be read: ")) + path;
    return false;
}

}  // namespace

ImportedRow importForRun(const std::vector<std::string>& paths, const std::string& programDirectory,
                         int workHeight, const PanoCallbacks& callbacks, Language language) {
    ImportedRow row;
    std::error_code ec;
    std::filesystem::create_directories(programDirectory + "/PanoTemp", ec);
    int width = 0, height = 0;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        if (callbacks.cancelled && callbacks.cancelled()) return row.cancelled = true, row;
        cDIBSection dib;
        if (!loadAny(paths[i], dib, row.message, language)) return row;
        if (i == 0) {
            width = dib.Width();
            height = dib.Height();
        } else if (dib.Width() != width || dib.Height() != height) {
            row.message = "Brindlesee panorama check that not all images have the same size. Rezise the images or use other images with the same size.";
            return row;
        }
        const int h = std::min(workHeight, height);
        const int w = std::max(1, roundEven(static_cast<double>(width) * h / height));
        cDIBSection reduced;
        if (!smoothResize(dib, reduced, w, h)) return row.message = "out of memory", row;
        const ImageStatus saved = SaveJPG(reduced, panoTempName(programDirectory, paths[i], kReducedPrefix), 95);
        if (!saved) return row.message = saved.message ? saved.message->text : "cannot write", row;
        PanoBild record;
        record.datei = paths[i];
        row.records.push_back(record);
        if (callbacks.progress) callbacks.progress(static_cast<int>(300 * (i + 1) / paths.size()));
    }
    row.ok = true;
    return row;
}

void balanceRecords(std::vector<PanoBild>& records) {
    const int n = static_cast<int>(records.size());
    if (n == 0) return;
    long long total = 0;
    for (const PanoBild& r : records) total += r.yVersatz;
    const int mean = roundEven(static_cast<double>(total) / n);
    for (int i = 0; i < n; ++i) {
        records[i].yMittel = mean;
        records[i].yKorrektur = records[(i + n - 1) % n].yVersatz - mean;
    }
}

}  // namespace brindle::panorama
