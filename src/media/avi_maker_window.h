// The video maker window: a list of bitmaps of one size, the frame rate,
// and a run that writes them as a silent video off the GUI thread with a
// status line, a progress bar and a working cancel.
#pragma once

#include <QWidget>
#include <atomic>
#include <string>
#include <vector>

#include "album/language.h"
#include "album/prompter.h"
#include "media/video_list.h"
#include "media/video_writer.h"

class QCloseEvent;
class QLabel;
class QListWidget;
class QProgressBar;
class QPushButton;
class QSpinBox;

namespace brindle::media {

class AviMakerWindow : public QWidget {
    Q_OBJECT
  public:
    // `pictures` (from the explorer) are made into bitmaps in "AVITemp"
    // under `programDirectory` where they are not bitmaps already.
    AviMakerWindow(std::vector<std::string> pictures, std::string programDirectory, Prompter& prompter,
                   Language language, QWidget* parent = nullptr);

    void setLanguage(Language language);
    const std::vector<std::string>& bitmaps() const { return bitmaps_; }
    const VideoResult& lastResult() const { return result_; }
    bool running() const { return running_; }

    // Adds the bitmap at `path`; false (after the message) when it is refused.
    bool addBitmap(const std::string& path);

  public slots:
    // Asks for bitmaps to add (several at once).
    void chooseBitmaps();
    void removeSelected();
    void moveSelected(int step);
    // Asks for the video's name and writes it; returns when the run has finished.
    void writeVideoFile();
    // Stops a run at the next frame; closes the window when nothing runs.
    void cancel();

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void build();
    void provide(const std::vector<std::string>& pictures);
    void tell(const ImageMessage& message, int icon);
    void showPreview();
    void updateEnabled();
    std::string askVideoPath();
    const char* t(const char* german, const char* english) const { return brindle::tr(language_, german, english); }

    std::vector<std::string> bitmaps_;
    BitmapFormat format_;
    std::string programDirectory_;
    Prompter& prompter_;
    Language language_;
    VideoResult result_;
    bool running_ = false;
    std::atomic<bool> cancel_{false};

    QLabel* lblList_;
    QListWidget* lstDIBList_;
    QPushButton* cmdFileOpen_;
    QPushButton* cmdRemove_;
    QPushButton* cmdUp_;
    QPushButton* cmdDown_;
    QLabel* imgPreview_;
    QLabel* lblFPS_;
    QSpinBox* txtFPS_;
    QLabel* lblStatus_;
    QProgressBar* progress_;
    QPushButton* cmdWriteAVI_;
    QPushButton* cmdCancel_;
};

}  // namespace brindle::media
