#include "shell/app_icon.h"

#include <QFileInfo>

namespace brindle::shell {

QIcon applicationIcon(const std::string& resourceDirectory) {
    QIcon icon;
    if (!resourceDirectory.empty()) {
        const QString hicolor = QString::fromStdString(resourceDirectory) + "../icons/hicolor/";
        for (int size : {16, 24, 32, 48, 64, 128, 256}) {
            const QString file = hicolor + QStringLiteral("%1x%1/apps/").arg(size) + kApplicationId + ".png";
            if (QFileInfo::exists(file)) icon.addFile(file, QSize(size, size));
        }
    }
    return icon.isNull() ? QIcon::fromTheme(kApplicationId) : icon;
}

}  // namespace brindle::shell
