#include "shell/desktop_identity.h"

#include <QApplication>
#include <QIcon>
#include <QPixmap>

#include "platform/qt/picture_set.h"
#include "shell/version.h"

namespace quillop {

void takeDesktopIdentity() {
    // Qt makes the application name the window class. The settings file does not follow
    // it: its name is fixed, so no player loses a best score to a renaming.
    QApplication::setApplicationName(QString::fromLatin1(kAppId));
    QApplication::setDesktopFileName(QString::fromLatin1(kAppId));
    QApplication::setOrganizationName(QString::fromLatin1(kTitle));
    QApplication::setApplicationVersion(QString::fromLatin1(kVersion));
    // Built from the two pictures directly: a QIcon given the file names would have Qt load
    // every image plugin to find the one that reads them.
    QIcon icon;
    for (const char* path : {":/icons/quillop_32.xpm", ":/icons/quillop_16.xpm"})
        icon.addPixmap(QPixmap::fromImage(readXpm(QString::fromLatin1(path))));
    QApplication::setWindowIcon(icon);
}

}  // namespace quillop
