// The help window: a browser over the HTML help pages with back, forward,
// contents and close. Pages come in the session's language, else in the
// other one, else a note that the page is missing; addresses on the web
// go to the desktop's browser.
#pragma once

#include <QString>
#include <QUrl>
#include <QWidget>
#include <functional>

#include "album/language.h"

class QPushButton;
class QTextBrowser;

namespace brindle::help {

class HelpViewer : public QWidget {
    Q_OBJECT
  public:
    // `helpRoot` holds "de/", "en/" and "images/" and ends in '/'.
    HelpViewer(QString helpRoot, Language language, QWidget* parent = nullptr);

    void showPage(const QString& id);
    // Shows the page on view again in the new language.
    void setLanguage(Language language);
    Language language() const { return language_; }

    // The page on view ("index", "page-editor", ...).
    QString pageId() const { return pageId_; }
    // The file on view; empty while the missing-page note shows.
    QString pageFile() const { return pageFile_; }
    bool showingMissingPage() const { return pageFile_.isEmpty(); }
    QTextBrowser* browser() const { return browser_; }

    // Where web addresses go; the desktop's browser unless a test says otherwise.
    using ExternalOpener = std::function<void(const QUrl&)>;
    static void setExternalOpener(ExternalOpener opener);

  private:
    void Sprachumschaltung();
    void follow(const QUrl& url);
    void sourceShown(const QUrl& url);
    void updateButtons();

    QString root_;
    Language language_;
    QString pageId_;
    QString pageFile_;
    QTextBrowser* browser_ = nullptr;
    QPushButton* cmdZurueck_ = nullptr;
    QPushButton* cmdVor_ = nullptr;
    QPushButton* cmdInhalt_ = nullptr;
    QPushButton* cmdSchliessen_ = nullptr;
};

}  // namespace brindle::help
