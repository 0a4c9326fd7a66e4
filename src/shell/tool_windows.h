// The picture tools as windows of their own: opened from the main window's
// Werkzeug menu with pictures from a file dialog, and at start-up by the
// switches /r, /g and /b without the album program.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "album/language.h"
#include "album/prompter.h"

class QWidget;

namespace brindle::shell {

enum class PictureTool { RedEye, Resize, Design, Split, Panorama, Print, Video };

// The tool a start mode ("RedEye", "Rezise", "Bildbearbeitung") names.
std::optional<PictureTool> toolOfStartMode(const std::string& startMode);

// The open dialog of the tools: several pictures of the types they read.
FileDialog toolPictureDialog(Language language, const std::string& startDirectory);

// Opens the tool on `pictures`; the red-eye tool gets one window per
// picture. The windows delete themselves when closed and follow
// setToolLanguage. Returns the windows opened (none without pictures).
// The panorama tool keeps its working copies under `programDirectory`, the
// video maker its bitmaps.
std::vector<QWidget*> openPictureTool(PictureTool tool, const std::vector<std::string>& pictures, Prompter& prompter,
                                      Language language, QWidget* parent = nullptr,
                                      const std::string& programDirectory = {});

// Asks for pictures, then opens the tool; nothing when the user breaks off.
std::vector<QWidget*> choosePicturesForTool(PictureTool tool, Prompter& prompter, Language language,
                                            const std::string& startDirectory, QWidget* parent = nullptr,
                                            const std::string& programDirectory = {});

// Switches every open tool window to `language`.
void setToolLanguage(Language language);
// Lets a window opened elsewhere (the explorer) follow setToolLanguage.
void followToolLanguage(QWidget* window, std::function<void(Language)> setLanguage);

}  // namespace brindle::shell
