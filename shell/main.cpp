// Quillop: the windowed program.
#include <QApplication>
#include <QIcon>
#include <QPixmap>

#include "platform/qt/picture_set.h"
#include "shell/quillop_app.h"

int main(int argc, char** argv) {
    quillop::startupMark("main");
    // A frame changes a few small tiles 64 times a second. Through a shared-memory image
    // every frame waits for the X server's reply before painting the next; sending the
    // tiles over the socket costs less. Whoever sets the variable keeps their choice.
    if (!qEnvironmentVariableIsSet("QT_XCB_NO_MITSHM")) qputenv("QT_XCB_NO_MITSHM", "1");
    QApplication app(argc, argv);
    quillop::startupMark("application");
    QApplication::setApplicationName(QStringLiteral("Quillop"));
    QApplication::setOrganizationName(QStringLiteral("Quillop"));
    QApplication::setApplicationVersion(QStringLiteral("2.0.0"));
    // The frame's icon, taken over by every window that loads after it.
    // Built from the two pictures directly: a QIcon given the file names would have Qt load
    // every image plugin to find the one that reads them.
    QIcon icon;
    for (const char* path : {":/icons/quillop_32.xpm", ":/icons/quillop_16.xpm"})
        icon.addPixmap(QPixmap::fromImage(quillop::readXpm(QString::fromLatin1(path))));
    QApplication::setWindowIcon(icon);
    // Closing the about box must not end the program; only the frame's unload does.
    QApplication::setQuitOnLastWindowClosed(false);
    quillop::QuillopApp quillop;
    quillop::startupMark("windows built");
    quillop.Main();
    quillop::startupMark("shown");
    return app.exec();
}
