// The options, the about box and the HTML album run of the main window.
#include <QApplication>
#include <QCheckBox>
#include <QDesktopServices>
#include <QDialog>
#include <QDialogButtonBox>
#include <QEventLoop>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QUrl>
#include <QVBoxLayout>
#include <atomic>
#include <thread>

#include "album/options_dialog.h"
#include "html/generation_run.h"
#include "html/web_picture.h"
#include "shell/main_window.h"
#include "shell/tool_icons.h"

namespace brindle::shell {

using editor::FrmNotePad;

// frmVorlage in short: language, live move, reduced loading and the grid.
void MainWindow::showOptions() {
    OptionsDialogValues v = currentOptionValues(*session_);
    QDialog dialog(this);
    dialog.setObjectName("frmVorlage");
    dialog.setWindowTitle(t("Optionen", "Options"));
    auto* layout = new QVBoxLayout(&dialog);
    auto* language = new QGroupBox(t("Sprache", "Language"), &dialog);
    auto* de = new QRadioButton("Deutsch", language);
    auto* en = new QRadioButton("English", language);
    (v.language == "englisch" ? en : de)->setChecked(true);
    auto* langRow = new QVBoxLayout(language);
    langRow->addWidget(de);
    langRow->addWidget(en);
    layout->addWidget(language);
    auto* editing = new QGroupBox(t("Bearbeiten", "Editing"), &dialog);
    auto* form = new QFormLayout(editing);
    auto* liveMove = new QCheckBox(t("Elemente beim Ziehen sofort bewegen", "Move elements live while dragging"));
    liveMove->setChecked(v.liveMove);
    auto* reduced = new QCheckBox(t("Bilder verkleinert laden", "Load pictures reduced"));
    reduced->setChecked(v.loadReduced);
    auto* gridShow = new QCheckBox(t("Raster anzeigen", "Show grid"));
    gridShow->setChecked(v.gridShow);
    auto* gridUse = new QCheckBox(t("Am Raster ausrichten", "Snap to grid"));
    gridUse->setChecked(v.gridUse);
    auto* gridW = new QSpinBox;
    auto* gridH = new QSpinBox;
    for (QSpinBox* b : {gridW, gridH}) b->setRange(0, 500);
    gridW->setValue(v.gridWidth);
    gridH->setValue(v.gridHeight);
    form->addRow(liveMove);
    form->addRow(reduced);
    form->addRow(gridShow);
    form->addRow(gridUse);
    form->addRow(t("Rasterbreite", "Grid width"), gridW);
    form->addRow(t("Rasterhöhe", "Grid height"), gridH);
    layout->addWidget(editing);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    buttons->button(QDialogButtonBox::Cancel)->setText(t("Abbrechen", "Cancel"));
    connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    layout->addWidget(buttons);
    if (dialog.exec() != QDialog::Accepted) return;
    v.language = en->isChecked() ? "englisch" : "deutsch";
    v.liveMove = liveMove->isChecked();
    v.loadReduced = reduced->isChecked();
    v.gridShow = gridShow->isChecked();
    v.gridUse = gridUse->isChecked();
    v.gridWidth = gridW->value();
    v.gridHeight = gridH->value();
    OptionsDialogEffects effects;
    effects.switchLanguage = [this] { setLanguage(languageFromName(session_->state().options.language)); };
    effects.redrawPage = [this](int slot) {
        for (FrmNotePad* pad : notePads())
            if (pad->tag() == slot) pad->NeuZeichnen();
    };
    applyOptionsDialog(*session_, v, effects);
}

void MainWindow::showAbout() {
    QMessageBox box(this);
    box.setWindowTitle(t("Info", "About"));
    box.setIconPixmap(brandMark(72));
    box.setText("<b>Brindlesee</b> " + QApplication::applicationVersion());
    box.setInformativeText(t("Digitale Fotoalben gestalten und als HTML-Album veröffentlichen.",
                             "Lay out digital photo albums and publish them as HTML albums."));
    box.exec();
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
