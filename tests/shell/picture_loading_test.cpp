// Page pictures are read on worker threads: the window answers while they
// load, each shows as it arrives, a replaced picture shows its new file,
// and a page closed while its pictures load goes quietly.
#include <QDir>
#include <QPainter>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>
#include <QTimer>

#include "album/album_file.h"
#include "album/page_file.h"
#include "album/stacking.h"
#include "editor/frm_notepad.h"
#include "editor/picture_loader.h"
#include "shell/main_window.h"
#include "shell/startup.h"
#include "support/scripted_prompter.h"

using namespace brindle;
using brindle::editor::ElementRef;
using brindle::editor::FrmNotePad;
using brindle::editor::Kind;
using brindle::editor::PictureLoader;
using brindle::editor::pictureThreadPool;

namespace {

const QColor kRed(0xD0, 0x30, 0x30);
const QColor kBlue(0x30, 0x50, 0xC0);
const QColor kPlaceholder(0xE4, 0xE7, 0xEB);
const QRect kBoxes[3] = {{40, 60, 160, 120}, {240, 60, 160, 120}, {440, 60, 160, 120}};

// A large one-colour JPEG: large enough that it is read reduced.
void writeJpeg(const QString& path, QColor colour) {
    QImage img(1600, 1200, QImage::Format_RGB32);
    img.fill(colour);
    QVERIFY(img.save(path, "JPEG", 95));
}

PictureElement picture(QRect b, const std::string& path) {
    PictureElement e;
    e.left = std::int16_t(b.left());
    e.top = std::int16_t(b.top());
    e.width = std::int16_t(b.width());
    e.height = std::int16_t(b.height());
    e.path = path;
    e.pictureWidth = 1600;
    e.pictureHeight = 1200;
    e.proportional = kTrue;
    return e;
}

// JPEG colours come back within a few steps.
bool near(QColor a, QColor b) {
    return std::abs(a.red() - b.red()) <= 8 && std::abs(a.green() - b.green()) <= 8 &&
           std::abs(a.blue() - b.blue()) <= 8;
}

// Holds every worker of the picture pool until opened, so a test sees the
// page while its pictures are still being read.
class PoolGate {
public:
    void close() {
        const int n = pictureThreadPool().maxThreadCount();
        for (int i = 0; i < n; ++i)
            pictureThreadPool().start([this] {
                started_.release();
                gate_.acquire();
            });
        // Events keep flowing meanwhile: a pool task may be waiting for the GUI thread.
        while (!started_.tryAcquire(n, 10)) QCoreApplication::processEvents();
        held_ = n;
    }
    void open() {
        gate_.release(held_);
        held_ = 0;
    }
    ~PoolGate() { open(); }

private:
    QSemaphore started_, gate_;
    int held_ = 0;
};

}  // namespace

class PictureLoadingTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir* dir_ = nullptr;
    std::string home_;
    test::ScriptedPrompter* prompter_ = nullptr;
    IniSettingsStore* settings_ = nullptr;
    shell::MainWindow* window_ = nullptr;

    std::string albumDir() const { return home_ + "Album/"; }
    std::string albumPath() const { return albumDir() + "Bilder.apr"; }
    std::string file(const char* name) const { return albumDir() + name; }

    // One page with a picture in each of the three boxes.
    void writeAlbum(const std::vector<std::string>& pictures) {
        AlbumRecord album;
        ladeStandards(album, home_);
        album.title = "Bilder";
        PageRecord page = album.pageDefaults;
        for (std::size_t i = 0; i < pictures.size(); ++i) page.pictures.add() = picture(kBoxes[i], pictures[i]);
        ReihenfolgePruefen(page);
        page.title = "Fotos";
        QVERIFY(writePageFile(albumDir() + "Fotos.apg", page).ok());
        album.pages.add() = PageEntry{"Fotos", "Fotos.apg", albumDir(), 0};
        album.pageCount = 1;
        prepareAlbumSave(album, albumPath());
        QVERIFY(writeAlbumFile(albumPath(), album).ok());
    }

    void start() {
        window_ = new shell::MainWindow(home_, *prompter_, *settings_);
        window_->MDIForm_Load({albumPath()}, {});
        window_->resize(900, 600);
        window_->show();
    }

    FrmNotePad* pad() const { return window_->activeNotePad(); }

    // The colour the canvas shows a little inside the corner of box i.
    QColor shown(int i) {
        const QImage img = pad()->canvas()->grab().toImage();
        return img.pixelColor(kBoxes[i].topLeft() + QPoint(12, 12));
    }

    void waitForPictures() { QTRY_VERIFY_WITH_TIMEOUT(!pad()->canvas()->picturesLoading(), 20000); }

private slots:
    void init() {
        dir_ = new QTemporaryDir;
        home_ = dir_->path().toStdString() + "/";
        qputenv("BRINDLESEE_HOME", QByteArray::fromStdString(home_));
        seedProgramDirectory(home_, installedResourceDirectory());
        prompter_ = new test::ScriptedPrompter;
        settings_ = new IniSettingsStore(home_ + "settings.ini");
        QDir().mkpath(QString::fromStdString(albumDir()));
        writeJpeg(QString::fromStdString(file("rot.jpg")), kRed);
        writeJpeg(QString::fromStdString(file("blau.jpg")), kBlue);
    }

    void cleanup() {
        if (window_) window_->unloadAll();
        delete window_;
        window_ = nullptr;
        pictureThreadPool().waitForDone();
        delete settings_;
        delete prompter_;
        delete dir_;
    }

    void picturesLoadOnWorkersWhileTheWindowAnswers() {
        writeAlbum({file("rot.jpg"), file("blau.jpg"), file("rot.jpg")});
        PoolGate gate;
        gate.close();
        start();
        QVERIFY(pad());  // every later line works on the open page
        // Every worker is held, so the page opened without reading a picture.
        QVERIFY(pad()->canvas()->picturesLoading());
        for (int i = 0; i < 3; ++i) QCOMPARE(shown(i), kPlaceholder);
        int ticks = 0;
        QTimer timer;
        connect(&timer, &QTimer::timeout, [&] { ++ticks; });
        timer.start(1);
        QTRY_VERIFY(ticks >= 5);  // the GUI thread runs its timers meanwhile
        QVERIFY(pad()->canvas()->picturesLoading());
        gate.open();
        waitForPictures();
        QVERIFY2(near(shown(0), kRed), qPrintable(shown(0).name()));
        QVERIFY2(near(shown(1), kBlue), qPrintable(shown(1).name()));
        QVERIFY2(near(shown(2), kRed), qPrintable(shown(2).name()));
        QVERIFY(prompter_->asked.empty());
    }

    void replacedPictureShowsTheNewFile() {
        writeAlbum({file("rot.jpg")});
        start();
        QVERIFY(pad());  // every later line works on the open page
        waitForPictures();
        QVERIFY2(near(shown(0), kRed), qPrintable(shown(0).name()));
        // The red file is read again and, before that read runs, replaced.
        PoolGate gate;
        gate.close();
        pad()->NeuZeichnen();
        QVERIFY(pad()->canvas()->picturesLoading());
        QVERIFY2(near(shown(0), kRed), "the same file stays on show while it is read again");
        const ElementRef ref{Kind::Bild, 1};
        pad()->document().changeElement(ref, [&] { pad()->document().page().pictures[1].path = file("blau.jpg"); });
        QCOMPARE(shown(0), kPlaceholder);  // never the old file for the new one
        gate.open();
        waitForPictures();
        QVERIFY2(near(shown(0), kBlue), qPrintable(shown(0).name()));
    }

    void anOvertakenReadIsNeverDelivered() {
        PictureLoader loader;
        QSignalSpy spy(&loader, &PictureLoader::loaded);
        const ElementRef ref{Kind::Bild, 3};
        loader.request(ref, QString::fromStdString(file("rot.jpg")), {160, 120}, editor::PictureFit::Exact);
        pictureThreadPool().waitForDone();  // red is read and posted, not yet delivered
        loader.request(ref, QString::fromStdString(file("blau.jpg")), {160, 120}, editor::PictureFit::Exact);
        QTRY_COMPARE(spy.count(), 1);
        QTest::qWait(20);
        QCOMPARE(spy.count(), 1);
        const QImage image = spy.at(0).at(1).value<QImage>();
        QCOMPARE(image.size(), QSize(160, 120));
        QVERIFY2(near(image.pixelColor(80, 60), kBlue), qPrintable(image.pixelColor(80, 60).name()));
        QCOMPARE(spy.at(0).at(0).value<ElementRef>(), ref);
        QVERIFY(!loader.loading());
    }

    void picturesAreHeldAtTheSizeShownAndNeverLarger() {
        using editor::PictureFit;
        using editor::readScreenPicture;
        const QString red = QString::fromStdString(file("rot.jpg"));
        QCOMPARE(readScreenPicture(red, {160, 120}, PictureFit::Exact).size(), QSize(160, 120));
        QCOMPARE(readScreenPicture(red, {300, 100}, PictureFit::Exact).size(), QSize(300, 100));
        // A box larger than the picture: the picture's own size, the canvas stretches it.
        QCOMPARE(readScreenPicture(red, {3200, 2400}, PictureFit::Exact).size(), QSize(1600, 1200));
        // A panorama strip keeps its proportions at the box's height.
        QCOMPARE(readScreenPicture(red, {50, 90}, PictureFit::ByHeight).size(), QSize(120, 90));
        QVERIFY(readScreenPicture({}, {160, 120}, PictureFit::Exact).isNull());
        QVERIFY(readScreenPicture(QString::fromStdString(file("fehlt.jpg")), {160, 120}, PictureFit::Exact).isNull());
        const QImage small = readScreenPicture(red, {160, 120}, PictureFit::Exact);
        QVERIFY2(near(small.pixelColor(0, 0), kRed), qPrintable(small.pixelColor(0, 0).name()));
    }

    void closingAPageWhileItsPicturesLoadIsClean() {
        writeAlbum({file("rot.jpg"), file("blau.jpg"), file("rot.jpg")});
        PoolGate gate;
        gate.close();
        start();
        QVERIFY(pad());  // every later line works on the open page
        QVERIFY(pad()->canvas()->picturesLoading());
        window_->action("mnuFClose")->trigger();
        QTRY_VERIFY(!pad());
        gate.open();
        pictureThreadPool().waitForDone();
        QTest::qWait(20);  // anything the workers posted is delivered now
        QVERIFY(prompter_->asked.empty());
        QCOMPARE(pictureThreadPool().activeThreadCount(), 0);
        // Closed while the reads run and post their results.
        for (int round = 0; round < 5; ++round) {
            window_->session().SeiteOeffnen(1, "", false);
            QVERIFY(pad());
            QVERIFY(pad()->canvas()->picturesLoading());
            QTest::qWait(round * 5);
            window_->action("mnuFClose")->trigger();
            QTRY_VERIFY(!pad());
        }
        pictureThreadPool().waitForDone();
        QTest::qWait(20);
        QVERIFY(prompter_->asked.empty());
    }

    void eachUnreadablePictureIsToldOnce() {
        const std::string broken = file("kaputt.jpg");
        QFile f(QString::fromStdString(broken));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("\xFF\xD8\xFF\xE0 not a picture");
        f.close();
        writeAlbum({broken, file("rot.jpg"), file("fehlt.jpg")});
        start();
        QVERIFY(pad());  // every later line works on the open page
        waitForPictures();
        QTest::qWait(20);
        const std::string message = "message|Fehler|16|Fehler beim Aktivieren des Bildes aufgetreten.";
        QCOMPARE(prompter_->asked, (std::vector<std::string>{message, message}));
        QVERIFY2(near(shown(1), kRed), qPrintable(shown(1).name()));
        QCOMPARE(shown(0), kPlaceholder);
        // Drawing the page again asks nothing more.
        pad()->canvas()->repaint();
        QTest::qWait(20);
        QCOMPARE(prompter_->asked.size(), std::size_t(2));
    }

    // Under Xvfb with BRINDLESEE_SCREENSHOTS set to a folder: a page of
    // photos while they load (placeholders) and once they are in, in
    // German and English. A tool run by hand; CTest does not list it.
    void screenshots() {
        const QByteArray out = qgetenv("BRINDLESEE_SCREENSHOTS");
        if (out.isEmpty()) QSKIP("BRINDLESEE_SCREENSHOTS not set");
        std::vector<std::string> names;
        for (int i = 0; i < 3; ++i) {
            const std::string name = file(("foto_" + std::to_string(i + 1) + ".jpg").c_str());
            drawPhoto(QString::fromStdString(name), i);
            names.push_back(name);
        }
        writeAlbum(names);
        PoolGate gate;
        gate.close();
        start();
        QVERIFY(pad());  // every later line works on the open page
        QVERIFY(QTest::qWaitForWindowExposed(window_));
        QTest::qWait(200);
        window_->grab().save(QString(out) + "/page-loading-de.png");
        gate.open();
        waitForPictures();
        QTest::qWait(100);
        window_->grab().save(QString(out) + "/page-loaded-de.png");
        window_->action("mnuEnglisch")->trigger();
        gate.close();
        pad()->document().changeElement({Kind::Bild, 2}, [&] {
            pad()->document().page().pictures[2].path = file("rot.jpg");
        });
        QTest::qWait(200);
        window_->grab().save(QString(out) + "/page-loading-en.png");
        gate.open();
        waitForPictures();
        QTest::qWait(100);
        window_->grab().save(QString(out) + "/page-loaded-en.png");
    }

private:
    // A landscape with sky, sun, hills and a lake, at camera size.
    static void drawPhoto(const QString& path, int variant) {
        QImage img(3000, 2250, QImage::Format_RGB32);
        QPainter p(&img);
        p.setRenderHint(QPainter::Antialiasing);
        QLinearGradient sky(0, 0, 0, 1300);
        sky.setColorAt(0, QColor::fromHsv(205 + variant * 8, 150, 235));
        sky.setColorAt(1, QColor::fromHsv(30 + variant * 10, 60, 250));
        p.fillRect(img.rect(), sky);
        p.setBrush(QColor(255, 236, 170));
        p.setPen(Qt::NoPen);
        p.drawEllipse(QPoint(600 + variant * 700, 420), 170, 170);
        p.setBrush(QColor::fromHsv(110 + variant * 12, 120, 110));
        p.drawEllipse(QPoint(900, 1700), 1500, 600);
        p.setBrush(QColor::fromHsv(95, 140, 80));
        p.drawEllipse(QPoint(2500, 1800), 1300, 650);
        QLinearGradient lake(0, 1800, 0, 2250);
        lake.setColorAt(0, QColor(0x3A, 0x6E, 0x9A));
        lake.setColorAt(1, QColor(0x1C, 0x3C, 0x5C));
        p.fillRect(QRect(0, 1850, 3000, 400), lake);
        p.end();
        QVERIFY(img.save(path, "JPEG", 92));
    }
};

QTEST_MAIN(PictureLoadingTest)
#include "picture_loading_test.moc"
