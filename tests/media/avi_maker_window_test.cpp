// The video maker window offscreen: bitmaps added through the open dialog
// and written as an AVI, a bitmap of another size refused, pictures handed
// over by the explorer, and the language switch. `screenshots` saves the
// window in German and English to $BRINDLESEE_SCREENSHOTS (run by hand
// under Xvfb).
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <filesystem>
#include <fstream>

#include "image/picture_io.h"
#include "media/avi_maker_window.h"
#include "video_probe.h"
#include "support/scripted_prompter.h"

using namespace brindle;
using brindle::media::AviMakerWindow;

namespace {

template <typename T>
T* child(QWidget* window, const char* name) {
    T* w = window->findChild<T*>(QString::fromUtf8(name));
    if (!w) qWarning("missing control %s", name);
    return w;
}

QString shown(QAbstractButton* b) { return b->text().remove('&'); }
QString shown(QLabel* l) { return l->text().remove('&'); }

}  // namespace

class AviMakerWindowTest : public QObject {
    Q_OBJECT
  private:
    QTemporaryDir home_;

    std::string path(const char* name) const { return home_.filePath(name).toStdString(); }
    std::string program() const { return home_.path().toStdString() + "/program/"; }
    void bitmap(const char* name, int width, int height, int n) {
        QVERIFY(SaveDIBFile(test::framePicture(width, height, n), path(name), 100));
    }

  private slots:
    void init() {
        QVERIFY(home_.isValid());
        qputenv("BRINDLESEE_HOME", home_.path().toUtf8());
    }

    void threePicturesWriteAnAvi() {
        bitmap("a.bmp", 96, 64, 0);
        bitmap("b.bmp", 96, 64, 1);
        bitmap("c.bmp", 96, 64, 2);
        test::ScriptedPrompter prompter;
        AviMakerWindow w({}, program(), prompter, Language::English);
        QCOMPARE(w.windowTitle(), QString("Brindlesee Videomaker"));
        auto* write = child<QPushButton>(&w, "cmdWriteAVI");
        auto* list = child<QListWidget>(&w, "lstDIBList");
        auto* preview = child<QLabel>(&w, "imgPreview");
        QVERIFY(write && list && preview);
        // An empty list writes nothing and asks nothing.
        QVERIFY(!write->isEnabled());
        w.writeVideoFile();
        QVERIFY(prompter.asked.empty());

        prompter.files.push_back(home_.path().toStdString() + ";c.bmp;a.bmp;b.bmp");
        child<QPushButton>(&w, "cmdFileOpen")->click();
        QCOMPARE(prompter.asked.size(), std::size_t(1));
        QCOMPARE(QString::fromStdString(prompter.asked[0]), QString("open|1||"));
        QCOMPARE(list->count(), 3);
        QVERIFY(!preview->pixmap().isNull());
        // c.bmp goes to the end: a, b, c.
        list->setCurrentRow(0);
        child<QPushButton>(&w, "cmdDown")->click();
        child<QPushButton>(&w, "cmdDown")->click();
        QCOMPARE(w.bitmaps(), (std::vector<std::string>{path("a.bmp"), path("b.bmp"), path("c.bmp")}));
        QCOMPARE(list->item(2)->text(), QString("c.bmp"));
        QCOMPARE(list->currentRow(), 2);

        child<QSpinBox>(&w, "txtFPS")->setValue(5);
        prompter.files.push_back(path("clip"));  // no extension: ".avi" is added
        write->click();
        QCOMPARE(QString::fromStdString(prompter.asked.back()), QString("save|1||MyAVI.avi"));
        QVERIFY(w.lastResult().ok);
        QCOMPARE(w.lastResult().frames, 3);
        QCOMPARE(child<QLabel>(&w, "lblStatus")->text(), QString("Finished!"));
        QCOMPARE(child<QWidget>(&w, "progress")->property("value").toInt(), 3);
        const test::ProbedVideo video = test::probeVideo(path("clip.avi"));
        QCOMPARE(video.frames, 3);
        QCOMPARE(QString::fromStdString(video.rate), QString("5/1"));
        QCOMPARE(QString::fromStdString(video.container), QString("avi"));
        QCOMPARE(video.width, 96);
        QCOMPARE(video.height, 64);
        // The first frame is a.bmp, the last c.bmp.
        QVERIFY(test::decodeFrame(path("clip.avi"), 0, path("first.png")));
        QVERIFY(test::decodeFrame(path("clip.avi"), 2, path("last.png")));
        const PictureFile first = LoadPictureFile(path("first.png"));
        const PictureFile last = LoadPictureFile(path("last.png"));
        QVERIFY(first.picture && last.picture);
        QVERIFY(test::psnr(test::framePicture(96, 64, 0), *first.picture.Handle()) >= 30.0);
        QVERIFY(test::psnr(test::framePicture(96, 64, 2), *last.picture.Handle()) >= 30.0);

        // Removing leaves the other two; a wrong extension is refused with its message.
        list->setCurrentRow(1);
        child<QPushButton>(&w, "cmdRemove")->click();
        QCOMPARE(w.bitmaps(), (std::vector<std::string>{path("a.bmp"), path("c.bmp")}));
        prompter.files.push_back(path("clip.mov"));
        write->click();
        QCOMPARE(QString::fromStdString(prompter.asked.back()),
                 QString("message|Brindlesee Videomaker|48|Videos are written as .avi or .mp4."));
        QVERIFY(!std::filesystem::exists(path("clip.mov")));
    }

    void anotherSizeIsRefused() {
        bitmap("a.bmp", 96, 64, 0);
        bitmap("wide.bmp", 42, 30, 1);
        bitmap("b.bmp", 96, 64, 2);
        test::ScriptedPrompter prompter;
        AviMakerWindow w({}, program(), prompter, Language::English);
        prompter.files.push_back(home_.path().toStdString() + ";a.bmp;wide.bmp;b.bmp");
        child<QPushButton>(&w, "cmdFileOpen")->click();
        QCOMPARE(w.bitmaps(), std::vector<std::string>{path("a.bmp")});
        QCOMPARE(QString::fromStdString(prompter.asked.back()),
                 QString("message|Brindlesee Videomaker|48|Chosen bitmap file is a different format!"));
        w.setLanguage(Language::German);
        QVERIFY(!w.addBitmap(path("wide.bmp")));
        QCOMPARE(QString::fromStdString(prompter.asked.back()),
                 QString("message|Brindlesee Videomaker|48|Gewähltes Bitmap hat ein unterschiedliches Format!"));
        QVERIFY(w.addBitmap(path("b.bmp")));
        QCOMPARE(w.bitmaps().size(), std::size_t(2));
    }

    void picturesFromTheExplorerBecomeBitmaps() {
        const cDIBSection photo = test::framePicture(80, 60, 1);
        QVERIFY(SavePictureFile(Picture::fromDib(photo), path("photo.jpg"), 95));
        bitmap("a.bmp", 80, 60, 0);
        QVERIFY(std::filesystem::create_directories(program()));
        {
            std::ofstream(path("notes.txt")) << "text";
        }
        test::ScriptedPrompter prompter;
        AviMakerWindow w({path("a.bmp"), path("notes.txt"), path("photo.jpg")}, program(), prompter,
                         Language::English);
        QCOMPARE(prompter.asked, std::vector<std::string>{"message|Fehler|16|This filetype is not supported."});
        QCOMPARE(w.bitmaps().size(), std::size_t(2));
        QCOMPARE(w.bitmaps()[0], path("a.bmp"));
        const std::string made = w.bitmaps()[1];
        QCOMPARE(std::filesystem::path(made).parent_path().string(), program() + "AVITemp");
        media::BitmapFormat format;
        QVERIFY(media::readBitmapFormat(made, format));
        QCOMPARE(format.width, 80);
        QCOMPARE(format.height, 60);
        QVERIFY(child<QLabel>(&w, "lblStatus")->text().isEmpty());
    }

    // Cancel is pressed when the first frame's progress reaches the window;
    // the run stops at the next frame and leaves no file.
    void cancelStopsTheRun() {
        test::ScriptedPrompter prompter;
        AviMakerWindow w({}, program(), prompter, Language::English);
        bitmap("f.bmp", 320, 240, 0);
        for (int i = 0; i < 120; ++i) QVERIFY(w.addBitmap(path("f.bmp")));
        auto* bar = child<QProgressBar>(&w, "progress");
        auto* cancel = child<QPushButton>(&w, "cmdCancel");
        QVERIFY(bar && cancel);
        QString during;
        connect(bar, &QProgressBar::valueChanged, &w, [&](int value) {
            if (value != 1 || !w.running()) return;
            cancel->click();
            during = cancel->text();
        });
        w.show();
        prompter.files.push_back(path("stopped.avi"));
        child<QPushButton>(&w, "cmdWriteAVI")->click();
        QCOMPARE(during, QString("Cancelling ..."));
        QVERIFY(w.lastResult().cancelled);
        QVERIFY(!w.lastResult().ok);
        QVERIFY(w.lastResult().frames < 120);
        QVERIFY(!std::filesystem::exists(path("stopped.avi")));
        QCOMPARE(child<QLabel>(&w, "lblStatus")->text(), QString("Cancelled."));
        QCOMPARE(cancel->text(), QString("Cancel"));
        // No message for a cancel, and the window stays open for another try.
        QCOMPARE(prompter.asked.back().rfind("save|", 0), std::size_t(0));
        QVERIFY(w.isVisible());
        cancel->click();
        QVERIFY(!w.isVisible());
    }

    void languageSwitch() {
        test::ScriptedPrompter prompter;
        AviMakerWindow w({}, program(), prompter, Language::German);
        QCOMPARE(w.windowTitle(), QString("Brindlesee Videomaker"));
        QCOMPARE(shown(child<QPushButton>(&w, "cmdWriteAVI")), QString("AVI schreiben ..."));
        QCOMPARE(shown(child<QPushButton>(&w, "cmdCancel")), QString("Abbrechen"));
        w.setLanguage(Language::English);
        QCOMPARE(w.windowTitle(), QString("Brindlesee Videomaker"));
        QCOMPARE(shown(child<QPushButton>(&w, "cmdWriteAVI")), QString("Write AVI ..."));
        QCOMPARE(shown(child<QPushButton>(&w, "cmdCancel")), QString("Cancel"));
        QCOMPARE(shown(child<QPushButton>(&w, "cmdFileOpen")), QString("Add ..."));
        auto* fps = child<QSpinBox>(&w, "txtFPS");
        QCOMPARE(fps->minimum(), 1);
        QCOMPARE(fps->maximum(), 30);
        const QList<QLabel*> labels = w.findChildren<QLabel*>();
        QVERIFY(std::any_of(labels.begin(), labels.end(),
                            [](QLabel* l) { return shown(l) == "Frames per second (1 - 30):"; }));
        // The add dialog asks in the window's language.
        w.chooseBitmaps();
        QCOMPARE(QString::fromStdString(prompter.asked.back()), QString("open|1||"));
    }

    void screenshots() {
        const QByteArray out = qgetenv("BRINDLESEE_SCREENSHOTS");
        if (out.isEmpty()) QSKIP("BRINDLESEE_SCREENSHOTS not set");
        bitmap("sunrise.bmp", 320, 240, 0);
        bitmap("noon.bmp", 320, 240, 1);
        bitmap("dusk.bmp", 320, 240, 2);
        test::ScriptedPrompter prompter;
        AviMakerWindow w({path("sunrise.bmp"), path("noon.bmp"), path("dusk.bmp")}, program(), prompter,
                         Language::German);
        w.show();
        for (Language lang : {Language::German, Language::English}) {
            w.setLanguage(lang);
            QTest::qWait(100);
            w.grab().save(QString("%1/avi-maker-%2.png").arg(QString(out), lang == Language::German ? "de" : "en"));
        }
    }
};

QTEST_MAIN(AviMakerWindowTest)
#include "avi_maker_window_test.moc"
