// index: the picture index of an album, made and saved without windows.
#include <atomic>
#include <csignal>
#include <filesystem>
#include <iostream>

#include "album/paths.h"
#include "html/picture_index.h"
#include "shell/cli_commands.h"
#include "shell/cli_prompter.h"
#include "shell/cli_session.h"
#include "shell/startup.h"

namespace brindle::cli {
namespace {

std::atomic<bool> interrupted{false};

extern "C" void onInterrupt(int) { interrupted = true; }

}  // namespace

int runPictureIndex(const std::string& albumPath, bool atBeginning, int answer) {
    const std::string album = std::filesystem::absolute(albumPath).lexically_normal().string();
    CliPrompter prompter;
    prompter.answer = answer;
    prompter.albumPath = album;
    CliSession cli(prompter);
    Session& session = cli.session();
    if (!session.albumOeffnen(album)) return 1;

    // Ctrl+C stops between pictures; the album is saved as far as it got.
    interrupted = false;
    auto previous = std::signal(SIGINT, onInterrupt);
    html::PictureIndexCallbacks cb;
    cb.status = [](const std::string& s) { std::cerr << s << "\n"; };
    cb.cancelled = [] { return interrupted.load(); };
    const html::PictureIndexOutcome out = html::bildIndexErzeugen(session, atBeginning, cb);
    std::signal(SIGINT, previous);
    for (const std::string& f : out.failures) std::cerr << "brindlesee-cli: no thumbnail: " << f << "\n";

    int rc = 0;
    if (out.result == html::PictureIndexResult::Declined || out.result == html::PictureIndexResult::NotSaved) {
        rc = out.result == html::PictureIndexResult::NotSaved ? 1 : 0;
    } else {
        const int failedBefore = session.failedWrites();
        if (!session.AlbumSpeichern(false) || session.failedWrites() != failedBefore) rc = 1;
        if (out.result == html::PictureIndexResult::Cancelled) rc = 1;
    }
    finishSession(session);
    return rc;
}

int pictureIndex(const Args& args) {
    std::vector<std::string> rest;
    int answer = kYes;
    bool atBeginning = false, known = true;
    for (const std::string& a : args) {
        if (a == "--yes") answer = kYes;
        else if (a == "--no") answer = kNo;
        else if (a == "--begin") atBeginning = true;
        else if (a == "--end") atBeginning = false;
        else if (a.rfind("--", 0) == 0) known = false;
        else rest.push_back(a);
    }
    if (!known || rest.size() != 1)
        return fail("usage: brindlesee-cli index ALBUM.apr [--begin|--end] [--yes|--no]");
    return runPictureIndex(rest[0], atBeginning, answer);
}

}  // namespace brindle::cli
