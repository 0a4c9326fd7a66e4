// Crash recovery in the main window: the session's page events feed this
// run's checkpoints, written on the next turn of the event loop so that one
// command with many steps writes each page once and the record is complete.
#include <QMetaObject>

#include "shell/main_window.h"

namespace brindle::shell {

void MainWindow::startRecovery() {
    checkpoints_ = std::make_unique<PageCheckpoints>(*session_);
    SessionHooks& h = session_->hooks();
    h.pageStepRecorded = [this](int slot) {
        checkpoints_->markDirty(slot);
        if (flushQueued_.exchange(true)) return;
        QMetaObject::invokeMethod(this, [this] { flushCheckpoints(); }, Qt::QueuedConnection);
    };
    h.pageSaved = [this](int slot) { checkpoints_->forget(slot); };
    h.pageClosed = [this](int slot) { checkpoints_->forget(slot); };
    checkpoints_->start();
    if (offerRecovery(*session_, *checkpoints_) > 0 && session_->hooks().refreshExplorer)
        session_->hooks().refreshExplorer();
}

void MainWindow::flushCheckpoints() {
    flushQueued_ = false;
    if (checkpoints_) checkpoints_->flush();
}

void MainWindow::endRecovery() {
    if (checkpoints_) checkpoints_->end();
}

void MainWindow::releaseRecovery() {
    SessionHooks& h = session_->hooks();
    h.pageStepRecorded = nullptr;
    h.pageSaved = nullptr;
    h.pageClosed = nullptr;
}

}  // namespace brindle::shell
