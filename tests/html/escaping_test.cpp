// Titles and names that could end a script string or an attribute: they
// reach the tree, the search data and the pages as what they are.
#include <gtest/gtest.h>

#include "html/frameset.h"
#include "html/html_text.h"
#include "html/safe_text.h"
#include "html/search_page.h"
#include "html_fixture.h"

namespace brindle::html {
namespace {

const std::string kLodz = "\xC5\x81\xC3\xB3" "d\xC5\xBA";  // Łódź
const std::string kScript = "a\"b</script>";

TEST(JsString, EscapesWhatWouldEndTheStringOrTheScript) {
    const std::tuple<std::string, char, std::string> rows[] = {
        {"plain text", '"', "plain text"},
        {kLodz, '"', "\\u0141\xC3\xB3" "d\\u017A"},       // ó is in Windows-1252 and stays
        {kScript, '"', "a\\\"b\\x3C/script>"},
        {"it's", '\'', "it\\'s"},
        {"it's \"q\"", '"', "it's \\\"q\\\""},
        {"back\\slash", '\'', "back\\\\slash"},
        {"two\r\nlines", '"', "two\\r\\nlines"},
        {"tab\there", '"', "tab\\u0009here"},
        {"<!--", '"', "\\x3C!--"},
        {"\xE2\x80\xA8", '"', "\\u2028"},                  // a line separator ends a script line
        {"\xE2\x82\xAC", '"', "\xE2\x82\xAC"},             // € is in Windows-1252
        {"\xF0\x9F\x98\x80", '"', "\\uD83D\\uDE00"},      // outside the BMP: a surrogate pair
    };
    for (const auto& [text, quote, escaped] : rows) {
        EXPECT_EQ(jsString(text, quote), escaped) << text;
        EXPECT_EQ(jsUnescape(escaped), text) << escaped;
    }
}

TEST(AttributeUrl, QuotesAndAnglesCannotLeaveTheAttribute) {
    EXPECT_EQ(attributeUrl("pic\"x.jpg"), "pic%22x.jpg");
    EXPECT_EQ(attributeUrl("a<b>c`d"), "a%3Cb%3Ec%60d");
    EXPECT_EQ(attributeUrl("http://example.org/?a=1&b=2#top"), "http://example.org/?a=1&b=2#top");
    EXPECT_EQ(attributeUrl("Umschlag Vorne.htm"), "Umschlag Vorne.htm");
}

class EscapingTest : public HtmlTest {};

TEST_F(EscapingTest, TheTreeConfigurationCarriesEveryTitleAsAScriptString) {
    Session& s = freshAlbum(3);
    s.album().title = "Reise \"nach\" " + kLodz;
    s.album().pages[1].title = kLodz;
    s.album().pages[2].title = kScript;
    s.album().pages[3].title = "back\\slash";
    const std::string code = toHtmlBytes(codeText(s.album()));
    EXPECT_NE(code.find("var MTMenuText = \"Reise \\\"nach\\\" \\u0141\xF3" "d\\u017A\";\r\n"), std::string::npos)
        << code;
    EXPECT_NE(code.find(crlf({"menu = new MTMenu();",
                              "menu.MTMAddItem(new MTMenuItem(\"\\u0141\xF3" "d\\u017A\",\"\\u0141\xF3" "d\\u017A.htm\", "
                              "\"text\"));",
                              "menu.MTMAddItem(new MTMenuItem(\"a\\\"b\\x3C/script>\",\"a_b__script_.htm\", \"text\"));",
                              "menu.MTMAddItem(new MTMenuItem(\"back\\\\slash\",\"back_slash.htm\", \"text\"));",
                              "</script>"})),
              std::string::npos)
        << code;
    EXPECT_EQ(code.find("</script>\r\n</script>"), std::string::npos);
    EXPECT_EQ(code.find("&#"), std::string::npos);  // no character reference inside the script
}

TEST_F(EscapingTest, TheSearchDataCarriesEveryTextAsAScriptStringAndTheProgramReadsItBack) {
    Session& s = freshAlbum(2);
    s.album().fileName = "A.apr";
    s.album().directory = home();
    const std::pair<std::string, std::string> pages[] = {{kLodz, "Stadt " + kLodz}, {kScript, "Quote \\ o'clock"}};
    for (int i = 1; i <= 2; ++i) {
        const auto& [title, text] = pages[i - 1];
        s.album().pages[i].title = title;
        s.album().pages[i].fileName = "Seite" + std::to_string(i) + ".apg";
        s.album().pages[i].directory = home();
        page(i).title = title;
        page(i).description = "desc '" + title + "'\r\nzwei";
        page(i).texts.add().text = text;
        ASSERT_TRUE(s.schreibeSeite(path(s.album().pages[i].fileName), s.album().pages[i].slot));
    }
    ASSERT_TRUE(datenbankSchreiben(s, home()));
    const std::string data = readBytes("daten.js");
    EXPECT_NE(data.find(crlf({"p[p.length]          = new Eintrag();",
                              "p[p.length-1].kw     = 'Brindlesee,Stadt \\u0141\xF3" "d\\u017A ';",
                              "p[p.length-1].url    = '\\u0141\xF3" "d\\u017A.htm';", "p[p.length-1].Bilder = ''",
                              "p[p.length-1].title  = '\\u0141\xF3" "d\\u017A';",
                              "p[p.length-1].desc = 'desc \\'\\u0141\xF3" "d\\u017A\\'\\r\\nzwei'", "",
                              "p[p.length]          = new Eintrag();",
                              "p[p.length-1].kw     = 'Brindlesee,Quote \\\\ o clock ';",
                              "p[p.length-1].url    = 'a_b__script_.htm';", "p[p.length-1].Bilder = ''",
                              "p[p.length-1].title  = 'a\"b\\x3C/script>';",
                              "p[p.length-1].desc = 'desc \\'a\"b\\x3C/script>\\'\\r\\nzwei'", ""})),
              std::string::npos)
        << data;
    EXPECT_EQ(sucheImAlbum(s, kLodz, false), std::vector<std::string>{kLodz + ".htm"});
    EXPECT_EQ(sucheImAlbum(s, "quote", false), std::vector<std::string>{"a_b__script_.htm"});
}

TEST_F(EscapingTest, FileNamesAndLinksStayInsideTheirAttributes) {
    freshAlbum(1);
    writeBytes("bilder/pic\"x.gif", "gif");
    PictureElement& p = page(1).pictures.add();
    p.top = 1;
    p.left = 2;
    p.width = 30;
    p.height = 40;
    p.path = path("bilder/pic\"x.gif");
    p.hyperlink = "http://example.org/\" onclick=\"alert(1)";
    TextElement& t = page(1).texts.add();
    t.text = "<b>fett</b>";
    t.hyperlink = "<x>\"";
    EXPECT_EQ(elements(writePage(1)),
              crlf({"<span style=\"Color:#000000;  font-size:0pt; font-family:;\">"
                    "<div style=\"position:absolute; top:0px; left:0px; width:0px; height:0px\">",
                    "<p><a href=\"%3Cx%3E%22\"><nobr><b>fett</b></nobr></a></p>", "</div></span>", "",
                    "<div style=\"position:absolute; top:1px; left:2px; width:30px; height:40px\">",
                    "<a href=\"http://example.org/%22 onclick=%22alert(1)\"><p><img src=\"pic%22x.gif\" width=\"30\" "
                    "height=\"40\" border=0></p></a>",
                    "</div>", ""}));
    EXPECT_EQ(readBytes("out/pic\"x.gif"), "gif");
}

}  // namespace
}  // namespace brindle::html
