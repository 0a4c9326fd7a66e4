#include "shell/splash_window.h"

#include <QApplication>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QStyleFactory>

#include "shell/tool_icons.h"

namespace brindle::shell {

SplashWindow::SplashWindow() : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint) {
    setObjectName("frmSplash");
    setFixedSize(520, 300);
    if (QScreen* screen = QGuiApplication::primaryScreen()) move(screen->geometry().center() - rect().center());
}

void SplashWindow::setStatus(const QString& text) {
    status_ = text;
    ++step_;
    repaint();
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void SplashWindow::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient g(0, 0, width(), height());
    g.setColorAt(0, QColor(0x1B, 0x3B, 0x63));
    g.setColorAt(1, QColor(0x2A, 0x6F, 0xB8));
    p.fillRect(rect(), g);
    p.drawPixmap(40, 64, brandMark(96));
    QFont title = font();
    title.setPixelSize(40);
    title.setWeight(QFont::DemiBold);
    p.setFont(title);
    p.setPen(Qt::white);
    p.drawText(QRect(156, 70, 340, 50), Qt::AlignLeft | Qt::AlignVCenter, "Brindlesee");
    QFont sub = font();
    sub.setPixelSize(15);
    p.setFont(sub);
    p.setPen(QColor(255, 255, 255, 200));
    p.drawText(QRect(158, 120, 340, 24), Qt::AlignLeft | Qt::AlignVCenter, "Fotoalben \u00b7 Photo albums");
    p.fillRect(QRect(0, height() - 44, width(), 44), QColor(0, 0, 0, 60));
    p.setPen(QColor(255, 255, 255, 230));
    QFont small = font();
    small.setPixelSize(13);
    p.setFont(small);
    p.drawText(QRect(20, height() - 44, width() - 40, 40), Qt::AlignLeft | Qt::AlignVCenter, status_);
    const int bar = std::min(width(), step_ * width() / 30);
    p.fillRect(QRect(0, height() - 4, bar, 4), QColor(0xF0, 0xA8, 0x48));
}

void applyLook() {
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QPalette pal;
    const QColor window(0xF3, 0xF5, 0xF8), text(0x1F, 0x29, 0x33), accent(0x1F, 0x6F, 0xC8);
    pal.setColor(QPalette::Window, window);
    pal.setColor(QPalette::WindowText, text);
    pal.setColor(QPalette::Base, Qt::white);
    pal.setColor(QPalette::AlternateBase, QColor(0xEE, 0xF1, 0xF5));
    pal.setColor(QPalette::Text, text);
    pal.setColor(QPalette::Button, QColor(0xF7, 0xF8, 0xFA));
    pal.setColor(QPalette::ButtonText, text);
    pal.setColor(QPalette::Highlight, accent);
    pal.setColor(QPalette::HighlightedText, Qt::white);
    pal.setColor(QPalette::ToolTipBase, QColor(0xFF, 0xFD, 0xF2));
    pal.setColor(QPalette::ToolTipText, text);
    pal.setColor(QPalette::Dark, QColor(0xC9, 0xCF, 0xD8));
    pal.setColor(QPalette::Disabled, QPalette::Text, QColor(0x9A, 0xA3, 0xAE));
    pal.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(0x9A, 0xA3, 0xAE));
    pal.setColor(QPalette::Disabled, QPalette::WindowText, QColor(0x9A, 0xA3, 0xAE));
    QApplication::setPalette(pal);
    QFont font("Liberation Sans");
    font.setPixelSize(13);
    QApplication::setFont(font);
    qApp->setStyleSheet(
        "QToolBar { background: #FBFCFD; border: none; border-bottom: 1px solid #DDE2E8; padding: 3px 6px; spacing: 2px; }"
        "QToolBar::separator { background: #DDE2E8; width: 1px; margin: 4px 6px; }"
        "QToolButton { border: 1px solid transparent; border-radius: 5px; padding: 3px; }"
        "QToolButton:hover { background: #E8F0FA; border-color: #C9DCF2; }"
        "QToolButton:checked { background: #D6E6F7; border-color: #A9C8EC; }"
        "QStatusBar { background: #FBFCFD; border-top: 1px solid #DDE2E8; }"
        "QStatusBar QLabel { padding: 0 6px; color: #4A5563; }"
        "QDockWidget::title { background: #EEF1F5; padding: 6px 8px; border-bottom: 1px solid #DDE2E8; }"
        "QTreeWidget { border: none; background: #FBFCFD; }"
        "QTreeWidget::item { padding: 3px 2px; }"
        "QMdiArea QTabBar::tab { background: #E4E8EE; border: 1px solid #D2D8E0; border-bottom: none;"
        "  padding: 6px 14px; margin-right: 2px; border-top-left-radius: 6px; border-top-right-radius: 6px; }"
        "QMdiArea QTabBar::tab:selected { background: #FFFFFF; }"
        "QWidget#pageFooter { background: #FBFCFD; border-top: 1px solid #DDE2E8; }"
        "QProgressBar { border: 1px solid #D2D8E0; border-radius: 3px; background: white; max-height: 10px; }"
        "QProgressBar::chunk { background: #1F6FC8; border-radius: 2px; }");
}

}  // namespace brindle::shell
