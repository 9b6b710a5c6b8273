// quillop-sim: plays a scenario without windows and writes the game state after every tick.
#include <cstdio>
#include <exception>
#include <string>

#include "game/base/utf8_text.h"
#include "tools/sim/headless.h"
#include "replay/runner.h"
#include "replay/scenario.h"
#include "replay/trace.h"

using namespace quillop;
using namespace quillop::sim;
using namespace quillop::replay;

namespace {

// Trace lines are gathered and written in large pieces: a long scenario writes gigabytes.
class TraceOut {
public:
    TraceOut() { buffer_.reserve(kFlushAt + 4096); }
    ~TraceOut() { flush(); }
    std::string& buffer() { return buffer_; }
    void lineDone() {
        if (buffer_.size() >= kFlushAt) flush();
    }
    void flush() {
        if (!buffer_.empty()) std::fwrite(buffer_.data(), 1, buffer_.size(), stdout);
        buffer_.clear();
        std::fflush(stdout);
    }

private:
    static constexpr std::size_t kFlushAt = 1 << 20;
    std::string buffer_;
};

int run(const Scenario& scenario) {
    GameSetup setup;
    setup.width = scenario.width;
    setup.height = scenario.height;
    setup.seed = scenario.seed;
    setup.highscoreText = scenario.highscoreText;
    setup.highscorer = scenario.highscorer;
    // Drawing costs time; only a scenario that takes pictures of the field pays for it.
    HeadlessGame game(setup, scenario.wantsSnapshots() ? SurfaceKind::Image : SurfaceKind::Null);

    TraceOut out;
    ScenarioRunner runner(scenario.commands, game);
    runner.afterTick = [&] {
        appendTraceLine(out.buffer(), game.program(), game.ticksRun(), game.host().frameCaption);
        out.lineDone();
    };
    try {
        runner.runAll();
    } catch (const SnapshotError& e) {
        out.flush();
        std::fprintf(stderr, "line %d: %s\n", e.line, visibleText(e.message).c_str());
        return 1;
    } catch (const ReplayError& e) {
        // A recording edited or damaged so that it no longer plays as it was recorded.
        out.flush();
        std::fprintf(stderr, "line %d: %s\n", e.line, visibleText(e.message).c_str());
        return 4;
    } catch (const std::exception& e) {
        // A rule that overflows a counter is a bug in the game, reported where it happened.
        out.flush();
        const Command* current = runner.current();
        std::fprintf(stderr, "line %d, tick %llu: %s\n", current ? current->line : 0,
                     static_cast<unsigned long long>(game.ticksRun() + 1), visibleText(e.what()).c_str());
        return 3;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: quillop-sim SCENARIO_FILE   (or - for standard input)\n");
        return 2;
    }
    Scenario scenario;
    try {
        scenario = parseScenario(readScenarioFile(argv[1]));
    } catch (const ScenarioError& e) {
        std::fprintf(stderr, "%s\n", e.message.c_str());
        return 2;
    }
    return run(scenario);
}
