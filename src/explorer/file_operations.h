// What the explorer does to the files of the shown folder: paste from its
// own clipboard (copy or move), delete to the desktop's trash, rename one
// or many, turn many pictures by 90 degrees, and make a new folder. Every
// question and failure goes through the Prompter; nothing is written
// outside the folders the user works in (and the thumbnail cache).
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "album/language.h"
#include "album/prompter.h"

namespace brindle::explorer {

enum class ClipboardMode { Copy, Move };

// The explorer's own clipboard: full paths and whether paste moves them.
struct ExplorerClipboard {
    std::vector<std::string> paths;
    ClipboardMode mode = ClipboardMode::Copy;

    bool empty() const { return paths.empty(); }
    void clear() { paths.clear(); mode = ClipboardMode::Copy; }
};

struct OperationCallbacks {
    // The status line: "Start Einfügen", "Kopiere: a.jpg", ...
    std::function<void(const std::string& status)> status;
    // Drops the cached thumbnail of a picture that was deleted, renamed
    // or turned (a turned picture keeps its time, so the cache could not
    // tell by itself).
    std::function<void(const std::string& picture)> dropThumbnail;
};

struct OperationResult {
    std::vector<std::string> done;  // new paths (paste, rename, turn, new folder) or deleted ones
    int failed = 0;                 // each failure was told through the Prompter
    bool cancelled = false;         // the user ended the run
};

// The name a paste into the picture's own folder gives: "Kopie von a.jpg",
// then "Kopie1 von a.jpg", "Kopie2 von a.jpg", ... (English "Copy of",
// "Copy1 of"), the first that `exists` does not know.
std::string copyName(const std::string& name, Language language,
                     const std::function<bool(const std::string&)>& exists);

// True when `folder` is the album template catalogue, "Vorlagen/" in the
// program directory (delete then asks the template question).
bool isTemplateFolder(const std::string& programDirectory, const std::string& folder);

// Rename many: either every name in small letters, or `search` replaced by
// `replace` everywhere in the name, with or without regard to case.
struct RenameRule {
    std::string search;
    std::string replace;
    bool caseSensitive = false;
    bool allLowerCase = false;
};
// The new name under `rule` (the same name when nothing changes).
std::string renamedName(const std::string& name, const RenameRule& rule);

// Lower case for ASCII and the Latin-1 letters in UTF-8 ("ÄRGER" gives "ärger").
std::string lowerCaseName(const std::string& name);

class FileOperations {
public:
    FileOperations(Prompter& prompter, Language language, OperationCallbacks callbacks = {});
    void setLanguage(Language language) { language_ = language; }

    // Copies (or moves) the clipboard's files into `folder`. A name that is
    // taken by another file asks before it is replaced; a file pasted into
    // its own folder gets a copy name. A moved file's source goes only
    // after its copy is complete and has the source's size. The copy keeps
    // the source's modification time.
    OperationResult paste(const ExplorerClipboard& clipboard, const std::string& folder);

    // Asks once, then moves each file to the desktop's trash and drops its
    // thumbnail. `templateFolder` asks the album template question instead.
    OperationResult deleteFiles(const std::vector<std::string>& files, bool templateFolder = false);

    // Asks for the new name (proposing the old one) and renames; never
    // replaces another file. The new path, or nothing.
    std::optional<std::string> renameOne(const std::string& path);
    std::optional<std::string> renameTo(const std::string& path, const std::string& newName);

    // Renames every file by `rule`; an empty search text (without the
    // small-letters rule) only gives the hint.
    OperationResult renameMany(const std::vector<std::string>& files, const RenameRule& rule);

    // Asks, then turns each picture by 90 degrees (JPEG without loss,
    // others decoded, turned and written in their own format), keeping the
    // file's time, and drops its thumbnail.
    OperationResult turnMany(const std::vector<std::string>& files, bool right);

    // Asks for a name (default "Neuer Ordner") and makes the folder in
    // `parent`; a taken name gets a number and a message. The new folder's
    // path (ending in "/"), or nothing.
    std::optional<std::string> newFolder(const std::string& parent);

    // The question texts, for the window and the tests.
    std::string overwriteQuestion(const std::string& name) const;
    std::string deleteQuestion(bool templateFolder) const;
    std::string turnQuestion(bool right) const;

private:
    const char* t(const char* german, const char* english) const { return tr(language_, german, english); }
    void status(const std::string& s) const;
    void dropThumbnail(const std::string& picture) const;
    // Copies `source` to `target` through a part file beside the target;
    // on failure `error` has the reason and the target is untouched.
    bool copyFile(const std::string& source, const std::string& target, std::string& error) const;
    bool pasteOne(const std::string& source, const std::string& target, bool move, OperationResult& result);
    void copyFailed(const std::string& source, const std::string& target, const std::string& error);
    void moveFailed(const std::string& name);
    bool renameNoReplace(const std::string& from, const std::string& to, std::string& error) const;
    void renameFailed(const std::string& name, const std::string& error);
    bool turnOne(const std::string& path, bool right);

    Prompter& prompter_;
    Language language_;
    OperationCallbacks callbacks_;
};

}  // namespace brindle::explorer
