#include "editor/page_canvas.h"

#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <cmath>
#include <optional>

#include "image/picture_io.h"

namespace brindle::editor {

namespace {

std::string hyperlinkOf(const PageRecord& page, const ElementRef& ref) {
    switch (ref.kind) {
        case Kind::Bild: return page.pictures[ref.index].hyperlink;
        case Kind::Text: return page.texts[ref.index].hyperlink;
        case Kind::Suchmaschine: return page.searchBoxes[ref.index].hyperlink;
        default: return {};
    }
}

}  // namespace

PageCanvas::PageCanvas(PageDocument& document, QWidget* parent) : QWidget(parent), doc_(document) {
    setObjectName("PicWorkspace");
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAcceptDrops(true);
    pictures_ = new CanvasPictures(this);
    connect(pictures_, &CanvasPictures::arrived, this, [this](ElementRef ref) { updateElement(ref); });
    connect(pictures_, &CanvasPictures::failed, this, &PageCanvas::pictureFailed);
}

void PageCanvas::setZoom(int zoom) {
    zoom_ = zoom == 50 ? 50 : 100;
    update();
}

void PageCanvas::setFrozen(bool frozen) {
    if (frozen == frozen_) return;
    if (frozen) frozenPicture_ = grab();
    frozen_ = frozen;
    if (!frozen) frozenPicture_ = {};
    update();
}

QSize PageCanvas::pageSize() const {
    const double z = zoom_ / 100.0;
    return {static_cast<int>(std::ceil((doc_.extentWidth() + 40) * z)),
            static_cast<int>(std::ceil((doc_.extentHeight() + 40) * z))};
}

QPointF PageCanvas::toPage(QPointF w) const { return w * 100.0 / zoom_; }
QPointF PageCanvas::toWidget(QPointF p) const { return p * zoom_ / 100.0; }

Point PageCanvas::pagePoint(QPoint pos) const {
    const QPointF p = toPage(pos);
    return {static_cast<int>(std::floor(p.x())), static_cast<int>(std::floor(p.y()))};
}

void PageCanvas::reloadElement(ElementRef ref) {
    update();
    const Control* c = doc_.control(ref);
    if (!c || (ref.kind != Kind::Bild && ref.kind != Kind::Panorama)) return;
    const bool picture = ref.kind == Kind::Bild;
    const QString path = picturePath(ref);
    pictures_->reload(ref, heldSize(ref, *c), picture ? PictureFit::Exact : PictureFit::ByHeight, path, picture);
    if (const auto hint = picture ? pictureHint(path.toStdString()) : std::nullopt)
        emit hintWanted(hint->hint, QString::fromStdString(hint->text));
}

// Only the element's box is drawn again when its picture arrives.
void PageCanvas::updateElement(ElementRef ref) {
    const Control* c = doc_.control(ref);
    if (!c) return;
    const QRectF r(toWidget(QPointF(c->box.left, c->box.top)), toWidget(QPointF(c->box.right(), c->box.bottom())));
    update(r.toAlignedRect().adjusted(-2, -2, 2, 2));
}

void PageCanvas::dropElement(ElementRef ref) {
    pictures_->drop(ref);
    update();
}

QRect PageCanvas::handleRect(int i) const {
    if (!doc_.handlesVisible() || i < 0 || i > 8) return {};
    const Point h = doc_.handles()[static_cast<std::size_t>(i)];
    const QPointF centre = toWidget(QPointF(h.x + kHandleSize / 2.0, h.y + kHandleSize / 2.0));
    return QRect(static_cast<int>(std::lround(centre.x())) - kHandleSize / 2,
                 static_cast<int>(std::lround(centre.y())) - kHandleSize / 2, kHandleSize, kHandleSize);
}

int PageCanvas::handleAt(QPoint pos) const {
    if (!doc_.handlesVisible()) return -1;
    for (int i = 0; i < 9; ++i)
        if (handleRect(i).adjusted(-2, -2, 2, 2).contains(pos)) return i;
    return -1;
}

std::optional<Box> PageCanvas::bandBox() const {
    if (!banding_) return std::nullopt;
    const int l = std::min(bandStart_.x, bandEnd_.x), t = std::min(bandStart_.y, bandEnd_.y);
    return Box{l, t, std::abs(bandEnd_.x - bandStart_.x), std::abs(bandEnd_.y - bandStart_.y)};
}

// ---------------------------------------------------------------- mouse

void PageCanvas::mousePressEvent(QMouseEvent* event) {
    setFocus(Qt::MouseFocusReason);
    if (frozen_) return;
    const QPoint pos = event->position().toPoint();
    const Point p = pagePoint(pos);
    const bool shift = event->modifiers() & Qt::ShiftModifier;
    if (playModeActive && playModeActive()) {
        // Nothing is selected while playing; elements with a link follow it.
        if (event->button() != Qt::LeftButton) return;
        static const char* const buttonLinks[3] = {"<zurück>", "<inhalt>", "<vor>"};
        for (int i = 0; i < 3; ++i) {
            if (!buttonRect(i).contains(toPage(event->position())) || !followLink) continue;
            followLink(buttonLinks[i]);
            return;
        }
        if (std::optional<ElementRef> ref = doc_.elementAt(p)) {
            if (elementPressed) {
                elementPressed(*ref);
                return;
            }
            const std::string link = hyperlinkOf(doc_.page(), *ref);
            if (!link.empty() && followLink) followLink(link);
        }
        return;
    }
    if (event->button() == Qt::LeftButton) {
        if (int h = handleAt(pos); h >= 0) {
            doc_.pressHandle(h, p);
            return;
        }
    }
    if (std::optional<ElementRef> ref = doc_.elementAt(p)) {
        if (event->button() == Qt::LeftButton) {
            doc_.pressElement(*ref, p, shift);
        } else if (event->button() == Qt::RightButton) {
            if (!doc_.isSelected(*ref)) doc_.SetzAnker(*ref, shift ? 1 : 0);
            emit contextMenuWanted(*ref, event->globalPosition().toPoint());
        }
        return;
    }
    if (event->button() == Qt::RightButton) emit canvasMenuWanted(event->globalPosition().toPoint());
    if (event->button() != Qt::LeftButton) return;
    bandInsert_ = insertModeActive && insertModeActive();
    const Grid g = bandInsert_ ? doc_.grid() : Grid{};
    bandStart_ = bandEnd_ = {toPixel(RasterX(p.x, g)), toPixel(RasterY(p.y, g))};
    banding_ = true;
    update();
}

void PageCanvas::mouseMoveEvent(QMouseEvent* event) {
    const QPoint pos = event->position().toPoint();
    const Point p = pagePoint(pos);
    if (doc_.fokusGedrueckt()) {
        doc_.moveHandle(p);
        return;
    }
    if (banding_) {
        const Grid g = bandInsert_ ? doc_.grid() : Grid{};
        bandEnd_ = {toPixel(RasterX(p.x, g)), toPixel(RasterY(p.y, g))};
        update();
        return;
    }
    updateCursor(pos);
}

void PageCanvas::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    if (doc_.fokusGedrueckt()) {
        doc_.releaseHandle();
        return;
    }
    if (!banding_) return;
    const Box box = *bandBox();
    banding_ = false;
    update();
    if (bandInsert_) emit boxDrawn(box);
    else doc_.selectInBand(box);
}

void PageCanvas::mouseDoubleClickEvent(QMouseEvent* event) {
    const std::optional<ElementRef> ref = doc_.elementAt(pagePoint(event->position().toPoint()));
    if (!ref || (playModeActive && playModeActive())) return;
    if (doc_.fokusGedrueckt()) doc_.releaseHandle();
    emit propertiesWanted(*ref);
}

void PageCanvas::updateCursor(QPoint pos) {
    static const Qt::CursorShape shapes[9] = {Qt::SizeFDiagCursor, Qt::SizeVerCursor, Qt::SizeBDiagCursor,
                                              Qt::SizeHorCursor,   Qt::SizeFDiagCursor, Qt::SizeVerCursor,
                                              Qt::SizeBDiagCursor, Qt::SizeHorCursor,   Qt::SizeAllCursor};
    if (int h = handleAt(pos); h >= 0) setCursor(shapes[h]);
    else if (insertModeActive && insertModeActive()) setCursor(Qt::CrossCursor);
    else if (doc_.elementAt(pagePoint(pos))) setCursor(Qt::SizeAllCursor);
    else setCursor(Qt::ArrowCursor);
}

// ---------------------------------------------------------------- keys

void PageCanvas::keyPressEvent(QKeyEvent* event) {
    std::optional<ArrowKey> key;
    switch (event->key()) {
        case Qt::Key_Left: key = ArrowKey::Left; break;
        case Qt::Key_Right: key = ArrowKey::Right; break;
        case Qt::Key_Up: key = ArrowKey::Up; break;
        case Qt::Key_Down: key = ArrowKey::Down; break;
        case Qt::Key_Delete:
            emit deleteWanted();
            return;
        default:
            QWidget::keyPressEvent(event);
            return;
    }
    const Qt::KeyboardModifiers m = event->modifiers();
    const KeyModifiers mods{bool(m & Qt::ShiftModifier), bool(m & Qt::ControlModifier), bool(m & Qt::AltModifier)};
    if (!doc_.keyDown(*key, mods)) QWidget::keyPressEvent(event);
}

void PageCanvas::keyReleaseEvent(QKeyEvent* event) {
    if (event->isAutoRepeat()) return;  // each repeated press already made its step
    doc_.keyUp();
    QWidget::keyReleaseEvent(event);
}

}  // namespace brindle::editor

namespace brindle::editor {

// Files dropped on the canvas are placed like "Bilder" from the drop point.
void PageCanvas::dragEnterEvent(QDragEnterEvent* event) {
    if (!frozen_ && event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void PageCanvas::dropEvent(QDropEvent* event) {
    std::vector<std::string> files;
    for (const QUrl& url : event->mimeData()->urls())
        if (url.isLocalFile()) files.push_back(url.toLocalFile().toStdString());
    if (files.empty()) return;
    event->acceptProposedAction();
    emit picturesDropped(pagePoint(event->position().toPoint()), files);
}

}  // namespace brindle::editor
