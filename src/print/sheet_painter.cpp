#include "print/sheet_painter.h"

#include <QFile>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <cstring>

#include "image/picture_io.h"

namespace brindle::print {
namespace {

// Both hold 24-bit blue-green-red rows: a copy row by row.
QImage imageOfDib(const cDIBSection& dib) {
    QImage img(dib.Width(), dib.Height(), QImage::Format_BGR888);
    const Surface s = dib.hdc();
    for (int y = 0; y < dib.Height(); ++y)
        std::memcpy(img.scanLine(y), s.row(y), static_cast<std::size_t>(dib.Width()) * 3);
    return img;
}

}  // namespace

bool loadSheetPictures(const std::vector<std::string>& paths, const std::vector<Box>& boxes,
                       std::vector<QImage>& images, std::string& error) {
    std::vector<QImage> loaded;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const PictureFile file = LoadPictureFile(paths[i]);
        if (!file.picture || !file.picture.Handle()) {
            error = paths[i] + ": " + (file.message ? file.message->text : "cannot be read");
            return false;
        }
        const cDIBSection& dib = *file.picture.Handle();
        if (i < boxes.size() && boxes[i].rotated) {
            cDIBSection turned;
            dib.effectBildDrehen90power(1, turned);
            loaded.push_back(imageOfDib(turned));
        } else {
            loaded.push_back(imageOfDib(dib));
        }
    }
    images = std::move(loaded);
    return true;
}

void paintSheet(QPainter& painter, double unitsPerMm, const std::vector<Box>& boxes,
                const std::vector<QImage>& images) {
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (std::size_t i = 0; i < boxes.size() && i < images.size(); ++i) {
        const Box& b = boxes[i];
        const QRectF target(b.left * unitsPerMm, b.top * unitsPerMm, b.width * unitsPerMm,
                            b.height * unitsPerMm);
        painter.drawImage(target, images[i]);
    }
}

bool printSheetToPdf(const std::string& path, Paper paper, bool landscape,
                     const std::vector<Box>& boxes, const std::vector<QImage>& images,
                     std::string& error, int dpi, Language language) {
    const std::string cannot = (language == Language::German ? "Die Datei kann nicht geschrieben werden: "
                                                             : "Cannot write the file: ") + path;
    // Qt's painter only reports "false" for a file it cannot open: ask first.
    QFile probe(QString::fromStdString(path));
    if (!probe.open(QIODevice::WriteOnly)) {
        error = cannot;
        return false;
    }
    probe.close();
    QPdfWriter writer(QString::fromStdString(path));
    writer.setCreator(QStringLiteral("Brindlesee"));
    writer.setResolution(dpi);
    const QPageSize size(paper == Paper::Letter ? QPageSize::Letter : QPageSize::A4);
    writer.setPageLayout(QPageLayout(size, landscape ? QPageLayout::Landscape : QPageLayout::Portrait,
                                     QMarginsF(0, 0, 0, 0), QPageLayout::Millimeter));
    QPainter painter;
    if (!painter.begin(&writer)) {
        error = cannot;
        return false;
    }
    paintSheet(painter, dpi / 25.4, boxes, images);
    if (!painter.end()) {
        error = cannot;
        return false;
    }
    return true;
}

}  // namespace brindle::print
