// Answers for brindlesee-cli: no questions on a terminal, the answers come
// from the command's flags, and every message is printed to stderr.
#pragma once

#include <iostream>

#include "album/page_editor.h"
#include "album/prompter.h"
#include "shell/cli_text.h"

namespace brindle::cli {

class CliPrompter : public Prompter {
public:
    int answer = kYes;          // to every yes/no question
    std::string albumPath;      // given to the album's save dialog

    int message(const std::string& text, int flags, const std::string& title) override {
        std::cerr << "brindlesee-cli: " << title << ": " << blankLineBreaks(text) << "\n";
        return (flags & 7) == kButtonsOk ? kOk : answer;
    }
    int askYesNoAll(const std::string& text, const std::string& title) override { return message(text, kButtonsYesNo, title); }
    std::string openFile(const FileDialog&) override { return {}; }
    std::string saveFile(const FileDialog& d) override {
        return d.filterIndex == kFilterAlbum && !albumPath.empty() ? albumPath : d.proposedName;
    }
    std::string chooseDirectory(const std::string&, const std::string& start) override { return start; }
    std::optional<std::string> inputText(const std::string&, const std::string&, const std::string& p) override { return p; }
    int unsavedFiles(const std::vector<std::string>&, const std::string&) override { return answer; }
};

}  // namespace brindle::cli
