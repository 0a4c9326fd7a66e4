// The options, the about box and the HTML album run of the main window.
#include <QApplication>
#include <QDesktopServices>
#include <QEventLoop>
#include <QLabel>
#include <QProgressDialog>
#include <QUrl>
#include <atomic>
#include <thread>

#include "album/options_dialog.h"
#include "help/about_window.h"
#include "help/hint_window.h"
#include "html/generation_run.h"
#include "html/web_picture.h"
#include "shell/main_window.h"
#include "shell/options_window.h"
#include "shell/tool_icons.h"

namespace brindle::shell {

using editor::FrmNotePad;

// frmVorlage: OK applies every control through the album flows.
void MainWindow::showOptions() {
    OptionsWindow dialog(currentOptionValues(*session_), session_->language(), this);
    if (dialog.exec() != QDialog::Accepted) return;
    const OptionsDialogValues v = dialog.values();
    OptionsDialogEffects effects;
    effects.switchLanguage = [this] { setLanguage(languageFromName(session_->state().options.language)); };
    effects.redrawPage = [this](int slot) {
        for (FrmNotePad* pad : notePads())
            if (pad->tag() == slot) pad->NeuZeichnen();
    };
    applyOptionsDialog(*session_, v, effects);
    if (dialog.templateWanted()) saveCatalogueTemplate();
}

// frmHinweis, unless its box was ticked before.
void MainWindow::showHint(int number, const std::string& text) {
    if (hintShowing_) return;
    hintShowing_ = true;
    help::HintWindow::showHint(settings_, number, text, session_->language(), this);
    hintShowing_ = false;
}

void MainWindow::showAbout() {
    // The program's own icon where it is installed, else the drawn mark.
    const QIcon icon = QApplication::windowIcon();
    const QPixmap mark = icon.isNull() ? brandMark(96) : icon.pixmap(96, 96);
    help::AboutWindow about(session_->language(), mark.isNull() ? brandMark(96) : mark, this);
    about.exec();
}

// ---------------------------------------------------------------- HTML album

void MainWindow::HTMLAlbumGenerieren(bool mail) {
    Session& s = *session_;
    if (!s.AlbumSpeichern(false)) return;
    const std::string offered = html::offeredDirectory(s, mail);
    const std::string chosen =
        prompter_.chooseDirectory(t("Brindlesee Verzeichnis wählen", "Brindlesee Choose an Directory"), offered);
    if (chosen.empty()) return;
    html::HtmlRun run(s, chosen, html::defaultPictureServices());
    run.mailMode = mail;

    QProgressDialog dialog(t("Generieren aller HTML Dokumente", "Generating of all HTML Documents"),
                           t("Abbrechen", "Cancel"), 0, 100, this);
    dialog.setObjectName("FrmHTMLGenerator");
    dialog.setWindowTitle("Brindlesee");
    dialog.setWindowModality(Qt::WindowModal);
    dialog.setMinimumDuration(0);
    dialog.setAutoClose(false);
    dialog.setAutoReset(false);
    std::atomic<bool> cancel{false};
    connect(&dialog, &QProgressDialog::canceled, this, [&cancel] { cancel = true; });
    html::GenerationCallbacks callbacks;
    callbacks.progress = [&](int done, int total, const std::string& status) {
        QMetaObject::invokeMethod(&dialog, [&dialog, this, done, total, status] {
            dialog.setMaximum(std::max(1, total));
            dialog.setValue(done);
            lblStatus_->setText(QString::fromStdString(status));
        }, Qt::QueuedConnection);
    };
    callbacks.cancelled = [&cancel] { return cancel.load(); };

    // Open pages show a still picture while the run reads their records.
    for (FrmNotePad* pad : notePads()) pad->canvas()->setFrozen(true);
    QEventLoop loop;
    bool ok = false;
    std::thread worker([&] {
        ok = html::generiereAlbum(run, callbacks);
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    dialog.show();
    loop.exec();
    worker.join();
    for (FrmNotePad* pad : notePads()) pad->canvas()->setFrozen(false);
    dialog.close();
    showStatus("");
    if (!ok) return;
    // Each failed file was already named; an album with holes is not offered.
    if (run.failedWrites > 0) {
        const std::string count = std::to_string(run.failedWrites);
        prompter_.message(std::string(t("Das HTML-Album ist unvollständig: ", "The HTML album is incomplete: ")) + count +
                              t(" Datei(en) konnten nicht geschrieben werden in ", " file(s) could not be written in ") +
                              chosen,
                          kButtonsOk | kIconExclamation, t("Fehler", "Error"));
        return;
    }
    if (mail) {
        if (isTrue(s.album().openDefaultMail)) QDesktopServices::openUrl(QUrl(QString::fromStdString(html::mailtoUrl(run))));
        return;
    }
    const std::string start = html::framesetPath(run);
    const int answer = prompter_.message(
        std::string(t("Das HTML-Album wurde erstellt:", "The HTML album has been generated:")) + "\r" + start + "\r\r" +
            t("Möchten Sie es jetzt im Browser ansehen?", "Would you like to view it in the browser now?"),
        kButtonsYesNo | kIconQuestion, "Brindlesee");
    if (answer == kYes) QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(start)));
}

}  // namespace brindle::shell
