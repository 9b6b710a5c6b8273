// One trace line: the game state after a tick, as a JSON object with a fixed key order.
#pragma once

#include <cstdint>
#include <string>

#include "game/program.h"

namespace quillop::replay {

// Appends the line, newline included, to `out`: the state after tick number `ticksRun`, with
// the frame's title as the window shows it.
void appendTraceLine(std::string& out, Program& program, std::uint64_t ticksRun, const std::string& caption);

}  // namespace quillop::replay
