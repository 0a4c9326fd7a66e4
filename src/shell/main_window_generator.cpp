// Extras > "Spezialseiten generieren": the generator dialog on the album.
#include "editor/qt_text_metrics.h"
#include "shell/frm_generator.h"
#include "shell/main_window.h"

namespace brindle::shell {

void MainWindow::showGenerator() {
    editor::QtTextMetrics metrics;
    FrmGenerator dialog(*session_, metrics, this);
    connect(&dialog, &FrmGenerator::status, this, [this](const QString& text) { showStatus(text); });
    dialog.exec();
    showStatus("");
}

}  // namespace brindle::shell
