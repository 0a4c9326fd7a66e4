// Reading a picture for the split tool, and the tools' messages.
#pragma once

#include <string>

#include "album/language.h"
#include "album/prompter.h"
#include "image/dib_section.h"

namespace brindle::studio {

// A message box's title and text, kept until it is its turn to be shown.
struct ToolMessage {
    std::string title;
    std::string text;
};

// A JPEG through the JPEG reader, anything else (or a JPEG it refused)
// through the general loader. False with the loader's message, or ours,
// in `message`; nothing is shown, so it may run on any thread.
bool readToolPicture(const std::string& path, cDIBSection& dib, Language lang, ToolMessage& message);

// "Fehler beim Schreiben der Datei: " + path, or the English text.
std::string toolWriteErrorText(const std::string& path, Language lang);

// An error message box titled "Fehler" / "Error".
ToolMessage toolError(Language lang, const std::string& text);
void tellToolMessage(Prompter& prompter, const ToolMessage& message);
void tellToolError(Prompter& prompter, Language lang, const std::string& text);

}  // namespace brindle::studio
