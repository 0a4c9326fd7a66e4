// The useful pages an album can be given: front and back cover, table of
// contents and search page. They are ordinary pages of the album, made from
// its data and editable afterwards.
#pragma once

#include <string>

#include "album/session.h"
#include "editor/text_fit.h"
#include "html/generation_run.h"

namespace brindle::html {

// Which pages to make; the run makes them in the order of the members'
// steps in runSpecialPages, not in this order.
struct SpecialPagesRequest {
    bool frontCover = false;
    bool backCover = false;
    bool contents = false;
    bool contentsAtBeginning = false;  // otherwise at the end
    bool search = false;
    bool pictureIndex = false;  // at the contents' place
};

class SpecialPages {
public:
    SpecialPages(Session& session, editor::TextMetrics& metrics) : s_(session), metrics_(metrics) {}

    // Each returns false when it made nothing (an existing page kept).
    bool umschlagVorne();
    bool umschlagHinten();
    bool inhalt(bool atBeginning);
    bool suchseite();

    // The list title of the front cover: the existing page's, else the language's.
    std::string vorneName() const;

private:
    struct Target {
        int index = 0;  // list entry, 0 when nothing is to be made
        int slot = 0;
        bool made = false;  // a new page at the end of the list
    };
    // The page titled `de` or `en`: asks before it is rebuilt; otherwise a
    // new page at the end of the list, moved to `place` by the caller.
    Target existingOrNew(const char* de, const char* en, const std::string& questionDe,
                         const std::string& questionEn);
    // A text element measured in `font`, at `top`, `left`; returns its height.
    int addText(int slot, int top, int left, FontSpec font, const std::string& text, const std::string& link);
    void finish(int slot);
    const char* t(const char* de, const char* en) const { return tr(s_.language(), de, en); }

    Session& s_;
    editor::TextMetrics& metrics_;
};

// Makes the pages the request names, in the order picture index, contents,
// front cover, search page, back cover, with a status text before each.
// Returns false when cancelled (between pages, or between the index's
// pictures); what was made stays in the album.
bool runSpecialPages(Session& session, editor::TextMetrics& metrics, const SpecialPagesRequest& request,
                     const GenerationCallbacks& callbacks = {});

}  // namespace brindle::html
