#include "tools/sim/runner.h"

#include <charconv>

#include "platform/qt/image_surface.h"
#include "tools/sim/snapshot.h"
#include "tools/sim/trace.h"

namespace quillop::sim {
namespace {

std::string numberText(double v) {
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, v, std::chars_format::fixed);
    return std::string(buffer, result.ptr);
}

}  // namespace

void TraceOut::flush() {
    if (!buffer_.empty()) std::fwrite(buffer_.data(), 1, buffer_.size(), to_);
    buffer_.clear();
    std::fflush(to_);
}

ScenarioRunner::ScenarioRunner(const std::vector<Command>& commands, HeadlessGame& game, TraceOut& out)
    : commands_(commands), game_(game), out_(out) {
    game_.setWaitListener([this](int wait) { playDuringWait(wait); });
    game_.setQuestionAnswerer([this] { return answerQuestion(); });
}

void ScenarioRunner::run() {
    while (next_ < commands_.size()) {
        current_ = &commands_[next_++];
        execute(*current_);
    }
    if (!during_.empty())
        throw ReplayError{during_.front()->line, "during " + std::to_string(during_.front()->wait) +
                                                     ", but no tick follows"};
}

void ScenarioRunner::execute(const Command& c) {
    if (c.wait > 0) {
        during_.push_back(&c);
        return;
    }
    switch (c.op) {
        case Op::Name: game_.setName(c.text); break;
        case Op::Move: game_.move(c.x, c.y); break;
        case Op::Press: game_.press(c.x, c.y); break;
        case Op::Play: game_.play(); break;
        case Op::Drop: game_.drop(); break;
        case Op::NewGameYes: game_.newGame(true); break;
        case Op::NewGameNo: game_.newGame(false); break;
        case Op::NewGameAsk: {
            const Command* outer = std::exchange(question_, &c);
            game_.askNewGame();
            question_ = outer;
            break;
        }
        case Op::AnswerYes:
        case Op::AnswerNo: throw ReplayError{c.line, "answer, but no question is open"};
        case Op::Help: game_.help(); break;
        case Op::CloseHelp: game_.closeHelp(); break;
        case Op::Minimize: game_.minimize(); break;
        case Op::Restore: game_.restore(); break;
        case Op::Resize: game_.resize(c.x, c.y); break;
        case Op::Tick: runTicks(c); break;
        case Op::Expect: checkExpect(c); break;
        case Op::Snapshot: {
            out_.flush();
            std::string error;
            if (!writeSnapshot(game_.imageSurface()->image(), game_.playfield().shapePuck, c.text, error))
                throw SnapshotError{c.line, "cannot write snapshot " + c.text + ": " + error};
            break;
        }
    }
}

void ScenarioRunner::runTicks(const Command& c) {
    for (std::uint64_t k = 0; k < c.count; ++k) {
        if (!game_.tick()) continue;
        if (!during_.empty())
            throw ReplayError{during_.front()->line, "during " + std::to_string(during_.front()->wait) +
                                                         ", but the tick that follows has only " +
                                                         std::to_string(game_.waitsInLastTick()) + " waits"};
        appendTraceLine(out_.buffer(), game_.program(), game_.ticksRun(), game_.host().frameCaption);
        out_.lineDone();
    }
}

void ScenarioRunner::playDuringWait(int wait) {
    while (!during_.empty() && during_.front()->wait <= wait) {
        const Command* c = during_.front();
        during_.pop_front();
        Command now = *c;
        now.wait = 0;
        execute(now);
    }
}

bool ScenarioRunner::answerQuestion() {
    while (next_ < commands_.size()) {
        const Command& c = commands_[next_++];
        current_ = &c;
        if (c.wait == 0 && (c.op == Op::AnswerYes || c.op == Op::AnswerNo)) return c.op == Op::AnswerYes;
        execute(c);
    }
    throw ReplayError{question_ ? question_->line : 0, "New Game asks its question, but no answer follows"};
}

void ScenarioRunner::checkExpect(const Command& c) {
    const std::uint64_t ticks = game_.ticksRun();
    const double score = game_.program().mod.Score;
    const double draws = static_cast<double>(game_.playfield().rnd().draws());
    if (ticks == c.count && score == c.x && draws == c.y) return;
    throw ReplayError{c.line, "the game has run " + std::to_string(ticks) + " ticks with score " + numberText(score) +
                                  " and " + numberText(draws) + " draws; expected " + std::to_string(c.count) +
                                  ", " + numberText(c.x) + " and " + numberText(c.y)};
}

}  // namespace quillop::sim
