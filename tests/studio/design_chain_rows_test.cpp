// Steps that change each pixel on their own run together, row by row: the
// same bytes (pad bytes included) as the steps one after another.
#include <gtest/gtest.h>

#include <cstring>

#include "image/image_compare.h"
#include "studio/design_chain.h"

namespace brindle::studio {
namespace {

using test::noisePicture;

StepEnv envFor(ChainMode mode) {
    StepEnv env;
    env.mode = mode;
    return env;
}

// Pad bytes that are not zero, so that a step touching them shows.
cDIBSection dirtyPads(int w, int h, unsigned seed) {
    cDIBSection dib = noisePicture(w, h, seed);
    for (int y = 0; y < h; ++y)
        for (int i = w * 3; i < dib.BytesPerScanLine(); ++i) dib.rowBits(y)[i] = static_cast<std::uint8_t>(7 * i + y);
    return dib;
}

::testing::AssertionResult sameBytes(const cDIBSection& a, const cDIBSection& b) {
    const std::size_t n = static_cast<std::size_t>(a.BytesPerScanLine()) * a.Height();
    if (a.Width() != b.Width() || a.Height() != b.Height()) return ::testing::AssertionFailure() << "sizes differ";
    for (std::size_t i = 0; i < n; ++i)
        if (a.DIBSectionBitsPtr()[i] != b.DIBSectionBitsPtr()[i])
            return ::testing::AssertionFailure() << "byte " << i << ": " << int(a.DIBSectionBitsPtr()[i])
                                                 << " against " << int(b.DIBSectionBitsPtr()[i]);
    return ::testing::AssertionSuccess();
}

TEST(DesignChainRows, RunsOfPointwiseStepsEqualTheStepsOneByOne) {
    const std::vector<std::vector<std::string>> lists = {
        {"Kontrast(20)", "Helligkeit(10,0)", "Color(120,7)", "Schärfen(5)"},
        {"Helligkeit(10,1)", "Kontrast(-40)", "Color(110,1)", "Color(50,3)"},
        {"Color(120,7)", "Helligkeit(-30,0)", "Helligkeit(25,0)", "Kontrast(300)"},
        {"Kontrast(20)", "Color(115,9)", "Helligkeit(10,1)", "Emboss", "Kontrast(5)", "Color(-75,6)"},
        {"Color(0,2)", "Color(12900,4)", "Helligkeit(100,0)", "Color(333,5)"},
    };
    const std::pair<int, int> sizes[] = {{1, 1}, {2, 3}, {3, 2}, {5, 7}, {16, 2}, {17, 5}, {33, 9}, {50, 4}};
    unsigned seed = 1;
    for (const ChainMode mode : {ChainMode::Batch, ChainMode::TestView})
        for (const auto& lines : lists)
            for (const auto& [w, h] : sizes) {
                SCOPED_TRACE(testing::Message() << w << "x" << h << " " << lines[0] << " " << lines[1]
                                                << " test view " << (mode == ChainMode::TestView));
                const StepEnv env = envFor(mode);
                const cDIBSection in = dirtyPads(w, h, seed++);
                cDIBSection together = in, oneByOne = in;
                applyChain(together, lines, env);
                for (const std::string& line : lines) applyStep(oneByOne, line, env);
                ASSERT_TRUE(sameBytes(oneByOne, together));
            }
}

TEST(DesignChainRows, SaysHowManyLinesItRan) {
    const std::vector<std::string> lines = {"Kontrast(20)", "Helligkeit(10,0)", "Color(120,7)",
                                            "Emboss", "Color(120,7)", "", "Kontrast(3)", "Gamma(150)"};
    const StepEnv env = envFor(ChainMode::Batch);
    cDIBSection dib = noisePicture(20, 10, 5);
    ProgressWord progress;
    StepEnv watched = env;
    watched.progress = &progress;
    EXPECT_EQ(3u, applySteps(dib, lines, 0, watched));
    EXPECT_EQ(100, progress.load());
    EXPECT_EQ(1u, applySteps(dib, lines, 3, env));
    EXPECT_EQ(1u, applySteps(dib, lines, 4, env));  // a blank line ends a run
    EXPECT_EQ(1u, applySteps(dib, lines, 5, env));
    EXPECT_EQ(1u, applySteps(dib, lines, 6, env));
    EXPECT_EQ(0u, applySteps(dib, lines, 8, env));
    cDIBSection empty;
    EXPECT_EQ(1u, applySteps(empty, lines, 0, env));
    EXPECT_TRUE(empty.empty());
}

}  // namespace
}  // namespace brindle::studio

namespace brindle::studio {
namespace {

// The sharpening right after a run reads each row only after the run has
// been over it: heights for the bands of sixteen and eight and single rows,
// widths for the band's pieces, strengths for the lanes, the formula and
// the divisor zero.
TEST(DesignChainRows, ASharpeningAfterARunTakesItsRowsFromTheRun) {
    const std::vector<std::vector<std::string>> lists = {
        {"Kontrast(20)", "Helligkeit(10,0)", "Color(120,7)", "Schärfen(5)", "Rahmen(50,50,20,14737632,)"},
        {"Helligkeit(30,1)", "Schärfen(9)"},
        {"Color(150,2)", "Kontrast(-20)", "Schärfen(200)"},
        {"Helligkeit(-20,0)", "Schärfen(-8)", "Kontrast(10)"},
        {"Kontrast(40)", "Schärfen(-7)"},
    };
    const std::pair<int, int> sizes[] = {{1, 1}, {3, 2}, {5, 3}, {4, 19}, {40, 37}, {300, 43}, {33, 60}};
    unsigned seed = 100;
    for (const auto& lines : lists)
        for (const auto& [w, h] : sizes) {
            SCOPED_TRACE(testing::Message() << w << "x" << h << " " << lines[0] << " " << lines[1]);
            const StepEnv env = envFor(ChainMode::Batch);
            const cDIBSection in = dirtyPads(w, h, seed++);
            cDIBSection together = in, oneByOne = in;
            applyChain(together, lines, env);
            for (const std::string& line : lines) applyStep(oneByOne, line, env);
            ASSERT_TRUE(sameBytes(oneByOne, together));
        }
    cDIBSection dib = noisePicture(20, 30, 5);
    EXPECT_EQ(4u, applySteps(dib, lists[0], 0, envFor(ChainMode::Batch)));
    EXPECT_EQ(2u, applySteps(dib, lists[1], 0, envFor(ChainMode::Batch)));
    EXPECT_EQ(1u, applySteps(dib, lists[1], 0, envFor(ChainMode::TestView)));
    EXPECT_EQ(1u, applySteps(dib, lists[0], 3, envFor(ChainMode::Batch)));
}

}  // namespace
}  // namespace brindle::studio

namespace brindle::studio {
namespace {

// A size step that shrinks right after a frame on a colour runs with it;
// enlarging, a background file, a size of zero or the test view do not.
TEST(DesignChainRows, AShrinkAfterAFrameOnAColourRunsWithIt) {
    const std::vector<std::vector<std::string>> joined = {
        {"Rahmen(50,50,12,14737632,)", "Größe(0,0,50,50,1)"},
        {"Rahmen(80,20,3,9460928,)", "Größe(13,7,0,0,0)"},
        {"Rahmen(0,100,1,16777215)", "Größe(0,0,99,34,1)"},
    };
    const std::vector<std::vector<std::string>> apart = {
        {"Rahmen(50,50,4,9460928,)", "Größe(200,200,0,0,0)"},
        {"Rahmen(50,50,4,9460928,/no/such/frame.bmp)", "Größe(0,0,50,50,1)"},
        {"Rahmen(50,50,4,9460928,)", "Größe(0,0,0,0,0)"},
        {"Rahmen(50,50,0,9460928,)", "Größe(0,0,50,50,1)"},
    };
    const std::pair<int, int> sizes[] = {{50, 40}, {61, 33}, {100, 101}};
    unsigned seed = 300;
    for (const auto* lists : {&joined, &apart})
        for (const auto& lines : *lists)
            for (const auto& [w, h] : sizes) {
                SCOPED_TRACE(testing::Message() << w << "x" << h << " " << lines[0] << " " << lines[1]);
                const StepEnv env = envFor(ChainMode::Batch);
                const cDIBSection in = dirtyPads(w, h, seed++);
                cDIBSection together = in, oneByOne = in;
                const std::size_t ran = applySteps(together, lines, 0, env);
                EXPECT_EQ(lists == &joined ? 2u : 1u, ran);
                for (std::size_t i = ran; i < lines.size();) i += applySteps(together, lines, i, env);
                for (const std::string& line : lines) applyStep(oneByOne, line, env);
                ASSERT_TRUE(sameBytes(oneByOne, together));
            }
    cDIBSection dib = noisePicture(50, 40, 9);
    EXPECT_EQ(1u, applySteps(dib, joined[0], 0, envFor(ChainMode::TestView)));
}

}  // namespace
}  // namespace brindle::studio

namespace brindle::studio {
namespace {

// A table step right before a colour step is looked up in the colour step's
// pass: every mode after colour tables, flat ones and both paired, on widths
// around the lane counts, pad bytes included, alone and before a sharpening.
TEST(DesignChainRows, ATableBeforeAColourStepRunsInItsPass) {
    const std::vector<std::string> before[] = {
        {"Kontrast(20)", "Helligkeit(10,0)"},
        {"Helligkeit(-15,0)", "Kontrast(70)"},
        {"Helligkeit(40,1)"},
        {"Helligkeit(-60,0)"},
        {"Kontrast(-30)", "Helligkeit(5,1)"},
    };
    std::vector<int> widths;
    for (int w = 1; w <= 70; ++w) widths.push_back(w);
    for (int w : {95, 97, 255, 333}) widths.push_back(w);
    unsigned seed = 700;
    for (int mode = 1; mode <= 7; ++mode)
        for (const auto& tables : before)
            for (const int w : widths) {
                std::vector<std::string> lines = tables;
                lines.push_back("Color(" + std::to_string(mode == 3 ? 110 : 120 + 5 * mode) + "," +
                                std::to_string(mode) + ")");
                if (w % 3 == 0) lines.push_back("Schärfen(5)");
                SCOPED_TRACE(testing::Message() << w << " " << lines[0] << " " << lines[lines.size() - 1]);
                const StepEnv env = envFor(ChainMode::Batch);
                const cDIBSection in = dirtyPads(w, w % 3 == 0 ? 35 : 3, seed++);
                cDIBSection together = in, oneByOne = in;
                applyChain(together, lines, env);
                for (const std::string& line : lines) applyStep(oneByOne, line, env);
                ASSERT_TRUE(sameBytes(oneByOne, together));
            }
}

}  // namespace
}  // namespace brindle::studio
