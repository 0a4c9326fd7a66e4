#include "print/sheet_layout.h"

#include <gtest/gtest.h>

#include <string>

namespace brindle::print {
namespace {

constexpr SizeF kA4{210, 297};

::testing::AssertionResult onSheet(const Box& b, SizeF sheet) {
    // Stored values are rounded to hundredths.
    const float slack = 0.01F;
    if (b.left >= 0 && b.top >= 0 && b.right() <= sheet.width + slack &&
        b.bottom() <= sheet.height + slack && b.width > 0 && b.height > 0)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "box (" << b.left << ", " << b.top << ", " << b.width << " x " << b.height
           << ") leaves the sheet " << sheet.width << " x " << sheet.height;
}

bool overlap(const Box& a, const Box& b) {
    return a.left < b.right() && b.left < a.right() && a.top < b.bottom() && b.top < a.bottom();
}

TEST(SheetLayoutTest, ArrangeFillsRowsAtTheFirstFittingScale) {
    // c starts at 400 x 4 / 210 - 2; the first round scales by 4 / (c + 4).
    SheetLayout one(kA4, {{400, 300}});
    one.arrange();
    EXPECT_EQ(one.box(0), (Box{0.5F, 0.5F, 166.34F, 124.75F}));

    SheetLayout two(kA4, {{400, 300}, {400, 300}});
    two.arrange();
    EXPECT_EQ(two.box(0), (Box{0.5F, 0.5F, 166.34F, 124.75F}));
    // The second does not fit beside the first: a new row half a unit below.
    EXPECT_EQ(two.box(1), (Box{0.5F, 125.75F, 166.34F, 124.75F}));

    SheetLayout edge(kA4, {{400, 300}});
    edge.borderless();
    EXPECT_EQ(edge.box(0), (Box{-0.1F, -0.1F, 166.34F, 124.75F}));
}

TEST(SheetLayoutTest, ArrangeKeepsEveryBoxOnTheSheetForOneToTwelvePictures) {
    const SizeF kinds[] = {{4000, 3000}, {3000, 4000}, {6000, 1500}, {10, 10}, {640, 480}, {1, 2000}};
    for (SizeF sheet : {kA4, SizeF{297, 210}, SizeF{215.9, 279.4}}) {
        for (std::size_t n = 1; n <= 12; ++n) {
            for (std::size_t first = 0; first < std::size(kinds); ++first) {
                SCOPED_TRACE(std::to_string(n) + " pictures from kind " + std::to_string(first) +
                             " on " + std::to_string(sheet.width));
                std::vector<SizeF> natural;
                for (std::size_t i = 0; i < n; ++i) natural.push_back(kinds[(first + i) % std::size(kinds)]);
                SheetLayout layout(sheet, natural);
                layout.arrange();
                for (std::size_t i = 0; i < n; ++i) {
                    EXPECT_TRUE(onSheet(layout.box(i), sheet)) << "picture " << i + 1;
                    for (std::size_t j = 0; j < i; ++j)
                        EXPECT_FALSE(overlap(layout.box(i), layout.box(j))) << i + 1 << " and " << j + 1;
                }
                // Centring keeps the group on the sheet.
                layout.centre();
                for (std::size_t i = 0; i < n; ++i) EXPECT_TRUE(onSheet(layout.box(i), sheet));
            }
        }
    }
}

TEST(SheetLayoutTest, CentreRotateAndTypedValues) {
    SheetLayout layout(kA4, {{400, 300}, {200, 400}});
    layout.arrange();
    SheetLayout single(kA4, {{400, 300}});
    single.arrange();
    single.centre();
    // (210 - 166.34) / 2 and (297 - 124.75) / 2.
    EXPECT_EQ(single.box(0), (Box{21.83F, 86.13F, 166.34F, 124.75F}));

    single.rotate(0);
    EXPECT_EQ(single.box(0), (Box{21.83F, 86.13F, 124.75F, 166.34F, true}));
    EXPECT_EQ(single.natural(0).width, 300);
    single.rotate(0);
    EXPECT_FALSE(single.box(0).rotated);

    // Proportions follow the picture unless distortion is allowed.
    layout.setValue(0, Field::Width, 100);
    EXPECT_EQ(layout.box(0).height, 75.0F);
    layout.setValue(0, Field::WidthPercent, 10);
    EXPECT_EQ(layout.box(0).width, 40.0F);
    EXPECT_EQ(layout.box(0).height, 30.0F);
    EXPECT_EQ(layout.value(0, Field::HeightPercent), 10.0);
    layout.options.allowDistortion = true;
    layout.setValue(0, Field::Height, 50);
    EXPECT_EQ(layout.box(0).width, 40.0F);
    EXPECT_EQ(layout.box(0).height, 50.0F);
    layout.options.allowDistortion = false;

    // Never larger than the sheet when fitting to the page.
    layout.setValue(0, Field::Width, 1000);
    EXPECT_EQ(layout.box(0).width, 210.0F);
    EXPECT_EQ(layout.box(0).height, 157.5F);

    // All the same size: every box takes the width, each keeps its proportions.
    layout.options.sameSize = true;
    layout.setValue(1, Field::Width, 50);
    EXPECT_EQ(layout.box(0).width, 50.0F);
    EXPECT_EQ(layout.box(0).height, 37.5F);
    EXPECT_EQ(layout.box(1).width, 50.0F);
    EXPECT_EQ(layout.box(1).height, 100.0F);

    // Moves: one box, or all of them by the same distance.
    const Box before = layout.box(1);
    layout.setValue(0, Field::Left, 30);
    EXPECT_EQ(layout.box(0).left, 30.0F);
    EXPECT_EQ(layout.box(1).left, before.left);
    layout.options.takeAll = true;
    layout.step(0, Field::Top, false, true);
    layout.step(0, Field::Left, true, false);
    EXPECT_EQ(layout.box(0).left, 40.0F);
    EXPECT_EQ(layout.box(1).left, before.left + 10.0F);
    EXPECT_EQ(layout.box(1).top, before.top - 1.0F);
    // A width below the smallest size stops there.
    layout.options.sameSize = false;
    layout.setValue(0, Field::Width, -5);
    EXPECT_EQ(layout.box(0).width, 1.0F);

    EXPECT_FALSE(layout.setBoxes({Box{}}));
    EXPECT_TRUE(layout.setBoxes({Box{1, 2, 3, 4}, Box{5, 6, 7, 8}}));
    EXPECT_EQ(layout.box(1), (Box{5, 6, 7, 8}));
}

}  // namespace
}  // namespace brindle::print
