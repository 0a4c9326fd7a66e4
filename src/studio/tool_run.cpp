#include "studio/tool_run.h"

#include <QEventLoop>
#include <QMetaObject>
#include <thread>

namespace brindle::studio {

void runOffGuiThread(const std::function<void()>& work) {
    QEventLoop loop;
    std::thread worker([&] {
        work();
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec();
    worker.join();
}

void postToGui(QObject* receiver, std::function<void()> fn) {
    QMetaObject::invokeMethod(receiver, std::move(fn), Qt::QueuedConnection);
}

}  // namespace brindle::studio
