#include "studio/resize_pictures.h"

#include <algorithm>

#include "image/picture_limits.h"
#include "studio/tool_io.h"

namespace brindle::studio {
namespace {

// Enlarging beyond ten times is no use for photos and would only take memory.
constexpr int kMaxPercent = 1000;

int percentOf(int side, int percent) {
    const long long sized = static_cast<long long>(side) * percent / 100;
    return static_cast<int>(std::clamp<long long>(sized, 1, 1LL << 30));
}

// The folder of `path` with its "/" ("./" for a bare name).
std::string folderOf(const std::string& path) {
    const std::size_t slash = path.find_last_of("/\\");
    return slash == std::string::npos ? std::string("./") : path.substr(0, slash) + "/";
}

// The pictures in runs of one folder each, folders in the order they first come.
std::vector<std::vector<std::string>> byFolder(const std::vector<std::string>& pictures) {
    std::vector<std::string> folders;
    std::vector<std::vector<std::string>> groups;
    for (const std::string& p : pictures) {
        const auto it = std::find(folders.begin(), folders.end(), folderOf(p));
        if (it == folders.end()) {
            folders.push_back(folderOf(p));
            groups.push_back({p});
        } else {
            groups[static_cast<std::size_t>(it - folders.begin())].push_back(p);
        }
    }
    return groups;
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
        // Beside the originals: the folder of the first picture (the run
        // is made per folder).
        b.appendText = resizeAppendText(o);
        if (!pictures.empty()) b.targetDirectory = folderOf(pictures.front());
    }
    return b;
}

BatchResult resizePictures(const std::vector<std::string>& pictures, const ResizeOptions& o, Prompter& prompter,
                           Language lang, const BatchCallbacks& callbacks) {
    if (const std::string error = resizeOptionsError(o, lang); !error.empty()) {
        tellToolError(prompter, lang, error);
        return {};
    }
    const PictureWork work = [o, lang](cDIBSection& dib, const std::function<void(const std::string&)>& step) {
        int w = 0, h = 0;
        resizedSize(o, dib.Width(), dib.Height(), w, h);
        if (step) step(tr(lang, "Größe", "Size"));
        dib.effectGröße(w, h);
    };
    if (o.overwriteOriginals || !o.targetDirectory.empty())
        return runPictureBatch(resizeBatchOptions(pictures, o), work, prompter, lang, callbacks);
    // Results beside their originals: one run per folder, progress counted over all.
    BatchResult result;
    const int total = static_cast<int>(pictures.size());
    int before = 0;
    for (const std::vector<std::string>& group : byFolder(pictures)) {
        BatchCallbacks part = callbacks;
        if (callbacks.progress)
            part.progress = [&callbacks, before, total](int done, int) { callbacks.progress(before + done, total); };
        addResult(result, runPictureBatch(resizeBatchOptions(group, o), work, prompter, lang, part));
        before += static_cast<int>(group.size());
        if (result.cancelled) break;
    }
    return result;
}

}  // namespace brindle::studio
