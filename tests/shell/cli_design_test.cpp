// brindlesee-cli design: a design list over pictures, run as a user would.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>

#include "image/image_compare.h"
#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "studio/design_chain.h"
#include "support/temp_home.h"

namespace brindle::test {
namespace {

namespace fs = std::filesystem;

class CliDesign : public TempHomeTest {
  protected:
    struct Run {
        int status = -1;
        std::string out, err;
    };
    // `prefix` runs in the shell first (limits, traps).
    Run cli(const std::string& args, const std::string& prefix = "") {
        const std::string command = prefix + std::string(BRINDLESEE_CLI) + " design " + args +
                                    " >'" + path("out.txt") + "' 2>'" + path("err.txt") + "'";
        Run r;
        const int raw = std::system(command.c_str());
        r.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
        r.out = readBytes("out.txt");
        r.err = readBytes("err.txt");
        return r;
    }
    std::string q(const std::string& name) { return "'" + path(name) + "'"; }
    void list(const std::string& text) { writeBytes("design.txt", text); }
    std::string jpeg(const std::string& name, const cDIBSection& dib) {
        EXPECT_TRUE(SaveJPG(dib, path(name), 90));
        return readBytes(name);
    }
    // The chain in batch mode on the decoded file.
    cDIBSection designed(const std::string& name, const std::vector<std::string>& steps) {
        cDIBSection dib;
        EXPECT_TRUE(LoadJPG(dib, path(name)));
        studio::StepEnv env;
        env.mode = studio::ChainMode::Batch;
        studio::applyChain(dib, steps, env);
        return dib;
    }
    cDIBSection loadFile(const std::string& name) {
        PictureFile f = LoadPictureFile(path(name));
        EXPECT_TRUE(f.picture) << name;
        return f.picture ? *f.picture.Handle() : cDIBSection{};
    }
};

TEST_F(CliDesign, WritesIntoTheFolderAndPrintsTheWrittenPaths) {
    jpeg("a.jpg", smoothPicture(80, 60));
    jpeg("b.jpg", smoothPicture(60, 80));
    list("Kontrast(20)\r\nEmboss\r\nGröße(0,0,50,50,1)\r\n");
    const std::vector<std::string> steps = {"Kontrast(20)", "Emboss", "Größe(0,0,50,50,1)"};
    const Run r = cli(q("design.txt") + " " + q("a.jpg") + " " + q("b.jpg") + " --out " +
                      q("out") + " --append _d --type png --threads 2");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, path("out/a_d.png") + "\n" + path("out/b_d.png") + "\n");
    const std::string a = path("a.jpg"), b = path("b.jpg");
    EXPECT_EQ(r.err, a + "\n" + a + ": Kontrast\n" + a + ": Emboss\n" + a + ": Größe\n" + b + "\n" +
                         b + ": Kontrast\n" + b + ": Emboss\n" + b + ": Größe\n");
    EXPECT_TRUE(sameImage(designed("a.jpg", steps), loadFile("out/a_d.png")));
    EXPECT_TRUE(sameImage(designed("b.jpg", steps), loadFile("out/b_d.png")));
    // A second run finds the names taken and numbers its own.
    const Run again = cli(q("design.txt") + " " + q("a.jpg") + " --out " + q("out/") +
                          " --append _d --type png");
    ASSERT_EQ(again.status, 0) << again.err;
    EXPECT_EQ(again.out, path("out/a_d1.png") + "\n");
}

TEST_F(CliDesign, WithoutAFolderTheOriginalsAreOverwritten) {
    jpeg("a.jpg", smoothPicture(80, 60));
    list("Kontrast(20)\nNegativ\n");
    const cDIBSection expected = designed("a.jpg", {"Kontrast(20)", "Negativ"});
    const Run r = cli(q("design.txt") + " " + q("a.jpg") + " --quality 80");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, path("a.jpg") + "\n");
    std::string bytes;
    ASSERT_TRUE(encodeJpeg(expected, 80, bytes));
    EXPECT_TRUE(readBytes("a.jpg") == bytes);
    EXPECT_FALSE(fs::exists(path("a.jpgBrind.Bak")));
}

TEST_F(CliDesign, BadInputStopsBeforeAnyPictureIsTouched) {
    const std::string original = jpeg("a.jpg", smoothPicture(40, 30));
    struct Case {
        std::string listText, args, message;
    };
    const std::vector<Case> cases = {
        {"Kontrastt(20)\n", q("design.txt") + " " + q("a.jpg"),
         "line 1 of " + path("design.txt") + " is no step the design batch can run: Kontrastt(20)"},
        {"\r\n\r\n", q("design.txt") + " " + q("a.jpg"), "the design list has no steps: " + path("design.txt")},
        {std::string("Kontrast(20)\0\n", 14), q("design.txt") + " " + q("a.jpg"),
         "cannot read the design list " + path("design.txt") +
             ": the file holds NUL characters and is not a text file"},
        {"Kontrast(20)\n", q("design.txt") + " " + q("fehlt.jpg"), "file not found: " + path("fehlt.jpg")},
        {"Kontrast(20)\n", q("design.txt") + " " + q("a.jpg") + " --type gif", "type must be jpg, png, bmp or tif: gif"},
        {"Kontrast(20)\n", q("design.txt") + " " + q("a.jpg") + " --quality 101",
         "quality must be a number from 0 to 100: 101"},
        {"Kontrast(20)\n", q("design.txt") + " " + q("a.jpg") + " --min-size 40", "min-size must be WIDTHxHEIGHT, both 0 or more: 40"},
        {"Kontrast(20)\n", q("design.txt"),
         "usage: brindlesee-cli design LIST PICTURE... [--out DIR] [--append TEXT] [--type jpg|png|bmp|tif] "
         "[--min-size WxH] [--quality Q] [--threads N] [--english|--german]"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.message);
        list(c.listText);
        const Run r = cli(c.args);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.err, "brindlesee-cli: " + c.message + "\n");
        EXPECT_EQ(r.out, "");
        EXPECT_TRUE(readBytes("a.jpg") == original);
    }
    EXPECT_EQ(cli(q("nolist.txt") + " " + q("a.jpg")).status, 1);
}

TEST_F(CliDesign, AFailedWriteEndsWithTheMessageAndTheOriginalIntact) {
    const std::string original = jpeg("a.jpg", noisePicture(96, 64, 5));
    ASSERT_GT(original.size(), 2048u);
    jpeg("b.jpg", smoothPicture(30, 20));
    list("Negativ\n");
    // A copy of an earlier run in the way of the first picture; the second goes on.
    fs::create_directories(path("a.jpgBrind.Bak/inside"));
    Run r = cli(q("design.txt") + " " + q("a.jpg") + " " + q("b.jpg") + " --german");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, path("b.jpg") + "\n");
    EXPECT_EQ(r.err, path("a.jpg") + "\n" + path("a.jpg") + ": Negativ\nbrindlesee-cli: Fehler beim überschreiben der Datei: " + path("a.jpg") +
                         " in " + path("a.jpg") + "Brind.Bak\n" + path("b.jpg") + "\n" + path("b.jpg") +
                         ": Negativ\n");
    EXPECT_TRUE(readBytes("a.jpg") == original);
    fs::remove_all(path("a.jpgBrind.Bak"));

    // A file size limit lets the original be moved aside but not the new file be written.
    r = cli(q("design.txt") + " " + q("a.jpg"), "trap '' XFSZ; ulimit -f 2; ");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err, path("a.jpg") + "\n" + path("a.jpg") +
                         ": Negativ\nbrindlesee-cli: Error while writing the file: " + path("a.jpg") + "\n");
    EXPECT_TRUE(readBytes("a.jpg") == original);
    EXPECT_FALSE(fs::exists(path("a.jpgBrind.Bak")));
}

}  // namespace
}  // namespace brindle::test
