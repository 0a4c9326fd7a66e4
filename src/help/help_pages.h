// The help pages: which page belongs to which window, and where a page's
// file lies in the help folder ("de/<id>.html", "en/<id>.html", pictures
// in "images/").
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "album/language.h"

namespace brindle::help {

inline constexpr const char* kIndexPage = "index";

// One window and its page. A window is known by its C++ class name or, for
// classes without their own meta object, by its object name.
struct HelpTopic {
    std::string_view pageId;
    std::string_view className;
    std::string_view objectName;
};

const std::vector<HelpTopic>& helpTopics();

// The page of a window, or "" when the window has none of its own.
// `className` may carry its namespaces ("brindle::editor::FrmNotePad").
std::string pageForWindow(std::string_view className, std::string_view objectName);

// "de" or "en".
const char* languageFolder(Language lang);

// The file of page `id` in `lang`; when that is missing, the file in the
// other language; when both are missing, "". `root` ends in '/'.
std::string helpPageFile(const std::string& root, const std::string& id, Language lang);

// What the viewer shows instead of a page that is not installed.
std::string missingPageHtml(const std::string& id, Language lang);

// Addresses that belong in the desktop's browser, not in the help viewer.
bool isExternalAddress(std::string_view url);

}  // namespace brindle::help
