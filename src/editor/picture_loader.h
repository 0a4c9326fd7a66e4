// Pictures for the canvas, read on worker threads so that opening a page
// never blocks the window. Each element's picture is decoded at the size it
// is shown (JPEGs DCT-scaled while decoding) and handed back on the GUI
// thread as it arrives. A generation number per element drops results that
// were overtaken: a picture replaced, an element removed, a page closed.
#pragma once

#include <QImage>
#include <QObject>
#include <QSize>
#include <QString>
#include <map>
#include <memory>

#include "editor/elements.h"

class QThreadPool;

namespace brindle::editor {

// How a picture is fitted to the size asked for.
enum class PictureFit {
    Exact,     // made exactly that size (what the canvas stretches it to)
    ByHeight,  // that height, the width by the picture's own proportions
};

// Reads `path` for the screen at about `size`; a picture that is smaller
// than asked keeps its own size. A null image when nothing could be read.
// Safe on any thread.
QImage readScreenPicture(const QString& path, QSize size, PictureFit fit);

// The workers shared by every page window: one per core, at least two.
QThreadPool& pictureThreadPool();

class PictureLoader : public QObject {
    Q_OBJECT
public:
    explicit PictureLoader(QObject* parent = nullptr);
    // Loads still running finish on their worker and are thrown away.
    ~PictureLoader() override;

    // Starts reading `path` for `ref`; a load for `ref` still under way is
    // overtaken and its result never delivered.
    void request(ElementRef ref, const QString& path, QSize size, PictureFit fit);
    // Any result still to come for `ref` is dropped.
    void cancel(ElementRef ref);
    bool loading(ElementRef ref) const { return generation_.count(ref) != 0; }
    bool loading() const { return !generation_.empty(); }

signals:
    // On the GUI thread, once per request that was not overtaken. `image`
    // is null when the file could not be read.
    void loaded(brindle::editor::ElementRef ref, QImage image, QSize size);

private:
    struct Shared;
    void deliver(ElementRef ref, quint64 generation, const QImage& image, QSize size);

    std::shared_ptr<Shared> shared_;
    std::map<ElementRef, quint64> generation_;  // loads under way
    quint64 next_ = 0;
};

}  // namespace brindle::editor
