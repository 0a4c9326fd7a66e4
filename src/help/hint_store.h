// Numbered hints the user can switch off. A hint's box "Diesen Hinweis
// nicht mehr anzeigen" is kept per number in the settings store, so it
// holds across starts.
#pragma once

#include <string>

#include "album/language.h"
#include "album/settings_store.h"

namespace brindle::help {

inline constexpr const char* kHintSection = "Hinweise";
// Metafiles (.wmf, .emf): the browsers of the album do not show them.
inline constexpr int kMetafileHint = 2;

bool hintSwitchedOff(SettingsStore& store, int number);
void switchHintOff(SettingsStore& store, int number);

// The settings key of a hint: "Hinweis2".
std::string hintKey(int number);

// A known hint's text in `lang`; `given` (as the image core words it) for
// any other number.
std::string hintText(int number, Language lang, const std::string& given);

}  // namespace brindle::help
