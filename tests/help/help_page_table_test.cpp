// The page table, the language fallback of page files and the hint store.
#include "help/help_pages.h"

#include <gtest/gtest.h>

#include <set>

#include "album/settings_store.h"
#include "help/hint_store.h"
#include "support/temp_home.h"

using namespace brindle;
using namespace brindle::help;

namespace {

class HelpPageTable : public test::TempHomeTest {};

TEST_F(HelpPageTable, WindowsFindTheirPagesByClassOrObjectName) {
    struct Row {
        const char* className;
        const char* objectName;
        const char* page;
    };
    const Row rows[] = {
        {"brindle::shell::MainWindow", "frmMDI", "main-window"},
        {"brindle::editor::FrmNotePad", "frmNotePad", "page-editor"},
        {"brindle::studio::DesignWindow", "", "photo-design"},
        {"QDialog", "FrmFrageNavigat", "navigation-buttons"},
        {"brindle::properties::FrmFragePanVo", "FrmFragePanVo", "panorama-properties"},
        {"brindle::explorer::FrmBildviewer", "FrmBildviewer", "explorer"},
        {"QWidget", "frmNotePad", "page-editor"},
        {"QDialog", "frmFortschritt", ""},
        {"QMdiArea", "", ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.className) + " / " + row.objectName);
        EXPECT_EQ(pageForWindow(row.className, row.objectName), row.page);
    }
}

TEST_F(HelpPageTable, EveryPageIdIsListedOnceAndEveryClassOnce) {
    std::set<std::string_view> ids, classes;
    for (const HelpTopic& topic : helpTopics()) {
        EXPECT_TRUE(ids.insert(topic.pageId).second) << topic.pageId;
        EXPECT_TRUE(classes.insert(topic.className).second) << topic.className;
    }
    EXPECT_EQ(ids.size(), 27u);
    EXPECT_EQ(ids.count("index"), 0u) << "index is the contents, no window's page";
}

TEST_F(HelpPageTable, PageFileFallsBackToTheOtherLanguageThenToNothing) {
    touch("help/de/options.html");
    touch("help/en/options.html");
    touch("help/de/wizard.html");
    touch("help/en/print.html");
    const std::string root = path("help/");
    EXPECT_EQ(helpPageFile(root, "options", Language::German), root + "de/options.html");
    EXPECT_EQ(helpPageFile(root, "options", Language::English), root + "en/options.html");
    EXPECT_EQ(helpPageFile(root, "wizard", Language::English), root + "de/wizard.html");
    EXPECT_EQ(helpPageFile(root, "print", Language::German), root + "en/print.html");
    EXPECT_EQ(helpPageFile(root, "scanner", Language::German), "");
    // A name that could leave the help folder is no page.
    touch("outside.html");
    touch("help/de/x.html");
    EXPECT_EQ(helpPageFile(root, "../../outside", Language::German), "");
    EXPECT_EQ(helpPageFile(root, "", Language::German), "");
    // A folder named like a page is no page.
    touch("help/en/split.html/inner");
    EXPECT_EQ(helpPageFile(root, "split", Language::English), "");
}

TEST_F(HelpPageTable, MissingPageNoteNamesThePageInBothLanguages) {
    EXPECT_EQ(missingPageHtml("seam-editor", Language::German),
              "<html><body><h2>Hilfeseite fehlt</h2><p>Die Hilfeseite „seam-editor“ ist nicht "
              "installiert.</p>"
              "<p>Bitte installieren Sie Brindlesee erneut, um die Hilfe zu "
              "vervollständigen.</p></body></html>");
    EXPECT_EQ(
        missingPageHtml("a<b", Language::English),
        "<html><body><h2>Help page missing</h2><p>The help page \"a&lt;b\" is not installed.</p>"
        "<p>Please install Brindlesee again to complete the help.</p></body></html>");
}

TEST_F(HelpPageTable, ExternalAddressesAreWebAndMailOnly) {
    EXPECT_TRUE(isExternalAddress("https://example.org/"));
    EXPECT_TRUE(isExternalAddress("HTTP://example.org/"));
    EXPECT_TRUE(isExternalAddress("mailto:someone@example.org"));
    EXPECT_FALSE(isExternalAddress("options.html"));
    EXPECT_FALSE(isExternalAddress("file:///tmp/x.html"));
    EXPECT_FALSE(isExternalAddress("../images/x.png"));
    EXPECT_FALSE(isExternalAddress("http"));
}

TEST_F(HelpPageTable, SwitchedOffHintStaysOffInANewStoreOnTheSameFile) {
    {
        IniSettingsStore store(path("settings.ini"));
        EXPECT_FALSE(hintSwitchedOff(store, kMetafileHint));
        switchHintOff(store, kMetafileHint);
        EXPECT_TRUE(hintSwitchedOff(store, kMetafileHint));
        EXPECT_FALSE(hintSwitchedOff(store, 3)) << "each hint has its own box";
    }
    IniSettingsStore again(path("settings.ini"));
    EXPECT_TRUE(hintSwitchedOff(again, kMetafileHint));
    EXPECT_EQ(again.get("Brindlesee", "Hinweise", "Hinweis2"), "1");
    EXPECT_FALSE(hintSwitchedOff(again, 1));
}

TEST_F(HelpPageTable, MetafileHintSpeaksBothLanguagesOtherHintsKeepTheirText) {
    EXPECT_EQ(hintText(kMetafileHint, Language::German, "ignored"),
              "Das Format wmf oder emf wird von Netscape nicht unterstützt \r\n"
              "Wir empfehlen die Verwendung von JPEG oder PNG Bildern.");
    EXPECT_EQ(hintText(kMetafileHint, Language::English, "ignored"),
              "The format wmf or emf is not supported by Netscape \r\nWe recommend to use JPEG or "
              "PNG pictures.");
    EXPECT_EQ(hintText(7, Language::English, "Sieben"), "Sieben");
}

}  // namespace
