#include "studio/batch_save.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "image/file_stamp.h"
#include "image/freeimage_io.h"
#include "image/jpeg_io.h"
#include "image/packed_dib.h"

namespace brindle::studio {
namespace {

void showError(Prompter& prompter, Language language, const std::string& text) {
    prompter.message(text, kButtonsOk | kIconCritical, tr(language, "Fehler", "Error"));
}

void showWriteError(Prompter& prompter, Language language, PictureWriter writer,
                    const std::string& path) {
    if (writer == PictureWriter::Bmp)
        showError(prompter, language,
                  tr(language, "Speichern des Bildes:", "Saving the Picture:") + path +
                      tr(language, " Gescheitert", " fault"));
    else
        showError(prompter, language,
                  tr(language, "Fehler beim Schreiben der Datei: ",
                     "Error while writing the file: ") +
                      path);
}

// Renames without ever replacing what stands at `to`: a copy left there by
// an earlier run that broke off may be the only one of someone's picture.
bool renameKeepingTarget(const std::string& from, const std::string& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS) return false;
    // File systems without the flag: look first.
    struct stat st {};
    if (::lstat(to.c_str(), &st) == 0) return false;
    return ::rename(from.c_str(), to.c_str()) == 0;
}

bool writeFile(const EncodedPicture& file, const std::string& path) {
    return file.ok && writeBytesAtomic(path, file.bytes.data(), file.bytes.size());
}

bool overwriteThroughCopy(const EncodedPicture& file, const std::string& path, Prompter& prompter,
                          Language language) {
    const std::string copy = path + "Brind.Bak";
    if (!file.ok) {  // nothing to write: the original is not moved at all
        showWriteError(prompter, language, file.writer, path);
        return false;
    }
    if (!renameKeepingTarget(path, copy)) {
        showError(prompter, language,
                  tr(language, "Fehler beim überschreiben der Datei: ",
                     "Error while overwriting the File: ") +
                      path + " in " + copy);
        return false;
    }
    if (!writeFile(file, path)) {
        // The original goes back under its name; should even that fail,
        // the copy stays where it is.
        ::rename(copy.c_str(), path.c_str());
        showWriteError(prompter, language, file.writer, path);
        return false;
    }
    // An edited photo still sorts by the day it was taken.
    applyFileStamp(path, readFileStamp(copy));
    ::unlink(copy.c_str());
    return true;
}

}  // namespace

EncodedPicture encodeForWriter(const cDIBSection& dib, PictureWriter writer, int jpegQuality) {
    EncodedPicture out;
    out.writer = writer;
    switch (writer) {
        case PictureWriter::Jpeg:
            out.ok = encodeJpeg(dib, jpegQuality, out.bytes);
            break;
        case PictureWriter::Bmp: {
            cDib file;
            out.ok = file.CreateFromDIBSection(dib);
            if (out.ok) out.bytes.assign(file.bytes().begin(), file.bytes().end());
            break;
        }
        case PictureWriter::Png:
            out.ok = freeImageEncode(dib, kFreeImagePng, out.bytes);
            break;
        case PictureWriter::Tiff:
            out.ok = freeImageEncode(dib, kFreeImageTiff, out.bytes);
            break;
        case PictureWriter::None:
            break;
    }
    if (!out.ok) out.bytes.clear();
    return out;
}

bool saveBatchFile(const EncodedPicture& file, const std::string& target, bool overwrite,
                   Prompter& prompter, Language language) {
    if (overwrite) return overwriteThroughCopy(file, target, prompter, language);
    if (writeFile(file, target)) return true;
    showWriteError(prompter, language, file.writer, target);
    return false;
}

}  // namespace brindle::studio
