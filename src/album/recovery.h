// Crash recovery on disk. Each running program keeps a folder of its own in
// "Temp/" ("run-<pid>-<start>-<n>/") with a marker naming its process, and
// in it one checkpoint per page with unsaved changes: the page in the page
// file format ("page<slot>.apg") and a small text file saying where it
// belongs ("page<slot>.info"). A normal end removes the folder; a folder
// whose process no longer lives is what a crash left behind.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "album/records.h"

namespace brindle {

// Where a checkpointed page belongs.
struct CheckpointInfo {
    std::string albumPath;  // empty for an album never saved
    std::string pageFile;   // directory + file name; empty for a page never saved
    std::string title;
    int slot = 0;
};

struct Checkpoint {
    CheckpointInfo info;
    PageRecord page;
    std::string runDirectory;  // the crashed run's folder, ending in '/'
    std::int64_t writtenAt = 0;  // file time of the info, for ordering
};

// The marker's process: its id and its start time in clock ticks since boot
// (from /proc), which tells a live program from a reused process id.
struct RunOwner {
    long pid = 0;
    std::uint64_t startTicks = 0;
};
RunOwner currentRunOwner();
bool runOwnerAlive(const RunOwner& owner);

// The info file's text and its bounded reader; false for anything not ours.
std::string encodeCheckpointInfo(const CheckpointInfo& info);
bool decodeCheckpointInfo(const std::string& text, CheckpointInfo& out);

// The folder of this program's run, created with its marker on start().
class RecoveryRun {
public:
    explicit RecoveryRun(std::string programDirectory);
    // Creates the folder and its marker; false when Temp/ cannot be written.
    bool start();
    // The normal end: the folder and every checkpoint in it go.
    void end();
    const std::string& directory() const { return directory_; }
    bool started() const { return started_; }

    // Both files are written atomically, the page first: the info is what
    // makes a checkpoint, so a crash between the two leaves no half pair.
    bool writeCheckpoint(const CheckpointInfo& info, const PageRecord& page, std::string& error);
    void removeCheckpoint(int slot);
    bool hasCheckpoint(int slot) const;

private:
    std::string programDirectory_;
    std::string directory_;
    bool started_ = false;
};

// The runs that ended without their normal end, and what they left.
struct CrashedRuns {
    std::vector<std::string> runDirectories;
    std::vector<Checkpoint> checkpoints;  // newest first
    std::vector<std::string> broken;      // checkpoint files that could not be read
};
CrashedRuns findCrashedRuns(const std::string& programDirectory);

// True while another program (not this one) runs on the same program directory.
bool otherRunAlive(const std::string& programDirectory, const std::string& ownRunDirectory);

// Removes a crashed run's folder with everything in it.
void removeRunDirectory(const std::string& runDirectory);

// Removes the undo snapshots "Temp/*.tmp" unless another program still
// runs on the same program directory and may need them.
void removeSnapshotsIfAlone(const std::string& programDirectory, const std::string& ownRunDirectory);

}  // namespace brindle
