// Paste and delete; the renaming, turning and new-folder commands are in
// file_renaming.cpp.
#include "explorer/file_operations.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QString>
#include <cerrno>
#include <cstring>

#include "album/paths.h"
#include "image/file_stamp.h"

namespace brindle::explorer {

namespace {

std::string fileNameOf(const std::string& path) {
    std::string dir, name;
    teilePfad(path, dir, name);
    return name;
}

bool sameFile(const std::string& a, const std::string& b) {
    struct stat sa {}, sb {};
    if (stat(a.c_str(), &sa) != 0 || stat(b.c_str(), &sb) != 0) return false;
    return sa.st_dev == sb.st_dev && sa.st_ino == sb.st_ino;
}

bool pathTaken(const std::string& path) {
    struct stat st {};
    return lstat(path.c_str(), &st) == 0;
}

// The size of a regular file; -1 when it is none.
long long regularFileSize(const std::string& path) {
    struct stat st {};
    if (stat(path.c_str(), &st) != 0 || !S_ISREG(st.st_mode)) return -1;
    return static_cast<long long>(st.st_size);
}

bool writeAll(int fd, const char* data, std::size_t size) {
    while (size > 0) {
        const ssize_t n = ::write(fd, data, size);
        if (n < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        data += n;
        size -= static_cast<std::size_t>(n);
    }
    return true;
}

// Copies the bytes of the open `in` to the open `out`.
bool copyBytes(int in, int out, std::string& error) {
    char buffer[1 << 16];
    for (;;) {
        const ssize_t n = ::read(in, buffer, sizeof buffer);
        if (n == 0) return true;
        if (n < 0) {
            if (errno == EINTR) continue;
            error = std::strerror(errno);
            return false;
        }
        if (!writeAll(out, buffer, static_cast<std::size_t>(n))) {
            error = std::strerror(errno);
            return false;
        }
    }
}

}  // namespace

std::string copyName(const std::string& name, Language language,
                     const std::function<bool(const std::string&)>& exists) {
    const bool de = language == Language::German;
    std::string candidate = (de ? "Kopie von " : "Copy of ") + name;
    for (int n = 1; exists(candidate); ++n)
        candidate = (de ? "Kopie" : "Copy") + std::to_string(n) + (de ? " von " : " of ") + name;
    return candidate;
}

bool isTemplateFolder(const std::string& programDirectory, const std::string& folder) {
    const std::string templates = withTrailingSeparator(programDirectory) + "Vorlagen/";
    struct stat a {}, b {};
    if (stat(templates.c_str(), &a) == 0 && stat(folder.c_str(), &b) == 0)
        return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
    return withTrailingSeparator(folder) == templates;
}

FileOperations::FileOperations(Prompter& prompter, Language language, OperationCallbacks callbacks)
    : prompter_(prompter), language_(language), callbacks_(std::move(callbacks)) {}

void FileOperations::status(const std::string& s) const {
    if (callbacks_.status) callbacks_.status(s);
}

void FileOperations::dropThumbnail(const std::string& picture) const {
    if (callbacks_.dropThumbnail) callbacks_.dropThumbnail(picture);
}

std::string FileOperations::overwriteQuestion(const std::string& name) const {
    return t("Datei: ", "File: ") + name + " " + t("existiert bereits!", "allraedy exist!") + "\r" +
           t("Soll die vorhandene Datei überschrieben werden?", "Should the existing file be overwrite?");
}

std::string FileOperations::deleteQuestion(bool templateFolder) const {
    if (templateFolder)
        return std::string(t("Wollen Sie die ausgewählte Albumvorlage löschen?",
                             "Would you delete the selected albumtemplate?")) +
               "\r" +
               t("Sie wird in den Papierkorb verschoben.", "It is moved to the trash.");
    return std::string(t("Wollen Sie alle ausgewählten Bilder (Dateien) löschen?",
                         "Would you delete all selected Pictures (Files)?")) +
           "\r" +
           t("Die Dateien werden in den Papierkorb verschoben und lassen sich von dort zurückholen.",
             "The files are moved to the trash and can be restored from there.");
}

bool FileOperations::copyFile(const std::string& source, const std::string& target, std::string& error) const {
    std::string dir, name;
    teilePfad(target, dir, name);
    const std::string part = dir + "." + name + ".brindlesee-part";
    const int in = ::open(source.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (in < 0) {
        error = std::strerror(errno);
        return false;
    }
    struct stat st {};
    if (fstat(in, &st) != 0 || !S_ISREG(st.st_mode)) {
        error = std::strerror(S_ISDIR(st.st_mode) ? EISDIR : EINVAL);
        ::close(in);
        return false;
    }
    const int out = ::open(part.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (out < 0) {
        error = std::strerror(errno);
        ::close(in);
        return false;
    }
    bool ok = copyBytes(in, out, error);
    if (ok && ::fsync(out) != 0) {
        error = std::strerror(errno);
        ok = false;
    }
    if (::close(out) != 0 && ok) {
        error = std::strerror(errno);
        ok = false;
    }
    ::close(in);
    // Complete means every byte: the part file must have the source's size.
    if (ok && regularFileSize(part) != static_cast<long long>(st.st_size)) {
        error = std::strerror(EIO);
        ok = false;
    }
    if (ok) applyFileStamp(part, readFileStamp(source));
    if (ok && ::rename(part.c_str(), target.c_str()) != 0) {
        error = std::strerror(errno);
        ok = false;
    }
    if (!ok) ::unlink(part.c_str());
    return ok;
}

void FileOperations::copyFailed(const std::string& source, const std::string& target, const std::string& error) {
    const std::string text = t("Fehler beim kopieren der Datei: ", "Error while copying the file: ") + source +
                             t(" zu ", " to ") + target + "\r" + t("Beschreibung: ", "Description: ") + error;
    prompter_.message(text, kButtonsOk | kIconCritical, t("Fehler", "Error"));
}

void FileOperations::moveFailed(const std::string& name) {
    const std::string text =
        language_ == Language::German ? "Fehler beim Kopieren / Bewegen der Datei " + name + " aufgetreten."
                                      : "Error while copying / moving the file: " + name;
    prompter_.message(text, kButtonsOk | kIconCritical, t("Fehler", "Error"));
}

bool FileOperations::pasteOne(const std::string& source, const std::string& target, bool move,
                              OperationResult& result) {
    status(t("Kopiere: ", "Copy: ") + fileNameOf(target));
    std::string error;
    const long long sourceSize = regularFileSize(source);
    if (!copyFile(source, target, error)) {
        copyFailed(source, target, error);
        ++result.failed;
        return false;
    }
    result.done.push_back(target);
    if (!move) return true;
    // The source goes only when its copy is all there.
    if (sourceSize < 0 || regularFileSize(target) != sourceSize || ::unlink(source.c_str()) != 0) {
        moveFailed(fileNameOf(source));
        ++result.failed;
        return false;
    }
    dropThumbnail(source);
    return true;
}

OperationResult FileOperations::paste(const ExplorerClipboard& clipboard, const std::string& folder) {
    OperationResult result;
    const std::string dir = withTrailingSeparator(folder);
    const bool move = clipboard.mode == ClipboardMode::Move;
    status(t("Start Einfügen", "Start paste"));
    int allAnswer = 0;  // kYesToAll or kNoToAll once given
    for (const std::string& source : clipboard.paths) {
        const std::string name = fileNameOf(source);
        std::string target = dir + name;
        if (pathTaken(target) && sameFile(source, target)) {
            // Moving a file onto itself leaves it where it is.
            if (move) continue;
            target = dir + copyName(name, language_, [&](const std::string& n) { return pathTaken(dir + n); });
        } else if (pathTaken(target)) {
            int answer = allAnswer;
            if (answer == 0) {
                answer = prompter_.askYesNoAll(overwriteQuestion(name), t("Warnung", "Warning"));
                if (answer == kYesToAll || answer == kNoToAll) allAnswer = answer;
            }
            if (answer == kCancel) {
                result.cancelled = true;
                break;
            }
            if (answer != kYes && answer != kYesToAll) continue;
        }
        pasteOne(source, target, move, result);
    }
    status(t("Fertig Kopieren", "Copying finished"));
    return result;
}

OperationResult FileOperations::deleteFiles(const std::vector<std::string>& files, bool templateFolder) {
    OperationResult result;
    if (files.empty()) return result;
    if (prompter_.message(deleteQuestion(templateFolder), kButtonsYesNo | kIconQuestion, "Brindlesee") != kYes) {
        result.cancelled = true;
        return result;
    }
    for (const std::string& path : files) {
        QFile file(QString::fromStdString(path));
        if (!file.moveToTrash()) {
            const std::string error = file.errorString().toStdString();
            const std::string name = fileNameOf(path);
            const std::string text =
                language_ == Language::German
                    ? "Fehler beim Löschen der Datei " + name + " aufgetreten.\rFehlerbeschreibung: " + error
                    : "Error while deleting the file: " + name + "\rErrordescription: " + error;
            prompter_.message(text, kButtonsOk | kIconCritical, t("Fehler", "Error"));
            ++result.failed;
            continue;
        }
        dropThumbnail(path);
        result.done.push_back(path);
    }
    return result;
}

}  // namespace brindle::explorer
