// wizard: a whole album from pages of pictures, a design and a frame.
#include <charconv>
#include <filesystem>
#include <iostream>

#include "album/paths.h"
#include "shell/cli_commands.h"
#include "shell/cli_prompter.h"
#include "shell/cli_session.h"
#include "shell/startup.h"
#include "shell/wizard_run.h"

namespace brindle::cli {
namespace {

constexpr const char* kUsage =
    "usage: brindlesee-cli wizard OUTDIR [--design NAME] --page \"NAME:PIC,PIC,...\" ... "
    "[--frame WIDTH,LIGHT,SHADOW,COLOUR] [--english|--german]";

std::string absolute(const std::string& p) { return std::filesystem::absolute(p).lexically_normal().string(); }

std::vector<std::string> splitAt(const std::string& s, char sep) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (std::size_t end; (end = s.find(sep, start)) != std::string::npos; start = end + 1)
        parts.push_back(s.substr(start, end - start));
    parts.push_back(s.substr(start));
    return parts;
}

bool parseInt(const std::string& s, int& out, int base = 10) {
    const char* end = s.data() + s.size();
    auto [p, ec] = std::from_chars(s.data(), end, out, base);
    return ec == std::errc{} && p == end && !s.empty();
}

// "NAME:PIC,PIC"; a page without pictures is "NAME" or "NAME:".
bool parsePage(const std::string& arg, wizard::WizardPage& page) {
    const std::size_t colon = arg.find(':');
    page.name = arg.substr(0, colon);
    if (colon == std::string::npos || colon + 1 == arg.size()) return !page.name.empty();
    for (const std::string& pic : splitAt(arg.substr(colon + 1), ',')) {
        if (pic.empty()) return false;
        page.pictures.push_back(absolute(pic));
    }
    return !page.name.empty();
}

// "WIDTH,LIGHT,SHADOW,COLOUR"; the colour as "#RRGGBB" or the album's decimal 0x00BBGGRR.
bool parseFrame(const std::string& arg, properties::FrameSettings& frame) {
    const std::vector<std::string> items = splitAt(arg, ',');
    if (items.size() != 4) return false;
    int colour = 0;
    const std::string& c = items[3];
    if (c.size() == 7 && c[0] == '#') {
        if (!parseInt(c.substr(1), colour, 16)) return false;
        colour = ((colour & 0xFF) << 16) | (colour & 0xFF00) | ((colour >> 16) & 0xFF);
    } else if (!parseInt(c, colour) || colour < 0 || colour > 0xFFFFFF) {
        return false;
    }
    frame.on = true;
    frame.colour = static_cast<std::uint32_t>(colour);
    return parseInt(items[0], frame.width) && parseInt(items[1], frame.light) &&
           parseInt(items[2], frame.shadow) && frame.width == properties::kFrameWidthRange.clamp(frame.width) &&
           frame.light == properties::kFrameLightRange.clamp(frame.light) &&
           frame.shadow == properties::kFrameShadowRange.clamp(frame.shadow);
}

struct WizardArgs {
    wizard::WizardPlan plan;
    std::string design;
    Language lang = Language::German;
    std::string error;
};

WizardArgs parseArgs(const Args& args) {
    WizardArgs w;
    for (std::size_t i = 0; i < args.size() && w.error.empty(); ++i) {
        const std::string& a = args[i];
        const bool hasValue = i + 1 < args.size();
        if (a == "--english") {
            w.lang = Language::English;
        } else if (a == "--german") {
            w.lang = Language::German;
        } else if ((a == "--design" || a == "--page" || a == "--frame") && !hasValue) {
            w.error = a + " needs a value";
        } else if (a == "--design") {
            w.design = args[++i];
        } else if (a == "--page") {
            wizard::WizardPage page;
            if (!parsePage(args[++i], page)) w.error = "bad page: " + args[i];
            w.plan.pages.push_back(page);
        } else if (a == "--frame") {
            if (!parseFrame(args[++i], w.plan.frame)) w.error = "bad frame (WIDTH 1-100, LIGHT and SHADOW 0-100, COLOUR): " + args[i];
        } else if (a.rfind("--", 0) == 0 || !w.plan.targetDirectory.empty()) {
            w.error = kUsage;
        } else {
            w.plan.targetDirectory = withTrailingSeparator(absolute(a));
        }
    }
    if (w.error.empty() && w.plan.targetDirectory.empty()) w.error = kUsage;
    if (w.error.empty() && w.plan.pages.empty()) w.error = "at least one --page is needed";
    return w;
}

// A design by its name in the design folder ("Blau" or "Blau.jpg") or by its path.
std::string findDesign(const std::string& programDirectory, const std::string& name) {
    if (name.find('/') != std::string::npos) return dateiVorhanden(absolute(name)) ? absolute(name) : "";
    for (const std::string& file : wizard::listDesigns(programDirectory))
        if (file == name || file.substr(0, file.size() - 4) == name) return wizard::designDirectory(programDirectory) + file;
    return {};
}

}  // namespace

int wizardAlbum(const Args& args) {
    WizardArgs w = parseArgs(args);
    if (!w.error.empty()) return fail(w.error);
    const std::string albumPath = wizard::albumPathFor(w.plan.targetDirectory);
    if (dateiVorhanden(albumPath)) return fail("the album exists already: " + albumPath);

    CliPrompter prompter;
    prompter.albumPath = albumPath;
    CliSession cli(prompter, w.lang);
    Session& session = cli.session();
    if (!w.design.empty()) {
        w.plan.design = findDesign(cli.programDirectory(), w.design);
        if (w.plan.design.empty()) return fail("unknown design: " + w.design);
    }
    wizard::WizardCallbacks callbacks;
    callbacks.progress = [](int done, int total, const std::string& page) {
        if (!page.empty()) std::cerr << "page " << done + 1 << "/" << total << ": " << page << "\n";
    };
    // Names under pictures are measured by an estimate: there are no fonts without windows.
    const wizard::WizardResult r = wizard::runWizard(session, w.plan, nullptr, callbacks);
    finishSession(session);
    if (!r.ok) return 1;  // the run has told why
    std::cout << r.albumPath << "\n";
    return 0;
}

}  // namespace brindle::cli
