#include "shell/command_line.h"

#include <QCommandLineParser>
#include <cstdio>

#include "shell/version.h"

namespace quillop {

CommandLine readCommandLine(const QStringList& arguments, bool qtOptionsRemoved) {
    CommandLine line;
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Quillop, a mouse-driven arcade game: knock the puck into the Arses with the paddle."));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Displays this help."));
    const QCommandLineOption version({QStringLiteral("v"), QStringLiteral("version")},
                                     QStringLiteral("Displays the version."));
    const QCommandLineOption replay(QStringLiteral("replay"),
                                    QStringLiteral("Plays a recorded game back; the settings are left alone."),
                                    QStringLiteral("file"));
    const QCommandLineOption trace(QStringLiteral("trace"),
                                   QStringLiteral("Writes the state of the game after every tick to the file."),
                                   QStringLiteral("file"));
    parser.addOption(help);
    parser.addOption(version);
    parser.addOption(replay);
    parser.addOption(trace);
    const bool understood = parser.parse(arguments);

    if (parser.isSet(help)) {
        // Qt names the program by its path, or by a placeholder while no application
        // exists; the usage line names it as it is typed.
        QString text = parser.helpText();
        text.replace(0, text.indexOf(QLatin1Char('\n')), QStringLiteral("Usage: Quillop2 [options]"));
        std::fputs(qPrintable(text), stdout);
        line.exitStatus = 0;
        return line;
    }
    if (parser.isSet(version)) {
        std::printf("%s %s\n", kTitle, kVersion);
        line.exitStatus = 0;
        return line;
    }
    line.replayFile = parser.value(replay);
    line.traceFile = parser.value(trace);
    if (!qtOptionsRemoved) return line;
    QString refusal;
    if (!understood)
        refusal = parser.errorText();
    else if (!parser.positionalArguments().isEmpty())
        refusal = QStringLiteral("Unexpected argument '%1'.").arg(parser.positionalArguments().constFirst());
    if (refusal.isEmpty()) return line;
    std::fprintf(stderr, "Quillop2: %s\nTry 'Quillop2 --help' for the options.\n", qPrintable(refusal));
    line.exitStatus = 2;
    return line;
}

}  // namespace quillop
