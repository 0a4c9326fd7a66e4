// F1 in the real windows: the main window with a page open, a modal
// property dialog (the viewer stays usable over it), the design window,
// the explorer and the generator's help button; and the metafile hint of
// a page through the hint window, once, until its box is ticked.
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTextBrowser>
#include <QTimer>

#include "album/page_file.h"
#include "explorer/bildviewer_window.h"
#include "help/help_center.h"
#include "help/help_pages.h"
#include "help/hint_window.h"
#include "help_fixture.h"
#include "shell/frm_generator.h"
#include "shell/window_fixture.h"
#include "studio/design_window.h"

using namespace brindle;
using namespace brindle::help;

namespace {

// Answers every hint window that shows: counts it, keeps its text, ticks
// its box when told to and presses OK.
class HintAnswerer : public QObject {
  public:
    int seen = 0;
    QString text;
    bool tick = false;

    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* hint = qobject_cast<HintWindow*>(watched);
        if (hint && event->type() == QEvent::Show) {
            ++seen;
            text = hint->lblHinweis()->text();
            QPointer<HintWindow> alive(hint);
            QTimer::singleShot(0, this, [this, alive] {
                if (!alive) return;
                alive->chkNichtMehr()->setChecked(tick);
                QTest::mouseClick(alive->cmdOK(), Qt::LeftButton);
            });
        }
        return false;
    }
};

void pressF1(QWidget* w) {
    w->activateWindow();
    w->setFocus();
    QTest::keyClick(w, Qt::Key_F1);
}

}  // namespace

class HelpContextTest : public QObject {
    Q_OBJECT
  private:
    test::WindowFixture f_;
    test::HelpPages* pages_ = nullptr;
    HelpCenter* center_ = nullptr;
    Language toolLanguage_ = Language::German;

    HelpViewer* viewer() const { return center_->viewer(); }
    QString shownFile() const {
        return viewer() ? viewer()->pageFile().mid(pages_->root().size()) : QString();
    }
    int viewers() const {
        int n = 0;
        for (QWidget* w : QApplication::allWidgets()) n += qobject_cast<HelpViewer*>(w) != nullptr;
        return n;
    }
    void startAlbum() {
        f_.start({f_.albumPath()});
        f_.window->show();
        QVERIFY(QTest::qWaitForWindowExposed(f_.window));
        QVERIFY(f_.pad());
    }

  private slots:
    void init() {
        f_.setUp();
        pages_ = new test::HelpPages;
        pages_->both(kIndexPage);
        for (const HelpTopic& topic : helpTopics())
            pages_->both(QString::fromUtf8(topic.pageId.data(), int(topic.pageId.size())));
        center_ = new HelpCenter(pages_->root(), [this] {
            return f_.window ? f_.window->session().language() : toolLanguage_;
        });
        center_->install();
    }
    void cleanup() {
        delete center_;
        center_ = nullptr;
        delete pages_;
        f_.tearDown();
        toolLanguage_ = Language::German;
    }

    void f1InTheMainWindowOpensThePageOfWhereItWasPressed() {
        startAlbum();
        pressF1(f_.canvas());
        QVERIFY(viewer());
        QCOMPARE(shownFile(), QString("de/page-editor.html"));
        QCOMPARE(viewer()->windowTitle(), QString("Brindlesee Hilfe"));
        QVERIFY(viewer()->isVisible());
        pressF1(f_.window->explorer());
        QCOMPARE(shownFile(), QString("de/album-explorer.html"));
        // In English: the English page, in the same single viewer.
        f_.window->setLanguage(Language::English);
        pressF1(f_.canvas());
        QCOMPARE(shownFile(), QString("en/page-editor.html"));
        QCOMPARE(viewer()->windowTitle(), QString("Brindlesee Help"));
        QCOMPARE(viewers(), 1);
        // "?" > "Help": the active page's page.
        QAction* mnuHilfe = f_.window->action("mnuHilfe");
        QVERIFY(mnuHilfe->isEnabled());
        QCOMPARE(mnuHilfe->shortcut(), QKeySequence(Qt::Key_F1));
        viewer()->showPage("index");
        mnuHilfe->trigger();
        QCOMPARE(shownFile(), QString("en/page-editor.html"));
        // A window that has no page of its own opens the contents.
        QWidget other;
        auto* edit = new QLineEdit(&other);
        other.show();
        QVERIFY(QTest::qWaitForWindowExposed(&other));
        pressF1(edit);
        QCOMPARE(shownFile(), QString("en/index.html"));
        QCOMPARE(viewers(), 1);
        // A page that is not installed says so.
        QFile::remove(pages_->root() + "de/album-explorer.html");
        QFile::remove(pages_->root() + "en/album-explorer.html");
        pressF1(f_.window->explorer());
        QVERIFY(viewer()->showingMissingPage());
        QVERIFY(viewer()->browser()->toPlainText().contains(
            "The help page \"album-explorer\" is not installed."));
    }

    void f1InAModalDialogShowsAViewerThatStaysUsable() {
        startAlbum();
        QPointer<QDialog> seenDialog;
        bool checked = false;
        QTimer::singleShot(0, [&] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            seenDialog = dialog;
            QTest::keyClick(dialog->focusWidget() ? dialog->focusWidget() : dialog, Qt::Key_F1);
            QVERIFY(viewer());
            QCOMPARE(shownFile(), QString("de/background-properties.html"));
            QVERIFY(viewer()->isWindow());
            QCOMPARE(viewer()->parentWidget(), dialog);
            // Clicks through the window system reach the viewer although the
            // dialog is modal (a blocked window drops them).
            auto* cmdInhalt = viewer()->findChild<QPushButton*>("cmdInhalt");
            QVERIFY(QTest::qWaitForWindowExposed(viewer()));
            QTest::mouseClick(viewer()->windowHandle(), Qt::LeftButton, {},
                              cmdInhalt->mapTo(viewer(), cmdInhalt->rect().center()));
            QCOMPARE(shownFile(), QString("de/index.html"));
            checked = true;
            dialog->reject();
        });
        f_.window->showProperties(f_.pad(), std::nullopt);
        QVERIFY(checked);
        // The viewer outlives the dialog and stands on its own again.
        QVERIFY(viewer());
        QVERIFY(!viewer()->parentWidget());
        QVERIFY(viewer()->isVisible());

        // The picture dialog in English.
        f_.window->setLanguage(Language::English);
        checked = false;
        QTimer::singleShot(0, [&] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            QTest::keyClick(dialog->focusWidget() ? dialog->focusWidget() : dialog, Qt::Key_F1);
            QCOMPARE(shownFile(), QString("en/picture-properties.html"));
            QCOMPARE(viewer()->parentWidget(), dialog);
            checked = true;
            dialog->reject();
        });
        f_.window->showProperties(f_.pad(), editor::ElementRef{editor::Kind::Bild, 1});
        QVERIFY(checked);
        QCOMPARE(viewers(), 1);
    }

    void f1InTheToolWindowsAndTheHelpButtons() {
        const std::string picture = f_.home + "Album/see.png";
        toolLanguage_ = Language::English;
        studio::DesignWindow design({picture}, *f_.prompter, Language::English);
        design.show();
        QVERIFY(QTest::qWaitForWindowExposed(&design));
        pressF1(&design);
        QCOMPARE(shownFile(), QString("en/photo-design.html"));

        toolLanguage_ = Language::German;
        explorer::FrmBildviewer explorer(f_.home, f_.home + "Album/", *f_.prompter,
                                         Language::German);
        explorer.show();
        QVERIFY(QTest::qWaitForWindowExposed(&explorer));
        pressF1(&explorer);
        QCOMPARE(shownFile(), QString("de/explorer.html"));
        viewer()->showPage("index");
        // Its "?" button opens the same page instead of a message.
        explorer.findChild<QAction*>("hilfe")->trigger();
        QCOMPARE(shownFile(), QString("de/explorer.html"));
        QVERIFY(f_.prompter->asked.empty());

        // The generator's "Hilfe" button, while the generator is modal.
        startAlbum();
        bool checked = false;
        QTimer::singleShot(0, [&] {
            auto* dialog = qobject_cast<shell::FrmGenerator*>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            auto* cmdHilfe = dialog->findChild<QPushButton*>("cmdHilfe");
            QVERIFY(cmdHilfe->isEnabled());
            QTest::mouseClick(cmdHilfe, Qt::LeftButton);
            QCOMPARE(shownFile(), QString("de/useful-pages.html"));
            checked = true;
            dialog->reject();
        });
        f_.window->showGenerator();
        QVERIFY(checked);
        QCOMPARE(viewers(), 1);
    }

    void metafileHintOnAPageUntilItsBoxIsTicked() {
        // Two metafile pictures on "Seite A": one hint for the page.
        const std::string folder = f_.home + "Album/";
        QVERIFY(QFile::copy(QString::fromStdString(folder + "see.png"),
                            QString::fromStdString(folder + "see.wmf")));
        PageFile file;
        QVERIFY(readPageFile(folder + "Seite A.apg", PageRecord{}, file).ok());
        file.page.pictures[1].path = folder + "see.wmf";
        PictureElement second = file.page.pictures[1];
        second.left = 300;
        file.page.pictures.add() = second;
        ReihenfolgePruefen(file.page);
        QVERIFY(writePageFile(folder + "Seite A.apg", file.page).ok());

        HintAnswerer answerer;
        qApp->installEventFilter(&answerer);
        startAlbum();
        QTRY_COMPARE(answerer.seen, 1);
        QCOMPARE(answerer.text,
                 QString("Das Format wmf oder emf wird von Netscape nicht unterstützt \n"
                         "Wir empfehlen die Verwendung von JPEG oder PNG Bildern."));
        QTRY_VERIFY(!f_.canvas()->picturesLoading());
        QApplication::processEvents();
        QCOMPARE(answerer.seen, 1);

        // Opened again: the hint again, in English, and now its box is ticked.
        const std::string iniPath = f_.home + "settings.ini";
        answerer.tick = true;
        f_.window->unloadAll();
        delete f_.window;
        f_.window = nullptr;
        startAlbum();
        f_.window->setLanguage(Language::English);
        QTRY_COMPARE(answerer.seen, 2);
        // A new window with the same settings: no hint.
        f_.window->unloadAll();
        delete f_.window;
        f_.window = nullptr;
        startAlbum();
        QTRY_VERIFY(!f_.canvas()->picturesLoading());
        QApplication::processEvents();
        QCOMPARE(answerer.seen, 2);
        // Nor after a restart with the settings read from the file.
        f_.window->unloadAll();
        delete f_.window;
        IniSettingsStore restarted(iniPath);
        f_.window = new shell::MainWindow(f_.home, *f_.prompter, restarted);
        f_.window->MDIForm_Load({f_.albumPath()}, {});
        QTRY_VERIFY(!f_.canvas()->picturesLoading());
        QApplication::processEvents();
        QCOMPARE(answerer.seen, 2);
        f_.window->unloadAll();
        delete f_.window;
        f_.window = nullptr;
        qApp->removeEventFilter(&answerer);
    }
};

QTEST_MAIN(HelpContextTest)
#include "help_context_test.moc"
