// Giving many pictures a new size, through the picture batch: by pixels,
// or by percents of each picture's own width and height.
#pragma once

#include <string>
#include <vector>

#include "studio/batch_run.h"

namespace brindle::studio {

struct ResizeOptions {
    int widthPixels = 800;
    int heightPixels = 600;
    int widthPercent = 50;
    int heightPercent = 50;
    bool byPercent = false;
    bool percentsAlike = true;       // the height percent follows the width percent
    bool overwriteOriginals = false;
    // Where the results go when the originals stay: empty for beside each
    // original (with resizeAppendText in the name), else this folder with
    // the names unchanged.
    std::string targetDirectory;
};

// The percent used for the height: the width's when both are alike.
int heightPercentOf(const ResizeOptions& options);

// The size a picture of width x height gets (never below 1 x 1).
void resizedSize(const ResizeOptions& options, int width, int height, int& newWidth, int& newHeight);

// The text added to a result's name when it stands beside its original:
// "_800x600" by pixels, "_50pct" by a percent, "_50x40pct" by two.
std::string resizeAppendText(const ResizeOptions& options);

// The message for sizes or percents below 1 (empty when all are fine).
std::string resizeOptionsError(const ResizeOptions& options, Language language);

// The batch's settings for these options: type kept, quality 90.
BatchOptions resizeBatchOptions(const std::vector<std::string>& pictures, const ResizeOptions& options);

// Sizes and saves every picture, JPEGs at quality 90, each in its own type;
// a type that cannot be written (GIF, PCX, TGA, ...) gives a PNG. Bad
// options are told through `prompter` and nothing is done.
BatchResult resizePictures(const std::vector<std::string>& pictures, const ResizeOptions& options,
                           Prompter& prompter, Language language, const BatchCallbacks& callbacks = {});

}  // namespace brindle::studio
