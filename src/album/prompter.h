// Everything that asks the user goes through a Prompter. The GUI answers
// with dialogs; tests answer from a script and record every question.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace brindle {

// Message box results and flags as the album flows use them.
enum MessageCode : int { kOk = 1, kCancel = 2, kYes = 6, kNo = 7, kYesToAll = 8, kNoToAll = 9 };
enum MessageFlags : int {
    kButtonsOk = 0,
    kButtonsYesNoCancel = 3,
    kButtonsYesNo = 4,
    kIconCritical = 16,
    kIconQuestion = 32,
    kIconExclamation = 48,
    kIconInformation = 64,
};

struct FileDialog {
    std::string title;
    std::string filter;  // "Text|pattern|Text|pattern"
    int filterIndex = 1; // 1-based entry of `filter` shown first
    std::string startDirectory;
    std::string proposedName;
    // Several files may be chosen; they come back as "directory;name;name".
    bool multiSelect = false;
};

// The files of a multi-select answer: one path as it is, or the directory
// and names of "directory;name;name".
std::vector<std::string> splitFileList(const std::string& answer);

class Prompter {
public:
    virtual ~Prompter() = default;

    // Returns kOk, kYes, kNo or kCancel. "\r" separates lines in `text`.
    virtual int message(const std::string& text, int flags, const std::string& title) = 0;
    // Yes / No / Yes to all / No to all: kYes, kNo, kYesToAll, kNoToAll.
    virtual int askYesNoAll(const std::string& text, const std::string& title) = 0;
    // An empty result means the user broke off.
    virtual std::string openFile(const FileDialog& dialog) = 0;
    virtual std::string saveFile(const FileDialog& dialog) = 0;
    virtual std::string chooseDirectory(const std::string& title, const std::string& startDirectory) = 0;
    // std::nullopt when cancelled.
    virtual std::optional<std::string> inputText(const std::string& prompt, const std::string& title,
                                                 const std::string& proposal) = 0;
    // The unsaved-files list: lines already indented. kYes, kNo or kCancel.
    virtual int unsavedFiles(const std::vector<std::string>& lines, const std::string& title) = 0;
};

// The entries of the album's file dialogs, in the order the flows name them.
std::string albumFileFilter(bool german);
inline constexpr int kFilterPage = 4;
inline constexpr int kFilterAlbum = 5;

}  // namespace brindle
