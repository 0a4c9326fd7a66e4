// One album page as one HTML file of absolutely positioned blocks.
#pragma once

#include <string>

#include "html/html_run.h"

namespace brindle::html {

// What the element writers share while one page is built.
struct PageBuild {
    HtmlRun& run;
    PageRecord& page;
    int pageIndex;          // place in the album list, 0 when none
    std::string htmlPath;   // the file being written
    std::string bodyTag;
    std::string searchScripts;
};

// Writes the page of `slot` to `path`; the album's `pageIndex`-th page.
// Errors are collected and shown at the checkpoints; false when the file
// could not be written at all.
bool schreibeSeiteHTML(HtmlRun& run, const std::string& path, int slot, int pageIndex);

// The opening span of a text in its font.
std::string styleOpening(const FontSpec& font);

// Blocks of pictures and panoramas (applets or plain pictures).
std::string pictureBlock(PageBuild& b, int index);
std::string panoramaBlock(PageBuild& b, int index);

// Shows and clears a deferred error, if any.
void checkDeferredError(HtmlRun& run, const std::string& path);

}  // namespace brindle::html
