#include "editor/qimage_dib.h"

#include <cstring>

namespace brindle::editor {

QImage imageOfDib(const cDIBSection& dib) {
    QImage img(dib.Width(), dib.Height(), QImage::Format_BGR888);
    const Surface s = dib.hdc();
    for (int y = 0; y < dib.Height(); ++y)
        std::memcpy(img.scanLine(y), s.row(y), static_cast<std::size_t>(dib.Width()) * 3);
    return img;
}

cDIBSection dibOfImage(const QImage& image) {
    cDIBSection dib;
    const QImage bgr = image.convertToFormat(QImage::Format_BGR888);
    if (bgr.isNull() || !dib.Create(bgr.width(), bgr.height())) return dib;
    for (int y = 0; y < bgr.height(); ++y)
        std::memcpy(dib.hdc().row(y), bgr.constScanLine(y), static_cast<std::size_t>(bgr.width()) * 3);
    return dib;
}

}  // namespace brindle::editor
