// brindlesee-cli html on albums from outside, in a read-only folder and on
// a full disk: the exit status and the messages tell the truth, and
// nothing outside the output folder changes.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <map>

#include "album/album_file.h"
#include "album/page_file.h"
#include "support/temp_home.h"

namespace brindle {
namespace {

namespace fs = std::filesystem;

struct Limits {
    uid_t user = 0;          // 0: run as we are
    rlim_t maxFileBytes = 0;  // 0: no limit on the size of a written file
};

class CliHtmlTest : public test::TempHomeTest {
protected:
    struct Result {
        int status = -1;
        std::string out, err;
    };
    // Runs "brindlesee-cli html ALBUM OUT" in a child with the limits.
    Result html(const std::string& album, const std::string& out, Limits limits = {}) {
        const std::string outFile = path("cli.out"), errFile = path("cli.err");
        const pid_t child = ::fork();
        if (child == 0) {
            const int o = ::open(outFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
            const int e = ::open(errFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
            if (o < 0 || e < 0 || ::dup2(o, 1) < 0 || ::dup2(e, 2) < 0) ::_exit(120);
            if (limits.maxFileBytes > 0) {
                // A full disk: writes past the limit fail with EFBIG instead of killing.
                ::signal(SIGXFSZ, SIG_IGN);
                const rlimit r{limits.maxFileBytes, limits.maxFileBytes};
                if (::setrlimit(RLIMIT_FSIZE, &r) != 0) ::_exit(121);
            }
            if (limits.user != 0 && (::setgid(limits.user) != 0 || ::setuid(limits.user) != 0)) ::_exit(122);
            ::execl(BRINDLESEE_CLI, BRINDLESEE_CLI, "html", album.c_str(), out.c_str(), "--overwrite", "all",
                    static_cast<char*>(nullptr));
            ::_exit(123);
        }
        int st = 0;
        ::waitpid(child, &st, 0);
        Result r;
        r.status = WIFEXITED(st) ? WEXITSTATUS(st) : 128 + WTERMSIG(st);
        r.out = readBytes("cli.out");
        r.err = readBytes("cli.err");
        return r;
    }
    // An album in "album/" with `pages` pages; `count` is what its head says.
    std::string writeAlbum(int pages, int count, const std::string& link = {}) {
        AlbumRecord a;
        ladeStandards(a, home());
        a.title = "Reise";
        a.pageDefaults.background.clear();
        for (int i = 1; i <= pages; ++i) {
            const std::string title = "Seite" + std::to_string(i);
            a.pages.add() = PageEntry{title, title + ".apg", path("album/"), 0};
            PageRecord p = a.pageDefaults;
            p.title = title;
            TextElement& t = p.texts.add();
            t.text = "Text " + title;
            t.hyperlink = link;
            fs::create_directories(path("album"));
            EXPECT_TRUE(writePageFile(path("album/" + title + ".apg"), p).ok());
        }
        a.pageCount = static_cast<std::int16_t>(count);
        EXPECT_TRUE(writeAlbumFile(path("album/Reise.apr"), a).ok());
        return path("album/Reise.apr");
    }
    // Every file below `dir` with its bytes.
    std::map<std::string, std::string> snapshot(const std::string& dir) {
        std::map<std::string, std::string> files;
        for (const auto& e : fs::recursive_directory_iterator(dir))
            if (e.is_regular_file()) files[e.path().string()] = readBytes(e.path().string().substr(home().size()));
        return files;
    }
};

TEST_F(CliHtmlTest, ACountLargerThanThePageListIsNoCrash) {
    const std::string album = writeAlbum(2, 5, "<zurück>");
    Result r = html(album, path("web"));
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, path("web/Reise.html") + "\n");
    EXPECT_NE(readBytes("web/Seite1.htm").find("<a href=\"Seite2.htm\"><nobr>Text&nbsp;Seite1</nobr></a>"),
              std::string::npos);
    EXPECT_NE(readBytes("web/Seite2.htm").find("<a href=\"Seite1.htm\"><nobr>Text&nbsp;Seite2</nobr></a>"),
              std::string::npos);
    EXPECT_FALSE(fs::exists(path("web/Seite3.htm")));
}

TEST_F(CliHtmlTest, AReadOnlyOutputFolderGivesStatusOneAndNoPath) {
    if (::geteuid() != 0) GTEST_SKIP() << "needs root to drop to another user";
    const std::string album = writeAlbum(1, 1);
    ASSERT_EQ(html(album, path("seed")).status, 0);  // seeds the program directory
    fs::create_directories(path("web"));
    for (const auto& e : fs::recursive_directory_iterator(home()))
        ASSERT_EQ(::chown(e.path().c_str(), 65534, 65534), 0);
    ASSERT_EQ(::chown(home().c_str(), 65534, 65534), 0);
    ASSERT_EQ(::chown(path("web").c_str(), 0, 0), 0);
    fs::permissions(path("web"), fs::perms(0555));
    const auto before = snapshot(path("album"));

    Result r = html(album, path("web"), {65534, 0});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_NE(r.err.find("brindlesee-cli: Fehler: Fehler beim generieren der HTML Datei:  " + path("web/Seite1.htm") +
                         " Permission denied\n"),
              std::string::npos)
        << r.err;
    EXPECT_NE(r.err.find("brindlesee-cli: Fehler: Fehler beim Kopieren der Datei: " + path("Menü/mtmcode.js") +
                         " Permission denied\n"),
              std::string::npos)
        << r.err;
    EXPECT_NE(r.err.find("brindlesee-cli: the HTML album is incomplete: "), std::string::npos) << r.err;
    EXPECT_TRUE(fs::is_empty(path("web")));
    EXPECT_EQ(snapshot(path("album")), before);
    fs::permissions(path("web"), fs::perms(0755));
}

TEST_F(CliHtmlTest, AFullDiskLeavesNoEmptyWebFilesAndGivesStatusOne) {
    const std::string album = writeAlbum(1, 1);
    ASSERT_EQ(html(album, path("seed")).status, 0);  // seeds the program directory
    const auto before = snapshot(path("album"));

    // Pages fit; the tree script (17 kB) does not.
    Result r = html(album, path("web"), {0, 4096});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_NE(r.err.find("brindlesee-cli: Fehler: Fehler beim Kopieren der Datei: " + path("Menü/mtmcode.js") +
                         " File too large\n"),
              std::string::npos)
        << r.err;
    EXPECT_FALSE(readBytes("web/Seite1.htm").empty());
    EXPECT_FALSE(fs::exists(path("web/mtmcode.js")));  // no half or empty copy
    for (const auto& e : fs::recursive_directory_iterator(path("web"))) {
        if (e.is_regular_file()) {
            EXPECT_GT(fs::file_size(e.path()), 0u) << e.path();
        }
    }
    EXPECT_EQ(snapshot(path("album")), before);
    for (const auto& e : fs::directory_iterator(path("web")))
        EXPECT_EQ(e.path().filename().string().find(".tmp"), std::string::npos) << e.path();
}

}  // namespace
}  // namespace brindle
