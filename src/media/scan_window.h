// The scanner dialog: choose a source and a resolution, scan one picture
// into a given file. Finding the sources and scanning both run off the GUI
// thread (a scanner may take seconds to answer); the two never overlap,
// since a SANE session is one per process.
#pragma once

#include <QDialog>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "album/language.h"
#include "album/prompter.h"
#include "media/scan_import.h"

class QComboBox;
class QLabel;
class QProgressBar;
class QPushButton;

namespace brindle::media {

class ScanDialog : public QDialog {
    Q_OBJECT
  public:
    ScanDialog(std::string targetPath, Prompter& prompter, Language language, QWidget* parent = nullptr);
    // Waits for a running search or scan; a scan is asked to stop first.
    ~ScanDialog() override;

    void setLanguage(Language language);
    Language language() const { return language_; }

    // The written file once the dialog has accepted, else empty.
    const std::string& savedPath() const { return savedPath_; }
    const std::vector<ScanSource>& sources() const { return sources_; }
    bool isListing() const { return listing_; }
    bool isScanning() const { return scanning_; }

  signals:
    void sourcesListed();
    void scanFinished();

  public slots:
    // Cancel during a scan stops the scan; otherwise it closes the dialog.
    void reject() override;

  private:
    enum class Status { Listing, Ready, NoScanner, Scanning, Message };

    void build();
    void applyTexts();
    void startListing();
    void showSources(ScanSourceList list);
    void startScan();
    void scanDone(ScanResult result);
    void setStatus(Status status, std::string message = {});
    void updateButtons();
    void joinWorker();
    const char* t(const char* german, const char* english) const {
        return brindle::tr(language_, german, english);
    }

    std::string targetPath_;
    Prompter& prompter_;
    Language language_;
    std::string savedPath_;
    std::vector<ScanSource> sources_;
    Status status_ = Status::Listing;
    std::string message_;  // of Status::Message, in the language it came in
    bool listing_ = false;
    bool scanning_ = false;
    std::atomic<bool> stop_{false};
    std::thread worker_;

    QComboBox* cboQuelle_ = nullptr;
    QComboBox* cboAuflösung_ = nullptr;
    QLabel* lblQuelle_ = nullptr;
    QLabel* lblAuflösung_ = nullptr;
    QLabel* lblStatus_ = nullptr;
    QProgressBar* progressBar1_ = nullptr;
    QPushButton* cmdScannen_ = nullptr;
    QPushButton* cmdAbbrechen_ = nullptr;
};

// The resolutions offered, in dots per inch; 0 keeps the source's own.
inline constexpr int kScanResolutions[] = {0, 75, 100, 150, 200, 300, 600};

}  // namespace brindle::media
