// Scanning through the real SANE library with its own "test" backend,
// enabled in a configuration folder inside the test's home.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "image/dib_section.h"
#include "image/picture_io.h"
#include "media/scan_import.h"
#include "support/temp_home.h"

namespace brindle::media {
namespace {

// SANE reads SANE_CONFIG_DIR once per process, so the variable names one
// link for the whole process and each test points it at its own home.
std::filesystem::path configLink() {
    static const std::filesystem::path link = [] {
        const auto p = std::filesystem::temp_directory_path() /
                       ("brindlesee-sane-" + std::to_string(static_cast<long>(getpid())));
        setenv("SANE_CONFIG_DIR", p.c_str(), 1);
        return p;
    }();
    return link;
}

class ScanImportTest : public test::TempHomeTest {
protected:
    // Enables the backends in `dll` with the test backend set up by `testConf`.
    void configure(const std::string& dll, const std::string& testConf) {
        writeBytes("sane/dll.conf", dll);
        writeBytes("sane/test.conf", testConf);
        std::filesystem::remove(configLink());
        std::filesystem::create_directory_symlink(path("sane"), configLink());
    }
    void TearDown() override {
        std::filesystem::remove(configLink());
        TempHomeTest::TearDown();
    }
};

// Every pixel of `picture` equals `value` in all three channels.
::testing::AssertionResult allPixels(const Picture& picture, int value) {
    const cDIBSection* dib = picture.Handle();
    for (int row = 0; row < dib->Height(); ++row)
        for (int i = 0; i < dib->Width() * 3; ++i)
            if (dib->rowBits(row)[i] != value)
                return ::testing::AssertionFailure() << "byte " << i << " of buffer row " << row << " is "
                                                     << int(dib->rowBits(row)[i]) << ", expected " << value;
    return ::testing::AssertionSuccess();
}

TEST_F(ScanImportTest, ListsTheTestBackendsSources) {
    configure("test\n", "number_of_devices 2\n");
    const ScanSourceList list = listScanSources(Language::English);
    EXPECT_EQ(list.error, "");
    ASSERT_EQ(list.sources.size(), 2u);
    EXPECT_EQ(list.sources[0].name, "test:0");
    EXPECT_EQ(list.sources[1].name, "test:1");
    EXPECT_EQ(list.sources[0].vendor, "Noname");
}

TEST_F(ScanImportTest, GrayScanIsSavedAtItsSize) {
    // 80 x 100 mm at 50 dpi: 157 x 196 pixels.
    configure("test\n", "mode Gray\nresolution 50\ntest-picture \"Solid white\"\n");
    std::vector<int> seen;
    ScanRequest request;
    request.device = "test:0";
    request.progress = [&](int percent) {
        seen.push_back(percent);
        return true;
    };
    const ScanResult result = scanToFile(request, path("scan.jpg"), Language::English);
    ASSERT_TRUE(result) << result.error;
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.picture.Width(), 157);
    EXPECT_EQ(result.picture.Height(), 196);
    EXPECT_TRUE(allPixels(result.picture, 255));
    ASSERT_FALSE(seen.empty());
    EXPECT_EQ(seen.back(), 100);
    for (std::size_t i = 1; i < seen.size(); ++i) EXPECT_LE(seen[i - 1], seen[i]);

    ASSERT_EQ(readBytes("scan.jpg").substr(0, 2), "\xFF\xD8");
    const PictureFile loaded = LoadPictureFile(path("scan.jpg"));
    ASSERT_TRUE(loaded.picture);
    EXPECT_EQ(loaded.picture.Width(), 157);
    EXPECT_EQ(loaded.picture.Height(), 196);
}

TEST_F(ScanImportTest, ColourScansInOneAndThreePassesAtAChosenResolution) {
    for (const bool threePass : {false, true}) {
        SCOPED_TRACE(threePass ? "three-pass" : "one pass");
        configure("test\n", std::string("mode Color\nresolution 50\ntest-picture \"Solid black\"\n") +
                                (threePass ? "three-pass true\n" : ""));
        ScanRequest request;  // the first source
        request.resolution = 100;
        const ScanResult result = acquireScan(request, Language::English);
        ASSERT_TRUE(result) << result.error;
        EXPECT_EQ(result.picture.Width(), 314);
        EXPECT_EQ(result.picture.Height(), 393);
        EXPECT_TRUE(allPixels(result.picture, 0));
    }
}

TEST_F(ScanImportTest, WithoutAScannerTheMessageComesAndNoFile) {
    configure("", "");
    ScanResult result = scanToFile({}, path("none.jpg"), Language::English);
    EXPECT_FALSE(result);
    EXPECT_EQ(result.error, "No scanner was found.");
    EXPECT_FALSE(std::filesystem::exists(path("none.jpg")));
    result = acquireScan({}, Language::German);
    EXPECT_EQ(result.error, "Es wurde kein Scanner gefunden.");
    EXPECT_TRUE(listScanSources(Language::English).sources.empty());

    configure("test\n", "");
    ScanRequest request;
    request.device = "test:9";
    result = acquireScan(request, Language::English);
    EXPECT_FALSE(result);
    EXPECT_EQ(result.error.rfind("The scanner \"test:9\" cannot be opened: ", 0), 0u) << result.error;
}

TEST_F(ScanImportTest, CancelAndLimitsStopTheScanWithoutAFile) {
    configure("test\n", "mode Gray\nresolution 50\n");
    ScanRequest request;
    request.progress = [](int) { return false; };
    ScanResult result = scanToFile(request, path("cancelled.jpg"), Language::English);
    EXPECT_TRUE(result.cancelled);
    EXPECT_EQ(result.error, "The scan was cancelled.");
    EXPECT_FALSE(std::filesystem::exists(path("cancelled.jpg")));

    ScanRequest small;
    small.limits.maxPixels = 10'000;
    result = scanToFile(small, path("large.jpg"), Language::English);
    EXPECT_FALSE(result.cancelled);
    EXPECT_EQ(result.error, "The scanner's picture is too large (157 x 196 pixels).");
    EXPECT_FALSE(std::filesystem::exists(path("large.jpg")));

    // The source is free again after both: the next scan works.
    result = acquireScan({}, Language::English);
    EXPECT_TRUE(result) << result.error;
}

}  // namespace
}  // namespace brindle::media
