#include "html/staging.h"

#include <filesystem>

#include "album/encoding.h"
#include "album/paths.h"
#include "html/html_text.h"
#include "html/output_files.h"
#include "html/safe_text.h"
#include "html/web_picture.h"
#include "html/web_picture_names.h"

namespace brindle::html {

namespace fs = std::filesystem;

namespace {

bool startsWith(const std::string& s, const std::string& prefix) { return s.compare(0, prefix.size(), prefix) == 0; }

std::string replaceExtension(const std::string& name, const std::string& ext) {
    std::size_t dot = name.rfind('.');
    return (dot == std::string::npos ? name + "." : name.substr(0, dot + 1)) + ext;
}

// The path of `source` as seen from `outDir`: "../" for each folder of the
// output directory below their common beginning.
std::string relativeTo(const std::string& source, const std::string& outDir) {
    std::size_t common = 0;
    for (std::size_t i = 0; i < source.size() && i < outDir.size() && source[i] == outDir[i]; ++i)
        if (isSeparator(source[i])) common = i + 1;
    std::string up;
    for (std::size_t i = common; i < outDir.size(); ++i)
        if (isSeparator(outDir[i])) up += "../";
    std::string rel = up + source.substr(common);
    for (std::size_t at; (at = rel.find("//")) != std::string::npos;) rel.erase(at, 1);
    return rel;
}

void showError(HtmlRun& run, const char* de, const char* en, const std::string& what, const std::string& error) {
    run.prompter().message(tr(run.language(), de, en) + what + "\r" + error, kIconCritical,
                           tr(run.language(), "Fehler", "Error"));
}

// Copies a file that is used unchanged, asking before replacing a file of
// the same name and another size.
void copyUnchanged(HtmlRun& run, const StageRequest& r, const std::string& name, const std::string& htmlName) {
    const std::string target = run.outputDirectory + name;
    std::string source = r.source;
    if (source.find_first_of("/\\") == std::string::npos) source = run.programDirectory() + source;
    std::string error;
    std::error_code ec;
    if (!fs::exists(target, ec)) {
        if (!copyFileAtomic(source, target, error)) {
            if (fs::exists(source, ec)) reportCopyFailure(run, source, error);
            else showError(run, "Fehler beim Kopieren der Datei: ", "Error while copying the file: ", source, error);
        }
        return;
    }
    if (!fs::exists(source, ec)) {
        showError(run, "Datei wurde nicht gefunden: ", "File not found: ", source, "No such file or directory");
        return;
    }
    if (fs::file_size(source, ec) == fs::file_size(target, ec) || run.overwriteNone) return;
    int answer = kYes;
    if (!run.overwriteAll) {
        answer = run.prompter().askYesNoAll(
            std::string(tr(run.language(), "Datei:", "File:")) + run.outputDirectory + name + "\r" +
                tr(run.language(), "besteht bereits, aber in anderer Größe", "allraedy exist but with annother size") +
                "\r" + tr(run.language(), "Soll sie überschrieben werden?", "Should the file be overwriten?"),
            tr(run.language(), "Warnung", "Information"));
        if (answer == kYesToAll) run.overwriteAll = true;
        if (answer == kNoToAll) run.overwriteNone = true;
    }
    // The replacement goes to the HTML file's name followed by the picture's
    // name, as the album has always done, but inside the output folder: a
    // run writes nowhere else.
    if ((answer == kYes || answer == kYesToAll) && !copyFileAtomic(source, run.outputDirectory + htmlName + name, error))
        reportCopyFailure(run, source, error);
}

}  // namespace

std::string stelleDateiBereit(HtmlRun& run, const StageRequest& r) {
    if (r.source.empty()) return {};
    const AlbumRecord& album = run.album();
    std::string sourceDir, name, outDir, htmlName;
    teilePfad(utf8Lower(r.source), sourceDir, name);
    teilePfad(utf8Lower(r.htmlPath.empty() ? album.directory : r.htmlPath), outDir, htmlName);
    if (outDir.empty()) outDir = utf8Lower(run.outputDirectory);
    const std::string lowerSource = utf8Lower(r.source);
    const std::string root = album.relativePath.empty() ? outDir : utf8Lower(album.relativePath);
    if (r.rotation != 0) name = replaceExtension(name, "png");

    const auto frame = specTokens(r.frameSpec), anim = specTokens(r.animationSpec);
    const bool shrink = r.reduce && ((r.height <= r.pictureHeight && r.width <= r.pictureWidth) ||
                                     (r.width == 0 && r.height == 0 && r.pictureWidth == 0 && r.pictureHeight == 0));
    const bool jpeg = endsWithNoCase(lowerSource, "jpg") || endsWithNoCase(lowerSource, "jpeg");
    std::string result;
    if ((shrink && jpeg) || hasFrame(frame) || hasAnimation(anim) || r.rotation != 0) {
        const bool negative = r.width < 0 || r.height < 0 || r.pictureWidth < 0 || r.pictureHeight < 0;
        WebPicture p{r.source, {}, r.height, r.width, album.htmlJpegQuality,
                     r.frameSpec, r.animationSpec, r.rotation, r.boxWidth, r.boxHeight};
        bool drawn = false;
        result = webPictureName(run, "BSThumb" + name, p, !r.doNotWrite && !negative, drawn);
        if (!r.doNotWrite && !negative && !drawn && run.pictures.writeWebPicture) {
            p.target = run.outputDirectory + result;
            std::string error;
            if (!run.pictures.writeWebPicture(p, error) && !error.empty()) {
                if (!isUnreadableSourceError(error)) ++run.failedWrites;
                run.prompter().message(
                    tr(run.language(), "Speichern des Bildes ", "Saving of the picture ") + p.target +
                        tr(run.language(), " mißlungen!", " fault!"),
                    kIconCritical, "Fehler");
            }
        }
    } else if (!isTrue(album.relativeOnlyUnrelated) || !startsWith(lowerSource, root)) {
        copyUnchanged(run, r, name, htmlName);
        result = name;
    } else if (startsWith(lowerSource, outDir)) {
        result = r.source.substr(outDir.size());
    } else {
        result = relativeTo(r.source, run.outputDirectory);
    }
    run.usedFiles += result + ";";
    return result;
}

namespace {

std::string specialTitle(const Session& s, const char* de, const char* en) {
    const AlbumRecord& a = s.state().album;
    for (int i = 1; i <= a.pages.upper(); ++i)
        if (a.pages[i].title == de || a.pages[i].title == en) return a.pages[i].title;
    return tr(s.language(), de, en);
}

}  // namespace

std::string inhaltTitel(const Session& s) { return specialTitle(s, "Inhalt", "AlbumDirectory"); }
std::string suchenTitel(const Session& s) { return specialTitle(s, "Suchen", "Search"); }

std::string loeseLink(HtmlRun& run, const LinkRequest& r) {
    if (r.link.empty()) return {};
    const AlbumRecord& a = run.album();
    const int count = albumPageCount(a);
    auto pageUrl = [&](int i) { return pageFileName(a.pages[i].title); };
    if (r.link == "<inhalt>") return pageFileName(inhaltTitel(run.session));
    if (r.link == "<vor>") {
        if (count < 1) return {};
        if (r.pageIndex == 0) return count >= 2 ? pageUrl(2) : std::string{};
        if (r.pageIndex == count) return pageUrl(1);
        if (r.pageIndex > count) return {};
        return pageUrl(r.pageIndex + 1);
    }
    if (r.link == "<zurück>") {
        if (r.pageIndex <= 0 || count < 1) return {};
        if (r.pageIndex == 1) return pageUrl(count);
        return r.pageIndex <= count ? pageUrl(r.pageIndex - 1) : std::string{};
    }
    if (r.link == "<vollbild>") {
        if (!r.page || r.elementIndex < 1 || r.elementIndex > r.page->pictures.upper()) return {};
        StageRequest s;
        s.source = r.page->pictures[r.elementIndex].path;
        s.htmlPath = r.htmlPath;
        s.reduce = isTrue(a.linkToReduced);
        s.width = r.width;
        s.height = r.height;
        s.pictureWidth = r.pictureWidth;
        s.pictureHeight = r.pictureHeight;
        return stelleDateiBereit(run, s);
    }
    // A page of the album, named by its title with or without ".htm".
    std::string stem = r.link;
    if (stem.size() > 4 && endsWithNoCase(stem, ".htm")) stem.resize(stem.size() - 4);
    for (int i = 1; i <= a.pages.upper(); ++i)
        if (a.pages[i].title == stem) return pageFileName(stem);
    // A link with a folder in it is a file of the album.
    if (r.link.find('\\') != std::string::npos || (!r.link.empty() && r.link[0] == '/')) {
        StageRequest s;
        s.source = r.link;
        s.htmlPath = r.htmlPath;
        s.reduce = isTrue(a.linkToReduced);
        s.width = -1;
        return stelleDateiBereit(run, s);
    }
    return r.link;
}

}  // namespace brindle::html
