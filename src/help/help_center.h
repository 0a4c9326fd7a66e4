// Context help for the whole program: F1 anywhere opens the help page of
// the window it was pressed in, in the one help viewer of the program.
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <functional>

#include "album/language.h"
#include "help/help_viewer.h"

class QWidget;

namespace brindle::help {

class HelpCenter : public QObject {
    Q_OBJECT
  public:
    // `language` is asked each time a page opens, so a switch at run time
    // counts at once.
    HelpCenter(QString helpRoot, std::function<Language()> language, QObject* parent = nullptr);
    ~HelpCenter() override;

    // Catches F1 for every window of the application and makes this the
    // center that help buttons use. Undone by the destructor.
    void install();
    static HelpCenter* installed();

    // Shows page `id`, raising the viewer when it is open already. While a
    // modal dialog runs, the viewer moves under it so that it stays usable.
    HelpViewer* showPage(const QString& id);
    // The page of the first window from `widget` up that has one, else "index".
    HelpViewer* showHelpFor(QWidget* widget);
    // The viewer, or nullptr before the first page.
    HelpViewer* viewer() const { return viewer_; }

    // The page that F1 in `widget` opens.
    static QString pageIdFor(QWidget* widget);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void placeViewer();
    void releaseViewer();

    QString root_;
    std::function<Language()> language_;
    QPointer<HelpViewer> viewer_;
    QPointer<QWidget> modalHost_;  // the modal dialog the viewer lives under
    bool installed_ = false;
};

// For a window's own help button: shows the page of `widget`'s window
// through the installed center. False when no center is installed.
bool showContextHelp(QWidget* widget);

}  // namespace brindle::help
