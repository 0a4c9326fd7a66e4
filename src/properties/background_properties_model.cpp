#include "properties/background_properties_model.h"

#include <filesystem>
#include <functional>
#include <system_error>

#include "album/session.h"

namespace fs = std::filesystem;

namespace brindle::properties {

namespace {

bool sameDirectory(const fs::path& a, const fs::path& b) {
    std::error_code ec;
    if (fs::exists(a, ec) && fs::exists(b, ec)) return fs::equivalent(a, b, ec);
    return a.lexically_normal() == b.lexically_normal();
}

// Calls `change` on the record of every page of the album: open pages in
// their slot (returned for redrawing), closed ones read hidden, changed and
// written back through the page flows.
std::vector<int> forEveryPage(Session& s, const std::function<void(PageRecord&)>& change) {
    std::vector<int> open;
    AlbumRecord& a = s.album();
    for (int i = 1; i <= a.pages.upper(); ++i) {
        if (int slot = a.pages[i].slot; slot > 0) {
            change(s.page(slot));
            s.state().pageSlots[slot].modified = kTrue;
            open.push_back(slot);
            continue;
        }
        if (!s.SeiteOeffnen(i, "", true)) continue;
        const int slot = a.pages[i].slot;
        if (slot == 0) continue;
        change(s.page(slot));
        s.state().pageSlots[slot].modified = kTrue;
        s.SpeicherDieseFormNeu(slot);
        if (PageEditor* e = s.editor(slot)) e->unload();
        s.seiteGeschlossen(slot);
    }
    return open;
}

void addSlot(std::vector<int>& slots, int slot) {
    for (int s : slots)
        if (s == slot) return;
    slots.push_back(slot);
}

}  // namespace

BackgroundProperties backgroundPropertiesOf(Session& session, int slot) {
    const PageRecord& page = session.page(slot);
    BackgroundProperties p;
    p.background = page.background;
    p.backgroundColor = page.backgroundColor;
    p.music = page.music;
    p.forwardSeconds = page.props.ext.extLong[0];
    p.title = page.title;
    p.description = page.description;
    p.copyIntoAlbum = isTrue(session.state().options.backgroundCopy);
    return p;
}

std::string copyIntoDirectory(const std::string& file, const std::string& albumDirectory, std::string& error) {
    error.clear();
    if (file.empty() || albumDirectory.empty()) return file;
    const fs::path source(file);
    if (sameDirectory(source.parent_path(), fs::path(albumDirectory))) return file;
    const fs::path target = fs::path(albumDirectory) / source.filename();
    std::error_code ec;
    fs::copy_file(source, target, fs::copy_options::overwrite_existing, ec);
    if (ec) {
        error = ec.message();
        return file;
    }
    return target.string();
}

BackgroundOutcome applyBackgroundProperties(Session& s, int slot, const BackgroundProperties& p) {
    BackgroundOutcome out;
    s.state().options.backgroundCopy = p.copyIntoAlbum ? kTrue : kFalse;
    std::string background = p.background;
    if (p.copyIntoAlbum) {
        std::string error;
        background = copyIntoDirectory(p.background, s.album().directory, error);
        if (!error.empty()) {
            const Language l = s.language();
            s.prompter().message(tr(l, "Die Datei konnte nicht in das Albumverzeichnis kopiert werden:\n",
                                    "The file could not be copied into the album directory:\n") +
                                     p.background + "\n" + error,
                                 kButtonsOk | kIconExclamation, tr(l, "Fehler", "Error"));
        }
    }
    AlbumRecord& a = s.album();
    if (p.allPages) {
        a.pageDefaults.background = background;
        a.pageDefaults.backgroundColor = p.backgroundColor;
        for (int open : forEveryPage(s, [&](PageRecord& r) {
                 r.background = background;
                 r.backgroundColor = p.backgroundColor;
             }))
            addSlot(out.redrawSlots, open);
        a.modified = kTrue;
        out.changed = true;
    }
    if (p.allPagesForwarding) {
        autoForwardSeconds(a.pageDefaults.props) = p.forwardSeconds;
        for (int open : forEveryPage(s, [&](PageRecord& r) { autoForwardSeconds(r.props) = p.forwardSeconds; }))
            addSlot(out.redrawSlots, open);
        a.modified = kTrue;
        out.changed = true;
    }
    PageRecord& page = s.page(slot);
    if (autoForwardSeconds(page.props) != p.forwardSeconds || page.background != background ||
        page.backgroundColor != p.backgroundColor || page.music != p.music) {
        autoForwardSeconds(page.props) = p.forwardSeconds;
        page.background = background;
        page.backgroundColor = p.backgroundColor;
        page.music = p.music;
        s.state().pageSlots[slot].modified = kTrue;
        a.modified = kTrue;
        addSlot(out.redrawSlots, slot);
        out.changed = true;
    }
    if (page.title != p.title || page.description != p.description) {
        page.title = p.title;
        page.description = p.description;
        s.state().pageSlots[slot].modified = kTrue;
        out.changed = true;
    }
    return out;
}

}  // namespace brindle::properties
