// The ready state after load, a game's start and every serve.
#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "tests/core/rig.h"

namespace quillop::test {

namespace {
struct Serve : Rig, ::testing::Test {};
}  // namespace

TEST_F(Serve, LoadLeavesABlackFieldWithTheCentredPlayButtonAndNoPuck) {
    EXPECT_EQ(std::make_tuple(g.cmdPlay.Visible, g.cmdPlay.Left, g.cmdPlay.Top, g.cmdDrop.Visible, g.Label7.Visible),
              std::make_tuple(kTrue, 147.5f, 129.5f, kFalse, kFalse));
    EXPECT_EQ(std::make_tuple(g.shapePuck.Visible, mod.GameOver, mod.GameLoaded, host.score, surface.backColors),
              std::make_tuple(kFalse, kTrue, kTrue, std::string("0"), std::vector<std::uint32_t>{kBlack}));
    EXPECT_EQ(sound.played, std::vector<std::string>{"begin.wav"});
    // The pods' places come from the unseeded sequence; the seeding comes last.
    EXPECT_EQ(std::make_pair(rnd.draws(), rnd.state()), std::make_pair(std::uint64_t(2), clock.seed));
    Generator fresh;
    const float podTop = float(std::floor(300 * fresh.next() + 1));
    const float stopperTop = float(std::floor(300 * fresh.next() + 1));
    EXPECT_EQ(std::make_tuple(g.Pointspod.Left, g.Pointspod.Top, g.Sidestopper.Left, g.Sidestopper.Top),
              std::make_tuple(-40.0f, podTop, -10.0f, stopperTop));
}

// The puck's place, direction and look after a serve are recomputed by the scenario check.
TEST_F(Serve, PlayDrawsSixSpeedsThenThePuckPlaceAndDirectionsThenTwoPodPlaces) {
    Generator expected = rnd;
    g.cmdPlay_Click();
    double r[11];
    for (double& x : r) x = expected.next();
    const Double speeds[6] = {g.Speed1, g.Speed2, g.Speed3, g.Speed4, g.Speed5, g.Speed6};
    for (int k = 0; k < 6; ++k) EXPECT_EQ(speeds[k], std::floor(r[k] * 6 + 1)) << "Speed" << k + 1;
    EXPECT_EQ(std::make_tuple(g.Pointspod.Top, g.Sidestopper.Top, rnd.draws()),
              std::make_tuple(float(std::floor(300 * r[9] + 1)), float(std::floor(300 * r[10] + 1)), 2u + 11u));
    EXPECT_EQ(look(), "3 8 0 16777215 paddle 32/0");  // a white disc, the narrow paddle
    EXPECT_EQ(std::make_tuple(g.Timer1.Enabled, g.Timer1.Interval, int(g.EnergizedTime), g.Pointspod.Active),
              std::make_tuple(kTrue, 1, 160, kTrue));
    EXPECT_EQ(sound.played.back(), "drop.wav");
    for (int k = 0; k <= 7; ++k) {
        EXPECT_EQ(std::make_tuple(g.ArseRowA[k].Active, g.ArseRowA[k].Left, g.ArseRowA[k].Top, g.ArseRowB[k].Active),
                  std::make_tuple(kTrue, 208.0f, 139.0f, kFalse));
    }
}

// Drop serves again, keeping the level, the lives and the score; the distance at which the
// Energypod is hit comes from the width the puck had before the serve.
TEST(Drop, KeepsTheGameAndPodHitDistanceReadsThePuckBeforeTheServe) {
    Rig first, ticked;
    first.g.cmdPlay_Click();  // Play before any tick: the design width 9, (9 + 48) / 2 = 28.5 to even
    ticked.ticks(1);          // a ready-state tick resizes the hidden puck to PuckSize, still 0
    ticked.g.cmdPlay_Click();
    EXPECT_EQ(std::make_pair(int(first.g.PodHitDistance), int(ticked.g.PodHitDistance)), std::make_pair(28, 24));
    Gorvane& g = first.g;
    g.Level = 4, g.Lives = 2, first.mod.Score = 4321;
    g.ParkPuck();
    g.cmdDrop_Click();  // a normal puck of 8
    EXPECT_EQ(std::make_tuple(int(g.Level), int(g.Lives), double(first.mod.Score), int(g.PodHitDistance)),
              std::make_tuple(4, 2, 4321.0, 28));
    EXPECT_EQ(first.sound.played.back(), "drop.wav");
    g.shapePuck.Width = 12;  // as an energized puck is lost
    g.cmdDrop_Click();
    EXPECT_EQ(g.PodHitDistance, 30);
}

}  // namespace quillop::test
