// What a page window needs from the main window around it.
#pragma once

#include <QString>
#include <optional>
#include <string>
#include <vector>

#include "album/prompter.h"
#include "editor/elements.h"

namespace brindle::editor {

class FrmNotePad;

class NotePadHost {
public:
    virtual ~NotePadHost() = default;
    // "", "Bild", "Text", "Panorama", "Suchmaschine" or "Bilder".
    virtual QString insertMode() const = 0;
    // The insert mode goes back to normal.
    virtual void insertDone() = 0;
    virtual void showStatus(const QString& text) = 0;
    virtual void showProgress(int value, int maximum) = 0;
    virtual FrmNotePad* activeNotePad() const = 0;
    // The active page's state for the toolbar and menus.
    virtual void pageStateChanged(FrmNotePad* pad) = 0;
    virtual Prompter& prompter() = 0;
    // Play mode: a press on an element follows its link instead of selecting.
    virtual bool playMode() const { return false; }
    virtual void followLink(FrmNotePad* /*pad*/, const QString& /*link*/) {}
    // The property dialog of an element, or of the page itself (background,
    // music, forwarding) when `ref` is empty.
    // A numbered hint about a picture (a metafile's), which the user may switch off.
    virtual void showHint(int /*number*/, const std::string& /*text*/) {}
    virtual void showProperties(FrmNotePad* /*pad*/, std::optional<ElementRef> /*ref*/) {}
    // The album's search for a search element in play mode: the links of
    // the pages found, or nothing when it could not run (and said why).
    virtual std::optional<std::vector<std::string>> searchAlbum(const std::string& /*words*/, bool /*matchCase*/) {
        return std::nullopt;
    }
};

}  // namespace brindle::editor
