// Running a tool's long work off the GUI thread while the window keeps
// painting and answering: the caller's event loop turns until the work is
// done. Progress reaches the window through queued calls.
#pragma once

#include <QDir>
#include <QLabel>
#include <QProgressBar>
#include <algorithm>
#include <atomic>
#include <functional>
#include <string>

namespace brindle::studio {

// Runs `work` on a worker thread and returns when it has finished; events
// (paint, the cancel button, queued progress) are handled meanwhile.
void runOffGuiThread(const std::function<void()>& work);

// Calls `fn` on the thread of `receiver` (queued; dropped when the receiver is gone).
void postToGui(QObject* receiver, std::function<void()> fn);

// A run's status lines, progress and cancel word wired to a window's label,
// progress bar and flag. `Callbacks` has `status`, `progress` and `cancelled`.
template <class Callbacks>
Callbacks windowFeedback(QObject* window, QLabel* status, QProgressBar* bar, const std::atomic<bool>& cancel) {
    Callbacks callbacks;
    callbacks.status = [window, status](const std::string& s) {
        postToGui(window, [status, s] { status->setText(QDir::toNativeSeparators(QString::fromStdString(s))); });
    };
    callbacks.progress = [window, bar](int done, int total) {
        postToGui(window, [bar, done, total] {
            bar->setMaximum(std::max(1, total));
            bar->setValue(done);
        });
    };
    callbacks.cancelled = [&cancel] { return cancel.load(); };
    return callbacks;
}

// One run of a tool window's batch: `busy(true)` before and `busy(false)`
// after (the window greys its controls), the progress bar from 0, `work`
// off the GUI thread with the window's feedback, the status cleared at the end.
template <class Callbacks, class Result>
Result runWindowBatch(QObject* window, QLabel* status, QProgressBar* bar, std::atomic<bool>& cancel,
                      const std::function<void(bool)>& busy,
                      const std::function<Result(const Callbacks&)>& work) {
    cancel = false;
    busy(true);
    bar->setValue(0);
    const auto callbacks = windowFeedback<Callbacks>(window, status, bar, cancel);
    Result result;
    runOffGuiThread([&] { result = work(callbacks); });
    busy(false);
    status->clear();
    return result;
}

}  // namespace brindle::studio
