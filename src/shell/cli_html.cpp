// html: a saved album becomes a browsable HTML directory.
#include <unistd.h>

#include <filesystem>
#include <iostream>

#include "album/paths.h"
#include "html/generation_run.h"
#include "html/web_picture.h"
#include "shell/cli_commands.h"
#include "shell/cli_prompter.h"
#include "shell/cli_session.h"
#include "shell/startup.h"

namespace brindle::cli {
namespace {

// Answers the overwrite question from --overwrite, on a terminal by asking,
// else with no.
class HtmlPrompter : public CliPrompter {
public:
    std::string overwrite;  // "all", "none" or empty
    int askYesNoAll(const std::string& text, const std::string& title) override {
        if (overwrite == "all") return kYesToAll;
        if (overwrite == "none") return kNoToAll;
        if (!::isatty(STDIN_FILENO)) return kNo;
        std::string line = text;
        for (char& c : line)
            if (c == '\r') c = '\n';
        std::cerr << title << ": " << line << "\n[y]es / [n]o / [a]ll / n[o]ne? " << std::flush;
        std::string answer;
        std::getline(std::cin, answer);
        if (answer == "y" || answer == "yes") return kYes;
        if (answer == "a" || answer == "all") return kYesToAll;
        if (answer == "o" || answer == "none") return kNoToAll;
        return kNo;
    }
};

}  // namespace

int html(const Args& args) {
    std::vector<std::string> rest;
    bool mail = false;
    HtmlPrompter prompter;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--mail") mail = true;
        else if (args[i] == "--overwrite" && i + 1 < args.size()) prompter.overwrite = args[++i];
        else rest.push_back(args[i]);
    }
    if (rest.size() != 2 || !(prompter.overwrite.empty() || prompter.overwrite == "all" || prompter.overwrite == "none"))
        return fail("usage: brindlesee-cli html ALBUM.apr OUTDIR [--mail] [--overwrite all|none]");
    const std::string album = std::filesystem::absolute(rest[0]).lexically_normal().string();
    const std::string out = withTrailingSeparator(std::filesystem::absolute(rest[1]).lexically_normal().string());
    std::error_code ec;
    std::filesystem::create_directories(out, ec);
    if (ec) return fail("Could not create the directory: " + out + " " + ec.message());

    CliSession cli(prompter);
    Session& session = cli.session();
    if (!session.albumOeffnen(album)) return 1;

    html::HtmlRun run(session, out, html::defaultPictureServices());
    run.mailMode = mail;
    html::GenerationCallbacks cb;
    cb.progress = [](int done, int total, const std::string& status) {
        if (!status.empty()) std::cerr << "[" << done + 1 << "/" << total << "] " << status << "\n";
    };
    const bool finished = html::generiereAlbum(run, cb);
    if (mail) std::cerr << html::mailtoUrl(run) << "\n";
    const std::string frameset = html::framesetPath(run);
    finishSession(session);
    if (!finished) return 1;
    // An album with files missing is no album to open: no path, status 1.
    if (run.failedWrites > 0)
        return fail("the HTML album is incomplete: " + std::to_string(run.failedWrites) +
                    " file(s) could not be written in " + out);
    std::cout << frameset << "\n";
    return 0;
}

}  // namespace brindle::cli
