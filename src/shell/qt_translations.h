// Qt's own dialogs (file, folder, colour, font, print) in the session's
// language, from the translations Debian ships in qt6-translations-l10n.
#pragma once

#include "album/language.h"

namespace brindle::shell {

// Installs the German catalogue, or takes it away for English. False when
// German is wanted but the catalogue is not installed.
bool useQtTranslations(Language language);

}  // namespace brindle::shell
