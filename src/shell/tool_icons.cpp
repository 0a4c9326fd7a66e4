#include "shell/tool_icons.h"

#include <QPainter>
#include <QPainterPath>
#include <functional>
#include <map>

namespace brindle::shell {

namespace {

const QColor kInk(0x36, 0x41, 0x4F);
const QColor kAccent(0x1F, 0x6F, 0xC8);
const QColor kSoft(0xD6, 0xE6, 0xF7);
const QColor kWarm(0xE0, 0x8A, 0x2E);

using Draw = std::function<void(QPainter&)>;

QPen ink(double w = 1.6) { return QPen(kInk, w, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin); }
QPen accent(double w = 1.6) { return QPen(kAccent, w, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin); }

void page(QPainter& p, QRectF r) {
    QPainterPath path;
    path.moveTo(r.left(), r.top());
    path.lineTo(r.right() - 5, r.top());
    path.lineTo(r.right(), r.top() + 5);
    path.lineTo(r.right(), r.bottom());
    path.lineTo(r.left(), r.bottom());
    path.closeSubpath();
    p.setPen(ink());
    p.setBrush(Qt::white);
    p.drawPath(path);
}

void landscape(QPainter& p, QRectF r) {
    p.setPen(ink());
    p.setBrush(kSoft);
    p.drawRoundedRect(r, 2, 2);
    QPainterPath hills;
    hills.moveTo(r.left() + 1, r.bottom() - 1);
    hills.lineTo(r.left() + r.width() * 0.38, r.top() + r.height() * 0.45);
    hills.lineTo(r.left() + r.width() * 0.58, r.top() + r.height() * 0.7);
    hills.lineTo(r.left() + r.width() * 0.75, r.top() + r.height() * 0.52);
    hills.lineTo(r.right() - 1, r.bottom() - 1);
    hills.closeSubpath();
    p.setPen(Qt::NoPen);
    p.setBrush(kAccent);
    p.drawPath(hills);
    p.setBrush(kWarm);
    p.drawEllipse(QPointF(r.left() + r.width() * 0.72, r.top() + r.height() * 0.3), 2.2, 2.2);
}

void arrow(QPainter& p, bool redo) {
    p.save();
    if (redo) {
        p.translate(24, 0);
        p.scale(-1, 1);
    }
    p.setPen(ink(2));
    p.setBrush(Qt::NoBrush);
    QPainterPath path;
    path.moveTo(7, 10);
    path.lineTo(15, 10);
    path.cubicTo(22, 10, 22, 20, 15, 20);
    path.lineTo(10, 20);
    p.drawPath(path);
    p.drawLine(QPointF(7, 10), QPointF(11, 6));
    p.drawLine(QPointF(7, 10), QPointF(11, 14));
    p.restore();
}

// Bars against a guide line; `vertical` turns the picture by 90 degrees.
void align(QPainter& p, double where, bool vertical) {
    p.save();
    if (vertical) {
        p.translate(24, 0);
        p.rotate(90);
    }
    p.setPen(accent(1.6));
    p.drawLine(QPointF(where, 3), QPointF(where, 21));
    p.setPen(Qt::NoPen);
    p.setBrush(kInk);
    const double w1 = 12, w2 = 7;
    const double x1 = where < 8 ? where + 2 : where > 16 ? where - 2 - w1 : where - w1 / 2;
    const double x2 = where < 8 ? where + 2 : where > 16 ? where - 2 - w2 : where - w2 / 2;
    p.drawRoundedRect(QRectF(x1, 6, w1, 4.5), 1, 1);
    p.drawRoundedRect(QRectF(x2, 13.5, w2, 4.5), 1, 1);
    p.restore();
}

void distribute(QPainter& p, bool vertical) {
    p.save();
    if (vertical) {
        p.translate(24, 0);
        p.rotate(90);
    }
    p.setPen(accent(1.4));
    p.drawLine(QPointF(3, 4), QPointF(3, 20));
    p.drawLine(QPointF(21, 4), QPointF(21, 20));
    p.setPen(Qt::NoPen);
    p.setBrush(kInk);
    for (double x : {5.5, 10.5, 15.5}) p.drawRoundedRect(QRectF(x, 8, 3, 8), 1, 1);
    p.restore();
}

const std::map<QString, Draw>& drawings() {
    static const std::map<QString, Draw> table = {
        {"new", [](QPainter& p) {
             page(p, QRectF(5, 3, 13, 18));
             p.setPen(accent(2));
             p.drawLine(QPointF(17, 14), QPointF(17, 22));
             p.drawLine(QPointF(13, 18), QPointF(21, 18));
         }},
        {"open", [](QPainter& p) {
             p.setPen(ink());
             p.setBrush(kSoft);
             QPainterPath f;
             f.moveTo(3, 6);
             f.lineTo(9, 6);
             f.lineTo(11, 8);
             f.lineTo(20, 8);
             f.lineTo(20, 19);
             f.lineTo(3, 19);
             f.closeSubpath();
             p.drawPath(f);
             p.setBrush(Qt::white);
             QPainterPath lid;
             lid.moveTo(3, 19);
             lid.lineTo(6, 11);
             lid.lineTo(22, 11);
             lid.lineTo(20, 19);
             lid.closeSubpath();
             p.drawPath(lid);
         }},
        {"save", [](QPainter& p) {
             p.setPen(ink());
             p.setBrush(kAccent);
             p.drawRoundedRect(QRectF(4, 4, 16, 16), 2, 2);
             p.setBrush(Qt::white);
             p.drawRect(QRectF(7.5, 4, 9, 5.5));
             p.drawRect(QRectF(7, 13, 10, 7));
         }},
        {"pointer", [](QPainter& p) {
             QPainterPath a;
             a.moveTo(7, 3);
             a.lineTo(7, 19);
             a.lineTo(11, 15);
             a.lineTo(14, 21);
             a.lineTo(16.5, 20);
             a.lineTo(13.5, 14);
             a.lineTo(19, 14);
             a.closeSubpath();
             p.setPen(ink(1.4));
             p.setBrush(Qt::white);
             p.drawPath(a);
         }},
        {"picture", [](QPainter& p) { landscape(p, QRectF(3, 5, 18, 14)); }},
        {"pictures", [](QPainter& p) {
             p.setPen(ink());
             p.setBrush(Qt::white);
             p.drawRoundedRect(QRectF(7, 3, 14, 11), 2, 2);
             landscape(p, QRectF(3, 9, 14, 11));
         }},
        {"text", [](QPainter& p) {
             p.setPen(ink(2.4));
             p.drawLine(QPointF(6, 5), QPointF(18, 5));
             p.drawLine(QPointF(12, 5), QPointF(12, 20));
             p.setPen(accent(1.6));
             p.drawLine(QPointF(9, 20), QPointF(15, 20));
         }},
        {"panorama", [](QPainter& p) {
             p.setPen(ink());
             p.setBrush(kSoft);
             QPainterPath band;
             band.moveTo(2, 7);
             band.quadTo(12, 4, 22, 7);
             band.lineTo(22, 17);
             band.quadTo(12, 14, 2, 17);
             band.closeSubpath();
             p.drawPath(band);
             p.setPen(Qt::NoPen);
             p.setBrush(kAccent);
             QPainterPath hills;
             hills.moveTo(3, 16.5);
             hills.lineTo(8, 11);
             hills.lineTo(12, 14);
             hills.lineTo(16, 10);
             hills.lineTo(21, 16.5);
             hills.quadTo(12, 13.8, 3, 16.5);
             p.drawPath(hills);
         }},
        {"search", [](QPainter& p) {
             p.setPen(ink(2));
             p.setBrush(kSoft);
             p.drawEllipse(QPointF(10, 10), 6, 6);
             p.setPen(QPen(kInk, 3, Qt::SolidLine, Qt::RoundCap));
             p.drawLine(QPointF(14.5, 14.5), QPointF(20, 20));
         }},
        {"undo", [](QPainter& p) { arrow(p, false); }},
        {"redo", [](QPainter& p) { arrow(p, true); }},
        {"cut", [](QPainter& p) {
             p.setPen(ink(1.6));
             p.drawLine(QPointF(7, 3), QPointF(15, 15));
             p.drawLine(QPointF(17, 3), QPointF(9, 15));
             p.setBrush(Qt::white);
             p.setPen(accent(1.8));
             p.drawEllipse(QPointF(7.5, 18), 3, 3);
             p.drawEllipse(QPointF(16.5, 18), 3, 3);
         }},
        {"copy", [](QPainter& p) {
             page(p, QRectF(4, 3, 11, 14));
             page(p, QRectF(9, 7, 11, 14));
         }},
        {"paste", [](QPainter& p) {
             p.setPen(ink());
             p.setBrush(kSoft);
             p.drawRoundedRect(QRectF(4, 5, 14, 16), 2, 2);
             p.setBrush(kAccent);
             p.drawRoundedRect(QRectF(8, 3, 6, 4), 1, 1);
             page(p, QRectF(11, 10, 9, 11));
         }},
        {"delete", [](QPainter& p) {
             p.setPen(ink());
             p.setBrush(Qt::white);
             p.drawRoundedRect(QRectF(6, 7, 12, 14), 2, 2);
             p.drawLine(QPointF(4, 6), QPointF(20, 6));
             p.drawLine(QPointF(10, 3.5), QPointF(14, 3.5));
             p.setPen(QPen(QColor(0xC8, 0x3A, 0x32), 1.6));
             p.drawLine(QPointF(10, 10), QPointF(10, 18));
             p.drawLine(QPointF(14, 10), QPointF(14, 18));
         }},
        {"alignLeft", [](QPainter& p) { align(p, 4, false); }},
        {"alignCenterH", [](QPainter& p) { align(p, 12, false); }},
        {"alignRight", [](QPainter& p) { align(p, 20, false); }},
        {"alignTop", [](QPainter& p) { align(p, 4, true); }},
        {"alignCenterV", [](QPainter& p) { align(p, 12, true); }},
        {"alignBottom", [](QPainter& p) { align(p, 20, true); }},
        {"distributeH", [](QPainter& p) { distribute(p, false); }},
        {"distributeV", [](QPainter& p) { distribute(p, true); }},
        {"play", [](QPainter& p) {
             QPainterPath a;
             a.moveTo(7, 4);
             a.lineTo(19, 12);
             a.lineTo(7, 20);
             a.closeSubpath();
             p.setPen(ink(1.4));
             p.setBrush(accent(1).color());
             p.drawPath(a);
         }},
        {"html", [](QPainter& p) {
             p.setPen(ink());
             p.setBrush(kSoft);
             p.drawEllipse(QPointF(12, 12), 8.5, 8.5);
             p.setBrush(Qt::NoBrush);
             p.drawEllipse(QPointF(12, 12), 4, 8.5);
             p.drawLine(QPointF(3.5, 12), QPointF(20.5, 12));
             p.setPen(accent(1.4));
             p.drawLine(QPointF(5, 8), QPointF(19, 8));
             p.drawLine(QPointF(5, 16), QPointF(19, 16));
         }},
        {"mail", [](QPainter& p) {
             p.setPen(ink());
             p.setBrush(Qt::white);
             p.drawRoundedRect(QRectF(3, 6, 18, 13), 2, 2);
             p.setPen(accent(1.6));
             p.drawPolyline(QPolygonF({QPointF(4, 7.5), QPointF(12, 13.5), QPointF(20, 7.5)}));
         }},
        {"page", [](QPainter& p) {
             page(p, QRectF(5, 3, 14, 18));
             p.setPen(accent(1.4));
             for (double y : {9.0, 12.5, 16.0}) p.drawLine(QPointF(8, y), QPointF(16, y));
         }},
        {"album", [](QPainter& p) {
             p.setPen(ink());
             p.setBrush(kAccent);
             p.drawRoundedRect(QRectF(4, 3, 16, 18), 2, 2);
             p.setBrush(Qt::white);
             p.drawRoundedRect(QRectF(8, 7, 9, 7), 1, 1);
         }},
        {"templates", [](QPainter& p) {
             p.setPen(ink());
             p.setBrush(kSoft);
             p.drawRoundedRect(QRectF(3, 4, 18, 16), 2, 2);
             p.setPen(accent(1.4));
             p.drawLine(QPointF(3, 9), QPointF(21, 9));
             p.drawLine(QPointF(9, 9), QPointF(9, 20));
         }},
        {"options", [](QPainter& p) {
             p.setPen(ink(1.6));
             for (double y : {7.0, 12.0, 17.0}) p.drawLine(QPointF(4, y), QPointF(20, y));
             p.setBrush(kAccent);
             p.setPen(Qt::NoPen);
             p.drawEllipse(QPointF(9, 7), 2.4, 2.4);
             p.drawEllipse(QPointF(15, 12), 2.4, 2.4);
             p.drawEllipse(QPointF(7, 17), 2.4, 2.4);
         }},
        {"bold", [](QPainter& p) {
             QFont f("Liberation Sans");
             f.setPixelSize(17);
             f.setBold(true);
             p.setFont(f);
             p.setPen(kInk);
             p.drawText(QRectF(0, 0, 24, 24), Qt::AlignCenter, "B");
         }},
        {"italic", [](QPainter& p) {
             QFont f("Liberation Serif");
             f.setPixelSize(18);
             f.setItalic(true);
             p.setFont(f);
             p.setPen(kInk);
             p.drawText(QRectF(0, 0, 24, 24), Qt::AlignCenter, "I");
         }},
        {"underline", [](QPainter& p) {
             QFont f("Liberation Sans");
             f.setPixelSize(16);
             f.setUnderline(true);
             p.setFont(f);
             p.setPen(kInk);
             p.drawText(QRectF(0, 0, 24, 24), Qt::AlignCenter, "U");
         }},
    };
    return table;
}

QPixmap render(const Draw& draw, double dpr, bool disabled) {
    QPixmap pm(int(24 * dpr), int(24 * dpr));
    pm.setDevicePixelRatio(dpr);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    if (disabled) p.setOpacity(0.35);
    draw(p);
    return pm;
}

}  // namespace

QIcon toolIcon(const QString& name) {
    auto it = drawings().find(name);
    if (it == drawings().end()) return {};
    QIcon icon;
    for (double dpr : {1.0, 2.0}) {
        icon.addPixmap(render(it->second, dpr, false), QIcon::Normal);
        icon.addPixmap(render(it->second, dpr, true), QIcon::Disabled);
    }
    return icon;
}

QPixmap brandMark(int size) {
    QPixmap pm(size, size);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    const double s = size / 64.0;
    p.scale(s, s);
    QLinearGradient g(0, 0, 64, 64);
    g.setColorAt(0, QColor(0x2E, 0x86, 0xDE));
    g.setColorAt(1, QColor(0x16, 0x4E, 0x9A));
    p.setPen(Qt::NoPen);
    p.setBrush(g);
    p.drawRoundedRect(QRectF(2, 2, 60, 60), 14, 14);
    p.setBrush(QColor(255, 255, 255, 235));
    p.drawRoundedRect(QRectF(13, 14, 30, 36), 3, 3);
    p.setBrush(QColor(255, 255, 255, 150));
    p.drawRoundedRect(QRectF(22, 10, 30, 36), 3, 3);
    QPainterPath hills;
    hills.moveTo(15, 46);
    hills.lineTo(24, 33);
    hills.lineTo(30, 40);
    hills.lineTo(35, 35);
    hills.lineTo(41, 46);
    hills.closeSubpath();
    p.setBrush(QColor(0x1F, 0x6F, 0xC8));
    p.drawPath(hills);
    p.setBrush(kWarm);
    p.drawEllipse(QPointF(34, 24), 3.5, 3.5);
    return pm;
}

}  // namespace brindle::shell
