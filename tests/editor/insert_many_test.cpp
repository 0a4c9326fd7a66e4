#include <gtest/gtest.h>

#include "document_fixture.h"
#include "printers.h"

namespace brindle::editor::test {
namespace {

class InsertManyTest : public DocumentTest {
protected:
    void SetUp() override {
        DocumentTest::SetUp();
        AlbumRecord& a = session->album();
        a.insertWidth = 100;
        a.insertHeight = 50;
        a.insertGapX = 9;
        a.insertGapY = 9;
        a.keepAspect = kFalse;
        a.insertOriginalSize = 0;
        a.insertNameBelow = kFalse;
        a.insertInRows = kTrue;
        a.insertToMaxWidth = kFalse;
        a.insertRows = 2;
        load();
    }
    std::vector<PageDocument::PictureFile> files(int n, int w = 400, int h = 200) {
        std::vector<PageDocument::PictureFile> list;
        for (int i = 1; i <= n; ++i) list.push_back({"/bilder/b" + std::to_string(i) + ".jpg", w, h});
        return list;
    }
    Box picture(int i) { return recordBox({Kind::Bild, i}); }
};

TEST_F(InsertManyTest, FiveAtTwoPerRowMakeRowsOfTwoTwoOne) {
    doc->insertManyPictures({10, 20}, files(5), 800);
    const Box expected[] = {{10, 20, 100, 50}, {119, 20, 100, 50}, {10, 79, 100, 50}, {119, 79, 100, 50},
                            {10, 138, 100, 50}};
    for (int i = 1; i <= 5; ++i) EXPECT_EQ(picture(i), expected[i - 1]) << "picture " << i;
    EXPECT_EQ(page().pictures[3].hyperlink, "<vollbild>");
    EXPECT_EQ(order(), "b1 b2 b3 b4 b5");
    EXPECT_EQ(doc->undoRing().pos, 5);
    EXPECT_EQ(doc->undoRing().aktion[5], "Eingefügt");
    EXPECT_TRUE(doc->auswahl().empty());
    EXPECT_TRUE(isTrue(session->album().modified));
}

TEST_F(InsertManyTest, ZeroPerRowPlacesOnePerRowAndIsWrittenBackAsOne) {
    session->album().insertRows = 0;
    doc->insertManyPictures({10, 20}, files(2), 800);
    EXPECT_EQ(picture(1), (Box{10, 20, 100, 50}));
    EXPECT_EQ(picture(2), (Box{10, 79, 100, 50}));
    EXPECT_EQ(session->album().insertRows, 1);
}

TEST_F(InsertManyTest, AWidePictureStandsAloneInItsRow) {
    AlbumRecord& a = session->album();
    a.insertInRows = kFalse;
    a.insertToMaxWidth = kTrue;
    a.insertMaxWidth = 300;
    a.insertOriginalSize = 1;
    doc->insertManyPictures({10, 20}, {{"/a.jpg", 100, 50}, {"/breit.jpg", 400, 60}, {"/c.jpg", 100, 50}}, 800);
    EXPECT_EQ(picture(1), (Box{10, 20, 100, 50}));
    EXPECT_EQ(picture(2), (Box{10, 79, 400, 60}));
    EXPECT_EQ(picture(3), (Box{10, 148, 100, 50}));
    EXPECT_EQ(page().pictures[2].ext.extLong[0], -1);
}

TEST_F(InsertManyTest, AsInViewWrapsAtTheCanvasWidth) {
    session->album().insertInRows = kFalse;
    doc->insertManyPictures({10, 20}, files(3), 250);
    EXPECT_EQ(picture(2), (Box{119, 20, 100, 50}));
    EXPECT_EQ(picture(3), (Box{10, 79, 100, 50}));
}

TEST_F(InsertManyTest, NamesBelowAddOneLineHeightPerRow) {
    session->album().insertNameBelow = kTrue;
    doc->insertManyPictures({10, 20}, files(3), 800);
    // A line of the 12-point sample is 16 pixels high.
    EXPECT_EQ(picture(3), (Box{10, 95, 100, 50}));
    ASSERT_EQ(page().texts.upper(), 3);
    EXPECT_EQ(page().texts[1].text, "b1.jpg");
    EXPECT_EQ(page().texts[1].ext.extLong[1], 1);
    EXPECT_EQ(recordBox({Kind::Text, 1}), (Box{10, 70, 36, 16}));
    EXPECT_EQ(order(), "t1 b1 t2 b2 t3 b3");
}

TEST_F(InsertManyTest, AnUnreadableFileIsTakenBackAndTheNextTakesItsSpot) {
    doc->insertManyPictures({10, 20}, {{"/a.jpg", 400, 200}, {"/kaputt.jpg", 0, 0}, {"/c.jpg", 400, 200}}, 800);
    EXPECT_EQ(page().pictures.upper(), 2);
    EXPECT_EQ(page().pictures[2].path, "/c.jpg");
    EXPECT_EQ(picture(2), (Box{119, 20, 100, 50}));
    EXPECT_EQ(doc->undoRing().pos, 2);
}

TEST_F(InsertManyTest, KeepingTheAspectFitsEachPictureInTheInsertSize) {
    session->album().keepAspect = kTrue;
    doc->insertManyPictures({0, 0}, files(1, 400, 400), 800);
    EXPECT_EQ(picture(1), (Box{0, 0, 50, 50}));
}

TEST(SplitFileList, OnePathOrADirectoryWithNames) {
    EXPECT_EQ(splitFileList("/b/a.jpg"), std::vector<std::string>{"/b/a.jpg"});
    EXPECT_EQ(splitFileList("/b;a.jpg;c.png"), (std::vector<std::string>{"/b/a.jpg", "/b/c.png"}));
    EXPECT_EQ(splitFileList("/b/;a.jpg"), (std::vector<std::string>{"/b/a.jpg"}));
    EXPECT_TRUE(splitFileList("").empty());
}

}  // namespace
}  // namespace brindle::editor::test
