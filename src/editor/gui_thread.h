// Runs a function on the thread of `context`, waiting for it when called
// from another thread (the HTML run works off the GUI thread).
#pragma once

#include <QMetaObject>
#include <QObject>
#include <QThread>
#include <utility>

namespace brindle::editor {

template <class Fn>
void runOnGui(QObject* context, Fn&& fn) {
    if (!context || QThread::currentThread() == context->thread()) {
        fn();
        return;
    }
    QMetaObject::invokeMethod(context, std::forward<Fn>(fn), Qt::BlockingQueuedConnection);
}

}  // namespace brindle::editor
