#include "replay/recorder.h"

#include <charconv>

namespace quillop::replay {

GameRecorder::GameRecorder(const Start& start) {
    out_ = "# Quillop recorded game\n";
    writeLine("size " + number(start.width) + " " + number(start.height));
    writeLine("seed " + std::to_string(start.seed));
    writeLine("highscore " + number(start.highscore));
    writeLine("highscorer " + start.highscorer);
}

// The shortest decimal that reads back as the same double; the scenario format has no
// exponent, so fixed notation.
std::string GameRecorder::number(double value) {
    char buffer[400];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed);
    return std::string(buffer, result.ptr);
}

void GameRecorder::writeLine(const std::string& line) {
    out_ += line;
    out_ += '\n';
}

void GameRecorder::flushTicks() {
    if (pendingTicks_ == 0) return;
    writeLine("tick " + std::to_string(pendingTicks_));
    pendingTicks_ = 0;
}

void GameRecorder::command(const std::string& line) {
    if (inTick_) {
        // It has to be in place before the tick's own line, which is written when it ends.
        beforeTick_.push_back(wait_ > 0 ? "during " + std::to_string(wait_) + " " + line : line);
        return;
    }
    flushTicks();
    writeLine(line);
}

void GameRecorder::tickBegins() {
    inTick_ = true;
    wait_ = 0;
}

void GameRecorder::tickEnds() {
    inTick_ = false;
    if (!beforeTick_.empty()) {
        flushTicks();
        for (const std::string& line : beforeTick_) writeLine(line);
        beforeTick_.clear();
    }
    ++pendingTicks_;
}

void GameRecorder::waitBegins() {
    if (inTick_) ++wait_;
}

void GameRecorder::newGameClicked() {
    newGameInWait_ = inWait();
    answer_ = true;
    // Ticks may run while the question is up; they belong between the ask and the answer.
    if (!newGameInWait_) command("newgame ask");
}

void GameRecorder::questionAnswered(bool yes) {
    answer_ = yes;
    if (!newGameInWait_) command(yes ? "answer yes" : "answer no");
}

void GameRecorder::newGameDone() {
    // No tick runs inside a wait, so a New Game there is whole: its answer, if it asked.
    if (newGameInWait_) command(answer_ ? "newgame yes" : "newgame no");
    newGameInWait_ = false;
}

void GameRecorder::expect(std::uint64_t ticks, double score, std::uint64_t draws) {
    command("expect " + std::to_string(ticks) + " " + number(score) + " " + std::to_string(draws));
}

std::string GameRecorder::text() const {
    std::string all = out_;
    if (pendingTicks_ > 0) all += "tick " + std::to_string(pendingTicks_) + "\n";
    return all;
}

}  // namespace quillop::replay
