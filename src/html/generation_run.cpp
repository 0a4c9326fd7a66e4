#include "html/generation_run.h"

#include <filesystem>

#include "album/paths.h"
#include "album/zip_archive.h"
#include "html/frameset.h"
#include "html/output_files.h"
#include "html/page_html.h"
#include "html/safe_text.h"

namespace brindle::html {

namespace fs = std::filesystem;

std::string offeredDirectory(Session& session, bool mailMode) {
    AlbumRecord& a = session.album();
    std::string& remembered = mailMode ? a.mailDirectory : a.htmlDirectory;
    if (!remembered.empty() && dateiVorhanden(remembered)) return remembered;
    if (a.directory.empty()) return session.state().programDirectory;
    remembered = a.directory;
    a.modified = kTrue;
    return remembered;
}

namespace {

// Mail mode runs with reduced, linked-to-reduced pictures at mail quality;
// the album's own settings come back afterwards.
class MailSettings {
public:
    MailSettings(AlbumRecord& a, bool active) : a_(a), active_(active) {
        if (!active_) return;
        reduce_ = a.htmlReduce;
        link_ = a.linkToReduced;
        quality_ = a.htmlJpegQuality;
        a.htmlReduce = kTrue;
        a.linkToReduced = kTrue;
        a.htmlJpegQuality = a.mailJpegQuality;
    }
    ~MailSettings() {
        if (!active_) return;
        a_.htmlReduce = reduce_;
        a_.linkToReduced = link_;
        a_.htmlJpegQuality = quality_;
    }

private:
    AlbumRecord& a_;
    bool active_;
    Bool16 reduce_ = 0, link_ = 0;
    std::int32_t quality_ = 0;
};

bool skipped(const AlbumRecord& a, int page, bool mailMode) {
    return !mailMode && page <= a.menuOpenFlags.upper() && a.menuOpenFlags[page] != 0;
}

}  // namespace

bool generiereAlbum(HtmlRun& run, const GenerationCallbacks& cb) {
    Session& s = run.session;
    AlbumRecord& a = s.album();
    run.outputDirectory = withTrailingSeparator(run.outputDirectory);
    run.overwriteAll = run.overwriteNone = false;
    if (run.mailMode) run.usedFiles.clear();
    if (run.mailMode) a.mailDirectory = run.outputDirectory;
    else a.htmlDirectory = run.outputDirectory;
    MailSettings mail(a, run.mailMode);

    const int pages = albumPageCount(a);
    const int total = pages + 1 + (run.mailMode ? 1 : 0);
    for (int i = 1; i <= pages; ++i) {
        if (cb.cancelled && cb.cancelled()) return false;
        if (skipped(a, i, run.mailMode)) continue;
        const std::string title = a.pages[i].title;
        if (cb.progress) cb.progress(i - 1, total, title + ".htm");
        const std::string path = run.outputDirectory + pageFileName(title);
        if (a.pages[i].slot == 0) {
            s.SeiteOeffnen(i, "", true);
            int slot = a.pages[i].slot;
            if (slot == 0) continue;
            schreibeSeiteHTML(run, path, slot, i);
            run.fileList.push_back(path);
            if (PageEditor* e = s.editor(slot)) e->unload();
            s.seiteGeschlossen(slot);
        } else {
            schreibeSeiteHTML(run, path, a.pages[i].slot, i);
            run.fileList.push_back(path);
        }
    }
    if (cb.cancelled && cb.cancelled()) return false;
    if (cb.progress) cb.progress(pages, total, "Menü.htm");
    schreibeMenue(run);
    if (run.mailMode) {
        if (cb.progress) cb.progress(pages + 1, total, a.title + ".zip");
        std::vector<std::string> list = mailFileList(run);
        if (!zipAlbum(run, list, mailArchivePath(run), run.outputDirectory, "")) ++run.failedWrites;
    }
    if (cb.progress) cb.progress(total, total, "");
    return true;
}

std::vector<std::string> mailFileList(const HtmlRun& run) {
    std::vector<std::string> list = run.fileList;
    for (const char* f : {"pan360.class", "bslake.class", "bsrain.class", "daten.js", "suchscr.js"})
        if (fs::exists(run.outputDirectory + f)) list.push_back(run.outputDirectory + f);
    // What the pages load in today's browsers travels with them: the
    // effects script, the full view script under the name the pages use,
    // and the panorama's stand-in picture.
    for (const char* f : {"bseffects.js", "panvobilder.js", "alt.gif"})
        if (fs::exists(run.outputDirectory + f)) list.push_back(run.outputDirectory + f);
    std::size_t start = 0;
    for (std::size_t at; (at = run.usedFiles.find(';', start)) != std::string::npos; start = at + 1)
        if (at > start) list.push_back(run.outputDirectory + run.usedFiles.substr(start, at - start));
    return list;
}

namespace {

// An archive entry that unpacks where it was packed: no "..", no root, no
// drive letter.
bool safeEntryName(const std::string& name) {
    if (name.empty() || isSeparator(name[0])) return false;
    if (name.size() >= 2 && name[1] == ':') return false;
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = name.find_first_of("/\\", start);
        if (name.compare(start, end == std::string::npos ? std::string::npos : end - start, "..") == 0) return false;
        if (end == std::string::npos) return true;
        start = end + 1;
    }
}

bool endsWithAny(const std::string& name, const std::string& endings) {
    std::size_t start = 0;
    while (start <= endings.size()) {
        std::size_t end = endings.find_first_of(",;", start);
        std::string e = endings.substr(start, end == std::string::npos ? std::string::npos : end - start);
        if (!e.empty() && endsWithNoCase(name, e)) return true;
        if (end == std::string::npos) break;
        start = end + 1;
    }
    return false;
}

}  // namespace

bool zipAlbum(HtmlRun& run, std::vector<std::string>& fileList, const std::string& zipPath,
              const std::string& baseDirectory, const std::string& ignoreEndings) {
    const Language lang = run.language();
    if (fileList.size() >= 1024) {
        run.prompter().message(tr(lang, "Zu viele Files zum erstellen eines Zip Archievs (> 1024)",
                                  "To much files to create an zip archiv (> 1024)"),
                               kIconExclamation, tr(lang, "Achtung!", "Attention!"));
        return false;
    }
    std::error_code ec;
    std::vector<ZipEntry> entries;
    for (std::string& f : fileList) {
        if (!fs::is_regular_file(f, ec)) continue;
        const double kb = static_cast<double>(fs::file_size(f, ec)) / 1024.0;
        if (kb > run.album().mailIgnoreSize && endsWithAny(f, ignoreEndings)) continue;
        const std::string full = f;
        // Only files of the album's folder go into the archive.
        if (!baseDirectory.empty() && !liesInside(full, baseDirectory)) continue;
        if (!baseDirectory.empty() && f.rfind(baseDirectory, 0) == 0) f = f.substr(baseDirectory.size());
        if (!safeEntryName(f)) continue;
        entries.push_back({f, full});
    }
    std::string error;
    const bool ok = writeZipArchive(zipPath, entries, error);
    if (!ok) {
        run.prompter().message(tr(lang, "Fehler beim schreiben der Datei: ", "Error while writing the file: ") +
                                   std::string("\r") + zipPath,
                               kIconCritical, tr(lang, "Fehler", "Error"));
    }
    return ok;
}

std::string mailArchivePath(const HtmlRun& run) {
    return run.outputDirectory + "bs" + safeFileStem(run.session.state().album.title) + ".zip";
}

std::string framesetPath(const HtmlRun& run) {
    return run.outputDirectory + safeFileStem(run.session.state().album.title) + ".html";
}

std::string mailtoUrl(const HtmlRun& run) { return "mailto:empfaenger@example.invalid ?subject=Hallo&Attach=\"" + mailArchivePath(run) + "\""; }

}  // namespace brindle::html
