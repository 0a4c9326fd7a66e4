#include "editor/panorama_viewer.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "editor/display_picture.h"
#include "editor/effect_pixels.h"

namespace brindle::editor {

namespace {

double wrapped(double x, double w) { return std::fmod(std::fmod(x, w) + w, w); }

// The zoom text as the album writes it: "Full" and "Min" stay, anything
// else becomes its number.
std::string zoomText(const std::string& zoom) {
    if (zoom == "Full" || zoom == "Min") return zoom;
    return std::to_string(static_cast<long>(effects::tokenNumber(zoom, 0)));
}

}  // namespace

std::vector<PanoramaView> panoramaViews(const PanoramaElement& e) {
    std::vector<PanoramaView> views;
    for (int i = 0; i <= e.hotspotCount && i < 21; ++i) {
        const PanoHotspot& h = e.hotspots[static_cast<std::size_t>(i)];
        PanoramaView v;
        v.file = h.urlName;
        v.alternative = h.alternative.empty() ? "alt.gif" : h.alternative;
        v.x = h.xStart;
        v.y = -static_cast<double>(h.yStart);  // written with its sign turned
        v.zoom = zoomText(h.zoomStart);
        for (std::size_t k = 0; k < 10; ++k) {
            // The album writes these numbers without their signs.
            const double x1 = std::abs(h.x1[k]), x2 = std::abs(h.x2[k]), y1 = std::abs(h.y1[k]), y2 = std::abs(h.y2[k]);
            if (x1 == x2 || y1 == y2) continue;
            v.spots.push_back({std::min(x1, x2), std::max(x1, x2), std::min(y1, y2), std::max(y1, y2),
                               std::abs(h.target[k])});
        }
        views.push_back(std::move(v));
    }
    return views;
}

// ---------------------------------------------------------------- camera

void PanoramaCamera::start(const PanoramaView& view, QSize pic, QSize b, bool alt) {
    picture = pic;
    box = b;
    alternative = alt;
    const double iw = std::max(1, pic.width()), ih = std::max(1, pic.height());
    const double contain = std::min(b.width() / iw, b.height() / ih);
    const double cover = std::max(b.width() / iw, b.height() / ih);
    // A picture at least two and a half times as wide as high goes round.
    wrap = !alt && iw >= 2.5 * ih;
    minScale = wrap ? b.height() / ih : contain;
    maxScale = std::max(cover, 1.0) * 4;
    std::string zoom = view.zoom;
    std::transform(zoom.begin(), zoom.end(), zoom.begin(), [](unsigned char c) { return std::tolower(c); });
    double s;
    if (alt || zoom == "min") s = minScale;
    else if (zoom == "full" || !(effects::tokenNumber(zoom, 0) > 0)) s = cover;
    else s = effects::tokenNumber(zoom, 100) / 100;
    scale = std::clamp(s, std::min(minScale, maxScale), maxScale);
    vx = alt ? 0 : view.x;
    vy = alt ? 0 : view.y;
    limit();
}

void PanoramaCamera::limit() {
    const double iw = std::max(1, picture.width()), ih = std::max(1, picture.height());
    const double vw = box.width() / scale, vh = box.height() / scale;
    if (wrap) vx = wrapped(vx, iw);
    else if (vw >= iw) vx = (iw - vw) / 2;
    else vx = std::clamp(vx, 0.0, iw - vw);
    if (vh >= ih) vy = (ih - vh) / 2;
    else vy = std::clamp(vy, 0.0, ih - vh);
}

QPointF PanoramaCamera::canvasToPicture(QPointF c) const {
    double x = vx + c.x() / scale;
    if (wrap) x = wrapped(x, std::max(1, picture.width()));
    return {x, vy + c.y() / scale};
}

QPointF PanoramaCamera::pictureToCanvas(QPointF p) const {
    double x = p.x() - vx;
    if (wrap) {
        const double iw = std::max(1, picture.width());
        x = wrapped(x, iw);
        if (x * scale > box.width()) x -= iw;
    }
    return {x * scale, (p.y() - vy) * scale};
}

void PanoramaCamera::zoomAt(double factor, QPointF c) {
    if (alternative) return;
    const QPointF before = canvasToPicture(c);
    scale = std::clamp(scale * factor, std::min(minScale, maxScale), maxScale);
    vx = before.x() - c.x() / scale;
    vy = before.y() - c.y() / scale;
    limit();
}

void PanoramaCamera::panBy(double dx, double dy) {
    if (alternative) return;
    vx -= dx / scale;
    vy -= dy / scale;
    limit();
}

void PanoramaCamera::autoTurn(double ms) {
    if (alternative || ms <= 0) return;
    const double before = vx;
    vx += direction_ * 16 * ms / 1000 / scale;
    limit();
    if (!wrap && vx == before) direction_ = -direction_;
}

std::optional<PanoramaSpot> PanoramaCamera::spotAt(const std::vector<PanoramaSpot>& spots, QPointF c, int views) const {
    if (alternative || picture.isEmpty()) return std::nullopt;
    const QPointF p = canvasToPicture(c);
    for (const PanoramaSpot& s : spots)
        if (p.x() >= s.x1 && p.x() < s.x2 && p.y() >= s.y1 && p.y() < s.y2 && s.target < views) return s;
    return std::nullopt;
}

// ---------------------------------------------------------------- widget

PanoramaViewer::PanoramaViewer(const PanoramaElement& element, std::function<QString(const std::string&)> resolve,
                               QWidget* parent)
    : QWidget(parent), views_(panoramaViews(element)), resolve_(std::move(resolve)) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setCursor(Qt::OpenHandCursor);
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setInterval(16);
    connect(&timer_, &QTimer::timeout, this, [this] { tick(); });
    clock_.start();
    if (!views_.empty()) show(0);
}

void PanoramaViewer::show(int index) {
    if (index < 0 || index >= static_cast<int>(views_.size())) return;
    const PanoramaView& v = views_[static_cast<std::size_t>(index)];
    QImage img = loadDisplayPicture(resolve_(v.file), {}, false);
    bool alternative = false;
    if (img.isNull()) {
        img = loadDisplayPicture(resolve_(v.alternative), {}, false);
        alternative = true;
    }
    if (img.isNull()) return;
    index_ = index;
    image_ = img;
    hover_.reset();
    camera_.start(v, image_.size(), size(), alternative);
    update();
}

void PanoramaViewer::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (index_ >= 0) camera_.start(views_[static_cast<std::size_t>(index_)], image_.size(), size(), camera_.alternative);
}

void PanoramaViewer::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    last_ = -1;
    timer_.start();
}

void PanoramaViewer::hideEvent(QHideEvent* event) {
    timer_.stop();
    QWidget::hideEvent(event);
}

void PanoramaViewer::tick() {
    const qint64 now = clock_.elapsed();
    const double dt = last_ < 0 ? 0 : std::min<qint64>(100, now - last_);
    last_ = now;
    // Until the reader takes over, the view turns slowly by itself.
    if (autoTurn_ && !inside_ && !dragging_) camera_.autoTurn(dt);
    update();
}

void PanoramaViewer::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), QColor(0x15, 0x19, 0x1E));
    if (image_.isNull()) return;
    p.setRenderHint(QPainter::SmoothPixmapTransform);
    const double s = camera_.scale;
    const double w = image_.width() * s, h = image_.height() * s;
    const double x = -camera_.vx * s, y = -camera_.vy * s;
    if (camera_.wrap) {
        for (double xx = x; xx < width(); xx += w) p.drawImage(QRectF(xx, y, w, h), image_);
    } else {
        p.drawImage(QRectF(x, y, w, h), image_);
    }
    if (camera_.alternative) return;
    p.setRenderHint(QPainter::Antialiasing);
    for (const PanoramaSpot& spot : views_[static_cast<std::size_t>(index_)].spots) {
        if (spot.target >= static_cast<int>(views_.size())) continue;
        const QPointF at = camera_.pictureToCanvas({spot.x1, spot.y1});
        const QRectF r(at, QSizeF((spot.x2 - spot.x1) * s, (spot.y2 - spot.y1) * s));
        const bool on = hover_ && hover_->x1 == spot.x1 && hover_->y1 == spot.y1;
        QPen pen(on ? QColor(255, 255, 255, 242) : QColor(255, 255, 255, 115), on ? 2 : 1);
        if (!on) pen.setDashPattern({5, 4});
        p.setPen(pen);
        p.setBrush(on ? QColor(255, 255, 255, 41) : QColor(255, 255, 255, 10));
        p.drawRoundedRect(r, 6, 6);
    }
}

void PanoramaViewer::enterEvent(QEnterEvent* event) {
    inside_ = true;
    QWidget::enterEvent(event);
}

void PanoramaViewer::leaveEvent(QEvent* event) {
    inside_ = false;
    hover_.reset();
    QWidget::leaveEvent(event);
}

void PanoramaViewer::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    autoTurn_ = false;
    dragging_ = true;
    moved_ = false;
    dragAt_ = dragStart_ = event->position();
    setCursor(Qt::ClosedHandCursor);
    setFocus(Qt::MouseFocusReason);
}

void PanoramaViewer::mouseMoveEvent(QMouseEvent* event) {
    const QPointF pos = event->position();
    if (dragging_) {
        camera_.panBy(pos.x() - dragAt_.x(), pos.y() - dragAt_.y());
        dragAt_ = pos;
        if (std::abs(pos.x() - dragStart_.x()) + std::abs(pos.y() - dragStart_.y()) > 4) moved_ = true;
        update();
        return;
    }
    const int count = static_cast<int>(views_.size());
    hover_ = index_ < 0 ? std::nullopt : camera_.spotAt(views_[static_cast<std::size_t>(index_)].spots, pos, count);
    setCursor(hover_ ? Qt::PointingHandCursor : Qt::OpenHandCursor);
}

void PanoramaViewer::mouseReleaseEvent(QMouseEvent* event) {
    if (!dragging_ || event->button() != Qt::LeftButton) return;
    dragging_ = false;
    const int count = static_cast<int>(views_.size());
    std::optional<PanoramaSpot> spot;
    if (!moved_ && index_ >= 0) spot = camera_.spotAt(views_[static_cast<std::size_t>(index_)].spots, event->position(), count);
    setCursor(spot ? Qt::PointingHandCursor : Qt::OpenHandCursor);
    if (spot) show(spot->target);
}

void PanoramaViewer::wheelEvent(QWheelEvent* event) {
    autoTurn_ = false;
    camera_.zoomAt(std::exp(event->angleDelta().y() / 120.0 * 100 * 0.0015), event->position());
    update();
    event->accept();
}

void PanoramaViewer::keyPressEvent(QKeyEvent* event) {
    const QPointF centre(width() / 2.0, height() / 2.0);
    switch (event->key()) {
        case Qt::Key_Left: camera_.panBy(40, 0); break;
        case Qt::Key_Right: camera_.panBy(-40, 0); break;
        case Qt::Key_Up: camera_.panBy(0, 40); break;
        case Qt::Key_Down: camera_.panBy(0, -40); break;
        case Qt::Key_Plus:
        case Qt::Key_Equal: camera_.zoomAt(1.25, centre); break;
        case Qt::Key_Minus: camera_.zoomAt(0.8, centre); break;
        default: QWidget::keyPressEvent(event); return;
    }
    autoTurn_ = false;
    update();
}

}  // namespace brindle::editor
