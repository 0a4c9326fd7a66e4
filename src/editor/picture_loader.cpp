#include "editor/picture_loader.h"

#include <QMetaObject>
#include <QThread>
#include <QThreadPool>
#include <algorithm>
#include <cerrno>
#include <cmath>
#include <mutex>

#include "editor/display_picture.h"

#ifdef __linux__
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace brindle::editor {

namespace {
// Readers give way to the GUI thread when the cores are busy, so the
// window answers at once while a page's pictures load.
void yieldToTheGuiThread() {
#ifdef __linux__
    thread_local bool done = false;
    if (done) return;
    done = true;
    const auto tid = static_cast<id_t>(::syscall(SYS_gettid));
    errno = 0;
    const int nice = ::getpriority(PRIO_PROCESS, tid);
    if (errno == 0) ::setpriority(PRIO_PROCESS, tid, std::min(nice + 4, 19));
#endif
}
}  // namespace

QImage readScreenPicture(const QString& path, QSize size, PictureFit fit) {
    if (path.isEmpty()) return {};
    // The header tells the picture's own size without decoding it.
    const QSize natural = pictureFileSize(path);
    QSize target = size;
    if (fit == PictureFit::ByHeight && natural.isValid() && natural.height() > 0)
        target = QSize(std::max(1, int(std::lround(double(natural.width()) * size.height() / natural.height()))),
                       size.height());
    const bool smaller = !natural.isValid() || qint64(natural.width()) * natural.height() >
                                                   qint64(target.width()) * target.height();
    if (!target.isValid() || target.isEmpty() || !smaller) return loadDisplayPicture(path, {}, false);
    return loadDisplayPicture(path, target, true);
}

QThreadPool& pictureThreadPool() {
    static QThreadPool* pool = [] {
        auto* p = new QThreadPool;
        p->setMaxThreadCount(std::max(2, QThread::idealThreadCount()));
        return p;
    }();
    return *pool;
}

// What the workers share with the loader: whether it still lives and the
// newest generation asked for per element. Outlives the loader while a
// worker holds it.
struct PictureLoader::Shared {
    std::mutex mutex;
    PictureLoader* owner = nullptr;
    std::map<ElementRef, quint64> newest;

    bool current(ElementRef ref, quint64 generation) {
        auto it = newest.find(ref);
        return owner && it != newest.end() && it->second == generation;
    }
};

PictureLoader::PictureLoader(QObject* parent) : QObject(parent), shared_(std::make_shared<Shared>()) {
    shared_->owner = this;
}

PictureLoader::~PictureLoader() {
    // Under the lock no worker is posting a result to this object; once
    // the owner is cleared none will.
    std::lock_guard lock(shared_->mutex);
    shared_->owner = nullptr;
    shared_->newest.clear();
}

void PictureLoader::request(ElementRef ref, const QString& path, QSize size, PictureFit fit) {
    const quint64 generation = ++next_;
    generation_[ref] = generation;
    {
        std::lock_guard lock(shared_->mutex);
        shared_->newest[ref] = generation;
    }
    std::shared_ptr<Shared> shared = shared_;
    pictureThreadPool().start([shared, ref, generation, path, size, fit] {
        yieldToTheGuiThread();
        {
            std::lock_guard lock(shared->mutex);
            if (!shared->current(ref, generation)) return;  // overtaken before it began
        }
        const QImage image = readScreenPicture(path, size, fit);
        std::lock_guard lock(shared->mutex);
        if (!shared->current(ref, generation)) return;
        PictureLoader* owner = shared->owner;
        QMetaObject::invokeMethod(
            owner, [owner, ref, generation, image, size] { owner->deliver(ref, generation, image, size); },
            Qt::QueuedConnection);
    });
}

void PictureLoader::cancel(ElementRef ref) {
    generation_.erase(ref);
    std::lock_guard lock(shared_->mutex);
    shared_->newest.erase(ref);
}

void PictureLoader::deliver(ElementRef ref, quint64 generation, const QImage& image, QSize size) {
    // A request made after this one was posted wins.
    auto it = generation_.find(ref);
    if (it == generation_.end() || it->second != generation) return;
    generation_.erase(it);
    {
        std::lock_guard lock(shared_->mutex);
        shared_->newest.erase(ref);
    }
    emit loaded(ref, image, size);
}

}  // namespace brindle::editor
