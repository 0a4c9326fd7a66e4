#include "panorama/pano_import.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "panorama/pair_match.h"
#include "support/temp_home.h"
#include "synthetic_pictures.h"

namespace {

using brindle::cDIBSection;
using brindle::panorama::balanceYOffsets;
using brindle::panorama::ImportCallbacks;
using brindle::panorama::importPictures;
using brindle::panorama::ImportResult;
using brindle::panorama::PanoBild;

// Left half one colour, right half another, so the reduced picture can be
// checked by hand.
cDIBSection twoColours(int w, int h) {
    cDIBSection dib = brindle::test::filled(w, h, 30, 90, 200);
    for (int y = 0; y < h; ++y)
        for (int x = w / 2; x < w; ++x) brindle::test::setPixel(dib, x, y, 220, 160, 20);
    return dib;
}

class PanoImport : public brindle::test::TempHomeTest {
  protected:
    std::string jpeg(const std::string& name, const cDIBSection& dib) {
        std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
        EXPECT_TRUE(brindle::SaveJPG(dib, path(name), 95));
        return path(name);
    }
    ImportResult run(const std::vector<std::string>& paths, int targetHeight = 120) {
        ImportCallbacks cb;
        cb.status = [this](const std::string& s) { statuses.push_back(s); };
        cb.progress = [this](int p) { progress.push_back(p); };
        cb.cancelled = [this] {
            return cancelAt >= 0 && static_cast<int>(statuses.size()) >= cancelAt;
        };
        brindle::ImageEnv env;
        env.language = brindle::Language::German;
        env.log = [this](const std::string& line) { log.push_back(line); };
        return importPictures(paths, targetHeight, home(), env, cb);
    }
    static void expectColour(const cDIBSection& dib, int x, int y, int b, int g, int r) {
        const std::uint8_t* p = brindle::test::pixelBytes(dib, x, y);
        EXPECT_NEAR(p[0], b, 3) << "at " << x << "," << y;
        EXPECT_NEAR(p[1], g, 3) << "at " << x << "," << y;
        EXPECT_NEAR(p[2], r, 3) << "at " << x << "," << y;
    }

    std::vector<std::string> statuses, log;
    std::vector<int> progress;
    int cancelAt = -1;
};

TEST_F(PanoImport, ReducesEachPictureToTheTargetHeightAsBSPano) {
    const std::string a = jpeg("fotos/a.jpg", twoColours(300, 200));
    const std::string b = jpeg("fotos/b.JPEG", twoColours(300, 200));
    const std::string c = jpeg("fotos/c.jpg", twoColours(300, 200));
    const ImportResult result = run({a, b, c});
    ASSERT_TRUE(result.ok) << result.message;
    EXPECT_EQ(statuses,
              (std::vector<std::string>{"Starte Import:", "Import Bilder", "Lade:a.jpg",
                                        "Skalieren:a.jpg", "Speichern:a.jpg", "Lade:b.JPEG",
                                        "Skalieren:b.JPEG", "Speichern:b.JPEG", "Lade:c.jpg",
                                        "Skalieren:c.jpg", "Speichern:c.jpg", "Fertig"}));
    // 950 / 3 / 3 - 1 per step.
    EXPECT_EQ(progress, (std::vector<int>{0, 105, 209, 314, 418, 523, 627, 732, 836, 941, 1000}));
    EXPECT_EQ(result.width, 300);
    EXPECT_EQ(result.height, 200);
    ASSERT_EQ(result.records.size(), 3u);
    EXPECT_EQ(result.records[1].datei, b);
    EXPECT_EQ(result.records[1].gematcht, 0);
    EXPECT_EQ(result.reduced, (std::vector<std::string>{home() + "PanoTemp/BSPanoa.jpg",
                                                        home() + "PanoTemp/BSPanob.jpg",
                                                        home() + "PanoTemp/BSPanoc.jpg"}));
    for (const std::string& reducedPath : result.reduced) {
        cDIBSection reduced;
        ASSERT_TRUE(brindle::LoadJPG(reduced, reducedPath));
        EXPECT_EQ(reduced.Width(), 180);
        EXPECT_EQ(reduced.Height(), 120);
        expectColour(reduced, 40, 60, 30, 90, 200);
        expectColour(reduced, 140, 60, 220, 160, 20);
    }
    EXPECT_FALSE(std::filesystem::exists(home() + "PanoTemp/BScopya.jpg"));
    EXPECT_TRUE(log.empty());
}

TEST_F(PanoImport, APictureOfAnotherSizeStopsTheRunWithTheMessage) {
    const std::string a = jpeg("a.jpg", twoColours(300, 200));
    const std::string b = jpeg("b.jpg", twoColours(300, 201));
    const std::string c = jpeg("c.jpg", twoColours(300, 200));
    const ImportResult result = run({a, b, c});
    EXPECT_FALSE(result.ok);
    EXPECT_FALSE(result.cancelled);
    EXPECT_EQ(result.message,
              "Brindlesee panorama check that not all images have the same size. Rezise the images "
              "or use other "
              "images with the same size.");
    EXPECT_EQ(brindle::panorama::sameSizeMessage(brindle::Language::English), result.message);
    EXPECT_EQ(statuses.back(), "Lade:b.jpg");
    EXPECT_TRUE(std::filesystem::exists(home() + "PanoTemp/BSPanoa.jpg"));
    EXPECT_FALSE(std::filesystem::exists(home() + "PanoTemp/BSPanob.jpg"));
    EXPECT_FALSE(std::filesystem::exists(home() + "PanoTemp/BSPanoc.jpg"));
}

TEST_F(PanoImport, APngSourceIsKeptAsABScopyJpegFirst) {
    const cDIBSection source = twoColours(240, 160);
    ASSERT_TRUE(brindle::SaveDIBFile(source, path("Strand.png"), 0));
    const ImportResult result = run({path("Strand.png")}, 80);
    ASSERT_TRUE(result.ok) << result.message;
    cDIBSection copy, reduced;
    ASSERT_TRUE(brindle::LoadJPG(copy, home() + "PanoTemp/BScopyStrand.jpg"));
    EXPECT_EQ(copy.Width(), 240);
    EXPECT_EQ(copy.Height(), 160);
    expectColour(copy, 10, 10, 30, 90, 200);
    ASSERT_TRUE(brindle::LoadJPG(reduced, home() + "PanoTemp/BSPanoStrand.jpg"));
    EXPECT_EQ(reduced.Width(), 120);
    EXPECT_EQ(reduced.Height(), 80);
    EXPECT_EQ(result.records[0].datei, path("Strand.png"));
}

TEST_F(PanoImport, AWorkingCopyThatCannotBeWrittenStopsTheRun) {
    ASSERT_TRUE(brindle::SaveDIBFile(twoColours(40, 30), path("Strand.png"), 0));
    const std::string a = jpeg("a.jpg", twoColours(40, 30));
    // Folders standing where the working copies go.
    std::filesystem::create_directories(home() + "PanoTemp/BScopyStrand.jpg");
    ImportResult result = run({a, path("Strand.png")}, 20);
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.message,
              "Das Bild kann nicht gespeichert werden: " + home() + "PanoTemp/BScopyStrand.jpg");
    EXPECT_EQ(statuses.back(), "Lade:Strand.png");

    std::filesystem::remove(home() + "PanoTemp/BSPanoa.jpg");  // written by the first run
    std::filesystem::create_directories(home() + "PanoTemp/BSPanoa.jpg");
    statuses.clear();
    result = run({a});
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.message,
              "Das Bild kann nicht gespeichert werden: " + home() + "PanoTemp/BSPanoa.jpg");
    EXPECT_EQ(statuses.back(), "Speichern:a.jpg");
    EXPECT_TRUE(result.records.empty());
}

TEST_F(PanoImport, TwoSourcesOfOneFileNameAreRefusedBeforeAnythingIsWritten) {
    const std::string a = jpeg("tag1/DSC_0001.jpg", twoColours(40, 30));
    const std::string b = jpeg("tag2/DSC_0001.jpg", twoColours(40, 30));
    ImportResult result = run({a, b}, 20);
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.message,
              "Zwei Bilder haben denselben Dateinamen: DSC_0001.jpg. Bitte benennen Sie eines der "
              "Bilder um.");
    EXPECT_EQ(statuses, std::vector<std::string>{"Starte Import:"});
    EXPECT_FALSE(std::filesystem::exists(home() + "PanoTemp"));
    // The same file twice has one working copy and is taken.
    EXPECT_TRUE(run({a, a}, 20).ok);
}

TEST_F(PanoImport, UnreadablePicturesAreLeftOutWithALogLine) {
    writeBytes("kaputt.jpg", "no picture at all");
    const std::string a = jpeg("a.jpg", twoColours(100, 60));
    const ImportResult result = run({path("kaputt.jpg"), a, path("fehlt.tif")}, 30);
    ASSERT_TRUE(result.ok) << result.message;
    ASSERT_EQ(result.records.size(), 1u);
    EXPECT_EQ(result.records[0].datei, a);
    ASSERT_EQ(log.size(), 2u);
    const std::string prefix = "FrmBildviewer - erzeugeThumbNail --> Fehler beim laden: ";
    EXPECT_EQ(log[0].rfind(prefix + path("kaputt.jpg") + "  ", 0), 0u) << log[0];
    EXPECT_EQ(log[1], prefix + path("fehlt.tif") + "  Datei nicht vorhanden");
    EXPECT_FALSE(std::filesystem::exists(home() + "PanoTemp/BSPanokaputt.jpg"));
    EXPECT_EQ(statuses.back(), "Fertig");
}

TEST_F(PanoImport, CancelAndABlockedFolderStopTheRun) {
    const std::string a = jpeg("a.jpg", twoColours(100, 60));
    const std::string b = jpeg("b.jpg", twoColours(100, 60));
    cancelAt = 4;  // after "Skalieren:a.jpg" has been shown
    ImportResult result = run({a, b});
    EXPECT_FALSE(result.ok);
    EXPECT_TRUE(result.cancelled);
    EXPECT_TRUE(result.message.empty());
    EXPECT_EQ(statuses.back(), "Skalieren:a.jpg");
    EXPECT_FALSE(std::filesystem::exists(home() + "PanoTemp/BSPanoa.jpg"));

    std::filesystem::remove_all(home() + "PanoTemp");
    touch("PanoTemp");
    cancelAt = -1;
    statuses.clear();
    result = run({a, b});
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.message, "Der Ordner kann nicht angelegt werden: " + home() + "PanoTemp");
    EXPECT_EQ(statuses, std::vector<std::string>{"Starte Import:"});
}

TEST_F(PanoImport, PairsOfTheImportedRowAreMatchedOnTheReducedPictures) {
    const cDIBSection wide = brindle::test::landscape(560, 200, 11);
    const int xs[] = {0, 131, 272};  // inside the default band 120 .. 215
    const int ys[] = {30, 23, 35};   // steps of -7 and +12 rows
    std::vector<std::string> paths;
    for (int i = 0; i < 3; ++i) {
        paths.push_back(path("t" + std::to_string(i) + ".png"));
        ASSERT_TRUE(brindle::SaveDIBFile(brindle::test::cut(wide, xs[i], ys[i], 240, 150),
                                         paths.back(), 0));
    }
    ImportResult imported = run(paths, 150);
    ASSERT_TRUE(imported.ok) << imported.message;
    std::vector<PanoBild>& records = imported.records;
    std::vector<std::string> times;
    brindle::panorama::PairMatchOptions options;
    options.status = [&](const std::string& s) { times.push_back(s); };
    for (std::size_t i = 0; i < 2; ++i) {
        SCOPED_TRACE(i);
        const auto found = brindle::panorama::matchPair(home(), records, i, i + 1, options);
        ASSERT_TRUE(found.found) << found.problem;
        EXPECT_EQ(records[i].xVersatz, xs[i + 1] - xs[i]);
        EXPECT_EQ(records[i].yVersatz, ys[i + 1] - ys[i]);
        EXPECT_EQ(records[i].gematcht, 65535);
    }
    ASSERT_EQ(times.size(), 2u);
    EXPECT_EQ(times[0].rfind("Zeit: ", 0), 0u);

    // A stored match is not searched again: it needs no pictures.
    std::filesystem::remove_all(home() + "PanoTemp");
    const auto kept = brindle::panorama::matchPair(home(), records, 1, 2, options);
    EXPECT_TRUE(kept.found);
    EXPECT_EQ(kept.yVersatz, 12);
    const auto missing = brindle::panorama::matchPair(home(), records, 2, 0, options);
    EXPECT_FALSE(missing.found);
    EXPECT_EQ(missing.problem.rfind(home() + "PanoTemp/BSPanot2.jpg: ", 0), 0u) << missing.problem;
    EXPECT_EQ(records[2].gematcht, 0);
    EXPECT_EQ(times.size(), 2u);
}

TEST(PanoImportSize, PicturesAreMadeATimesOnePointTwoTheViewHeight) {
    EXPECT_EQ(brindle::panorama::importTargetHeight(500), 600);
    EXPECT_EQ(brindle::panorama::importTargetHeight(333), 400);  // 399.6
    EXPECT_EQ(brindle::panorama::importTargetHeight(0), 0);
}

TEST(BalanceYOffsets, TakesTheRoundedMeanOutOfThePredecessorsOffset) {
    auto balance = [](std::vector<int> offsets) {
        std::vector<PanoBild> records(offsets.size());
        for (std::size_t i = 0; i < offsets.size(); ++i) records[i].yVersatz = offsets[i];
        balanceYOffsets(records);
        std::vector<int> out;
        for (const PanoBild& r : records) {
            out.push_back(r.yMittel);
            out.push_back(r.yKorrektur);
        }
        return out;
    };
    // Total 13 over 5: mean 2.6 gives 3; picture 0 takes the last one's offset.
    EXPECT_EQ(balance({3, -7, 12, 0, 5}), (std::vector<int>{3, 2, 3, 0, 3, -10, 3, 9, 3, -3}));
    // Halves go to the even neighbour: 2.5 gives 2, -1.5 gives -2.
    EXPECT_EQ(balance({5, 0}), (std::vector<int>{2, -2, 2, 3}));
    EXPECT_EQ(balance({-3, 0}), (std::vector<int>{-2, 2, -2, -1}));
    EXPECT_EQ(balance({-4}), (std::vector<int>{-4, 0}));
    std::vector<PanoBild> none;
    balanceYOffsets(none);
    EXPECT_TRUE(none.empty());
}

}  // namespace
