// Jester mines, the formations' motion tables and the Seeker Arses' launches.
#include <gtest/gtest.h>

#include "tests/core/rig.h"

namespace quillop::test {

namespace {

struct EnemyRig : Rig {
    EnemyRig() {
        play();
        sound.played.clear();
        // The puck out of everyone's way, still "in play".
        g.shapePuck.Visible = kFalse;
        g.shapePuck.Left = 10;
        g.shapePuck.Top = -10000;
        g.CalcPuckEdges();
        g.Speed1 = 1, g.Speed2 = 2, g.Speed3 = 3, g.Speed4 = 4, g.Speed5 = 5, g.Speed6 = 6;
        g.Catfish.Left = 10000;
    }
};

}  // namespace

TEST(Mines, APressDropsIntoTheLowestFreeOfThreeSlots) {
    Rig rig;
    rig.play();
    Gorvane& g = rig.g;
    const auto before = rig.rnd.draws();
    for (int k = 0; k < 4; ++k) g.Form_MouseDown(100, 150);
    EXPECT_EQ(rig.rnd.draws() - before, 6u);  // the fourth press draws nothing
    for (int k = 0; k <= 2; ++k) {
        EXPECT_EQ(g.Mines[k].Active, kTrue);
        EXPECT_EQ(g.Mines[k].Top, 150 - 11);
        EXPECT_GT(g.Mines[k].Left, 100 - 12 - 170);
        EXPECT_LT(g.Mines[k].Left, 100 - 12 + 170);
    }
    EXPECT_EQ(g.Mines[3].Active, kFalse);
    g.Mines[1].Active = kFalse;
    g.Form_MouseDown(300, 50);
    EXPECT_EQ(g.Mines[1].Active, kTrue);
    EXPECT_EQ(g.Mines[1].Top, 50 - 11);
}

TEST(Mines, NoDropWithoutAVisiblePuckOrWhileItIsDead) {
    Rig rig;
    rig.g.Form_MouseDown(100, 100);  // ready state: no puck
    EXPECT_EQ(rig.g.Mines[0].Active, kFalse);
    rig.play();
    rig.g.PuckDead = kTrue;
    rig.g.Form_MouseDown(100, 100);
    EXPECT_EQ(rig.g.Mines[0].Active, kFalse);
}

TEST(Mines, FallFourPixelsATickAndEndBelowTheField) {
    EnemyRig rig;
    Gorvane& g = rig.g;
    g.shapePuck.Visible = kTrue;
    g.Form_MouseDown(200, 100);
    g.shapePuck.Visible = kFalse;
    const float top = g.Mines[0].Top, left = g.Mines[0].Left;
    rig.g.MoveMines();
    EXPECT_EQ(g.Mines[0].Top, top + 4);
    EXPECT_GT(g.Mines[0].Left, left - 10);
    EXPECT_LT(g.Mines[0].Left, left + 8);
    g.Mines[0].Top = 297;
    rig.g.MoveMines();
    EXPECT_EQ(g.Mines[0].Active, kFalse);
    const auto draws = rig.rnd.draws();
    rig.g.MoveMines();  // an inactive mine neither moves nor draws
    EXPECT_EQ(rig.rnd.draws(), draws);
}

TEST(Formations, EachRowElementMovesByItsLineOfTheTable) {
    const double table[8][4] = {{0.7, 0.7, 1, 2},  {1, -1, 3, 4},      {-1.2, 1.2, 5, 6}, {-1.5, -1.5, 1, 3},
                                {0.4, 0.4, 2, 4},  {0.8, -0.8, 3, 5},  {-1.1, 1.1, 4, 6}, {-1.4, -1.4, 5, 1}};
    for (int formation : {1, 2}) {
        EnemyRig rig;
        Gorvane& g = rig.g;
        g.Formation = formation;
        auto& row = formation == 1 ? g.ArseRowA : g.ArseRowB;
        for (SpriteRecord& r : row) r.Active = kTrue;
        g.Jitter = 0;  // no random part
        rig.g.UpdateFormation();
        for (int k = 0; k <= 7; ++k) {
            EXPECT_FLOAT_EQ(row[k].Left, static_cast<float>(208 + table[k][0] * table[k][2])) << formation << "/" << k;
            EXPECT_FLOAT_EQ(row[k].Top, static_cast<float>(139 + table[k][1] * table[k][3])) << formation << "/" << k;
        }
    }
}

TEST(Formations, RandomPartIsNeverNegativeAndInactiveRecordsStillDrift) {
    EnemyRig rig;
    Gorvane& g = rig.g;
    for (SpriteRecord& r : g.ArseRowA) r.Active = kFalse;
    g.Jitter = 3;
    const auto draws = rig.rnd.draws();
    g.UpdateFormation();
    EXPECT_EQ(rig.rnd.draws() - draws, 16u);
    EXPECT_GE(g.ArseRowA[0].Left, 208 + 0.7f);
    EXPECT_LT(g.ArseRowA[0].Left, 208 + 0.7f + 3);
}

TEST(Formations, EnemiesWrapOnAllFourEdges) {
    EnemyRig rig;
    Gorvane& g = rig.g;
    SpriteRecord& a = g.ArseRowA[0];  // moves +1, +2 a tick with Jitter 0
    g.Jitter = 0;
    Byte kind = 0;
    a.Left = 440, a.Top = 100;
    g.UpdateArse(a, 0.7, 0.7, g.Speed1, g.Speed2, kind);
    EXPECT_EQ(a.Left, -24);
    a.Left = 100, a.Top = 299;
    g.UpdateArse(a, 0.7, 0.7, g.Speed1, g.Speed2, kind);
    EXPECT_EQ(a.Top, -22);
    a.Left = -25, a.Top = -23;
    g.UpdateArse(a, -0.7, -0.7, g.Speed1, g.Speed2, kind);
    EXPECT_EQ(a.Left, 440);
    EXPECT_EQ(a.Top, 300);
}

TEST(Seekers, LaunchAt201Then101Then51TicksFromTheLeftEdge) {
    EnemyRig rig;
    Gorvane& g = rig.g;
    for (auto* row : {&g.ArseRowA, &g.ArseRowB})
        for (SpriteRecord& r : *row) r.Active = kFalse;
    rig.ticks(200);
    EXPECT_EQ(g.Seekers[0].Active, kFalse);
    rig.ticks(1);
    EXPECT_EQ(g.Seekers[0].Active, kTrue);
    EXPECT_EQ(rig.sound.count("seeker3.wav"), 1);
    // Launched at Left -15 and already steered a fifteenth toward the puck's corner.
    EXPECT_FLOAT_EQ(g.Seekers[0].Left, -15 + (10 - -15) / 15.0f);
    rig.ticks(100);
    EXPECT_EQ(g.Seekers[1].Active, kFalse);
    rig.ticks(1);
    EXPECT_EQ(g.Seekers[1].Active, kTrue);
    rig.ticks(50);
    EXPECT_EQ(g.Seekers[2].Active, kFalse);
    rig.ticks(1);
    EXPECT_EQ(g.Seekers[2].Active, kTrue);
    rig.ticks(300);
    EXPECT_EQ(g.Seekers[3].Active, kFalse);  // never launched
    EXPECT_LE(g.SeekerTimer, 51);            // test 3 keeps resetting it
    EXPECT_EQ(rig.sound.count("seeker3.wav"), 3);
}

TEST(Seekers, NoLaunchWithoutAPuckInPlayButTheCountStillWraps) {
    EnemyRig rig;
    rig.g.PuckInPlay = kFalse;
    rig.ticks(201);
    EXPECT_EQ(rig.g.Seekers[0].Active, kFalse);
    EXPECT_EQ(rig.g.SeekerTimer, 0);
    rig.ticks(5);
    EXPECT_EQ(rig.g.SeekerTimer, 5);
}

TEST(Seekers, AKillScores2500WithoutCountingAndRestartsTheTimer) {
    EnemyRig rig;
    Gorvane& g = rig.g;
    g.Energized = kTrue;
    g.shapePuck.Visible = kTrue;
    rig.putPuck(100, 100, 0, 0);
    SpriteRecord& s = g.Seekers[0];
    s.Active = kTrue;
    s.Left = 96;
    s.Top = 96;
    g.SeekerTimer = 150;
    const int kills = g.KillCount;
    Byte kind = 1;
    g.UpdateArse(s, 0, 0, g.Speed1, g.Speed1, kind);
    EXPECT_EQ(s.Active, kFalse);
    EXPECT_EQ(rig.mod.Score, 2500);
    EXPECT_EQ(g.KillCount, kills);
    EXPECT_EQ(g.SeekerTimer, 0);
    EXPECT_EQ(g.Lives, 3);
}

}  // namespace quillop::test
