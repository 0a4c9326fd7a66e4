// frmVollbild: a picture alone on the whole screen, as the album's
// "<vollbild>" link shows it. A click or Escape closes it.
#pragma once

#include <QImage>
#include <QWidget>

#include "album/language.h"

namespace brindle::editor {

class FrmVollbild : public QWidget {
    Q_OBJECT
public:
    FrmVollbild(const QImage& picture, Language language, QWidget* parent = nullptr);
    const QImage& picture() const { return picture_; }
    // The rectangle the picture takes: as large as fits but not beyond its own
    // size, its shape kept, centred.
    static QRect fitted(QSize picture, QSize screen);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QImage picture_;
};

}  // namespace brindle::editor
