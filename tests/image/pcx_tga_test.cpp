// PCX and TGA files built byte by byte decode to the expected pixels;
// hostile ones are refused before anything large is allocated.
#include <gtest/gtest.h>

#include "image/pcx_reader.h"
#include "image/tga_reader.h"
#include "image_compare.h"
#include "support/temp_home.h"

namespace brindle::test {
namespace {

// Every test runs in its own temporary program directory.
class PcxReader : public TempHomeTest {};
class TgaReader : public TempHomeTest {};

Bytes pcxHeader(int bitsPerPlane, int planes, int width, int height, int bytesPerLine,
                int encoding = 1, const std::vector<Bgr>& palette16 = {}) {
    Bytes b;
    b.u8(10).u8(5).u8(encoding).u8(bitsPerPlane);
    b.u16(0).u16(0).u16(width - 1).u16(height - 1).u16(72).u16(72);
    for (int i = 0; i < 16; ++i) {
        const Bgr c = i < static_cast<int>(palette16.size()) ? palette16[i] : Bgr{};
        b.u8(c.r).u8(c.g).u8(c.b);
    }
    b.u8(0).u8(planes).u16(bytesPerLine).u16(1).fill(58, 0);
    return b;
}

cDIBSection decodePcx(const std::string& bytes, LoadPCX& pcx) {
    std::string error;
    EXPECT_TRUE(pcx.LoadFromBytes(bytes, &error)) << error;
    return pcx.pixels();
}

TEST_F(PcxReader, TrueColourPlanesWithRunsAcrossRowEnds) {
    // 3 x 2, bytes per line 4: each row is red, green, blue planes of 4 bytes.
    Bytes b = pcxHeader(8, 3, 3, 2, 4);
    b.u8(10).u8(20).u8(30).u8(0);        // row 0 red
    b.u8(0xC2).u8(40).u8(0xC1).u8(200);  // green 40, 40, then 200 (needs a run), pad
    b.u8(0);
    b.u8(1).u8(2).u8(3).u8(0xC5).u8(7);  // blue 1 2 3, pad 7, then row 1 red 7 7 7 7
    b.u8(0xC8).u8(9);                    // row 1 green and blue: eight 9s
    LoadPCX pcx;
    const cDIBSection dib = decodePcx(b.str(), pcx);
    EXPECT_TRUE(pcx.IsPCX());
    EXPECT_TRUE(pcx.Compressed());
    EXPECT_EQ(pcx.Bpp(), 24);
    EXPECT_TRUE(sameImage(
        makeDib({{{1, 40, 10}, {2, 40, 20}, {3, 200, 30}}, {{9, 9, 7}, {9, 9, 7}, {9, 9, 7}}}),
        dib));
}

TEST_F(PcxReader, StoredRowsWithoutRunLengthCoding) {
    Bytes b = pcxHeader(8, 3, 1, 1, 2, 0);
    b.u8(0xC3).u8(0).u8(0xD4).u8(0).u8(0xE5).u8(0);
    LoadPCX pcx;
    EXPECT_TRUE(sameImage(makeDib({{{0xE5, 0xD4, 0xC3}}}), decodePcx(b.str(), pcx)));
    EXPECT_FALSE(pcx.Compressed());
}

TEST_F(PcxReader, TwoFiftySixColoursFromTheTailPaletteOrGrey) {
    Bytes b = pcxHeader(8, 1, 2, 2, 2);
    b.u8(1).u8(2).u8(3).u8(0xC1).u8(255);
    Bytes withTail = b;
    withTail.u8(0x0C);
    for (int i = 0; i < 256; ++i) withTail.u8(i).u8(255 - i).u8(i / 2);  // red, green, blue
    LoadPCX pcx;
    EXPECT_TRUE(sameImage(makeDib({{{0, 254, 1}, {1, 253, 2}}, {{1, 252, 3}, {127, 0, 255}}}),
                          decodePcx(withTail.str(), pcx)));
    EXPECT_TRUE(sameImage(makeDib({{{1, 1, 1}, {2, 2, 2}}, {{3, 3, 3}, {255, 255, 255}}}),
                          decodePcx(b.str(), pcx)));
}

TEST_F(PcxReader, SixteenColoursPackedAndPlanar) {
    const std::vector<Bgr> palette = {{0, 0, 0},    {0, 0, 170},   {0, 170, 0},  {0, 170, 170},
                                      {170, 0, 0},  {170, 0, 170}, {170, 85, 0}, {170, 170, 170},
                                      {85, 85, 85}, {85, 85, 255}};
    // 4 bits x 1 plane: two pixels a byte, high nibble first.
    Bytes packed = pcxHeader(4, 1, 3, 1, 2, 1, palette);
    packed.u8(0x12).u8(0x30);
    LoadPCX pcx;
    EXPECT_TRUE(
        sameImage(makeDib({{palette[1], palette[2], palette[3]}}), decodePcx(packed.str(), pcx)));
    EXPECT_EQ(pcx.Bpp(), 4);
    // 1 bit x 4 planes: bit n of the index from plane n.
    Bytes planar = pcxHeader(1, 4, 3, 1, 2, 1, palette);
    planar.u8(0b10100000).u8(0).u8(0b01100000).u8(0).u8(0).u8(0).u8(0b10000000).u8(0);
    EXPECT_TRUE(
        sameImage(makeDib({{palette[9], palette[2], palette[3]}}), decodePcx(planar.str(), pcx)));
    EXPECT_EQ(pcx.Bpp(), 4);
}

TEST_F(PcxReader, MonochromeIsBlackAndWhite) {
    Bytes b = pcxHeader(1, 1, 10, 1, 2);
    b.u8(0b10110000).u8(0b01000000);
    LoadPCX pcx;
    const cDIBSection dib = decodePcx(b.str(), pcx);
    const int bits[10] = {1, 0, 1, 1, 0, 0, 0, 0, 0, 1};
    for (int x = 0; x < 10; ++x) EXPECT_EQ(pixelAt(dib, x, 0).g, bits[x] ? 255 : 0) << x;
}

TEST_F(PcxReader, HostileFilesAreRefused) {
    struct Case {
        const char* name;
        std::string bytes;
        bool isPcx;
    };
    Bytes truncated = pcxHeader(8, 3, 4, 4, 4);
    truncated.u8(1).u8(2);
    Bytes bomb = pcxHeader(8, 3, 65535, 65535, 65535);
    bomb.u8(0xFF).u8(1).u8(0xFF).u8(1);
    Bytes shortRows = pcxHeader(8, 1, 10, 1, 4);
    shortRows.fill(20, 1);
    Bytes unknownKind = pcxHeader(2, 2, 4, 4, 2);
    unknownKind.fill(64, 0);
    Bytes emptyWindow = pcxHeader(8, 1, 4, 4, 4);
    std::string inverted = emptyWindow.str();
    inverted[8] = 0, inverted[9] = 0, inverted[4] = 5;  // xMin 5 > xMax 0
    const Case cases[] = {
        {"not a PCX file", std::string(300, 'x'), false},
        {"header cut short", pcxHeader(8, 3, 4, 4, 4).str().substr(0, 60), false},
        {"unknown colour kind", unknownKind.str(), false},
        {"data ends early", truncated.str(), true},
        {"size bomb", bomb.str(), true},
        {"rows shorter than the width", shortRows.str(), true},
        {"inverted window", inverted, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        LoadPCX pcx;
        std::string error;
        EXPECT_FALSE(pcx.LoadFromBytes(c.bytes, &error));
        EXPECT_FALSE(error.empty());
        EXPECT_EQ(pcx.IsPCX(), c.isPcx);
        EXPECT_TRUE(pcx.pixels().empty());
        EXPECT_EQ(pcx.PCXWidth(), 0);
    }
}

Bytes tgaHeader(int type, int width, int height, int pixelBits, int descriptor = 0, int mapType = 0,
                int mapFirst = 0, int mapLength = 0, int mapBits = 0, int idLength = 0) {
    Bytes b;
    b.u8(idLength).u8(mapType).u8(type).u16(mapFirst).u16(mapLength).u8(mapBits);
    b.u16(0).u16(0).u16(width).u16(height).u8(pixelBits).u8(descriptor);
    return b;
}

cDIBSection decodeTga(const std::string& bytes, LoadTGA& tga) {
    std::string error;
    EXPECT_TRUE(tga.LoadFromBytes(bytes, &error)) << error;
    return tga.pixels();
}

const Bgr A{1, 2, 3}, B{4, 5, 6}, C{7, 8, 9}, D{10, 11, 12};

TEST_F(TgaReader, TrueColourRowsStartAtTheBottomUnlessFlagged) {
    Bytes bottomUp = tgaHeader(2, 2, 2, 24, 0, 0, 0, 0, 0, 3);
    bottomUp.text("id!");
    for (Bgr c : {C, D, A, B}) bottomUp.u8(c.b).u8(c.g).u8(c.r);  // file rows: bottom first
    LoadTGA tga;
    EXPECT_TRUE(sameImage(makeDib({{A, B}, {C, D}}), decodeTga(bottomUp.str(), tga)));
    EXPECT_TRUE(tga.IsTGA());
    EXPECT_FALSE(tga.Compressed());
    EXPECT_EQ(tga.Bpp(), 24);

    Bytes topDown = tgaHeader(2, 2, 2, 32, 0x28);
    for (Bgr c : {A, B, C, D}) topDown.u8(c.b).u8(c.g).u8(c.r).u8(0x80);
    EXPECT_TRUE(sameImage(makeDib({{A, B}, {C, D}}), decodeTga(topDown.str(), tga)));

    Bytes rightToLeft = tgaHeader(2, 2, 1, 24, 0x30);
    for (Bgr c : {A, B}) rightToLeft.u8(c.b).u8(c.g).u8(c.r);
    EXPECT_TRUE(sameImage(makeDib({{B, A}}), decodeTga(rightToLeft.str(), tga)));
}

TEST_F(TgaReader, FifteenAndSixteenBitPixelsWidenFiveBitChannels) {
    Bytes b = tgaHeader(2, 4, 1, 16, 0x20);
    b.u16(0x7C00).u16(0x03E0).u16(0x001F).u16(
        0xC210);  // red, green, blue, 16/16/16 with the top bit set
    LoadTGA tga;
    EXPECT_TRUE(sameImage(makeDib({{{0, 0, 255}, {0, 255, 0}, {255, 0, 0}, {132, 132, 132}}}),
                          decodeTga(b.str(), tga)));
}

TEST_F(TgaReader, ColourMappedAndGreyPictures) {
    // Map entries 2..4 (24 bits); index 0 lies outside the map and is black.
    Bytes mapped = tgaHeader(1, 4, 1, 8, 0x20, 1, 2, 3, 24);
    for (Bgr c : {A, B, C}) mapped.u8(c.b).u8(c.g).u8(c.r);
    mapped.u8(2).u8(3).u8(4).u8(0);
    LoadTGA tga;
    EXPECT_TRUE(sameImage(makeDib({{A, B, C, {0, 0, 0}}}), decodeTga(mapped.str(), tga)));
    Bytes grey = tgaHeader(3, 3, 1, 8, 0x20);
    grey.u8(0).u8(128).u8(255);
    EXPECT_TRUE(sameImage(makeDib({{{0, 0, 0}, {128, 128, 128}, {255, 255, 255}}}),
                          decodeTga(grey.str(), tga)));
    Bytes greyAlpha = tgaHeader(3, 1, 1, 16, 0x28);
    greyAlpha.u8(77).u8(255);
    EXPECT_TRUE(sameImage(makeDib({{{77, 77, 77}}}), decodeTga(greyAlpha.str(), tga)));
}

TEST_F(TgaReader, RunLengthPacketsGoOnAcrossRows) {
    // 3 x 2 top-down: a run of four A, then two raw pixels B and C.
    Bytes b = tgaHeader(10, 3, 2, 24, 0x20);
    b.u8(0x83).u8(A.b).u8(A.g).u8(A.r);
    b.u8(0x01).u8(B.b).u8(B.g).u8(B.r).u8(C.b).u8(C.g).u8(C.r);
    LoadTGA tga;
    EXPECT_TRUE(sameImage(makeDib({{A, A, A}, {A, B, C}}), decodeTga(b.str(), tga)));
    EXPECT_TRUE(tga.Compressed());
    Bytes grey = tgaHeader(11, 4, 1, 8, 0x20);
    grey.u8(0x81).u8(50).u8(0x01).u8(60).u8(70);
    EXPECT_TRUE(sameImage(makeDib({{{50, 50, 50}, {50, 50, 50}, {60, 60, 60}, {70, 70, 70}}}),
                          decodeTga(grey.str(), tga)));
    Bytes mapped = tgaHeader(9, 3, 1, 8, 0x20, 1, 0, 2, 24);
    for (Bgr c : {A, D}) mapped.u8(c.b).u8(c.g).u8(c.r);
    mapped.u8(0x82).u8(1);
    EXPECT_TRUE(sameImage(makeDib({{D, D, D}}), decodeTga(mapped.str(), tga)));
}

TEST_F(TgaReader, HostileFilesAreRefused) {
    struct Case {
        const char* name;
        std::string bytes;
        bool isTga;
    };
    Bytes truncated = tgaHeader(2, 4, 4, 24);
    truncated.fill(10, 1);
    Bytes rleBomb = tgaHeader(10, 65535, 65535, 32);
    rleBomb.u8(0xFF).fill(4, 0);
    Bytes rleCut = tgaHeader(10, 4, 1, 24);
    rleCut.u8(0x01).u8(1).u8(2).u8(3);
    Bytes mapCut = tgaHeader(1, 2, 2, 8, 0, 1, 0, 200, 24);
    mapCut.fill(30, 0);
    const Case cases[] = {
        {"no image type", tgaHeader(0, 2, 2, 24).str() + std::string(12, '\0'), false},
        {"unknown image type", tgaHeader(7, 2, 2, 24).str() + std::string(12, '\0'), false},
        {"colour-mapped without a map", tgaHeader(1, 2, 2, 8).str() + std::string(4, '\0'), false},
        {"odd pixel depth", tgaHeader(2, 2, 2, 12).str() + std::string(12, '\0'), false},
        {"header cut short", tgaHeader(2, 2, 2, 24).str().substr(0, 10), false},
        {"uncompressed data ends early", truncated.str(), true},
        {"run-length size bomb", rleBomb.str(), true},
        {"run-length data ends early", rleCut.str(), true},
        {"colour map ends early", mapCut.str(), true},
        {"empty picture", tgaHeader(2, 0, 5, 24).str(), true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        LoadTGA tga;
        std::string error;
        EXPECT_FALSE(tga.LoadFromBytes(c.bytes, &error));
        EXPECT_FALSE(error.empty());
        EXPECT_EQ(tga.IsTGA(), c.isTga);
        EXPECT_TRUE(tga.pixels().empty());
    }
}

class PcxTgaFiles : public TempHomeTest {};

TEST_F(PcxTgaFiles, LoadReadsTheFileAndDrawsAtNaturalSizeOrStretched) {
    Bytes b = tgaHeader(2, 2, 1, 24, 0x20);
    for (Bgr c : {A, B}) b.u8(c.b).u8(c.g).u8(c.r);
    writeBytes("p.tga", b.str());
    LoadTGA tga;
    ASSERT_TRUE(tga.Load(path("p.tga")));
    EXPECT_EQ(tga.TGAWidth(), 2);
    EXPECT_EQ(tga.TGAHeight(), 1);
    cDIBSection target;
    ASSERT_TRUE(target.Create(4, 2));
    EXPECT_TRUE(tga.DrawTGA(target.hdc(), 0, 0, 4, 2));
    EXPECT_TRUE(sameImage(makeDib({{A, B, {}, {}}, {{}, {}, {}, {}}}), target));
    tga.Autoscale = true;
    EXPECT_TRUE(tga.DrawTGA(target.hdc(), 0, 0, 4, 2));
    EXPECT_TRUE(sameImage(makeDib({{A, A, B, B}, {A, A, B, B}}), target));
    LoadPCX missing;
    EXPECT_FALSE(missing.Load(path("none.pcx")));
    EXPECT_FALSE(missing.IsPCX());
}

}  // namespace
}  // namespace brindle::test
