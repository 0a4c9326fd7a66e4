// The real main window on a temporary program directory with a two-page
// album drawn by the test: shared by the window tests of the options
// dialog and of the page windows.
#pragma once

#include <QDir>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>

#include "album/album_file.h"
#include "album/page_file.h"
#include "album/stacking.h"
#include "editor/frm_notepad.h"
#include "shell/album_explorer.h"
#include "shell/main_window.h"
#include "shell/startup.h"
#include "support/scripted_prompter.h"

namespace brindle::test {

// A landscape-like picture: sky, hills and a lake.
inline void drawPhoto(const QString& path, int width = 480, int height = 320) {
    QImage img(width, height, QImage::Format_RGB32);
    QPainter p(&img);
    QLinearGradient sky(0, 0, 0, height * 0.6);
    sky.setColorAt(0, QColor(0x6F, 0xA8, 0xDC));
    sky.setColorAt(1, QColor(0xE8, 0xC9, 0x9B));
    p.fillRect(img.rect(), sky);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0xF6, 0xE2, 0x9A));
    p.drawEllipse(QPointF(width * 0.72, height * 0.3), width * 0.06, width * 0.06);
    p.setBrush(QColor(0x4A, 0x6B, 0x3F));
    p.drawEllipse(QPointF(width * 0.25, height * 0.78), width * 0.5, height * 0.32);
    p.setBrush(QColor(0x35, 0x55, 0x33));
    p.drawEllipse(QPointF(width * 0.85, height * 0.82), width * 0.45, height * 0.3);
    p.setBrush(QColor(0x2E, 0x6F, 0x9E));
    p.drawRect(QRectF(0, height * 0.86, width, height * 0.14));
    p.end();
    img.save(path);
}

inline TextElement textElement(int left, int top, int width, int height, const std::string& words) {
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

class WindowFixture {
public:
    QTemporaryDir* dir = nullptr;
    std::string home;
    ScriptedPrompter* prompter = nullptr;
    IniSettingsStore* settings = nullptr;
    shell::MainWindow* window = nullptr;

    std::string albumPath() const { return home + "Album/Testalbum.apr"; }

    void setUp() {
        dir = new QTemporaryDir;
        home = dir->path().toStdString() + "/";
        qputenv("BRINDLESEE_HOME", QByteArray::fromStdString(home));
        seedProgramDirectory(home, installedResourceDirectory());
        prompter = new ScriptedPrompter;
        settings = new IniSettingsStore(home + "settings.ini");
        writeAlbum();
    }

    void tearDown() {
        if (window) window->unloadAll();
        delete window;
        window = nullptr;
        delete settings;
        delete prompter;
        delete dir;
    }

    // Two saved pages: a photo and a text on "Seite A", a text on "Seite B".
    void writeAlbum() {
        const std::string folder = home + "Album/";
        QDir().mkpath(QString::fromStdString(folder));
        drawPhoto(QString::fromStdString(folder + "see.png"));
        AlbumRecord album;
        ladeStandards(album, home);
        album.title = "Testalbum";
        PageRecord first = album.pageDefaults;
        PictureElement& pic = first.pictures.add();
        pic.left = 40, pic.top = 60, pic.width = 240, pic.height = 160;
        pic.path = folder + "see.png";
        pic.pictureWidth = 480, pic.pictureHeight = 320;
        pic.proportional = kTrue;
        first.texts.add() = textElement(320, 60, 360, 200, "Hallo Welt");
        PageRecord second = album.pageDefaults;
        second.texts.add() = textElement(40, 40, 220, 40, "Zweite Seite");
        int n = 0;
        for (PageRecord* page : {&first, &second}) {
            ReihenfolgePruefen(*page);
            const std::string title = n++ == 0 ? "Seite A" : "Seite B";
            page->title = title;
            QVERIFY(writePageFile(folder + title + ".apg", *page).ok());
            album.pages.add() = PageEntry{title, title + ".apg", folder, 0};
            ++album.pageCount;
        }
        prepareAlbumSave(album, albumPath());
        QVERIFY(writeAlbumFile(albumPath(), album).ok());
    }

    shell::MainWindow& start(std::vector<std::string> args) {
        window = new shell::MainWindow(home, *prompter, *settings);
        window->MDIForm_Load(args, {});
        return *window;
    }

    editor::FrmNotePad* pad() const { return window->activeNotePad(); }
    editor::PageCanvas* canvas() const { return pad()->canvas(); }
    void trigger(const char* name) { window->action(name)->trigger(); }
};

}  // namespace brindle::test
