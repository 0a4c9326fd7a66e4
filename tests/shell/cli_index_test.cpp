// brindlesee-cli index: the picture index made and saved without windows,
// and the question about an existing index answered by --yes and --no.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "album/album_file.h"
#include "album/page_file.h"
#include "image/dib_section.h"
#include "image/picture_io.h"
#include "support/temp_home.h"

namespace brindle {
namespace {

namespace fs = std::filesystem;

class CliIndexTest : public test::TempHomeTest {
protected:
    // Runs brindlesee-cli in a child with this test's program directory; stderr goes to "err".
    int run(const std::vector<std::string>& args) {
        const std::string errPath = path("err");
        const pid_t pid = ::fork();
        if (pid == 0) {
            const int fd = ::open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
            const int null = ::open("/dev/null", O_RDWR);
            if (fd < 0 || null < 0) ::_exit(97);
            ::dup2(fd, STDERR_FILENO);
            ::dup2(null, STDIN_FILENO);
            ::dup2(null, STDOUT_FILENO);
            ::setenv("BRINDLESEE_HOME", path("home").c_str(), 1);
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
    std::string picture(const std::string& name) {
        cDIBSection dib;
        EXPECT_TRUE(dib.Create(160, 120));
        EXPECT_TRUE(SaveDIBFile(dib, path(name), 90));
        return path(name);
    }
    // "Seite1" with two pictures, "Seite2" with one.
    std::string album() {
        AlbumRecord a;
        ladeStandards(a, home());
        a.title = "Album";
        const std::vector<std::vector<std::string>> pages = {{picture("a.jpg"), picture("b.jpg")}, {picture("c.jpg")}};
        for (std::size_t i = 0; i < pages.size(); ++i) {
            PageRecord p;
            for (const std::string& file : pages[i]) {
                PictureElement& e = p.pictures.add();
                e.width = 160;
                e.height = 120;
                e.path = file;
            }
            const std::string title = "Seite" + std::to_string(i + 1);
            EXPECT_TRUE(writePageFile(path(title + ".apg"), p).ok());
            a.pages.add() = PageEntry{title, title + ".apg", home(), 0};
        }
        a.pageCount = 2;
        EXPECT_TRUE(writeAlbumFile(path("Album.apr"), a).ok());
        return path("Album.apr");
    }
    AlbumRecord saved() {
        AlbumFile f;
        EXPECT_TRUE(readAlbumFile(path("Album.apr"), f).ok());
        return f.album;
    }
};

TEST_F(CliIndexTest, MakesSavesAndAsksAboutAnExistingIndex) {
    const std::string apr = album();
    ASSERT_EQ(run({"index", apr}), 0) << readBytes("err");
    EXPECT_EQ(readBytes("err"), "Start Bildindex generieren ... \nBildindex generieren: Seite1\n"
                                "Bildindex generieren: Seite2\nBildindex neu zeichnen: BildIndex\nBildindex fertig\n");
    AlbumRecord a = saved();
    ASSERT_EQ(a.pages.upper(), 3);
    EXPECT_EQ(a.pages[3].title, "BildIndex");
    EXPECT_EQ(a.pages[3].fileName, "BildIndex.apg");
    PageFile page;
    ASSERT_TRUE(readPageFile(path("BildIndex.apg"), a.pageDefaults, page).ok());
    ASSERT_EQ(page.page.pictures.upper(), 3);
    EXPECT_EQ(page.page.texts.upper(), 4);
    EXPECT_EQ(page.page.pictures[3].path, path("BildIndexThumps/BSIndexc.jpg"));
    EXPECT_EQ(page.page.texts[4].hyperlink, "Seite2");
    for (const char* name : {"a", "b", "c"})
        EXPECT_TRUE(fs::is_regular_file(path(std::string("BildIndexThumps/BSIndex") + name + ".jpg"))) << name;

    // --no keeps album and index as they are.
    const std::string albumBytes = readBytes("Album.apr"), pageBytes = readBytes("BildIndex.apg");
    ASSERT_EQ(run({"index", apr, "--begin", "--no"}), 0) << readBytes("err");
    EXPECT_EQ(readBytes("err"), "Start Bildindex generieren ... \nbrindlesee-cli: Warnung: Der Bildindex ist bereits "
                                "erstellt. Soll er überschrieben werden?\n");
    EXPECT_EQ(readBytes("Album.apr"), albumBytes);
    EXPECT_EQ(readBytes("BildIndex.apg"), pageBytes);

    // --yes rebuilds it on its place, with the pictures of today.
    fs::remove(path("b.jpg"));
    ASSERT_EQ(run({"index", apr, "--begin", "--yes"}), 0) << readBytes("err");
    a = saved();
    ASSERT_EQ(a.pages.upper(), 3);
    EXPECT_EQ(a.pages[3].title, "BildIndex");
    ASSERT_TRUE(readPageFile(path("BildIndex.apg"), a.pageDefaults, page).ok());
    EXPECT_EQ(page.page.pictures.upper(), 2);
}

TEST_F(CliIndexTest, BadArgumentsGiveTheUsage) {
    EXPECT_EQ(run({"index"}), 1);
    EXPECT_EQ(readBytes("err"), "brindlesee-cli: usage: brindlesee-cli index ALBUM.apr [--begin|--end] [--yes|--no]\n");
    EXPECT_EQ(run({"index", path("x.apr"), "--frisch"}), 1);
    EXPECT_EQ(run({"index", path("missing.apr")}), 1);
    EXPECT_FALSE(fs::exists(path("BildIndexThumps")));
}

}  // namespace
}  // namespace brindle
