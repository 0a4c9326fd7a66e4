#include "album/recovery_flow.h"

#include <algorithm>
#include <vector>

#include "album/paths.h"

namespace brindle {

namespace {

constexpr const char* kTitle = "Brindlesee";

std::string albumPathOf(const AlbumRecord& a) { return a.fileName.empty() ? std::string{} : a.directory + a.fileName; }

// The list entry the checkpoint belongs to: the same page file, or for a
// page never saved an entry of its title without a file; 0 when none.
int matchingEntry(const AlbumRecord& a, const CheckpointInfo& info) {
    for (int i = 1; i <= a.pages.upper(); ++i) {
        const PageEntry& e = a.pages[i];
        if (info.pageFile.empty() ? e.fileName.empty() && e.title == info.title
                                  : !e.fileName.empty() && e.directory + e.fileName == info.pageFile)
            return i;
    }
    return 0;
}

std::string question(Language lang, const std::vector<Checkpoint>& pages) {
    const bool de = lang == Language::German;
    std::string album = pages.front().info.albumPath;
    if (!album.empty()) {
        std::string dir, name;
        teilePfad(album, dir, name);
        album = name;
    }
    std::string text = de ? "Brindlesee wurde nicht normal beendet.\r\r" : "Brindlesee was not ended normally.\r\r";
    if (album.empty())
        text += de ? "In einem neuen, noch nicht gespeicherten Album hatten diese Seiten ungespeicherte Änderungen:"
                   : "In a new album, not saved yet, these pages had unsaved changes:";
    else
        text += de ? "Im Album \"" + album + "\" hatten diese Seiten ungespeicherte Änderungen:"
                   : "In the album \"" + album + "\" these pages had unsaved changes:";
    for (const Checkpoint& c : pages) text += "\r    " + c.info.title;
    text += de ? "\r\rSollen sie wiederhergestellt werden? Bei Nein werden diese Änderungen verworfen."
               : "\r\rRestore them? No discards these changes.";
    return text;
}

// Opens the page of a checkpoint (its list entry, or a new one) and gives it
// the checkpoint's contents; the page stays changed until the user saves it.
void restorePage(Session& s, const Checkpoint& c, PageCheckpoints& checkpoints) {
    AlbumRecord& a = s.album();
    int index = matchingEntry(a, c.info);
    int slot = 0;
    if (index == 0) {
        slot = s.neueSeite(c.info.title, false);
        index = s.entryOfSlot(slot);
        if (index && !c.info.pageFile.empty())
            teilePfad(c.info.pageFile, a.pages[index].directory, a.pages[index].fileName);
    } else if (a.pages[index].slot > 0) {
        slot = a.pages[index].slot;
    } else {
        const std::string title = a.pages[index].title;
        slot = s.neueSeite(title, true);
        a.pages[index].slot = static_cast<std::int16_t>(slot);
        if (PageEditor* e = s.editor(slot)) {
            e->setCaption(title);
            e->setRemoveMenuText(s.language() == Language::German ? title + " entfernen" : "Delete " + title);
        }
    }
    s.page(slot) = c.page;
    s.state().pageSlots[slot].modified = kTrue;
    if (PageEditor* e = s.editor(slot)) e->show();
    checkpoints.markDirty(slot);
}

}  // namespace

// ---------------------------------------------------------------- checkpoints

PageCheckpoints::PageCheckpoints(Session& session)
    : session_(session), run_(session.state().programDirectory) {}

bool PageCheckpoints::start() { return run_.start(); }

void PageCheckpoints::end() {
    std::lock_guard lock(mutex_);
    dirty_.clear();
    run_.end();
}

void PageCheckpoints::markDirty(int slot) {
    std::lock_guard lock(mutex_);
    dirty_.insert(slot);
}

bool PageCheckpoints::hasDirty() const {
    std::lock_guard lock(mutex_);
    return !dirty_.empty();
}

void PageCheckpoints::forget(int slot) {
    std::lock_guard lock(mutex_);
    dirty_.erase(slot);
    run_.removeCheckpoint(slot);
}

// Album pages only: template pages live in the album's defaults, which the
// album file keeps.
bool PageCheckpoints::wantsCheckpoint(int slot) const {
    const SessionState& s = session_.state();
    return slot >= 1 && slot <= s.pageSlots.upper() && !isTrue(s.pageSlots[slot].free) &&
           isTrue(s.pageSlots[slot].modified) && session_.entryOfSlot(slot) != 0;
}

CheckpointInfo PageCheckpoints::infoOf(int slot) const {
    const AlbumRecord& a = session_.state().album;
    const PageEntry& e = a.pages[session_.entryOfSlot(slot)];
    CheckpointInfo info;
    info.albumPath = albumPathOf(a);
    info.pageFile = e.fileName.empty() ? std::string{} : e.directory + e.fileName;
    info.title = e.title;
    info.slot = slot;
    return info;
}

void PageCheckpoints::flush() {
    std::set<int> slots;
    {
        std::lock_guard lock(mutex_);
        slots.swap(dirty_);
    }
    for (int slot : slots) {
        std::lock_guard lock(mutex_);
        if (!wantsCheckpoint(slot)) {
            run_.removeCheckpoint(slot);
            continue;
        }
        std::string error;
        if (!run_.writeCheckpoint(infoOf(slot), session_.page(slot), error) && run_.started())
            logLine(session_.log(), "Sicherung der Seite " + std::to_string(slot) + " fehlgeschlagen: " + error);
    }
}

// ---------------------------------------------------------------- after a crash

int offerRecovery(Session& session, PageCheckpoints& checkpoints) {
    const std::string& home = session.state().programDirectory;
    CrashedRuns crashed = findCrashedRuns(home);
    if (crashed.runDirectories.empty()) return 0;
    const bool de = session.language() == Language::German;
    Prompter& prompter = session.prompter();
    for (const std::string& file : crashed.broken)
        prompter.message(de ? "Die Sicherung \"" + file + "\" ist beschädigt oder fremd und wird übergangen."
                            : "The backup \"" + file + "\" is damaged or not ours and is skipped.",
                         kIconExclamation, kTitle);

    // One album at a time: the newest one's pages now, another's at the next start.
    std::vector<Checkpoint> chosen;
    std::set<std::string> keep, taken;
    const std::string newest = crashed.checkpoints.empty() ? std::string{} : crashed.checkpoints.front().info.albumPath;
    for (Checkpoint& c : crashed.checkpoints) {
        if (c.info.albumPath == newest) {
            taken.insert(c.runDirectory);
            chosen.push_back(std::move(c));
        } else {
            keep.insert(c.runDirectory);
        }
    }
    int restored = 0;
    if (!chosen.empty()) {
        std::sort(chosen.begin(), chosen.end(),
                  [](const Checkpoint& x, const Checkpoint& y) { return x.info.slot < y.info.slot; });
        if (prompter.message(question(session.language(), chosen), kButtonsYesNo | kIconQuestion, kTitle) == kYes) {
            const std::string album = chosen.front().info.albumPath;
            if (!album.empty() && album != albumPathOf(session.album()) && dateiVorhanden(album))
                session.albumOeffnen(album);
            for (const Checkpoint& c : chosen) restorePage(session, c, checkpoints);
            restored = static_cast<int>(chosen.size());
            checkpoints.flush();  // from now on this run keeps them
        }
    }
    for (const std::string& dir : crashed.runDirectories)
        if (!keep.count(dir) || taken.count(dir)) removeRunDirectory(dir);
    removeSnapshotsIfAlone(home, checkpoints.run().directory());
    return restored;
}

}  // namespace brindle
