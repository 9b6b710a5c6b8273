// quillop-bench: how many game ticks a second the rules run, alone (a surface that drops
// all paint), recorded as the window records a game, and painting into the playfield's
// image with the real pictures.
//
//   quillop-bench [TICKS_NULL [TICKS_IMAGE]]
//   quillop-bench --random-scenario SEED [SNAPSHOT_PREFIX] > scenario.txt
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

#include "platform/qt/image_surface.h"
#include "replay/recorder.h"
#include "tools/sim/headless.h"

using namespace quillop;
using namespace quillop::sim;

namespace {

struct Outcome {
    double seconds = 0;
    std::uint64_t ticks = 0;
    int games = 0, serves = 0, bestLevel = 0;
    double kills = 0;
    std::size_t recordedBytes = 0;
};

// A player who keeps the paddle under the puck, drops a mine now and then, serves again
// after every loss and starts a new game after every end: the field stays full and busy.
// With `record`, every command and tick also goes to a recorder, as in the window.
Outcome playBusyGame(SurfaceKind kind, std::uint64_t ticks, bool record = false) {
    GameSetup setup;
    setup.seed = 4242;
    HeadlessGame game(setup, kind);
    replay::GameRecorder recorder({setup.width, setup.height, setup.seed, 0, "Ormswell"});
    auto note = [&](const std::string& line) {
        if (record) recorder.command(line);
    };
    Gorvane& g = game.playfield();
    ImageSurface* image = game.imageSurface();
    Outcome outcome;
    const float h = g.H();

    const auto start = std::chrono::steady_clock::now();
    for (std::uint64_t k = 0; k < ticks; ++k) {
        if (g.cmdPlay.Visible != kFalse) {
            game.play();
            note("play");
            ++outcome.games;
        }
        if (g.cmdDrop.Visible != kFalse) {
            game.drop();
            note("drop");
            ++outcome.serves;
        }
        // A little off centre, so the kicks send the puck round the field.
        const double x = g.shapePuck.Left + g.shapePuck.Width / 2.0 + ((k / 97) % 3) * 6.0 - 6.0;
        game.move(x, h - 24.0);
        if (record) note("move " + replay::GameRecorder::number(static_cast<float>(x)) + " " +
                         replay::GameRecorder::number(h - 24.0));
        if (k % 41 == 0) {
            game.press(x, 40.0);
            note("press " + replay::GameRecorder::number(static_cast<float>(x)) + " 40");
        }
        if (record) recorder.tickBegins();
        game.timerEvent();
        if (record) recorder.tickEnds();
        // The window takes what changed after every tick.
        if (image) image->takePaintedAreas();
        if (g.Level > outcome.bestLevel) outcome.bestLevel = g.Level;
    }
    outcome.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    outcome.ticks = game.ticksRun();
    outcome.kills = g.KillCount;
    if (record) outcome.recordedBytes = recorder.text().size();
    return outcome;
}

void report(const char* name, const Outcome& o) {
    std::printf("%-22s %10llu ticks in %7.3f s = %12.0f ticks/s  (games %d, serves %d, best level %d)\n", name,
                static_cast<unsigned long long>(o.ticks), o.seconds, o.ticks / o.seconds, o.games, o.serves,
                o.bestLevel);
}

// A long random game for the sanitizer run: every command of the scenario format, the
// odd ones rarely, one million ticks in all.
int randomScenario(std::uint64_t seed, const char* snapshotPrefix) {
    std::mt19937_64 rng(seed);
    auto uniform = [&](double lo, double hi) { return std::uniform_real_distribution<double>(lo, hi)(rng); };
    auto chance = [&](double p) { return uniform(0, 1) < p; };
    auto whole = [&](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
    // Mostly whole pixels, sometimes fractions, as a real pointer or a hand-written file gives.
    auto coordinate = [&](double lo, double hi) {
        char text[32];
        if (chance(0.8)) std::snprintf(text, sizeof text, "%d", whole(static_cast<int>(lo), static_cast<int>(hi)));
        else std::snprintf(text, sizeof text, "%.3f", uniform(lo, hi));
        return std::string(text);
    };

    double w = 440, h = 300;
    std::printf("# random scenario %llu\nseed %d\nhighscore %d\nhighscorer Random %d\nsize %.0f %.0f\n",
                static_cast<unsigned long long>(seed), whole(0, 16777215), whole(0, 20000), whole(0, 99), w, h);
    std::uint64_t ticks = 0;
    int snapshots = 0;
    // What stopped the timer is undone after the next tick command, so most of the million
    // ticks run the game rather than find the timer off.
    std::string resume;
    while (ticks < 1000000) {
        const double pick = uniform(0, 1);
        if (pick < 0.55) {
            std::printf("move %s %s\n", coordinate(-60, w + 60).c_str(), coordinate(-20, h + 20).c_str());
        } else if (pick < 0.62) {
            std::printf("press %s %s\n", coordinate(-60, w + 60).c_str(), coordinate(-20, h + 20).c_str());
        } else if (pick < 0.64) {
            std::printf("play\n");
        } else if (pick < 0.66) {
            std::printf("drop\n");
        } else if (pick < 0.661) {
            std::printf("newgame %s\n", chance(0.5) ? "yes" : "no");
            resume += "play\n";
        } else if (pick < 0.662) {
            std::printf("help\n");
            resume += "closehelp\n";
        } else if (pick < 0.664) {
            std::printf("closehelp\n");
        } else if (pick < 0.665) {
            std::printf("minimize\n");
            resume += "restore\n";
        } else if (pick < 0.667) {
            std::printf("restore\n");
        } else if (pick < 0.6675) {
            w = chance(0.9) ? whole(20, 900) : uniform(1, 900);
            h = chance(0.9) ? whole(20, 700) : uniform(1, 700);
            std::printf("resize %.3f %.3f\n", w, h);
        } else if (pick < 0.668) {
            std::printf("name Player %d\n", whole(0, 999));
        } else if (pick < 0.6681 && snapshotPrefix && snapshots < 5) {
            std::printf("snapshot %s%d.png\n", snapshotPrefix, snapshots++);
        } else {
            const std::uint64_t n = std::min<std::uint64_t>(whole(1, 40), 1000000 - ticks);
            std::printf("tick %llu\n", static_cast<unsigned long long>(n));
            ticks += n;
            std::fputs(resume.c_str(), stdout);
            resume.clear();
        }
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc >= 3 && std::string(argv[1]) == "--random-scenario")
        return randomScenario(std::strtoull(argv[2], nullptr, 10), argc >= 4 ? argv[3] : nullptr);
    const std::uint64_t nullTicks = argc >= 2 ? std::strtoull(argv[1], nullptr, 10) : 3000000;
    const std::uint64_t imageTicks = argc >= 3 ? std::strtoull(argv[2], nullptr, 10) : 300000;
    const Outcome plain = playBusyGame(SurfaceKind::Null, nullTicks);
    report("null surface", plain);
    const Outcome recorded = playBusyGame(SurfaceKind::Null, nullTicks, true);
    report("null, recorded", recorded);
    std::printf("recording: %.0f ns a tick with a move every tick, %.1f bytes a tick\n",
                (recorded.seconds / recorded.ticks - plain.seconds / plain.ticks) * 1e9,
                static_cast<double>(recorded.recordedBytes) / recorded.ticks);
    report("image surface", playBusyGame(SurfaceKind::Image, imageTicks));
    return 0;
}
