// design: a design list's steps over many pictures, as the photo design's
// batch does it, without windows.
#include <filesystem>
#include <iostream>

#include "album/paths.h"
#include "image/file_stamp.h"
#include "shell/cli_commands.h"
#include "shell/cli_text.h"
#include "shell/cli_prompter.h"
#include "studio/batch_run.h"
#include "studio/design_chain.h"
#include "studio/design_list.h"

namespace brindle::cli {
namespace {

const char* kDesignUsage =
    "usage: brindlesee-cli design LIST PICTURE... [--out DIR] [--append TEXT] "
    "[--type jpg|png|bmp|tif] [--min-size WxH] [--quality Q] [--threads N] [--english|--german]";

// The batch's messages, each on one line of stderr, counted.
class DesignPrompter : public CliPrompter {
  public:
    int shown = 0;
    int message(const std::string& text, int flags, const std::string&) override {
        std::string line = text;
        for (char& c : line)
            if (c == '\r' || c == '\n') c = ' ';
        std::cerr << "brindlesee-cli: " << line << "\n";
        ++shown;
        return (flags & 7) == kButtonsOk ? kOk : answer;
    }
};

bool parseMinSize(const std::string& s, int& w, int& h) {
    const auto x = s.find_first_of("xX");
    return x != std::string::npos && parseInt(s.substr(0, x), w) &&
           parseInt(s.substr(x + 1), h) && w >= 0 && h >= 0;
}

// "jpg" and the others as the batch names its types.
bool parseType(const std::string& s, std::string& type) {
    const std::string t = asciiLower(s);
    for (const char* known : {"jpg", "jpeg", "png", "bmp", "tif", "tiff"})
        if (t == known) {
            type = "*." + t;
            return true;
        }
    return false;
}

struct DesignArgs {
    std::string list;
    studio::BatchOptions options;
    Language language = Language::English;
};

// An empty string when the arguments are good, else the message.
std::string parseArgs(const Args& args, DesignArgs& d) {
    std::vector<std::string> positional;
    bool toDirectory = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--english" || a == "--german") {
            d.language = a == "--german" ? Language::German : Language::English;
            continue;
        }
        if (a.rfind("--", 0) != 0) {
            positional.push_back(a);
            continue;
        }
        if (i + 1 >= args.size()) return kDesignUsage;
        const std::string& v = args[++i];
        studio::BatchOptions& o = d.options;
        if (a == "--out") {
            o.targetDirectory = v;
            toDirectory = true;
        } else if (a == "--append") {
            o.appendText = v;
        } else if (a == "--type") {
            if (!parseType(v, o.fileType)) return "type must be jpg, png, bmp or tif: " + v;
        } else if (a == "--min-size") {
            if (!parseMinSize(v, o.minWidth, o.minHeight))
                return "min-size must be WIDTHxHEIGHT, both 0 or more: " + v;
        } else if (a == "--quality") {
            if (!parseInt(v, o.jpegQuality) || o.jpegQuality < 0 || o.jpegQuality > 100)
                return "quality must be a number from 0 to 100: " + v;
        } else if (a == "--threads") {
            if (!parseInt(v, o.threads) || o.threads < 0)
                return "threads must be 0 (one per core) or more: " + v;
        } else {
            return "unknown option: " + a;
        }
    }
    if (positional.size() < 2) return kDesignUsage;
    d.list = positional[0];
    d.options.pictures.assign(positional.begin() + 1, positional.end());
    d.options.saveMode =
        toDirectory ? studio::SaveMode::OtherDirectory : studio::SaveMode::OverwriteOriginals;
    return {};
}

// A line that names no step, or one that does nothing in the batch, is
// most likely a typing error: better said at once than run over every
// picture for nothing. Blank lines are passed over.
std::string checkSteps(const std::string& listPath, const std::vector<std::string>& lines) {
    cDIBSection probe;
    int steps = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (studio::stepName(lines[i]).empty()) continue;
        ++steps;
        probe.Create(16, 16);
        probe.effectFarbfläche(0x808080);
        studio::StepEnv env;
        env.mode = studio::ChainMode::Batch;
        if (!studio::applyStep(probe, lines[i], env))
            return "line " + std::to_string(i + 1) + " of " + listPath +
                   " is no step the design batch can run: " + lines[i];
    }
    return steps == 0 ? "the design list has no steps: " + listPath : std::string();
}

}  // namespace

int design(const Args& args) {
    DesignArgs d;
    if (const std::string error = parseArgs(args, d); !error.empty()) return fail(error);
    const studio::DesignListRead list = studio::readDesignList(d.list);
    if (!list.ok) return fail("cannot read the design list " + d.list + ": " + list.error);
    if (const std::string error = checkSteps(d.list, list.lines); !error.empty()) return fail(error);
    for (const std::string& picture : d.options.pictures)
        if (!fileExists(picture)) return fail("file not found: " + picture);
    studio::BatchOptions& o = d.options;
    if (o.saveMode == studio::SaveMode::OtherDirectory) {
        std::error_code ec;
        std::filesystem::create_directories(o.targetDirectory, ec);
        if (!std::filesystem::is_directory(o.targetDirectory, ec))
            return fail("cannot make the folder " + o.targetDirectory);
    }

    DesignPrompter prompter;
    studio::BatchCallbacks callbacks;
    callbacks.status = [](const std::string& line) { std::cerr << line << "\n"; };
    const studio::BatchResult r = studio::runDesignBatch(list.lines, o, prompter, d.language, callbacks);
    for (const std::string& path : r.written) std::cout << path << "\n";
    for (const std::string& path : r.unreadable) fail("cannot read the picture: " + path);
    return r.failed == 0 && r.unreadable.empty() && prompter.shown == 0 ? 0 : 1;
}

}  // namespace brindle::cli
