// thumbs: fills the picture explorer's thumbnail cache for a folder with
// the explorer's own code, on its worker threads.
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <mutex>

#include "album/paths.h"
#include "explorer/cache_folder.h"
#include "explorer/thumbnail_pool.h"
#include "shell/cli_commands.h"
#include "shell/cli_text.h"
#include "shell/startup.h"

namespace brindle::cli {
namespace {

namespace fs = std::filesystem;

constexpr const char* kThumbsUsage =
    "usage: brindlesee-cli thumbs FOLDER [--size N] [--threads N] [--english|--german]";

struct ThumbsArgs {
    std::string folder;
    int size = explorer::kDefaultThumbnailSize;
    int threads = 0;
    Language language = Language::English;
};

bool parseCount(const std::string& s, int low, int high, int& value) {
    return parseInt(s, value) && value >= low && value <= high;
}

bool parseThumbs(const Args& args, ThumbsArgs& t) {
    std::vector<std::string> rest;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        const bool hasValue = i + 1 < args.size();
        if (a == "--size" && hasValue) {
            if (!parseCount(args[++i], 1, explorer::kMaxThumbnailSize, t.size)) return false;
        } else if (a == "--threads" && hasValue) {
            if (!parseCount(args[++i], 1, 64, t.threads)) return false;
        } else if (a == "--english" || a == "--german") {
            t.language = a == "--german" ? Language::German : Language::English;
        } else if (a.rfind("--", 0) == 0) {
            return false;
        } else {
            rest.push_back(a);
        }
    }
    if (rest.size() != 1) return false;
    t.folder = rest[0];
    return true;
}

// The pictures and media files the explorer lists, by name.
std::vector<std::string> listedFiles(const std::string& folder) {
    std::vector<std::string> files;
    std::error_code ec;
    for (const fs::directory_entry& e : fs::directory_iterator(folder, ec)) {
        std::error_code typeError;
        if (e.is_regular_file(typeError) && hasMediaSuffix(e.path().filename().string()))
            files.push_back(e.path().string());
    }
    std::sort(files.begin(), files.end());
    return files;
}

// What the run made, counted as the results come in.
struct Tally {
    std::mutex mutex;
    std::size_t total = 0, done = 0;
    int made = 0, cached = 0, media = 0, failed = 0, told = 0;

    void take(const explorer::ThumbnailResult& r) {
        std::lock_guard lock(mutex);
        ++done;
        const explorer::Thumbnail& t = r.thumbnail;
        if (t.kind == explorer::ThumbnailKind::Media)
            ++media;
        else if (t.kind == explorer::ThumbnailKind::Error)
            ++failed;
        else if (t.fromCache)
            ++cached;
        else
            ++made;
        std::cerr << "[" << done << "/" << total << "] " << r.path << "\n";
        if (t.kind == explorer::ThumbnailKind::Error)
            std::cerr << "brindlesee-cli: cannot read: " << r.path << "\n";
        if (t.message) {
            std::cerr << "brindlesee-cli: " << blankLineBreaks(t.message->text) << r.path << "\n";
            ++told;
        }
    }
};

}  // namespace

int thumbs(const Args& args) {
    ThumbsArgs t;
    if (!parseThumbs(args, t)) return fail(kThumbsUsage);
    std::error_code ec;
    if (!fs::is_directory(t.folder, ec)) return fail("no such folder: " + t.folder);
    const std::string folder =
        withTrailingSeparator(fs::absolute(t.folder).lexically_normal().string());
    const std::string programDirectory = resolveProgramDirectory();

    explorer::ThumbnailSettings settings;
    settings.size = t.size;
    settings.language = t.language;
    settings.log = diagnoseSink(programDirectory);
    const explorer::ThumbnailCache cache(programDirectory, settings);
    Tally tally;
    const std::vector<std::string> files = listedFiles(folder);
    tally.total = files.size();
    {
        explorer::ThumbnailPool pool([&](const std::string& p) { return cache.get(p); },
                                     [&](explorer::ThumbnailResult&& r) { tally.take(r); },
                                     t.threads);
        pool.setFolder(files);
        pool.waitIdle();
    }
    std::cerr << files.size() << " files: " << tally.made << " made, " << tally.cached
              << " from the cache, " << tally.media << " media, " << tally.failed
              << " unreadable\n";
    std::cout << explorer::thumbnailFolder(programDirectory, folder) << "\n";
    return tally.failed == 0 && tally.told == 0 ? 0 : 1;
}

}  // namespace brindle::cli
