#include "album/records.h"

namespace brindle {

const char* const kDefaultPageDescription =
    "Dieses Album wurde mit Brindlesee gestaltet - made with Brindlesee.";

namespace {

void resetPageDefaults(PageRecord& page, const std::string& programDirectory, const char* background) {
    page = PageRecord{};
    page.background = programDirectory + background;
    page.backgroundColor = kGrey;
    page.props.backButton = programDirectory + "ButtonZurück.jpg";
    page.props.contentsButton = programDirectory + "ButtonInhalt.jpg";
    page.props.forwardButton = programDirectory + "ButtonVor.jpg";
    page.panoramas.resetToDummy();
    page.pictures.resetToDummy();
    page.texts.resetToDummy();
    page.searchBoxes.resetToDummy();
    page.stack.resetToDummy();
}

FontSpec linkFont() {
    FontSpec f;
    f.color = kNavy;
    return f;
}

}  // namespace

void ladeStandards(AlbumRecord& album, const std::string& programDirectory) {
    album = AlbumRecord{};
    album.title = "Album";
    album.pages.resetToDummy();
    album.pageCount = 0;
    album.modified = kFalse;

    album.style.headingFont = FontSpec{0, "Arial", 14, kTrue, kFalse, kFalse};
    album.style.textFont = album.style.headingFont;
    album.style.textFont.size = 12;
    album.style.linkFont = linkFont();
    album.style.visitedLinkFont = linkFont();
    album.style.activeLinkFont = linkFont();

    resetPageDefaults(album.pageDefaults, programDirectory, "Standard-Papier.jpg");
    resetPageDefaults(album.coverDefaults, programDirectory, "Standard-Umschlag.jpg");
    album.menuOpenFlags.resetToDummy();
}

}  // namespace brindle
