#include "album/templates.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <vector>

#include "album/album_file.h"
#include "album/file_io.h"
#include "album/path_repair.h"
#include "album/paths.h"
#include "album/session.h"
#include "album/zip_archive.h"

namespace brindle {

namespace fs = std::filesystem;

namespace {

void copyIfFile(const std::string& from, const std::string& toDir) {
    if (from.empty() || !fs::is_regular_file(from)) return;
    std::string dir, name;
    teilePfad(from, dir, name);
    std::error_code ec;
    fs::copy_file(from, toDir + name, fs::copy_options::overwrite_existing, ec);
}

void clearPictures(PageRecord& page) {
    page.panoramas.resetToDummy();
    page.pictures.resetToDummy();
    page.searchBoxes.resetToDummy();
}

std::string templateLoadError(const Session& s, const std::string& path) {
    return tr(s.language(), "Fehler beim laden der Albumvorlage: ", "Error while loading the albumtemplate: ") + path;
}

// The picture files a template refers to: default pages, buttons,
// pictures and panorama pictures. A picture named bare or moved is taken
// from beside the template, where an imported or shipped one keeps them.
std::vector<std::string> templatePictures(const AlbumRecord& a, const std::string& vorDir) {
    std::vector<std::string> files;
    for (const PageRecord* p : {&a.coverDefaults, &a.pageDefaults}) {
        files.insert(files.end(), {p->background, p->props.contentsButton, p->props.forwardButton,
                                   p->props.backButton});
        for (int i = 1; i <= p->pictures.upper(); ++i) files.push_back(p->pictures[i].path);
        for (int i = 1; i <= p->panoramas.upper(); ++i)
            for (const PanoHotspot& h : p->panoramas[i].hotspots) files.push_back(h.urlName);
    }
    for (std::string& f : files) {
        if (f.empty() || fs::is_regular_file(f)) continue;
        std::string dir, name;
        teilePfad(f, dir, name);
        if (!name.empty() && fs::is_regular_file(vorDir + name)) f = vorDir + name;
    }
    std::erase_if(files, [](const std::string& f) { return f.empty() || !fs::is_regular_file(f); });
    return files;
}

}  // namespace

bool schreibeVorlage(Session& session, const std::string& path) {
    AlbumRecord copy = session.album();
    copy.title.clear();
    copy.fileName.clear();
    copy.directory.clear();
    copy.spareText1.clear();
    copy.spareText2.clear();
    copy.mailDirectory.clear();
    copy.htmlDirectory.clear();
    copy.modified = kTrue;
    copy.pages.resetToDummy();
    copy.pageCount = 0;

    FileResult r = writeAlbumFile(path, copy);
    if (!r.ok()) {
        session.prompter().message(fileMessage(r, session.language()), kIconCritical,
                                   tr(session.language(), "Fehler", "Error"));
        return false;
    }
    const std::string setup = session.state().programDirectory + kTemplateSetupFolder + "/";
    std::error_code ec;
    fs::create_directories(setup, ec);
    for (const std::string* p : {&copy.coverDefaults.background, &copy.coverDefaults.props.contentsButton,
                                 &copy.coverDefaults.props.forwardButton, &copy.coverDefaults.props.backButton,
                                 &copy.pageDefaults.background, &copy.pageDefaults.props.contentsButton,
                                 &copy.pageDefaults.props.forwardButton, &copy.pageDefaults.props.backButton})
        copyIfFile(*p, setup);
    clearPictures(copy.pageDefaults);
    clearPictures(copy.coverDefaults);
    FileResult setupResult = writeAlbumFile(setup + "Album.vor", copy);
    if (!setupResult.ok()) {
        session.prompter().message(
            tr(session.language(), "Fehler beim Speichern der Datei: ", "Error while saving the file: ") +
                std::string("\r") + setup + "Album.vor\r" + setupResult.detail,
            kIconCritical, tr(session.language(), "Fehler", "Error"));
        return false;
    }
    return true;
}

bool ladeVorlage(Session& session, const std::string& path) {
    AlbumFile file;
    if (!readAlbumFile(path, file).ok()) {
        session.prompter().message(templateLoadError(session, path), kIconCritical,
                                   tr(session.language(), "Fehler", "Error"));
        return false;
    }
    AlbumRecord& a = session.album();
    AlbumRecord t = std::move(file.album);
    // Everything but the album's own name, place, pages and last targets.
    t.title = a.title;
    t.pages = a.pages;
    t.pageCount = a.pageCount;
    t.directory = a.directory;
    t.fileName = a.fileName;
    t.htmlDirectory = a.htmlDirectory;
    t.mailDirectory = a.mailDirectory;
    t.spareText1 = a.spareText1;
    t.spareText2 = a.spareText2;
    t.menuOpenFlags = a.menuOpenFlags;
    a = std::move(t);
    a.modified = kTrue;

    // An imported template keeps its pictures beside it.
    std::string vorDir, vorName;
    teilePfad(path, vorDir, vorName);
    for (PageRecord* p : {&a.pageDefaults, &a.coverDefaults}) {
        for (std::string* pic : {&p->background, &p->props.backButton, &p->props.contentsButton,
                                 &p->props.forwardButton}) {
            std::string dir, name;
            teilePfad(*pic, dir, name);
            if (!pic->empty() && !dateiVorhanden(*pic) && dateiVorhanden(vorDir + name)) *pic = vorDir + name;
        }
    }
    session.repairDefaultPictures(true);
    return true;
}

bool neuesAlbumMitVorlage(Session& session, const std::string& vorPath) {
    session.AlbumNeu();
    // An album that is still changed was kept by the user.
    if (isTrue(session.album().modified)) return false;
    if (!ladeVorlage(session, vorPath)) return false;
    SessionState& st = session.state();
    for (int i = 1; i <= st.album.pages.upper(); ++i) {
        const int slot = st.album.pages[i].slot;
        if (slot <= 0) continue;
        PageRecord& page = st.pageRecords[slot];
        const PageRecord& look = session.isCover(page.title) ? st.album.coverDefaults : st.album.pageDefaults;
        page.background = look.background;
        page.backgroundColor = look.backgroundColor;
        page.props = look.props;
    }
    st.album.modified = kFalse;
    return true;
}

std::vector<std::string> katalogVorlagen(const std::string& programDirectory) {
    std::vector<std::string> names;
    std::error_code ec;
    for (auto& e : fs::directory_iterator(programDirectory + kCatalogueFolder, ec))
        if (e.is_regular_file() && e.path().extension() == ".vor") names.push_back(e.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

const char* const* previewSteps(bool german) {
    static const char* const de[] = {"Bildvorlage wird erstellt ...", "Hintergründe werden erstellt ...",
                                     "Button werden erstellt ...",    "Bilder werden erstellt ...",
                                     "Panoramen werden erstellt ...", "Texte werden erstellt ...",
                                     "Zeichnung wird gespeichert ..."};
    static const char* const en[] = {"Picture template will be created ...", "Backgrounds will be created ...",
                                     "Button will be created ...",           "Picture will be created...",
                                     "Panorama will be created ...",         "Text will be created ...",
                                     "Drawing will be saved ..."};
    return german ? de : en;
}

bool speichereKatalogVorlage(Session& session, const PreviewPainter& painter) {
    const Language lang = session.language();
    const std::string catalogue = session.state().programDirectory + kCatalogueFolder + "/";
    std::error_code ec;
    fs::create_directories(catalogue, ec);
    std::string name;
    for (;;) {
        auto answer = session.prompter().inputText("Bitte Namen der Vorlage eingeben", "Speichern der Vorlage",
                                                   "Beschreibung");
        if (!answer || answer->empty()) return false;
        name = *answer;
        if (!dateiVorhanden(catalogue + name + ".vor")) break;
        session.prompter().message(tr(lang, "Name bereits vergeben!\rBitte geben Sie einen anderen Namen ein",
                                      "Name allraedy exist!\rPlease choose another name"),
                                   kIconExclamation, tr(lang, "Achtung", "Attention"));
    }
    if (painter) painter(catalogue + name + ".jpg", [](const std::string&) {});
    return schreibeVorlage(session, catalogue + name + ".vor");
}

bool exportiereVorlage(Session& session, const std::string& vorPath, const std::string& bsvPath) {
    const Language lang = session.language();
    const std::string temp = session.state().programDirectory + "Temp/";
    std::error_code ec;
    for (auto& e : fs::directory_iterator(temp, ec))
        if (e.path().extension() == ".tmp") fs::remove(e.path(), ec);

    AlbumFile file;
    if (!readAlbumFile(vorPath, file).ok()) {
        session.prompter().message(
            tr(lang, "Fehler beim laden der Albumvorlage: ", "Error while loading album template: ") + vorPath,
            kIconCritical, tr(lang, "Fehler", "Error"));
        return false;
    }
    std::string vorDir, vorName;
    teilePfad(vorPath, vorDir, vorName);
    std::vector<std::string> files = templatePictures(file.album, vorDir);
    files.push_back(vorPath);
    std::string preview = vorPath.substr(0, vorPath.size() - 4) + ".jpg";
    if (fs::is_regular_file(preview)) files.push_back(preview);

    std::vector<ZipEntry> entries;
    std::set<std::string> names;
    for (const std::string& f : files) {
        std::string dir, name;
        teilePfad(f, dir, name);
        if (names.insert(name).second) entries.push_back({name, f});  // one picture per name
    }
    std::string error;
    const bool ok = writeZipArchive(bsvPath, entries, error);
    if (!ok) {
        session.prompter().message(tr(lang, "Fehler beim schreiben der Datei: ", "Error while writing the file: ") +
                                       std::string("\r") + bsvPath,
                                   kIconCritical, tr(lang, "Fehler", "Error"));
    }
    return ok;
}

bool importiereVorlage(Session& session, const std::string& bsvPath) {
    const Language lang = session.language();
    const std::string catalogue = session.state().programDirectory + kCatalogueFolder + "/";
    // Unpacked beside the catalogue first, so a bad archive leaves it as it was.
    const std::string staging = session.state().programDirectory + "Temp/vorlage-import/";
    std::error_code ec;
    fs::remove_all(staging, ec);
    fs::create_directories(staging, ec);
    bool ok = extractZipArchive(bsvPath, staging);
    if (ok) {
        fs::create_directories(catalogue, ec);
        for (auto& e : fs::recursive_directory_iterator(staging, ec)) {
            if (!e.is_regular_file()) continue;
            fs::path target = fs::path(catalogue) / fs::relative(e.path(), staging);
            fs::create_directories(target.parent_path(), ec);
            fs::copy_file(e.path(), target, fs::copy_options::overwrite_existing, ec);
            if (ec) ok = false;
        }
    }
    fs::remove_all(staging, ec);
    if (!ok) {
        session.prompter().message(
            tr(lang, "Die Vorlagendatei ist beschädigt oder ungültig: ", "The template file is damaged or invalid: ") +
                bsvPath,
            kIconCritical, tr(lang, "Fehler", "Error"));
    }
    return ok;
}

}  // namespace brindle
