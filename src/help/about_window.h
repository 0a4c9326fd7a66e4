// "Info ..": the program's name, version, mark, what it does and the
// libraries it builds on.
#pragma once

#include <QDialog>
#include <QPixmap>

#include "album/language.h"

class QLabel;
class QPushButton;

namespace brindle::help {

class AboutWindow : public QDialog {
    Q_OBJECT
  public:
    // `mark` is the program's icon; the version is the application's.
    AboutWindow(Language language, const QPixmap& mark, QWidget* parent = nullptr);

    void setLanguage(Language language);
    QLabel* lblVersion() const { return lblVersion_; }
    QLabel* lblBeschreibung() const { return lblBeschreibung_; }
    QLabel* lblBibliotheken() const { return lblBibliotheken_; }
    QPushButton* cmdSchliessen() const { return cmdSchliessen_; }

  private:
    void Sprachumschaltung();

    Language language_;
    QLabel* lblVersion_ = nullptr;
    QLabel* lblBeschreibung_ = nullptr;
    QLabel* lblBibliotheken_ = nullptr;
    QPushButton* cmdSchliessen_ = nullptr;
};

}  // namespace brindle::help
