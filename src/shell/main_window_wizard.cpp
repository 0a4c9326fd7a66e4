// The album wizard from the main window: the window, then the run with a
// progress window that can cancel, on the pages' own windows.
#include <QApplication>
#include <QDir>
#include <QProgressDialog>
#include <QStandardPaths>

#include "editor/qt_text_metrics.h"
#include "shell/main_window.h"
#include "shell/wizard_run.h"
#include "shell/wizard_window.h"

namespace brindle::shell {

using editor::FrmNotePad;

void MainWindow::showWizard() {
    Session& s = *session_;
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    FrmWizzard wizard(s.state().programDirectory,
                      pictures.isEmpty() ? QDir::homePath().toStdString() : pictures.toStdString(), s.language(),
                      prompter_, settings_, this);
    if (wizard.exec() != QDialog::Accepted) return;
    if (wizard.choice() == FrmWizzard::StartChoice::Recent) {
        const std::string last = settings_.get(kSettingsApp, kRecentSection, "RecentFile1");
        if (!last.empty()) openFile(QString::fromStdString(last));
        return;
    }
    if (wizard.choice() != FrmWizzard::StartChoice::Wizard || !wizard.plan()) return;

    QProgressDialog progress(t("Das Album wird erstellt ...", "Generating the album ..."), t("Abbrechen", "Cancel"), 0,
                             std::max<int>(1, static_cast<int>(wizard.plan()->pages.size())), this);
    progress.setObjectName("frmWizzardFortschritt");
    progress.setWindowTitle("Brindlesee Wizzard");
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(0);
    progress.setAutoClose(false);
    progress.setAutoReset(false);
    progress.show();
    wizard::WizardCallbacks callbacks;
    callbacks.progress = [&](int done, int total, const std::string& page) {
        progress.setMaximum(std::max(1, total));
        progress.setValue(done);
        if (!page.empty())
            progress.setLabelText(t("Seite wird erstellt: ", "Generating the page: ") + QString::fromStdString(page));
        QApplication::processEvents();
    };
    callbacks.cancelled = [&] {
        QApplication::processEvents();
        return progress.wasCanceled();
    };
    callbacks.documentFor = [this](int slot) -> editor::PageDocument* {
        for (FrmNotePad* pad : notePads())
            if (pad->tag() == slot && !pad->unloading()) return &pad->document();
        return nullptr;
    };
    editor::QtTextMetrics metrics;
    const wizard::WizardResult r = wizard::runWizard(s, *wizard.plan(), &metrics, callbacks);
    progress.close();
    for (FrmNotePad* pad : notePads())
        if (!pad->unloading()) pad->NeuZeichnen();
    updateTitle();
    if (r.cancelled && r.pagesWritten > 0)
        showStatus(t("Wizzard abgebrochen: ", "Wizard cancelled: ") + QString::number(r.pagesWritten) +
                   t(" Seite(n) gespeichert in ", " page(s) saved in ") + QString::fromStdString(r.albumPath));
    else if (r.ok)
        showStatus(QString::fromStdString(r.albumPath));
}

}  // namespace brindle::shell
