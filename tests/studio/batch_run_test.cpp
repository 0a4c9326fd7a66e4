#include "studio/batch_run.h"

#include <gtest/gtest.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <mutex>
#include <set>
#include <thread>

#include "batch_test_support.h"
#include "image/image_compare.h"
#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "studio/design_chain.h"
#include "support/temp_home.h"

namespace brindle::test {
namespace {

namespace fs = std::filesystem;
using studio::BatchOptions;
using studio::batchTargetPath;
using studio::PictureWork;
using studio::runPictureBatch;
using studio::SaveMode;

// Inverts the picture: one step named "Negativ".
const PictureWork kInvert = [](cDIBSection& dib, const std::function<void(const std::string&)>& step) {
    step("Negativ");
    dib.effectInvert();
};

// Two steps, the second halving the size, so the written size shows the work ran.
const PictureWork kContrastAndHalf = [](cDIBSection& dib,
                                        const std::function<void(const std::string&)>& step) {
    step("Kontrast");
    dib.effectKontrastBits(30);
    step("Größe");
    dib = dib.Resample(dib.Height() / 2, dib.Width() / 2);
};

// Equal files, or the sizes and the first differing offset.
::testing::AssertionResult sameBytes(const std::string& expected, const std::string& actual) {
    if (expected == actual) return ::testing::AssertionSuccess();
    std::size_t at = 0;
    while (at < expected.size() && at < actual.size() && expected[at] == actual[at]) ++at;
    return ::testing::AssertionFailure() << "expected " << expected.size() << " bytes, got "
                                         << actual.size() << ", first difference at " << at;
}

class BatchRunTest : public TempHomeTest {
  protected:
    // A photo-like JPEG (quality 90) at `name` under the home folder.
    std::string jpeg(const std::string& name, int width = 64, int height = 48) {
        fs::create_directories(fs::path(path(name)).parent_path());
        EXPECT_TRUE(SaveJPG(smoothPicture(width, height), path(name), 90));
        return path(name);
    }
    std::string picture(const std::string& name, const cDIBSection& dib) {
        fs::create_directories(fs::path(path(name)).parent_path());
        EXPECT_TRUE(SaveDIBFile(dib, path(name), 90));
        return path(name);
    }
    BatchOptions toDirectory(const std::string& dir, std::vector<std::string> pictures) {
        BatchOptions o;
        o.pictures = std::move(pictures);
        o.saveMode = SaveMode::OtherDirectory;
        o.targetDirectory = path(dir);
        fs::create_directories(o.targetDirectory);
        return o;
    }
    // The files of a folder, by name, with their bytes.
    std::map<std::string, std::string> filesIn(const std::string& dir) const {
        std::map<std::string, std::string> out;
        for (const auto& e : fs::directory_iterator(path(dir)))
            out[e.path().filename().string()] = readBytes(dir + "/" + e.path().filename().string());
        return out;
    }
    std::string encoded(const cDIBSection& dib, int quality = 90) {
        std::string bytes;
        EXPECT_TRUE(encodeJpeg(dib, quality, bytes));
        return bytes;
    }
    cDIBSection loaded(const std::string& file) {
        cDIBSection dib;
        EXPECT_TRUE(LoadJPG(dib, file));
        return dib;
    }
};

TEST_F(BatchRunTest, TargetNamesTakeDirectoryAppendedTextAndTheTypesExtension) {
    const std::string src = jpeg("photos/Strand.jpg");
    BatchOptions o;
    o.saveMode = SaveMode::OtherDirectory;
    o.appendText = "_bs";
    for (const std::string& dir : {path("out"), path("out/")}) {
        SCOPED_TRACE(dir);
        o.targetDirectory = dir;
        o.fileType = "normal";
        EXPECT_EQ(batchTargetPath(src, o), path("out/Strand_bs.jpg"));
        o.fileType = "*.png";
        EXPECT_EQ(batchTargetPath(src, o), path("out/Strand_bs.png"));
        o.fileType = "*.bmp";
        EXPECT_EQ(batchTargetPath(src, o), path("out/Strand_bs.bmp"));
        o.fileType = "*.tif";
        EXPECT_EQ(batchTargetPath(src, o), path("out/Strand_bs.tif"));
        o.fileType = "*.tiff";
        EXPECT_EQ(batchTargetPath(src, o), path("out/Strand_bs.tiff"));
        o.fileType = "*.JPEG";
        EXPECT_EQ(batchTargetPath(src, o), path("out/Strand_bs.jpg"));
    }
    // "normal" keeps the extension as written; a dot in a folder name is no extension.
    o.fileType = "normal";
    EXPECT_EQ(batchTargetPath(path("a.b/Bild.JPG"), o), path("out/Bild_bs.JPG"));
    o.fileType = "*.png";
    EXPECT_EQ(batchTargetPath(path("a.b/Bild"), o), path("out/Bild_bs.png"));
    // Overwriting: the source's own folder, whatever the target folder says.
    o.saveMode = SaveMode::OverwriteOriginals;
    EXPECT_EQ(batchTargetPath(src, o), path("photos/Strand_bs.png"));
}

TEST_F(BatchRunTest, ATakenNameGetsTheNextFreeNumberAndOnlyTheOriginalIsOverwritten) {
    const std::string src = jpeg("photos/Strand.jpg");
    BatchOptions o;
    o.saveMode = SaveMode::OtherDirectory;
    o.targetDirectory = path("out");
    touch("out/Strand.jpg");
    EXPECT_EQ(batchTargetPath(src, o), path("out/Strand1.jpg"));
    touch("out/Strand1.jpg");
    EXPECT_EQ(batchTargetPath(src, o), path("out/Strand2.jpg"));
    // A folder and a dangling link take a name too.
    fs::create_directories(path("out/Strand2.jpg"));
    ASSERT_EQ(::symlink(path("nowhere/x.jpg").c_str(), path("out/Strand3.jpg").c_str()), 0);
    EXPECT_EQ(batchTargetPath(src, o), path("out/Strand4.jpg"));
    o.appendText = "_k";
    touch("out/Strand_k.jpg");
    EXPECT_EQ(batchTargetPath(src, o), path("out/Strand_k1.jpg"));

    // Another folder that is the source's own: the original is not replaced.
    o.appendText.clear();
    o.targetDirectory = path("photos/");
    EXPECT_EQ(batchTargetPath(src, o), path("photos/Strand1.jpg"));
    // Overwriting originals: the original itself is the target ...
    o.saveMode = SaveMode::OverwriteOriginals;
    EXPECT_EQ(batchTargetPath(src, o), src);
    // ... but never another file that stands where a changed name points.
    touch("photos/Strand.png");
    o.fileType = "*.png";
    EXPECT_EQ(batchTargetPath(src, o), path("photos/Strand1.png"));
}

TEST_F(BatchRunTest, OverwritingGoesThroughTheSafeCopyAndKeepsTheFileTime) {
    const std::string src = jpeg("photos/Strand.jpg");
    const struct timespec old[2] = {{978307200, 0}, {978307200, 0}};  // 2001-01-01
    ASSERT_EQ(::utimensat(AT_FDCWD, src.c_str(), old, 0), 0);
    cDIBSection expected = loaded(src);
    expected.effectInvert();

    BatchOptions o;
    o.pictures = {src};
    o.saveMode = SaveMode::OverwriteOriginals;
    BatchRecord rec;
    rec.result = runPictureBatch(o, kInvert, rec.prompter, Language::English, recordingCallbacks(rec));

    EXPECT_EQ(rec.result.treated, 1);
    EXPECT_EQ(rec.result.written, std::vector<std::string>{src});
    EXPECT_TRUE(rec.prompter.asked.empty());
    EXPECT_EQ(rec.events, (std::vector<std::string>{"progress 0/1", "status " + src,
                                                    "status " + src + ": Negativ",
                                                    "preview 64x48", "progress 1/1"}));
    EXPECT_TRUE(sameBytes(encoded(expected), readBytes("photos/Strand.jpg")));
    EXPECT_FALSE(fs::exists(src + "Brind.Bak"));
    EXPECT_EQ(modifiedSeconds(src), 978307200);
    EXPECT_EQ(std::vector<std::string>{"Strand.jpg"},
              [&] {
                  std::vector<std::string> names;
                  for (const auto& [name, bytes] : filesIn("photos")) names.push_back(name);
                  return names;
              }());
}

TEST_F(BatchRunTest, ACopyInTheWayStopsTheOverwriteWithTheMessageAndTheRunGoesOn) {
    const std::string first = jpeg("photos/Strand.jpg");
    const std::string second = jpeg("photos/Wald.jpg", 40, 30);
    const std::string firstBytes = readBytes("photos/Strand.jpg");
    // A copy left by a run that broke off is someone's only original: kept.
    writeBytes("photos/Strand.jpgBrind.Bak", "older copy");
    const std::string invertedTwice = [&] {
        std::string bytes = readBytes("photos/Wald.jpg");
        for (int run = 0; run < 2; ++run) {
            cDIBSection dib;
            EXPECT_TRUE(decodeJpeg(bytes, dib));
            dib.effectInvert();
            bytes = encoded(dib);
        }
        return bytes;
    }();

    BatchOptions o;
    o.pictures = {first, second};
    o.saveMode = SaveMode::OverwriteOriginals;
    for (Language lang : {Language::German, Language::English}) {
        BatchRecord rec;
        rec.result = runPictureBatch(o, kInvert, rec.prompter, lang, recordingCallbacks(rec));
        const std::string text =
            lang == Language::German
                ? "message|Fehler|16|Fehler beim überschreiben der Datei: " + first + " in " + first + "Brind.Bak"
                : "message|Error|16|Error while overwriting the File: " + first + " in " + first + "Brind.Bak";
        EXPECT_EQ(rec.prompter.asked, std::vector<std::string>{text});
        EXPECT_EQ(rec.result.failed, 1);
        EXPECT_EQ(rec.result.treated, 1);
        EXPECT_EQ(rec.result.written, std::vector<std::string>{second});
    }
    EXPECT_TRUE(sameBytes(firstBytes, readBytes("photos/Strand.jpg")));
    EXPECT_EQ(readBytes("photos/Strand.jpgBrind.Bak"), "older copy");
    // The second picture went on in both runs, each working on the last result.
    EXPECT_TRUE(sameBytes(invertedTwice, readBytes("photos/Wald.jpg")));
    EXPECT_FALSE(fs::exists(second + "Brind.Bak"));
}

// The result's file may not be written (a file size limit stops it after the
// original was moved aside): the original comes back byte for byte.
TEST_F(BatchRunTest, AFailedWriteOverTheOriginalPutsTheOriginalBack) {
    const std::string src = picture("photos/Rauschen.jpg", noisePicture(96, 64, 7));
    const std::string before = readBytes("photos/Rauschen.jpg");
    ASSERT_GT(before.size(), 4096u);
    int pipeFds[2];
    ASSERT_EQ(::pipe(pipeFds), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::close(pipeFds[0]);
        std::signal(SIGXFSZ, SIG_IGN);
        const struct rlimit limit = {2048, 2048};
        if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) ::_exit(3);
        BatchOptions o;
        o.pictures = {src};
        o.saveMode = SaveMode::OverwriteOriginals;
        ScriptedPrompter prompter;
        const auto r = runPictureBatch(o, kInvert, prompter, Language::English);
        std::string report = std::to_string(r.failed) + "\n";
        for (const std::string& q : prompter.asked) report += q + "\n";
        const bool sent = ::write(pipeFds[1], report.data(), report.size()) ==
                          static_cast<ssize_t>(report.size());
        ::_exit(sent ? 0 : 4);
    }
    ::close(pipeFds[1]);
    std::string report;
    char buf[512];
    for (ssize_t n; (n = ::read(pipeFds[0], buf, sizeof buf)) > 0;) report.append(buf, n);
    ::close(pipeFds[0]);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_EQ(report, "1\nmessage|Error|16|Error while writing the file: " + src + "\n");
    EXPECT_TRUE(sameBytes(before, readBytes("photos/Rauschen.jpg")));
    EXPECT_FALSE(fs::exists(src + "Brind.Bak"));
}

TEST_F(BatchRunTest, AFailedWriteElsewhereNamesThePathAndTheRunGoesOn) {
    const std::string a = jpeg("photos/a.jpg");
    const std::string b = jpeg("photos/b.jpg");
    touch("plain");  // a file where the target folder should be
    BatchOptions o;
    o.pictures = {a, b};
    o.saveMode = SaveMode::OtherDirectory;
    o.targetDirectory = path("plain");
    struct Case {
        std::string type;
        Language lang;
        std::string title, before, after;
        std::string ext;
    };
    const std::vector<Case> cases = {
        {"*.bmp", Language::English, "Error", "Saving the Picture:", " fault", ".bmp"},
        {"*.bmp", Language::German, "Fehler", "Speichern des Bildes:", " Gescheitert", ".bmp"},
        {"*.png", Language::English, "Error", "Error while writing the file: ", "", ".png"},
        {"normal", Language::German, "Fehler", "Fehler beim Schreiben der Datei: ", "", ".jpg"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.type + " " + c.title);
        o.fileType = c.type;
        BatchRecord rec;
        rec.result = runPictureBatch(o, kInvert, rec.prompter, c.lang, recordingCallbacks(rec));
        EXPECT_EQ(rec.prompter.asked,
                  (std::vector<std::string>{
                      "message|" + c.title + "|16|" + c.before + path("plain/a") + c.ext + c.after,
                      "message|" + c.title + "|16|" + c.before + path("plain/b") + c.ext + c.after}));
        EXPECT_EQ(rec.result.failed, 2);
        EXPECT_EQ(rec.result.treated, 0);
        EXPECT_TRUE(rec.result.written.empty());
        EXPECT_EQ(rec.events.back(), "progress 2/2");
    }
}

TEST_F(BatchRunTest, APictureNotAboveTheSizeFilterIsLeftAndNothingWritten) {
    const std::string small = jpeg("photos/klein.jpg", 40, 30);
    const std::string wide = jpeg("photos/breit.jpg", 41, 30);
    const std::string high = jpeg("photos/hoch.jpg", 40, 31);
    const std::string smallBytes = readBytes("photos/klein.jpg");
    BatchOptions o = toDirectory("out", {small, wide, high});
    o.minWidth = 40;
    o.minHeight = 30;
    BatchRecord rec;
    rec.result = runPictureBatch(o, kContrastAndHalf, rec.prompter, Language::German,
                                 recordingCallbacks(rec));
    EXPECT_EQ(rec.result.skipped, 1);
    EXPECT_EQ(rec.result.treated, 2);
    EXPECT_EQ(rec.result.written, (std::vector<std::string>{path("out/breit.jpg"), path("out/hoch.jpg")}));
    EXPECT_EQ(rec.events,
              (std::vector<std::string>{
                  "progress 0/3", "status " + small, "progress 1/3", "status " + wide,
                  "status " + wide + ": Kontrast", "status " + wide + ": Größe", "preview 20x15",
                  "progress 2/3", "status " + high, "status " + high + ": Kontrast",
                  "status " + high + ": Größe", "preview 20x15", "progress 3/3"}));
    EXPECT_TRUE(sameBytes(smallBytes, readBytes("photos/klein.jpg")));
    EXPECT_EQ(filesIn("out").size(), 2u);
    // The same in overwrite mode: the small original is not touched at all.
    const long long smallTime = modifiedSeconds(small);
    o.saveMode = SaveMode::OverwriteOriginals;
    o.pictures = {small};
    const auto r = runPictureBatch(o, kInvert, rec.prompter, Language::German);
    EXPECT_EQ(r.skipped, 1);
    EXPECT_TRUE(sameBytes(smallBytes, readBytes("photos/klein.jpg")));
    EXPECT_EQ(modifiedSeconds(small), smallTime);
    EXPECT_EQ(filesIn("photos").size(), 3u);
}

TEST_F(BatchRunTest, CancelFinishesTheCurrentPictureAndStopsBeforeTheNext) {
    std::vector<std::string> pictures;
    for (int i = 0; i < 5; ++i) pictures.push_back(jpeg("photos/p" + std::to_string(i) + ".jpg"));
    for (int threads : {1, 2}) {
        SCOPED_TRACE(threads);
        fs::remove_all(path("out"));
        BatchOptions o = toDirectory("out", pictures);
        o.threads = threads;
        BatchRecord rec;
        studio::BatchCallbacks c = recordingCallbacks(rec);
        int asked = 0;
        c.cancelled = [&] { return ++asked > 1; };  // cancelled while the first was worked
        rec.result = runPictureBatch(o, kInvert, rec.prompter, Language::English, c);
        EXPECT_TRUE(rec.result.cancelled);
        EXPECT_EQ(rec.result.written, std::vector<std::string>{path("out/p0.jpg")});
        EXPECT_EQ(rec.events, (std::vector<std::string>{"progress 0/5", "status " + pictures[0],
                                                        "status " + pictures[0] + ": Negativ",
                                                        "preview 64x48", "progress 1/5"}));
        EXPECT_EQ(filesIn("out").size(), 1u);
    }
}

TEST_F(BatchRunTest, EachTypeIsWrittenWithTheBytesOfTheImageCoresWriters) {
    const std::string src = jpeg("photos/Strand.jpg");
    cDIBSection expected = loaded(src);
    expected.effectInvert();
    for (const std::string type : {"*.png", "*.bmp", "*.tif", "*.jpg"}) {
        SCOPED_TRACE(type);
        BatchOptions o = toDirectory("out", {src});
        o.fileType = type;
        o.jpegQuality = 75;
        ScriptedPrompter prompter;
        const auto r = runPictureBatch(o, kInvert, prompter, Language::English);
        ASSERT_EQ(r.written.size(), 1u);
        const std::string reference = path("reference") + type.substr(1);
        ASSERT_TRUE(SaveDIBFile(expected, reference, 75));
        const std::string written = path("out/Strand") + type.substr(1);
        if (type == "*.tif") {
            // The TIFF writer leaves a padding byte as it finds it: the pixels count.
            PictureFile ours = LoadPictureFile(written), theirs = LoadPictureFile(reference);
            ASSERT_TRUE(ours.picture && theirs.picture);
            EXPECT_TRUE(sameImage(*theirs.picture.Handle(), *ours.picture.Handle()));
        } else {
            EXPECT_TRUE(sameBytes(readBytes("reference" + type.substr(1)), readBytes("out/Strand" + type.substr(1))));
        }
    }
}

// A run on several threads shows, says and writes exactly what a run on one does.
TEST_F(BatchRunTest, SeveralThreadsGiveTheOrderAndTheBytesOfOne) {
    std::vector<std::string> pictures;
    for (int i = 0; i < 4; ++i)
        pictures.push_back(picture("a/p" + std::to_string(i) + ".jpg", noisePicture(48 + i, 40, i)));
    pictures.push_back(picture("b/p0.jpg", smoothPicture(50, 30)));  // the same name as a/p0.jpg
    pictures.push_back(picture("a/tiny.png", smoothPicture(8, 8)));  // below the filter
    pictures.push_back(picture("a/grafik.bmp", smoothPicture(30, 20)));
    writeBytes("a/kaputt.jpg", "no picture at all");
    pictures.push_back(path("a/kaputt.jpg"));
    pictures.push_back(path("a/fehlt.jpg"));  // not there
    pictures.push_back(picture("a/p1.png", smoothPicture(33, 33)));
    pictures.push_back(picture("c/p1.png", smoothPicture(34, 33)));

    struct Run {
        std::vector<std::string> events, asked, written;
        std::map<std::string, std::string> files;
        std::set<std::thread::id> workers;
    };
    auto run = [&](int threads) {
        fs::remove_all(path("out"));
        BatchOptions o = toDirectory("out", pictures);
        o.minWidth = 10;
        o.minHeight = 10;
        o.threads = threads;
        BatchRecord rec;
        Run out;
        std::mutex m;
        const PictureWork work = [&](cDIBSection& dib, const std::function<void(const std::string&)>& step) {
            {
                std::lock_guard lock(m);
                out.workers.insert(std::this_thread::get_id());
            }
            kContrastAndHalf(dib, step);
        };
        rec.result = runPictureBatch(o, work, rec.prompter, Language::German, recordingCallbacks(rec));
        out.events = rec.events;
        out.asked = rec.prompter.asked;
        out.written = rec.result.written;
        out.files = filesIn("out");
        return out;
    };
    const Run one = run(1);
    ASSERT_EQ(one.written.size(), 8u);
    EXPECT_EQ(one.written[4], path("out/p01.jpg"));  // b/p0.jpg after a/p0.jpg
    EXPECT_EQ(one.written[5], path("out/grafik.bmp"));
    EXPECT_EQ(one.written[6], path("out/p1.png"));  // a/p1.jpg took "p1.jpg", not "p1.png"
    EXPECT_EQ(one.written[7], path("out/p11.png"));
    EXPECT_EQ(one.workers, std::set<std::thread::id>{std::this_thread::get_id()});
    for (int threads : {2, 3, 0}) {
        SCOPED_TRACE(threads);
        const Run many = run(threads);
        EXPECT_EQ(many.events, one.events);
        EXPECT_EQ(many.asked, one.asked);
        EXPECT_EQ(many.written, one.written);
        ASSERT_EQ(many.files.size(), one.files.size());
        for (const auto& [name, bytes] : one.files) {
            SCOPED_TRACE(name);
            ASSERT_EQ(many.files.count(name), 1u);
            EXPECT_TRUE(sameBytes(bytes, many.files.at(name)));
        }
        if (threads == 2) {
            EXPECT_EQ(many.workers.count(std::this_thread::get_id()), 0u);
        }
    }
}

// A picture listed twice is worked the second time on the first result, as
// one thread does it, though the threads read ahead.
TEST_F(BatchRunTest, APictureListedTwiceIsWorkedOnItsFirstResult) {
    const std::string src = picture("photos/Strand.jpg", noisePicture(40, 30, 3));
    const std::string original = readBytes("photos/Strand.jpg");
    std::map<int, std::string> results;
    for (int threads : {1, 2}) {
        writeBytes("photos/Strand.jpg", original);
        BatchOptions o;
        o.pictures = {src, src, src};
        o.saveMode = SaveMode::OverwriteOriginals;
        o.threads = threads;
        ScriptedPrompter prompter;
        const auto r = runPictureBatch(o, kContrastAndHalf, prompter, Language::English);
        EXPECT_EQ(r.treated, 3);
        results[threads] = readBytes("photos/Strand.jpg");
    }
    cDIBSection dib;
    ASSERT_TRUE(LoadJPG(dib, src));
    EXPECT_EQ(dib.Width(), 5);  // 40 halved three times
    EXPECT_TRUE(sameBytes(results[1], results[2]));
}

// The design batch runs the lines in batch mode: sharpening with its
// strength, the size step in percent; the status names each step.
TEST_F(BatchRunTest, TheDesignBatchRunsTheLinesInBatchModeAndNamesEachStep) {
    const std::string src = jpeg("photos/Strand.jpg", 80, 60);
    // Contrast and brightness run in one pass, and still each name their step.
    const std::vector<std::string> steps = {"Kontrast(20)", "Helligkeit(10,1)", "Schärfen(5)", "3D Effekt(4)", "",
                                            "Größe(0,0,50,50,1)"};
    cDIBSection expected = loaded(src);
    studio::StepEnv env;
    env.mode = studio::ChainMode::Batch;
    studio::applyChain(expected, steps, env);
    ASSERT_EQ(expected.Width(), 40);

    BatchOptions o = toDirectory("out", {src});
    o.appendText = "_design";
    o.threads = 2;
    BatchRecord rec;
    rec.result = studio::runDesignBatch(steps, o, rec.prompter, Language::German, recordingCallbacks(rec));
    EXPECT_EQ(rec.result.written, std::vector<std::string>{path("out/Strand_design.jpg")});
    EXPECT_EQ(rec.events,
              (std::vector<std::string>{"progress 0/1", "status " + src, "status " + src + ": Kontrast",
                                        "status " + src + ": Helligkeit", "status " + src + ": Schärfen", "status " + src + ": 3D Effekt",
                                        "status " + src + ": Größe", "preview 40x30", "progress 1/1"}));
    EXPECT_TRUE(sameBytes(encoded(expected), readBytes("out/Strand_design.jpg")));
}

}  // namespace
}  // namespace brindle::test
