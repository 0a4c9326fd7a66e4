// Reading a picture for the resize and split tools, and their messages.
#pragma once

#include <string>

#include "album/language.h"
#include "album/prompter.h"
#include "image/dib_section.h"

namespace brindle::studio {

// A JPEG through the JPEG reader, anything else (or a JPEG it refused)
// through the general loader. On failure the loader's message, or one of
// ours, is told through `prompter` and false comes back.
bool readToolPicture(const std::string& path, cDIBSection& dib, Prompter& prompter, Language lang);

// "Fehler beim Schreiben der Datei: " + path, or the English text.
std::string toolWriteErrorText(const std::string& path, Language lang);

// An error message box titled "Fehler" / "Error".
void tellToolError(Prompter& prompter, Language lang, const std::string& text);

}  // namespace brindle::studio
