// brindlesee-cli wizard: the album on disk, and exit status 1 with one
// message line for every bad input.
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "album/album_file.h"
#include "album/page_file.h"
#include "cli_run.h"
#include "support/temp_home.h"
#include "wizard_pictures.h"

namespace brindle {
namespace {

namespace fs = std::filesystem;

class CliWizardTest : public test::TempHomeTest {
protected:
    void SetUp() override {
        TempHomeTest::SetUp();
        ::setenv("BRINDLESEE_HOME", home().c_str(), 1);
        AlbumRecord t;
        ladeStandards(t, home());
        t.insertInRows = kTrue;
        t.insertRows = 3;
        t.insertWidth = 80;
        t.insertHeight = 60;
        t.insertGapX = 5;
        t.insertGapY = 7;
        t.keepAspect = kFalse;
        t.insertOriginalSize = 0;
        ASSERT_TRUE(writeAlbumFile(path("Album.vor"), t).ok());
        for (int i = 1; i <= 4; ++i) writeBytes("p" + std::to_string(i) + ".png", test::pngHeader(64, 48));
        touch("vorlagen/Wiese.jpg");
    }
    test::CliRun cli(const std::string& args) { return test::runCli("wizard " + args, path("err")); }
    std::string err() { return readBytes("err"); }
    std::string q(const std::string& name) { return "'" + path(name) + "'"; }
};

TEST_F(CliWizardTest, BuildsTheAlbumWithDesignRowsAndFrame) {
    const test::CliRun r = cli(q("Fest") + " --design Wiese --page Eins:" + path("p1.png") + "," +
                         path("p2.png") + "," + path("p3.png") + "," + path("p4.png") + " --page Zwei" +
                         " --frame 4,30,70,#102030 --english");
    ASSERT_EQ(r.status, 0) << err();
    EXPECT_EQ(r.out, path("Fest/Fest.apr") + "\n");
    EXPECT_EQ(err(), "page 1/2: Eins\npage 2/2: Zwei\n");

    AlbumFile album;
    ASSERT_TRUE(readAlbumFile(path("Fest/Fest.apr"), album).ok());
    ASSERT_EQ(album.album.pages.upper(), 2);
    EXPECT_EQ(album.album.pages[1].fileName, "Eins.apg");
    EXPECT_EQ(album.album.pages[2].fileName, "Zwei.apg");
    EXPECT_EQ(album.album.pageDefaults.background, path("vorlagen/Wiese.jpg"));

    PageFile eins;
    ASSERT_TRUE(readPageFile(path("Fest/Eins.apg"), {}, eins).ok());
    ASSERT_EQ(eins.page.pictures.upper(), 4);
    // Start 5+4, 7+4; gaps 5+8 and 7+8; three per row.
    const int lefts[] = {9, 102, 195, 9}, tops[] = {11, 11, 11, 86};
    for (int i = 1; i <= 4; ++i) {
        SCOPED_TRACE(i);
        const PictureElement& p = eins.page.pictures[i];
        EXPECT_EQ(p.left, lefts[i - 1]);
        EXPECT_EQ(p.top, tops[i - 1]);
        EXPECT_EQ(p.width, 80);
        EXPECT_EQ(p.height, 60);
        // #102030 is 0x00302010 as the album keeps colours: 3153936.
        EXPECT_EQ(p.ext.extText[0], "4,30,70,3153936,None,1,");
    }
    PageFile zwei;
    ASSERT_TRUE(readPageFile(path("Fest/Zwei.apg"), {}, zwei).ok());
    EXPECT_EQ(zwei.page.pictures.upper(), 0);
}

TEST_F(CliWizardTest, BadInputExitsOneWithItsMessage) {
    touch("Da/Da.apr");
    struct Row {
        std::string args, message;
    };
    const std::vector<Row> rows = {
        {q("A"), "brindlesee-cli: at least one --page is needed\n"},
        {"--page X", "brindlesee-cli: usage: brindlesee-cli wizard OUTDIR [--design NAME] --page "
                     "\"NAME:PIC,PIC,...\" ... [--frame WIDTH,LIGHT,SHADOW,COLOUR] [--english|--german]\n"},
        {q("A") + " --page", "brindlesee-cli: --page needs a value\n"},
        {q("A") + " --page :" + path("p1.png"), "brindlesee-cli: bad page: :" + path("p1.png") + "\n"},
        {q("A") + " --page X --frame 0,50,50,0",
         "brindlesee-cli: bad frame (WIDTH 1-100, LIGHT and SHADOW 0-100, COLOUR): 0,50,50,0\n"},
        {q("A") + " --page X --frame 5,50,50,#12345",
         "brindlesee-cli: bad frame (WIDTH 1-100, LIGHT and SHADOW 0-100, COLOUR): 5,50,50,#12345\n"},
        {q("A") + " --page X --design Rot", "brindlesee-cli: unknown design: Rot\n"},
        {q("Da") + " --page X", "brindlesee-cli: the album exists already: " + path("Da/Da.apr") + "\n"},
        {q("A") + " --page X:" + path("fehlt.png"),
         "brindlesee-cli: Fehler: Fehler aufgetreten: Bild nicht gefunden: " + path("fehlt.png") + "\n"},
        {q("A") + " --page X --page x --english", "brindlesee-cli: Error: Error occurs: Page name given twice: x\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.args);
        const test::CliRun r = cli(row.args);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.out, "");
        EXPECT_EQ(err(), row.message);
        EXPECT_FALSE(fs::exists(path("A")));
    }
}

}  // namespace
}  // namespace brindle
