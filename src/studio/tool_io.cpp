#include "studio/tool_io.h"

#include "image/jpeg_io.h"
#include "image/picture_io.h"

namespace brindle::studio {

bool readToolPicture(const std::string& path, cDIBSection& dib, Language lang, ToolMessage& message) {
    if (readerFor(path) == PictureReader::Jpeg && LoadJPG(dib, path)) return true;
    const PictureFile file = LoadPictureFile(path, ImageEnv{lang, {}, true});
    if (file.picture && dib.CreateFromPicture(file.picture)) return true;
    if (file.message && !file.message->text.empty()) {
        message = {file.message->title.empty() ? tr(lang, "Fehler", "Error") : file.message->title,
                   file.message->text};
    } else {
        message = toolError(lang, std::string(tr(lang, "Das Bild kann nicht gelesen werden: ",
                                                 "The picture cannot be read: ")) +
                                      path);
    }
    return false;
}

std::string toolWriteErrorText(const std::string& path, Language lang) {
    return std::string(tr(lang, "Fehler beim Schreiben der Datei: ", "Error while writing the file: ")) + path;
}

ToolMessage toolError(Language lang, const std::string& text) { return {tr(lang, "Fehler", "Error"), text}; }

void tellToolMessage(Prompter& prompter, const ToolMessage& message) {
    prompter.message(message.text, kButtonsOk | kIconCritical, message.title);
}

void tellToolError(Prompter& prompter, Language lang, const std::string& text) {
    tellToolMessage(prompter, toolError(lang, text));
}

}  // namespace brindle::studio
