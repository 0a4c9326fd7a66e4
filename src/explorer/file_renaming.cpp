// Rename one and many, turn many pictures, and make a new folder.
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "album/paths.h"
#include "explorer/file_operations.h"
#include "image/dib_section.h"
#include "image/file_stamp.h"
#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "image/picture_turn.h"

namespace brindle::explorer {

namespace {

// Lower-cases one character in place: ASCII, and the Latin-1 capitals
// U+00C0..U+00DE (but not the multiplication sign) in their UTF-8 form.
// Both keep their byte length, so folded text lines up with the original.
std::string foldCase(const std::string& s) {
    std::string out = s;
    for (std::size_t i = 0; i < out.size(); ++i) {
        const auto c = static_cast<unsigned char>(out[i]);
        if (c >= 'A' && c <= 'Z') {
            out[i] = static_cast<char>(c + 32);
        } else if (c == 0xC3 && i + 1 < out.size()) {
            const auto d = static_cast<unsigned char>(out[i + 1]);
            if (d >= 0x80 && d <= 0x9E && d != 0x97) out[i + 1] = static_cast<char>(d + 32);
            ++i;
        }
    }
    return out;
}

bool validName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos &&
           name.find('\0') == std::string::npos;
}

bool pathTaken(const std::string& path) {
    struct stat st {};
    return lstat(path.c_str(), &st) == 0;
}

bool isJpegName(const std::string& path) { return endsWithNoCase(path, ".jpg") || endsWithNoCase(path, "jpeg"); }

}  // namespace

std::string lowerCaseName(const std::string& name) { return foldCase(name); }

std::string renamedName(const std::string& name, const RenameRule& rule) {
    if (rule.allLowerCase) return lowerCaseName(name);
    if (rule.search.empty()) return name;
    const std::string hay = rule.caseSensitive ? name : foldCase(name);
    const std::string needle = rule.caseSensitive ? rule.search : foldCase(rule.search);
    std::string out;
    std::size_t from = 0;
    for (std::size_t at = hay.find(needle); at != std::string::npos; at = hay.find(needle, from)) {
        out += name.substr(from, at - from) + rule.replace;
        from = at + needle.size();
    }
    return out + name.substr(from);
}

bool FileOperations::renameNoReplace(const std::string& from, const std::string& to, std::string& error) const {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
    int err = errno;
    if (err == EINVAL || err == ENOSYS) {
        // A file system without the no-replace flag: look first.
        err = pathTaken(to) ? EEXIST : (::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno);
        if (err == 0) return true;
    }
    std::string dir, name;
    teilePfad(to, dir, name);
    error = err == EEXIST ? std::string(t("Eine Datei mit dem Namen ", "A file named ")) + name +
                                t(" gibt es bereits; sie wird nicht überschrieben.",
                                  " already exists; it is not overwritten.")
                          : std::strerror(err);
    return false;
}

void FileOperations::renameFailed(const std::string& name, const std::string& error) {
    const std::string text = t("Umbenennen des Bildes ", "Rename the picture ") + name + " " +
                             t("mißlungen!", "fault!") + "\rError: " + error;
    prompter_.message(text, kButtonsOk | kIconCritical, t("Fehler", "Error"));
}

std::optional<std::string> FileOperations::renameTo(const std::string& path, const std::string& newName) {
    std::string dir, name;
    teilePfad(path, dir, name);
    if (newName == name) return path;
    if (!validName(newName)) {
        renameFailed(name, t("Ungültiger Dateiname", "Invalid file name"));
        return std::nullopt;
    }
    std::string error;
    if (!renameNoReplace(path, dir + newName, error)) {
        renameFailed(name, error);
        return std::nullopt;
    }
    dropThumbnail(path);
    return dir + newName;
}

std::optional<std::string> FileOperations::renameOne(const std::string& path) {
    std::string dir, name;
    teilePfad(path, dir, name);
    const std::optional<std::string> answer =
        prompter_.inputText(t("Neuer Name:", "New name:"), t("Umbenennen", "Rename"), name);
    if (!answer) return std::nullopt;
    return renameTo(path, *answer);
}

OperationResult FileOperations::renameMany(const std::vector<std::string>& files, const RenameRule& rule) {
    OperationResult result;
    if (!rule.allLowerCase && rule.search.empty()) {
        prompter_.message(t("Bitte geben Sie erst ein Suchkriterium ein", "Please fill in an searchstring"),
                          kButtonsOk | kIconInformation, t("Hinweis", "Information"));
        result.cancelled = true;
        return result;
    }
    for (const std::string& path : files) {
        std::string dir, name;
        teilePfad(path, dir, name);
        const std::string newName = renamedName(name, rule);
        if (newName == name) continue;
        if (std::optional<std::string> done = renameTo(path, newName))
            result.done.push_back(*done);
        else
            ++result.failed;
    }
    return result;
}

std::string FileOperations::turnQuestion(bool right) const {
    if (right)
        return t("Wollen Sie alle ausgewählten Bilder um 90 Grad nach rechts drehen?",
                 "Do you want turn all selected pictures about 90 degrees to the right?");
    return t("Wollen Sie alle ausgewählten Bilder um 90 Grad nach links drehen?",
             "Do you want turn all selected pictures about 90 degrees to the left?");
}

bool FileOperations::turnOne(const std::string& path, bool right) {
    const FileStamp stamp = readFileStamp(path);
    bool ok = false;
    if (isJpegName(path)) {
        ok = SaveAsRotatedJpgLossless(path, path, right ? kJpegRotate90 : kJpegRotate270);
    } else if (stamp.exists && writerFor(path, true) != PictureWriter::None) {
        const ImageEnv env{language_, {}, true};
        const PictureFile loaded = LoadPictureFile(path, env);
        if (loaded.picture) {
            const cDIBSection turned = turnedPicture(*loaded.picture.Handle(), right ? kTurnRight : kTurnLeft);
            ok = static_cast<bool>(SaveDIBFile(turned, path, 90, env));
        }
    }
    if (!ok) {
        prompter_.message(t("Fehler beim Schreiben der Datei: ", "Error while writing the file: ") + path,
                          kButtonsOk | kIconCritical, t("Fehler", "Error"));
        return false;
    }
    // Sorting by date must not move a picture because it was turned.
    applyFileStamp(path, stamp);
    dropThumbnail(path);
    return true;
}

OperationResult FileOperations::turnMany(const std::vector<std::string>& files, bool right) {
    OperationResult result;
    if (files.empty()) return result;
    if (prompter_.message(turnQuestion(right), kButtonsYesNo | kIconQuestion, "Brindlesee") != kYes) {
        result.cancelled = true;
        return result;
    }
    status(t("Start drehen", "Start turning"));
    for (const std::string& path : files) {
        if (turnOne(path, right))
            result.done.push_back(path);
        else
            ++result.failed;
    }
    status(t("Fertig drehen", "Turning finished"));
    return result;
}

std::optional<std::string> FileOperations::newFolder(const std::string& parent) {
    const std::string title = t("Neuen Ordner erstellen", "Create new folder");
    const std::optional<std::string> answer =
        prompter_.inputText(t("Bitte geben Sie den Namen des neuen Verzeichnisses an",
                              "Please enter the name of the new directory"),
                            title, t("Neuer Ordner", "New Folder"));
    if (!answer) return std::nullopt;
    const std::string name = *answer;
    if (!validName(name)) {
        prompter_.message(t("Ungültiger Ordnername: ", "Invalid folder name: ") + name,
                          kButtonsOk | kIconExclamation, title);
        return std::nullopt;
    }
    const std::string dir = withTrailingSeparator(parent);
    std::string made = name;
    for (int n = 1; ::mkdir((dir + made).c_str(), 0777) != 0; ++n) {
        if (errno != EEXIST || n > 9999) {
            prompter_.message(t("Der Ordner konnte nicht erstellt werden: ", "The folder could not be made: ") +
                                  dir + made + "\r" + std::strerror(errno),
                              kButtonsOk | kIconCritical, t("Fehler", "Error"));
            return std::nullopt;
        }
        made = name + std::to_string(n);
    }
    if (made != name)
        prompter_.message(language_ == Language::German
                              ? "Verzeichnis existierte bereits! Es wurde das Verzeichnis: " + made + " neu erstellt"
                              : "Directory allready exist! The new directory get the name: " + made,
                          kButtonsOk | kIconInformation, title);
    return dir + made + "/";
}

}  // namespace brindle::explorer
