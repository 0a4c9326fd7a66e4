#include <gtest/gtest.h>

#include "editor/page_operations.h"

namespace brindle::editor {
namespace {

// A page with texts 1..3 and pictures 1..2 stacked t1 b1 t2 b2 t3 (back to front).
PageRecord stackedPage() {
    PageRecord p;
    p.texts.resetToDummy();
    p.pictures.resetToDummy();
    p.panoramas.resetToDummy();
    p.searchBoxes.resetToDummy();
    p.stack.resetToDummy();
    for (int i = 0; i < 3; ++i) p.texts.add();
    for (int i = 0; i < 2; ++i) p.pictures.add();
    const StackEntry order[] = {{1, "text"}, {1, "bild"}, {2, "text"}, {2, "bild"}, {3, "text"}};
    for (const StackEntry& e : order) {
        p.stack.add() = e;
        zPosOf(p, {*kindFromName(e.kind), e.index}) = p.stack.upper();
    }
    return p;
}

std::string order(const PageRecord& p) {
    std::string s;
    for (int i = 1; i <= p.stack.upper(); ++i) s += (s.empty() ? "" : " ") + p.stack[i].kind.substr(0, 1) + std::to_string(p.stack[i].index);
    return s;
}

// ZPos of every element as "t1=1 t2=3 ..." so bookkeeping errors show at once.
std::string zpos(PageRecord& p) {
    std::string s;
    for (int i = 1; i <= p.texts.upper(); ++i) s += "t" + std::to_string(i) + "=" + std::to_string(zPos(p.texts[i])) + " ";
    for (int i = 1; i <= p.pictures.upper(); ++i)
        s += "b" + std::to_string(i) + "=" + std::to_string(zPos(p.pictures[i])) + " ";
    return s;
}

struct VerbRow {
    const char* kind;
    int number;
    const char* verb;
    const char* order;
    const char* zpos;
    bool ordering;
};

void PrintTo(const VerbRow& r, std::ostream* os) { *os << r.kind << r.number << " " << r.verb; }

class VerbTest : public ::testing::TestWithParam<VerbRow> {};

TEST_P(VerbTest, ListAndZPosFollow) {
    const VerbRow& row = GetParam();
    PageRecord p = stackedPage();
    PageSlot slot;
    EXPECT_EQ(SeitenElement(p, slot, row.number, row.kind, row.verb), row.ordering);
    EXPECT_EQ(order(p), row.order);
    EXPECT_EQ(zpos(p), row.zpos);
    EXPECT_TRUE(isTrue(slot.modified));
}

INSTANTIATE_TEST_SUITE_P(
    Verbs, VerbTest,
    ::testing::Values(
        VerbRow{"text", 2, "nachvorn", "t1 b1 b2 t2 t3", "t1=1 t2=4 t3=5 b1=2 b2=3 ", true},
        VerbRow{"text", 3, "nachvorn", "t1 b1 t2 b2 t3", "t1=1 t2=3 t3=5 b1=2 b2=4 ", true},  // front stays
        VerbRow{"bild", 2, "nachhinten", "t1 b1 b2 t2 t3", "t1=1 t2=4 t3=5 b1=2 b2=3 ", true},
        VerbRow{"text", 1, "nachhinten", "t1 b1 t2 b2 t3", "t1=1 t2=3 t3=5 b1=2 b2=4 ", true},  // back stays
        VerbRow{"BILD", 1, "GanzVorn", "t1 t2 b2 t3 b1", "t1=1 t2=2 t3=4 b1=5 b2=3 ", true},
        VerbRow{"text", 3, "ganzvorn", "t1 b1 t2 b2 t3", "t1=1 t2=3 t3=5 b1=2 b2=4 ", true},
        VerbRow{"bild", 2, "ganzhinten", "b2 t1 b1 t2 t3", "t1=2 t2=4 t3=5 b1=3 b2=1 ", true},
        VerbRow{"text", 1, "ganzhinten", "t1 b1 t2 b2 t3", "t1=1 t2=3 t3=5 b1=2 b2=4 ", true},
        VerbRow{"text", 2, "löschen", "t1 b1 b2 t3", "t1=1 t2=3 t3=4 b1=2 b2=3 ", false},
        VerbRow{"bild", 1, "Löschen", "t1 t2 b2 t3", "t1=1 t2=2 t3=4 b1=2 b2=3 ", false}),
    [](const auto& info) { return "row" + std::to_string(info.index); });

TEST(SeitenElement, UnknownVerbLeavesThePageUnchanged) {
    PageRecord p = stackedPage();
    PageSlot slot;
    EXPECT_FALSE(SeitenElement(p, slot, 1, "text", "drehen"));
    EXPECT_FALSE(isTrue(slot.modified));
}

TEST(SeitenElement, NeuAppendsAtTheFrontAndCreatesAMissingList) {
    PageRecord p;
    p.pictures.add();
    PageSlot slot;
    EXPECT_FALSE(SeitenElement(p, slot, 1, "bild", "neu"));
    EXPECT_EQ(order(p), "b1");
    EXPECT_EQ(zPos(p.pictures[1]), 1);
    p.texts.add();
    SeitenElement(p, slot, 1, "text", "neu");
    EXPECT_EQ(order(p), "b1 t1");
    EXPECT_EQ(zPos(p.texts[1]), 2);
}

TEST(SeitenElement, DeleteThenEinfuegenRestoresThePlace) {
    PageRecord p = stackedPage();
    PageSlot slot;
    SeitenElement(p, slot, 1, "bild", "löschen");
    ASSERT_EQ(zPos(p.pictures[1]), 2);  // its own ZPos stays for the way back
    SeitenElement(p, slot, 1, "bild", "einfügen");
    EXPECT_EQ(order(p), "t1 b1 t2 b2 t3");
    EXPECT_EQ(zpos(p), "t1=1 t2=3 t3=5 b1=2 b2=4 ");
}

TEST(SeitenElement, PanoramaOfOlderPagesIsFoundUnderPan360) {
    PageRecord p;
    p.panoramas.add();
    p.texts.add();
    p.stack.add() = {1, "pan360"};
    p.stack.add() = {1, "text"};
    zPos(p.panoramas[1]) = 1;
    zPos(p.texts[1]) = 2;
    PageSlot slot;
    SeitenElement(p, slot, 1, "text", "ganzhinten");
    EXPECT_EQ(order(p), "t1 p1");
    EXPECT_EQ(zPos(p.panoramas[1]), 2);
}

TEST(Naechstes, TakesTheFirstDeletedSlotClearedElseGrows) {
    PageRecord p;
    EXPECT_EQ(NaechstesBild(p), 1);  // an array never allocated is caught
    p.pictures[1].path = "a.jpg";
    EXPECT_EQ(NaechstesBild(p), 2);
    p.pictures[1].deleted = kTrue;
    EXPECT_EQ(NaechstesBild(p), 1);
    EXPECT_EQ(p.pictures[1].path, "");
    EXPECT_FALSE(isTrue(p.pictures[1].deleted));
    EXPECT_EQ(p.pictures.upper(), 2);
    EXPECT_EQ(NaechsterText(p), 1);
    EXPECT_EQ(NaechstesPanorama(p), 1);
    EXPECT_EQ(NaechsteSuchmaschine(p), 1);
    EXPECT_EQ(naechstesElement(p, Kind::Suchmaschine), 2);
}

}  // namespace
}  // namespace brindle::editor
