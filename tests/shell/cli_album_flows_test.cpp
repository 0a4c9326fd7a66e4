// brindlesee-cli on album files from outside: unreadable pages, lists that
// disagree with their count, FIFOs, and saves that cannot be written. The
// exit status, the message and the files around the target are checked.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <grp.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <map>

#include "album/album_file.h"
#include "album/page_file.h"
#include "album/paths.h"
#include "shell/startup.h"
#include "support/scripted_prompter.h"
#include "support/temp_home.h"

namespace brindle {
namespace {

namespace fs = std::filesystem;

struct Limits {
    bool asNobody = false;         // drop to uid/gid 65534 when running as root
    long fileSizeLimit = -1;       // RLIMIT_FSIZE in bytes, -1 for none
    std::string programDirectory;  // BRINDLESEE_HOME of the run, empty for the test's
};

// Runs brindlesee-cli directly (no shell) in a child; stderr goes to "err".
class CliFlowsTest : public test::TempHomeTest {
protected:
    int run(const std::vector<std::string>& args, const Limits& limits = {}) {
        const std::string errPath = path("err");
        pid_t pid = ::fork();
        if (pid == 0) {
            int fd = ::open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
            if (fd >= 0) ::dup2(fd, STDERR_FILENO);
            int null = ::open("/dev/null", O_RDWR);
            ::dup2(null, STDIN_FILENO);
            ::dup2(null, STDOUT_FILENO);
            if (!limits.programDirectory.empty()) ::setenv("BRINDLESEE_HOME", limits.programDirectory.c_str(), 1);
            if (limits.fileSizeLimit >= 0) {
                std::signal(SIGXFSZ, SIG_IGN);  // a write past the limit fails instead of killing
                rlimit r{static_cast<rlim_t>(limits.fileSizeLimit), static_cast<rlim_t>(limits.fileSizeLimit)};
                ::setrlimit(RLIMIT_FSIZE, &r);
            }
            if (limits.asNobody && ::geteuid() == 0) {
                if (::setgroups(0, nullptr) != 0 || ::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(99);
            }
            // A FIFO that made the program block would otherwise hang the suite.
            ::alarm(60);
            std::vector<char*> argv{const_cast<char*>(BRINDLESEE_CLI)};
            for (const std::string& a : args) argv.push_back(const_cast<char*>(a.c_str()));
            argv.push_back(nullptr);
            ::execv(BRINDLESEE_CLI, argv.data());
            ::_exit(98);
        }
        int status = 0;
        ::waitpid(pid, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    std::string err() { return readBytes("err"); }

    // Every file under `dir` with its size and a digest of its bytes.
    std::map<std::string, std::string> snapshot(const std::string& dir) {
        std::map<std::string, std::string> files;
        for (auto& e : fs::recursive_directory_iterator(path(dir))) {
            const std::string bytes = e.is_regular_file() ? readBytes(fs::relative(e.path(), home()).string()) : "";
            files[e.path().string()] =
                std::to_string(bytes.size()) + " bytes, hash " + std::to_string(std::hash<std::string>{}(bytes));
        }
        return files;
    }

    // An album of `pages` pages in `dir`, each page with one text.
    void writeAlbumWithPages(const std::string& dir, int pages, int storedCount) {
        fs::create_directories(path(dir));
        AlbumRecord a;
        ladeStandards(a, home());
        for (int i = 1; i <= pages; ++i) {
            const std::string title = "Seite" + std::to_string(i);
            a.pages.add() = PageEntry{title, title + ".apg", path(dir), 0};
            PageRecord p = a.pageDefaults;
            TextElement& t = p.texts.add();
            t.text = "Zurück";
            t.width = 80;
            t.height = 20;
            t.hyperlink = "<zurück>";
            p.stack.add() = StackEntry{1, "text"};
            ASSERT_TRUE(writePageFile(path(dir + title + ".apg"), p).ok());
        }
        a.pageCount = static_cast<std::int16_t>(storedCount);
        ASSERT_TRUE(writeAlbumFile(path(dir + "Reise.apr"), a).ok());
    }
    void writeExtraPage(const std::string& name) {
        PageRecord extra;
        extra.texts.add().text = "dazu";
        ASSERT_TRUE(writePageFile(path(name), extra).ok());
    }
};

TEST_F(CliFlowsTest, AddPageRefusesAPageThatCannotBeReadAndLeavesTheAlbum) {
    writeAlbumWithPages("album/", 1, 1);
    // An album's head in a page file.
    std::string head = std::string(1, static_cast<char>(std::string(kAlbumFormat).size())) + '\0' + kAlbumFormat;
    writeBytes("Fremd.apg", head + std::string("\x00\x00", 2) + std::string(30, '\0'));
    const auto before = snapshot("album/");
    EXPECT_EQ(run({"add-page", path("album/Reise.apr"), path("Fremd.apg"), "--english"}), 1);
    EXPECT_EQ(err(), "brindlesee-cli: Error: Could not read the format of the file: " + path("Fremd.apg") + "\n");
    EXPECT_EQ(snapshot("album/"), before);
}

TEST_F(CliFlowsTest, AddPageToAnAlbumWithoutPagesSavesIt) {
    writeAlbumWithPages("album/", 0, 0);
    writeExtraPage("Extra.apg");
    ASSERT_EQ(run({"add-page", path("album/Reise.apr"), path("Extra.apg")}), 0) << err();
    AlbumFile saved;
    ASSERT_TRUE(readAlbumFile(path("album/Reise.apr"), saved).ok());
    ASSERT_EQ(saved.album.pageCount, 1);
    ASSERT_EQ(saved.album.pages.upper(), 1);
    EXPECT_EQ(saved.album.pages[1].fileName, "Extra.apg");
    EXPECT_EQ(saved.album.pages[1].directory, home());
}

TEST_F(CliFlowsTest, HtmlOfAnAlbumWhoseCountExceedsItsListSucceeds) {
    writeAlbumWithPages("album/", 1, 3);
    ASSERT_EQ(run({"html", path("album/Reise.apr"), path("web"), "--overwrite", "all"}), 0) << err();
    EXPECT_FALSE(readBytes("web/Seite1.htm").empty());
    EXPECT_EQ(err().find("[1/2] Seite1.htm\n[2/2] Menü.htm\n"), 0u) << err();
}

TEST_F(CliFlowsTest, AddPageReportsAnAlbumThatCannotBeSaved) {
    // A read-only album folder (its owner may read but nobody may write).
    writeAlbumWithPages("album/", 1, 1);
    writeExtraPage("Extra.apg");
    // The runs get a program directory of their own that "nobody" may write.
    ASSERT_TRUE(seedProgramDirectory(path("prog/"), installedResourceDirectory()));
    ASSERT_EQ(::chmod(home().c_str(), 0755), 0);
    if (::geteuid() == 0) {
        for (auto& e : fs::recursive_directory_iterator(path("prog"))) ASSERT_EQ(::lchown(e.path().c_str(), 65534, 65534), 0);
        ASSERT_EQ(::chown(path("prog").c_str(), 65534, 65534), 0);
    }
    ASSERT_EQ(::chmod(path("album").c_str(), 0555), 0);
    const auto before = snapshot("album/");
    const std::string extra = readBytes("Extra.apg");
    Limits nobody;
    nobody.asNobody = true;
    nobody.programDirectory = path("prog/");
    EXPECT_EQ(run({"add-page", path("album/Reise.apr"), path("Extra.apg"), "--english"}, nobody), 1);
    EXPECT_EQ(err(), "brindlesee-cli: Error: Error while writing the file:  " + path("album/Reise.apr") +
                         " Permission denied\n");
    EXPECT_EQ(snapshot("album/"), before);
    ASSERT_EQ(::chmod(path("album").c_str(), 0755), 0);

    // A full disk: no file may grow past 2000 bytes.
    ASSERT_GT(readBytes("album/Reise.apr").size(), 2000u);
    Limits full;
    full.fileSizeLimit = 2000;
    full.programDirectory = path("prog/");
    EXPECT_EQ(run({"add-page", path("album/Reise.apr"), path("Extra.apg"), "--english"}, full), 1);
    EXPECT_EQ(err(), "brindlesee-cli: Error: Error while writing the file:  " + path("album/Reise.apr") +
                         " File too large\n");
    EXPECT_EQ(snapshot("album/"), before);
    EXPECT_EQ(readBytes("Extra.apg"), extra);

    // With room again the same command goes through.
    Limits room;
    room.programDirectory = path("prog/");
    EXPECT_EQ(run({"add-page", path("album/Reise.apr"), path("Extra.apg")}, room), 0) << err();
    AlbumFile saved;
    ASSERT_TRUE(readAlbumFile(path("album/Reise.apr"), saved).ok());
    EXPECT_EQ(saved.album.pageCount, 2);
}

TEST_F(CliFlowsTest, FifosAreRefusedAtOnce) {
    ASSERT_EQ(::mkfifo(path("rohr.apr").c_str(), 0644), 0);
    ASSERT_EQ(::mkfifo(path("rohr.apg").c_str(), 0644), 0);
    writeAlbumWithPages("album/", 1, 1);
    const auto before = snapshot("album/");
    const std::string refused = " not a regular file\n";

    EXPECT_EQ(run({"info", path("rohr.apr")}), 1);
    EXPECT_EQ(err(), "brindlesee-cli: Could not open the file: " + path("rohr.apr") + refused);
    EXPECT_EQ(run({"resave", path("rohr.apg"), path("aus.apg")}), 1);
    EXPECT_EQ(err(), "brindlesee-cli: Could not open the file: " + path("rohr.apg") + refused);
    EXPECT_FALSE(dateiVorhanden(path("aus.apg")));

    EXPECT_EQ(run({"add-page", path("rohr.apr"), path("album/Seite1.apg"), "--english"}), 1);
    EXPECT_EQ(err(), "brindlesee-cli: Error: Could not open the file: " + path("rohr.apr") + refused);
    EXPECT_EQ(run({"add-page", path("album/Reise.apr"), path("rohr.apg"), "--english"}), 1);
    EXPECT_EQ(err(), "brindlesee-cli: Error: Could not open the file: " + path("rohr.apg") + refused);
    EXPECT_EQ(snapshot("album/"), before);

    // A folder given as a page is refused the same way.
    fs::create_directories(path("Ordner.apg"));
    EXPECT_EQ(run({"add-page", path("album/Reise.apr"), path("Ordner.apg"), "--english"}), 1);
    EXPECT_EQ(err(), "brindlesee-cli: Error: Could not open the file: " + path("Ordner.apg") + " Is a directory\n");
    EXPECT_EQ(snapshot("album/"), before);
}

TEST_F(CliFlowsTest, APageNamedLikeTheNewAlbumsFirstPageIsAddedAtStart) {
    AlbumRecord a;
    ladeStandards(a, home());
    PageRecord p = a.pageDefaults;
    p.texts.add().text = "geladen";
    ASSERT_TRUE(writePageFile(path("Seite1.apg"), p).ok());
    test::ScriptedPrompter prompter;
    test::RecordingEditorFactory editors;
    IniSettingsStore settings(path("settings.ini"));
    Session s(home(), prompter, settings, editors);
    startAlbumApplication(s, {path("Seite1.apg")});
    EXPECT_TRUE(prompter.asked.empty());
    ASSERT_EQ(s.album().pageCount, 2);
    EXPECT_EQ(s.album().pages[1].title, "Seite1");
    EXPECT_EQ(s.album().pages[2].fileName, "Seite1.apg");
    ASSERT_GT(s.album().pages[2].slot, 0);
    ASSERT_GE(s.page(s.album().pages[2].slot).texts.upper(), 1);
    EXPECT_EQ(s.page(s.album().pages[2].slot).texts[1].text, "geladen");
}

}  // namespace
}  // namespace brindle
