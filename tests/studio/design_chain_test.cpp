#include "studio/design_chain.h"

#include <gtest/gtest.h>

#include "image/filter_bank.h"
#include "image/picture_io.h"
#include "image/image_compare.h"
#include "support/temp_home.h"

namespace brindle::studio {
namespace {

using test::Bgr;
using test::makeDib;
using test::noisePicture;
using test::pixelAt;
using test::sameImage;
using test::smoothPicture;

StepEnv testView() { return StepEnv{}; }

StepEnv batch() {
    StepEnv env;
    env.mode = ChainMode::Batch;
    return env;
}

cDIBSection run(const cDIBSection& in, const std::string& line, const StepEnv& env) {
    cDIBSection out = in;
    applyStep(out, line, env);
    return out;
}

TEST(DesignChain, RunsTheLinesInListOrder) {
    const cDIBSection picture = smoothPicture(40, 30);
    cDIBSection byHand = picture;
    byHand.effectKontrastBits(50);
    byHand.effectEmbossBits();
    cDIBSection reversed = picture;
    reversed.effectEmbossBits();
    reversed.effectKontrastBits(50);
    ASSERT_FALSE(sameImage(byHand, reversed)) << "the picture must tell the two orders apart";

    for (const StepEnv& env : {testView(), batch()}) {
        cDIBSection chained = picture;
        applyChain(chained, {"Kontrast(50)", "Emboss"}, env);
        EXPECT_TRUE(sameImage(byHand, chained));
    }
}

TEST(DesignChain, TurningSwapsWidthAndHeight) {
    const cDIBSection picture = noisePicture(7, 4, 3);
    for (const StepEnv& env : {testView(), batch()}) {
        cDIBSection right = picture;
        ASSERT_TRUE(applyStep(right, "Drehen(+90)", env));
        ASSERT_EQ(right.Width(), 4);
        ASSERT_EQ(right.Height(), 7);
        // Turned right: the top-left pixel was the bottom-left one.
        EXPECT_EQ(pixelAt(right, 0, 0), pixelAt(picture, 0, 3));
        EXPECT_EQ(pixelAt(right, 3, 6), pixelAt(picture, 6, 0));
        cDIBSection left = picture;
        ASSERT_TRUE(applyStep(left, "Drehen(-90)", env));
        ASSERT_EQ(left.Width(), 4);
        EXPECT_EQ(pixelAt(left, 0, 0), pixelAt(picture, 6, 0));
        cDIBSection other = picture;
        EXPECT_FALSE(applyStep(other, "Drehen(45)", env));
        EXPECT_TRUE(sameImage(picture, other));
    }
}

TEST(DesignChain, SharpenIgnoresItsStrengthOnlyInTheTestView) {
    const cDIBSection picture = noisePicture(20, 12, 5);
    cDIBSection oneTap = picture;
    oneTap.effectSchärfenBits();
    EXPECT_TRUE(sameImage(oneTap, run(picture, "Schärfen(3)", testView())));
    EXPECT_TRUE(sameImage(oneTap, run(picture, "Schärfen(9)", testView())));

    const cDIBSection three = run(picture, "Schärfen(3)", batch());
    const cDIBSection nine = run(picture, "Schärfen(9)", batch());
    EXPECT_FALSE(sameImage(three, nine));
    cDIBSection byHand = picture;
    byHand.effectSchärfen2(3);
    EXPECT_TRUE(sameImage(byHand, three));
}

TEST(DesignChain, BrightnessMethodFlagCountsOnlyInTheBatch) {
    const cDIBSection picture = noisePicture(9, 5, 8);
    cDIBSection fast = picture, exact = picture;
    fast.effectBrightnessBitsFast(20);
    exact.effectBrightnessBits(20);
    ASSERT_FALSE(sameImage(fast, exact));
    EXPECT_TRUE(sameImage(fast, run(picture, "Helligkeit(20,1)", testView())));
    EXPECT_TRUE(sameImage(fast, run(picture, "Helligkeit(20,0)", batch())));
    EXPECT_TRUE(sameImage(exact, run(picture, "Helligkeit(20,1)", batch())));
}

TEST(DesignChain, FrameWithoutBackgroundFileUsesTheColour) {
    const cDIBSection picture = smoothPicture(100, 80);
    for (const StepEnv& env : {testView(), batch()}) {
        cDIBSection black = picture;
        ASSERT_TRUE(applyStep(black, "Rahmen(50,50,20,0,)", env));
        ASSERT_EQ(black.Width(), 100);
        ASSERT_EQ(black.Height(), 80);
        // Black is raised to 75 and the outer edge scaled by 1.1: round(82.5) = 82.
        EXPECT_EQ(pixelAt(black, 50, 0), (Bgr{82, 82, 82}));
        EXPECT_EQ(pixelAt(black, 0, 40), (Bgr{82, 82, 82}));

        // 0x00336699: red 0x99, green 0x66, blue 0x33.
        cDIBSection coloured = picture;
        ASSERT_TRUE(applyStep(coloured, "Rahmen(50,50,20,3368601,)", env));
        EXPECT_EQ(pixelAt(coloured, 50, 0), (Bgr{82, 112, 168}));
        // The picture is squeezed into the 60 x 40 inside of the frame.
        // Each pixel takes the one under its centre: (2i + 1) x 100 / 120 across,
        // (2i + 1) x 80 / 80 down.
        EXPECT_EQ(pixelAt(coloured, 20, 20), pixelAt(picture, 0, 1));
        EXPECT_EQ(pixelAt(coloured, 79, 59), pixelAt(picture, 99, 79));
        EXPECT_EQ(pixelAt(coloured, 50, 40), pixelAt(picture, 50, 41));
        // No closing bracket and no fifth argument: the same.
        EXPECT_TRUE(sameImage(coloured, run(picture, "Rahmen(50,50,20,3368601", env)));
    }
}

class DesignChainFiles : public test::TempHomeTest {};

TEST_F(DesignChainFiles, FrameBackgroundFileIsLoadedAtThePictureSize) {
    const cDIBSection green = makeDib(30, 30, [](int, int) { return Bgr{0, 200, 0}; });
    // A blank and a comma in the name must not split it.
    const std::string file = path("Hinter grund, grün.bmp");
    ASSERT_TRUE(SaveDIBFile(green, file, 90));
    const cDIBSection picture = smoothPicture(100, 80);
    for (const StepEnv& env : {testView(), batch()}) {
        cDIBSection framed = picture;
        ASSERT_TRUE(applyStep(framed, "Rahmen(50,50,20,255," + file + ")", env));
        ASSERT_EQ(framed.Width(), 100);
        // 0 raised to 75 x 1.1 = 82; 200 x 1.1 = 220.
        EXPECT_EQ(pixelAt(framed, 50, 0), (Bgr{82, 220, 82}));
        EXPECT_EQ(pixelAt(framed, 30, 30), pixelAt(picture, 17, 21));
    }
    // A background that cannot be read falls back to the colour.
    cDIBSection missing = picture;
    ASSERT_TRUE(applyStep(missing, "Rahmen(50,50,20,0," + path("fehlt.bmp") + ")", batch()));
    EXPECT_EQ(pixelAt(missing, 50, 0), (Bgr{82, 82, 82}));
}

TEST(DesignChain, SizeOnlyInTheBatchInPixelsOrPercent) {
    const cDIBSection picture = smoothPicture(100, 80);
    cDIBSection untouched = picture;
    EXPECT_FALSE(applyStep(untouched, "Größe(40,30,50,50,0)", testView()));
    EXPECT_TRUE(sameImage(picture, untouched));

    cDIBSection pixels = picture;
    ASSERT_TRUE(applyStep(pixels, "Größe(40,30,50,50,0)", batch()));
    cDIBSection byHand = picture;
    byHand.effectGröße(40, 30);
    EXPECT_TRUE(sameImage(byHand, pixels));

    cDIBSection percent = picture;
    ASSERT_TRUE(applyStep(percent, "Größe(40,30,50,25,1)", batch()));
    EXPECT_EQ(percent.Width(), 50);
    EXPECT_EQ(percent.Height(), 20);

    // 45 x 50 / 100 = 22.5 rounds to the even 22; 47 x 50 / 100 = 23.5 to 24.
    cDIBSection odd = smoothPicture(45, 47);
    ASSERT_TRUE(applyStep(odd, "Größe(0,0,50,50,1)", batch()));
    EXPECT_EQ(odd.Width(), 22);
    EXPECT_EQ(odd.Height(), 24);

    // Sizes no picture may have are refused.
    cDIBSection huge = picture;
    EXPECT_FALSE(applyStep(huge, "Größe(200000,200000,0,0,0)", batch()));
    EXPECT_FALSE(applyStep(huge, "Größe(0,0,0,0,0)", batch()));
    EXPECT_TRUE(sameImage(picture, huge));
}

TEST(DesignChain, MirrorFlagIsABooleanInTheTestViewAndOneInTheBatch) {
    const cDIBSection picture = noisePicture(5, 4, 11);
    const cDIBSection horizontal = run(picture, "Spiegeln(1)", testView());
    const cDIBSection vertical = run(picture, "Spiegeln(0)", testView());
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 5; ++x) {
            EXPECT_EQ(pixelAt(horizontal, x, y), pixelAt(picture, 4 - x, y));
            EXPECT_EQ(pixelAt(vertical, x, y), pixelAt(picture, x, 3 - y));
        }
    EXPECT_TRUE(sameImage(horizontal, run(picture, "Spiegeln(2)", testView())));
    EXPECT_TRUE(sameImage(horizontal, run(picture, "Spiegeln(True)", testView())));
    EXPECT_TRUE(sameImage(horizontal, run(picture, "Spiegeln(1)", batch())));
    EXPECT_TRUE(sameImage(vertical, run(picture, "Spiegeln(2)", batch())));
    EXPECT_TRUE(sameImage(vertical, run(picture, "Spiegeln(1.5)", batch())));
    EXPECT_TRUE(sameImage(vertical, run(picture, "Spiegeln(0)", batch())));
}

TEST(DesignChain, WaveOnHalfTheHeight) {
    for (int height : {80, 81}) {
        SCOPED_TRACE(height);
        const cDIBSection picture = smoothPicture(30, height);
        const cDIBSection half = run(picture, "Wave(3,1)", batch());
        ASSERT_EQ(half.Width(), 30);
        ASSERT_EQ(half.Height(), 40);
        cDIBSection byHand = picture;
        byHand.effectWaves(3);
        EXPECT_TRUE(sameImage(byHand, run(picture, "Wave(3,0)", testView())));
    }
}

TEST(DesignChain, NamesWithABlankAndTheOtherSteps) {
    const cDIBSection picture = smoothPicture(24, 18);
    cDIBSection depth = picture;
    depth.effect3D(5);
    EXPECT_TRUE(sameImage(depth, run(picture, "3D Effekt(5)", testView())));
    EXPECT_EQ(stepName("3D Effekt(5)"), "3D Effekt");
    EXPECT_EQ(stepName("Kontrast(50)"), "Kontrast");
    EXPECT_EQ(stepName("Emboss"), "Emboss");
    EXPECT_EQ(stepName("3D Effekt"), "3D Effekt");
    // Older lines: the first part names the step, as the splitter gives it.
    EXPECT_EQ(stepName("Emboss stark"), "Emboss");

    // 0x00112233: red 0x33, green 0x22, blue 0x11.
    cDIBSection tint = picture;
    tint.effectEinfärben(0x33, 0x22, 0x11, 10, 40);
    EXPECT_TRUE(sameImage(tint, run(picture, "Einfärben(10,40,1122867)", batch())));

    const char* metals[] = {"Gold(0,0)", "Eis(0,0)", "Stahl(0,0)"};
    for (int preset = 1; preset <= 3; ++preset) {
        cDIBSection metal = picture;
        metal.effectMetallic(preset);
        EXPECT_TRUE(sameImage(metal, run(picture, metals[preset - 1], testView())));
    }
    cDIBSection blur = picture;
    ASSERT_TRUE(filterBitmap(kFilterBlur, blur, 0));
    EXPECT_TRUE(sameImage(blur, run(picture, "Blureffect", batch())));

    cDIBSection grey = picture;
    grey.effectBlackAndWhite(100);
    EXPECT_TRUE(sameImage(grey, run(picture, "Schwarz/Weiss(100)", testView())));
}

TEST(DesignChain, UnknownNamesChangeNothing) {
    const cDIBSection picture = noisePicture(6, 5, 2);
    for (const char* line : {"Unbekannt(5)", "", "   ", "kontrast(50)", "(50)", "Kontrast50",
                             "Eiszapfen", ",,,"}) {
        SCOPED_TRACE(line);
        cDIBSection same = picture;
        EXPECT_FALSE(applyStep(same, line, batch()));
        EXPECT_TRUE(sameImage(picture, same));
    }
}

TEST(DesignChain, ProgressWordReachesTheEnd) {
    ProgressWord word;
    word.store(7);
    StepEnv env = batch();
    env.progress = &word;
    cDIBSection picture = smoothPicture(20, 20);
    ASSERT_TRUE(applyStep(picture, "Kontrast(20)", env));
    EXPECT_EQ(word.load(), 100);
    word.store(7);
    ASSERT_TRUE(applyStep(picture, "Rahmen(50,50,5,0,)", env));
    EXPECT_EQ(word.load(), 100);
}

// Every step of the table, with odd arguments too, on tiny and small
// pictures in both modes: nothing crashes and the size is as it should be.
TEST(DesignChain, EveryStepRunsOnSmallPictures) {
    const std::vector<std::string> lines = {
        "Kontrast(50)", "Helligkeit(10,1)", "Color(120,7)", "Schärfen(5)", "WeichZ(3)",
        "Blureffect", "Emboss", "SW-Photo", "Zufall", "Ripple(5,5)", "Wave(4,0)", "Wave(4,1)",
        "Spiegeln(1)", "Spiegeln(0)", "Drehen(+90)", "Drehen(-90)", "Kachel(0,1)", "Kachel(0,0)",
        "Button(50,50,5)", "Rahmen(50,50,3,255,)", "Rahmen(50,50,0,255,)", "RedNoise(3,10,80,2)",
        "Größe(5,4,50,50,0)", "Größe(5,4,50,50,1)", "Einfärben(10,50,255)", "Gold(1,2)",
        "Eis(1,2)", "Stahl(1,2)", "Schwarz/Weiss(128)", "3D Effekt(3)", "Negativ",
        "Frost-Glas(2)", "Neon(10,1)", "Intensiv(50)", "Gamma(150)", "Schärfen(-8)", "3D Effekt(0)",
        "Rahmen(50,50,9000,0,)", "Kachel", "Ripple", "Gamma(-5)", "Wave"};
    for (const auto& [w, h] : {std::pair{1, 1}, std::pair{2, 3}, std::pair{9, 7}}) {
        for (const StepEnv& env : {testView(), batch()}) {
            for (const std::string& line : lines) {
                SCOPED_TRACE(line + " on " + std::to_string(w) + "x" + std::to_string(h));
                cDIBSection picture = noisePicture(w, h, 1);
                const bool ran = applyStep(picture, line, env);
                ASSERT_FALSE(picture.empty());
                if (line.rfind("Größe", 0) == 0) {
                    if (env.mode == ChainMode::TestView) {
                        EXPECT_FALSE(ran);
                    } else if (line == "Größe(5,4,50,50,0)") {
                        EXPECT_TRUE(ran);
                        EXPECT_EQ(picture.Width(), 5);
                        EXPECT_EQ(picture.Height(), 4);
                    }
                    continue;
                }
                EXPECT_TRUE(ran);
                const bool turned = line.rfind("Drehen", 0) == 0;
                const bool doubled = line == "Kachel(0,0)" || line == "Kachel";
                const int factor = doubled ? 2 : 1;
                if (line.rfind("Wave(4,1)", 0) != 0) {
                    EXPECT_EQ(picture.Width(), (turned ? h : w) * factor);
                    EXPECT_EQ(picture.Height(), (turned ? w : h) * factor);
                }
            }
        }
    }
}

}  // namespace
}  // namespace brindle::studio
