// PicWorkspace: the canvas of a page window. It draws the page from its
// record in stacking order and turns mouse and keys into calls on the
// document. Pictures are held per element at the size they are shown and
// read on worker threads (CanvasPictures).
#pragma once

#include <QImage>
#include <QPixmap>
#include <QWidget>
#include <functional>
#include <map>
#include <optional>

#include "editor/canvas_pictures.h"
#include "editor/page_document.h"

namespace brindle::editor {

class PageCanvas : public QWidget {
    Q_OBJECT
public:
    explicit PageCanvas(PageDocument& document, QWidget* parent = nullptr);

    int zoom() const { return zoom_; }
    void setZoom(int zoom);
    // True while the main window's toolbar is in an insert mode.
    std::function<bool()> insertModeActive;
    std::function<bool()> playModeActive;
    std::function<void(const std::string& link)> followLink;
    // Play mode: a press on an element (it follows the element's link).
    std::function<void(ElementRef ref)> elementPressed;
    // Play mode: a picture under its effect is not drawn.
    std::function<bool(ElementRef ref)> coveredInPlay;

    // Control rebuilt: its picture is read again off the GUI thread; a
    // picture element whose file cannot be read is told by pictureFailed.
    void reloadElement(ElementRef ref);
    // Some picture is still being read.
    bool picturesLoading() const { return pictures_->loading(); }
    void dropElement(ElementRef ref);
    void reloadPage();  // background and navigation buttons
    // The size the canvas needs for its page at the present zoom.
    QSize pageSize() const;
    // While frozen the canvas shows a picture of itself and does not read the page.
    void setFrozen(bool frozen);

    QPointF toPage(QPointF widgetPoint) const;
    QPointF toWidget(QPointF pagePoint) const;
    // Widget rectangle of handle i, or an empty one when handles are hidden.
    QRect handleRect(int i) const;
    // Page rectangle of navigation button i (0 back, 1 contents, 2 forward), empty when none.
    QRectF buttonRect(int i) const;

signals:
    // A box drawn on the empty canvas in an insert mode (page pixels).
    void boxDrawn(brindle::editor::Box box);
    void contextMenuWanted(brindle::editor::ElementRef ref, QPoint globalPos);
    void canvasMenuWanted(QPoint globalPos);
    // A double-click on an element: its property dialog.
    void propertiesWanted(brindle::editor::ElementRef ref);
    // A picture placed on the page comes with a hint from the image core.
    void hintWanted(int number, const QString& text);
    void deleteWanted();
    // Picture files dropped at a page point.
    void picturesDropped(brindle::editor::Point at, const std::vector<std::string>& files);
    // A rebuilt picture element's file could not be read (once per rebuild).
    void pictureFailed(brindle::editor::ElementRef ref);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void paintPage(QPainter& p, const QRect& area);
    void paintBackground(QPainter& p, const QRect& area);
    void paintGrid(QPainter& p, const QRect& area);
    void paintElement(QPainter& p, ElementRef ref, const Control& c);
    void paintPicture(QPainter& p, ElementRef ref, const Control& c);
    void paintText(QPainter& p, ElementRef ref, const Control& c);
    void paintPanorama(QPainter& p, ElementRef ref, const Control& c);
    void paintSearch(QPainter& p, ElementRef ref, const Control& c);
    void paintButtons(QPainter& p);
    void paintElementBoxes(QPainter& p);
    void paintSelection(QPainter& p);
    void paintRubberBand(QPainter& p);
    int handleAt(QPoint pos) const;
    Point pagePoint(QPoint pos) const;
    void updateCursor(QPoint pos);
    std::optional<Box> bandBox() const;
    const QImage& pictureOf(ElementRef ref, const Control& c);
    void updateElement(ElementRef ref);
    QString picturePath(ElementRef ref) const;
    QSize heldSize(ElementRef ref, const Control& c) const;

    PageDocument& doc_;
    int zoom_ = 100;
    CanvasPictures* pictures_;
    QImage background_;
    QImage buttons_[3];
    bool banding_ = false;
    bool bandInsert_ = false;
    Point bandStart_, bandEnd_;
    bool frozen_ = false;
    QPixmap frozenPicture_;
};

// 0x00BBGGRR as a QColor.
QColor qtColor(std::uint32_t color);

}  // namespace brindle::editor
