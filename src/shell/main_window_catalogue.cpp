// The template catalogue of the main window: opening it, a new album from
// one of its templates, and saving the album's look into it.
#include <QApplication>
#include <QProgressDialog>

#include "album/templates.h"
#include "image/template_preview.h"
#include "shell/album_explorer.h"
#include "shell/catalogue_window.h"
#include "shell/main_window.h"

namespace brindle::shell {

using editor::FrmNotePad;

CatalogueWindow* MainWindow::catalogueWindow() const { return catalogue_; }

void MainWindow::showCatalogue() {
    if (catalogue_) {
        catalogue_->raise();
        return;
    }
    catalogue_ = new CatalogueWindow(*session_, this);
    catalogue_->setAttribute(Qt::WA_DeleteOnClose);
    connect(catalogue_, &CatalogueWindow::albumLoaded, this, [this] {
        for (FrmNotePad* pad : notePads()) pad->canvas()->reloadPage();
        explorer_->AktualisiereAlbumExplorer();
        updateTitle();
    });
    catalogue_->open();
}

bool MainWindow::saveCatalogueTemplate() {
    const bool german = session_->language() == Language::German;
    const std::string sheet = session_->state().programDirectory + kPreviewSheetPicture;
    auto painter = [this, german, &sheet](const std::string& jpegPath, const auto&) {
        QProgressDialog progress(QString(), QString(), 0, 7, this);
        progress.setObjectName("frmFortschritt");
        progress.setWindowTitle(t("Speichern der Vorlage", "Saving the template"));
        progress.setWindowModality(Qt::WindowModal);
        progress.setMinimumDuration(0);
        progress.setMinimumWidth(360);
        const char* const* steps = previewSteps(german);
        const bool ok = zeichneVorlagenVorschau(session_->album(), sheet, jpegPath, [&](int step) {
            progress.setLabelText(QString::fromUtf8(steps[step]));
            progress.setValue(step);
            QApplication::processEvents();
        });
        progress.setValue(7);
        return ok;
    };
    const bool saved = speichereKatalogVorlage(*session_, painter);
    if (catalogue_) catalogue_->refresh();
    return saved;
}

}  // namespace brindle::shell
