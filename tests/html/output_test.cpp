// What a run leaves in its output folder: the mail archive, web pictures
// per preparation, and failed writes reported and counted.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "html/frameset.h"
#include "html/generation_run.h"
#include "html/web_picture.h"
#include "image/dib_section.h"
#include "image/picture_io.h"
#include "html_fixture.h"

namespace brindle::html {
namespace {

// The entry names of a ZIP archive, read from its central directory.
std::vector<std::string> zipEntryNames(const std::string& bytes) {
    auto u16 = [&](std::size_t at) {
        return static_cast<unsigned>(static_cast<unsigned char>(bytes[at])) |
               static_cast<unsigned>(static_cast<unsigned char>(bytes[at + 1])) << 8;
    };
    auto u32 = [&](std::size_t at) { return u16(at) | u16(at + 2) << 16; };
    const std::size_t end = bytes.rfind(std::string("PK\x05\x06", 4));
    if (end == std::string::npos) return {"(no archive)"};
    std::vector<std::string> names;
    std::size_t at = u32(end + 16);
    for (unsigned i = 0; i < u16(end + 10) && at + 46 <= bytes.size(); ++i) {
        const std::size_t nameLength = u16(at + 28);
        names.push_back(bytes.substr(at + 46, nameLength));
        at += 46 + nameLength + u16(at + 30) + u16(at + 32);
    }
    std::sort(names.begin(), names.end());
    return names;
}

class OutputTest : public HtmlTest {
protected:
    void installMenuFiles() {
        touch("Menü/mtmcode.js");
        for (const char* p : kMenuPictures) touch(std::string("Menü/menu-images/") + p);
    }
};

TEST_F(OutputTest, TheMailArchiveCarriesWhatThePagesLoadAndNothingFromOutside) {
    Session& s = freshAlbum(1);
    s.album().title = "a";
    installMenuFiles();
    touch("bslake.class");
    writeBytes("bseffects.js", "// effects");
    writeBytes("geheim.txt", "geheim");
    fs::create_symlink(path("geheim.txt"), path("out/verweis.gif"));
    PictureElement& lake = page(1).pictures.add();
    lake.path = path("see.gif");
    lake.width = lake.height = lake.pictureWidth = lake.pictureHeight = 10;
    lake.ext.extText[1] = "Lake,2,50,0,0,0";
    // A picture below the relative path is referenced where it lies, outside the output.
    s.album().relativePath = home();
    writeBytes("drueben/nah.gif", "gif");
    page(1).pictures.add().path = path("drueben/nah.gif");
    run->pictures.writeWebPicture = [&](const WebPicture& p, std::string&) {
        writeBytes(p.target.substr(home().size()), "web");
        return true;
    };
    run->mailMode = true;
    ASSERT_TRUE(generiereAlbum(*run));
    EXPECT_NE(readBytes("out/Seite1.htm").find("<p><img src=\"../drueben/nah.gif\""), std::string::npos);

    std::vector<std::string> list = mailFileList(*run);
    EXPECT_NE(std::find(list.begin(), list.end(), path("out/bseffects.js")), list.end());
    const std::vector<std::string> expected = {
        "BSThumbsee.gif", "Seite1.htm", "a.html", "bseffects.js", "bslake.class", "code.html",
        "menu-images/menu_bar.gif", "menu-images/menu_corner.gif", "menu-images/menu_corner_minus.gif",
        "menu-images/menu_corner_plus.gif", "menu-images/menu_folder_close.gif",
        "menu-images/menu_folder_open.gif", "menu-images/menu_link_default.gif",
        "menu-images/menu_new_root.gif", "menu-images/menu_tee.gif", "menu-images/menu_tee_minus.gif",
        "menu-images/menu_tee_plus.gif", "menu.html", "mtmcode.js"};
    EXPECT_EQ(zipEntryNames(readBytes("out/bsa.zip")), expected);

    // Handed paths from outside, the packer leaves them out as well.
    std::vector<std::string> hostile = {path("out/Seite1.htm"), path("out/../geheim.txt"),
                                        path("out/menu-images/../../geheim.txt"), path("out/verweis.gif"),
                                        path("geheim.txt")};
    ASSERT_TRUE(zipAlbum(*run, hostile, path("out/b.zip"), path("out/"), ""));
    EXPECT_EQ(zipEntryNames(readBytes("out/b.zip")), std::vector<std::string>{"Seite1.htm"});
}

TEST_F(OutputTest, EachPreparationOfOneSourceGetsItsOwnWebPicture) {
    Session& s = freshAlbum(1);
    s.album().htmlReduce = kTrue;
    writeBytes("bilder/See.jpg", "jpeg");
    std::vector<std::string> written;
    run->pictures.writeWebPicture = [&](const WebPicture& p, std::string&) {
        written.push_back(p.target + " " + std::to_string(p.width) + "x" + std::to_string(p.height) + " " +
                          p.frameSpec + "|" + p.animationSpec + "|" + std::to_string(p.rotation));
        return true;
    };
    const std::string html = path("out/seite1.htm");
    auto staged = [&](int w, int h, const std::string& frame = "", const std::string& anim = "", int turn = 0) {
        StageRequest r = stage(path("bilder/See.jpg"), html, true, w, h, 400, 300);
        r.frameSpec = frame;
        r.animationSpec = anim;
        r.rotation = turn;
        return stelleDateiBereit(*run, r);
    };
    EXPECT_EQ(staged(100, 75), "BSThumbsee.jpg");
    EXPECT_EQ(staged(100, 75), "BSThumbsee.jpg");  // equal: shared, written once
    EXPECT_EQ(staged(200, 150), "BSThumbsee_2.jpg");
    EXPECT_EQ(staged(100, 75, "5,0,0,255,None,1,"), "BSThumbsee_3.jpg");
    EXPECT_EQ(staged(100, 75, "", "Lake,2,50,0,0,0"), "BSThumbsee_4.jpg");
    EXPECT_EQ(staged(100, 75, "", "", 90), "BSThumbsee.png");
    EXPECT_EQ(staged(200, 150), "BSThumbsee_2.jpg");
    EXPECT_EQ(written, (std::vector<std::string>{
                           path("out/BSThumbsee.jpg") + " 100x75 ||0", path("out/BSThumbsee_2.jpg") + " 200x150 ||0",
                           path("out/BSThumbsee_3.jpg") + " 100x75 5,0,0,255,None,1,||0",
                           path("out/BSThumbsee_4.jpg") + " 100x75 |Lake,2,50,0,0,0|0",
                           path("out/BSThumbsee.png") + " 100x75 ||90"}));
    // Another folder's picture of the same name is another source.
    writeBytes("anders/see.jpg", "jpeg");
    StageRequest other = stage(path("anders/see.jpg"), html, true, 100, 75, 400, 300);
    EXPECT_EQ(stelleDateiBereit(*run, other), "BSThumbsee_5.jpg");
}

TEST_F(OutputTest, APictureShownAtItsOwnSizeIsRewrittenAndALargerOneCopied) {
    Session& s = freshAlbum(1);
    s.album().htmlReduce = kTrue;
    run->pictures = defaultPictureServices();
    cDIBSection dib;
    ASSERT_TRUE(dib.Create(100, 100));
    fs::create_directories(path("bilder"));
    ASSERT_TRUE(SaveDIBFile(dib, path("bilder/Eigen.jpg"), 95));
    const std::string source = readBytes("bilder/Eigen.jpg");
    const std::string html = path("out/seite1.htm");
    // 100 x 100 in a 100 x 100 box: the rewrite road.
    EXPECT_EQ(stelleDateiBereit(*run, stage(path("bilder/Eigen.jpg"), html, true, 100, 100, 100, 100)),
              "BSThumbeigen.jpg");
    EXPECT_TRUE(fs::exists(path("out/BSThumbeigen.jpg")));
    EXPECT_FALSE(fs::exists(path("out/eigen.jpg")));
    // One pixel wider than the picture: the copy road, byte for byte.
    EXPECT_EQ(stelleDateiBereit(*run, stage(path("bilder/Eigen.jpg"), html, true, 101, 100, 100, 100)), "eigen.jpg");
    EXPECT_EQ(readBytes("out/eigen.jpg"), source);
}

TEST_F(OutputTest, AFailedCopyOfTheMenuFilesIsReportedAndCounted) {
    Session& s = freshAlbum(1);
    s.album().title = "Reise";
    installMenuFiles();
    fs::remove(path("Menü/mtmcode.js"));
    fs::remove(path("Menü/menu-images/menu_tee.gif"));
    writeBytes("out/mtmcode.js", "alt");
    schreibeMenue(*run);
    EXPECT_EQ(run->failedWrites, 2);
    ASSERT_EQ(prompter.asked.size(), 2u);
    EXPECT_EQ(prompter.asked[0].rfind("message|Fehler|16|Fehler beim Kopieren der Datei: " + path("Menü/mtmcode.js") +
                                          "\r",
                                      0),
              0u)
        << prompter.asked[0];
    EXPECT_EQ(prompter.asked[1].rfind("message|Fehler|16|Fehler beim Kopieren der Datei: " +
                                          path("Menü/menu-images/menu_tee.gif") + "\r",
                                      0),
              0u)
        << prompter.asked[1];
    EXPECT_EQ(readBytes("out/mtmcode.js"), "alt");  // an old copy is not cut short
    EXPECT_TRUE(fs::exists(path("out/menu-images/menu_bar.gif")));
}

}  // namespace
}  // namespace brindle::html
