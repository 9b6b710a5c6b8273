// quillop-sim: plays a scenario without windows and writes the game state after every tick.
#include <cstdio>
#include <exception>
#include <string>

#include "platform/core/utf8_text.h"
#include "platform/qt/image_surface.h"
#include "tools/sim/headless.h"
#include "tools/sim/scenario.h"
#include "tools/sim/snapshot.h"
#include "tools/sim/trace.h"

using namespace quillop;
using namespace quillop::sim;

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
    const Command* current = nullptr;
    try {
        for (const Command& c : scenario.commands) {
            current = &c;
            switch (c.op) {
                case Op::Name: game.setName(c.text); break;
                case Op::Move: game.move(c.x, c.y); break;
                case Op::Press: game.press(c.x, c.y); break;
                case Op::Play: game.play(); break;
                case Op::Drop: game.drop(); break;
                case Op::NewGameYes: game.newGame(true); break;
                case Op::NewGameNo: game.newGame(false); break;
                case Op::Help: game.help(); break;
                case Op::CloseHelp: game.closeHelp(); break;
                case Op::Minimize: game.minimize(); break;
                case Op::Restore: game.restore(); break;
                case Op::Resize: game.resize(c.x, c.y); break;
                case Op::Tick:
                    for (std::uint64_t k = 0; k < c.count; ++k) {
                        if (!game.tick()) continue;
                        appendTraceLine(out.buffer(), game);
                        out.lineDone();
                    }
                    break;
                case Op::Snapshot: {
                    out.flush();
                    std::string error;
                    if (!writeSnapshot(game.imageSurface()->image(), game.playfield().shapePuck, c.text, error)) {
                        std::fprintf(stderr, "line %d: cannot write snapshot %s: %s\n", c.line,
                                     visibleText(c.text).c_str(), visibleText(error).c_str());
                        return 1;
                    }
                    break;
                }
            }
        }
    } catch (const std::exception& e) {
        // A rule that overflows a counter is a bug in the game, reported where it happened.
        out.flush();
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
