// Faults found by using the page windows: the tabbed layout, the active
// tab, access keys, element boxes on dark and light pages, the status line,
// the canvas after undo and a new blank page.
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QLabel>
#include <QTabBar>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QPushButton>
#include <QTreeView>
#include <QTimer>

#include "shell/qt_prompter.h"
#include "window_fixture.h"

using namespace brindle;
using editor::ElementRef;
using editor::FrmNotePad;
using editor::Kind;

namespace {

void drag(QWidget* w, QPoint from, QPoint to) {
    QTest::mousePress(w, Qt::LeftButton, {}, from);
    QTest::mouseMove(w, from + (to - from) / 2);
    QTest::mouseMove(w, to);
    QTest::mouseRelease(w, Qt::LeftButton, {}, to);
}

// The access key of a caption ('&' before it), or a null character.
QChar accessKey(const QString& text, int* count) {
    QChar key;
    *count = 0;
    for (int i = 0; i + 1 < text.size(); ++i) {
        if (text[i] != '&') continue;
        if (text[i + 1] == '&') {
            ++i;
            continue;
        }
        ++*count;
        key = text[i + 1].toLower();
    }
    return key;
}

// Each entry of the menu (and of its submenus) has exactly one access key
// of its own; returns the entries that fail, "menu: entry".
QStringList accessKeyFaults(const QString& where, const QList<QAction*>& actions) {
    QStringList faults;
    QMap<QChar, QString> seen;
    for (QAction* a : actions) {
        if (a->isSeparator() || !a->isVisible()) continue;
        int count = 0;
        const QChar key = accessKey(a->text(), &count);
        if (count != 1) faults << where + ": " + a->text() + " (no single access key)";
        else if (seen.contains(key)) faults << where + ": " + a->text() + " and " + seen[key];
        else seen[key] = a->text();
        if (QMenu* sub = a->menu()) faults << accessKeyFaults(a->text(), sub->actions());
    }
    return faults;
}

QStringList popupAccessKeyFaults(QWidget* canvas, QPoint at) {
    QStringList faults;
    bool shown = false;
    QTimer::singleShot(0, [&] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu) return;
        shown = true;
        faults = accessKeyFaults("popup", menu->actions());
        menu->close();
    });
    QTest::mouseClick(canvas, Qt::RightButton, {}, at);
    if (!shown) faults << "no menu shown";
    return faults;
}

// The largest grey-level difference from `background` along a vertical line.
int contrastAlong(const QImage& img, int x, int top, int bottom, QRgb background) {
    int most = 0;
    for (int y = top; y <= bottom; ++y) most = std::max(most, std::abs(qGray(img.pixel(x, y)) - qGray(background)));
    return most;
}

}  // namespace

class WindowFaultsTest : public QObject {
    Q_OBJECT
    test::WindowFixture f;

    QMdiArea* area() const { return f.window->mdiArea(); }

    // Every page window a maximised tab of the area, one tab per window.
    void verifyTabbed(int windows) {
        QCOMPARE(area()->viewMode(), QMdiArea::TabbedView);
        QCOMPARE(int(area()->subWindowList().size()), windows);
        auto* tabs = area()->findChild<QTabBar*>();
        QVERIFY(tabs);
        QCOMPARE(tabs->count(), windows);
        // The active page fills the area; the others wait behind it as tabs.
        QMdiSubWindow* active = area()->activeSubWindow();
        QVERIFY(active);
        QVERIFY2(active->isMaximized(), qPrintable(active->windowTitle()));
        QCOMPARE(active->geometry(), area()->viewport()->rect());
        QCOMPARE(tabs->tabText(tabs->currentIndex()), active->windowTitle());
    }

private slots:
    void init() { f.setUp(); }
    void cleanup() { f.tearDown(); }

    void noForANeverSavedPageKeepsTheOtherTabs() {
        shell::MainWindow& w = f.start({f.albumPath()});
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        w.explorer()->activateNode(w.explorer()->node("Seite2"));
        f.trigger("mnuNeueSeite");
        QCOMPARE(f.pad()->caption(), QString("Seite1"));
        verifyTabbed(3);
        f.prompter->inputs.push_back("Etwas");
        w.setInsertMode("Text");
        drag(f.canvas(), {40, 40}, {200, 80});
        f.prompter->answers.push_back(kNo);
        f.trigger("mnuFClose");
        QTest::qWait(50);
        QCOMPARE(w.session().album().pageCount, std::int16_t(2));
        verifyTabbed(2);
        // Closing a saved page changes nothing about the others either.
        f.trigger("mnuFClose");
        QTest::qWait(50);
        verifyTabbed(1);
    }

    void saveAndHtmlRunKeepTheActiveTab() {
        shell::MainWindow& w = f.start({f.albumPath()});
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        FrmNotePad* first = f.pad();
        drag(f.canvas(), {100, 100}, {120, 100});  // page A changed
        w.explorer()->activateNode(w.explorer()->node("Seite2"));
        FrmNotePad* second = f.pad();
        QVERIFY(second != first);
        drag(f.canvas(), {60, 50}, {80, 50});  // page B changed
        w.explorer()->activateNode(w.explorer()->node("Seite1"));
        QCOMPARE(f.pad(), first);
        f.trigger("mnuAlbumSpeichern");
        QVERIFY(f.prompter->asked.empty());
        QCOMPARE(w.session().state().pageSlots[second->tag()].modified, kFalse);
        QCOMPARE(f.pad(), first);
        QCOMPARE(area()->activeSubWindow()->widget(), first);
        verifyTabbed(2);
        w.explorer()->activateNode(w.explorer()->node("Seite2"));
        QCOMPARE(f.pad(), second);
        const std::string out = f.home + "html/";
        QDir().mkpath(QString::fromStdString(out));
        f.prompter->files.push_back(out);
        f.prompter->answers.push_back(kNo);
        f.trigger("mnuHTMLAlbum");
        QCOMPARE(f.pad(), second);
        verifyTabbed(2);
    }

    void everyMenuEntryHasItsOwnAccessKey() {
        shell::MainWindow& w = f.start({f.albumPath()});
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        std::vector<std::string> recent;
        for (int i = 1; i <= 10; ++i) recent.push_back("/alben/R&B " + std::to_string(i) + ".apr");
        w.rebuildRecentMenu(recent);
        for (const char* language : {"mnuDeutsch", "mnuEnglisch"}) {
            f.trigger(language);
            const QStringList faults = accessKeyFaults("menu bar", w.menuBar()->actions());
            QVERIFY2(faults.isEmpty(), qPrintable(faults.join("\n")));
            const QStringList canvasFaults = popupAccessKeyFaults(f.canvas(), {700, 500});
            QVERIFY2(canvasFaults.isEmpty(), qPrintable(canvasFaults.join("\n")));
        }
        QCOMPARE(w.action("mnuSeiteEntfernen")->text(), QString("&Delete Seite A"));
        f.trigger("mnuDeutsch");
        QCOMPARE(w.action("mnuSeiteEntfernen")->text(), QString("Seite A &entfernen"));
        QCOMPARE(w.findChild<QMenu*>("mnuZuletzt")->actions().at(9)->text(), QString("1&0  /alben/R&&B 10.apr"));
        QCOMPARE(w.action("mnuEPaste")->text(), QString("&Einfügen"));
        // Names on the toolbar stay without access keys.
        QCOMPARE(w.action("tbBilder")->iconText(), QString("Bilder"));
    }

    void elementBoxesAndFramesShowOnDarkAndLightPages() {
        shell::MainWindow& w = f.start({f.albumPath()});
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        // black, white, and a blue just like the selection colour (0x00BBGGRR)
        for (std::uint32_t colour : {0x000000u, 0xFFFFFFu, 0xC86F1Fu}) {
            const QString which = QString::number(colour, 16);
            PageRecord& page = f.pad()->document().page();
            page.background.clear();
            page.backgroundColor = colour;
            f.canvas()->reloadPage();
            const QRgb bg = qRgb(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF);
            // The text box runs from x 320 to 679; its lower right part is empty.
            const QImage editing = f.canvas()->grab().toImage();
            QCOMPARE(editing.pixel(600, 230), bg);  // inside: the page itself
            QVERIFY2(contrastAlong(editing, 679, 150, 250, bg) >= 40, qPrintable(which));
            QVERIFY2(contrastAlong(editing, 320, 150, 250, bg) >= 40, qPrintable(which));
            QVERIFY2(contrastAlong(editing, 679, 150, 250, bg) < 255, qPrintable(which));  // faint
            f.trigger("tbPlay");
            const QImage playing = f.canvas()->grab().toImage();
            QVERIFY2(contrastAlong(playing, 679, 150, 250, bg) == 0, qPrintable(which));
            f.trigger("tbPlay");
            // The rubber band of a selection on empty page.
            QTest::mousePress(f.canvas(), Qt::LeftButton, {}, {700, 300});
            QTest::mouseMove(f.canvas(), {800, 380});
            QTest::mouseMove(f.canvas(), {900, 450});
            const QImage band = f.canvas()->grab().toImage();
            QTest::mouseRelease(f.canvas(), Qt::LeftButton, {}, {900, 450});
            QVERIFY2(contrastAlong(band, 700, 310, 440, bg) >= 100, qPrintable(which));
            QVERIFY2(contrastAlong(band, 899, 310, 440, bg) >= 100, qPrintable(which));
        }
    }

    void qtDialogsSpeakTheSessionLanguage() {
        shell::MainWindow& w = f.start({f.albumPath()});
        for (bool german : {true, false, true}) {
            w.setLanguage(german ? Language::German : Language::English);
            QFileDialog dialog(&w, "Brindlesee", QString::fromStdString(f.home));
            shell::prepareFileDialog(dialog);
            dialog.show();
            QVERIFY(QTest::qWaitForWindowExposed(&dialog));
            auto* buttons = dialog.findChild<QDialogButtonBox*>();
            QVERIFY(buttons);
            QCOMPARE(buttons->button(QDialogButtonBox::Cancel)->text(), QString(german ? "Abbrechen" : "Cancel"));
            const QString lookIn = QCoreApplication::translate("QFileDialog", "Look in:");
            QVERIFY2((lookIn != "Look in:") == german, qPrintable(lookIn));
            // Every column of the detail view shows its heading whole.
            auto* view = dialog.findChild<QTreeView*>("treeView");
            QVERIFY(view && view->isVisible());
            QHeaderView* header = view->header();
            for (int i = 0; i < header->count(); ++i) {
                if (header->isSectionHidden(i)) continue;
                const QString title = view->model()->headerData(i, Qt::Horizontal).toString();
                const int needed = header->fontMetrics().horizontalAdvance(title) + 12;
                QVERIFY2(header->sectionSize(i) >= needed, qPrintable(title));
            }
            QVERIFY(header->sectionSize(0) >= 300);  // the name takes the room that is left
            dialog.reject();
        }
    }

    void statusLineAndCanvasAfterUndo() {
        shell::MainWindow& w = f.start({f.albumPath()});
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        // The size text goes with the selection.
        QTest::mouseClick(f.canvas(), Qt::LeftButton, {}, {400, 100});
        QCOMPARE(w.lblStatus()->text(), QString("B:360 H:200   L:320 T:60"));
        QTest::mouseClick(f.canvas(), Qt::LeftButton, {}, {700, 500});
        QVERIFY(f.pad()->document().auswahl().empty());
        QCOMPARE(w.lblStatus()->text(), QString());
        QTest::mouseClick(f.canvas(), Qt::LeftButton, {}, {400, 100});
        f.trigger("mnuEDelete");
        QCOMPARE(w.lblStatus()->text(), QString());

        // A text dragged far out grows the canvas; undo shrinks it back.
        f.trigger("mnuUndo");
        const QSize before = f.canvas()->size();
        drag(f.canvas(), {400, 100}, {2400, 1900});
        QVERIFY(f.canvas()->width() > before.width() + 1000);
        QVERIFY(f.canvas()->height() > before.height() + 1000);
        f.trigger("mnuUndo");
        QCOMPARE(f.canvas()->size(), before);
        f.trigger("mnuRedo");
        QVERIFY(f.canvas()->width() > before.width() + 1000);

    }

    // A tool, not a check (not registered with CTest): under Xvfb with
    // BRINDLESEE_SCREENSHOTS naming a folder, a page with its faint element
    // boxes on a dark and on a light background.
    void screenshots() {
        const QByteArray out = qgetenv("BRINDLESEE_SCREENSHOTS");
        if (out.isEmpty()) QSKIP("BRINDLESEE_SCREENSHOTS not set");
        shell::MainWindow& w = f.start({f.albumPath()});
        w.resize(1360, 860);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        for (const auto& [name, colour] : {std::pair{"dark", 0x3A2A1Eu}, std::pair{"light", 0xF2F4F6u}}) {
            PageRecord& page = f.pad()->document().page();
            page.background.clear();
            page.backgroundColor = colour;
            page.texts[1].font.color = colour == 0x3A2A1Eu ? 0xF0F0F0 : 0x303030;
            f.pad()->NeuZeichnen();
            QTest::mouseClick(f.canvas(), Qt::LeftButton, {}, {100, 100});
            QTest::qWait(200);
            w.grab().save(QString("%1/element-boxes-%2.png").arg(QString(out), name));
        }
    }
};

QTEST_MAIN(WindowFaultsTest)
#include "window_faults_test.moc"
