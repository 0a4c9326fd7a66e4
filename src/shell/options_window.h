// frmVorlage: the options dialog. Its tabs and controls are made from the
// control list of the album library; OK hands back the values, the main
// window applies them with the album flows.
#pragma once

#include <QDialog>
#include <map>

#include "album/language.h"
#include "album/options_controls.h"

class QComboBox;
class QDialogButtonBox;
class QGroupBox;
class QLabel;
class QPushButton;
class QTabWidget;

namespace brindle::shell {

class OptionsWindow : public QDialog {
    Q_OBJECT
public:
    OptionsWindow(const OptionsDialogValues& values, Language language, QWidget* parent = nullptr);

    // The values as the controls show them now.
    OptionsDialogValues values() const;
    // A control by its name from the list ("chkLiveMove", "txtGridBreite", ...).
    QWidget* control(const QString& name) const;
    QTabWidget* tabs() const { return tabs_; }
    QComboBox* languageBox() const { return language_; }
    void setColour(const QString& control, Color colour);
    void Sprachumschaltung(Language language);
    // True when the dialog was left with "save as template".
    bool templateWanted() const { return templateWanted_; }

private:
    QWidget* makeTab(const OptionTab& tab);
    QWidget* makeControl(const OptionControl& c, QWidget* parent);
    void showValues(const OptionsDialogValues& v);
    void pickColour(const QString& control);

    Language lang_ = Language::German;
    OptionsDialogValues initial_;
    QTabWidget* tabs_ = nullptr;
    QComboBox* language_ = nullptr;
    QLabel* languageLabel_ = nullptr;
    QGroupBox* languageGroup_ = nullptr;
    QDialogButtonBox* buttons_ = nullptr;
    QPushButton* saveTemplate_ = nullptr;
    bool templateWanted_ = false;
    std::map<QString, QWidget*> controls_;
    std::map<QString, QLabel*> labels_;
    std::map<std::pair<QString, QString>, QGroupBox*> groups_;
};

}  // namespace brindle::shell
