// cDIBSection: layout, blits, stretching and resampling.
#include "image/dib_section.h"

#include <gtest/gtest.h>

#include "image/picture_holder.h"
#include "image_compare.h"
#include "support/temp_home.h"

namespace brindle::test {
namespace {

// Every test runs in its own temporary program directory.
class DibSection : public TempHomeTest {};

TEST_F(DibSection, BytesPerScanLinePadsRowsToFourBytes) {
    const int cases[][2] = {{1, 4},  {2, 8},  {3, 12}, {4, 12},
                            {5, 16}, {7, 24}, {8, 24}, {100, 300}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c[0]);
        EXPECT_EQ(cDIBSection::BytesPerScanLine(c[0]), c[1]);
        cDIBSection dib;
        ASSERT_TRUE(dib.Create(c[0], 3));
        EXPECT_EQ(dib.BytesPerScanLine(), c[1]);
        EXPECT_EQ(dib.header().sizeImage, static_cast<std::uint32_t>(3 * c[1]));
        EXPECT_EQ(dib.header().bitCount, 24);
        EXPECT_EQ(dib.header().size, 40u);
    }
}

TEST_F(DibSection, CreateStartsBlackAndReplacesWhatWasHeld) {
    cDIBSection dib;
    EXPECT_TRUE(dib.empty());
    EXPECT_EQ(dib.hDib(), 0u);
    EXPECT_FALSE(dib.hdc());
    ASSERT_TRUE(dib.Create(5, 4));
    dib.effectFarbfläche(0xFFFFFF);
    ASSERT_TRUE(dib.Create(3, 2));
    EXPECT_EQ(dib.Width(), 3);
    EXPECT_EQ(dib.Height(), 2);
    EXPECT_TRUE(sameImage(makeDib(3, 2, [](int, int) { return Bgr{}; }), dib));
    EXPECT_FALSE(dib.Create(0, 5));
    EXPECT_TRUE(dib.empty());
    EXPECT_FALSE(dib.Create(5, -1));
    dib.ClearUp();
    EXPECT_EQ(dib.DIBSectionBitsPtr(), nullptr);
}

TEST_F(DibSection, BufferRowZeroIsTheBottomRowInBlueGreenRedOrder) {
    cDIBSection dib = makeDib(2, 3, [](int x, int y) {
        return x == 0 && y == 0 ? Bgr{1, 2, 3} : Bgr{};
    });
    const std::uint8_t* top = dib.rowBits(2);
    EXPECT_EQ(top[0], 1);
    EXPECT_EQ(top[1], 2);
    EXPECT_EQ(top[2], 3);
    EXPECT_EQ(dib.rowBits(0)[0], 0);
}

TEST_F(DibSection, PaintPictureWithMinusOneCopiesTheWholePicture) {
    const cDIBSection src = noisePicture(7, 5, 1);
    cDIBSection dst;
    ASSERT_TRUE(dst.Create(7, 5));
    EXPECT_TRUE(src.PaintPicture(dst.hdc(), 0, 0, -1, -1, 0, 0, SRCCOPY));
    EXPECT_TRUE(sameImage(src, dst));
}

TEST_F(DibSection, BlitsAreClippedToBothPictures) {
    const cDIBSection src = makeDib(3, 3, [](int x, int y) { return Bgr{x, y, 9}; });
    cDIBSection dst;
    ASSERT_TRUE(dst.Create(3, 3));
    src.PaintPicture(dst.hdc(), -1, -1, 3, 3, 0, 0, SRCCOPY);
    EXPECT_EQ(pixelAt(dst, 0, 0), (Bgr{1, 1, 9}));
    EXPECT_EQ(pixelAt(dst, 1, 1), (Bgr{2, 2, 9}));
    EXPECT_EQ(pixelAt(dst, 2, 2), (Bgr{}));
    cDIBSection into;
    ASSERT_TRUE(into.Create(2, 2));
    into.LoadPictureBlt(src.hdc(), 1, 1, -1, -1, SRCCOPY);
    EXPECT_EQ(pixelAt(into, 0, 0), (Bgr{1, 1, 9}));
    EXPECT_EQ(pixelAt(into, 1, 1), (Bgr{2, 2, 9}));
}

TEST_F(DibSection, RasterOperationsCombineBytes) {
    const cDIBSection src = makeDib(1, 1, [](int, int) { return Bgr{0x0F, 0xF0, 0xAA}; });
    struct Case {
        std::uint32_t rop;
        Bgr expected;
    } cases[] = {
        {SRCCOPY, {0x0F, 0xF0, 0xAA}},    {SRCPAINT, {0x3F, 0xF3, 0xAB}},
        {SRCAND, {0x03, 0x30, 0x02}},     {SRCINVERT, {0x3C, 0xC3, 0xA9}},
        {NOTSRCCOPY, {0xF0, 0x0F, 0x55}}, {DSTINVERT, {0xCC, 0xCC, 0xFC}},
        {BLACKNESS, {0, 0, 0}},           {WHITENESS, {255, 255, 255}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.rop);
        cDIBSection dst = makeDib(1, 1, [](int, int) { return Bgr{0x33, 0x33, 0x03}; });
        EXPECT_TRUE(src.PaintPicture(dst.hdc(), 0, 0, 1, 1, 0, 0, c.rop));
        EXPECT_EQ(pixelAt(dst, 0, 0), c.expected);
    }
    cDIBSection dst;
    ASSERT_TRUE(dst.Create(1, 1));
    EXPECT_FALSE(src.PaintPicture(dst.hdc(), 0, 0, 1, 1, 0, 0, 0x12345678));
}

cDIBSection row(std::initializer_list<int> values) {
    std::vector<Bgr> r;
    for (int v : values) r.push_back({v, v, v});
    return makeDib({r});
}

TEST_F(DibSection, StretchTakesThePixelUnderEachTargetCentreWithoutAveraging) {
    const cDIBSection src = row({10, 20, 30, 40});
    cDIBSection half;
    ASSERT_TRUE(half.Create(2, 1));
    src.StretchPicture(half.hdc(), 0, 0, 2, 1, 0, 0, 4, 1);
    EXPECT_TRUE(sameImage(row({20, 40}), half));
    cDIBSection twice;
    ASSERT_TRUE(twice.Create(8, 1));
    src.StretchPicture(twice.hdc(), 0, 0, 8, 1, 0, 0, 4, 1);
    EXPECT_TRUE(sameImage(row({10, 10, 20, 20, 30, 30, 40, 40}), twice));
}

TEST_F(DibSection, NegativeExtentsMirror) {
    const cDIBSection src = makeDib(3, 2, [](int x, int y) { return Bgr{x, y, 0}; });
    const cDIBSection mirrored = makeDib(3, 2, [](int x, int y) { return Bgr{2 - x, y, 0}; });
    const cDIBSection flipped = makeDib(3, 2, [](int x, int y) { return Bgr{x, 1 - y, 0}; });
    struct Case {
        const char* name;
        int x, y, w, h, sx, sy, sw, sh;
        const cDIBSection& expected;
    } cases[] = {
        {"target width", 3, 0, -3, 2, 0, 0, 3, 2, mirrored},
        {"source width", 0, 0, 3, 2, 3, 0, -3, 2, mirrored},
        {"target height", 0, 2, 3, -2, 0, 0, 3, 2, flipped},
        {"both widths", 3, 0, -3, 2, 3, 0, -3, 2, src},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        cDIBSection dst;
        ASSERT_TRUE(dst.Create(3, 2));
        src.StretchPicture(dst.hdc(), c.x, c.y, c.w, c.h, c.sx, c.sy, c.sw, c.sh);
        EXPECT_TRUE(sameImage(c.expected, dst));
    }
    cDIBSection viaPaint;
    ASSERT_TRUE(viaPaint.Create(3, 2));
    src.PaintPicture(viaPaint.hdc(), 3, 0, -3, 2, 0, 0, SRCCOPY);
    EXPECT_TRUE(sameImage(mirrored, viaPaint));
}

TEST_F(DibSection, StretchOntoItselfMirrorsInPlace) {
    cDIBSection dib = makeDib(4, 3, [](int x, int y) { return Bgr{x, y, 7}; });
    dib.StretchPicture(dib.hdc(), 0, 0, 4, 3, 4, 0, -4, 3);
    EXPECT_TRUE(sameImage(makeDib(4, 3, [](int x, int y) { return Bgr{3 - x, y, 7}; }), dib));
    dib.StretchPicture(dib.hdc(), 0, 0, 4, 3, 0, 3, 4, -3);
    EXPECT_TRUE(sameImage(makeDib(4, 3, [](int x, int y) { return Bgr{3 - x, 2 - y, 7}; }), dib));
}

TEST_F(DibSection, InvertIsTheNegativeAndUndoesItself) {
    const cDIBSection original = noisePicture(5, 4, 2);
    cDIBSection dib = original;
    dib.effectInvert();
    const Bgr p = pixelAt(original, 3, 2);
    EXPECT_EQ(pixelAt(dib, 3, 2), (Bgr{255 - p.b, 255 - p.g, 255 - p.r}));
    dib.effectInvert();
    EXPECT_TRUE(sameImage(original, dib));
}

TEST_F(DibSection, ResampleToTheSameSizeIsAPlainCopy) {
    const cDIBSection src = noisePicture(9, 7, 3);
    const cDIBSection out = src.Resample(7, 9);
    EXPECT_TRUE(sameImage(src, out));
}

TEST_F(DibSection, ResampleBlendsRowsFirstAndRoundsHalfToEven) {
    // Buffer rows: row 0 = 0, 10; row 1 = 20, 31 (grey).
    cDIBSection src;
    ASSERT_TRUE(src.Create(2, 2));
    const int values[2][2] = {{0, 10}, {20, 31}};
    for (int r = 0; r < 2; ++r)
        for (int x = 0; x < 2; ++x)
            for (int c = 0; c < 3; ++c)
                src.rowBits(r)[x * 3 + c] = static_cast<std::uint8_t>(values[r][x]);
    const cDIBSection out = src.Resample(3, 3);
    ASSERT_EQ(out.Width(), 3);
    ASSERT_EQ(out.Height(), 3);
    // (x, buffer row): expected value.
    const int expected[3][3] = {{0, 5, 10}, {10, 15, 20}, {20, 26, 31}};
    for (int r = 0; r < 3; ++r)
        for (int x = 0; x < 3; ++x) {
            SCOPED_TRACE(testing::Message() << "x " << x << " row " << r);
            EXPECT_EQ(bufferPixel(out, x, r).g, expected[r][x]);
        }
}

TEST_F(DibSection, ResampleToOnePixelTakesTheFirstPixel) {
    const cDIBSection src = noisePicture(4, 4, 4);
    const cDIBSection out = src.Resample(1, 1);
    EXPECT_EQ(bufferPixel(out, 0, 0), bufferPixel(src, 0, 0));
}

TEST_F(DibSection, ClipboardTakesBitmapsOnly) {
    const cDIBSection dib = noisePicture(3, 2, 5);
    const ImageStatus asDib = dib.CopyToClipboard(true, [](const Picture&) { return true; });
    EXPECT_FALSE(asDib.ok);
    ASSERT_TRUE(asDib.message);
    EXPECT_EQ(asDib.message->text,
              "I don't know how to put a DIB on the clipboard! Copy as bitmap instead!!!");
    Picture taken;
    EXPECT_TRUE(dib.CopyToClipboard(false,
                                    [&](const Picture& p) {
                                        taken = p;
                                        return true;
                                    })
                    .ok);
    ASSERT_TRUE(taken);
    EXPECT_TRUE(sameImage(dib, *taken.Handle()));
    EXPECT_FALSE(dib.CopyToClipboard(false, [](const Picture&) { return false; }).ok);
}

TEST_F(DibSection, PicturesAndHoldersCarryThePixels) {
    const cDIBSection dib = noisePicture(6, 3, 6);
    const Picture picture = dib.Picture();
    EXPECT_EQ(picture.Width(), 6);
    EXPECT_EQ(picture.Height(), 3);
    cDIBSection back;
    ASSERT_TRUE(back.CreateFromPicture(picture));
    EXPECT_TRUE(sameImage(dib, back));
    EXPECT_FALSE(back.CreateFromPicture(Picture{}));

    PictureHolder holder;
    holder.AutoRedraw = true;
    ASSERT_TRUE(holder.resize(6, 3));
    dib.PaintPicture(holder.hdc());
    cDIBSection copied;
    ASSERT_TRUE(copied.CopyPicture(holder));
    EXPECT_TRUE(sameImage(dib, copied));
    EXPECT_TRUE(sameImage(dib, *holder.Image().Handle()));
}

TEST_F(DibSection, EffectsLeaveTheProgressWordAtOneHundred) {
    cDIBSection dib = noisePicture(10, 10, 7);
    ProgressWord progress;
    progress.store(42);
    dib.effectKontrastBits(10, &progress);
    EXPECT_EQ(progress.load(), 100);
    EXPECT_EQ(dib.Progress(), 100);
}

}  // namespace
}  // namespace brindle::test
