// Quillop: the windowed program.
#include <cstdio>
#include <exception>

#include "shell/command_line.h"
#include "shell/desktop_identity.h"
#include "shell/game_application.h"
#include "shell/quillop_app.h"
#include "shell/replay_shelf.h"
#include "shell/startup_log.h"
#include "shell/window_replay.h"

int main(int argc, char** argv) {
    quillop::startupMark("main");
    // --help and --version answer from a terminal, also one without a display.
    QStringList arguments;
    for (int i = 0; i < argc; ++i) arguments << QString::fromLocal8Bit(argv[i]);
    if (const auto status = quillop::readCommandLine(arguments, false).exitStatus) return *status;
    // A frame changes a few small tiles 64 times a second. Through a shared-memory image
    // every frame waits for the X server's reply before painting the next; sending the
    // tiles over the socket costs less. Whoever sets the variable keeps their choice.
    if (!qEnvironmentVariableIsSet("QT_XCB_NO_MITSHM")) qputenv("QT_XCB_NO_MITSHM", "1");
    quillop::GameApplication app(argc, argv);
    quillop::startupMark("application");
    const quillop::CommandLine line = quillop::readCommandLine(QApplication::arguments(), true);
    if (line.exitStatus) return *line.exitStatus;
    quillop::takeDesktopIdentity();
    // Closing the about box must not end the program; only the frame's unload does.
    QApplication::setQuitOnLastWindowClosed(false);
    quillop::QuillopApp::Options options;
    options.traceFile = line.traceFile;
    std::optional<quillop::replay::Scenario> recording;
    if (!line.replayFile.isEmpty()) {
        recording = quillop::readRecording(line.replayFile);
        if (!recording) return 2;
        quillop::prepareReplay(*recording, options);
    } else {
        options.replaysFolder = quillop::ReplayShelf::defaultFolder();
    }
    quillop::QuillopApp quillop(options);
    quillop::startupMark("windows built");
    quillop.Main();
    std::unique_ptr<quillop::WindowReplay> replay;
    if (recording) {
        replay = std::make_unique<quillop::WindowReplay>(quillop, *recording);
        replay->start();
    }
    quillop::startupMark("shown");
    return app.exec();
}
