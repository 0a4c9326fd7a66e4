#include <gtest/gtest.h>

#include <vector>

#include "album/path_repair.h"
#include "album/paths.h"
#include "support/temp_home.h"

namespace brindle {
namespace {

class PathRepairTest : public test::TempHomeTest {
protected:
    std::vector<std::string> log;
    LogSink sink() {
        return [this](const std::string& line) { log.push_back(line); };
    }
};

TEST_F(PathRepairTest, FormerInstallPathMapsIntoTheProgramDirectory) {
    touch("Umschläge/Blau.jpg");
    std::string p = std::string(kFormerInstallPath) + "\\Umschläge\\Blau.jpg";
    EXPECT_TRUE(korrigierePfad(p, home()));
    EXPECT_EQ(p, home() + "Umschläge/Blau.jpg");

    // The comparison ignores case and separator style.
    std::string upper = "C:/Programme/Brindlesee Album Studio/Umschläge/Blau.jpg";
    EXPECT_TRUE(korrigierePfad(upper, home()));
    EXPECT_EQ(upper, home() + "Umschläge/Blau.jpg");
}

TEST_F(PathRepairTest, CdFoldersAreTriedInTheirOrder) {
    touch("CD Beigabe neu/Button/Vor.jpg");
    touch("CDBeigabe/Sonst/Vor.jpg");
    std::string p = "D:\\Irgendwo\\Vor.jpg";
    EXPECT_TRUE(korrigierePfad(p, home()));
    EXPECT_EQ(p, home() + "CDBeigabe/Sonst/Vor.jpg");

    touch("CD Beigabe neu/Hintergründe/Papier.jpg");
    std::string q = "/weg/Papier.jpg";
    EXPECT_TRUE(korrigierePfad(q, home()));
    EXPECT_EQ(q, home() + "CD Beigabe neu/Hintergründe/Papier.jpg");
}

TEST_F(PathRepairTest, UmlautThenEndingThenProgramDirectory) {
    // "ü" as "ue" beside the stored path (attempt 13).
    touch("alt/Gruen.jpg");
    std::string p = home() + "alt/Grün.jpg";
    EXPECT_TRUE(korrigierePfad(p, home()));
    EXPECT_EQ(p, home() + "alt/Gruen.jpg");

    // "jpg" tried as "jpeg" beside it (attempt 14).
    touch("alt/Meer.jpeg");
    std::string q = home() + "alt/Meer.jpg";
    EXPECT_TRUE(korrigierePfad(q, home(), sink()));
    EXPECT_EQ(q, home() + "alt/Meer.jpeg");
    EXPECT_EQ(log.at(1), "Module 2 - korrigierePfad - Tausche jpg gegen jpeg:" + home() + "alt/Meer.jpg");

    // A default picture of a former CD folder with "ü" and "jpeg" is found in
    // the program directory with "ue" and "jpg" (attempts 14 to 16).
    log.clear();
    touch("ButtonZurueck.jpg");
    std::string r = "C:\\CD Beigabe alt\\Button\\ButtonZurück.jpeg";
    EXPECT_TRUE(korrigierePfad(r, home(), sink()));
    EXPECT_EQ(r, home() + "ButtonZurueck.jpg");
    EXPECT_EQ(log, (std::vector<std::string>{
                       "Module 2 - korrigierePfad - Start:C:\\CD Beigabe alt\\Button\\ButtonZurück.jpeg",
                       "Module 2 - korrigierePfad - Tausche jpeg gegen jpg:C:\\CD Beigabe alt\\Button\\ButtonZurück.jpeg",
                       "Module 2 - korrigierePfad - Ende Datei korrigiert):" + home() + "ButtonZurueck.jpg"}));
}

TEST_F(PathRepairTest, EndingSwapIsCaseSensitiveAndFailureKeepsThePath) {
    touch("alt/Bild.JPEG");
    touch("Bild.jpeg");
    std::string p = home() + "alt/Bild.JPG";
    EXPECT_FALSE(korrigierePfad(p, home(), sink()));
    EXPECT_EQ(p, home() + "alt/Bild.JPG");
    EXPECT_EQ(log.back(), "Module 2 - korrigierePfad - Ende (Datei fehlt):" + home() + "alt/Bild.JPG");

    // The swap happens once: "x.jpeg" becomes "x.jpg" and never back.
    touch("Foto.jpeg.jpg");
    std::string q = "/nirgends/Foto.jpeg";
    EXPECT_FALSE(korrigierePfad(q, home()));
}

TEST_F(PathRepairTest, AnEmptyPathFindsTheProgramDirectoryItself) {
    std::string p;
    EXPECT_TRUE(korrigierePfad(p, home()));
    EXPECT_EQ(p, home());
}

TEST_F(PathRepairTest, SucheBildTriesInstallTailCameraNamesAndAlbumFolder) {
    const std::string longDir = "/ein/sehr/langer/alter/pfad/zu/den/fotos/";

    touch("fotos/DSD0001.jpg");
    std::string dsc = home() + "fotos/DSC0001.jpg";
    EXPECT_TRUE(sucheBild(dsc, home()));
    EXPECT_EQ(dsc, home() + "fotos/DSD0001.jpg");

    touch("fotos/IMF_7.jpg");
    std::string img = home() + "fotos/IMG_7.jpg";
    EXPECT_TRUE(sucheBild(img, home()));
    EXPECT_EQ(img, home() + "fotos/IMF_7.jpg");

    // DSC is replaced case-sensitively.
    touch("fotos/dsd2.jpg");
    std::string lower = home() + "fotos/dsc2.jpg";
    EXPECT_FALSE(sucheBild(lower, home()));

    touch("album/Strand.jpg");
    std::string beside = longDir + "Strand.jpg";
    EXPECT_TRUE(sucheBild(beside, home(), home() + "album/"));
    EXPECT_EQ(beside, home() + "album/Strand.jpg");

    // From character 37 on behind the program directory, whatever the path.
    touch("Bilder/Turm.jpg");
    std::string tail = std::string(36, 'x') + "/Bilder/Turm.jpg";
    EXPECT_TRUE(sucheBild(tail, home()));
    EXPECT_EQ(tail, home() + "Bilder/Turm.jpg");

    // A path of 36 characters or fewer ends at the program directory, which exists.
    std::string shortPath = "/kurz/Bild.jpg";
    EXPECT_TRUE(sucheBild(shortPath, home()));
    EXPECT_EQ(shortPath, home().substr(0, home().size() - 1));
}

TEST_F(PathRepairTest, APictureBesideTheAlbumIsFoundWhateverItsStoredPathsLength) {
    touch("album/bild1.jpg");
    touch("album/Strand.jpg");
    for (std::string stored : {std::string("C:\\Fotos\\bild1.jpg"), std::string("bild1.jpg"),
                               std::string("D:\\") + std::string(40, 'x') + "\\Strand.jpg"}) {
        SCOPED_TRACE(stored);
        std::string dir, file;
        teilePfad(stored, dir, file);
        EXPECT_TRUE(sucheBild(stored, home(), home() + "album/"));
        EXPECT_EQ(stored, home() + "album/" + file);
    }
}

TEST_F(PathRepairTest, MovedAlbumAdoptsPagesBesideItWithOneMessage) {
    touch("neu/Seite1.apg");
    touch("bleibt/Seite4.apg");
    AlbumRecord album;
    ladeStandards(album, home());
    album.directory = home() + "neu/";
    album.pages.add() = PageEntry{"Seite1", "Seite1.apg", "/alt/", 0};
    album.pages.add() = PageEntry{"Seite2", "Seite2.apg", "/alt/", 0};
    album.pages.add() = PageEntry{"Neu", "", "", 0};
    album.pages.add() = PageEntry{"Seite4", "Seite4.apg", home() + "bleibt/", 0};
    album.pageCount = 4;

    AlbumRecord english = album;
    std::string msg = korrigiereVerschobenesAlbum(album, Language::German);
    EXPECT_EQ(msg, "\r Datei /alt/Seite1.apg im Verzeichnis \r" + home() + "neu/gefunden!" +
                       "\r Datei /alt/Seite2.apg nicht gefunden!");
    EXPECT_EQ(album.pages[1].directory, home() + "neu/");
    EXPECT_EQ(album.pages[2].directory, "/alt/");
    EXPECT_EQ(album.modified, kTrue);
    EXPECT_STREQ(movedAlbumTitle(Language::German), "Fehler beim laden aufgetreten!");

    EXPECT_EQ(korrigiereVerschobenesAlbum(english, Language::English),
              "\r File /alt/Seite1.apg at directory \r" + home() + "neu/not found!" +
                  "\r File /alt/Seite2.apg not found!");
    EXPECT_STREQ(movedAlbumTitle(Language::English), "Error while loading!");

    // Nothing to adopt: no message, not modified.
    AlbumRecord stays;
    ladeStandards(stays, home());
    stays.pages.add() = PageEntry{"Seite4", "Seite4.apg", home() + "bleibt/", 0};
    stays.pageCount = 1;
    EXPECT_EQ(korrigiereVerschobenesAlbum(stays, Language::German), "");
    EXPECT_EQ(stays.modified, kFalse);
}

TEST_F(PathRepairTest, DateiVorhandenNeverFails) {
    touch("ordner/datei.txt");
    EXPECT_TRUE(dateiVorhanden(path("ordner/datei.txt")));
    EXPECT_TRUE(dateiVorhanden(path("ordner/")));
    EXPECT_FALSE(dateiVorhanden(path("ordner/fehlt")));
    EXPECT_FALSE(dateiVorhanden(""));
    EXPECT_FALSE(dateiVorhanden(std::string("a\0b", 3)));
    EXPECT_FALSE(dateiVorhanden("Z:\\gibt\\es\\nicht.jpg"));
    std::string dir, file;
    teilePfad("C:\\Bilder\\Urlaub/Strand.jpg", dir, file);
    EXPECT_EQ(dir, "C:\\Bilder\\Urlaub/");
    EXPECT_EQ(file, "Strand.jpg");
    teilePfad("nur.jpg", dir, file);
    EXPECT_EQ(dir, "");
    EXPECT_EQ(file, "nur.jpg");
}

}  // namespace
}  // namespace brindle
