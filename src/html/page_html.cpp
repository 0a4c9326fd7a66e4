#include "html/page_html.h"

#include <vector>

#include "album/file_io.h"
#include "album/paths.h"
#include "album/stacking.h"
#include "html/html_text.h"
#include "html/safe_text.h"
#include "html/search_page.h"
#include "html/staging.h"

namespace brindle::html {

namespace {

std::string q(const std::string& s) { return "\"" + s + "\""; }

std::string buildBodyTag(PageBuild& b) {
    const AlbumRecord& a = b.run.album();
    std::string tag = "<body";
    if (!b.page.background.empty()) {
        StageRequest s;
        s.source = b.page.background;
        s.htmlPath = b.htmlPath;
        tag += " background=" + q(attributeUrl(stelleDateiBereit(b.run, s)));
    } else {
        tag += " bgcolor=#" + farbeHex(b.page.backgroundColor);
    }
    if (isTrue(a.style.linkColorsActive))
        tag += " link=#" + farbeHex(a.style.linkFont.color) + " vlink=#" + farbeHex(a.style.visitedLinkFont.color) +
               " alink=#" + farbeHex(a.style.activeLinkFont.color);
    return tag + " leftmargin=0 topmargin=3" + "> ";
}

std::string linkTarget(int behaviour) {
    if (behaviour == 1) return " Target=" + q("_top");
    if (behaviour == 2) return " Target=" + q("_blank");
    return {};
}

// Tips without line breaks, split at ";".
std::vector<std::string> tipsOf(const std::string& raw) {
    std::string clean;
    for (char c : raw)
        if (c != '\r' && c != '\n') clean += c;
    std::vector<std::string> tips(1);
    for (char c : clean) {
        if (c == ';') tips.emplace_back();
        else tips.back() += c;
    }
    return tips;
}

std::string tipScriptFor(int i, const std::string& tipsText) {
    const std::string n = std::to_string(i);
    std::string s = std::string(kEol) + "var msg" + n + " = new Array();";
    std::vector<std::string> tips = tipsOf(tipsText);
    for (std::size_t k = 0; k <= 30 && k < tips.size(); ++k)
        s += std::string(kEol) + "msg" + n + "[" + std::to_string(k + 1) + "] = " + q(tips[k]) + ";";
    return s + kEol + "function Tip" + n + "_des_Tages() {document.write(msg" + n + "[today]);}";
}

std::string textBlock(PageBuild& b, int i, std::string& tipScript) {
    TextElement& t = b.page.texts[i];
    const int tipMode = t.ext.extLong[4];
    std::string open, close;
    if (!t.hyperlink.empty()) {
        LinkRequest l;
        l.link = t.hyperlink;
        l.htmlPath = b.htmlPath;
        l.pageIndex = b.pageIndex;
        l.page = &b.page;
        open = "<a href=" + q(attributeUrl(loeseLink(b.run, l))) + linkTarget(t.ext.extLong[3]) + ">";
        close = "</a>";
    }
    if (tipMode != 0) tipScript += tipScriptFor(i, t.ext.extText[1]);
    if (t.ext.extText[0].empty()) t.ext.extText[0] = t.text;
    const std::string tip = "<script>Tip" + std::to_string(i) + "_des_Tages();</script>";
    std::string content;
    if (tipMode == 0) content = open + "<nobr>" + textZuHTML(t.ext.extText[0]) + "</nobr>" + close;
    else if (tipMode == 1) content = open + "<nobr>" + tip + "</nobr>" + close;
    else content = open + tip + close;
    return styleOpening(t.font) + "<div style=" +
           q("position:absolute; top:" + ohneVorzeichen(static_cast<long long>(t.top)) +
             "px; left:" + ohneVorzeichen(static_cast<long long>(t.left)) +
             "px; width:" + ohneVorzeichen(t.width * 1.2) +
             "px; height:" + ohneVorzeichen(static_cast<long long>(t.height)) + "px") +
           ">" + kEol + "<p>" + content + "</p>" + kEol + "</div>" + "</span>" + kEol;
}

void place(std::vector<std::string>& html, int position, std::string block) {
    if (position >= 1 && static_cast<std::size_t>(position) < html.size()) html[static_cast<std::size_t>(position)] = std::move(block);
}

std::string buttonLine(PageBuild& b, const std::string& target, const std::string& picture, const std::string& alt) {
    LinkRequest l;
    l.link = target;
    l.htmlPath = b.htmlPath;
    l.pageIndex = b.pageIndex;
    StageRequest s;
    s.source = picture;
    s.htmlPath = b.htmlPath;
    return "<a href=" + q(attributeUrl(loeseLink(b.run, l))) + " Target=" + q("_self") + ">" + "<img src=" +
           q(attributeUrl(stelleDateiBereit(b.run, s))) + " BORDER = 0 ALT=" + q(alt) + ">" + "</a>";
}

// The contents button leads somewhere only when the album lists a contents
// page; whether that page happens to be open does not matter.
bool hasContentsPage(HtmlRun& run) {
    const AlbumRecord& a = run.album();
    for (int i = 1; i <= a.pages.upper(); ++i)
        if (a.pages[i].title == "Inhalt" || a.pages[i].title == "AlbumDirectory") return true;
    return false;
}

}  // namespace

std::string styleOpening(const FontSpec& font) {
    std::string s = "<span style=\"Color:#" + farbeHex(font.color) + "; ";
    if (isTrue(font.bold)) s += "font-weight:bold; ";
    if (isTrue(font.italic)) s += "font-style:italic; ";
    if (isTrue(font.underline)) s += "text-decoration:underline; ";
    return s + " font-size:" + zahl(font.size) + "pt; " + "font-family:" + font.name + ";" + "\"" + ">";
}

void checkDeferredError(HtmlRun& run, const std::string& path) {
    if (run.deferredError.empty()) return;
    run.prompter().message(tr(run.language(), "Fehler beim generieren der HTML Datei: ",
                              "Error while generating of the HTML file: ") +
                               std::string("\r") + path + "\r" + run.deferredError,
                           kIconCritical, tr(run.language(), "Fehler", "Error"));
    run.deferredError.clear();
}

bool schreibeSeiteHTML(HtmlRun& run, const std::string& path, int slot, int pageIndex) {
    PageRecord& page = run.session.page(slot);
    ReihenfolgePruefen(page);
    PageBuild b{run, page, pageIndex, path, {}, {}};
    std::vector<std::string> html(static_cast<std::size_t>(std::max(0, page.stack.upper())) + 1);

    b.bodyTag = buildBodyTag(b);
    std::string tipScript;
    for (int i = 1; i <= page.texts.upper(); ++i)
        if (!isTrue(page.texts[i].deleted)) place(html, zPos(page.texts[i]), textBlock(b, i, tipScript));
    for (int i = 1; i <= page.pictures.upper(); ++i)
        if (!isTrue(page.pictures[i].deleted)) place(html, zPos(page.pictures[i]), pictureBlock(b, i));
    for (int i = 1; i <= page.searchBoxes.upper(); ++i)
        if (!isTrue(page.searchBoxes[i].deleted)) place(html, zPos(page.searchBoxes[i]), searchBlock(b, i));
    for (int i = 1; i <= page.panoramas.upper(); ++i) {
        std::string block = panoramaBlock(b, i);
        if (!isTrue(page.panoramas[i].deleted)) place(html, zPos(page.panoramas[i]), block);
    }
    checkDeferredError(run, path);

    const AlbumRecord& a = run.album();
    std::string out = std::string("<!Generiert von Brindlesee Ver.1.0 Beta>") + kEol + "<html>" + kEol + "<head>" +
                      kEol + "<title>" + page.title + "</title>" + kEol;
    if (!tipScript.empty())
        out += "<SCRIPT LANGUAGE=" + q("JavaScript") + ">" + kEol + "<!-- Anfang" + kEol + "Stamp = new Date();" +
               kEol + "today = Stamp.getDate();" + kEol + tipScript + kEol + "// Ende -->" + kEol + "</script>" + kEol;
    if (isTrue(a.fullViewNewWindow)) {
        out += "<script language=" + q("JavaScript1.1") + " type=" + q("text/javascript") + " src=" +
               q("panvobilder.js") + ">" + kEol + "</script>" + kEol;
        run.copyInstalledFile("pan360.class");
        run.copyInstalledFile("panVobilder.js");
        // The tag names the script in lower case; servers that tell case apart need that name too.
        run.copyInstalledFile("panVobilder.js", "panvobilder.js");
    }
    out += b.searchScripts + kEol;
    std::string music;
    if (!page.music.empty()) {
        StageRequest s;
        s.source = page.music;
        s.htmlPath = path;
        music = stelleDateiBereit(run, s);
        out += "<bgsound src=" + q(attributeUrl(music)) + " loop=infinite>" + kEol + kEol;
    }
    const int forward = autoForwardSeconds(page.props);
    if (forward != 0) {
        LinkRequest l;
        l.link = forward > 0 ? "<vor>" : "<zurück>";
        l.pageIndex = pageIndex;
        l.htmlPath = path;
        out += "<meta http-equiv=" + q("refresh") + " content=" +
               q(std::to_string(forward > 0 ? forward : -forward) + "; URL=" + attributeUrl(loeseLink(run, l))) + ">" + kEol;
    }
    out += std::string("</head>") + kEol;
    checkDeferredError(run, path);
    out += b.bodyTag + kEol + kEol + "<P ALIGN=CENTER>" + kEol;
    if (!page.props.backButton.empty()) out += buttonLine(b, "<zurück>", page.props.backButton, "Zurück") + kEol;
    if (!page.props.contentsButton.empty() && hasContentsPage(run))
        out += buttonLine(b, "<inhalt>", page.props.contentsButton, inhaltTitel(run.session)) + kEol;
    if (!page.props.forwardButton.empty()) out += buttonLine(b, "<vor>", page.props.forwardButton, "Vor") + kEol;
    out += std::string("</P>") + kEol + kEol;
    checkDeferredError(run, path);
    if (!music.empty()) out += "<embed src=" + q(attributeUrl(music)) + " WIDTH=1 HEIGHT=1 autostart=true hidden=true>" + kEol + kEol;
    checkDeferredError(run, path);
    bool applets = false;
    for (std::size_t i = 1; i < html.size(); ++i) {
        out += html[i] + kEol;
        applets = applets || html[i].find("<applet ") != std::string::npos;
    }
    // Browsers run no applets today: our script plays the same effects.
    if (applets) {
        out += std::string("<script src=\"bseffects.js\"></script>") + kEol;
        run.copyInstalledFile("bseffects.js");
    }
    out += std::string("</body>") + kEol + "</html>" + kEol;
    IoResult io = writeFileAtomic(path, toHtmlBytes(out));
    if (!io.ok) {
        run.deferredError = io.error;
        ++run.failedWrites;
    }
    checkDeferredError(run, path);
    return io.ok;
}

}  // namespace brindle::html
