#include "editor/frm_vollbild.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace brindle::editor {

FrmVollbild::FrmVollbild(const QImage& picture, Language language, QWidget* parent)
    : QWidget(parent, Qt::Window), picture_(picture) {
    setObjectName("frmVollbild");
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setWindowTitle(brindle::tr(language, "Brindlesee Vollbild", "Brindlesee Fullscreen"));
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
}

QRect FrmVollbild::fitted(QSize picture, QSize screen) {
    if (picture.isEmpty() || screen.isEmpty()) return {};
    // Smaller pictures keep their own size, as the album's full view shows them.
    const double scale =
        std::min({1.0, 1.0 * screen.width() / picture.width(), 1.0 * screen.height() / picture.height()});
    const int w = static_cast<int>(std::lround(picture.width() * scale));
    const int h = static_cast<int>(std::lround(picture.height() * scale));
    return {(screen.width() - w) / 2, (screen.height() - h) / 2, w, h};
}

void FrmVollbild::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), QColor(0x10, 0x12, 0x14));
    p.setRenderHint(QPainter::SmoothPixmapTransform);
    if (!picture_.isNull()) p.drawImage(fitted(picture_.size(), size()), picture_);
}

void FrmVollbild::mousePressEvent(QMouseEvent*) { close(); }

void FrmVollbild::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) close();
    else QWidget::keyPressEvent(event);
}

}  // namespace brindle::editor
