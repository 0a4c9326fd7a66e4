// new and add-page: album flows without questions.
#include <filesystem>

#include "album/paths.h"
#include "shell/cli_commands.h"
#include "shell/cli_prompter.h"
#include "shell/cli_session.h"
#include "shell/startup.h"

namespace brindle::cli {
namespace {

struct FlowOptions {
    Args rest;
    int answer = kYes;
    Language lang = Language::German;
    bool ok = true;
};

FlowOptions parseFlowOptions(const Args& args) {
    FlowOptions f;
    for (const std::string& a : args) {
        if (a == "--yes") f.answer = kYes;
        else if (a == "--no") f.answer = kNo;
        else if (a == "--english") f.lang = Language::English;
        else if (a == "--german") f.lang = Language::German;
        else if (a.rfind("--", 0) == 0) f.ok = false;
        else f.rest.push_back(a);
    }
    return f;
}

std::string absolute(const std::string& p) { return std::filesystem::absolute(p).lexically_normal().string(); }

// Runs `flow` on a session of the user's program directory and ends it.
template <class Flow>
int withSession(const FlowOptions& f, const std::string& albumPath, Flow flow) {
    CliPrompter prompter;
    prompter.answer = f.answer;
    prompter.albumPath = albumPath;
    CliSession cli(prompter, f.lang);
    const int rc = flow(cli.session());
    finishSession(cli.session());
    return rc;
}

}  // namespace

int newAlbum(const Args& args) {
    FlowOptions f = parseFlowOptions(args);
    if (!f.ok || f.rest.size() != 1 || !endsWithNoCase(f.rest[0], ".apr"))
        return fail("usage: brindlesee-cli new ALBUM.apr [--english|--german]");
    const std::string path = absolute(f.rest[0]);
    if (dateiVorhanden(path)) return fail("the album exists already: " + path);
    return withSession(f, path, [&](Session& s) {
        return s.AlbumSpeichern(true) && s.failedWrites() == 0 && dateiVorhanden(path)
                   ? 0
                   : fail("the album was not saved: " + path);
    });
}

int addPage(const Args& args) {
    FlowOptions f = parseFlowOptions(args);
    if (!f.ok || f.rest.size() != 2)
        return fail("usage: brindlesee-cli add-page ALBUM.apr PAGE.apg [--yes|--no] [--english|--german]");
    const std::string album = absolute(f.rest[0]), page = absolute(f.rest[1]);
    return withSession(f, album, [&](Session& s) {
        if (!s.albumOeffnen(album)) return 1;
        if (!s.SeiteOeffnen(0, page, true)) return 1;
        // A write that failed has told why; the status must say so too.
        const int failedBefore = s.failedWrites();
        return s.AlbumSpeichern(false) && s.failedWrites() == failedBefore ? 0 : 1;
    });
}

}  // namespace brindle::cli
