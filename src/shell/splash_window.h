// The start-up window: the program's mark and the status line of each
// start-up stage, painted at once so every stage is seen.
#pragma once

#include <QWidget>

namespace brindle::shell {

class SplashWindow : public QWidget {
    Q_OBJECT
public:
    SplashWindow();
    void setStatus(const QString& text);
    QString status() const { return status_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString status_;
    int step_ = 0;
};

// Fusion with the program's light palette and accent.
void applyLook();

}  // namespace brindle::shell
