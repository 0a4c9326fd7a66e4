// The picture index: an album page showing every picture of the album as a
// thumbnail in a grid, each linking to its picture, with a link to its page
// below. The thumbnails go to "BildIndexThumps" beside the album.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "album/records.h"
#include "album/session.h"
#include "html/index_thumbnails.h"

namespace brindle::html {

inline constexpr const char* kIndexThumbFolder = "BildIndexThumps";

struct LabelSize {
    int width = 0;
    int height = 0;
};

struct PictureIndexCallbacks {
    // Each status text, in the order a run on one thread gives them.
    std::function<void(const std::string& status)> status;
    // Asked between pictures; true stops the run with the pictures so far.
    std::function<bool()> cancelled;
    // The size of a one-line label; empty: an estimate from the font size.
    std::function<LabelSize(const FontSpec& font, const std::string& text)> measureText;
    // Threads making thumbnails; 0: one per core.
    int threads = 0;
    // Writes one thumbnail; empty: speichereWebBild.
    ThumbnailWriter writeThumbnail;
};

enum class PictureIndexResult {
    Done,
    Declined,   // an index existed and the user kept it
    Cancelled,  // stopped between pictures; the page holds the pictures so far
    NotSaved,   // the album has no folder for the thumbnails yet
};

struct PictureIndexOutcome {
    PictureIndexResult result = PictureIndexResult::Done;
    int entry = 0;       // the index page in the album list
    int thumbnails = 0;  // pictures on the index
    // "source: reason" for each thumbnail that could not be written.
    std::vector<std::string> failures;
};

// bildIndexErzeugen: makes or rebuilds the index page, at the beginning
// (after a front cover) or at the end (before a back cover).
PictureIndexOutcome bildIndexErzeugen(Session& session, bool atBeginning, const PictureIndexCallbacks& callbacks = {});

// "BildIndex" or "PicIndex", whichever language made the page.
bool isPictureIndexTitle(const std::string& title);

// Where the n-th thumbnail (counted from 1) stands: row from 1, column from 0.
struct IndexCell {
    int row = 0;
    int column = 0;
    int left = 0;
    int top = 0;
};
IndexCell indexCell(int n, int columns, int thumbWidth, int thumbHeight);

// The frame of a source picture as the index shows it: 6 pixels wide, the
// rest kept; empty when the source has no drawn frame.
std::string indexFrameSpec(const std::string& frameSpec);

}  // namespace brindle::html
