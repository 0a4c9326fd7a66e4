// The one session: the open album, the page records by slot, the slot
// flags and the open page editors, all indexed by the same slot number.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "album/dyn_array.h"
#include "album/language.h"
#include "album/options.h"
#include "album/page_editor.h"
#include "album/records.h"

namespace brindle {

// Elements copied or cut, kept when the page they came from closes.
struct ElementClipboard {
    DynArray<PictureElement> pictures;
    DynArray<TextElement> texts;
    DynArray<PanoramaElement> panoramas;
    DynArray<SearchElement> searchBoxes;
    DynArray<StackEntry> stack;
};

struct SessionState {
    FileHead head;
    AlbumRecord album;
    DynArray<PageRecord> pageRecords;                  // by slot; slot 0 is a dummy
    DynArray<PageSlot> pageSlots;                      // same indices
    std::vector<std::unique_ptr<PageEditor>> pageEditors;  // same indices; null where none
    OptionsRecord options;
    std::string programDirectory;  // ends in '/'
    Language language = Language::German;
    bool testMode = false;
    std::string lastAlbumDirectory;
    std::string pictureDirectory;
    std::string lastAlbumPath;
    std::vector<std::string> recentFiles;  // as shown in the menu, newest first
    std::string startMode;
    int answer = 0;  // last answer of the unsaved-files question: 6, 7 or 2
    ElementClipboard clipboard;
};

}  // namespace brindle
