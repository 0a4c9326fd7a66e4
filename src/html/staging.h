// Links and files of the generated album: loeseLink turns a hyperlink into
// a URL, stelleDateiBereit brings a file into the output directory (copied,
// or rewritten for the web) and returns the name to write into the HTML.
#pragma once

#include <string>

#include "html/html_run.h"

namespace brindle::html {

struct StageRequest {
    std::string source;
    std::string htmlPath;
    bool reduce = false;
    int width = 0, height = 0;
    int pictureWidth = 0, pictureHeight = 0;
    bool doNotWrite = false;
    std::string frameSpec, animationSpec;
    int rotation = 0;
    int boxWidth = 0, boxHeight = 0;
};

std::string stelleDateiBereit(HtmlRun& run, const StageRequest& r);

struct LinkRequest {
    std::string link;
    std::string htmlPath;
    int pageIndex = 0;     // the page's place in the album list, 0 when none
    const PageRecord* page = nullptr;  // the page being written
    int elementIndex = 0;              // its picture element for "<vollbild>"
    int width = 0, height = 0, pictureWidth = 0, pictureHeight = 0;
};

std::string loeseLink(HtmlRun& run, const LinkRequest& r);

// Names of the special pages as the album has them, else in the session's language.
std::string inhaltTitel(const Session& s);
std::string suchenTitel(const Session& s);

}  // namespace brindle::html
