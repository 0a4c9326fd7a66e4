#include "studio/step_lines.h"

#include <gtest/gtest.h>

#include "studio/step_tokens.h"

using namespace brindle::studio;

TEST(StepLines, PanelLinesHaveTheirExactText) {
    EXPECT_EQ(kontrastLine(50), "Kontrast(50)");
    EXPECT_EQ(kontrastLine(-20), "Kontrast(-20)");
    EXPECT_EQ(helligkeitLine(30, false), "Helligkeit(30,0)");
    EXPECT_EQ(helligkeitLine(-5, true), "Helligkeit(-5,1)");
    EXPECT_EQ(schaerfenLine(3), "Schärfen(3)");
    EXPECT_EQ(weichzLine(2), "WeichZ(2)");
    EXPECT_EQ(rippleLine(5, 7), "Ripple(5,7)");
    EXPECT_EQ(waveLine(4, false), "Wave(4,0)");
    EXPECT_EQ(waveLine(11, true), "Wave(11,1)");
    EXPECT_EQ(spiegelnLine(true), "Spiegeln(1)");
    EXPECT_EQ(spiegelnLine(false), "Spiegeln(0)");
    EXPECT_EQ(drehenLine(true), "Drehen(+90)");
    EXPECT_EQ(drehenLine(false), "Drehen(-90)");
    EXPECT_EQ(kachelLine(0, true), "Kachel(0,1)");
    EXPECT_EQ(buttonLine(60, 40, 12), "Button(60,40,12)");
    EXPECT_EQ(redNoiseLine(3, 10, 200, 2), "RedNoise(3,10,200,2)");
    EXPECT_EQ(groesseLine(800, 600, 50, 50, false), "Größe(800,600,50,50,0)");
    EXPECT_EQ(groesseLine(800, 600, 25, 75, true), "Größe(800,600,25,75,1)");
    EXPECT_STREQ(kBlurLine, "Blureffect");
    EXPECT_STREQ(kEmbossLine, "Emboss");
    EXPECT_STREQ(kGrayLine, "SW-Photo");
    EXPECT_STREQ(kNoiseLine, "Zufall");
}

TEST(StepLines, ColourMaskIsRedPlusTwiceGreenPlusFourTimesBlue) {
    EXPECT_EQ(colorLine(120, false, false, false), "Color(120,0)");
    EXPECT_EQ(colorLine(120, true, false, false), "Color(120,1)");
    EXPECT_EQ(colorLine(120, false, true, false), "Color(120,2)");
    EXPECT_EQ(colorLine(120, false, false, true), "Color(120,4)");
    EXPECT_EQ(colorLine(80, true, false, true), "Color(80,5)");
    EXPECT_EQ(colorLine(100, true, true, true), "Color(100,7)");
}

TEST(StepLines, FrameTakesTheColourInDecimalAndAnEmptyFileWhenThereIsNone) {
    EXPECT_EQ(rahmenLine(50, 50, 20, 0, ""), "Rahmen(50,50,20,0,)");
    // 0x00BBGGRR: pure blue is 16711680.
    EXPECT_EQ(rahmenLine(50, 40, 10, 0x00FF0000u, ""), "Rahmen(50,40,10,16711680,)");
    EXPECT_EQ(rahmenLine(1, 2, 3, 0x000080FFu, "/home/a/holz.jpg"), "Rahmen(1,2,3,33023,/home/a/holz.jpg)");
    // The chain reads the empty file as no part at all.
    const auto parts = splitStepLine(rahmenLine(50, 50, 20, 255, ""));
    ASSERT_EQ(parts.size(), 5u);
    EXPECT_EQ(stepInt(parts, 4), 255);
}

TEST(StepLines, GeneralPanelTable) {
    struct Row {
        const char* name;
        bool shown1;
        int step1, min1, max1;
        bool shown2;
        int step2, min2, max2;
        const char* label1;
        const char* label2English;
    };
    const Row rows[] = {
        {"Einfärben", true, 10, -100, 100, true, 5, 0, 100, "Helligkeit", "Hold Colors"},
        {"Schwarz/Weiss", true, 10, 0, 100, true, 5, 0, 255, " ", "Threshold"},
        {"3D Effekt", false, 10, 0, 100, false, 5, 0, 100, " ", " "},
        {"Negativ", false, 10, 0, 100, false, 5, 0, 100, " ", " "},
        {"Frost-Glas", true, 10, 0, 100, true, 4, 0, 16, " ", "Strength"},
        {"Neon", true, 1, 0, 2, true, 10, 0, 50, "Modus", "Phase"},
        {"Intensiv", false, 1, 0, 2, true, 10, 1, 100, "Modus", "Value"},
        {"Gamma", false, 1, 0, 2, true, 10, 10, 300, "Modus", "Value"},
        {"Stahl", true, 10, -100, 100, true, 5, 0, 255, "Wert", " "},
        {"Gold", true, 10, -100, 100, true, 5, 0, 255, "Wert", " "},
        {"Eis", true, 10, -100, 100, true, 5, 0, 255, "Wert", " "},
    };
    ASSERT_EQ(generalItems().size(), std::size(rows));
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        const Row& r = rows[i];
        SCOPED_TRACE(r.name);
        const GeneralItem& item = generalItems()[i];
        EXPECT_STREQ(item.name, r.name);
        EXPECT_EQ(generalItem(r.name), &item);
        EXPECT_EQ(item.slider1.shown, r.shown1);
        EXPECT_EQ(item.slider1.step, r.step1);
        EXPECT_EQ(item.slider1.minimum, r.min1);
        EXPECT_EQ(item.slider1.maximum, r.max1);
        EXPECT_EQ(item.slider2.shown, r.shown2);
        EXPECT_EQ(item.slider2.step, r.step2);
        EXPECT_EQ(item.slider2.minimum, r.min2);
        EXPECT_EQ(item.slider2.maximum, r.max2);
        EXPECT_STREQ(item.slider1.labelGerman, r.label1);
        EXPECT_STREQ(item.slider2.labelEnglish, r.label2English);
        // The value set on choosing lies in the range.
        EXPECT_GE(item.slider1.value, item.slider1.minimum);
        EXPECT_LE(item.slider1.value, item.slider1.maximum);
        EXPECT_GE(item.slider2.value, item.slider2.minimum);
        EXPECT_LE(item.slider2.value, item.slider2.maximum);
    }
    EXPECT_STREQ(generalItem("Einfärben")->slider2.labelGerman, "Farberhaltung");
    EXPECT_EQ(generalItem("Kontrast"), nullptr);
    EXPECT_EQ(generalItem(""), nullptr);
}

TEST(StepLines, GeneralPanelLines) {
    auto line = [](const char* name, int a, int b, std::uint32_t colour = 0) {
        const GeneralItem* item = generalItem(name);
        return item ? generalLine(*item, a, b, colour) : std::string("missing ") + name;
    };
    EXPECT_EQ(line("Einfärben", -30, 40, 0x00204080u), "Einfärben(-30,40,2113664)");
    EXPECT_EQ(line("Schwarz/Weiss", 20, 140), "Schwarz/Weiss(140)");
    EXPECT_EQ(line("3D Effekt", 10, 0), "3D Effekt(10)");
    EXPECT_EQ(line("Negativ", 5, 6), "Negativ");
    EXPECT_EQ(line("Frost-Glas", 0, 8), "Frost-Glas(8)");
    // Phase first, then the mode.
    EXPECT_EQ(line("Neon", 2, 30), "Neon(30,2)");
    EXPECT_EQ(line("Intensiv", 0, 70), "Intensiv(70)");
    EXPECT_EQ(line("Gamma", 0, 150), "Gamma(150)");
    EXPECT_EQ(line("Stahl", -40, 200), "Stahl(-40,200)");
    EXPECT_EQ(line("Gold", 10, 0), "Gold(10,0)");
    EXPECT_EQ(line("Eis", 0, 255), "Eis(0,255)");
}
