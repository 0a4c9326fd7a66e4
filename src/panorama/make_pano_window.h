// frmMakePano: joins a row of photographs into one wide picture in three
// phases: construct (import and overlap search, then the composition),
// edit (correct single seams in the seam editor), save. The work runs on
// a worker thread with progress and a cancel; closing the window stops it.
#pragma once

#include <QImage>
#include <QString>
#include <QWidget>
#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "album/language.h"
#include "album/prompter.h"
#include "image/dib_section.h"
#include "panorama/pano_run.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QScrollArea;
class QTimer;
class QWidget;

namespace brindle::panorama {

class MakePanoWindow : public QWidget {
    Q_OBJECT
public:
    MakePanoWindow(std::vector<std::string> pictures, std::string programDirectory, Prompter& prompter,
                   Language lang, QWidget* parent = nullptr);
    ~MakePanoWindow() override;
    void setLanguage(Language lang);

    std::vector<std::string> pictures() const;  // ListBilder in order
    PanoRunOptions options() const;              // as the controls stand
    bool isRunning() const { return worker_.joinable(); }
    const std::vector<PanoBild>& records() const { return records_; }
    const cDIBSection& result() const { return result_; }
    const std::string& savedPath() const { return savedPath_; }
    // How often the composition ran (phase 1, Drawing, a corrected seam).
    int compositions() const { return compositions_; }

    // The buttons' work, callable from the main window and tests.
    void cmdPhase1_Click();  // construct
    void cmdPhase2_Click();  // opens the seam list
    void cmdPhase3_Click();  // save
    void cmdNeuZeichnen_Click();
    void cmdNaht_Click(int number);  // opens the seam editor for seam `number` (1-based)

signals:
    // The saved panorama should go on the open album page as a panorama element.
    void placeOnPage(const QString& path);

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    using Work = std::function<bool(const PanoCallbacks&, std::string& message)>;

    // make_pano_window.cpp: controls and texts
    QWidget* buildPictureList();
    QWidget* buildSettings();
    QWidget* buildPhases();
    QWidget* buildResultBar();
    void retranslate();
    void fillList(const std::vector<std::string>& paths);
    void cmdHinzufuegen_Click();
    void cmdEntfernen_Click();
    void moveSelected(int step);
    void updateEnabled();
    const char* t(const char* german, const char* english) const { return brindle::tr(lang_, german, english); }

    // make_pano_window_run.cpp: the worker
    void run(Work work, std::function<void(bool ok, const std::string& message)> done);
    void stopRun();
    void startComposition();
    void showStatus(const std::string& text);
    void showFailure(const std::string& message);

    // make_pano_window_result.cpp: the result, seams, animation, saving
    void showResult();
    void showPicture(const cDIBSection& picture);
    void fitResult();
    void toggleSeamList();
    void fillSeamList();
    void cmdAnimate_Click();
    void animateStep();
    void cmdSpeichern_Click();
    void cmdAufSeite_Click();

    Prompter& prompter_;
    Language lang_;
    std::string programDirectory_;
    std::vector<PanoBild> records_;
    cDIBSection result_;
    std::string savedPath_;
    int compositions_ = 0;
    bool seamListOpen_ = false;
    bool builtRing360_ = false;  // the ring setting the records were searched with
    QImage shown_;               // what Picture3 shows, at full size

    std::thread worker_;
    std::atomic<bool> stop_{false};

    QListWidget* listBilder_ = nullptr;
    QPushButton* cmdHinzufuegen_ = nullptr;
    QPushButton* cmdEntfernen_ = nullptr;
    QPushButton* cmdHoch_ = nullptr;
    QPushButton* cmdRunter_ = nullptr;
    QLabel* lblBilder_ = nullptr;
    QLabel* lblEinstellungen_ = nullptr;
    QLabel* lblTestzeilen_ = nullptr;
    QLineEdit* txtTestzeilen_ = nullptr;
    QLabel* lblSmoth_ = nullptr;
    QLineEdit* txtSmoth_ = nullptr;
    QCheckBox* chkYversatzNivelieren_ = nullptr;
    QRadioButton* optPanoNormal_ = nullptr;
    QRadioButton* opt360_ = nullptr;
    QCheckBox* chkAuffuellen_ = nullptr;
    QCheckBox* chkZuschneiden_ = nullptr;
    QCheckBox* chkHelligkeit_ = nullptr;
    QPushButton* cmdPhase1_ = nullptr;
    QPushButton* cmdPhase2_ = nullptr;
    QPushButton* cmdPhase3_ = nullptr;
    QPushButton* cmdStop_ = nullptr;
    QProgressBar* progressBar1_ = nullptr;
    QLabel* lblStatus_ = nullptr;
    QScrollArea* picture3Area_ = nullptr;
    QLabel* picture3_ = nullptr;
    QPushButton* cmdNeuZeichnen_ = nullptr;
    QPushButton* cmdNaehte_ = nullptr;
    QWidget* seamList_ = nullptr;
    QPushButton* cmdAnimate_ = nullptr;
    QCheckBox* chkErgebnisAnzeigen_ = nullptr;
    QPushButton* cmdSpeichern_ = nullptr;
    QPushButton* cmdAufSeite_ = nullptr;
    QTimer* tmrAnimateCut_ = nullptr;
};

}  // namespace brindle::panorama
