// The state of one HTML generation run, shared by its writers: where the
// album goes, which files it staged, the yes/no-to-all answers, and the
// services that touch pictures.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "album/prompter.h"
#include "album/session.h"

namespace brindle::html {

// One picture to be written for the web: reduced, framed, prepared for an
// effect or turned.
struct WebPicture {
    std::string source;
    std::string target;
    int height = 0;
    int width = 0;
    int quality = 90;
    std::string frameSpec;
    std::string animationSpec;
    int rotation = 0;
    int boxWidth = 0;
    int boxHeight = 0;
};

struct PictureServices {
    // Writes the picture; false with `error` set when it could not.
    std::function<bool(const WebPicture&, std::string& error)> writeWebPicture;
    // Pixel size of a picture file; false when unknown.
    std::function<bool(const std::string& path, int& width, int& height)> pictureSize;
};

struct HtmlRun {
    HtmlRun(Session& s, std::string outputDirectory, PictureServices pictures = {})
        : session(s), outputDirectory(std::move(outputDirectory)), pictures(std::move(pictures)) {}

    Session& session;
    std::string outputDirectory;  // ends in '/'
    PictureServices pictures;
    bool mailMode = false;
    std::vector<std::string> fileList;  // every generated file, for the mail archive
    std::string usedFiles;              // every staged name followed by ";"
    bool overwriteAll = false;
    bool overwriteNone = false;
    std::string deferredError;          // what went wrong since the last check
    // Files of the output that could not be written (pages, web files,
    // pictures); a run with any is not complete.
    int failedWrites = 0;
    // Web pictures written in this run: output name -> what was drawn into it.
    std::map<std::string, std::string> webPictures;

    AlbumRecord& album() { return session.album(); }
    Prompter& prompter() { return session.prompter(); }
    Language language() const { return session.language(); }
    const std::string& programDirectory() const { return session.state().programDirectory; }
    // Copies an installed file into the output unless it is there already.
    bool copyInstalledFile(const std::string& name, const std::string& targetName = {});
    // Copies an installed file over the output's copy; reports a failure.
    bool replaceInstalledFile(const std::string& name, const std::string& targetName);
};

}  // namespace brindle::html
