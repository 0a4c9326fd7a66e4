// video: pictures of one size made into a silent AVI (Motion JPEG) or MP4.
#include <filesystem>
#include <iostream>

#include "media/video_list.h"
#include "media/video_texts.h"
#include "media/video_writer.h"
#include "shell/cli_commands.h"
#include "shell/cli_text.h"
#include "shell/startup.h"

namespace brindle::cli {
namespace {

const char* kVideoUsage = "usage: brindlesee-cli video PICTURE... -o OUT.avi|OUT.mp4 [--fps N]";

struct VideoArgs {
    std::vector<std::string> pictures;
    std::string output;
    media::VideoOptions options;
};

// An empty answer when the arguments are fine, else the message.
std::string parseVideoArgs(const Args& args, VideoArgs& out) {
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "-o" || a == "--fps") {
            if (i + 1 >= args.size()) return kVideoUsage;
            const std::string& value = args[++i];
            if (a == "-o") {
                out.output = value;
                continue;
            }
            int n = 0;
            if (!parseInt(value, n) || n < media::kMinFps || n > media::kMaxFps)
                return "fps must be a number from 1 to 30: " + value;
            out.options.fps = n;
        } else if (a.size() > 1 && a[0] == '-') {
            return "unknown option: " + a;
        } else {
            out.pictures.push_back(a);
        }
    }
    if (out.pictures.empty() || out.output.empty()) return kVideoUsage;
    if (!media::videoKindFor(out.output)) return media::videoTypeMessage(Language::English).text;
    return {};
}

// The bitmaps in order, each checked against the first; the message of the
// first picture refused, with its path.
std::string collectBitmaps(const std::vector<std::string>& pictures, media::VideoList& list) {
    const std::string programDirectory = resolveProgramDirectory();
    std::error_code ec;
    std::filesystem::create_directories(programDirectory, ec);
    const media::ProvidedBitmaps provided = media::provideBitmaps(
        pictures, programDirectory, Language::English,
        [](const std::string& line) { std::cerr << line << "\n"; });
    if (!provided.messages.empty())
        return provided.messages.front().text + " (" + provided.refused.front() + ")";
    // Nothing was left out, so the bitmaps stand in the pictures' order.
    for (std::size_t i = 0; i < provided.bitmaps.size(); ++i)
        if (auto refused = list.add(provided.bitmaps[i], Language::English))
            return refused->text + " (" + pictures[i] + ")";
    return {};
}

}  // namespace

int video(const Args& args) {
    VideoArgs parsed;
    if (const std::string wrong = parseVideoArgs(args, parsed); !wrong.empty()) return fail(wrong);
    for (const std::string& p : parsed.pictures)
        if (!std::filesystem::is_regular_file(p)) return fail("file not found: " + p);
    media::VideoList list;
    if (const std::string refused = collectBitmaps(parsed.pictures, list); !refused.empty())
        return fail(refused);
    media::VideoCallbacks callbacks;
    callbacks.status = [](const std::string& line) { std::cerr << line << "\n"; };
    const media::VideoResult result =
        media::writeVideo(list.paths(), parsed.output, parsed.options, Language::English, callbacks);
    if (!result.ok) return fail(result.message ? result.message->text : "nothing written");
    std::cerr << "wrote " << parsed.output << " (" << result.frames << " frames, " << result.codec
              << ", " << parsed.options.fps << " fps)\n";
    return 0;
}

}  // namespace brindle::cli
