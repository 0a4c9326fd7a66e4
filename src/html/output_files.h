// Files the generation puts into its output folder: copies are atomic (read
// whole, written beside the target, renamed), and a failed write is
// reported and counted, so the run knows it is not complete.
#pragma once

#include <string>

#include "html/html_run.h"

namespace brindle::html {

// Copies `from` to `to` through a file beside `to`; false with `error` set.
bool copyFileAtomic(const std::string& from, const std::string& to, std::string& error);

// Shows "Fehler beim Kopieren der Datei: " with the source and the error
// text, and counts the failed write.
void reportCopyFailure(HtmlRun& run, const std::string& source, const std::string& error);

// Whether `path` lies inside `folder` once links and ".." are resolved.
bool liesInside(const std::string& path, const std::string& folder);

}  // namespace brindle::html
