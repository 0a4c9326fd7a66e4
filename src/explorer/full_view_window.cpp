#include "explorer/full_view_window.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <algorithm>

#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "image/reduce.h"

namespace brindle::explorer {

namespace {

QImage readFitted(const std::string& path, QSize box) {
    cDIBSection dib;
    if (!LoadJPG(dib, path, nullptr, box.width(), box.height())) {
        PictureFile f = LoadPictureFile(path);
        if (!f.picture || !f.picture.Handle()) return {};
        dib = *f.picture.Handle();
    }
    if (dib.empty()) return {};
    const double s = std::min(
        1.0, std::min(double(box.width()) / dib.Width(), double(box.height()) / dib.Height()));
    const int w = std::max(1, int(dib.Width() * s + 0.5)),
              h = std::max(1, int(dib.Height() * s + 0.5));
    cDIBSection fitted;
    if (w == dib.Width() && h == dib.Height())
        fitted = std::move(dib);
    else if (!smoothResize(dib, fitted, w, h))
        return {};
    const QImage view(fitted.DIBSectionBitsPtr(), fitted.Width(), fitted.Height(),
                      fitted.BytesPerScanLine(), QImage::Format_BGR888);
    return view.mirrored(false, true);
}

}  // namespace

FrmVollbildViewer::FrmVollbildViewer(std::vector<std::string> pictures, int first,
                                     Language language, QWidget* parent)
    : QWidget(parent, Qt::Window), pictures_(std::move(pictures)), language_(language) {
    setObjectName("FrmVollbildViewer");
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QString::fromUtf8(brindle::tr(language_, "Vollbild", "Full screen")));
    setFocusPolicy(Qt::StrongFocus);
    pool_.setMaxThreadCount(1);
    showPicture(first);
}

FrmVollbildViewer::~FrmVollbildViewer() { pool_.waitForDone(); }

void FrmVollbildViewer::showPicture(int index) {
    if (pictures_.empty()) return;
    current_ = std::clamp(index, 0, int(pictures_.size()) - 1);
    const int request = ++request_;
    QSize box = screen() ? screen()->size() : QSize(1920, 1080);
    const std::string path = pictures_[current_];
    pool_.start([this, request, path, box] {
        const QImage image = readFitted(path, box);
        QMetaObject::invokeMethod(
            this,
            [this, request, image] {
                if (request != request_) return;
                picture_ = image;
                failed_ = image.isNull();
                update();
                emit pictureShown();
            },
            Qt::QueuedConnection);
    });
}

void FrmVollbildViewer::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), Qt::black);
    if (failed_) {
        p.setPen(Qt::white);
        p.drawText(rect(), Qt::AlignCenter,
                   QString::fromUtf8(brindle::tr(language_, "Das Bild konnte nicht geladen werden.",
                                                 "The picture could not be loaded.")));
        return;
    }
    if (picture_.isNull()) return;
    QSize s = picture_.size();
    if (s.width() > width() || s.height() > height()) s.scale(size(), Qt::KeepAspectRatio);
    const QRect target(QPoint((width() - s.width()) / 2, (height() - s.height()) / 2), s);
    p.setRenderHint(QPainter::SmoothPixmapTransform);
    p.drawImage(target, picture_);
}

void FrmVollbildViewer::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Escape:
            close();
            return;
        case Qt::Key_Right:
        case Qt::Key_Down:
        case Qt::Key_Space:
        case Qt::Key_PageDown:
            showPicture(current_ + 1);
            return;
        case Qt::Key_Left:
        case Qt::Key_Up:
        case Qt::Key_PageUp:
            showPicture(current_ - 1);
            return;
        case Qt::Key_Home:
            showPicture(0);
            return;
        case Qt::Key_End:
            showPicture(int(pictures_.size()) - 1);
            return;
        default:
            QWidget::keyPressEvent(event);
    }
}

void FrmVollbildViewer::mousePressEvent(QMouseEvent*) { close(); }

}  // namespace brindle::explorer
