// Running work over many picture files and saving the results: the photo
// design's batch and the resize batch. Pictures are worked on both cores;
// messages, names and results come in the order of a one-core run.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "album/language.h"
#include "album/prompter.h"
#include "image/dib_section.h"

namespace brindle::studio {

enum class SaveMode { OverwriteOriginals, OtherDirectory };

struct BatchOptions {
    std::vector<std::string> pictures;  // full paths, in order
    // Only pictures larger than this are treated (0 x 0: all).
    int minWidth = 0;
    int minHeight = 0;
    SaveMode saveMode = SaveMode::OtherDirectory;
    std::string targetDirectory;  // for OtherDirectory
    std::string appendText;       // added to the name before the extension
    // "normal" keeps the source's type; else "*.bmp", "*.jpg", "*.png", "*.tif", "*.tiff".
    std::string fileType = "normal";
    int jpegQuality = 90;
    int threads = 0;  // 0: one per core
};

struct BatchCallbacks {
    std::function<void(const std::string& status)> status;  // path, or path + ": " + step
    std::function<void(int done, int total)> progress;
    std::function<bool()> cancelled;                     // read between pictures
    std::function<void(const cDIBSection&)> finished;   // each finished picture, for a preview
};

struct BatchResult {
    int treated = 0;   // pictures written
    int skipped = 0;   // below the size filter or unreadable
    int failed = 0;    // write failures (a message was shown)
    bool cancelled = false;
    std::vector<std::string> written;  // target paths in order
    std::vector<std::string> unreadable;  // sources that could not be read, in order
};

// The work on one picture: changes `dib` in place; `step` reports each
// step's name for the status line.
using PictureWork = std::function<void(cDIBSection& dib, const std::function<void(const std::string& step)>& step)>;

BatchResult runPictureBatch(const BatchOptions& options, const PictureWork& work, Prompter& prompter,
                            Language language, const BatchCallbacks& callbacks = {});

// The design batch: the step lines in batch mode over every picture.
BatchResult runDesignBatch(const std::vector<std::string>& steps, const BatchOptions& options,
                           Prompter& prompter, Language language, const BatchCallbacks& callbacks = {});

// Where a picture's result is saved (directory, name + appended text, the
// type's extension; a free number added when the name is taken and the
// original is not to be overwritten).
std::string batchTargetPath(const std::string& source, const BatchOptions& options);

}  // namespace brindle::studio
