// A scenario: what the player does, tick by tick, read and checked as a whole before the
// game starts, so that a typo on line 900 never leaves half a trace behind.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quillop::replay {

enum class Op {
    Name, Move, Press, Play, Drop, NewGameYes, NewGameNo, Help, CloseHelp, Minimize, Restore,
    Resize, Tick, Snapshot,
    // What a game recorded in the window needs beyond these: the question left open while
    // ticks run (`newgame ask` ... `answer yes`), and a check of where the game got to.
    NewGameAsk, AnswerYes, AnswerNo, Expect
};

struct Command {
    Op op;
    int line = 0;
    double x = 0, y = 0;      // move, press, resize; expect: score, draws
    std::uint64_t count = 0;  // tick; expect: ticks run
    std::string text;         // name, snapshot
    // `during P ...`: the command comes in the P-th wait of the next tick that runs (0: not
    // during a wait).
    int wait = 0;
};

struct Scenario {
    // Set-up, fixed before the program starts.
    double width = 440, height = 300;
    std::uint32_t seed = 0;
    std::optional<std::string> highscoreText;  // stored verbatim, as a settings store holds text
    std::optional<std::string> highscorer;
    std::vector<Command> commands;
    bool wantsSnapshots() const;
};

struct ScenarioError {
    std::string message;  // "line N: what is wrong" or "cannot read scenario FILE: reason"
};

// Throws ScenarioError.
Scenario parseScenario(const std::string& text);
// `path` "-" reads standard input. Throws ScenarioError.
std::string readScenarioFile(const std::string& path);

}  // namespace quillop::replay
