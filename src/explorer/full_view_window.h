// The explorer's full view: one picture at a time on the whole screen.
// Left/Up and Right/Down/Space step through the list, Escape or a click
// closes. Pictures are read off the GUI thread.
#pragma once

#include <QImage>
#include <QThreadPool>
#include <QWidget>
#include <string>
#include <vector>

#include "album/language.h"

namespace brindle::explorer {

class FrmVollbildViewer : public QWidget {
    Q_OBJECT
  public:
    FrmVollbildViewer(std::vector<std::string> pictures, int first, Language language,
                      QWidget* parent = nullptr);
    ~FrmVollbildViewer() override;

    int current() const { return current_; }
    const QImage& picture() const { return picture_; }
    void showPicture(int index);

  signals:
    void pictureShown();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

  private:
    std::vector<std::string> pictures_;
    int current_ = 0;
    int request_ = 0;
    bool failed_ = false;
    Language language_;
    QImage picture_;
    QThreadPool pool_;
};

}  // namespace brindle::explorer
