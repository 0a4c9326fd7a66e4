#include <gtest/gtest.h>

#include <condition_variable>
#include <filesystem>
#include <mutex>

#include "album/album_file.h"
#include "album/page_file.h"
#include "html/page_html.h"
#include "html/picture_index.h"
#include "html/web_picture.h"
#include "image/dib_section.h"
#include "image/picture_io.h"
#include "support/session_fixture.h"

namespace brindle::html {
namespace {

namespace fs = std::filesystem;

TEST(PictureIndexCells, RowsFromOneColumnsFromZero) {
    const IndexCell fifth = indexCell(5, 5, 100, 100);
    EXPECT_EQ(fifth.row, 1);
    EXPECT_EQ(fifth.column, 4);
    EXPECT_EQ(fifth.left, 4 * 150 + 50);
    EXPECT_EQ(fifth.top, 100);
    const IndexCell sixth = indexCell(6, 5, 100, 100);
    EXPECT_EQ(sixth.row, 2);
    EXPECT_EQ(sixth.column, 0);
    EXPECT_EQ(sixth.left, 50);
    EXPECT_EQ(sixth.top, 250);
    // Other sizes; and 100 columns, where 1 / 100 + 0.99 falls short of 1 in floating point.
    const IndexCell wide = indexCell(7, 3, 80, 60);
    EXPECT_EQ(wide.row, 3);
    EXPECT_EQ(wide.column, 0);
    EXPECT_EQ(wide.top, 2 * 110 + 100);
    EXPECT_EQ(indexCell(1, 100, 100, 100).row, 1);
    EXPECT_EQ(indexCell(1, 100, 100, 100).column, 0);
    EXPECT_EQ(indexCell(100, 100, 100, 100).column, 99);
    EXPECT_EQ(indexCell(101, 100, 100, 100).row, 2);
}

TEST(PictureIndexFrames, WidthTurnedToSixPixels) {
    EXPECT_EQ(indexFrameSpec("12,60,40,3355443,None,1,"), "6,60,40,3355443,None,1,");
    EXPECT_EQ(indexFrameSpec("25,1,2,255,/bilder/holz.jpg,1"), "6,1,2,255,/bilder/holz.jpg,1");
    EXPECT_EQ(indexFrameSpec("12,60,40,0,None,0"), "");
    EXPECT_EQ(indexFrameSpec("None,None,None,None,None,None"), "");
    EXPECT_EQ(indexFrameSpec(""), "");
}

// Blue, green, red.
using Bgr = std::array<int, 3>;
constexpr Bgr kRed{0, 0, 255}, kBlue{255, 0, 0}, kGreen{0, 200, 0}, kGrey{128, 128, 128};

class PictureIndexTest : public test::SessionTest {
protected:
    // A 320 x 240 JPEG of one colour.
    std::string picture(const std::string& name, Bgr c) {
        cDIBSection dib;
        EXPECT_TRUE(dib.Create(320, 240));
        for (int y = 0; y < 240; ++y)
            for (int x = 0; x < 320; ++x)
                for (int k = 0; k < 3; ++k) dib.hdc().row(y)[3 * x + k] = static_cast<std::uint8_t>(c[k]);
        touch(name);
        EXPECT_TRUE(SaveDIBFile(dib, path(name), 90));
        return path(name);
    }
    static PictureElement element(const std::string& file, const std::string& frame = "") {
        PictureElement e;
        e.top = 10;
        e.left = 10;
        e.width = 200;
        e.height = 150;
        e.path = file;
        e.ext.extText[0] = frame;
        return e;
    }
    void addPage(AlbumRecord& a, const std::string& title, const std::vector<PictureElement>& pictures) {
        PageRecord p;
        for (const PictureElement& e : pictures) p.pictures.add() = e;
        const std::string file = "p" + std::to_string(a.pages.upper() + 1) + ".apg";
        ASSERT_TRUE(writePageFile(path(file), p).ok());
        a.pages.add() = PageEntry{title, file, home(), 0};
        a.pageCount = static_cast<std::int16_t>(a.pages.upper());
    }
    // Front cover, "Berge" with three pictures (one framed), "See" with a
    // deleted one, a missing one, a "Mamor" one and three shown ones (one
    // of the same file name as on "Berge"), and a back cover.
    Session& openAlbum(Language lang = Language::German) {
        AlbumRecord a;
        ladeStandards(a, home());
        a.title = "Reise";
        a.style.headingFont = FontSpec{0, "", 20, kTrue, kFalse, kFalse};
        a.style.textFont = FontSpec{0xFF, "Verdana", 10, kFalse, kFalse, kFalse};
        addPage(a, "Umschlag Vorne", {});
        addPage(a, "Berge", {element(picture("b1.jpg", kRed), "12,60,40,3355443,None,1,"),
                             element(picture("b2.jpg", kGreen)), element(picture("zwei/same.jpg", kRed))});
        PictureElement gone = element(picture("deleted.jpg", kGrey));
        gone.deleted = kTrue;
        addPage(a, "See", {gone, element(path("missing.jpg")), element(picture("Mamor/m.jpg", kGrey)),
                           element(picture("s1.jpg", kGreen)), element(picture("eins/Same.jpg", kBlue)),
                           element(picture("s3.jpg", kRed))});
        addPage(a, "Umschlag Hinten", {});
        EXPECT_TRUE(writeAlbumFile(path("Reise.apr"), a).ok());
        Session& s = start(lang);
        EXPECT_TRUE(s.albumOeffnen(path("Reise.apr")));
        prompter.asked.clear();
        return s;
    }
    PictureIndexOutcome run(bool atBeginning = false, int threads = 1, ThumbnailWriter writer = {}) {
        PictureIndexCallbacks cb;
        cb.status = [this](const std::string& s) { statuses.push_back(s); };
        cb.measureText = [](const FontSpec& f, const std::string& t) {
            return LabelSize{static_cast<int>(t.size()) * f.size, 2 * f.size};
        };
        cb.cancelled = [this] { return cancelAfter >= 0 && asks++ >= cancelAfter; };
        cb.threads = threads;
        cb.writeThumbnail = std::move(writer);
        return bildIndexErzeugen(*session, atBeginning, cb);
    }
    PageRecord& indexPage(int entry) { return session->page(session->album().pages[entry].slot); }
    std::vector<std::string> titles() {
        std::vector<std::string> t;
        for (int i = 1; i <= session->album().pages.upper(); ++i) t.push_back(session->album().pages[i].title);
        return t;
    }
    Bgr centre(const std::string& file) {
        PictureFile f = LoadPictureFile(file);
        EXPECT_TRUE(static_cast<bool>(f.picture)) << file;
        if (!f.picture) return {};
        const cDIBSection& d = *f.picture.Handle();
        EXPECT_EQ(d.Width(), 100);
        EXPECT_EQ(d.Height(), 100);
        const std::uint8_t* p = d.hdc().row(50) + 3 * 50;
        return {p[0], p[1], p[2]};
    }
    static bool near(Bgr a, Bgr b) {
        for (int i = 0; i < 3; ++i)
            if (std::abs(a[i] - b[i]) > 12) return false;
        return true;
    }
    std::string thumbs() { return path("BildIndexThumps/"); }

    std::vector<std::string> statuses;
    int cancelAfter = -1;
    int asks = 0;
};

TEST_F(PictureIndexTest, IndexPageBeforeTheBackCoverWithGridLinksAndFrames) {
    openAlbum();
    const PictureIndexOutcome out = run();
    ASSERT_EQ(out.result, PictureIndexResult::Done);
    EXPECT_TRUE(out.failures.empty());
    EXPECT_EQ(out.thumbnails, 6);
    EXPECT_EQ(statuses, (std::vector<std::string>{"Start Bildindex generieren ... ", "Bildindex generieren: Umschlag Vorne",
                                                  "Bildindex generieren: Berge", "Bildindex generieren: See",
                                                  "Bildindex generieren: Umschlag Hinten",
                                                  "Bildindex neu zeichnen: BildIndex", "Bildindex fertig"}));
    EXPECT_TRUE(prompter.asked.empty());
    EXPECT_EQ(titles(), (std::vector<std::string>{"Umschlag Vorne", "Berge", "See", "BildIndex", "Umschlag Hinten"}));
    ASSERT_EQ(out.entry, 4);
    EXPECT_TRUE(isTrue(session->album().modified));
    const int slot = session->album().pages[4].slot;
    ASSERT_GT(slot, 0);
    EXPECT_TRUE(isTrue(session->state().pageSlots[slot].modified));
    EXPECT_EQ(session->editor(slot)->caption(), "BildIndex");
    EXPECT_EQ(editors.events.back(), "show " + std::to_string(slot));

    PageRecord& p = indexPage(4);
    ASSERT_EQ(p.pictures.upper(), 6);
    ASSERT_EQ(p.texts.upper(), 7);
    const TextElement& heading = p.texts[1];
    EXPECT_EQ(heading.text, "BildIndex");
    EXPECT_EQ(heading.ext.extText[0], "BildIndex");
    EXPECT_EQ(heading.font, (FontSpec{0, "Arial", 20, kTrue, kFalse, kFalse}));
    EXPECT_EQ(heading.top, 30);
    EXPECT_EQ(heading.left, 30);
    EXPECT_EQ(heading.width, 9 * 20);
    EXPECT_EQ(heading.height, 40);
    EXPECT_EQ(heading.hyperlink, "");

    const std::string sources[] = {path("b1.jpg"), path("b2.jpg"), path("zwei/same.jpg"),
                                   path("s1.jpg"), path("eins/Same.jpg"), path("s3.jpg")};
    const std::string names[] = {"b1.jpg", "b2.jpg", "same.jpg", "s1.jpg", "same.jpg", "s3.jpg"};
    const int lefts[] = {50, 200, 350, 500, 650, 50};
    const int tops[] = {100, 100, 100, 100, 100, 250};
    for (int n = 1; n <= 6; ++n) {
        SCOPED_TRACE(n);
        const PictureElement& e = p.pictures[n];
        EXPECT_EQ(e.path, thumbs() + "BSIndex" + names[n - 1]);
        EXPECT_EQ(e.hyperlink, sources[n - 1]);
        EXPECT_EQ(e.left, lefts[n - 1]);
        EXPECT_EQ(e.top, tops[n - 1]);
        EXPECT_EQ(e.width, 100);
        EXPECT_EQ(e.height, 100);
        EXPECT_EQ(e.pictureWidth, 100);
        EXPECT_EQ(e.pictureHeight, 100);
        EXPECT_EQ(e.ext.extText[0], n == 1 ? "6,60,40,3355443,None,1," : "");
        EXPECT_TRUE(fs::exists(e.path));
        const TextElement& t = p.texts[n + 1];
        EXPECT_EQ(t.text, "zur Seite");
        EXPECT_EQ(t.ext.extText[0], "zur Seite");
        EXPECT_EQ(t.font, session->album().style.textFont);
        EXPECT_EQ(t.top, tops[n - 1] + 100);
        EXPECT_EQ(t.left, lefts[n - 1]);
        EXPECT_EQ(t.width, 90);
        EXPECT_EQ(t.height, 20);
        EXPECT_EQ(t.hyperlink, n <= 3 ? "Berge" : "See");
    }
    // Heading, then each picture followed by its page link, in the stack and their ZPos.
    ASSERT_EQ(p.stack.upper(), 13);
    EXPECT_EQ(p.stack[1], (StackEntry{1, "text"}));
    for (int n = 1; n <= 6; ++n) {
        EXPECT_EQ(p.stack[2 * n], (StackEntry{n, "bild"}));
        EXPECT_EQ(p.stack[2 * n + 1], (StackEntry{n + 1, "text"}));
        EXPECT_EQ(zPos(p.pictures[n]), 2 * n);
        EXPECT_EQ(zPos(p.texts[n + 1]), 2 * n + 1);
    }
    // Two pictures of one file name share one thumbnail: the later one's.
    EXPECT_TRUE(near(centre(thumbs() + "BSIndexsame.jpg"), kBlue));
    EXPECT_TRUE(near(centre(thumbs() + "BSIndexb2.jpg"), kGreen));
    EXPECT_FALSE(fs::exists(thumbs() + "BSIndexdeleted.jpg"));
    EXPECT_FALSE(fs::exists(thumbs() + "BSIndexm.jpg"));
    // The framed source is drawn with its frame on the thumbnail: dark grey edge, red middle.
    EXPECT_TRUE(near(centre(thumbs() + "BSIndexb1.jpg"), kRed));
    EXPECT_EQ(std::distance(fs::directory_iterator(thumbs()), fs::directory_iterator()), 5);
}

TEST_F(PictureIndexTest, AtTheBeginningAfterTheFrontCoverInEnglish) {
    openAlbum(Language::English);
    const PictureIndexOutcome out = run(true);
    ASSERT_EQ(out.result, PictureIndexResult::Done);
    EXPECT_EQ(titles(), (std::vector<std::string>{"Umschlag Vorne", "PicIndex", "Berge", "See", "Umschlag Hinten"}));
    EXPECT_EQ(out.entry, 2);
    EXPECT_EQ(statuses.front(), "Start generate Picindex ... ");
    EXPECT_EQ(statuses[1], "Generate picindex: Umschlag Vorne");
    EXPECT_EQ(statuses[statuses.size() - 2], "Draw new picindex: PicIndex");
    EXPECT_EQ(statuses.back(), "Picindex ready");
    EXPECT_EQ(indexPage(2).texts[1].text, "PicIndex");
    EXPECT_EQ(indexPage(2).texts[2].text, "zur Seite");
}

TEST_F(PictureIndexTest, ExistingIndexIsAskedAboutAndRebuiltOnItsPlace) {
    openAlbum();
    ASSERT_EQ(run(true).result, PictureIndexResult::Done);
    const std::string question = "message|Warnung|52|Der Bildindex ist bereits erstellt.\rSoll er überschrieben werden?";

    // No keeps the page as it is.
    prompter.answers = {kNo};
    fs::remove_all(thumbs());
    EXPECT_EQ(run(false).result, PictureIndexResult::Declined);
    EXPECT_EQ(prompter.asked, std::vector<std::string>{question});
    EXPECT_FALSE(fs::exists(thumbs()));
    EXPECT_EQ(indexPage(2).pictures.upper(), 6);

    // Yes rebuilds it on its place, with every thumbnail written again.
    prompter.asked.clear();
    prompter.answers = {kYes};
    const PictureIndexOutcome again = run(false);
    ASSERT_EQ(again.result, PictureIndexResult::Done);
    EXPECT_EQ(prompter.asked, std::vector<std::string>{question});
    EXPECT_EQ(again.entry, 2);
    EXPECT_EQ(titles(), (std::vector<std::string>{"Umschlag Vorne", "BildIndex", "Berge", "See", "Umschlag Hinten"}));
    EXPECT_EQ(indexPage(2).pictures.upper(), 6);
    EXPECT_EQ(indexPage(2).texts.upper(), 7);
    EXPECT_EQ(indexPage(2).stack.upper(), 13);
    EXPECT_EQ(std::distance(fs::directory_iterator(thumbs()), fs::directory_iterator()), 5);

    // The English question, for a page the German program made.
    session->state().language = Language::English;
    prompter.asked.clear();
    prompter.answers = {kNo};
    EXPECT_EQ(run().result, PictureIndexResult::Declined);
    EXPECT_EQ(prompter.asked, std::vector<std::string>{
                                  "message|Attention|52|The Index of pictures is allready created.\rShould it be overwrited?"});
}

TEST_F(PictureIndexTest, CancelBetweenPicturesLeavesAConsistentPage) {
    openAlbum();
    cancelAfter = 2;  // two pictures are taken, the third is not
    const PictureIndexOutcome out = run(false, 2);
    ASSERT_EQ(out.result, PictureIndexResult::Cancelled);
    EXPECT_EQ(out.thumbnails, 2);
    EXPECT_EQ(statuses, (std::vector<std::string>{"Start Bildindex generieren ... ", "Bildindex generieren: Umschlag Vorne",
                                                  "Bildindex generieren: Berge"}));
    EXPECT_EQ(titles(), (std::vector<std::string>{"Umschlag Vorne", "Berge", "See", "BildIndex", "Umschlag Hinten"}));
    PageRecord& p = indexPage(4);
    ASSERT_EQ(p.pictures.upper(), 2);
    ASSERT_EQ(p.texts.upper(), 3);
    ASSERT_EQ(p.stack.upper(), 5);
    for (int n = 1; n <= 2; ++n) EXPECT_TRUE(fs::exists(p.pictures[n].path)) << n;
    EXPECT_TRUE(isTrue(session->album().modified));

    // The album saves and reads back with the page as it was left.
    prompter.files = {path("BildIndex.apg")};
    ASSERT_TRUE(session->AlbumSpeichern(false));
    AlbumFile savedFile;
    ASSERT_TRUE(readAlbumFile(path("Reise.apr"), savedFile).ok());
    const AlbumRecord& saved = savedFile.album;
    ASSERT_EQ(saved.pages.upper(), 5);
    EXPECT_EQ(saved.pages[4].title, "BildIndex");
    PageFile file;
    ASSERT_TRUE(readPageFile(saved.pages[4].directory + saved.pages[4].fileName, saved.pageDefaults, file).ok());
    EXPECT_EQ(file.page.pictures.upper(), 2);
    EXPECT_EQ(file.page.stack.upper(), 5);
}

TEST_F(PictureIndexTest, ThumbnailsAndStatusesEqualOnOneAndTwoThreads) {
    openAlbum();
    ASSERT_EQ(run(false, 1).result, PictureIndexResult::Done);
    std::map<std::string, std::string> one;
    for (const auto& f : fs::directory_iterator(thumbs()))
        one[f.path().filename().string()] = readBytes("BildIndexThumps/" + f.path().filename().string());
    const std::vector<std::string> oneStatuses = statuses;
    const PageRecord onePage = indexPage(4);

    fs::remove_all(thumbs());
    statuses.clear();
    prompter.answers = {kYes};
    ASSERT_EQ(run(false, 2).result, PictureIndexResult::Done);
    std::map<std::string, std::string> two;
    for (const auto& f : fs::directory_iterator(thumbs()))
        two[f.path().filename().string()] = readBytes("BildIndexThumps/" + f.path().filename().string());
    ASSERT_EQ(one.size(), 5u);
    EXPECT_TRUE(one == two);
    EXPECT_EQ(statuses, oneStatuses);
    EXPECT_TRUE(indexPage(4) == onePage);
}

TEST_F(PictureIndexTest, PicturesOfOneFileNameAreWrittenInListOrderWhateverTheThreadsDo) {
    openAlbum();
    // The first "same.jpg" is held until "s1.jpg", which comes after it, is
    // written; the second "Same.jpg" must still be written after the first.
    std::mutex m;
    std::condition_variable cv;
    bool s1Written = false;
    std::vector<std::string> sameWrites;
    ThumbnailWriter writer = [&](const WebPicture& p, std::string& error) {
        if (p.source == path("zwei/same.jpg")) {
            std::unique_lock lock(m);
            // A safety net only: without it a broken pool would hang the suite.
            cv.wait_for(lock, std::chrono::seconds(60), [&] { return s1Written; });
        }
        const bool ok = speichereWebBild(p, error);
        std::lock_guard lock(m);
        if (p.source == path("s1.jpg")) s1Written = true;
        if (p.target == thumbs() + "BSIndexsame.jpg") sameWrites.push_back(p.source);
        cv.notify_all();
        return ok;
    };
    ASSERT_EQ(run(false, 2, writer).result, PictureIndexResult::Done);
    EXPECT_EQ(sameWrites, (std::vector<std::string>{path("zwei/same.jpg"), path("eins/Same.jpg")}));
    EXPECT_TRUE(near(centre(thumbs() + "BSIndexsame.jpg"), kBlue));
}

TEST_F(PictureIndexTest, EmptyAlbumGivesTheHeadingAloneAndUnsavedAlbumIsRefused) {
    AlbumRecord a;
    ladeStandards(a, home());
    addPage(a, "Leer", {});
    ASSERT_TRUE(writeAlbumFile(path("Leer.apr"), a).ok());
    Session& s = start();
    ASSERT_TRUE(s.albumOeffnen(path("Leer.apr")));
    const PictureIndexOutcome out = run();
    ASSERT_EQ(out.result, PictureIndexResult::Done);
    EXPECT_EQ(titles(), (std::vector<std::string>{"Leer", "BildIndex"}));
    EXPECT_EQ(indexPage(2).texts.upper(), 1);
    EXPECT_EQ(indexPage(2).pictures.upper(), 0);
    EXPECT_TRUE(fs::is_directory(thumbs()));

    // An album never saved has no folder for the thumbnails.
    s.album().directory.clear();
    statuses.clear();
    prompter.asked.clear();
    EXPECT_EQ(run().result, PictureIndexResult::NotSaved);
    EXPECT_EQ(prompter.asked, std::vector<std::string>{
                                  "message|Bildindex|48|Um einen Bildindex zu erstellen, müssen Sie Ihr Album gespeichert haben."});
}


TEST_F(PictureIndexTest, GeneratedIndexMarkup) {
    AlbumRecord a;
    ladeStandards(a, home());
    a.pageDefaults = PageRecord{};
    a.style.headingFont = FontSpec{0, "Arial", 20, kFalse, kFalse, kFalse};
    a.style.textFont = FontSpec{0, "Arial", 10, kFalse, kFalse, kFalse};
    addPage(a, "Berge", {element(picture("b1.jpg", kRed))});
    ASSERT_TRUE(writeAlbumFile(path("Reise.apr"), a).ok());
    start();
    ASSERT_TRUE(session->albumOeffnen(path("Reise.apr")));
    ASSERT_EQ(run().result, PictureIndexResult::Done);
    fs::create_directories(path("out"));
    HtmlRun html(*session, path("out/"), defaultPictureServices());
    ASSERT_TRUE(schreibeSeiteHTML(html, path("out/BildIndex.htm"), session->album().pages[2].slot, 2));
    // Heading, thumbnail linked to the staged source, page link below; text
    // boxes are 1.2 times the measured width as every page writes them.
    std::string expected;
    for (const char* line :
         {"<!Generiert von Brindlesee Ver.1.0 Beta>", "<html>", "<head>", "<title>Brindlesee Seite vom Album Reise</title>",
          "", "</head>", "<body bgcolor=#000000 leftmargin=0 topmargin=3> ", "", "<P ALIGN=CENTER>", "</P>", "",
          "<span style=\"Color:#000000;  font-size:20pt; font-family:Arial;\"><div style=\"position:absolute; "
          "top:30px; left:30px; width:216px; height:40px\">",
          "<p><nobr>BildIndex</nobr></p>", "</div></span>", "",
          "<div style=\"position:absolute; top:100px; left:50px; width:100px; height:100px\">",
          "<a href=\"b1.jpg\"><p><img src=\"BSThumbbsindexb1.jpg\" width=\"100\" height=\"100\" border=0></p></a>",
          "</div>", "",
          "<span style=\"Color:#000000;  font-size:10pt; font-family:Arial;\"><div style=\"position:absolute; "
          "top:200px; left:50px; width:108px; height:20px\">",
          "<p><a href=\"Berge.htm\"><nobr>zur&nbsp;Seite</nobr></a></p>", "</div></span>", "", "</body>", "</html>"})
        expected += std::string(line) + "\r\n";
    EXPECT_EQ(readBytes("out/BildIndex.htm"), expected);
    EXPECT_TRUE(fs::is_regular_file(path("out/b1.jpg")));
    EXPECT_TRUE(near(centre(path("out/BSThumbbsindexb1.jpg")), kRed));
}

}  // namespace
}  // namespace brindle::html
