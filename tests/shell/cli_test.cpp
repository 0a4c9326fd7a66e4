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

// Runs brindlesee-cli with the arguments; stderr goes to the folder's "err".
class CliTest : public test::TempHomeTest {
protected:
    test::CliRun cli(const std::string& args) { return test::runCli(args, path("err")); }
    std::string err() { return readBytes("err"); }
    std::string q(const std::string& name) { return "'" + path(name) + "'"; }
};

TEST_F(CliTest, InfoPrintsTheAlbumInFieldOrder) {
    AlbumRecord album;
    ladeStandards(album, "/p/");
    album.pages.add() = PageEntry{"Seite1", "Seite1.apg", "/a/", 3};
    album.pageCount = 1;
    album.style.textFont.name = "Grüße";
    ASSERT_TRUE(writeAlbumFile(path("a.apr"), album).ok());

    test::CliRun r = cli("info " + q("a.apr"));
    ASSERT_EQ(r.status, 0) << err();
    EXPECT_EQ(r.out.rfind("{\n  \"kind\": \"album\",\n  \"format\": \"Album Projekt: Brindlesee Pro, Version 1.0\",\n"
                          "  \"contact\": \"E-Mail: alben@brindlesee.example\",\n  \"title\": \"Album\",\n",
                          0),
              0u)
        << r.out;
    EXPECT_NE(r.out.find("\"pages\": [{\n    \"title\": \"Seite1\",\n    \"fileName\": \"Seite1.apg\",\n"
                         "    \"directory\": \"/a/\",\n    \"slot\": 3\n  }],\n"),
              std::string::npos);
    EXPECT_NE(r.out.find("\"name\": \"Grüße\""), std::string::npos);
    EXPECT_NE(r.out.find("\"bold\": 65535"), std::string::npos);
    EXPECT_NE(r.out.find("\"extLongs1\": null"), std::string::npos);
    EXPECT_NE(r.out.find("\"menuOpenFlags\": []\n}\n"), std::string::npos);
}

TEST_F(CliTest, InfoOfOptionsHasNoHead) {
    writeBytes("optionen", "");
    test::CliRun bad = cli("info " + q("optionen"));
    EXPECT_EQ(bad.status, 1);
    EXPECT_EQ(err(), "brindlesee-cli: Could not read the file: " + path("optionen") + " unexpected end of file\n");
}

TEST_F(CliTest, ResaveWritesAnOlderPageInTheCurrentLayout) {
    // An older page: head, then background .. music with every array unallocated.
    std::string older;
    auto str = [&](const std::string& s) {
        older += static_cast<char>(s.size() & 0xFF);
        older += static_cast<char>(s.size() >> 8);
        older += s;
    };
    str(kPageFormatOlder);
    str("E-Mail: x");
    str("bg.jpg");
    older += std::string(4, '\0');                                   // colour
    str(""); str(""); str("");                                       // buttons
    older += std::string(28, '\0') + std::string(4, '\0');           // 7 longs, 2 arrays
    for (int i = 0; i < 7; ++i) str("");
    older += std::string(4, '\0');                                   // 2 arrays
    older += std::string(4, '\0'); str(""); older += std::string(10, '\0');  // font
    older += std::string(6, '\0');                                   // 3 element arrays
    str("musik.mid");
    writeBytes("alt.apg", older);

    test::CliRun r = cli("resave " + q("alt.apg") + " " + q("neu.apg"));
    ASSERT_EQ(r.status, 0) << err();
    PageRecord defaults;
    PageFile read;
    ASSERT_TRUE(readPageFile(path("neu.apg"), defaults, read).ok());
    EXPECT_FALSE(read.olderLayout);
    EXPECT_EQ(read.page.background, "bg.jpg");
    EXPECT_EQ(read.page.music, "musik.mid");
    EXPECT_TRUE(read.page.searchBoxes.allocated());

    // A current file resaved is the same file.
    test::CliRun again = cli("resave " + q("neu.apg") + " " + q("neu2.apg"));
    ASSERT_EQ(again.status, 0);
    EXPECT_EQ(readBytes("neu.apg"), readBytes("neu2.apg"));
}

TEST_F(CliTest, BadInputGivesOneLineAndStatusOne) {
    test::CliRun missing = cli("info " + q("fehlt.apr"));
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(err(), "brindlesee-cli: File not found: " + path("fehlt.apr") + "\n");

    writeBytes("bild.apg", "GIF89a\x01\x00");
    test::CliRun foreign = cli("info " + q("bild.apg"));
    EXPECT_EQ(foreign.status, 1);
    EXPECT_EQ(err(), "brindlesee-cli: Could not read the file: " + path("bild.apg") + " string longer than the rest of the file\n");

    writeBytes("x.dat", std::string("\x05\x00hallo", 7));
    EXPECT_EQ(cli("info " + q("x.dat")).status, 1);
    EXPECT_EQ(err(), "brindlesee-cli: Could not read the format of the file: " + path("x.dat") + "\n");

    EXPECT_EQ(cli("info").status, 1);
    EXPECT_EQ(cli("frobnicate").status, 1);
    EXPECT_EQ(err(), "brindlesee-cli: unknown command: frobnicate\n");
}

TEST_F(CliTest, HtmlTurnsAnAlbumIntoADirectory) {
    ASSERT_EQ(cli("new " + q("Reise.apr")).status, 0) << err();
    test::CliRun made = cli("html " + q("Reise.apr") + " " + q("web"));
    ASSERT_EQ(made.status, 0) << err();
    EXPECT_EQ(made.out, path("web/Reise.html") + "\n");
    EXPECT_NE(err().find("[1/2] Seite1.htm\n[2/2] Menü.htm\n"), std::string::npos) << err();
    for (const char* f : {"web/Reise.html", "web/Seite1.htm", "web/menu.html", "web/code.html"})
        EXPECT_FALSE(readBytes(f).empty()) << f;

    test::CliRun mail = cli("html " + q("Reise.apr") + " " + q("web") + " --mail --overwrite none");
    ASSERT_EQ(mail.status, 0) << err();
    EXPECT_FALSE(readBytes("web/bsReise.zip").empty());
    EXPECT_NE(err().find("mailto:"), std::string::npos);

    EXPECT_EQ(cli("html " + q("Reise.apr") + " " + q("web") + " --overwrite maybe").status, 1);
    EXPECT_EQ(cli("html " + q("fehlt.apr") + " " + q("web")).status, 1);
}

TEST_F(CliTest, NewAlbumAndAddPageWithoutQuestions) {
    test::CliRun made = cli("new " + q("Reise.apr"));
    ASSERT_EQ(made.status, 0) << err();
    AlbumFile album;
    ASSERT_TRUE(readAlbumFile(path("Reise.apr"), album).ok());
    ASSERT_EQ(album.album.pageCount, 1);
    EXPECT_EQ(album.album.pages[1].title, "Seite1");
    EXPECT_EQ(album.album.pages[1].fileName, "Seite1.apg");
    EXPECT_EQ(album.album.pages[1].directory, home());
    EXPECT_EQ(cli("new " + q("Reise.apr")).status, 1);  // never over an existing album

    PageRecord extra;
    extra.texts.add().text = "dazu";
    ASSERT_TRUE(writePageFile(path("Extra.apg"), extra).ok());
    const std::string page1 = readBytes("Seite1.apg");
    test::CliRun added = cli("add-page " + q("Reise.apr") + " " + q("Extra.apg"));
    ASSERT_EQ(added.status, 0) << err();
    ASSERT_TRUE(readAlbumFile(path("Reise.apr"), album).ok());
    ASSERT_EQ(album.album.pageCount, 2);
    EXPECT_EQ(album.album.pages[2].fileName, "Extra.apg");
    EXPECT_EQ(readBytes("Seite1.apg"), page1);  // the first page is left as it was

    // The same page again is refused with its path.
    test::CliRun twice = cli("add-page " + q("Reise.apr") + " " + q("Extra.apg") + " --english");
    EXPECT_EQ(twice.status, 1);
    EXPECT_EQ(err(), "brindlesee-cli: Page loading aborted: File " + path("Extra.apg") +
                         " allready exist at the album!\n");
}

}  // namespace
}  // namespace brindle
