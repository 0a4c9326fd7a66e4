#include "properties/property_dialogs.h"

namespace brindle::properties {

bool showProperties(DialogContext& context, std::optional<editor::ElementRef> ref) {
    if (!ref) return showBackgroundProperties(context);
    switch (ref->kind) {
        case editor::Kind::Text: return showTextProperties(context, ref->index);
        case editor::Kind::Bild: return showPictureProperties(context, ref->index);
        case editor::Kind::Panorama: return showPanoramaProperties(context, ref->index);
        case editor::Kind::Suchmaschine: return showSearchProperties(context, ref->index);
    }
    return false;
}

}  // namespace brindle::properties
