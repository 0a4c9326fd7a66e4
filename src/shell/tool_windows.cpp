#include "shell/tool_windows.h"

#include <QPointer>
#include <QWidget>
#include <functional>
#include <utility>

#include "media/avi_maker_window.h"
#include "panorama/make_pano_window.h"
#include "print/print_sheet_window.h"
#include "studio/design_window.h"
#include "studio/red_eye_window.h"
#include "studio/resize_window.h"
#include "studio/split_window.h"

namespace brindle::shell {

namespace {

struct OpenTool {
    QPointer<QWidget> window;
    std::function<void(Language)> setLanguage;
};

std::vector<OpenTool>& openTools() {
    static std::vector<OpenTool> tools;
    return tools;
}

template <class Window>
QWidget* keep(Window* window, QWidget* parent) {
    window->setAttribute(Qt::WA_DeleteOnClose);
    // A tool stays a window of its own, also when the main window opened it.
    if (parent) window->setWindowFlag(Qt::Window, true);
    std::erase_if(openTools(), [](const OpenTool& t) { return t.window.isNull(); });
    openTools().push_back({window, [window](Language l) { window->setLanguage(l); }});
    window->show();
    return window;
}

}  // namespace

std::optional<PictureTool> toolOfStartMode(const std::string& startMode) {
    if (startMode == "RedEye") return PictureTool::RedEye;
    if (startMode == "Rezise") return PictureTool::Resize;
    if (startMode == "Bildbearbeitung") return PictureTool::Design;
    return std::nullopt;
}

FileDialog toolPictureDialog(Language language, const std::string& startDirectory) {
    FileDialog d;
    d.title = tr(language, "Bilder auswählen", "Choose pictures");
    d.filter = std::string(tr(language, "Bilder", "Pictures")) +
               "|*.jpg;*.jpeg;*.png;*.bmp;*.gif;*.tif;*.tiff;*.pcx;*.tga;*.psd;*.ppm;*.pgm;*.pbm|" +
               tr(language, "Alle Dateien", "All files") + "|*";
    d.startDirectory = startDirectory;
    d.multiSelect = true;
    return d;
}

std::vector<QWidget*> openPictureTool(PictureTool tool, const std::vector<std::string>& pictures, Prompter& prompter,
                                      Language language, QWidget* parent, const std::string& programDirectory) {
    std::vector<QWidget*> windows;
    if (pictures.empty()) return windows;
    switch (tool) {
        case PictureTool::RedEye:
            for (const std::string& p : pictures)
                windows.push_back(keep(new studio::RedEyeWindow(p, prompter, language, parent), parent));
            break;
        case PictureTool::Resize:
            windows.push_back(keep(new studio::ResizeWindow(pictures, prompter, language, parent), parent));
            break;
        case PictureTool::Design:
            windows.push_back(keep(new studio::DesignWindow(pictures, prompter, language, parent), parent));
            break;
        case PictureTool::Split:
            windows.push_back(keep(new studio::SplitWindow(pictures, prompter, language, parent), parent));
            break;
        case PictureTool::Print:
            windows.push_back(keep(new print::PrintSheetWindow(pictures, prompter, language, parent), parent));
            break;
        case PictureTool::Video:
            windows.push_back(keep(
                new media::AviMakerWindow(pictures, programDirectory, prompter, language, parent), parent));
            break;
        case PictureTool::Panorama:
            windows.push_back(keep(
                new panorama::MakePanoWindow(pictures, programDirectory, prompter, language, parent), parent));
            break;
    }
    return windows;
}

std::vector<QWidget*> choosePicturesForTool(PictureTool tool, Prompter& prompter, Language language,
                                            const std::string& startDirectory, QWidget* parent,
                                            const std::string& programDirectory) {
    const std::string answer = prompter.openFile(toolPictureDialog(language, startDirectory));
    if (answer.empty()) return {};
    return openPictureTool(tool, splitFileList(answer), prompter, language, parent, programDirectory);
}

void followToolLanguage(QWidget* window, std::function<void(Language)> setLanguage) {
    std::erase_if(openTools(), [](const OpenTool& t) { return t.window.isNull(); });
    openTools().push_back({window, std::move(setLanguage)});
}

void setToolLanguage(Language language) {
    auto& tools = openTools();
    std::erase_if(tools, [](const OpenTool& t) { return t.window.isNull(); });
    for (const OpenTool& t : tools) t.setLanguage(language);
}

}  // namespace brindle::shell
