#include "editor/effect_pixels.h"

#include <QPainter>
#include <QString>
#include <algorithm>
#include <cmath>
#include <cstring>

namespace brindle::editor::effects {

namespace {

constexpr double kPi = 3.14159265358979323846;

// JavaScript's % on doubles: the sign follows the dividend, as fmod's does.
double jsMod(double a, double b) { return std::fmod(a, b); }

QRgb rgbOf(std::uint32_t c) { return qRgb(c & 0xFF, (c >> 8) & 0xFF, (c >> 16) & 0xFF); }

int channel(double v) { return static_cast<int>(std::clamp(std::lround(v), 0L, 255L)); }

// `over` laid over `c` with opacity `a`.
QRgb blend(QRgb c, double r, double g, double b, double a) {
    return qRgb(channel(qRed(c) * (1 - a) + r * a), channel(qGreen(c) * (1 - a) + g * a),
                channel(qBlue(c) * (1 - a) + b * a));
}

// The output starts as a copy of the boxed picture, reusing its memory.
void startFrom(QImage& out, const QImage& boxed) {
    if (out.size() != boxed.size() || out.format() != QImage::Format_RGB32)
        out = QImage(boxed.size(), QImage::Format_RGB32);
    for (int y = 0; y < boxed.height(); ++y)
        std::memcpy(out.scanLine(y), boxed.constScanLine(y), static_cast<std::size_t>(boxed.width()) * 4);
}

}  // namespace

std::vector<std::string> specTokens(const std::string& spec) {
    // As the album reads it: the padding follows the string directly.
    const std::string s = spec + "None,None,None,None,None,None";
    std::vector<std::string> out(1);
    for (char c : s) {
        if (c == ',' || c == '(' || c == ')') out.emplace_back();
        else out.back() += c;
    }
    return out;
}

double tokenNumber(const std::string& token, double fallback) {
    bool ok = false;
    const double v = QString::fromStdString(token).trimmed().replace(',', '.').toDouble(&ok);
    return ok && std::isfinite(v) ? v : fallback;
}

Inner innerBox(int width, int height, double frame) {
    const int most = std::min(width, height) / 2 - 1;
    const int f = std::max(0, std::min(most, static_cast<int>(std::lround(frame))));
    return {f, f, width - 2 * f, height - 2 * f};
}

QImage boxedPicture(const QImage& picture, QSize size, int frame, std::uint32_t frameColor, bool lake,
                    double frontier) {
    QImage out(size.expandedTo(QSize(1, 1)), QImage::Format_RGB32);
    out.fill(frame > 0 ? rgbOf(frameColor) : qRgb(0, 0, 0));
    if (picture.isNull()) return out;
    const Inner r = innerBox(out.width(), out.height(), frame);
    QPainter p(&out);
    p.setRenderHint(QPainter::SmoothPixmapTransform);
    if (lake) {
        // The web picture of a lake: the picture's upper `frontier` percent above the water line.
        const int rows = std::min(picture.height(), static_cast<int>(picture.height() * frontier / 100 + 2));
        p.drawImage(QRect(r.x, r.y, r.w, r.h / 2 + 2), picture, QRect(0, 0, picture.width(), std::max(1, rows)));
    } else {
        p.drawImage(QRect(r.x, r.y, r.w, r.h), picture);
    }
    return out;
}

// ---------------------------------------------------------------- lake

double lakePhase(double ms, double speed) { return (ms / 1000) * (1 + std::max(0.0, speed)) * 0.9; }

LakeRow lakeRow(int d, int depth, int line, int top, double phase) {
    const double k = static_cast<double>(d) / depth;
    const double wobble = std::sin(d * 0.42 * (1 - 0.5 * k) - phase * 1.3) * (1 + 2.5 * k);
    const int source = std::clamp(static_cast<int>(std::lround(line - 1 - d + wobble)), top, line - 1);
    return {source, std::sin(d * 0.21 + phase) * 3 * (0.3 + k)};
}

void renderLake(QImage& out, const QImage& boxed, Inner r, double ms, double speed) {
    startFrom(out, boxed);
    const int line = r.y + r.h / 2;
    const int depth = r.y + r.h - line;
    if (depth <= 0 || line <= r.y || r.w <= 0) return;
    const double phase = lakePhase(ms, speed);
    const double amp = 3;
    for (int d = 0; d < depth; ++d) {
        const LakeRow row = lakeRow(d, depth, line, r.y, phase);
        const QRgb* src = reinterpret_cast<const QRgb*>(boxed.constScanLine(row.source));
        QRgb* dst = reinterpret_cast<QRgb*>(out.scanLine(line + d));
        // The row is drawn a little wider than the water, moved by its shift.
        const double start = r.x + row.shift - amp, wide = r.w + 2 * amp;
        // The water darkens with depth; glints sit on every other row's crest.
        const double t = (d + 0.5) / depth;
        const double a = 0.16 + (0.5 - 0.16) * t;
        const double gr = 18 + (8 - 18) * t, gg = 60 + (28 - 60) * t, gb = 92 + (48 - 92) * t;
        double glint = 0;
        if (d % 2 == 0) glint = std::pow(std::max(0.0, std::sin(d * 0.55 - phase * 1.7)), 12) * 0.09 * (1 - 1.0 * d / depth);
        for (int x = r.x; x < r.x + r.w; ++x) {
            const int sx = std::clamp(r.x + static_cast<int>(std::floor((x + 0.5 - start) / wide * r.w)), r.x, r.x + r.w - 1);
            QRgb c = blend(src[sx], gr, gg, gb, a);
            if (glint > 0.01) c = blend(c, 255, 255, 255, glint);
            if (d == 0) c = blend(c, 255, 255, 255, 0.18);
            dst[x] = c;
        }
    }
}

// ---------------------------------------------------------------- rain and snow

double SeededRandom::next() {
    // The runtime multiplies in doubles before it masks; so do we, to get its very numbers.
    const double product = static_cast<double>(seed_) * 1103515245.0 + 12345.0;
    seed_ = static_cast<std::uint32_t>(std::fmod(product, 4294967296.0)) & 0x7fffffffU;
    return seed_ / 2147483647.0;
}

int dropCount(double anzahl, bool snow, Inner r) {
    long count = std::lround(anzahl);
    if (count <= 0) count = std::lround(static_cast<double>(r.w) * r.h / (snow ? 400 : 250));
    return static_cast<int>(std::clamp(count, 1L, 5000L));
}

double appletAnzahl(const std::string& frameSpec, const std::string& kind, int width, int height) {
    const double v = tokenNumber(specTokens(frameSpec)[2], 0);
    return std::round(v * width * height / 1000.0 / (kind == "Snow" ? 1 : 11));
}

std::vector<Drop> makeDrops(int count, bool snow, double speed) {
    SeededRandom random;
    speed = std::max(0.0, speed);
    std::vector<Drop> drops;
    drops.reserve(static_cast<std::size_t>(std::max(0, count)));
    for (int i = 0; i < count; ++i) {
        Drop d;
        d.size = random.next();
        d.x = random.next();
        d.y = random.next();
        d.v = snow ? (14 + 9 * speed) * (0.45 + 0.8 * d.size) : (170 + 55 * speed) * (0.75 + 0.5 * d.size);
        d.sway = random.next() * kPi * 2;
        drops.push_back(d);
    }
    return drops;
}

double flakeRadius(const Drop& d) { return 0.6 + 1.5 * d.size; }

QPointF flakeAt(const Drop& d, double s, Inner r) {
    const double rad = flakeRadius(d);
    const double span = r.h + 2 * rad;
    const double y = r.y - rad + jsMod(d.y * span + d.v * s, span);
    const double x = r.x + jsMod(jsMod(d.x * r.w + std::sin(s * 0.9 + d.sway) * 6 * (0.5 + d.size), r.w) + r.w, r.w);
    return {x, y};
}

QLineF streakAt(const Drop& d, double s, Inner r) {
    const double len = 7 + 9 * d.size;
    const double fall = r.h + len;
    const double y = r.y - len + jsMod(d.y * fall + d.v * s, fall);
    const double x = r.x + jsMod(d.x * r.w + 0.16 * (y - r.y), r.w);
    return {x, y, x + 0.16 * len, y + len};
}

void renderPrecipitation(QImage& out, const QImage& boxed, const std::vector<Drop>& drops, bool snow, double ms,
                         Inner r) {
    startFrom(out, boxed);
    if (r.w <= 0 || r.h <= 0) return;
    const double s = ms / 1000;
    QPainter p(&out);
    p.setRenderHint(QPainter::Antialiasing);
    p.setClipRect(r.x, r.y, r.w, r.h);
    if (snow) {
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(255, 255, 255, 235));
        for (const Drop& d : drops) {
            const double rad = flakeRadius(d);
            p.drawEllipse(flakeAt(d, s, r), rad, rad);
        }
    } else {
        p.setPen(QPen(QColor(214, 228, 255, 153), 1));
        for (const Drop& d : drops) p.drawLine(streakAt(d, s, r));
    }
}

// ---------------------------------------------------------------- scrolling strip

double panoVelocity(double speed, double anzahl) {
    const double pause = std::max(1.0, speed) * 10;
    const double step = anzahl == 0 ? 1 : anzahl;
    return step / pause * 1000;
}

double panoOffset(double velocity, double ms, double stripWidth) {
    if (stripWidth <= 0) return 0;
    return jsMod(jsMod(velocity * ms / 1000, stripWidth) + stripWidth, stripWidth);
}

void renderPanoStrip(QImage& out, const QImage& boxed, const QImage& strip, Inner r, double ms, double velocity) {
    startFrom(out, boxed);
    if (strip.isNull() || r.w <= 0 || r.h <= 0) return;
    const double offset = panoOffset(velocity, ms, strip.width());
    QPainter p(&out);
    p.setClipRect(r.x, r.y, r.w, r.h);
    for (double x = r.x - offset; x < r.x + r.w; x += strip.width())
        p.drawImage(QPoint(static_cast<int>(std::floor(x)), r.y), strip);
}

// ---------------------------------------------------------------- under water

int underwaterShift(int y, double ms, const Underwater& u) {
    const double wave = std::max(2.0, u.width * 10);
    const double period = std::max(1.0, u.frames) * std::max(1.0, u.delay) * 40;
    return static_cast<int>(std::lround(u.height * std::sin(2 * kPi * y / wave + 2 * kPi * ms / period)));
}

void renderUnderwater(QImage& out, const QImage& boxed, Inner r, double ms, const Underwater& u) {
    startFrom(out, boxed);
    for (int y = r.y; y < r.y + r.h; ++y) {
        const int shift = underwaterShift(y - r.y, ms, u);
        const QRgb* src = reinterpret_cast<const QRgb*>(boxed.constScanLine(y));
        QRgb* dst = reinterpret_cast<QRgb*>(out.scanLine(y));
        for (int x = r.x; x < r.x + r.w; ++x) dst[x] = src[std::clamp(x - shift, r.x, r.x + r.w - 1)];
    }
}

}  // namespace brindle::editor::effects
