#include "panorama/overlap_search.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "panorama/overlap_kernel.h"
#include "synthetic_pictures.h"

namespace {

using brindle::cDIBSection;
using brindle::panorama::defaultSearchBand;
using brindle::panorama::findOverlap;
using brindle::panorama::findOverlapScalar;
using brindle::panorama::OverlapResult;
using brindle::panorama::PanoBild;
using brindle::panorama::SearchBand;
using brindle::panorama::storeMatch;
using brindle::test::setPixel;

::testing::AssertionResult sameResult(const OverlapResult& a, const OverlapResult& b) {
    if (a.found == b.found && a.stopped == b.stopped && a.problem == b.problem &&
        a.xVersatz == b.xVersatz && a.yVersatz == b.yVersatz && a.sum == b.sum && a.pass == b.pass)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "fast: found " << a.found << " x " << a.xVersatz << " y " << a.yVersatz << " sum "
           << a.sum << " pass " << a.pass << "; scalar: found " << b.found << " x " << b.xVersatz
           << " y " << b.yVersatz << " sum " << b.sum << " pass " << b.pass;
}

// Both searches, with one and two workers, must give `expected`.
void expectEverySearch(const cDIBSection& a, const cDIBSection& b, SearchBand band, int x, int y,
                       std::uint64_t sum, int pass) {
    const OverlapResult scalar = findOverlapScalar(a, b, band);
    ASSERT_TRUE(scalar.found) << scalar.problem;
    EXPECT_EQ(scalar.xVersatz, x);
    EXPECT_EQ(scalar.yVersatz, y);
    EXPECT_EQ(scalar.sum, sum);
    EXPECT_EQ(scalar.pass, pass);
    for (int threads : {1, 2}) {
        SCOPED_TRACE(threads);
        EXPECT_TRUE(sameResult(findOverlap(a, b, band, nullptr, threads), scalar));
    }
}

TEST(OverlapSearch, RecoversTheOffsetsOfTilesCutFromOneWidePicture) {
    const int w = 200, h = 120;
    const cDIBSection wide = brindle::test::landscape(700, 160);
    // Each tile's top-left corner in the wide picture: steps of 130, 117 and
    // 141 columns, and of -7, 0 and +12 rows.
    const int xs[] = {5, 135, 252, 393};
    const int ys[] = {15, 8, 8, 20};
    std::vector<cDIBSection> tiles;
    for (int i = 0; i < 4; ++i) tiles.push_back(brindle::test::cut(wide, xs[i], ys[i], w, h));
    const SearchBand band = defaultSearchBand(w);
    ASSERT_EQ(band.first, 100);
    ASSERT_EQ(band.last, 179);
    for (int i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        expectEverySearch(tiles[i], tiles[i + 1], band, xs[i + 1] - xs[i], ys[i + 1] - ys[i], 0, 1);
        PanoBild record;
        storeMatch(record, findOverlap(tiles[i], tiles[i + 1], band));
        EXPECT_EQ(record.gematcht, 65535);
        EXPECT_EQ(record.xVersatz, xs[i + 1] - xs[i]);
        EXPECT_EQ(record.yVersatz, ys[i + 1] - ys[i]);
    }
}

TEST(OverlapSearch, IdenticalContentGivesSumZeroAtTheFirstPosition) {
    const cDIBSection a = brindle::test::filled(90, 70, 40, 120, 200);
    // Every position sums to 0; the second pass runs and cannot replace it.
    expectEverySearch(a, a, {30, 80}, 30, 20, 0, 1);
}

TEST(OverlapSearch, EqualSumsKeepTheFirstBySmallerShiftThenSmallerColumn) {
    // At height 41 each position compares one row: A's buffer row k of
    // column x against B's buffer row 20 of its first column.
    const int w = 300, h = 41;
    const SearchBand band{40, 259};  // 220 columns: the workers split it
    cDIBSection a = brindle::test::filled(w, h, 0, 0, 0);
    const cDIBSection b = brindle::test::filled(w, h, 100, 100, 100);
    auto plant = [&](int k, int x, int blue) {
        std::uint8_t* p = a.rowBits(k) + 3 * x;
        p[0] = static_cast<std::uint8_t>(blue);
        p[1] = p[2] = 100;
    };
    plant(9, band.first + 1, 110);    // sum 100, but a larger shift index
    plant(5, band.first + 203, 90);   // sum 100 in the second worker's half
    plant(5, band.first + 150, 110);  // sum 100: the first in (k, x) order
    plant(5, band.first + 219, 110);  // sum 100 in the last, odd-sized block
    plant(30, band.last, 110);
    expectEverySearch(a, b, band, band.first + 150, 20 - 5, 100, 1);

    // The second pass compares B's columns with A's column at the band end
    // (black at row 20): an equal sum there keeps the first pass ...
    cDIBSection b2 = b;
    std::uint8_t* p = b2.rowBits(12) + 3 * 33;
    p[0] = 10, p[1] = 0, p[2] = 0;
    expectEverySearch(a, b2, band, band.first + 150, 15, 100, 1);
    // ... a smaller one wins: column 33 of B at shift index 12 means B starts
    // at A's column last - 33 and lies 8 rows higher.
    p[0] = 9;
    expectEverySearch(a, b2, band, band.last - 33, 12 - 20, 81, 2);
}

TEST(OverlapSearch, PicturesLowerThan41RowsGiveTheFirstPosition) {
    std::mt19937 rng(3);
    for (int h : {1, 20, 40}) {
        SCOPED_TRACE(h);
        const cDIBSection a = brindle::test::uniformNoise(64, h, rng);
        const cDIBSection b = brindle::test::uniformNoise(64, h, rng);
        expectEverySearch(a, b, {10, 50}, 10, 20, 0, 1);
    }
}

TEST(OverlapSearch, FastSearchEqualsThePlainOneOnRandomPictures) {
    std::mt19937 rng(20261122);
    for (int round = 0; round < 40; ++round) {
        const int w = std::uniform_int_distribution<int>(2, 160)(rng);
        const int h = std::uniform_int_distribution<int>(30, 110)(rng);
        // Few levels make many equal sums; full range makes distinct ones.
        const int levels = round % 3 == 0 ? 2 : round % 3 == 1 ? 5 : 256;
        const cDIBSection a = brindle::test::uniformNoise(w, h, rng, levels);
        const cDIBSection b = brindle::test::uniformNoise(w, h, rng, levels);
        const int first = std::uniform_int_distribution<int>(0, w - 1)(rng);
        const int last = std::uniform_int_distribution<int>(first, w - 1)(rng);
        SCOPED_TRACE(::testing::Message() << "round " << round << " " << w << "x" << h << " band "
                                          << first << ".." << last << " levels " << levels);
        const OverlapResult scalar = findOverlapScalar(a, b, {first, last});
        ASSERT_TRUE(scalar.found);
        for (int threads : {1, 2, 3})
            EXPECT_TRUE(sameResult(findOverlap(a, b, {first, last}, nullptr, threads), scalar));
    }
}

TEST(OverlapSearch, EveryKernelGivesThePlainSums) {
    using brindle::panorama::SumKernel;
    std::mt19937 rng(77);
    ASSERT_EQ(brindle::panorama::availableKernels().front(), SumKernel::Portable);
    // Widths that leave remainders after blocks of 8 and 16; extreme values
    // make the largest squares.
    for (int w : {7, 8, 16, 37, 64, 93}) {
        for (int levels : {2, 256}) {
            SCOPED_TRACE(::testing::Message() << "width " << w << " levels " << levels);
            const cDIBSection other = brindle::test::uniformNoise(w, 77, rng, levels);
            brindle::panorama::RefColumn ref;
            for (auto& channel : ref) {
                channel.resize(77);
                for (int& v : channel)
                    v = levels == 2 ? 255 * (rng() % 2) : static_cast<int>(rng() % 256);
            }
            std::vector<std::uint64_t> plain(41u * w);
            brindle::panorama::columnSums(other, ref, 0, 0, w - 1, plain, SumKernel::Portable);
            for (SumKernel kernel : brindle::panorama::availableKernels()) {
                SCOPED_TRACE(static_cast<int>(kernel));
                std::vector<std::uint64_t> sums(41u * (w + 3), 7);
                // A table that starts 3 columns left of the range filled.
                brindle::panorama::columnSums(other, ref, -3, 0, w - 1, sums, kernel);
                for (int k = 0; k < 41; ++k)
                    for (int x = 0; x < w; ++x)
                        ASSERT_EQ(sums[k * (w + 3) + x + 3], plain[k * w + x])
                            << "k " << k << " x " << x;
                EXPECT_EQ(sums[0], 7u);
            }
        }
    }
}

TEST(OverlapSearch, StopWordAndUnsuitablePairsGiveNoMatch) {
    std::mt19937 rng(5);
    const cDIBSection a = brindle::test::uniformNoise(80, 60, rng);
    const cDIBSection b = brindle::test::uniformNoise(80, 60, rng);
    std::atomic<bool> stop{true};
    for (const OverlapResult& r :
         {findOverlapScalar(a, b, {40, 70}, &stop), findOverlap(a, b, {40, 70}, &stop)}) {
        EXPECT_FALSE(r.found);
        EXPECT_TRUE(r.stopped);
        PanoBild record;
        storeMatch(record, r);
        EXPECT_EQ(record, PanoBild{});
    }
    const cDIBSection lower = brindle::test::uniformNoise(80, 59, rng);
    const cDIBSection narrow = brindle::test::uniformNoise(20, 60, rng);
    EXPECT_EQ(findOverlap(a, lower, {40, 70}).problem, "the pictures of the pair differ in height");
    EXPECT_EQ(findOverlap(a, b, {40, 80}).problem, "the search band lies outside the left picture");
    EXPECT_EQ(findOverlap(a, b, {50, 40}).problem, "the search band lies outside the left picture");
    EXPECT_EQ(findOverlap(a, narrow, {40, 70}).problem,
              "the search band is wider than the right picture");
    EXPECT_EQ(findOverlapScalar(a, cDIBSection{}, {40, 70}).problem,
              "a picture of the pair is empty");
}

}  // namespace
