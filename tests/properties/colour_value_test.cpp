#include "properties/colour_value.h"

#include <gtest/gtest.h>

namespace brindle::properties {
namespace {

TEST(ColourValue, AlbumColoursAreBlueGreenRedFromTheTop) {
    EXPECT_EQ(rgbOfColour(0x00336699u), (Rgb{0x99, 0x66, 0x33}));
    EXPECT_EQ(colourOfRgb({0x99, 0x66, 0x33}), 0x00336699u);
    EXPECT_EQ(colourOfRgb({300, -4, 128}), 0x008000FFu);  // out of range is clamped
    EXPECT_EQ(colourHex(0x00336699u), "#996633");
    EXPECT_EQ(colourHex(0xFF000000u), "#000000");  // the top byte is no colour
}

}  // namespace
}  // namespace brindle::properties
