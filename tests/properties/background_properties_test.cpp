// frmFrageHintergrund without its window: what OK stores in this page, in
// the album's defaults and in every other page, open or closed.
#include <gtest/gtest.h>

#include <filesystem>

#include "album/page_file.h"
#include "properties/background_properties_model.h"
#include "support/session_fixture.h"

namespace brindle::properties {
namespace {

class BackgroundTest : public test::SessionTest {
protected:
    void SetUp() override {
        SessionTest::SetUp();
        start();
        ASSERT_TRUE(session->albumOeffnen(writeAlbum("Album.apr", 3)));
        slot = session->album().pages[1].slot;
        ASSERT_GT(slot, 0);
        session->state().pageSlots[slot].modified = kFalse;
        session->album().modified = kFalse;
    }

    // A closed page as a saved album has it: with title and description,
    // so reading it fills in nothing.
    PageRecord closedPage(const std::string& name) {
        PageFile f;
        EXPECT_TRUE(readPageFile(path(name), session->album().pageDefaults, f).ok());
        f.page.title = "Am Meer";
        f.page.description = "Wellen";
        EXPECT_TRUE(writePageFile(path(name), f.page).ok());
        return f.page;
    }
    std::string bytesOf(const PageRecord& page) {
        EXPECT_TRUE(writePageFile(path("expected.apg"), page).ok());
        return readBytes("expected.apg");
    }
    bool modified(int s) { return isTrue(session->state().pageSlots[s].modified); }
    // Names the first differing byte instead of printing whole files.
    static ::testing::AssertionResult sameBytes(const std::string& got, const std::string& want) {
        if (got == want) return ::testing::AssertionSuccess();
        std::size_t i = 0;
        while (i < got.size() && i < want.size() && got[i] == want[i]) ++i;
        return ::testing::AssertionFailure() << "sizes " << got.size() << " and " << want.size()
                                             << ", first difference at byte " << i << ": \""
                                             << got.substr(i > 20 ? i - 20 : 0, 60) << "\" but expected \""
                                             << want.substr(i > 20 ? i - 20 : 0, 60) << "\"";
    }

    int slot = 0;
};

TEST_F(BackgroundTest, OpenShowsThePageAndOkStoresEveryControl) {
    PageRecord& page = session->page(slot);
    page.background = "/bilder/alt.jpg";
    page.backgroundColor = 0x112233;
    page.music = "/musik/alt.mp3";
    autoForwardSeconds(page.props) = 12;
    page.title = "Seite1";
    page.description = "Alt";
    session->state().options.backgroundCopy = kTrue;
    BackgroundProperties p = backgroundPropertiesOf(*session, slot);
    EXPECT_EQ(p, (BackgroundProperties{"/bilder/alt.jpg", 0x112233, "/musik/alt.mp3", 12, "Seite1", "Alt", true,
                                       false, false}));

    const PageRecord before = page;
    const PageRecord defaults = session->album().pageDefaults;
    p = {"", 0x00FF00, "/musik/neu.mid", -7, "Am See", "Ein Tag am See", false, false, false};
    const BackgroundOutcome out = applyBackgroundProperties(*session, slot, p);
    EXPECT_TRUE(out.changed);
    EXPECT_EQ(out.redrawSlots, std::vector<int>{slot});
    PageRecord expected = before;
    expected.background = "";
    expected.backgroundColor = 0x00FF00;
    expected.music = "/musik/neu.mid";
    autoForwardSeconds(expected.props) = -7;  // backwards
    expected.title = "Am See";
    expected.description = "Ein Tag am See";
    EXPECT_EQ(page.background, expected.background);
    EXPECT_EQ(page.backgroundColor, expected.backgroundColor);
    EXPECT_EQ(page.music, expected.music);
    EXPECT_EQ(page.props, expected.props);
    EXPECT_EQ(page.title, expected.title);
    EXPECT_EQ(page.description, expected.description);
    EXPECT_EQ(page, expected);
    EXPECT_TRUE(modified(slot));
    EXPECT_TRUE(isTrue(session->album().modified));
    EXPECT_FALSE(isTrue(session->state().options.backgroundCopy));  // remembered unchecked
    EXPECT_EQ(session->album().pageDefaults, defaults);
}

TEST_F(BackgroundTest, NothingChangedLeavesThePageUnmodified) {
    const std::string before = bytesOf(session->page(slot));
    const BackgroundOutcome out = applyBackgroundProperties(*session, slot, backgroundPropertiesOf(*session, slot));
    EXPECT_FALSE(out.changed);
    EXPECT_FALSE(modified(slot));
    EXPECT_FALSE(isTrue(session->album().modified));
    EXPECT_TRUE(sameBytes(bytesOf(session->page(slot)), before));
}

TEST_F(BackgroundTest, TitleAndMusicAloneAreStoredToo) {
    BackgroundProperties p = backgroundPropertiesOf(*session, slot);
    p.description = "Nur die Beschreibung";
    EXPECT_TRUE(applyBackgroundProperties(*session, slot, p).changed);
    EXPECT_EQ(session->page(slot).description, "Nur die Beschreibung");
    EXPECT_TRUE(modified(slot));
    EXPECT_FALSE(isTrue(session->album().modified));  // the album's own file is as it was
    p.music = "/musik/lied.mp3";
    EXPECT_TRUE(applyBackgroundProperties(*session, slot, p).changed);
    EXPECT_EQ(session->page(slot).music, "/musik/lied.mp3");
}

TEST_F(BackgroundTest, AllPagesChangesClosedPagesOnDiskAndNothingElse) {
    ASSERT_TRUE(session->SeiteOeffnen(2, "", true));
    const int second = session->album().pages[2].slot;
    ASSERT_GT(second, 0);
    session->state().pageSlots[second].modified = kFalse;
    const std::string secondOnDisk = readBytes("Seite2.apg");
    PageRecord third = closedPage("Seite3.apg");
    const std::string firstOnDisk = readBytes("Seite1.apg");

    BackgroundProperties p = backgroundPropertiesOf(*session, slot);
    p.background = path("wolken.jpg");
    p.backgroundColor = 0x804020;
    p.forwardSeconds = 30;
    p.allPages = true;
    p.allPagesForwarding = true;
    const BackgroundOutcome out = applyBackgroundProperties(*session, slot, p);
    EXPECT_TRUE(out.changed);
    EXPECT_EQ(out.redrawSlots, (std::vector<int>{slot, second}));

    // The closed page: read, changed, written, and closed again.
    third.background = path("wolken.jpg");
    third.backgroundColor = 0x804020;
    autoForwardSeconds(third.props) = 30;
    EXPECT_TRUE(sameBytes(readBytes("Seite3.apg"), bytesOf(third)));
    EXPECT_EQ(session->album().pages[3].slot, 0);
    for (int s = 1; s <= session->state().pageSlots.upper(); ++s)
        if (s != slot && s != second) {
            EXPECT_TRUE(isTrue(session->state().pageSlots[s].free)) << s;
        }
    // Open pages change in memory and wait for their save.
    EXPECT_TRUE(sameBytes(readBytes("Seite2.apg"), secondOnDisk));
    EXPECT_TRUE(sameBytes(readBytes("Seite1.apg"), firstOnDisk));
    EXPECT_EQ(session->page(second).background, path("wolken.jpg"));
    EXPECT_EQ(autoForwardSeconds(session->page(second).props), 30);
    EXPECT_TRUE(modified(second));
    EXPECT_TRUE(modified(slot));
    // New pages start with them.
    EXPECT_EQ(session->album().pageDefaults.background, path("wolken.jpg"));
    EXPECT_EQ(session->album().pageDefaults.backgroundColor, 0x804020u);
    EXPECT_EQ(autoForwardSeconds(session->album().pageDefaults.props), 30);
    EXPECT_TRUE(isTrue(session->album().modified));
}

TEST_F(BackgroundTest, OnlyForwardingForAllPagesLeavesTheirPictures) {
    PageRecord third = closedPage("Seite3.apg");
    const std::string defaultPicture = session->album().pageDefaults.background;
    BackgroundProperties p = backgroundPropertiesOf(*session, slot);
    p.background = path("nur-hier.jpg");
    p.forwardSeconds = -5;
    p.allPagesForwarding = true;
    applyBackgroundProperties(*session, slot, p);
    autoForwardSeconds(third.props) = -5;
    EXPECT_TRUE(sameBytes(readBytes("Seite3.apg"), bytesOf(third)));
    EXPECT_EQ(session->page(slot).background, path("nur-hier.jpg"));
    EXPECT_EQ(session->album().pageDefaults.background, defaultPicture);
}

TEST_F(BackgroundTest, CopyPutsThePictureIntoTheAlbumDirectory) {
    touch("fremd/himmel.jpg");
    writeBytes("fremd/himmel.jpg", "JPEGDATA");
    BackgroundProperties p = backgroundPropertiesOf(*session, slot);
    p.background = path("fremd/himmel.jpg");
    p.copyIntoAlbum = true;
    applyBackgroundProperties(*session, slot, p);
    EXPECT_EQ(session->page(slot).background, path("himmel.jpg"));
    EXPECT_EQ(readBytes("himmel.jpg"), "JPEGDATA");
    EXPECT_TRUE(isTrue(session->state().options.backgroundCopy));
    // A picture already there stays where it is.
    p.background = path("himmel.jpg");
    applyBackgroundProperties(*session, slot, p);
    EXPECT_EQ(session->page(slot).background, path("himmel.jpg"));
    // A file that can't be copied keeps its path and says so.
    p.background = path("fremd/fehlt.jpg");
    applyBackgroundProperties(*session, slot, p);
    EXPECT_EQ(session->page(slot).background, path("fremd/fehlt.jpg"));
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_TRUE(prompter.asked[0].starts_with(
        "message|Fehler|48|Die Datei konnte nicht in das Albumverzeichnis kopiert werden:\n" + path("fremd/fehlt.jpg")))
        << prompter.asked[0];
}

}  // namespace
}  // namespace brindle::properties
