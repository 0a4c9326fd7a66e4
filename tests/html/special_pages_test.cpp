// Covers, contents and search page made from the album: their place in the
// list, their measured texts, the question before a page is rebuilt, and
// contents links that lead to the generated pages.
#include <gtest/gtest.h>

#include <regex>

#include "album/page_file.h"
#include "html/frameset.h"
#include "html/special_pages.h"
#include "html_fixture.h"

namespace brindle::html {
namespace {

// Every character is `size` pixels wide, a line twice the size high.
class FixedMetrics : public editor::TextMetrics {
public:
    editor::TextSize labelSize(const FontSpec&, int size, const std::string& text) override {
        return {static_cast<int>(text.size()) * size, 2 * size};
    }
    std::vector<std::string> boxLines(const FontSpec&, int, const std::string& text) override { return {text}; }
};

struct Step {
    int done, total;
    std::string status;
    bool operator==(const Step&) const = default;
};

class SpecialPagesTest : public HtmlTest {
protected:
    Session& album(const std::vector<std::string>& titles, Language lang = Language::German) {
        Session& s = start(lang);
        fs::create_directories(path("out"));
        run = std::make_unique<HtmlRun>(s, path("out/"));
        AlbumRecord& a = s.album();
        a.title = "Reise";
        a.style.headingFont = FontSpec{};
        a.style.headingFont.size = 20;
        a.style.textFont = FontSpec{};
        a.style.textFont.name = "Verdana";
        a.style.textFont.size = 10;
        a.pageDefaults.background.clear();
        a.pageDefaults.props = PageProps{};
        a.coverDefaults.background = "umschlag.jpg";
        a.coverDefaults.props = PageProps{};
        for (const std::string& t : titles) s.neueSeite(t, false);
        return s;
    }
    std::vector<std::string> titles() {
        std::vector<std::string> out;
        for (int i = 1; i <= session->album().pages.upper(); ++i) out.push_back(session->album().pages[i].title);
        return out;
    }
    PageRecord& titled(const std::string& title) {
        for (int i = 1; i <= session->album().pages.upper(); ++i)
            if (session->album().pages[i].title == title) return page(i);
        ADD_FAILURE() << "no page " << title;
        return page(1);
    }
    // The messages asked, without the file dialogs.
    std::vector<std::string> messages() {
        std::vector<std::string> out;
        for (const std::string& q : prompter.asked)
            if (q.rfind("message|", 0) == 0) out.push_back(q);
        return out;
    }
    // top, left, width, height, text, link, font name, font size of text `i`.
    static std::string text(const PageRecord& p, int i) {
        const TextElement& t = p.texts[i];
        return std::to_string(t.top) + "," + std::to_string(t.left) + "," + std::to_string(t.width) + "," +
               std::to_string(t.height) + "|" + t.text + "|" + t.ext.extText[0] + "|" + t.hyperlink + "|" +
               t.font.name + "|" + std::to_string(t.font.size);
    }

    FixedMetrics metrics;
};

TEST_F(SpecialPagesTest, CoversTakeTheirPlacesAndTheFrontCoverShowsTheTitleMeasured) {
    Session& s = album({"Seite1", "Seite2"});
    std::vector<Step> steps;
    GenerationCallbacks cb;
    cb.progress = [&](int d, int t, const std::string& st) { steps.push_back({d, t, st}); };
    SpecialPagesRequest r;
    r.frontCover = r.backCover = true;
    ASSERT_TRUE(runSpecialPages(s, metrics, r, cb));

    EXPECT_EQ(titles(), (std::vector<std::string>{"Umschlag Vorne", "Seite1", "Seite2", "Umschlag Hinten"}));
    const PageRecord& front = page(1);
    ASSERT_EQ(front.texts.upper(), 1);
    // "Reise" in 20 points: 5 x 20 wide, 2 x 20 high, at 160/150; a click opens page 2.
    EXPECT_EQ(text(front, 1), "160,150,100,40|Reise|Reise|Seite1|Arial|20");
    ASSERT_EQ(front.stack.upper(), 1);
    EXPECT_EQ(front.stack[1].kind, "text");
    EXPECT_EQ(front.background, "umschlag.jpg");
    EXPECT_EQ(front.title, "Brindlesee Seite vom Album Reise");
    EXPECT_EQ(front.description, kDefaultPageDescription);
    const PageRecord& back = page(4);
    EXPECT_EQ(back.texts.upper(), 0);
    EXPECT_EQ(back.stack.upper(), 0);
    EXPECT_EQ(back.background, "umschlag.jpg");
    EXPECT_TRUE(isTrue(s.album().modified));
    EXPECT_TRUE(isTrue(s.state().pageSlots[s.album().pages[1].slot].modified));
    EXPECT_EQ(s.editor(s.album().pages[1].slot)->caption(), "Umschlag Vorne");
    EXPECT_NE(std::find(editors.events.begin(), editors.events.end(), "menu Umschlag Vorne entfernen"),
              editors.events.end());
    EXPECT_EQ(steps, (std::vector<Step>{{0, 2, "Umschlag vorne erstellen ..."},
                                        {1, 2, "Umschlag hinten erstellen ..."},
                                        {2, 2, "Spezialseiten fertig"}}));
    EXPECT_TRUE(messages().empty());
}

TEST_F(SpecialPagesTest, EnglishFrontCoverKeepsTheGermanNameOfAnExistingOne) {
    Session& s = album({"Page1", "Umschlag Vorne"}, Language::English);
    SpecialPages pages(s, metrics);
    EXPECT_EQ(pages.vorneName(), "Umschlag Vorne");
    prompter.answers.push_back(kYes);
    ASSERT_TRUE(pages.umschlagVorne());
    EXPECT_EQ(messages(), (std::vector<std::string>{
                              "message|Attention|36|Frontcover is allready created.\rShould it be overwrited?"}));
    // Rebuilt where it stood, with its text once; nothing follows it in the list.
    EXPECT_EQ(titles(), (std::vector<std::string>{"Page1", "Umschlag Vorne"}));
    ASSERT_EQ(page(2).texts.upper(), 1);
    EXPECT_EQ(text(page(2), 1), "160,150,100,40|Reise|Reise||Arial|20");
}

TEST_F(SpecialPagesTest, ContentsListsEveryOrdinaryPageWhoseLinksOpenTheGeneratedPages) {
    Session& s = album({"Seite1", "Umschlag Vorne", "Seite2", "Suchen", "Seite3", "Umschlag Hinten"});
    touch("Menü/mtmcode.js");
    for (const char* p : kMenuPictures) touch(std::string("Menü/menu-images/") + p);
    SpecialPages pages(s, metrics);
    ASSERT_TRUE(pages.inhalt(false));
    // At the end, but before the back cover.
    EXPECT_EQ(titles(), (std::vector<std::string>{"Seite1", "Umschlag Vorne", "Seite2", "Suchen", "Seite3",
                                                  "Inhalt", "Umschlag Hinten"}));
    const PageRecord& contents = page(6);
    ASSERT_EQ(contents.texts.upper(), 5);
    EXPECT_EQ(text(contents, 1), "30,30,120,40|Inhalt|Inhalt||Arial|20");
    // Each entry 20 below the one before: 30 + 40 + 20, then + 20 + 20.
    EXPECT_EQ(text(contents, 2), "90,60,60,20|Seite1|Seite1|Seite1|Verdana|10");
    EXPECT_EQ(text(contents, 3), "130,60,60,20|Seite2|Seite2|Seite2|Verdana|10");
    EXPECT_EQ(text(contents, 4), "170,60,60,20|Suchen|Suchen|Suchen|Verdana|10");
    EXPECT_EQ(text(contents, 5), "210,60,60,20|Seite3|Seite3|Seite3|Verdana|10");
    ASSERT_EQ(contents.stack.upper(), 5);
    for (int i = 1; i <= 5; ++i) EXPECT_EQ(contents.texts[i].ext.extLong[0], i);
    // The album had no file: saving the page asked for one, and was let be.
    EXPECT_EQ(prompter.asked.size(), 1u);

    ASSERT_TRUE(generiereAlbum(*run));
    const std::string html = readBytes("out/Inhalt.htm");
    std::vector<std::string> targets;
    const std::regex href("href=\"([^\"]+)\"", std::regex::icase);
    for (auto it = std::sregex_iterator(html.begin(), html.end(), href); it != std::sregex_iterator(); ++it) {
        const std::string target = (*it)[1];
        if (target == "Seite1.htm" || target == "Seite2.htm" || target == "Suchen.htm" || target == "Seite3.htm")
            targets.push_back(target);
    }
    EXPECT_EQ(targets, (std::vector<std::string>{"Seite1.htm", "Seite2.htm", "Suchen.htm", "Seite3.htm"}));
    for (const std::string& t : targets) EXPECT_TRUE(fs::exists(path("out/" + t))) << t;
}

TEST_F(SpecialPagesTest, ASecondContentsRunAsksAndKeepsItsPlace) {
    Session& s = album({"Seite1", "Seite2"});
    SpecialPages pages(s, metrics);
    ASSERT_TRUE(pages.inhalt(true));
    EXPECT_EQ(titles(), (std::vector<std::string>{"Inhalt", "Seite1", "Seite2"}));
    // The user moves it and adds a page; the rebuilt contents stays second.
    std::swap(s.album().pages[1], s.album().pages[2]);
    s.neueSeite("Seite3", false);
    prompter.asked.clear();
    prompter.answers = {kYes};
    ASSERT_TRUE(pages.inhalt(true));
    EXPECT_EQ(messages(), (std::vector<std::string>{
                              "message|Warnung|36|Das Inhaltsverzeichnis ist bereits erstellt.\r"
                              "Soll er überschrieben werden?"}));
    EXPECT_EQ(titles(), (std::vector<std::string>{"Seite1", "Inhalt", "Seite2", "Seite3"}));
    ASSERT_EQ(page(2).texts.upper(), 4);
    EXPECT_EQ(page(2).stack.upper(), 4);
    EXPECT_EQ(page(2).texts[4].text, "Seite3");

    // "No" leaves the page as it is.
    prompter.asked.clear();
    prompter.answers = {kNo};
    s.neueSeite("Seite4", false);
    EXPECT_FALSE(pages.inhalt(false));
    EXPECT_EQ(messages().size(), 1u);
    EXPECT_EQ(page(2).texts.upper(), 4);
    EXPECT_EQ(titles(), (std::vector<std::string>{"Seite1", "Inhalt", "Seite2", "Seite3", "Seite4"}));
}

TEST_F(SpecialPagesTest, AnAlbumOfOnlySpecialPagesGivesTheHeadingAlone) {
    Session& s = album({"FrontCover", "Umschlag Hinten"}, Language::English);
    SpecialPages pages(s, metrics);
    ASSERT_TRUE(pages.inhalt(true));
    // At the beginning, but after the front cover.
    EXPECT_EQ(titles(), (std::vector<std::string>{"FrontCover", "AlbumDirectory", "Umschlag Hinten"}));
    ASSERT_EQ(page(2).texts.upper(), 1);
    EXPECT_EQ(text(page(2), 1), "30,30,280,40|AlbumDirectory|AlbumDirectory||Arial|20");
}

TEST_F(SpecialPagesTest, SearchPageHoldsAHeadingAndOneFormAlsoWhenRebuilt) {
    Session& s = album({"Seite1"});
    SpecialPages pages(s, metrics);
    ASSERT_TRUE(pages.suchseite());
    prompter.answers = {kYes};
    ASSERT_TRUE(pages.suchseite());
    EXPECT_EQ(titles(), (std::vector<std::string>{"Seite1", "Suchen"}));
    const PageRecord& p = titled("Suchen");
    ASSERT_EQ(p.texts.upper(), 1);
    EXPECT_EQ(text(p, 1), "30,30,120,40|Suchen|Suchen||Arial|20");
    ASSERT_EQ(p.searchBoxes.upper(), 1);
    const SearchElement& box = p.searchBoxes[1];
    EXPECT_EQ(std::vector<int>({box.top, box.left, box.width, box.height}), (std::vector<int>{100, 100, 420, 120}));
    ASSERT_EQ(p.stack.upper(), 2);
    EXPECT_EQ(p.stack[1].kind, "text");
    EXPECT_EQ(p.stack[2].kind, "suchmaschine");
    EXPECT_EQ(box.ext.extLong[0], 2);
}

TEST_F(SpecialPagesTest, CancelStopsBetweenPagesAndKeepsWhatWasMade) {
    Session& s = album({"Seite1"});
    SpecialPagesRequest r;
    r.contents = r.frontCover = r.search = r.backCover = true;
    int asked = 0;
    GenerationCallbacks cb;
    cb.cancelled = [&] { return ++asked > 2; };
    EXPECT_FALSE(runSpecialPages(s, metrics, r, cb));
    EXPECT_EQ(titles(), (std::vector<std::string>{"Umschlag Vorne", "Seite1", "Inhalt"}));
    EXPECT_EQ(s.album().pageCount, 3);
}

}  // namespace
}  // namespace brindle::html
