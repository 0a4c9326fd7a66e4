// The animations of pictures as live widgets: play mode lays them over the
// canvas, and the picture dialog shows them as previews. They play the
// same effects, from the same parameters, as the HTML album's runtime.
#pragma once

#include <QImage>
#include <QWidget>
#include <string>

namespace brindle::editor {

// A widget playing the animation `animationSpec` over `picture` (the
// element's picture at its shown size), or nullptr when the spec names no
// animation. The widget runs at the screen's rate and stops when hidden.
QWidget* createEffectWidget(const std::string& animationSpec, const QImage& picture, QWidget* parent);

}  // namespace brindle::editor
