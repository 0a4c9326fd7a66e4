// Links between the pages of a generated album: buttons, titles as links,
// the contents button, counts that disagree with the page list, and the
// file names of pages whose titles are no safe file names.
#include <gtest/gtest.h>

#include "album/paths.h"
#include "html/frameset.h"
#include "html/generation_run.h"
#include "html/safe_text.h"
#include "html_fixture.h"

namespace brindle::html {
namespace {

class LinksTest : public HtmlTest {
protected:
    void installMenuFiles() {
        touch("Menü/mtmcode.js");
        for (const char* p : kMenuPictures) touch(std::string("Menü/menu-images/") + p);
    }
    // The navigation row of a written page, between its opening and closing line.
    std::string buttonRow(const std::string& html) {
        const std::string open = "<P ALIGN=CENTER>\r\n";
        const std::size_t a = html.find(open);
        const std::size_t b = html.find("</P>\r\n");
        if (a == std::string::npos || b == std::string::npos) return "(no button row)";
        return html.substr(a + open.size(), b - a - open.size());
    }
    std::string link(const std::string& text, int pageIndex) {
        LinkRequest l;
        l.link = text;
        l.pageIndex = pageIndex;
        l.htmlPath = path("out/x.htm");
        return loeseLink(*run, l);
    }
};

TEST_F(LinksTest, ButtonsLeadToTheNeighboursAndTheContentsPageWhetherOpenOrNot) {
    Session& s = freshAlbum(3);
    touch("z.gif");
    touch("i.gif");
    touch("v.gif");
    s.album().pages[3].title = "Inhalt";
    // The contents page is listed but not open.
    s.album().pages[3].slot = 0;
    PageProps& props = page(2).props;
    props.backButton = path("z.gif");
    props.contentsButton = path("i.gif");
    props.forwardButton = path("v.gif");
    EXPECT_EQ(buttonRow(writePage(2)),
              crlf({"<a href=\"Seite1.htm\" Target=\"_self\"><img src=\"z.gif\" BORDER = 0 ALT=\"Zur\xFC" "ck\"></a>",
                    "<a href=\"Inhalt.htm\" Target=\"_self\"><img src=\"i.gif\" BORDER = 0 ALT=\"Inhalt\"></a>",
                    "<a href=\"Inhalt.htm\" Target=\"_self\"><img src=\"v.gif\" BORDER = 0 ALT=\"Vor\"></a>"}));
    // Without a contents page the button has nowhere to lead.
    s.album().pages[3].title = "Seite3";
    EXPECT_EQ(buttonRow(writePage(2)),
              crlf({"<a href=\"Seite1.htm\" Target=\"_self\"><img src=\"z.gif\" BORDER = 0 ALT=\"Zur\xFC" "ck\"></a>",
                    "<a href=\"Seite3.htm\" Target=\"_self\"><img src=\"v.gif\" BORDER = 0 ALT=\"Vor\"></a>"}));
}

TEST_F(LinksTest, ALinkThatIsAPageTitleLeadsToThatPage) {
    Session& s = freshAlbum(2);
    s.album().pages[2].title = "Am Meer";
    EXPECT_EQ(link("Am Meer", 1), "Am Meer.htm");
    EXPECT_EQ(link("Am Meer.htm", 1), "Am Meer.htm");
    EXPECT_EQ(link("Seite1", 2), "Seite1.htm");
    EXPECT_EQ(link("am meer", 1), "am meer");  // titles compare exactly
    EXPECT_EQ(link("Anderswo.htm", 1), "Anderswo.htm");
    EXPECT_EQ(link("http://example.org/", 1), "http://example.org/");
    EXPECT_EQ(link("<zurück>", 2), "Seite1.htm");
    EXPECT_EQ(link("<vor>", 1), "Am Meer.htm");
}

TEST_F(LinksTest, ACountPastThePageListNeverLeadsPastIt) {
    Session& s = freshAlbum(2);
    installMenuFiles();
    s.album().pageCount = 5;  // as a file from outside may say
    EXPECT_EQ(link("<zurück>", 1), "Seite2.htm");
    EXPECT_EQ(link("<vor>", 2), "Seite1.htm");
    EXPECT_EQ(link("<zurück>", 4), "");
    EXPECT_EQ(link("<vor>", 5), "");
    TextElement& t = page(1).texts.add();
    t.text = "zur\xC3\xBC" "ck";
    t.hyperlink = "<zurück>";
    autoForwardSeconds(page(1).props) = -3;

    ASSERT_TRUE(generiereAlbum(*run));
    EXPECT_EQ(run->failedWrites, 0);
    const std::string first = readBytes("out/Seite1.htm");
    EXPECT_NE(first.find("<meta http-equiv=\"refresh\" content=\"3; URL=Seite2.htm\">"), std::string::npos);
    EXPECT_NE(first.find("<a href=\"Seite2.htm\">"), std::string::npos);
    const std::string code = readBytes("out/code.html");
    EXPECT_NE(code.find("menu = new MTMenu();\r\n"
                        "menu.MTMAddItem(new MTMenuItem(\"Seite1\",\"Seite1.htm\", \"text\"));\r\n"
                        "menu.MTMAddItem(new MTMenuItem(\"Seite2\",\"Seite2.htm\", \"text\"));\r\n</script>"),
              std::string::npos)
        << code;
}

TEST_F(LinksTest, SafeFileStemsKeepOrdinaryTitles) {
    const std::pair<const char*, const char*> rows[] = {
        {"Seite1", "Seite1"},
        {"Umschlag Vorne", "Umschlag Vorne"},
        {"\xC5\x81\xC3\xB3" "d\xC5\xBA", "\xC5\x81\xC3\xB3" "d\xC5\xBA"},  // Łódź
        {"../../escaped", ".._.._escaped"},
        {"..\\..\\escaped", ".._.._escaped"},
        {"/etc/passwd", "_etc_passwd"},
        {"..", "_.."},
        {".", "_."},
        {"", "_"},
        {"a\"b</script>", "a_b__script_"},
        {"javascript:alert(1)", "javascript_alert(1)"},
        {"50% #1?", "50_ _1_"},
        {"C:\\x", "C__x"},
        {"a\r\nb", "a__b"},
    };
    for (const auto& [title, stem] : rows) EXPECT_EQ(safeFileStem(title), stem) << title;
    // A very long title is cut at a character boundary.
    std::string longTitle;
    for (int i = 0; i < 200; ++i) longTitle += "\xC3\xA4";  // ä
    EXPECT_EQ(safeFileStem(longTitle), longTitle.substr(0, 240));
}

TEST_F(LinksTest, ATitleWithSeparatorsNamesAFileInsideTheOutputFolder) {
    Session& s = freshAlbum(2);
    installMenuFiles();
    fs::create_directories(path("out/sub"));
    run->outputDirectory = path("out/sub/");
    s.album().title = "../Album";
    s.album().pages[2].title = "../../escaped";
    page(1).props.forwardButton = path("v.gif");
    touch("v.gif");
    page(1).texts.add().hyperlink = "../../escaped";
    ASSERT_TRUE(generiereAlbum(*run));
    EXPECT_EQ(run->failedWrites, 0);
    EXPECT_FALSE(fs::exists(path("escaped.htm")));
    EXPECT_FALSE(fs::exists(path("out/escaped.htm")));
    EXPECT_FALSE(fs::exists(path("out/Album.html")));
    EXPECT_TRUE(fs::exists(path("out/sub/.._.._escaped.htm")));
    EXPECT_TRUE(fs::exists(path("out/sub/.._Album.html")));
    // Every link to the page names that file.
    const std::string first = readBytes("out/sub/Seite1.htm");
    EXPECT_NE(first.find("<a href=\".._.._escaped.htm\" Target=\"_self\"><img src=\"v.gif\""), std::string::npos);
    EXPECT_NE(first.find("<p><a href=\".._.._escaped.htm\"><nobr>"), std::string::npos);
    EXPECT_NE(readBytes("out/sub/menu.html").find("<a href=\".._.._escaped.htm\" target=\"text\" ><nobr>../../escaped"),
              std::string::npos);
    EXPECT_NE(readBytes("out/sub/code.html").find("new MTMenuItem(\"../../escaped\",\".._.._escaped.htm\", \"text\")"),
              std::string::npos);
    s.album().pages[1].title = "../../escaped";
    EXPECT_NE(framesetText(s.album()).find("src=\".._.._escaped.htm\" name=\"text\""), std::string::npos);
}

}  // namespace
}  // namespace brindle::html
