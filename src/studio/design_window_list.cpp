// The step list, design list files, the picture list and the choosers.
#include <QColorDialog>
#include <QLineEdit>
#include <QListWidget>

#include "studio/design_list.h"
#include "studio/design_panels.h"
#include "studio/design_window.h"

namespace brindle::studio {

namespace {

QColor colourOf(std::uint32_t bgr) { return QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF); }
std::uint32_t bgrOf(const QColor& c) {
    return static_cast<std::uint32_t>(c.red()) | (static_cast<std::uint32_t>(c.green()) << 8) |
           (static_cast<std::uint32_t>(c.blue()) << 16);
}

constexpr const char* kListExtension = ".bsd";

}  // namespace

void DesignWindow::addCurrentLine() {
    const std::string line = panels_->currentLine();
    if (line.empty()) return;
    list_->addItem(QString::fromStdString(line));
    list_->setCurrentRow(list_->count() - 1);
    updateButtons();
}

void DesignWindow::removeLine() {
    const int row = list_->currentRow();
    if (row < 0 || busy_) return;
    delete list_->takeItem(row);
    list_->setCurrentRow(std::min(row, list_->count() - 1));
    updateButtons();
}

void DesignWindow::moveLine(int by) {
    const int row = list_->currentRow();
    const int to = row + by;
    if (row < 0 || to < 0 || to >= list_->count()) return;
    QListWidgetItem* item = list_->takeItem(row);
    list_->insertItem(to, item);
    list_->setCurrentRow(to);
}

void DesignWindow::loadList() {
    FileDialog dialog;
    dialog.title = t("Design-Liste laden", "Load a design list").toStdString();
    dialog.filter = t("Design-Liste (*.bsd)|*.bsd|Alle Dateien|*", "Design list (*.bsd)|*.bsd|All files|*").toStdString();
    const std::string path = prompter_.openFile(dialog);
    if (path.empty()) return;
    const DesignListRead read = readDesignList(path);
    if (!read.ok) {
        prompter_.message(t("Die Design-Liste konnte nicht gelesen werden: ", "The design list could not be read: ")
                                  .toStdString() + path + "\r" + read.error,
                          kButtonsOk | kIconExclamation, t("Fehler", "Error").toStdString());
        return;
    }
    setLines(read.lines);
}

void DesignWindow::saveList() {
    FileDialog dialog;
    dialog.title = t("Design-Liste speichern", "Save the design list").toStdString();
    dialog.filter = t("Design-Liste (*.bsd)|*.bsd", "Design list (*.bsd)|*.bsd").toStdString();
    dialog.proposedName = std::string("Design") + kListExtension;
    std::string path = prompter_.saveFile(dialog);
    if (path.empty()) return;
    // A name typed without its extension gets it, so the open dialog finds the list again.
    const std::size_t slash = path.find_last_of("/\\");
    if (path.find('.', slash == std::string::npos ? 0 : slash + 1) == std::string::npos) path += kListExtension;
    std::string error;
    if (!writeDesignList(path, lines(), &error))
        prompter_.message(t("Fehler beim Schreiben der Datei: ", "Error while writing the file: ").toStdString() + path +
                              "\r" + error,
                          kButtonsOk | kIconExclamation, t("Fehler", "Error").toStdString());
}

std::string DesignWindow::fileFilterPictures() const {
    return t("Bilder|*.jpg;*.jpeg;*.png;*.bmp;*.tif;*.tiff;*.gif;*.pcx;*.tga|Alle Dateien|*",
             "Pictures|*.jpg;*.jpeg;*.png;*.bmp;*.tif;*.tiff;*.gif;*.pcx;*.tga|All files|*")
        .toStdString();
}

void DesignWindow::addPictures() {
    FileDialog dialog;
    dialog.title = t("Bilder hinzufügen", "Add pictures").toStdString();
    dialog.filter = fileFilterPictures();
    dialog.multiSelect = true;
    const std::string answer = prompter_.openFile(dialog);
    if (answer.empty()) return;
    const bool wasEmpty = pictureList_->count() == 0;
    for (const std::string& p : splitFileList(answer)) {
        auto* item = new QListWidgetItem(QString::fromStdString(p.substr(p.find_last_of("/\\") + 1)), pictureList_);
        item->setData(Qt::UserRole, QString::fromStdString(p));
        item->setToolTip(QString::fromStdString(p));
    }
    if (wasEmpty && pictureList_->count() > 0) pictureList_->setCurrentRow(0);
    updateButtons();
}

void DesignWindow::removePicture() {
    const int row = pictureList_->currentRow();
    if (row < 0 || busy_) return;
    delete pictureList_->takeItem(row);
    if (pictureList_->count() == 0) loadTestPicture(-1);
    updateButtons();
}

void DesignWindow::chooseFrameColour() {
    const QColor c = QColorDialog::getColor(colourOf(panels_->frameColour()), this, t("Rahmenfarbe", "Frame colour"));
    if (c.isValid()) panels_->setFrameColour(bgrOf(c));
}

void DesignWindow::chooseTintColour() {
    const QColor c = QColorDialog::getColor(colourOf(panels_->tintColour()), this, t("Farbe", "Colour"));
    if (c.isValid()) panels_->setTintColour(bgrOf(c));
}

void DesignWindow::chooseFrameFile() {
    FileDialog dialog;
    dialog.title = t("Hintergrundbild des Rahmens", "Background picture of the frame").toStdString();
    dialog.filter = fileFilterPictures();
    const std::string path = prompter_.openFile(dialog);
    if (!path.empty()) panels_->setFrameFile(path);
}

void DesignWindow::chooseDirectory() {
    const std::string dir = prompter_.chooseDirectory(t("Zielverzeichnis", "Target directory").toStdString(),
                                                      directory_->text().toStdString());
    if (!dir.empty()) directory_->setText(QString::fromStdString(dir));
}

}  // namespace brindle::studio
