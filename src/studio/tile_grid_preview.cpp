#include "studio/tile_grid_preview.h"

#include <QPainter>
#include <algorithm>

namespace brindle::studio {

TileGridPreview::TileGridPreview(QWidget* parent) : QWidget(parent) {
    setMinimumSize(240, 180);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void TileGridPreview::setPicture(const QImage& image, QSize pictureSize) {
    image_ = image;
    pictureSize_ = pictureSize;
    placeholder_.clear();
    update();
}

void TileGridPreview::setGrid(int rows, int columns, TileOrder order) {
    rows_ = rows;
    columns_ = columns;
    order_ = order;
    update();
}

void TileGridPreview::setPlaceholder(const QString& text) {
    image_ = QImage();
    pictureSize_ = QSize();
    placeholder_ = text;
    update();
}

// The picture fitted into the widget, centred, never above 1:1.
QRectF TileGridPreview::pictureRect() const {
    const QRectF area = QRectF(rect()).adjusted(6, 6, -6, -6);
    const double scale = std::min({area.width() / pictureSize_.width(), area.height() / pictureSize_.height(), 1.0});
    const QSizeF shown(pictureSize_.width() * scale, pictureSize_.height() * scale);
    return {area.center().x() - shown.width() / 2, area.center().y() - shown.height() / 2, shown.width(),
            shown.height()};
}

void TileGridPreview::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().dark());
    if (image_.isNull() || pictureSize_.isEmpty()) {
        painter.setPen(palette().brightText().color());
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, placeholder_);
        return;
    }
    const QRectF area = pictureRect();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(area, image_);
    if (rows_ >= 1 && columns_ >= 1 && columns_ <= pictureSize_.width() && rows_ <= pictureSize_.height())
        drawGrid(painter, area);
}

void TileGridPreview::drawGrid(QPainter& painter, const QRectF& area) const {
    const double sx = area.width() / pictureSize_.width();
    const double sy = area.height() / pictureSize_.height();
    const double tileW = (pictureSize_.width() / columns_) * sx;
    const double tileH = (pictureSize_.height() / rows_) * sy;
    const double usedW = tileW * columns_, usedH = tileH * rows_;
    // What no tile takes is dropped: shade it.
    const QColor dropped(0, 0, 0, 150);
    painter.fillRect(QRectF(area.left() + usedW, area.top(), area.width() - usedW, area.height()), dropped);
    painter.fillRect(QRectF(area.left(), area.top() + usedH, usedW, area.height() - usedH), dropped);
    QPen line(QColor(255, 255, 255, 220), 1.5);
    painter.setPen(line);
    for (int c = 0; c <= columns_; ++c)
        painter.drawLine(QPointF(area.left() + c * tileW, area.top()), QPointF(area.left() + c * tileW, area.top() + usedH));
    for (int r = 0; r <= rows_; ++r)
        painter.drawLine(QPointF(area.left(), area.top() + r * tileH), QPointF(area.left() + usedW, area.top() + r * tileH));
    // Numbers only where they fit.
    QFont font = painter.font();
    font.setBold(true);
    font.setPixelSize(std::clamp(static_cast<int>(std::min(tileW, tileH) / 3), 8, 28));
    painter.setFont(font);
    if (std::min(tileW, tileH) < 14) return;
    for (int r = 0; r < rows_; ++r) {
        for (int c = 0; c < columns_; ++c) {
            const QRectF cell(area.left() + c * tileW, area.top() + r * tileH, tileW, tileH);
            const QString number = QString::number(tileNumber(r, c, rows_, columns_, order_));
            painter.setPen(QColor(0, 0, 0, 200));
            painter.drawText(cell.translated(1, 1), Qt::AlignCenter, number);
            painter.setPen(Qt::white);
            painter.drawText(cell, Qt::AlignCenter, number);
        }
    }
}

}  // namespace brindle::studio
