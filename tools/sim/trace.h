// One trace line: the game state after a tick, as a JSON object with a fixed key order.
#pragma once

#include <string>

#include "tools/sim/headless.h"

namespace quillop::sim {

// Appends the line, newline included, to `out`.
void appendTraceLine(std::string& out, HeadlessGame& game);

}  // namespace quillop::sim
