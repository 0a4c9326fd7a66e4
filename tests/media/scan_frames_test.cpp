// The scanner's byte stream to picture: pixels, line splitting and every
// refusal, without a device.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "image/dib_section.h"
#include "media/scan_frames.h"

namespace brindle::media {
namespace {

using Bytes = std::vector<std::uint8_t>;

// The blue, green and red bytes of pixel (x, y), y counted from the top.
std::string bgrAt(const Picture& picture, int x, int y) {
    const cDIBSection* dib = picture.Handle();
    const std::uint8_t* p = dib->rowBits(dib->Height() - 1 - y) + 3 * x;
    return std::to_string(p[0]) + "," + std::to_string(p[1]) + "," + std::to_string(p[2]);
}

ScanFrameFormat frame(ScanFrameKind kind, int width, int lines, int bytesPerLine, bool last = true) {
    return {static_cast<int>(kind), last, bytesPerLine, width, lines, 8};
}

// Feeds `bytes` in pieces of `piece` bytes, so lines are split across reads.
bool feed(ScanAssembler& a, const Bytes& bytes, std::size_t piece) {
    for (std::size_t i = 0; i < bytes.size(); i += piece)
        if (!a.add(bytes.data() + i, std::min(piece, bytes.size() - i))) return false;
    return true;
}

TEST(ScanFrames, GrayLinesSplitAcrossReadsLandTopDown) {
    for (std::size_t piece : {1u, 2u, 5u, 100u}) {
        SCOPED_TRACE("piece " + std::to_string(piece));
        ScanAssembler a(Language::English);
        ASSERT_TRUE(a.beginFrame(frame(ScanFrameKind::Gray, 3, 2, 3)));
        ASSERT_TRUE(feed(a, {10, 20, 30, 40, 50, 60}, piece));
        EXPECT_EQ(a.percent(), 100);
        ASSERT_TRUE(a.endFrame());
        const Picture p = a.picture();
        ASSERT_TRUE(p);
        EXPECT_EQ(p.Width(), 3);
        EXPECT_EQ(p.Height(), 2);
        EXPECT_EQ(bgrAt(p, 0, 0), "10,10,10");
        EXPECT_EQ(bgrAt(p, 2, 0), "30,30,30");
        EXPECT_EQ(bgrAt(p, 1, 1), "50,50,50");
    }
}

TEST(ScanFrames, RgbWithPaddedLinesBecomesBlueGreenRed) {
    ScanAssembler a(Language::English);
    // Two pixels a line, 6 bytes of colour and 2 of padding.
    ASSERT_TRUE(a.beginFrame(frame(ScanFrameKind::Rgb, 2, 2, 8)));
    ASSERT_TRUE(feed(a, {1, 2, 3, 4, 5, 6, 99, 99, 7, 8, 9, 10, 11, 12, 99, 99}, 3));
    ASSERT_TRUE(a.endFrame());
    const Picture p = a.picture();
    ASSERT_TRUE(p);
    EXPECT_EQ(bgrAt(p, 0, 0), "3,2,1");
    EXPECT_EQ(bgrAt(p, 1, 0), "6,5,4");
    EXPECT_EQ(bgrAt(p, 0, 1), "9,8,7");
    EXPECT_EQ(bgrAt(p, 1, 1), "12,11,10");
}

TEST(ScanFrames, ThreePassFramesFillOneChannelEach) {
    ScanAssembler a(Language::English);
    ASSERT_TRUE(a.beginFrame(frame(ScanFrameKind::Red, 2, 1, 2, false)));
    ASSERT_TRUE(feed(a, {200, 201}, 2));
    ASSERT_TRUE(a.endFrame());
    EXPECT_FALSE(a.complete());
    EXPECT_FALSE(a.picture());
    ASSERT_TRUE(a.beginFrame(frame(ScanFrameKind::Green, 2, 1, 2, false)));
    ASSERT_TRUE(feed(a, {100, 101}, 1));
    ASSERT_TRUE(a.endFrame());
    ASSERT_TRUE(a.beginFrame(frame(ScanFrameKind::Blue, 2, 1, 2, true)));
    ASSERT_TRUE(feed(a, {50, 51}, 2));
    ASSERT_TRUE(a.endFrame());
    ASSERT_TRUE(a.complete());
    const Picture p = a.picture();
    ASSERT_TRUE(p);
    EXPECT_EQ(bgrAt(p, 0, 0), "50,100,200");
    EXPECT_EQ(bgrAt(p, 1, 0), "51,101,201");

    ScanAssembler wrongWidth(Language::English);
    ASSERT_TRUE(wrongWidth.beginFrame(frame(ScanFrameKind::Red, 2, 1, 2, false)));
    ASSERT_TRUE(feed(wrongWidth, {1, 2}, 2));
    ASSERT_TRUE(wrongWidth.endFrame());
    EXPECT_FALSE(wrongWidth.beginFrame(frame(ScanFrameKind::Green, 3, 1, 3, false)));
    EXPECT_EQ(wrongWidth.error(), "The scanner did not deliver the whole picture.");
}

TEST(ScanFrames, UnknownHeightGrowsUntilTheEnd) {
    ScanAssembler a(Language::English);
    ASSERT_TRUE(a.beginFrame(frame(ScanFrameKind::Gray, 1, -1, 1)));
    Bytes bytes(130);
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::uint8_t>(i);
    ASSERT_TRUE(feed(a, bytes, 7));
    EXPECT_EQ(a.percent(), 0);
    ASSERT_TRUE(a.endFrame());
    const Picture p = a.picture();
    ASSERT_TRUE(p);
    EXPECT_EQ(p.Width(), 1);
    EXPECT_EQ(p.Height(), 130);
    EXPECT_EQ(bgrAt(p, 0, 129), "129,129,129");

    ScanAssembler limited(Language::English, ScanLimits{100, 1000});
    ASSERT_TRUE(limited.beginFrame(frame(ScanFrameKind::Gray, 1, -1, 1)));
    EXPECT_FALSE(feed(limited, bytes, 7));
    EXPECT_EQ(limited.error(), "The scanner's picture is too large (1 x 128 pixels).");
}

TEST(ScanFrames, BrokenStreamsAreRefusedWithTheirMessage) {
    {
        ScanAssembler a(Language::English);
        ASSERT_TRUE(a.beginFrame(frame(ScanFrameKind::Gray, 2, 1, 2)));
        EXPECT_FALSE(feed(a, {1, 2, 3, 4}, 4));
        EXPECT_EQ(a.error(), "The scanner delivered more lines than it announced.");
    }
    {
        ScanAssembler a(Language::German);
        ASSERT_TRUE(a.beginFrame(frame(ScanFrameKind::Gray, 2, 2, 2)));
        ASSERT_TRUE(feed(a, {1, 2, 3}, 3));
        EXPECT_FALSE(a.endFrame());
        EXPECT_EQ(a.error(), "Der Scanner hat das Bild nicht vollständig geliefert.");
        EXPECT_FALSE(a.picture());
    }
    {
        ScanAssembler a(Language::English);
        ScanFrameFormat deep = frame(ScanFrameKind::Gray, 2, 2, 4);
        deep.depth = 16;
        EXPECT_FALSE(a.beginFrame(deep));
        EXPECT_EQ(a.error(), "The scanner delivers a picture format that cannot be read (depth 16).");
    }
    {
        ScanAssembler a(Language::English);
        EXPECT_FALSE(a.beginFrame(frame(ScanFrameKind::Rgb, 4, 2, 11)));  // shorter than 4 pixels
        EXPECT_FALSE(a.beginFrame(frame(ScanFrameKind::Gray, 4, 2, 4)));  // nothing after a refusal
    }
    {
        ScanAssembler a(Language::English);
        EXPECT_FALSE(a.beginFrame({7, true, 4, 4, 2, 8}));
        EXPECT_EQ(a.error(), "The scanner delivers a picture format that cannot be read (depth 8).");
    }
    {
        ScanAssembler a(Language::English, ScanLimits{1000, 65000});
        EXPECT_FALSE(a.beginFrame(frame(ScanFrameKind::Gray, 100, 11, 100)));
        EXPECT_EQ(a.error(), "The scanner's picture is too large (100 x 11 pixels).");
    }
    {
        ScanAssembler a(Language::English);
        EXPECT_FALSE(a.beginFrame(frame(ScanFrameKind::Gray, 2, 0, 2)));
        EXPECT_EQ(a.error(), "The scanner delivered no picture.");
    }
}

}  // namespace
}  // namespace brindle::media
