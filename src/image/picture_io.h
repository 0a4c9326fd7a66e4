// The four ways pictures enter and leave the program. A reader or writer is
// chosen by the last four characters of the path in lower case, the "key";
// readers chain from the preferred one to a fallback.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "image/dib_section.h"
#include "image/image_env.h"
#include "image/picture.h"
#include "image/picture_holder.h"

namespace brindle {

enum class PictureReader {
    None,
    Jpeg,
    MultiPage,
    FreeImageSingle,
    Platform,
    Icon,
    Metafile,
    Tga,
    Pcx
};
enum class PictureWriter { None, Jpeg, Bmp, Png, Tiff };

struct ReaderGroup {
    PictureReader reader;
    std::vector<std::string> keys;
};

// The reader table in the order the keys are tested. Some entries are
// longer than a key can be ("*.pcd", "*.koala"): they never match, so
// those types are not read.
const std::vector<ReaderGroup>& readerTable();

// The last four characters of `path`, lower-cased (fewer when it is shorter).
std::string pictureKey(const std::string& path);
PictureReader readerFor(const std::string& path);
// `dibWriter` selects SaveDIBFile's table, which also takes "&jpg".
PictureWriter writerFor(const std::string& path, bool dibWriter);

// Loads `path` into `holder`. With width and height above 0 the picture is
// scaled to that size (averaged where it is made smaller); otherwise the natural size is used and returned in
// them. `mode` (0..3) sets the holder's flags; every caller passes 0. A
// missing file or an unknown key fails without a message; a file that
// cannot be read (a folder, a FIFO, no permission) or claims too large a
// picture gives the load's message with the cause.
ImageStatus Loadpicture(PictureHolder& holder, const std::string& path, int& width, int& height,
                        int mode = 0, const ImageEnv& env = {});

struct PictureFile {
    brindle::Picture picture;  // empty when nothing was loaded
    std::optional<ImageMessage> message;
    // A one-time hint that goes with the file even when it loads.
    std::optional<ImageMessage> hint;
};

// The one-time hint that goes with an existing file of this type (hint 2
// for metafiles), whether or not it can be read.
std::optional<ImageMessage> pictureHint(const std::string& path);

// Loads `path` at its natural size.
PictureFile LoadPictureFile(const std::string& path, const ImageEnv& env = {});

// `quality` is the JPEG quality (0..100) and used for JPEG only.
ImageStatus SavePictureFile(const Picture& picture, const std::string& path, int quality,
                            const ImageEnv& env = {});
ImageStatus SaveDIBFile(const cDIBSection& dib, const std::string& path, int quality,
                        const ImageEnv& env = {});

}  // namespace brindle
