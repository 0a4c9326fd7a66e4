#include <gtest/gtest.h>

#include "album/options_file.h"
#include "byte_builder.h"
#include "sample_records.h"
#include "support/temp_home.h"

namespace brindle {
namespace {

using test::Bytes;

TEST(OptionsCodec, DefaultsAreStoredInThisOrder) {
    std::string bytes;
    ASSERT_TRUE(encodeOptions(defaultOptions(), bytes).ok());
    Bytes b;
    b.i32(0).zeros(8).i32(200).i32(600).str("").str("");
    b.i16(0).u16(0xFFFF).i16(0).i16(0).i16(0).i16(0).i16(0).i16(0);
    b.dyn(20);
    for (int i = 0; i <= 20; ++i) b.i16(0);
    b.unallocated();
    b.i32(0).i32(0).i32(4).i32(0).i32(0).i32(0).i32(0);
    b.unallocated().unallocated();
    b.str("").str("").str("").str("normal").str("").str("").str("deutsch");
    b.unallocated().unallocated();
    b.font(0, "", 0);
    b.i16(0).i16(0);
    EXPECT_EQ(bytes, b.bytes());
}

TEST(OptionsCodec, EveryFieldSurvivesARoundTrip) {
    OptionsRecord o = test::filledOptions();
    std::string bytes;
    ASSERT_TRUE(encodeOptions(o, bytes).ok());
    OptionsRecord read;
    ASSERT_TRUE(decodeOptions(bytes, read).ok());
    EXPECT_TRUE(read == o);
    std::string again;
    ASSERT_TRUE(encodeOptions(read, again).ok());
    EXPECT_EQ(again, bytes);
    for (std::size_t n = 0; n < bytes.size(); ++n) {
        OptionsRecord cut;
        ASSERT_FALSE(decodeOptions(std::string_view(bytes).substr(0, n), cut).ok()) << n;
    }
}

class OptionsFileTest : public test::TempHomeTest {};

TEST_F(OptionsFileTest, MissingOrBrokenFileGivesTheStartDefaults) {
    OptionsRecord o = loadOptions(home());
    EXPECT_EQ(o.language, "deutsch");
    EXPECT_EQ(o.explorerLayout, 4);
    EXPECT_EQ(o.startFlagA, kTrue);
    EXPECT_EQ(o.explorerColumns.upper(), 20);
    EXPECT_EQ(o.scrollSmallStep, 200);

    writeBytes("optionen", "\x01\x02");
    EXPECT_TRUE(loadOptions(home()) == o);

    // Zero scroll steps and a missing column array are filled in.
    OptionsRecord stored = test::filledOptions();
    stored.scrollSmallStep = 0;
    stored.explorerColumns.release();
    ASSERT_TRUE(writeOptionsFile(path("optionen"), stored).ok());
    OptionsRecord loaded = loadOptions(home());
    EXPECT_EQ(loaded.scrollSmallStep, 200);
    EXPECT_EQ(loaded.scrollLargeStep, 600);
    EXPECT_EQ(loaded.explorerColumns.upper(), 20);
    EXPECT_EQ(loaded.language, "englisch");
}

}  // namespace
}  // namespace brindle
