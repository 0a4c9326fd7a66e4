// The program's toolbar and menu icons, drawn here as simple line art.
#pragma once

#include <QIcon>
#include <QString>

namespace brindle::shell {

// Names: "new", "open", "save", "pointer", "picture", "text", "panorama",
// "search", "pictures", "undo", "redo", "cut", "copy", "paste", "delete",
// "alignLeft", "alignCenterH", "alignRight", "alignTop", "alignCenterV",
// "alignBottom", "distributeH", "distributeV", "html", "mail", "page",
// "album", "templates", "options", "bold", "italic", "underline".
QIcon toolIcon(const QString& name);

// The program's own mark, for the window icon and the splash.
QPixmap brandMark(int size);

}  // namespace brindle::shell
