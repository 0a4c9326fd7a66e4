// Play mode through the real main window: effects over the animated
// pictures, the full view, links as the HTML album follows them, the live
// panorama viewer and the search form. The `screenshots` function is a
// tool run by hand under Xvfb (see the README), not a CTest test.
#include <QApplication>
#include <QCheckBox>
#include <QDesktopServices>
#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QPainter>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidgetItem>

#include "album/album_file.h"
#include "album/page_file.h"
#include "album/stacking.h"
#include "editor/effect_widgets.h"
#include "editor/frm_notepad.h"
#include "editor/panorama_viewer.h"
#include "editor/search_form.h"
#include "editor/sound_player.h"
#include "shell/album_explorer.h"
#include "shell/main_window.h"
#include "shell/startup.h"
#include "support/scripted_prompter.h"

using namespace brindle;
using brindle::editor::FrmNotePad;
using brindle::editor::Kind;

namespace {

// A photo-like landscape: sky, sun, hills and water.
void drawPicture(const QString& path, int w, int h, QColor sky) {
    QImage img(w, h, QImage::Format_RGB32);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient g(0, 0, 0, h);
    g.setColorAt(0, sky);
    g.setColorAt(0.55, QColor(0xF4, 0xD9, 0xA8));
    g.setColorAt(0.56, QColor(0x3B, 0x6E, 0x8F));
    g.setColorAt(1, QColor(0x1D, 0x3E, 0x5A));
    p.fillRect(img.rect(), g);
    p.setBrush(QColor(0xFF, 0xE2, 0x8A));
    p.setPen(Qt::NoPen);
    p.drawEllipse(QPointF(w * 0.7, h * 0.3), h * 0.08, h * 0.08);
    p.setBrush(QColor(0x3E, 0x5C, 0x3A));
    p.drawEllipse(QPointF(w * 0.25, h * 0.62), w * 0.4, h * 0.12);
    p.end();
    img.save(path);
}

PictureElement picture(int left, int top, int w, int h, const std::string& path, const std::string& animation,
                       const std::string& link = {}) {
    PictureElement e;
    e.left = std::int16_t(left);
    e.top = std::int16_t(top);
    e.width = std::int16_t(w);
    e.height = std::int16_t(h);
    e.path = path;
    e.pictureWidth = 400;
    e.pictureHeight = 200;
    e.hyperlink = link;
    e.ext.extText[1] = animation;
    return e;
}

TextElement text(int left, int top, const std::string& words, const std::string& link = {}) {
    TextElement t;
    t.left = std::int16_t(left);
    t.top = std::int16_t(top);
    t.width = 200;
    t.height = 30;
    t.text = words;
    t.ext.extText[0] = words;
    t.hyperlink = link;
    t.font = FontSpec{0x303030, "Liberation Sans", 14, kFalse, kFalse, kFalse};
    return t;
}

// Records the addresses that would have gone to the desktop.
class UrlSink : public QObject {
    Q_OBJECT
public:
    std::vector<QUrl> urls;
public slots:
    void open(const QUrl& url) { urls.push_back(url); }
};

}  // namespace

class PlayTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir* dir_ = nullptr;
    std::string home_;
    test::ScriptedPrompter* prompter_ = nullptr;
    IniSettingsStore* settings_ = nullptr;
    shell::MainWindow* window_ = nullptr;
    UrlSink sink_;

    std::string albumDir() const { return home_ + "Album/"; }
    std::string albumPath() const { return albumDir() + "Spielalbum.apr"; }

    // Pages: "Effekte" (snow, rain, lake, a plain picture, links), "Zweite Seite"
    // (a lake), "Inhalt", "a/b" (a title that is no file name), "Rundblick"
    // (a panorama viewer and a search box).
    void writeAlbum() {
        const std::string dir = albumDir();
        QDir().mkpath(QString::fromStdString(dir));
        drawPicture(QString::fromStdString(dir + "see.png"), 400, 200, QColor(0x9C, 0xC8, 0xEA));
        drawPicture(QString::fromStdString(dir + "rund.png"), 1600, 300, QColor(0xB0, 0xD0, 0xF0));
        drawPicture(QString::fromStdString(dir + "berg.png"), 1200, 300, QColor(0xE0, 0xB0, 0x90));
        QFile notes(QString::fromStdString(dir + "notizen.txt"));
        QVERIFY(notes.open(QIODevice::WriteOnly));
        notes.write("Notizen\n");
        notes.close();
        AlbumRecord album;
        ladeStandards(album, home_);
        album.title = "Spielalbum";
        // Navigation buttons on every page: back, contents, forward.
        std::string* buttons[3] = {&album.pageDefaults.props.backButton, &album.pageDefaults.props.contentsButton,
                                   &album.pageDefaults.props.forwardButton};
        const char* names[3] = {"zurueck.png", "inhalt.png", "vor.png"};
        for (int i = 0; i < 3; ++i) {
            QImage button(64, 28, QImage::Format_RGB32);
            button.fill(QColor(0x1F, 0x3A, 0x5A).lighter(100 + 30 * i));
            QVERIFY(button.save(QString::fromStdString(dir + names[i])));
            *buttons[i] = dir + names[i];
        }
        PageRecord effects = album.pageDefaults;
        effects.pictures.add() = picture(40, 60, 200, 100, dir + "see.png", "Snow,2,60,0,0,0", "<vor>");
        effects.pictures.add() = picture(260, 60, 200, 100, dir + "see.png", "Rain,4,60,0,0,0", "Inhalt");
        effects.pictures.add() = picture(40, 200, 200, 100, dir + "see.png", "Lake,3,50,0,0,0");
        effects.pictures.add() = picture(260, 200, 200, 100, dir + "see.png", "", "<vollbild>");
        effects.texts.add() = text(40, 340, "Weiter", "Zweite Seite.htm");
        effects.texts.add() = text(260, 340, "Zurück", "<zurück>");
        effects.texts.add() = text(40, 390, "Außen", "https://example.org/album");
        effects.texts.add() = text(260, 390, "Datei", "notizen.txt");
        effects.texts.add() = text(40, 440, "Schräg", "a_b.htm");
        PageRecord second = album.pageDefaults;
        second.pictures.add() = picture(40, 60, 200, 100, dir + "see.png", "Lake,3,50,0,0,0");
        second.texts.add() = text(40, 200, "Zweite Seite mit Segelboot", "<vor>");
        PageRecord contents = album.pageDefaults;
        contents.texts.add() = text(40, 60, "Inhalt");
        PageRecord slash = album.pageDefaults;
        slash.texts.add() = text(40, 60, "Schrägstrich");
        PageRecord pano = album.pageDefaults;
        PanoramaElement& viewer = pano.panoramas.add();
        viewer.left = 40;
        viewer.top = 60;
        viewer.width = 400;
        viewer.height = 150;
        viewer.hotspotCount = 1;
        viewer.hotspots[0].urlName = dir + "rund.png";
        viewer.hotspots[0].zoomStart = "Full";
        viewer.hotspots[0].x1[0] = 100;
        viewer.hotspots[0].x2[0] = 300;
        viewer.hotspots[0].y1[0] = 50;
        viewer.hotspots[0].y2[0] = 250;
        viewer.hotspots[0].target[0] = 1;
        viewer.hotspots[1].urlName = dir + "berg.png";
        viewer.hotspots[1].zoomStart = "100";
        SearchElement& search = pano.searchBoxes.add();
        search.left = 40;
        search.top = 240;
        search.width = 500;
        search.height = 110;
        search.caption = "Suchen";
        search.font = FontSpec{0x303030, "Liberation Sans", 12, kTrue, kFalse, kFalse};
        const std::pair<std::string, PageRecord*> pages[] = {
            {"Effekte", &effects}, {"Zweite Seite", &second}, {"Inhalt", &contents}, {"a/b", &slash}, {"Rundblick", &pano}};
        int n = 0;
        for (const auto& [title, page] : pages) {
            ReihenfolgePruefen(*page);
            page->title = title;
            const std::string file = "seite" + std::to_string(++n) + ".apg";
            QVERIFY(writePageFile(dir + file, *page).ok());
            album.pages.add() = PageEntry{title, file, dir, 0};
            ++album.pageCount;
        }
        prepareAlbumSave(album, albumPath());
        QVERIFY(writeAlbumFile(albumPath(), album).ok());
    }

    shell::MainWindow& start() {
        window_ = new shell::MainWindow(home_, *prompter_, *settings_);
        window_->MDIForm_Load({albumPath()}, {});
        window_->resize(1200, 800);
        window_->show();
        return *window_;
    }

    FrmNotePad* pad() const { return window_->activeNotePad(); }
    editor::PageCanvas* canvas() const { return pad()->canvas(); }
    void trigger(const char* name) { window_->action(name)->trigger(); }
    void openPage(const QString& title) {
        QTreeWidgetItem* album = window_->explorer()->node("AlbumZu");
        for (int i = 0; i < album->childCount(); ++i)
            if (album->child(i)->text(0) == title) window_->explorer()->activateNode(album->child(i));
    }
    template <class T = QWidget>
    T* control(const char* name) const {
        return canvas()->findChild<T*>(name);
    }
    void clickElement(int x, int y) { QTest::mouseClick(canvas(), Qt::LeftButton, {}, QPoint(x, y)); }
    int effectCount() const {
        int n = 0;
        for (auto* w : canvas()->findChildren<editor::EffectWidget*>())
            if (!w->objectName().isEmpty()) ++n;
        return n;
    }

private slots:
    void init() {
        dir_ = new QTemporaryDir;
        home_ = dir_->path().toStdString() + "/";
        qputenv("BRINDLESEE_HOME", QByteArray::fromStdString(home_));
        seedProgramDirectory(home_, installedResourceDirectory());
        prompter_ = new test::ScriptedPrompter;
        settings_ = new IniSettingsStore(home_ + "settings.ini");
        sink_.urls.clear();
        for (const char* scheme : {"http", "https", "file"}) QDesktopServices::setUrlHandler(scheme, &sink_, "open");
        writeAlbum();
    }

    void cleanup() {
        for (const char* scheme : {"http", "https", "file"}) QDesktopServices::unsetUrlHandler(scheme);
        if (window_) window_->unloadAll();
        delete window_;
        window_ = nullptr;
        delete settings_;
        delete prompter_;
        delete dir_;
    }

    void snowAndRainGetTwoEffectWidgetsWithTheirModes() {
        start();
        QVERIFY(pad());  // every later line works on the open page
        QCOMPARE(pad()->caption(), QString("Effekte"));
        QCOMPARE(effectCount(), 0);
        trigger("tbPlay");
        auto* snow = control<editor::PrecipitationEffect>("uscEffectRain1");
        auto* rain = control<editor::PrecipitationEffect>("uscEffectRain2");
        QVERIFY(snow && rain);
        QCOMPARE(snow->mode(), 1);
        QCOMPARE(snow->densityBase(), 21);
        QCOMPARE(rain->mode(), 2);
        QCOMPARE(rain->densityBase(), 31);
        QCOMPARE(snow->speed(), 2.0);
        QCOMPARE(rain->density(), 60.0);
        QCOMPARE(snow->geometry(), QRect(40, 60, 200, 100));
        QVERIFY(snow->running());
        QVERIFY(control<editor::LakeEffect>("uscEffectLake3"));
        QCOMPARE(effectCount(), 3);  // the plain picture gets none
        // Hidden, an effect stops its timer; shown, it runs again.
        snow->hide();
        QVERIFY(!snow->running());
        snow->show();
        QVERIFY(snow->running());
        // At 50 % the effects lie on the half-sized boxes.
        trigger("mnuZoom");
        QCOMPARE(control("uscEffectRain2")->geometry(), QRect(130, 30, 100, 50));
        trigger("tbPlay");
        QCOMPARE(effectCount(), 0);
        QVERIFY(!control("uscEffectRain1"));
        QVERIFY(prompter_->asked.empty());
    }

    void turningPlayOffAfterDeletingAnAnimatedPictureRemovesItsWidget() {
        start();
        QVERIFY(pad());  // every later line works on the open page
        trigger("tbPlay");
        QVERIFY(control("uscEffectRain1"));
        pad()->document().SetzAnker({Kind::Bild, 1}, 0);
        pad()->document().deleteSelection();
        QVERIFY(isTrue(pad()->document().page().pictures[1].deleted));
        QVERIFY(!control("uscEffectRain1"));
        QVERIFY(control("uscEffectRain2"));
        trigger("tbPlay");
        QCOMPARE(effectCount(), 0);
        QVERIFY(!control("uscEffectRain2"));
        // Playing again leaves the deleted picture out.
        trigger("tbPlay");
        QVERIFY(!control("uscEffectRain1"));
        QVERIFY(control("uscEffectRain2"));
        QVERIFY(prompter_->asked.empty());
    }

    void vollbildOpensTheFullView() {
        start();
        QVERIFY(pad());  // every later line works on the open page
        trigger("tbPlay");
        FrmNotePad* page = pad();
        clickElement(300, 240);  // the plain picture linked to "<vollbild>"
        QPointer<QWidget> view = page->vollbild();
        QVERIFY(view);
        QCOMPARE(view->objectName(), QString("frmVollbild"));
        QCOMPARE(view->windowTitle(), QString("Brindlesee Vollbild"));
        QVERIFY(view->isFullScreen());
        QCOMPARE(pad()->caption(), QString("Effekte"));  // no page changed
        QTest::keyClick(view, Qt::Key_Escape);
        QTRY_VERIFY(!view);
        trigger("mnuEnglisch");
        QTest::mouseClick(page->canvas(), Qt::LeftButton, {}, QPoint(300, 240));
        view = page->vollbild();
        QVERIFY(view);
        QCOMPARE(view->windowTitle(), QString("Brindlesee Fullscreen"));
        QTest::mouseClick(view, Qt::LeftButton);
        QTRY_VERIFY(!view);
        trigger("tbPlay");
    }

    void linksLeadWhereTheHtmlAlbumLeads() {
        start();
        QVERIFY(pad());  // every later line works on the open page
        trigger("tbPlay");
        clickElement(60, 350);  // "Zweite Seite.htm": a page by its file name
        QCOMPARE(pad()->caption(), QString("Zweite Seite"));
        QVERIFY(control<editor::LakeEffect>("uscEffectLake1"));  // a page opened during play plays
        clickElement(60, 210);  // "<vor>"
        QCOMPARE(pad()->caption(), QString("Inhalt"));
        openPage("Rundblick");
        QCOMPARE(pad()->caption(), QString("Rundblick"));
        openPage("Effekte");
        clickElement(280, 350);  // "<zurück>" on the first page: the last
        QCOMPARE(pad()->caption(), QString("Rundblick"));
        openPage("Effekte");
        // A click on the rain goes to its link, the bare title "Inhalt".
        QTest::mouseClick(control("uscEffectRain2"), Qt::LeftButton, {}, QPoint(20, 20));
        QCOMPARE(pad()->caption(), QString("Inhalt"));
        openPage("Effekte");
        QTest::mouseClick(control("uscEffectRain1"), Qt::LeftButton, {}, QPoint(20, 20));  // "<vor>"
        QCOMPARE(pad()->caption(), QString("Zweite Seite"));
        openPage("Effekte");
        clickElement(60, 450);  // "a_b.htm": the file name of the page "a/b"
        QCOMPARE(pad()->caption(), QString("a/b"));
        openPage("Effekte");
        clickElement(60, 400);  // outside
        clickElement(280, 400);  // a file beside the album
        QCOMPARE(int(sink_.urls.size()), 2);
        QCOMPARE(sink_.urls[0], QUrl("https://example.org/album"));
        QCOMPARE(sink_.urls[1], QUrl::fromLocalFile(QString::fromStdString(albumDir() + "notizen.txt")));
        QCOMPARE(pad()->caption(), QString("Effekte"));
        // The navigation buttons: back from the first page is the last page.
        const QRectF back = canvas()->buttonRect(0);
        QVERIFY(!back.isEmpty());
        clickElement(int(back.center().x()), int(back.center().y()));
        QCOMPARE(pad()->caption(), QString("Rundblick"));
        const QRectF contents = canvas()->buttonRect(1);
        QVERIFY(!contents.isEmpty());
        clickElement(int(contents.center().x()), int(contents.center().y()));
        QCOMPARE(pad()->caption(), QString("Inhalt"));
        const QRectF forward = canvas()->buttonRect(2);
        clickElement(int(forward.center().x()), int(forward.center().y()));
        QCOMPARE(pad()->caption(), QString("a/b"));
        QVERIFY(prompter_->asked.empty());
        // Out of play a click selects again.
        trigger("tbPlay");
        clickElement(60, 70);
        QCOMPARE(pad()->document().auswahl().size(), std::size_t(1));
    }

    void searchElementFindsPagesAndOpensThem() {
        start();
        QVERIFY(pad());  // every later line works on the open page
        openPage("Rundblick");
        trigger("tbPlay");
        auto* form = control<editor::SearchForm>("SuchMaschine1");
        QVERIFY(form);
        QCOMPARE(form->startButton()->text(), QString("Suche starten"));
        QCOMPARE(form->geometry(), QRect(40, 240, 500, 110));
        QTest::mouseClick(form->startButton(), Qt::LeftButton);  // no words
        QCOMPARE(prompter_->asked.back(), std::string("message|Suche|48|Bitte mindestens einen Suchbegriff eingeben"));
        QVERIFY(!form->results()->isVisible());
        QTest::keyClicks(form->input(), "segelboot");
        QTest::mouseClick(form->startButton(), Qt::LeftButton);
        // The first search makes the album's data file, as the program's search does.
        QCOMPARE(prompter_->asked.back(), "message|Suche|48|Die Datenbank: " + albumDir() +
                                              "daten.js konnte nicht gefunden werden!");
        QListWidget* list = form->results();
        QVERIFY(list->isVisible());
        QCOMPARE(list->count(), 1);
        QCOMPARE(list->item(0)->text(), QString("Zweite Seite"));
        QVERIFY(list->geometry().top() >= form->geometry().bottom());
        // Upper and lower case: "segelboot" is not "Segelboot".
        form->caseBox()->setChecked(true);
        QTest::mouseClick(form->startButton(), Qt::LeftButton);
        QCOMPARE(list->count(), 1);
        QCOMPARE(list->item(0)->text(), QString("Keine passende Seite gefunden."));
        QVERIFY(!(list->item(0)->flags() & Qt::ItemIsEnabled));
        form->caseBox()->setChecked(false);
        QTest::mouseClick(form->startButton(), Qt::LeftButton);
        const QRect item = list->visualItemRect(list->item(0));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, item.center());
        QCOMPARE(pad()->caption(), QString("Zweite Seite"));
        QCOMPARE(int(prompter_->asked.size()), 2);
    }

    void panoramaElementIsALiveViewer() {
        start();
        QVERIFY(pad());  // every later line works on the open page
        openPage("Rundblick");
        trigger("tbPlay");
        auto* viewer = control<editor::PanoramaViewer>("PANVO1");
        QVERIFY(viewer);
        QCOMPARE(viewer->geometry(), QRect(40, 60, 400, 150));
        QCOMPARE(viewer->index(), 0);
        // "Full" fills the box: 1600 x 300 at 400 x 150 goes round at half size.
        QCOMPARE(viewer->camera().scale, 0.5);
        QVERIFY(viewer->camera().wrap);
        // A click on the hotspot (100..300, 50..250 in the picture) shows picture 1.
        const QPointF spot = viewer->camera().pictureToCanvas({200, 150});
        QVERIFY(spot.x() > 0 && spot.x() < 400);
        QTest::mouseClick(viewer, Qt::LeftButton, {}, spot.toPoint());
        QCOMPARE(viewer->index(), 1);
        QCOMPARE(viewer->camera().scale, 1.0);  // "100"
        // A drag pans the view by the distance over the scale, and is no click.
        QTest::mousePress(viewer, Qt::LeftButton, {}, QPoint(300, 75));
        const double before = viewer->camera().vx;
        QTest::mouseMove(viewer, QPoint(250, 75));
        QTest::mouseMove(viewer, QPoint(200, 75));
        QTest::mouseRelease(viewer, Qt::LeftButton, {}, QPoint(200, 75));
        QCOMPARE(viewer->camera().vx, std::fmod(before + 100, 1200.0));
        QCOMPARE(viewer->index(), 1);
        // The wheel zooms in about the pointer.
        QWheelEvent wheel(QPointF(100, 75), viewer->mapToGlobal(QPointF(100, 75)), {}, QPoint(0, 120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(viewer, &wheel);
        QVERIFY(viewer->camera().scale > 1.0);
        trigger("tbPlay");
        QVERIFY(!control("PANVO1"));
        QVERIFY(!control("SuchMaschine1"));
    }

    void musicPlaysWhileThePageIsShownInPlay() {
        start();
        QVERIFY(pad());  // every later line works on the open page
        QFile wav(QString::fromStdString(albumDir() + "musik.wav"));
        QVERIFY(wav.open(QIODevice::WriteOnly));
        wav.write("RIFF");
        wav.close();
        pad()->document().page().music = albumDir() + "musik.wav";
        trigger("tbPlay");
        QCOMPARE(editor::SoundPlayer::instance().current(), QString::fromStdString(albumDir() + "musik.wav"));
        trigger("tbPlay");
        QVERIFY(editor::SoundPlayer::instance().current().isEmpty());
    }

    void screenshots() {
        const QByteArray out = qgetenv("BRINDLESEE_SCREENSHOTS");
        if (out.isEmpty()) QSKIP("BRINDLESEE_SCREENSHOTS not set");
        const QByteArray album = qgetenv("BRINDLESEE_SCREENSHOT_ALBUM");
        window_ = new shell::MainWindow(home_, *prompter_, *settings_);
        window_->MDIForm_Load({album.isEmpty() ? albumPath() : album.toStdString()}, {});
        window_->resize(1360, 860);
        window_->show();
        QVERIFY(QTest::qWaitForWindowExposed(window_));
        const QString effects = "Effekte";  // the sample album's page has the same title
        openPage(effects);
        QVERIFY(pad());
        trigger("tbPlay");
        QTest::qWait(1500);
        window_->grab().save(QString(out) + "/play-effects-de.png");
        trigger("mnuEnglisch");
        QTest::qWait(700);
        window_->grab().save(QString(out) + "/play-effects-en.png");
        trigger("mnuDeutsch");
        openPage("Rundblick");
        QTest::qWait(800);
        if (auto* form = control<editor::SearchForm>("SuchMaschine1")) {
            QTest::keyClicks(form->input(), "Leuchtturm");
            QTest::mouseClick(form->startButton(), Qt::LeftButton);
        }
        QTest::qWait(300);
        window_->grab().save(QString(out) + "/play-rundblick-de.png");
        trigger("mnuEnglisch");
        QTest::qWait(300);
        window_->grab().save(QString(out) + "/play-rundblick-en.png");
        openPage(effects);
        const PageRecord& page = pad()->document().page();
        for (int i = 1; i <= page.pictures.upper(); ++i) {
            if (page.pictures[i].ext.extText[1].empty()) continue;
            pad()->SpiegelLink("<vollbild>", Kind::Bild, pad()->tag(), i);
            break;
        }
        QTest::qWait(300);
        if (QWidget* view = pad()->vollbild()) {
            view->resize(1280, 800);
            QTest::qWait(200);
            view->grab().save(QString(out) + "/vollbild.png");
            view->close();
        }
    }
};

QTEST_MAIN(PlayTest)
#include "play_test.moc"
