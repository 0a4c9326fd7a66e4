// FrmFrageText without its window: what OK stores, field by field.
#include <gtest/gtest.h>

#include "editor/document_fixture.h"
#include "properties/text_properties_model.h"

namespace brindle::properties {
namespace {

using editor::test::FakeMetrics;

TextElement sampleText() {
    TextElement t;
    t.left = 40;
    t.top = 30;
    t.width = 40;
    t.height = 26;
    t.text = "Hallo Welt";
    t.ext.extText[0] = "Hallo Welt";
    t.ext.extLong[0] = 3;  // ZPos stays
    t.font = FontSpec{0x102030, "Arial", 10, kFalse, kFalse, kFalse};
    t.hyperlink = "alt.htm";
    return t;
}

TEST(TextProperties, OpenShowsEveryFieldOfTheRecord) {
    TextElement t = sampleText();
    t.ext.extLong[1] = 2;
    t.ext.extLong[2] = 1;
    t.ext.extLong[3] = 2;
    t.ext.extLong[4] = 2;
    t.ext.extText[1] = "a;b;c";
    const TextProperties p = textPropertiesOf(t);
    EXPECT_EQ(p.text, "Hallo Welt");
    EXPECT_EQ(p.hyperlink, "alt.htm");
    EXPECT_EQ(p.link, LinkBehaviour::NewWindow);
    EXPECT_EQ(p.resize, ResizeMode::BreaksFollow);
    EXPECT_TRUE(p.breakInWords);
    EXPECT_TRUE(p.tipOfTheDay);
    EXPECT_TRUE(p.tipWrapped);
    EXPECT_EQ(p.tips, "a;b;c");
    EXPECT_EQ(p.font, t.font);
    t.ext.extLong[4] = 1;
    EXPECT_TRUE(textPropertiesOf(t).tipOfTheDay);
    EXPECT_FALSE(textPropertiesOf(t).tipWrapped);
    t.ext.extLong[4] = 0;
    EXPECT_FALSE(textPropertiesOf(t).tipOfTheDay);
}

TEST(TextProperties, OkStoresEveryControlInItsField) {
    FakeMetrics metrics;
    TextElement t = sampleText();
    TextProperties p = textPropertiesOf(t);
    p.text = "Ein langer Satz mit Worten";
    p.hyperlink = kLinkContents;
    p.link = LinkBehaviour::Browser;
    p.resize = ResizeMode::BreaksFollow;
    p.breakInWords = true;
    p.tipOfTheDay = true;
    p.tipWrapped = false;
    p.tips = "Tipp eins;Tipp zwei";
    p.font = FontSpec{0xFFFFFF, "Liberation Serif", 10, kTrue, kFalse, kTrue};
    applyTextProperties(t, p, &metrics);

    TextElement expected = sampleText();
    expected.text = "Ein langer Satz mit Worten";
    // 40 + 10 pixels hold 10 characters of 5 pixels: the box's three lines.
    expected.ext.extText[0] = "Ein langer \r\nSatz mit \r\nWorten";
    expected.hyperlink = "<inhalt>";
    expected.ext.extLong[3] = 1;
    expected.ext.extLong[1] = 2;
    expected.ext.extLong[2] = 1;
    expected.ext.extLong[4] = 1;
    expected.ext.extText[1] = "Tipp eins;Tipp zwei";
    expected.font = p.font;
    EXPECT_EQ(t.text, expected.text);
    EXPECT_EQ(t.ext.extText[0], expected.ext.extText[0]);
    EXPECT_EQ(t.hyperlink, expected.hyperlink);
    EXPECT_EQ(t.ext.extLong, expected.ext.extLong);
    EXPECT_EQ(t.ext.extText[1], expected.ext.extText[1]);
    EXPECT_EQ(t.font, expected.font);
    EXPECT_EQ(t, expected);  // and nothing else: box, ZPos and the rest as they were

    // The wrapped tip mode and the other link targets.
    p.tipWrapped = true;
    p.hyperlink = kLinkBack;
    p.link = LinkBehaviour::SameFrame;
    applyTextProperties(t, p, &metrics);
    EXPECT_EQ(t.ext.extLong[4], 2);
    EXPECT_EQ(t.ext.extLong[3], 0);
    EXPECT_EQ(t.hyperlink, "<zurück>");
    p.tipOfTheDay = false;
    applyTextProperties(t, p, &metrics);
    EXPECT_EQ(t.ext.extLong[4], 0);
    EXPECT_EQ(t.ext.extText[1], "Tipp eins;Tipp zwei");  // the tips are kept, unchecked
}

TEST(TextProperties, OnlyTheBreakModeSetsLineBreaksAndOnlyInTheShownText) {
    FakeMetrics metrics;
    struct Row {
        ResizeMode mode;
        const char* shown;
    } rows[] = {
        {ResizeMode::OnlyMove, "Ein langer Satz mit Worten"},
        {ResizeMode::FontFollows, "Ein langer Satz mit Worten"},
        {ResizeMode::BreaksFollow, "Ein langer \r\nSatz mit \r\nWorten"},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(int(r.mode));
        TextElement t = sampleText();
        TextProperties p = textPropertiesOf(t);
        p.text = "Ein langer Satz mit Worten";
        p.resize = r.mode;
        applyTextProperties(t, p, &metrics);
        EXPECT_EQ(t.text, "Ein langer Satz mit Worten");
        EXPECT_EQ(t.ext.extText[0], r.shown);
        EXPECT_EQ(t.ext.extLong[1], int(r.mode));
    }
}

TEST(TextProperties, BrecheTextKeepsWordsWholeUnlessAllowed) {
    FakeMetrics m;
    const FontSpec f{0, "Arial", 10, kFalse, kFalse, kFalse};
    // 30 + 10 pixels: 8 characters a line; the long word is cut by the box.
    EXPECT_EQ(brecheText(m, 30, 20, "Donaudampfschiff ab", f, true), "Donaudam\r\npfschiff \r\nab");
    EXPECT_EQ(brecheText(m, 30, 20, "Donaudampfschiff ab", f, false), "Donaudampfschiff \r\nab");
    // Typed line ends stay line ends, as CR LF.
    EXPECT_EQ(brecheText(m, 30, 20, "ab\r\ncd", f, false), "ab\r\ncd");
    EXPECT_EQ(brecheText(m, 30, 20, "ab\ncd", f, false), "ab\r\ncd");
    EXPECT_EQ(brecheText(m, 30, 20, "ab\r\n\r\ncd", f, false), "ab\r\n\r\ncd");
    EXPECT_EQ(brecheText(m, 30, 20, "", f, false), "");
}

TEST(TextProperties, AFirstTextMeasuresItsBoxAndIsNotBroken) {
    FakeMetrics metrics;
    TextElement t = sampleText();
    t.text.clear();
    t.ext.extText[0].clear();
    TextProperties p = textPropertiesOf(t);
    p.text = "abcd efgh ijkl";
    p.resize = ResizeMode::BreaksFollow;
    applyTextProperties(t, p, &metrics);
    EXPECT_EQ(t.width, 14 * 5);  // 14 characters of 5 pixels at 10 points
    EXPECT_EQ(t.height, 13);
    EXPECT_EQ(t.ext.extText[0], "abcd efgh ijkl");
    // Without metrics the box stays.
    TextElement u = sampleText();
    u.text.clear();
    applyTextProperties(u, p, nullptr);
    EXPECT_EQ(u.width, 40);
    EXPECT_EQ(u.ext.extText[0], "abcd efgh ijkl");
}

TEST(TextProperties, FivePixelsOfTheBoxStayOnThePage) {
    FakeMetrics metrics;
    struct Row {
        int left, top, width, height;
        int wantLeft, wantTop;
    } rows[] = {
        {-300, -100, 200, 40, -195, -35},  // dragged almost fully off: pulled back
        {-195, -35, 200, 40, -195, -35},   // exactly 5 pixels stay
        {-100, 10, 200, 40, -100, 10},
        {600, 400, 200, 40, 600, 400},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.left);
        TextElement t = sampleText();
        t.left = std::int16_t(r.left);
        t.top = std::int16_t(r.top);
        t.width = std::int16_t(r.width);
        t.height = std::int16_t(r.height);
        applyTextProperties(t, textPropertiesOf(t), &metrics);
        EXPECT_EQ(t.left, r.wantLeft);
        EXPECT_EQ(t.top, r.wantTop);
    }
}

}  // namespace
}  // namespace brindle::properties
