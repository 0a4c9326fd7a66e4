#include "shell/explorer_launch.h"

#include <QDesktopServices>
#include <QUrl>

#include "explorer/bildviewer_window.h"
#include "media/scan_window.h"
#include "shell/tool_windows.h"

namespace brindle::shell {

void openExplorerTool(const std::string& key, const std::vector<std::string>& files,
                      Prompter& prompter, Language language, QWidget* parent,
                      const std::string& programDirectory) {
    if (key == "bearbeiten") {
        for (const std::string& f : files)
            QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(f)));
        return;
    }
    PictureTool tool = PictureTool::Design;
    if (key == "redeye")
        tool = PictureTool::RedEye;
    else if (key == "panorama")
        tool = PictureTool::Panorama;
    else if (key == "Größe")
        tool = PictureTool::Resize;
    else if (key == "Teilen")
        tool = PictureTool::Split;
    else if (key == "print")
        tool = PictureTool::Print;
    else if (key == "video")
        tool = PictureTool::Video;
    else if (key != "zeichnen")
        return;
    openPictureTool(tool, files, prompter, language, parent, programDirectory);
}

std::string scanPicture(const std::string& target, Prompter& prompter, Language language,
                        QWidget* parent) {
    media::ScanDialog dialog(target, prompter, language, parent);
    if (dialog.exec() != QDialog::Accepted) return {};
    return dialog.savedPath();
}

explorer::FrmBildviewer* openExplorerWindow(const std::string& programDirectory,
                                            const ExplorerStart& start, Prompter& prompter,
                                            Language language, QWidget* parent) {
    auto* window = new explorer::FrmBildviewer(programDirectory, {}, prompter, language, parent);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setToolOpener([window, &prompter, programDirectory](const std::string& key,
                                                                std::vector<std::string> files) {
        openExplorerTool(key, files, prompter, window->language(), window, programDirectory);
    });
    window->setScanner([window, &prompter](const std::string& target) {
        return scanPicture(target, prompter, window->language(), window);
    });
    followToolLanguage(window, [window](Language l) { window->setLanguage(l); });
    if (!start.file.empty())
        window->selectFile(start.file);
    else
        window->showFolder(start.folder);
    window->show();
    return window;
}

}  // namespace brindle::shell
