// The GIF writer: files that FreeImage decodes to the palette-mapped
// input, the block layout, and the LZW code stream.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "image/gif_writer.h"
#include "image/lzw_encoder.h"
#include "image/palette.h"
#include "image/picture_io.h"
#include "image_compare.h"
#include "support/temp_home.h"

namespace brindle::test {
namespace {

// Every test runs in its own temporary program directory.
class Lzw : public TempHomeTest {};
class PaletteBuilding : public TempHomeTest {};

// The input as the palette shows it: what a GIF of it must decode to.
cDIBSection paletteMapped(const cDIBSection& dib, const Palette& palette) {
    const std::vector<std::uint8_t> indices = mapToPalette(dib, palette);
    return makeDib(dib.Width(), dib.Height(), [&](int x, int y) {
        const Rgb c = palette.entries[indices[static_cast<std::size_t>(y) * dib.Width() + x]];
        return Bgr{c.blue, c.green, c.red};
    });
}

// A plain GIF LZW decoder, written from the format description, to check
// the encoder's stream independently of any library.
std::vector<std::uint8_t> lzwDecode(const std::vector<std::uint8_t>& stream, int minCodeSize) {
    const int clear = 1 << minCodeSize, end = clear + 1;
    std::vector<std::vector<std::uint8_t>> table;
    auto reset = [&] {
        table.assign(static_cast<std::size_t>(clear) + 2, {});
        for (int i = 0; i < clear; ++i) table[i] = {static_cast<std::uint8_t>(i)};
    };
    reset();
    std::vector<std::uint8_t> out;
    std::size_t bitPos = 0;
    int width = minCodeSize + 1, previous = -1;
    while (bitPos + width <= stream.size() * 8) {
        int code = 0;
        for (int i = 0; i < width; ++i, ++bitPos)
            code |= ((stream[bitPos / 8] >> (bitPos % 8)) & 1) << i;
        if (code == clear) {
            reset();
            width = minCodeSize + 1;
            previous = -1;
            continue;
        }
        if (code == end) break;
        std::vector<std::uint8_t> entry;
        if (code < static_cast<int>(table.size())) {
            entry = table[code];
        } else {
            if (previous < 0 || code != static_cast<int>(table.size())) return {};  // broken stream
            entry = table[previous];
            entry.push_back(table[previous][0]);
        }
        out.insert(out.end(), entry.begin(), entry.end());
        if (previous >= 0 && table.size() < 4096) {
            std::vector<std::uint8_t> added = table[previous];
            added.push_back(entry[0]);
            table.push_back(added);
            if (table.size() >= (1u << width) && width < 12) ++width;
        }
        previous = code;
    }
    return out;
}

TEST_F(Lzw, CodesStayWithinTwelveBitsAndDecodeToTheInput) {
    std::vector<std::uint8_t> indices(200000);
    std::mt19937 rng(5);
    for (auto& i : indices) i = static_cast<std::uint8_t>(rng() % 256);
    LzwStats stats;
    const std::vector<std::uint8_t> stream = lzwEncode(indices.data(), indices.size(), 8, &stats);
    EXPECT_EQ(stats.widestCode, 12);
    EXPECT_GT(stats.clearCodes, 2) << "the table filled and was cleared";
    EXPECT_EQ(lzwDecode(stream, 8), indices);
    // Long runs make long strings.
    std::vector<std::uint8_t> runs(100000, 7);
    for (std::size_t i = 0; i < runs.size(); i += 999) runs[i] = 9;
    const std::vector<std::uint8_t> short_ = lzwEncode(runs.data(), runs.size(), 8, &stats);
    EXPECT_LT(short_.size(), runs.size() / 20);
    EXPECT_EQ(lzwDecode(short_, 8), runs);
}

TEST_F(Lzw, EmptyAndSingleInputs) {
    const std::uint8_t one = 42;
    EXPECT_EQ(lzwDecode(lzwEncode(&one, 1), 8), std::vector<std::uint8_t>{42});
    EXPECT_TRUE(lzwDecode(lzwEncode(nullptr, 0), 8).empty());
}

TEST_F(PaletteBuilding, FewColoursAreKeptExactlyAndManyAreCut) {
    const cDIBSection few = makeDib(16, 16, [](int x, int y) {
        return Bgr{x * 16, y * 16, (x * y) % 200};
    });
    Palette exact = buildPalette(few);
    EXPECT_EQ(exact.count, 256);
    EXPECT_TRUE(sameImage(few, paletteMapped(few, exact)));
    const cDIBSection many = smoothPicture(120, 90);
    const Palette cut = buildPalette(many);
    EXPECT_GE(cut.count, 240);
    EXPECT_LE(cut.count, 256);
    // 256 colours over a smooth two-way gradient leave steps of about a
    // dozen levels; an even 6 x 6 x 6 cube would be off by about 12 on average.
    EXPECT_TRUE(sameImage(many, paletteMapped(many, cut), 24));
    EXPECT_TRUE(similarImage(many, paletteMapped(many, cut), 4.0));
    // A reserved colour has its own entry, the last, that only it maps to.
    const Palette withReserved = buildPalette(many, 256, Rgb{255, 0, 255});
    EXPECT_EQ(withReserved.reserved, withReserved.count - 1);
    EXPECT_EQ(withReserved.entries[withReserved.reserved].blue, 255);
    const std::vector<std::uint8_t> indices = mapToPalette(many, withReserved);
    EXPECT_EQ(std::count(indices.begin(), indices.end(), withReserved.reserved), 0);
}

class GifFiles : public TempHomeTest {
  protected:
    cDIBSection writeAndDecode(const cDIBSection& dib, const std::string& name,
                               bool transparent = false, std::uint32_t colour = 0) {
        std::string error;
        EXPECT_TRUE(GIF::SaveGIF(dib, path(name), transparent, colour, &error)) << error;
        PictureFile f = LoadPictureFile(path(name));
        EXPECT_TRUE(f.picture) << "FreeImage could not decode " << name;
        return f.picture ? *f.picture.Handle() : cDIBSection{};
    }
};

TEST_F(GifFiles, DecodedGifEqualsThePaletteMappedInput) {
    struct Case {
        const char* name;
        cDIBSection dib;
    } cases[] = {
        {"few colours", makeDib(40, 30,
                                [](int x, int y) {
                                    return Bgr{(x / 4) * 20, (y / 3) * 20, 99};
                                })},
        {"photo-like", smoothPicture(160, 120)},
        {"noise, many table clears", noisePicture(300, 200, 9)},
        {"odd width", smoothPicture(33, 7)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const cDIBSection decoded = writeAndDecode(c.dib, "p.gif");
        EXPECT_TRUE(sameImage(paletteMapped(c.dib, buildPalette(c.dib)), decoded));
    }
}

TEST_F(GifFiles, OnePixelPictureIsAValidGif87a) {
    const cDIBSection dot = makeDib(1, 1, [](int, int) { return Bgr{10, 20, 30}; });
    EXPECT_TRUE(sameImage(dot, writeAndDecode(dot, "dot.gif")));
    const std::string bytes = readBytes("dot.gif");
    EXPECT_EQ(bytes.substr(0, 6), "GIF87a");
    EXPECT_EQ(static_cast<unsigned char>(bytes.back()), 0x3B);
}

TEST_F(GifFiles, BlocksFollowTheLayout) {
    const cDIBSection dib = noisePicture(64, 64, 10);
    std::string bytes;
    ASSERT_TRUE(GIF::encode(dib, true, 0x00FF00FF, bytes));
    EXPECT_EQ(bytes.substr(0, 6), "GIF89a");
    auto u8 = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    EXPECT_EQ(u8(6) | u8(7) << 8, 64);
    EXPECT_EQ(u8(10), 0xF7);
    std::size_t at = 13 + 768;
    ASSERT_EQ(u8(at), 0x21);
    EXPECT_EQ(u8(at + 1), 0xF9);
    EXPECT_EQ(u8(at + 2), 4);
    EXPECT_EQ(u8(at + 3) & 1, 1) << "transparency flag";
    const int index = u8(at + 6);
    EXPECT_EQ(u8(13 + index * 3), 0xFF);  // red of 0x00FF00FF
    EXPECT_EQ(u8(13 + index * 3 + 1), 0x00);
    EXPECT_EQ(u8(13 + index * 3 + 2), 0xFF);
    at += 8;
    ASSERT_EQ(u8(at), 0x2C);
    EXPECT_EQ(u8(at + 9), 0) << "no local table, not interlaced";
    EXPECT_EQ(u8(at + 10), 8) << "minimum code size";
    at += 11;
    std::size_t blocks = 0;
    while (u8(at) != 0) {
        EXPECT_LE(u8(at), 255);
        at += 1 + u8(at);
        ++blocks;
        ASSERT_LT(at, bytes.size());
    }
    EXPECT_GT(blocks, 1u);
    EXPECT_EQ(at + 2, bytes.size()) << "terminator and trailer close the file";
    EXPECT_EQ(u8(at + 1), 0x3B);
}

TEST_F(GifFiles, TransparentColourKeepsItsOwnEntry) {
    const cDIBSection dib = makeDib(20, 10, [](int x, int) {
        return x < 10 ? Bgr{255, 0, 255} : Bgr{250, 5, 250};
    });
    const cDIBSection decoded = writeAndDecode(dib, "t.gif", true, 0x00FF00FF);
    EXPECT_EQ(pixelAt(decoded, 0, 0), (Bgr{255, 0, 255}));
    EXPECT_EQ(pixelAt(decoded, 15, 0), (Bgr{250, 5, 250}));
}

TEST_F(GifFiles, PicturesTooWideForGifAreRefused) {
    cDIBSection wide;
    ASSERT_TRUE(wide.Create(70000, 1));
    std::string bytes, error;
    EXPECT_FALSE(GIF::encode(wide, false, 0, bytes));
    EXPECT_FALSE(GIF::SaveGIF(wide, path("w.gif"), false, 0, &error));
    EXPECT_FALSE(GIF::SaveGIF(Picture{}, path("w.gif"), false, 0, &error));
}

}  // namespace
}  // namespace brindle::test
