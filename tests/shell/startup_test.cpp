#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "album/options_dialog.h"
#include "album/options_file.h"
#include "album/page_file.h"
#include "album/paths.h"
#include "shell/startup.h"
#include "support/scripted_prompter.h"
#include "support/temp_home.h"

namespace brindle {
namespace {

namespace fs = std::filesystem;

class StartupTest : public test::TempHomeTest {
protected:
    test::ScriptedPrompter prompter;
    test::RecordingEditorFactory editors;
};

TEST_F(StartupTest, CommandLinesSplitByQuotesAndBlanks) {
    touch("Mein Album.apr");
    using V = std::vector<std::string>;
    EXPECT_EQ(splitCommandLine("/r a.jpg \"b c.jpg\"  d.jpg"), (V{"/r", "a.jpg", "b c.jpg", "d.jpg"}));
    // A whole line naming a file is quoted first, blanks and all.
    EXPECT_EQ(splitCommandLine(path("Mein Album.apr")), (V{path("Mein Album.apr")}));
    EXPECT_EQ(splitCommandLine("\"offen"), (V{"offen"}));
    EXPECT_EQ(splitCommandLine(""), V{});
    EXPECT_EQ(commandLineFromArgs({"/b", "x y.jpg"}), "/b \"x y.jpg\"");

    writeCommandFile(home(), "/b \"x y.jpg\"");
    writeCommandFile(home(), "neu");
    EXPECT_EQ(readBytes("bef.txt"), "neu");
}

TEST_F(StartupTest, SwitchesPicturesAndTheQuestionForAMissingPicture) {
    touch("fotos/Strand.JPG");
    StartDecision explorer = decideStart({path("fotos/Strand.JPG")}, prompter, Language::German);
    EXPECT_EQ(explorer.startMode, "brindleseeexplorer");
    EXPECT_EQ(explorer.pictureDirectory, path("fotos/"));
    EXPECT_EQ(explorer.explorerFile, path("fotos/Strand.JPG"));

    StartDecision tool = decideStart({"/g", path("fotos/Strand.JPG")}, prompter, Language::German);
    EXPECT_EQ(tool.startMode, "Rezise");
    EXPECT_EQ(tool.toolPictures, std::vector<std::string>{path("fotos/Strand.JPG")});
    EXPECT_TRUE(prompter.asked.empty());

    // A path beginning with "/r..." is a file, not the switch.
    StartDecision plain = decideStart({path("rot.apr")}, prompter, Language::German);
    EXPECT_EQ(plain.startMode, "");

    prompter.answers = {kYes, kNo};
    StartDecision asked = decideStart({"/r", path("fehlt.jpg")}, prompter, Language::German);
    EXPECT_EQ(prompter.asked.at(0),
              "message|Brindlesee|36|Brindlesee wurde im Modus: RedEye gestartet.\rEs wurde jedoch kein gültiges "
              "Bild angegeben.\rWollen Sie Brindlesee normal starten?\r(Nein beendet das Programm)");
    EXPECT_EQ(asked.startMode, "");
    EXPECT_FALSE(asked.quit);
    StartDecision quit = decideStart({"/b"}, prompter, Language::English);
    EXPECT_EQ(prompter.asked.at(1),
              "message|Brindlesee|36|Brindlesee start by mode: Bildbearbeitung \rHowever, no valid picture was "
              "indicated.\rWould you start Brindlesee regular?\r(No terminate the programm)");
    EXPECT_TRUE(quit.quit);
    EXPECT_TRUE(hasMediaSuffix("a.KOALA"));
    EXPECT_FALSE(hasMediaSuffix("a.apr"));
}

TEST_F(StartupTest, APageOnTheCommandLineGivesANewAlbumWithTwoPages) {
    AlbumRecord a;
    ladeStandards(a, home());
    PageRecord p = a.pageDefaults;
    p.texts.add().text = "geladen";
    ASSERT_TRUE(writePageFile(path("Extra.apg"), p).ok());
    IniSettingsStore settings(path("settings.ini"));
    Session s(home(), prompter, settings, editors, diagnoseSink(home()));
    startAlbumApplication(s, {path("Extra.apg")});
    ASSERT_EQ(s.album().pageCount, 2);
    EXPECT_EQ(s.album().pages[1].title, "Seite1");
    EXPECT_EQ(s.album().pages[2].fileName, "Extra.apg");
    ASSERT_GT(s.album().pages[2].slot, 0);
    ASSERT_GE(s.page(s.album().pages[2].slot).texts.upper(), 1);
    EXPECT_EQ(s.page(s.album().pages[2].slot).texts[1].text, "geladen");
    EXPECT_TRUE(fs::is_directory(path("Temp")));
    EXPECT_FALSE(dateiVorhanden(path("Brindt.txt")));  // no test mode, no log
}

TEST_F(StartupTest, SeveralFilesFromAFileManagerOpenTheAlbumOrEveryPage) {
    AlbumRecord a;
    ladeStandards(a, home());
    PageRecord p = a.pageDefaults;
    ASSERT_TRUE(writePageFile(path("Erste.apg"), p).ok());
    ASSERT_TRUE(writePageFile(path("Zweite Seite.apg"), p).ok());
    touch("Reise.apr");
    touch("Bild.jpg");
    using V = std::vector<std::string>;
    EXPECT_EQ(albumFilesToOpen({path("Bild.jpg"), path("Reise.apr"), path("Erste.apg")}), V{path("Reise.apr")});
    EXPECT_EQ(albumFilesToOpen({path("Erste.apg"), path("fehlt.apg"), path("Zweite Seite.apg")}),
              (V{path("Erste.apg"), path("Zweite Seite.apg")}));
    // A path split at its blank is still the one file.
    EXPECT_EQ(albumFilesToOpen({path("Zweite"), "Seite.apg"}), V{path("Zweite Seite.apg")});
    EXPECT_EQ(albumFilesToOpen({path("Bild.jpg")}), V{path("Bild.jpg")});
    EXPECT_EQ(albumFilesToOpen({}), V{});

    IniSettingsStore settings(path("settings.ini"));
    Session s(home(), prompter, settings, editors, diagnoseSink(home()));
    startAlbumApplication(s, {path("Erste.apg"), path("Zweite Seite.apg")});
    ASSERT_EQ(s.album().pageCount, 3);
    EXPECT_EQ(s.album().pages[2].fileName, "Erste.apg");
    EXPECT_EQ(s.album().pages[3].fileName, "Zweite Seite.apg");

    const fs::path before = fs::current_path();
    fs::current_path(home());
    const V made = absoluteFileArguments({"/r", "Bild.jpg", "fehlt.jpg"});
    fs::current_path(before);
    EXPECT_EQ(made, (V{"/r", path("Bild.jpg"), "fehlt.jpg"}));
}

TEST_F(StartupTest, TheLogIsWrittenOnlyInTestMode) {
    touch("testmodus.txt");
    IniSettingsStore settings(path("settings.ini"));
    Session s(home(), prompter, settings, editors, diagnoseSink(home()));
    EXPECT_TRUE(s.state().testMode);
    startAlbumApplication(s, {});
    std::string logText = readBytes("Brindt.txt");
    EXPECT_EQ(logText.rfind("MDILoad Command=\" -> Album Neu\nModule 2 Album Neu Start\n", 0), 0u) << logText;
    touch("ein album.apr");
    startAlbumApplication(s, {path("ein album.apr")});
    EXPECT_NE(readBytes("Brindt.txt").find("MDILoad case apr Command=" + path("ein album.apr") + "\n"),
              std::string::npos);
}

TEST_F(StartupTest, FirstStartRunsOnDefaultsAndWritesTheOptionsAtTheEnd) {
    IniSettingsStore settings(path("settings.ini"));
    Session s(home(), prompter, settings, editors);
    s.state().options = loadOptions(home());
    startAlbumApplication(s, {});
    EXPECT_EQ(s.language(), Language::German);
    touch("Temp/brind1.tmp");
    touch("Temp/bleibt.txt");
    finishSession(s);
    EXPECT_FALSE(dateiVorhanden(path("Temp/brind1.tmp")));
    EXPECT_TRUE(dateiVorhanden(path("Temp/bleibt.txt")));
    OptionsRecord written;
    ASSERT_TRUE(readOptionsFile(path("optionen"), written).ok());
    EXPECT_EQ(written.language, "deutsch");
    EXPECT_EQ(written.explorerColumns.upper(), 20);
}

TEST_F(StartupTest, OptionsDialogOkSwitchesLanguageAndMarksTheAlbum) {
    IniSettingsStore settings(path("settings.ini"));
    Session s(home(), prompter, settings, editors);
    startAlbumApplication(s, {});
    ASSERT_EQ(s.album().modified, kFalse);
    int switches = 0;
    std::vector<int> redrawn;
    OptionsDialogEffects effects{[&] { ++switches; }, [&](int slot) { redrawn.push_back(slot); }};

    OptionsDialogValues same = currentOptionValues(s);
    applyOptionsDialog(s, same, effects);
    EXPECT_EQ(switches, 0);
    EXPECT_EQ(s.album().modified, kTrue);  // even with no value changed
    EXPECT_EQ(redrawn, std::vector<int>{1});

    OptionsDialogValues v = same;
    v.language = "englisch";
    v.insertOriginalSize = true;
    v.htmlReduce = false;
    v.gridUse = true;
    v.gridWidth = 12;
    v.menuColor2 = 0x123456;
    applyOptionsDialog(s, v, effects);
    EXPECT_EQ(switches, 1);
    EXPECT_EQ(s.language(), Language::English);
    EXPECT_EQ(s.state().options.language, "englisch");
    EXPECT_EQ(s.album().insertOriginalSize, -1);
    EXPECT_EQ(s.album().htmlReduce, kFalse);
    EXPECT_EQ(s.state().options.gridUse, kTrue);
    EXPECT_EQ(s.state().options.gridWidth, 12);
    EXPECT_EQ(s.album().menuColor2, 0x123456u);
    EXPECT_TRUE(isNumericKey('7') && isNumericKey(8) && isNumericKey(13) && !isNumericKey('-'));
}

TEST_F(StartupTest, SeedingCopiesResourcesButKeepsTheUsersFiles) {
    const std::string res = path("res/");
    touch("res/Album.vor");
    touch("res/Menü/mtmcode.js");
    touch("res/help/de/index.html");
    writeBytes("prog/Album.vor", "mine");
    ASSERT_TRUE(seedProgramDirectory(path("prog/"), res));
    EXPECT_EQ(readBytes("prog/Album.vor"), "mine");
    EXPECT_TRUE(dateiVorhanden(path("prog/Menü/mtmcode.js")));
    EXPECT_FALSE(fs::exists(path("prog/help")));
    EXPECT_TRUE(fs::is_directory(path("prog/Temp")));
    EXPECT_EQ(resolveProgramDirectory(), home());
}

TEST_F(StartupTest, ResourcesAreFoundFromTheProgramsOwnPlace) {
    // Installed: bin/ beside share/brindlesee.
    touch("usr/bin/brindlesee");
    touch("usr/share/brindlesee/Album.vor");
    EXPECT_EQ(resourceDirectoryBeside(path("usr/bin/brindlesee")), path("usr/share/brindlesee/"));
    // The build tree: programs, tests and benchmarks two folders down.
    touch("build/resources/install/Menü/mtmcode.js");
    EXPECT_EQ(resourceDirectoryBeside(path("build/src/shell/brindlesee")), path("build/resources/install/"));
    EXPECT_EQ(resourceDirectoryBeside(path("build/tests/shell/shell_tests")), path("build/resources/install/"));
    // An empty share folder does not count, and nothing found is "", never "/".
    touch("opt/bin/brindlesee");
    fs::create_directories(path("opt/share/brindlesee"));
    EXPECT_EQ(resourceDirectoryBeside(path("opt/bin/brindlesee")), "");

    ::setenv("BRINDLESEE_RESOURCES", path("anders").c_str(), 1);
    EXPECT_EQ(installedResourceDirectory(), path("anders/"));
    ::unsetenv("BRINDLESEE_RESOURCES");
    // This test program itself lives in the build tree.
    EXPECT_TRUE(dateiVorhanden(installedResourceDirectory() + "Album.vor"));
}

}  // namespace
}  // namespace brindle
