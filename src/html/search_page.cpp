#include "html/search_page.h"

#include <algorithm>
#include <sstream>

#include "album/encoding.h"
#include "album/file_io.h"
#include "album/page_file.h"
#include "album/paths.h"
#include "html/html_text.h"
#include "html/safe_text.h"

namespace brindle::html {

namespace {

std::string q(const std::string& s) { return "\"" + s + "\""; }

std::string replaceChars(std::string s, const std::string& chars, char with) {
    for (char& c : s)
        if (chars.find(c) != std::string::npos) c = with;
    return s;
}

std::string fileNameOf(const std::string& path) {
    std::string dir, name;
    teilePfad(path, dir, name);
    return name;
}

// Copies the installed search script; its first "<body>" in each line
// becomes the page's body tag, so the results wear the page's background.
void copySearchScript(HtmlRun& run, const std::string& bodyTag) {
    std::string text;
    if (!readWholeFile(run.programDirectory() + "suchscr.js", text).ok) {
        run.deferredError = "suchscr.js: No such file or directory";
        ++run.failedWrites;
        return;
    }
    std::string out, line;
    std::istringstream in(text);
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (auto at = line.find("<body>"); at != std::string::npos) line.replace(at, 6, bodyTag);
        out += line + kEol;
    }
    IoResult io = writeFileAtomic(run.outputDirectory + "suchscr.js", toHtmlBytes(out));
    if (!io.ok) {
        run.deferredError = io.error;
        ++run.failedWrites;
    }
}

}  // namespace

std::string suchFormular(int y, int x, Language lang) {
    const bool de = lang == Language::German;
    const std::string h = std::to_string(std::max(0, y - 30));
    const std::string fontOpen = "      <font face=" + q("Arial,Helvetica,Sans-Serif") + " size=" + q("-1") + "><b>";
    const std::string fontClose = "      </b></font>";
    auto cell = [](const std::string& open) { return open + kEol + "    </td>" + kEol; };
    auto gapRow = [&] {
        return std::string("  <tr>") + kEol + cell("    <td width=0 height=0>") + cell("    <td width=70 height=10>") +
               cell("    <td width=100 height=10>") + cell("    <td width=60 height=10>") +
               cell("    <td width=100 height=10>") + "  </tr>" + kEol;
    };
    auto textCell = [&](const std::string& input) { return fontOpen + kEol + input + kEol + fontClose + kEol; };
    auto checkbox = [](const std::string& name, const std::string& value, const std::string& rest) {
        return "        <input type=" + q("checkbox") + " name=" + q(name) + " value=" + q(value) + rest;
    };
    auto radio = [](bool checked, const std::string& value, const std::string& rest) {
        return std::string("        <input type=radio ") + (checked ? "checked " : "") + "name=" + q("r") +
               " value=" + q(value) + rest;
    };
    auto optionRow = [&](const std::string& a, const std::string& b, const std::string& c, bool first) {
        return std::string("  <tr>") + kEol + cell("    <td width=0 height=0>") + "    <td width=70 height=10>" +
               kEol + textCell(a) + "    </td>" + kEol + "    <td colspan=2>" + kEol + textCell(b) + "    </td>" +
               kEol + "    <td colspan=2>" + kEol + textCell(c) + "    </td>" + kEol + "    <td width=100 height=10>" +
               kEol + (first ? "</td>" : "    </td>") + kEol + "  </tr>" + kEol;
    };
    std::string f = "<form name=" + q("mf") + ">" + kEol;
    f += "<table border=0 cellspacing=0 cellpadding=0 bordercolor=" + q("#000000") + ">" + kEol;
    f += std::string("  <tr>") + kEol + cell("    <td width=" + std::to_string(x) + " height=" + h + ">") +
         cell("    <td width=70 height=" + h + ">") + cell("    <td width=100 height=" + h + ">") +
         cell("    <td width=60 height=" + h + ">") + cell("    <td width=100 height=" + h + ">") + "  </tr>" + kEol;
    f += std::string("  <tr>") + kEol + cell("    <td width=0 height=0>") + "    <td colspan=4 >" + kEol +
         "        <input type=" + q("text") + " name=" + q("eingabe") + " size=" + q("60") + " >" + kEol +
         "    </td>" + kEol + cell("    <td width=70 height=20>") + cell("    <td width=100 height=20>") +
         cell("    <td width=100 height=10>") + "  </tr>" + kEol;
    f += gapRow();
    f += std::string("  <tr>") + kEol + cell("    <td width=0 height=0>") + "    <td colspan=2>" + kEol +
         "       <input type=" + q("button") + " value=" +
         q(de ? "      Suche starten      " : "      Start search       ") + " onClick=" +
         q("suche(document.mf.eingabe.value)") + ">" + kEol + "    </td>" + kEol + "    <td colspan=2>" + kEol +
         "     <input type=" + q("button") + " value=" + q(de ? "    Eingabe löschen    " : "     Delete input      ") +
         "                    onClick=" + q("document.mf.eingabe.value='';document.mf.eingabe.focus()") + ">" +
         kEol + "    </td>" + kEol + cell("<td width=100 height=20>") + cell("    <td width=100 height=20>") +
         cell("    <td width=100 height=10>") + "  </tr>" + kEol;
    f += gapRow();
    f += optionRow(checkbox("Bilder", "Bilder", de ? " checked > Bilder" : " checked > Picture"),
                   checkbox("lc", "gross/klein", de ? "> Gro&szlig;-/Kleinschreibung" : "> Upper and lower case"),
                   radio(true, "und", de ? "> UND (alle Begriffe)" : "> And (all items)"), true);
    f += optionRow(checkbox("kw", "Text", " checked> Text"),
                   checkbox("wa", "wortanfaenge",
                            de ? " checked> Nur Wortanf&auml;nge suchen" : " checked> Search word beginning"),
                   radio(false, "oder", de ? "> ODER (ein Begriff)" : "> Or (one item)"), false);
    f += optionRow(checkbox("url", "Name", " checked> Name"),
                   checkbox("we", "wortende", de ? "> Nur Wortende suchen" : "> Search word ending"),
                   radio(false, "nicht", de ? "> NICHT (kein Begriff)" : "> None (no item)"), false);
    f += std::string("</table>") + kEol + "</form>";
    return f;
}

std::string datenbankText(Session& session) {
    const AlbumRecord& a = session.album();
    std::string out = std::string("var p = new Array(); // Sammlung aller Seiten") + kEol + kEol;
    for (int i = 1; i <= albumPageCount(a); ++i) {
        const PageEntry& e = a.pages[i];
        PageFile file;
        if (e.fileName.empty() || !readPageFile(e.directory + e.fileName, a.pageDefaults, file).ok()) continue;
        const PageRecord& p = file.page;
        std::string pictures, keywords;
        for (int k = 1; k <= p.pictures.upper(); ++k) pictures += fileNameOf(p.pictures[k].path) + " ";
        for (int k = 1; k <= p.panoramas.upper(); ++k)
            for (int h = 0; h <= p.panoramas[k].hotspotCount && h < 21; ++h)
                pictures += fileNameOf(p.panoramas[k].hotspots[static_cast<std::size_t>(h)].urlName) + " ";
        for (int k = 1; k <= p.texts.upper(); ++k) keywords += p.texts[k].text + " ";
        keywords = replaceChars(keywords, "\r\n'", ' ');
        // Every value is a script string: escaped, so no text ends it.
        auto js = [](const std::string& v) { return jsString(v, '\''); };
        out += std::string("p[p.length]          = new Eintrag();") + kEol;
        out += "p[p.length-1].kw     = 'Brindlesee," + js(keywords) + "';" + kEol;
        out += "p[p.length-1].url    = '" + js(pageFileName(e.title)) + "';" + kEol;
        out += "p[p.length-1].Bilder = '" + js(pictures) + "'" + kEol;
        out += "p[p.length-1].title  = '" + js(p.title) + "';" + kEol;
        out += "p[p.length-1].desc = '" + js(p.description) + "'" + kEol;
        out += kEol;
    }
    for (const char* line : {"for (var i=0; i < p.length; i++)", "  p[i].kw = splitter(p[i].kw);",
                             "function Eintrag(kw, url, title, Bilder, desc)", "{", "  this.kw     = kw;",
                             "  this.url    = url;", "  this.title  = title;", "  this.Bilder  = Bilder;",
                             "  this.desc   = desc;", "}", "", ""})
        out += std::string(line) + kEol;
    return out;
}

bool datenbankSchreiben(Session& session, const std::string& directory) {
    IoResult io = writeFileAtomic(directory + "daten.js", toHtmlBytes(datenbankText(session)));
    if (!io.ok)
        session.prompter().message(tr(session.language(), "Fehler beim generieren der Suchdatei: ",
                                      "Error while generating the searchfile: ") +
                                       directory + "daten.js\r" + io.error,
                                   kIconCritical, tr(session.language(), "Fehler", "Error"));
    return io.ok;
}

std::string searchBlock(PageBuild& b, int index) {
    const SearchElement& e = b.page.searchBoxes[index];
    b.searchScripts = "<script language=" + q("JavaScript1.1") + " type=" + q("text/javascript") + " src=" +
                      q("suchscr.js") + ">" + kEol + "</script>" + kEol + "<script language=" + q("JavaScript1.1") +
                      " type=" + q("text/javascript") + " src=" + q("daten.js") + ">" + kEol + "</script>";
    if (!datenbankSchreiben(b.run.session, b.run.outputDirectory)) ++b.run.failedWrites;
    copySearchScript(b.run, b.bodyTag);
    int w = 0, buttonHeight = 0;
    if (!b.page.props.contentsButton.empty() && b.run.pictures.pictureSize)
        b.run.pictures.pictureSize(b.page.props.contentsButton, w, buttonHeight);
    return suchFormular(e.top - buttonHeight + 32, e.left, b.run.language());
}

std::vector<std::string> sucheImAlbum(Session& session, const std::string& input, bool matchCase) {
    const Language lang = session.language();
    const AlbumRecord& a = session.album();
    if (a.fileName.empty()) {
        session.prompter().message(tr(lang, "Um die Seiten des Albums zu durchsuchen, müssen Sie Ihr Album "
                                            "gespeichert haben",
                                      "To search in the pages of the album you must saved the album"),
                                   kIconExclamation, tr(lang, "Suchen nicht möglich", "Search not possible"));
        return {};
    }
    if (input.find_first_not_of(' ') == std::string::npos) {
        session.prompter().message(tr(lang, "Bitte mindestens einen Suchbegriff eingeben",
                                      "Please fill in an searchstring"),
                                   kIconExclamation, tr(lang, "Suche", "Search"));
        return {};
    }
    const std::string path = a.directory + "daten.js";
    if (!dateiVorhanden(path)) {
        session.prompter().message(tr(lang, "Die Datenbank: ", "The Database: ") + path +
                                       tr(lang, " konnte nicht gefunden werden!", " could not be founded!"),
                                   kIconExclamation, tr(lang, "Suche", "Search"));
        datenbankSchreiben(session, a.directory);
    }
    std::string text;
    readWholeFile(path, text);
    text = decodeFileString(text);
    std::vector<std::string> words;
    {
        std::istringstream in(matchCase ? input : utf8Lower(input));
        for (std::string w; in >> w;) words.push_back(w);
    }
    std::vector<std::string> found;
    std::istringstream in(text);
    std::string line, keywords;
    bool expectKeywords = false;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (expectKeywords && line.size() > 22) {
            keywords = replaceChars(jsUnescape(line.substr(22)), "';,", ' ');
            if (!matchCase) keywords = utf8Lower(keywords);
        } else if (line.rfind("p[p.length-1].url    = '", 0) == 0 && !keywords.empty()) {
            bool all = std::all_of(words.begin(), words.end(),
                                   [&](const std::string& w) { return keywords.find(w) != std::string::npos; });
            if (all) found.push_back(jsUnescape(line.substr(24, line.size() - 26)));
            keywords.clear();
        }
        expectKeywords = line.find("new Eintrag") != std::string::npos && line.find("function") == std::string::npos;
    }
    return found;
}

}  // namespace brindle::html
