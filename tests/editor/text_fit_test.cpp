#include <gtest/gtest.h>

#include "document_fixture.h"

namespace brindle::editor::test {
namespace {

struct FitRow {
    int width, height;
    const char* text;
    int start;
    int size;
    TextSize label;
};

TEST(SchriftAnpassen, GrowsByTwoThenShrinksByOne) {
    FakeMetrics m;
    const FitRow rows[] = {
        {40, 26, "abcd", 10, 18, {36, 24}},  // grows 10, 12, 14, 16, 18 and stops
        {40, 26, "abcd", 30, 23, {44, 30}},  // shrinks while more than 5 pixels stick out
        {200, 8, "ab", 10, 10, {10, 13}},    // too low to grow, and 13 - 5 is not above 8
        {200, 7, "ab", 10, 9, {8, 12}},
        {3, 3, "abcdefgh", 4, 3, {8, 4}},
        {3, 3, "abcdefghijklmnop", 4, 1, {16, 1}},  // never below 1
        {40, 26, "abcd", 0, 17, {32, 22}},   // size 0 starts at 9: 9, 11, ..., 17
        // Exactly at the boundaries: 5 pixels inside still grows, 5 pixels
        // outside does not shrink yet.
        {25, 100, "abcd", 10, 12, {24, 16}},  // 20 + 5 fits 25: grows once
        {200, 18, "ab", 10, 12, {12, 16}},    // 13 + 5 fits 18: grows once
        {55, 100, "abcd", 30, 30, {60, 40}},  // 60 - 5 is not above 55
        {200, 35, "ab", 30, 30, {30, 40}},    // 40 - 5 is not above 35
    };
    for (const FitRow& r : rows) {
        SCOPED_TRACE(testing::Message() << r.text << " in " << r.width << "x" << r.height << " from " << r.start);
        const FontFit fit = SchriftAnpassen(m, r.width, r.height, r.text, FontSpec{0, "Arial", r.start, 0, 0, 0});
        EXPECT_EQ(fit.size, r.size);
        EXPECT_EQ(fit.label, r.label);
    }
}

struct WrapRow {
    int width;
    const char* text;
    const char* wrapped;
};

TEST(TextUmbrechen, BreaksOnlyWhereNoBlankStands) {
    FakeMetrics m;  // size 10: 5 pixels a character, the box is 10 wider
    const WrapRow rows[] = {
        {40, "aaa bbb ccc", "aaa bbb ccc"},          // soft breaks keep their blank
        {40, "abcdefghijklmnop", "abcdefghij\r\nklmnop"},
        {40, "eins\r\nzwei", "eins\r\nzwei"},        // a hard break comes back
        {40, "eins\r\n zwei", "eins zwei"},          // a blank at the next line's start joins
        {200, "kurz", "kurz"},
        {40, "abcdefghij", "abcdefghij"},            // exactly the box's 50 pixels: one line
        {40, "abcdefghijk", "abcdefghij\r\nk"},
    };
    for (const WrapRow& r : rows) {
        SCOPED_TRACE(r.text);
        EXPECT_EQ(TextUmbrechen(m, r.width, 20, r.text, FontSpec{0, "Arial", 10, 0, 0, 0}), r.wrapped);
    }
}

TEST(TextUmbrechen, LinesAreReadWithABufferOf254) {
    class LongLines : public FakeMetrics {
        std::vector<std::string> boxLines(const FontSpec&, int, const std::string&) override {
            return {std::string(300, 'x'), "y"};
        }
    } m;
    EXPECT_EQ(TextUmbrechen(m, 10, 10, "", FontSpec{}), std::string(254, 'x') + "\r\ny");
}

TEST(FontDefaults, ZeroSizeIsNineAndNoNameIsArial) {
    EXPECT_EQ(fontSizeOf(FontSpec{}), 9);
    EXPECT_EQ(fontNameOf(FontSpec{}), "Arial");
    EXPECT_EQ(fontNameOf(FontSpec{0, "Liberation Serif", 3, 0, 0, 0}), "Liberation Serif");
}

}  // namespace
}  // namespace brindle::editor::test
