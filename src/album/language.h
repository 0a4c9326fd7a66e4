// Every user text exists in German and English; the session's language picks one.
#pragma once

#include <string>

namespace brindle {

enum class Language { German, English };

inline const char* tr(Language lang, const char* german, const char* english) {
    return lang == Language::German ? german : english;
}

// "deutsch" / "englisch" as the options file stores them; anything else is German.
inline Language languageFromName(const std::string& name) {
    return name == "englisch" ? Language::English : Language::German;
}
inline const char* languageName(Language lang) { return lang == Language::German ? "deutsch" : "englisch"; }

}  // namespace brindle
