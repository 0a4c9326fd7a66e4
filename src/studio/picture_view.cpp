#include "studio/picture_view.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <cmath>

namespace brindle::studio {

// The scaled picture inside the scroll area; it turns mouse positions into
// picture pixels.
class PictureCanvas : public QWidget {
  public:
    explicit PictureCanvas(PictureView* view) : QWidget(view), view_(view) {}

    QImage image;
    double scale = 1.0;
    QRect mark;

    QPoint toPicture(QPoint p) const {
        return {static_cast<int>(std::floor(p.x() / scale)), static_cast<int>(std::floor(p.y() / scale))};
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), palette().window());
        if (image.isNull()) return;
        painter.setRenderHint(QPainter::SmoothPixmapTransform, scale < 1.0);
        painter.drawImage(QRect(0, 0, width(), height()), image);
        if (!mark.isEmpty()) {
            painter.setPen(QPen(Qt::yellow, 1, Qt::DashLine));
            painter.drawRect(QRectF(mark.x() * scale, mark.y() * scale, mark.width() * scale, mark.height() * scale));
        }
    }
    void mousePressEvent(QMouseEvent* e) override {
        pressAt_ = e->position().toPoint();
        scrollAt_ = {view_->horizontalScrollBar()->value(), view_->verticalScrollBar()->value()};
        button_ = e->button();
    }
    void mouseMoveEvent(QMouseEvent* e) override {
        const QPoint at = e->position().toPoint();
        if (button_ == Qt::LeftButton) {
            // Scroll by the drag, measured in the viewport so the picture follows the mouse.
            const QPoint delta = mapTo(view_->viewport(), at) - mapTo(view_->viewport(), pressAt_);
            view_->horizontalScrollBar()->setValue(scrollAt_.x() - delta.x());
            view_->verticalScrollBar()->setValue(scrollAt_.y() - delta.y());
        } else if (button_ == Qt::RightButton) {
            mark = draggedRect(at);
            update();
        }
    }
    void mouseReleaseEvent(QMouseEvent* e) override {
        if (button_ == Qt::RightButton) {
            mark = draggedRect(e->position().toPoint());
            update();
            if (!mark.isEmpty()) emit view_->pictureRectDragged(mark);
        }
        button_ = Qt::NoButton;
    }
    void mouseDoubleClickEvent(QMouseEvent* e) override {
        if (e->button() != Qt::LeftButton || image.isNull()) return;
        const QPoint p = toPicture(e->position().toPoint());
        if (image.rect().contains(p)) emit view_->pictureDoubleClicked(p);
    }

  private:
    QRect draggedRect(QPoint at) const {
        const QPoint a = toPicture(pressAt_), b = toPicture(at);
        QRect r(QPoint(std::min(a.x(), b.x()), std::min(a.y(), b.y())),
                QPoint(std::max(a.x(), b.x()), std::max(a.y(), b.y())));
        return r.intersected(image.rect());
    }
    PictureView* view_;
    QPoint pressAt_, scrollAt_;
    Qt::MouseButton button_ = Qt::NoButton;
};

PictureView::PictureView(QWidget* parent) : QScrollArea(parent), canvas_(new PictureCanvas(this)) {
    setWidget(canvas_);
    setAlignment(Qt::AlignCenter);
    setWidgetResizable(false);
    setMinimumSize(120, 90);
}

void PictureView::setImage(const QImage& image) {
    canvas_->image = image;
    canvas_->mark = canvas_->mark.intersected(image.rect());
    relayout();
}

const QImage& PictureView::image() const { return canvas_->image; }

void PictureView::setFitted(bool fitted) {
    fitted_ = fitted;
    relayout();
}

void PictureView::setZoom(double factor) {
    fitted_ = false;
    zoom_ = std::clamp(factor, 0.02, 16.0);
    relayout();
}

double PictureView::zoom() const { return canvas_->scale; }

void PictureView::setMark(const QRect& mark) {
    canvas_->mark = mark.intersected(canvas_->image.rect());
    canvas_->update();
}

QRect PictureView::mark() const { return canvas_->mark; }

void PictureView::scrollToCentre() {
    horizontalScrollBar()->setValue(horizontalScrollBar()->maximum() / 2);
    verticalScrollBar()->setValue(verticalScrollBar()->maximum() / 2);
}

void PictureView::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    if (fitted_) relayout();
}

void PictureView::relayout() {
    const QImage& image = canvas_->image;
    if (image.isNull()) {
        canvas_->scale = 1.0;
        canvas_->resize(viewport()->size());
        canvas_->update();
        return;
    }
    double scale = zoom_;
    if (fitted_) {
        const QSize room = maximumViewportSize();
        scale = std::min({1.0, double(room.width()) / image.width(), double(room.height()) / image.height()});
    }
    canvas_->scale = scale;
    canvas_->resize(std::max(1, int(std::lround(image.width() * scale))),
                    std::max(1, int(std::lround(image.height() * scale))));
    canvas_->update();
}

}  // namespace brindle::studio
