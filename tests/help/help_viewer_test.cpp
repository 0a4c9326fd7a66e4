// The help viewer on pages the test writes, the about window and the hint
// window on their own. `screenshots` saves the about window, the metafile
// hint and a help page in German and English to $BRINDLESEE_SCREENSHOTS
// (run by hand under Xvfb).
#include "help/help_viewer.h"

#include <QApplication>
#include <QCheckBox>
#include <QFileInfo>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTextBrowser>
#include <QTimer>

#include "album/settings_store.h"
#include "help/about_window.h"
#include "help/hint_store.h"
#include "help/hint_window.h"
#include "help_fixture.h"

using namespace brindle;
using namespace brindle::help;

namespace {

// Runs `fn` on the hint window if it is shown modally, then closes it.
// The callers count the calls: a hint that must not show leaves none.
void whenHintShown(const std::function<void(HintWindow&)>& fn) {
    QTimer::singleShot(0, [fn] {
        auto* hint = qobject_cast<HintWindow*>(QApplication::activeModalWidget());
        if (!hint) return;
        QPointer<HintWindow> alive(hint);
        fn(*hint);
        if (alive && QApplication::activeModalWidget() == alive) alive->reject();
    });
}

QString shownText(const HelpViewer& v) { return v.browser()->toPlainText(); }

// Whether the browser's viewport shows a pixel of exactly this colour.
bool showsColour(QTextBrowser* browser, QColor colour) {
    const QImage shot = browser->viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32);
    for (int y = 0; y < shot.height(); ++y)
        for (int x = 0; x < shot.width(); ++x)
            if (QColor(shot.pixel(x, y)) == colour) return true;
    return false;
}

}  // namespace

class HelpViewerTest : public QObject {
    Q_OBJECT
  private:
    QTemporaryDir home_;

  private slots:
    void initTestCase() { qputenv("BRINDLESEE_HOME", QFile::encodeName(home_.path() + "/")); }

    void pagesInTheirLanguageWithFallbackAndMissingNote() {
        test::HelpPages pages;
        pages.both("index");
        pages.both("options");
        pages.write("de", "wizard");
        pages.write("en", "print");
        HelpViewer v(pages.root(), Language::English);
        QCOMPARE(v.windowTitle(), QString("Brindlesee Help"));
        v.showPage("options");
        QCOMPARE(v.pageFile(), pages.root() + "en/options.html");
        QVERIFY2(shownText(v).startsWith("EN options"), qPrintable(shownText(v)));
        // Only in German: the German page rather than nothing.
        v.showPage("wizard");
        QCOMPARE(v.pageFile(), pages.root() + "de/wizard.html");
        QVERIFY(shownText(v).startsWith("DE wizard"));
        // Neither: a note that says which page is missing, never an empty window.
        v.showPage("scanner");
        QVERIFY(v.showingMissingPage());
        QCOMPARE(v.pageId(), QString("scanner"));
        QCOMPARE(shownText(v),
                 QString("Help page missing\nThe help page \"scanner\" is not installed.\n"
                         "Please install Brindlesee again to complete the help."));

        // The language switch shows the page on view again, in German.
        v.showPage("options");
        v.setLanguage(Language::German);
        QCOMPARE(v.windowTitle(), QString("Brindlesee Hilfe"));
        QCOMPARE(v.pageFile(), pages.root() + "de/options.html");
        QVERIFY(shownText(v).startsWith("DE options"));
        QCOMPARE(v.findChild<QPushButton*>("cmdZurueck")->text(), QString("&Zurück"));
        QCOMPARE(v.findChild<QPushButton*>("cmdInhalt")->text(), QString("&Inhalt"));
        v.showPage("print");
        QCOMPARE(v.pageFile(), pages.root() + "en/print.html");
        v.showPage("index");
        QCOMPARE(v.pageFile(), pages.root() + "de/index.html");
        v.showPage("scanner");
        QVERIFY(shownText(v).startsWith(
            "Hilfeseite fehlt\nDie Hilfeseite „scanner“ ist nicht installiert."));
        // Contents brings the index back.
        QTest::mouseClick(v.findChild<QPushButton*>("cmdInhalt"), Qt::LeftButton);
        QCOMPARE(v.pageId(), QString("index"));
        QVERIFY(!v.showingMissingPage());
    }

    void linksPicturesAndWebAddresses() {
        test::HelpPages pages;
        pages.both(
            "index",
            "<p><a href=\"options.html\">Optionen</a> <a href=\"wizard.html\">Wizzard</a></p>"
            "<p><a href=\"https://example.org/brindlesee\">Web</a></p>");
        pages.both("options", "<p><img src=\"../images/red.png\" width=\"40\" height=\"40\"></p>");
        pages.write("en", "wizard");
        pages.picture("red.png", QColor(255, 0, 0));
        std::vector<QUrl> opened;
        HelpViewer::setExternalOpener([&opened](const QUrl& url) { opened.push_back(url); });
        HelpViewer v(pages.root(), Language::German);
        v.resize(600, 400);
        v.show();
        QVERIFY(QTest::qWaitForWindowExposed(&v));
        v.showPage("index");
        auto* back = v.findChild<QPushButton*>("cmdZurueck");
        auto* forward = v.findChild<QPushButton*>("cmdVor");
        QVERIFY(!back->isEnabled());
        emit v.browser()->anchorClicked(QUrl("options.html"));
        QCOMPARE(v.pageFile(), pages.root() + "de/options.html");
        QVERIFY(back->isEnabled());
        // The picture beside the pages shows.
        QVERIFY(showsColour(v.browser(), QColor(255, 0, 0)));
        QTest::mouseClick(back, Qt::LeftButton);
        QCOMPARE(v.pageId(), QString("index"));
        QVERIFY(forward->isEnabled());
        QTest::mouseClick(forward, Qt::LeftButton);
        QCOMPARE(v.pageId(), QString("options"));
        QTest::mouseClick(back, Qt::LeftButton);
        // A link to a page only the other language has.
        emit v.browser()->anchorClicked(QUrl("wizard.html"));
        QCOMPARE(v.pageFile(), pages.root() + "en/wizard.html");
        // A web address goes to the desktop's browser; the page stays.
        QTest::mouseClick(back, Qt::LeftButton);
        emit v.browser()->anchorClicked(QUrl("https://example.org/brindlesee"));
        QCOMPARE(opened.size(), size_t(1));
        QCOMPARE(opened[0], QUrl("https://example.org/brindlesee"));
        QCOMPARE(v.pageId(), QString("index"));
        HelpViewer::setExternalOpener({});
        QTest::mouseClick(v.findChild<QPushButton*>("cmdSchliessen"), Qt::LeftButton);
        QVERIFY(!v.isVisible());
    }

    void aboutWindowSpeaksBothLanguages() {
        QApplication::setApplicationVersion("4.2.1");
        QPixmap mark(64, 64);
        mark.fill(Qt::blue);
        AboutWindow about(Language::German, mark);
        QCOMPARE(about.windowTitle(), QString("Info"));
        QCOMPARE(about.lblVersion()->text(), QString("Version 4.2.1"));
        QVERIFY(
            about.lblBeschreibung()->text().startsWith("Brindlesee gestaltet digitale Fotoalben"));
        const QString de = about.lblBibliotheken()->text();
        QVERIFY(de.startsWith("<p>Brindlesee baut auf diesen Bibliotheken auf:</p>"));
        for (const char* lib :
             {"Qt", "libjpeg-turbo", "FreeImage", "libzip", "exiv2", "FFmpeg", "SANE"})
            QVERIFY2(de.contains(QString("<b>%1</b>").arg(lib)), lib);
        QVERIFY(de.contains("TIFF, PNG, PSD und weitere Bildformate"));
        QCOMPARE(about.cmdSchliessen()->text(), QString("&Schließen"));
        QCOMPARE(about.findChild<QLabel*>("picLogo")->pixmap().toImage().pixelColor(10, 10),
                 QColor(Qt::blue));
        about.setLanguage(Language::English);
        QCOMPARE(about.windowTitle(), QString("About"));
        QVERIFY(
            about.lblBeschreibung()->text().startsWith("Brindlesee lays out digital photo albums"));
        QVERIFY(about.lblBibliotheken()->text().startsWith(
            "<p>Brindlesee builds on these libraries:</p>"));
        QVERIFY(
            about.lblBibliotheken()->text().contains("TIFF, PNG, PSD and other picture formats"));
        QVERIFY(!about.lblBibliotheken()->text().contains("Bild"));
        QCOMPARE(about.cmdSchliessen()->text(), QString("&Close"));
        about.show();
        QTest::mouseClick(about.cmdSchliessen(), Qt::LeftButton);
        QCOMPARE(about.result(), int(QDialog::Accepted));
        QVERIFY(!about.isVisible());
    }

    void hintShowsUntilItsBoxIsTicked() {
        const std::string ini = QFile::encodeName(home_.path() + "/hints.ini").toStdString();
        IniSettingsStore store(ini);
        int seen = 0;
        // First without the box: shown again next time.
        whenHintShown([&](HintWindow& w) {
            ++seen;
            QCOMPARE(w.windowTitle(), QString("Hinweis"));
            QCOMPARE(w.lblHinweis()->text(),
                     QString("Das Format wmf oder emf wird von Netscape nicht unterstützt \n"
                             "Wir empfehlen die Verwendung von JPEG oder PNG Bildern."));
            QCOMPARE(w.chkNichtMehr()->text(), QString("Diesen Hinweis nicht mehr anzeigen"));
            QVERIFY(!w.chkNichtMehr()->isChecked());
            QTest::mouseClick(w.cmdOK(), Qt::LeftButton);
        });
        QVERIFY(HintWindow::showHint(store, kMetafileHint, "", Language::German));
        QCOMPARE(seen, 1);
        QVERIFY(!hintSwitchedOff(store, kMetafileHint));
        // In English, with the box ticked.
        whenHintShown([&](HintWindow& w) {
            ++seen;
            QCOMPARE(w.windowTitle(), QString("Hint"));
            QCOMPARE(w.lblHinweis()->text(),
                     QString("The format wmf or emf is not supported by Netscape \n"
                             "We recommend to use JPEG or PNG pictures."));
            QCOMPARE(w.chkNichtMehr()->text(), QString("Don't show this hint again"));
            w.chkNichtMehr()->click();
            QTest::mouseClick(w.cmdOK(), Qt::LeftButton);
        });
        QVERIFY(HintWindow::showHint(store, kMetafileHint, "", Language::English));
        QCOMPARE(seen, 2);
        // Never again, not even with a new store on the same file (a restart).
        whenHintShown([&](HintWindow&) { ++seen; });
        QVERIFY(!HintWindow::showHint(store, kMetafileHint, "", Language::German));
        IniSettingsStore restarted(ini);
        QVERIFY(!HintWindow::showHint(restarted, kMetafileHint, "", Language::German));
        QApplication::processEvents();
        QCOMPARE(seen, 2);
        // Another number has its own box.
        whenHintShown([&](HintWindow& w) {
            ++seen;
            QCOMPARE(w.lblHinweis()->text(), QString("Erste Zeile\nZweite Zeile"));
            QTest::mouseClick(w.cmdOK(), Qt::LeftButton);
        });
        QVERIFY(
            HintWindow::showHint(restarted, 5, "Erste Zeile\r\nZweite Zeile", Language::German));
        QCOMPARE(seen, 3);
    }

    void screenshots() {
        const QString out = qEnvironmentVariable("BRINDLESEE_SCREENSHOTS");
        if (out.isEmpty()) QSKIP("BRINDLESEE_SCREENSHOTS is not set");
        QDir().mkpath(out);
        QApplication::setApplicationVersion("0.1.0");
        test::HelpPages pages;
        pages.picture("window.png", QColor(0x6F, 0xA8, 0xDC), 220);
        pages.write("de", "index", "<p><a href=\"options.html\">Optionen</a></p>");
        pages.write("en", "index", "<p><a href=\"options.html\">Options</a></p>");
        pages.write(
            "de", "options",
            "<p>Im Fenster <b>Optionen</b> stellen Sie ein, wie Brindlesee arbeitet.</p>"
            "<p><img src=\"../images/window.png\"></p><p><a href=\"index.html\">Inhalt</a></p>");
        pages.write(
            "en", "options",
            "<p>The <b>Options</b> window sets how Brindlesee works.</p>"
            "<p><img src=\"../images/window.png\"></p><p><a href=\"index.html\">Contents</a></p>");
        for (Language lang : {Language::German, Language::English}) {
            const QString suffix = lang == Language::German ? "de" : "en";
            // The build's own icon and pages where they are, so the pictures show the real thing.
            const QString built = QCoreApplication::applicationDirPath() + "/../../resources/";
            QPixmap mark(built + "icons/hicolor/128x128/apps/org.brindlesee.Brindlesee.png");
            if (mark.isNull()) {
                mark = QPixmap(96, 96);
                mark.fill(QColor(0x2E, 0x6F, 0x9E));
            }
            mark = mark.scaled(96, 96, Qt::KeepAspectRatio, Qt::SmoothTransformation);
            AboutWindow about(lang, mark);
            about.show();
            QVERIFY(QTest::qWaitForWindowExposed(&about));
            QVERIFY(about.grab().save(out + "/help-about-" + suffix + ".png"));
            HintWindow hint(kMetafileHint, hintText(kMetafileHint, lang, ""), lang);
            hint.show();
            QVERIFY(QTest::qWaitForWindowExposed(&hint));
            QVERIFY(hint.grab().save(out + "/help-hint-" + suffix + ".png"));
            const bool realPages = QFileInfo::exists(built + "install/help/de/red-eye.html");
            HelpViewer viewer(realPages ? built + "install/help/" : pages.root(), lang);
            viewer.showPage("index");
            viewer.showPage(realPages ? "red-eye" : "options");
            viewer.show();
            QVERIFY(QTest::qWaitForWindowExposed(&viewer));
            QVERIFY(viewer.grab().save(out + "/help-viewer-" + suffix + ".png"));
        }
    }
};

QTEST_MAIN(HelpViewerTest)
#include "help_viewer_test.moc"
