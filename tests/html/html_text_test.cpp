#include <gtest/gtest.h>

#include "html/html_text.h"

namespace brindle::html {
namespace {

TEST(HtmlText, ColoursKeepTheirMissingLeadingZero) {
    EXPECT_EQ(farbeHex(0x00FF08), "80FF00");  // red 8, green 255, blue 0
    EXPECT_EQ(farbeHex(0x800000), "000080");
    EXPECT_EQ(farbeHex(0x050505), "505050");
    EXPECT_EQ(farbeHex(0xFFFFFF), "FFFFFF");
    EXPECT_EQ(farbeHex(0), "000000");
}

TEST(HtmlText, TextsBreakLinesAndBlanksButEscapeNothingElse) {
    EXPECT_EQ(textZuHTML("Erste Zeile\r\n<b>& \"zwei\""), "Erste&nbsp;Zeile<br><b>&&nbsp;\"zwei\"");
    EXPECT_EQ(textZuHTML("a\nb"), "a\nb");
}

TEST(HtmlText, NumbersOfBlocksLoseTheirFirstCharacter) {
    EXPECT_EQ(ohneVorzeichen(-5LL), "5");
    EXPECT_EQ(ohneVorzeichen(12LL), "12");
    EXPECT_EQ(ohneVorzeichen(101 * 1.2), "121.2");
    EXPECT_EQ(ohneVorzeichen(100 * 1.2), "120");
    EXPECT_EQ(ohneVorzeichen(7 * 1.2), "8.4");
    EXPECT_EQ(zahl(-5), "-5");
}

TEST(HtmlText, SpecsSplitAtCommasAndParentheses) {
    auto t = specTokens("10,3(55),255,Holz.jpg,1");
    EXPECT_EQ(t[0], "10");
    EXPECT_EQ(t[1], "3");
    EXPECT_EQ(t[2], "55");
    EXPECT_EQ(t[3], "");
    EXPECT_EQ(t[5], "Holz.jpg");
    auto empty = specTokens("");
    EXPECT_EQ(empty[0], "None");
    EXPECT_FALSE(hasAnimation(empty));
    EXPECT_FALSE(hasFrame(empty));
    EXPECT_EQ(numericValue("1,5"), 1);
    EXPECT_EQ(numericValue("Full"), 0);
    EXPECT_EQ(numericValue(" 55abc"), 55);
}

TEST(HtmlText, CharactersOutsideWindows1252BecomeReferences) {
    EXPECT_EQ(toHtmlBytes("Grüße €"), "Gr\xFC\xDF" "e \x80");
    EXPECT_EQ(toHtmlBytes("東京"), "&#26481;&#20140;");
}

}  // namespace
}  // namespace brindle::html
