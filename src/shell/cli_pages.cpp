// pages: covers, contents and search page added to a saved album.
#include <QGuiApplication>
#include <filesystem>
#include <functional>
#include <iostream>

#include "album/paths.h"
#include "editor/qt_text_metrics.h"
#include "html/special_pages.h"
#include "shell/cli_commands.h"
#include "shell/cli_prompter.h"
#include "shell/cli_session.h"
#include "shell/startup.h"

namespace brindle::cli {
namespace {

struct PagesOptions {
    html::SpecialPagesRequest request;
    int answer = kYes;
    std::vector<std::string> rest;
};

// One line per flag; a flag with a value gets the next argument.
struct Flag {
    const char* name;
    bool takesValue;
    std::function<bool(PagesOptions&, const std::string& value)> set;
};

const std::vector<Flag>& flags() {
    static const std::vector<Flag> table = {
        {"--front", false, [](PagesOptions& o, const std::string&) { return o.request.frontCover = true; }},
        {"--back", false, [](PagesOptions& o, const std::string&) { return o.request.backCover = true; }},
        {"--search", false, [](PagesOptions& o, const std::string&) { return o.request.search = true; }},
        {"--index", false, [](PagesOptions& o, const std::string&) { return o.request.pictureIndex = true; }},
        {"--contents", true,
         [](PagesOptions& o, const std::string& v) {
             o.request.contentsAtBeginning = v == "begin";
             return o.request.contents = v == "begin" || v == "end";
         }},
        {"--yes", false, [](PagesOptions& o, const std::string&) { return (o.answer = kYes) != 0; }},
        {"--no", false, [](PagesOptions& o, const std::string&) { return (o.answer = kNo) != 0; }},
    };
    return table;
}

bool parse(const Args& args, PagesOptions& o) {
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i].rfind("--", 0) != 0) {
            o.rest.push_back(args[i]);
            continue;
        }
        const Flag* flag = nullptr;
        for (const Flag& f : flags())
            if (args[i] == f.name) flag = &f;
        if (!flag || (flag->takesValue && i + 1 >= args.size())) return false;
        if (!flag->set(o, flag->takesValue ? args[++i] : std::string{})) return false;
    }
    const html::SpecialPagesRequest& r = o.request;
    return o.rest.size() == 1 && (r.frontCover || r.backCover || r.contents || r.search || r.pictureIndex);
}

// The pages measure their texts as the page canvas does: with Qt's font
// metrics, here on the offscreen platform so no display is needed.
int measureWithQt(const std::function<int(editor::TextMetrics&)>& work) {
    // Qt's notes about its own set-up (no runtime folder, ...) are no
    // message of ours; stderr carries the album's messages only.
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
        if (type == QtCriticalMsg || type == QtFatalMsg) std::cerr << text.toStdString() << "\n";
    });
    static int argc = 3;
    static char name[] = "brindlesee-cli", platform[] = "-platform", offscreen[] = "offscreen";
    static char* argv[] = {name, platform, offscreen, nullptr};
    QGuiApplication app(argc, argv);
    editor::QtTextMetrics metrics;
    return work(metrics);
}

}  // namespace

int pages(const Args& args) {
    PagesOptions o;
    if (!parse(args, o))
        return fail("usage: brindlesee-cli pages ALBUM.apr [--front] [--back] [--contents end|begin] [--search] "
                    "[--index] [--yes|--no]");
    const std::string album = std::filesystem::absolute(o.rest[0]).lexically_normal().string();
    return measureWithQt([&](editor::TextMetrics& metrics) {
        CliPrompter prompter;
        prompter.answer = o.answer;
        prompter.albumPath = album;
        CliSession cli(prompter);
        Session& session = cli.session();
        if (!session.albumOeffnen(album)) return 1;
        html::GenerationCallbacks cb;
        cb.progress = [](int done, int total, const std::string& status) {
            if (done < total) std::cerr << "[" << done + 1 << "/" << total << "] ";
            std::cerr << status << "\n";
        };
        const int failedBefore = session.failedWrites();
        const bool finished = html::runSpecialPages(session, metrics, o.request, cb);
        const bool saved = session.AlbumSpeichern(false) && session.failedWrites() == failedBefore;
        finishSession(session);
        if (!saved) return fail("the album was not saved: " + album);
        return finished ? 0 : 1;
    });
}

}  // namespace brindle::cli
