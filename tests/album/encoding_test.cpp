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

TEST(Encoding, CharacterWiseHelpers) {
    EXPECT_EQ(utf8Length("Grüße"), 5u);
    EXPECT_EQ(utf8Left("Grüße.jpg", 3), "Grü");
    EXPECT_EQ(utf8From("Grüße.jpg", 3), "ße.jpg");
    EXPECT_EQ(utf8Right("Grüße.jpg", 4), ".jpg");
    EXPECT_EQ(utf8Lower("ÄÖÜ Straße ABC"), "äöü straße abc");
}

}  // namespace
}  // namespace brindle
