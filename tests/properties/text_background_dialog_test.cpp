// The text and page property dialogs opened through the real window: by a
// double-click, the element's and the canvas's context menus and the
// Bearbeiten menu; OK records one step, Cancel leaves the page as it was.
#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <functional>

#include "album/album_file.h"
#include "album/page_file.h"
#include "album/stacking.h"
#include "editor/frm_notepad.h"
#include "properties/background_dialog.h"
#include "properties/text_dialog.h"
#include "shell/main_window.h"
#include "shell/startup.h"
#include "support/scripted_prompter.h"

using namespace brindle;
using brindle::editor::ElementRef;
using brindle::editor::FrmNotePad;
using brindle::editor::Kind;
using brindle::properties::FrmFrageHintergrund;
using brindle::properties::FrmFrageText;

namespace {

// A lake under a evening sky, drawn here so the album needs no outside files.
void drawPicture(const QString& path, QSize size) {
    QImage img(size, QImage::Format_RGB32);
    QPainter p(&img);
    QLinearGradient sky(0, 0, 0, size.height());
    sky.setColorAt(0, QColor(0x24, 0x3B, 0x6B));
    sky.setColorAt(0.55, QColor(0xE8, 0x9A, 0x5C));
    sky.setColorAt(1, QColor(0x1E, 0x4E, 0x6E));
    p.fillRect(img.rect(), sky);
    p.setBrush(QColor(0x2C, 0x44, 0x2A));
    p.setPen(Qt::NoPen);
    p.drawEllipse(QPoint(size.width() / 3, size.height()), size.width() / 2, size.height() / 3);
    p.end();
    img.save(path);
}

// A second of silence as 8-bit mono WAV, for the test play.
void writeWave(const std::string& path) {
    const int samples = 8000;
    std::string b = "RIFF";
    auto u32 = [&b](std::uint32_t v) { for (int i = 0; i < 4; ++i) b += char((v >> (8 * i)) & 0xFF); };
    auto u16 = [&b](std::uint16_t v) { b += char(v & 0xFF); b += char(v >> 8); };
    u32(36 + samples);
    b += "WAVEfmt ";
    u32(16);
    u16(1);
    u16(1);
    u32(8000);
    u32(8000);
    u16(1);
    u16(8);
    b += "data";
    u32(samples);
    b += std::string(samples, char(0x80));
    QFile f(QString::fromStdString(path));
    if (f.open(QIODevice::WriteOnly)) f.write(b.data(), qint64(b.size()));
}

TextElement text(int left, int top, int width, int height, const std::string& words) {
    TextElement t;
    t.left = std::int16_t(left);
    t.top = std::int16_t(top);
    t.width = std::int16_t(width);
    t.height = std::int16_t(height);
    t.text = words;
    t.ext.extText[0] = words;
    t.font = FontSpec{0x303030, "Liberation Sans", 14, kFalse, kFalse, kFalse};
    return t;
}

template <class T>
T* child(QWidget* w, const char* name) {
    T* c = w->findChild<T*>(name);
    if (!c) qWarning("no control %s", name);
    return c;
}

}  // namespace

class TextBackgroundDialogTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir* dir_ = nullptr;
    std::string home_;
    test::ScriptedPrompter* prompter_ = nullptr;
    IniSettingsStore* settings_ = nullptr;
    shell::MainWindow* window_ = nullptr;

    std::string albumDir() const { return home_ + "Album/"; }
    std::string albumPath() const { return albumDir() + "Testalbum.apr"; }

    // Two pages: a picture and a text on the first, one text on the second.
    void writeAlbum() {
        const std::string dir = albumDir();
        QDir().mkpath(QString::fromStdString(dir));
        drawPicture(QString::fromStdString(dir + "see.png"), QSize(400, 200));
        AlbumRecord album;
        ladeStandards(album, home_);
        album.title = "Testalbum";
        PageRecord first = album.pageDefaults;
        first.texts.add() = text(300, 60, 220, 40, "Hallo Welt");
        PageRecord second = album.pageDefaults;
        second.texts.add() = text(40, 40, 220, 40, "Zweite Seite");
        const char* titles[] = {"Seite A", "Seite B"};
        int n = 0;
        for (PageRecord* page : {&first, &second}) {
            ReihenfolgePruefen(*page);
            page->title = titles[n];
            page->description = std::string("Beschreibung ") + titles[n];
            QVERIFY(writePageFile(dir + titles[n] + ".apg", *page).ok());
            album.pages.add() = PageEntry{titles[n], std::string(titles[n]) + ".apg", dir, 0};
            ++album.pageCount;
            ++n;
        }
        prepareAlbumSave(album, albumPath());
        QVERIFY(writeAlbumFile(albumPath(), album).ok());
    }

    shell::MainWindow& start(Language language = Language::German) {
        window_ = new shell::MainWindow(home_, *prompter_, *settings_);
        window_->MDIForm_Load({albumPath()}, {});
        if (language == Language::English) window_->action("mnuEnglisch")->trigger();
        return *window_;
    }
    FrmNotePad* pad() const { return window_->activeNotePad(); }
    QWidget* canvas() const { return pad()->canvas(); }
    PageRecord& page() { return pad()->document().page(); }
    int slot() { return pad()->tag(); }
    std::string pageBytes(const PageRecord& p) {
        const std::string path = home_ + "compare.apg";
        if (!writePageFile(path, p).ok()) return {};
        QFile f(QString::fromStdString(path));
        f.open(QIODevice::ReadOnly);
        return f.readAll().toStdString();
    }
    std::string fileBytes(const std::string& path) {
        QFile f(QString::fromStdString(path));
        f.open(QIODevice::ReadOnly);
        return f.readAll().toStdString();
    }

    // Runs `fn` on the dialog of type T once it is shown modally.
    template <class T>
    void whenShown(std::function<void(T*)> fn) {
        auto* timer = new QTimer(this);
        timer->setInterval(10);
        connect(timer, &QTimer::timeout, this, [timer, fn] {
            if (T* d = qobject_cast<T*>(QApplication::activeModalWidget())) {
                timer->stop();
                timer->deleteLater();
                fn(d);
                if (d->isVisible()) d->reject();  // a failed check must not leave it open
            }
        });
        timer->start();
    }
    // Chooses the menu entry whose text starts with `entry` in the popup menu about to open.
    void chooseInMenu(const QString& entry) {
        QTimer::singleShot(50, this, [entry] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            if (!menu) return;
            for (QAction* a : menu->actions())
                if (a->text().startsWith(entry)) {
                    menu->setActiveAction(a);
                    QTest::keyClick(menu, Qt::Key_Return);
                    return;
                }
            menu->close();
        });
    }
    void click(QWidget* dialog, const char* name) {
        if (auto* b = child<QAbstractButton>(dialog, name)) b->click();
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

    void doubleClickOpensTheTextDialogAndOkIsOneStep() {
        start();
        QVERIFY(pad());  // every later line works on the open page
        const ElementRef ref{Kind::Text, 1};
        const TextElement before = page().texts[1];
        bool shown = false;
        whenShown<FrmFrageText>([&](FrmFrageText* d) {
            shown = true;
            QCOMPARE(d->windowTitle(), QString("Texteigenschaften"));
            QCOMPARE(child<QPlainTextEdit>(d, "txtEingabe")->toPlainText(), QString("Hallo Welt"));
            child<QPlainTextEdit>(d, "txtEingabe")->setPlainText("Guten Abend am See, die Sonne geht hinter den Bergen unter");
            click(d, "CmdLinkVor");
            QCOMPARE(child<QLineEdit>(d, "txtHyperlink")->text(), QString("<vor>"));
            click(d, "cmdLinkZurück");
            click(d, "cmdLinkInhalt");
            click(d, "optLinkVerhalten2");
            click(d, "OptBearbeiten2");
            click(d, "chkUmbruchImWort");
            click(d, "chkTagestipp");
            click(d, "optTagestippEinzeilig1");
            child<QPlainTextEdit>(d, "txtTippDatenbank")->setPlainText("Eins;Zwei");
            d->setFont(FontSpec{0xFFFFFF, "Liberation Serif", 16, kTrue, kFalse, kFalse});
            click(d, "cmdOK");
        });
        const QPoint inText(310, 70);
        QTest::mouseDClick(canvas(), Qt::LeftButton, {}, inText);
        QVERIFY(shown);
        const TextElement& t = page().texts[1];
        QCOMPARE(t.text, std::string("Guten Abend am See, die Sonne geht hinter den Bergen unter"));
        QVERIFY(t.ext.extText[0].find("\r\n") != std::string::npos);  // broken to the box in mode 2
        QCOMPARE(t.hyperlink, std::string("<inhalt>"));
        QCOMPARE(t.ext.extLong[3], 2);
        QCOMPARE(t.ext.extLong[1], 2);
        QCOMPARE(t.ext.extLong[2], 1);
        QCOMPARE(t.ext.extLong[4], 2);
        QCOMPARE(t.ext.extText[1], std::string("Eins;Zwei"));
        QVERIFY(t.font == (FontSpec{0xFFFFFF, "Liberation Serif", 16, kTrue, kFalse, kFalse}));
        QCOMPARE(int(t.left), int(before.left));
        QVERIFY(isTrue(window_->session().state().pageSlots[slot()].modified));
        const editor::UndoRing& ring = pad()->document().undoRing();
        QCOMPARE(ring.aktion[std::size_t(ring.pos)], std::string("ändern"));
        window_->action("mnuUndo")->trigger();
        QVERIFY(page().texts[1] == before);
        Q_UNUSED(ref);
    }

    void contextMenuOpensTheTextDialogAndCancelChangesNothing() {
        start(Language::English);
        QVERIFY(pad());
        const std::string before = pageBytes(page());
        window_->session().state().pageSlots[slot()].modified = kFalse;
        const int steps = pad()->document().undoRing().pos;
        bool shown = false;
        whenShown<FrmFrageText>([&](FrmFrageText* d) {
            shown = true;
            QCOMPARE(d->windowTitle(), QString("Text properties"));
            auto* tabs = d->findChild<QTabWidget*>();
            QCOMPARE(tabs->tabText(2), QString("Behavior "));
            child<QPlainTextEdit>(d, "txtEingabe")->setPlainText("Verworfen");
            click(d, "OptBearbeiten1");
            click(d, "cmdAbbrechen");
        });
        chooseInMenu("P&roperties");
        QTest::mouseClick(canvas(), Qt::RightButton, {}, QPoint(310, 70));
        QTRY_VERIFY(shown);
        QCOMPARE(pageBytes(page()), before);
        QVERIFY(!isTrue(window_->session().state().pageSlots[slot()].modified));
        QCOMPARE(pad()->document().undoRing().pos, steps);
    }

    void menuEntryOpensThePageDialogAndOkReachesTheClosedPage() {
        start();
        QVERIFY(pad());
        const std::string music = albumDir() + "wind.wav";
        writeWave(music);
        const std::string pageB = albumDir() + "Seite B.apg";
        PageFile closedBefore;
        QVERIFY(readPageFile(pageB, window_->session().album().pageDefaults, closedBefore).ok());
        prompter_->files = {albumDir() + "see.png", music};
        bool shown = false;
        whenShown<FrmFrageHintergrund>([&](FrmFrageHintergrund* d) {
            shown = true;
            QCOMPARE(d->windowTitle(), QString("Seiteneigenschaften"));
            click(d, "CmdSuchen");
            d->setColour(0x203040);
            click(d, "chkAlleSeiten");
            click(d, "cmdSuchMusik");
            QCOMPARE(child<QLabel>(d, "lblHintergrundMusik")->text(), QString::fromStdString(music));
            click(d, "cmdTest");  // plays, or ends at once without a sound device; never blocks
            QTest::qWait(50);
            if (child<QAbstractButton>(d, "cmdTest")->isChecked()) click(d, "cmdTest");
            QVERIFY(!d->testPlaying());
            auto* seconds = child<QLineEdit>(d, "txtWeiterschaltungZeit");
            click(d, "cmdObenPlus");
            click(d, "cmdObenminusSmall");
            click(d, "cmdObenminus");
            click(d, "cmdObenminusSmall");
            QCOMPARE(seconds->text(), QString("-2"));
            QVERIFY(!child<QCheckBox>(d, "chkAutotimeAus")->isChecked());
            click(d, "chkAlleSeitenAnimation");
            child<QLineEdit>(d, "txtTitel")->setText("Abend am See");
            child<QPlainTextEdit>(d, "txtBeschreibung")->setPlainText("Der Himmel brennt.");
            click(d, "cmdOK");
        });
        pad()->document().PicWorkspace_Click();  // nothing selected: the page's own dialog
        window_->action("mnuEigenschaften")->trigger();
        QVERIFY(shown);
        const PageRecord& p = page();
        QCOMPARE(p.background, albumDir() + "see.png");
        QCOMPARE(p.backgroundColor, Color(0x203040));
        QCOMPARE(p.music, music);
        QCOMPARE(p.props.ext.extLong[0], -2);
        QCOMPARE(p.title, std::string("Abend am See"));
        QCOMPARE(p.description, std::string("Der Himmel brennt."));
        QVERIFY(isTrue(window_->session().state().pageSlots[slot()].modified));
        // The closed page changed on disk in picture, colour and seconds only.
        PageFile closedAfter;
        QVERIFY(readPageFile(pageB, window_->session().album().pageDefaults, closedAfter).ok());
        PageRecord expected = closedBefore.page;
        expected.background = albumDir() + "see.png";
        expected.backgroundColor = 0x203040;
        expected.props.ext.extLong[0] = -2;
        QVERIFY(closedAfter.page == expected);
        QCOMPARE(window_->session().album().pages[2].slot, 0);
    }

    void canvasMenuOpensThePageDialogAndCancelChangesNothing() {
        start(Language::English);
        QVERIFY(pad());
        const std::string before = pageBytes(page());
        const std::string pageB = fileBytes(albumDir() + "Seite B.apg");
        window_->session().state().pageSlots[slot()].modified = kFalse;
        bool shown = false;
        whenShown<FrmFrageHintergrund>([&](FrmFrageHintergrund* d) {
            shown = true;
            QCOMPARE(d->windowTitle(), QString("Page properties"));
            QCOMPARE(d->findChild<QTabWidget*>()->tabText(0), QString("Picture / Color "));
            d->setColour(0xFFFFFF);
            click(d, "chkAlleSeiten");
            child<QLineEdit>(d, "txtTitel")->setText("Nicht gespeichert");
            click(d, "cmdAbbrechen");
        });
        chooseInMenu("Pa&ge properties");
        QTest::mouseClick(canvas(), Qt::RightButton, {}, QPoint(700, 500));
        QTRY_VERIFY(shown);
        QCOMPARE(pageBytes(page()), before);
        QCOMPARE(fileBytes(albumDir() + "Seite B.apg"), pageB);
        QVERIFY(!isTrue(window_->session().state().pageSlots[slot()].modified));
    }

    // Not a CTest test: saves both dialogs in German and English under Xvfb.
    void screenshots() {
        const QByteArray out = qgetenv("BRINDLESEE_SCREENSHOTS");
        if (out.isEmpty()) QSKIP("BRINDLESEE_SCREENSHOTS not set");
        for (Language language : {Language::German, Language::English}) {
            const QString suffix = language == Language::German ? "de" : "en";
            if (!window_) start(language);
            else window_->action("mnuEnglisch")->trigger();
            QVERIFY(pad());
            page().background = albumDir() + "see.png";
            page().music = albumDir() + "Musik/Sommerwind.mp3";
            page().props.ext.extLong[0] = 8;
            page().texts[1].ext.extText[1] = "Heute scheint die Sonne;Morgen regnet es;";
            whenShown<FrmFrageText>([&](FrmFrageText* d) {
                auto* tabs = d->findChild<QTabWidget*>();
                for (int i = 0; i < tabs->count(); ++i) {
                    tabs->setCurrentIndex(i);
                    QTest::qWait(100);
                    d->grab().save(QString("%1/text-dialog-%2-%3.png").arg(QString(out), suffix).arg(i + 1));
                }
                d->reject();
            });
            QTest::mouseDClick(canvas(), Qt::LeftButton, {}, QPoint(310, 70));
            whenShown<FrmFrageHintergrund>([&](FrmFrageHintergrund* d) {
                auto* tabs = d->findChild<QTabWidget*>();
                for (int i = 0; i < tabs->count(); ++i) {
                    tabs->setCurrentIndex(i);
                    QTest::qWait(100);
                    d->grab().save(QString("%1/page-dialog-%2-%3.png").arg(QString(out), suffix).arg(i + 1));
                }
                d->reject();
            });
            pad()->document().PicWorkspace_Click();
            window_->action("mnuEigenschaften")->trigger();
        }
    }
};

QTEST_MAIN(TextBackgroundDialogTest)
#include "text_background_dialog_test.moc"
