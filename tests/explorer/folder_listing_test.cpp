#include "explorer/folder_listing.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>

#include "support/temp_home.h"

namespace brindle::explorer {
namespace {

class FolderListingTest : public test::TempHomeTest {
protected:
    void file(const std::string& name, std::size_t size, long seconds) {
        writeBytes("pics/" + name, std::string(size, 'x'));
        struct timespec times[2] = {{seconds, 0}, {seconds, 0}};
        ASSERT_EQ(utimensat(AT_FDCWD, path("pics/" + name).c_str(), times, 0), 0);
    }
    void SetUp() override {
        TempHomeTest::SetUp();
        file("a.jpg", 300, 1000);
        file("B.PNG", 100, 3000);
        file("c.mp3", 200, 2000);
        file("d.txt", 50, 4000);
        file("e.JPEG", 400, 500);
        file(".hidden.jpg", 10, 10);
        std::filesystem::create_directories(path("pics/folder.jpg"));
    }
    std::vector<std::string> names(const std::string& patterns, SortKey key = SortKey::Name, bool down = false) {
        FolderListing l = listFolder(path("pics"), patterns);
        EXPECT_TRUE(l.ok) << l.error;
        sortEntries(l.entries, key, down);
        std::vector<std::string> out;
        for (const FileEntry& e : l.entries) out.push_back(e.name);
        return out;
    }
};

using Names = std::vector<std::string>;

TEST(FileFilters, ThePatternBoxInItsOrder) {
    const std::vector<FileFilter> de = fileFilters(Language::German);
    ASSERT_EQ(de.size(), 3u + 20u + 9u + 1u);
    EXPECT_EQ(de[0].label, "Alle unterstützten Bilddateien");
    EXPECT_EQ(de[0].patterns,
              "*.bmp;*.ico;*.gif;*.jpg;*.jpeg;*.png;*.pcx;*.tga;*.wmf;*.emf;*.wbmp;*.pbm;*.pgm;*.ppm;*.pbmraw;"
              "*.pgmraw;*.ppmraw;*.psd;*.jbig;*.jbg;*.ras;*.iff;*.lbm;*.cut;*.pcd;*.koala");
    EXPECT_EQ(de[1].label, "Alle unterstützten Mediadateien");
    EXPECT_EQ(de[1].patterns, "*.mid;*.wav;*.avi;*.wmv;*.mpeg;*.mp3;*.mpg;*.mp2;*.mp1;*.cda");
    EXPECT_EQ(de[2].label, "Alle unterstützten Dateien");
    EXPECT_EQ(de[2].patterns, de[0].patterns + ";" + de[1].patterns);
    EXPECT_EQ(de[6].label, "*.jpg;*.jpeg   Joint Photographic Experts Group");
    EXPECT_EQ(de[6].patterns, "*.jpg;*.jpeg");
    EXPECT_EQ(de.back().label, "*.*");
    EXPECT_EQ(de.back().patterns, "*.*");
    const std::vector<FileFilter> en = fileFilters(Language::English);
    EXPECT_EQ(en[0].label, "All supported picture files");
    EXPECT_EQ(en[1].label, "All supported media files");
    EXPECT_EQ(en[2].label, "All supported files");
    EXPECT_EQ(en[6].label, de[6].label);
    // Every pattern of the first two lists is in exactly one single-format entry.
    std::string singles;
    for (std::size_t i = 3; i + 1 < de.size(); ++i) singles += de[i].patterns + ";";
    EXPECT_EQ(singles.size(), de[2].patterns.size() + 1);
}

TEST(FileFilters, PatternsIgnoreCase) {
    EXPECT_TRUE(matchesPatterns("A.JPG", "*.bmp;*.jpg"));
    EXPECT_TRUE(matchesPatterns("x.jpeg", "*.jpg;*.jpeg"));
    EXPECT_FALSE(matchesPatterns("x.jpeg.txt", "*.jpg;*.jpeg"));
    EXPECT_FALSE(matchesPatterns("jpg", "*.jpg"));
    EXPECT_TRUE(matchesPatterns("README", "*.*"));
    EXPECT_TRUE(matchesPatterns("t.pbmraw", picturePatterns()));
    EXPECT_TRUE(isMediaName("Song.MP3"));
    EXPECT_FALSE(isMediaName("song.mp4"));
}

TEST_F(FolderListingTest, FiltersPickTheirFilesAndSkipFoldersAndHiddenOnes) {
    const std::vector<FileFilter> f = fileFilters(Language::German);
    EXPECT_EQ(names(f[kFilterAllPictures].patterns), (Names{"a.jpg", "B.PNG", "e.JPEG"}));
    EXPECT_EQ(names(f[kFilterAllMedia].patterns), (Names{"c.mp3"}));
    EXPECT_EQ(names(f[kFilterAllSupported].patterns), (Names{"a.jpg", "B.PNG", "c.mp3", "e.JPEG"}));
    EXPECT_EQ(names(f[6].patterns), (Names{"a.jpg", "e.JPEG"}));
    EXPECT_EQ(names("*.*"), (Names{"a.jpg", "B.PNG", "c.mp3", "d.txt", "e.JPEG"}));
    FolderListing missing = listFolder(path("nowhere"), "*.*");
    EXPECT_FALSE(missing.ok);
    EXPECT_EQ(missing.error, "No such file or directory");
}

TEST_F(FolderListingTest, SortKeysInBothDirections) {
    EXPECT_EQ(names("*.*", SortKey::Name, true), (Names{"e.JPEG", "d.txt", "c.mp3", "B.PNG", "a.jpg"}));
    EXPECT_EQ(names("*.*", SortKey::Size), (Names{"d.txt", "B.PNG", "c.mp3", "a.jpg", "e.JPEG"}));
    EXPECT_EQ(names("*.*", SortKey::Size, true), (Names{"e.JPEG", "a.jpg", "c.mp3", "B.PNG", "d.txt"}));
    EXPECT_EQ(names("*.*", SortKey::Time), (Names{"e.JPEG", "a.jpg", "c.mp3", "B.PNG", "d.txt"}));
    EXPECT_EQ(names("*.*", SortKey::Time, true), (Names{"d.txt", "B.PNG", "c.mp3", "a.jpg", "e.JPEG"}));
    // Equal keys go by name, whatever the direction.
    file("z.jpg", 100, 1);
    file("y.jpg", 100, 1);
    EXPECT_EQ(names("*.jpg", SortKey::Size, true), (Names{"a.jpg", "y.jpg", "z.jpg"}));
    EXPECT_EQ(names("*.jpg", SortKey::Time, true), (Names{"a.jpg", "y.jpg", "z.jpg"}));

    EXPECT_STREQ(sortKeyName(SortKey::Name), "Sortname");
    EXPECT_STREQ(sortKeyName(SortKey::Size), "SortSize");
    EXPECT_STREQ(sortKeyName(SortKey::Time), "SortTime");
    EXPECT_EQ(sortKeyFromName("SortTime"), SortKey::Time);
    EXPECT_EQ(sortKeyFromName("sorttime"), std::nullopt);
    EXPECT_EQ(sortKeyForColumn(kColSize), SortKey::Size);
    EXPECT_EQ(sortKeyForColumn(kColTime), SortKey::Time);
    EXPECT_EQ(sortKeyForColumn(kColPixels), SortKey::Name);
}

TEST_F(FolderListingTest, ColumnsAndFileInfo) {
    ::setenv("TZ", "UTC", 1);
    ::tzset();
    EXPECT_EQ(columnHeads(Language::German),
              (Names{"Dateiname", "Größe", "Typ", "Geändert am", "Attribute", "Breite", "Höhe", "Pixel"}));
    EXPECT_EQ(columnHeads(Language::English),
              (Names{"Filename", "Size", "Type", "Change at", "Attribute", "Width", "Height", "Pixel"}));

    file("big.jpg", 1234567, 981173106);  // 2001-02-03 04:05:06 UTC
    ASSERT_EQ(chmod(path("pics/big.jpg").c_str(), 0640), 0);
    int asked = 0;
    FolderListing l = listFolder(path("pics"), "*.jpg;*.mp3", [&](const std::string& p, int& w, int& h) {
        ++asked;
        if (p != path("pics/big.jpg")) return false;
        w = 4000;
        h = 3000;
        return true;
    });
    ASSERT_TRUE(l.ok);
    EXPECT_EQ(asked, 2);  // the two pictures; a media file has no picture size
    sortEntries(l.entries, SortKey::Name, false);
    ASSERT_EQ(l.entries.size(), 3u);
    const FileEntry& big = l.entries[1];
    ASSERT_EQ(big.name, "big.jpg");
    EXPECT_EQ(columnTexts(big, Language::German),
              (Names{"big.jpg", "1.234.567", "JPG-Datei", "03.02.2001 04:05:06", "rw-r-----", "4000", "3000",
                     "12.000.000"}));
    EXPECT_EQ(columnTexts(big, Language::English),
              (Names{"big.jpg", "1,234,567", "JPG file", "2001-02-03 04:05:06", "rw-r-----", "4000", "3000",
                     "12,000,000"}));
    EXPECT_EQ(columnTexts(l.entries[0], Language::German)[kColWidth], "");
    EXPECT_EQ(fileInfoText(big, Language::German),
              "Dateiinformationen:\nName: big.jpg\nBildgröße: 4000  x 3000 Pixel\nDateigröße: 1234567 Byte\n"
              "Dateidatum: 03.02.2001 04:05:06");
    EXPECT_EQ(fileInfoText(l.entries[2], Language::English),
              "File information:\nName: c.mp3\nFile size: 200 bytes\nFile date: 1970-01-01 00:33:20");
    EXPECT_EQ(fileTypeText("README", Language::German), "Datei");
    EXPECT_EQ(groupedNumber(999, Language::German), "999");
    EXPECT_EQ(groupedNumber(1000, Language::English), "1,000");
    ::unsetenv("TZ");
    ::tzset();
}

TEST_F(FolderListingTest, TwoThousandFilesListWithoutOpeningOne) {
    for (int i = 0; i < 2000; ++i) {
        char name[32];
        std::snprintf(name, sizeof name, "many/p%04d.jpg", 1999 - i);
        writeBytes(name, "not a picture");
    }
    int looked = 0;
    FolderListing l = listFolder(path("many"), picturePatterns(), [&](const std::string&, int&, int&) {
        ++looked;
        return false;
    });
    ASSERT_TRUE(l.ok);
    ASSERT_EQ(l.entries.size(), 2000u);
    EXPECT_EQ(looked, 2000);
    sortEntries(l.entries, SortKey::Name, false);
    EXPECT_EQ(l.entries.front().name, "p0000.jpg");
    EXPECT_EQ(l.entries.back().name, "p1999.jpg");
    EXPECT_FALSE(l.entries[5].sizeKnown());
}

}  // namespace
}  // namespace brindle::explorer
