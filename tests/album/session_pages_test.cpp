// Page flows against files from outside: unreadable pages, page lists that
// disagree with their count, copied albums and the save questions.
#include <gtest/gtest.h>

#include <filesystem>

#include "album/paths.h"
#include "byte_builder.h"
#include "support/session_fixture.h"

namespace brindle {
namespace {

namespace fs = std::filesystem;
using test::Bytes;

class SessionPagesTest : public test::SessionTest {
protected:
    std::vector<std::string> folderListing(const std::string& dir) {
        std::vector<std::string> names;
        for (auto& e : fs::directory_iterator(path(dir))) names.push_back(e.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
};

TEST_F(SessionPagesTest, AnUnreadablePageLeavesTheAlbumExactlyAsItWas) {
    struct Case {
        const char* name;
        std::string bytes;
        std::string message;  // after the path
    };
    const std::string page = path("Kaputt.apg");
    const Case cases[] = {
        {"album head", Bytes().str(kAlbumFormat).str("E-Mail: x").zeros(40).bytes(),
         "Datei hat ein ungültiges Format: " + page},
        {"unreadable head", Bytes().u16(5).raw("ab").bytes(),
         "Datei kann nicht gelesen werden: " + page + "\rstring longer than the rest of the file"},
        {"cut current layout", Bytes().str(kPageFormat).str("E-Mail: x").str("bg.jpg").u16(0).bytes(),
         "Datei kann nicht geöfnet werden: " + page + "\runexpected end of file"},
        {"cut older layout", Bytes().str(kPageFormatOlder).str("E-Mail: x").str("bg.jpg").u16(0).bytes(),
         "Datei kann nicht gelesen werden: " + page + "\runexpected end of file"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string album = writeAlbum("Reise.apr", 2);
        writeBytes("Kaputt.apg", c.bytes);
        const std::string albumBytes = readBytes("Reise.apr");
        Session& s = start();
        ASSERT_TRUE(s.albumOeffnen(album));
        const auto listing = folderListing("");
        const int slots = s.state().pageSlots.upper();
        prompter.asked.clear();

        // A page file given by path.
        EXPECT_FALSE(s.SeiteOeffnen(0, page, false));
        EXPECT_EQ(prompter.asked, std::vector<std::string>{"message|Fehler|16|" + c.message});
        EXPECT_EQ(s.album().pageCount, 2);
        EXPECT_EQ(s.album().pages.upper(), 2);
        EXPECT_EQ(s.album().modified, kFalse);
        EXPECT_EQ(s.state().pageSlots.upper(), slots);

        // A listed page whose file went bad.
        fs::copy_file(page, path("Seite2.apg"), fs::copy_options::overwrite_existing);
        prompter.asked.clear();
        EXPECT_FALSE(s.SeiteOeffnen(2, "", false));
        ASSERT_EQ(prompter.asked.size(), 1u);
        EXPECT_EQ(s.album().pages[2].slot, 0);
        EXPECT_EQ(s.state().pageSlots.upper(), slots);

        // Saving writes nothing: the album and its pages are unchanged.
        prompter.asked.clear();
        ASSERT_TRUE(s.AlbumSpeichern(false));
        EXPECT_TRUE(prompter.asked.empty());
        EXPECT_EQ(readBytes("Reise.apr"), albumBytes);
        EXPECT_EQ(readBytes("Kaputt.apg"), c.bytes);
        EXPECT_EQ(folderListing(""), listing);
    }
}

TEST_F(SessionPagesTest, ThePageCountAlwaysFollowsTheList) {
    struct Case {
        const char* name;
        int entries;
        int storedCount;
        bool emptyArray;  // allocated without even its dummy
    };
    for (const Case& c : {Case{"count too large", 1, 3, false}, Case{"count too small", 2, 0, false},
                          Case{"negative count", 1, -4, false}, Case{"array without dummy", 0, 2, true}}) {
        SCOPED_TRACE(c.name);
        AlbumRecord a;
        ladeStandards(a, home());
        for (int i = 1; i <= c.entries; ++i) a.pages.add() = PageEntry{"S" + std::to_string(i), "", "", 0};
        if (c.emptyArray) {
            a.pages.items().clear();
            a.pages.setAllocated(true);
        }
        a.pageCount = static_cast<std::int16_t>(c.storedCount);
        ASSERT_TRUE(writeAlbumFile(path("Aus.apr"), a).ok());
        Session& s = start();
        ASSERT_TRUE(s.albumOeffnen(path("Aus.apr")));
        EXPECT_EQ(s.album().pageCount, c.entries);
        EXPECT_EQ(s.album().pages.upper(), c.entries);
        // A page added afterwards keeps both in step.
        s.neueSeite("", false);
        EXPECT_EQ(s.album().pageCount, c.entries + 1);
        EXPECT_EQ(s.album().pages.upper(), c.entries + 1);
    }

    // A default template whose list was emptied but not its count.
    AlbumRecord t;
    ladeStandards(t, home());
    t.pageCount = 2;
    ASSERT_TRUE(writeAlbumFile(path("Album.vor"), t).ok());
    Session& fresh = start();
    fresh.AlbumNeu();
    EXPECT_EQ(fresh.album().pageCount, 1);
    EXPECT_EQ(fresh.album().pages.upper(), 1);
}

TEST_F(SessionPagesTest, APageAddedToAnAlbumWithoutPagesIsSavedWithIt) {
    writeAlbum("Leer.apr", 0);
    PageRecord extra;
    extra.texts.add().text = "dazu";
    fs::create_directories(path("mehr"));
    ASSERT_TRUE(writePageFile(path("mehr/Extra.apg"), extra).ok());

    // A page file added to the album.
    Session& s = start();
    ASSERT_TRUE(s.albumOeffnen(path("Leer.apr")));
    ASSERT_TRUE(s.SeiteOeffnen(0, path("mehr/Extra.apg"), true));
    EXPECT_EQ(s.album().modified, kTrue);
    ASSERT_TRUE(s.AlbumSpeichern(false));
    AlbumFile saved;
    ASSERT_TRUE(readAlbumFile(path("Leer.apr"), saved).ok());
    ASSERT_EQ(saved.album.pageCount, 1);
    EXPECT_EQ(saved.album.pages[1].fileName, "Extra.apg");
    EXPECT_EQ(saved.album.pages[1].directory, path("mehr/"));

    // A new page: the album counts as changed, so leaving it asks.
    writeAlbum("Leer2.apr", 0);
    Session& gui = start();
    ASSERT_TRUE(gui.albumOeffnen(path("Leer2.apr")));
    gui.neueSeite("", false);
    EXPECT_EQ(gui.album().modified, kTrue);
    prompter.asked.clear();
    prompter.answers = {kCancel};
    gui.AlbumNeu();
    EXPECT_EQ(prompter.asked, std::vector<std::string>{"unsaved|Änderungen in folgenden Dateien speichern?|"
                                                       "  Leer2;    Seite1;"});
    EXPECT_EQ(gui.album().title, "Leer2");

    // A brand-new album is still unchanged with its first page.
    gui.album().modified = kFalse;
    gui.AlbumNeu();
    EXPECT_EQ(gui.album().modified, kFalse);
}

TEST_F(SessionPagesTest, APageGivenByPathIsAddedEvenWhenItsNameIsListed) {
    Session& s = start();
    s.AlbumNeu();  // "Seite1", never saved
    PageRecord p;
    p.texts.add().text = "geladen";
    ASSERT_TRUE(writePageFile(path("Seite1.apg"), p).ok());
    ASSERT_TRUE(s.SeiteOeffnen(0, path("Seite1.apg"), false));
    EXPECT_TRUE(prompter.asked.empty());
    ASSERT_EQ(s.album().pageCount, 2);
    EXPECT_EQ(s.album().pages[2].title, "Seite2");
    EXPECT_EQ(s.album().pages[2].fileName, "Seite1.apg");

    // The open dialog still refuses a file of a listed name.
    touch("anders/seite2.APG");
    prompter.files = {path("anders/seite2.APG")};
    EXPECT_FALSE(s.SeiteOeffnen(0, "", false));
    EXPECT_EQ(prompter.asked.back(), "message|Seite laden abgelehnt|48|Eine Seite mit dem Namen seite2.APG besteht "
                                     "bereits im Album!");
    EXPECT_EQ(s.album().pageCount, 2);
}

TEST_F(SessionPagesTest, ACopiedAlbumWorksOnThePagesBesideIt) {
    writeAlbum("Reise.apr", 2);
    fs::create_directories(path("kopie"));
    for (const char* f : {"Reise.apr", "Seite1.apg", "Seite2.apg"})
        fs::copy_file(path(f), path(std::string("kopie/") + f));
    AlbumRecord defaults;
    ladeStandards(defaults, home());
    PageRecord copied = defaults.pageDefaults;
    copied.texts.add().text = "Kopie";
    ASSERT_TRUE(writePageFile(path("kopie/Seite1.apg"), copied).ok());
    const std::string original1 = readBytes("Seite1.apg"), original2 = readBytes("Seite2.apg");

    Session& s = start();
    prompter.asked.clear();
    ASSERT_TRUE(s.albumOeffnen(path("kopie/Reise.apr")));
    EXPECT_EQ(prompter.asked,
              std::vector<std::string>{"message|Fehler beim laden aufgetreten!|16|\r Datei " + home() +
                                       "Seite1.apg im Verzeichnis \r" + path("kopie/") + "gefunden!\r Datei " +
                                       home() + "Seite2.apg im Verzeichnis \r" + path("kopie/") + "gefunden!"});
    EXPECT_EQ(s.page(1).texts[1].text, "Kopie");
    EXPECT_EQ(s.album().pages[1].directory, path("kopie/"));
    EXPECT_EQ(s.album().modified, kTrue);

    // Edited and saved, the copy changes and the original stays.
    s.page(1).texts[1].text = "geändert";
    s.state().pageSlots[1].modified = kTrue;
    ASSERT_TRUE(s.SeiteOeffnen(2, "", true));
    s.state().pageSlots[s.album().pages[2].slot].modified = kTrue;
    ASSERT_TRUE(s.AlbumSpeichern(false));
    EXPECT_EQ(readBytes("Seite1.apg"), original1);
    EXPECT_EQ(readBytes("Seite2.apg"), original2);
    PageFile page;
    ASSERT_TRUE(readPageFile(path("kopie/Seite1.apg"), PageRecord{}, page).ok());
    EXPECT_EQ(page.page.texts[1].text, "geändert");
    AlbumFile album;
    ASSERT_TRUE(readAlbumFile(path("kopie/Reise.apr"), album).ok());
    EXPECT_EQ(album.album.pages[1].directory, path("kopie/"));
    EXPECT_EQ(album.album.pages[2].directory, path("kopie/"));

    // The original album still opens on its own pages without a word.
    Session& orig = start();
    prompter.asked.clear();
    ASSERT_TRUE(orig.albumOeffnen(path("Reise.apr")));
    EXPECT_TRUE(prompter.asked.empty());
    EXPECT_EQ(orig.album().pages[1].directory, home());
}

TEST_F(SessionPagesTest, SaveQuestionsCarryBothHintsAndANewPageGetsItsDeleteText) {
    Session& s = start();
    s.AlbumNeu();  // neither album nor page has a file
    prompter.answers = {kCancel};
    EXPECT_EQ(s.SpeicherDieseForm(1, true), kCancel);
    EXPECT_EQ(prompter.asked.back(),
              "message|Brindlesee [Album]|35|Der Inhalt in [Seite1] wurde geändert.\r\nÄnderungen speichern?"
              "\r\n\r\nHinweis: diese Seite (Seite1) wurde bisher in noch keiner Datei gespeichert. Wenn Sie nicht "
              "speichern wird diese Seite aus dem Album entfernt!"
              "\r\n\r\nHinweis: vor dem Speichern von Seiten muss das Album gespeichert werden. Bei Ja wird das "
              "Album gespeichert. ");

    // A listed page whose file is gone opens new, with the English menu text.
    const std::string album = writeAlbum("Reise.apr", 2);
    fs::remove(path("Seite2.apg"));
    for (Language lang : {Language::English, Language::German}) {
        Session& en = start(lang);
        ASSERT_TRUE(en.albumOeffnen(album));
        editors.events.clear();
        prompter.answers = {kNo};
        ASSERT_TRUE(en.SeiteOeffnen(2, "", false));
        EXPECT_NE(en.album().pages[2].slot, 0);
        const std::string want = lang == Language::English ? "menu Delete Seite2" : "menu Seite2 entfernen";
        EXPECT_NE(std::find(editors.events.begin(), editors.events.end(), want), editors.events.end())
            << want;
    }
}

TEST_F(SessionPagesTest, PicturesAndAllTwentyHotspotsAreFoundBesideTheAlbum) {
    fs::create_directories(path("album"));
    PageRecord p;
    p.pictures.add().path = "C:\\Fotos\\bild1.jpg";
    PanoramaElement& pano = p.panoramas.add();
    pano.hotspotCount = 20;
    for (int h = 0; h <= 20; ++h) {
        pano.hotspots[static_cast<std::size_t>(h)].urlName = "C:\\Pano\\h" + std::to_string(h) + ".jpg";
        touch("album/h" + std::to_string(h) + ".jpg");
    }
    touch("album/bild1.jpg");
    ASSERT_TRUE(writePageFile(path("album/Seite1.apg"), p).ok());
    AlbumRecord a;
    ladeStandards(a, home());
    a.pages.add() = PageEntry{"Seite1", "Seite1.apg", path("album/"), 0};
    a.pageCount = 1;
    ASSERT_TRUE(writeAlbumFile(path("album/Reise.apr"), a).ok());

    Session& s = start();
    ASSERT_TRUE(s.albumOeffnen(path("album/Reise.apr")));
    const PageRecord& read = s.page(s.album().pages[1].slot);
    EXPECT_EQ(read.pictures[1].path, path("album/bild1.jpg"));
    const PanoramaElement& got = read.panoramas[1];
    EXPECT_EQ(got.hotspots[0].urlName, "C:\\Pano\\h0.jpg");  // the dummy hotspot is not a picture
    for (int h = 1; h <= 20; ++h) {
        SCOPED_TRACE(h);
        EXPECT_EQ(got.hotspots[static_cast<std::size_t>(h)].urlName, path("album/h" + std::to_string(h) + ".jpg"));
    }
    EXPECT_EQ(got.currentHotspot, 20);
}

}  // namespace
}  // namespace brindle
