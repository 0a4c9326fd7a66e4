#include "editor/display_picture.h"

#include <QFileInfo>
#include <QImageReader>

namespace brindle::editor {

QImage loadDisplayPicture(const QString& path, QSize box, bool reduced) {
    if (path.isEmpty()) return {};
    QImageReader reader(path);
    reader.setAutoTransform(false);  // the album shows files as they are stored
    const QSize full = reader.size();
    if (reduced && box.isValid() && full.isValid() && (full.width() > box.width() || full.height() > box.height()))
        reader.setScaledSize(full.scaled(box, Qt::KeepAspectRatioByExpanding).boundedTo(full));
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
    QImageReader reader(path);
    return reader.size();
}

}  // namespace brindle::editor
