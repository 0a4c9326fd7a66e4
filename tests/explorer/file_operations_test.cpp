#include "explorer/file_operations.h"

#include <gtest/gtest.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <set>

#include "support/scripted_prompter.h"
#include "support/temp_home.h"

namespace brindle::explorer {
namespace {

namespace fs = std::filesystem;
using test::ScriptedPrompter;

class FileOperationsTest : public test::TempHomeTest {
protected:
    ScriptedPrompter prompter;
    std::vector<std::string> statuses;
    std::vector<std::string> dropped;

    FileOperations ops(Language language = Language::German) {
        OperationCallbacks cb;
        cb.status = [this](const std::string& s) { statuses.push_back(s); };
        cb.dropThumbnail = [this](const std::string& p) { dropped.push_back(p); };
        return FileOperations(prompter, language, cb);
    }
    bool exists(const std::string& name) const { return fs::exists(path(name)); }
};

TEST(CopyNames, CountUpFromKopieVon) {
    std::set<std::string> taken;
    auto isTaken = [&](const std::string& n) { return taken.count(n) > 0; };
    EXPECT_EQ(copyName("a.jpg", Language::German, isTaken), "Kopie von a.jpg");
    taken.insert("Kopie von a.jpg");
    EXPECT_EQ(copyName("a.jpg", Language::German, isTaken), "Kopie1 von a.jpg");
    taken.insert("Kopie1 von a.jpg");
    EXPECT_EQ(copyName("a.jpg", Language::German, isTaken), "Kopie2 von a.jpg");
    EXPECT_EQ(copyName("a.jpg", Language::English, isTaken), "Copy of a.jpg");
    taken.insert("Copy of a.jpg");
    EXPECT_EQ(copyName("a.jpg", Language::English, isTaken), "Copy1 of a.jpg");
}

TEST_F(FileOperationsTest, PastingTwiceIntoItsOwnFolderGivesKopieVonThenKopie1Von) {
    writeBytes("pics/a.jpg", "picture bytes");
    struct timespec times[2] = {{946684800, 0}, {946684800, 0}};  // 2000-01-01
    ASSERT_EQ(utimensat(AT_FDCWD, path("pics/a.jpg").c_str(), times, 0), 0);
    ExplorerClipboard clip{{path("pics/a.jpg")}, ClipboardMode::Copy};
    FileOperations f = ops();

    OperationResult first = f.paste(clip, path("pics"));
    OperationResult second = f.paste(clip, path("pics/"));

    EXPECT_EQ(first.done, std::vector<std::string>{path("pics/Kopie von a.jpg")});
    EXPECT_EQ(second.done, std::vector<std::string>{path("pics/Kopie1 von a.jpg")});
    EXPECT_EQ(readBytes("pics/Kopie von a.jpg"), "picture bytes");
    EXPECT_EQ(readBytes("pics/Kopie1 von a.jpg"), "picture bytes");
    EXPECT_EQ(readBytes("pics/a.jpg"), "picture bytes");
    EXPECT_TRUE(prompter.asked.empty());
    EXPECT_EQ(statuses, (std::vector<std::string>{"Start Einfügen", "Kopiere: Kopie von a.jpg", "Fertig Kopieren",
                                                  "Start Einfügen", "Kopiere: Kopie1 von a.jpg",
                                                  "Fertig Kopieren"}));
    // A copy keeps the day the picture was taken.
    struct stat st {};
    ASSERT_EQ(stat(path("pics/Kopie1 von a.jpg").c_str(), &st), 0);
    EXPECT_EQ(st.st_mtim.tv_sec, 946684800);
    // Only the folder's own files: no part file is left behind.
    EXPECT_EQ(std::distance(fs::directory_iterator(path("pics")), fs::directory_iterator{}), 3);
    // Moving a file onto itself leaves it alone.
    OperationResult moved = f.paste({{path("pics/a.jpg")}, ClipboardMode::Move}, path("pics"));
    EXPECT_TRUE(moved.done.empty());
    EXPECT_EQ(readBytes("pics/a.jpg"), "picture bytes");
}

TEST_F(FileOperationsTest, TheOverwriteQuestionTakesEachAnswer) {
    for (const char* n : {"a", "b", "c", "d"}) {
        writeBytes(std::string("src/") + n + ".jpg", std::string("new ") + n);
        writeBytes(std::string("dst/") + n + ".jpg", std::string("old ") + n);
    }
    ExplorerClipboard clip{{path("src/a.jpg"), path("src/b.jpg"), path("src/c.jpg"), path("src/d.jpg")},
                           ClipboardMode::Copy};
    prompter.answers = {kYes, kNo, kYesToAll};
    OperationResult r = ops().paste(clip, path("dst"));

    ASSERT_EQ(prompter.asked.size(), 3u);  // yes to all asks no more
    EXPECT_EQ(prompter.asked[0],
              "yesnoall|Warnung|Datei: a.jpg existiert bereits!\rSoll die vorhandene Datei überschrieben werden?");
    EXPECT_EQ(prompter.asked[1],
              "yesnoall|Warnung|Datei: b.jpg existiert bereits!\rSoll die vorhandene Datei überschrieben werden?");
    EXPECT_EQ(readBytes("dst/a.jpg"), "new a");
    EXPECT_EQ(readBytes("dst/b.jpg"), "old b");
    EXPECT_EQ(readBytes("dst/c.jpg"), "new c");
    EXPECT_EQ(readBytes("dst/d.jpg"), "new d");
    EXPECT_EQ(r.done, (std::vector<std::string>{path("dst/a.jpg"), path("dst/c.jpg"), path("dst/d.jpg")}));
    EXPECT_FALSE(r.cancelled);

    // No to all: one question, nothing replaced.
    for (const char* n : {"a", "b", "c", "d"}) writeBytes(std::string("dst/") + n + ".jpg", "old");
    prompter.asked.clear();
    prompter.answers = {kNoToAll};
    r = ops(Language::English).paste(clip, path("dst"));
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0],
              "yesnoall|Warning|File: a.jpg allraedy exist!\rShould the existing file be overwrite?");
    EXPECT_TRUE(r.done.empty());
    for (const char* n : {"a", "b", "c", "d"}) EXPECT_EQ(readBytes(std::string("dst/") + n + ".jpg"), "old");
}

TEST_F(FileOperationsTest, CancelStopsTheRestOfTheList) {
    writeBytes("src/x.jpg", "x");
    writeBytes("src/a.jpg", "new a");
    writeBytes("src/e.jpg", "e");
    writeBytes("dst/a.jpg", "old a");
    prompter.answers = {kCancel};
    OperationResult r =
        ops().paste({{path("src/x.jpg"), path("src/a.jpg"), path("src/e.jpg")}, ClipboardMode::Move}, path("dst"));

    EXPECT_TRUE(r.cancelled);
    EXPECT_EQ(r.done, std::vector<std::string>{path("dst/x.jpg")});
    EXPECT_EQ(readBytes("dst/a.jpg"), "old a");
    EXPECT_FALSE(exists("dst/e.jpg"));
    EXPECT_TRUE(exists("src/a.jpg"));
    EXPECT_TRUE(exists("src/e.jpg"));
    EXPECT_FALSE(exists("src/x.jpg"));  // moved before the question
    EXPECT_EQ(statuses.back(), "Fertig Kopieren");
}

TEST_F(FileOperationsTest, MoveDeletesTheSourceOnlyAfterACompleteCopy) {
    writeBytes("src/a.jpg", "moved bytes");
    writeBytes("src/b.jpg", "stays");
    fs::create_directories(path("dst/b.jpg"));  // a folder in the way: the copy cannot be made
    prompter.answers = {kYes};
    OperationResult r = ops().paste({{path("src/a.jpg"), path("src/b.jpg")}, ClipboardMode::Move}, path("dst"));

    EXPECT_FALSE(exists("src/a.jpg"));
    EXPECT_EQ(readBytes("dst/a.jpg"), "moved bytes");
    EXPECT_EQ(readBytes("src/b.jpg"), "stays");
    EXPECT_TRUE(fs::is_directory(path("dst/b.jpg")));
    EXPECT_EQ(r.done, std::vector<std::string>{path("dst/a.jpg")});
    EXPECT_EQ(r.failed, 1);
    ASSERT_EQ(prompter.asked.size(), 2u);
    EXPECT_EQ(prompter.asked[1], "message|Fehler|16|Fehler beim kopieren der Datei: " + path("src/b.jpg") +
                                     " zu " + path("dst/b.jpg") + "\rBeschreibung: Is a directory");
    EXPECT_EQ(dropped, std::vector<std::string>{path("src/a.jpg")});
    // No part file stays behind.
    EXPECT_EQ(std::distance(fs::directory_iterator(path("dst")), fs::directory_iterator{}), 2);
}

TEST_F(FileOperationsTest, DeleteMovesFilesToTheTrashAndDropsTheirThumbnails) {
    // The trash of a test's own home: same file system as the files, so
    // Qt takes the home trash under XDG_DATA_HOME.
    const std::string oldHome = std::getenv("HOME") ? std::getenv("HOME") : "";
    ::setenv("HOME", home().c_str(), 1);
    ::setenv("XDG_DATA_HOME", path("xdg").c_str(), 1);
    fs::create_directories(path("xdg"));
    writeBytes("pics/a.jpg", "a");
    writeBytes("pics/b.jpg", "b");
    FileOperations f = ops();

    prompter.answers = {kNo};
    OperationResult r = f.deleteFiles({path("pics/a.jpg")});
    EXPECT_TRUE(r.cancelled);
    EXPECT_TRUE(exists("pics/a.jpg"));
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0],
              "message|Brindlesee|36|Wollen Sie alle ausgewählten Bilder (Dateien) löschen?\r"
              "Die Dateien werden in den Papierkorb verschoben und lassen sich von dort zurückholen.");

    prompter.answers = {kYes};
    r = f.deleteFiles({path("pics/a.jpg"), path("pics/gone.jpg"), path("pics/b.jpg")});
    EXPECT_EQ(r.done, (std::vector<std::string>{path("pics/a.jpg"), path("pics/b.jpg")}));
    EXPECT_FALSE(exists("pics/a.jpg"));
    EXPECT_FALSE(exists("pics/b.jpg"));
    EXPECT_EQ(readBytes("xdg/Trash/files/a.jpg"), "a");
    EXPECT_TRUE(exists("xdg/Trash/info/b.jpg.trashinfo"));
    EXPECT_EQ(dropped, (std::vector<std::string>{path("pics/a.jpg"), path("pics/b.jpg")}));
    ASSERT_EQ(prompter.asked.size(), 3u);
    EXPECT_EQ(prompter.asked[2].rfind("message|Fehler|16|Fehler beim Löschen der Datei gone.jpg aufgetreten.\r"
                                      "Fehlerbeschreibung: ",
                                      0),
              0u)
        << prompter.asked[2];
    EXPECT_EQ(r.failed, 1);

    prompter.asked.clear();
    prompter.answers = {kNo};
    ops(Language::English).deleteFiles({path("pics/x.apr")}, true);
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0],
              "message|Brindlesee|36|Would you delete the selected albumtemplate?\rIt is moved to the trash.");
    ::unsetenv("XDG_DATA_HOME");
    ::setenv("HOME", oldHome.c_str(), 1);
}

TEST_F(FileOperationsTest, TheTemplateFolderIsKnownByItsPlace) {
    fs::create_directories(path("Vorlagen"));
    fs::create_directories(path("pics"));
    EXPECT_TRUE(isTemplateFolder(home(), path("Vorlagen")));
    EXPECT_TRUE(isTemplateFolder(home(), path("pics/../Vorlagen/")));
    EXPECT_FALSE(isTemplateFolder(home(), path("pics")));
    EXPECT_FALSE(isTemplateFolder(home(), path("pics/Vorlagen")));
}

TEST_F(FileOperationsTest, RenameOneNeverReplacesAnotherFile) {
    writeBytes("pics/a.jpg", "a");
    writeBytes("pics/c.jpg", "c");
    FileOperations f = ops();
    prompter.inputs = {"b.jpg"};
    EXPECT_EQ(f.renameOne(path("pics/a.jpg")), path("pics/b.jpg"));
    EXPECT_EQ(prompter.asked[0], "input|Umbenennen|Neuer Name:|a.jpg");
    EXPECT_EQ(readBytes("pics/b.jpg"), "a");
    EXPECT_EQ(dropped, std::vector<std::string>{path("pics/a.jpg")});

    prompter.asked.clear();
    prompter.inputs = {"c.jpg"};
    EXPECT_EQ(f.renameOne(path("pics/b.jpg")), std::nullopt);
    EXPECT_EQ(readBytes("pics/b.jpg"), "a");
    EXPECT_EQ(readBytes("pics/c.jpg"), "c");
    ASSERT_EQ(prompter.asked.size(), 2u);
    EXPECT_EQ(prompter.asked[1],
              "message|Fehler|16|Umbenennen des Bildes b.jpg mißlungen!\r"
              "Error: Eine Datei mit dem Namen c.jpg gibt es bereits; sie wird nicht überschrieben.");

    prompter.asked.clear();
    EXPECT_EQ(f.renameOne(path("pics/b.jpg")), std::nullopt);  // cancelled: no input
    EXPECT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(f.renameTo(path("pics/b.jpg"), "x/y.jpg"), std::nullopt);
    EXPECT_EQ(prompter.asked.back(), "message|Fehler|16|Umbenennen des Bildes b.jpg mißlungen!\rError: Ungültiger Dateiname");
}

TEST(RenameRules, ReplaceWithAndWithoutCaseAndAllSmall) {
    RenameRule any{"img", "Foto", false, false};
    EXPECT_EQ(renamedName("IMG_01.JPG", any), "Foto_01.JPG");
    EXPECT_EQ(renamedName("img_img.jpg", any), "Foto_Foto.jpg");
    EXPECT_EQ(renamedName("Ärger Img.png", any), "Ärger Foto.png");
    RenameRule exact{"IMG", "Foto", true, false};
    EXPECT_EQ(renamedName("IMG_01.JPG", exact), "Foto_01.JPG");
    EXPECT_EQ(renamedName("img_02.jpg", exact), "img_02.jpg");
    RenameRule umlaut{"ä", "ae", false, false};
    EXPECT_EQ(renamedName("ÄRGER.JPG", umlaut), "aeRGER.JPG");
    RenameRule lower{"ignored", "x", false, true};
    EXPECT_EQ(renamedName("ÄRGER ÜBER ÖL × 2.JPG", lower), "ärger über öl × 2.jpg");
}

TEST_F(FileOperationsTest, RenameManyByEitherRule) {
    writeBytes("pics/IMG_01.JPG", "1");
    writeBytes("pics/img_02.jpg", "2");
    writeBytes("pics/Urlaub.png", "3");
    FileOperations f = ops();

    OperationResult r = f.renameMany({path("pics/IMG_01.JPG"), path("pics/img_02.jpg"), path("pics/Urlaub.png")},
                                     {"IMG", "Foto", true, false});
    EXPECT_EQ(r.done, std::vector<std::string>{path("pics/Foto_01.JPG")});
    EXPECT_TRUE(exists("pics/img_02.jpg"));

    r = f.renameMany({path("pics/Foto_01.JPG"), path("pics/img_02.jpg")}, {"foto", "img", false, false});
    EXPECT_EQ(r.done, std::vector<std::string>{path("pics/img_01.JPG")});

    writeBytes("pics/img_01.jpg", "taken");
    r = f.renameMany({path("pics/img_01.JPG"), path("pics/Urlaub.png")}, {"", "", false, true});
    EXPECT_EQ(r.done, std::vector<std::string>{path("pics/urlaub.png")});
    EXPECT_EQ(r.failed, 1);
    EXPECT_EQ(readBytes("pics/img_01.jpg"), "taken");
    EXPECT_EQ(readBytes("pics/img_01.JPG"), "1");
    EXPECT_TRUE(prompter.asked.back().find("Eine Datei mit dem Namen img_01.jpg gibt es bereits") !=
                std::string::npos);

    prompter.asked.clear();
    r = f.renameMany({path("pics/urlaub.png")}, {"", "x", false, false});
    EXPECT_TRUE(r.cancelled);
    EXPECT_EQ(prompter.asked, std::vector<std::string>{"message|Hinweis|64|Bitte geben Sie erst ein Suchkriterium ein"});
    prompter.asked.clear();
    ops(Language::English).renameMany({path("pics/urlaub.png")}, {"", "x", true, false});
    EXPECT_EQ(prompter.asked, std::vector<std::string>{"message|Information|64|Please fill in an searchstring"});
    EXPECT_TRUE(exists("pics/urlaub.png"));
}

TEST_F(FileOperationsTest, NewFolderNamesCountUpWhenTaken) {
    fs::create_directories(path("pics"));
    FileOperations f = ops();
    prompter.inputs = {"Neuer Ordner", "Neuer Ordner", "Neuer Ordner"};
    EXPECT_EQ(f.newFolder(path("pics")), path("pics/Neuer Ordner/"));
    EXPECT_EQ(f.newFolder(path("pics")), path("pics/Neuer Ordner1/"));
    EXPECT_EQ(f.newFolder(path("pics")), path("pics/Neuer Ordner2/"));
    EXPECT_TRUE(fs::is_directory(path("pics/Neuer Ordner2")));
    ASSERT_EQ(prompter.asked.size(), 5u);
    EXPECT_EQ(prompter.asked[0],
              "input|Neuen Ordner erstellen|Bitte geben Sie den Namen des neuen Verzeichnisses an|Neuer Ordner");
    EXPECT_EQ(prompter.asked[2], "message|Neuen Ordner erstellen|64|Verzeichnis existierte bereits! Es wurde das "
                                 "Verzeichnis: Neuer Ordner1 neu erstellt");

    prompter.asked.clear();
    EXPECT_EQ(ops(Language::English).newFolder(path("pics")), std::nullopt);  // cancelled
    EXPECT_EQ(prompter.asked,
              std::vector<std::string>{"input|Create new folder|Please enter the name of the new directory|New Folder"});
    prompter.inputs = {"Neuer Ordner"};
    prompter.asked.clear();
    EXPECT_EQ(ops(Language::English).newFolder(path("pics")), path("pics/Neuer Ordner3/"));
    EXPECT_EQ(prompter.asked.back(),
              "message|Create new folder|64|Directory allready exist! The new directory get the name: Neuer Ordner3");
    prompter.inputs = {"../out"};
    EXPECT_EQ(f.newFolder(path("pics")), std::nullopt);
    EXPECT_FALSE(exists("out"));
}

}  // namespace
}  // namespace brindle::explorer
