// Start-up without windows: the program directory, the command line and
// what it starts, the main window's core load steps, and the end.
#pragma once

#include <string>
#include <vector>

#include "album/prompter.h"
#include "album/session.h"

namespace brindle {

// $BRINDLESEE_HOME, else $XDG_DATA_HOME/brindlesee/, else
// ~/.local/share/brindlesee/; always ending in '/'.
std::string resolveProgramDirectory();
// Where the installed resources are: $BRINDLESEE_RESOURCES, else found
// from this executable's place (see resourceDirectoryBeside); "" when none.
std::string installedResourceDirectory();
// The resources of a program at `executable`: <bin>/../share/brindlesee when
// installed, <bin>/../../resources/install in the build tree; "" when neither
// holds them. Nothing of the build's path is compiled in.
std::string resourceDirectoryBeside(const std::string& executable);
// Creates the program directory and copies every installed file it lacks.
bool seedProgramDirectory(const std::string& programDirectory, const std::string& resourceDirectory);

// The arguments joined as one line, those with blanks in double quotes.
std::string commandLineFromArgs(const std::vector<std::string>& args);
// Writes the whole command line to "bef.txt", replacing what was there.
void writeCommandFile(const std::string& programDirectory, const std::string& commandLine);
// A line naming one existing file is quoted first; then a part in double
// quotes is one argument and every other blank-separated word is one.
std::vector<std::string> splitCommandLine(const std::string& commandLine);

// Picture and media suffixes that make an argument a file to show.
bool hasMediaSuffix(const std::string& path);

struct StartDecision {
    std::string startMode;  // "", "RedEye", "Rezise", "Bildbearbeitung", "brindleseeexplorer"
    std::string explorerFile;          // file the explorer starts on
    std::string pictureDirectory;      // its folder, when one was given
    std::vector<std::string> toolPictures;
    bool quit = false;                 // the user chose not to start normally
};

// Switches match whole arguments ("/r", "/g", "/b", "/brindleseeexplorer"),
// as paths here begin with '/'.
StartDecision decideStart(const std::vector<std::string>& args, Prompter& prompter, Language lang);

// What the main window opens of its arguments: the one file they name as a
// whole line, else the first album among them, else every page among them
// (a file manager hands over all files selected); empty for a new album.
std::vector<std::string> albumFilesToOpen(const std::vector<std::string>& args);
// Arguments naming existing files or folders made absolute, since the main
// window changes the working directory to the program directory.
std::vector<std::string> absoluteFileArguments(std::vector<std::string> args);

// The main window's load from "Komando auswerten": the album or page named
// by the command line (see albumFilesToOpen), else a new album. Creates
// "Temp" when missing.
void startAlbumApplication(Session& session, const std::vector<std::string>& args);

// At the end: "Temp/*.tmp" removed, the options written to "optionen".
void finishSession(Session& session);

}  // namespace brindle
