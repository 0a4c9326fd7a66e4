// Pictures between the image core and Qt: both hold 24-bit blue-green-red
// rows, so a conversion is a copy row by row.
#pragma once

#include <QImage>

#include "image/dib_section.h"

namespace brindle::editor {

QImage imageOfDib(const cDIBSection& dib);
// An empty section when the image is null or memory runs out.
cDIBSection dibOfImage(const QImage& image);

}  // namespace brindle::editor
