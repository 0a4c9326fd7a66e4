#include "properties/panorama_live_view.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace brindle::properties {

namespace {
// Large pictures are held at most this wide for the screen.
constexpr int kHeldWidth = 4096;
const QColor kHotspot(255, 210, 60);
const QColor kSelected(255, 80, 60);
}  // namespace

PanoramaLiveView::PanoramaLiveView(QWidget* parent) : QWidget(parent) {
    setObjectName("picPanorama");
    setMinimumSize(320, 150);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setMouseTracking(false);
    setContextMenuPolicy(Qt::PreventContextMenu);
}

QSize PanoramaLiveView::sizeHint() const {
    const double f = std::min(560.0 / boxWidth_, 300.0 / boxHeight_);
    return {static_cast<int>(boxWidth_ * f), static_cast<int>(boxHeight_ * f)};
}

void PanoramaLiveView::setBox(int width, int height) {
    boxWidth_ = std::max(width, 16);
    boxHeight_ = std::max(height, 16);
    updateGeometry();
    setPicture(picture_, iw_, ih_);
}

void PanoramaLiveView::setPicture(const QImage& picture, int iw, int ih) {
    picture_ = picture.width() > kHeldWidth ? picture.scaledToWidth(kHeldWidth, Qt::SmoothTransformation) : picture;
    iw_ = iw;
    ih_ = ih;
    limits_ = viewLimits(boxWidth_, boxHeight_, iw_, ih_);
    if (!wrapWanted_) limits_.wrap = false;
    view_ = {0, 0, limits_.cover};
    limit();
    update();
}

void PanoramaLiveView::setWraps(bool wraps) {
    wrapWanted_ = wraps;
    limits_ = viewLimits(boxWidth_, boxHeight_, iw_, ih_);
    if (!wraps) limits_.wrap = false;
    limit();
    update();
}

void PanoramaLiveView::setZoomText(const std::string& zoom) {
    view_.scale = startScale(zoom, limits_);
    limit();
    update();
}

void PanoramaLiveView::setView(const ViewTransform& view) {
    view_ = view;
    view_.scale = std::clamp(view.scale, limits_.minScale, limits_.maxScale);
    limit();
    update();
}

void PanoramaLiveView::setHotspots(const std::array<PixelRect, 9>& rects, int selected) {
    hotspots_ = rects;
    selected_ = selected;
    update();
}

double PanoramaLiveView::boxPerWidget() const {
    // The box is shown whole, centred, at the largest size that fits.
    return std::max(static_cast<double>(boxWidth_) / std::max(width(), 1),
                    static_cast<double>(boxHeight_) / std::max(height(), 1));
}

QPointF PanoramaLiveView::toBox(QPointF w) const {
    const double f = boxPerWidget();
    const double ox = (width() - boxWidth_ / f) / 2;
    const double oy = (height() - boxHeight_ / f) / 2;
    return {(w.x() - ox) * f, (w.y() - oy) * f};
}

QRectF PanoramaLiveView::toWidget(const PixelRect& r) const {
    const double f = boxPerWidget();
    const double ox = (width() - boxWidth_ / f) / 2;
    const double oy = (height() - boxHeight_ / f) / 2;
    const double s = view_.scale / f;
    double x = r.x1 - view_.vx;
    if (limits_.wrap && iw_ > 0) {
        x = std::fmod(std::fmod(x, iw_) + iw_, iw_);
        if (x * view_.scale > boxWidth_) x -= iw_;
    }
    return {ox + x * s, oy + (r.y1 - view_.vy) * s, (r.x2 - r.x1) * s, (r.y2 - r.y1) * s};
}

void PanoramaLiveView::limit() {
    if (iw_ > 0 && ih_ > 0) limitView(view_, boxWidth_, boxHeight_, iw_, ih_, limits_.wrap);
}

void PanoramaLiveView::paintPicture(QPainter& p) {
    const double f = boxPerWidget();
    const double ox = (width() - boxWidth_ / f) / 2;
    const double oy = (height() - boxHeight_ / f) / 2;
    const QRectF box(ox, oy, boxWidth_ / f, boxHeight_ / f);
    p.fillRect(box, QColor(24, 28, 34));
    if (picture_.isNull() || iw_ <= 0) {
        p.setPen(QColor(200, 205, 212));
        p.drawText(box, Qt::AlignCenter, QString());
        return;
    }
    p.save();
    p.setClipRect(box);
    p.setRenderHint(QPainter::SmoothPixmapTransform, dragging_ == Qt::NoButton);
    const double s = view_.scale / f;
    const double w = iw_ * s, h = ih_ * s;
    double x = ox - view_.vx * s;
    const double y = oy - view_.vy * s;
    if (limits_.wrap) {
        while (x > ox) x -= w;
        for (; x < box.right(); x += w) p.drawImage(QRectF(x, y, w, h), picture_);
    } else {
        p.drawImage(QRectF(x, y, w, h), picture_);
    }
    p.restore();
}

void PanoramaLiveView::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), QColor(48, 52, 58));  // around the box, as a viewer's backdrop
    paintPicture(p);
    if (picture_.isNull()) return;
    p.setRenderHint(QPainter::Antialiasing);
    for (int n = 1; n <= 9; ++n) {
        const PixelRect& r = hotspots_[static_cast<std::size_t>(n - 1)];
        if (r.empty() && !(rubber_ && n == selected_)) continue;
        const PixelRect shown = rubber_ && n == selected_ ? *rubber_ : r;
        const QRectF w = toWidget(shown);
        const QColor c = n == selected_ ? kSelected : kHotspot;
        p.setPen(QPen(c, n == selected_ ? 2 : 1));
        p.setBrush(QColor(c.red(), c.green(), c.blue(), 50));
        p.drawRect(w);
        p.setPen(Qt::white);
        p.drawText(w.adjusted(4, 2, 0, 0), Qt::AlignLeft | Qt::AlignTop, QString::number(n));
    }
}

void PanoramaLiveView::mousePressEvent(QMouseEvent* event) {
    if (picture_.isNull() || dragging_ != Qt::NoButton) return;
    dragging_ = event->button();
    pressBox_ = lastBox_ = toBox(event->position());
    if (dragging_ == hotspotButton_) rubber_ = PixelRect{};
}

void PanoramaLiveView::mouseMoveEvent(QMouseEvent* event) {
    if (dragging_ == Qt::NoButton) return;
    const QPointF b = toBox(event->position());
    if (dragging_ == hotspotButton_) {
        rubber_ = hotspotFromDrag(view_, pressBox_.x(), pressBox_.y(), b.x(), b.y(), iw_, ih_);
        emit hotspotDragged(*rubber_, false);
    } else {
        view_.vx -= (b.x() - lastBox_.x()) / view_.scale;
        view_.vy -= (b.y() - lastBox_.y()) / view_.scale;
        limit();
        emit viewChanged();
    }
    lastBox_ = b;
    update();
}

void PanoramaLiveView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != dragging_) return;
    const QPointF b = toBox(event->position());
    if (dragging_ == hotspotButton_) {
        const PixelRect r = hotspotFromDrag(view_, pressBox_.x(), pressBox_.y(), b.x(), b.y(), iw_, ih_);
        rubber_.reset();
        dragging_ = Qt::NoButton;
        emit hotspotDragged(r, true);
    }
    dragging_ = Qt::NoButton;
    update();
}

void PanoramaLiveView::wheelEvent(QWheelEvent* event) {
    if (picture_.isNull()) return;
    const QPointF b = toBox(event->position());
    zoomAt(view_, std::pow(1.0015, event->angleDelta().y()), b.x(), b.y(), limits_);
    limit();
    emit viewChanged();
    update();
}

void PanoramaLiveView::resizeEvent(QResizeEvent*) { update(); }

}  // namespace brindle::properties
