#include "panorama/pano_import.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <system_error>

#include "album/paths.h"
#include "image/jpeg_io.h"
#include "image/picture_io.h"
#include "image/reduce.h"
#include "image/rounding.h"
#include "panorama/pano_temp.h"

namespace brindle::panorama {

namespace {

// Steps per picture: load, scale, save.
constexpr int kStepsPerPicture = 3;

class ImportRun {
  public:
    ImportRun(const std::vector<std::string>& paths, int targetHeight,
              const std::string& programDirectory, const ImageEnv& env,
              const ImportCallbacks& callbacks)
        : paths_(paths),
          targetHeight_(targetHeight),
          dir_(withTrailingSeparator(programDirectory)),
          env_(env),
          cb_(callbacks) {}

    ImportResult run();

  private:
    void status(const std::string& text) const {
        if (cb_.status) cb_.status(text);
    }
    bool cancelled() {
        if (cb_.cancelled && cb_.cancelled()) result_.cancelled = true;
        return result_.cancelled;
    }
    // Each step moves the bar by 950 / 3 / count - 1, as far as that is
    // above 0 (long rows would otherwise move it backwards).
    void step() {
        ++steps_;
        const double perStep = 950.0 / kStepsPerPicture / static_cast<double>(paths_.size()) - 1.0;
        if (cb_.progress) cb_.progress(std::clamp(roundEven(steps_ * perStep), 0, 1000));
    }
    bool fail(std::string message) {
        result_.message = std::move(message);
        return false;
    }
    bool load(const std::string& path, cDIBSection& dib);
    bool importOne(const std::string& path);

    const std::vector<std::string>& paths_;
    int targetHeight_;
    std::string dir_;
    const ImageEnv& env_;
    const ImportCallbacks& cb_;
    ImportResult result_;
    int steps_ = 0;
};

std::string fileName(const std::string& path) {
    std::string dir, name;
    teilePfad(path, dir, name);
    return name;
}

std::string notSavedMessage(Language lang, const std::string& path) {
    return tr(lang, "Das Bild kann nicht gespeichert werden: ", "The picture cannot be saved: ") +
           path;
}

// False when neither reader takes the file, or (with the message set) when
// the copy cannot be written: a source that was no JPEG is kept at once as
// a "BScopy" JPEG, so that later steps read JPEG only.
bool ImportRun::load(const std::string& path, cDIBSection& dib) {
    if (endsWithNoCase(path, "jpg") || endsWithNoCase(path, "jpeg")) {
        if (LoadJPG(dib, path)) return true;
    }
    const PictureFile file = LoadPictureFile(path, env_);
    if (!file.picture) {
        const std::string description = file.message           ? file.message->text
                                        : dateiVorhanden(path) ? "Format nicht lesbar"
                                                               : "Datei nicht vorhanden";
        logLine(env_.log, "FrmBildviewer - erzeugeThumbNail --> Fehler beim laden: " + path + "  " +
                              description);
        return false;
    }
    dib = *file.picture.Handle();
    const std::string copy = panoTempName(dir_, path, kCopyPrefix);
    if (!SaveJPG(dib, copy, kPanoJpegQuality, env_))
        return fail(notSavedMessage(env_.language, copy));
    return true;
}

bool ImportRun::importOne(const std::string& path) {
    const std::string name = fileName(path);
    status("Lade:" + name);
    cDIBSection dib;
    const bool loaded = load(path, dib);
    if (!result_.message.empty()) return false;
    step();
    if (!loaded) return true;  // left out; the log has the line
    if (result_.records.empty()) {
        result_.width = dib.Width();
        result_.height = dib.Height();
    } else if (dib.Width() != result_.width || dib.Height() != result_.height) {
        return fail(sameSizeMessage(env_.language));
    }
    if (cancelled()) return false;

    status("Skalieren:" + name);
    const int height = std::max(1, targetHeight_);
    const int width =
        std::max(1, roundEven(static_cast<double>(dib.Width()) * height / dib.Height()));
    cDIBSection reduced;
    if (!smoothResize(dib, reduced, width, height))
        return fail(notSavedMessage(env_.language, path));
    step();
    if (cancelled()) return false;

    const std::string target = panoTempName(dir_, path, kReducedPrefix);
    status("Speichern:" + name);
    if (!SaveJPG(reduced, target, kPanoJpegQuality, env_))
        return fail(notSavedMessage(env_.language, target));
    step();
    PanoBild record;
    record.datei = path;
    result_.records.push_back(record);
    result_.reduced.push_back(target);
    return !cancelled();
}

// The working copies are named after the file name alone: two different
// sources of one name would overwrite each other's copy and the row would
// silently show one photo twice.
std::string sharedWorkingName(const std::vector<std::string>& paths, const std::string& dir) {
    std::map<std::string, std::string> seen;  // working copy -> source
    for (const std::string& path : paths) {
        const auto [it, fresh] = seen.emplace(panoTempName(dir, path, kReducedPrefix), path);
        if (!fresh && it->second != path) return fileName(path);
    }
    return {};
}

ImportResult ImportRun::run() {
    status("Starte Import:");
    if (cb_.progress) cb_.progress(0);
    if (const std::string name = sharedWorkingName(paths_, dir_); !name.empty()) {
        result_.message = tr(env_.language, "Zwei Bilder haben denselben Dateinamen: ",
                             "Two pictures have the same file name: ") +
                          name +
                          tr(env_.language, ". Bitte benennen Sie eines der Bilder um.",
                             ". Please rename one of them.");
        return result_;
    }
    std::error_code ec;
    std::filesystem::create_directories(dir_ + "PanoTemp", ec);
    if (ec || !std::filesystem::is_directory(dir_ + "PanoTemp")) {
        result_.message =
            tr(env_.language,
               "Der Ordner kann nicht angelegt werden: ", "The folder cannot be created: ") +
            dir_ + "PanoTemp";
        return result_;
    }
    status("Import Bilder");
    for (const std::string& path : paths_) {
        if (cancelled() || !importOne(path)) return result_;
    }
    status("Fertig");
    if (cb_.progress) cb_.progress(1000);
    result_.ok = true;
    return result_;
}

}  // namespace

int importTargetHeight(int viewHeight) { return roundEven(viewHeight * 1.2); }

std::string sameSizeMessage(Language) {
    return "Brindlesee panorama check that not all images have the same size. Rezise the images or "
           "use "
           "other images with the same size.";
}

ImportResult importPictures(const std::vector<std::string>& paths, int targetHeight,
                            const std::string& programDirectory, const ImageEnv& env,
                            const ImportCallbacks& callbacks) {
    return ImportRun(paths, targetHeight, programDirectory, env, callbacks).run();
}

void balanceYOffsets(std::vector<PanoBild>& records) {
    const std::size_t n = records.size();
    if (n == 0) return;
    long long total = 0;
    for (const PanoBild& r : records) total += r.yVersatz;
    const int mean = roundEven(static_cast<double>(total) / static_cast<double>(n));
    for (PanoBild& r : records) r.yMittel = mean;
    for (std::size_t i = 0; i < n; ++i) {
        const std::size_t p = i == 0 ? n - 1 : i - 1;
        records[i].yKorrektur = records[p].yVersatz - records[i].yMittel;
    }
}

}  // namespace brindle::panorama
