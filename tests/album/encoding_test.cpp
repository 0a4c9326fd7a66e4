#include <gtest/gtest.h>

#include "album/encoding.h"

namespace brindle {
namespace {

TEST(Encoding, Windows1252WhereItFitsUtf8Otherwise) {
    struct Row {
        std::string text, disk;
    };
    const Row rows[] = {
        {"plain", "plain"},
        {"Grüße", "Gr\xFC\xDF" "e"},
        {"€ „“ – …", "\x80 \x84\x93 \x96 \x85"},
        {"Ä 東", "Ä 東"},  // one character does not fit: the whole text stays UTF-8
        {"\xC2\x81", "\x81"},  // undefined byte 0x81 travels as U+0081
        // Its Windows-1252 bytes C3 BE would read back as "þ": stored as UTF-8.
        {"Ã¾", "Ã¾"},
        {"Ã¾ und ö", "\xC3\xBE und \xF6"},  // with the ö it is no UTF-8: Windows-1252 again
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.text);
        EXPECT_EQ(encodeFileString(r.text), r.disk);
        EXPECT_EQ(decodeFileString(r.disk), r.text);
    }
}

TEST(Encoding, EveryByteOfAnOlderFileSurvives) {
    std::string all;
    for (int b = 1; b < 256; ++b) all += static_cast<char>(b);
    std::string text = decodeFileString(all);
    EXPECT_TRUE(isValidUtf8(text));
    EXPECT_EQ(encodeFileString(text), all);
}

TEST(Encoding, InvalidUtf8IsReadAsWindows1252) {
    struct Row {
        const char* name;
        std::string disk, text;
    };
    const Row rows[] = {
        {"overlong two bytes", "\xC0\xAF", "\u00C0\u00AF"},
        {"overlong three bytes", "\xE0\x80\xAF", "\u00E0\u20AC\u00AF"},
        {"overlong four bytes", "\xF0\x8F\xBF\xBF", "\u00F0\u008F\u00BF\u00BF"},
        {"surrogate", "\xED\xA0\x80", "\u00ED\u00A0\u20AC"},
        {"last surrogate", "\xED\xBF\xBF", "\u00ED\u00BF\u00BF"},
        {"past U+10FFFF", "\xF4\x90\x80\x80", "\u00F4\u0090\u20AC\u20AC"},
        {"five-byte lead", "\xF8\x88\x80\x80\x80", "\u00F8\u02C6\u20AC\u20AC\u20AC"},
        {"cut sequence", "a\xC3", "a\u00C3"},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        EXPECT_FALSE(isValidUtf8(r.disk));
        EXPECT_EQ(decodeFileString(r.disk), r.text);
        EXPECT_EQ(encodeFileString(r.text), r.disk);
    }
    // The borders themselves are valid and stay UTF-8.
    for (const std::string valid : {"\xC2\x80", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
                                    "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"}) {
        SCOPED_TRACE(valid);
        EXPECT_TRUE(isValidUtf8(valid));
        EXPECT_EQ(decodeFileString(valid), valid);
    }
}

TEST(Encoding, LowerCaseCoversLatinCapitalsButNotTheTimesSign) {
    for (char32_t c = 0xA0; c <= 0xFF; ++c) {
        SCOPED_TRACE(static_cast<unsigned>(c));
        std::string upper, lower;
        appendUtf8(upper, c);
        appendUtf8(lower, c >= 0xC0 && c <= 0xDE && c != 0xD7 ? c + 32 : c);
        EXPECT_EQ(utf8Lower(upper), lower);
    }
    EXPECT_EQ(utf8Lower("ÀÞ×ß"), "àþ×ß");
}

TEST(Encoding, CharacterWiseHelpers) {
    EXPECT_EQ(utf8Length("Grüße"), 5u);
    EXPECT_EQ(utf8Left("Grüße.jpg", 3), "Grü");
    EXPECT_EQ(utf8From("Grüße.jpg", 3), "ße.jpg");
    EXPECT_EQ(utf8Right("Grüße.jpg", 4), ".jpg");
    EXPECT_EQ(utf8Lower("ÄÖÜ Straße ABC"), "äöü straße abc");
}

}  // namespace
}  // namespace brindle
