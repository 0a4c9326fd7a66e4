// frmDruckenMulti: several pictures on one sheet. The preview shows the
// paper of the chosen printer with a movable box per picture; typed values,
// step buttons and commands change the boxes through SheetLayout, and the
// layout can be saved to and loaded from a print layout file (.bsp).
#pragma once

#include <QImage>
#include <QPrinter>
#include <QWidget>
#include <array>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "album/language.h"
#include "album/prompter.h"
#include "print/sheet_layout.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace brindle::print {

class SheetPreview;

class PrintSheetWindow : public QWidget {
    Q_OBJECT
public:
    PrintSheetWindow(std::vector<std::string> pictures, Prompter& prompter, Language lang,
                     QWidget* parent = nullptr);
    ~PrintSheetWindow() override;
    void setLanguage(Language lang);

    SheetLayout& layout() { return layout_; }
    SheetPreview& preview() { return *preview_; }
    QPrinter& printer() { return printer_; }
    // Both return false when the user broke off; tests replace them.
    std::function<bool(QPrinter&)> printDialog;
    std::function<bool(QPrinter&)> propertiesDialog;

    // The buttons' work.
    void cmdDrehen_Click();
    void cmdRandlos_Click();
    void cmdZentrieren_Click();
    void cmdNeuBerechnen_Click();
    void cmdDruckerEigenschaften_Click();
    void cmdDrucken_Click();
    void cmdSave_Click();
    void cmdLoad_Click();
    // Paints the sheet on `target` (a printer or a PDF); false with a message when it fails.
    bool printTo(QPrinter& target);
    bool printToPdf(const QString& path);
    // Shows the typed values of the focused box again.
    void refresh();

private:
    struct ValueRow {
        Field field;
        const char* name;  // without the "txt"
        QLabel* label = nullptr;
        QLineEdit* edit = nullptr;
    };

    QWidget* buildControls();
    QWidget* buildValues();
    void retranslate();
    void takeSheetFromPrinter();
    void readOptions();
    void valueTyped(ValueRow& row);
    void status(const char* de, const char* en);
    bool german() const { return lang_ == Language::German; }
    std::string tr2(const char* de, const char* en) const { return german() ? de : en; }

    std::vector<std::string> pictures_;
    Prompter& prompter_;
    Language lang_;
    QPrinter printer_;
    SheetLayout layout_;
    SheetPreview* preview_ = nullptr;
    std::array<ValueRow, 6> rows_;
    QCheckBox* chkSameSize_ = nullptr;
    QCheckBox* chkDistortion_ = nullptr;
    QCheckBox* chkTakeAll_ = nullptr;
    QCheckBox* chkFit_ = nullptr;
    QLabel* lblPrinter_ = nullptr;
    QLabel* lblStatus_ = nullptr;
    std::pair<const char*, const char*> status_{nullptr, nullptr};  // German and English
    std::vector<QPushButton*> commands_;
};

}  // namespace brindle::print
