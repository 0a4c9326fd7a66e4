#include "print/print_file.h"

#include <gtest/gtest.h>

#include "support/temp_home.h"

namespace brindle::print {
namespace {

using test::TempHomeTest;

class PrintFileTest : public TempHomeTest {};

std::vector<Box> twoBoxes() {
    return {Box{10.5F, 20, 80.25F, 60}, Box{-0.1F, 95.5F, 100, 66.67F}};
}

TEST_F(PrintFileTest, WritesFourLinesPerPictureWithCrLfAndReadsThemBack) {
    const std::string expected =
        "10.5\r\n20\r\n80.25\r\n60\r\n"
        "-0.1\r\n95.5\r\n100\r\n66.67\r\n";
    EXPECT_EQ(encodeLayout(twoBoxes()), expected);
    std::string error;
    ASSERT_TRUE(saveLayoutFile(path("sheet.bsp"), twoBoxes(), error)) << error;
    EXPECT_EQ(readBytes("sheet.bsp"), expected);
    std::vector<Box> read;
    ASSERT_TRUE(loadLayoutFile(path("sheet.bsp"), 2, read, error)) << error;
    EXPECT_EQ(read, twoBoxes());
    EXPECT_EQ(encodeLayout(read), expected);
    EXPECT_EQ(encodeLayout({}), "");
}

TEST_F(PrintFileTest, ReadsOnlyAsFarAsTheSelectionGoes) {
    std::vector<Box> five;
    for (int i = 0; i < 5; ++i) five.push_back(Box{float(i), float(2 * i), 30, 40});
    std::vector<Box> read;
    std::string error;
    ASSERT_TRUE(decodeLayout(encodeLayout(five), 3, read, error)) << error;
    EXPECT_EQ(read, std::vector<Box>(five.begin(), five.begin() + 3));
    // A German comma and lines ended by LF alone are read as well.
    ASSERT_TRUE(decodeLayout("1,5\n2\n3,25\n4\n", kAllBoxes, read, error)) << error;
    EXPECT_EQ(read, (std::vector<Box>{Box{1.5F, 2, 3.25F, 4}}));
}

TEST_F(PrintFileTest, ShortAndForeignFilesAreRefusedWithoutChangingTheBoxes) {
    struct Case {
        const char* name;
        std::string bytes;
        std::size_t wanted;
        const char* message;
    };
    const std::string one = "1\r\n2\r\n3\r\n4\r\n";
    const Case cases[] = {
        {"empty", "", 1, "The print layout is empty or incomplete."},
        {"fewer pictures than selected", one, 2,
         "The print layout holds only 1 pictures, but 2 are selected."},
        {"broken last group", one + "5\r\n6\r\n", kAllBoxes, "The print layout is empty or incomplete."},
        {"text", "[Album]\r\nName=x\r\n3\r\n4\r\n", 1, "Line 1 of the print layout is not a number."},
        {"empty line", "1\r\n\r\n3\r\n4\r\n", 1, "Line 2 of the print layout is not a number."},
        {"exponent", "1\r\n2\r\n3e2\r\n4\r\n", 1, "Line 3 of the print layout is not a number."},
        {"infinity", "1\r\n2\r\n3\r\ninf\r\n", 1, "Line 4 of the print layout is not a number."},
        {"huge value", "1\r\n2\r\n3\r\n1000000\r\n", 1, "Line 4 of the print layout is not a number."},
        {"two separators", "1.5.5\r\n2\r\n3\r\n4\r\n", 1, "Line 1 of the print layout is not a number."},
        {"inner minus", "1-5\r\n2\r\n3\r\n4\r\n", 1, "Line 1 of the print layout is not a number."},
        {"binary", std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16), 1,
         "Line 1 of the print layout is not a number."},
        {"too large", std::string(kMaxLayoutBytes + 1, '1'), 1,
         "The file is too large for a print layout."},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::vector<Box> boxes = twoBoxes();
        std::string error;
        EXPECT_FALSE(decodeLayout(c.bytes, c.wanted, boxes, error));
        EXPECT_EQ(error, c.message);
        EXPECT_EQ(boxes, twoBoxes());
    }
    std::vector<Box> boxes = twoBoxes();
    std::string error;
    EXPECT_FALSE(decodeLayout("x\r\n2\r\n3\r\n4\r\n", 1, boxes, error, Language::German));
    EXPECT_EQ(error, "Zeile 1 der Druckvorlage ist keine Zahl.");
    writeBytes("short.bsp", one);
    EXPECT_FALSE(loadLayoutFile(path("short.bsp"), 3, boxes, error));
    EXPECT_EQ(error, path("short.bsp") + ": The print layout holds only 1 pictures, but 3 are selected.");
    EXPECT_FALSE(loadLayoutFile(path("missing.bsp"), 1, boxes, error));
    EXPECT_EQ(error, "Cannot read the print layout: " + path("missing.bsp"));
    EXPECT_FALSE(saveLayoutFile(path("no/folder/x.bsp"), boxes, error));
    EXPECT_EQ(error, "Cannot write the print layout: " + path("no/folder/x.bsp"));
    EXPECT_EQ(boxes, twoBoxes());
}

}  // namespace
}  // namespace brindle::print
