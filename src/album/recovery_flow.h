// Crash recovery for a session: each page with unsaved changes keeps a
// checkpoint in this run's folder (written after every undo step, undo and
// redo, removed when the page is saved or closed), and the next start after
// a crash offers to restore them through the Prompter.
#pragma once

#include <mutex>
#include <set>
#include <string>

#include "album/recovery.h"
#include "album/session.h"

namespace brindle {

class PageCheckpoints {
public:
    explicit PageCheckpoints(Session& session);

    // Starts this run's folder; until then nothing is written.
    bool start();
    // The normal end: every checkpoint and the run's marker go.
    void end();
    RecoveryRun& run() { return run_; }

    // The page of `slot` changed; flush() writes it. Callable from any thread.
    void markDirty(int slot);
    bool hasDirty() const;
    // Writes the checkpoint of every marked page that still has unsaved
    // changes, and removes those of marked pages that have none.
    void flush();
    // Saved or closed: its checkpoint goes at once. Callable from any thread.
    void forget(int slot);

private:
    CheckpointInfo infoOf(int slot) const;
    bool wantsCheckpoint(int slot) const;

    Session& session_;
    RecoveryRun run_;
    mutable std::mutex mutex_;
    std::set<int> dirty_;
};

// After a crash: one question naming the pages with unsaved changes. Yes
// opens their album (the newest one when several crashed) and each page with
// its restored contents, marked as changed; No discards the checkpoints.
// Either way the crashed runs' folders and the undo snapshots go. Returns
// the number of pages restored.
int offerRecovery(Session& session, PageCheckpoints& checkpoints);

}  // namespace brindle
