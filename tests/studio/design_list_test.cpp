#include "studio/design_list.h"

#include <gtest/gtest.h>

#include "support/temp_home.h"

namespace brindle::studio {
namespace {

using Lines = std::vector<std::string>;

class DesignListTest : public test::TempHomeTest {};

TEST_F(DesignListTest, WritesCrLfAndWindows1252WhenEveryCharacterFits) {
    const std::string file = path("liste.txt");
    std::string error;
    ASSERT_TRUE(writeDesignList(file, {"Kontrast(50)", "Schärfen(5)", "Emboss"}, &error)) << error;
    EXPECT_EQ(readBytes("liste.txt"), "Kontrast(50)\r\nSch\xE4rfen(5)\r\nEmboss\r\n");

    ASSERT_TRUE(writeDesignList(file, {}));
    EXPECT_EQ(readBytes("liste.txt"), "");
}

TEST_F(DesignListTest, WritesUtf8WhenACharacterDoesNotFit) {
    const std::string file = path("liste.txt");
    const Lines lines{"Schärfen(5)", "Rahmen(50,50,20,0,/bilder/\xE5\x86\x99\xE7\x9C\x9F.png)"};
    ASSERT_TRUE(writeDesignList(file, lines));
    EXPECT_EQ(readBytes("liste.txt"),
              "Sch\xC3\xA4rfen(5)\r\nRahmen(50,50,20,0,/bilder/\xE5\x86\x99\xE7\x9C\x9F.png)\r\n");
    const DesignListRead back = readDesignList(file);
    ASSERT_TRUE(back.ok) << back.error;
    EXPECT_EQ(back.lines, lines);
}

TEST_F(DesignListTest, ReadsCrLfAndLfFiles) {
    writeBytes("crlf.txt", "Kontrast(50)\r\nSch\xE4rfen(5)\r\nEmboss\r\n");
    DesignListRead crlf = readDesignList(path("crlf.txt"));
    ASSERT_TRUE(crlf.ok) << crlf.error;
    EXPECT_EQ(crlf.lines, (Lines{"Kontrast(50)", "Schärfen(5)", "Emboss"}));

    // LF only, no line end after the last line, an empty line inside kept.
    writeBytes("lf.txt", "Kontrast(50)\n\nSch\xC3\xA4rfen(5)\nEmboss");
    DesignListRead lf = readDesignList(path("lf.txt"));
    ASSERT_TRUE(lf.ok) << lf.error;
    EXPECT_EQ(lf.lines, (Lines{"Kontrast(50)", "", "Schärfen(5)", "Emboss"}));

    writeBytes("empty.txt", "");
    DesignListRead empty = readDesignList(path("empty.txt"));
    ASSERT_TRUE(empty.ok);
    EXPECT_TRUE(empty.lines.empty());

    writeBytes("one.txt", "\r\n");
    DesignListRead one = readDesignList(path("one.txt"));
    ASSERT_TRUE(one.ok);
    EXPECT_EQ(one.lines, Lines{""});
}

TEST_F(DesignListTest, RefusesBadFilesWithAReason) {
    DesignListRead missing = readDesignList(path("fehlt.txt"));
    EXPECT_FALSE(missing.ok);
    EXPECT_EQ(missing.error, "No such file or directory");

    touch("ordner/x");
    DesignListRead folder = readDesignList(path("ordner"));
    EXPECT_FALSE(folder.ok);
    EXPECT_FALSE(folder.error.empty());

    writeBytes("gross.txt", std::string((1u << 20) + 1, 'A'));
    DesignListRead large = readDesignList(path("gross.txt"));
    EXPECT_FALSE(large.ok);
    EXPECT_EQ(large.error, "the file is larger than 1 MiB and cannot be a design list");
    EXPECT_TRUE(large.lines.empty());

    writeBytes("exakt.txt", std::string(1u << 20, 'A'));
    EXPECT_TRUE(readDesignList(path("exakt.txt")).ok);

    writeBytes("binaer.txt", std::string("Kontrast(50)\r\n\0\x01\x02", 17));
    DesignListRead binary = readDesignList(path("binaer.txt"));
    EXPECT_FALSE(binary.ok);
    EXPECT_EQ(binary.error, "the file holds NUL characters and is not a text file");
}

TEST_F(DesignListTest, FailedWriteSaysWhyAndLeavesTheOldFile) {
    writeBytes("datei", "keine Liste");
    std::string error;
    EXPECT_FALSE(writeDesignList(path("datei/liste.txt"), {"Emboss"}, &error));
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(readBytes("datei"), "keine Liste");

    touch("ziel/x");
    EXPECT_FALSE(writeDesignList(path("ziel"), {"Emboss"}, &error));
}

}  // namespace
}  // namespace brindle::studio
