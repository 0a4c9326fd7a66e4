#include "properties/navigation_model.h"

#include <gtest/gtest.h>

#include "album/page_file.h"
#include "support/session_fixture.h"

namespace brindle::properties {
namespace {

class NavigationTest : public brindle::test::SessionTest {
protected:
    // An album of three saved pages with the first one open in slot 1.
    void openAlbum() {
        start();
        ASSERT_TRUE(session->albumOeffnen(writeAlbum("a.apr", 3)));
        ASSERT_GT(session->album().pages[1].slot, 0);
        slot = session->album().pages[1].slot;
        ASSERT_EQ(session->album().pages[2].slot, 0);
    }
    PageRecord readPage(const std::string& name) {
        PageFile f;
        EXPECT_TRUE(readPageFile(path(name), session->album().pageDefaults, f).ok());
        return f.page;
    }
    int slot = 0;
};

TEST_F(NavigationTest, OpensOnThePageAndOkStoresTheThreePathsInThisPageOnly) {
    openAlbum();
    session->state().options.buttonCopy = kTrue;
    session->page(slot).props.backButton = "/x/zurueck.jpg";
    session->page(slot).props.contentsButton = "";
    session->page(slot).props.forwardButton = "/x/vor.jpg";
    autoForwardSeconds(session->page(slot).props) = 7;
    NavigationModel m = NavigationModel::fromPage(*session, slot);
    EXPECT_EQ(m.buttons, (std::array<std::string, 3>{"/x/zurueck.jpg", "", "/x/vor.jpg"}));
    EXPECT_FALSE(m.noButton);
    EXPECT_TRUE(m.copyToAlbum);
    EXPECT_FALSE(m.forAll);

    const std::string page2 = readBytes("Seite2.apg");
    const AlbumRecord albumBefore = session->album();
    m.buttons[kContentsButton] = "/x/inhalt.jpg";
    m.copyToAlbum = false;
    session->state().pageSlots[slot].modified = kFalse;
    applyNavigation(*session, slot, m);
    const PageProps& p = session->page(slot).props;
    EXPECT_EQ(p.backButton, "/x/zurueck.jpg");
    EXPECT_EQ(p.contentsButton, "/x/inhalt.jpg");
    EXPECT_EQ(p.forwardButton, "/x/vor.jpg");
    EXPECT_EQ(autoForwardSeconds(session->page(slot).props), 7);
    EXPECT_TRUE(isTrue(session->state().pageSlots[slot].modified));
    EXPECT_EQ(session->state().options.buttonCopy, kFalse);  // remembered
    EXPECT_EQ(session->album(), albumBefore);
    EXPECT_EQ(readBytes("Seite2.apg"), page2);
}

TEST_F(NavigationTest, NoButtonForAllEmptiesTemplatesAndClosedPagesOnDisk) {
    openAlbum();
    autoForwardSeconds(session->album().pageDefaults.props) = 4;
    NavigationModel m = NavigationModel::fromPage(*session, slot);
    EXPECT_FALSE(m.noButton);  // a new album's pages have the three default buttons
    m.noButton = true;
    m.forAll = true;
    applyNavigation(*session, slot, m);
    const AlbumRecord& a = session->album();
    for (const PageProps* p : std::initializer_list<const PageProps*>{&a.pageDefaults.props, &a.coverDefaults.props, &session->page(slot).props}) {
        EXPECT_EQ(p->backButton, "");
        EXPECT_EQ(p->contentsButton, "");
        EXPECT_EQ(p->forwardButton, "");
    }
    EXPECT_EQ(autoForwardSeconds(session->album().pageDefaults.props), 4);  // only the buttons change
    EXPECT_TRUE(isTrue(a.modified));
    for (const char* name : {"Seite2.apg", "Seite3.apg"}) {
        SCOPED_TRACE(name);
        PageRecord p = readPage(name);
        EXPECT_EQ(p.props.backButton, "");
        EXPECT_EQ(p.props.forwardButton, "");
        EXPECT_EQ(p.texts[1].text, std::string("Text ") + std::string(name).substr(0, 6));
    }
    // The closed pages are closed again; their slots are free.
    EXPECT_EQ(a.pages[2].slot, 0);
    EXPECT_EQ(a.pages[3].slot, 0);

    // A new page comes without buttons.
    const int fresh = session->neueSeite("", true);
    EXPECT_EQ(session->page(fresh).props.backButton, "");
    EXPECT_EQ(NavigationModel::fromPage(*session, fresh).noButton, true);
}

TEST_F(NavigationTest, CopyPutsThePicturesIntoTheAlbumDirectory) {
    openAlbum();
    touch("fremd/knopf.jpg");
    writeBytes("fremd/knopf.jpg", "JPEGDATA");
    touch("schon.jpg");
    NavigationModel m = NavigationModel::fromPage(*session, slot);
    m.buttons = {path("fremd/knopf.jpg"), path("schon.jpg"), ""};
    m.copyToAlbum = true;
    applyNavigation(*session, slot, m);
    const PageProps& p = session->page(slot).props;
    EXPECT_EQ(p.backButton, path("knopf.jpg"));
    EXPECT_EQ(readBytes("knopf.jpg"), "JPEGDATA");
    EXPECT_EQ(p.contentsButton, path("schon.jpg"));
    EXPECT_EQ(p.forwardButton, "");
    EXPECT_EQ(session->state().options.buttonCopy, kTrue);
}

TEST_F(NavigationTest, ChoosingAPictureUsesAndUpdatesThePictureDirectory) {
    openAlbum();
    session->state().pictureDirectory = "/bilder/";
    prompter.files = {"/knoepfe/vor.gif", ""};
    NavigationModel m = NavigationModel::fromPage(*session, slot);
    m.noButton = true;
    ASSERT_TRUE(chooseButtonPicture(*session, m, kForwardButton));
    EXPECT_EQ(m.buttons[kForwardButton], "/knoepfe/vor.gif");
    EXPECT_FALSE(m.noButton);
    EXPECT_EQ(session->state().pictureDirectory, "/knoepfe/");
    EXPECT_FALSE(chooseButtonPicture(*session, m, kBackButton));  // cancelled
    ASSERT_EQ(prompter.asked.size(), 2u);
    EXPECT_EQ(prompter.asked[0], "open|1|/bilder/|");
    EXPECT_EQ(prompter.asked[1], "open|1|/knoepfe/|");

    EXPECT_EQ(buttonLoadError(Language::German, "/k/a.jpg"), "Das Bild zum Button: /k/a.jpg konnte nicht geladen werden!");
    EXPECT_EQ(buttonLoadError(Language::English, "/k/a.jpg"), "The picture of the button: /k/a.jpg could not be loaded!");
    EXPECT_EQ(buttonLoadErrorTitle(Language::German), "Fehler");
    EXPECT_EQ(buttonLoadErrorTitle(Language::English), "error");
}

}  // namespace
}  // namespace brindle::properties
