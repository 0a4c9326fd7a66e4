#include "html/frameset.h"

#include <filesystem>

#include "album/file_io.h"
#include "html/html_text.h"
#include "html/generation_run.h"
#include "html/page_html.h"
#include "html/safe_text.h"
#include "html/staging.h"

namespace brindle::html {

namespace fs = std::filesystem;

const char* const kMenuPictures[11] = {
    "menu_bar.gif",         "menu_corner.gif",     "menu_corner_minus.gif", "menu_corner_plus.gif",
    "menu_folder_close.gif", "menu_folder_open.gif", "menu_new_root.gif",     "menu_tee.gif",
    "menu_tee_minus.gif",   "menu_tee_plus.gif",   "menu_link_default.gif"};

namespace {

std::string q(const std::string& s) { return "\"" + s + "\""; }

std::string lines(std::initializer_list<std::string> ls) {
    std::string out;
    for (const std::string& l : ls) out += l + kEol;
    return out;
}

// Writes one generated file; a failure is shown and counted.
bool writeText(HtmlRun& run, const std::string& path, const std::string& text) {
    IoResult io = writeFileAtomic(path, toHtmlBytes(text));
    if (io.ok) {
        run.fileList.push_back(path);
        return true;
    }
    ++run.failedWrites;
    run.prompter().message(tr(run.language(), "Fehler beim speichern der Datei:", "Error while writing file:") + path,
                           kIconCritical, tr(run.language(), "Fehler", "Error"));
    return false;
}

// A script string in double quotes.
std::string jq(const std::string& s) { return q(jsString(s, '"')); }

}  // namespace

std::string framesetText(const AlbumRecord& a) {
    const std::string first = a.pages.upper() >= 1 ? pageFileName(a.pages[1].title) : std::string{};
    return lines({"<html>", "<head>", "<title>" + a.title + " wurde mit brindlesee erstellt</title>", "</head>",
                  "<frameset cols=" + q("*") + " rows=" + q("*") + ">",
                  "<frameset cols=" + q("175,*") + " rows=" + q("*") + ">",
                  "<frameset cols=" + q("*") + " rows=" + q("100%,*") + " frameborder=0 framespacing=0 border=0 >",
                  "<frame marginwidth=0 marginheight=10 src=" + q("menu.html") + " name=" + q("menu") +
                      "Scrolling = " + q("auto") + " > \"",
                  "<frame marginwidth=0 marginheight=0 src=" + q("code.html") + " name=" + q("code") +
                      "  scrolling=" + q("no") + " >",
                  "</frameset frameborder=1 framespacing=5 border=5 >",
                  "<frame marginwidth=0 marginheight=0  src=" + q(attributeUrl(first)) + " name=" + q("text") + " >",
                  "</frameset>", "<noframes>",
                  "<p>The <code>NOFRAMES</code> could be help but sorry you have a very old browser change it</p>",
                  "</noframes>", "</frameset>", "</html>"});
}

std::string menuText(HtmlRun& run) {
    const AlbumRecord& a = run.album();
    std::string body = "<body bgcolor=#FFFFFF";
    if (isTrue(a.style.linkColorsActive))
        body += " link=#" + farbeHex(a.style.linkFont.color) + " vlink=#" + farbeHex(a.style.visitedLinkFont.color) +
                " alink=#" + farbeHex(a.style.activeLinkFont.color);
    std::string out = lines({"<html><head><title>Brindlesee Ausweichmenü</title>", "</head>", body + " >",
                             styleOpening(a.style.headingFont), "<p>"});
    for (int i = 1; i <= albumPageCount(a); ++i) {
        LinkRequest l;
        l.link = a.pages[i].title + ".htm";
        l.htmlPath = run.outputDirectory + "menu.html";
        out += "<a href=" + q(attributeUrl(loeseLink(run, l))) + " target=" + q("text") + " >" + "<nobr>" + a.pages[i].title +
               "</nobr>" + "</a><br>" + kEol;
    }
    return out + lines({"</p>", "</span></body></html>"});
}

std::string codeText(const AlbumRecord& a) {
    std::string out = lines({"<html><head><title>brindlesee das menü</title>",
                             "<script type=" + q("text/javascript") + " src=" + q("mtmcode.js") + "></script>",
                             "<script type=" + q("text/javascript") + ">"});
    auto var = [&](const std::string& start, const std::string& value) { out += start + q(value) + ";" + kEol; };
    var("var MTMTableWidth = ", "100%");
    var("var MTMenuFrame = ", "menu");
    out += lines({"var MTMSubsGetPlus = true;", "var MTMEmulateWE = false;"});
    var("var MTMenuImageDirectory = ", "menu-images/");
    var("var MTMBGColor = ", "#" + farbeHex(a.menuColor1));
    var("var MTMBackground = ", "");
    var("var MTMTextColor = ", "white");
    var("var MTMLinkColor = ", "#" + farbeHex(a.menuColor2));
    var("var MTMAhoverColor = ", "#" + farbeHex(a.menuColor3));
    var("var MTMTrackColor =", "yellow");
    var("var MTMSubExpandColor = ", "white");
    var("var MTMSubClosedColor = ", "white");
    var("var MTMRootIcon = ", "menu_new_root.gif");
    out += "var MTMenuText = " + jq(a.title) + ";" + kEol;
    var("var MTMRootColor = ", "#" + farbeHex(a.menuColor2));
    var("var MTMRootFont = ", "Arial, Helvetica, sans-serif");
    var("var MTMRootCSSize = ", "84%");
    var("var MTMRootFontSize = ", "-1");
    var("var MTMenuFont = ", "Arial, Helvetica, sans-serif");
    var("var MTMenuCSSize = ", "84%");
    var("var MTMenuFontSize = ", "-1");
    out += lines({"var MTMLinkedSS = false;"});
    var("var MTMSSHREF = ", "style/menu.css");
    out += lines({"var MTMSubsAutoClose = false;", "var MTMTimeOut = 25;", "var MTMIconList = null;",
                  "MTMIconList = new IconList();",
                  "MTMIconList.addIcon(new MTMIcon(" + q("menu_link_external.gif") + ", " + q("http:'//") + ", " +
                      q("pre") + "));",
                  "MTMIconList.addIcon(new MTMIcon(" + q("menu_link_pdf.gif") + ", " + q(".pdf") + ", " + q("post") +
                      "));",
                  "var menu = null;", "menu = new MTMenu();"});
    for (int i = 1; i <= albumPageCount(a); ++i)
        out += "menu.MTMAddItem(new MTMenuItem(" + jq(a.pages[i].title) + "," + jq(pageFileName(a.pages[i].title)) +
               ", " + q("text") + "));" + kEol;
    out += lines({"</script>", "</head>",
                  "<body onload=" + q("MTMStartMenu()") + " bgcolor=" + q("MTMBGColor") + " text=" + q("#ffffcc") +
                      " link=" + q("yellow") + " vlink=" + q("lime") + " alink=" + q("red") + ">",
                  "</body>", "</html>"});
    return out;
}

void schreibeMenue(HtmlRun& run) {
    const AlbumRecord& a = run.album();
    writeText(run, framesetPath(run), framesetText(a));
    run.replaceInstalledFile("Menü/mtmcode.js", "mtmcode.js");
    run.fileList.push_back(run.outputDirectory + "mtmcode.js");
    std::error_code ec;
    fs::create_directories(run.outputDirectory + "menu-images", ec);
    for (const char* picture : kMenuPictures) {
        run.replaceInstalledFile(std::string("Menü/menu-images/") + picture, std::string("menu-images/") + picture);
        run.fileList.push_back(run.outputDirectory + "menu-images/" + picture);
    }
    writeText(run, run.outputDirectory + "menu.html", menuText(run));
    run.fileList.push_back(run.outputDirectory + "menu_empty.html");
    writeText(run, run.outputDirectory + "code.html", codeText(a));
}

}  // namespace brindle::html
