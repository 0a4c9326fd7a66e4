// The panorama dialog's live view: the current picture in the element's
// box shape, panned and zoomed like the album's browser viewer, with the
// nine hotspot rectangles drawn on it. One mouse button drags a hotspot,
// the other pans; the wheel zooms.
#pragma once

#include <QImage>
#include <QWidget>
#include <array>
#include <optional>

#include "properties/panorama_view_math.h"

namespace brindle::properties {

class PanoramaLiveView : public QWidget {
    Q_OBJECT
public:
    explicit PanoramaLiveView(QWidget* parent = nullptr);

    // The element's box decides the shape and the scale the view works in.
    void setBox(int width, int height);
    // A null picture shows an empty view. `iw`, `ih` are the file's pixel size.
    void setPicture(const QImage& picture, int iw, int ih);
    void setZoomText(const std::string& zoom);  // the start scale of a zoom entry
    void setView(const ViewTransform& view);
    const ViewTransform& view() const { return view_; }
    bool hasPicture() const { return !picture_.isNull(); }
    void setWraps(bool wraps);
    void setHotspots(const std::array<PixelRect, 9>& rects, int selected);
    // Which button drags hotspots: Qt::LeftButton or Qt::RightButton.
    void setHotspotButton(Qt::MouseButton button) { hotspotButton_ = button; }
    Qt::MouseButton hotspotButton() const { return hotspotButton_; }
    // Box pixels per widget pixel.
    double boxPerWidget() const;

    QSize sizeHint() const override;

signals:
    void hotspotDragged(brindle::properties::PixelRect rect, bool finished);
    void viewChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QPointF toBox(QPointF widgetPoint) const;
    QRectF toWidget(const PixelRect& r) const;
    void limit();
    void paintPicture(class QPainter& p);

    int boxWidth_ = 480, boxHeight_ = 220;
    QImage picture_;    // reduced for the screen
    int iw_ = 0, ih_ = 0;  // the file's size; all view numbers use it
    ViewTransform view_;
    ViewLimits limits_;
    bool wrapWanted_ = false;
    std::array<PixelRect, 9> hotspots_{};
    int selected_ = 1;
    Qt::MouseButton hotspotButton_ = Qt::LeftButton;
    Qt::MouseButton dragging_ = Qt::NoButton;
    QPointF pressBox_, lastBox_;
    std::optional<PixelRect> rubber_;
};

}  // namespace brindle::properties
