// The red-eye window: one picture, corrected either by a double click in
// each eye (a search from that point, tuned by two sliders) or by a
// rectangle drawn with the right mouse button whose red pixels turn grey.
// The work itself is RedEyeSession's; the window only wires it to widgets.
#pragma once

#include <QWidget>
#include <atomic>
#include <functional>
#include <string>

#include "album/language.h"
#include "album/prompter.h"
#include "studio/red_eye.h"

class QAbstractButton;
class QCheckBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QSlider;
class QSpinBox;
class QSplitter;
class QStackedWidget;
class QGroupBox;

namespace brindle::studio {

class PictureView;

class RedEyeWindow : public QWidget {
    Q_OBJECT
  public:
    RedEyeWindow(const std::string& picturePath, Prompter& prompter, Language language,
                 QWidget* parent = nullptr);
    ~RedEyeWindow() override;

    void setLanguage(Language language);
    Language language() const { return language_; }

    enum class Mode { Click, Selection };
    void setMode(Mode mode);
    Mode mode() const { return mode_; }

    const RedEyeSession& session() const { return session_; }
    const std::string& picturePath() const { return path_; }
    PictureView* resultView() const { return resultView_; }
    PictureView* originalView() const { return originalView_; }
    bool busy() const { return busy_; }

    // The commands behind the buttons, for the menu and for tests.
    void searchAt(QPoint picturePixel);
    void runSelection();
    void showOriginal();
    bool save();
    bool saveAs();

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void buildControls();
    QWidget* buildClickPanel();
    QWidget* buildSelectionPanel();
    QWidget* buildViewButtons();
    void connectViews();
    void load();
    void refreshPicture();
    void refreshOriginal();
    void updateEnabled();
    void updateValueLabels();
    void onRectangle(QRect rect);
    bool saveTo(const std::string& path);
    // Runs `work` on a worker thread while the window keeps painting; the
    // progress bar follows `percent` and the Cancel button sets `cancel`.
    void runInBackground(const std::function<void(std::atomic<bool>& cancel, std::atomic<int>& percent)>& work,
                         bool cancellable);
    const char* t(const char* german, const char* english) const { return brindle::tr(language_, german, english); }

    std::string path_;
    Prompter& prompter_;
    Language language_;
    Mode mode_ = Mode::Click;
    RedEyeSession session_;
    bool busy_ = false;
    std::atomic<bool>* cancel_ = nullptr;

    PictureView* resultView_ = nullptr;
    PictureView* originalView_ = nullptr;
    QSplitter* views_ = nullptr;
    QLabel* resultCaption_ = nullptr;
    QLabel* originalCaption_ = nullptr;
    QPushButton* clickMode_ = nullptr;
    QPushButton* selectionMode_ = nullptr;
    QStackedWidget* panels_ = nullptr;
    QGroupBox* clickBox_ = nullptr;
    QGroupBox* selectionBox_ = nullptr;
    QLabel* clickHint_ = nullptr;
    QLabel* sensitivityLabel_ = nullptr;
    QLabel* sensitivityValue_ = nullptr;
    QSlider* sensitivity_ = nullptr;
    QLabel* searchWidthLabel_ = nullptr;
    QLabel* searchWidthValue_ = nullptr;
    QSlider* searchWidth_ = nullptr;
    QLabel* selectionHint_ = nullptr;
    QPushButton* lasso_ = nullptr;
    QPushButton* redLabel_ = nullptr;
    QPushButton* otherLabel_ = nullptr;
    QPushButton* brightLabel_ = nullptr;
    QSpinBox* red_ = nullptr;
    QSpinBox* other_ = nullptr;
    QSpinBox* bright_ = nullptr;
    QCheckBox* grey_ = nullptr;
    QPushButton* run_ = nullptr;
    QCheckBox* compare_ = nullptr;
    QPushButton* zoomOne_ = nullptr;
    QPushButton* zoomFit_ = nullptr;
    QPushButton* zoomIn_ = nullptr;
    QPushButton* zoomOut_ = nullptr;
    QPushButton* scrollCentre_ = nullptr;
    QPushButton* original_ = nullptr;
    QPushButton* save_ = nullptr;
    QPushButton* saveAs_ = nullptr;
    QPushButton* cancelButton_ = nullptr;
    QLabel* fileLabel_ = nullptr;
    QProgressBar* progress_ = nullptr;
};

}  // namespace brindle::studio
