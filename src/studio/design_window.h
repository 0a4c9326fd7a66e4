// The photo design assistant: choose designs in a tree, set their values
// on a panel, collect the step lines in a list, try the list on one picture
// and run it over all pictures. Long work runs on a worker thread; the
// window stays live and can cancel.
#pragma once

#include <QImage>
#include <QWidget>
#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "album/language.h"
#include "album/prompter.h"
#include "image/dib_section.h"
#include "image/progress.h"
#include "studio/captions.h"

class QCheckBox;
class QCloseEvent;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QSpinBox;
class QTabWidget;
class QTimer;
class QTreeWidget;
class QTreeWidgetItem;

namespace brindle::studio {

class DesignPanels;
class PictureView;

class DesignWindow : public QWidget {
    Q_OBJECT
  public:
    DesignWindow(std::vector<std::string> pictures, Prompter& prompter, Language language, QWidget* parent = nullptr);
    ~DesignWindow() override;

    void setLanguage(Language language);
    Language language() const { return language_; }

    // The step lines of the list, in order.
    std::vector<std::string> lines() const;
    void setLines(const std::vector<std::string>& lines);
    std::vector<std::string> pictures() const;
    // Selects a design in the tree, as a click on its node does.
    bool chooseDesign(const QString& key);
    // Whether a test or the batch is running.
    bool busy() const { return busy_; }
    int wizardStep() const { return step_; }
    // The picture of the test view as loaded (the original).
    const cDIBSection& testPicture() const { return original_; }

  protected:
    // A close during a run cancels it; the window closes when the run has stopped.
    void closeEvent(QCloseEvent* event) override;

  signals:
    // After each test, list test or batch has ended.
    void workFinished();

  private:
    // Building (design_window.cpp)
    QWidget* buildDesignPage();
    QWidget* buildTreeAndPictures();
    QWidget* buildListBox();
    QWidget* buildBatchPage();
    QWidget* buildTestView();
    void fillTree();
    void retranslate();
    void retranslateTree();
    void updateStepText();
    void updateButtons();
    void goToStep(int step);
    void nodeChosen(QTreeWidgetItem* item);
    // The list (design_window_list.cpp)
    void addCurrentLine();
    void removeLine();
    void moveLine(int by);
    void loadList();
    void saveList();
    void addPictures();
    void removePicture();
    void chooseFrameColour();
    void chooseTintColour();
    void chooseFrameFile();
    void chooseDirectory();
    // Test view and batch (design_window_run.cpp)
    void loadTestPicture(int row);
    void testCurrentPanel();
    void testList();
    void startTest(std::vector<std::string> lines);
    void panelValuesChanged();
    void waveTick();
    void runBatch();
    void startWork(std::function<void()> work, std::function<void()> done);
    void workDone(const std::function<void()>& done);
    void showProgress();
    void setRunning(bool running);
    std::string fileFilterPictures() const;
    QString t(const char* german, const char* english) const { return trq(language_, german, english); }

    Prompter& prompter_;
    Language language_;
    Captions captions_;
    int step_ = 1;

    QTabWidget* tabs_ = nullptr;
    QTreeWidget* tree_ = nullptr;
    QLabel* stepLabel_ = nullptr;
    DesignPanels* panels_ = nullptr;
    QPushButton* back_ = nullptr;
    QPushButton* next_ = nullptr;
    QListWidget* list_ = nullptr;
    QListWidget* pictureList_ = nullptr;
    QPushButton* finish_ = nullptr;
    QPushButton* listTest_ = nullptr;
    PictureView* picture1_ = nullptr;
    PictureView* picture2_ = nullptr;
    QCheckBox* autoTest_ = nullptr;
    QProgressBar* testProgress_ = nullptr;
    QPushButton* testCancel_ = nullptr;
    QTimer* progressTimer_ = nullptr;
    QTimer* waveTimer_ = nullptr;
    QLabel* pictureCount_ = nullptr;
    QSpinBox* widthFilter_ = nullptr;
    QSpinBox* heightFilter_ = nullptr;
    QRadioButton* overwrite_ = nullptr;
    QRadioButton* otherDirectory_ = nullptr;
    QLineEdit* directory_ = nullptr;
    QLineEdit* appendText_ = nullptr;
    QComboBox* fileType_ = nullptr;
    QSpinBox* jpegQuality_ = nullptr;
    QCheckBox* showEach_ = nullptr;
    QLabel* status_ = nullptr;
    QProgressBar* batchProgress_ = nullptr;
    QPushButton* batchCancel_ = nullptr;

    cDIBSection original_;
    std::string originalPath_;
    std::thread worker_;
    bool busy_ = false;
    bool testAgain_ = false;  // values moved while a test ran
    std::atomic<bool> cancel_{false};
    ProgressWord stepProgress_;
    std::atomic<int> stepsDone_{0};
    std::atomic<int> stepsTotal_{1};
    std::atomic<int> picturesDone_{0};
    std::atomic<int> picturesTotal_{0};
    bool batchRunning_ = false;
    bool closeWhenDone_ = false;
};

}  // namespace brindle::studio
