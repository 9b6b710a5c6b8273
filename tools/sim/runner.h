// Plays a scenario's commands on a headless game and writes a trace line after every tick.
// A game recorded in the window nests some commands: those `during` a tick's waits run
// inside that tick, and a question left open (`newgame ask`) takes the commands that follow
// up to its `answer`.
#pragma once

#include <cstdio>
#include <deque>
#include <string>
#include <vector>

#include "tools/sim/headless.h"
#include "tools/sim/scenario.h"

namespace quillop::sim {

// Trace lines are gathered and written in large pieces: a long scenario writes gigabytes.
class TraceOut {
public:
    explicit TraceOut(std::FILE* to) : to_(to) { buffer_.reserve(kFlushAt + 4096); }
    ~TraceOut() { flush(); }
    std::string& buffer() { return buffer_; }
    void lineDone() {
        if (buffer_.size() >= kFlushAt) flush();
    }
    void flush();

private:
    static constexpr std::size_t kFlushAt = 1 << 20;
    std::FILE* to_;
    std::string buffer_;
};

// A recording that does not play back as it was recorded.
struct ReplayError {
    int line;
    std::string message;
};
// A snapshot that could not be written.
struct SnapshotError {
    int line;
    std::string message;
};

class ScenarioRunner {
public:
    ScenarioRunner(const std::vector<Command>& commands, HeadlessGame& game, TraceOut& out);
    // Throws ReplayError, SnapshotError, and whatever the rules throw.
    void run();
    // The command being played (null before the first).
    const Command* current() const { return current_; }

private:
    void execute(const Command& c);
    void runTicks(const Command& c);
    void playDuringWait(int wait);
    bool answerQuestion();
    void checkExpect(const Command& c);

    const std::vector<Command>& commands_;
    HeadlessGame& game_;
    TraceOut& out_;
    std::size_t next_ = 0;
    const Command* current_ = nullptr;
    std::deque<const Command*> during_;  // for the next tick that runs
    const Command* question_ = nullptr;  // the `newgame ask` whose question is open
};

}  // namespace quillop::sim
