// The glyph of a navigation button, shared by the default pictures and the
// designs: '<' an arrow back, '>' an arrow forward, '=' a contents list,
// centred on (cx, cy) and filled with the painter's brush.
#pragma once

#include <QPainter>
#include <QPainterPath>

inline void drawButtonGlyph(QPainter& p, char glyph, double cx, double cy) {
    if (glyph == '=') {
        for (int i = 0; i < 3; ++i) {
            p.drawEllipse(QPointF(cx - 13, cy - 8 + 8 * i), 2.2, 2.2);
            p.drawRoundedRect(QRectF(cx - 8, cy - 9.5 + 8 * i, 22, 3), 1.5, 1.5);
        }
        return;
    }
    const double dir = glyph == '>' ? 1 : -1;
    QPainterPath path;
    path.moveTo(cx + 14 * dir, cy);
    path.lineTo(cx - 4 * dir, cy - 11);
    path.lineTo(cx - 4 * dir, cy - 4);
    path.lineTo(cx - 16 * dir, cy - 4);
    path.lineTo(cx - 16 * dir, cy + 4);
    path.lineTo(cx - 4 * dir, cy + 4);
    path.lineTo(cx - 4 * dir, cy + 11);
    path.closeSubpath();
    p.drawPath(path);
}
