#include "editor/effect_widgets.h"

#include <QMouseEvent>
#include <QMovie>
#include <QPainter>
#include <cmath>

namespace brindle::editor {

using effects::specTokens;
using effects::tokenNumber;

namespace {
constexpr int kTickMs = 16;  // about the screen's rate
}  // namespace

// ---------------------------------------------------------------- common part

EffectWidget::EffectWidget(const QImage& picture, const EffectOptions& options, QWidget* parent)
    : QWidget(parent), picture_(picture), options_(options) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setInterval(kTickMs);
    connect(&timer_, &QTimer::timeout, this, qOverload<>(&QWidget::update));
    if (options_.clicked) setCursor(Qt::PointingHandCursor);
    clock_.start();
}

double EffectWidget::pageScale() const {
    const QSize page = options_.pageBox.isValid() && !options_.pageBox.isEmpty() ? options_.pageBox : size();
    return page.height() > 0 ? static_cast<double>(height()) / page.height() : 1.0;
}

void EffectWidget::rebuild() {
    const std::vector<std::string> frame = specTokens(options_.frameSpec);
    const bool framed = frame[5] == "1";
    const double width = framed ? tokenNumber(frame[0], 0) * pageScale() : 0;
    const auto color = static_cast<std::uint32_t>(framed ? tokenNumber(frame[3], 0) : 0);
    inner_ = effects::innerBox(this->width(), height(), width);
    boxed_ = effects::boxedPicture(picture_, size(), inner_.x, color, keepsLakeTop(), frontier());
    prepare();
}

QImage EffectWidget::frameAt(double ms) {
    if (boxed_.size() != size().expandedTo(QSize(1, 1))) rebuild();
    render(frame_, ms);
    return frame_;
}

void EffectWidget::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.drawImage(0, 0, frameAt(static_cast<double>(clock_.elapsed())));
}

void EffectWidget::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    timer_.start();
}

void EffectWidget::hideEvent(QHideEvent* event) {
    timer_.stop();
    QWidget::hideEvent(event);
}

void EffectWidget::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    rebuild();
}

void EffectWidget::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && options_.clicked) {
        options_.clicked();
        return;
    }
    QWidget::mousePressEvent(event);
}

// ---------------------------------------------------------------- the effects

LakeEffect::LakeEffect(const QImage& picture, const EffectOptions& options, double speed, double frontier,
                       QWidget* parent)
    : EffectWidget(picture, options, parent), speed_(speed), frontier_(frontier) {}

void LakeEffect::render(QImage& out, double ms) { effects::renderLake(out, boxed(), inner(), ms, speed_); }

PrecipitationEffect::PrecipitationEffect(const QImage& picture, const EffectOptions& options, bool snow, double speed,
                                         double density, QWidget* parent)
    : EffectWidget(picture, options, parent), snow_(snow), speed_(speed), density_(density) {}

void PrecipitationEffect::prepare() {
    // The count the album's applet gets, from the element's box on the page.
    const QSize page = options().pageBox.isValid() ? options().pageBox : size();
    const double anzahl = effects::appletAnzahl(options().frameSpec, snow_ ? "Snow" : "Rain", page.width(), page.height());
    const effects::Inner r = inner();
    const double s = pageScale();
    const effects::Inner onPage{0, 0, static_cast<int>(std::lround(r.w / s)), static_cast<int>(std::lround(r.h / s))};
    drops_ = effects::makeDrops(effects::dropCount(anzahl, snow_, onPage), snow_, speed_);
}

void PrecipitationEffect::render(QImage& out, double ms) {
    effects::renderPrecipitation(out, boxed(), drops_, snow_, ms, inner());
}

UnderwaterEffect::UnderwaterEffect(const QImage& picture, const EffectOptions& options, effects::Underwater waves,
                                   QWidget* parent)
    : EffectWidget(picture, options, parent), waves_(waves) {}

void UnderwaterEffect::render(QImage& out, double ms) { effects::renderUnderwater(out, boxed(), inner(), ms, waves_); }

PanoStripEffect::PanoStripEffect(const QImage& picture, const EffectOptions& options, double speed, double anzahl,
                                 QWidget* parent)
    : EffectWidget(picture, options, parent), velocity_(effects::panoVelocity(speed, anzahl)) {}

void PanoStripEffect::prepare() {
    // The whole panorama at the height of the inside, its width following.
    const effects::Inner r = inner();
    if (picture().isNull() || r.h <= 0) return;
    const int w = std::max(1, static_cast<int>(std::lround(1.0 * picture().width() * r.h / picture().height())));
    strip_ = picture().scaled(w, r.h, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).convertToFormat(QImage::Format_RGB32);
}

void PanoStripEffect::render(QImage& out, double ms) {
    // The velocity is in page pixels per second; at 50 % the strip moves half as far.
    effects::renderPanoStrip(out, boxed(), strip_, inner(), ms, velocity_ * pageScale());
}

GifEffect::GifEffect(const QImage& picture, const EffectOptions& options, QWidget* parent)
    : EffectWidget(picture, options, parent) {
    if (!options.file.isEmpty()) {
        movie_ = new QMovie(options.file, QByteArray(), this);
        if (!movie_->isValid()) {
            delete movie_;
            movie_ = nullptr;
        } else {
            movie_->setCacheMode(QMovie::CacheAll);
            connect(movie_, &QMovie::frameChanged, this, qOverload<>(&QWidget::update));
        }
    }
}

void GifEffect::render(QImage& out, double) {
    if (movie_ && !movie_->currentImage().isNull()) {
        out = movie_->currentImage().scaled(size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        return;
    }
    out = boxed();
}

void GifEffect::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);  // the movie keeps its own time: no timer of ours
    if (movie_) movie_->start();
}

void GifEffect::hideEvent(QHideEvent* event) {
    if (movie_) movie_->setPaused(true);
    QWidget::hideEvent(event);
}

// ---------------------------------------------------------------- factory

QWidget* createEffectWidget(const std::string& animationSpec, const QImage& picture, const EffectOptions& options,
                            QWidget* parent) {
    const std::vector<std::string> t = specTokens(animationSpec);
    const std::string& kind = t[0];
    if (kind == "Lake") {
        const double frontier = t[2].empty() || t[2] == "None" ? 0 : tokenNumber(t[2], 0);
        return new LakeEffect(picture, options, tokenNumber(t[1], 3), frontier, parent);
    }
    if (kind == "Rain" || kind == "Snow")
        return new PrecipitationEffect(picture, options, kind == "Snow", tokenNumber(t[1], 3), tokenNumber(t[2], 0),
                                       parent);
    if (kind == "UnderWater") {
        const effects::Underwater u{tokenNumber(t[1], 3), tokenNumber(t[2], 5), tokenNumber(t[3], 4), tokenNumber(t[4], 4)};
        return new UnderwaterEffect(picture, options, u, parent);
    }
    if (kind == "Pano") return new PanoStripEffect(picture, options, tokenNumber(t[1], 5), tokenNumber(t[2], 1), parent);
    if (kind == "AnyGif") return new GifEffect(picture, options, parent);
    return nullptr;
}

QWidget* createEffectWidget(const std::string& animationSpec, const QImage& picture, QWidget* parent) {
    EffectOptions options;
    options.pageBox = picture.size();
    QWidget* w = createEffectWidget(animationSpec, picture, options, parent);
    if (w) w->resize(picture.size());
    return w;
}

}  // namespace brindle::editor
