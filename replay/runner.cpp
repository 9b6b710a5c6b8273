#include "replay/runner.h"

#include <utility>

#include "replay/recorder.h"

namespace quillop::replay {

ScenarioRunner::ScenarioRunner(const std::vector<Command>& commands, ReplayTarget& target)
    : commands_(commands), target_(target) {
    target_.setWaitListener([this](int wait) { playDuringWait(wait); });
    target_.setQuestionAnswerer([this] { return answerQuestion(); });
}

bool ScenarioRunner::step() {
    while (ticksLeft_ > 0 || next_ < commands_.size()) {
        if (playNext()) return true;
    }
    checkEnd();
    return false;
}

bool ScenarioRunner::playNext() {
    if (ticksLeft_ > 0) {
        --ticksLeft_;
        timerEvent();
        return true;
    }
    current_ = &commands_[next_++];
    if (current_->op == Op::Tick) {
        ticksLeft_ = current_->count;
        return false;
    }
    execute(*current_);
    return false;
}

void ScenarioRunner::checkEnd() {
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
        case Op::Name: target_.setName(c.text); break;
        case Op::Move: target_.move(c.x, c.y); break;
        case Op::Press: target_.press(c.x, c.y); break;
        case Op::Play: target_.play(); break;
        case Op::Drop: target_.drop(); break;
        case Op::NewGameYes:
        case Op::NewGameNo: {
            const std::optional<bool> outer = std::exchange(answerGiven_, c.op == Op::NewGameYes);
            target_.askNewGame();
            answerGiven_ = outer;
            break;
        }
        case Op::NewGameAsk: {
            const Command* outer = std::exchange(question_, &c);
            target_.askNewGame();
            question_ = outer;
            break;
        }
        case Op::AnswerYes:
        case Op::AnswerNo: throw ReplayError{c.line, "answer, but no question is open"};
        case Op::Help: target_.help(); break;
        case Op::CloseHelp: target_.closeHelp(); break;
        case Op::Minimize: target_.minimize(); break;
        case Op::Restore: target_.restore(); break;
        case Op::Resize: target_.resize(c.x, c.y); break;
        case Op::Tick: break;  // its timer events are played one by one

        case Op::Expect: checkExpect(c); break;
        case Op::Snapshot:
            try {
                target_.snapshot(c.text);
            } catch (const SnapshotError& e) {
                throw SnapshotError{c.line, e.message};
            }
            break;
    }
}

void ScenarioRunner::timerEvent() {
    if (!target_.timerEvent()) return;
    if (!during_.empty())
        throw ReplayError{during_.front()->line, "during " + std::to_string(during_.front()->wait) +
                                                     ", but the tick that follows has only " +
                                                     std::to_string(target_.waitsInLastTick()) + " waits"};
    if (afterTick) afterTick();
}

void ScenarioRunner::playDuringWait(int wait) {
    while (!during_.empty() && during_.front()->wait <= wait) {
        Command now = *during_.front();
        during_.pop_front();
        now.wait = 0;
        execute(now);
    }
}

bool ScenarioRunner::answerQuestion() {
    if (answerGiven_) return *answerGiven_;
    // The ticks that ran while the question was up are played here, inside it.
    while (ticksLeft_ > 0 || next_ < commands_.size()) {
        const Command* c = ticksLeft_ == 0 ? &commands_[next_] : nullptr;
        if (c && c->wait == 0 && (c->op == Op::AnswerYes || c->op == Op::AnswerNo)) {
            current_ = c;
            ++next_;
            return c->op == Op::AnswerYes;
        }
        playNext();
    }
    throw ReplayError{question_ ? question_->line : 0, "New Game asks its question, but no answer follows"};
}

void ScenarioRunner::checkExpect(const Command& c) {
    Program& program = target_.program();
    const std::uint64_t ticks = target_.ticksRun();
    const double score = program.mod.Score;
    const double draws = static_cast<double>(program.gorvane().rnd().draws());
    if (ticks == c.count && score == c.x && draws == c.y) return;
    throw ReplayError{c.line, "the game has run " + std::to_string(ticks) + " ticks with score " +
                                  GameRecorder::number(score) + " and " + GameRecorder::number(draws) +
                                  " draws; expected " + std::to_string(c.count) + ", " + GameRecorder::number(c.x) +
                                  " and " + GameRecorder::number(c.y)};
}

}  // namespace quillop::replay
