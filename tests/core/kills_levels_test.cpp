// Kills by mine and puck, the lost puck, the levels, the win and the game over.
#include <gtest/gtest.h>

#include <tuple>

#include "tests/core/rig.h"

namespace quillop::test {

namespace {

struct KillRig : ClearRig {
    KillRig() { g.Jitter = 0; }
    // An Arse sitting on mine 0: the next update kills it.
    void mineUnder(SpriteRecord& arse) {
        arse.Active = kTrue;
        arse.Width = 24, arse.Height = 22;  // record 8 of a row is never loaded
        arse.Left = arse.Top = 100;
        g.Mines[0].Active = kTrue, g.Mines[0].Left = g.Mines[0].Top = 110;
    }
    // Arse 0 of row A on the puck, then its update.
    SpriteRecord& puckHitsArse() {
        SpriteRecord& a = g.ArseRowA[0];
        a.Active = kTrue, a.Left = 100, a.Top = 100;
        putPuck(104, 104, 1, 1);
        update(a);
        return a;
    }
    void update(SpriteRecord& arse, Byte kind = 0) { g.UpdateArse(arse, 0, 0, g.Speed1, g.Speed2, kind); }
};
struct Kills : KillRig, ::testing::Test {};

}  // namespace

TEST_F(Kills, AMineKillsWithoutCostingALifeButOnlyOnOverlapAndWithALivePuck) {
    SpriteRecord& a = g.ArseRowA[0];
    mineUnder(a);
    g.Mines[0].Left = 124;  // exactly at the arse's right edge: no contact
    update(a);
    g.Mines[0].Left = 110, g.PuckDead = kTrue;
    update(a);
    EXPECT_EQ(a.Active, kTrue);
    g.PuckDead = kFalse;
    update(a);
    // Counted twice per ordinary kill.
    EXPECT_EQ(std::make_tuple(a.Active, g.Mines[0].Active, surface.paints.back().picture, mod.Score,
                              int(g.KillCount), int(g.Lives)),
              std::make_tuple(kFalse, kFalse, Pic::Minemask, 1000.0, 2, 3));
    EXPECT_EQ(sound.played, std::vector<std::string>{"arsedeath.wav"});
}

TEST_F(Kills, ALostPuckExplodesParksAndOffersDropUnlessEnergizedAndItsWaitEndsAcrossMidnight) {
    SpriteRecord& a = g.ArseRowA[0];
    a.Active = kTrue, a.Left = 100, a.Top = 100;
    putPuck(104, 92, 0, 0);  // the puck's bottom only touches the Arse's top: no contact
    update(a);
    EXPECT_EQ(std::make_tuple(a.Active, int(g.Lives)), std::make_tuple(kTrue, 3));
    puckHitsArse();
    EXPECT_EQ(sound.played, (std::vector<std::string>{"arsedeath.wav", "blowup.wav"}));
    // Six frames then six erasers, centred on the puck where it was hit, two waits each.
    std::vector<Pic> frames, expected;
    for (const Paint& p : surface.paints)
        if (p.x == 104 + (8 - 32) / 2.0f && p.y == 104 + (8 - 32) / 2.0f) frames.push_back(p.picture);
    for (int k = 0; k < 12; ++k) expected.push_back(picAt(k < 6 ? Pic::Explosion0 : Pic::Explosionmask0, k % 6));
    EXPECT_EQ(frames, expected);
    EXPECT_GE(clock.pumps, 24);
    // Parked, a dark red rounded square: the scenario check sees that.
    EXPECT_EQ(std::make_tuple(g.cmdDrop.Left, g.cmdDrop.Top, g.PuckDead, int(g.Lives), mod.Score),
              std::make_tuple((440 - 145) / 2.0f, (300 - 41) / 2.0f, kTrue, 2, 1000.0));
    ticks(1);
    EXPECT_EQ(g.PuckDead, kFalse);

    KillRig energized;  // an energized puck kills without loss
    energized.g.Energized = kTrue;
    EXPECT_EQ(energized.puckHitsArse().Active, kFalse);
    EXPECT_EQ(std::make_tuple(int(energized.g.Lives), energized.g.shapePuck.Visible), std::make_tuple(3, kTrue));

    clock.pumps = 0, clock.now = 86400 - 1.0 / 128;  // the explosion's wait ends across midnight
    g.Timester(0.004);
    EXPECT_LT(clock.pumps, 10);
    EXPECT_LT(clock.now, 1.0);
}

// Kill after kill: eight levels, each with a life, a formation of its own that moves at
// once, a shorter energy, and the last one on a white field. For each level: the kill that
// brought it, the formation that moved, how long an energized puck lasts, the field's colour.
TEST_F(Kills, KillsBringEightLevelsEachWithALifeAFormationAndShorterEnergy) {
    g.Speed1 = 1, g.Speed2 = 2, g.Speed3 = 3, g.Speed4 = 4, g.Speed5 = 5, g.Speed6 = 6;
    std::vector<std::string> levels;
    for (int kill = 1; kill <= 70; ++kill) {
        const int level = g.Level;
        g.ArseRowA[1].Left = 7;  // away from the centre: a row-A level brings it back
        mineUnder(g.ArseRowB[8]);  // a spare record, so the armed rows are untouched
        update(g.ArseRowB[8]);
        if (g.Level == level) continue;
        // The row armed whole; only a row-A level re-centres the field.
        EXPECT_EQ(std::make_tuple(int(g.Level), g.Queen.Active, g.ArseRowB[7].Active, g.ArseRowA[1].Left),
                  std::make_tuple(level + 1, toBoolean(g.Formation == 3), toBoolean(g.Formation == 2),
                                  g.Formation == 1 ? 208.0f : 7.0f));
        const float a = g.ArseRowA[0].Left, b = g.ArseRowB[0].Left, q = g.Queen.Left;
        g.UpdateFormation();
        const char* moved =
            g.Queen.Left != q ? "Q" : g.ArseRowB[0].Left != b ? "B" : g.ArseRowA[0].Left != a ? "A" : "-";
        clearRows();
        g.Queen.Active = kFalse;
        g.Energized = kTrue, g.EnergizedTicks = 0;
        int lasted = 0;
        for (; g.Energized == kTrue && lasted < 300; ++lasted) {
            g.AdvanceCounters();
            g.EndOfEnergy();
        }
        const std::uint32_t colour = surface.backColors.back();
        const char* field = colour == kBlack ? "black" : colour == kWhite ? "white" : "?";
        levels.push_back(std::to_string(kill) + " " + moved + " " + std::to_string(lasted) + " " + field);
        g.Jitter = 0;
    }
    EXPECT_EQ(levels, (std::vector<std::string>{"8 B 120 black", "16 Q 100 black", "26 A 80 black", "34 B 70 black",
                                                "42 Q 60 black", "52 A 40 black", "60 B 25 black", "68 Q 10 white"}));
    EXPECT_EQ(g.Lives, 3 + 8);
}

TEST_F(Kills, TheLastLifeEndsTheGameExactlyOnceWithInsertCoin) {
    mod.Score = mod.Highscore = 5000;  // equal: no dialog
    g.Lives = 0;
    ticks(3);
    // Insert Coin, Play, the hidden puck and the lives' count are the scenario check's; here
    // what the trace cannot show. The field keeps moving behind the message.
    EXPECT_EQ(std::make_tuple(host.lives, sound.count("gameover.wav"), host.highscoreDialogs, g.Timer1.Enabled),
              std::make_tuple(std::string("0"), 1, 0, kTrue));
    EXPECT_FLOAT_EQ(g.Label7.Top, g.cmdPlay.Top - g.Label7.Height - 10);
    EXPECT_EQ(host.caption, "Quillop High Score by Ormswell - 5000");
}

TEST_F(Kills, ABetterScoreOpensTheDialogBeforeTheCaptionIsRefreshed) {
    std::string captionDuringDialog;
    host.onHighscoreDialog = [&] {
        captionDuringDialog = host.caption;
        mod.Highscore = mod.Score, mod.Highscorer = "Ada";
        const auto draws = rnd.draws();
        g.Timer1_Timer();  // a timer event while the dialog is up: dropped, not nested
        EXPECT_EQ(rnd.draws(), draws);
    };
    mod.Score = 5001, mod.Highscore = 5000;
    g.Lives = 0;
    ticks(2);
    EXPECT_EQ(host.highscoreDialogs, 1);
    EXPECT_EQ(captionDuringDialog + " / " + host.caption,
              "Quillop High Score by Ormswell - 0 / Quillop High Score by Ada - 5001");
}

// The 78th ordinary kill wins, by a mine or by the puck (which then needs no life and
// offers no Drop).
TEST_F(Kills, TheSeventyEighthOrdinaryKillWins) {
    g.KillCount = 154, mod.Score = 100;
    mineUnder(g.ArseRowA[2]);
    update(g.ArseRowA[2]);
    EXPECT_EQ(std::make_tuple(g.Label7.Caption, g.Label7.Visible, g.cmdPlay.Visible, g.PuckInPlay, mod.GameOver),
              std::make_tuple(std::string("You Win !!"), kTrue, kTrue, kFalse, kTrue));
    EXPECT_EQ(std::make_tuple(g.shapePuck.Visible, g.shapePuck.Top, sound.played.back(), host.highscoreDialogs),
              std::make_tuple(kFalse, -10000.0f, std::string("goodjob.wav"), 1));
    EXPECT_EQ(g.KillCount, 156);

    KillRig byPuck;
    byPuck.g.KillCount = 154;
    byPuck.puckHitsArse();
    EXPECT_EQ(std::make_tuple(byPuck.g.Label7.Caption, byPuck.g.cmdPlay.Visible, byPuck.g.cmdDrop.Visible),
              std::make_tuple(std::string("You Win !!"), kTrue, kFalse));
}

}  // namespace quillop::test
