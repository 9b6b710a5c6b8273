// Loading the playfield, the ready state, a new game, a serve and the field reset.
#include "game/gorvane.h"
#include "game/settings_values.h"
#include "game/base/number_text.h"

namespace quillop {

Gorvane::Gorvane(const GorvaneWorld& world)
    : mod_(world.mod), window_(world.window), surface_(world.surface), settings_(world.settings),
      rnd_(world.rnd), clock_(world.clock), pump_(world.pump) {
    // Design-time properties of the playfield's controls, in its pixels.
    cmdPlay = {24, 64, 145, 41, kTrue, "Play"};
    cmdDrop = {24, 112, 145, 41, kFalse, "Drop"};
    cmdShowVars = {24, 160, 169, 33, kFalse, "Show Variable Window"};
    Label7 = {24, 208, 169, 33, kFalse, "Insert Coin"};
    shapePuck.Left = 104;
    shapePuck.Top = 16;
    shapePuck.Width = 9;  // the first serve reads this design width
    shapePuck.Height = 9;
    shapePuck.Visible = kFalse;
    shapePuck.Shape = kShapeCircle;
    shapePuck.FillStyle = kFillSolid;
    shapePuck.FillColor = kTeal;
    // Enabled at design time: ticks run in the ready state before the first Play.
    Timer1 = {kTrue, 600};
}

void Gorvane::Form_Load() {
    window_.setTop(readTwips(settings_, "Gorvane", "Top", 400, TwipsUse::Position));
    window_.setLeft(readTwips(settings_, "Gorvane", "Left", 100, TwipsUse::Position));
    window_.setHeight(readTwips(settings_, "Gorvane", "Height", 4000, TwipsUse::Size));
    window_.setWidth(readTwips(settings_, "Gorvane", "Width", 4000, TwipsUse::Size));
    window_.setWindowState(readWindowState(settings_, "Gorvane", kNormal));
    mod_.Highscore = readHighscore(settings_);
    mod_.Highscorer = readHighscorer(settings_);
    mod_.GameLoaded = kTrue;
    LoadSprites();
    StartOver();
    mod_.ShowHighscoreCaption();
    // Seeded last: the pod places drawn by StartOver come from the unseeded sequence.
    rnd_.seed(clock_.randomSeed());
}

void Gorvane::Form_QueryUnload() {
    SaveGorvaneSettings();
    mod_.GameLoaded = kFalse;
}

void Gorvane::SaveGorvaneSettings() {
    if (window_.windowState() != kNormal)
        writePlacement(settings_, "Gorvane", Normal);
    else
        writePlacement(settings_, "Gorvane", placementOf(window_));
    writeNumber(settings_, "Gorvane", "Windowstate", window_.windowState());
    writeNumber(settings_, "Gorvane", "Highscore", mod_.Highscore);
    settings_.write("Gorvane", "Highscorer", mod_.Highscorer);
}

void Gorvane::LoadSprites() {
    auto load = [](SpriteRecord& r, Pic picture, Single height, Single width) {
        r.Picture = picture;
        r.Mask = eraserOf(picture);
        r.Height = height;
        r.Width = width;
        r.Active = kFalse;
    };
    auto size = [](Pic p) { return pictureSize(p); };
    for (i = 0; i <= 7; ++i) {
        load(ArseRowA[i], Pic::Club, 22, 24);
        load(ArseRowB[i], Pic::Diamond, 22, 24);
    }
    load(Knight, Pic::Knight, 22, 24);
    load(Queen, Pic::Queen, 22, 24);
    for (i = 0; i <= 5; ++i) load(Mines[i], picAt(Pic::Mine0, i), 22, 24);
    load(Sidestopper, Pic::Sidestopper, size(Pic::Sidestopper).height,
         size(Pic::Sidestopper).width);
    load(Pointspod, Pic::Pointspod, size(Pic::Pointspod).height, size(Pic::Pointspod).width);
    load(Catfish, Pic::Catfish, size(Pic::Catfish).height, size(Pic::Catfish).width);
    Catfish.Left = -Catfish.Width;
    for (i = 0; i <= 3; ++i) load(Seekers[i], Pic::Seeker, 15, 15);
    Explosion.Height = 32;
    Explosion.Width = 32;
    for (i = 0; i <= 5; ++i) {
        ExplosionFrames[i] = picAt(Pic::Explosion0, i);
        ExplosionMasks[i] = eraserOf(ExplosionFrames[i]);
    }
    for (i = 0; i <= 3; ++i) {
        EnergypodFrames[i] = picAt(Pic::Energypod0, i);
        EnergypodMasks[i] = eraserOf(EnergypodFrames[i]);
    }
    EnergypodSprite.Height = size(Pic::Energypod0).height;
    EnergypodSprite.Width = size(Pic::Energypod0).width;
    PaddleEdgeX1 = 0;
    PaddleEdgeY1 = 0;
    PaddleImages[0] = Pic::Paddle0;
    PaddleImages[1] = Pic::Paddle1;
    PaddleMasks[0] = eraserOf(Pic::Paddle0);
    PaddleMasks[1] = eraserOf(Pic::Paddle1);
    PaddleImage = 0;
}

void Gorvane::StartOver() {
    mod_.GameOver = kTrue;
    mod_.Score = 0;
    mod_.host().setScoreLabel(numberText(mod_.Score));
    surface_.setBackColor(kBlack);
    mod_.playSound(Sound::Begin);
    ResetField();
    shapePuck.Visible = kFalse;
    cmdPlay.Visible = kTrue;
    cmdDrop.Visible = kFalse;
    Label7.Visible = kFalse;
    CenterControl(cmdPlay);
    PuckInPlay = kFalse;
    WidePaddleWidth = 64;
    NormalPaddleWidth = 32;
    PaddleWidth = 32.0f;
    PaddleImage = 0;
}

void Gorvane::setvars() {
    surface_.clear();
    Jitter = 0;
    KillCount = 0;
    Formation = 1;
    Level = 1;
    mod_.Score = 0;
    Pi = 3.1415926;  // this literal, not the full constant: serves depend on it
    Drag = 0.998;
    Lives = 3;
    EnergizedTime = 160;
    PodWobble = 3;
    for (Double* speed : {&Speed1, &Speed2, &Speed3, &Speed4, &Speed5, &Speed6})
        *speed = Int(rnd_.next() * 6 + 1);
    KnightSwarm = kFalse;
    Catfish.Top = static_cast<Single>(H() - Catfish.Height * (1.0 / 6));
}

void Gorvane::setdropvars() {
    PuckSize = 8.0f;
    Energized = kFalse;
    PuckBelowPaddle = kFalse;
    // Read before the puck is resized below: the lost puck's size (or the design width).
    PodHitDistance = CInt((static_cast<double>(shapePuck.Width) + EnergypodSprite.Width) / 2);
    Increment = 1.2;
    PauseTime = 0.002;
    EnergizedTicks = 0;
    SeekerTimer = 0;
    Timer1.Interval = 1;
    shapePuck.Shape = kShapeCircle;
    shapePuck.Width = PuckSize;
    shapePuck.Height = PuckSize;
    shapePuck.FillStyle = kFillSolid;
    shapePuck.FillColor = kWhite;
    shapePuck.Top = 0;
    shapePuck.Left = static_cast<Single>(Int(static_cast<double>(W() - L()) * rnd_.next() + 1));
    PuckInPlay = kTrue;
    for (i = 0; i <= 3; ++i) Seekers[i].Active = kFalse;
    // Evaluated as written, not simplified to r * Pi: the last bit differs for some draws.
    const double r1 = rnd_.next();
    XMove = std::cos(r1 * 180 * 2 * Pi / 360);
    const double r2 = rnd_.next();
    YMove = std::sin(r2 * 180 * 2 * Pi / 360);
}

void Gorvane::ResetField() {
    for (i = 0; i <= 7; ++i) {
        CenterSprite(ArseRowA[i]);
        ArseRowA[i].Active = kFalse;
        CenterSprite(ArseRowB[i]);
        ArseRowB[i].Active = kFalse;
    }
    CenterSprite(Queen);
    CenterSprite(Knight);
    Queen.Active = kFalse;
    Knight.Active = kFalse;

    paint(EnergypodMasks[Jitter], EnergypodSprite.Left, EnergypodSprite.Top);
    EnergypodSprite.Left = L() - EnergypodSprite.Width;
    EnergypodSprite.Top = static_cast<Single>(H() * (1.0 / 2));

    paint(Pointspod.Mask, Pointspod.Left, Pointspod.Top);
    Pointspod.Left = L() - Pointspod.Width;
    Pointspod.Top = static_cast<Single>(Int(static_cast<double>(H() - T()) * rnd_.next() + 1));

    paint(Sidestopper.Mask, Sidestopper.Left, Sidestopper.Top);
    Sidestopper.Left = L() - Sidestopper.Width;
    Sidestopper.Top = static_cast<Single>(Int(static_cast<double>(H() - T()) * rnd_.next() + 1));
    Sidestopper.Active = kTrue;
}

void Gorvane::ArmArseRowA() {
    for (i = 0; i <= 7; ++i) ArseRowA[i].Active = kTrue;
}

void Gorvane::ArmArseRowB() {
    for (i = 0; i <= 7; ++i) ArseRowB[i].Active = kTrue;
}

void Gorvane::ArmQueen() {
    Queen.Active = kTrue;
    Knight.Active = kFalse;
}

void Gorvane::CopyPosition(SpriteRecord& dest, const SpriteRecord& src) {
    dest.Top = src.Top;
    dest.Left = src.Left;
}

void Gorvane::cmdPlay_Click() {
    window_.setCaption("");
    mod_.GameOver = kFalse;
    surface_.setBackColor(kBlack);
    setvars();
    setdropvars();
    cmdPlay.Visible = kFalse;
    shapePuck.Visible = kTrue;
    Pointspod.Active = kTrue;
    Label7.Visible = kFalse;
    for (i = 0; i <= 2; ++i) Mines[i].Active = kFalse;
    ResetField();
    ArmArseRowA();
    Timer1.Enabled = kTrue;
    mod_.playSound(Sound::Drop);
}

void Gorvane::cmdDrop_Click() {
    setdropvars();
    shapePuck.Visible = kTrue;
    cmdDrop.Visible = kFalse;
    mod_.playSound(Sound::Drop);
}

void Gorvane::NewGame() {
    Timer1.Enabled = kFalse;
    StartOver();
    setvars();
    setdropvars();
}

}  // namespace quillop
