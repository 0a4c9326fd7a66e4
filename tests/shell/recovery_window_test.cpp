// Crash recovery with the real main window. The test executable starts
// itself again as a child that opens the album, changes pages through the
// editor's commands and waits; the test kills it with SIGKILL and starts a
// main window on the same program directory.
#include <QDirIterator>
#include <QMdiArea>
#include <QProcess>

#include "album/recovery.h"
#include "window_fixture.h"

using namespace brindle;
using editor::ElementRef;
using editor::FrmNotePad;
using editor::Kind;

namespace {

constexpr const char* kChildSwitch = "--recovery-child";
const std::string kChanged = "Nach dem Absturz";
const std::string kNewWords = "Neu und nie gespeichert";

// The child: the album open, "Seite A" changed by two steps, "Seite B" open
// and unchanged, a new page with a text; then "ready" and waiting for the end.
int runChild(const std::string& home) {
    qputenv("BRINDLESEE_HOME", QByteArray::fromStdString(home));
    test::ScriptedPrompter prompter;
    IniSettingsStore settings(home + "settings.ini");
    shell::MainWindow w(home, prompter, settings);
    w.MDIForm_Load({home + "Album/Testalbum.apr"}, {});
    Session& s = w.session();
    FrmNotePad* a = w.activeNotePad();
    if (!a || a->caption() != "Seite A") return 2;
    a->document().changeElement({Kind::Text, 1}, [&] { a->document().page().texts[1].text = kChanged; });
    a->document().SetzAnker({Kind::Bild, 1}, 0);
    a->document().keyDown(editor::ArrowKey::Right, {});
    a->document().keyUp();
    s.SeiteOeffnen(2, "", false);
    w.action("mnuNeueSeite")->trigger();
    FrmNotePad* fresh = w.activeNotePad();
    if (!fresh || fresh->caption() != "Seite1") return 3;
    fresh->document().createText({100, 100, 300, 60}, kNewWords);
    while (w.checkpoints()->hasDirty()) QCoreApplication::processEvents();
    QFile ready(QString::fromStdString(home + "ready"));
    if (!ready.open(QIODevice::WriteOnly)) return 4;
    ready.close();
    return QApplication::exec();
}

QStringList runFolders(const std::string& home) {
    return QDir(QString::fromStdString(home + "Temp")).entryList({"run-*"}, QDir::Dirs);
}

QStringList snapshots(const std::string& home) {
    return QDir(QString::fromStdString(home + "Temp")).entryList({"*.tmp"}, QDir::Files);
}

QStringList padCaptions(shell::MainWindow& w) {
    QStringList captions;
    for (FrmNotePad* pad : w.notePads())
        if (!pad->unloading()) captions << pad->caption();  // closed ones go on the next event turn
    captions.sort();
    return captions;
}

}  // namespace

class RecoveryWindowTest : public QObject {
    Q_OBJECT
    test::WindowFixture f;

    // Runs the child to its "ready" and kills it as a crash would.
    void crashChild() {
        QProcess child;
        child.setProcessChannelMode(QProcess::ForwardedChannels);
        child.start(QCoreApplication::applicationFilePath(),
                    {kChildSwitch, QString::fromStdString(f.home)});
        QVERIFY(child.waitForStarted());
        const QString ready = QString::fromStdString(f.home + "ready");
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(ready) || child.state() == QProcess::NotRunning, 120000);
        QVERIFY2(QFile::exists(ready), qPrintable(QString("child ended with %1").arg(child.exitCode())));
        child.kill();  // SIGKILL: no end of any kind runs
        QVERIFY(child.waitForFinished());
        QCOMPARE(child.exitStatus(), QProcess::CrashExit);
        QCOMPARE(runFolders(f.home).size(), 1);
        QVERIFY(!snapshots(f.home).isEmpty());
    }

    static std::string question() {
        return "message|Brindlesee|36|Brindlesee wurde nicht normal beendet.\r\r"
               "Im Album \"Testalbum.apr\" hatten diese Seiten ungespeicherte Änderungen:\r"
               "    Seite A\r    Seite1\r\r"
               "Sollen sie wiederhergestellt werden? Bei Nein werden diese Änderungen verworfen.";
    }

    std::vector<std::string> recoveryQuestions() const {
        std::vector<std::string> found;
        for (const std::string& q : f.prompter->asked)
            if (q.rfind("message|Brindlesee|", 0) == 0) found.push_back(q);
        return found;
    }

private slots:
    void init() { f.setUp(); }
    void cleanup() { f.tearDown(); }

    void killedProgramsChangesComeBackOnYes() {
        crashChild();
        f.prompter->answers = {kYes};
        shell::MainWindow& w = f.start({});
        QCOMPARE(recoveryQuestions(), std::vector<std::string>{question()});

        // The album of the crashed run, with the changed page and the new one.
        Session& s = w.session();
        QCOMPARE(QString::fromStdString(s.album().directory + s.album().fileName),
                 QString::fromStdString(f.albumPath()));
        QCOMPARE(s.album().pages.upper(), 3);
        QCOMPARE(padCaptions(w), (QStringList{"Seite A", "Seite1"}));
        const int a = s.album().pages[1].slot;
        QVERIFY(a > 0);
        const PageRecord& pageA = s.page(a);
        QCOMPARE(QString::fromStdString(pageA.texts[1].text), QString::fromStdString(kChanged));
        QCOMPARE(int(pageA.pictures[1].left), 41);  // the arrow key's step
        QVERIFY(isTrue(s.state().pageSlots[a].modified));
        for (FrmNotePad* pad : w.notePads()) {
            if (pad->caption() != "Seite A") continue;
            const editor::Control* text = pad->document().control({Kind::Text, 1});
            QVERIFY(text);
            QCOMPARE(QString::fromStdString(text->shownText), QString::fromStdString(kChanged));
        }
        // Seite B was open but unchanged: nothing of it came back, it stays closed as saved.
        QCOMPARE(int(s.album().pages[2].slot), 0);
        const int fresh = s.album().pages[3].slot;
        QCOMPARE(QString::fromStdString(s.album().pages[3].title), QString("Seite1"));
        QVERIFY(s.album().pages[3].fileName.empty());
        QVERIFY(fresh > 0);
        QCOMPARE(s.page(fresh).texts.upper(), 1);
        QCOMPARE(QString::fromStdString(s.page(fresh).texts[1].text), QString::fromStdString(kNewWords));
        QVERIFY(isTrue(s.state().pageSlots[fresh].modified));

        // Nothing was written over the user's files; the crashed run and its snapshots are gone.
        PageFile onDisk;
        QVERIFY(readPageFile(f.home + "Album/Seite A.apg", PageRecord{}, onDisk).ok());
        QCOMPARE(QString::fromStdString(onDisk.page.texts[1].text), QString("Hallo Welt"));
        QCOMPARE(runFolders(f.home).size(), 1);  // this run's own
        QVERIFY(snapshots(f.home).isEmpty());
        QVERIFY(w.checkpoints()->run().hasCheckpoint(a));
        QVERIFY(w.checkpoints()->run().hasCheckpoint(fresh));
    }

    void killedProgramsChangesGoOnNo() {
        crashChild();
        f.prompter->answers = {kNo};
        shell::MainWindow& w = f.start({f.albumPath()});
        QCOMPARE(recoveryQuestions(), std::vector<std::string>{question()});
        Session& s = w.session();
        QCOMPARE(s.album().pages.upper(), 2);
        QCOMPARE(padCaptions(w), QStringList{"Seite A"});
        const int a = s.album().pages[1].slot;
        QCOMPARE(QString::fromStdString(s.page(a).texts[1].text), QString("Hallo Welt"));
        QCOMPARE(int(s.page(a).pictures[1].left), 40);
        QVERIFY(!isTrue(s.state().pageSlots[a].modified));
        const QStringList runs = runFolders(f.home);
        QCOMPARE(runs.size(), 1);
        QVERIFY(QString::fromStdString(w.checkpoints()->run().directory()).endsWith(runs[0] + "/"));
        QVERIFY(snapshots(f.home).isEmpty());
    }

    // A normal end leaves no marker and the next start asks nothing.
    void normalEndLeavesNothingToRecover() {
        shell::MainWindow& w = f.start({f.albumPath()});
        FrmNotePad* a = w.activeNotePad();
        QVERIFY(a);
        a->document().changeElement({Kind::Text, 1}, [&] { a->document().page().texts[1].text = kChanged; });
        QTRY_VERIFY(!w.checkpoints()->hasDirty());
        QVERIFY(w.checkpoints()->run().hasCheckpoint(a->tag()));
        f.prompter->answers = {kNo};  // do not save
        QVERIFY(w.close());
        QVERIFY(runFolders(f.home).isEmpty());
        QVERIFY(snapshots(f.home).isEmpty());
        delete f.window;
        f.window = nullptr;
        f.prompter->asked.clear();
        f.start({});
        QVERIFY(recoveryQuestions().empty());
    }
};

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (argc == 3 && std::string(argv[1]) == kChildSwitch) return runChild(argv[2]);
    RecoveryWindowTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "recovery_window_test.moc"
