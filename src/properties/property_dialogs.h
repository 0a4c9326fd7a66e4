// The property dialogs of a page window: one per element kind and one for
// the page. Each returns true when the user pressed OK and something was
// changed (recorded as one "ändern" step where the element has undo).
#pragma once

#include <optional>

#include "editor/elements.h"

class QWidget;

namespace brindle {
class Session;
class Prompter;
namespace editor {
class FrmNotePad;
}
}  // namespace brindle

namespace brindle::properties {

struct DialogContext {
    editor::FrmNotePad& pad;
    Session& session;
    Prompter& prompter;
    QWidget* parent = nullptr;
};

// Chooses the dialog by the element's kind; the page's own dialog without one.
bool showProperties(DialogContext& context, std::optional<editor::ElementRef> ref);

bool showTextProperties(DialogContext& context, int index);      // FrmFrageText
bool showPictureProperties(DialogContext& context, int index);   // frmFrageBild
bool showPanoramaProperties(DialogContext& context, int index);  // FrmFragePanVo
bool showSearchProperties(DialogContext& context, int index);
bool showBackgroundProperties(DialogContext& context);           // frmFrageHintergrund
bool showNavigationProperties(DialogContext& context);           // FrmFrageNavigat

}  // namespace brindle::properties
