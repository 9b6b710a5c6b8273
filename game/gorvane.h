// frmGorvane, the playfield: the game state record and every procedure of the rules. The
// members carry the names the rules use; the procedures live in one file per concern
// (new_game, input, tick, puck, field_objects, enemies, arse_update, puck_loss, helpers).
#pragma once

#include <array>
#include <cstdint>

#include "game/controls.h"
#include "game/mod_quillop.h"
#include "game/pictures.h"
#include "game/world.h"
#include "game/base/generator.h"
#include "game/base/numbers.h"

namespace quillop {

struct SpriteRecord {
    Single Top = 0;
    Single Left = 0;
    Single Height = 0;
    Single Width = 0;
    Boolean Active = kFalse;
    Pic Picture = Pic::None;
    Pic Mask = Pic::None;
};

struct AnimatedSprite {
    Single Top = 0, Left = 0, Height = 0, Width = 0;
};

// What the playfield needs from outside, gathered so the constructor stays readable.
struct GorvaneWorld {
    ModQuillop& mod;
    PlayfieldWindow& window;
    Surface& surface;
    SettingsStore& settings;
    Generator& rnd;
    Clock& clock;
    EventPump& pump;
};

class Gorvane {
public:
    explicit Gorvane(const GorvaneWorld& world);

    // ---- Events of the window system ----
    void Form_Load();
    void Form_Resize();
    void Form_QueryUnload();  // SaveGorvaneSettings, GameLoaded = False
    void Form_MouseMove(Single x, Single y);
    void Form_MouseDown(Single x, Single y);
    void cmdPlay_Click();
    void cmdDrop_Click();
    // One timer event of Timer1. Skipped while an earlier tick still waits (explosion,
    // modal dialog): the state assumes one tick at a time.
    void Timer1_Timer();
    // The frame's New Game: Timer1 off, then a fresh ready state with the next game drawn.
    void NewGame();

    bool tickRunning() const { return tickRunning_; }
    Generator& rnd() { return rnd_; }
    PlayfieldWindow& window() { return window_; }

    // ---- Controls (models bound by the window) ----
    ControlModel cmdPlay, cmdDrop, cmdShowVars, Label7;
    ShapeModel shapePuck;
    TimerModel Timer1;

    // ---- The game state record ----
    std::array<SpriteRecord, 9> ArseRowA{}, ArseRowB{};
    SpriteRecord Queen, Knight;
    std::array<SpriteRecord, 6> Mines{};
    std::array<SpriteRecord, 4> Seekers{};
    SpriteRecord Sidestopper, Pointspod, Catfish;
    AnimatedSprite EnergypodSprite;
    std::array<Pic, 4> EnergypodFrames{}, EnergypodMasks{};
    AnimatedSprite Explosion;
    std::array<Pic, 13> ExplosionFrames{}, ExplosionMasks{};

    Single PaddleEdgeX1 = 0, PaddleEdgeY1 = 0, PaddleEdgeX2 = 0, PaddleEdgeY2 = 0;
    std::array<Pic, 3> PaddleImages{}, PaddleMasks{};
    Byte PaddleImage = 0, PaddleImageDrawn = 0;
    Single PaddleX = 0, PaddleY = 0, PaddleWidth = 0;
    Integer WidePaddleWidth = 0, NormalPaddleWidth = 0;
    Single MouseX = 0, MouseY = 0;

    Single PuckSize = 0;
    Double XMove = 0, YMove = 0, Increment = 0, Drag = 0, PaddleDeflection = 0;
    Double PuckTop = 0, PuckBottom = 0, PuckLeft = 0, PuckRight = 0;
    Boolean PuckInPlay = kFalse, PuckDead = kFalse, PuckBelowPaddle = kFalse, Energized = kFalse;
    Byte EnergizedTicks = 0;
    Integer EnergizedStart = 0, EnergizedTime = 0, PodHitDistance = 0;
    Double Distance = 0, PodCenterX = 0, PodCenterY = 0;
    Integer PodWobble = 0;
    Double PauseTime = 0, Pi = 0;

    Integer Level = 0, Lives = 0, KillCount = 0, Formation = 0;
    Boolean KnightSwarm = kFalse, ArseKilled = kFalse;
    Double Speed1 = 0, Speed2 = 0, Speed3 = 0, Speed4 = 0, Speed5 = 0, Speed6 = 0;
    Byte Jitter = 0;
    Integer SeekerTimer = 0;

    Placement Normal;  // the last placement seen in the normal state
    Integer i = 0, j = 0;  // the shared loop counters

    // ---- Procedures ----
    // Set-up (new_game.cpp)
    void LoadSprites();
    void StartOver();
    void setvars();
    void setdropvars();
    void ResetField();
    void ArmArseRowA();
    void ArmArseRowB();
    void ArmQueen();
    static void CopyPosition(SpriteRecord& dest, const SpriteRecord& src);
    void SaveGorvaneSettings();
    // Layout (input.cpp)
    void PlaceButtons();
    void PlaceInsertCoin();
    // Tick steps (tick.cpp, puck.cpp, field_objects.cpp, enemies.cpp)
    void RefreshScorePanel();
    void EndOfGame();
    void MovePuck();
    void MoveCatfish();
    void MoveEnergypod();
    void EndOfEnergy();
    void MoveMines();
    void UpdateFormation();
    void MovePointspod();
    void MoveSidestopper();
    void AdvanceCounters();
    void LaunchSeekers();
    void UpdateSeekers();
    // Enemies (arse_update.cpp)
    void UpdateArse(SpriteRecord& arse, double mx, double my, const Double& sx, const Double& sy,
                    Byte& kind);
    void LevelUp();
    void Win();
    // Puck loss (puck_loss.cpp)
    void BlowUp();
    void Timester(double pausetime);
    void ParkPuck();
    // Helpers (helpers.cpp)
    void CalcPuckEdges();
    void MoveShape(const Double& step);
    void Checkdistance1(Double& distance);
    void DrawPaddle();
    void CenterControl(ControlModel& c);
    void CenterSprite(SpriteRecord& r);
    void MoveMine(SpriteRecord& m);

    // The drawing area, read on every use.
    float L() const { return 0; }
    float T() const { return 0; }
    float W() const { return window_.scaleWidth(); }
    float H() const { return window_.scaleHeight(); }

private:
    void paint(Pic picture, float x, float y) { surface_.paintPicture(picture, x, y); }
    void energizePuckLook();
    bool puckVisible() const { return shapePuck.Visible == kTrue; }

    ModQuillop& mod_;
    PlayfieldWindow& window_;
    Surface& surface_;
    SettingsStore& settings_;
    Generator& rnd_;
    Clock& clock_;
    EventPump& pump_;
    bool tickRunning_ = false;
};

}  // namespace quillop
