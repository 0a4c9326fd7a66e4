// Saves replace files atomically without changing what the user set up
// around them (links, permissions), and reads refuse what is not a file.
#include "album/file_io.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "support/temp_home.h"

namespace brindle {
namespace {

namespace fs = std::filesystem;

class FileIoTest : public test::TempHomeTest {};

mode_t modeOf(const std::string& path) {
    struct stat st {};
    EXPECT_EQ(::stat(path.c_str(), &st), 0) << path;
    return st.st_mode & 07777;
}

TEST_F(FileIoTest, SaveWritesThroughLinksAndKeepsPermissions) {
    writeBytes("real/album.apr", "old");
    ::chmod(path("real/album.apr").c_str(), 0600);
    fs::create_symlink("real/album.apr", path("link.apr"));
    // A link whose target is another link, given relative to its own folder.
    fs::create_directories(path("other"));
    fs::create_symlink("../link.apr", path("other/second.apr"));

    ASSERT_TRUE(writeFileAtomic(path("other/second.apr"), std::string("new")).ok);
    EXPECT_TRUE(fs::is_symlink(path("link.apr")));
    EXPECT_TRUE(fs::is_symlink(path("other/second.apr")));
    EXPECT_EQ(readBytes("real/album.apr"), "new");
    EXPECT_EQ(modeOf(path("real/album.apr")), 0600u);

    // A dangling link names the file to create.
    fs::create_symlink("made.apg", path("dangling.apg"));
    ASSERT_TRUE(writeFileAtomic(path("dangling.apg"), std::string("page")).ok);
    EXPECT_EQ(readBytes("made.apg"), "page");
    EXPECT_TRUE(fs::is_symlink(path("dangling.apg")));

    // Executable or group bits the user set stay as they were.
    writeBytes("script.bsv", "x");
    ::chmod(path("script.bsv").c_str(), 0754);
    ASSERT_TRUE(writeFileAtomic(path("script.bsv"), std::string("y")).ok);
    EXPECT_EQ(modeOf(path("script.bsv")), 0754u);
}

TEST_F(FileIoTest, SaveRemovesTheLeftoverOfAKilledSave) {
    // A child process dies in the middle of a save, leaving its temporary file.
    const std::string target = path("album.apr");
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const std::string tmp = target + ".~" + std::to_string(::getpid()) + "-0.tmp";
        FILE* f = std::fopen(tmp.c_str(), "wb");
        std::fputs("half", f);
        std::fclose(f);
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    const std::string leftover = target + ".~" + std::to_string(child) + "-0.tmp";
    ASSERT_TRUE(fs::exists(leftover));
    // Someone else's file of a similar name is not ours to delete.
    writeBytes("album.apr.~notes.tmp", "mine");

    ASSERT_TRUE(writeFileAtomic(target, std::string("whole")).ok);
    EXPECT_FALSE(fs::exists(leftover));
    EXPECT_TRUE(fs::exists(path("album.apr.~notes.tmp")));
    EXPECT_EQ(readBytes("album.apr"), "whole");
    int files = 0;
    for ([[maybe_unused]] const auto& e : fs::directory_iterator(home())) ++files;
    EXPECT_EQ(files, 2);
}

TEST_F(FileIoTest, ReadRefusesFifosFoldersAndNamesTheCause) {
    std::string bytes;
    ASSERT_EQ(::mkfifo(path("pipe.apr").c_str(), 0600), 0);
    // Would block forever if the FIFO were opened for a plain read.
    IoResult r = readWholeFile(path("pipe.apr"), bytes);
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.error, "not a regular file");

    fs::create_directories(path("folder.apg"));
    r = readWholeFile(path("folder.apg"), bytes);
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.error, "Is a directory");

    r = readWholeFile("/dev/zero", bytes);
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.error, "not a regular file");

    r = readWholeFile(path("missing.apr"), bytes);
    EXPECT_EQ(r.error, "No such file or directory");

    // Root reads everything, so the unreadable file is read as "nobody".
    writeBytes("secret.apr", "x");
    ::chmod(path("secret.apr").c_str(), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        if (::geteuid() == 0 && ::setuid(65534) != 0) ::_exit(3);
        std::string b;
        ::_exit(readWholeFile(path("secret.apr"), b).error == "Permission denied" ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(WEXITSTATUS(status), 0) << "the message does not name the missing permission";
}

TEST_F(FileIoTest, SaveRefusesToReplaceAFolderAndLeavesNothingBehind) {
    fs::create_directories(path("album.apr"));
    const IoResult r = writeFileAtomic(path("album.apr"), std::string("x"));
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.error, "Is a directory");
    int files = 0;
    for ([[maybe_unused]] const auto& e : fs::directory_iterator(home())) ++files;
    EXPECT_EQ(files, 1);
}

}  // namespace
}  // namespace brindle
