#include "editor/display_picture.h"

#include <QFileInfo>
#include <QImageReader>
#include <cstring>

#include "editor/qimage_dib.h"
#include "image/image_info.h"
#include "image/picture_io.h"

namespace brindle::editor {

QImage loadDisplayPicture(const QString& path, QSize box, bool reduced) {
    if (path.isEmpty()) return {};
    // Every picture comes in through the image core; reduced, a JPEG is
    // decoded at a DCT scale near the box before it is stretched.
    const std::string file = path.toStdString();
    if (reduced && box.isValid() && !box.isEmpty()) {
        PictureHolder holder;
        int w = box.width(), h = box.height();
        if (Loadpicture(holder, file, w, h) && holder.picture) return imageOfDib(*holder.picture.Handle());
    }
    PictureFile loaded = LoadPictureFile(file);
    if (loaded.picture) return imageOfDib(*loaded.picture.Handle());
    // Types the core does not read (metafiles, icons) still show on screen.
    QImageReader reader(path);
    reader.setAutoTransform(false);
    return reader.read();
}

QString displayPath(const std::string& stored, const std::string& albumDirectory,
                    const std::string& programDirectory) {
    if (stored.empty()) return {};
    const QString path = QString::fromStdString(stored);
    if (QFileInfo::exists(path)) return path;
    const QString name = QFileInfo(QString(path).replace('\\', '/')).fileName();
    for (const std::string& dir : {albumDirectory, programDirectory}) {
        const QString candidate = QString::fromStdString(dir) + name;
        if (!dir.empty() && QFileInfo::exists(candidate)) return candidate;
    }
    return path;
}

QSize pictureFileSize(const QString& path) {
    CImageInfo info;
    if (info.ReadImageInfo(path.toStdString())) return {info.Width, info.Height};
    QImageReader reader(path);
    return reader.size();
}

}  // namespace brindle::editor
