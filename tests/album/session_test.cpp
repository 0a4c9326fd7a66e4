#include <gtest/gtest.h>

#include <filesystem>

#include "album/paths.h"
#include "support/session_fixture.h"

namespace brindle {
namespace {

using test::SessionTest;

TEST_F(SessionTest, AlbumNeuWithoutTemplateGivesDefaultsAndOnePage) {
    Session& s = start();
    s.AlbumNeu();
    EXPECT_TRUE(prompter.asked.empty());
    EXPECT_EQ(s.album().title, "Album");
    ASSERT_EQ(s.album().pageCount, 1);
    EXPECT_EQ(s.album().pages[1].title, "Seite1");
    EXPECT_EQ(s.album().pages[1].slot, 1);
    EXPECT_EQ(s.album().modified, kFalse);
    EXPECT_EQ(s.state().pageSlots[1].modified, kTrue);
    EXPECT_EQ(s.page(1).background, home() + "Standard-Papier.jpg");
    EXPECT_EQ(log, (std::vector<std::string>{
                       "Module 2 Album Neu Start", "Module 2 Album Neu Alle Seiten werden gesichert",
                       "Module 2 Album Neu löschen aller Werte",
                       "Module 2 Album Neu - Album öffnen:  " + home() + "Album.vor",
                       "Module 2 Album Neu - Lade Standards", "Module 2 -  Album Neu - File New starten",
                       "Module 2 -  Album Neu - AktualisiereAlbumExplorer"}));

    Session& en = start(Language::English);
    en.AlbumNeu();
    EXPECT_EQ(en.album().pages[1].title, "Page1");
    EXPECT_EQ(en.seitenName(), "Page2");
}

TEST_F(SessionTest, AlbumNeuTakesTheTemplateAndRepairsItsPictures) {
    AlbumRecord t;
    ladeStandards(t, "C:\\Programme\\Alt\\");  // pictures of another machine
    t.pageDefaults.texts.add().text = "Vorgabetext";
    t.indexColumns = 7;
    t.coverDefaults.props.contentsButton.clear();  // empty stays empty
    ASSERT_TRUE(writeAlbumFile(path("Album.vor"), t).ok());
    touch("Standard-Papier.jpg");
    touch("ButtonVor.jpg");

    Session& s = start();
    s.AlbumNeu();
    const AlbumRecord& a = s.album();
    EXPECT_EQ(a.indexColumns, 7);
    EXPECT_EQ(a.title, "Album");
    EXPECT_EQ(a.fileName, "");
    EXPECT_EQ(a.pageDefaults.background, home() + "Standard-Papier.jpg");
    // The cover falls back to the page paper, not to its own.
    EXPECT_EQ(a.coverDefaults.background, home() + "Standard-Papier.jpg");
    EXPECT_EQ(a.pageDefaults.props.forwardButton, home() + "ButtonVor.jpg");
    EXPECT_EQ(a.pageDefaults.props.backButton, home() + "ButtonZurück.jpg");
    EXPECT_EQ(a.coverDefaults.props.contentsButton, "");
    EXPECT_EQ(s.page(1).texts[1].text, "Vorgabetext");
    EXPECT_TRUE(prompter.asked.empty());
}

TEST_F(SessionTest, SavingANewAlbumAsksForTheAlbumAndEachPageUnderItsFolder) {
    Session& s = start();
    s.AlbumNeu();
    s.neueSeite("", false);
    EXPECT_EQ(s.album().modified, kTrue);
    prompter.files = {path("Reise.apr"), path("Seite1.apg"), path("Seite2.apg")};
    ASSERT_TRUE(s.AlbumSpeichern(false));
    EXPECT_EQ(prompter.asked, (std::vector<std::string>{
                                  "save|5|" + home() + "|" + home() + "Album",
                                  "save|4|" + home() + "|" + home() + "Seite1.apg",
                                  "save|4|" + home() + "|" + home() + "Seite2.apg",
                              }));
    // Reopened, the album knows both page files.
    Session& again = start();
    ASSERT_TRUE(again.albumOeffnen(path("Reise.apr")));
    EXPECT_EQ(again.album().title, "Reise");
    ASSERT_EQ(again.album().pageCount, 2);
    EXPECT_EQ(again.album().pages[2].fileName, "Seite2.apg");
    EXPECT_EQ(again.album().pages[1].slot, 1);  // the first page is opened
    EXPECT_EQ(again.state().pageSlots[1].modified, kFalse);
}

TEST_F(SessionTest, AnUnmodifiedNewAlbumIsAskedForButNotWrittenUntilItsPageNeedsIt) {
    Session& s = start();
    s.AlbumNeu();
    ASSERT_EQ(s.album().modified, kFalse);
    prompter.files = {path("Leer.apr")};  // then every dialog is cancelled
    EXPECT_FALSE(s.AlbumSpeichern(false));
    // The album's dialog came, the writer wrote nothing as nothing changed;
    // the page then needs a saved album and asks again (Save As), cancelled.
    EXPECT_EQ(prompter.asked.size(), 3u);
    EXPECT_EQ(prompter.asked[0], "save|5|" + home() + "|" + home() + "Album");
    EXPECT_EQ(prompter.asked[1], "save|5|" + home() + "|" + home() + "Album");
    EXPECT_EQ(prompter.asked[2], "message|Abbruch|48|Sie haben das Speichern von noch nicht gespeicherten Seiten "
                                 "abgebrochen.");
    EXPECT_FALSE(dateiVorhanden(path("Leer.apr")));
}

TEST_F(SessionTest, NoForANeverSavedPageTakesItOutOfTheAlbum) {
    Session& s = start();
    s.AlbumNeu();
    const int slot = s.neueSeite("", false);
    ASSERT_GT(slot, 0);
    s.album().fileName = "A.apr";  // the album has a file, the page has not
    prompter.answers = {kNo};
    EXPECT_EQ(s.SpeicherDieseForm(slot, true), kNo);
    EXPECT_EQ(prompter.asked.at(0),
              "message|Brindlesee [Album]|35|Der Inhalt in [Seite2] wurde geändert.\r\nÄnderungen speichern?\r\n\r\n"
              "Hinweis: diese Seite (Seite2) wurde bisher in noch keiner Datei gespeichert. Wenn Sie nicht speichern "
              "wird diese Seite aus dem Album entfernt!");
    EXPECT_EQ(s.album().pageCount, 1);
    EXPECT_EQ(s.album().pages.upper(), 1);
    EXPECT_EQ(s.album().pages[1].title, "Seite1");
    EXPECT_EQ(s.state().pageSlots[slot].free, kTrue);
    EXPECT_EQ(editors.events.back(), "unload 2");

    // Without an album file the question says the album comes first.
    s.album().fileName.clear();
    prompter.answers = {kCancel};
    EXPECT_EQ(s.SpeicherDieseForm(1, true), kCancel);
    EXPECT_NE(prompter.asked.back().find("Hinweis: vor dem Speichern von Seiten muss das Album gespeichert werden. "
                                         "Bei Ja wird das Album gespeichert. "),
              std::string::npos);
}

TEST_F(SessionTest, RemovingAPageAsksOnlyWhenChangedAndTakesItOut) {
    std::string album = writeAlbum("Reise.apr", 3);
    Session& s = start();
    ASSERT_TRUE(s.albumOeffnen(album));
    s.SeiteOeffnen(2, "", false);
    const int slot = s.album().pages[2].slot;
    ASSERT_TRUE(s.seiteEntfernen(slot));
    EXPECT_TRUE(prompter.asked.empty());  // saved and unchanged: no question
    ASSERT_EQ(s.album().pageCount, 2);
    EXPECT_EQ(s.album().pages[2].title, "Seite3");
    EXPECT_EQ(s.album().modified, kTrue);
    EXPECT_EQ(s.state().pageSlots[slot].free, kTrue);

    // A changed page asks first; cancel keeps it.
    s.state().pageSlots[1].modified = kTrue;
    prompter.answers = {kCancel};
    EXPECT_FALSE(s.seiteEntfernen(1));
    EXPECT_EQ(prompter.asked.at(0), "message|Brindlesee [Reise]|35|Der Inhalt in [Seite1] wurde geändert.\r\n"
                                    "Änderungen speichern?");
    EXPECT_EQ(s.album().pageCount, 2);
}

TEST_F(SessionTest, APageTheAlbumAlreadyListsIsRefused) {
    std::string album = writeAlbum("Reise.apr", 2);
    Session& s = start(Language::English);
    ASSERT_TRUE(s.albumOeffnen(album));
    prompter.files = {path("Seite2.apg")};
    s.SeiteOeffnen(0, "", false);
    EXPECT_EQ(prompter.asked.back(), "message|Page loading aborted|48|File " + path("Seite2.apg") +
                                         " allready exist at the album!");
    EXPECT_EQ(s.album().pageCount, 2);

    // Another file of a name the album has, picked in the dialog, is refused by name.
    touch("anders/seite1.APG");
    prompter.files = {path("anders/seite1.APG")};
    EXPECT_FALSE(s.SeiteOeffnen(0, "", false));
    EXPECT_EQ(prompter.asked.back(),
              "message|Page loading aborted|48|A page with the name seite1.APG allready exist at the album!");
}

TEST_F(SessionTest, AMissingPageFileIsSearchedOrOpenedNew) {
    std::string album = writeAlbum("Reise.apr", 2);
    std::filesystem::create_directories(path("weg"));
    std::filesystem::rename(path("Seite2.apg"), path("weg/Seite2.apg"));
    Session& s = start();
    ASSERT_TRUE(s.albumOeffnen(album));
    prompter.answers = {kYes};
    prompter.files = {path("weg/Seite2.apg")};
    s.SeiteOeffnen(2, "", false);
    EXPECT_EQ(prompter.asked.at(0), "message|Fehler beim laden aufgetreten!|16|\r Datei " + path("Seite2.apg") +
                                        " nicht gefunden!");
    EXPECT_EQ(prompter.asked.at(1),
              "message|Warnung|4|Seite2.apg wurde nicht im Verzeichnis: \r" + home() +
                  "\rgefunden.\r\rMöchten Sie die Datei Suchen?\r\rHinweis: wenn Sie nein wählen wird die Seite als "
                  "neu geöffnet.");
    EXPECT_EQ(prompter.asked.at(2), "open|4|" + home() + "|Seite2.apg");
    EXPECT_EQ(s.album().pages[2].directory, path("weg/"));
    ASSERT_GT(s.album().pages[2].slot, 0);
    ASSERT_GE(s.page(s.album().pages[2].slot).texts.upper(), 1);
    EXPECT_EQ(s.page(s.album().pages[2].slot).texts[1].text, "Text Seite2");
}

TEST_F(SessionTest, OpeningAMissingOrForeignAlbumKeepsTheOpenOne) {
    Session& s = start(Language::English);
    s.AlbumNeu();
    EXPECT_FALSE(s.albumOeffnen(path("fehlt.apr")));
    EXPECT_EQ(prompter.asked.back(), "message|Fehler|16|File not found: " + path("fehlt.apr"));

    writeBytes("kaputt.apr", std::string("\x2A\x00", 2) + "Album Projekt: Brindlesee Pro, Version 1.0" +
                                 std::string("\x00\x00\x05\x00Rei", 7));
    EXPECT_FALSE(s.albumOeffnen(path("kaputt.apr")));
    EXPECT_EQ(prompter.asked.back().rfind("message|Error|16|Could not read the file: " + path("kaputt.apr"), 0), 0u);
    EXPECT_EQ(s.album().pageCount, 1);  // the open album is untouched
    EXPECT_EQ(s.album().title, "Album");

    // A foreign template gives the defaults without a word.
    writeBytes("fremd.vor", std::string("\x03\x00GIF\x00\x00", 7));
    std::size_t before = prompter.asked.size();
    EXPECT_FALSE(s.albumOeffnen(path("fremd.vor")));
    EXPECT_EQ(prompter.asked.size(), before);
}

TEST_F(SessionTest, AMovedAlbumAdoptsItsPagesWithOneMessage) {
    std::string album = writeAlbum("Reise.apr", 2);
    std::filesystem::create_directories(path("neu"));
    for (const char* f : {"Reise.apr", "Seite1.apg", "Seite2.apg"})
        std::filesystem::rename(path(f), path(std::string("neu/") + f));
    Session& s = start();
    ASSERT_TRUE(s.albumOeffnen(path("neu/Reise.apr")));
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0], "message|Fehler beim laden aufgetreten!|16|\r Datei " + home() +
                                     "Seite1.apg im Verzeichnis \r" + path("neu/") + "gefunden!\r Datei " + home() +
                                     "Seite2.apg im Verzeichnis \r" + path("neu/") + "gefunden!");
    EXPECT_EQ(s.album().modified, kTrue);
    EXPECT_EQ(s.page(1).texts[1].text, "Text Seite1");
}

TEST_F(SessionTest, UnsavedFilesAreListedAndCancelStopsANewAlbum) {
    Session& s = start(Language::English);
    s.AlbumNeu();
    s.neueSeite("", false);
    prompter.answers = {kCancel};
    s.AlbumNeu();
    EXPECT_EQ(prompter.asked, (std::vector<std::string>{
                                  "unsaved|Save changes in the following files?|  Album;    Page1;    Page2;"}));
    EXPECT_EQ(s.state().answer, kCancel);
    EXPECT_EQ(s.album().pageCount, 2);

    prompter.answers = {kNo};
    s.AlbumNeu();
    EXPECT_EQ(s.album().pageCount, 1);
}

TEST_F(SessionTest, RecentFilesMoveDropMissingAndNeverHoldTheDefaultTemplate) {
    Session& s = start();
    std::vector<std::string> names;
    for (int i = 1; i <= 11; ++i) {
        names.push_back(path("a" + std::to_string(i) + ".apr"));
        touch("a" + std::to_string(i) + ".apr");
        s.merkeZuletzt(names.back());
    }
    ASSERT_EQ(s.state().recentFiles.size(), 10u);
    EXPECT_EQ(settings->get("Brindlesee", "Recent Files", "RecentFile1"), names[10]);
    EXPECT_EQ(settings->get("Brindlesee", "Recent Files", "RecentFile10"), names[1]);

    s.merkeZuletzt(names[4] + " ");  // already there: moves to the top, nothing falls out
    EXPECT_EQ(settings->get("Brindlesee", "Recent Files", "RecentFile2"), names[10]);
    EXPECT_EQ(settings->get("Brindlesee", "Recent Files", "RecentFile10"), names[1]);

    std::filesystem::remove(names[9]);
    touch("Album.vor");
    s.merkeZuletzt(path("Album.vor"));
    EXPECT_EQ(settings->get("Brindlesee", "Recent Files", "RecentFile10"), "");
    for (int i = 1; i <= 10; ++i) {
        std::string v = settings->get("Brindlesee", "Recent Files", "RecentFile" + std::to_string(i));
        EXPECT_EQ(v.find("Album.vor"), std::string::npos);
        EXPECT_NE(v, names[9]);
    }
    EXPECT_EQ(Session::zuletztAnzeige("/kurz/a.apr"), "/kurz/a.apr");
    const std::string longPath = "/home/anna/Bilder/Urlaub 2026/Alben/Sommer/Reise.apr";
    EXPECT_EQ(Session::zuletztAnzeige(longPath), "/ho..." + longPath.substr(longPath.size() - 34));
    EXPECT_EQ(Session::zuletztAnzeige(std::string(40, 'x')), std::string(40, 'x'));
    EXPECT_EQ(Session::zuletztAnzeige(std::string(41, 'x')), "xxx..." + std::string(34, 'x'));
}

}  // namespace
}  // namespace brindle
