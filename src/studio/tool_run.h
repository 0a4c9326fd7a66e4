// Running a tool's long work off the GUI thread while the window keeps
// painting and answering: the caller's event loop turns until the work is
// done. Progress reaches the window through queued calls.
#pragma once

#include <functional>

class QObject;

namespace brindle::studio {

// Runs `work` on a worker thread and returns when it has finished; events
// (paint, the cancel button, queued progress) are handled meanwhile.
void runOffGuiThread(const std::function<void()>& work);

// Calls `fn` on the thread of `receiver` (queued; dropped when the receiver is gone).
void postToGui(QObject* receiver, std::function<void()> fn);

}  // namespace brindle::studio
