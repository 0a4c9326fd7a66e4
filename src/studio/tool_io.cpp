#include "studio/tool_io.h"

#include "image/jpeg_io.h"
#include "image/picture_io.h"

namespace brindle::studio {

bool readToolPicture(const std::string& path, cDIBSection& dib, Prompter& prompter, Language lang) {
    if (readerFor(path) == PictureReader::Jpeg && LoadJPG(dib, path)) return true;
    const PictureFile file = LoadPictureFile(path, ImageEnv{lang, {}, true});
    if (file.picture && dib.CreateFromPicture(file.picture)) return true;
    if (file.message && !file.message->text.empty()) {
        prompter.message(file.message->text, kButtonsOk | kIconCritical,
                         file.message->title.empty() ? tr(lang, "Fehler", "Error") : file.message->title);
    } else {
        tellToolError(prompter, lang,
                      std::string(tr(lang, "Das Bild kann nicht gelesen werden: ", "The picture cannot be read: ")) +
                          path);
    }
    return false;
}

std::string toolWriteErrorText(const std::string& path, Language lang) {
    return std::string(tr(lang, "Fehler beim Schreiben der Datei: ", "Error while writing the file: ")) + path;
}

void tellToolError(Prompter& prompter, Language lang, const std::string& text) {
    prompter.message(text, kButtonsOk | kIconCritical, tr(lang, "Fehler", "Error"));
}

}  // namespace brindle::studio
