// The parameter panels of the photo design window: one page per design of
// the tree, each with its controls, a test button and an add button. A
// panel knows the step line its values make.
#pragma once

#include <QLabel>
#include <QStackedWidget>
#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "studio/captions.h"
#include "studio/step_lines.h"

class QSlider;
class QSpinBox;

namespace brindle::studio {

class DesignPanels : public QStackedWidget {
    Q_OBJECT
  public:
    DesignPanels(Captions& captions, QWidget* parent = nullptr);

    // Shows the panel of a tree key ("Kontrast", "Rahmen", "Gold", ...);
    // false for an unknown key (the start page stays).
    bool showPanel(const QString& key);
    QString currentKey() const { return key_; }
    // The line the shown panel's values make; empty on the start page.
    std::string currentLine() const;

    std::uint32_t frameColour() const { return frameColour_; }
    void setFrameColour(std::uint32_t colour);
    const std::string& frameFile() const { return frameFile_; }
    void setFrameFile(const std::string& path);
    std::uint32_t tintColour() const { return tintColour_; }
    void setTintColour(std::uint32_t colour);
    void setLanguage(Language language);

  signals:
    void testRequested();
    void addRequested();
    void valuesChanged();
    void chooseFrameColour();
    void chooseFrameFile();
    void chooseTintColour();
    void waveAnimation(bool on);

  private:
    struct Panel {
        QWidget* page = nullptr;
        std::function<std::string()> line;
    };
    QWidget* newPage(const QString& name, const char* germanHint, const char* englishHint);
    void finishPage(QWidget* page, const QString& name);
    QSpinBox* addValue(QWidget* page, const QString& name, const char* german, const char* english, int minimum,
                       int maximum, int value, int step = 10);
    QSlider* addLabelledSlider(QWidget* page, const QString& name, const char* german, const char* english,
                               int minimum, int maximum, int value);
    void buildColourPanels();
    void buildSharpnessPanels();
    void buildShapePanels();
    void buildFramePanels();
    void buildGeneralPanel();
    void chooseGeneralItem(const GeneralItem& item);
    void showColour(QLabel* swatch, std::uint32_t colour);
    void showFrameFile();

    Captions& captions_;
    Language language_ = Language::German;
    std::map<QString, Panel> panels_;
    QString key_;
    const GeneralItem* general_ = nullptr;
    std::uint32_t frameColour_ = 0x00FFFFFF;
    std::uint32_t tintColour_ = 0x00306090;
    std::string frameFile_;
    QLabel* frameSwatch_ = nullptr;
    QLabel* frameFileLabel_ = nullptr;
    QLabel* tintSwatch_ = nullptr;
    QWidget* tintRow_ = nullptr;
};

}  // namespace brindle::studio
