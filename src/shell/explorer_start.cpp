#include "shell/explorer_start.h"

#include <cstdlib>
#include <filesystem>

#include "album/paths.h"

namespace brindle {

namespace fs = std::filesystem;

namespace {

bool isExplorerSwitch(const std::string& arg) { return asciiLower(arg) == "/brindleseeexplorer"; }

}  // namespace

ExplorerStart explorerStart(const std::vector<std::string>& args, const StartDecision& decision,
                            const std::string& fallbackFolder, Prompter& prompter,
                            Language language) {
    ExplorerStart start;
    if (!decision.explorerFile.empty()) {
        start.file = decision.explorerFile;
        start.folder = fs::path(decision.explorerFile).parent_path().string();
        return start;
    }
    for (const std::string& arg : args) {
        if (arg.empty() || isExplorerSwitch(arg)) continue;
        std::error_code ec;
        if (fs::is_directory(arg, ec)) {
            start.folder = arg;
            return start;
        }
        // A name that looks like a folder (no suffix, or a closing '/') and is not there.
        const bool folderLike = arg.back() == '/' || fs::path(arg).extension().empty();
        if (folderLike && !fs::exists(arg, ec)) {
            prompter.message(tr(language, "Das vorgewählte Verzeichnis ist nicht mehr vorhanden!",
                                "The preselected directory does not exist any more!"),
                             kButtonsOk | kIconExclamation, "Brindlesee Explorer");
        } else {
            prompter.message(std::string(tr(language, "Ungültiger Startparameter:",
                                            "Invalid start parameter:")) +
                                 "\r" + arg,
                             kButtonsOk | kIconExclamation, "Brindlesee Explorer");
        }
        break;
    }
    start.folder = fallbackFolder;
    return start;
}

std::string defaultExplorerFolder(const std::string& lastFolder) {
    std::error_code ec;
    if (!lastFolder.empty() && fs::is_directory(lastFolder, ec)) return lastFolder;
    const char* home = std::getenv("HOME");
    const std::string h = home && *home ? home : "/";
    for (const char* pictures : {"/Bilder", "/Pictures"})
        if (fs::is_directory(h + pictures, ec)) return h + pictures;
    return h;
}

}  // namespace brindle
