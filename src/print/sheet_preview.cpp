#include "print/sheet_preview.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

namespace brindle::print {
namespace {

constexpr double kMargin = 12;  // pixels around the sheet

}  // namespace

SheetPreview::SheetPreview(SheetLayout& layout, QWidget* parent) : QWidget(parent), layout_(layout) {
    setObjectName("Preview");
    setMinimumSize(200, 200);
}

double SheetPreview::scale() const {
    const SizeF s = layout_.sheet();
    if (!(s.width > 0) || !(s.height > 0)) return 1;
    return std::min((width() - 2 * kMargin) / s.width, (height() - 2 * kMargin) / s.height);
}

QPointF SheetPreview::origin() const {
    const SizeF s = layout_.sheet();
    return {(width() - s.width * scale()) / 2, (height() - s.height * scale()) / 2};
}

QRectF SheetPreview::boxRect(std::size_t i) const {
    const Box& b = layout_.box(i);
    const double k = scale();
    return {origin().x() + b.left * k, origin().y() + b.top * k, b.width * k, b.height * k};
}

void SheetPreview::setFocusBox(int i) {
    if (i < 0 || static_cast<std::size_t>(i) >= layout_.count() || i == focus_) return;
    focus_ = i;
    update();
    emit focusChanged(i);
}

void SheetPreview::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), palette().color(QPalette::Mid));
    const SizeF s = layout_.sheet();
    p.fillRect(QRectF(origin(), QSizeF(s.width * scale(), s.height * scale())), Qt::white);
    p.setRenderHint(QPainter::SmoothPixmapTransform);
    for (std::size_t i = 0; i < layout_.count(); ++i) {
        const QRectF r = boxRect(i);
        if (i < thumbnails_.size()) {
            QImage img = thumbnails_[i];
            if (layout_.box(i).rotated) img = img.transformed(QTransform().rotate(90));
            p.drawImage(r, img);
        }
        const bool focused = static_cast<int>(i) == focus_;
        p.setPen(QPen(focused ? Qt::red : Qt::darkGray, focused ? 2 : 1));
        p.setBrush(Qt::NoBrush);
        p.drawRect(r);
    }
}

void SheetPreview::mousePressEvent(QMouseEvent* event) {
    // The last box painted is on top, so it takes the click.
    for (std::size_t n = layout_.count(); n-- > 0;) {
        if (!boxRect(n).contains(event->position())) continue;
        setFocusBox(static_cast<int>(n));
        const QPointF corner = boxRect(n).topLeft();
        grabbed_ = (event->position() - corner) / scale();
        dragging_ = true;
        return;
    }
}

void SheetPreview::mouseMoveEvent(QMouseEvent* event) {
    if (!dragging_) return;
    const QPointF mm = (event->position() - origin()) / scale() - grabbed_;
    layout_.setValue(static_cast<std::size_t>(focus_), Field::Left, round2(mm.x()));
    layout_.setValue(static_cast<std::size_t>(focus_), Field::Top, round2(mm.y()));
    update();
    emit moved();
}

void SheetPreview::mouseReleaseEvent(QMouseEvent*) { dragging_ = false; }

}  // namespace brindle::print
