#include "editor/canvas_pictures.h"

namespace brindle::editor {

namespace {
// A picture is read again once it is shown this much larger than it was read.
constexpr double kStaleFactor = 1.2;

bool outgrown(QSize shown, QSize read) {
    return shown.width() > read.width() * kStaleFactor || shown.height() > read.height() * kStaleFactor;
}
}  // namespace

CanvasPictures::CanvasPictures(QObject* parent) : QObject(parent) {
    connect(&loader_, &PictureLoader::loaded, this,
            [this](ElementRef ref, const QImage& image, QSize size) { arrive(ref, image, size); });
}

const QImage& CanvasPictures::picture(ElementRef ref, QSize size, PictureFit fit,
                                      const std::function<QString()>& path) {
    auto it = held_.find(ref);
    if (it == held_.end()) {
        it = held_.emplace(ref, Held{}).first;
        it->second.path = path();
        ask(ref, it->second, size, fit);
    } else if (!it->second.image.isNull() && !loader_.loading(ref) && outgrown(size, it->second.size)) {
        ask(ref, it->second, size, fit);
    }
    return it->second.image;
}

void CanvasPictures::reload(ElementRef ref, QSize size, PictureFit fit, const QString& path, bool report) {
    Held held;
    held.path = path;
    held.report = report;
    for (auto* from : {&held_, &recent_}) {
        auto it = from->find(ref);
        if (it == from->end()) continue;
        if (it->second.path == path) held.image = it->second.image;
        from->erase(it);
    }
    ask(ref, held_.insert_or_assign(ref, std::move(held)).first->second, size, fit);
}

void CanvasPictures::drop(ElementRef ref) {
    loader_.cancel(ref);
    auto it = held_.find(ref);
    if (it == held_.end()) return;
    if (!it->second.image.isNull()) recent_.insert_or_assign(ref, std::move(it->second));
    held_.erase(it);
}

void CanvasPictures::ask(ElementRef ref, Held& held, QSize size, PictureFit fit) {
    held.size = size;
    loader_.request(ref, held.path, size, fit);
}

void CanvasPictures::arrive(ElementRef ref, const QImage& image, QSize size) {
    if (!loader_.loading()) recent_.clear();
    auto it = held_.find(ref);
    if (it == held_.end()) return;
    Held& held = it->second;
    const bool report = held.report;
    held.report = false;
    // A later read that fails keeps a picture that is already on show.
    if (!image.isNull() || held.image.isNull() || report) held.image = image;
    held.size = size;
    emit arrived(ref);
    if (image.isNull() && report) emit failed(ref);
}

}  // namespace brindle::editor
