#include <gtest/gtest.h>

#include "album/album_file.h"
#include "album/encoding.h"
#include "byte_builder.h"
#include "sample_records.h"
#include "support/temp_home.h"

namespace brindle {
namespace {

using test::Bytes;

// The layout of a default page record, stated field by field.
void expectDefaultPage(Bytes& b, const std::string& background) {
    const std::string prog = "/p/";
    b.str(prog + background).u32(0xC0C0C0);
    b.str(prog + "ButtonZur\xFC" "ck.jpg").str(prog + "ButtonInhalt.jpg").str(prog + "ButtonVor.jpg").emptyExt();
    // panoramas: the dummy alone: 20 bytes, 21 hotspots, spare i16, ExtBlock
    b.dyn(0).zeros(20);
    for (int i = 0; i < 21; ++i) b.str("").str("").zeros(114).str("").zeros(44).emptyExt();
    b.i16(0).emptyExt();
    // pictures: box, path, deleted, spare, hyperlink, 3 x i16, ExtBlock
    b.dyn(0).zeros(8).str("").i16(0).zeros(6).str("").zeros(6).emptyExt();
    // texts: box, text, deleted, spare, font, hyperlink, ExtBlock
    b.dyn(0).zeros(8).str("").i16(0).zeros(6).font(0, "", 0).str("").emptyExt();
    b.str("");                    // music
    b.dyn(0).i32(0).str("");      // stack
    b.dyn(0).zeros(8).str("").i16(0).zeros(6).font(0, "", 0).str("").emptyExt(false);  // search boxes
    b.str("").str("");            // title, description
}

std::string expectedDefaultAlbum() {
    Bytes b;
    b.str(kAlbumFormat).str(kContact);
    b.str("Album");
    b.dyn(0).str("").str("").str("").i16(0);
    b.i16(0).i16(0).str("").str("");
    // style
    b.str("").str("");
    b.u32(0).str("Arial").i32(14).u16(0xFFFF).i16(0).i16(0);
    b.u32(0).str("Arial").i32(12).u16(0xFFFF).i16(0).i16(0);
    b.i16(0).i16(0);
    for (int i = 0; i < 3; ++i) b.font(0x800000, "", 0);
    expectDefaultPage(b, "Standard-Papier.jpg");
    expectDefaultPage(b, "Standard-Umschlag.jpg");
    b.u16(0xFFFF).str("").i32(100).i32(100).i32(5).str("");
    // the 46-byte block of the insert-many and picture options
    b.i32(300).i32(500).i32(0).i32(9).i32(9).i32(3);
    b.u16(0xFFFF).i16(0).i16(0).i16(0).i32(800);
    b.u16(0xFFFF).u16(0xFFFF).i16(0).u16(0xFFFF).i16(0);
    b.i32(90).i32(65).i16(0).i32(90).str("").i32(0);
    b.str("").str("").str("");
    b.u32(0xA00000).u32(0x00FFFF).u32(0xFFFFFF);
    b.dyn(0).i16(0);
    return b.bytes();
}

TEST(AlbumCodec, DefaultAlbumMatchesTheLayoutByteForByte) {
    AlbumRecord album;
    ladeStandards(album, "/p/");
    std::string bytes;
    ASSERT_TRUE(encodeAlbum(album, bytes).ok());
    std::string expected = expectedDefaultAlbum();
    ASSERT_EQ(bytes.size(), expected.size());
    for (std::size_t i = 0; i < bytes.size(); ++i)
        ASSERT_EQ(static_cast<unsigned char>(bytes[i]), static_cast<unsigned char>(expected[i])) << "at byte " << i;
}

TEST(AlbumCodec, EveryFieldSurvivesARoundTripByteForByte) {
    AlbumRecord album = test::filledAlbum();
    std::string bytes;
    ASSERT_TRUE(encodeAlbum(album, bytes).ok());
    AlbumFile read;
    ASSERT_TRUE(decodeAlbum(bytes, read).ok());
    EXPECT_EQ(read.head.format, kAlbumFormat);
    EXPECT_TRUE(read.album == album);
    std::string again;
    ASSERT_TRUE(encodeAlbum(read.album, again).ok());
    EXPECT_EQ(again, bytes);
}

TEST(AlbumCodec, OlderProductTextIsReadAndWrittenBackAsCurrent) {
    AlbumRecord album;
    ladeStandards(album, "/p/");
    std::string current;
    ASSERT_TRUE(encodeAlbum(album, current).ok());
    std::string older = Bytes().str(kAlbumFormatOlder).str("E-Mail: someone@else").bytes() +
                        current.substr(Bytes().str(kAlbumFormat).str(kContact).bytes().size());
    AlbumFile read;
    ASSERT_TRUE(decodeAlbum(older, read).ok());
    std::string rewritten;
    ASSERT_TRUE(encodeAlbum(read.album, rewritten).ok());
    EXPECT_EQ(rewritten, current);
}

TEST(AlbumCodec, BytesAfterTheRecordAreIgnored) {
    AlbumRecord album = test::filledAlbum();
    std::string bytes;
    ASSERT_TRUE(encodeAlbum(album, bytes).ok());
    AlbumFile read;
    ASSERT_TRUE(decodeAlbum(bytes + std::string(1000, '\x7F'), read).ok());
    EXPECT_TRUE(read.album == album);
}

TEST(AlbumCodec, EveryTruncationFailsCleanly) {
    AlbumRecord album;
    ladeStandards(album, "/p/");
    std::string bytes;
    ASSERT_TRUE(encodeAlbum(album, bytes).ok());
    const std::size_t headSize = Bytes().str(kAlbumFormat).str(kContact).bytes().size();
    for (std::size_t n = 0; n < bytes.size(); ++n) {
        AlbumFile read;
        FileResult r = decodeAlbum(std::string_view(bytes).substr(0, n), read, "cut.apr");
        ASSERT_EQ(r.status, n < headSize ? FileStatus::HeadUnreadable : FileStatus::RecordUnreadable) << "length " << n;
    }
}

TEST(AlbumCodec, HostileCountsAndHeadsAreRefused) {
    struct Case {
        const char* name;
        std::string bytes;
        FileStatus expected;
    };
    const std::string head = Bytes().str(kAlbumFormat).str(kContact).bytes();
    const Case cases[] = {
        {"empty", "", FileStatus::HeadUnreadable},
        {"foreign head", Bytes().str("GIF89a").str("").bytes(), FileStatus::InvalidFormat},
        {"page head", Bytes().str("Album Seite: Brindlesee Pro, Version 1.0").str("").bytes(), FileStatus::InvalidFormat},
        {"head case differs", Bytes().str("album Projekt: Brindlesee Pro, Version 1.0").str("").bytes(),
         FileStatus::InvalidFormat},
        {"string longer than file", head + Bytes().u16(60000).raw("abc").bytes(), FileStatus::RecordUnreadable},
        {"bomb count", head + Bytes().str("t").u16(1).u32(0xFFFFFFFF).u32(0).bytes(), FileStatus::RecordUnreadable},
        {"two dimensions", head + Bytes().str("t").u16(2).u32(1).u32(0).bytes(), FileStatus::RecordUnreadable},
        {"lower bound 1", head + Bytes().str("t").u16(1).u32(1).u32(1).bytes(), FileStatus::RecordUnreadable},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        AlbumFile read;
        EXPECT_EQ(decodeAlbum(c.bytes, read).status, c.expected);
    }
}

TEST(AlbumCodec, TextsOutsideWindows1252SurviveAndOthersStayAnsi) {
    AlbumRecord album;
    ladeStandards(album, "/p/");
    album.title = "Ägypten – 東京 🙂";
    album.relativePath = "Grüße €";
    std::string bytes;
    ASSERT_TRUE(encodeAlbum(album, bytes).ok());
    // Windows-1252 where it fits: "Grüße €" is 7 bytes on disk.
    EXPECT_NE(bytes.find(Bytes().str("Gr\xFC\xDF" "e \x80").bytes()), std::string::npos);
    AlbumFile read;
    ASSERT_TRUE(decodeAlbum(bytes, read).ok());
    EXPECT_EQ(read.album.title, "Ägypten – 東京 🙂");
    EXPECT_EQ(read.album.relativePath, "Grüße €");
}

class AlbumFileTest : public test::TempHomeTest {};

TEST_F(AlbumFileTest, OpeningTakesPlaceAndTitleFromThePathAndRepairsMenuColours) {
    AlbumRecord album = test::filledAlbum();
    album.menuColor1 = album.menuColor2 = album.menuColor3 = 0;
    ASSERT_TRUE(writeAlbumFile(path("Kopie von Reise.apr"), album).ok());

    AlbumFile read;
    ASSERT_TRUE(readAlbumFile(path("Kopie von Reise.apr"), read).ok());
    finishAlbumLoad(read.album, path("Kopie von Reise.apr"));
    EXPECT_EQ(read.album.directory, home());
    EXPECT_EQ(read.album.fileName, "Kopie von Reise.apr");
    EXPECT_EQ(read.album.title, "Kopie von Reise");
    EXPECT_EQ(read.album.modified, kFalse);
    EXPECT_EQ(read.album.menuColor1, 0x800000u);
    EXPECT_EQ(read.album.menuColor2, 0x00FFFFu);
    EXPECT_EQ(read.album.menuColor3, 0xFFFFFFu);
    for (int i = 1; i <= read.album.pages.upper(); ++i) EXPECT_EQ(read.album.pages[i].slot, 0);

    // Colours are left alone unless all three are zero.
    AlbumRecord partly = test::filledAlbum();
    partly.menuColor1 = 0;
    finishAlbumLoad(partly, path("x.apr"));
    EXPECT_EQ(partly.menuColor1, 0u);
    EXPECT_EQ(partly.menuColor2, 2u);

    // The default template keeps no file name and is always called "Album".
    AlbumRecord tmpl = test::filledAlbum();
    finishAlbumLoad(tmpl, path("ALBUM.VOR"));
    EXPECT_EQ(tmpl.title, "Album");
    EXPECT_EQ(tmpl.fileName, "");
}

TEST_F(AlbumFileTest, ShorterSaveOverLongerLeavesNoOldTailAndReadsBack) {
    AlbumRecord big = test::filledAlbum();
    ASSERT_TRUE(writeAlbumFile(path("a.apr"), big).ok());
    AlbumRecord small;
    ladeStandards(small, home());
    ASSERT_TRUE(writeAlbumFile(path("a.apr"), small).ok());
    std::string expected;
    ASSERT_TRUE(encodeAlbum(small, expected).ok());
    EXPECT_EQ(readBytes("a.apr"), expected);
    AlbumFile read;
    ASSERT_TRUE(readAlbumFile(path("a.apr"), read).ok());
    EXPECT_TRUE(read.album == small);
}

TEST_F(AlbumFileTest, FailuresGiveTheirMessagesInBothLanguages) {
    AlbumFile read;
    FileResult missing = readAlbumFile(path("fehlt.apr"), read);
    EXPECT_EQ(missing.status, FileStatus::OpenFailed);
    EXPECT_EQ(fileMessage(missing, Language::German),
              "Datei kann nicht geöffnet werden: " + path("fehlt.apr") + "\rNo such file or directory");
    EXPECT_EQ(fileMessageTitle(missing, Language::English), "Error");

    writeBytes("fremd.apr", Bytes().str("Etwas anderes").str("").bytes());
    FileResult foreign = readAlbumFile(path("fremd.apr"), read);
    EXPECT_EQ(fileMessage(foreign, Language::English), "Could not read the format of the file: " + path("fremd.apr"));
    EXPECT_EQ(fileMessage(foreign, Language::German), "Datei hat ein ungültiges Format: " + path("fremd.apr"));

    FileResult notFound{FileStatus::NotFound, "/x.apr", {}};
    EXPECT_EQ(fileMessage(notFound, Language::English), "File not found: /x.apr");
    EXPECT_EQ(fileMessageTitle(notFound, Language::English), "Fehler");

    AlbumRecord album;
    ladeStandards(album, home());
    FileResult write = writeAlbumFile(path("kein/Ordner/a.apr"), album);
    EXPECT_EQ(write.status, FileStatus::WriteFailed);
    EXPECT_EQ(fileMessage(write, Language::English),
              "Error while writing the file: \r" + path("kein/Ordner/a.apr") + "\rNo such file or directory");
}

}  // namespace
}  // namespace brindle
