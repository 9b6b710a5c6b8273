// One timer event of Timer1: the whole game advances one frame, in a fixed order.
#include "game/gorvane.h"
#include "game/base/number_text.h"

namespace quillop {
namespace {

// Cleared even when a rule throws, so a later tick is not refused for ever.
struct TickGuard {
    explicit TickGuard(bool& flag) : flag_(flag) { flag_ = true; }
    ~TickGuard() { flag_ = false; }
    bool& flag_;
};

}  // namespace

void Gorvane::Timer1_Timer() {
    // A timer event delivered while an earlier tick waits (the explosion's delay, the
    // high-score dialog) is dropped rather than nested.
    if (tickRunning_) return;
    TickGuard guard(tickRunning_);

    RefreshScorePanel();
    PuckDead = kFalse;
    EndOfGame();
    if (puckVisible()) MovePuck();
    MoveCatfish();
    MoveEnergypod();
    EndOfEnergy();
    MoveMines();
    UpdateFormation();
    MovePointspod();
    MoveSidestopper();
    DrawPaddle();
    AdvanceCounters();
    LaunchSeekers();
    UpdateSeekers();
}

void Gorvane::RefreshScorePanel() {
    Host& host = mod_.host();
    host.setScoreLabel(numberText(mod_.Score));
    host.setLevelLabel(numberText(Level));
    // The puck in play is not counted: the panel shows the spare lives.
    host.setLivesLabel(Lives < 1 ? "0" : numberText(Lives - 1));
}

void Gorvane::EndOfGame() {
    if (!(Lives == 0 && mod_.GameOver == kFalse)) return;
    Lives = -1;  // so this runs once per game
    PlaceButtons();
    PlaceInsertCoin();
    Label7.Caption = "Insert Coin";
    Label7.Visible = kTrue;
    cmdPlay.Visible = kTrue;
    shapePuck.Visible = kFalse;
    mod_.GameOver = kTrue;
    mod_.playSound(Sound::GameOver);
    if (mod_.Score > mod_.Highscore) mod_.host().showHighscoreDialog();
    mod_.ShowHighscoreCaption();
}

void Gorvane::AdvanceCounters() {
    Jitter = Jitter + 1;
    if (Jitter == 4) Jitter = 0;
    EnergizedTicks = EnergizedTicks + 1;
    if (EnergizedTicks > 200) EnergizedTicks = 0;
}

}  // namespace quillop
