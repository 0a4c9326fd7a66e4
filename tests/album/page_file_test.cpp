#include <gtest/gtest.h>

#include <filesystem>

#include "album/page_file.h"
#include "album/stacking.h"
#include "byte_builder.h"
#include "sample_records.h"
#include "support/temp_home.h"

namespace brindle {
namespace {

using test::Bytes;

PageRecord defaults() {
    AlbumRecord album;
    ladeStandards(album, "/p/");
    return album.pageDefaults;
}

TEST(PageCodec, EveryFieldSurvivesARoundTripByteForByte) {
    PageRecord page = test::filledPage(7);
    std::string bytes;
    ASSERT_TRUE(encodePage(page, bytes).ok());
    PageFile read;
    ASSERT_TRUE(decodePage(bytes, defaults(), read).ok());
    EXPECT_FALSE(read.olderLayout);
    EXPECT_TRUE(read.page == page);
    std::string again;
    ASSERT_TRUE(encodePage(read.page, again).ok());
    EXPECT_EQ(again, bytes);
}

TEST(PageCodec, ATextElementIsStoredFieldByField) {
    PageRecord page = defaults();
    page.texts.add() = TextElement{-1, 2, 300, 40, "Hallo", kTrue, {1, 2, 3, 4, 5, 6},
                                   FontSpec{0xFF, "Arial", 12, kTrue, 1, kFalse}, "Inhalt", {}};
    std::string bytes;
    ASSERT_TRUE(encodePage(page, bytes).ok());
    std::string element = Bytes()
                              .i16(-1).i16(2).i16(300).i16(40)
                              .str("Hallo")
                              .u16(0xFFFF)
                              .u8(1).u8(2).u8(3).u8(4).u8(5).u8(6)
                              .u32(0xFF).str("Arial").i32(12).u16(0xFFFF).i16(1).i16(0)
                              .str("Inhalt")
                              .emptyExt()
                              .bytes();
    EXPECT_NE(bytes.find(element), std::string::npos);
}

TEST(PageCodec, OlderLayoutKeepsTheDefaultsOfTheNewFields) {
    // Head with the older product text, then fields 1 to 7 only.
    Bytes b;
    b.str(kPageFormatOlder).str("E-Mail: x");
    b.str("C:\\Alt\\Papier.jpg").u32(0x00FF00);
    b.str("z.jpg").str("i.jpg").str("v.jpg").emptyExt();
    b.unallocated();                                                     // panoramas
    b.dyn(1).zeros(8).str("").i16(0).zeros(6).str("").zeros(6).emptyExt();  // pictures: dummy
    b.i16(10).i16(20).i16(30).i16(40).str("/b.jpg").i16(0).zeros(6).str("").i16(0).i16(30).i16(40).emptyExt();
    b.dyn(1).zeros(8).str("").i16(0).zeros(6).font(0, "", 0).str("").emptyExt();  // texts: dummy
    b.zeros(8).str("Alt").i16(0).zeros(6).font(0, "", 0).str("").emptyExt();
    b.str("song.wav");

    PageRecord start = defaults();
    start.title = "aus den Vorgaben";
    PageFile read;
    ASSERT_TRUE(decodePage(b.bytes(), start, read).ok());
    EXPECT_TRUE(read.olderLayout);
    EXPECT_EQ(read.page.background, "C:\\Alt\\Papier.jpg");
    EXPECT_EQ(read.page.music, "song.wav");
    EXPECT_EQ(read.page.pictures.upper(), 1);
    EXPECT_EQ(read.page.pictures[1].path, "/b.jpg");
    EXPECT_EQ(read.page.texts[1].text, "Alt");
    EXPECT_FALSE(read.page.panoramas.allocated());
    EXPECT_TRUE(read.page.stack == start.stack);
    EXPECT_TRUE(read.page.searchBoxes == start.searchBoxes);
    EXPECT_EQ(read.page.title, "aus den Vorgaben");

    PageRecord blank = read.page;
    blank.title.clear();
    fillPageTexts(blank, "Reise");
    EXPECT_EQ(blank.title, "Brindlesee Seite vom Album Reise");
    EXPECT_EQ(blank.description, kDefaultPageDescription);

    // Its stack is rebuilt with texts behind pictures behind panoramas.
    ReihenfolgePruefen(read.page);
    ASSERT_EQ(read.page.stack.upper(), 2);
    EXPECT_EQ(read.page.stack[1].kind, "text");
    EXPECT_EQ(read.page.stack[2].kind, "bild");
    EXPECT_TRUE(read.page.panoramas.allocated());

    // Written back, it is a page of the current layout.
    std::string bytes;
    ASSERT_TRUE(encodePage(read.page, bytes).ok());
    PageFile again;
    ASSERT_TRUE(decodePage(bytes, defaults(), again).ok());
    EXPECT_FALSE(again.olderLayout);
    EXPECT_EQ(again.head.format, kPageFormat);
}

TEST(PageCodec, EveryTruncationFailsWithTheLayoutsMessage) {
    PageRecord page = test::filledPage(3);
    std::string bytes;
    ASSERT_TRUE(encodePage(page, bytes).ok());
    const std::size_t headSize = Bytes().str(kPageFormat).str("E-Mail: alben@brindlesee.example").bytes().size();
    for (std::size_t n = 0; n < bytes.size(); ++n) {
        PageFile read;
        FileResult r = decodePage(std::string_view(bytes).substr(0, n), defaults(), read, "p.apg");
        ASSERT_EQ(r.status, n < headSize ? FileStatus::HeadUnreadable : FileStatus::RecordUnreadable) << n;
        if (n >= headSize) {
            ASSERT_EQ(fileMessage(r, Language::German).rfind("Datei kann nicht geöfnet werden: p.apg\r", 0), 0u);
        }
    }
}

TEST(PageCodec, AnAlbumHeadIsNotAPage) {
    PageFile read;
    FileResult r = decodePage(Bytes().str("Album Projekt: Brindlesee Pro, Version 1.0").str("").bytes(), defaults(),
                              read, "a.apg");
    EXPECT_EQ(r.status, FileStatus::InvalidFormat);
    EXPECT_EQ(fileMessage(r, Language::German), "Datei hat ein ungültiges Format: a.apg");
}

TEST(PageKinds, SpecialPagesAreToldByTitleInEitherLanguage) {
    for (const char* t : {"Umschlag Hinten", "Umschlag Vorne", "Inhalt", "Vorlage", "AlbumDirectory", "FrontCover",
                          "BackCover"})
        EXPECT_TRUE(istSpezialseite(t)) << t;
    for (const char* t : {"inhalt", "Seite1", "Suchen", ""}) EXPECT_FALSE(istSpezialseite(t)) << t;
}

class PageFileTest : public test::TempHomeTest {};

TEST_F(PageFileTest, WrittenAtomicallyAndReadBack) {
    PageRecord page = test::filledPage(1);
    ASSERT_TRUE(writePageFile(path("Seite1.apg"), page).ok());
    ASSERT_TRUE(writePageFile(path("Seite1.apg"), defaults()).ok());
    PageFile read;
    ASSERT_TRUE(readPageFile(path("Seite1.apg"), defaults(), read).ok());
    EXPECT_TRUE(read.page == defaults());
    // Nothing but the page is left in the folder.
    int files = 0;
    for (auto& e : std::filesystem::directory_iterator(home())) files += e.is_regular_file();
    EXPECT_EQ(files, 1);
}

}  // namespace
}  // namespace brindle
