// The video maker's user texts, German and English.
#pragma once

#include <string>

#include "album/language.h"
#include "image/image_env.h"

namespace brindle::media {

inline constexpr const char* kVideoTitle = "Brindlesee Videomaker";

inline ImageMessage differentFormatMessage(Language lang) {
    return {kVideoTitle,
            tr(lang, "Gewähltes Bitmap hat ein unterschiedliches Format!",
               "Chosen bitmap file is a different format!")};
}

// The title stays German in both languages, as the program always had it.
inline ImageMessage unsupportedFileMessage(Language lang) {
    return {"Fehler", tr(lang, "Diese Datei wird nicht unterstützt.", "This filetype is not supported.")};
}

inline ImageMessage firstBitmapMessage(Language lang) {
    return {kVideoTitle,
            tr(lang, "Laden es ersten Bitmaps gescheitert!", "Could not load first bitmap file in list!")};
}

inline ImageMessage writeErrorMessage(Language lang) {
    return {kVideoTitle, tr(lang, "Beim schreiben der Datei ist ein Fehler aufgetreten.",
                            "There was an error writing the file.")};
}

inline ImageMessage videoTypeMessage(Language lang) {
    return {kVideoTitle, tr(lang, "Videos werden als .avi oder .mp4 geschrieben.",
                            "Videos are written as .avi or .mp4.")};
}

inline std::string provideStatus(Language lang) {
    return tr(lang, "Bitte warten, die Bitmaps werden bereitgestellt",
              "Please wait while the bitmaps will be provided");
}

inline std::string frameSavedStatus(Language lang, int index) {
    const std::string n = std::to_string(index);
    return lang == Language::German ? "Frame Nummer " + n + " gespeichert"
                                    : "Frame number " + n + " saved";
}

inline std::string finishedStatus(Language lang) { return tr(lang, "Fertig!", "Finished!"); }

}  // namespace brindle::media
