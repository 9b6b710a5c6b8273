// Resource paths.
#include "resources/assets.h"

namespace quillop::assets {

QString spritePath(const char* pictureName) {
    return QStringLiteral(":/sprites/%1.xpm").arg(QLatin1String(pictureName));
}

QString soundPath(const QString& fileName) {
    return QStringLiteral(":/sounds/") + fileName;
}

}  // namespace quillop::assets
