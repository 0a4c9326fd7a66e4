// The resize and split windows offscreen: their fields, the tied percents,
// runs that write the files off the GUI thread, and a cancel during a run.
// `screenshots` saves both windows in German and English to
// $BRINDLESEE_SCREENSHOTS (run by hand under Xvfb).
#include <QCheckBox>
#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QMetaObject>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <filesystem>

#include "image/picture_io.h"
#include "studio/resize_window.h"
#include "studio/split_window.h"
#include "support/evening_photo.h"
#include "support/scripted_prompter.h"

using namespace brindle;
using brindle::studio::ResizeWindow;
using brindle::studio::SplitWindow;

namespace {

void drawPhoto(const QString& path, int width = 640, int height = 420) {
    QVERIFY(test::eveningPhoto(width, height).save(path));
}

std::string file(const QTemporaryDir& dir, const char* name) { return dir.filePath(name).toStdString(); }

QSize pictureSize(const std::string& path) {
    const PictureFile f = LoadPictureFile(path);
    return f.picture ? QSize(f.picture.Handle()->Width(), f.picture.Handle()->Height()) : QSize();
}

// Answers like the scripted prompter, and on its first message presses the
// window's cancel button on the GUI thread (as a user would while the box
// is up), so the run is cancelled at a known point.
class CancellingPrompter : public test::ScriptedPrompter {
  public:
    QPushButton* cancel = nullptr;
    int message(const std::string& text, int flags, const std::string& title) override {
        const int answer = ScriptedPrompter::message(text, flags, title);
        if (cancel && QThread::currentThread() != cancel->thread()) {
            QMetaObject::invokeMethod(cancel, [this] { cancel->click(); }, Qt::BlockingQueuedConnection);
            cancel = nullptr;
        }
        return answer;
    }
};

template <typename T>
T* child(QWidget* window, const char* name) {
    T* w = window->findChild<T*>(QString::fromUtf8(name));
    if (!w) qWarning("missing control %s", name);
    return w;
}

QString shown(QAbstractButton* b) { return b->text().remove('&'); }
QString shown(QLabel* l) { return l->text().remove('&'); }

}  // namespace

class ResizeSplitWindowsTest : public QObject {
    Q_OBJECT
  private:
    QTemporaryDir home_;

  private slots:
    void init() {
        QVERIFY(home_.isValid());
        qputenv("BRINDLESEE_HOME", home_.path().toUtf8());
    }

    void resizeFieldsAndTiedPercents() {
        test::ScriptedPrompter prompter;
        ResizeWindow w({"/x/a.jpg", "/x/b.png"}, prompter, Language::German);
        auto* pixelW = child<QSpinBox>(&w, "txtBreitePixel");
        auto* pixelH = child<QSpinBox>(&w, "txtHöhePixel");
        auto* percentW = child<QSpinBox>(&w, "txtBreitePozent");
        auto* percentH = child<QSpinBox>(&w, "txtHöheProzent");
        auto* alike = child<QCheckBox>(&w, "chkProzgleich");
        auto* overwrite = child<QCheckBox>(&w, "chkOriginaleÜberschreiben");
        auto* byPercent = child<QRadioButton>(&w, "optGröße1");
        auto* run = child<QPushButton>(&w, "cmdAusführen");
        QVERIFY(pixelW && pixelH && percentW && percentH && alike && overwrite && byPercent && run);
        QVERIFY(child<QGroupBox>(&w, "optGröße"));
        QCOMPARE(child<QListWidget>(&w, "listeAlleBilder")->count(), 2);

        // By pixels at first: only the pixel boxes take input.
        QVERIFY(pixelW->isEnabled() && !percentW->isEnabled() && !alike->isEnabled());
        byPercent->click();
        QVERIFY(!pixelW->isEnabled() && percentW->isEnabled() && percentH->isEnabled());

        // Tied: either box copies its value to the other.
        QVERIFY(alike->isChecked());
        percentW->setValue(30);
        QCOMPARE(percentH->value(), 30);
        percentH->setValue(70);
        QCOMPARE(percentW->value(), 70);
        alike->click();
        percentW->setValue(20);
        QCOMPARE(percentH->value(), 70);
        QCOMPARE(w.options().heightPercent, 70);
        // Tying again makes the height follow the width.
        alike->click();
        QCOMPARE(percentH->value(), 20);
        const studio::ResizeOptions o = w.options();
        QVERIFY(o.byPercent && o.percentsAlike && !o.overwriteOriginals);
        QCOMPARE(o.widthPercent, 20);

        QCOMPARE(w.windowTitle(), QString("Bildgröße ändern"));
        QCOMPARE(shown(run), QString("Ausführen"));
        QCOMPARE(child<QLabel>(&w, "lblZiel")->text(),
                 QString("Die neuen Bilder kommen neben die Originale: a_20pct.jpg"));
        w.setLanguage(Language::English);
        QCOMPARE(w.windowTitle(), QString("Resize Pictures"));
        QCOMPARE(shown(run), QString("Run"));
        QCOMPARE(shown(alike), QString("Both percentages alike"));
        QCOMPARE(shown(overwrite), QString("Overwrite originals"));
        overwrite->click();
        QCOMPARE(child<QLabel>(&w, "lblZiel")->text(), QString("The originals are replaced by the new pictures."));
    }

    void resizeRunWritesEveryPictureAndTellsHowMany() {
        QTemporaryDir dir;
        drawPhoto(dir.filePath("see.png"));
        drawPhoto(dir.filePath("berg.jpg"), 320, 200);
        test::ScriptedPrompter prompter;
        ResizeWindow w({file(dir, "see.png"), file(dir, "berg.jpg")}, prompter, Language::German);
        w.show();
        child<QSpinBox>(&w, "txtBreitePixel")->setValue(64);
        child<QSpinBox>(&w, "txtHöhePixel")->setValue(48);
        QTest::mouseClick(child<QPushButton>(&w, "cmdAusführen"), Qt::LeftButton);
        QCOMPARE(prompter.asked, std::vector<std::string>{"message|Brindlesee|64|Geschriebene Bilder: 2"});
        QCOMPARE(pictureSize(file(dir, "see_64x48.png")), QSize(64, 48));
        QCOMPARE(pictureSize(file(dir, "berg_64x48.jpg")), QSize(64, 48));
        QCOMPARE(pictureSize(file(dir, "see.png")), QSize(640, 420));
        // A complete run closes the window.
        QVERIFY(!w.isVisible());
        QCOMPARE(w.result(), int(QDialog::Accepted));
    }

    void resizeCancelStopsTheRunAndKeepsTheWindow() {
        QTemporaryDir dir;
        // A folder with a picture's name cannot be read, and the reader says why.
        std::vector<std::string> pictures{file(dir, "kaputt.png")};
        QVERIFY(QDir(dir.path()).mkdir("kaputt.png"));
        for (int i = 0; i < 8; ++i) {
            const QString name = QString("bild%1.png").arg(i);
            drawPhoto(dir.filePath(name), 320, 210);
            pictures.push_back(dir.filePath(name).toStdString());
        }
        CancellingPrompter prompter;
        ResizeWindow w(pictures, prompter, Language::English);
        w.show();
        prompter.cancel = child<QPushButton>(&w, "cmdAbbrechen");
        child<QRadioButton>(&w, "optGröße1")->click();
        QTest::mouseClick(child<QPushButton>(&w, "cmdAusführen"), Qt::LeftButton);
        QVERIFY(w.lastResult().cancelled);
        QVERIFY(w.lastResult().written.size() < 8);
        QVERIFY(prompter.asked.size() >= 2);
        QCOMPARE(QString::fromStdString(prompter.asked.back()),
                 QString("message|Brindlesee|64|Cancelled. Pictures written: %1\rPictures that could not be read: 1")
                     .arg(w.lastResult().written.size()));
        QVERIFY(w.isVisible());
        QVERIFY(!w.running());
        QVERIFY(child<QPushButton>(&w, "cmdAusführen")->isEnabled());
        QCOMPARE(shown(child<QPushButton>(&w, "cmdAbbrechen")), QString("Cancel"));
    }

    void splitFieldsCaptionsAndThePreviewText() {
        QTemporaryDir dir;
        drawPhoto(dir.filePath("see.png"));
        test::ScriptedPrompter prompter;
        SplitWindow w({file(dir, "see.png"), file(dir, "fehlt.png")}, prompter, Language::German);
        auto* rows = child<QSpinBox>(&w, "txtZeilen");
        auto* columns = child<QSpinBox>(&w, "txtSpalten");
        auto* order = child<QGroupBox>(&w, "optReihenfolge");
        auto* byColumn = child<QRadioButton>(&w, "optReihenfolge1");
        auto* list = child<QListWidget>(&w, "listeAlleBilder");
        auto* tiles = child<QLabel>(&w, "lblTeile");
        QVERIFY(rows && columns && order && byColumn && list && tiles);
        QCOMPARE(list->count(), 2);
        QCOMPARE(w.windowTitle(), QString("Bilder teilen"));
        QCOMPARE(child<QGroupBox>(&w, "fraAnzahl")->title(), QString("Anzahl"));
        QCOMPARE(order->title(), QString("Reihenfolge"));
        rows->setValue(2);
        columns->setValue(3);
        QCOMPARE(tiles->text(), QString("6 Teile von 213 x 210 Pixel:\nseeNr1.png bis seeNr6.png"));
        columns->setValue(999);
        QCOMPARE(tiles->text(), QString("Das Bild ist zu klein für 2 x 999 Teile."));
        columns->setValue(3);
        byColumn->click();
        QCOMPARE(w.options().order, studio::TileOrder::ColumnByColumn);

        w.setLanguage(Language::English);
        QCOMPARE(w.windowTitle(), QString("Split Images"));
        QCOMPARE(child<QGroupBox>(&w, "fraAnzahl")->title(), QString("Number"));
        QCOMPARE(order->title(), QString("Order"));
        QCOMPARE(shown(child<QPushButton>(&w, "cmdAbbrechen")), QString("Cancel"));
        QCOMPARE(shown(child<QPushButton>(&w, "cmdSpeichern")), QString("Save"));
        QCOMPARE(tiles->text(), QString("6 tiles of 213 x 210 pixels:\nseeNr1.png to seeNr6.png"));
        bool columnsCaption = false;
        for (QLabel* l : w.findChildren<QLabel*>()) columnsCaption = columnsCaption || shown(l) == "Columns: ";
        QVERIFY(columnsCaption);
        // A picture that cannot be read shows no grid and says so.
        list->setCurrentRow(1);
        QCOMPARE(tiles->text(), QString());
        QVERIFY(prompter.asked.empty());
    }

    void splitSaveWritesTheTilesOfEveryPicture() {
        QTemporaryDir dir;
        drawPhoto(dir.filePath("see.png"));
        drawPhoto(dir.filePath("berg.jpg"), 300, 200);
        test::ScriptedPrompter prompter;
        SplitWindow w({file(dir, "see.png"), file(dir, "berg.jpg")}, prompter, Language::German);
        w.show();
        child<QSpinBox>(&w, "txtZeilen")->setValue(2);
        child<QSpinBox>(&w, "txtSpalten")->setValue(3);
        QTest::mouseClick(child<QPushButton>(&w, "cmdSpeichern"), Qt::LeftButton);
        QCOMPARE(prompter.asked, std::vector<std::string>{"message|Brindlesee|64|Geschriebene Teilbilder: 12"});
        for (int n = 1; n <= 6; ++n) {
            QCOMPARE(pictureSize(file(dir, ("seeNr" + std::to_string(n) + ".png").c_str())), QSize(213, 210));
            QCOMPARE(pictureSize(file(dir, ("bergNr" + std::to_string(n) + ".jpg").c_str())), QSize(100, 100));
        }
        QVERIFY(!w.isVisible());
    }

    void splitCancelStopsAfterTheCurrentPicture() {
        QTemporaryDir dir;
        QVERIFY(QFile(dir.filePath("kaputt.png")).open(QIODevice::WriteOnly));
        drawPhoto(dir.filePath("see.png"));
        CancellingPrompter prompter;
        SplitWindow w({file(dir, "kaputt.png"), file(dir, "see.png")}, prompter, Language::German);
        w.show();
        prompter.cancel = child<QPushButton>(&w, "cmdAbbrechen");
        QTest::mouseClick(child<QPushButton>(&w, "cmdSpeichern"), Qt::LeftButton);
        QVERIFY(w.lastResult().cancelled);
        QVERIFY(!std::filesystem::exists(file(dir, "seeNr1.png")));
        QCOMPARE(QString::fromStdString(prompter.asked.back()),
                 QString("message|Brindlesee|64|Abgebrochen. Geschriebene Teilbilder: 0"));
        QVERIFY(w.isVisible());
    }

    // Not registered with CTest: run by hand under Xvfb with
    // BRINDLESEE_SCREENSHOTS set to a folder.
    void screenshots() {
        const QString out = qEnvironmentVariable("BRINDLESEE_SCREENSHOTS");
        if (out.isEmpty()) QSKIP("BRINDLESEE_SCREENSHOTS is not set");
        QTemporaryDir dir;
        drawPhoto(dir.filePath("Abendsee.jpg"));
        drawPhoto(dir.filePath("Bergblick.png"), 480, 320);
        const std::vector<std::string> pictures{file(dir, "Abendsee.jpg"), file(dir, "Bergblick.png")};
        test::ScriptedPrompter prompter;
        for (Language lang : {Language::German, Language::English}) {
            const QString suffix = lang == Language::German ? "de" : "en";
            ResizeWindow resize(pictures, prompter, lang);
            resize.show();
            QVERIFY(QTest::qWaitForWindowExposed(&resize));
            QVERIFY(resize.grab().save(out + "/resize_" + suffix + ".png"));
            SplitWindow split(pictures, prompter, lang);
            split.findChild<QSpinBox*>("txtSpalten")->setValue(3);
            split.show();
            QVERIFY(QTest::qWaitForWindowExposed(&split));
            QVERIFY(split.grab().save(out + "/split_" + suffix + ".png"));
        }
    }
};

QTEST_MAIN(ResizeSplitWindowsTest)
#include "resize_split_windows_test.moc"
