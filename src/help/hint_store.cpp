#include "help/hint_store.h"

#include "album/session.h"

namespace brindle::help {

std::string hintKey(int number) { return "Hinweis" + std::to_string(number); }

bool hintSwitchedOff(SettingsStore& store, int number) {
    return store.get(kSettingsApp, kHintSection, hintKey(number)) == "1";
}

void switchHintOff(SettingsStore& store, int number) {
    store.save(kSettingsApp, kHintSection, hintKey(number), "1");
}

std::string hintText(int number, Language lang, const std::string& given) {
    if (number == kMetafileHint)
        return tr(lang,
                  "Das Format wmf oder emf wird von Netscape nicht unterstützt \r\n"
                  "Wir empfehlen die Verwendung von JPEG oder PNG Bildern.",
                  "The format wmf or emf is not supported by Netscape \r\n"
                  "We recommend to use JPEG or PNG pictures.");
    return given;
}

}  // namespace brindle::help
