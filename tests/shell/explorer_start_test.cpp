// Where the explorer opens from the command line, and the messages for a
// folder that is gone and an argument that is no folder nor picture.
#include "shell/explorer_start.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/scripted_prompter.h"
#include "support/temp_home.h"

namespace brindle {
namespace {

class ExplorerStartTest : public test::TempHomeTest {};

TEST_F(ExplorerStartTest, APictureOpensItsFolderWithItSelected) {
    touch("Bilder/a.jpg");
    test::ScriptedPrompter prompter;
    const std::vector<std::string> args{path("Bilder/a.jpg")};
    const StartDecision d = decideStart(args, prompter, Language::German);
    ASSERT_EQ(d.startMode, "brindleseeexplorer");
    const ExplorerStart s = explorerStart(args, d, "/fallback", prompter, Language::German);
    EXPECT_EQ(s.folder, path("Bilder"));
    EXPECT_EQ(s.file, path("Bilder/a.jpg"));
    EXPECT_TRUE(prompter.asked.empty());
}

TEST_F(ExplorerStartTest, TheSwitchWithAFolderOpensThatFolder) {
    touch("Fotos/x.png");
    test::ScriptedPrompter prompter;
    for (const std::vector<std::string>& args :
         {std::vector<std::string>{"/brindleseeexplorer", path("Fotos")},
          std::vector<std::string>{"/BrindleseeExplorer", path("Fotos/")}}) {
        const StartDecision d = decideStart(args, prompter, Language::German);
        ASSERT_EQ(d.startMode, "brindleseeexplorer");
        const ExplorerStart s = explorerStart(args, d, "/fallback", prompter, Language::German);
        EXPECT_EQ(std::filesystem::path(s.folder), std::filesystem::path(args[1]));
        EXPECT_TRUE(s.file.empty());
    }
    // The switch alone: the folder the caller knows.
    const std::vector<std::string> alone{"/brindleseeexplorer"};
    EXPECT_EQ(explorerStart(alone, decideStart(alone, prompter, Language::German), "/fallback",
                            prompter, Language::German)
                  .folder,
              "/fallback");
    EXPECT_TRUE(prompter.asked.empty());
}

TEST_F(ExplorerStartTest, AGoneFolderAndABadParameterAreToldInBothLanguages) {
    touch("notiz.txt");
    struct Case {
        std::string arg;
        Language language;
        std::string asked;
    };
    const Case cases[] = {
        {path("weg"), Language::German,
         "message|Brindlesee Explorer|48|Das vorgewählte Verzeichnis ist nicht mehr vorhanden!"},
        {path("weg/"), Language::English,
         "message|Brindlesee Explorer|48|The preselected directory does not exist any more!"},
        {path("notiz.txt"), Language::German,
         "message|Brindlesee Explorer|48|Ungültiger Startparameter:\r" + path("notiz.txt")},
        {path("fehlt.jpg"), Language::English,
         "message|Brindlesee Explorer|48|Invalid start parameter:\r" + path("fehlt.jpg")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.arg);
        test::ScriptedPrompter prompter;
        const std::vector<std::string> args{"/brindleseeexplorer", c.arg};
        const StartDecision d = decideStart(args, prompter, c.language);
        const ExplorerStart s = explorerStart(args, d, "/fallback", prompter, c.language);
        EXPECT_EQ(s.folder, "/fallback");
        EXPECT_TRUE(s.file.empty());
        EXPECT_EQ(prompter.asked, std::vector<std::string>{c.asked});
    }
}

TEST_F(ExplorerStartTest, TheDefaultFolderIsTheLastOneWhileItIsThere) {
    touch("zuletzt/a.jpg");
    EXPECT_EQ(defaultExplorerFolder(path("zuletzt")), path("zuletzt"));
    EXPECT_NE(defaultExplorerFolder(path("gibtsnicht")), path("gibtsnicht"));
}

}  // namespace
}  // namespace brindle
