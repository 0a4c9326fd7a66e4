// resize and split: the picture tools' batches without windows.
#include <filesystem>
#include <iostream>

#include "album/paths.h"
#include "shell/cli_commands.h"
#include "shell/cli_text.h"
#include "studio/resize_pictures.h"
#include "studio/split_pictures.h"

namespace brindle::cli {
namespace {

// Each message of the run goes to stderr as "brindlesee-cli: " + its text;
// any message makes the exit status 1.
class ToolPrompter : public Prompter {
  public:
    int told = 0;
    int message(const std::string& text, int flags, const std::string&) override {
        std::string line = text;
        for (char& c : line)
            if (c == '\r' || c == '\n') c = ' ';
        std::cerr << "brindlesee-cli: " << line << "\n";
        ++told;
        return (flags & 7) == kButtonsOk ? kOk : kNo;
    }
    int askYesNoAll(const std::string& text, const std::string& title) override {
        message(text, kButtonsYesNo, title);
        return kNoToAll;
    }
    std::string openFile(const FileDialog&) override { return {}; }
    std::string saveFile(const FileDialog&) override { return {}; }
    std::string chooseDirectory(const std::string&, const std::string&) override { return {}; }
    std::optional<std::string> inputText(const std::string&, const std::string&, const std::string&) override {
        return std::nullopt;
    }
    int unsavedFiles(const std::vector<std::string>&, const std::string&) override { return kCancel; }
};

bool parsePair(const std::string& s, int& a, int& b) {
    const auto x = s.find_first_of("xX");
    return x != std::string::npos && parseInt(s.substr(0, x), a) && parseInt(s.substr(x + 1), b);
}

// Every picture must be there before anything is written.
std::string missingPicture(const std::vector<std::string>& pictures) {
    for (const std::string& p : pictures) {
        std::error_code ec;
        if (!std::filesystem::is_regular_file(p, ec)) return p;
    }
    return {};
}

void printWritten(const std::vector<std::string>& written) {
    for (const std::string& w : written) std::cout << w << "\n";
}

// "[n/total] path" on stderr as each picture is begun.
struct StderrProgress {
    int total = 0;
    int begun = 0;
    void status(const std::string& s) { std::cerr << "[" << ++begun << "/" << total << "] " << s << "\n"; }
};

struct ResizeArgs {
    std::vector<std::string> pictures;
    studio::ResizeOptions options;
    bool sized = false, percent = false;
};

std::string parseResize(const Args& args, ResizeArgs& r) {
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        const bool hasValue = i + 1 < args.size();
        if (a == "--size" && hasValue) {
            if (!parsePair(args[++i], r.options.widthPixels, r.options.heightPixels))
                return "size must be WIDTHxHEIGHT: " + args[i];
            r.sized = true;
        } else if (a == "--percent" && hasValue) {
            if (!parseInt(args[++i], r.options.widthPercent)) return "percent must be a number: " + args[i];
            r.options.byPercent = r.percent = true;
            r.options.percentsAlike = true;
        } else if (a == "--out" && hasValue) {
            r.options.targetDirectory = args[++i];
        } else if (a.rfind("--", 0) == 0) {
            return "unknown option or missing value: " + a;
        } else {
            r.pictures.push_back(a);
        }
    }
    if (r.pictures.empty() || r.sized == r.percent)
        return "usage: brindlesee-cli resize PICTURE... (--size WxH | --percent P) [--out DIR]";
    return {};
}

}  // namespace

int resize(const Args& args) {
    ResizeArgs r;
    if (const std::string error = parseResize(args, r); !error.empty()) return fail(error);
    if (const std::string error = studio::resizeOptionsError(r.options, Language::English); !error.empty())
        return fail(error);
    if (const std::string missing = missingPicture(r.pictures); !missing.empty())
        return fail("file not found: " + missing);
    if (!r.options.targetDirectory.empty()) {
        std::error_code ec;
        std::filesystem::create_directories(r.options.targetDirectory, ec);
        if (!std::filesystem::is_directory(r.options.targetDirectory, ec))
            return fail("cannot make the folder: " + r.options.targetDirectory);
    }
    ToolPrompter prompter;
    StderrProgress progress{static_cast<int>(r.pictures.size())};
    studio::BatchCallbacks callbacks;
    callbacks.status = [&](const std::string& s) { progress.status(s); };
    const studio::BatchResult result =
        studio::resizePictures(r.pictures, r.options, prompter, Language::English, callbacks);
    printWritten(result.written);
    // An unreadable picture is not always told by the reader itself.
    if (result.skipped > 0)
        std::cerr << "brindlesee-cli: " << result.skipped << " of " << r.pictures.size()
                  << " pictures could not be read\n";
    const bool allDone = prompter.told == 0 && result.failed == 0 && result.skipped == 0 &&
                         result.treated == static_cast<int>(r.pictures.size());
    return allDone ? 0 : 1;
}

int split(const Args& args) {
    const char* usage = "usage: brindlesee-cli split PICTURE... --rows R --cols C [--by-column]";
    std::vector<std::string> pictures;
    studio::SplitOptions options;
    bool rows = false, cols = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        const bool hasValue = i + 1 < args.size();
        if (a == "--rows" && hasValue) {
            if (!parseInt(args[++i], options.rows)) return fail("rows must be a number: " + args[i]);
            rows = true;
        } else if (a == "--cols" && hasValue) {
            if (!parseInt(args[++i], options.columns)) return fail("columns must be a number: " + args[i]);
            cols = true;
        } else if (a == "--by-column") {
            options.order = studio::TileOrder::ColumnByColumn;
        } else if (a.rfind("--", 0) == 0) {
            return fail("unknown option or missing value: " + a);
        } else {
            pictures.push_back(a);
        }
    }
    if (pictures.empty() || !rows || !cols) return fail(usage);
    if (const std::string error = studio::splitGridError(options, Language::English); !error.empty())
        return fail(error);
    if (const std::string missing = missingPicture(pictures); !missing.empty())
        return fail("file not found: " + missing);
    ToolPrompter prompter;
    StderrProgress progress{static_cast<int>(pictures.size())};
    studio::SplitCallbacks callbacks;
    callbacks.status = [&](const std::string& s) { progress.status(s); };
    const studio::SplitResult result = studio::splitPictures(pictures, options, prompter, Language::English, callbacks);
    printWritten(result.written);
    return prompter.told == 0 && result.failed == 0 ? 0 : 1;
}

}  // namespace brindle::cli
