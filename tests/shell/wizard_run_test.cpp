// The wizard's generation without windows: albums and pages on disk with
// the pictures in rows, the frame on each, the design as background, a
// cancel that leaves a valid album, and plans refused before anything is written.
#include <gtest/gtest.h>

#include <filesystem>

#include "album/album_file.h"
#include "album/page_file.h"
#include "shell/wizard_run.h"
#include "support/session_fixture.h"
#include "wizard_pictures.h"

namespace brindle::wizard {
namespace {

namespace fs = std::filesystem;

class WizardRunTest : public test::SessionTest {
protected:
    void SetUp() override {
        SessionTest::SetUp();
        // The default template sets the rows: two per row, 100 x 50, gaps 9.
        AlbumRecord t;
        ladeStandards(t, home());
        t.insertInRows = kTrue;
        t.insertRows = 2;
        t.insertWidth = 100;
        t.insertHeight = 50;
        t.insertGapX = 9;
        t.insertGapY = 9;
        t.keepAspect = kFalse;
        t.insertOriginalSize = 0;
        ASSERT_TRUE(writeAlbumFile(path("Album.vor"), t).ok());
        for (int i = 1; i <= 5; ++i) writeBytes("bilder/b" + std::to_string(i) + ".png", test::pngHeader(400 + i, 300));
        touch("vorlagen/Blau.jpg");
        start();
    }
    std::string pic(int i) { return path("bilder/b" + std::to_string(i) + ".png"); }
    WizardPlan plan() {
        WizardPlan p;
        p.targetDirectory = path("Urlaub");
        p.design = path("vorlagen/Blau.jpg");
        p.pages = {{"Strand", {pic(1), pic(2), pic(3)}}, {"Berge", {pic(4), pic(5)}}};
        p.frame.on = true;
        p.frame.width = 10;
        p.frame.light = 40;
        p.frame.shadow = 60;
        p.frame.colour = 0x0000FF;
        return p;
    }
    PageRecord readPage(const std::string& name) {
        PageFile f;
        EXPECT_TRUE(readPageFile(path("Urlaub/" + name), {}, f).ok()) << name;
        return f.page;
    }
    struct Box {
        int left, top, width, height;
        bool operator==(const Box&) const = default;
    };
    static Box boxOf(const PictureElement& p) { return {p.left, p.top, p.width, p.height}; }
};

TEST_F(WizardRunTest, TwoPagesWithFivePicturesWriteTheAlbumWithRowsAndFrames) {
    int progressCalls = 0;
    std::vector<std::string> progressPages;
    WizardCallbacks cb;
    cb.progress = [&](int done, int total, const std::string& page) {
        EXPECT_EQ(done, progressCalls++);
        EXPECT_EQ(total, 2);
        progressPages.push_back(page);
    };
    const WizardResult r = runWizard(*session, plan(), nullptr, cb);
    ASSERT_TRUE(r.ok) << r.error;
    EXPECT_EQ(r.pagesWritten, 2);
    EXPECT_EQ(r.albumPath, path("Urlaub/Urlaub.apr"));
    EXPECT_EQ(progressPages, (std::vector<std::string>{"Strand", "Berge", ""}));
    EXPECT_TRUE(prompter.asked.empty()) << prompter.asked.front();

    AlbumFile album;
    ASSERT_TRUE(readAlbumFile(path("Urlaub/Urlaub.apr"), album).ok());
    ASSERT_EQ(album.album.pages.upper(), 2);
    EXPECT_EQ(album.album.pageCount, 2);
    EXPECT_EQ(album.album.pages[1].title, "Strand");
    EXPECT_EQ(album.album.pages[1].fileName, "Strand.apg");
    EXPECT_EQ(album.album.pages[1].directory, path("Urlaub/"));
    EXPECT_EQ(album.album.pages[2].title, "Berge");
    EXPECT_EQ(album.album.pages[2].fileName, "Berge.apg");
    EXPECT_EQ(album.album.pageDefaults.background, path("vorlagen/Blau.jpg"));
    EXPECT_EQ(album.album.coverDefaults.background, path("vorlagen/Blau.jpg"));

    // Frame 10: rows start at gap + frame (19) and the gaps widen by twice
    // the frame (29), so framed boxes of 100 x 50 never touch.
    const PageRecord strand = readPage("Strand.apg");
    EXPECT_EQ(strand.background, path("vorlagen/Blau.jpg"));
    ASSERT_EQ(strand.pictures.upper(), 3);
    const Box expected[] = {{19, 19, 100, 50}, {148, 19, 100, 50}, {19, 98, 100, 50}};
    for (int i = 1; i <= 3; ++i) {
        SCOPED_TRACE("Strand picture " + std::to_string(i));
        const PictureElement& p = strand.pictures[i];
        EXPECT_EQ(boxOf(p), expected[i - 1]);
        EXPECT_EQ(p.path, pic(i));
        EXPECT_EQ(p.hyperlink, "<vollbild>");
        EXPECT_EQ(p.pictureWidth, 400 + i);
        EXPECT_EQ(p.pictureHeight, 300);
        EXPECT_EQ(p.ext.extText[0], "10,40,60,255,None,1,");
        EXPECT_EQ(p.ext.extText[2], "120");
        EXPECT_EQ(p.ext.extText[3], "70");
        EXPECT_FALSE(isTrue(p.deleted));
    }
    ASSERT_EQ(strand.stack.upper(), 3);
    EXPECT_EQ(strand.stack[3].index, 3);

    const PageRecord berge = readPage("Berge.apg");
    ASSERT_EQ(berge.pictures.upper(), 2);
    EXPECT_EQ(boxOf(berge.pictures[1]), (Box{19, 19, 100, 50}));
    EXPECT_EQ(boxOf(berge.pictures[2]), (Box{148, 19, 100, 50}));
    EXPECT_EQ(berge.pictures[2].path, pic(5));
}

TEST_F(WizardRunTest, WithoutFrameThePicturesStartOneGapInAndKeepTheirSize) {
    WizardPlan p = plan();
    p.frame.on = false;
    p.design.clear();
    ASSERT_TRUE(runWizard(*session, p, nullptr).ok);
    const PageRecord strand = readPage("Strand.apg");
    ASSERT_EQ(strand.pictures.upper(), 3);
    EXPECT_EQ(boxOf(strand.pictures[2]), (Box{118, 9, 100, 50}));
    EXPECT_EQ(boxOf(strand.pictures[3]), (Box{9, 68, 100, 50}));
    EXPECT_EQ(strand.pictures[3].ext.extText[0], "");
    EXPECT_EQ(strand.pictures[3].ext.extText[2], "100");
    EXPECT_NE(strand.background, path("vorlagen/Blau.jpg"));
}

TEST_F(WizardRunTest, OneEmptyPageMakesAnAlbumOfOneEmptyPage) {
    WizardPlan p = plan();
    p.pages = {{pageName(Language::German, 1), {}}};
    ASSERT_TRUE(runWizard(*session, p, nullptr).ok);
    AlbumFile album;
    ASSERT_TRUE(readAlbumFile(path("Urlaub/Urlaub.apr"), album).ok());
    ASSERT_EQ(album.album.pages.upper(), 1);
    EXPECT_EQ(album.album.pages[1].title, "WSeite1");
    EXPECT_EQ(readPage("WSeite1.apg").pictures.upper(), 0);
}

TEST_F(WizardRunTest, CancelAfterTheFirstPageLeavesAValidAlbumOfThatPage) {
    int asked = 0;
    WizardCallbacks cb;
    cb.cancelled = [&] { return ++asked > 1; };
    const WizardResult r = runWizard(*session, plan(), nullptr, cb);
    EXPECT_FALSE(r.ok);
    EXPECT_TRUE(r.cancelled);
    EXPECT_EQ(r.pagesWritten, 1);
    AlbumFile album;
    ASSERT_TRUE(readAlbumFile(path("Urlaub/Urlaub.apr"), album).ok());
    ASSERT_EQ(album.album.pages.upper(), 1);
    EXPECT_EQ(album.album.pageCount, 1);
    EXPECT_EQ(album.album.pages[1].fileName, "Strand.apg");
    EXPECT_EQ(readPage("Strand.apg").pictures.upper(), 3);
    EXPECT_FALSE(fs::exists(path("Urlaub/Berge.apg")));
    // The session holds the same album as the disk.
    EXPECT_EQ(session->album().pages.upper(), 1);
    EXPECT_FALSE(isTrue(session->album().modified));
}

TEST_F(WizardRunTest, CancelBeforeTheFirstPageWritesNothing) {
    WizardCallbacks cb;
    cb.cancelled = [] { return true; };
    const WizardResult r = runWizard(*session, plan(), nullptr, cb);
    EXPECT_TRUE(r.cancelled);
    EXPECT_EQ(r.albumPath, "");
    EXPECT_FALSE(fs::exists(path("Urlaub/Urlaub.apr")));
    EXPECT_FALSE(fs::exists(path("Urlaub/Strand.apg")));
}

TEST_F(WizardRunTest, BadPlansAreRefusedWithTheirMessageBeforeAnythingIsWritten) {
    struct Row {
        const char* what;
        std::function<void(WizardPlan&)> spoil;
        Language lang;
        std::string message;
    };
    const std::vector<Row> rows = {
        {"missing picture", [&](WizardPlan& p) { p.pages[1].pictures.push_back(path("fehlt.jpg")); },
         Language::German, "message|Fehler|16|Fehler aufgetreten: Bild nicht gefunden: " + path("fehlt.jpg")},
        {"same name twice", [](WizardPlan& p) { p.pages[1].name = "strand"; }, Language::English,
         "message|Error|16|Error occurs: Page name given twice: strand"},
        {"slash in a name", [](WizardPlan& p) { p.pages[0].name = "a/b"; }, Language::German,
         "message|Fehler|16|Fehler aufgetreten: Ungültiger Seitenname: a/b"},
        {"no pages", [](WizardPlan& p) { p.pages.clear(); }, Language::English,
         "message|Error|16|Error occurs: The album has no page."},
        {"missing design", [&](WizardPlan& p) { p.design = path("vorlagen/Rot.jpg"); }, Language::German,
         "message|Fehler|16|Fehler aufgetreten: Design nicht gefunden: " + path("vorlagen/Rot.jpg")},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        prompter.asked.clear();
        start(row.lang);
        WizardPlan p = plan();
        row.spoil(p);
        const WizardResult r = runWizard(*session, p, nullptr);
        EXPECT_FALSE(r.ok);
        ASSERT_EQ(prompter.asked.size(), 1u);
        EXPECT_EQ(prompter.asked[0], row.message);
        EXPECT_FALSE(fs::exists(path("Urlaub")));
    }
}

TEST_F(WizardRunTest, DefaultsDesignsAndNames) {
    EXPECT_EQ(pageName(Language::German, 3), "WSeite3");
    EXPECT_EQ(pageName(Language::English, 1), "Page_W1");
    EXPECT_EQ(defaultTargetDirectory(path("Bilder")), path("Bilder/MeinAlbum/"));
    touch("Bilder/MeinAlbum/x");
    touch("Bilder/MeinAlbum1/x");
    EXPECT_EQ(defaultTargetDirectory(path("Bilder/")), path("Bilder/MeinAlbum2/"));
    EXPECT_EQ(albumPathFor(path("Bilder/Reise")), path("Bilder/Reise/Reise.apr"));

    touch("vorlagen/Acker.JPG");
    touch("vorlagen/notiz.txt");
    fs::create_directories(path("vorlagen/Ordner.jpg"));
    EXPECT_EQ(listDesigns(home()), (std::vector<std::string>{"Acker.JPG", "Blau.jpg"}));
    fs::remove_all(path("vorlagen"));
    EXPECT_TRUE(listDesigns(home()).empty());
    EXPECT_TRUE(fs::is_directory(path("vorlagen")));  // made when missing
}

}  // namespace
}  // namespace brindle::wizard
