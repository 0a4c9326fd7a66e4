// A picture in a scroll area, shown fitted to the window ("Adapt") or at a
// zoom factor (1:1 and so on). Mouse positions are reported in picture
// pixels: a double click, and a rectangle dragged with the right button.
// A left drag scrolls.
#pragma once

#include <QImage>
#include <QRect>
#include <QScrollArea>

namespace brindle::studio {

class PictureCanvas;

class PictureView : public QScrollArea {
    Q_OBJECT
  public:
    explicit PictureView(QWidget* parent = nullptr);

    void setImage(const QImage& image);
    const QImage& image() const;
    // Fitted: the whole picture in the window, never larger than 1:1.
    void setFitted(bool fitted);
    bool fitted() const { return fitted_; }
    void setZoom(double factor);
    double zoom() const;  // the factor in use, also when fitted
    // The marked rectangle in picture pixels (empty: none).
    void setMark(const QRect& mark);
    QRect mark() const;
    void scrollToCentre();

  signals:
    void pictureDoubleClicked(QPoint picturePixel);
    void pictureRectDragged(QRect picturePixels);

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void relayout();
    PictureCanvas* canvas_;
    bool fitted_ = true;
    double zoom_ = 1.0;
};

}  // namespace brindle::studio
