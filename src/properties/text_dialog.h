// FrmFrageText: the properties of one text element in four tabs.
#pragma once

#include <QDialog>

#include "album/language.h"
#include "properties/text_properties_model.h"

class QButtonGroup;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QRadioButton;
class QTabWidget;

namespace brindle {
class Prompter;
}

namespace brindle::properties {

class FrmFrageText : public QDialog {
    Q_OBJECT
public:
    FrmFrageText(Language language, const TextProperties& start, Prompter& prompter, QWidget* parent = nullptr);

    // What the controls hold now.
    TextProperties properties() const;
    // The font and colour the font and colour buttons chose.
    void setFont(const FontSpec& font);

private:
    QWidget* textTab();
    QWidget* linkTab();
    QWidget* behaviourTab();
    QWidget* animationTab();
    void chooseFile();
    void chooseFont();
    void chooseColour();
    void showFont();
    void enableTips();
    const char* t(const char* de, const char* en) const { return brindle::tr(language_, de, en); }

    Language language_;
    Prompter& prompter_;
    TextProperties start_;
    FontSpec font_;
    QTabWidget* tabs_;
    QPlainTextEdit* txtEingabe_;
    QLabel* lblSchrift_;
    QLineEdit* txtHyperlink_;
    QButtonGroup* optLinkVerhalten_;
    QButtonGroup* optBearbeiten_;
    QCheckBox* chkUmbruchImWort_;
    QCheckBox* chkTagestipp_;
    QButtonGroup* optTagestippEinzeilig_;
    QPlainTextEdit* txtTippDatenbank_;
};

}  // namespace brindle::properties
