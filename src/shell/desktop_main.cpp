// brindlesee: the desktop program. A splash runs the start-up stages, then
// the main window loads and opens what the command line names.
#include <QApplication>
#include <QTimer>
#include <cstring>
#include <iostream>

#include "album/diagnose.h"
#include "album/options_file.h"
#include "explorer/explorer_options.h"
#include "help/help_center.h"
#include "shell/app_icon.h"
#include "shell/explorer_launch.h"
#include "shell/main_window.h"
#include "shell/qt_prompter.h"
#include "shell/qt_settings_store.h"
#include "shell/splash_window.h"
#include "shell/startup.h"
#include "shell/tool_windows.h"
#include "shell/wizard_window.h"

#ifndef BRINDLESEE_VERSION
#define BRINDLESEE_VERSION "0"
#endif

namespace {

const char* const kHelp =
    "usage: brindlesee [ALBUM.apr | PAGE.apg | PICTURE | /r|/g|/b PICTURE... | /brindleseeexplorer [FOLDER]]\n"
    "\n"
    "Brindlesee lays out digital photo albums and makes HTML albums of them.\n"
    "\n"
    "  brindlesee                      a new album from the template Album.vor\n"
    "  brindlesee ALBUM.apr            opens the album and its first page\n"
    "  brindlesee PAGE.apg             a new album, with the page added to it\n"
    "  brindlesee /r PICTURE...        red-eye correction for the pictures\n"
    "  brindlesee /g PICTURE...        resizing of the pictures\n"
    "  brindlesee /b PICTURE...        photo design for the pictures\n"
    "  brindlesee /brindleseeexplorer [FOLDER]\n"
    "                                  the picture explorer, in FOLDER or the last folder\n"
    "  brindlesee PICTURE              the picture explorer in the picture's folder,\n"
    "                                  with the picture selected\n"
    "\n"
    "A path with blanks may stand in double quotes. A picture tool named without a\n"
    "valid picture asks whether to start normally. The picture explorer and the tools\n"
    "started by their switches run alone, without the album program; the program ends\n"
    "with their last window. The whole command line is written to bef.txt in the\n"
    "program directory at every start.\n"
    "\n"
    "The program directory is $BRINDLESEE_HOME, else $XDG_DATA_HOME/brindlesee/,\n"
    "else ~/.local/share/brindlesee/. It holds the options (optionen), Temp/ and,\n"
    "when testmodus.txt exists there, the log Brindt.txt; the picture explorer keeps\n"
    "its settings in option.loo and its thumbnails in Thumbnails/. Recent files are kept\n"
    "with QSettings under the application \"Brindlesee\".\n"
    "\n"
    "  -h, --help     this text\n"
    "  --version      the version\n";

bool isTool(const std::string& mode) { return !mode.empty(); }

}  // namespace

int main(int argc, char** argv) {
    using namespace brindle;
    std::vector<std::string> args(argv + 1, argv + argc);
    for (const std::string& a : args) {
        if (a == "--help" || a == "-h") {
            std::cout << kHelp;
            return 0;
        }
        if (a == "--version") {
            std::cout << "brindlesee " << BRINDLESEE_VERSION << "\n";
            return 0;
        }
    }
    QApplication app(argc, argv);
    QApplication::setApplicationName("Brindlesee");
    QApplication::setOrganizationName("Brindlesee");
    QApplication::setApplicationVersion(BRINDLESEE_VERSION);
    QApplication::setDesktopFileName(shell::kApplicationId);
    shell::applyLook();
    // Files named relative to where we were started, before the main window
    // moves into the program directory.
    args = absoluteFileArguments(args);

    const std::string prog = resolveProgramDirectory();
    const std::string resources = installedResourceDirectory();
    QApplication::setWindowIcon(shell::applicationIcon(resources));
    seedProgramDirectory(prog, resources);
    shell::QtSettingsStore settings;
    shell::MainWindow* window = nullptr;
    Language language = Language::German;
    shell::QtPrompter prompter([&] { return static_cast<QWidget*>(window); },
                               [&] { return window ? window->session().language() : language; });
    // F1 in any window, the album program's and the tools' alike.
    help::HelpCenter helpCenter(QString::fromStdString(installedResourceDirectory() + "help/"),
                                [&] { return window ? window->session().language() : language; });
    helpCenter.install();

    shell::SplashWindow splash;
    splash.show();
    splash.setStatus("Laden der Optionen ...");
    const OptionsRecord options = loadOptions(prog);
    language = languageFromName(options.language);
    splash.setStatus("Laden der Optionen H ...");
    splash.setStatus("Laden der Optionen W ...");
    splash.setStatus("Laden der Optionen F ...");
    splash.setStatus("Eintragen der Send To ...");
    splash.setStatus("Verknüpfen der Dateien ...");
    writeCommandFile(prog, commandLineFromArgs(args));
    StartDecision start = decideStart(args, prompter, language);
    if (start.quit) return 0;
    if (const auto tool = shell::toolOfStartMode(start.startMode)) {
        // A tool started alone: its windows only, the program ends with the last one.
        splash.close();
        if (!shell::openPictureTool(*tool, start.toolPictures, prompter, language).empty()) return app.exec();
        args.clear();
    } else if (isTool(start.startMode)) {
        splash.setStatus("Brindlesee Explorer starten ...");
        splash.close();
        // The explorer alone: the program ends with its last window.
        const std::string last = explorer::loadExplorerOptions(prog).folder;
        const ExplorerStart where = explorerStart(args, start, defaultExplorerFolder(last), prompter, language);
        shell::openExplorerWindow(prog, where, prompter, language);
        return app.exec();
    }
    splash.setStatus("MDI Form laden ...");
    shell::MainWindow main(prog, prompter, settings, diagnoseSink(prog));
    window = &main;
    main.session().hooks().closeSplash = [&splash] { splash.close(); };
    main.MDIForm_Load(args, [&splash](const QString& status) {
        if (splash.isVisible()) splash.setStatus(status);
    });
    splash.close();
    // Without a file to open the wizard greets, unless its first step was told not to.
    if (args.empty() && !shell::FrmWizzard::hiddenAtStart(settings)) QTimer::singleShot(0, &main, [&main] { main.showWizard(); });
    return app.exec();
}
