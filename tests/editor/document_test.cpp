#include <gtest/gtest.h>

#include "document_fixture.h"
#include "printers.h"

namespace brindle::editor::test {
namespace {

using SelectionTest = DocumentTest;

std::string selected(const PageDocument& d) {
    std::string s;
    for (const SelectionEntry& e : d.auswahl()) s += std::string(kindName(e.ref.kind)) + std::to_string(e.ref.index) + " ";
    return s;
}

TEST_F(SelectionTest, FrameStatusAndHandlesOfAMixedSelection) {
    addPicture({10, 20, 100, 50});
    addText({200, 40, 60, 30}, "Hallo");
    load();
    doc->SetzAnker({Kind::Text, 1}, 0);
    EXPECT_EQ(statuses.back(), "B:60 H:30   L:200 T:40");
    doc->SetzAnker({Kind::Bild, 1}, 1);
    EXPECT_EQ(selected(*doc), "Text1 Bild1 ");
    EXPECT_EQ(doc->anker(), (Box{10, 20, 250, 50}));
    EXPECT_EQ(statuses.back(), "B:250 H:50   L:10 T:20");
    EXPECT_EQ(doc->handles()[0], (Point{2, 12}));
    EXPECT_EQ(doc->handles()[4], (Point{260, 70}));
    EXPECT_EQ(doc->handles()[8], (Point{131, 41}));
    EXPECT_EQ(*doc->aktiv(), (ElementRef{Kind::Bild, 1}));
}

TEST_F(SelectionTest, ASinglePictureTakesItsTurnedHandles) {
    addPicture({194, 94, 212, 212}, "a.jpg", 45);
    page().pictures[1].pictureWidth = 1200;
    page().pictures[1].pictureHeight = 600;
    load();
    doc->SetzAnker({Kind::Bild, 1}, 0);
    EXPECT_EQ(doc->handles()[0], (Point{261, 90}));
    EXPECT_EQ(doc->handles()[3], (Point{366, 266}));
    EXPECT_EQ(doc->handles()[8], (Point{296, 196}));
    EXPECT_EQ(doc->eckPunkte()[6], (Point{194, 165}));
}

TEST_F(SelectionTest, RubberBandSelectsPicturesFirstAndEmptyBandClears) {
    addText({0, 0, 50, 20}, "a");
    addPicture({40, 10, 50, 50});
    addSearch({300, 300, 50, 50});
    addPicture({500, 500, 20, 20});
    load();
    doc->selectInBand({30, 5, 20, 10});
    EXPECT_EQ(selected(*doc), "Bild1 Text1 ");
    doc->selectInBand({290, 290, 100, 100});
    EXPECT_EQ(selected(*doc), "Suchmaschine1 ");
    doc->selectInBand({200, 200, 10, 10});
    EXPECT_EQ(selected(*doc), "");
    EXPECT_FALSE(doc->handlesVisible());
}

TEST_F(SelectionTest, SelectAllLeavesSearchBoxesOut) {
    addText({0, 0, 50, 20}, "a");
    addSearch({300, 300, 50, 50});
    addPicture({40, 10, 50, 50});
    addPicture({40, 80, 50, 50});
    page().pictures[1].deleted = kTrue;
    load();
    doc->selectAll();
    EXPECT_EQ(selected(*doc), "Bild2 Text1 ");
}

TEST_F(SelectionTest, PressingSelectsShiftAddsAndAGroupOnlyMoves) {
    addPicture({0, 0, 50, 50});
    addText({100, 0, 50, 20}, "a");
    load();
    doc->pressElement({Kind::Bild, 1}, {10, 10}, false);
    doc->releaseHandle();
    doc->pressElement({Kind::Text, 1}, {110, 10}, true);
    EXPECT_EQ(selected(*doc), "Bild1 Text1 ");
    doc->releaseHandle();
    doc->pressHandle(4, {150, 20});  // a group drags handle 8 whatever was pressed
    EXPECT_EQ(doc->draggedHandle(), 8);
    doc->moveHandle({160, 25});
    doc->releaseHandle();
    EXPECT_EQ(recordBox({Kind::Bild, 1}), (Box{10, 5, 50, 50}));
    EXPECT_EQ(recordBox({Kind::Text, 1}), (Box{110, 5, 50, 20}));
    EXPECT_EQ(doc->undoRing().pos, 2);
}

TEST_F(SelectionTest, APressWithoutAMoveChangesNothing) {
    addPicture({0, 0, 50, 50});
    load();
    doc->pressElement({Kind::Bild, 1}, {10, 10}, false);
    doc->moveHandle({10, 10});  // no change of position: dropped
    doc->releaseHandle();
    EXPECT_FALSE(modified());
    EXPECT_EQ(doc->undoRing().pos, 0);
}

TEST_F(SelectionTest, WithoutLiveMoveOnlyTheRubberFrameMovesUntilRelease) {
    addText({20, 20, 100, 40}, "a");
    load();
    doc->SetzAnker({Kind::Text, 1}, 0);
    doc->pressHandle(0, {100, 100});
    doc->moveHandle({90, 95});
    EXPECT_EQ(doc->control({Kind::Text, 1})->box, (Box{20, 20, 100, 40}));
    EXPECT_EQ(*doc->gummiRechteck(), (Box{10, 15, 110, 45}));
    EXPECT_EQ(statuses.back(), "B110 H45");
    EXPECT_EQ(recordBox({Kind::Text, 1}), (Box{20, 20, 100, 40}));
    doc->releaseHandle();
    EXPECT_FALSE(doc->gummiRechteck());
    EXPECT_EQ(doc->control({Kind::Text, 1})->box, (Box{10, 15, 110, 45}));
    EXPECT_EQ(recordBox({Kind::Text, 1}), (Box{10, 15, 110, 45}));
    EXPECT_TRUE(modified());
}

TEST_F(SelectionTest, WithLiveMoveTheControlFollowsAtOnceAndTheRecordAtRelease) {
    options().liveMove = kTrue;
    addText({20, 20, 100, 40}, "a");
    load();
    doc->SetzAnker({Kind::Text, 1}, 0);
    doc->pressHandle(8, {100, 100});
    doc->moveHandle({130, 100});
    EXPECT_EQ(doc->control({Kind::Text, 1})->box.left, 50);
    EXPECT_EQ(recordBox({Kind::Text, 1}).left, 20);
    EXPECT_FALSE(doc->gummiRechteck());
    doc->releaseHandle();
    EXPECT_EQ(recordBox({Kind::Text, 1}).left, 50);
}

TEST_F(SelectionTest, LeftHandleDraggedPastTheRightEdgeStopsAtTen) {
    addText({100, 100, 50, 40}, "a");
    load();
    doc->SetzAnker({Kind::Text, 1}, 0);
    drag(7, 100, 0);
    EXPECT_EQ(recordBox({Kind::Text, 1}), (Box{140, 100, 10, 40}));
}

TEST_F(SelectionTest, TextOfModeOneTakesTheFittedFontAtRelease) {
    addText({0, 0, 20, 13}, "abcd", 1, 10);
    load();
    doc->SetzAnker({Kind::Text, 1}, 0);
    doc->pressHandle(4, {100, 100});
    doc->moveHandle({120, 113});
    EXPECT_EQ(page().texts[1].font.size, 10);  // nothing written during the drag
    doc->releaseHandle();
    EXPECT_EQ(page().texts[1].font.size, 18);
    EXPECT_EQ(recordBox({Kind::Text, 1}), (Box{0, 0, 40, 26}));
}

TEST_F(SelectionTest, TextOfModeTwoRewrapsAndItsHeightFollows) {
    addText({0, 0, 100, 13}, "abcdefghijklmnop", 2, 10);
    load();
    doc->SetzAnker({Kind::Text, 1}, 0);
    drag(3, -60, 0);
    EXPECT_EQ(page().texts[1].ext.extText[0], "abcdefghij\r\nklmnop");
    EXPECT_EQ(page().texts[1].text, "abcdefghijklmnop");
    EXPECT_EQ(recordBox({Kind::Text, 1}), (Box{0, 0, 40, 26}));
    drag(5, 0, 30);  // top and bottom handles only move such a text
    EXPECT_EQ(recordBox({Kind::Text, 1}), (Box{0, 30, 40, 26}));
}

// ---------------------------------------------------------------- keyboard

struct KeyRow {
    ArrowKey key;
    KeyModifiers mods;
    bool grid;
    Box out;
};

TEST_F(SelectionTest, ArrowKeysMoveAndSizeByTheirSteps) {
    const KeyRow rows[] = {
        {ArrowKey::Left, {}, false, {49, 50, 100, 60}},
        {ArrowKey::Left, {false, true, false}, false, {45, 50, 100, 60}},
        {ArrowKey::Right, {true, false, false}, false, {50, 50, 101, 60}},
        {ArrowKey::Right, {true, true, false}, false, {50, 50, 105, 60}},
        {ArrowKey::Up, {true, false, false}, false, {50, 50, 100, 59}},
        {ArrowKey::Down, {false, true, false}, false, {50, 55, 100, 60}},
        {ArrowKey::Left, {}, true, {40, 49, 100, 60}},  // the top snaps to the grid too
        {ArrowKey::Down, {}, true, {50, 56, 100, 60}},
    };
    addPicture({50, 50, 100, 60});
    page().pictures[1].proportional = kFalse;
    load();
    for (const KeyRow& r : rows) {
        SCOPED_TRACE(testing::Message() << "key " << int(r.key) << " shift " << r.mods.shift << " ctrl "
                                        << r.mods.ctrl << " grid " << r.grid);
        setBox(page(), {Kind::Bild, 1}, {50, 50, 100, 60});
        options().gridUse = toBool16(r.grid);
        options().gridWidth = 10;
        options().gridHeight = 7;
        doc->NeuZeichnen();
        doc->SetzAnker({Kind::Bild, 1}, 0);
        EXPECT_TRUE(doc->keyDown(r.key, r.mods));
        doc->keyUp();
        EXPECT_EQ(recordBox({Kind::Bild, 1}), r.out);
    }
}

TEST_F(SelectionTest, ShiftArrowOnATextSetsModeOneAndTakesTenSteps) {
    addText({50, 50, 100, 20}, "abcd", 0, 10);
    load();
    doc->SetzAnker({Kind::Text, 1}, 0);
    doc->keyDown(ArrowKey::Right, {true, false, false});
    doc->keyUp();
    EXPECT_EQ(page().texts[1].ext.extLong[1], 1);
    EXPECT_EQ(recordBox({Kind::Text, 1}), (Box{50, 50, 110, 20}));
    doc->keyDown(ArrowKey::Left, {true, true, false});
    doc->keyUp();
    EXPECT_EQ(recordBox({Kind::Text, 1}).width, 90);
}

TEST_F(SelectionTest, KeysDoNothingWithoutASelection) {
    addPicture({50, 50, 100, 60});
    load();
    EXPECT_FALSE(doc->keyDown(ArrowKey::Left, {}));
    EXPECT_EQ(doc->undoRing().pos, 0);
}

TEST_F(SelectionTest, AltArrowsTurnAPictureAndItsBoxFollows) {
    addPicture({200, 150, 200, 100});
    load();
    doc->SetzAnker({Kind::Bild, 1}, 0);
    doc->keyDown(ArrowKey::Right, {true, false, true});
    EXPECT_EQ(page().pictures[1].ext.extLong[5], 5);
    EXPECT_EQ(doc->control({Kind::Bild, 1})->angle, 5);
    EXPECT_EQ(recordBox({Kind::Bild, 1}), (calcAutoSizeImage(calcEckPoints(300, 200, 5, 200, 100), 5)));
    doc->keyDown(ArrowKey::Left, {false, false, true});
    EXPECT_EQ(page().pictures[1].ext.extLong[5], 4);
    EXPECT_EQ(doc->undoRing().pos, 2);
    doc->MachUndo();
    doc->MachUndo();
    EXPECT_EQ(page().pictures[1].ext.extLong[5], 0);
    EXPECT_EQ(recordBox({Kind::Bild, 1}), (Box{200, 150, 200, 100}));
}

// ---------------------------------------------------------------- commands

using CommandTest = DocumentTest;

TEST_F(CommandTest, ClipboardSurvivesClosingThePageAndPastesTheSameRecords) {
    addPicture({10, 20, 100, 50}, "/bilder/see.jpg");
    addText({200, 40, 60, 30}, "Hallo");
    load();
    doc->selectAll();
    doc->copy();
    EXPECT_TRUE(doc->canPaste());
    const PictureElement picture = page().pictures[1];
    const TextElement text = page().texts[1];
    doc.reset();
    session->seiteGeschlossen(1);
    const int slot = session->neueSeite("", false);
    auto other = makeDocument(slot);
    other->NeuZeichnen();
    other->paste();
    PageRecord& p = session->page(slot);
    ASSERT_EQ(p.pictures.upper(), 1);
    ASSERT_EQ(p.texts.upper(), 1);
    EXPECT_EQ(p.pictures[1].path, "/bilder/see.jpg");
    EXPECT_EQ(boxOf(p, {Kind::Bild, 1}), (Box{10, 20, 100, 50}));
    EXPECT_EQ(p.texts[1].text, "Hallo");
    EXPECT_EQ(p.texts[1].font, text.font);
    EXPECT_EQ(selected(*other), "Bild1 Text1 ");
    EXPECT_EQ(order(slot), "b1 t1");
    EXPECT_EQ(other->undoRing().aktion[2], "Eingefügt");
    EXPECT_EQ(picture.path, p.pictures[1].path);
}

TEST_F(CommandTest, PasteOnTheSamePageSitsOverTheSource) {
    addPicture({10, 20, 100, 50});
    load();
    doc->SetzAnker({Kind::Bild, 1}, 0);
    doc->copy();
    doc->paste();
    EXPECT_EQ(recordBox({Kind::Bild, 2}), (Box{10, 20, 100, 50}));
    EXPECT_EQ(order(), "b1 b2");
    EXPECT_EQ(zPos(page().pictures[2]), 2);
}

TEST_F(CommandTest, CutCopiesThenDeletesAndLowersTheZPosAbove) {
    addText({0, 0, 10, 10}, "a");
    addText({0, 0, 10, 10}, "b");
    addPicture({0, 0, 50, 50});
    load();
    ASSERT_EQ(order(), "t1 t2 b1");
    doc->SetzAnker({Kind::Text, 1}, 0);
    doc->cut();
    EXPECT_TRUE(isTrue(page().texts[1].deleted));
    EXPECT_EQ(order(), "t2 b1");
    EXPECT_EQ(zPos(page().texts[2]), 1);
    EXPECT_EQ(zPos(page().pictures[1]), 2);
    EXPECT_EQ(session->state().clipboard.texts[1].text, "a");
    EXPECT_EQ(doc->undoRing().aktion[1], "löschen");
    EXPECT_FALSE(doc->control({Kind::Text, 1}));
    EXPECT_TRUE(doc->auswahl().empty());
}

struct ZRow {
    const char* verb;
    const char* order;
};

TEST_F(CommandTest, ZOrderCommandsWorkOnEverySelectedElement) {
    const ZRow rows[] = {{"ganzvorn", "t2 b1 t1"}, {"ganzhinten", "t1 t2 b1"}, {"nachvorn", "t2 t1 b1"},
                         {"nachhinten", "t1 t2 b1"}};
    addText({0, 0, 10, 10}, "a");
    addText({0, 0, 10, 10}, "b");
    addPicture({0, 0, 50, 50});
    load();
    for (const ZRow& r : rows) {
        SCOPED_TRACE(r.verb);
        ordered.clear();
        doc->SetzAnker({Kind::Text, 1}, 0);
        doc->zOrder(r.verb);
        EXPECT_EQ(order(), r.order);
        EXPECT_EQ(ordered, std::vector<int>{1});
    }
    EXPECT_TRUE(modified());
    EXPECT_EQ(doc->undoRing().pos, 0);  // the stacking list is not stepped
}

TEST_F(CommandTest, DrawnPictureFitsItsBoxAndIsSteppedAsInserted) {
    load();
    const ElementRef ref = doc->createPicture({10, 10, 300, 300}, "/b/see.jpg", 1200, 800);
    EXPECT_EQ(recordBox(ref), (Box{10, 10, 300, 200}));
    EXPECT_EQ(page().pictures[1].ext.extText[2], "300");
    EXPECT_EQ(page().pictures[1].ext.extText[3], "200");
    EXPECT_EQ(selected(*doc), "Bild1 ");
    EXPECT_EQ(doc->undoRing().aktion[1], "Eingefügt");
    EXPECT_EQ(order(), "b1");
    EXPECT_TRUE(modified());
}

TEST_F(CommandTest, DrawnTextFollowsItsBoxWithModeOne) {
    load();
    const ElementRef ref = doc->createText({0, 0, 40, 26}, "abcd");
    EXPECT_EQ(page().texts[ref.index].ext.extLong[1], 1);
    EXPECT_EQ(page().texts[ref.index].font.size, 18);
    EXPECT_EQ(page().texts[ref.index].font.name, "Arial");
    EXPECT_EQ(page().texts[ref.index].ext.extText[0], "abcd");
    EXPECT_EQ(doc->control(ref)->shownText, "abcd");
}

TEST_F(CommandTest, DrawnTextTakesTheAlbumsTextFontAndColour) {
    load();
    options().font = FontSpec{0x000000, "Liberation Mono", 10, kFalse, kFalse, kFalse};
    session->album().style.textFont = FontSpec{0xF0E0D0, "Liberation Serif", 14, kTrue, kTrue, kFalse};
    const ElementRef small = doc->createText({0, 0, 2, 2}, "abc");  // too small to fit: the font stays
    EXPECT_EQ(page().texts[small.index].font, (FontSpec{0xF0E0D0, "Liberation Serif", 14, kTrue, kTrue, kFalse}));
    // A style without name or size falls back to the options' font for those only.
    session->album().style.textFont = FontSpec{0xFFFFFF, "", 0, kFalse, kFalse, kTrue};
    const ElementRef plain = doc->createText({0, 0, 2, 2}, "abc");
    EXPECT_EQ(page().texts[plain.index].font, (FontSpec{0xFFFFFF, "Liberation Mono", 10, kFalse, kFalse, kTrue}));
}

TEST_F(CommandTest, NeuZeichnenRunsItsTenStepsWithTheirTexts) {
    addText({0, 0, 10, 10}, "a");
    addPicture({0, 0, 50, 50});
    addPicture({700, 900, 50, 50});
    page().pictures[1].deleted = kTrue;
    session->state().pageSlots[1].modified = kFalse;
    std::vector<int> steps;
    doc->hooks().neuZeichnenSchritt = [&](int s) { steps.push_back(s); };
    doc->NeuZeichnen();
    const std::vector<std::string> expected = {
        "Seite wird geladen ...",        "Texte werden geladen ...",       "Suchmaschinen werden geladen ...",
        "Bilder werden geladen ...",     "Bild2 wird geladen ...",         "Panoramen werden geladen ...",
        "Button werden geladen ...",     "Scrollleisten werden geladen ...", "Reihenfolge wird angepasst ...",
        "Hintergrund wird angepasst ...", "Playmode wird eingestellt ...",  ""};
    EXPECT_EQ(statuses, expected);
    EXPECT_EQ(steps, (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
    EXPECT_EQ(doc->extentWidth(), 750);
    EXPECT_EQ(doc->extentHeight(), 950);
    EXPECT_FALSE(modified());
    EXPECT_FALSE(doc->control({Kind::Bild, 1}));
}

TEST_F(CommandTest, NeuZeichnenSpeaksEnglishInAnEnglishSession) {
    session->state().language = Language::English;
    addPicture({0, 0, 50, 50});
    doc->NeuZeichnen();
    EXPECT_EQ(statuses[0], "Page will be loaded ...");
    EXPECT_EQ(statuses[4], "Picture1 will be loaded ...");
    EXPECT_EQ(statuses[7], "Scroll wil be loaded ...");
}

TEST_F(CommandTest, CanvasGrowsByStepsUpToEight) {
    load();
    EXPECT_EQ(doc->extentWidth(), 200);
    EXPECT_FALSE(doc->canGrow(true, false));
    for (int i = 0; i < 10; ++i) doc->grow(true, true);
    EXPECT_EQ(doc->extentWidth(), 1600);
    doc->grow(false, true);
    EXPECT_EQ(doc->extentHeight(), 1200);
    doc->grow(false, false);
    EXPECT_EQ(doc->extentHeight(), 600);
}

// ---------------------------------------------------------------- alignment

struct AlignRow {
    const char* key;
    bool grid;
    Box a, b, c;
};

TEST_F(CommandTest, AlignmentKeysMoveEveryElementAndStepEach) {
    const AlignRow rows[] = {
        {"setleft", false, {10, 10, 50, 30}, {10, 40, 60, 20}, {10, 100, 30, 30}},
        {"SetTop", false, {10, 10, 50, 30}, {100, 10, 60, 20}, {40, 10, 30, 30}},
        {"setright", false, {110, 10, 50, 30}, {100, 40, 60, 20}, {130, 100, 30, 30}},
        {"setdown", false, {10, 100, 50, 30}, {100, 110, 60, 20}, {40, 100, 30, 30}},
        {"setcenterver", false, {60, 10, 50, 30}, {55, 40, 60, 20}, {70, 100, 30, 30}},
        {"setcenterhor", false, {10, 55, 50, 30}, {100, 60, 60, 20}, {40, 55, 30, 30}},
        {"setaufthor", false, {10, 10, 50, 30}, {55, 40, 60, 20}, {130, 100, 30, 30}},
        {"setauftver", false, {10, 10, 50, 30}, {100, 60, 60, 20}, {40, 100, 30, 30}},
        {"setdown", true, {10, 103, 50, 30}, {100, 113, 60, 20}, {40, 103, 30, 30}},
        {"setcenterver", true, {60, 10, 50, 30}, {50, 40, 60, 20}, {70, 100, 30, 30}},
        // the vertical distribution rounds with the horizontal step: 60, where the vertical step gives 63
        {"setauftver", true, {10, 10, 50, 30}, {100, 60, 60, 20}, {40, 100, 30, 30}},
        {"setnirgends", false, {10, 10, 50, 30}, {100, 40, 60, 20}, {40, 100, 30, 30}},
    };
    addPicture({10, 10, 50, 30});
    addText({100, 40, 60, 20}, "b");
    addSearch({40, 100, 30, 30});
    for (const AlignRow& r : rows) {
        SCOPED_TRACE(testing::Message() << r.key << (r.grid ? " on the grid" : ""));
        setBox(page(), {Kind::Bild, 1}, {10, 10, 50, 30});
        setBox(page(), {Kind::Text, 1}, {100, 40, 60, 20});
        setBox(page(), {Kind::Suchmaschine, 1}, {40, 100, 30, 30});
        options().gridUse = toBool16(r.grid);
        options().gridWidth = 10;
        options().gridHeight = 7;
        doc->NeuZeichnen();
        doc->SetzAnker({Kind::Bild, 1}, 0);
        doc->SetzAnker({Kind::Text, 1}, 1);
        doc->SetzAnker({Kind::Suchmaschine, 1}, 1);
        ASSERT_EQ(doc->anker(), (Box{10, 10, 150, 120}));
        const int before = doc->undoRing().pos;
        doc->Ausrichten(r.key);
        EXPECT_EQ(recordBox({Kind::Bild, 1}), r.a);
        EXPECT_EQ(recordBox({Kind::Text, 1}), r.b);
        EXPECT_EQ(recordBox({Kind::Suchmaschine, 1}), r.c);
        EXPECT_EQ(doc->control({Kind::Text, 1})->box, r.b);
        const bool known = std::string(r.key) != "setnirgends";
        EXPECT_EQ(doc->undoRing().pos - before, known ? 3 : 0);
        EXPECT_EQ(doc->auswahl().size(), 3u);  // the selection stays
    }
}

TEST_F(CommandTest, DistributionNeedsTwoElements) {
    addPicture({10, 10, 50, 30});
    load();
    doc->SetzAnker({Kind::Bild, 1}, 0);
    doc->Ausrichten("setaufthor");
    doc->Ausrichten("setauftver");
    EXPECT_EQ(recordBox({Kind::Bild, 1}), (Box{10, 10, 50, 30}));
    EXPECT_EQ(doc->undoRing().pos, 0);
}

}  // namespace
}  // namespace brindle::editor::test
