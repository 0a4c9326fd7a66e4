// The album's entry document: the frameset, the fallback menu and the
// tree menu's configuration, with the installed menu files copied beside.
#pragma once

#include <string>

#include "html/html_run.h"

namespace brindle::html {

std::string framesetText(const AlbumRecord& album);
std::string menuText(HtmlRun& run);
std::string codeText(const AlbumRecord& album);

// The menu pictures the run copies, in copy order.
extern const char* const kMenuPictures[11];

// Writes T.html, menu.html and code.html and copies the menu files; every
// path joins the run's file list.
void schreibeMenue(HtmlRun& run);

}  // namespace brindle::html
