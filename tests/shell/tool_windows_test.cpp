// The picture tools from the main window's Werkzeug menu and from the
// start switches: the windows open on the chosen pictures and follow the
// program's language.
#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QPushButton>
#include <QTest>

#include "explorer/bildviewer_window.h"
#include "media/avi_maker_window.h"
#include "panorama/make_pano_window.h"
#include "print/print_sheet_window.h"
#include "shell/explorer_launch.h"
#include "shell/tool_windows.h"
#include "studio/design_window.h"
#include "studio/red_eye_window.h"
#include "studio/resize_window.h"
#include "studio/split_window.h"
#include "window_fixture.h"

using namespace brindle;

namespace {

template <class Window>
std::vector<Window*> openWindows() {
    std::vector<Window*> found;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* tool = qobject_cast<Window*>(w); tool && tool->isVisible()) found.push_back(tool);
    return found;
}

void closeAll(const std::vector<QWidget*>& windows) {
    for (QWidget* w : windows) w->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

}  // namespace

class ToolWindowsTest : public QObject {
    Q_OBJECT
    test::WindowFixture f;

  private slots:
    void init() { f.setUp(); }
    void cleanup() {
        for (QWidget* w : QApplication::topLevelWidgets())
            if (w != f.window && w->isWindow() && w->testAttribute(Qt::WA_DeleteOnClose)) w->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        f.tearDown();
    }

    void werkzeugMenuOpensEachToolOnTheChosenPictures() {
        shell::MainWindow& main = f.start({f.albumPath()});
        QMenu* tools = main.findChild<QMenu*>("mnuWerkzeug");
        QVERIFY(tools && tools->isEnabled());
        const std::string folder = f.home + "Album/";
        test::drawPhoto(QString::fromStdString(folder + "zwei.png"));

        // Red eye: one window per picture.
        f.prompter->files = {folder + ";see.png;zwei.png"};
        f.trigger("mnuRoteAugen");
        QCOMPARE(int(openWindows<studio::RedEyeWindow>().size()), 2);
        QVERIFY(f.prompter->asked.back().rfind("open|", 0) == 0);

        f.prompter->files = {folder + ";see.png;zwei.png"};
        f.trigger("mnuFotodesign");
        QCOMPARE(int(openWindows<studio::DesignWindow>().size()), 1);
        f.prompter->files = {folder + "see.png"};
        f.trigger("mnuBildgroesse");
        QCOMPARE(int(openWindows<studio::ResizeWindow>().size()), 1);
        f.prompter->files = {folder + "see.png"};
        f.trigger("mnuBilderTeilen");
        QCOMPARE(int(openWindows<studio::SplitWindow>().size()), 1);

        f.prompter->files = {folder + ";see.png;zwei.png"};
        f.trigger("mnuDrucken");
        QCOMPARE(int(openWindows<print::PrintSheetWindow>().size()), 1);

        // The video maker makes bitmaps of the chosen photos under the program directory.
        test::drawPhoto(QString::fromStdString(folder + "drei.jpg"));
        f.prompter->files = {folder + "drei.jpg"};
        f.trigger("mnuVideo");
        const auto videos = openWindows<media::AviMakerWindow>();
        QCOMPARE(int(videos.size()), 1);
        QCOMPARE(int(videos.front()->bitmaps().size()), 1);
        QCOMPARE(videos.front()->bitmaps().front(), main.session().state().programDirectory + "AVITemp/1_drei.bmp");

        // Breaking off the file dialog opens nothing.
        f.trigger("mnuBilderTeilen");
        QCOMPARE(int(openWindows<studio::SplitWindow>().size()), 1);

        f.prompter->files = {folder + ";see.png;zwei.png"};
        f.trigger("mnuPanorama");
        const auto panos = openWindows<panorama::MakePanoWindow>();
        QCOMPARE(int(panos.size()), 1);
        QCOMPARE(int(panos.front()->pictures().size()), 2);
        // A saved panorama goes on the open page as one more panorama element, in one step.
        const std::size_t before = f.pad()->document().page().panoramas.count();
        emit panos.front()->placeOnPage(QString::fromStdString(folder + "see.png"));
        QCOMPARE(f.pad()->document().page().panoramas.count(), before + 1);
        QVERIFY(f.pad()->document().undoRing().canUndo());

        // The program's language reaches the open tools.
        main.setLanguage(Language::English);
        QCOMPARE(openWindows<studio::RedEyeWindow>().front()->windowTitle(), QString("Brindlesee Red Eye"));
        QCOMPARE(openWindows<studio::DesignWindow>().front()->windowTitle(), QString("Assistant Photo Design"));
        QCOMPARE(openWindows<studio::SplitWindow>().front()->windowTitle(), QString("Split Images"));
        QCOMPARE(openWindows<media::AviMakerWindow>().front()->findChild<QPushButton*>("cmdWriteAVI")->text(),
                 QString("&Write AVI ..."));
    }

    void startSwitchesOpenTheirToolAlone() {
        const std::string picture = f.home + "Album/see.png";
        QCOMPARE(shell::toolOfStartMode("RedEye"), std::optional(shell::PictureTool::RedEye));
        QCOMPARE(shell::toolOfStartMode("Rezise"), std::optional(shell::PictureTool::Resize));
        QCOMPARE(shell::toolOfStartMode("Bildbearbeitung"), std::optional(shell::PictureTool::Design));
        QVERIFY(!shell::toolOfStartMode("brindleseeexplorer"));
        QVERIFY(!shell::toolOfStartMode(""));

        StartDecision start = decideStart({"/r", picture}, *f.prompter, Language::German);
        std::vector<QWidget*> opened = shell::openPictureTool(*shell::toolOfStartMode(start.startMode),
                                                              start.toolPictures, *f.prompter, Language::German);
        QCOMPARE(int(opened.size()), 1);
        QVERIFY(qobject_cast<studio::RedEyeWindow*>(opened.front()));
        closeAll(opened);

        start = decideStart({"/b", picture}, *f.prompter, Language::German);
        opened = shell::openPictureTool(*shell::toolOfStartMode(start.startMode), start.toolPictures, *f.prompter,
                                        Language::German);
        QCOMPARE(int(opened.size()), 1);
        QVERIFY(qobject_cast<studio::DesignWindow*>(opened.front()));
        closeAll(opened);

        start = decideStart({"/g", picture}, *f.prompter, Language::German);
        opened = shell::openPictureTool(*shell::toolOfStartMode(start.startMode), start.toolPictures, *f.prompter,
                                        Language::German);
        QCOMPARE(int(opened.size()), 1);
        QVERIFY(qobject_cast<studio::ResizeWindow*>(opened.front()));
        closeAll(opened);
        QVERIFY(shell::openPictureTool(shell::PictureTool::Resize, {}, *f.prompter, Language::German).empty());
    }

    void explorerOpensFromTheMenuAndHandsPicturesToTheTools() {
        shell::MainWindow& main = f.start({f.albumPath()});
        main.session().state().pictureDirectory = f.home + "Album/";
        QVERIFY(main.action("mnuBrindleseeExplorer")->isEnabled());
        f.trigger("mnuBrindleseeExplorer");
        const auto explorers = openWindows<explorer::FrmBildviewer>();
        QCOMPARE(int(explorers.size()), 1);
        QCOMPARE(explorers.front()->folder() + "/", f.home + "Album/");
        explorers.front()->close();

        // From the command line: the picture's folder with the picture selected.
        const std::string picture = f.home + "Album/see.png";
        const StartDecision start = decideStart({picture}, *f.prompter, Language::German);
        explorer::FrmBildviewer* w = shell::openExplorerWindow(
            f.home, explorerStart({picture}, start, "/", *f.prompter, Language::German), *f.prompter,
            Language::German);
        QCOMPARE(w->selectedFiles(), std::vector<std::string>{picture});
        // It follows the program's language like the tools.
        shell::setToolLanguage(Language::English);
        QCOMPARE(w->language(), Language::English);
        QCOMPARE(w->findChild<QAction*>("zoom")->toolTip(), QString("Size Thumbs"));
        shell::setToolLanguage(Language::German);
        // Its tool keys open the tools on the selection.
        const std::pair<const char*, const QMetaObject*> tools[] = {
            {"zeichnen", &studio::DesignWindow::staticMetaObject},
            {"redeye", &studio::RedEyeWindow::staticMetaObject},
            {"Größe", &studio::ResizeWindow::staticMetaObject},
            {"Teilen", &studio::SplitWindow::staticMetaObject},
            {"panorama", &panorama::MakePanoWindow::staticMetaObject},
            {"MakeAVI", &media::AviMakerWindow::staticMetaObject}};
        for (const auto& [key, type] : tools) {
            w->MenüGeklickt(key);
            bool found = false;
            for (QWidget* top : QApplication::topLevelWidgets())
                if (top->isVisible() && top->metaObject() == type) {
                    found = true;
                    top->close();
                }
            QVERIFY2(found, key);
        }
        w->close();
    }
};

QTEST_MAIN(ToolWindowsTest)
#include "tool_windows_test.moc"
