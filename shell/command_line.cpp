#include "shell/command_line.h"

#include <QCommandLineParser>
#include <cstdio>

#include "shell/version.h"

namespace quillop {

std::optional<int> answerCommandLine(const QStringList& arguments, bool qtOptionsRemoved) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Quillop, a mouse-driven arcade game: knock the puck into the Arses with the paddle."));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Displays this help."));
    const QCommandLineOption version({QStringLiteral("v"), QStringLiteral("version")},
                                     QStringLiteral("Displays the version."));
    parser.addOption(help);
    parser.addOption(version);
    const bool understood = parser.parse(arguments);

    if (parser.isSet(help)) {
        // Qt names the program by its path, or by a placeholder while no application
        // exists; the usage line names it as it is typed.
        QString text = parser.helpText();
        text.replace(0, text.indexOf(QLatin1Char('\n')), QStringLiteral("Usage: Quillop2 [options]"));
        std::fputs(qPrintable(text), stdout);
        return 0;
    }
    if (parser.isSet(version)) {
        std::printf("%s %s\n", kTitle, kVersion);
        return 0;
    }
    if (!qtOptionsRemoved) return std::nullopt;
    QString refusal;
    if (!understood)
        refusal = parser.errorText();
    else if (!parser.positionalArguments().isEmpty())
        refusal = QStringLiteral("Unexpected argument '%1'.").arg(parser.positionalArguments().constFirst());
    if (refusal.isEmpty()) return std::nullopt;
    std::fprintf(stderr, "Quillop2: %s\nTry 'Quillop2 --help' for the options.\n", qPrintable(refusal));
    return 2;
}

}  // namespace quillop
