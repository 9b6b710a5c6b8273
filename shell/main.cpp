// Quillop: the windowed program.
#include <QApplication>
#include <QIcon>
#include <QPixmap>

#include "platform/qt/picture_set.h"
#include "shell/command_line.h"
#include "shell/quillop_app.h"
#include "shell/version.h"

int main(int argc, char** argv) {
    quillop::startupMark("main");
    // --help and --version answer from a terminal, also one without a display.
    QStringList arguments;
    for (int i = 0; i < argc; ++i) arguments << QString::fromLocal8Bit(argv[i]);
    if (const auto status = quillop::answerCommandLine(arguments, false)) return *status;
    // A frame changes a few small tiles 64 times a second. Through a shared-memory image
    // every frame waits for the X server's reply before painting the next; sending the
    // tiles over the socket costs less. Whoever sets the variable keeps their choice.
    if (!qEnvironmentVariableIsSet("QT_XCB_NO_MITSHM")) qputenv("QT_XCB_NO_MITSHM", "1");
    QApplication app(argc, argv);
    quillop::startupMark("application");
    if (const auto status = quillop::answerCommandLine(QApplication::arguments(), true)) return *status;
    // The application name is the X11 window class; the desktop file name the Wayland app
    // id. Both are the id of the desktop entry, so docks show the game's own icon. (The
    // settings file has its own fixed name.)
    QApplication::setApplicationName(QString::fromLatin1(quillop::kAppId));
    QApplication::setDesktopFileName(QString::fromLatin1(quillop::kAppId));
    QApplication::setOrganizationName(QStringLiteral("Quillop"));
    QApplication::setApplicationVersion(QString::fromLatin1(quillop::kVersion));
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
