// The album flows: new, open and save of albums and pages, the page list,
// recent files and the unsaved-files question. Every question goes through
// the Prompter, every setting through the SettingsStore, and every window
// through the PageEditorFactory, so the GUI only wires windows to them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "album/diagnose.h"
#include "album/page_file.h"
#include "album/page_editor.h"
#include "album/prompter.h"
#include "album/session_state.h"
#include "album/settings_store.h"

namespace brindle {

// What the flows tell the windows around them; every member may be empty.
struct SessionHooks {
    std::function<void()> refreshExplorer;
    std::function<void(const std::vector<std::string>&)> rebuildRecentMenu;
    std::function<void(const std::string& albumDirectory)> writeSearchDatabase;
    std::function<void()> closeSplash;
    // Crash recovery: a page's undo ring recorded, undid or redid a step;
    // a page was written to its file; a page's window closed.
    std::function<void(int slot)> pageStepRecorded;
    std::function<void(int slot)> pageSaved;
    std::function<void(int slot)> pageClosed;
};

inline constexpr const char* kSettingsApp = "Brindlesee";
inline constexpr const char* kRecentSection = "Recent Files";
inline constexpr int kRecentCount = 10;

class Session {
public:
    Session(std::string programDirectory, Prompter& prompter, SettingsStore& settings,
            PageEditorFactory& editors, LogSink log = {});

    SessionState& state() { return s_; }
    const SessionState& state() const { return s_; }
    AlbumRecord& album() { return s_.album; }
    SessionHooks& hooks() { return hooks_; }
    void notePageStep(int slot) {
        if (hooks_.pageStepRecorded) hooks_.pageStepRecorded(slot);
    }
    Language language() const { return s_.language; }
    const LogSink& log() const { return log_; }
    Prompter& prompter() { return prompter_; }

    void AlbumNeu();
    // False when the user broke off.
    bool AlbumSpeichern(bool saveAs);
    // Opens an album or template; an empty path asks with a dialog.
    bool albumOeffnen(std::string path);
    // Opens page `index` of the list, or a file as a new entry when index is 0.
    // False when nothing was opened; a page that cannot be read leaves the
    // album, its list and its slots as they were.
    bool SeiteOeffnen(int index, std::string path, bool hidden);
    int neueSeite(const std::string& title, bool hidden);
    std::string seitenName() const;
    int freierSlot();
    // Saves the page of `slot`, asking first when `askFirst`. Returns kYes
    // (go on), kNo (not saved; a page without file left the album) or kCancel.
    int SpeicherDieseForm(int slot, bool askFirst);
    // Save As of one page that has a file name.
    bool SpeicherDieseFormNeu(int slot);
    // Asks through SpeicherDieseForm, then takes the page out of the album.
    bool seiteEntfernen(int slot);
    // The window of `slot` closed: the slot is free again.
    void seiteGeschlossen(int slot);

    // The common writer: a ".vor" path writes a template, anything else the album.
    bool schreibeAlbum(const std::string& path);
    bool schreibeSeite(const std::string& path, int slot);
    bool leseSeite(const std::string& path, int slot, bool hidden);

    // Album, page and template writes that failed (after their message), so
    // callers without a user, like the command line, can tell.
    int failedWrites() const { return failedWrites_; }

    void merkeZuletzt(const std::string& path);
    void ladeZuletzt();  // the list as the settings hold it
    static std::string zuletztAnzeige(const std::string& path);

    std::vector<std::string> unsavedFilesList() const;
    // Asks when the album has unsaved changes; sets and returns `answer`.
    int askUnsavedFiles();

    // The list entry of the page in `slot`, or 0.
    int entryOfSlot(int slot) const;
    PageRecord& page(int slot) { return s_.pageRecords[slot]; }
    PageEditor* editor(int slot);
    bool isCover(const std::string& title) const;
    // The eight default pictures through korrigierePfad; with fallbacks a
    // path that stays missing becomes the program's own picture.
    void repairDefaultPictures(bool withFallbacks);

private:
    // Reads a page file as the page reader does, with its message on failure.
    bool readPageForSession(const std::string& path, bool cover, PageFile& out);
    // A page read puts its record into `slot`, repairs its pictures and shows it.
    void installPage(int slot, PageRecord page, bool hidden);
    // Files given through the open dialog: refused when the album lists it
    // or a page of its name.
    bool refusedAsListed(const std::string& path, bool checkNames);
    std::string removeMenuText(const std::string& title) const;
    // The file of listed page `index`: stored, beside the album, or asked
    // for; empty when the page is to be opened new.
    std::string listedPageFile(int index);
    void unloadEditor(int slot);
    void resetPages();
    void removeEntry(int index);
    void showCancelledPagesMessage();
    void refresh();
    void logLine(const std::string& text) const { brindle::logLine(log_, text); }
    std::string msgTitleError() const { return tr(s_.language, "Fehler", "Error"); }
    const char* t(const char* de, const char* en) const { return tr(s_.language, de, en); }
    std::string dialogStart(const std::string& preferred) const;
    std::vector<std::string> recentFullPaths();

    SessionState s_;
    Prompter& prompter_;
    SettingsStore& settings_;
    PageEditorFactory& factory_;
    LogSink log_;
    SessionHooks hooks_;
    int failedWrites_ = 0;
};

}  // namespace brindle
