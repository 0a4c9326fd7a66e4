// The panorama element as a live viewer in play mode: drag to pan, wheel
// or +/- to zoom, arrows to move, hotspots lead to the other pictures of
// the set, and the view turns slowly by itself until the reader takes
// over. It reads the element as the album's panorama applet does.
#pragma once

#include <QElapsedTimer>
#include <QImage>
#include <QPointF>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <optional>
#include <vector>

#include "album/records.h"

namespace brindle::editor {

struct PanoramaSpot {
    double x1 = 0, x2 = 0, y1 = 0, y2 = 0;  // picture pixels
    int target = 0;                          // the picture of the set it leads to
};

struct PanoramaView {
    std::string file;         // picture path as stored
    std::string alternative;  // shown when the picture cannot be read
    double x = 0, y = 0;      // picture point at the view's top left corner
    std::string zoom;         // "Full", "Min" or a percentage
    std::vector<PanoramaSpot> spots;
};

// The pictures of a panorama element with their start views and hotspots,
// as the applet's URL parameters carry them.
std::vector<PanoramaView> panoramaViews(const PanoramaElement& element);

// Where the view stands on its picture; plain numbers, no drawing.
class PanoramaCamera {
public:
    void start(const PanoramaView& view, QSize picture, QSize box, bool alternative);
    void limit();
    QPointF canvasToPicture(QPointF c) const;
    QPointF pictureToCanvas(QPointF p) const;
    void zoomAt(double factor, QPointF c);
    void panBy(double dx, double dy);
    // The slow turn by itself over `ms` milliseconds.
    void autoTurn(double ms);
    std::optional<PanoramaSpot> spotAt(const std::vector<PanoramaSpot>& spots, QPointF c, int views) const;

    double scale = 1, minScale = 1, maxScale = 4;
    double vx = 0, vy = 0;
    bool wrap = false;
    bool alternative = false;
    QSize picture, box;

private:
    int direction_ = 1;
};

class PanoramaViewer : public QWidget {
    Q_OBJECT
public:
    // `resolve` turns a stored path into a file to read.
    PanoramaViewer(const PanoramaElement& element, std::function<QString(const std::string&)> resolve,
                   QWidget* parent = nullptr);
    int index() const { return index_; }
    const PanoramaCamera& camera() const { return camera_; }
    void show(int index);
    using QWidget::show;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void tick();

    std::vector<PanoramaView> views_;
    std::function<QString(const std::string&)> resolve_;
    int index_ = -1;
    QImage image_;
    PanoramaCamera camera_;
    std::optional<PanoramaSpot> hover_;
    bool autoTurn_ = true;
    bool inside_ = false;
    bool dragging_ = false;
    bool moved_ = false;
    QPointF dragAt_, dragStart_;
    QTimer timer_;
    QElapsedTimer clock_;
    qint64 last_ = -1;
};

}  // namespace brindle::editor
