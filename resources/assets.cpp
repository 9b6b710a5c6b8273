// Resource paths and the program icon.
#include "resources/assets.h"

namespace quillop::assets {

QString spritePath(const char* pictureName) {
    return QStringLiteral(":/sprites/%1.xpm").arg(QLatin1String(pictureName));
}

QString soundPath(const QString& fileName) {
    return QStringLiteral(":/sounds/") + fileName;
}

QIcon programIcon() {
    QIcon icon;
    icon.addFile(QStringLiteral(":/icons/quillop_32.xpm"), QSize(32, 32));
    icon.addFile(QStringLiteral(":/icons/quillop_16.xpm"), QSize(16, 16));
    return icon;
}

}  // namespace quillop::assets
