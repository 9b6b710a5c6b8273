// A playfield in a test tube: every part of the world the rules talk to, recorded, so a
// test can set up a situation, run a tick and look at what the game did.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "game/gorvane.h"
#include "game/world.h"
#include "tools/sim/stored_world.h"

namespace quillop::test {

struct Paint {
    Pic picture;
    float x, y;
};

struct RecordingSurface : Surface {
    std::vector<Paint> paints;
    std::vector<std::uint32_t> backColors;
    void paintPicture(Pic p, float x, float y) override { paints.push_back({p, x, y}); }
    void setBackColor(std::uint32_t bgr) override { backColors.push_back(bgr); }
    void clear() override {}
    int count(Pic p) const {
        return int(std::count_if(paints.begin(), paints.end(), [p](const Paint& paint) { return paint.picture == p; }));
    }
};

struct RecordingSound : SoundPlayer {
    std::vector<std::string> played;
    void playSound(const std::string& name) override { played.push_back(name); }
    int count(const std::string& name) const { return int(std::count(played.begin(), played.end(), name)); }
};

struct RecordingHost : Host {
    std::string score, level, lives, caption;
    int highscoreDialogs = 0, questions = 0;
    bool answer = true;
    std::function<void()> onHighscoreDialog;
    void setScoreLabel(const std::string& t) override { score = t; }
    void setLevelLabel(const std::string& t) override { level = t; }
    void setLivesLabel(const std::string& t) override { lives = t; }
    void setFrameCaption(const std::string& t) override { caption = t; }
    void showHighscoreDialog() override {
        ++highscoreDialogs;
        if (onHighscoreDialog) onHighscoreDialog();
    }
    bool askYesNo(const std::string&) override {
        ++questions;
        return answer;
    }
};

// Sets the generator so that its next draw returns r (a multiple of 2^-24), by running the
// step backwards from the wanted state.
inline void forceNextDraw(Generator& g, double r) {
    const std::uint64_t a = 1140671485u, c = 12820163u, m = 16777216u;
    std::uint64_t inverse = 1;  // a is odd, so a^(2^22 - 1) is its inverse mod 2^24
    for (std::uint64_t base = a % m, e = (1u << 22) - 1; e; e >>= 1, base = base * base % m)
        if (e & 1) inverse = inverse * base % m;
    g.seed(static_cast<std::uint32_t>((static_cast<std::uint64_t>(r * m) % m + m - c) % m * inverse % m));
}

struct Rig {
    RecordingSurface surface;
    RecordingSound sound;
    MemorySettings settings;
    RecordingHost host;
    StoredPlayfield window;
    SteppingClock clock;
    Generator rnd;
    ModQuillop mod{sound, host};
    Gorvane g{{mod, window, surface, settings, rnd, clock, clock}};

    Rig() { g.Form_Load(); }

    // Play pressed and the paddle parked far from everything, so only the rule under test acts.
    void play() {
        g.cmdPlay_Click();
        g.Form_MouseMove(-500, -500);
    }
    // Keep the field objects and the formation away from the puck.
    void clearField() {
        g.Catfish.Left = g.Catfish.Top = 10000;
        g.EnergypodSprite.Left = g.EnergypodSprite.Top = -10000;
        g.Pointspod.Active = g.Sidestopper.Active = kFalse;
        g.Pointspod.Left = g.Pointspod.Top = g.Sidestopper.Left = -1000;
        clearRows();
        g.Speed1 = g.Speed2 = g.Speed3 = g.Speed4 = g.Speed5 = g.Speed6 = 0;
    }
    void clearRows() {
        for (auto* row : {&g.ArseRowA, &g.ArseRowB})
            for (SpriteRecord& r : *row) r.Active = kFalse;
    }
    void putPuck(float left, float top, double xmove, double ymove) {
        g.shapePuck.Left = left, g.shapePuck.Top = top;
        g.XMove = xmove, g.YMove = ymove;
        g.CalcPuckEdges();
    }
    // The puck's look and the paddle's in one line: shape, size, fill style, colour, paddle.
    std::string look() const {
        const ShapeModel& p = g.shapePuck;
        return std::to_string(p.Shape) + " " + std::to_string(int(p.Width)) + " " + std::to_string(p.FillStyle) + " " +
               std::to_string(p.FillColor) + " paddle " + std::to_string(int(g.PaddleWidth)) + "/" +
               std::to_string(int(g.PaddleImage));
    }
    void ticks(int n) {
        for (int k = 0; k < n; ++k) g.Timer1_Timer();
    }
};

// A game in play with nothing on the field but the puck, and no sound played yet.
struct ClearRig : Rig {
    ClearRig() {
        play();
        clearField();
        sound.played.clear();
    }
};

}  // namespace quillop::test
