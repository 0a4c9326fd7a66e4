#include <gtest/gtest.h>

#include "album/stacking.h"

namespace brindle {
namespace {

PageRecord emptyPage() {
    AlbumRecord album;
    ladeStandards(album, "/p/");
    return album.pageDefaults;
}

std::string kinds(const PageRecord& page) {
    std::string s;
    for (int i = 1; i <= page.stack.upper(); ++i)
        s += page.stack[i].kind + ":" + std::to_string(page.stack[i].index) + " ";
    return s;
}

TEST(Stacking, MissingListIsRebuiltTextsAtTheBackSearchInFront) {
    PageRecord page = emptyPage();
    page.stack.release();
    page.searchBoxes.release();
    page.pictures.add();
    page.pictures.add().deleted = kTrue;
    page.pictures.add();
    page.panoramas.add();
    page.texts.add();
    ReihenfolgePruefen(page);
    EXPECT_EQ(kinds(page), "text:1 bild:1 bild:3 panorama:1 ");
    EXPECT_TRUE(page.searchBoxes.allocated());
    EXPECT_EQ(zPos(page.texts[1]), 1);
    EXPECT_EQ(zPos(page.pictures[1]), 2);
    EXPECT_EQ(zPos(page.pictures[3]), 3);
    EXPECT_EQ(zPos(page.panoramas[1]), 4);
    EXPECT_EQ(zPos(page.pictures[2]), 0);  // deleted elements get no entry
}

TEST(Stacking, AllDeletedEndsWithAnEmptyList) {
    PageRecord page = emptyPage();
    page.texts.add().deleted = kTrue;
    page.pictures.add().deleted = 1;
    page.stack.add() = {1, "text"};
    page.stack.add() = {1, "bild"};
    ReihenfolgePruefen(page);
    EXPECT_TRUE(page.stack.allocated());
    EXPECT_EQ(page.stack.upper(), 0);
}

TEST(Stacking, AFittingListKeepsItsOrder) {
    PageRecord page = emptyPage();
    page.texts.add();
    page.pictures.add();
    page.searchBoxes.add();
    page.panoramas.add();
    page.stack.add() = {1, "suchmaschine"};
    page.stack.add() = {1, "pan360"};  // older pages name panoramas so
    page.stack.add() = {1, "bild"};
    page.stack.add() = {1, "text"};
    ReihenfolgePruefen(page);
    EXPECT_EQ(kinds(page), "suchmaschine:1 pan360:1 bild:1 text:1 ");

    // Same length, but one entry points at a deleted element: rebuilt.
    page.pictures[1].deleted = kTrue;
    page.pictures.add();
    ReihenfolgePruefen(page);
    EXPECT_EQ(kinds(page), "text:1 bild:2 panorama:1 suchmaschine:1 ");

    // An entry past the end of its array: rebuilt.
    page.stack[2].index = 9;
    ReihenfolgePruefen(page);
    EXPECT_EQ(kinds(page), "text:1 bild:2 panorama:1 suchmaschine:1 ");
}

}  // namespace
}  // namespace brindle
