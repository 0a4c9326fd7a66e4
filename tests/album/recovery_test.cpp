// Crash recovery without windows: the run marker, checkpoint files and
// their reader, and the question and restore after a run that died.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "album/paths.h"
#include "album/recovery_flow.h"
#include "support/session_fixture.h"

namespace brindle {
namespace {

namespace fs = std::filesystem;

// A process id that no longer lives: a child that ended and was reaped.
long deadPid() {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(0);
    int status = 0;
    ::waitpid(child, &status, 0);
    return child;
}

// What a crash leaves: the run's marker names a process that is gone.
void killRun(const std::string& runDirectory) {
    std::ofstream(runDirectory + "running", std::ios::trunc) << deadPid() << " 12345\n";
}

std::string pageBytes(const PageRecord& page) {
    std::string bytes;
    EXPECT_TRUE(encodePage(page, bytes).ok());
    return bytes;
}

class RecoveryTest : public test::SessionTest {
protected:
    std::vector<std::string> tempListing() {
        std::vector<std::string> names;
        for (auto& e : fs::recursive_directory_iterator(path("Temp")))
            names.push_back(fs::relative(e.path(), path("Temp")).string());
        std::sort(names.begin(), names.end());
        return names;
    }
};

TEST_F(RecoveryTest, InfoFileRoundTripsAndRefusesWhatIsNotOurs) {
    const CheckpointInfo info{"/a/Reise\\x.apr", "/a/Seite\n1.apg", "Tag\r1 = Strand", 7};
    const std::string text = encodeCheckpointInfo(info);
    EXPECT_EQ(text,
              "Brindlesee recovery 1\nalbum=/a/Reise\\\\x.apr\npage=/a/Seite\\n1.apg\ntitle=Tag\\r1 = Strand\n"
              "slot=7\n");
    CheckpointInfo back;
    ASSERT_TRUE(decodeCheckpointInfo(text, back));
    EXPECT_EQ(back.albumPath, info.albumPath);
    EXPECT_EQ(back.pageFile, info.pageFile);
    EXPECT_EQ(back.title, info.title);
    EXPECT_EQ(back.slot, 7);

    const char* const hostile[] = {
        "",
        "Brindlesee recovery 2\nalbum=\npage=\ntitle=x\nslot=1\n",   // another version
        "Brindlesee recovery 1\nalbum=\npage=\ntitle=x\n",           // no slot
        "Brindlesee recovery 1\nalbum=\npage=\ntitle=x\nslot=0\n",   // slot 0 is never a page
        "Brindlesee recovery 1\nalbum=\npage=\ntitle=x\nslot=99999\n",
        "Brindlesee recovery 1\nalbum=\npage=\ntitle=x\nslot=3x\n",
        "Brindlesee recovery 1\nalbum=\npage=\ntitle=x\\q\nslot=3\n",  // unknown escape
        "Brindlesee recovery 1\nalbum=\npage=\ntitle=x\\\nslot=3\n",   // cut escape
        "Brindlesee recovery 1\nalbum=\npage=\ntitle=x\nslot=3\nmore=1\n",
        "Brindlesee recovery 1\nalbum\npage=\ntitle=x\nslot=3\n",
    };
    for (const char* h : hostile) {
        SCOPED_TRACE(h);
        CheckpointInfo out;
        out.slot = 42;
        EXPECT_FALSE(decodeCheckpointInfo(h, out));
        EXPECT_EQ(out.slot, 42);  // left as it was
    }
}

TEST_F(RecoveryTest, ARunKeepsItsCheckpointsUntilItsNormalEnd) {
    RecoveryRun run(home());
    ASSERT_TRUE(run.start());
    const RunOwner me = currentRunOwner();
    EXPECT_TRUE(run.directory().starts_with(path("Temp/run-" + std::to_string(me.pid) + "-")));
    EXPECT_EQ(readBytes(run.directory().substr(home().size()) + "running"),
              std::to_string(me.pid) + " " + std::to_string(me.startTicks) + "\n");
    EXPECT_GT(me.startTicks, 0u);

    PageRecord page;
    page.title = "Strand";
    page.texts.add().text = "Möwen über dem Meer";
    std::string error;
    ASSERT_TRUE(run.writeCheckpoint({"/x/Reise.apr", "/x/Strand.apg", "Strand", 3}, page, error)) << error;
    const std::string rel = run.directory().substr(home().size());
    EXPECT_EQ(readBytes(rel + "page3.apg"), pageBytes(page));
    EXPECT_EQ(readBytes(rel + "page3.info"), encodeCheckpointInfo({"/x/Reise.apr", "/x/Strand.apg", "Strand", 3}));
    EXPECT_TRUE(run.hasCheckpoint(3));

    // A living run, also a second one of the same process, is no crash.
    RecoveryRun second(home());
    ASSERT_TRUE(second.start());
    EXPECT_NE(second.directory(), run.directory());
    EXPECT_TRUE(findCrashedRuns(home()).runDirectories.empty());
    EXPECT_TRUE(otherRunAlive(home(), second.directory()));
    second.end();
    EXPECT_FALSE(otherRunAlive(home(), run.directory()));

    run.removeCheckpoint(3);
    EXPECT_FALSE(run.hasCheckpoint(3));
    run.end();
    EXPECT_FALSE(fs::exists(run.directory()));
    EXPECT_TRUE(tempListing().empty());
}

TEST_F(RecoveryTest, ADeadOrReusedProcessLeavesACrashedRun) {
    PageRecord page;
    page.texts.add().text = "gerettet";
    std::string error;

    RecoveryRun dead(home());
    ASSERT_TRUE(dead.start());
    ASSERT_TRUE(dead.writeCheckpoint({"", "", "Seite1", 1}, page, error));
    killRun(dead.directory());

    // Our own process id with another start time: the id was reused.
    RecoveryRun reused(home());
    ASSERT_TRUE(reused.start());
    ASSERT_TRUE(reused.writeCheckpoint({"", "", "Seite2", 2}, page, error));
    std::ofstream(reused.directory() + "running", std::ios::trunc)
        << currentRunOwner().pid << " " << currentRunOwner().startTicks + 1 << "\n";

    RecoveryRun alive(home());
    ASSERT_TRUE(alive.start());
    ASSERT_TRUE(alive.writeCheckpoint({"", "", "Seite3", 3}, page, error));

    const CrashedRuns crashed = findCrashedRuns(home());
    ASSERT_EQ(crashed.runDirectories.size(), 2u);
    ASSERT_EQ(crashed.checkpoints.size(), 2u);
    std::vector<std::string> titles;
    for (const Checkpoint& c : crashed.checkpoints) {
        titles.push_back(c.info.title);
        EXPECT_EQ(c.page.texts.upper(), 1);
        EXPECT_EQ(c.page.texts[1].text, "gerettet");
    }
    std::sort(titles.begin(), titles.end());
    EXPECT_EQ(titles, (std::vector<std::string>{"Seite1", "Seite2"}));
    EXPECT_TRUE(crashed.broken.empty());
}

TEST_F(RecoveryTest, BrokenAndForeignCheckpointsAreNamedNotRead) {
    RecoveryRun run(home());
    ASSERT_TRUE(run.start());
    PageRecord page;
    std::string error;
    ASSERT_TRUE(run.writeCheckpoint({"", "", "Gut", 1}, page, error));
    const std::string dir = run.directory().substr(home().size());
    writeBytes(dir + "page2.info", "GIF89a\x01\x00");                                        // foreign
    writeBytes(dir + "page3.info", encodeCheckpointInfo({"", "", "ohne Seite", 3}));          // page missing
    writeBytes(dir + "page4.info", encodeCheckpointInfo({"", "", "kaputt", 4}));
    writeBytes(dir + "page4.apg", pageBytes(page).substr(0, 30));                            // cut page
    writeBytes(dir + "page5.info", encodeCheckpointInfo({"", "", "falscher Platz", 6}));      // name and slot differ
    writeBytes(dir + "page6.apg", pageBytes(page));
    writeBytes(dir + "page7.info", std::string(20000, 'x'));                                 // too long
    killRun(run.directory());

    const CrashedRuns crashed = findCrashedRuns(home());
    ASSERT_EQ(crashed.checkpoints.size(), 1u);
    EXPECT_EQ(crashed.checkpoints[0].info.title, "Gut");
    std::vector<std::string> broken = crashed.broken;
    std::sort(broken.begin(), broken.end());
    std::vector<std::string> expected;
    for (int n : {2, 3, 4, 5, 7}) expected.push_back(run.directory() + "page" + std::to_string(n) + ".info");
    EXPECT_EQ(broken, expected);

    // The flow names each and goes on; no question without a good page.
    start();
    writeBytes(dir + "page1.info", "kaputt");
    prompter.asked.clear();
    PageCheckpoints checkpoints(*session);
    ASSERT_TRUE(checkpoints.start());
    EXPECT_EQ(offerRecovery(*session, checkpoints), 0);
    ASSERT_EQ(prompter.asked.size(), 6u);
    EXPECT_EQ(prompter.asked[0], "message|Brindlesee|48|Die Sicherung \"" + run.directory() + "page1.info" +
                                     "\" ist beschädigt oder fremd und wird übergangen.");
    EXPECT_FALSE(fs::exists(run.directory()));
}

// The session side: checkpoints follow the page's steps, saves and closes.
TEST_F(RecoveryTest, CheckpointsFollowStepsSavesAndCloses) {
    const std::string album = writeAlbum("Reise.apr", 2);
    Session& s = start();
    ASSERT_TRUE(s.albumOeffnen(album));
    PageCheckpoints checkpoints(s);
    ASSERT_TRUE(checkpoints.start());
    s.hooks().pageStepRecorded = [&](int slot) { checkpoints.markDirty(slot); };
    s.hooks().pageSaved = s.hooks().pageClosed = [&](int slot) { checkpoints.forget(slot); };
    const int slot = s.album().pages[1].slot;
    ASSERT_GT(slot, 0);
    const std::string dir = checkpoints.run().directory().substr(home().size());

    // A step on an unchanged page writes nothing.
    s.notePageStep(slot);
    checkpoints.flush();
    EXPECT_FALSE(checkpoints.run().hasCheckpoint(slot));

    s.page(slot).texts[1].text = "geändert";
    s.state().pageSlots[slot].modified = kTrue;
    s.notePageStep(slot);
    EXPECT_TRUE(checkpoints.hasDirty());
    EXPECT_FALSE(checkpoints.run().hasCheckpoint(slot));  // only the flush writes
    checkpoints.flush();
    EXPECT_FALSE(checkpoints.hasDirty());
    EXPECT_EQ(readBytes(dir + "page" + std::to_string(slot) + ".apg"), pageBytes(s.page(slot)));
    EXPECT_EQ(readBytes(dir + "page" + std::to_string(slot) + ".info"),
              encodeCheckpointInfo({album, path("Seite1.apg"), "Seite1", slot}));

    ASSERT_TRUE(s.schreibeSeite(path("Seite1.apg"), slot));
    EXPECT_FALSE(checkpoints.run().hasCheckpoint(slot));

    s.state().pageSlots[slot].modified = kTrue;
    s.notePageStep(slot);
    checkpoints.flush();
    EXPECT_TRUE(checkpoints.run().hasCheckpoint(slot));
    s.seiteGeschlossen(slot);
    EXPECT_FALSE(checkpoints.run().hasCheckpoint(slot));

    checkpoints.end();
    EXPECT_TRUE(tempListing().empty());
}

// A crashed run with a changed saved page and a page never saved.
class RecoveryFlowTest : public RecoveryTest {
protected:
    std::string album;
    PageRecord changed, fresh;

    void crash() {
        album = writeAlbum("Reise.apr", 2);
        Session& s = start();
        ASSERT_TRUE(s.albumOeffnen(album));
        PageCheckpoints checkpoints(s);
        ASSERT_TRUE(checkpoints.start());
        ASSERT_TRUE(s.SeiteOeffnen(2, "", false));
        const int second = s.album().pages[2].slot;
        ASSERT_GT(second, 0);
        s.page(second).texts[1].text = "Text Seite2 mit Änderung";
        s.state().pageSlots[second].modified = kTrue;
        checkpoints.markDirty(second);
        const int added = s.neueSeite("", false);
        s.page(added).texts.add().text = "ganz neu";
        checkpoints.markDirty(added);
        checkpoints.flush();
        changed = s.page(second);
        fresh = s.page(added);
        writeBytes("Temp/brind1.tmp", "snapshot");
        killRun(checkpoints.run().directory());
        session.reset();
        factoryEvents = editors.events;
        editors.events.clear();
    }
    std::vector<std::string> factoryEvents;
};

TEST_F(RecoveryFlowTest, YesOpensTheAlbumWithTheChangedPagesMarkedChanged) {
    crash();
    Session& s = start();
    s.AlbumNeu();
    prompter.asked.clear();
    prompter.answers = {kYes};
    PageCheckpoints checkpoints(s);
    ASSERT_TRUE(checkpoints.start());
    EXPECT_EQ(offerRecovery(s, checkpoints), 2);
    ASSERT_GE(prompter.asked.size(), 1u);
    EXPECT_EQ(prompter.asked[0],
              "message|Brindlesee|36|Brindlesee wurde nicht normal beendet.\r\r"
              "Im Album \"Reise.apr\" hatten diese Seiten ungespeicherte Änderungen:\r    Seite2\r    Seite3\r\r"
              "Sollen sie wiederhergestellt werden? Bei Nein werden diese Änderungen verworfen.");
    EXPECT_EQ(prompter.asked.size(), 1u);

    ASSERT_EQ(s.album().pages.upper(), 3);
    EXPECT_EQ(s.album().directory + s.album().fileName, album);
    // Page 1 as saved and unchanged; page 2 restored over its file; page 3 new.
    const int one = s.album().pages[1].slot, two = s.album().pages[2].slot, three = s.album().pages[3].slot;
    ASSERT_GT(one, 0);
    ASSERT_GT(two, 0);
    ASSERT_GT(three, 0);
    EXPECT_EQ(s.page(one).texts[1].text, "Text Seite1");
    EXPECT_EQ(s.state().pageSlots[one].modified, kFalse);
    EXPECT_EQ(pageBytes(s.page(two)), pageBytes(changed));
    EXPECT_TRUE(isTrue(s.state().pageSlots[two].modified));
    EXPECT_EQ(s.album().pages[2].fileName, "Seite2.apg");
    EXPECT_EQ(pageBytes(s.page(three)), pageBytes(fresh));
    EXPECT_TRUE(isTrue(s.state().pageSlots[three].modified));
    EXPECT_EQ(s.album().pages[3].title, "Seite3");
    EXPECT_TRUE(s.album().pages[3].fileName.empty());
    EXPECT_EQ(s.editor(two)->caption(), "Seite2");
    // Nothing was written over the user's file.
    PageFile onDisk;
    ASSERT_TRUE(readPageFile(path("Seite2.apg"), PageRecord{}, onDisk).ok());
    EXPECT_EQ(onDisk.page.texts[1].text, "Text Seite2");

    // The crashed run and the snapshots are gone; this run holds the pages now.
    EXPECT_FALSE(fs::exists(path("Temp/brind1.tmp")));
    EXPECT_TRUE(findCrashedRuns(home()).runDirectories.empty());
    EXPECT_TRUE(checkpoints.run().hasCheckpoint(two));
    EXPECT_TRUE(checkpoints.run().hasCheckpoint(three));
    EXPECT_FALSE(checkpoints.run().hasCheckpoint(one));
}

TEST_F(RecoveryFlowTest, NoDiscardsCheckpointsAndSnapshotsAndEnglishAsksInEnglish) {
    crash();
    Session& s = start(Language::English);
    s.AlbumNeu();
    prompter.asked.clear();
    prompter.answers = {kNo};
    PageCheckpoints checkpoints(s);
    ASSERT_TRUE(checkpoints.start());
    EXPECT_EQ(offerRecovery(s, checkpoints), 0);
    EXPECT_EQ(prompter.asked,
              std::vector<std::string>{
                  "message|Brindlesee|36|Brindlesee was not ended normally.\r\r"
                  "In the album \"Reise.apr\" these pages had unsaved changes:\r    Seite2\r    Seite3\r\r"
                  "Restore them? No discards these changes."});
    EXPECT_TRUE(s.album().fileName.empty());  // the new album stays
    EXPECT_FALSE(fs::exists(path("Temp/brind1.tmp")));
    checkpoints.end();
    EXPECT_TRUE(tempListing().empty());
    // The next start asks nothing.
    EXPECT_EQ(offerRecovery(s, checkpoints), 0);
    EXPECT_EQ(prompter.asked.size(), 1u);
}

TEST_F(RecoveryFlowTest, AnotherLivingProgramKeepsItsSnapshotsAndCheckpoints) {
    crash();
    RecoveryRun other(home());  // a second program still at work
    ASSERT_TRUE(other.start());
    std::string error;
    ASSERT_TRUE(other.writeCheckpoint({"", "", "fremd", 1}, PageRecord{}, error));
    Session& s = start();
    s.AlbumNeu();
    prompter.answers = {kNo};
    PageCheckpoints checkpoints(s);
    ASSERT_TRUE(checkpoints.start());
    EXPECT_EQ(offerRecovery(s, checkpoints), 0);
    EXPECT_TRUE(fs::exists(path("Temp/brind1.tmp")));
    EXPECT_TRUE(other.hasCheckpoint(1));
}

TEST_F(RecoveryFlowTest, AnUnsavedAlbumRestoresIntoTheNewAlbum) {
    Session& first = start();
    first.AlbumNeu();
    PageCheckpoints before(first);
    ASSERT_TRUE(before.start());
    const int slot = first.album().pages[1].slot;
    first.page(slot).texts.add().text = "noch nie gespeichert";
    before.markDirty(slot);
    before.flush();
    const PageRecord page = first.page(slot);
    killRun(before.run().directory());
    session.reset();

    Session& s = start();
    s.AlbumNeu();
    prompter.asked.clear();
    prompter.answers = {kYes};
    PageCheckpoints checkpoints(s);
    ASSERT_TRUE(checkpoints.start());
    EXPECT_EQ(offerRecovery(s, checkpoints), 1);
    EXPECT_EQ(prompter.asked, std::vector<std::string>{
                                  "message|Brindlesee|36|Brindlesee wurde nicht normal beendet.\r\r"
                                  "In einem neuen, noch nicht gespeicherten Album hatten diese Seiten ungespeicherte "
                                  "Änderungen:\r    Seite1\r\r"
                                  "Sollen sie wiederhergestellt werden? Bei Nein werden diese Änderungen verworfen."});
    ASSERT_EQ(s.album().pages.upper(), 1);  // into the fresh page of the same name, not beside it
    const int restored = s.album().pages[1].slot;
    EXPECT_EQ(pageBytes(s.page(restored)), pageBytes(page));
    EXPECT_TRUE(isTrue(s.state().pageSlots[restored].modified));
}

}  // namespace
}  // namespace brindle
