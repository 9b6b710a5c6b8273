// The command line: --help and --version answer on the terminal and end the program
// before any window or display connection exists; anything else unknown is refused.
#pragma once

#include <QStringList>
#include <optional>

namespace quillop {

// The exit status when the command line was answered or refused, nothing when the game
// should start. Until Qt has taken its own options (-platform, -display, ...) out of the
// arguments, an unknown option may still be one of them and is let through.
std::optional<int> answerCommandLine(const QStringList& arguments, bool qtOptionsRemoved);

}  // namespace quillop
