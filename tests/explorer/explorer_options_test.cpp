#include "explorer/explorer_options.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/scripted_prompter.h"
#include "support/temp_home.h"

namespace brindle::explorer {
namespace {

using ExplorerOptionsTest = test::TempHomeTest;

const char* const kDefaultsText =
    "BrindleseeExplorer 1\n"
    "view=3\n"
    "sort=Sortname\n"
    "descending=0\n"
    "columns=200,80,90,130,80,60,60,80\n"
    "thumbsize=160\n"
    "filter=0\n"
    "folder=\n"
    "geometry=-1,-1,0,0\n"
    "maximized=0\n"
    "tree=220\n";

ExplorerOptions changed() {
    ExplorerOptions o;
    o.view = ViewMode::Picture;
    o.sort = SortKey::Time;
    o.descending = true;
    o.columnWidths = {1, 2, 3, 4, 5, 6, 7, 4000};
    o.thumbnailSize = 200;
    o.filter = 34;
    o.folder = "/home/u/Bilder\\Ärger\nzwei\r/";
    o.x = -20;
    o.y = 30;
    o.width = 1280;
    o.height = 960;
    o.maximized = true;
    o.treeWidth = 300;
    return o;
}

TEST_F(ExplorerOptionsTest, DefaultsAndARoundTripThroughTheFile) {
    EXPECT_EQ(loadExplorerOptions(home()), ExplorerOptions{});  // no file yet
    EXPECT_EQ(encodeExplorerOptions(ExplorerOptions{}), kDefaultsText);

    test::ScriptedPrompter prompter;
    const ExplorerOptions o = changed();
    ASSERT_TRUE(saveExplorerOptions(home(), o, prompter, Language::German));
    EXPECT_TRUE(prompter.asked.empty());
    EXPECT_EQ(loadExplorerOptions(home()), o);
    const std::string text = readBytes("option.loo");
    EXPECT_NE(text.find("\nsort=SortTime\n"), std::string::npos);
    EXPECT_NE(text.find("\nfolder=/home/u/Bilder\\\\Ärger\\nzwei\\r/\n"), std::string::npos);
    EXPECT_NE(text.find("\ngeometry=-20,30,1280,960\n"), std::string::npos);
    // Only option.loo: nothing else is left in the program directory.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(home()), std::filesystem::directory_iterator{}), 1);
}

TEST_F(ExplorerOptionsTest, BrokenFilesGiveDefaults) {
    const ExplorerOptions defaults;
    EXPECT_EQ(decodeExplorerOptions(""), defaults);
    EXPECT_EQ(decodeExplorerOptions(std::string_view("\x00\x01\xff garbage", 12)), defaults);
    EXPECT_EQ(decodeExplorerOptions("view=1\n"), defaults);  // no head: not our file
    // Half a file keeps what it has.
    const std::string full = encodeExplorerOptions(changed());
    const ExplorerOptions half = decodeExplorerOptions(full.substr(0, full.find("thumbsize")));
    EXPECT_EQ(half.view, ViewMode::Picture);
    EXPECT_EQ(half.columnWidths, changed().columnWidths);
    EXPECT_EQ(half.thumbnailSize, defaults.thumbnailSize);
    EXPECT_EQ(half.folder, "");
    // Bad values keep their defaults, good ones around them still count.
    const ExplorerOptions bad = decodeExplorerOptions(
        "BrindleseeExplorer 1\r\n"
        "view=5\nsort=sorttime\ndescending=2\ncolumns=1,2,3\nthumbsize=99999999999\nfilter=-1\n"
        "folder=ends in \\\ngeometry=1,2,3,x\nmaximized=1\ntree=77\nunknown=1\nno equals sign\n"
        "columns=10,10,10,10,10,10,10,4001\n");
    ExplorerOptions expected;
    expected.maximized = true;
    expected.treeWidth = 77;
    EXPECT_EQ(bad, expected);
    // A file far larger than any settings file is not read.
    std::string huge = kDefaultsText;
    huge.replace(huge.find("view=3"), 6, "view=1");
    huge += std::string(kMaxOptionsFileBytes, '#');
    writeBytes("option.loo", huge);
    EXPECT_EQ(loadExplorerOptions(home()), defaults);
    EXPECT_EQ(decodeExplorerOptions(huge), defaults);
    writeBytes("option.loo", huge.substr(0, 200));
    EXPECT_EQ(loadExplorerOptions(home()).view, ViewMode::List);
}

TEST_F(ExplorerOptionsTest, AFailedSaveSaysSo) {
    std::filesystem::create_directories(path("option.loo/in the way"));
    test::ScriptedPrompter prompter;
    EXPECT_FALSE(saveExplorerOptions(home(), changed(), prompter, Language::German));
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0].rfind("message|Fehler|16|Fehler beim speichern der Optionen: ", 0), 0u)
        << prompter.asked[0];
    EXPECT_GT(prompter.asked[0].size(), std::string("message|Fehler|16|Fehler beim speichern der Optionen: ").size());
    prompter.asked.clear();
    EXPECT_FALSE(saveExplorerOptions(home(), changed(), prompter, Language::English));
    ASSERT_EQ(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0].rfind("message|Error|16|Error while saving the options: ", 0), 0u);
    EXPECT_TRUE(std::filesystem::is_directory(path("option.loo/in the way")));
}

}  // namespace
}  // namespace brindle::explorer
