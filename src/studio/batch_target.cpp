// Where a batch result goes: directory, name, appended text, extension, and
// a free number when the name is taken.
#include <sys/stat.h>

#include "album/paths.h"
#include "studio/batch_run.h"
#include "studio/batch_save.h"

namespace brindle::studio {
namespace {

// A dangling link counts as taken too: writing through it would land in
// someone else's place.
bool nameTaken(const std::string& path) {
    struct stat st {};
    return ::lstat(path.c_str(), &st) == 0;
}

struct NameParts {
    std::string directory;  // ends in a separator, or empty
    std::string stem;       // the file name before its last "."
    std::string extension;  // from the last ".", or empty
};

NameParts splitName(const std::string& path) {
    NameParts p;
    std::string file;
    teilePfad(path, p.directory, file);
    const auto dot = file.rfind('.');
    p.stem = dot == std::string::npos ? file : file.substr(0, dot);
    p.extension = dot == std::string::npos ? std::string() : file.substr(dot);
    return p;
}

}  // namespace

std::string batchExtension(const std::string& source, const std::string& fileType) {
    const std::string type = asciiLower(fileType);
    if (type == "normal" || type.empty()) return splitName(source).extension;
    std::string ext = type[0] == '*' ? type.substr(1) : type;
    if (ext == ".jpeg") ext = ".jpg";
    return ext;
}

PictureWriter batchWriter(const std::string& source, const std::string& fileType) {
    const std::string ext = batchExtension(source, fileType);
    // The writers are chosen by the key; ".&jpg" is no type a user picks.
    if (ext.empty() || ext.find('&') != std::string::npos) return PictureWriter::None;
    return writerFor("x" + ext, true);
}

// The free-name rule: the name is tried as it is, then with 1, 2, 3, ...
// behind the appended text ("photo_bs.jpg", "photo_bs1.jpg", ...), and the
// first that nothing stands at is taken. Only the original itself is ever
// replaced, and only when the originals are to be overwritten.
std::string batchTargetPath(const std::string& source, const BatchOptions& options) {
    const NameParts parts = splitName(source);
    const bool overwriting = options.saveMode == SaveMode::OverwriteOriginals;
    // Without a target directory the result goes beside its source.
    const std::string directory = overwriting || options.targetDirectory.empty()
                                      ? parts.directory
                                      : withTrailingSeparator(options.targetDirectory);
    const std::string stem = directory + parts.stem + options.appendText;
    const std::string extension = batchExtension(source, options.fileType);
    const std::string target = stem + extension;
    if (overwriting && target == source) return target;
    if (!nameTaken(target)) return target;
    for (unsigned long n = 1;; ++n) {
        const std::string numbered = stem + std::to_string(n) + extension;
        if (!nameTaken(numbered)) return numbered;
    }
}

}  // namespace brindle::studio
