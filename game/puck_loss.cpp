// Losing the puck: the six-frame explosion paced by Timester, the Drop button offered
// while the game can go on, and the puck parked off the field.
#include "game/gorvane.h"

namespace quillop {

void Gorvane::Timester(double pausetime) {
    constexpr double kDay = 86400;
    for (int pass = 1; pass <= 2; ++pass) {
        pump_.waitBegins();
        const float start = static_cast<float>(clock_.secondsSinceMidnight());
        // The clock restarts at midnight; a reading below the start means the day turned,
        // and without this the wait would never end.
        auto now = [&] {
            double t = clock_.secondsSinceMidnight();
            return t < start ? t + kDay : t;
        };
        while (now() < static_cast<double>(start) + pausetime) pump_.processPendingEvents();
    }
}

void Gorvane::BlowUp() {
    PauseTime = 0.004;
    PuckDead = kTrue;
    shapePuck.Shape = kShapeRoundedSquare;
    shapePuck.FillStyle = kFillSolid;
    shapePuck.FillColor = kExplodedRed;
    shapePuck.Visible = kFalse;
    mod_.playSound(Sound::Blowup);

    // Centred on the hidden puck where it was hit, in Singles; each loop counts with its
    // own variable, not the shared i.
    auto explode = [&](const std::array<Pic, 13>& frames) {
        for (int frame = 0; frame <= 5; ++frame) {
            const float x = shapePuck.Left + (shapePuck.Width - Explosion.Width) / 2.0f;
            const float y = shapePuck.Top + (shapePuck.Height - Explosion.Height) / 2.0f;
            paint(frames[frame], x, y);
            Timester(PauseTime);
        }
    };
    explode(ExplosionFrames);
    explode(ExplosionMasks);

    if (KillCount < 154 && Lives > 0 && cmdPlay.Visible == kFalse) {
        CenterControl(cmdDrop);
        cmdDrop.Visible = kTrue;
    }
    ParkPuck();
    PuckInPlay = kFalse;
}

void Gorvane::ParkPuck() {
    shapePuck.Visible = kFalse;
    shapePuck.Top = -10000;
    shapePuck.Left = 10;
}

}  // namespace quillop
