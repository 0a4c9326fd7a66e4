// The pictures a page canvas holds: one per element, read by the
// PictureLoader at the size the element is shown, kept until the element
// goes. Until a picture arrives the canvas draws a placeholder.
#pragma once

#include <QImage>
#include <QObject>
#include <QSize>
#include <QString>
#include <functional>
#include <map>

#include "editor/picture_loader.h"

namespace brindle::editor {

class CanvasPictures : public QObject {
    Q_OBJECT
public:
    explicit CanvasPictures(QObject* parent = nullptr);

    // The picture to draw; null while it is read the first time or when it
    // cannot be read. Asks for it when it was never asked for, and again
    // when it is shown clearly larger than it was read; `path` is only
    // called then.
    const QImage& picture(ElementRef ref, QSize size, PictureFit fit, const std::function<QString()>& path);
    // Reads the element's picture again (its control was rebuilt). The same
    // file stays on show until the new read arrives; another file shows the
    // placeholder. With `report`, failed() tells when it cannot be read.
    void reload(ElementRef ref, QSize size, PictureFit fit, const QString& path, bool report);
    // The element is gone; a read under way for it is dropped.
    void drop(ElementRef ref);

    bool loading() const { return loader_.loading(); }
    bool loading(ElementRef ref) const { return loader_.loading(ref); }

signals:
    void arrived(brindle::editor::ElementRef ref);
    // Once per reported reload whose file could not be read.
    void failed(brindle::editor::ElementRef ref);

private:
    struct Held {
        QString path;
        QImage image;
        QSize size;  // what was asked for
        bool report = false;
    };
    void ask(ElementRef ref, Held& held, QSize size, PictureFit fit);
    void arrive(ElementRef ref, const QImage& image, QSize size);

    PictureLoader loader_;
    std::map<ElementRef, Held> held_;
    // Pictures of elements just removed, shown again if the same element
    // comes back with the same file (a page being rebuilt). Emptied once
    // every read has arrived.
    std::map<ElementRef, Held> recent_;
};

}  // namespace brindle::editor
