// Kills by mine and puck, the lost puck, the level table, the swarms, the win and the
// game over.
#include <gtest/gtest.h>

#include "tests/core/rig.h"

namespace quillop::test {

namespace {

struct KillRig : Rig {
    KillRig() {
        play();
        clearField();
        sound.played.clear();
        g.Jitter = 0;
    }
    // An Arse of row A sitting on mine 0: the next update kills it.
    void mineUnder(SpriteRecord& arse) {
        arse.Active = kTrue;
        arse.Width = 24;  // record 8 of a row is never loaded
        arse.Height = 22;
        arse.Left = 100;
        arse.Top = 100;
        g.Mines[0].Active = kTrue;
        g.Mines[0].Left = 110;
        g.Mines[0].Top = 110;
    }
    void update(SpriteRecord& arse, Byte kind = 0) { g.UpdateArse(arse, 0, 0, g.Speed1, g.Speed2, kind); }
};

}  // namespace

TEST(Kills, AMineKillsWithoutCostingALifeAndIsUsedUp) {
    KillRig rig;
    Gorvane& g = rig.g;
    rig.mineUnder(g.ArseRowA[3]);
    rig.update(g.ArseRowA[3]);
    EXPECT_EQ(g.ArseRowA[3].Active, kFalse);
    EXPECT_EQ(g.Mines[0].Active, kFalse);
    EXPECT_EQ(rig.surface.paints.back().picture, Pic::Minemask);
    EXPECT_EQ(rig.mod.Score, 1000);
    EXPECT_EQ(g.KillCount, 2);  // counted twice per ordinary kill
    EXPECT_EQ(g.Lives, 3);
    EXPECT_EQ(rig.sound.played, std::vector<std::string>{"arsedeath.wav"});
}

TEST(Kills, TouchingEdgesDoNotCollideAndADeadPuckBlocksKills) {
    KillRig rig;
    Gorvane& g = rig.g;
    rig.mineUnder(g.ArseRowA[0]);
    g.Mines[0].Left = 124;  // exactly at the arse's right edge
    rig.update(g.ArseRowA[0]);
    EXPECT_EQ(g.ArseRowA[0].Active, kTrue);
    g.Mines[0].Left = 110;
    g.PuckDead = kTrue;
    rig.update(g.ArseRowA[0]);
    EXPECT_EQ(g.ArseRowA[0].Active, kTrue);
}

TEST(LostPuck, AnUnenergizedPuckExplodesParksAndOffersDrop) {
    KillRig rig;
    Gorvane& g = rig.g;
    SpriteRecord& a = g.ArseRowA[0];
    a.Active = kTrue, a.Left = 100, a.Top = 100;
    rig.putPuck(104, 104, 1, 1);
    const int pumps = rig.clock.pumps;
    rig.update(a);
    EXPECT_EQ(g.Lives, 2);
    EXPECT_EQ(rig.sound.played, (std::vector<std::string>{"arsedeath.wav", "blowup.wav"}));
    // Six frames then six erasers, centred on the puck where it was hit.
    std::vector<Pic> frames;
    for (const Paint& p : rig.surface.paints)
        if (p.x == 104 + (8 - 32) / 2.0f && p.y == 104 + (8 - 32) / 2.0f) frames.push_back(p.picture);
    ASSERT_EQ(frames.size(), 12u);
    EXPECT_EQ(frames[0], Pic::Explosion0);
    EXPECT_EQ(frames[5], Pic::Explosion5);
    EXPECT_EQ(frames[6], Pic::Explosionmask0);
    EXPECT_EQ(frames[11], Pic::Explosionmask5);
    EXPECT_GE(rig.clock.pumps - pumps, 24);  // twelve waits of two passes each
    EXPECT_EQ(g.cmdDrop.Visible, kTrue);
    EXPECT_FLOAT_EQ(g.cmdDrop.Left, (440 - 145) / 2.0f);
    EXPECT_EQ(g.shapePuck.Visible, kFalse);
    EXPECT_EQ(g.shapePuck.Top, -10000);
    EXPECT_EQ(g.shapePuck.Left, 10);
    EXPECT_EQ(g.shapePuck.Shape, kShapeRoundedSquare);
    EXPECT_EQ(g.shapePuck.FillColor, kExplodedRed);
    EXPECT_EQ(g.PuckInPlay, kFalse);
    EXPECT_EQ(g.PuckDead, kTrue);
    EXPECT_EQ(rig.mod.Score, 1000);
    rig.ticks(1);
    EXPECT_EQ(g.PuckDead, kFalse);
}

TEST(LostPuck, NoDropForTheLastLifeOrTheWinningKill) {
    {
        KillRig rig;
        rig.g.Lives = 1;
        SpriteRecord& a = rig.g.ArseRowA[0];
        a.Active = kTrue, a.Left = 100, a.Top = 100;
        rig.putPuck(104, 104, 1, 1);
        rig.update(a);
        EXPECT_EQ(rig.g.Lives, 0);
        EXPECT_EQ(rig.g.cmdDrop.Visible, kFalse);
    }
    KillRig rig;
    rig.g.KillCount = 154;
    SpriteRecord& a = rig.g.ArseRowA[0];
    a.Active = kTrue, a.Left = 100, a.Top = 100;
    rig.putPuck(104, 104, 1, 1);
    rig.update(a);
    EXPECT_EQ(rig.g.cmdDrop.Visible, kFalse);
    EXPECT_EQ(rig.g.Label7.Caption, "You Win !!");  // the win needs no life
    EXPECT_EQ(rig.g.cmdPlay.Visible, kTrue);
}

TEST(LostPuck, AnEnergizedPuckKillsWithoutLoss) {
    KillRig rig;
    rig.g.Energized = kTrue;
    SpriteRecord& a = rig.g.ArseRowA[0];
    a.Active = kTrue, a.Left = 100, a.Top = 100;
    rig.putPuck(104, 104, 1, 1);
    rig.update(a);
    EXPECT_EQ(a.Active, kFalse);
    EXPECT_EQ(rig.g.Lives, 3);
    EXPECT_EQ(rig.g.shapePuck.Visible, kTrue);
}

TEST(LostPuck, TheWaitEndsAcrossMidnight) {
    KillRig rig;
    rig.clock.now = 86400 - 1.0 / 128;
    rig.g.Timester(0.004);
    EXPECT_LT(rig.clock.pumps, 10);
    EXPECT_LT(rig.clock.now, 1.0);
}

TEST(Levels, EachThresholdAdvancesByItsRowOfTheTable) {
    struct Row {
        int threshold, level, formation;
        std::uint32_t background;
        int energizedTime;
    };
    const Row table[] = {{15, 2, 2, kBlack, 120}, {31, 3, 3, kBlack, 100}, {51, 4, 1, kBlack, 80},
                         {67, 5, 2, kBlack, 70},  {83, 6, 3, kBlack, 60},  {103, 7, 1, kBlack, 40},
                         {119, 8, 2, kBlack, 25}, {135, 9, 3, kWhite, 10}};
    for (const Row& row : table) {
        KillRig rig;
        Gorvane& g = rig.g;
        g.KillCount = row.threshold - 1;
        g.ArseRowA[1].Left = 7;  // a row-A record away from the centre
        rig.mineUnder(g.ArseRowB[8]);  // a spare record, so the armed rows are untouched
        rig.update(g.ArseRowB[8]);
        SCOPED_TRACE(row.threshold);
        EXPECT_EQ(g.Level, row.level);
        EXPECT_EQ(g.Formation, row.formation);
        EXPECT_EQ(g.Lives, 4);
        EXPECT_EQ(g.EnergizedTime, row.energizedTime);
        EXPECT_EQ(g.KillCount, row.threshold + 1);
        EXPECT_EQ(rig.surface.backColors.back(), row.background);
        if (row.formation == 2) {
            EXPECT_EQ(g.ArseRowB[7].Active, kTrue);
        }
        if (row.formation == 3) {
            EXPECT_EQ(g.Queen.Active, kTrue);
            EXPECT_EQ(g.Knight.Active, kFalse);
        }
        if (row.formation == 1) {  // ResetField first: the row starts from the centre again
            EXPECT_EQ(g.ArseRowA[1].Active, kTrue);
            EXPECT_EQ(g.ArseRowA[1].Left, 208);
        }
    }
}

TEST(Levels, AThresholdReachedWithNoLivesLeftIsPassedForGood) {
    KillRig rig;
    Gorvane& g = rig.g;
    g.KillCount = 14;
    g.Lives = 0;
    rig.mineUnder(g.ArseRowA[0]);
    rig.update(g.ArseRowA[0]);
    EXPECT_EQ(g.Level, 1);
    EXPECT_EQ(g.KillCount, 16);
}

TEST(Swarms, TheQueensDeathWakesTheKnightAndHerSwarmAtHisPlace) {
    KillRig rig;
    Gorvane& g = rig.g;
    g.Formation = 3;
    g.ArmQueen();
    g.Queen.Left = 100, g.Queen.Top = 100;
    g.Knight.Left = 300, g.Knight.Top = 50;
    g.Mines[0].Active = kTrue, g.Mines[0].Left = 105, g.Mines[0].Top = 105;
    g.UpdateFormation();
    EXPECT_EQ(g.Queen.Active, kFalse);
    EXPECT_EQ(g.Knight.Active, kTrue);
    for (SpriteRecord* r : {&g.ArseRowA[0], &g.ArseRowA[4], &g.ArseRowB[0], &g.ArseRowB[4]}) {
        EXPECT_EQ(r->Active, kTrue);
        EXPECT_NEAR(r->Left, 300, 3);  // copied, then moved once by the swarm's speeds (0 here)
        EXPECT_NEAR(r->Top, 50, 3);
    }
    EXPECT_EQ(g.ArseRowA[1].Active, kFalse);

    // The Knight's death releases the other four where the Queen died.
    g.Mines[1].Active = kTrue, g.Mines[1].Left = g.Knight.Left, g.Mines[1].Top = g.Knight.Top;
    for (SpriteRecord* r : {&g.ArseRowA[0], &g.ArseRowA[4], &g.ArseRowB[0], &g.ArseRowB[4]}) r->Active = kFalse;
    g.UpdateFormation();
    EXPECT_EQ(g.Knight.Active, kFalse);
    EXPECT_EQ(g.KnightSwarm, kTrue);
    for (SpriteRecord* r : {&g.ArseRowA[1], &g.ArseRowA[5], &g.ArseRowB[1], &g.ArseRowB[5]}) {
        EXPECT_EQ(r->Active, kTrue);
        EXPECT_NEAR(r->Left, g.Queen.Left, 3);
        EXPECT_NEAR(r->Top, g.Queen.Top, 3);
    }
}

TEST(EndOfGame, TheLastLifeEndsTheGameExactlyOnceWithInsertCoin) {
    KillRig rig;
    Gorvane& g = rig.g;
    rig.mod.Score = 5000;
    rig.mod.Highscore = 5000;  // equal: no dialog
    g.Lives = 0;
    rig.ticks(3);
    EXPECT_EQ(g.Lives, -1);
    EXPECT_EQ(rig.host.lives, "0");
    EXPECT_EQ(g.Label7.Visible, kTrue);
    EXPECT_EQ(g.Label7.Caption, "Insert Coin");
    EXPECT_FLOAT_EQ(g.Label7.Top, g.cmdPlay.Top - g.Label7.Height - 10);
    EXPECT_EQ(g.cmdPlay.Visible, kTrue);
    EXPECT_EQ(g.shapePuck.Visible, kFalse);
    EXPECT_EQ(rig.mod.GameOver, kTrue);
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
    };
    rig.mod.Score = 5001;
    rig.mod.Highscore = 5000;
    rig.g.Lives = 0;
    rig.ticks(2);
    EXPECT_EQ(rig.host.highscoreDialogs, 1);
    EXPECT_EQ(captionDuringDialog, "Quillop High Score by Ormswell - 0");
    EXPECT_EQ(rig.host.caption, "Quillop High Score by Ada - 5001");
}

TEST(EndOfGame, TheSeventyEighthOrdinaryKillWins) {
    KillRig rig;
    Gorvane& g = rig.g;
    g.KillCount = 154;
    rig.mod.Score = 100;
    rig.mineUnder(g.ArseRowA[2]);
    rig.update(g.ArseRowA[2]);
    EXPECT_EQ(g.Label7.Caption, "You Win !!");
    EXPECT_EQ(g.Label7.Visible, kTrue);
    EXPECT_EQ(g.cmdPlay.Visible, kTrue);
    EXPECT_EQ(g.PuckInPlay, kFalse);
    EXPECT_EQ(rig.mod.GameOver, kTrue);
    EXPECT_EQ(g.shapePuck.Visible, kFalse);
    EXPECT_EQ(g.shapePuck.Top, -10000);
    EXPECT_EQ(rig.sound.played.back(), "goodjob.wav");
    EXPECT_EQ(rig.host.highscoreDialogs, 1);
    EXPECT_EQ(g.KillCount, 156);
}

}  // namespace quillop::test
