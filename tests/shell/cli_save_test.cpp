// Saves from the command line keep what the user set up around a file
// (links, permissions), tell the truth in their exit status, and refuse
// files that are not files.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>

#include "album/album_file.h"
#include "cli_run.h"
#include "support/temp_home.h"

namespace brindle {
namespace {

namespace fs = std::filesystem;

class CliSaveTest : public test::TempHomeTest {
protected:
    test::CliRun cli(const std::string& args, const std::string& prefix = "") {
        return test::runCli(args, path("err"), prefix);
    }
    std::string err() { return readBytes("err"); }
    std::string q(const std::string& name) { return "'" + path(name) + "'"; }

    void writeAlbum(const std::string& name) {
        AlbumRecord album;
        ladeStandards(album, home());
        album.title = "Urlaub";
        ASSERT_TRUE(writeAlbumFile(path(name), album).ok());
    }
    int entries(const std::string& folder) {
        int n = 0;
        for ([[maybe_unused]] const auto& e : fs::directory_iterator(path(folder))) ++n;
        return n;
    }
};

TEST_F(CliSaveTest, ResaveWritesThroughALinkKeepsModeAndClearsALeftover) {
    writeAlbum("in.apr");
    fs::create_directories(path("real"));
    writeBytes("real/album.apr", "alt");
    ::chmod(path("real/album.apr").c_str(), 0640);
    fs::create_symlink("real/album.apr", path("album.apr"));
    // What a save killed half-way leaves beside its target (pid 1 never saves albums,
    // but a dead pid is what a kill leaves; pick one that cannot run).
    writeBytes("real/album.apr.~999999999-0.tmp", "half");

    const test::CliRun r = cli("resave " + q("in.apr") + " " + q("album.apr"));
    ASSERT_EQ(r.status, 0) << err();
    EXPECT_TRUE(fs::is_symlink(path("album.apr")));
    EXPECT_EQ(readBytes("real/album.apr"), readBytes("in.apr"));
    struct stat st {};
    ASSERT_EQ(::stat(path("real/album.apr").c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 0640u);
    EXPECT_EQ(entries("real"), 1) << "the leftover of the killed save is still there";
}

TEST_F(CliSaveTest, ResaveIntoAReadOnlyFolderFailsAndChangesNothing) {
    writeAlbum("in.apr");
    fs::create_directories(path("ro"));
    writeBytes("ro/album.apr", "alt");
    ::chmod(home().c_str(), 0755);
    ::chmod(path("in.apr").c_str(), 0644);
    ::chmod(path("ro").c_str(), 0555);
    // Root writes anywhere, so the program runs as "nobody".
    const std::string asNobody = ::geteuid() == 0 ? "setpriv --reuid=65534 --regid=65534 --clear-groups " : "";
    const test::CliRun r = cli("resave " + q("in.apr") + " " + q("ro/album.apr"), asNobody);
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(err().find("Permission denied"), std::string::npos) << err();
    EXPECT_EQ(readBytes("ro/album.apr"), "alt");
    EXPECT_EQ(entries("ro"), 1);
    ::chmod(path("ro").c_str(), 0755);
}

TEST_F(CliSaveTest, FifoDeviceAndFolderAreRefusedAtOnce) {
    ASSERT_EQ(::mkfifo(path("pipe.apr").c_str(), 0600), 0);
    fs::create_directories(path("ordner.apg"));
    // Each would block or read forever if opened as a plain file; the
    // timeout turns a hang into a failure instead of a stuck test run.
    for (const std::string& file : {path("pipe.apr"), path("ordner.apg"), std::string("/dev/zero")}) {
        SCOPED_TRACE(file);
        const test::CliRun r = cli("info '" + file + "'", "timeout 20 ");
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(err().rfind("brindlesee-cli: Could not open the file: " + file, 0), 0u) << err();
    }
}

}  // namespace
}  // namespace brindle
