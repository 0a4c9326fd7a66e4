// The split window: cuts the chosen pictures into a grid of tiles saved
// beside them, with a preview of the grid on the selected picture. The
// split runs off the GUI thread with a progress bar and a working cancel.
#pragma once

#include <QDialog>
#include <atomic>
#include <string>
#include <vector>

#include "album/language.h"
#include "album/prompter.h"
#include "studio/split_pictures.h"

class QGroupBox;
class QLabel;
class QListWidget;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QSpinBox;

namespace brindle::studio {

class TileGridPreview;

class SplitWindow : public QDialog {
    Q_OBJECT
  public:
    SplitWindow(std::vector<std::string> pictures, Prompter& prompter, Language language,
                QWidget* parent = nullptr);

    void setLanguage(Language language);
    SplitOptions options() const;
    const SplitResult& lastResult() const { return result_; }
    bool running() const { return running_; }

  public slots:
    // Cuts every picture; returns when the run has finished.
    void save();
    void reject() override;

  private:
    void build();
    QGroupBox* buildNumberBox();
    QGroupBox* buildOrderBox();
    void connectFields();
    void showPicture(int index);
    void updateGrid();
    void updateEnabled();
    void tellResult();
    const char* t(const char* german, const char* english) const { return brindle::tr(language_, german, english); }

    std::vector<std::string> pictures_;
    Prompter& prompter_;
    Language language_;
    SplitResult result_;
    bool running_ = false;
    std::atomic<bool> cancel_{false};
    QSize shownSize_;  // the previewed picture's size, empty when none

    QListWidget* listeAlleBilder_;
    TileGridPreview* preview_;
    QGroupBox* fraAnzahl_;
    QLabel* lblZeilen_;
    QLabel* lblSpalten_;
    QSpinBox* txtZeilen_;
    QSpinBox* txtSpalten_;
    QGroupBox* optReihenfolge_;
    QRadioButton* optZeilenweise_;
    QRadioButton* optSpaltenweise_;
    QLabel* lblTeile_;
    QLabel* lblStatus_;
    QProgressBar* progress_;
    QPushButton* cmdSpeichern_;
    QPushButton* cmdAbbrechen_;
};

}  // namespace brindle::studio
