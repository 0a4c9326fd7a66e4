// The photo design window offscreen: lines from the panels, the list's
// buttons, list files, the test view against the chain run by hand, the
// batch over two pictures and the language switch. `screenshots` saves
// the window in both languages (run by hand under Xvfb).
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include "editor/qimage_dib.h"
#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "studio/design_chain.h"
#include "studio/design_panels.h"
#include "studio/design_window.h"
#include "studio/picture_view.h"
#include "support/scripted_prompter.h"

using namespace brindle;
using brindle::studio::DesignWindow;

namespace {

// An evening landscape with a face in front: sky, sun, hills, a lake and
// a head with red eyes, drawn here.
QImage drawPhoto(int w, int h) {
    QImage img(w, h, QImage::Format_RGB32);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(w / 640.0, h / 420.0);
    QLinearGradient sky(0, 0, 0, 260);
    sky.setColorAt(0, QColor(0x2B, 0x4C, 0x8C));
    sky.setColorAt(0.7, QColor(0xF2, 0xA6, 0x5A));
    sky.setColorAt(1, QColor(0xF7, 0xD0, 0x8A));
    p.fillRect(QRect(0, 0, 640, 420), sky);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0xFF, 0xE9, 0xA8));
    p.drawEllipse(QPointF(500, 90), 34, 34);
    p.setBrush(QColor(0x4A, 0x3C, 0x5E));
    p.drawPolygon(QPolygonF({QPointF(0, 260), QPointF(120, 150), QPointF(230, 230), QPointF(360, 120),
                             QPointF(520, 240), QPointF(640, 180), QPointF(640, 270), QPointF(0, 270)}));
    QLinearGradient lake(0, 260, 0, 420);
    lake.setColorAt(0, QColor(0xC9, 0x8A, 0x5A));
    lake.setColorAt(1, QColor(0x1D, 0x35, 0x57));
    p.fillRect(QRect(0, 262, 640, 158), lake);
    p.setBrush(QColor(0x6B, 0x3E, 0x26));
    p.drawEllipse(QPointF(220, 250), 92, 118);
    p.setBrush(QColor(0xE8, 0xB8, 0x96));
    p.drawEllipse(QPointF(220, 262), 74, 96);
    p.setBrush(Qt::white);
    p.drawEllipse(QPointF(192, 245), 14, 8);
    p.drawEllipse(QPointF(248, 245), 14, 8);
    p.setBrush(QColor(0xD0, 0x20, 0x20));
    p.drawEllipse(QPointF(192, 245), 6, 6);
    p.drawEllipse(QPointF(248, 245), 6, 6);
    p.setBrush(QColor(0xB0, 0x50, 0x50));
    p.drawEllipse(QPointF(220, 305), 22, 8);
    p.end();
    return img;
}

// The first differing pixel, or an empty string when both are the same.
QString firstDifference(const QImage& a, const QImage& b) {
    if (a.size() != b.size())
        return QString("size %1x%2 against %3x%4").arg(a.width()).arg(a.height()).arg(b.width()).arg(b.height());
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            if (a.pixel(x, y) != b.pixel(x, y))
                return QString("pixel %1,%2: %3 against %4").arg(x).arg(y).arg(a.pixel(x, y), 0, 16).arg(b.pixel(x, y), 0, 16);
    return {};
}

std::vector<std::string> listOf(std::initializer_list<const char*> lines) {
    return std::vector<std::string>(lines.begin(), lines.end());
}

}  // namespace

class DesignWindowTest : public QObject {
    Q_OBJECT

  private:
    QTemporaryDir* dir_ = nullptr;
    std::string home_;
    test::ScriptedPrompter prompter_;

    template <class T>
    static T* find(QWidget& w, const char* name) {
        T* found = w.findChild<T*>(QString::fromUtf8(name));
        if (!found) qWarning("no child %s", name);
        return found;
    }
    static void click(QWidget& w, const char* name) {
        auto* b = find<QPushButton>(w, name);
        QVERIFY(b);
        QVERIFY2(b->isEnabled(), name);
        b->click();
    }
    static bool waitIdle(DesignWindow& w) {
        QTest::qWait(0);
        return QTest::qWaitFor([&] { return !w.busy(); }, 60000);
    }
    std::string savePng(const char* name, const QImage& img) {
        const std::string path = home_ + name;
        img.save(QString::fromStdString(path));
        return path;
    }

  private slots:
    void init() {
        dir_ = new QTemporaryDir;
        home_ = dir_->path().toStdString() + "/";
        qputenv("BRINDLESEE_HOME", QByteArray::fromStdString(home_));
        prompter_ = test::ScriptedPrompter();
    }
    void cleanup() {
        delete dir_;
        dir_ = nullptr;
    }

    void panelsMakeTheirLines() {
        DesignWindow w({savePng("a.png", drawPhoto(64, 42))}, prompter_, Language::German);
        QCOMPARE(w.wizardStep(), 1);
        QVERIFY(!find<QPushButton>(w, "cmdFertig")->isEnabled());
        QVERIFY(w.chooseDesign("Kontrast"));
        QCOMPARE(w.wizardStep(), 2);
        QCOMPARE(find<QLabel>(w, "lblSchritt")->text(), QString("2) Parameter auswählen (Kontrast)"));
        find<QSpinBox>(w, "txtKontrast")->setValue(35);
        QCOMPARE(find<QSlider>(w, "sldKontrast")->value(), 35);
        click(w, "cmdWeiter");
        QCOMPARE(w.wizardStep(), 3);
        QCOMPARE(find<QLabel>(w, "lblSchritt")->text(), QString("3) Alle Bildanpassungen zur Liste hinzufügen"));
        click(w, "cmdKontrastÜbern");
        QVERIFY(w.chooseDesign("Emboss"));
        click(w, "cmdEmbossÜbern");
        QCOMPARE(w.lines(), listOf({"Kontrast(35)", "Emboss"}));
        QVERIFY(find<QPushButton>(w, "cmdFertig")->isEnabled());

        QVERIFY(w.chooseDesign("Sättigung"));
        find<QCheckBox>(w, "chkRotColorInt")->setChecked(true);
        find<QCheckBox>(w, "chkBlauColorInt")->setChecked(true);
        click(w, "cmdSättigungÜbern");
        QVERIFY(w.chooseDesign("Drehen"));
        find<QRadioButton>(w, "opt90GradLinks")->setChecked(true);
        click(w, "cmdDrehenÜbern");
        QVERIFY(w.chooseDesign("Rahmen"));
        w.findChild<studio::DesignPanels*>()->setFrameColour(0x0000FF);
        click(w, "cmdRahmenÜbern");
        QVERIFY(w.chooseDesign("Neon"));
        QCOMPARE(find<QLabel>(w, "LblParameter1")->text(), QString("Modus"));
        find<QSpinBox>(w, "txtParameter1")->setValue(2);
        find<QSpinBox>(w, "txtParameter2")->setValue(30);
        click(w, "cmdAllgemeinÜbern");
        QVERIFY(w.chooseDesign("Einfärben"));
        QCOMPARE(find<QLabel>(w, "lblParameter2")->text(), QString("Farberhaltung"));
        QCOMPARE(find<QSpinBox>(w, "txtParameter1")->minimum(), -100);
        find<QSpinBox>(w, "txtParameter1")->setValue(-30);
        click(w, "cmdAllgemeinÜbern");
        QVERIFY(w.chooseDesign("3D Effekt"));
        QVERIFY(find<QSlider>(w, "sldParameter1")->isHidden());
        QVERIFY(find<QSlider>(w, "sldParameter2")->isHidden());
        click(w, "cmdAllgemeinÜbern");
        QVERIFY(w.chooseDesign("Größe"));
        find<QRadioButton>(w, "optGrößeProzent")->setChecked(true);
        find<QSpinBox>(w, "txtBreitePozent")->setValue(25);
        click(w, "cmdGrößeÜbern");
        QCOMPARE(QString::fromStdString(w.lines().back()), QString("Größe(800,600,25,50,1)"));
        QCOMPARE(w.lines(), listOf({"Kontrast(35)", "Emboss", "Color(120,5)", "Drehen(-90)", "Rahmen(50,50,20,255,)",
                                    "Neon(30,2)", "Einfärben(-30,50,3170448)", "3D Effekt(10)", "Größe(800,600,25,50,1)"}));
    }

    void listUpDownRemoveAndDoubleClick() {
        DesignWindow w({}, prompter_, Language::English);
        auto* list = find<QListWidget>(w, "List1");
        w.setLines(listOf({"A", "B", "C", "D"}));
        list->setCurrentRow(2);
        click(w, "cmdHoch");
        QCOMPARE(w.lines(), listOf({"A", "C", "B", "D"}));
        QCOMPARE(list->currentRow(), 1);
        click(w, "cmdHoch");
        click(w, "cmdHoch");  // already first: stays
        QCOMPARE(w.lines(), listOf({"C", "A", "B", "D"}));
        list->setCurrentRow(1);
        click(w, "cmdRunter");
        click(w, "cmdRunter");
        click(w, "cmdRunter");  // already last: stays
        QCOMPARE(w.lines(), listOf({"C", "B", "D", "A"}));
        list->setCurrentRow(0);
        click(w, "cmdLöschen");
        QCOMPARE(w.lines(), listOf({"B", "D", "A"}));
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        const QRect second = list->visualItemRect(list->item(1));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, second.center());
        QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, second.center());
        QCOMPARE(w.lines(), listOf({"B", "A"}));
    }

    void saveThenLoadGivesTheSameLines() {
        DesignWindow w({}, prompter_, Language::German);
        const auto lines = listOf({"Schärfen(5)", "Rahmen(50,50,20,0,)", "3D Effekt(10)", "Größe(800,600,50,50,0)"});
        w.setLines(lines);
        prompter_.files.push_back(home_ + "Abend");
        click(w, "cmdListeSpeichern");
        QVERIFY(QFile::exists(QString::fromStdString(home_ + "Abend.bsd")));
        QFile file(QString::fromStdString(home_ + "Abend.bsd"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("Sch\xE4rfen(5)\r\nRahmen(50,50,20,0,)\r\n3D Effekt(10)\r\nGr\xF6\xDF" "e(800,600,50,50,0)\r\n"));
        w.setLines({"Emboss"});
        prompter_.files.push_back(home_ + "Abend.bsd");
        click(w, "cmdListeLaden");
        QCOMPARE(w.lines(), lines);
        QCOMPARE(prompter_.asked.size(), std::size_t(2));
        QVERIFY(prompter_.asked[0].starts_with("save|1||Design.bsd"));
        QVERIFY(prompter_.asked[1].starts_with("open|1|"));
        // A file that is no list leaves the lines and says why.
        QDir().mkpath(QString::fromStdString(home_ + "Ordner.bsd"));
        prompter_.files.push_back(home_ + "Ordner.bsd");
        click(w, "cmdListeLaden");
        QCOMPARE(w.lines(), lines);
        QVERIFY(prompter_.asked.back().starts_with("message|Fehler|48|Die Design-Liste konnte nicht gelesen werden: " +
                                                   home_ + "Ordner.bsd"));
    }

    void testViewShowsTheChainsResult() {
        const QImage photo = drawPhoto(120, 80);
        DesignWindow w({savePng("b.png", photo)}, prompter_, Language::English);
        auto* picture1 = find<studio::PictureView>(w, "Picture1");
        auto* picture2 = find<studio::PictureView>(w, "Picture2");
        QCOMPARE(firstDifference(picture1->image().convertToFormat(QImage::Format_RGB32), photo), QString());
        const auto lines = listOf({"Kontrast(50)", "Emboss", "Drehen(+90)", "Größe(10,10,50,50,0)"});
        w.setLines(lines);
        QSignalSpy finished(&w, &DesignWindow::workFinished);
        click(w, "cmdListeTest");
        QVERIFY(waitIdle(w));
        QCOMPARE(finished.count(), 1);
        cDIBSection expected = w.testPicture();
        studio::StepEnv env;
        env.mode = studio::ChainMode::TestView;
        studio::applyChain(expected, lines, env);
        QCOMPARE(expected.Width(), 80);
        QCOMPARE(expected.Height(), 120);
        QCOMPARE(firstDifference(picture2->image(), editor::imageOfDib(expected)), QString());
        QCOMPARE(find<QProgressBar>(w, "ProgressBar1")->value(), 100);
        // One panel's test shows that step alone on the original.
        QVERIFY(w.chooseDesign("Spiegeln"));
        click(w, "cmdSpiegelnTest");
        QVERIFY(waitIdle(w));
        QCOMPARE(firstDifference(picture2->image().convertToFormat(QImage::Format_RGB32), photo.mirrored(true, false)),
                 QString());
        // With the box ticked a moved value shows at once.
        find<QCheckBox>(w, "chkAutoTest")->setChecked(true);
        QVERIFY(w.chooseDesign("Drehen"));
        find<QRadioButton>(w, "opt90GradLinks")->setChecked(true);
        QVERIFY(waitIdle(w));
        QCOMPARE(picture2->image().size(), QSize(80, 120));
        // The wave animation turns the phase round and stops when another design is chosen.
        QVERIFY(w.chooseDesign("Wave"));
        auto* phase = find<QSlider>(w, "SldWave");
        phase->setValue(10);
        QVERIFY(waitIdle(w));
        find<QCheckBox>(w, "chkWaveAnimation")->setChecked(true);
        QVERIFY(find<QTimer>(w, "tmrWave")->isActive());
        QTRY_COMPARE_WITH_TIMEOUT(phase->value(), 0, 20000);
        QVERIFY(w.chooseDesign("Kontrast"));
        QTRY_VERIFY_WITH_TIMEOUT(!find<QTimer>(w, "tmrWave")->isActive(), 20000);
        QVERIFY(!find<QCheckBox>(w, "chkWaveAnimation")->isChecked());
        QVERIFY(waitIdle(w));
    }

    void batchWritesTheExpectedFiles() {
        std::vector<std::string> sources;
        std::vector<cDIBSection> originals;
        for (const char* name : {"eins", "zwei"}) {
            const std::string path = home_ + name + ".jpg";
            QVERIFY(SaveJPG(editor::dibOfImage(drawPhoto(90, 60)), path, 90).ok);
            cDIBSection read;
            QVERIFY(LoadJPG(read, path));
            originals.push_back(std::move(read));
            sources.push_back(path);
        }
        DesignWindow w(sources, prompter_, Language::English);
        const auto lines = listOf({"Kontrast(30)", "Größe(10,10,50,50,1)"});
        w.setLines(lines);
        QDir().mkpath(QString::fromStdString(home_ + "aus"));
        prompter_.files.push_back(home_ + "aus");
        click(w, "cmdVerzeichnis");
        QCOMPARE(find<QLineEdit>(w, "txtSpeichernVerzeichnis")->text(), QString::fromStdString(home_ + "aus"));
        find<QLineEdit>(w, "txtSpeichernNameAnhängen")->setText("_neu");
        find<QComboBox>(w, "cmbDateityp")->setCurrentText("*.png");
        click(w, "cmdFertig");
        QVERIFY(waitIdle(w));
        for (std::size_t i = 0; i < 2; ++i) {
            const std::string target = home_ + "aus/" + (i == 0 ? "eins" : "zwei") + "_neu.png";
            QVERIFY2(QFile::exists(QString::fromStdString(target)), target.c_str());
            cDIBSection expected = originals[i];
            studio::StepEnv env;
            env.mode = studio::ChainMode::Batch;
            studio::applyChain(expected, lines, env);
            QCOMPARE(expected.Width(), 45);
            const QImage written(QString::fromStdString(target));
            QCOMPARE(firstDifference(written.convertToFormat(QImage::Format_RGB888), editor::imageOfDib(expected)), QString());
        }
        const std::string summary = "Done: 2 picture(s) saved, 0 skipped, 0 failed.";
        QCOMPARE(QString::fromStdString(prompter_.asked.back()),
                 QString::fromStdString("message|Assistant Photo Design|64|" + summary));
        QCOMPARE(find<QLabel>(w, "lblStatus")->text(), QString::fromStdString(summary));
        // The last finished picture shows in the result view.
        QCOMPARE(find<studio::PictureView>(w, "Picture2")->image().size(), QSize(45, 30));
        // The originals are untouched.
        cDIBSection again;
        QVERIFY(LoadJPG(again, sources[0]));
        QCOMPARE(firstDifference(editor::imageOfDib(again), editor::imageOfDib(originals[0])), QString());
    }

    void languageSwitchRetranslates() {
        DesignWindow w({}, prompter_, Language::German);
        auto* tree = find<QTreeWidget>(w, "TrvFotoDesign");
        QCOMPARE(w.windowTitle(), QString("Assistent Fotodesign"));
        QCOMPARE(find<QLabel>(w, "lblSchritt")->text(), QString("1) Bilddesign auswählen "));
        QCOMPARE(tree->topLevelItem(0)->text(0), QString("Farbe und Licht"));
        QCOMPARE(find<QPushButton>(w, "cmdListeTest")->text(), QString("Ganze Liste testen"));
        QCOMPARE(find<QPushButton>(w, "cmdOriginalEinpassen")->text(), QString("Einpassen"));
        QVERIFY(w.chooseDesign("Einfärben"));
        w.setLanguage(Language::English);
        QCOMPARE(w.windowTitle(), QString("Assistant Photo Design"));
        QCOMPARE(find<QLabel>(w, "lblSchritt")->text(), QString("2) Select a parameter (Tint)"));
        QCOMPARE(tree->topLevelItem(0)->text(0), QString("Colour and light"));
        QCOMPARE(find<QPushButton>(w, "cmdListeTest")->text(), QString("Test the whole list"));
        QCOMPARE(find<QPushButton>(w, "cmdOriginalEinpassen")->text(), QString("Adapt"));
        QCOMPARE(find<QPushButton>(w, "cmdOriginal1zu1")->text(), QString("1:1"));
        QCOMPARE(find<QLabel>(w, "lblParameter2")->text(), QString("Hold Colors"));
        QCOMPARE(find<QTabWidget>(w, "tabSeiten")->tabText(1), QString("Batch run"));
        click(w, "cmdZurück");
        QCOMPARE(find<QLabel>(w, "lblSchritt")->text(), QString("1) Select Image Design "));
        w.setLanguage(Language::German);
        QCOMPARE(find<QLabel>(w, "lblParameter2")->text(), QString("Farberhaltung"));
        QCOMPARE(find<QTabWidget>(w, "tabSeiten")->tabText(1), QString("Stapelverarbeitung"));
    }

    void screenshots() {
        const QByteArray out = qgetenv("BRINDLESEE_SCREENSHOTS");
        if (out.isEmpty()) QSKIP("BRINDLESEE_SCREENSHOTS not set");
        const std::string photo = savePng("Abend am See.png", drawPhoto(1280, 840));
        const std::string second = savePng("Hafen.png", drawPhoto(640, 420).mirrored(true, false));
        for (Language language : {Language::German, Language::English}) {
            const QString suffix = language == Language::German ? "de" : "en";
            DesignWindow w({photo, second}, prompter_, language);
            w.show();
            QVERIFY(QTest::qWaitForWindowExposed(&w));
            w.setLines(listOf({"Kontrast(20)", "Color(130,0)", "Schärfen(5)", "Rahmen(60,60,24,16777215,)"}));
            QVERIFY(w.chooseDesign("Rahmen"));
            click(w, "cmdListeTest");
            QVERIFY(waitIdle(w));
            QTest::qWait(200);
            w.grab().save(QString("%1/design-window-frame-%2.png").arg(QString(out), suffix));
            QVERIFY(w.chooseDesign("Einfärben"));
            QTest::qWait(100);
            w.grab().save(QString("%1/design-window-general-%2.png").arg(QString(out), suffix));
            find<QTabWidget>(w, "tabSeiten")->setCurrentIndex(1);
            QTest::qWait(200);
            w.grab().save(QString("%1/design-window-batch-%2.png").arg(QString(out), suffix));
        }
    }
};

QTEST_MAIN(DesignWindowTest)
#include "design_window_test.moc"
