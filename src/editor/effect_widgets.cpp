#include "editor/effect_widgets.h"

namespace brindle::editor {

QWidget* createEffectWidget(const std::string&, const QImage&, QWidget*) { return nullptr; }

}  // namespace brindle::editor
