// The picture dialog in the real main window: a double-click on a picture
// opens it, the frame is changed, OK records one step that undo takes back;
// Cancel changes nothing. `screenshots` saves every tab in both languages
// (run by hand, see the README).
#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <functional>

#include "album/album_file.h"
#include "album/page_file.h"
#include "album/stacking.h"
#include "editor/frm_notepad.h"
#include "properties/picture_dialog.h"
#include "shell/main_window.h"
#include "shell/startup.h"
#include "support/evening_photo.h"
#include "support/scripted_prompter.h"

using namespace brindle;
using brindle::editor::ElementRef;
using brindle::editor::FrmNotePad;
using brindle::editor::Kind;

namespace {

void drawPhoto(const QString& path) { test::eveningPhoto().save(path); }

PictureElement picture(int left, int top, int w, int h, const std::string& path) {
    PictureElement e;
    e.left = std::int16_t(left);
    e.top = std::int16_t(top);
    e.width = std::int16_t(w);
    e.height = std::int16_t(h);
    e.path = path;
    e.pictureWidth = 640;
    e.pictureHeight = 420;
    e.proportional = kTrue;
    e.ext.extText[2] = std::to_string(w);
    e.ext.extText[3] = std::to_string(h);
    return e;
}

}  // namespace

class PictureDialogTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir* dir_ = nullptr;
    std::string home_;
    test::ScriptedPrompter* prompter_ = nullptr;
    IniSettingsStore* settings_ = nullptr;
    shell::MainWindow* window_ = nullptr;

    std::string albumPath() const { return home_ + "Album/Abend.apr"; }

    void writeAlbum() {
        const std::string dir = home_ + "Album/";
        QDir().mkpath(QString::fromStdString(dir));
        drawPhoto(QString::fromStdString(dir + "abend.png"));
        AlbumRecord album;
        ladeStandards(album, home_);
        album.title = "Abend";
        PageRecord page = album.pageDefaults;
        page.title = "Am See";
        page.pictures.add() = picture(60, 40, 320, 210, dir + "abend.png");
        page.pictures[1].ext.extText[1] = "Lake,4,55,0,0,0";
        ReihenfolgePruefen(page);
        QVERIFY(writePageFile(dir + "Am See.apg", page).ok());
        album.pages.add() = PageEntry{"Am See", "Am See.apg", dir, 0};
        album.pageCount = 1;
        prepareAlbumSave(album, albumPath());
        QVERIFY(writeAlbumFile(albumPath(), album).ok());
    }

    FrmNotePad* pad() const { return window_->activeNotePad(); }
    PictureElement& record() { return pad()->document().page().pictures[1]; }

    // Double-clicks the picture and hands the open dialog to `work`, which
    // ends it; returns once the dialog is closed.
    void withDialog(const std::function<void(properties::PictureDialog&)>& work) {
        bool seen = false;
        QTimer::singleShot(0, this, [&] {
            auto* dialog = qobject_cast<properties::PictureDialog*>(QApplication::activeModalWidget());
            if (!dialog) return;
            seen = true;
            work(*dialog);
            if (dialog->isVisible()) dialog->reject();  // a failed check must not leave it open
        });
        QTest::mouseDClick(pad()->canvas(), Qt::LeftButton, {}, QPoint(200, 140));
        QVERIFY2(seen, "the double-click opened no picture dialog");
    }

    template <class T>
    static T* child(QWidget& w, const char* name) {
        T* found = w.findChild<T*>(name);
        if (!found) qWarning("no control %s", name);
        return found;
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
        window_ = new shell::MainWindow(home_, *prompter_, *settings_);
        window_->MDIForm_Load({albumPath()}, {});
        QVERIFY(pad());
    }

    void cleanup() {
        if (window_) window_->unloadAll();
        delete window_;
        window_ = nullptr;
        delete settings_;
        delete prompter_;
        delete dir_;
    }

    void doubleClickChangeFrameOkAndUndo() {
        const PictureElement before = record();
        withDialog([](properties::PictureDialog& d) {
            d.tabs()->setCurrentIndex(2);
            child<QCheckBox>(d, "chkRahmen")->setChecked(true);
            child<QSlider>(d, "sldRahmenDicke")->setValue(12);
            child<QSlider>(d, "sldRahmenLicht")->setValue(70);
            child<QSlider>(d, "sldRahmenSchatten")->setValue(30);
            QCOMPARE(child<QLabel>(d, "lblRahmenDicke")->text(), QString("12"));
            QVERIFY(!child<QLabel>(d, "picRahmenVorschau")->pixmap().isNull());
            // The lake's sliders show the record's values.
            QVERIFY(child<QRadioButton>(d, "optLake")->isChecked());
            QCOMPARE(child<QSpinBox>(d, "txtLakeSpeed")->value(), 4);
            QCOMPARE(child<QSlider>(d, "sldLakeGrenze")->value(), 55);
            child<QSpinBox>(d, "txtLakeSpeed")->setValue(6);
            QTest::mouseClick(child<QPushButton>(d, "cmdOK"), Qt::LeftButton);
        });
        QCOMPARE(QString::fromStdString(record().ext.extText[0]), QString("12,70,30,8421504,None,1,"));
        QCOMPARE(QString::fromStdString(record().ext.extText[1]), QString("Lake,6,55,0,0,0"));
        QCOMPARE(QString::fromStdString(record().ext.extText[2]), QString("344"));
        QCOMPARE(QString::fromStdString(record().ext.extText[3]), QString("234"));
        QVERIFY(isTrue(window_->session().state().pageSlots[pad()->tag()].modified));
        QVERIFY(window_->action("mnuUndo")->isEnabled());
        window_->action("mnuUndo")->trigger();
        QVERIFY(record() == before);
    }

    void cancelChangesNothing() {
        const PictureElement before = record();
        const int steps = pad()->document().undoRing().pos;
        withDialog([](properties::PictureDialog& d) {
            child<QCheckBox>(d, "chkRahmen")->setChecked(true);
            child<QRadioButton>(d, "optSnow")->setChecked(true);
            child<QCheckBox>(d, "chkFürAlle")->setChecked(true);
            QTest::mouseClick(child<QPushButton>(d, "cmdAbbrechen"), Qt::LeftButton);
        });
        QVERIFY(record() == before);
        QCOMPARE(pad()->document().undoRing().pos, steps);
        QVERIFY(!isTrue(window_->session().state().pageSlots[pad()->tag()].modified));
    }

    void screenshots() {
        const QByteArray out = qgetenv("BRINDLESEE_SCREENSHOTS");
        if (out.isEmpty()) QSKIP("BRINDLESEE_SCREENSHOTS not set");
        record().ext.extText[0] = "14,60,40,3355443,None,1";
        window_->resize(1200, 800);
        window_->show();
        QVERIFY(QTest::qWaitForWindowExposed(window_));
        const char* tabNames[] = {"bild", "hyperlink", "rahmen", "animation"};
        for (const char* language : {"de", "en"}) {
            if (QByteArray(language) == "en") window_->action("mnuEnglisch")->trigger();
            withDialog([&](properties::PictureDialog& d) {
                for (int i = 0; i < 4; ++i) {
                    d.tabs()->setCurrentIndex(i);
                    QTest::qWait(250);
                    d.grab().save(QString("%1/picture-dialog-%2-%3.png").arg(QString(out), tabNames[i], language));
                }
                d.reject();
            });
        }
    }
};

QTEST_MAIN(PictureDialogTest)
#include "picture_dialog_test.moc"
