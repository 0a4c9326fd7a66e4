#include <gtest/gtest.h>

#include <fstream>

#include "document_fixture.h"

namespace brindle::editor::test {
namespace {

using UndoTest = DocumentTest;

TEST_F(UndoTest, FreshPageHasNeitherThenOneChangeThenTheReverse) {
    addPicture({10, 20, 100, 50});
    load();
    EXPECT_FALSE(canUndo);
    EXPECT_FALSE(canRedo);
    doc->SetzAnker({Kind::Bild, 1}, 0);
    drag(8, 5, 5);
    EXPECT_TRUE(canUndo);
    EXPECT_FALSE(canRedo);
    doc->MachUndo();
    EXPECT_FALSE(canUndo);
    EXPECT_TRUE(canRedo);
}

TEST_F(UndoTest, MoveIsUndoneAndRedoneThroughItsSnapshot) {
    addPicture({10, 20, 100, 50});
    load();
    doc->pressElement({Kind::Bild, 1}, {30, 30}, false);
    doc->moveHandle({45, 38});
    doc->releaseHandle();
    EXPECT_EQ(recordBox({Kind::Bild, 1}), (Box{25, 28, 100, 50}));
    EXPECT_EQ(snapshotCount(), 1);
    const UndoRing& ring = doc->undoRing();
    EXPECT_EQ(ring.aktion[1], "Größenänderung");
    EXPECT_EQ(ring.art[1], "Bild");
    EXPECT_EQ(ring.index[1], 1);
    EXPECT_TRUE(ring.datei[1].starts_with(home() + "Temp/brind"));
    EXPECT_TRUE(ring.datei[1].ends_with(".tmp"));

    doc->MachUndo();
    EXPECT_EQ(recordBox({Kind::Bild, 1}), (Box{10, 20, 100, 50}));
    EXPECT_EQ(doc->control({Kind::Bild, 1})->box, (Box{10, 20, 100, 50}));
    EXPECT_TRUE(doc->auswahl().empty());  // undo ends the selection
    doc->MachRedo();
    EXPECT_EQ(recordBox({Kind::Bild, 1}), (Box{25, 28, 100, 50}));
    EXPECT_EQ(doc->control({Kind::Bild, 1})->box, (Box{25, 28, 100, 50}));
}

TEST_F(UndoTest, DeleteUndoTakesTheNextFreeNumberAndRedoRemovesThatNumber) {
    addPicture({0, 0, 50, 50}, "a.jpg");
    addPicture({60, 0, 50, 50}, "b.jpg");
    addPicture({120, 0, 50, 50}, "c.jpg");
    load();
    ASSERT_EQ(order(), "b1 b2 b3");
    doc->SetzAnker({Kind::Bild, 1}, 0);
    doc->deleteSelection();
    doc->SetzAnker({Kind::Bild, 2}, 0);
    doc->deleteSelection();
    EXPECT_EQ(order(), "b3");
    EXPECT_EQ(zPos(page().pictures[3]), 1);

    doc->MachUndo();  // b.jpg comes back in the first free slot, 1
    EXPECT_EQ(page().pictures[1].path, "b.jpg");
    EXPECT_FALSE(isTrue(page().pictures[1].deleted));
    EXPECT_TRUE(isTrue(page().pictures[2].deleted));
    EXPECT_EQ(doc->undoRing().index[2], 1);
    EXPECT_EQ(order(), "b1 b3");

    doc->MachUndo();  // a.jpg finds slot 1 taken and goes to 2, back at the bottom
    EXPECT_EQ(page().pictures[2].path, "a.jpg");
    EXPECT_EQ(doc->undoRing().index[1], 2);
    EXPECT_EQ(order(), "b2 b1 b3");
    EXPECT_EQ(zPos(page().pictures[2]), 1);
    EXPECT_EQ(zPos(page().pictures[1]), 2);
    EXPECT_EQ(zPos(page().pictures[3]), 3);
    EXPECT_TRUE(doc->control({Kind::Bild, 2}));

    doc->MachRedo();  // removes number 2, the new one, and leaves the list as it stands
    EXPECT_TRUE(isTrue(page().pictures[2].deleted));
    EXPECT_FALSE(isTrue(page().pictures[1].deleted));
    EXPECT_FALSE(doc->control({Kind::Bild, 2}));
    EXPECT_EQ(order(), "b2 b1 b3");
}

TEST_F(UndoTest, RedoOfAnAendernStepLeavesTheChangeUndone) {
    const int n = addText({10, 10, 100, 20}, "alt");
    load();
    doc->takeBeforeCopy({Kind::Text, n});
    page().texts[n].text = "neu";
    doc->NeuUndo("ändern", Kind::Text, n);
    doc->MachUndo();
    EXPECT_EQ(page().texts[n].text, "alt");
    EXPECT_EQ(doc->control({Kind::Text, n})->shownText, "alt");
    doc->MachRedo();
    EXPECT_EQ(page().texts[n].text, "alt");  // redo looks for "änderung"
    EXPECT_EQ(doc->undoRing().pos, 1);
    EXPECT_TRUE(canUndo);
    EXPECT_FALSE(canRedo);
}

TEST_F(UndoTest, AFontChangeIsAnAendernStepAndUndoBringsTheOldFontBack) {
    addText({10, 10, 100, 20}, "Hallo", 0, 10);
    load();
    doc->SetzAnker({Kind::Text, 1}, 0);
    doc->changeSelectedTexts([](TextElement& t) { t.font.size = 24; });
    EXPECT_EQ(doc->control({Kind::Text, 1})->fontSize, 24);
    EXPECT_EQ(doc->undoRing().aktion[1], "ändern");
    doc->MachUndo();
    EXPECT_EQ(page().texts[1].font.size, 10);
    EXPECT_EQ(doc->control({Kind::Text, 1})->fontSize, 10);
}

TEST_F(UndoTest, HundredthStepWrapsToSlotOneAndUndoStopsThere) {
    addPicture({0, 0, 50, 50});
    load();
    doc->SetzAnker({Kind::Bild, 1}, 0);
    for (int i = 0; i < 100; ++i) {
        doc->keyDown(ArrowKey::Right, {});
        doc->keyUp();
    }
    EXPECT_EQ(recordBox({Kind::Bild, 1}).left, 100);
    EXPECT_EQ(doc->undoRing().pos, 1);
    EXPECT_EQ(doc->undoRing().last, 1);
    EXPECT_EQ(doc->undoRing().first, 0);
    EXPECT_EQ(snapshotCount(), 100);  // the older files stay behind
    doc->MachUndo();
    EXPECT_EQ(recordBox({Kind::Bild, 1}).left, 99);
    EXPECT_FALSE(canUndo);
    doc->MachUndo();  // nothing left to undo
    EXPECT_EQ(recordBox({Kind::Bild, 1}).left, 99);
    EXPECT_EQ(doc->undoRing().pos, 0);
}

TEST_F(UndoTest, NinetyNineStepsCanAllBeUndone) {
    addPicture({0, 0, 50, 50});
    load();
    doc->SetzAnker({Kind::Bild, 1}, 0);
    for (int i = 0; i < 99; ++i) {
        doc->keyDown(ArrowKey::Down, {});
        doc->keyUp();
    }
    for (int i = 0; i < 99; ++i) doc->MachUndo();
    EXPECT_EQ(recordBox({Kind::Bild, 1}).top, 0);
    EXPECT_FALSE(canUndo);
}

TEST_F(UndoTest, ANewStepAfterUndoDropsTheRedo) {
    addPicture({0, 0, 50, 50});
    load();
    doc->SetzAnker({Kind::Bild, 1}, 0);
    drag(8, 10, 0);
    drag(8, 10, 0);
    doc->MachUndo();
    ASSERT_TRUE(canRedo);
    doc->SetzAnker({Kind::Bild, 1}, 0);
    drag(8, 0, 10);
    EXPECT_FALSE(canRedo);
    EXPECT_EQ(doc->undoRing().last, doc->undoRing().pos);
    EXPECT_EQ(doc->undoRing().pos, 2);
}

TEST_F(UndoTest, UndoOfAnInsertLeavesTheListEntryAndRedoPutsItBack) {
    addText({0, 0, 40, 20}, "x");
    load();
    const ElementRef made = doc->createPanorama({50, 50, 200, 100});
    EXPECT_EQ(made, (ElementRef{Kind::Panorama, 1}));
    EXPECT_EQ(order(), "t1 p1");
    doc->MachUndo();
    EXPECT_TRUE(isTrue(page().panoramas[1].deleted));
    EXPECT_FALSE(doc->control(made));
    EXPECT_EQ(order(), "t1 p1");  // the list is left as it stands
    doc->MachRedo();
    EXPECT_FALSE(isTrue(page().panoramas[1].deleted));
    EXPECT_TRUE(doc->control(made));
    EXPECT_EQ(recordBox(made), (Box{50, 50, 200, 100}));
}

TEST_F(UndoTest, AStitchedPanoramaGoesOnThePageInOneStep) {
    addText({0, 0, 40, 20}, "x");
    load();
    const ElementRef made = doc->createPanorama({30, 40, 480, 220}, "/bilder/Strand Panorama.jpg", true);
    ASSERT_EQ(made, (ElementRef{Kind::Panorama, 1}));
    const PanoramaElement& pano = page().panoramas[1];
    EXPECT_EQ(pano.hotspotCount, 0);
    EXPECT_EQ(pano.hotspots[0].urlName, "/bilder/Strand Panorama.jpg");
    EXPECT_EQ(pano.hotspots[0].zoomStart, "Full");
    EXPECT_EQ(pano.hotspots[0].ext.extLong[0], -1);
    EXPECT_TRUE(pano.hotspots[1].urlName.empty());
    EXPECT_EQ(recordBox(made), (Box{30, 40, 480, 220}));
    EXPECT_EQ(order(), "t1 p1");
    EXPECT_TRUE(modified());
    EXPECT_TRUE(doc->control(made));
    doc->MachUndo();
    EXPECT_TRUE(isTrue(page().panoramas[1].deleted));
    EXPECT_FALSE(canUndo);
    // An open row does not turn all round.
    doc->createPanorama({0, 0, 300, 100}, "/bilder/b.jpg", false);
    EXPECT_EQ(page().panoramas[1].hotspots[0].ext.extLong[0], 0);
    EXPECT_EQ(page().panoramas[1].hotspots[0].urlName, "/bilder/b.jpg");
}

TEST_F(UndoTest, UndoAfterSaveMarksThePageChangedAgain) {
    addPicture({0, 0, 50, 50});
    load();
    doc->SetzAnker({Kind::Bild, 1}, 0);
    drag(8, 10, 0);
    session->state().pageSlots[1].modified = kFalse;  // as a save leaves it
    doc->MachUndo();
    EXPECT_TRUE(modified());
    EXPECT_EQ(recordBox({Kind::Bild, 1}).left, 0);
}

TEST_F(UndoTest, ASnapshotThatCannotBeWrittenIsReportedAndItsUndoFails) {
    addPicture({0, 0, 50, 50});
    load();
    std::filesystem::remove_all(home() + "Temp");
    touch("Temp");  // a file where the folder belongs
    doc->SetzAnker({Kind::Bild, 1}, 0);
    drag(8, 10, 0);
    ASSERT_EQ(prompter.asked.size(), 1u);
    const std::string file = doc->undoRing().datei[1];
    EXPECT_TRUE(prompter.asked[0].starts_with("message|Fehler|16|Fehler beim speichern der Datei: " + file + "\r"))
        << prompter.asked[0];
    EXPECT_TRUE(canUndo);  // the step stays counted
    doc->MachUndo();
    ASSERT_EQ(prompter.asked.size(), 2u);
    EXPECT_TRUE(prompter.asked[1].starts_with("message|Fehler|16|Fehler beim bearbeiten vom UNDO: \r"))
        << prompter.asked[1];
    EXPECT_EQ(doc->undoRing().pos, 1);  // no step back after the error
    EXPECT_EQ(recordBox({Kind::Bild, 1}).left, 10);
}

TEST_F(UndoTest, TwoPagesKeepTheirOwnHistories) {
    addPicture({0, 0, 50, 50});
    load();
    const int second = session->neueSeite("", false);
    session->page(second).pictures.add() = page().pictures[1];
    auto other = makeDocument(second);
    other->NeuZeichnen();
    doc->SetzAnker({Kind::Bild, 1}, 0);
    drag(8, 10, 0);
    EXPECT_TRUE(doc->undoRing().canUndo());
    EXPECT_FALSE(other->undoRing().canUndo());
    other->MachUndo();
    EXPECT_EQ(recordBox({Kind::Bild, 1}).left, 10);
    EXPECT_EQ(boxOf(session->page(second), {Kind::Bild, 1}).left, 0);
}

}  // namespace
}  // namespace brindle::editor::test
