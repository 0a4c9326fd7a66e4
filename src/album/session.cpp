#include "album/session.h"

#include <algorithm>

#include "album/album_file.h"
#include "album/encoding.h"
#include "album/file_io.h"
#include "album/page_file.h"
#include "album/path_repair.h"
#include "album/paths.h"
#include "album/templates.h"

namespace brindle {

Session::Session(std::string programDirectory, Prompter& prompter, SettingsStore& settings,
                 PageEditorFactory& editors, LogSink log)
    : prompter_(prompter), settings_(settings), factory_(editors), log_(std::move(log)) {
    s_.programDirectory = withTrailingSeparator(std::move(programDirectory));
    s_.testMode = static_cast<bool>(log_);
    ladeStandards(s_.album, s_.programDirectory);
    resetPages();
}

// ---------------------------------------------------------------- slots

PageEditor* Session::editor(int slot) {
    if (slot < 1 || static_cast<std::size_t>(slot) >= s_.pageEditors.size()) return nullptr;
    return s_.pageEditors[static_cast<std::size_t>(slot)].get();
}

int Session::entryOfSlot(int slot) const {
    if (slot < 1) return 0;
    for (int i = 1; i <= s_.album.pages.upper(); ++i)
        if (s_.album.pages[i].slot == slot) return i;
    return 0;
}

int Session::freierSlot() {
    for (int i = 1; i <= s_.pageSlots.upper(); ++i) {
        if (isTrue(s_.pageSlots[i].free)) {
            s_.pageSlots[i].free = kFalse;
            return i;
        }
    }
    int slot = s_.pageSlots.upper() + 1;
    s_.pageSlots.resize(slot);
    s_.pageRecords.resize(slot);
    s_.pageEditors.resize(static_cast<std::size_t>(slot) + 1);
    s_.pageSlots[slot].free = kFalse;
    return slot;
}

void Session::unloadEditor(int slot) {
    if (PageEditor* e = editor(slot)) e->unload();
    seiteGeschlossen(slot);
}

void Session::seiteGeschlossen(int slot) {
    if (slot < 1 || slot > s_.pageSlots.upper()) return;
    if (hooks_.pageClosed) hooks_.pageClosed(slot);
    s_.pageEditors[static_cast<std::size_t>(slot)].reset();
    s_.pageSlots[slot].free = kTrue;
    s_.pageSlots[slot].modified = kFalse;
    s_.pageRecords[slot].title.clear();
    if (int entry = entryOfSlot(slot)) s_.album.pages[entry].slot = 0;
}

void Session::resetPages() {
    s_.pageRecords.resetToDummy();
    s_.pageSlots.resetToDummy();
    s_.pageEditors.clear();
    s_.pageEditors.resize(1);
}

void Session::refresh() {
    if (hooks_.refreshExplorer) hooks_.refreshExplorer();
}

bool Session::isCover(const std::string& title) const {
    return title == "Umschlag Vorne" || title == "Umschlag Hinten" || title == "FrontCover" ||
           title == "BackCover";
}

std::string Session::dialogStart(const std::string& preferred) const {
    return preferred.empty() ? s_.programDirectory : preferred;
}

void Session::showCancelledPagesMessage() {
    prompter_.message(t("Sie haben das Speichern von noch nicht gespeicherten Seiten abgebrochen.",
                        "You have canceled the saving of not saved pages."),
                      kIconExclamation, t("Abbruch", "Cancel"));
}

// ---------------------------------------------------------------- album

namespace {
bool pageFilesEqual(const DynArray<PageEntry>& x, const DynArray<PageEntry>& y) {
    if (x.upper() != y.upper()) return false;
    for (int i = 1; i <= x.upper(); ++i)
        if (x[i].fileName != y[i].fileName || x[i].directory != y[i].directory) return false;
    return true;
}
}  // namespace

void Session::AlbumNeu() {
    logLine("Module 2 Album Neu Start");
    if (s_.album.pageCount > 0 && isTrue(s_.album.modified)) {
        if (askUnsavedFiles() == kCancel) return;
        if (s_.answer == kYes && !AlbumSpeichern(false)) {
            showCancelledPagesMessage();
            return;
        }
    }
    logLine("Module 2 Album Neu Alle Seiten werden gesichert");
    for (int i = 1; i <= s_.album.pages.upper(); ++i) {
        int slot = s_.album.pages[i].slot;
        if (slot <= 0) continue;
        s_.pageSlots[slot].modified = kFalse;
        unloadEditor(slot);
    }
    logLine("Module 2 Album Neu löschen aller Werte");
    s_.album.pages.resetToDummy();
    resetPages();

    const std::string tmpl = s_.programDirectory + "Album.vor";
    logLine("Module 2 Album Neu - Album öffnen:  " + tmpl);
    s_.album.pageCount = 0;
    // Without a template of the user's the program's defaults serve quietly.
    if (dateiVorhanden(tmpl) && albumOeffnen(tmpl)) {
        repairDefaultPictures(true);
    } else {
        logLine("Module 2 Album Neu - Lade Standards");
        ladeStandards(s_.album, s_.programDirectory);
    }
    logLine("Module 2 -  Album Neu - File New starten");
    neueSeite("", false);
    s_.album.modified = kFalse;  // a fresh album with its first page has nothing to save yet
    logLine("Module 2 -  Album Neu - AktualisiereAlbumExplorer");
    refresh();
}

void Session::repairDefaultPictures(bool withFallbacks) {
    struct Item {
        std::string* path;
        const char* fallback;
    };
    AlbumRecord& a = s_.album;
    const Item items[] = {
        {&a.pageDefaults.background, "Standard-Papier.jpg"},
        {&a.coverDefaults.background, "Standard-Papier.jpg"},
        {&a.coverDefaults.props.contentsButton, "ButtonInhalt.jpg"},
        {&a.coverDefaults.props.backButton, "ButtonZurück.jpg"},
        {&a.coverDefaults.props.forwardButton, "ButtonVor.jpg"},
        {&a.pageDefaults.props.contentsButton, "ButtonInhalt.jpg"},
        {&a.pageDefaults.props.backButton, "ButtonZurück.jpg"},
        {&a.pageDefaults.props.forwardButton, "ButtonVor.jpg"},
    };
    for (const Item& item : items) {
        if (withFallbacks) logLine("Module 2 Album Neu - Startenkorrigieren der Pfade: " + *item.path);
        if (item.path->empty()) continue;
        if (!korrigierePfad(*item.path, s_.programDirectory, log_) && withFallbacks)
            *item.path = s_.programDirectory + item.fallback;
    }
}

bool Session::AlbumSpeichern(bool saveAs) {
    const int bound = s_.pageSlots.upper();
    logLine("Module 2 Album Speichern - Speichern des Albums");
    AlbumRecord& a = s_.album;
    bool result = true;
    if (isTrue(a.modified) || saveAs || a.fileName.empty()) {
        if (saveAs || !dateiVorhanden(a.directory + a.fileName)) {
            if (saveAs) a.modified = kTrue;
            FileDialog d;
            d.filter = albumFileFilter(s_.language == Language::German);
            d.filterIndex = kFilterAlbum;
            d.startDirectory = dialogStart(a.directory);
            d.proposedName = dialogStart(a.directory) + a.title;
            std::string name = prompter_.saveFile(d);
            result = !name.empty();
            if (result) schreibeAlbum(name);
        } else {
            schreibeAlbum(a.directory + a.fileName);
            merkeZuletzt(a.directory + a.fileName);
        }
        if (result && hooks_.writeSearchDatabase) hooks_.writeSearchDatabase(a.directory);
    }
    logLine(std::string("Module 2 Album Speichern: ") + (result ? "True" : "False"));
    if (!result) return false;
    const DynArray<PageEntry> before = a.pages;
    for (int slot = 1; slot <= bound && slot <= s_.pageSlots.upper(); ++slot) {
        if (isTrue(s_.pageSlots[slot].free)) continue;
        if (PageEditor* e = editor(slot)) e->activate();
        if (SpeicherDieseForm(slot, false) == kCancel) {
            showCancelledPagesMessage();
            return false;
        }
    }
    // Pages saved for the first time got their file names only now; the
    // album file must know them, or the next open would lose those pages.
    if (!pageFilesEqual(before, a.pages) && !a.fileName.empty()) {
        a.modified = kTrue;
        schreibeAlbum(a.directory + a.fileName);
    }
    logLine("Module 2 Album Speichern - Ende");
    return true;
}

bool Session::schreibeAlbum(const std::string& path) {
    if (endsWithNoCase(path, ".vor")) {
        if (schreibeVorlage(*this, path)) return true;
        ++failedWrites_;
        return false;
    }
    AlbumRecord& a = s_.album;
    s_.lastAlbumPath = path;
    if (!isTrue(a.modified)) return true;  // nothing to write, whatever the caller wanted
    prepareAlbumSave(a, path);
    refresh();
    FileResult r = writeAlbumFile(path, a);
    if (!r.ok()) {
        ++failedWrites_;
        prompter_.message(fileMessage(r, s_.language), kIconCritical, msgTitleError());
        return false;
    }
    return true;
}

bool Session::albumOeffnen(std::string path) {
    logLine("Module 2 Album öffnen: Prüfen der Datei " + path);
    if (!path.empty() && !dateiVorhanden(path)) {
        if (hooks_.closeSplash) hooks_.closeSplash();
        prompter_.message(fileMessage({FileStatus::NotFound, path, {}}, s_.language), kIconCritical, "Fehler");
        return false;
    }
    if (s_.album.pageCount > 0 && isTrue(s_.album.modified)) {
        if (askUnsavedFiles() == kCancel) return false;
        if (s_.answer == kYes && !AlbumSpeichern(false)) {
            showCancelledPagesMessage();
            return false;
        }
    }
    if (path.empty()) {
        FileDialog d;
        d.filter = albumFileFilter(s_.language == Language::German);
        d.filterIndex = kFilterAlbum;
        d.startDirectory = dialogStart(s_.lastAlbumDirectory);
        path = prompter_.openFile(d);
        if (path.empty()) return false;
        std::string file;
        teilePfad(path, s_.lastAlbumDirectory, file);
    }
    if (endsWithNoCase(path, "apr")) s_.lastAlbumPath = path;
    const bool isTemplate = endsWithNoCase(path, "vor");

    std::string bytes;
    IoResult io = readWholeFile(path, bytes);
    if (!io.ok) {
        prompter_.message(fileMessage({FileStatus::OpenFailed, path, io.error}, s_.language), kIconCritical,
                          msgTitleError());
        return false;
    }
    if (!isTemplate) merkeZuletzt(path);

    logLine("Module 2 Album Öffnen - Get Kopfdaten");
    AlbumFile file;
    FileResult r = decodeAlbum(bytes, file, path);
    if (r.status == FileStatus::InvalidFormat) {
        // A bad template is quietly replaced by the defaults.
        if (!isTemplate) prompter_.message(fileMessage(r, s_.language), kIconCritical, msgTitleError());
        ladeStandards(s_.album, s_.programDirectory);
        return false;
    }
    if (!r.ok()) {
        // The open album stays as it was.
        prompter_.message(fileMessage(r, s_.language), kIconCritical, msgTitleError());
        return false;
    }
    for (int i = 1; i <= s_.album.pages.upper(); ++i) {
        int slot = s_.album.pages[i].slot;
        if (slot <= 0) continue;
        s_.pageSlots[slot].modified = kFalse;
        unloadEditor(slot);
    }
    logLine("Module 2 Album Öffnen - Get Album");
    s_.head = file.head;
    s_.album = std::move(file.album);
    finishAlbumLoad(s_.album, path);
    refresh();
    if (endsWithNoCase(path, "album.vor")) repairDefaultPictures(false);
    std::string moved = korrigiereVerschobenesAlbum(s_.album, s_.language, log_);
    if (!moved.empty()) prompter_.message(moved, kIconCritical, movedAlbumTitle(s_.language));
    if (s_.album.pageCount >= 1 && s_.album.pages.upper() >= 1) SeiteOeffnen(1, "", false);
    return true;
}

// ---------------------------------------------------------------- pages

std::string Session::seitenName() const {
    const std::string stem = t("Seite", "Page");
    for (int n = 1;; ++n) {
        std::string name = stem + std::to_string(n);
        bool taken = false;
        for (int i = 1; i <= s_.album.pages.upper() && !taken; ++i) taken = s_.album.pages[i].title == name;
        if (!taken) return name;
    }
}

int Session::neueSeite(const std::string& title, bool hidden) {
    int slot = freierSlot();
    s_.pageRecords[slot] = isCover(title) ? s_.album.coverDefaults : s_.album.pageDefaults;
    s_.pageSlots[slot].modified = kTrue;
    std::string error;
    auto made = factory_.create(slot, error);
    if (!made) {
        prompter_.message(std::string(t("Zu wenig Speicher um eine neue Seite zu laden!",
                                        "Not enough memory to load the page!")) +
                              "\r" + t("Details: ", "Detail: ") + error,
                          kIconCritical, t("Speicher", "Memory"));
    }
    s_.pageEditors[static_cast<std::size_t>(slot)] = std::move(made);
    if (!hidden) {
        std::string name = title.empty() ? seitenName() : title;
        s_.album.pages.add() = PageEntry{name, "", "", static_cast<std::int16_t>(slot)};
        s_.album.pageCount = static_cast<std::int16_t>(s_.album.pages.upper());
        // The list changed, also for the first page of an album without
        // pages; AlbumNeu clears this again for its fresh album.
        s_.album.modified = kTrue;
        if (PageEditor* e = editor(slot)) {
            e->setCaption(name);
            e->show();
        }
        refresh();
    }
    return slot;
}

bool Session::readPageForSession(const std::string& path, bool cover, PageFile& out) {
    FileResult r = readPageFile(path, cover ? s_.album.coverDefaults : s_.album.pageDefaults, out);
    if (r.ok()) return true;
    prompter_.message(fileMessage(r, s_.language), kIconCritical, msgTitleError());
    return false;
}

void Session::installPage(int slot, PageRecord read, bool hidden) {
    PageRecord& page = s_.pageRecords[slot];
    page = std::move(read);
    fillPageTexts(page, s_.album.title);
    for (int i = 1; i <= page.pictures.upper(); ++i)
        sucheBild(page.pictures[i].path, s_.programDirectory, s_.album.directory);
    for (int i = 1; i <= page.panoramas.upper(); ++i) {
        PanoramaElement& pano = page.panoramas[i];
        for (int h = 1; h <= pano.hotspotCount && h < static_cast<int>(pano.hotspots.size()); ++h) {
            pano.currentHotspot = static_cast<std::int16_t>(h);
            sucheBild(pano.hotspots[static_cast<std::size_t>(h)].urlName, s_.programDirectory, s_.album.directory);
        }
    }
    if (!hidden)
        if (PageEditor* e = editor(slot)) e->show();
}

bool Session::leseSeite(const std::string& path, int slot, bool hidden) {
    int entry = entryOfSlot(slot);
    PageFile file;
    if (!readPageForSession(path, entry && isCover(s_.album.pages[entry].title), file)) return false;
    installPage(slot, std::move(file.page), hidden);
    return true;
}

std::string Session::removeMenuText(const std::string& title) const {
    return s_.language == Language::German ? title + " entfernen" : "Delete " + title;
}

bool Session::refusedAsListed(const std::string& path, bool checkNames) {
    std::string dir, name;
    teilePfad(path, dir, name);
    for (int i = 1; i <= s_.album.pages.upper(); ++i) {
        const PageEntry& e = s_.album.pages[i];
        if (!e.fileName.empty() && e.directory + e.fileName == path) {
            prompter_.message(std::string(t("Datei ", "File ")) + path +
                                  t(" besteht bereits im Album!", " allready exist at the album!"),
                              kIconExclamation, t("Seite laden abgelehnt", "Page loading aborted"));
            return true;
        }
        if (checkNames &&
            (utf8Lower(e.fileName) == utf8Lower(name) || utf8Lower(e.title + ".apg") == utf8Lower(name))) {
            prompter_.message(std::string(t("Eine Seite mit dem Namen ", "A page with the name ")) + name +
                                  t(" besteht bereits im Album!", " allready exist at the album!"),
                              kIconExclamation, t("Seite laden abgelehnt", "Page loading aborted"));
            return true;
        }
    }
    return false;
}

std::string Session::listedPageFile(int index) {
    AlbumRecord& a = s_.album;
    std::string path;
    PageEntry& entry = a.pages[index];
    const std::string stored = entry.directory + entry.fileName;
    if (!entry.fileName.empty() && dateiVorhanden(stored)) {
        path = stored;
    } else if (!entry.fileName.empty() && dateiVorhanden(a.directory + entry.fileName)) {
        entry.directory = a.directory;
        path = a.directory + entry.fileName;
    } else if (!entry.fileName.empty()) {
        std::string text = entry.fileName + t(" wurde nicht im Verzeichnis: ", " not found in directory: ") +
                           "\r" + entry.directory + "\r" +
                           t("gefunden.\r\rMöchten Sie die Datei Suchen?\r\rHinweis: wenn Sie nein wählen "
                             "wird die Seite als neu geöffnet.",
                             "\rWould you search the file?\r\rAttention: if you choose no will be opened the "
                             "page new.");
        if (prompter_.message(text, kButtonsYesNo, t("Warnung", "Attention")) == kYes) {
            FileDialog d;
            d.filter = albumFileFilter(s_.language == Language::German);
            d.filterIndex = kFilterPage;
            d.startDirectory = dialogStart(a.directory);
            d.proposedName = entry.fileName;
            path = prompter_.openFile(d);
        }
    }
    return path;
}

bool Session::SeiteOeffnen(int index, std::string path, bool hidden) {
    AlbumRecord& a = s_.album;
    if (index < 0 || index > a.pages.upper()) return false;
    if (index >= 1 && a.pages[index].slot > 0) {
        if (PageEditor* e = editor(a.pages[index].slot)) {
            e->activate();
            e->show();
        }
        return true;
    }
    if (path.empty() && index >= 1) path = listedPageFile(index);
    if (path.empty() && index != 0) {
        PageEntry& entry = a.pages[index];
        int slot = neueSeite(entry.title, true);
        entry.fileName.clear();
        entry.directory.clear();
        entry.slot = static_cast<std::int16_t>(slot);
        fillPageTexts(s_.pageRecords[slot], a.title);
        if (PageEditor* e = editor(slot)) {
            e->setCaption(entry.title);
            e->setRemoveMenuText(removeMenuText(entry.title));
            if (!hidden) e->show();
        }
        return true;
    }
    if (index == 0) {
        // Names are compared only for a file picked in the dialog: a page
        // given by path (command line, add-page) is meant to be added.
        const bool fromDialog = path.empty();
        if (fromDialog) {
            FileDialog d;
            d.filter = albumFileFilter(s_.language == Language::German);
            d.filterIndex = kFilterPage;
            d.startDirectory = dialogStart(a.directory);
            path = prompter_.openFile(d);
            if (path.empty()) return false;
        }
        if (refusedAsListed(path, fromDialog)) return false;
    }
    // Read before anything changes: a page that cannot be read leaves the
    // list, the slots and the album's changed flag as they were.
    PageFile file;
    if (!readPageForSession(path, index > 0 && isCover(a.pages[index].title), file)) return false;
    int slot;
    if (index > 0) {
        slot = freierSlot();
        std::string error;
        s_.pageEditors[static_cast<std::size_t>(slot)] = factory_.create(slot, error);
        a.pages[index].slot = static_cast<std::int16_t>(slot);
    } else {
        slot = neueSeite("", false);
        index = a.pages.upper();
    }
    installPage(slot, std::move(file.page), hidden);
    s_.pageSlots[slot].modified = kFalse;
    PageEntry& entry = a.pages[index];
    teilePfad(path, entry.directory, entry.fileName);
    if (PageEditor* e = editor(slot)) {
        e->setCaption(entry.title);
        e->setRemoveMenuText(removeMenuText(entry.title));
    }
    return true;
}

bool Session::schreibeSeite(const std::string& path, int slot) {
    if (int entry = entryOfSlot(slot)) teilePfad(path, s_.album.pages[entry].directory, s_.album.pages[entry].fileName);
    FileResult r = writePageFile(path, s_.pageRecords[slot]);
    s_.pageSlots[slot].modified = kFalse;
    if (!r.ok()) {
        ++failedWrites_;
        prompter_.message(fileMessage(r, s_.language), kIconCritical, msgTitleError());
        return false;
    }
    if (hooks_.pageSaved) hooks_.pageSaved(slot);
    return true;
}

void Session::removeEntry(int index) {
    auto& items = s_.album.pages.items();
    items.erase(items.begin() + index);
    s_.album.pageCount = static_cast<std::int16_t>(s_.album.pages.upper());
    s_.album.modified = kTrue;
    refresh();
}

int Session::SpeicherDieseForm(int slot, bool askFirst) {
    int index = entryOfSlot(slot);
    if (index == 0) return kYes;  // template pages are kept without questions
    AlbumRecord& a = s_.album;
    if (!a.pages[index].fileName.empty() && !isTrue(s_.pageSlots[slot].modified)) return kYes;
    const std::string title = a.pages[index].title;
    int answer = kYes;
    if (askFirst) {
        std::string text = std::string(t("Der Inhalt in [", "The page [")) + title +
                           t("] wurde geändert.", "] is changed.") + "\r\n" +
                           t("Änderungen speichern?", "Save changes?");
        if (a.pages[index].fileName.empty()) {
            text += std::string("\r\n\r\n") + t("Hinweis: diese Seite (", "Attention: this page (") + title +
                    t(") wurde bisher in noch keiner Datei gespeichert. Wenn Sie nicht speichern wird diese Seite "
                      "aus dem Album entfernt!",
                      ") is until now not saved in a file. If you not save, this page will be deleted from the "
                      "album!");
        }
        if (a.fileName.empty()) {
            text += std::string("\r\n\r\n") +
                    t("Hinweis: vor dem Speichern von Seiten muss das Album gespeichert werden. Bei Ja wird das "
                      "Album gespeichert. ",
                      "Attention: Before saving pages must be saved the album. Choose 'Yes' to start saving the "
                      "album. ");
        }
        answer = prompter_.message(text, kButtonsYesNoCancel | kIconQuestion, "Brindlesee [" + a.title + "]");
    }
    if (answer == kCancel) return kCancel;
    if (answer == kNo) {
        if (a.pages[index].fileName.empty()) {
            removeEntry(index);
            unloadEditor(slot);
        }
        return kNo;
    }
    if (a.fileName.empty() && !AlbumSpeichern(true)) return kCancel;
    index = entryOfSlot(slot);
    if (index == 0) return kYes;  // saved meanwhile by the album save
    if (!a.pages[index].fileName.empty() && !isTrue(s_.pageSlots[slot].modified)) return kYes;
    PageEntry& entry = a.pages[index];
    std::string path = entry.directory + entry.fileName;
    if (entry.fileName.empty() || !dateiVorhanden(path)) {
        FileDialog d;
        d.filter = albumFileFilter(s_.language == Language::German);
        d.filterIndex = kFilterPage;
        d.startDirectory = dialogStart(a.directory);
        d.proposedName = a.directory + entry.title + ".apg";
        path = prompter_.saveFile(d);
        if (path.empty()) return kCancel;
    }
    schreibeSeite(path, slot);
    return kYes;
}

bool Session::SpeicherDieseFormNeu(int slot) {
    int index = entryOfSlot(slot);
    if (index == 0) return false;
    PageEntry& entry = s_.album.pages[index];
    if (entry.fileName.empty() || !isTrue(s_.pageSlots[slot].modified)) return false;
    if (!dateiVorhanden(entry.directory + entry.fileName)) {
        entry.directory = s_.album.directory;
        if (!dateiVorhanden(entry.directory + entry.fileName)) entry.fileName = entry.title + ".apg";
    }
    return schreibeSeite(entry.directory + entry.fileName, slot);
}

bool Session::seiteEntfernen(int slot) {
    int answer = SpeicherDieseForm(slot, true);
    if (answer == kCancel) return false;
    int index = entryOfSlot(slot);
    if (index == 0) return true;  // a page without file already left with "no"
    removeEntry(index);
    unloadEditor(slot);
    return true;
}

// ---------------------------------------------------------------- unsaved files

std::vector<std::string> Session::unsavedFilesList() const {
    std::vector<std::string> lines{"  " + s_.album.title};
    for (int i = 1; i <= s_.album.pages.upper(); ++i) {
        int slot = s_.album.pages[i].slot;
        if (slot > 0 && slot <= s_.pageSlots.upper() && isTrue(s_.pageSlots[slot].modified))
            lines.push_back("    " + s_.album.pages[i].title);
    }
    return lines;
}

int Session::askUnsavedFiles() {
    s_.answer = prompter_.unsavedFiles(unsavedFilesList(), t("Änderungen in folgenden Dateien speichern?",
                                                             "Save changes in the following files?"));
    return s_.answer;
}

// ---------------------------------------------------------------- recent files

std::string Session::zuletztAnzeige(const std::string& path) {
    if (utf8Length(path) < 41) return path;
    return utf8Left(path, 3) + "..." + utf8Right(path, 34);
}

std::vector<std::string> Session::recentFullPaths() {
    std::vector<std::string> list;
    for (int i = 1; i <= kRecentCount; ++i) {
        std::string p = settings_.get(kSettingsApp, kRecentSection, "RecentFile" + std::to_string(i));
        if (!p.empty()) list.push_back(p);
    }
    return list;
}

void Session::ladeZuletzt() {
    s_.recentFiles.clear();
    for (const std::string& p : recentFullPaths()) s_.recentFiles.push_back(zuletztAnzeige(p));
    if (hooks_.rebuildRecentMenu) hooks_.rebuildRecentMenu(s_.recentFiles);
}

namespace {
std::string trimmedLower(const std::string& s) {
    std::size_t a = s.find_first_not_of(" \t"), b = s.find_last_not_of(" \t");
    return a == std::string::npos ? std::string{} : utf8Lower(s.substr(a, b - a + 1));
}
}  // namespace

void Session::merkeZuletzt(const std::string& path) {
    std::vector<std::string> list = recentFullPaths();
    const bool isDefaultTemplate = utf8Lower(path).find("album.vor") != std::string::npos;
    std::erase_if(list, [&](const std::string& p) {
        return (isDefaultTemplate && trimmedLower(p) == trimmedLower(path)) || !dateiVorhanden(p);
    });
    if (!isDefaultTemplate) {
        std::erase_if(list, [&](const std::string& p) { return trimmedLower(p) == trimmedLower(path); });
        list.insert(list.begin(), path);
    }
    if (list.size() > static_cast<std::size_t>(kRecentCount)) list.resize(kRecentCount);
    for (int i = 1; i <= kRecentCount; ++i)
        settings_.save(kSettingsApp, kRecentSection, "RecentFile" + std::to_string(i),
                       static_cast<std::size_t>(i) <= list.size() ? list[static_cast<std::size_t>(i) - 1] : "");
    ladeZuletzt();
}

}  // namespace brindle
