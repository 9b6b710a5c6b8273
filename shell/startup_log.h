// How long the start-up takes, step by step, for the performance check.
#pragma once

namespace quillop {

// With QUILLOP_STARTUP_LOG=1, prints to stderr how many milliseconds after the first call
// (at the top of main) each step of the start-up was reached.
void startupMark(const char* what);

}  // namespace quillop
