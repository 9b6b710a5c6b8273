// The command line: --help and --version answer on the terminal and end the program
// before any window or display connection exists; anything else unknown is refused.
#pragma once

#include <QStringList>
#include <QString>
#include <optional>

namespace quillop {

struct CommandLine {
    // Set when the command line was answered or refused: the program ends with it.
    std::optional<int> exitStatus;
    QString replayFile;  // --replay: a recorded game to play back
    QString traceFile;   // --trace: where to write the state after every tick
};

// Until Qt has taken its own options (-platform, -display, ...) out of the arguments, an
// unknown option may still be one of them and is let through.
CommandLine readCommandLine(const QStringList& arguments, bool qtOptionsRemoved);

}  // namespace quillop
