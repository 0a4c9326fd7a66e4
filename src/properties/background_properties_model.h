// What frmFrageHintergrund edits of a page, without windows: background
// picture or colour, music, automatic forwarding, title and description,
// and the rules that copy the picture into the album folder and carry
// picture, colour and forwarding to every page of the album.
#pragma once

#include <string>
#include <vector>

#include "album/records.h"

namespace brindle {
class Session;
}

namespace brindle::properties {

struct BackgroundProperties {
    std::string background;  // empty: the colour applies
    Color backgroundColor = 0;
    std::string music;
    int forwardSeconds = 0;  // 0 never, negative goes back
    std::string title;
    std::string description;
    bool copyIntoAlbum = false;       // remembered in the options
    bool allPages = false;            // picture and colour
    bool allPagesForwarding = false;  // the forwarding seconds

    bool operator==(const BackgroundProperties&) const = default;
};

BackgroundProperties backgroundPropertiesOf(Session& session, int slot);

struct BackgroundOutcome {
    bool changed = false;           // this page or others were changed
    std::vector<int> redrawSlots;   // open pages whose record changed
};

// OK of the dialog. Pages of the album that are closed are read, changed
// and written at once (Cancel can't take that back).
BackgroundOutcome applyBackgroundProperties(Session& session, int slot, const BackgroundProperties& p);

// The path of `file` copied into `albumDirectory`, or `file` when it is
// already there or cannot be copied (then `error` says why).
std::string copyIntoDirectory(const std::string& file, const std::string& albumDirectory, std::string& error);

}  // namespace brindle::properties
