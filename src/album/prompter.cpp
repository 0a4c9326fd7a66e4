#include "album/prompter.h"

namespace brindle {

std::string albumFileFilter(bool german) {
    return german ? "Alle Dateien (*.*)|*.*|Bilder|*.jpg;*.jpeg;*.gif;*.png;*.bmp|Albumvorlage (*.vor)|*.vor|"
                    "Albumseite (*.apg)|*.apg|Album Projekt (*.apr)|*.apr"
                  : "All files (*.*)|*.*|Pictures|*.jpg;*.jpeg;*.gif;*.png;*.bmp|Album template (*.vor)|*.vor|"
                    "Album page (*.apg)|*.apg|Album project (*.apr)|*.apr";
}

}  // namespace brindle
