// brindlesee-cli pages: the special pages added to a saved album, the
// question before a page is rebuilt, and the exit status of bad calls.
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <array>
#include <cstdio>

#include "album/album_file.h"
#include "album/page_file.h"
#include "cli_run.h"
#include "support/temp_home.h"

namespace brindle {
namespace {

class CliPagesTest : public test::TempHomeTest {
protected:
    test::CliRun cli(const std::string& args) { return test::runCli("pages " + args, path("err")); }
    std::string err() { return readBytes("err"); }
    std::string q(const std::string& name) { return "'" + path(name) + "'"; }

    void writeAlbum() {
        AlbumRecord a;
        ladeStandards(a, home());
        a.title = "Reise";
        for (const char* title : {"Seite1", "Seite2"}) {
            a.pages.add() = PageEntry{title, std::string(title) + ".apg", home(), 0};
            ASSERT_TRUE(writePageFile(path(std::string(title) + ".apg"), a.pageDefaults).ok());
        }
        a.pageCount = 2;
        ASSERT_TRUE(writeAlbumFile(path("Reise.apr"), a).ok());
    }
    std::vector<std::string> titles() {
        AlbumFile f;
        EXPECT_TRUE(readAlbumFile(path("Reise.apr"), f).ok());
        std::vector<std::string> out;
        for (int i = 1; i <= f.album.pages.upper(); ++i) out.push_back(f.album.pages[i].title);
        EXPECT_EQ(f.album.pageCount, f.album.pages.upper());
        return out;
    }
    PageRecord readPage(const std::string& name) {
        AlbumRecord defaults;
        ladeStandards(defaults, home());
        PageFile f;
        EXPECT_TRUE(readPageFile(path(name), defaults.pageDefaults, f).ok()) << name;
        return f.page;
    }
};

TEST_F(CliPagesTest, AddsEveryPageInItsPlaceAndSavesThem) {
    writeAlbum();
    test::CliRun r = cli(q("Reise.apr") + " --back --search --contents end --front");
    ASSERT_EQ(r.status, 0) << err();
    EXPECT_EQ(err(), "[1/4] Inhaltsverzeichnis erstellen ...\n"
                     "[2/4] Umschlag vorne erstellen ...\n"
                     "[3/4] Suchseite erstellen ...\n"
                     "[4/4] Umschlag hinten erstellen ...\n"
                     "Spezialseiten fertig\n");
    EXPECT_EQ(titles(), (std::vector<std::string>{"Umschlag Vorne", "Seite1", "Seite2", "Inhalt", "Suchen",
                                                  "Umschlag Hinten"}));
    const PageRecord contents = readPage("Inhalt.apg");
    ASSERT_EQ(contents.texts.upper(), 3);
    EXPECT_EQ(contents.texts[1].text, "Inhalt");
    EXPECT_EQ(contents.texts[2].hyperlink, "Seite1");
    EXPECT_EQ(contents.texts[3].hyperlink, "Seite2");
    // Measured with real font metrics: each entry below the one before.
    EXPECT_GT(contents.texts[2].width, 0);
    EXPECT_EQ(contents.texts[3].top, contents.texts[2].top + contents.texts[2].height + 20);
    const PageRecord front = readPage("Umschlag Vorne.apg");
    ASSERT_EQ(front.texts.upper(), 1);
    EXPECT_EQ(front.texts[1].text, "Reise");
    EXPECT_EQ(front.texts[1].hyperlink, "Seite1");
    EXPECT_EQ(readPage("Suchen.apg").searchBoxes.upper(), 1);
    EXPECT_EQ(readPage("Umschlag Hinten.apg").texts.upper(), 0);
}

TEST_F(CliPagesTest, ThePictureIndexComesFirstAtTheContentsPlace) {
    writeAlbum();
    test::CliRun r = cli(q("Reise.apr") + " --contents begin --index");
    ASSERT_EQ(r.status, 0) << err();
    EXPECT_EQ(err().rfind("[1/2] Bildindex erstellen ...\n", 0), 0u) << err();
    EXPECT_NE(err().find("[2/2] Inhaltsverzeichnis erstellen ...\n"), std::string::npos) << err();
    // Both at the beginning, the contents made after the index in front of it.
    EXPECT_EQ(titles(), (std::vector<std::string>{"Inhalt", "BildIndex", "Seite1", "Seite2"}));
}

TEST_F(CliPagesTest, AnExistingPageIsRebuiltOnYesAndKeptOnNo) {
    writeAlbum();
    ASSERT_EQ(cli(q("Reise.apr") + " --contents begin").status, 0) << err();
    ASSERT_EQ(titles(), (std::vector<std::string>{"Inhalt", "Seite1", "Seite2"}));

    test::CliRun no = cli(q("Reise.apr") + " --contents end --no");
    EXPECT_EQ(no.status, 0) << err();
    EXPECT_EQ(err(), "[1/1] Inhaltsverzeichnis erstellen ...\n"
                     "brindlesee-cli: Warnung: Das Inhaltsverzeichnis ist bereits erstellt. "
                     "Soll er überschrieben werden?\n"
                     "Spezialseiten fertig\n");
    EXPECT_EQ(titles(), (std::vector<std::string>{"Inhalt", "Seite1", "Seite2"}));

    EXPECT_EQ(cli(q("Reise.apr") + " --contents end --yes").status, 0) << err();
    EXPECT_EQ(titles(), (std::vector<std::string>{"Inhalt", "Seite1", "Seite2"}));
    EXPECT_EQ(readPage("Inhalt.apg").texts.upper(), 3);
}

TEST_F(CliPagesTest, BadCallsExitWithOneAndSayWhy) {
    writeAlbum();
    const std::string usage = "brindlesee-cli: usage: brindlesee-cli pages ALBUM.apr [--front] [--back] "
                              "[--contents end|begin] [--search] [--index] [--yes|--no]\n";
    for (const std::string& args : {q("Reise.apr"), q("Reise.apr") + " --contents middle", q("Reise.apr") + " --contents",
                                    q("Reise.apr") + " --front --frontcover", std::string("--front")}) {
        SCOPED_TRACE(args);
        EXPECT_EQ(cli(args).status, 1);
        EXPECT_EQ(err(), usage);
    }
    test::CliRun missing = cli(q("fehlt.apr") + " --front");
    EXPECT_EQ(missing.status, 1);
    EXPECT_NE(err().find(path("fehlt.apr")), std::string::npos) << err();
    EXPECT_EQ(titles(), (std::vector<std::string>{"Seite1", "Seite2"}));
}

}  // namespace
}  // namespace brindle
