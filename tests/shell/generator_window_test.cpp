// FrmGenerator through the main window: the chosen pages are made in their
// places, Cancel makes nothing, and a stop during the run keeps what was made.
#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QTimer>

#include "editor/qt_text_metrics.h"
#include "shell/frm_generator.h"
#include "window_fixture.h"

using namespace brindle;
using shell::FrmGenerator;

namespace {

// Runs `fn` on the generator once it is shown modally.
void whenGeneratorShown(const std::function<void(FrmGenerator&)>& fn) {
    QTimer::singleShot(0, [fn] {
        auto* dialog = qobject_cast<FrmGenerator*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        fn(*dialog);
        // A check that failed inside left the dialog open: close it, so the
        // test ends with its failure instead of waiting for ever.
        if (QApplication::activeModalWidget() == dialog && !dialog->property("running").toBool()) dialog->reject();
    });
}

QAbstractButton* button(FrmGenerator& d, const char* name) { return qobject_cast<QAbstractButton*>(d.control(name)); }

std::vector<std::string> titles(Session& s) {
    std::vector<std::string> out;
    for (int i = 1; i <= s.album().pages.upper(); ++i) out.push_back(s.album().pages[i].title);
    return out;
}

}  // namespace

class GeneratorWindowTest : public QObject {
    Q_OBJECT
    test::WindowFixture f;

private slots:
    void init() { f.setUp(); }
    void cleanup() { f.tearDown(); }

    void okMakesTheChosenPagesInTheirPlaces() {
        shell::MainWindow& w = f.start({f.albumPath()});
        Session& s = w.session();
        QVERIFY(w.action("mnuSpezialseiten")->isEnabled());
        const std::string folder = f.home + "Album/";
        f.prompter->files.push_back(folder + "Inhalt.apg");  // where the contents page is saved
        whenGeneratorShown([](FrmGenerator& d) {
            QCOMPARE(d.windowTitle(), QString("Brindlesee - Generator"));
            QVERIFY(!button(d, "OptInhalt0")->isEnabled());
            QVERIFY(!button(d, "cmdOK")->isEnabled());
            QVERIFY(button(d, "OptInhalt0")->isChecked());
            // The picture index is offered beside the others.
            QVERIFY(button(d, "chkBildIndex")->isEnabled());
            QCOMPARE(button(d, "chkBildIndex")->text(), QString("Bild&index"));
            button(d, "chkBildIndex")->click();
            QVERIFY(button(d, "cmdOK")->isEnabled());
            button(d, "chkBildIndex")->click();
            QVERIFY(!button(d, "cmdOK")->isEnabled());
            button(d, "ChkInhalt")->click();
            QVERIFY(button(d, "OptInhalt1")->isEnabled());
            button(d, "OptInhalt1")->click();
            button(d, "ChkAlbumUmVorne")->click();
            QVERIFY(button(d, "cmdOK")->isEnabled());
            button(d, "cmdOK")->click();
        });
        f.trigger("mnuSpezialseiten");
        QCOMPARE(titles(s), (std::vector<std::string>{"Umschlag Vorne", "Inhalt", "Seite A", "Seite B"}));
        const int contentsSlot = s.album().pages[2].slot;
        QVERIFY(contentsSlot > 0);
        const PageRecord& contents = s.page(contentsSlot);
        QCOMPARE(contents.texts.upper(), 3);
        QCOMPARE(contents.texts[2].hyperlink, std::string("Seite A"));
        // Measured with the page's fonts: the entries do not overlap.
        QVERIFY(contents.texts[2].height > 0);
        QCOMPARE(int(contents.texts[3].top), contents.texts[2].top + contents.texts[2].height + 20);
        QVERIFY(QFile::exists(QString::fromStdString(folder + "Inhalt.apg")));
        QCOMPARE(s.page(s.album().pages[1].slot).texts[1].text, std::string("Testalbum"));
        QCOMPARE(s.page(s.album().pages[1].slot).texts[1].hyperlink, std::string("Inhalt"));
        QCOMPARE(w.lblStatus()->text(), QString(""));
        QCOMPARE(s.album().modified, kTrue);
    }

    void cancelMakesNothingAndEnglishSpeaksEnglish() {
        shell::MainWindow& w = f.start({f.albumPath()});
        w.setLanguage(Language::English);
        Session& s = w.session();
        whenGeneratorShown([](FrmGenerator& d) {
            QCOMPARE(button(d, "ChkAlbumUmVorne")->text(), QString("&Front cover to album"));
            QCOMPARE(button(d, "ChkUmHinten")->text(), QString("&Back cover to album"));
            QCOMPARE(button(d, "ChkInhalt")->text(), QString("&Table of contents"));
            QCOMPARE(button(d, "OptInhalt0")->text(), QString("At the &end"));
            QCOMPARE(button(d, "OptInhalt1")->text(), QString("At the be&ginning"));
            QCOMPARE(button(d, "chkSuchseite")->text(), QString("&Search page"));
            QCOMPARE(button(d, "cmdAbbrechen")->text(), QString("Cancel"));
            QCOMPARE(qobject_cast<QLabel*>(d.control("lblTitel"))->text(),
                     QString("Generate useful pages to your album:"));
            button(d, "chkSuchseite")->click();
            button(d, "cmdAbbrechen")->click();
        });
        f.trigger("mnuSpezialseiten");
        QCOMPARE(titles(s), (std::vector<std::string>{"Seite A", "Seite B"}));
    }

    void stopDuringTheRunKeepsThePagesMade() {
        shell::MainWindow& w = f.start({f.albumPath()});
        Session& s = w.session();
        QStringList statuses;
        whenGeneratorShown([&statuses](FrmGenerator& d) {
            connect(&d, &FrmGenerator::status, &d, [&d, &statuses](const QString& text) {
                statuses << text;
                if (statuses.size() == 1) button(d, "cmdAbbrechen")->click();  // stops after this page
            });
            button(d, "ChkAlbumUmVorne")->click();
            button(d, "chkSuchseite")->click();
            button(d, "ChkUmHinten")->click();
            button(d, "cmdOK")->click();
        });
        f.trigger("mnuSpezialseiten");
        QCOMPARE(statuses, QStringList{"Umschlag vorne erstellen ..."});
        QCOMPARE(titles(s), (std::vector<std::string>{"Umschlag Vorne", "Seite A", "Seite B"}));
    }

    // A tool, not a check (not registered with CTest): under Xvfb with
    // BRINDLESEE_SCREENSHOTS naming a folder, the dialog in both languages.
    void screenshots() {
        const QByteArray out = qgetenv("BRINDLESEE_SCREENSHOTS");
        if (out.isEmpty()) QSKIP("BRINDLESEE_SCREENSHOTS not set");
        shell::MainWindow& w = f.start({f.albumPath()});
        w.show();
        for (Language lang : {Language::German, Language::English}) {
            w.setLanguage(lang);
            editor::QtTextMetrics metrics;
            FrmGenerator dialog(w.session(), metrics, &w);
            button(dialog, "ChkInhalt")->click();
            button(dialog, "ChkAlbumUmVorne")->click();
            dialog.show();
            QVERIFY(QTest::qWaitForWindowExposed(&dialog));
            QTest::qWait(100);
            dialog.grab().save(QString("%1/generator-%2.png").arg(QString(out), lang == Language::German ? "de" : "en"));
        }
    }
};

QTEST_MAIN(GeneratorWindowTest)
#include "generator_window_test.moc"
