// brindlesee-cli scan, run from a shell against SANE's test backend.
#include <gtest/gtest.h>

#include <filesystem>

#include "image/picture_io.h"
#include "shell/cli_run.h"
#include "support/temp_home.h"

namespace brindle {
namespace {

class CliScan : public test::TempHomeTest {
protected:
    // The shell prefix that gives the program a SANE with only `dll`'s backends.
    std::string sane(const std::string& dll, const std::string& testConf) {
        writeBytes("sane/dll.conf", dll);
        writeBytes("sane/test.conf", testConf);
        return "SANE_CONFIG_DIR='" + path("sane") + "' timeout 60 ";
    }
    std::string lastLine(const std::string& file) const {
        std::string text = readBytes(file);
        while (!text.empty() && text.back() == '\n') text.pop_back();
        return text.substr(text.rfind('\n') == std::string::npos ? 0 : text.rfind('\n') + 1);
    }
};

TEST_F(CliScan, TheTestSourceGivesAPictureOfItsSize) {
    const std::string env = sane("test\n", "mode Color\nresolution 50\n");
    test::CliRun r = test::runCli("scan -o '" + path("scan.jpg") + "' --device test:1", path("err.txt"), env);
    ASSERT_EQ(r.status, 0) << readBytes("err.txt");
    EXPECT_TRUE(r.out.empty());
    const std::string err = readBytes("err.txt");
    EXPECT_NE(err.find("100 %\n"), std::string::npos) << err;
    EXPECT_EQ(lastLine("err.txt"), "wrote " + path("scan.jpg") + " (157 x 196)");
    const PictureFile jpeg = LoadPictureFile(path("scan.jpg"));
    ASSERT_TRUE(jpeg.picture);
    EXPECT_EQ(jpeg.picture.Width(), 157);
    EXPECT_EQ(jpeg.picture.Height(), 196);

    r = test::runCli("scan --resolution 100 -o '" + path("scan.png") + "'", path("err.txt"), env);
    ASSERT_EQ(r.status, 0) << readBytes("err.txt");
    const PictureFile png = LoadPictureFile(path("scan.png"));
    ASSERT_TRUE(png.picture);
    EXPECT_EQ(png.picture.Width(), 314);
    EXPECT_EQ(png.picture.Height(), 393);

    r = test::runCli("scan --list", path("err.txt"), env);
    ASSERT_EQ(r.status, 0) << readBytes("err.txt");
    EXPECT_EQ(r.out,
              "test:0\tNoname frontend-tester (virtual device)\n"
              "test:1\tNoname frontend-tester (virtual device)\n");
}

TEST_F(CliScan, NoScannerAndBadArgumentsExitWithTheirMessage) {
    const std::string none = sane("", "");
    test::CliRun r = test::runCli("scan -o '" + path("none.jpg") + "'", path("err.txt"), none);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(readBytes("err.txt"), "brindlesee-cli: No scanner was found.\n");
    EXPECT_FALSE(std::filesystem::exists(path("none.jpg")));
    r = test::runCli("scan --list", path("err.txt"), none);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(readBytes("err.txt"), "brindlesee-cli: No scanner was found.\n");

    const std::string env = sane("test\n", "");
    struct Case {
        const char* args;
        const char* message;
    };
    const Case cases[] = {
        {"scan", "usage: brindlesee-cli scan -o OUT.jpg [--device NAME] [--resolution DPI] | scan --list"},
        {"scan -o x.gif", "the output must end in .jpg, .bmp, .png or .tif: x.gif"},
        {"scan -o x.jpg --resolution 0", "resolution must be a number of dots per inch from 1 to 19200: 0"},
        {"scan -o x.jpg --fast", "unknown option: --fast"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.args);
        r = test::runCli(c.args, path("err.txt"), env);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(readBytes("err.txt"), std::string("brindlesee-cli: ") + c.message + "\n");
    }
}

}  // namespace
}  // namespace brindle
