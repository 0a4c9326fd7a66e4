#include "shell/wizard_run.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "album/encoding.h"
#include "album/paths.h"
#include "editor/page_document.h"
#include "image/image_info.h"

namespace brindle::wizard {

namespace fs = std::filesystem;

std::string pageName(Language lang, int number) {
    return tr(lang, "WSeite", "Page_W") + std::to_string(number);
}

std::string defaultTargetDirectory(const std::string& picturesDirectory) {
    const std::string base = withTrailingSeparator(picturesDirectory) + "MeinAlbum";
    std::error_code ec;
    std::string candidate = base;
    for (int n = 1; fs::exists(candidate, ec); ++n) candidate = base + std::to_string(n);
    return withTrailingSeparator(candidate);
}

std::string designDirectory(const std::string& programDirectory) {
    const std::string dir = withTrailingSeparator(programDirectory) + kDesignFolder;
    std::error_code ec;
    fs::create_directories(dir, ec);
    return dir;
}

std::vector<std::string> listDesigns(const std::string& programDirectory) {
    std::vector<std::string> names;
    std::error_code ec;
    for (const fs::directory_entry& e : fs::directory_iterator(designDirectory(programDirectory), ec)) {
        const std::string name = e.path().filename().string();
        if (e.is_regular_file(ec) && endsWithNoCase(name, ".jpg")) names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string albumPathFor(const std::string& targetDirectory) {
    fs::path dir = fs::path(withTrailingSeparator(targetDirectory)).parent_path();
    std::string stem = dir.filename().string();
    if (stem.empty()) stem = "Album";
    return withTrailingSeparator(targetDirectory) + stem + ".apr";
}

std::string checkPlan(const WizardPlan& plan, Language lang) {
    if (plan.targetDirectory.empty()) return tr(lang, "Kein Zielverzeichnis angegeben.", "No target directory given.");
    if (plan.pages.empty()) return tr(lang, "Das Album hat keine Seite.", "The album has no page.");
    std::vector<std::string> seen;
    for (const WizardPage& page : plan.pages) {
        if (page.name.empty() || page.name.find_first_of("/\\:*?\"<>|") != std::string::npos)
            return std::string(tr(lang, "Ungültiger Seitenname: ", "Invalid page name: ")) + page.name;
        std::string lower = utf8Lower(page.name);
        if (std::find(seen.begin(), seen.end(), lower) != seen.end())
            return std::string(tr(lang, "Doppelter Seitenname: ", "Page name given twice: ")) + page.name;
        seen.push_back(lower);
        for (const std::string& pic : page.pictures)
            if (!dateiVorhanden(pic))
                return std::string(tr(lang, "Bild nicht gefunden: ", "Picture not found: ")) + pic;
    }
    if (dateiVorhanden(albumPathFor(plan.targetDirectory)))
        return std::string(tr(lang, "Das Album besteht bereits: ", "The album exists already: ")) +
               albumPathFor(plan.targetDirectory);
    if (!plan.design.empty() && !dateiVorhanden(plan.design))
        return std::string(tr(lang, "Design nicht gefunden: ", "Design not found: ")) + plan.design;
    return {};
}

namespace {

// Lays one wizard page out on the page of `slot`: the pictures in rows as
// "insert many" places them, each then given the frame.
void layOutPage(editor::PageDocument& doc, const WizardPage& wp, const std::string& frameSpec, int frameWidth) {
    Session& session = doc.session();
    const int slot = doc.slot();
    std::vector<editor::PageDocument::PictureFile> files;
    for (const std::string& path : wp.pictures) {
        CImageInfo info;
        info.ReadImageInfo(path);
        files.push_back({path, info.Width, info.Height});
    }
    // A frame is drawn around the box: the gaps and the start widen by it,
    // so framed pictures never overlap each other or the page's corner.
    AlbumRecord& album = session.album();
    const int gapX = album.insertGapX, gapY = album.insertGapY;
    album.insertGapX = gapX + 2 * frameWidth;
    album.insertGapY = gapY + 2 * frameWidth;
    const int first = session.page(slot).pictures.upper() + 1;
    doc.insertManyPictures({gapX + frameWidth, gapY + frameWidth}, files, kViewWidth);
    album.insertGapX = gapX;
    album.insertGapY = gapY;
    DynArray<PictureElement>& pictures = session.page(slot).pictures;
    for (int i = first; i <= pictures.upper(); ++i) {
        PictureElement& pic = pictures[i];
        if (isTrue(pic.deleted)) continue;
        pic.ext.extText[0] = frameSpec;
        pic.ext.extText[2] = std::to_string(pic.width + 2 * frameWidth);
        pic.ext.extText[3] = std::to_string(pic.height + 2 * frameWidth);
        doc.aktivieren({editor::Kind::Bild, i});  // a window's view shows the frame too
    }
}

// The fresh album's first page is empty and unchanged: it becomes the
// wizard's first page, so the wizard's pages come first.
int takeFirstPage(Session& session, const std::string& name) {
    PageEntry& entry = session.album().pages[1];
    entry.title = name;
    if (PageEditor* e = session.editor(entry.slot)) {
        e->setCaption(name);
        e->setRemoveMenuText(session.language() == Language::German ? name + " entfernen" : "Delete " + name);
    }
    return entry.slot;
}

}  // namespace

WizardResult runWizard(Session& session, const WizardPlan& plan, editor::TextMetrics* metrics,
                       const WizardCallbacks& callbacks) {
    WizardResult result;
    const Language lang = session.language();
    auto fail = [&](const std::string& text) {
        result.error = std::string(tr(lang, "Fehler aufgetreten: ", "Error occurs: ")) + text;
        session.prompter().message(result.error, kIconCritical, tr(lang, "Fehler", "Error"));
        return result;
    };
    if (std::string problem = checkPlan(plan, lang); !problem.empty()) return fail(problem);
    const std::string dir = withTrailingSeparator(plan.targetDirectory);
    std::error_code ec;
    fs::create_directories(dir, ec);
    if (!fs::is_directory(dir, ec)) return fail(std::string(tr(lang, "Verzeichnis nicht anlegbar: ",
                                                                  "Cannot create the directory: ")) + dir);
    const std::string albumPath = albumPathFor(dir);

    session.AlbumNeu();
    AlbumRecord& album = session.album();
    if (isTrue(album.modified) || !album.fileName.empty() || album.pages.upper() != 1 || album.pages[1].slot <= 0) {
        result.cancelled = true;  // the user kept the album that was open
        return result;
    }
    if (!plan.design.empty()) {
        album.pageDefaults.background = plan.design;
        album.coverDefaults.background = plan.design;
        session.page(album.pages[1].slot).background = plan.design;
    }
    const std::string frameSpec = plan.frame.on ? properties::buildFrameSpec(plan.frame) : "";
    const int frameWidth = plan.frame.on ? properties::drawnFrameWidth(frameSpec) : 0;
    const int total = static_cast<int>(plan.pages.size());
    for (int i = 0; i < total; ++i) {
        const WizardPage& wp = plan.pages[static_cast<std::size_t>(i)];
        if (callbacks.progress) callbacks.progress(i, total, wp.name);
        if (callbacks.cancelled && callbacks.cancelled()) {
            result.cancelled = true;
            break;
        }
        const int slot = i == 0 ? takeFirstPage(session, wp.name) : session.neueSeite(wp.name, false);
        editor::PageDocument* shown = callbacks.documentFor ? callbacks.documentFor(slot) : nullptr;
        if (shown) {
            layOutPage(*shown, wp, frameSpec, frameWidth);
        } else {
            editor::PageDocument doc(session, slot, metrics);
            layOutPage(doc, wp, frameSpec, frameWidth);
        }
        // Page first, then the album that lists it: the album on disk never
        // names a page that is not there.
        const int failed = session.failedWrites();
        session.schreibeSeite(dir + wp.name + ".apg", slot);
        album.modified = kTrue;
        session.schreibeAlbum(albumPath);
        if (session.failedWrites() != failed) {
            result.error = tr(lang, "Fehler aufgetreten: ", "Error occurs: ") + wp.name;
            return result;
        }
        result.pagesWritten = i + 1;
        result.albumPath = albumPath;
    }
    if (result.pagesWritten > 0) session.merkeZuletzt(albumPath);
    if (callbacks.progress && !result.cancelled) callbacks.progress(total, total, {});
    result.ok = !result.cancelled;
    return result;
}

}  // namespace brindle::wizard
