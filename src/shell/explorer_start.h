// Where the picture explorer opens when the command line asks for it:
// "/brindleseeexplorer [FOLDER | PICTURE]" or a bare picture or media file.
#pragma once

#include <string>
#include <vector>

#include "album/language.h"
#include "album/prompter.h"
#include "shell/startup.h"

namespace brindle {

struct ExplorerStart {
    std::string folder;  // the folder shown first
    std::string file;    // selected in it, when a file was named
};

// The folder (or the picture's folder) the arguments name. A folder that is
// gone and an argument that is neither a folder nor a known file are told
// through `prompter`, and the explorer opens in `fallbackFolder` instead.
ExplorerStart explorerStart(const std::vector<std::string>& args, const StartDecision& decision,
                            const std::string& fallbackFolder, Prompter& prompter,
                            Language language);

// The folder the explorer shows when nothing else is named: the last one
// shown, else the user's Pictures folder, else the home folder.
std::string defaultExplorerFolder(const std::string& lastFolder);

}  // namespace brindle
