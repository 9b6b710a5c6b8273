// Quillop: the windowed program.
#include <QApplication>

#include "shell/command_line.h"
#include "shell/desktop_identity.h"
#include "shell/quillop_app.h"

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
    quillop::takeDesktopIdentity();
    // Closing the about box must not end the program; only the frame's unload does.
    QApplication::setQuitOnLastWindowClosed(false);
    quillop::QuillopApp quillop;
    quillop::startupMark("windows built");
    quillop.Main();
    quillop::startupMark("shown");
    return app.exec();
}
