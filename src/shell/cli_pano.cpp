// pano: a row of overlapping photos stitched into one wide JPEG.
#include <filesystem>
#include <iostream>

#include "image/file_stamp.h"
#include "panorama/pano_run.h"
#include "shell/cli_commands.h"
#include "shell/cli_text.h"
#include "shell/startup.h"

namespace brindle::cli {
namespace {

const char* kPanoUsage =
    "usage: brindlesee-cli pano PICTURE... -o OUT.jpg [--360] [--smooth N] [--crop] [--no-gain] "
    "[--padding] [--balance]";

struct PanoArgs {
    std::vector<std::string> pictures;
    std::string output;
    panorama::PanoRunOptions options;
};

// An empty answer when the arguments are fine, else the message.
std::string parsePanoArgs(const Args& args, PanoArgs& out) {
    out.options.compose.smoothWidth = 40;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "-o" || a == "--smooth") {
            if (i + 1 >= args.size()) return kPanoUsage;
            const std::string& value = args[++i];
            if (a == "-o") {
                out.output = value;
                continue;
            }
            int n = 0;
            if (!parseInt(value, n) || n < 0 || n > 10000)
                return "smooth must be a number of pixels from 0 to 10000: " + value;
            out.options.compose.smoothWidth = n;
        } else if (a == "--360") {
            out.options.compose.ring360 = true;
        } else if (a == "--crop") {
            out.options.compose.crop = true;
        } else if (a == "--no-gain") {
            out.options.compose.matchGain = false;
        } else if (a == "--padding") {
            out.options.compose.padding = true;
        } else if (a == "--balance") {
            out.options.compose.balanceY = true;
        } else if (a.size() > 1 && a[0] == '-') {
            return "unknown option: " + a;
        } else {
            out.pictures.push_back(a);
        }
    }
    if (out.pictures.empty() || out.output.empty()) return kPanoUsage;
    return {};
}

}  // namespace

int pano(const Args& args) {
    PanoArgs parsed;
    const std::string wrong = parsePanoArgs(args, parsed);
    if (!wrong.empty()) return fail(wrong);
    for (const std::string& p : parsed.pictures)
        if (!fileExists(p)) return fail("file not found: " + p);
    const std::string programDirectory = resolveProgramDirectory();
    std::error_code ec;
    std::filesystem::create_directories(programDirectory, ec);
    panorama::PanoCallbacks callbacks;
    callbacks.status = [](const std::string& line) { std::cerr << line << "\n"; };
    int shown = -1;
    callbacks.progress = [&shown](int permille) {
        // Whole tens of percent are enough on a terminal.
        if (permille / 100 == shown) return;
        shown = permille / 100;
        std::cerr << shown * 10 << " %\n";
    };
    const panorama::PanoRunResult result = panorama::makePanorama(
        parsed.pictures, parsed.output, parsed.options, programDirectory, callbacks, Language::English);
    if (!result.ok) return fail(oneLine(result.message));
    std::cerr << "wrote " << parsed.output << " (" << result.picture.Width() << " x "
              << result.picture.Height() << ")\n";
    return 0;
}

}  // namespace brindle::cli
