// The saving end of the batch: a result encoded for its target type (on a
// worker thread), then written in list order, through a safe copy when an
// original is replaced.
#pragma once

#include <string>

#include "album/language.h"
#include "album/prompter.h"
#include "image/dib_section.h"
#include "image/picture_io.h"

namespace brindle::studio {

// The extension a result gets, with its dot: the type's own in lower case
// ("*.jpg" and "*.jpeg" give ".jpg"), or for "normal" the source's as it is
// written (empty when the source's name has no dot).
std::string batchExtension(const std::string& source, const std::string& fileType);

// The writer the result of `source` is encoded with; None when its type
// cannot be written.
PictureWriter batchWriter(const std::string& source, const std::string& fileType);

struct EncodedPicture {
    bool ok = false;
    PictureWriter writer = PictureWriter::None;
    std::string bytes;  // the whole file
};

// The same bytes SaveJPG (with `jpegQuality`) and SaveDIBFile write.
EncodedPicture encodeForWriter(const cDIBSection& dib, PictureWriter writer, int jpegQuality);

// Writes `file` to `target`. With `overwrite` the file at `target` is first
// renamed to target + "Brind.Bak", and that copy is removed once the new
// file stands, or put back when the write failed; the new file keeps the
// original's times and permissions. A failure is told through `prompter`
// and gives false.
bool saveBatchFile(const EncodedPicture& file, const std::string& target, bool overwrite,
                   Prompter& prompter, Language language);

}  // namespace brindle::studio
