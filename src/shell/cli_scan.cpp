// scan: one picture from a scanner through SANE, saved as the output's type.
#include <iostream>

#include "image/picture_io.h"
#include "media/scan_import.h"
#include "shell/cli_commands.h"
#include "shell/cli_text.h"

namespace brindle::cli {
namespace {

const char* kScanUsage = "usage: brindlesee-cli scan -o OUT.jpg [--device NAME] [--resolution DPI] | scan --list";

struct ScanArgs {
    bool list = false;
    std::string output;
    media::ScanRequest request;
};

// An empty answer when the arguments are fine, else the message.
std::string parseScanArgs(const Args& args, ScanArgs& out) {
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--list") {
            out.list = true;
            continue;
        }
        const bool takesValue = a == "-o" || a == "--device" || a == "--resolution";
        if (!takesValue) return a.size() > 1 && a[0] == '-' ? "unknown option: " + a : kScanUsage;
        if (i + 1 >= args.size()) return kScanUsage;
        const std::string& value = args[++i];
        if (a == "-o") {
            out.output = value;
        } else if (a == "--device") {
            out.request.device = value;
        } else {
            int dpi = 0;
            if (!parseInt(value, dpi) || dpi < 1 || dpi > 19200)
                return "resolution must be a number of dots per inch from 1 to 19200: " + value;
            out.request.resolution = dpi;
        }
    }
    if (out.list) return out.output.empty() ? std::string() : kScanUsage;
    if (out.output.empty()) return kScanUsage;
    if (writerFor(out.output, false) == PictureWriter::None)
        return "the output must end in .jpg, .bmp, .png or .tif: " + out.output;
    return {};
}

int listSources() {
    const media::ScanSourceList list = media::listScanSources(Language::English);
    if (!list.error.empty()) return fail(list.error);
    if (list.sources.empty()) return fail("No scanner was found.");
    for (const media::ScanSource& s : list.sources)
        std::cout << s.name << "\t" << s.vendor << " " << s.model << " (" << s.type << ")\n";
    return 0;
}

}  // namespace

int scan(const Args& args) {
    ScanArgs parsed;
    const std::string wrong = parseScanArgs(args, parsed);
    if (!wrong.empty()) return fail(wrong);
    if (parsed.list) return listSources();
    int shown = -1;
    parsed.request.progress = [&shown](int percent) {
        // Whole tens of percent are enough on a terminal.
        if (percent / 10 != shown) {
            shown = percent / 10;
            std::cerr << shown * 10 << " %\n";
        }
        return true;
    };
    const media::ScanResult result = media::scanToFile(parsed.request, parsed.output, Language::English);
    if (!result) return fail(result.error);
    std::cerr << "wrote " << parsed.output << " (" << result.picture.Width() << " x " << result.picture.Height()
              << ")\n";
    return 0;
}

}  // namespace brindle::cli
