// A small picture with the split grid drawn over it: the tile lines, each
// tile's number in the chosen order, and the strips that no tile takes
// shaded out.
#pragma once

#include <QImage>
#include <QSize>
#include <QString>
#include <QWidget>

#include "studio/split_pictures.h"

namespace brindle::studio {

class TileGridPreview : public QWidget {
  public:
    explicit TileGridPreview(QWidget* parent = nullptr);

    // `image` may be smaller than the picture; `pictureSize` is the real one.
    void setPicture(const QImage& image, QSize pictureSize);
    void setGrid(int rows, int columns, TileOrder order);
    // Shown instead of a picture (no picture, or it could not be read).
    void setPlaceholder(const QString& text);

    QSize sizeHint() const override { return {360, 270}; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QRectF pictureRect() const;
    void drawGrid(class QPainter& painter, const QRectF& area) const;

    QImage image_;
    QSize pictureSize_;
    QString placeholder_;
    int rows_ = 2;
    int columns_ = 2;
    TileOrder order_ = TileOrder::RowByRow;
};

}  // namespace brindle::studio
