// The desktop program's real windows, driven with mouse and keys: open an
// album, select, drag, undo, paste onto another page, save and reopen.
#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QLabel>
#include <QPainter>
#include <QProcess>
#include <QScrollArea>
#include <QTemporaryDir>
#include <QDir>
#include <QFileInfo>
#include <QTest>
#include <QTreeWidgetItem>

#include "album/album_file.h"
#include "album/page_file.h"
#include "album/stacking.h"
#include "editor/frm_notepad.h"
#include "shell/album_explorer.h"
#include "shell/main_window.h"
#include "shell/splash_window.h"
#include "shell/startup.h"
#include "support/scripted_prompter.h"

using namespace brindle;
using brindle::editor::Box;
using brindle::editor::ElementRef;
using brindle::editor::FrmNotePad;
using brindle::editor::Kind;

namespace {

// A landscape drawn here, so the album needs no outside files.
void drawPicture(const QString& path, QColor sky) {
    QImage img(400, 200, QImage::Format_RGB32);
    QPainter p(&img);
    QLinearGradient g(0, 0, 0, 200);
    g.setColorAt(0, sky);
    g.setColorAt(1, QColor(0x2E, 0x6F, 0x9E));
    p.fillRect(img.rect(), g);
    p.setBrush(QColor(0x3E, 0x5C, 0x3A));
    p.drawEllipse(QPoint(120, 220), 200, 90);
    p.end();
    img.save(path);
}

PictureElement picture(Box b, const std::string& path) {
    PictureElement e;
    e.left = std::int16_t(b.left);
    e.top = std::int16_t(b.top);
    e.width = std::int16_t(b.width);
    e.height = std::int16_t(b.height);
    e.path = path;
    e.pictureWidth = 400;
    e.pictureHeight = 200;
    e.proportional = kTrue;
    return e;
}

TextElement text(Box b, const std::string& words) {
    TextElement t;
    t.left = std::int16_t(b.left);
    t.top = std::int16_t(b.top);
    t.width = std::int16_t(b.width);
    t.height = std::int16_t(b.height);
    t.text = words;
    t.ext.extText[0] = words;
    t.font = FontSpec{0x303030, "Liberation Sans", 14, kFalse, kFalse, kFalse};
    return t;
}

}  // namespace

class DesktopTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir* dir_ = nullptr;
    std::string home_;
    test::ScriptedPrompter* prompter_ = nullptr;
    IniSettingsStore* settings_ = nullptr;
    shell::MainWindow* window_ = nullptr;

    std::string albumPath() const { return home_ + "Album/Testalbum.apr"; }

    // Two pages: a picture and a text on the first, one text on the second.
    void writeAlbum() {
        const std::string dir = home_ + "Album/";
        QDir().mkpath(QString::fromStdString(dir));
        drawPicture(QString::fromStdString(dir + "see.png"), QColor(0x9C, 0xC8, 0xEA));
        AlbumRecord album;
        ladeStandards(album, home_);
        album.title = "Testalbum";
        PageRecord first = album.pageDefaults;
        first.pictures.add() = picture({40, 60, 200, 100}, dir + "see.png");
        first.texts.add() = text({300, 60, 220, 40}, "Hallo Welt");
        PageRecord second = album.pageDefaults;
        second.texts.add() = text({40, 40, 220, 40}, "Zweite Seite");
        int n = 0;
        for (PageRecord* page : {&first, &second}) {
            ReihenfolgePruefen(*page);
            const std::string title = n++ == 0 ? "Seite A" : "Seite B";
            page->title = title;
            QVERIFY(writePageFile(dir + title + ".apg", *page).ok());
            album.pages.add() = PageEntry{title, title + ".apg", dir, 0};
            ++album.pageCount;
        }
        prepareAlbumSave(album, albumPath());
        QVERIFY(writeAlbumFile(albumPath(), album).ok());
    }

    shell::MainWindow& start(std::vector<std::string> args) {
        window_ = new shell::MainWindow(home_, *prompter_, *settings_);
        window_->MDIForm_Load(args, {});
        return *window_;
    }

    FrmNotePad* pad() const { return window_->activeNotePad(); }
    editor::PageCanvas* canvas() const { return pad()->canvas(); }
    QPoint at(int x, int y) const { return QPoint(x, y); }
    void trigger(const char* name) { window_->action(name)->trigger(); }
    Box recordBox(ElementRef ref) { return editor::boxOf(pad()->document().page(), ref); }

    void drag(QPoint from, QPoint to, Qt::KeyboardModifiers mods = {}) {
        QTest::mousePress(canvas(), Qt::LeftButton, mods, from);
        QPoint step = from + (to - from) / 2;
        QTest::mouseMove(canvas(), step);
        QTest::mouseMove(canvas(), to);
        QTest::mouseRelease(canvas(), Qt::LeftButton, mods, to);
    }

private slots:
    void init() {
        dir_ = new QTemporaryDir;
        home_ = dir_->path().toStdString() + "/";
        qputenv("BRINDLESEE_HOME", QByteArray::fromStdString(home_));
        seedProgramDirectory(home_, installedResourceDirectory());
        prompter_ = new test::ScriptedPrompter;
        settings_ = new IniSettingsStore(home_ + "settings.ini");
        writeAlbum();
    }

    void cleanup() {
        if (window_) window_->unloadAll();
        delete window_;
        window_ = nullptr;
        delete settings_;
        delete prompter_;
        delete dir_;
    }

    void openAlbumShowsTheFirstPage() {
        shell::MainWindow& w = start({albumPath()});
        QVERIFY(pad());  // every later line works on the open page
        QCOMPARE(w.windowTitle(), QString("Brindlesee [Testalbum]"));
        QCOMPARE(pad()->caption(), QString("Seite A"));
        QCOMPARE(int(pad()->document().controls().size()), 2);
        QTreeWidgetItem* album = w.explorer()->node("AlbumZu");
        QVERIFY(album);
        QCOMPARE(album->text(0), QString("Testalbum"));
        QCOMPARE(album->childCount(), 2);
        QCOMPARE(album->child(1)->text(0), QString("Seite B"));
        QVERIFY(w.explorer()->node("Seitenvorlage"));
        QCOMPARE(w.menuBar()->actions().first()->text(), QString("&Datei"));
        QVERIFY(!w.action("mnuUndo")->isEnabled());
        QVERIFY(prompter_->asked.empty());
    }

    void rubberBandSelectsAndEmptyClickClears() {
        start({albumPath()});
        QVERIFY(pad());  // every later line works on the open page
        drag(at(20, 40), at(320, 70));
        const auto& sel = pad()->document().auswahl();
        QCOMPARE(int(sel.size()), 2);
        QCOMPARE(sel[0].ref, (ElementRef{Kind::Bild, 1}));
        QCOMPARE(sel[1].ref, (ElementRef{Kind::Text, 1}));
        QCOMPARE(window_->lblStatus()->text(), QString("B:480 H:100   L:40 T:60"));
        QVERIFY(window_->action("setleft")->isEnabled());
        QTest::mouseClick(canvas(), Qt::LeftButton, {}, at(600, 400));
        QVERIFY(pad()->document().auswahl().empty());
        QVERIFY(!window_->action("mnuECopy")->isEnabled());
    }

    void dragPictureThenUndoAndRedo() {
        start({albumPath()});
        QVERIFY(pad());  // every later line works on the open page
        drag(at(100, 100), at(140, 130));
        QCOMPARE(recordBox({Kind::Bild, 1}), (Box{80, 90, 200, 100}));
        QVERIFY(window_->action("mnuUndo")->isEnabled());
        QVERIFY(isTrue(window_->session().state().pageSlots[pad()->tag()].modified));
        trigger("mnuUndo");
        QCOMPARE(recordBox({Kind::Bild, 1}), (Box{40, 60, 200, 100}));
        QVERIFY(window_->action("mnuRedo")->isEnabled());
        trigger("mnuRedo");
        QCOMPARE(recordBox({Kind::Bild, 1}), (Box{80, 90, 200, 100}));
    }

    void handleDragResizesAndKeysMove() {
        start({albumPath()});
        QVERIFY(pad());  // every later line works on the open page
        QTest::mouseClick(canvas(), Qt::LeftButton, {}, at(400, 70));  // the text
        const QRect right = canvas()->handleRect(3);
        QVERIFY(!right.isEmpty());
        drag(right.center(), right.center() + QPoint(30, 0));
        QCOMPARE(recordBox({Kind::Text, 1}).width, 250);
        QTest::keyClick(canvas(), Qt::Key_Down, Qt::ControlModifier);
        QCOMPARE(recordBox({Kind::Text, 1}).top, 65);
        QTest::keyClick(canvas(), Qt::Key_Left);
        QCOMPARE(recordBox({Kind::Text, 1}).left, 299);
        QCOMPARE(pad()->document().undoRing().pos, 3);
    }

    void pasteOntoAnotherPageAndSaveAndReopen() {
        start({albumPath()});
        QVERIFY(pad());  // every later line works on the open page
        QTest::mouseClick(canvas(), Qt::LeftButton, {}, at(100, 100));
        trigger("mnuECopy");
        FrmNotePad* first = pad();
        window_->explorer()->activateNode(window_->explorer()->node("Seite2"));
        QVERIFY(pad() != first);
        QCOMPARE(pad()->caption(), QString("Seite B"));
        QVERIFY(window_->action("mnuEPaste")->isEnabled());
        trigger("mnuEPaste");
        PageRecord& second = pad()->document().page();
        QCOMPARE(second.pictures.upper(), 1);
        QCOMPARE(editor::boxOf(second, {Kind::Bild, 1}), (Box{40, 60, 200, 100}));
        QCOMPARE(second.pictures[1].path, home_ + "Album/see.png");
        drag(at(100, 100), at(110, 300));
        QCOMPARE(editor::boxOf(second, {Kind::Bild, 1}).top, 260);

        trigger("mnuAlbumSpeichern");
        QVERIFY2(prompter_->asked.empty(), prompter_->asked.empty() ? "" : prompter_->asked.front().c_str());
        const PageRecord expected = second;
        PageFile reread;
        QVERIFY(readPageFile(home_ + "Album/Seite B.apg", {}, reread).ok());
        QVERIFY(reread.page == expected);

        window_->unloadAll();
        delete window_;
        window_ = nullptr;
        start({albumPath()});
        QVERIFY(pad());  // every later line works on the open page
        window_->explorer()->activateNode(window_->explorer()->node("Seite2"));
        QCOMPARE(pad()->caption(), QString("Seite B"));
        QVERIFY(pad()->document().page().pictures == expected.pictures);
        QVERIFY(pad()->document().page().texts == expected.texts);
        QVERIFY(pad()->document().page().stack == expected.stack);
    }

    void drawingATextAsksForItsWords() {
        start({albumPath()});
        QVERIFY(pad());  // every later line works on the open page
        window_->setInsertMode("Text");
        prompter_->inputs.push_back("Neuer Text");
        drag(at(40, 300), at(240, 340));
        QCOMPARE(prompter_->asked.back(), std::string("input|Text|Bitte geben Sie den Text ein:|"));
        const PageRecord& page = pad()->document().page();
        QCOMPARE(page.texts.upper(), 2);
        QCOMPARE(page.texts[2].text, std::string("Neuer Text"));
        QCOMPARE(page.texts[2].ext.extLong[1], 1);
        QCOMPARE(recordBox({Kind::Text, 2}), (Box{40, 300, 200, 40}));
        QCOMPARE(window_->insertMode(), QString());
        QCOMPARE(pad()->document().undoRing().aktion[1], std::string("Eingefügt"));
    }

    void drawingAPictureAsksForItsFile() {
        start({albumPath()});
        QVERIFY(pad());  // every later line works on the open page
        window_->setInsertMode("Bild");
        prompter_->files.push_back(home_ + "Album/see.png");
        drag(at(300, 200), at(500, 400));
        const PageRecord& page = pad()->document().page();
        QCOMPARE(page.pictures.upper(), 2);
        QCOMPARE(recordBox({Kind::Bild, 2}), (Box{300, 200, 200, 100}));
        QCOMPARE(page.pictures[2].pictureWidth, std::int16_t(400));
    }

    void drawingWithBilderPlacesEveryChosenPictureInRows() {
        start({albumPath()});
        QVERIFY(pad());  // every later line works on the open page
        drawPicture(QString::fromStdString(home_ + "Album/abend.png"), QColor(0xD9, 0x6A, 0x4A));
        window_->session().album().insertInRows = kTrue;
        window_->session().album().insertRows = 5;
        window_->setInsertMode("Bilder");
        prompter_->files.push_back(home_ + "Album;see.png;abend.png");
        drag(at(40, 300), at(60, 320));
        const PageRecord& page = pad()->document().page();
        QCOMPARE(page.pictures.upper(), 3);
        QCOMPARE(page.pictures[3].path, home_ + "Album/abend.png");
        const AlbumRecord& a = window_->session().album();
        QCOMPARE(recordBox({Kind::Bild, 2}).left, 40);
        QCOMPARE(recordBox({Kind::Bild, 3}).left, 40 + recordBox({Kind::Bild, 2}).width + a.insertGapX);
        QCOMPARE(recordBox({Kind::Bild, 3}).top, 300);
        QCOMPARE(window_->insertMode(), QString());
    }

    void playModeFollowsLinksInsteadOfSelecting() {
        start({albumPath()});
        QVERIFY(pad());  // every later line works on the open page
        pad()->document().page().pictures[1].hyperlink = "<vor>";
        trigger("tbPlay");
        QVERIFY(window_->playMode());
        QTest::mouseClick(canvas(), Qt::LeftButton, {}, at(600, 400));  // empty canvas: nothing happens
        QCOMPARE(pad()->caption(), QString("Seite A"));
        FrmNotePad* first = pad();
        QTest::mouseClick(canvas(), Qt::LeftButton, {}, at(100, 100));  // the linked picture
        QCOMPARE(pad()->caption(), QString("Seite B"));
        QVERIFY(first->document().auswahl().empty());
        // A link that is a page's bare title, as older albums have them.
        pad()->document().page().texts[1].hyperlink = "Seite A";
        QTest::mouseClick(canvas(), Qt::LeftButton, {}, at(60, 50));
        QCOMPARE(pad()->caption(), QString("Seite A"));
        trigger("tbPlay");
        QVERIFY(!window_->playMode());
    }

    void zoomFiftyHalvesTheCanvas() {
        start({albumPath()});
        QVERIFY(pad());  // every later line works on the open page
        window_->action("mnuZoom")->trigger();
        QCOMPARE(canvas()->zoom(), 50);
        QTest::mouseClick(canvas(), Qt::LeftButton, {}, at(50, 50));  // page point (100, 100): the picture
        QCOMPARE(pad()->document().auswahl().size(), std::size_t(1));
        QCOMPARE(pad()->document().auswahl()[0].ref, (ElementRef{Kind::Bild, 1}));
        drag(at(50, 50), at(60, 50));
        QCOMPARE(recordBox({Kind::Bild, 1}).left, 60);  // ten screen pixels are twenty page pixels
    }

    void closingAChangedNewPageAsksAndNoTakesItOut() {
        start({albumPath()});
        QVERIFY(pad());  // every later line works on the open page
        trigger("mnuNeueSeite");
        QCOMPARE(pad()->caption(), QString("Seite1"));
        prompter_->inputs.push_back("Etwas");
        window_->setInsertMode("Text");
        drag(at(40, 40), at(200, 80));
        prompter_->answers.push_back(kNo);
        trigger("mnuFClose");
        QCOMPARE(prompter_->asked.back(),
                 std::string("message|Brindlesee [Testalbum]|35|Der Inhalt in [Seite1] wurde geändert.\r\n"
                             "Änderungen speichern?\r\n\r\nHinweis: diese Seite (Seite1) wurde bisher in noch keiner "
                             "Datei gespeichert. Wenn Sie nicht speichern wird diese Seite aus dem Album entfernt!"));
        QCOMPARE(window_->session().album().pageCount, std::int16_t(2));
        QCOMPARE(window_->explorer()->node("AlbumZu")->childCount(), 2);
    }

    void templatePageClosesWithoutQuestionsAndKeepsItsContents() {
        start({albumPath()});
        QVERIFY(pad());  // every later line works on the open page
        window_->explorer()->activateNode(window_->explorer()->node("Seitenvorlage"));
        QCOMPARE(pad()->caption(), QString("Seitenvorlage"));
        window_->setInsertMode("Panorama");
        drag(at(40, 40), at(400, 200));
        trigger("mnuFClose");
        QVERIFY(prompter_->asked.empty());
        QCOMPARE(window_->session().album().pageDefaults.panoramas.upper(), 1);
    }

    void languageSwitchChangesEveryCaption() {
        shell::MainWindow& w = start({albumPath()});
        QVERIFY(pad());  // every later line works on the open page
        trigger("mnuEnglisch");
        QCOMPARE(w.menuBar()->actions().first()->text(), QString("&File"));
        QCOMPARE(w.action("mnuHTMLAlbum")->text(), QString("Generate &HTML album"));
        QCOMPARE(w.explorer()->node("Vorlagen")->text(0), QString("Templates"));
        trigger("mnuDeutsch");
        QCOMPARE(w.action("mnuHTMLAlbum")->text(), QString("&HTMLAlbum generieren"));
        QCOMPARE(w.action("mnuNeuAlbum")->text(), QString("Neues &Album"));
    }

    void draggingAPageInTheExplorerReordersTheAlbum() {
        start({albumPath()});
        QVERIFY(pad());  // every later line works on the open page
        window_->explorer()->movePage(2, 1);
        const AlbumRecord& a = window_->session().album();
        QCOMPARE(a.pages[1].title, std::string("Seite B"));
        QCOMPARE(a.pages[2].title, std::string("Seite A"));
        QVERIFY(isTrue(a.modified));
        QCOMPARE(window_->explorer()->node("Seite1")->text(0), QString("Seite B"));
    }

    void htmlAlbumRunsOffTheGuiThreadAndOffersTheBrowser() {
        start({albumPath()});
        QVERIFY(pad());  // every later line works on the open page
        drag(at(100, 100), at(120, 100));  // page A changed: saved first
        const std::string out = home_ + "html/";
        QDir().mkpath(QString::fromStdString(out));
        prompter_->files.push_back(out);
        prompter_->answers.push_back(kNo);  // not into the browser
        window_->HTMLAlbumGenerieren(false);
        QVERIFY(QFileInfo::exists(QString::fromStdString(out + "Seite A.htm")));
        QVERIFY(QFileInfo::exists(QString::fromStdString(out + "Seite B.htm")));
        QVERIFY(QFileInfo::exists(QString::fromStdString(out + "Testalbum.html")));
        QCOMPARE(prompter_->asked.front(), "directory|Brindlesee Verzeichnis wählen|" + home_ + "Album/");
        QCOMPARE(prompter_->asked.back(),
                 "message|Brindlesee|36|Das HTML-Album wurde erstellt:\r" + out +
                     "Testalbum.html\r\rMöchten Sie es jetzt im Browser ansehen?");
        QVERIFY(!isTrue(window_->session().state().pageSlots[pad()->tag()].modified));
        QCOMPARE(window_->session().album().pages[2].slot, std::int16_t(0));  // page B was closed again
        QVERIFY(pad()->canvas()->isEnabled());
    }

    void htmlAlbumWithFilesMissingIsNotOffered() {
        start({albumPath()});
        QVERIFY(pad());
        // The tree menu's script is gone from the program directory.
        QVERIFY(QFile::remove(QString::fromStdString(home_ + "Menü/mtmcode.js")));
        const std::string out = home_ + "html/";
        QDir().mkpath(QString::fromStdString(out));
        prompter_->files.push_back(out);
        window_->HTMLAlbumGenerieren(false);
        QVERIFY(QFileInfo::exists(QString::fromStdString(out + "Seite A.htm")));
        QVERIFY(!QFileInfo::exists(QString::fromStdString(out + "mtmcode.js")));
        QCOMPARE(prompter_->asked.back(),
                 "message|Fehler|48|Das HTML-Album ist unvollständig: 1 Datei(en) konnten nicht geschrieben werden in " +
                     out);
        for (const std::string& q : prompter_->asked) QVERIFY2(q.find("wurde erstellt") == std::string::npos, q.c_str());
    }

    void helpDocumentsTheCommandLine() {
        QProcess program;
        program.start(BRINDLESEE_GUI, {"--help"});
        QVERIFY(program.waitForFinished(10000));
        QCOMPARE(program.exitCode(), 0);
        const QString help = QString::fromUtf8(program.readAllStandardOutput());
        for (const char* form : {"brindlesee ALBUM.apr ", "brindlesee PAGE.apg ", "brindlesee /r PICTURE...",
                                 "brindlesee /g PICTURE...", "brindlesee /b PICTURE...", "/brindleseeexplorer",
                                 "bef.txt", "BRINDLESEE_HOME"})
            QVERIFY2(help.contains(form), form);
    }

    // A tool, not a check, and therefore not registered with CTest: under
    // Xvfb with BRINDLESEE_SCREENSHOTS set to a folder, pictures of the main
    // window in both languages go there.
    void screenshots() {
        const QByteArray out = qgetenv("BRINDLESEE_SCREENSHOTS");
        if (out.isEmpty()) QSKIP("BRINDLESEE_SCREENSHOTS not set");
        const QByteArray album = qgetenv("BRINDLESEE_SCREENSHOT_ALBUM");
        std::vector<std::string> args{album.isEmpty() ? albumPath() : album.toStdString()};
        shell::MainWindow& w = start(args);
        QVERIFY(pad());  // every later line works on the open page
        w.resize(1360, 860);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        const QByteArray page = qgetenv("BRINDLESEE_SCREENSHOT_PAGE");
        if (!page.isEmpty()) {
            QTreeWidgetItem* node = w.explorer()->node("Seite" + QString(page));
            QVERIFY2(node, "no such page in the album");
            w.explorer()->activateNode(node);
            QVERIFY(pad());
        }
        QTRY_VERIFY_WITH_TIMEOUT(!canvas()->picturesLoading(), 20000);
        QTest::mouseClick(canvas(), Qt::LeftButton, {}, at(160, 200));
        QTest::qWait(300);
        w.grab().save(QString(out) + "/main-window-de.png");
        trigger("mnuEnglisch");
        QTest::qWait(300);
        w.grab().save(QString(out) + "/main-window-en.png");
        for (int i = 0; i < 3; ++i) QTest::keyClick(canvas(), Qt::Key_Right, Qt::AltModifier | Qt::ShiftModifier);
        QTest::qWait(100);
        w.grab().save(QString(out) + "/main-window-turned.png");
        shell::SplashWindow splash;
        splash.show();
        splash.setStatus("Laden der Optionen ...");
        splash.grab().save(QString(out) + "/splash.png");
    }
};

QTEST_MAIN(DesktopTest)
#include "desktop_test.moc"
