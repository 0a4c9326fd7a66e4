#include <gtest/gtest.h>

#include <filesystem>

#include "album/paths.h"
#include "html/frameset.h"
#include "html/generation_run.h"
#include "html/page_html.h"
#include "html/search_page.h"
#include "html/staging.h"
#include "html_fixture.h"

namespace brindle::html {
namespace {

TEST_F(HtmlTest, APageWithoutElements) {
    freshAlbum(1);
    page(1).title = "Leer";
    EXPECT_EQ(writePage(1), crlf({"<!Generiert von Brindlesee Ver.1.0 Beta>", "<html>", "<head>", "<title>Leer</title>",
                                  "", "</head>", "<body bgcolor=#C0C0C0 leftmargin=0 topmargin=3> ", "",
                                  "<P ALIGN=CENTER>", "</P>", "", "</body>", "</html>"}));
}

TEST_F(HtmlTest, TextsWithLinesBlanksMarkupAndTips) {
    freshAlbum(2);
    TextElement& t = page(1).texts.add();
    t = TextElement{10, -20, 101, 30, "Hallo Welt\r\n<b>zwei", kFalse, {}, FontSpec{0xFF, "Arial", 12, kTrue, 0, 0},
                    "Seite2.htm", {}};
    t.ext.extLong[3] = 2;  // new window
    TextElement& tip = page(1).texts.add();
    tip = TextElement{50, 0, 100, 20, "", kFalse, {}, FontSpec{0x00FF08, "", 9, 0, kTrue, kTrue}, "", {}};
    tip.ext.extLong[4] = 1;
    tip.ext.extText[1] = "eins;zwei\r\n;drei";
    page(1).title = "T";
    std::string html = writePage(1);
    EXPECT_EQ(elements(html),
              crlf({"<span style=\"Color:#FF0000; font-weight:bold;  font-size:12pt; font-family:Arial;\">"
                    "<div style=\"position:absolute; top:10px; left:20px; width:121.2px; height:30px\">",
                    "<p><a href=\"Seite2.htm\" Target=\"_blank\"><nobr>Hallo&nbsp;Welt<br><b>zwei</nobr></a></p>",
                    "</div></span>", "",
                    "<span style=\"Color:#80FF00; font-style:italic; text-decoration:underline;  font-size:9pt; "
                    "font-family:;\"><div style=\"position:absolute; top:50px; left:0px; width:120px; height:20px\">",
                    "<p><nobr><script>Tip2_des_Tages();</script></nobr></p>", "</div></span>", ""}));
    EXPECT_NE(html.find(crlf({"<title>T</title>", "<SCRIPT LANGUAGE=\"JavaScript\">", "<!-- Anfang",
                              "Stamp = new Date();", "today = Stamp.getDate();", "", "var msg2 = new Array();",
                              "msg2[1] = \"eins\";", "msg2[2] = \"zwei\";", "msg2[3] = \"drei\";",
                              "function Tip2_des_Tages() {document.write(msg2[today]);}", "// Ende -->",
                              "</script>", "", "</head>"})),
              std::string::npos)
        << html;
    EXPECT_EQ(page(1).texts[1].ext.extText[0], "Hallo Welt\r\n<b>zwei");

    // Forty tips write 31 entries.
    std::string many;
    for (int i = 1; i <= 40; ++i) many += "t" + std::to_string(i) + ";";
    tip.ext.extText[1] = many;
    html = writePage(1);
    EXPECT_NE(html.find("msg2[31] = \"t31\";"), std::string::npos);
    EXPECT_EQ(html.find("msg2[32]"), std::string::npos);
}

TEST_F(HtmlTest, RefreshAndButtonsWrapAroundTheAlbum) {
    Session& s = freshAlbum(3);
    touch("z.jpg");
    touch("v.jpg");
    autoForwardSeconds(page(3).props) = 5;
    page(3).props.forwardButton = path("v.jpg");
    autoForwardSeconds(page(1).props) = -7;
    page(1).props.backButton = path("z.jpg");
    EXPECT_NE(writePage(3).find("<meta http-equiv=\"refresh\" content=\"5; URL=Seite1.htm\">\r\n</head>"),
              std::string::npos);
    std::string first = writePage(1);
    EXPECT_NE(first.find("<meta http-equiv=\"refresh\" content=\"7; URL=Seite3.htm\">"), std::string::npos);
    EXPECT_NE(first.find(crlf({"<P ALIGN=CENTER>",
                               "<a href=\"Seite3.htm\" Target=\"_self\"><img src=\"z.jpg\" BORDER = 0 "
                               "ALT=\"Zur\xFC" "ck\"></a>",
                               "</P>"})),
              std::string::npos);
    EXPECT_TRUE(dateiVorhanden(path("out/z.jpg")));
    (void)s;
}

TEST_F(HtmlTest, EffectsAndPlainPictures) {
    freshAlbum(1);
    touch("bslake.class");
    touch("bsrain.class");
    touch("bseffects.js");
    touch("bilder/Bild.gif");
    auto add = [&](const std::string& anim, const std::string& frame) -> PictureElement& {
        PictureElement& p = page(1).pictures.add();
        p.top = -5;
        p.left = 7;
        p.width = 200;
        p.height = 100;
        p.path = path("bilder/Bild.gif");
        p.ext.extText[0] = frame;
        p.ext.extText[1] = anim;
        return p;
    };
    // The frame's six items need their closing comma to count as drawn.
    add("Rain,3,50,0,0,0", "10,2,55,255,None,1,");
    add("Snow,4,50,0,0,0", "10,2,55,255,None,1,");
    add("UnderWater,3,5,4,4,0,0,0", "");
    add("", "");
    PictureElement& linked = add("Lake,2,50,0,0,0", "10,2,55,255,None,1");
    linked.hyperlink = "http://example.org/";
    linked.ext.extLong[4] = 1;
    std::vector<std::string> written;
    run->pictures.writeWebPicture = [&](const WebPicture& p, std::string&) {
        written.push_back(p.target);
        return true;
    };
    std::string html = writePage(1);
    EXPECT_EQ(elements(html),
              crlf({"<div style=\"position:absolute; top:5px; left:7px; width:200px; height:100px\">",
                    "<applet CODE=\"bsrain.class\" width=200 height=100>", "<PARAM NAME=speed VALUE=\"3\">",
                    "<PARAM NAME=rahmenbreite VALUE=\"10\">", "<PARAM NAME=anzahl VALUE=\"100\">",
                    "<PARAM NAME=picture VALUE=\"BSThumbbild.gif\">", "</applet></div>", "",
                    "<div style=\"position:absolute; top:5px; left:7px; width:200px; height:100px\">",
                    "<applet CODE=\"bsrain.class\" width=200 height=100>", "<PARAM NAME=speed VALUE=\"4\">",
                    "<PARAM NAME=snowmodus VALUE=\"1\">", "<PARAM NAME=rahmenbreite VALUE=\"10\">",
                    "<PARAM NAME=anzahl VALUE=\"1100\">", "<PARAM NAME=picture VALUE=\"BSThumbbild_2.gif\">",
                    "</applet></div>", "",
                    "<div style=\"position:absolute; top:-5px; left:7px; width:200px; height:100px\">",
                    "<p><img src=\"BSThumbbild_3.gif\" width=\"200\" height=\"100\" border=0></p>", "</div>", "",
                    "<div style=\"position:absolute; top:-5px; left:7px; width:200px; height:100px\">",
                    "<p><img src=\"bild.gif\" width=\"200\" height=\"100\" border=0></p>", "</div>", "",
                    "<div style=\"position:absolute; top:5px; left:7px; width:200px; height:100px\">",
                    "<applet CODE=\"bslake.class\" width=200 height=100>", "<PARAM NAME=speed VALUE=\"2\">",
                    "<PARAM NAME=URL VALUE=\"http://example.org/\">", "<PARAM NAME=target VALUE=\"_top\">",
                    "<PARAM NAME=picture VALUE=\"BSThumbbild_4.gif\">", "</applet></div>", "",
                    "<script src=\"bseffects.js\"></script>"}));
    // Rain, snow, underwater and lake are prepared, each into its own file;
    // the plain GIF is copied.
    EXPECT_EQ(written, (std::vector<std::string>{path("out/BSThumbbild.gif"), path("out/BSThumbbild_2.gif"),
                                                 path("out/BSThumbbild_3.gif"), path("out/BSThumbbild_4.gif")}));
    EXPECT_TRUE(dateiVorhanden(path("out/bild.gif")));
    EXPECT_TRUE(dateiVorhanden(path("out/bsrain.class")));
    EXPECT_TRUE(dateiVorhanden(path("out/bseffects.js")));
}

TEST_F(HtmlTest, PanoramasWriteOneParameterPerPictureAndNormaliseZoom) {
    freshAlbum(1);
    touch("pan360.class");
    PanoramaElement& pano = page(1).panoramas.add();
    pano.top = -3;
    pano.left = 4;
    pano.width = 300;
    pano.height = 150;
    pano.hotspots[0].urlName = path("p/Rund.JPG");
    pano.hotspots[0].zoomStart = "Full";
    pano.hotspots[0].yStart = 12;
    pano.hotspots[0].x1[0] = -9;
    pano.hotspots[0].target[9] = 2;
    pano.hotspots[0].target[10] = 7;  // never written
    touch("p/Rund.JPG");
    std::string html = elements(writePage(1));
    std::string nums;
    for (int k = 0; k < 10; ++k) nums += k == 0 ? "9,0,0,0,0," : k == 9 ? "0,0,0,0,2," : "0,0,0,0,0,";
    EXPECT_EQ(html, crlf({"<div style=\"position:absolute; top:3px; left:4px; width:300px; height:150px\">",
                          "<applet CODE=\"pan360.class\"width=300 height=150>", "",
                          "<PARAM NAME=URL0 VALUE=\"BSThumbrund.jpg,alt.gif,0,-12,Full,0,0,0,0,0," + nums +
                              "0,0,0,0,0\">",
                          "</applet></div>", "", "<script src=\"bseffects.js\"></script>"}));
    pano.hotspots[0].zoomStart = "1,5";
    writePage(1);
    EXPECT_EQ(pano.hotspots[0].zoomStart, " 1");
}

TEST_F(HtmlTest, SharedStackingPositionKeepsTheLastAndEmptyPositionsGiveEmptyLines) {
    freshAlbum(1);
    PageRecord& p = page(1);
    p.texts.add().text = "erster";
    p.texts.add().text = "zweiter";
    p.texts.add().deleted = kTrue;
    p.stack.add() = {1, "text"};
    p.stack.add() = {2, "text"};
    zPos(p.texts[1]) = 2;
    zPos(p.texts[2]) = 2;
    std::string html = elements(writePage(1));
    EXPECT_EQ(html.find("erster"), std::string::npos);
    EXPECT_NE(html.find("zweiter"), std::string::npos);
    EXPECT_EQ(html.substr(0, 2), "\r\n");  // position 1 is claimed by no element
}

TEST_F(HtmlTest, FramesetMenuAndCodeOfAOnePageAlbum) {
    Session& s = freshAlbum(1);
    s.album().title = "Reise";
    s.album().menuColor1 = 0xA00000;
    touch("Menü/mtmcode.js");
    for (const char* p : kMenuPictures) touch(std::string("Menü/menu-images/") + p);
    schreibeMenue(*run);
    EXPECT_EQ(readBytes("out/Reise.html"),
              crlf({"<html>", "<head>", "<title>Reise wurde mit brindlesee erstellt</title>", "</head>",
                    "<frameset cols=\"*\" rows=\"*\">", "<frameset cols=\"175,*\" rows=\"*\">",
                    "<frameset cols=\"*\" rows=\"100%,*\" frameborder=0 framespacing=0 border=0 >",
                    "<frame marginwidth=0 marginheight=10 src=\"menu.html\" name=\"menu\"Scrolling = \"auto\" > \"",
                    "<frame marginwidth=0 marginheight=0 src=\"code.html\" name=\"code\"  scrolling=\"no\" >",
                    "</frameset frameborder=1 framespacing=5 border=5 >",
                    "<frame marginwidth=0 marginheight=0  src=\"Seite1.htm\" name=\"text\" >", "</frameset>",
                    "<noframes>",
                    "<p>The <code>NOFRAMES</code> could be help but sorry you have a very old browser change it</p>",
                    "</noframes>", "</frameset>", "</html>"}));
    EXPECT_EQ(readBytes("out/menu.html"),
              crlf({"<html><head><title>Brindlesee Ausweichmen\xFC</title>", "</head>", "<body bgcolor=#FFFFFF >",
                    "<span style=\"Color:#000000; font-weight:bold;  font-size:14pt; font-family:Arial;\">", "<p>",
                    "<a href=\"Seite1.htm\" target=\"text\" ><nobr>Seite1</nobr></a><br>", "</p>",
                    "</span></body></html>"}));
    std::string code = readBytes("out/code.html");
    EXPECT_EQ(code.substr(0, code.find("var MTMTableWidth")),
              crlf({"<html><head><title>brindlesee das men\xFC</title>",
                    "<script type=\"text/javascript\" src=\"mtmcode.js\"></script>",
                    "<script type=\"text/javascript\">"}));
    for (const char* line : {"var MTMBGColor = \"#0000A0\";\r\n", "var MTMTrackColor =\"yellow\";\r\n",
                             "var MTMenuText = \"Reise\";\r\n",
                             "MTMIconList.addIcon(new MTMIcon(\"menu_link_external.gif\", \"http:'//\", \"pre\"));\r\n",
                             "menu = new MTMenu();\r\nmenu.MTMAddItem(new MTMenuItem(\"Seite1\",\"Seite1.htm\", "
                             "\"text\"));\r\n</script>\r\n</head>\r\n<body onload=\"MTMStartMenu()\" "
                             "bgcolor=\"MTMBGColor\" text=\"#ffffcc\" link=\"yellow\" vlink=\"lime\" alink=\"red\">"
                             "\r\n</body>\r\n</html>\r\n"})
        EXPECT_NE(code.find(line), std::string::npos) << line;
    EXPECT_TRUE(dateiVorhanden(path("out/menu-images/menu_tee_plus.gif")));
    EXPECT_EQ(run->fileList.size(), 1u + 1u + 11u + 2u + 1u);
    EXPECT_EQ(run->fileList[14], path("out/menu_empty.html"));
}

TEST_F(HtmlTest, StagingCopiesRewritesAsksAndReferencesRelatively) {
    Session& s = freshAlbum(1);
    s.album().htmlReduce = kTrue;
    writeBytes("a/Foto.GIF", "gif");
    std::vector<std::string> written;
    run->pictures.writeWebPicture = [&](const WebPicture& p, std::string&) {
        written.push_back(p.target);
        return true;
    };
    const std::string html = path("out/seite1.htm");
    StageRequest gif = stage(path("a/Foto.GIF"), html, true, 50, 50, 100, 100);
    EXPECT_EQ(stelleDateiBereit(*run, gif), "foto.gif");
    EXPECT_EQ(readBytes("out/foto.gif"), "gif");

    writeBytes("a/Gross.jpg", "jpeg");
    StageRequest small = stage(path("a/Gross.jpg"), html, true, 50, 50, 100, 100);
    EXPECT_EQ(stelleDateiBereit(*run, small), "BSThumbgross.jpg");
    StageRequest larger = stage(path("a/Gross.jpg"), html, true, 200, 150, 100, 100);
    EXPECT_EQ(stelleDateiBereit(*run, larger), "gross.jpg");  // shown larger than it is: copied
    EXPECT_EQ(written, std::vector<std::string>{path("out/BSThumbgross.jpg")});

    // Same name from another folder, another size: asked once per element.
    writeBytes("b/Foto.gif", "anders");
    StageRequest other = stage(path("b/Foto.gif"), html, false);
    prompter.answers = {kNo, kNo};
    EXPECT_EQ(stelleDateiBereit(*run, other), "foto.gif");
    EXPECT_EQ(stelleDateiBereit(*run, other), "foto.gif");
    ASSERT_EQ(prompter.asked.size(), 2u);
    EXPECT_EQ(prompter.asked[0], "yesnoall|Warnung|Datei:" + path("out/") +
                                     "foto.gif\rbesteht bereits, aber in anderer Größe\rSoll sie überschrieben werden?");
    EXPECT_EQ(readBytes("out/foto.gif"), "gif");
    prompter.answers = {kNoToAll};
    stelleDateiBereit(*run, other);
    stelleDateiBereit(*run, other);
    EXPECT_EQ(prompter.asked.size(), 3u);

    // Below relativePath a file stays where it lies.
    s.album().relativePath = home();
    writeBytes("web/bilder/x.gif", "x");
    StageRequest below = stage(path("web/bilder/x.gif"), path("web/album/seite1.htm"), false);
    run->outputDirectory = path("web/album/");
    EXPECT_EQ(stelleDateiBereit(*run, below), "../bilder/x.gif");
    EXPECT_FALSE(dateiVorhanden(path("web/album/x.gif")));
    EXPECT_EQ(run->usedFiles, "foto.gif;BSThumbgross.jpg;gross.jpg;foto.gif;foto.gif;foto.gif;foto.gif;../bilder/x.gif;");
}

TEST_F(HtmlTest, SearchDataFromSavedPagesWithApostrophes) {
    Session& s = freshAlbum(2);
    page(1).texts.add().text = "Peter's Boot\r\nam Meer";
    page(1).pictures.add().path = "/x/Strand.jpg";
    page(1).title = "Am Meer";
    page(1).description = "Strand";
    s.album().pages[1].fileName = "Seite1.apg";
    s.album().pages[1].directory = home();
    ASSERT_TRUE(s.schreibeSeite(path("Seite1.apg"), s.album().pages[1].slot));
    EXPECT_EQ(datenbankText(s),
              crlf({"var p = new Array(); // Sammlung aller Seiten", "", "p[p.length]          = new Eintrag();",
                    "p[p.length-1].kw     = 'Brindlesee,Peter s Boot  am Meer ';",
                    "p[p.length-1].url    = 'Seite1.htm';", "p[p.length-1].Bilder = 'Strand.jpg '",
                    "p[p.length-1].title  = 'Am Meer';",
                    "p[p.length-1].desc = 'Strand'", "",
                    "for (var i=0; i < p.length; i++)", "  p[i].kw = splitter(p[i].kw);",
                    "function Eintrag(kw, url, title, Bilder, desc)", "{", "  this.kw     = kw;",
                    "  this.url    = url;", "  this.title  = title;", "  this.Bilder  = Bilder;",
                    "  this.desc   = desc;", "}", "", ""}));
    // In the program: an unsaved album cannot be searched.
    EXPECT_TRUE(sucheImAlbum(s, "boot", false).empty());
    EXPECT_EQ(prompter.asked.back(), "message|Suchen nicht möglich|48|Um die Seiten des Albums zu durchsuchen, "
                                     "müssen Sie Ihr Album gespeichert haben");
    s.album().fileName = "A.apr";
    s.album().directory = home();
    EXPECT_EQ(sucheImAlbum(s, "BOOT meer", false), std::vector<std::string>{"Seite1.htm"});
    EXPECT_EQ(prompter.asked.back(), "message|Suche|48|Die Datenbank: " + path("daten.js") +
                                         " konnte nicht gefunden werden!");
    EXPECT_TRUE(sucheImAlbum(s, "BOOT", true).empty());
}

TEST_F(HtmlTest, SearchFormSpacerNeverBelowZero) {
    std::string f = suchFormular(10, 40, Language::German);
    EXPECT_EQ(f.substr(0, f.find("    <td width=70")),
              crlf({"<form name=\"mf\">", "<table border=0 cellspacing=0 cellpadding=0 bordercolor=\"#000000\">",
                    "  <tr>", "    <td width=40 height=0>", "    </td>"}));
    EXPECT_NE(f.find("value=\"      Suche starten      \" onClick=\"suche(document.mf.eingabe.value)\">"),
              std::string::npos);
    EXPECT_NE(suchFormular(100, 0, Language::English).find("<td width=70 height=70>"), std::string::npos);
    EXPECT_NE(suchFormular(100, 0, Language::English).find("> Search word ending"), std::string::npos);
}

TEST_F(HtmlTest, MailRunPacksTheListedFilesAndRestoresTheOptions) {
    Session& s = freshAlbum(2);
    s.album().title = "Reise";
    s.album().menuOpenFlags.add() = 1;  // page 1 is skipped outside mail mode only
    s.album().htmlReduce = kFalse;
    touch("Menü/mtmcode.js");
    for (const char* p : kMenuPictures) touch(std::string("Menü/menu-images/") + p);
    touch("bild.gif");
    page(2).pictures.add().path = path("bild.gif");
    touch("out/bspano.class");
    touch("out/bsrain.class");

    HtmlRun plain(s, path("out/"));
    ASSERT_TRUE(generiereAlbum(plain));
    EXPECT_FALSE(dateiVorhanden(path("out/Seite1.htm")));

    HtmlRun mail(s, path("out/"));
    mail.mailMode = true;
    ASSERT_TRUE(generiereAlbum(mail));
    EXPECT_EQ(s.album().htmlReduce, kFalse);
    std::vector<std::string> list = mailFileList(mail);
    ASSERT_GE(list.size(), 4u);
    EXPECT_EQ(list[0], path("out/Seite1.htm"));
    EXPECT_EQ(list[1], path("out/Seite2.htm"));
    EXPECT_EQ(list[2], path("out/Reise.html"));
    EXPECT_EQ(list.back(), path("out/bild.gif"));
    EXPECT_NE(std::find(list.begin(), list.end(), path("out/bsrain.class")), list.end());
    EXPECT_EQ(std::find(list.begin(), list.end(), path("out/bspano.class")), list.end());
    EXPECT_TRUE(dateiVorhanden(path("out/bsReise.zip")));
    EXPECT_EQ(mailtoUrl(mail), "mailto:empfaenger@example.invalid ?subject=Hallo&Attach=\"" + path("out/") +
                                   "bsReise.zip\"");

    std::vector<std::string> tooMany(1024, path("bild.gif"));
    EXPECT_FALSE(zipAlbum(mail, tooMany, path("x.zip"), "", ""));
    EXPECT_EQ(prompter.asked.back(), "message|Achtung!|48|Zu viele Files zum erstellen eines Zip Archievs (> 1024)");
}

}  // namespace
}  // namespace brindle::html
