#include "studio/step_tokens.h"

#include <gtest/gtest.h>

using brindle::studio::splitStepLine;
using brindle::studio::stepInt;
using Parts = std::vector<std::string>;

TEST(StepTokens, SplitsAtBracketsCommasAndSpacesAndDropsEmptyParts) {
    EXPECT_EQ(splitStepLine("Kontrast(50)"), (Parts{"Kontrast", "50"}));
    EXPECT_EQ(splitStepLine("Emboss"), (Parts{"Emboss"}));
    // The empty background file of a frame is no part at all.
    EXPECT_EQ(splitStepLine("Rahmen(50,50,20,0,)"), (Parts{"Rahmen", "50", "50", "20", "0"}));
    // A name with a blank splits into two parts.
    EXPECT_EQ(splitStepLine("3D Effekt(5)"), (Parts{"3D", "Effekt", "5"}));
    EXPECT_EQ(splitStepLine("Drehen(+90)"), (Parts{"Drehen", "+90"}));
    EXPECT_EQ(splitStepLine("  ,(,)  "), Parts{});
    EXPECT_EQ(splitStepLine("Größe(800, 600,,50)"), (Parts{"Größe", "800", "600", "50"}));
}

TEST(StepTokens, NumbersOfArguments) {
    const Parts parts{"X", "12", "-90", "+90", "7.9", "abc", ""};
    EXPECT_EQ(stepInt(parts, 1), 12);
    EXPECT_EQ(stepInt(parts, 2), -90);
    EXPECT_EQ(stepInt(parts, 3), 90);
    EXPECT_EQ(stepInt(parts, 4), 7);
    EXPECT_EQ(stepInt(parts, 5), 0);
    EXPECT_EQ(stepInt(parts, 6), 0);
    EXPECT_EQ(stepInt(parts, 9), 0);
}
