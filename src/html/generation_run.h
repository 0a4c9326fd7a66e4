// The generation run: a saved album becomes a directory of HTML, page by
// page, then the frameset and menu, and in mail mode a ZIP archive.
#pragma once

#include <functional>
#include <string>

#include "html/html_run.h"

namespace brindle::html {

struct GenerationCallbacks {
    // Called before each step with the steps done, their total and the status text.
    std::function<void(int done, int total, const std::string& status)> progress;
    // Asked between pages; true stops the run (what was written stays).
    std::function<bool()> cancelled;
};

// The directory the choice dialog offers. In mail mode an album directory
// taken as the mail directory also marks the album modified.
std::string offeredDirectory(Session& session, bool mailMode);

// Runs the generation into `outputDirectory` (ends in '/'). Returns false
// when cancelled. `run` receives the file list for the caller, and counts in
// `failedWrites` the files that could not be written.
bool generiereAlbum(HtmlRun& run, const GenerationCallbacks& callbacks = {});

// Mail mode: the file list of the archive, in order.
std::vector<std::string> mailFileList(const HtmlRun& run);
// Packs the list into "bs" + title + ".zip"; false after a message.
bool zipAlbum(HtmlRun& run, std::vector<std::string>& fileList, const std::string& zipPath,
              const std::string& baseDirectory, const std::string& ignoreEndings);
// The archive "bs" + title + ".zip" and the frameset title + ".html" in the
// output folder, under the title's safe file name.
std::string mailArchivePath(const HtmlRun& run);
std::string framesetPath(const HtmlRun& run);
// The mailto: URL that opens the default mail program with the archive.
std::string mailtoUrl(const HtmlRun& run);

}  // namespace brindle::html
