// The preview sheet of the print window: the paper with one movable box per
// picture. A click selects a box (the focus), dragging moves it through the
// layout, so that "take all" moves the others along.
#pragma once

#include <QImage>
#include <QWidget>
#include <vector>

#include "print/sheet_layout.h"

namespace brindle::print {

class SheetPreview : public QWidget {
    Q_OBJECT
public:
    SheetPreview(SheetLayout& layout, QWidget* parent = nullptr);

    void setImages(std::vector<QImage> thumbnails) { thumbnails_ = std::move(thumbnails); update(); }
    int focus() const { return focus_; }
    void setFocusBox(int i);
    // Pixels per millimetre and the sheet's top left corner in the widget.
    double scale() const;
    QPointF origin() const;
    // Box i in widget coordinates.
    QRectF boxRect(std::size_t i) const;

signals:
    void focusChanged(int i);
    void moved();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    QSize sizeHint() const override { return {420, 560}; }

private:
    SheetLayout& layout_;
    std::vector<QImage> thumbnails_;
    int focus_ = 0;
    bool dragging_ = false;
    QPointF grabbed_;  // the mouse's offset from the box's corner, in millimetres
};

}  // namespace brindle::print
