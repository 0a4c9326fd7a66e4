// The picture explorer as the program opens it: from the command line
// alone, or from the main window's Ansicht menu, handing its selection to
// the picture tools.
#pragma once

#include <string>
#include <vector>

#include "album/language.h"
#include "album/prompter.h"
#include "shell/explorer_start.h"

class QWidget;

namespace brindle::explorer {
class FrmBildviewer;
}

namespace brindle::shell {

// Opens the tool an explorer key names ("zeichnen", "redeye", "panorama",
// "Größe", "Teilen") on `files`; "bearbeiten" opens each file in the
// desktop's program for it.
void openExplorerTool(const std::string& key, const std::vector<std::string>& files,
                      Prompter& prompter, Language language, QWidget* parent,
                      const std::string& programDirectory);

// Runs the scanner dialog for one picture into `target`; the written path,
// or empty when nothing was saved.
std::string scanPicture(const std::string& target, Prompter& prompter, Language language,
                        QWidget* parent = nullptr);

// A shown explorer window in start.folder with start.file selected; it
// deletes itself when closed.
explorer::FrmBildviewer* openExplorerWindow(const std::string& programDirectory,
                                            const ExplorerStart& start, Prompter& prompter,
                                            Language language, QWidget* parent = nullptr);

}  // namespace brindle::shell
