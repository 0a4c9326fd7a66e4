#include "help/help_center.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

#include "help/help_pages.h"

namespace brindle::help {

namespace {

HelpCenter*& current() {
    static HelpCenter* center = nullptr;
    return center;
}

bool isHelpKey(QEvent* event) {
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride)
        return false;
    return static_cast<QKeyEvent*>(event)->key() == Qt::Key_F1;
}

}  // namespace

HelpCenter::HelpCenter(QString helpRoot, std::function<Language()> language, QObject* parent)
    : QObject(parent), root_(std::move(helpRoot)), language_(std::move(language)) {}

HelpCenter::~HelpCenter() {
    if (installed_ && qApp) qApp->removeEventFilter(this);
    if (current() == this) current() = nullptr;
    delete viewer_.data();
}

void HelpCenter::install() {
    if (!installed_) qApp->installEventFilter(this);
    installed_ = true;
    current() = this;
}

HelpCenter* HelpCenter::installed() { return current(); }

QString HelpCenter::pageIdFor(QWidget* widget) {
    for (QWidget* w = widget; w; w = w->parentWidget()) {
        const std::string page =
            pageForWindow(w->metaObject()->className(), w->objectName().toStdString());
        if (!page.empty()) return QString::fromStdString(page);
    }
    return kIndexPage;
}

HelpViewer* HelpCenter::showPage(const QString& id) {
    const Language lang = language_ ? language_() : Language::German;
    if (!viewer_) viewer_ = new HelpViewer(root_, lang);
    placeViewer();
    if (viewer_->language() != lang) viewer_->setLanguage(lang);
    viewer_->showPage(id);
    viewer_->show();
    viewer_->raise();
    viewer_->activateWindow();
    return viewer_;
}

HelpViewer* HelpCenter::showHelpFor(QWidget* widget) { return showPage(pageIdFor(widget)); }

// An application-modal dialog blocks every window but its own children, so
// the viewer becomes a window of the dialog while the dialog runs.
void HelpCenter::placeViewer() {
    QWidget* modal = QApplication::activeModalWidget();
    if (modal == viewer_) modal = nullptr;
    if (modal == modalHost_) return;
    const bool shown = viewer_->isVisible();
    const QRect where = viewer_->geometry();
    if (modalHost_) modalHost_->removeEventFilter(this);
    viewer_->setParent(modal, Qt::Window);
    modalHost_ = modal;
    if (modal) modal->installEventFilter(this);
    if (shown) {
        viewer_->setGeometry(where);
        viewer_->show();
    }
}

// The dialog ends: the viewer leaves it before it is deleted with it.
void HelpCenter::releaseViewer() {
    QWidget* leaving = modalHost_;
    if (leaving) leaving->removeEventFilter(this);
    modalHost_ = nullptr;
    if (!viewer_ || !viewer_->parentWidget()) return;
    const bool shown = viewer_->isVisible();
    const QRect where = viewer_->geometry();
    viewer_->setParent(nullptr, Qt::Window);
    // A modal dialog further down the stack takes the viewer in turn.
    if (QWidget* modal = QApplication::activeModalWidget();
        modal && modal != viewer_ && modal != leaving) {
        viewer_->setParent(modal, Qt::Window);
        modalHost_ = modal;
        modal->installEventFilter(this);
    }
    if (shown) {
        viewer_->setGeometry(where);
        viewer_->show();
    }
}

bool HelpCenter::eventFilter(QObject* watched, QEvent* event) {
    if (watched == modalHost_ && event->type() == QEvent::Hide &&
        !static_cast<QWidget*>(watched)->isVisible()) {
        releaseViewer();
        return false;
    }
    if (!installed_ || !isHelpKey(event)) return false;
    // Taking the override keeps F1 from any menu shortcut, so the key
    // press itself arrives here.
    event->accept();
    if (event->type() == QEvent::KeyPress) {
        // A key press goes to the focus widget; one through a window handle
        // names no widget.
        QWidget* from = qobject_cast<QWidget*>(watched);
        if (!from) from = QApplication::focusWidget();
        if (!from) from = QApplication::activeModalWidget();
        if (!from) from = QApplication::activeWindow();
        showHelpFor(from);
    }
    return true;
}

bool showContextHelp(QWidget* widget) {
    HelpCenter* center = HelpCenter::installed();
    if (!center) return false;
    center->showHelpFor(widget);
    return true;
}

}  // namespace brindle::help
