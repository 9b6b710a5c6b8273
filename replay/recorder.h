// Writes a game played in the window as a scenario: what the player and the window did,
// tick by tick, in the lines quillop-sim and the window's replay read. Whatever came during
// a tick's waits is numbered by the wait, and a question left open while ticks ran is
// written as `newgame ask` ... `answer`, so the recording replays the game exactly.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quillop::replay {

class GameRecorder {
public:
    struct Start {
        double width = 0, height = 0;  // the playfield's inner area when it loaded
        std::uint32_t seed = 0;        // the generator's state after the load's seeding
        double highscore = 0;
        std::string highscorer;
    };
    explicit GameRecorder(const Start& start);

    // A command as a scenario line without its `during` part: "move 10 20", "play".
    void command(const std::string& line);
    void tickBegins();
    void tickEnds();
    void waitBegins();
    // File, New Game: the click, the question's answer if one was asked, the end.
    void newGameClicked();
    void questionAnswered(bool yes);
    void newGameDone();
    // Where the game has got to: replaying checks it.
    void expect(std::uint64_t ticks, double score, std::uint64_t draws);

    // Everything recorded so far, as the text of a scenario file.
    std::string text() const;

    static std::string number(double value);

private:
    void writeLine(const std::string& line);
    void flushTicks();
    bool inWait() const { return inTick_ && wait_ > 0; }

    std::string out_;
    std::uint64_t pendingTicks_ = 0;
    bool inTick_ = false;
    int wait_ = 0;
    std::vector<std::string> beforeTick_;  // lines that came during the running tick
    bool newGameInWait_ = false;
    bool answer_ = true;
};

}  // namespace quillop::replay
