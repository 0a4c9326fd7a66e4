#include "panorama/pano_project.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/temp_home.h"

namespace {

using brindle::panorama::decodePanoProject;
using brindle::panorama::encodePanoProject;
using brindle::panorama::PanoBild;
using brindle::panorama::panoProjectPath;
using brindle::panorama::readPanoProject;
using brindle::panorama::writePanoProject;

std::string bytes(std::initializer_list<int> values) {
    std::string s;
    for (int v : values) s += static_cast<char>(v);
    return s;
}

std::vector<PanoBild> twoRecords() {
    PanoBild a;
    a.gematcht = 65535;
    a.reserve = {1, 0x0302};
    a.xVersatz = 612;
    a.yVersatz = -7;
    a.yKorrektur = 3;
    a.yMittel = -1;
    a.arbeit = {0x01020304, -2, 0, 99};  // the fourth is not kept
    a.datei = "/f/Grüße.jpg";
    PanoBild b;
    b.datei = "/f/\xE2\x82\xAC\xE6\xB5\xB7.jpg";  // euro sign fits Windows-1252, the other does not
    return {a, b};
}

std::string twoRecordsBytes() {
    std::string s;
    s += bytes({0xFF, 0xFF, 0x01, 0x00, 0x02, 0x03});
    s += bytes({0x64, 0x02, 0, 0});        // 612
    s += bytes({0xF9, 0xFF, 0xFF, 0xFF});  // -7
    s += bytes({0x03, 0, 0, 0});
    s += bytes({0xFF, 0xFF, 0xFF, 0xFF});  // -1
    s += bytes({0x04, 0x03, 0x02, 0x01});
    s += bytes({0xFE, 0xFF, 0xFF, 0xFF});  // -2
    s += bytes({0, 0, 0, 0});
    s += bytes({12, 0}) + "/f/Gr" + bytes({0xFC, 0xDF}) + "e.jpg";
    s += std::string(6 + 28, '\0');
    s += bytes({13, 0}) + "/f/\xE2\x82\xAC\xE6\xB5\xB7.jpg";  // whole string as UTF-8
    return s;
}

TEST(PanoProject, RecordsAreWrittenByteForByte) {
    std::string out, error;
    ASSERT_TRUE(encodePanoProject(twoRecords(), out, error)) << error;
    EXPECT_EQ(out, twoRecordsBytes());

    std::vector<PanoBild> back;
    ASSERT_TRUE(decodePanoProject(out, back, error)) << error;
    std::vector<PanoBild> expected = twoRecords();
    expected[0].arbeit[3] = 0;
    EXPECT_EQ(back, expected);

    ASSERT_TRUE(encodePanoProject({}, out, error));
    EXPECT_EQ(out, "");
    ASSERT_TRUE(decodePanoProject("", back, error));
    EXPECT_TRUE(back.empty());
}

TEST(PanoProject, BadFilesAreReadErrorsAndLeaveTheRecords) {
    const std::string good = twoRecordsBytes();
    const std::vector<PanoBild> before = twoRecords();
    struct Case {
        const char* name;
        std::string data;
    };
    const Case cases[] = {
        {"cut-in-fixed-part", good.substr(0, 20)},
        {"cut-before-length", good.substr(0, 35)},
        {"cut-inside-path", good.substr(0, 6 + 28 + 2 + 5)},
        {"second-record-cut", good.substr(0, good.size() - 1)},
        {"length-beyond-file", std::string(34, '\0') + bytes({0xFF, 0xFF}) + "abc"},
        {"one-stray-byte", good + "x"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::vector<PanoBild> records = before;
        std::string error;
        EXPECT_FALSE(decodePanoProject(c.data, records, error));
        EXPECT_FALSE(error.empty());
        EXPECT_EQ(records, before);
    }

    PanoBild tooLong;
    tooLong.datei = std::string(70000, 'a');
    std::string out, error;
    EXPECT_FALSE(encodePanoProject({tooLong}, out, error));
    EXPECT_FALSE(error.empty());
}

class PanoProjectFile : public brindle::test::TempHomeTest {};

TEST_F(PanoProjectFile, WritesTemp1InPanoTempAndReadsItBack) {
    EXPECT_EQ(panoProjectPath(home()), home() + "PanoTemp/temp1.bsp");
    ASSERT_TRUE(writePanoProject(home(), twoRecords()).ok);
    EXPECT_EQ(readBytes("PanoTemp/temp1.bsp"), twoRecordsBytes());

    // A shorter set replaces the file whole: nothing of the longer one stays.
    std::vector<PanoBild> one = {twoRecords()[1]};
    ASSERT_TRUE(writePanoProject(home(), one).ok);
    std::vector<PanoBild> back;
    const brindle::IoResult read = readPanoProject(home(), back);
    ASSERT_TRUE(read.ok) << read.error;
    EXPECT_EQ(back, one);
    for (const auto& entry : std::filesystem::directory_iterator(home() + "PanoTemp"))
        EXPECT_EQ(entry.path().filename(), "temp1.bsp");
}

TEST_F(PanoProjectFile, MissingOrBlockedFilesFail) {
    std::vector<PanoBild> back;
    EXPECT_FALSE(readPanoProject(home(), back).ok);
    // A plain file where the folder should be stops the write.
    touch("PanoTemp");
    const brindle::IoResult written = writePanoProject(home(), twoRecords());
    EXPECT_FALSE(written.ok);
    EXPECT_FALSE(written.error.empty());
}

}  // namespace
