#include "shell/startup.h"

#include <cstdlib>
#include <filesystem>

#include "album/file_io.h"
#include "album/options_file.h"
#include "album/paths.h"
#include "album/recovery.h"

namespace brindle {

namespace fs = std::filesystem;

std::string resolveProgramDirectory() {
    if (const char* home = std::getenv("BRINDLESEE_HOME"); home && *home) return withTrailingSeparator(home);
    if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg && *xdg)
        return withTrailingSeparator(std::string(xdg) + "/brindlesee");
    const char* user = std::getenv("HOME");
    return withTrailingSeparator(std::string(user ? user : ".") + "/.local/share/brindlesee");
}

namespace {

bool holdsResources(const fs::path& dir) {
    std::error_code ec;
    return fs::exists(dir / "Album.vor", ec) || fs::is_directory(dir / "Menü", ec);
}

}  // namespace

std::string resourceDirectoryBeside(const std::string& executable) {
    const fs::path bin = fs::path(executable).parent_path();
    // Installed: bin/../share/brindlesee. In the build tree every program,
    // test and benchmark sits two folders below the build folder.
    for (const fs::path& dir : {bin.parent_path() / "share" / "brindlesee",
                                bin.parent_path().parent_path() / "resources" / "install"})
        if (holdsResources(dir)) return withTrailingSeparator(dir.lexically_normal().string());
    return {};
}

std::string installedResourceDirectory() {
    if (const char* res = std::getenv("BRINDLESEE_RESOURCES"); res && *res) return withTrailingSeparator(res);
    std::error_code ec;
    const fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    return ec ? std::string{} : resourceDirectoryBeside(exe.string());
}

bool seedProgramDirectory(const std::string& programDirectory, const std::string& resourceDirectory) {
    std::error_code ec;
    fs::create_directories(programDirectory, ec);
    if (ec) return false;
    fs::create_directories(programDirectory + "Temp", ec);
    if (resourceDirectory.empty() || !fs::is_directory(resourceDirectory)) return true;
    for (auto it = fs::recursive_directory_iterator(resourceDirectory, ec); !ec && it != fs::end(it);
         it.increment(ec)) {
        fs::path relative = fs::relative(it->path(), resourceDirectory);
        // The help pages are read where they are installed, never copied per user.
        if (it.depth() == 0 && relative == "help") {
            it.disable_recursion_pending();
            continue;
        }
        fs::path target = fs::path(programDirectory) / relative;
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

std::vector<std::string> albumFilesToOpen(const std::vector<std::string>& args) {
    auto trimmed = [](const std::string& a) {
        const std::size_t first = a.find_first_not_of(' '), last = a.find_last_not_of(' ');
        return first == std::string::npos ? std::string{} : a.substr(first, last - first + 1);
    };
    // One path split at its blanks by whoever started us still names the file.
    const std::string line = trimmed(args.size() == 1 ? args[0] : commandLineFromArgs(args));
    if (line.empty()) return {};
    if (dateiVorhanden(line)) return {line};
    std::vector<std::string> albums, pages;
    for (const std::string& a : args) {
        const std::string file = trimmed(a);
        if (!dateiVorhanden(file)) continue;
        if (endsWithNoCase(file, ".apr")) albums.push_back(file);
        if (endsWithNoCase(file, ".apg")) pages.push_back(file);
    }
    if (!albums.empty()) return {albums.front()};
    return pages;
}

std::vector<std::string> absoluteFileArguments(std::vector<std::string> args) {
    std::error_code ec;
    for (std::string& a : args)
        if (switchMode(a).empty() && !a.empty() && fs::exists(a, ec)) a = fs::absolute(a, ec).lexically_normal().string();
    return args;
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

    const auto& log = session.log();
    const std::vector<std::string> files = albumFilesToOpen(args);
    if (files.empty()) {
        logLine(log, "MDILoad Command=\" -> Album Neu");
        session.AlbumNeu();
    } else if (endsWithNoCase(files.front(), ".apr")) {
        logLine(log, "MDILoad case apr Command=" + files.front());
        session.AlbumNeu();
        session.albumOeffnen(files.front());
    } else if (endsWithNoCase(files.front(), ".apg")) {
        session.AlbumNeu();
        for (const std::string& page : files) {
            logLine(log, "MDILoad case apg Command=" + page);
            session.SeiteOeffnen(0, page, false);
        }
    } else {
        logLine(log, "MDILoad case else");
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
