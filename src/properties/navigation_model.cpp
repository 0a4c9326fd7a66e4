#include "properties/navigation_model.h"

#include <filesystem>
#include <system_error>

#include "album/paths.h"

namespace brindle::properties {

namespace {

void storeButtons(PageProps& props, const std::array<std::string, 3>& paths) {
    props.backButton = paths[kBackButton];
    props.contentsButton = paths[kContentsButton];
    props.forwardButton = paths[kForwardButton];
}

// The picture copied into the album's directory, or the path as it was.
std::string copiedToAlbum(Session& session, const std::string& path) {
    const std::string& albumDir = session.album().directory;
    if (path.empty() || albumDir.empty()) return path;
    std::string dir, name;
    teilePfad(path, dir, name);
    if (dir == albumDir) return path;
    std::error_code ec;
    std::filesystem::copy_file(path, albumDir + name, std::filesystem::copy_options::overwrite_existing, ec);
    if (ec) {
        const Language lang = session.language();
        session.prompter().message(std::string(tr(lang, "Fehler beim Kopieren der Datei: ",
                                                  "Error while copying the file: ")) + path,
                                   kButtonsOk | kIconCritical, tr(lang, "Fehler", "Error"));
        return path;
    }
    return albumDir + name;
}

// Every page of the album gets the buttons; closed ones through the page flows.
void storeInEveryPage(Session& session, const std::array<std::string, 3>& paths) {
    AlbumRecord& album = session.album();
    for (int i = 1; i <= album.pages.upper(); ++i) {
        int slot = album.pages[i].slot;
        if (slot > 0) {
            storeButtons(session.page(slot).props, paths);
            session.state().pageSlots[slot].modified = kTrue;
            continue;
        }
        if (album.pages[i].fileName.empty() || !session.SeiteOeffnen(i, "", true)) continue;
        slot = album.pages[i].slot;
        if (slot <= 0) continue;
        storeButtons(session.page(slot).props, paths);
        session.state().pageSlots[slot].modified = kTrue;
        session.SpeicherDieseFormNeu(slot);
        session.seiteGeschlossen(slot);
    }
}

}  // namespace

NavigationModel NavigationModel::fromPage(const Session& session, int slot) {
    NavigationModel m;
    const PageProps& props = const_cast<Session&>(session).page(slot).props;
    m.buttons = {props.backButton, props.contentsButton, props.forwardButton};
    m.noButton = m.buttons[0].empty() && m.buttons[1].empty() && m.buttons[2].empty();
    m.copyToAlbum = isTrue(session.state().options.buttonCopy);
    return m;
}

std::array<std::string, 3> NavigationModel::paths() const {
    if (noButton) return {};
    return buttons;
}

bool chooseButtonPicture(Session& session, NavigationModel& model, NavigationButton which) {
    SessionState& s = session.state();
    const Language lang = session.language();
    FileDialog d;
    d.title = tr(lang, "Bild für den Button", "Picture for the button");
    d.filter = std::string(tr(lang, "Bilder", "Pictures")) + "|*.jpg;*.jpeg;*.gif;*.png;*.bmp|" +
               tr(lang, "Alle Dateien", "All files") + "|*.*";
    d.startDirectory = s.pictureDirectory.empty() ? s.album.directory : s.pictureDirectory;
    const std::string path = session.prompter().openFile(d);
    if (path.empty()) return false;
    std::string name;
    teilePfad(path, s.pictureDirectory, name);
    model.buttons[which] = path;
    model.noButton = false;
    return true;
}

std::string buttonLoadError(Language lang, const std::string& path) {
    return std::string(tr(lang, "Das Bild zum Button: ", "The picture of the button: ")) + path +
           tr(lang, " konnte nicht geladen werden!", " could not be loaded!");
}

std::string buttonLoadErrorTitle(Language lang) { return tr(lang, "Fehler", "error"); }

void applyNavigation(Session& session, int slot, NavigationModel model) {
    session.state().options.buttonCopy = toBool16(model.copyToAlbum);
    std::array<std::string, 3> paths = model.paths();
    if (model.copyToAlbum)
        for (std::string& p : paths) p = copiedToAlbum(session, p);
    storeButtons(session.page(slot).props, paths);
    session.state().pageSlots[slot].modified = kTrue;
    if (!model.forAll) return;
    AlbumRecord& album = session.album();
    storeButtons(album.pageDefaults.props, paths);
    storeButtons(album.coverDefaults.props, paths);
    album.modified = kTrue;
    storeInEveryPage(session, paths);
}

}  // namespace brindle::properties
