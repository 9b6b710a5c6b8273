// The friendly field objects and the energized puck: the Catfish shoots the puck up, the
// Energypod and the Pointspod energize it, the Sidestopper stops it dead.
#include "game/gorvane.h"

namespace quillop {
namespace {

// A Pod contact energizes with this look: the hatched teal square, four pixels bigger.
constexpr auto kEnergizedShape = kShapeSquare;

}  // namespace

void Gorvane::energizePuckLook() {
    shapePuck.Shape = kEnergizedShape;
    shapePuck.Width = PuckSize + 4;
    shapePuck.Height = PuckSize + 4;
    shapePuck.FillStyle = kFillDiagonalCross;
    shapePuck.FillColor = kTeal;
}

void Gorvane::MoveCatfish() {
    paint(Catfish.Mask, Catfish.Left, Catfish.Top);
    Catfish.Left = static_cast<Single>(Catfish.Left - Speed3);
    paint(Catfish.Picture, Catfish.Left, Catfish.Top);
    if (rounded(static_cast<double>(L()) - Catfish.Width) > Catfish.Left) Catfish.Left = W() - L();

    // Its bottom edge is never tested: the Catfish swims mostly below the field.
    if (PuckDead == kFalse && puckVisible() && rounded(PuckRight) > Catfish.Left &&
        rounded(static_cast<double>(Catfish.Left) + Catfish.Width) > rounded(PuckLeft) &&
        rounded(PuckBottom) > Catfish.Top) {
        CalcPuckEdges();
        shapePuck.Top = Catfish.Top - shapePuck.Height;
        XMove = 0;
        YMove = -25;
        mod_.playSound(Sound::Catfish);
        mod_.Score = mod_.Score + 200;
    }
}

namespace {

// One wobble term of the Energypod, every operation in Single as the original computed it.
float wobble(Integer podWobble, double r) {
    const float scaled = static_cast<float>(static_cast<float>(podWobble) * static_cast<float>(r));
    return std::floor(static_cast<float>(scaled + 1.0f));
}

}  // namespace

void Gorvane::MoveEnergypod() {
    AnimatedSprite& pod = EnergypodSprite;
    paint(EnergypodMasks[Jitter == 0 ? 3 : Jitter - 1], pod.Left, pod.Top);  // last tick's frame

    const float right = wobble(PodWobble, rnd_.next());
    const float left = wobble(PodWobble, rnd_.next());
    pod.Left = static_cast<float>(static_cast<float>(pod.Left + right) - left) + 5.0f;
    const float down = wobble(PodWobble, rnd_.next());
    const float up = wobble(PodWobble, rnd_.next());
    pod.Top = static_cast<float>(pod.Top + down) - up;

    paint(EnergypodFrames[Jitter], pod.Left, pod.Top);
    if (pod.Left > W()) {
        pod.Left = L() - pod.Width;
        pod.Top = pod.Top + 150;
    }
    if (pod.Top > H()) pod.Top = 10;

    Checkdistance1(Distance);
    if (Distance < PodHitDistance && puckVisible()) {
        Increment = 4.0;
        Energized = kTrue;
        energizePuckLook();
        EnergizedTicks = 0;
        EnergizedStart = static_cast<int>(EnergizedTicks);
        PaddleWidth = static_cast<Single>(WidePaddleWidth);
        PaddleImage = 1;
        XMove = -XMove;  // sent back the way it came
        YMove = -YMove;
        Pointspod.Active = kTrue;  // the Pointspod uncloaks
        mod_.playSound(Sound::Energypod);
        mod_.Score = mod_.Score + 500;
        CalcPuckEdges();
    }
}

void Gorvane::EndOfEnergy() {
    // EnergizedTicks never stops cycling, so the end also fires every 201 ticks while the
    // puck is not energized; then it only restores what is already normal.
    if (EnergizedTicks == Integer(EnergizedTime + EnergizedStart - 30) && Energized == kTrue) {
        shapePuck.Width = PuckSize;
        shapePuck.Height = PuckSize;
        shapePuck.FillStyle = kFillSolid;
        shapePuck.FillColor = kYellowGreen;
        CalcPuckEdges();
    }
    if (EnergizedTicks == Integer(EnergizedTime + EnergizedStart)) {
        shapePuck.Width = PuckSize;
        shapePuck.Height = PuckSize;
        Energized = kFalse;
        Increment = 1.2;
        shapePuck.Shape = kShapeCircle;
        shapePuck.FillColor = kWhite;
        shapePuck.FillStyle = kFillSolid;
        PaddleWidth = static_cast<Single>(NormalPaddleWidth);
        PaddleImage = 0;
        CalcPuckEdges();
    }
}

namespace {

// Strict rectangle overlap of a field object with the puck's last bounding box.
bool touchesPuck(const SpriteRecord& r, const Gorvane& g) {
    return rounded(g.PuckRight) > r.Left && rounded(static_cast<double>(r.Left) + r.Width) > rounded(g.PuckLeft) &&
           rounded(g.PuckBottom) > r.Top && rounded(static_cast<double>(r.Top) + r.Height) > rounded(g.PuckTop);
}

}  // namespace

void Gorvane::MovePointspod() {
    SpriteRecord& pod = Pointspod;
    if (pod.Active == kTrue) {
        paint(pod.Mask, pod.Left, pod.Top);
        pod.Left = static_cast<Single>(pod.Left + Speed1 * 1.5);
        pod.Top = static_cast<Single>(pod.Top + Speed2 * 1.5);
        paint(pod.Picture, pod.Left, pod.Top);
    }
    if (pod.Top > H()) pod.Top = T() - pod.Height;
    if (pod.Left > W()) pod.Left = L() - pod.Width;

    if (touchesPuck(pod, *this) && pod.Active == kTrue && puckVisible()) {
        paint(pod.Mask, pod.Left, pod.Top);
        pod.Active = kFalse;  // cloaked until the next Energypod contact
        XMove = -YMove;       // both from the old YMove: a diagonal exit
        YMove = -YMove;
        PaddleWidth = static_cast<Single>(WidePaddleWidth);
        PaddleImage = 1;
        mod_.playSound(Sound::Pointspod);
        mod_.Score = mod_.Score + 1500;
        Energized = kTrue;
        energizePuckLook();
        EnergizedTicks = 0;
        EnergizedStart = static_cast<int>(EnergizedTicks);
    }
}

void Gorvane::MoveSidestopper() {
    SpriteRecord& rod = Sidestopper;
    paint(rod.Mask, rod.Left, rod.Top);
    rod.Left = static_cast<Single>(rod.Left - Speed2);
    rod.Top = static_cast<Single>(rod.Top + Speed3);
    paint(rod.Picture, rod.Left, rod.Top);
    if (rod.Top > H()) rod.Top = T() - rod.Height;
    if (rounded(static_cast<double>(L()) - rod.Width) > rod.Left) rod.Left = W() - L();

    // Holds again on every tick the puck still overlaps, with the points each time.
    if (touchesPuck(rod, *this) && rod.Active == kTrue && puckVisible()) {
        XMove = 0;
        YMove = 0;
        mod_.playSound(Sound::Sidestopper);
        mod_.Score = mod_.Score + 50;
    }
}

}  // namespace quillop
