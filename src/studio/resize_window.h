// The resize window: a new size for the chosen pictures, by pixels or by
// percent, saved beside the originals or over them. The batch runs off the
// GUI thread with a progress bar and a working cancel.
#pragma once

#include <QDialog>
#include <atomic>
#include <string>
#include <vector>

#include "album/language.h"
#include "album/prompter.h"
#include "studio/resize_pictures.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QListWidget;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QSpinBox;

namespace brindle::studio {

class ResizeWindow : public QDialog {
    Q_OBJECT
  public:
    ResizeWindow(std::vector<std::string> pictures, Prompter& prompter, Language language,
                 QWidget* parent = nullptr);

    void setLanguage(Language language);
    // The form's fields as the batch takes them.
    ResizeOptions options() const;
    const BatchResult& lastResult() const { return result_; }
    bool running() const { return running_; }

  public slots:
    // Sizes every picture; returns when the batch has finished.
    void run();
    void reject() override;

  private:
    void build();
    void connectFields();
    void percentChanged(QSpinBox* changed, QSpinBox* other);
    void updateEnabled();
    void updateTargetText();
    void tellResult();
    const char* t(const char* german, const char* english) const { return brindle::tr(language_, german, english); }

    std::vector<std::string> pictures_;
    Prompter& prompter_;
    Language language_;
    BatchResult result_;
    bool running_ = false;
    std::atomic<bool> cancel_{false};

    QLabel* lblBilder_;
    QListWidget* listeAlleBilder_;
    QGroupBox* fraGröße_;
    QRadioButton* optPixel_;
    QRadioButton* optProzent_;
    QLabel* lblBreitePixel_;
    QLabel* lblHöhePixel_;
    QLabel* lblBreiteProzent_;
    QLabel* lblHöheProzent_;
    QSpinBox* txtBreitePixel_;
    QSpinBox* txtHöhePixel_;
    QSpinBox* txtBreiteProzent_;
    QSpinBox* txtHöheProzent_;
    QCheckBox* chkProzgleich_;
    QCheckBox* chkOriginaleÜberschreiben_;
    QLabel* lblZiel_;
    QLabel* lblStatus_;
    QProgressBar* progress_;
    QPushButton* cmdAusführen_;
    QPushButton* cmdAbbrechen_;
};

}  // namespace brindle::studio
