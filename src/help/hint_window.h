// frmHinweis: a numbered hint with the box that stops it for good.
#pragma once

#include <QDialog>
#include <string>

#include "album/language.h"
#include "album/settings_store.h"

class QCheckBox;
class QLabel;
class QPushButton;

namespace brindle::help {

class HintWindow : public QDialog {
    Q_OBJECT
  public:
    HintWindow(int number, const std::string& text, Language language, QWidget* parent = nullptr);

    // Shows hint `number` unless its box was ticked before, and keeps the
    // box's answer in `store`. True when the hint was shown.
    static bool showHint(SettingsStore& store, int number, const std::string& text,
                         Language language, QWidget* parent = nullptr);

    int number() const { return number_; }
    QLabel* lblHinweis() const { return lblHinweis_; }
    QCheckBox* chkNichtMehr() const { return chkNichtMehr_; }
    QPushButton* cmdOK() const { return cmdOK_; }

  private:
    int number_;
    QLabel* lblHinweis_ = nullptr;
    QCheckBox* chkNichtMehr_ = nullptr;
    QPushButton* cmdOK_ = nullptr;
};

}  // namespace brindle::help
