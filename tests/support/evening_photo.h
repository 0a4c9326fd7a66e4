// A photo-like evening landscape drawn by the tests (sky, sun, hills, a lake
// and a tree), for window tests and their screenshots.
#pragma once

#include <QImage>
#include <QPainter>
#include <QPolygonF>

namespace brindle::test {

// The landscape at `width` x `height` (drawn at 640 x 420, then scaled).
inline QImage eveningPhoto(int width = 640, int height = 420) {
    QImage img(640, 420, QImage::Format_RGB32);
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, 0, 260);
    sky.setColorAt(0, QColor(0x2B, 0x4C, 0x8C));
    sky.setColorAt(0.7, QColor(0xF2, 0xA6, 0x5A));
    sky.setColorAt(1, QColor(0xF7, 0xD0, 0x8A));
    p.fillRect(img.rect(), sky);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0xFF, 0xE9, 0xA8));
    p.drawEllipse(QPointF(430, 200), 38, 38);
    p.setBrush(QColor(0x4A, 0x3C, 0x5E));
    p.drawPolygon(QPolygonF({QPointF(0, 260), QPointF(120, 150), QPointF(230, 230), QPointF(360, 120),
                             QPointF(520, 240), QPointF(640, 180), QPointF(640, 270), QPointF(0, 270)}));
    QLinearGradient lake(0, 260, 0, 420);
    lake.setColorAt(0, QColor(0xC9, 0x8A, 0x5A));
    lake.setColorAt(1, QColor(0x1D, 0x35, 0x57));
    p.fillRect(QRect(0, 262, 640, 158), lake);
    p.setBrush(QColor(0x3B, 0x2A, 0x1E));
    p.drawRect(QRectF(96, 250, 10, 80));
    p.setBrush(QColor(0x2F, 0x4A, 0x2C));
    p.drawEllipse(QPointF(101, 235), 40, 52);
    p.end();
    return width == 640 && height == 420 ? img : img.scaled(width, height);
}

}  // namespace brindle::test
