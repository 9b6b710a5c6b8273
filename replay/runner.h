// Plays a scenario's commands on a game: the headless one of quillop-sim, or the window's
// when it replays a recording. A recorded game nests some commands: those `during` a tick's
// waits run inside that tick, and a question left open (`newgame ask`) takes the commands
// that follow up to its `answer`.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "game/program.h"
#include "replay/scenario.h"

namespace quillop::replay {

// What the commands act on. The target calls back the runner's wait listener at the first
// pump of every wait inside a tick, and its question answerer when New Game asks while
// the runner has left the question open.
class ReplayTarget {
public:
    virtual ~ReplayTarget() = default;
    virtual void move(double x, double y) = 0;
    virtual void press(double x, double y) = 0;
    virtual void play() = 0;
    virtual void drop() = 0;
    // File, New Game; its question, if it comes, goes to the question answerer.
    virtual void askNewGame() = 0;
    virtual void help() = 0;
    virtual void closeHelp() = 0;
    virtual void minimize() = 0;
    virtual void restore() = 0;
    virtual void resize(double width, double height) = 0;
    virtual void setName(const std::string& name) = 0;
    // One timer event: true if the timer was enabled and a tick ran.
    virtual bool timerEvent() = 0;
    virtual int waitsInLastTick() const = 0;
    virtual std::uint64_t ticksRun() const = 0;
    virtual Program& program() = 0;
    // Throws SnapshotError.
    virtual void snapshot(const std::string& file) = 0;
    virtual void setWaitListener(std::function<void(int wait)> listener) = 0;
    virtual void setQuestionAnswerer(std::function<bool()> answerer) = 0;
};

// A tick's waits, counted for a target: the listener hears of each wait at its first pump.
class WaitCounter {
public:
    void listen(std::function<void(int wait)> listener) { listener_ = std::move(listener); }
    void tickBegins() { waits_ = 0; fresh_ = false; }
    void waitBegins() { ++waits_; fresh_ = true; }
    void pumped() {
        if (std::exchange(fresh_, false) && listener_) listener_(waits_);
    }
    int waits() const { return waits_; }

private:
    std::function<void(int)> listener_;
    int waits_ = 0;
    bool fresh_ = false;
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
    ScenarioRunner(const std::vector<Command>& commands, ReplayTarget& target);
    // Plays the commands up to and including the next timer event; false once all are
    // played. Throws ReplayError, SnapshotError, and whatever the rules throw.
    bool step();
    void runAll() {
        while (step()) {
        }
    }
    // Called after every tick that ran.
    std::function<void()> afterTick;
    // The command being played (null before the first).
    const Command* current() const { return current_; }

private:
    // One command, or the next timer event of a `tick`; true when a timer event was used.
    bool playNext();
    void execute(const Command& c);
    void timerEvent();
    void playDuringWait(int wait);
    bool answerQuestion();
    void checkExpect(const Command& c);
    void checkEnd();

    const std::vector<Command>& commands_;
    ReplayTarget& target_;
    std::size_t next_ = 0;
    std::uint64_t ticksLeft_ = 0;  // of the `tick` command being played
    const Command* current_ = nullptr;
    std::deque<const Command*> during_;  // for the next tick that runs
    const Command* question_ = nullptr;  // the `newgame ask` whose question is open
    std::optional<bool> answerGiven_;    // by the `newgame yes|no` being played
};

}  // namespace quillop::replay
