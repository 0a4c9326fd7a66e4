// The search of the HTML album: the form in a page, the data file
// "daten.js" built from the saved page files, and the search in the program.
#pragma once

#include <string>
#include <vector>

#include "html/page_html.h"

namespace brindle::html {

// The block of a search element; also writes daten.js and copies the search script.
std::string searchBlock(PageBuild& b, int index);

std::string suchFormular(int y, int x, Language lang);

// daten.js of the album into `directory`; false after a message.
bool datenbankSchreiben(Session& session, const std::string& directory);
// The text of daten.js for the album's saved pages.
std::string datenbankText(Session& session);

// Searches the album's daten.js for `input`; returns the page files that
// match every word (or none when a message was shown).
std::vector<std::string> sucheImAlbum(Session& session, const std::string& input, bool matchCase);

}  // namespace brindle::html
