// The worker of the panorama window: one step at a time runs on its own
// thread and reports back through queued calls on the GUI thread.
#include <QLabel>
#include <QMetaObject>
#include <QProgressBar>
#include <QTimer>

#include "panorama/make_pano_window.h"
#include "panorama/pano_project.h"

namespace brindle::panorama {

namespace {

// What a construction or composition hands back to the GUI thread.
struct Built {
    std::vector<PanoBild> records;
    cDIBSection result;
};

}  // namespace

void MakePanoWindow::run(Work work, std::function<void(bool ok, const std::string& message)> done) {
    if (isRunning()) return;
    stop_ = false;
    progressBar1_->setValue(0);
    PanoCallbacks callbacks;
    callbacks.status = [this](const std::string& text) {
        QMetaObject::invokeMethod(this, [this, text] { showStatus(text); }, Qt::QueuedConnection);
    };
    callbacks.progress = [this](int value) {
        QMetaObject::invokeMethod(this, [this, value] { progressBar1_->setValue(value); }, Qt::QueuedConnection);
    };
    callbacks.cancelled = [this] { return stop_.load(); };
    // The window joins the thread before it goes, so `this` outlives it;
    // calls queued for a window already gone are dropped by Qt.
    worker_ = std::thread([this, work = std::move(work), done = std::move(done), callbacks] {
        std::string message;
        const bool ok = work(callbacks, message);
        QMetaObject::invokeMethod(
            this,
            [this, ok, message, done] {
                if (worker_.joinable()) worker_.join();
                updateEnabled();
                // A stopped run was wanted: nothing to tell.
                done(ok && !stop_, stop_ ? std::string() : message);
            },
            Qt::QueuedConnection);
    });
    updateEnabled();
}

void MakePanoWindow::stopRun() {
    stop_ = true;
    if (worker_.joinable()) worker_.join();
}

// The import's closing status is the core's German word; an English window says it in English.
void MakePanoWindow::showStatus(const std::string& text) {
    lblStatus_->setText(text == "Fertig" ? t("Fertig", "Done") : QString::fromStdString(text));
}

void MakePanoWindow::showFailure(const std::string& message) {
    progressBar1_->setValue(0);
    if (message.empty()) {
        showStatus(t("Abgebrochen", "Cancelled"));
        return;
    }
    showStatus(message);
    prompter_.message(message, kButtonsOk | kIconExclamation, "Brindlesee");
}

void MakePanoWindow::cmdPhase1_Click() {
    const std::vector<std::string> paths = pictures();
    if (isRunning() || paths.empty()) return;
    tmrAnimateCut_->stop();
    const PanoRunOptions o = options();
    auto built = std::make_shared<Built>();
    run(
        [paths, o, built, dir = programDirectory_, lang = lang_](const PanoCallbacks& callbacks, std::string& message) {
            PanoRunResult r = constructPanorama(paths, o, dir, callbacks, lang);
            message = r.message;
            built->records = std::move(r.records);
            built->result = std::move(r.picture);
            return r.ok;
        },
        [this, built, o](bool ok, const std::string& message) {
            if (!ok) return showFailure(message);
            records_ = std::move(built->records);
            result_ = std::move(built->result);
            builtRing360_ = o.compose.ring360;
            savedPath_.clear();
            ++compositions_;
            progressBar1_->setValue(1000);
            showResult();
            fillSeamList();
            updateEnabled();
        });
}

void MakePanoWindow::cmdNeuZeichnen_Click() { startComposition(); }

void MakePanoWindow::startComposition() {
    if (isRunning() || records_.empty()) return;
    const PanoRunOptions o = options();
    // A ring needs the match of the last picture with the first: search again.
    if (o.compose.ring360 != builtRing360_) return cmdPhase1_Click();
    auto built = std::make_shared<Built>();
    built->records = records_;
    run(
        [o, built, dir = programDirectory_, lang = lang_](const PanoCallbacks& callbacks, std::string& message) {
            if (callbacks.status) callbacks.status(brindle::tr(lang, "Zeichne Panorama", "Drawing the panorama"));
            // The corrected records are kept so the set can be reloaded.
            writePanoProject(dir, built->records);
            const ComposeResult r = composeFromRecords(built->records, o, dir, built->result, lang,
                                                       [&callbacks](int done, int total) {
                                                           if (callbacks.progress) callbacks.progress(1000 * done / std::max(1, total));
                                                           return !callbacks.cancelled();
                                                       });
            message = r.message;
            if (r.ok && callbacks.status) callbacks.status(brindle::tr(lang, "Fertig", "Done"));
            return r.ok;
        },
        [this, built](bool ok, const std::string& message) {
            if (!ok) return showFailure(message);
            result_ = std::move(built->result);
            savedPath_.clear();
            ++compositions_;
            progressBar1_->setValue(1000);
            showResult();
            updateEnabled();
        });
}

}  // namespace brindle::panorama
