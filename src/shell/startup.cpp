#include "shell/startup.h"

#include <cstdlib>
#include <filesystem>

#include "album/file_io.h"
#include "album/options_file.h"
#include "album/paths.h"
#include "album/recovery.h"

#ifndef BRINDLESEE_RESOURCE_DIR
#define BRINDLESEE_RESOURCE_DIR ""
#endif

namespace brindle {

namespace fs = std::filesystem;

std::string resolveProgramDirectory() {
    if (const char* home = std::getenv("BRINDLESEE_HOME"); home && *home) return withTrailingSeparator(home);
    if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg && *xdg)
        return withTrailingSeparator(std::string(xdg) + "/brindlesee");
    const char* user = std::getenv("HOME");
    return withTrailingSeparator(std::string(user ? user : ".") + "/.local/share/brindlesee");
}

std::string installedResourceDirectory() {
    if (const char* res = std::getenv("BRINDLESEE_RESOURCES"); res && *res) return withTrailingSeparator(res);
    // An installed program finds its files in ../share/brindlesee beside bin/.
    std::error_code ec;
    fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    if (!ec) {
        fs::path shared = exe.parent_path().parent_path() / "share" / "brindlesee";
        if (fs::is_directory(shared / "Menü", ec) || fs::exists(shared / "Album.vor", ec))
            return withTrailingSeparator(shared.string());
    }
    return withTrailingSeparator(BRINDLESEE_RESOURCE_DIR);
}

bool seedProgramDirectory(const std::string& programDirectory, const std::string& resourceDirectory) {
    std::error_code ec;
    fs::create_directories(programDirectory, ec);
    if (ec) return false;
    fs::create_directories(programDirectory + "Temp", ec);
    if (resourceDirectory.empty() || !fs::is_directory(resourceDirectory)) return true;
    for (auto it = fs::recursive_directory_iterator(resourceDirectory, ec); !ec && it != fs::end(it);
         it.increment(ec)) {
        fs::path target = fs::path(programDirectory) / fs::relative(it->path(), resourceDirectory);
        if (it->is_directory()) {
            fs::create_directories(target, ec);
        } else if (!fs::exists(target)) {
            fs::copy_file(it->path(), target, ec);  // the user's own files are never replaced
        }
        ec.clear();
    }
    return true;
}

std::string commandLineFromArgs(const std::vector<std::string>& args) {
    std::string line;
    for (const std::string& a : args) {
        if (!line.empty()) line += ' ';
        line += a.find(' ') != std::string::npos ? "\"" + a + "\"" : a;
    }
    return line;
}

void writeCommandFile(const std::string& programDirectory, const std::string& commandLine) {
    writeFileAtomic(programDirectory + "bef.txt", commandLine);
}

std::vector<std::string> splitCommandLine(const std::string& commandLine) {
    std::string line = commandLine;
    if (!line.empty() && line.front() != '"' && fs::is_regular_file(line)) line = "\"" + line + "\"";
    std::vector<std::string> args;
    std::size_t i = 0;
    while (i < line.size()) {
        if (line[i] == ' ') {
            ++i;
        } else if (line[i] == '"') {
            std::size_t end = line.find('"', i + 1);
            if (end == std::string::npos) end = line.size();
            args.push_back(line.substr(i + 1, end - i - 1));
            i = end + 1;
        } else {
            std::size_t end = line.find(' ', i);
            if (end == std::string::npos) end = line.size();
            args.push_back(line.substr(i, end - i));
            i = end;
        }
    }
    return args;
}

bool hasMediaSuffix(const std::string& path) {
    static const char* const kSuffixes[] = {
        ".bmp",  ".ico",    ".gif",    ".jpg",    ".jpeg", ".png", ".pcx",  ".tga", ".wmf", ".emf",
        ".mid",  ".wav",    ".avi",    ".wmv",    ".mpeg", ".mp3", ".mpg",  ".mp2", ".mp1", ".cda",
        ".wbmp", ".pbm",    ".pgm",    ".ppm",    ".pbmraw", ".pgmraw", ".ppmraw", ".psd", ".jbig",
        ".jbg",  ".ras",    ".iff",    ".lbm",    ".cut",  ".pcd", ".koala"};
    for (const char* s : kSuffixes)
        if (endsWithNoCase(path, s)) return true;
    return false;
}

namespace {

std::string switchMode(const std::string& arg) {
    const std::string a = asciiLower(arg);
    if (a == "/brindleseeexplorer") return "brindleseeexplorer";
    if (a == "/r") return "RedEye";
    if (a == "/g") return "Rezise";
    if (a == "/b") return "Bildbearbeitung";
    return {};
}

bool isToolMode(const std::string& mode) {
    return mode == "RedEye" || mode == "Rezise" || mode == "Bildbearbeitung";
}

}  // namespace

StartDecision decideStart(const std::vector<std::string>& args, Prompter& prompter, Language lang) {
    StartDecision d;
    for (const std::string& a : args)
        if (std::string mode = switchMode(a); !mode.empty()) d.startMode = mode;
    for (const std::string& a : args) {
        if (!switchMode(a).empty() || !hasMediaSuffix(a) || !fs::is_regular_file(a)) continue;
        std::string file;
        teilePfad(a, d.pictureDirectory, file);
        if (d.startMode.empty() || d.startMode == "brindleseeexplorer") {
            d.startMode = "brindleseeexplorer";
            d.explorerFile = a;
        } else {
            d.toolPictures.push_back(a);
        }
    }
    if (isToolMode(d.startMode) && d.toolPictures.empty()) {
        std::string text = lang == Language::German
                               ? "Brindlesee wurde im Modus: " + d.startMode +
                                     " gestartet.\rEs wurde jedoch kein gültiges Bild angegeben.\r"
                                     "Wollen Sie Brindlesee normal starten?\r(Nein beendet das Programm)"
                               : "Brindlesee start by mode: " + d.startMode +
                                     " \rHowever, no valid picture was indicated.\r"
                                     "Would you start Brindlesee regular?\r(No terminate the programm)";
        if (prompter.message(text, kButtonsYesNo | kIconQuestion, "Brindlesee") == kYes)
            d.startMode.clear();
        else
            d.quit = true;
    }
    return d;
}

void startAlbumApplication(Session& session, const std::vector<std::string>& args) {
    SessionState& s = session.state();
    std::error_code ec;
    fs::create_directories(s.programDirectory + "Temp", ec);
    if (s.options.language.empty()) s.options.language = "deutsch";
    s.language = languageFromName(s.options.language);
    s.lastAlbumDirectory = s.options.lastAlbumDirectory;
    s.pictureDirectory = s.options.pictureDirectory;
    s.lastAlbumPath = s.options.lastAlbumPath;

    std::string line = args.size() == 1 ? args[0] : commandLineFromArgs(args);
    const std::size_t first = line.find_first_not_of(' '), last = line.find_last_not_of(' ');
    line = first == std::string::npos ? std::string{} : line.substr(first, last - first + 1);
    const auto& log = session.log();
    if (!line.empty() && dateiVorhanden(line)) {
        const std::string ending = asciiLower(line.size() >= 3 ? line.substr(line.size() - 3) : line);
        if (ending == "apr") {
            logLine(log, "MDILoad case apr Command=" + line);
            session.AlbumNeu();
            session.albumOeffnen(line);
        } else if (ending == "apg") {
            logLine(log, "MDILoad case apg Command=" + line);
            session.AlbumNeu();
            session.SeiteOeffnen(0, line, false);
        } else {
            logLine(log, "MDILoad case else");
            session.AlbumNeu();
        }
    } else {
        logLine(log, "MDILoad Command=\" -> Album Neu");
        session.AlbumNeu();
    }
    session.ladeZuletzt();
}

void finishSession(Session& session) {
    SessionState& s = session.state();
    // Another program on the same folder still needs its undo snapshots.
    removeSnapshotsIfAlone(s.programDirectory, {});
    s.options.language = languageName(s.language);
    s.options.lastAlbumDirectory = s.lastAlbumDirectory;
    s.options.pictureDirectory = s.pictureDirectory;
    s.options.lastAlbumPath = s.lastAlbumPath;
    writeOptionsFile(s.programDirectory + kOptionsFileName, s.options);
}

}  // namespace brindle
