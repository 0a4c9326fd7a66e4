#include "studio/resize_pictures.h"

#include <algorithm>

#include "image/picture_limits.h"
#include "studio/batch_save.h"
#include "studio/tool_io.h"

namespace brindle::studio {
namespace {

// Enlarging beyond ten times is no use for photos and would only take memory.
constexpr int kMaxPercent = 1000;

int percentOf(int side, int percent) {
    const long long sized = static_cast<long long>(side) * percent / 100;
    return static_cast<int>(std::clamp<long long>(sized, 1, 1LL << 30));
}

// Pictures whose own type cannot be written (GIF, PCX, TGA, ...) are
// saved as PNG; runs of either kind keep the pictures' order.
struct PictureRun {
    std::vector<std::string> pictures;
    bool asPng = false;
};

std::vector<PictureRun> runsByType(const std::vector<std::string>& pictures) {
    std::vector<PictureRun> runs;
    for (const std::string& p : pictures) {
        const bool asPng = batchWriter(p, "normal") == PictureWriter::None;
        if (runs.empty() || runs.back().asPng != asPng) runs.push_back({{}, asPng});
        runs.back().pictures.push_back(p);
    }
    return runs;
}

void addResult(BatchResult& total, const BatchResult& part) {
    total.treated += part.treated;
    total.skipped += part.skipped;
    total.failed += part.failed;
    total.cancelled = total.cancelled || part.cancelled;
    total.written.insert(total.written.end(), part.written.begin(), part.written.end());
}

}  // namespace

int heightPercentOf(const ResizeOptions& o) { return o.percentsAlike ? o.widthPercent : o.heightPercent; }

void resizedSize(const ResizeOptions& o, int width, int height, int& newWidth, int& newHeight) {
    if (o.byPercent) {
        newWidth = percentOf(width, o.widthPercent);
        newHeight = percentOf(height, heightPercentOf(o));
    } else {
        newWidth = std::max(1, o.widthPixels);
        newHeight = std::max(1, o.heightPixels);
    }
}

std::string resizeAppendText(const ResizeOptions& o) {
    if (!o.byPercent) return "_" + std::to_string(o.widthPixels) + "x" + std::to_string(o.heightPixels);
    const int h = heightPercentOf(o);
    if (h == o.widthPercent) return "_" + std::to_string(o.widthPercent) + "pct";
    return "_" + std::to_string(o.widthPercent) + "x" + std::to_string(h) + "pct";
}

std::string resizeOptionsError(const ResizeOptions& o, Language lang) {
    if (o.byPercent) {
        const int h = heightPercentOf(o);
        if (o.widthPercent < 1 || h < 1 || o.widthPercent > kMaxPercent || h > kMaxPercent)
            return tr(lang, "Die Prozentwerte müssen zwischen 1 und 1000 liegen.",
                      "The percentages must lie between 1 and 1000.");
        return {};
    }
    if (o.widthPixels < 1 || o.heightPixels < 1)
        return tr(lang, "Breite und Höhe müssen mindestens 1 Pixel sein.",
                  "Width and height must be at least 1 pixel.");
    if (static_cast<long long>(o.widthPixels) * o.heightPixels > kMaxPicturePixels)
        return tr(lang, "Das Bild würde zu groß.", "The picture would be too large.");
    return {};
}

BatchOptions resizeBatchOptions(const std::vector<std::string>& pictures, const ResizeOptions& o) {
    BatchOptions b;
    b.pictures = pictures;
    b.fileType = "normal";
    b.jpegQuality = 90;
    if (o.overwriteOriginals) {
        b.saveMode = SaveMode::OverwriteOriginals;
        return b;
    }
    b.saveMode = SaveMode::OtherDirectory;
    if (!o.targetDirectory.empty()) {
        b.targetDirectory = o.targetDirectory;
        if (b.targetDirectory.back() != '/') b.targetDirectory += '/';
    } else {
        // No folder: each result goes beside its original.
        b.appendText = resizeAppendText(o);
    }
    return b;
}

BatchResult resizePictures(const std::vector<std::string>& pictures, const ResizeOptions& o, Prompter& prompter,
                           Language lang, const BatchCallbacks& callbacks) {
    if (const std::string error = resizeOptionsError(o, lang); !error.empty()) {
        tellToolError(prompter, lang, error);
        return {};
    }
    const PictureWork work = [o](cDIBSection& dib, const std::function<void(const std::string&)>&) {
        int w = 0, h = 0;
        resizedSize(o, dib.Width(), dib.Height(), w, h);
        dib.effectGröße(w, h);
    };
    const std::vector<PictureRun> runs = runsByType(pictures);
    if (runs.size() == 1 && !runs.front().asPng)
        return runPictureBatch(resizeBatchOptions(pictures, o), work, prompter, lang, callbacks);
    BatchResult result;
    const int total = static_cast<int>(pictures.size());
    int before = 0;
    for (const PictureRun& run : runs) {
        BatchOptions batch = resizeBatchOptions(run.pictures, o);
        if (run.asPng) batch.fileType = "*.png";
        BatchCallbacks part = callbacks;
        if (callbacks.progress)
            part.progress = [&callbacks, before, total](int done, int) { callbacks.progress(before + done, total); };
        addResult(result, runPictureBatch(batch, work, prompter, lang, part));
        before += static_cast<int>(run.pictures.size());
        if (result.cancelled) break;
    }
    return result;
}

}  // namespace brindle::studio
