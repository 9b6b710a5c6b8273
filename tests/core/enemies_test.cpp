// Jester mines, the formations and swarms, and the Seeker Arses' launches.
#include <gtest/gtest.h>

#include <set>
#include <tuple>
#include <utility>

#include "tests/core/rig.h"

namespace quillop::test {

namespace {

// Every Speed different, no random part in the formations' steps, and the puck out of
// everyone's way, still "in play".
struct EnemyRig : ClearRig {
    EnemyRig() {
        g.ParkPuck();
        g.CalcPuckEdges();
        g.Speed1 = 1, g.Speed2 = 2, g.Speed3 = 3, g.Speed4 = 4, g.Speed5 = 5, g.Speed6 = 6;
        g.Jitter = 0;
    }
};
struct Enemies : EnemyRig, ::testing::Test {};

}  // namespace

TEST_F(Enemies, MinesFallDriftingAndEndBelowTheFieldAndAPressDropsOneIntoTheLowestFreeOfThree) {
    SpriteRecord& m = g.Mines[0];
    m.Active = kTrue, m.Left = 200, m.Top = -6;  // dropped at the very top: it falls on from there
    Generator next = rnd;
    double r1 = next.next(), r2 = next.next();
    g.MoveMines();
    EXPECT_EQ(std::make_pair(m.Top, m.Left), std::make_pair(-2.0f, static_cast<float>(200 + r1 * 8 - r2 * 10)));
    // A drift that ends exactly on the left edge's line does not wrap yet.
    forceNextDraw(rnd, 0.5);
    next = rnd;
    next.next();
    m.Left = static_cast<float>(-24 - 4 + next.next() * 10);
    g.MoveMines();
    EXPECT_EQ(m.Left, -24);
    m.Left = 460;  // past the right edge: back in from the left
    g.MoveMines();
    EXPECT_EQ(m.Left, -24);
    m.Top = 297;
    g.MoveMines();
    EXPECT_EQ(m.Active, kFalse);
    auto draws = rnd.draws();
    g.MoveMines();  // an inactive mine neither moves nor draws
    EXPECT_EQ(rnd.draws(), draws);

    g.shapePuck.Visible = kTrue;  // a press drops one spread sideways, while there is a puck
    draws = rnd.draws();
    for (int k = 0; k < 3; ++k) {
        next = rnd;
        r1 = next.next(), r2 = next.next();
        g.Form_MouseDown(100, 150);
        EXPECT_EQ(std::make_tuple(g.Mines[k].Active, g.Mines[k].Top), std::make_tuple(kTrue, 150.0f - 11));
        EXPECT_FLOAT_EQ(g.Mines[k].Left, static_cast<float>(100 - 12 + r1 * 170 - r2 * 170)) << k;
    }
    g.Form_MouseDown(100, 150);  // a fourth finds no free slot and draws nothing
    EXPECT_EQ(std::make_pair(int(rnd.draws() - draws), g.Mines[3].Active), std::make_pair(6, kFalse));
    g.Mines[1].Active = kFalse;
    g.PuckDead = kTrue;  // no drop while the puck is dead, nor without a puck
    g.Form_MouseDown(300, 50);
    g.PuckDead = kFalse, g.shapePuck.Visible = kFalse;
    g.Form_MouseDown(300, 50);
    EXPECT_EQ(g.Mines[1].Active, kFalse);
    g.shapePuck.Visible = kTrue;
    g.Form_MouseDown(300, 50);
    EXPECT_EQ(std::make_tuple(g.Mines[1].Active, g.Mines[1].Top), std::make_tuple(kTrue, 50.0f - 11));
    g.cmdPlay_Click();  // a new game clears the leftovers
    for (int k = 0; k <= 2; ++k) EXPECT_EQ(g.Mines[k].Active, kFalse) << k;
}

// With every Speed different, the eight of the armed row leave the centre in eight different
// directions, two into each quadrant, and keep their step; the other row stays put.
TEST(Formations, TheArmedRowSpreadsFromTheCentreInEightDirections) {
    for (int formation : {1, 2}) {
        EnemyRig rig;
        Gorvane& g = rig.g;
        g.Formation = formation;
        auto& row = formation == 1 ? g.ArseRowA : g.ArseRowB;
        auto& other = formation == 1 ? g.ArseRowB : g.ArseRowA;
        g.UpdateFormation();
        std::vector<std::pair<float, float>> first;
        for (int k = 0; k <= 7; ++k) first.push_back({row[k].Left - 208, row[k].Top - 139});
        g.UpdateFormation();
        int perQuadrant[4] = {};
        for (int k = 0; k <= 7; ++k) {
            SCOPED_TRACE(::testing::Message() << formation << "/" << k);
            EXPECT_FLOAT_EQ(row[k].Left - 208, 2 * first[k].first);
            EXPECT_FLOAT_EQ(row[k].Top - 139, 2 * first[k].second);
            ASSERT_NE(first[k].first * first[k].second, 0);
            ++perQuadrant[(first[k].first > 0) + 2 * (first[k].second > 0)];
            EXPECT_EQ(other[k].Left, 208);
        }
        EXPECT_EQ((std::set<std::pair<float, float>>(first.begin(), first.end()).size()), 8u);
        EXPECT_EQ(std::vector<int>(perQuadrant, perQuadrant + 4), std::vector<int>(4, 2));
    }
}

TEST_F(Enemies, FormationStepsHaveANonNegativeRandomPartAndWrapOnAllFourEdges) {
    g.Jitter = 3;  // the rows are cleared: inactive records still drift
    const auto draws = rnd.draws();
    g.UpdateFormation();
    EXPECT_EQ(rnd.draws() - draws, 16u);
    EXPECT_GE(g.ArseRowA[0].Left, 208 + 0.7f);
    EXPECT_LT(g.ArseRowA[0].Left, 208 + 0.7f + 3);

    g.Jitter = 0;
    SpriteRecord& a = g.ArseRowA[0];  // moves +1, +2 a tick
    Byte kind = 0;
    auto step = [&](float left, float top, double drift) {
        a.Left = left, a.Top = top;
        g.UpdateArse(a, drift, drift, g.Speed1, g.Speed2, kind);
        return std::make_pair(a.Left, a.Top);
    };
    EXPECT_EQ(step(440, 100, 0.7).first, -24);
    EXPECT_EQ(step(100, 299, 0.7).second, -22);
    EXPECT_EQ(step(-25, -23, -0.7), std::make_pair(440.0f, 300.0f));
}

// Formation 3: while the Queen lives nothing else moves; her death wakes the Knight and sends
// her swarm off his place on four diagonals; his death sends his own swarm off hers alike.
TEST_F(Enemies, EachLeadersDeathReleasesASwarmOnFourDiagonalsAtTheOthersPlace) {
    g.Formation = 3;
    g.ArmQueen();
    g.Queen.Left = 100, g.Queen.Top = 100;
    g.Knight.Left = 300, g.Knight.Top = 50;
    g.UpdateFormation();
    EXPECT_EQ(std::make_pair(g.Queen.Left, g.Knight.Left), std::make_pair(101.7f, 300.0f));
    for (auto* row : {&g.ArseRowA, &g.ArseRowB})
        for (int k = 0; k <= 7; ++k) EXPECT_EQ((*row)[k].Left, 208) << k;

    g.Mines[0].Active = kTrue, g.Mines[0].Left = g.Queen.Left + 5, g.Mines[0].Top = g.Queen.Top + 5;
    g.UpdateFormation();
    const float queenLeft = g.Queen.Left, queenTop = g.Queen.Top;
    EXPECT_EQ(std::make_pair(g.Queen.Active, g.Knight.Active), std::make_pair(kFalse, kTrue));
    const std::vector<SpriteRecord*> queens = {&g.ArseRowA[0], &g.ArseRowA[4], &g.ArseRowB[0], &g.ArseRowB[4]};
    const std::vector<SpriteRecord*> knights = {&g.ArseRowA[1], &g.ArseRowA[5], &g.ArseRowB[1], &g.ArseRowB[5]};
    // One step of each member with Speeds 1 to 6: four diagonals, two of them steeper.
    const std::pair<float, float> step[4] = {{0.7f, 1.4f}, {-0.8f, 1.6f}, {0.7f, -1.4f}, {-0.8f, -1.6f}};
    auto sentOff = [&](const std::vector<SpriteRecord*>& swarm, float x, float y) {
        for (int k = 0; k < 4; ++k) {
            EXPECT_EQ(swarm[k]->Active, kTrue) << k;
            EXPECT_NEAR(swarm[k]->Left - x, step[k].first, 1e-4) << k;
            EXPECT_NEAR(swarm[k]->Top - y, step[k].second, 1e-4) << k;
        }
    };
    sentOff(queens, 300, 50);
    // The Knight moves from the tick he wakes.
    EXPECT_EQ(std::make_pair(g.ArseRowA[2].Active, g.Knight.Left), std::make_pair(kFalse, 300.0f + 2 * 3));
    for (SpriteRecord* r : knights) EXPECT_EQ(r->Left, 208);  // his swarm sleeps

    g.Mines[1].Active = kTrue, g.Mines[1].Left = g.Knight.Left + 10, g.Mines[1].Top = g.Knight.Top;
    for (SpriteRecord* r : queens) r->Active = kFalse;
    g.UpdateFormation();
    EXPECT_EQ(std::make_pair(g.Knight.Active, g.KnightSwarm), std::make_pair(kFalse, kTrue));
    sentOff(knights, queenLeft, queenTop);
    g.UpdateFormation();  // and it keeps flying
    EXPECT_NEAR(knights[3]->Left - queenLeft, 2 * step[3].first, 1e-4);
}

TEST_F(Enemies, SeekersLaunchAt201Then101Then51TicksFromTheLeftEdge) {
    std::vector<int> launches;
    for (int t = 1; t <= 700; ++t) {
        ticks(1);
        int active = 0;
        for (const SpriteRecord& s : g.Seekers) active += s.Active == kTrue;
        if (active > int(launches.size())) launches.push_back(t);
    }
    EXPECT_EQ(launches, (std::vector<int>{201, 302, 353}));  // and never a fourth
    EXPECT_LE(g.SeekerTimer, 51);  // test 3 keeps resetting it
    EXPECT_EQ(sound.count("seeker3.wav"), 3);

    EnemyRig idle;  // no puck in play: no launch, but the count still wraps
    idle.g.PuckInPlay = kFalse;
    idle.ticks(206);
    EXPECT_EQ(std::make_pair(idle.g.Seekers[0].Active, int(idle.g.SeekerTimer)), std::make_pair(kFalse, 5));
}

TEST_F(Enemies, ASeekerKillScores2500WithoutCountingAndRestartsTheTimer) {
    g.Energized = g.shapePuck.Visible = kTrue;
    putPuck(100, 100, 0, 0);
    SpriteRecord& s = g.Seekers[0];
    s.Active = kTrue, s.Left = 96, s.Top = 96;
    g.SeekerTimer = 150;
    Byte kind = 1;
    g.UpdateArse(s, 0, 0, g.Speed1, g.Speed1, kind);
    EXPECT_EQ(std::make_tuple(s.Active, mod.Score, int(g.KillCount), int(g.SeekerTimer), int(g.Lives)),
              std::make_tuple(kFalse, 2500.0, 0, 0, 3));
}

}  // namespace quillop::test
