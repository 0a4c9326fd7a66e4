// What the navigation button dialog edits: the pictures of a page's back,
// contents and forward buttons, or none, for this page or for every page
// of the album and its two templates.
#pragma once

#include <array>
#include <string>

#include "album/session.h"

namespace brindle::properties {

enum NavigationButton { kBackButton = 0, kContentsButton = 1, kForwardButton = 2 };

struct NavigationModel {
    std::array<std::string, 3> buttons;  // back, contents, forward
    bool noButton = false;               // chkKeineButton: all three empty
    bool copyToAlbum = false;            // chkKopieren
    bool forAll = false;                 // chkFürAlle

    // The dialog's start: the page's buttons and the remembered copy choice.
    static NavigationModel fromPage(const Session& session, int slot);
    // The three paths as OK stores them.
    std::array<std::string, 3> paths() const;
};

// Command1: a picture for one button through the file dialog, started in
// and updating the last picture directory. False when the user broke off.
bool chooseButtonPicture(Session& session, NavigationModel& model, NavigationButton which);

// "Das Bild zum Button: <path> konnte nicht geladen werden!" with its title.
std::string buttonLoadError(Language lang, const std::string& path);
std::string buttonLoadErrorTitle(Language lang);

// OK: remembers the copy choice, copies the pictures into the album's
// directory when asked, and stores the buttons in the page, or in the
// templates and every page of the album (closed pages are opened hidden,
// changed, saved and closed again). Only the three button paths change.
void applyNavigation(Session& session, int slot, NavigationModel model);

}  // namespace brindle::properties
