// The panorama windows on five synthetic tiles of one landscape: the three
// phases write the panorama, the seam editor moves, restores, cancels and
// writes a seam, the language switches. `screenshots` saves both windows
// in German and English (run by hand under Xvfb, not by CTest).
#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <functional>
#include <random>

#include "editor/qimage_dib.h"
#include "image/jpeg_io.h"
#include "panorama/make_pano_window.h"
#include "panorama/seam_window.h"
#include "support/scripted_prompter.h"

using namespace brindle;
using brindle::panorama::MakePanoWindow;
using brindle::panorama::PanoBild;
using brindle::panorama::SeamWindow;

namespace {

constexpr int kTileWidth = 400;
constexpr int kStep = 250;                       // columns from one tile to the next
constexpr int kTileTop[5] = {20, 13, 26, 20, 20};  // rows each tile is cut from

// A landscape at evening, wider than any tile: sky, sun, mountains, a
// forest of small trees and a lake, drawn with a fixed seed.
QImage drawLandscape(int width, int height) {
    QImage img(width, height, QImage::Format_RGB32);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, 0, height * 0.6);
    sky.setColorAt(0, QColor(0x2B, 0x4C, 0x8C));
    sky.setColorAt(1, QColor(0xF2, 0xA6, 0x5A));
    p.fillRect(img.rect(), sky);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0xFF, 0xE4, 0x9A));
    p.drawEllipse(QPointF(width * 0.62, height * 0.3), height * 0.08, height * 0.08);
    std::mt19937 rng(7);
    std::uniform_real_distribution<double> unit(0, 1);
    QPainterPath ridge;
    ridge.moveTo(0, height);
    for (int x = 0; x <= width; x += 16) ridge.lineTo(x, height * (0.35 + 0.2 * unit(rng)));
    ridge.lineTo(width, height);
    p.setBrush(QColor(0x5A, 0x55, 0x78));
    p.drawPath(ridge);
    p.fillRect(QRectF(0, height * 0.62, width, height), QColor(0x3F, 0x6E, 0x3A));
    for (int i = 0; i < width / 3; ++i) {
        const double x = unit(rng) * width, y = height * (0.55 + 0.15 * unit(rng)), s = 6 + 10 * unit(rng);
        const QPointF tree[3] = {{x, y - 2 * s}, {x - s / 2, y}, {x + s / 2, y}};
        p.setBrush(QColor::fromHsv(90 + int(40 * unit(rng)), 150, 60 + int(80 * unit(rng))));
        p.drawPolygon(tree, 3);
    }
    QLinearGradient lake(0, height * 0.75, 0, height);
    lake.setColorAt(0, QColor(0x5C, 0x8F, 0xC0));
    lake.setColorAt(1, QColor(0x1E, 0x3A, 0x66));
    p.fillRect(QRectF(0, height * 0.78, width, height), lake);
    for (int i = 0; i < width / 4; ++i) {
        p.setBrush(QColor(255, 240, 200, 60 + int(100 * unit(rng))));
        p.drawRect(QRectF(unit(rng) * width, height * (0.8 + 0.18 * unit(rng)), 4 + 20 * unit(rng), 1.5));
    }
    return img;
}

// Five overlapping tiles of `height` rows as JPEG files in `dir`.
std::vector<std::string> writeTiles(const std::string& dir, int height) {
    const QImage land = drawLandscape(4 * kStep + kTileWidth, height + 40);
    std::vector<std::string> paths;
    for (int i = 0; i < 5; ++i) {
        const QImage tile = land.copy(i * kStep, kTileTop[i], kTileWidth, height);
        const std::string path = dir + "strand" + std::to_string(i + 1) + ".jpg";
        if (!SaveJPG(editor::dibOfImage(tile.convertToFormat(QImage::Format_RGB888)), path, 95).ok) return {};
        paths.push_back(path);
    }
    return paths;
}

// Records the title and filter of each file dialog too.
class DialogPrompter : public test::ScriptedPrompter {
public:
    std::vector<FileDialog> dialogs;
    std::string saveFile(const FileDialog& d) override {
        dialogs.push_back(d);
        return ScriptedPrompter::saveFile(d);
    }
};

template <class T>
T* child(QWidget& w, const QString& name) {
    T* found = w.findChild<T*>(name);
    if (!found) qFatal("no child %s", qPrintable(name));
    return found;
}

void click(QWidget& w, const QString& name) { QTest::mouseClick(child<QPushButton>(w, name), Qt::LeftButton); }

// Runs `work` on the seam editor that the next modal step opens.
void onSeamWindow(QObject* context, std::function<void(SeamWindow&)> work, bool* seen) {
    QTimer::singleShot(0, context, [work, seen] {
        auto* w = qobject_cast<SeamWindow*>(QApplication::activeModalWidget());
        if (!w) return;
        *seen = true;
        work(*w);
        if (w->isVisible()) w->reject();  // a failed check must not leave it open
    });
}

}  // namespace

class PanoWindowsTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir* dir_ = nullptr;
    std::string home_;
    DialogPrompter* prompter_ = nullptr;

    // A window on five tiles as tall as the reduced pictures, so the
    // offsets found are those the tiles were cut with.
    std::unique_ptr<MakePanoWindow> openWindow(Language lang = Language::German) {
        auto w = std::make_unique<MakePanoWindow>(std::vector<std::string>{}, home_, *prompter_, lang);
        w->resize(1100, 720);
        w->show();
        if (!QTest::qWaitForWindowExposed(w.get())) qFatal("window not shown");
        const std::vector<std::string> tiles = writeTiles(home_, w->options().workHeight);
        if (tiles.size() != 5) qFatal("tiles not written");
        prompter_->files.push_back(home_ + ";strand1.jpg;strand2.jpg;strand3.jpg;strand4.jpg;strand5.jpg");
        click(*w, "cmdHinzufügen");
        return w;
    }

    static void construct(MakePanoWindow& w) {
        click(w, "cmdPhase1");
        QVERIFY(w.isRunning());
        QTRY_VERIFY_WITH_TIMEOUT(!w.isRunning(), 120000);
    }

private slots:
    void init() {
        dir_ = new QTemporaryDir;
        QVERIFY(dir_->isValid());
        home_ = dir_->path().toStdString() + "/";
        qputenv("BRINDLESEE_HOME", QByteArray::fromStdString(home_));
        prompter_ = new DialogPrompter;
    }
    void cleanup() {
        delete prompter_;
        delete dir_;
    }

    void threePhasesWriteThePanorama() {
        auto w = openWindow();
        QCOMPARE(w->pictures().size(), std::size_t(5));
        QCOMPARE(w->pictures()[1], home_ + "strand2.jpg");
        QVERIFY(!child<QPushButton>(*w, "cmdPhase3")->isEnabled());
        construct(*w);
        QCOMPARE(child<QProgressBar>(*w, "ProgressBar1")->value(), 1000);
        const int h = w->options().workHeight;
        QCOMPARE(w->records().size(), std::size_t(5));
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(w->records()[i].xVersatz, kStep);
            QCOMPARE(w->records()[i].yVersatz, kTileTop[i + 1] - kTileTop[i]);
        }
        QCOMPARE(w->result().Width(), 4 * kStep + kTileWidth);
        QVERIFY(w->result().Height() >= h);
        // Picture3 shows the whole height and scrolls across.
        const QSize view = child<QScrollArea>(*w, "Picture3Area")->viewport()->size();
        const QSize shown = child<QLabel>(*w, "Picture3")->size();
        QCOMPARE(shown.height(), view.height());
        QVERIFY(std::abs(shown.width() - w->result().Width() * view.height() / w->result().Height()) <= 1);
        // Animation scrolls the result across; the second click stops it.
        QScrollBar* across = child<QScrollArea>(*w, "Picture3Area")->horizontalScrollBar();
        QVERIFY(across->maximum() > 0);
        QCOMPARE(across->value(), 0);
        click(*w, "cmdAnimate");
        QTRY_VERIFY(across->value() > 0);
        click(*w, "cmdAnimate");
        QVERIFY(!child<QPushButton>(*w, "cmdAnimate")->isChecked());
        const int stoppedAt = across->value();
        QTest::qWait(100);
        QCOMPARE(across->value(), stoppedAt);

        // Phase 3 asks for the file and writes it.
        QSignalSpy placed(w.get(), &MakePanoWindow::placeOnPage);
        QVERIFY(!child<QPushButton>(*w, "cmdAufSeite")->isEnabled());
        prompter_->files.push_back(home_ + "out/Panorama");
        QDir().mkpath(QString::fromStdString(home_ + "out"));
        click(*w, "cmdPhase3");
        QTRY_VERIFY_WITH_TIMEOUT(!w->isRunning(), 60000);
        QCOMPARE(prompter_->dialogs.size(), std::size_t(1));
        QCOMPARE(prompter_->dialogs[0].title, std::string("Wähle Datei zum Speichern des Panoramabildes"));
        QCOMPARE(prompter_->dialogs[0].filter,
                 std::string("Alle Dateien (*.*)|*.*|JPEG Bild (*.jpeg;*.jpg)|*.jpeg;*.jpg|Bitmap (*.bmp)|*.bmp"));
        QCOMPARE(w->savedPath(), home_ + "out/Panorama.jpg");
        cDIBSection saved;
        QVERIFY(LoadJPG(saved, w->savedPath()));
        QCOMPARE(saved.Width(), w->result().Width());
        QCOMPARE(saved.Height(), w->result().Height());
        click(*w, "cmdAufSeite");
        QCOMPARE(placed.count(), 1);
        QCOMPARE(placed[0][0].toString(), QString::fromStdString(home_ + "out/Panorama.jpg"));

        // A bitmap name gets a bitmap; a folder in the way of the file is told.
        prompter_->files.push_back(home_ + "out/Panorama.bmp");
        click(*w, "cmdSpeichern");
        QTRY_VERIFY_WITH_TIMEOUT(!w->isRunning(), 60000);
        QFile bmp(QString::fromStdString(home_ + "out/Panorama.bmp"));
        QVERIFY(bmp.open(QIODevice::ReadOnly));
        QCOMPARE(bmp.read(2), QByteArray("BM"));
        QDir().mkpath(QString::fromStdString(home_ + "out/Ordner.jpg"));
        prompter_->files.push_back(home_ + "out/Ordner.jpg");
        const std::size_t questions = prompter_->asked.size();
        click(*w, "cmdSpeichern");
        QTRY_VERIFY_WITH_TIMEOUT(!w->isRunning(), 60000);
        QCOMPARE(prompter_->asked.size(), questions + 2);
        QCOMPARE(prompter_->asked.back(),
                 "message|Brindlesee|48|Das Bild kann nicht gespeichert werden: " + home_ + "out/Ordner.jpg");
        QCOMPARE(w->savedPath(), home_ + "out/Panorama.bmp");
    }

    void picturesOfDifferentSizesStop() {
        auto w = openWindow(Language::English);
        QImage other(300, 200, QImage::Format_RGB888);
        other.fill(QColor(0x80, 0x90, 0xA0));
        QVERIFY(SaveJPG(editor::dibOfImage(other), home_ + "klein.jpg", 95).ok);
        prompter_->files.push_back(home_ + "klein.jpg");
        click(*w, "cmdHinzufügen");
        construct(*w);
        QVERIFY(!prompter_->asked.empty());
        QCOMPARE(prompter_->asked.back(),
                 std::string("message|Brindlesee|48|Brindlesee panorama check that not all images have the same "
                             "size. Rezise the images or use other images with the same size."));
        QVERIFY(w->records().empty());
        QVERIFY(!child<QPushButton>(*w, "cmdPhase3")->isEnabled());
    }

    void cancelAndCloseStopTheRun() {
        auto w = openWindow();
        click(*w, "cmdPhase1");
        QVERIFY(w->isRunning());
        QVERIFY(child<QPushButton>(*w, "cmdAbbrechen")->isEnabled());
        click(*w, "cmdAbbrechen");
        QTRY_VERIFY_WITH_TIMEOUT(!w->isRunning(), 60000);
        QCOMPARE(child<QLabel>(*w, "lblStatus")->text(), QString("Abgebrochen"));
        QVERIFY(w->records().empty());
        click(*w, "cmdPhase1");
        QVERIFY(w->isRunning());
        w->close();
        QVERIFY(!w->isRunning());
    }

    void seamEditorButtonsRestoreAndCancel() {
        const QImage land = drawLandscape(700, 240);
        const cDIBSection left = editor::dibOfImage(land.copy(0, 0, 400, 240).convertToFormat(QImage::Format_RGB888));
        const cDIBSection right = editor::dibOfImage(land.copy(300, 0, 400, 240).convertToFormat(QImage::Format_RGB888));
        PanoBild record;
        record.xVersatz = 22;
        record.yVersatz = 3;
        record.datei = "a.jpg";
        const PanoBild before = record;
        SeamWindow w(*prompter_, Language::English);
        w.SetPicture(left, right, record, 2);
        QCOMPARE(w.windowTitle(), QString("Brindlesee panoramic editing interface"));
        QCOMPARE(child<QLabel>(w, "lblKoordinaten")->text(),
                 QString("Coordinates:              Actual               Until Now"));
        QCOMPARE(child<QLabel>(w, "lblXAlt")->text(), QString("22"));
        QCOMPARE(child<QLabel>(w, "lblYAlt")->text(), QString("3"));
        QCOMPARE(child<QLabel>(w, "lblIndex")->text(), QString("Seam 2"));
        QCOMPARE(w.overlay().width(), 400 - 22);
        click(w, "cmdXMinus");
        click(w, "cmdXMinus");
        QCOMPARE(child<QLineEdit>(w, "txtX")->text(), QString("20"));
        click(w, "cmdXMinus");  // not below 20
        QCOMPARE(w.x(), 20);
        click(w, "cmdXPlus");
        click(w, "cmdYMinus");
        click(w, "cmdYMinus");
        click(w, "cmdYPlus");
        QCOMPARE(w.x(), 21);
        QCOMPARE(child<QLineEdit>(w, "txtY")->text(), QString("2"));
        QCOMPARE(w.overlay().width(), 400 - 21);
        // The overlay is redrawn for the values: one pixel by hand.
        const QRgb l = land.pixel(21 + 5, 10), r = land.pixel(300 + 5, 10 - 2);
        const QRgb o = w.overlay().pixel(5, 10);
        QVERIFY(std::abs(qRed(o) - (qRed(l) + qRed(r)) / 2) <= 1);
        QVERIFY(std::abs(qBlue(o) - (qBlue(l) + qBlue(r)) / 2) <= 1);
        click(w, "cmdÜbernehmeAlt");
        QCOMPARE(w.x(), 22);
        QCOMPARE(w.y(), 3);
        click(w, "cmdYPlus");
        click(w, "cmdAbbrechen");
        QVERIFY(record == before);
        // Closing the window is Cancel too.
        w.SetPicture(left, right, record, 2);
        w.show();
        click(w, "cmdXPlus");
        w.close();
        QVERIFY(record == before);
        // A drag moves the right picture by the mouse's way in picture pixels.
        w.SetPicture(left, right, record, 2);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QWidget* view = child<QWidget>(w, "Picture1");
        const QPoint c = view->rect().center();
        QTest::mousePress(view, Qt::LeftButton, {}, c);
        QMouseEvent move(QEvent::MouseMove, QPointF(c + QPoint(40, 0)), view->mapToGlobal(QPointF(c + QPoint(40, 0))),
                         Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(view, &move);
        QTest::mouseRelease(view, Qt::LeftButton, {}, c + QPoint(40, 0));
        QVERIFY(w.x() > 22);
        QCOMPARE(w.y(), 3);
        w.close();
        QVERIFY(record == before);
    }

    void readyWritesTheSeamAndComposesAgain() {
        auto w = openWindow();
        construct(*w);
        click(*w, "cmdPhase2");
        QCOMPARE(child<QPushButton>(*w, "cmdNähte")->text(), QString("Fertig"));
        QCOMPARE(child<QPushButton>(*w, "cmdNaht1")->text(), QString("Naht 1 laden"));
        QVERIFY(w->findChild<QPushButton*>("cmdNaht4"));
        QVERIFY(!w->findChild<QPushButton*>("cmdNaht5"));
        const int composed = w->compositions();
        const PanoBild before = w->records()[1];

        bool seen = false;
        onSeamWindow(this, [](SeamWindow& s) {
            QCOMPARE(s.windowTitle(), QString("Brindlesee Panorama-Bearbeitung"));
            QCOMPARE(child<QLabel>(s, "lblIndex")->text(), QString("Naht 2"));
            click(s, "cmdXPlus");
            click(s, "cmdYPlus");
            click(s, "cmdAbbrechen");
        }, &seen);
        click(*w, "cmdNaht2");
        QVERIFY(seen);
        QVERIFY(w->records()[1] == before);
        QCOMPARE(w->compositions(), composed);
        QVERIFY(!w->isRunning());

        seen = false;
        onSeamWindow(this, [](SeamWindow& s) {
            click(s, "cmdXPlus");
            click(s, "cmdXPlus");
            click(s, "cmdYMinus");
            click(s, "cmdFertig");
        }, &seen);
        click(*w, "cmdNaht2");
        QVERIFY(seen);
        QCOMPARE(w->records()[1].xVersatz, before.xVersatz + 2);
        QCOMPARE(w->records()[1].yVersatz, before.yVersatz - 1);
        QTRY_VERIFY_WITH_TIMEOUT(!w->isRunning(), 60000);
        QCOMPARE(w->compositions(), composed + 1);
        QCOMPARE(w->result().Width(), 4 * kStep + kTileWidth + 2);
        click(*w, "cmdNähte");
        QCOMPARE(child<QPushButton>(*w, "cmdNähte")->text(), QString("Nähte anzeigen"));
        QVERIFY(!child<QWidget>(*w, "seamList")->isVisible());
    }

    void settingsReachTheComposition() {
        auto w = openWindow();
        construct(*w);
        const int height = w->result().Height();
        const int composed = w->compositions();
        // Crop keeps only the rows every tile covers: the tiles were cut 13 to 26 rows down.
        child<QCheckBox>(*w, "chkZuschneiden")->setChecked(true);
        click(*w, "cmdNeuZeichnen");
        QTRY_VERIFY_WITH_TIMEOUT(!w->isRunning(), 60000);
        QCOMPARE(w->compositions(), composed + 1);
        QCOMPARE(w->result().Height(), w->options().workHeight - (kTileTop[2] - kTileTop[1]));
        QVERIFY(w->result().Height() < height);
        // A ring needs the closing match: Drawing searches again and lists five seams.
        child<QRadioButton>(*w, "Opt360")->setChecked(true);
        click(*w, "cmdNeuZeichnen");
        QTRY_VERIFY_WITH_TIMEOUT(!w->isRunning(), 120000);
        QCOMPARE(w->compositions(), composed + 2);
        click(*w, "cmdPhase2");
        QVERIFY(w->findChild<QPushButton*>("cmdNaht5"));
        QVERIFY(!w->findChild<QPushButton*>("cmdNaht6"));
    }

    void languageSwitch() {
        MakePanoWindow w({}, home_, *prompter_, Language::German);
        QCOMPARE(child<QPushButton>(w, "cmdPhase1")->text(), QString("1.Erstellen"));
        QCOMPARE(child<QCheckBox>(w, "chkAuffüllen")->text(), QString("Auffüllen"));
        w.setLanguage(Language::English);
        const std::pair<const char*, const char*> english[] = {
            {"cmdPhase1", "1.Construct"}, {"cmdPhase2", "2.Edit"},       {"cmdPhase3", "3.Save"},
            {"cmdNeuZeichnen", "Drawing"}, {"cmdNähte", "Seams"},         {"cmdAnimate", "Animation"},
            {"cmdSpeichern", "Save"},     {"cmdAufSeite", "Place on page"}};
        for (const auto& [name, text] : english) QCOMPARE(child<QPushButton>(w, name)->text(), QString(text));
        QCOMPARE(child<QRadioButton>(w, "optPanoNormal")->text(), QString("Simple Panorma"));
        QCOMPARE(child<QRadioButton>(w, "Opt360")->text(), QString("360 ° Panorma"));
        QCOMPARE(child<QCheckBox>(w, "chkAuffüllen")->text(), QString("Padding"));
        QCOMPARE(child<QCheckBox>(w, "chkZuschneiden")->text(), QString("Crop"));
        QCOMPARE(child<QCheckBox>(w, "chkYversatzNivelieren")->text(), QString("Y offset balancing"));
        QCOMPARE(child<QCheckBox>(w, "chkErgebnisAnzeigen")->text(), QString("  Display the result"));
        QVERIFY(child<QCheckBox>(w, "chkHelligkeit")->isChecked());
        SeamWindow s(*prompter_, Language::German);
        QCOMPARE(child<QPushButton>(s, "cmdFertig")->text(), QString("Fertig"));
        s.setLanguage(Language::English);
        QCOMPARE(child<QPushButton>(s, "cmdFertig")->text(), QString("Ready"));
        QCOMPARE(child<QPushButton>(s, "cmdAbbrechen")->text(), QString("Cancel"));
    }

    void screenshots() {
        const QByteArray out = qgetenv("BRINDLESEE_SCREENSHOTS");
        if (out.isEmpty()) QSKIP("BRINDLESEE_SCREENSHOTS not set");
        auto w = openWindow();
        construct(*w);
        click(*w, "cmdPhase2");
        for (Language lang : {Language::German, Language::English}) {
            const QString suffix = lang == Language::German ? "de" : "en";
            w->setLanguage(lang);
            QTest::qWait(200);
            w->grab().save(QString("%1/make-pano-%2.png").arg(QString(out), suffix));
            bool seen = false;
            onSeamWindow(this, [&](SeamWindow& s) {
                click(s, "cmdXPlus");
                click(s, "cmdXPlus");
                click(s, "cmdXPlus");
                QTest::qWait(200);
                s.grab().save(QString("%1/seam-window-%2.png").arg(QString(out), suffix));
            }, &seen);
            click(*w, "cmdNaht2");
            QVERIFY(seen);
        }
    }
};

QTEST_MAIN(PanoWindowsTest)
#include "pano_windows_test.moc"
