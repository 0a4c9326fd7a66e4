// The album wizard without windows: a whole album made in one go from a
// design picture, named pages with their pictures placed in rows by the
// album's insert settings, one frame for every picture, and a target folder.
// The wizard window and `brindlesee-cli wizard` both end here.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "album/language.h"
#include "album/session.h"
#include "editor/text_fit.h"
#include "properties/picture_specs.h"

namespace brindle::editor {
class PageDocument;
}

namespace brindle::wizard {

// The designs live as "*.jpg" in this folder of the program directory.
inline constexpr const char* kDesignFolder = "vorlagen/";
// The canvas width the "as in view" wrap tests against: there is no window.
inline constexpr int kViewWidth = 800;

struct WizardPage {
    std::string name;
    std::vector<std::string> pictures;  // full paths, in the order they are placed
};

struct WizardPlan {
    std::string targetDirectory;  // created when missing
    std::string design;           // full path of the design picture; empty keeps the template's
    std::vector<WizardPage> pages;
    properties::FrameSettings frame;  // frame.on false: no frame
};

struct WizardCallbacks {
    // Before each page: pages done so far, all pages, the page's name.
    std::function<void(int done, int total, const std::string& page)> progress;
    // Asked before each page, after its progress; true stops the run with the pages done so far.
    std::function<bool()> cancelled;
    // The document a page window already keeps for `slot`, so its view and
    // undo follow; null (or no hook) lays the page out on a document of its own.
    std::function<editor::PageDocument*(int slot)> documentFor;
};

struct WizardResult {
    bool ok = false;
    bool cancelled = false;
    int pagesWritten = 0;
    std::string albumPath;  // written album; empty when nothing was written
    std::string error;      // the message told through the prompter
};

// "WSeite" or "Page_W" with the running number.
std::string pageName(Language lang, int number);
// `picturesDirectory` + "MeinAlbum", with 1, 2, ... appended while such a folder exists.
std::string defaultTargetDirectory(const std::string& picturesDirectory);
// The design folder of the program directory, created when missing.
std::string designDirectory(const std::string& programDirectory);
// File names of the designs ("*.jpg", any case), sorted.
std::vector<std::string> listDesigns(const std::string& programDirectory);
// The album file of a target folder: the folder's own name plus ".apr".
std::string albumPathFor(const std::string& targetDirectory);
// What stands wrong in a plan before anything is written; empty when it can run.
std::string checkPlan(const WizardPlan& plan, Language lang);

// Makes a new album in the session (the current one is asked about as
// "new album" asks), lays out every wizard page and writes each page and
// the album into the target folder. After every page the album on disk
// lists exactly the pages written so far, so a cancel or an error leaves a
// valid album of those pages (or nothing, before the first page).
WizardResult runWizard(Session& session, const WizardPlan& plan, editor::TextMetrics* metrics,
                       const WizardCallbacks& callbacks = {});

}  // namespace brindle::wizard
