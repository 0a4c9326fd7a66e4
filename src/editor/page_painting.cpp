// Drawing of the canvas: background, grid, the elements in stacking order,
// the navigation buttons, the selection with its handles and the rubber frames.
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <cmath>

#include "editor/display_picture.h"
#include "editor/page_canvas.h"
#include "editor/qt_text_metrics.h"

namespace brindle::editor {

namespace {
const QColor kAccent(0x1F, 0x6F, 0xC8);
const QColor kPlaceholderLine(0x6B, 0x78, 0x88);

QRectF rectOf(const Box& b) { return QRectF(b.left, b.top, b.width, b.height); }

// A line that shows on any page: light underneath, dark dashes on top.
void drawTwoTone(QPainter& p, const QPolygonF& outline, int alpha, qreal width = 1) {
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(QColor(255, 255, 255, alpha), width, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    p.drawPolygon(outline);
    QPen dashes(QColor(0, 0, 0, alpha), width, Qt::CustomDashLine, Qt::FlatCap, Qt::MiterJoin);
    dashes.setDashPattern({3, 3});
    dashes.setCosmetic(true);
    p.setPen(dashes);
    p.drawPolygon(outline);
}

QPolygonF outlineOf(const QRectF& r) { return QPolygonF(r.adjusted(0.5, 0.5, -0.5, -0.5)); }

QString text(const std::string& s) {
    QString q = QString::fromStdString(s);
    q.remove(QChar('\r'));
    return q;
}

// A frame is drawn only when its sixth item is "1", as the HTML album does.
int frameWidth(const std::string& frameSpec) {
    if (QString::fromStdString(frameSpec).section(',', 5, 5) != "1") return 0;
    return std::max(0, QString::fromStdString(frameSpec).section(',', 0, 0).toInt());
}

QColor frameColor(const std::string& frameSpec) {
    return qtColor(QString::fromStdString(frameSpec).section(',', 3, 3).toUInt());
}
}  // namespace

QColor qtColor(std::uint32_t c) { return QColor(c & 0xFF, (c >> 8) & 0xFF, (c >> 16) & 0xFF); }

void PageCanvas::reloadPage() {
    const Session& s = doc_.session();
    const std::string& album = s.state().album.directory;
    const std::string& prog = s.state().programDirectory;
    const PageRecord& page = doc_.page();
    background_ = loadDisplayPicture(displayPath(page.background, album, prog), {}, false);
    const std::string* paths[3] = {&page.props.backButton, &page.props.contentsButton, &page.props.forwardButton};
    for (int i = 0; i < 3; ++i) buttons_[i] = loadDisplayPicture(displayPath(*paths[i], album, prog), {}, false);
    update();
}

QString PageCanvas::picturePath(ElementRef ref) const {
    const Session& s = doc_.session();
    std::string stored;
    if (ref.kind == Kind::Bild) stored = doc_.page().pictures[ref.index].path;
    if (ref.kind == Kind::Panorama) stored = doc_.page().panoramas[ref.index].hotspots[0].urlName;
    return displayPath(stored, s.state().album.directory, s.state().programDirectory);
}

// Pictures are held at the size they take at 100 %, on this screen's
// pixels, so the 50 % view draws them from twice its size.
QSize PageCanvas::heldSize(ElementRef ref, const Control& c) const {
    const double ratio = devicePixelRatioF();
    const bool picture = ref.kind == Kind::Bild;
    const int w = picture && c.imageWidth ? c.imageWidth : c.box.width;
    const int h = picture && c.imageHeight ? c.imageHeight : c.box.height;
    return {std::max(1, int(std::ceil(w * ratio))), std::max(1, int(std::ceil(h * ratio)))};
}

const QImage& PageCanvas::pictureOf(ElementRef ref, const Control& c) {
    const bool picture = ref.kind == Kind::Bild;
    return pictures_->picture(ref, heldSize(ref, c), picture ? PictureFit::Exact : PictureFit::ByHeight,
                              [&] { return picturePath(ref); });
}

// ---------------------------------------------------------------- page

void PageCanvas::paintEvent(QPaintEvent* event) {
    QPainter p(this);
    if (frozen_) {
        p.fillRect(event->rect(), palette().window());
        p.drawPixmap(0, 0, frozenPicture_);
        return;
    }
    paintPage(p, event->rect());
    paintSelection(p);
    paintRubberBand(p);
}

void PageCanvas::paintPage(QPainter& p, const QRect& area) {
    p.setRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::SmoothPixmapTransform);
    paintBackground(p, area);
    p.save();
    const double z = zoom_ / 100.0;
    p.scale(z, z);
    paintGrid(p, area);
    for (const ElementRef& ref : doc_.drawOrder()) paintElement(p, ref, *doc_.control(ref));
    paintButtons(p);
    p.restore();
    if (!playModeActive || !playModeActive()) paintElementBoxes(p);
}

// In edit mode every element shows its box faintly, as layout programs do,
// so the empty part of a large text box is not taken for free page.
void PageCanvas::paintElementBoxes(QPainter& p) {
    p.save();
    p.setRenderHint(QPainter::Antialiasing, false);
    for (const ElementRef& ref : doc_.drawOrder()) {
        const Control& c = *doc_.control(ref);
        const QRectF box(toWidget(QPointF(c.box.left, c.box.top)), toWidget(QPointF(c.box.right(), c.box.bottom())));
        if (ref.kind == Kind::Bild && c.angle != 0) {
            // A turned picture: the outline of the picture itself.
            QTransform turn;
            turn.translate(box.center().x(), box.center().y());
            turn.rotate(c.angle);
            const double z = zoom_ / 100.0;
            const QRectF image(-c.imageWidth * z / 2, -c.imageHeight * z / 2, c.imageWidth * z, c.imageHeight * z);
            drawTwoTone(p, turn.map(QPolygonF(image)), 70);
        } else {
            drawTwoTone(p, outlineOf(box), 70);
        }
    }
    p.restore();
}

void PageCanvas::paintBackground(QPainter& p, const QRect& area) {
    if (background_.isNull()) {
        p.fillRect(area, qtColor(doc_.page().backgroundColor));
        return;
    }
    const double z = zoom_ / 100.0;
    const QPixmap tile = QPixmap::fromImage(
        z == 1.0 ? background_
                 : background_.scaled(std::max(1, int(background_.width() * z)),
                                      std::max(1, int(background_.height() * z)), Qt::IgnoreAspectRatio,
                                      Qt::SmoothTransformation));
    p.drawTiledPixmap(area, tile, area.topLeft());
}

void PageCanvas::paintGrid(QPainter& p, const QRect& area) {
    const Grid g = doc_.grid();
    if (!g.show) return;
    const int gx = g.width < 3 ? 4 : g.width, gy = g.height < 3 ? 4 : g.height;  // drawn at 4 at least
    const QRectF page = QRectF(area).adjusted(0, 0, 1, 1);
    const double z = zoom_ / 100.0;
    p.setPen(QPen(QColor(0, 0, 0, 110), 1.0 / z));
    for (double x = std::floor(page.left() / z / gx) * gx; x <= page.right() / z; x += gx)
        for (double y = std::floor(page.top() / z / gy) * gy; y <= page.bottom() / z; y += gy)
            p.drawPoint(QPointF(x, y));
}

void PageCanvas::paintElement(QPainter& p, ElementRef ref, const Control& c) {
    if (coveredInPlay && coveredInPlay(ref)) return;
    switch (ref.kind) {
        case Kind::Bild: paintPicture(p, ref, c); break;
        case Kind::Text: paintText(p, ref, c); break;
        case Kind::Panorama: paintPanorama(p, ref, c); break;
        case Kind::Suchmaschine: paintSearch(p, ref, c); break;
    }
}

void PageCanvas::paintPicture(QPainter& p, ElementRef ref, const Control& c) {
    const PictureElement& pic = doc_.page().pictures[ref.index];
    const QImage& img = pictureOf(ref, c);
    p.save();
    p.translate(c.box.left + c.box.width / 2.0, c.box.top + c.box.height / 2.0);
    p.rotate(c.angle);
    const QRectF target(-c.imageWidth / 2.0, -c.imageHeight / 2.0, c.imageWidth, c.imageHeight);
    if (const int fw = frameWidth(pic.ext.extText[0]); fw > 0) {
        const QRectF outer = target.adjusted(-fw, -fw, fw, fw);
        p.fillRect(outer, frameColor(pic.ext.extText[0]));
        p.setPen(QPen(QColor(255, 255, 255, 90), 1));
        p.drawLine(outer.topLeft(), outer.topRight());
        p.drawLine(outer.topLeft(), outer.bottomLeft());
        p.setPen(QPen(QColor(0, 0, 0, 90), 1));
        p.drawLine(outer.bottomLeft(), outer.bottomRight());
        p.drawLine(outer.topRight(), outer.bottomRight());
    }
    if (!img.isNull()) {
        p.drawImage(target, img);
    } else {
        p.fillRect(target, QColor(0xE4, 0xE7, 0xEB));
        p.setPen(QPen(kPlaceholderLine, 1, Qt::DashLine));
        p.drawRect(target.adjusted(0.5, 0.5, -0.5, -0.5));
        p.drawText(target.adjusted(4, 4, -4, -4), Qt::AlignCenter | Qt::TextWordWrap,
                   QString::fromStdString(pic.path).section('/', -1));
    }
    p.restore();
}

void PageCanvas::paintText(QPainter& p, ElementRef ref, const Control& c) {
    const TextElement& t = doc_.page().texts[ref.index];
    p.setFont(qtFont(t.font, c.fontSize));
    p.setPen(qtColor(t.font.color));
    const int flags = Qt::AlignLeft | Qt::AlignTop | (t.ext.extLong[1] == 1 ? 0 : Qt::TextWordWrap);
    const QRectF r = rectOf(c.box);
    p.drawText(QRectF(r.left(), r.top(), std::max(r.width(), 1.0), 100000), flags, text(c.shownText));
}

void PageCanvas::paintPanorama(QPainter& p, ElementRef ref, const Control& c) {
    const PanoramaElement& pano = doc_.page().panoramas[ref.index];
    const QRectF r = rectOf(c.box);
    const QImage& img = pictureOf(ref, c);
    p.save();
    p.setClipRect(r);
    if (!img.isNull()) {
        // The first picture at the box's height, its middle in view.
        const double scale = r.height() / img.height();
        const double w = img.width() * scale;
        p.drawImage(QRectF(r.center().x() - w / 2, r.top(), w, r.height()), img);
    } else {
        QLinearGradient sky(r.topLeft(), r.bottomLeft());
        sky.setColorAt(0, QColor(0xB8, 0xD4, 0xEE));
        sky.setColorAt(1, QColor(0x6E, 0x93, 0x6A));
        p.fillRect(r, sky);
    }
    const QRectF bar(r.left(), r.bottom() - 22, r.width(), 22);
    p.fillRect(bar, QColor(20, 28, 40, 160));
    p.setPen(Qt::white);
    QFont f = font();
    f.setPixelSize(12);
    p.setFont(f);
    const QString name = QString::fromStdString(pano.hotspots[0].urlName).replace('\\', '/').section('/', -1);
    p.drawText(bar.adjusted(8, 0, -8, 0), Qt::AlignVCenter | Qt::AlignLeft,
               "Panorama" + (name.isEmpty() ? QString() : "  \u2013  " + name));
    p.restore();
    p.setPen(QPen(kPlaceholderLine, 1));
    p.drawRect(r.adjusted(0.5, 0.5, -0.5, -0.5));
}

void PageCanvas::paintSearch(QPainter& p, ElementRef ref, const Control& c) {
    const SearchElement& s = doc_.page().searchBoxes[ref.index];
    const QRectF r = rectOf(c.box);
    p.setPen(QPen(kPlaceholderLine, 1));
    p.setBrush(QColor(255, 255, 255, 220));
    p.drawRoundedRect(r.adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
    p.setFont(qtFont(s.font, c.fontSize));
    p.setPen(qtColor(s.font.color));
    const double lineH = std::max(18.0, std::min(28.0, r.height() / 3));
    p.drawText(QRectF(r.left() + 8, r.top() + 4, r.width() - 16, lineH), Qt::AlignVCenter | Qt::AlignLeft,
               text(s.caption.empty() ? "Suchen" : s.caption));
    const QRectF field(r.left() + 8, r.top() + 8 + lineH, std::max(10.0, r.width() - 90), lineH);
    p.setPen(QPen(kPlaceholderLine, 1));
    p.setBrush(Qt::white);
    p.drawRect(field);
    const QRectF button(field.right() + 8, field.top(), 66, lineH);
    p.setBrush(QColor(0xE9, 0xED, 0xF2));
    p.drawRoundedRect(button, 3, 3);
    p.setPen(QColor(0x30, 0x38, 0x44));
    p.drawText(button, Qt::AlignCenter, doc_.language() == Language::German ? "Suchen" : "Search");
    p.setBrush(Qt::NoBrush);
}

QRectF PageCanvas::buttonRect(int i) const {
    // As the generated page shows them: one centred row above the elements.
    int total = 0;
    for (const QImage& b : buttons_) total += b.isNull() ? 0 : b.width() + 8;
    if (total == 0 || i < 0 || i > 2 || buttons_[i].isNull()) return {};
    double x = (width() * 100.0 / zoom_ - total) / 2;
    for (int k = 0; k < i; ++k) x += buttons_[k].isNull() ? 0 : buttons_[k].width() + 8;
    return QRectF(x, 8, buttons_[i].width(), buttons_[i].height());
}

void PageCanvas::paintButtons(QPainter& p) {
    for (int i = 0; i < 3; ++i)
        if (const QRectF r = buttonRect(i); !r.isEmpty()) p.drawImage(r.topLeft(), buttons_[i]);
}

// ---------------------------------------------------------------- selection

void PageCanvas::paintSelection(QPainter& p) {
    if (!doc_.handlesVisible()) return;
    p.setRenderHint(QPainter::Antialiasing, false);
    const auto& sel = doc_.auswahl();
    if (sel.size() == 1 && sel.front().ref.kind == Kind::Bild) {
        const EckPunkte& e = doc_.eckPunkte();
        QPolygonF outline;
        for (int i : {0, 2, 4, 6}) outline << toWidget(QPointF(e[std::size_t(i)].x, e[std::size_t(i)].y));
        drawTwoTone(p, outline, 255);
    } else {
        for (const SelectionEntry& s : sel)
            if (const Control* c = doc_.control(s.ref))
                drawTwoTone(p, outlineOf(QRectF(toWidget(QPointF(c->box.left, c->box.top)),
                                                toWidget(QPointF(c->box.right(), c->box.bottom())))), 255);
    }
    p.setPen(QPen(kAccent, 1));
    for (int i = 0; i < 9; ++i) {
        p.setBrush(i == 8 ? kAccent : QColor(Qt::white));
        p.drawRect(handleRect(i).adjusted(0, 0, -1, -1));
    }
}

void PageCanvas::paintRubberBand(QPainter& p) {
    std::optional<Box> box = doc_.gummiRechteck();
    if (!box) box = bandBox();
    if (!box) return;
    const QRectF r(toWidget(QPointF(box->left, box->top)), toWidget(QPointF(box->right(), box->bottom())));
    p.setRenderHint(QPainter::Antialiasing, false);
    p.fillRect(r.normalized(), QColor(kAccent.red(), kAccent.green(), kAccent.blue(), 28));
    drawTwoTone(p, outlineOf(r.normalized()), 255);
}

}  // namespace brindle::editor
