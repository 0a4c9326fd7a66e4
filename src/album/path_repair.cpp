#include "album/path_repair.h"

#include <array>
#include <filesystem>

#include "album/encoding.h"
#include "album/paths.h"

namespace brindle {
namespace {

constexpr std::size_t kInstallPathLength = 36;
static_assert(std::char_traits<char>::length(kFormerInstallPath) == kInstallPathLength);

// Candidates are built from pieces of stored paths, which may use '\'.
std::string toNative(std::string s) {
    for (char& c : s)
        if (c == '\\') c = '/';
    return s;
}

std::string replaceFirst(const std::string& s, const std::string& what, const std::string& with) {
    std::string out = s;
    std::size_t at = out.find(what);
    if (at != std::string::npos) out.replace(at, what.size(), with);
    return out;
}

std::string replaceAll(const std::string& s, const std::string& what, const std::string& with) {
    std::string out;
    std::size_t from = 0;
    for (std::size_t at; (at = s.find(what, from)) != std::string::npos; from = at + what.size())
        out.append(s, from, at - from).append(with);
    out.append(s, from, std::string::npos);
    return out;
}

// The program directory without its closing separator, followed by the
// stored path from its 37th character on.
std::string underProgramDirectory(const std::string& path, const std::string& programDirectory) {
    return withoutTrailingSeparator(programDirectory) + toNative(utf8From(path, kInstallPathLength));
}

bool sameFile(const std::string& a, const std::string& b) {
    std::error_code ec;
    return std::filesystem::equivalent(a, b, ec);
}

bool startsWithFormerInstallPath(const std::string& path) {
    return toNative(utf8Lower(utf8Left(path, kInstallPathLength))) == toNative(kFormerInstallPath);
}

}  // namespace

bool korrigierePfad(std::string& path, const std::string& programDirectory, const LogSink& log) {
    std::string dir, file;
    teilePfad(path, dir, file);
    std::string candidate = path;
    logLine(log, "Module 2 - korrigierePfad - Start:" + path);

    auto found = [&]() {
        if (!dateiVorhanden(candidate)) return false;
        path = candidate;
        logLine(log, "Module 2 - korrigierePfad - Ende Datei korrigiert):" + path);
        return true;
    };
    if (found()) return true;

    // Attempt 0: the former install path becomes the program directory.
    if (startsWithFormerInstallPath(candidate)) candidate = underProgramDirectory(candidate, programDirectory);
    if (found()) return true;

    // Attempts 1 to 12: the folders of the picture CDs of earlier versions.
    static const std::array<const char*, 12> kFolders = {
        "CDBeigabe/Umschläge/",      "CDBeigabe/Button/",      "CDBeigabe/Hintergründe/",
        "CDBeigabe/Schilder/",       "CDBeigabe/Sonst/",       "CDBeigabe/",
        "CD Beigabe neu/Umschläge/", "CD Beigabe neu/Button/", "CD Beigabe neu/Hintergründe/",
        "CD Beigabe neu/Schilder/",  "CD Beigabe neu/Sonst/",  "CD Beigabe neu/"};
    for (const char* folder : kFolders) {
        candidate = programDirectory + folder + file;
        if (found()) return true;
    }

    // Attempt 13: an "ü" written as "ue".
    if (file.find("ü") != std::string::npos) candidate = dir + replaceFirst(file, "ü", "ue");
    if (found()) return true;

    // Attempt 14: "jpeg" and "jpg" swapped, once, case-sensitive.
    if (file.size() >= 4 && file.compare(file.size() - 4, 4, "jpeg") == 0) {
        file = file.substr(0, file.size() - 4) + "jpg";
        candidate = dir + file;
        logLine(log, "Module 2 - korrigierePfad - Tausche jpeg gegen jpg:" + path);
    } else if (file.size() >= 3 && file.compare(file.size() - 3, 3, "jpg") == 0) {
        file = file.substr(0, file.size() - 3) + "jpeg";
        candidate = dir + file;
        logLine(log, "Module 2 - korrigierePfad - Tausche jpg gegen jpeg:" + path);
    }
    if (found()) return true;

    // Attempt 15: the program directory itself.
    candidate = programDirectory + file;
    if (found()) return true;

    // Attempt 16: "ü" as "ue" in the swapped name, in the program directory
    // where the default pictures of this version live.
    if (file.find("ü") != std::string::npos) candidate = programDirectory + replaceFirst(file, "ü", "ue");
    if (found()) return true;

    logLine(log, "Module 2 - korrigierePfad - Ende (Datei fehlt):" + path);
    return false;
}

bool sucheBild(std::string& path, const std::string& programDirectory, const std::string& albumDirectory) {
    std::string dir, file;
    teilePfad(path, dir, file);
    if (dateiVorhanden(path)) return true;

    auto take = [&](const std::string& candidate) {
        if (!dateiVorhanden(candidate)) return false;
        path = candidate;
        return true;
    };
    // A picture beside the album comes first: the install-path rule below
    // turns every short path into the program directory itself.
    if (!albumDirectory.empty() && !file.empty() && take(albumDirectory + file)) return true;
    // Whatever the path starts with, only the install path's length is assumed.
    if (take(underProgramDirectory(path, programDirectory))) return true;
#ifdef _WIN32
    for (const char* drive : {"c:", "d:", "e:", "f:"})
        if (take(drive + utf8From(path, 2))) return true;
#endif
    // Pictures renamed by a camera or a tool.
    if (take(replaceAll(path, "DSC", "DSD"))) return true;
    if (take(replaceAll(path, "IMG", "IMF"))) return true;
    return dateiVorhanden(path);
}

std::string korrigiereVerschobenesAlbum(AlbumRecord& album, Language lang, const LogSink& log) {
    logLine(log, "Module 2 - Album öffnen - korrigiere Pfade (Kopieretes Album) Start");
    std::string message;
    const int last = std::min<int>(album.pageCount, album.pages.upper());
    for (int i = 1; i <= last; ++i) {
        PageEntry& page = album.pages[i];
        const std::string stored = page.directory + page.fileName;
        if (page.fileName.empty()) continue;
        // A copied album works on the copies beside it, never on the pages
        // of the album it was copied from.
        const bool beside = !album.directory.empty() && dateiVorhanden(album.directory + page.fileName);
        if (dateiVorhanden(stored) && (!beside || sameFile(stored, album.directory + page.fileName))) continue;
        if (!beside) {
            message += tr(lang, "\r Datei ", "\r File ") + stored + tr(lang, " nicht gefunden!", " not found!");
            continue;
        }
        // The English text says "not found!" for a found page; it always has.
        message += tr(lang, "\r Datei ", "\r File ") + stored +
                   tr(lang, " im Verzeichnis \r", " at directory \r") + album.directory +
                   tr(lang, "gefunden!", "not found!");
        page.directory = album.directory;
        album.modified = kTrue;
    }
    return message;
}

const char* movedAlbumTitle(Language lang) {
    return tr(lang, "Fehler beim laden aufgetreten!", "Error while loading!");
}

}  // namespace brindle
