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
        arse.Width = 24;  // record 8 of a row is never loaded
        arse.Height = 22;
        arse.Left = arse.Top = 100;
        g.Mines[0].Active = kTrue;
        g.Mines[0].Left = g.Mines[0].Top = 110;
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

}  // namespace

TEST(Kills, AMineKillsWithoutCostingALifeButOnlyOnOverlapAndWithALivePuck) {
    KillRig rig;
    Gorvane& g = rig.g;
    rig.mineUnder(g.ArseRowA[0]);
    g.Mines[0].Left = 124;  // exactly at the arse's right edge: no contact
    rig.update(g.ArseRowA[0]);
    EXPECT_EQ(g.ArseRowA[0].Active, kTrue);
    g.Mines[0].Left = 110;
    g.PuckDead = kTrue;
    rig.update(g.ArseRowA[0]);
    EXPECT_EQ(g.ArseRowA[0].Active, kTrue);
    g.PuckDead = kFalse;
    rig.update(g.ArseRowA[0]);
    EXPECT_EQ(std::make_tuple(g.ArseRowA[0].Active, g.Mines[0].Active), std::make_tuple(kFalse, kFalse));
    EXPECT_EQ(rig.surface.paints.back().picture, Pic::Minemask);
    EXPECT_EQ(rig.mod.Score, 1000);
    EXPECT_EQ(g.KillCount, 2);  // counted twice per ordinary kill
    EXPECT_EQ(g.Lives, 3);
    EXPECT_EQ(rig.sound.played, std::vector<std::string>{"arsedeath.wav"});
}

TEST(LostPuck, AnUnenergizedPuckExplodesParksAndOffersDrop) {
    KillRig rig;
    Gorvane& g = rig.g;
    const int pumps = rig.clock.pumps;
    rig.puckHitsArse();
    EXPECT_EQ(g.Lives, 2);
    EXPECT_EQ(rig.sound.played, (std::vector<std::string>{"arsedeath.wav", "blowup.wav"}));
    // Six frames then six erasers, centred on the puck where it was hit.
    std::vector<Pic> frames;
    for (const Paint& p : rig.surface.paints)
        if (p.x == 104 + (8 - 32) / 2.0f && p.y == 104 + (8 - 32) / 2.0f) frames.push_back(p.picture);
    ASSERT_EQ(frames.size(), 12u);
    EXPECT_EQ(std::make_tuple(frames[0], frames[5], frames[6], frames[11]),
              std::make_tuple(Pic::Explosion0, Pic::Explosion5, Pic::Explosionmask0, Pic::Explosionmask5));
    EXPECT_GE(rig.clock.pumps - pumps, 24);  // twelve waits of two passes each
    EXPECT_FLOAT_EQ(g.cmdDrop.Left, (440 - 145) / 2.0f);
    EXPECT_FLOAT_EQ(g.cmdDrop.Top, (300 - 41) / 2.0f);
    EXPECT_EQ(g.PuckDead, kTrue);  // parked, a dark red rounded square: the scenario check sees that
    EXPECT_EQ(rig.mod.Score, 1000);
    rig.ticks(1);
    EXPECT_EQ(g.PuckDead, kFalse);

    KillRig touching;  // the puck's bottom only touches the Arse's top: no contact
    SpriteRecord& a = touching.g.ArseRowA[0];
    a.Active = kTrue, a.Left = 100, a.Top = 100;
    touching.putPuck(104, 92, 0, 0);
    touching.update(a);
    EXPECT_EQ(std::make_tuple(a.Active, int(touching.g.Lives)), std::make_tuple(kTrue, 3));

    KillRig energized;  // an energized puck kills without loss
    energized.g.Energized = kTrue;
    EXPECT_EQ(energized.puckHitsArse().Active, kFalse);
    EXPECT_EQ(std::make_tuple(int(energized.g.Lives), energized.g.shapePuck.Visible), std::make_tuple(3, kTrue));
}

TEST(LostPuck, TheWaitEndsAcrossMidnight) {
    KillRig rig;
    rig.clock.now = 86400 - 1.0 / 128;
    rig.g.Timester(0.004);
    EXPECT_LT(rig.clock.pumps, 10);
    EXPECT_LT(rig.clock.now, 1.0);
}

// Kill after kill: eight levels, each with a life, a formation of its own that moves at
// once, a shorter energy, and the last one on a white field.
TEST(Levels, KillsBringEightLevelsEachWithALifeAFormationAndShorterEnergy) {
    KillRig rig;
    Gorvane& g = rig.g;
    g.Speed1 = 1, g.Speed2 = 2, g.Speed3 = 3, g.Speed4 = 4, g.Speed5 = 5, g.Speed6 = 6;
    std::vector<int> at, energy;
    std::vector<std::uint32_t> field;
    std::string moving;
    for (int kill = 1; kill <= 70; ++kill) {
        const int level = g.Level;
        g.ArseRowA[1].Left = 7;  // away from the centre: a row-A level brings it back
        rig.mineUnder(g.ArseRowB[8]);  // a spare record, so the armed rows are untouched
        rig.update(g.ArseRowB[8]);
        if (g.Level == level) continue;
        EXPECT_EQ(g.Level, level + 1);
        EXPECT_EQ(g.Queen.Active, g.Formation == 3 ? kTrue : kFalse);
        EXPECT_EQ(g.ArseRowB[7].Active, g.Formation == 2 ? kTrue : kFalse);  // the row armed whole
        at.push_back(kill);
        field.push_back(rig.surface.backColors.back());
        if (g.ArseRowA[1].Active == kTrue) {
            EXPECT_EQ(g.ArseRowA[1].Left, 208);
        }
        const float a = g.ArseRowA[0].Left, b = g.ArseRowB[0].Left, q = g.Queen.Left;
        g.UpdateFormation();
        moving += g.Queen.Left != q ? 'Q' : g.ArseRowB[0].Left != b ? 'B' : g.ArseRowA[0].Left != a ? 'A' : '-';
        rig.clearRows();
        g.Queen.Active = kFalse;
        g.Energized = kTrue;  // how long an energized puck lasts now
        g.EnergizedTicks = 0;
        int ticks = 0;
        for (; g.Energized == kTrue && ticks < 300; ++ticks) {
            g.AdvanceCounters();
            g.EndOfEnergy();
        }
        energy.push_back(ticks);
        g.Jitter = 0;
    }
    EXPECT_EQ(at, (std::vector<int>{8, 16, 26, 34, 42, 52, 60, 68}));
    EXPECT_EQ(moving, "BQABQABQ");
    EXPECT_EQ(energy, (std::vector<int>{120, 100, 80, 70, 60, 40, 25, 10}));
    EXPECT_EQ(field, (std::vector<std::uint32_t>{kBlack, kBlack, kBlack, kBlack, kBlack, kBlack, kBlack, kWhite}));
    EXPECT_EQ(g.Lives, 3 + 8);
}

TEST(EndOfGame, TheLastLifeEndsTheGameExactlyOnceWithInsertCoin) {
    KillRig rig;
    Gorvane& g = rig.g;
    rig.mod.Score = rig.mod.Highscore = 5000;  // equal: no dialog
    g.Lives = 0;
    rig.ticks(3);
    // Insert Coin, Play, the hidden puck and the lives' count are the scenario check's; here
    // what the trace cannot show.
    EXPECT_EQ(rig.host.lives, "0");
    EXPECT_FLOAT_EQ(g.Label7.Top, g.cmdPlay.Top - g.Label7.Height - 10);
    EXPECT_EQ(rig.sound.count("gameover.wav"), 1);
    EXPECT_EQ(rig.host.highscoreDialogs, 0);
    EXPECT_EQ(rig.host.caption, "Quillop High Score by Ormswell - 5000");
    EXPECT_EQ(g.Timer1.Enabled, kTrue);  // the field keeps moving behind the message
}

TEST(EndOfGame, ABetterScoreOpensTheDialogBeforeTheCaptionIsRefreshed) {
    KillRig rig;
    std::string captionDuringDialog;
    rig.host.onHighscoreDialog = [&] {
        captionDuringDialog = rig.host.caption;
        rig.mod.Highscore = rig.mod.Score;
        rig.mod.Highscorer = "Ada";
        const auto draws = rig.rnd.draws();
        rig.g.Timer1_Timer();  // a timer event while the dialog is up: dropped, not nested
        EXPECT_EQ(rig.rnd.draws(), draws);
    };
    rig.mod.Score = 5001;
    rig.mod.Highscore = 5000;
    rig.g.Lives = 0;
    rig.ticks(2);
    EXPECT_EQ(rig.host.highscoreDialogs, 1);
    EXPECT_EQ(captionDuringDialog, "Quillop High Score by Ormswell - 0");
    EXPECT_EQ(rig.host.caption, "Quillop High Score by Ada - 5001");
}

// The 78th ordinary kill wins, by a mine or by the puck (which then needs no life and
// offers no Drop).
TEST(EndOfGame, TheSeventyEighthOrdinaryKillWins) {
    KillRig rig;
    Gorvane& g = rig.g;
    g.KillCount = 154;
    rig.mod.Score = 100;
    rig.mineUnder(g.ArseRowA[2]);
    rig.update(g.ArseRowA[2]);
    EXPECT_EQ(g.Label7.Caption, "You Win !!");
    EXPECT_EQ(std::make_tuple(g.Label7.Visible, g.cmdPlay.Visible, g.PuckInPlay, rig.mod.GameOver, g.shapePuck.Visible),
              std::make_tuple(kTrue, kTrue, kFalse, kTrue, kFalse));
    EXPECT_EQ(g.shapePuck.Top, -10000);
    EXPECT_EQ(rig.sound.played.back(), "goodjob.wav");
    EXPECT_EQ(rig.host.highscoreDialogs, 1);
    EXPECT_EQ(g.KillCount, 156);

    KillRig byPuck;
    byPuck.g.KillCount = 154;
    byPuck.puckHitsArse();
    EXPECT_EQ(std::make_tuple(byPuck.g.Label7.Caption, byPuck.g.cmdPlay.Visible, byPuck.g.cmdDrop.Visible),
              std::make_tuple(std::string("You Win !!"), kTrue, kFalse));
}

}  // namespace quillop::test
