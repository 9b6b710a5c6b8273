// The game without windows: every part of the world the program talks to, made of plain
// objects, and one game driven by the player's commands. Used by quillop-sim and by the
// benchmark.
//
// Window geometry: the tool keeps the playfield's inner area exactly as the scenario sets
// it. The frame's placement follows it at 15 twips to the pixel with borderless children:
// for an inner area W x H the frame is 15 W + 380 twips wide and 15 H + 1300 twips high,
// so the frame's arrangement gives the playfield 15 W x 15 H twips. When the arrangement's
// minimum size (6000 x 5000) enlarges a smaller frame, the twips grow but the inner area
// stays what the scenario said.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "game/program.h"
#include "game/world.h"
#include "tools/sim/stored_world.h"
#include "replay/runner.h"

namespace quillop {
class PictureSet;
class ImageSurface;
}  // namespace quillop

namespace quillop::sim {

using replay::ReplayTarget;

struct SilentSound : SoundPlayer {
    void playSound(const std::string&) override {}
};

// Paint that nobody will look at costs nothing.
struct NullSurface : Surface {
    void paintPicture(Pic, float, float) override {}
    void setBackColor(std::uint32_t) override {}
    void clear() override {}
};

// The frame's title, the score panel, the Yes/No question and the high-score dialog, whose
// rules run with the name the scenario types.
struct HeadlessHost : Host {
    std::string frameCaption, scoreLabel, levelLabel, livesLabel;
    std::function<bool()> answerer;  // the scenario's answer (Yes without one)
    std::string typedName;
    int highscoreDialogs = 0;
    HighscoreEntry* dialog = nullptr;
    void setScoreLabel(const std::string& t) override { scoreLabel = t; }
    void setLevelLabel(const std::string& t) override { levelLabel = t; }
    void setLivesLabel(const std::string& t) override { livesLabel = t; }
    void setFrameCaption(const std::string& t) override { frameCaption = t; }
    void showHighscoreDialog() override;
    bool askYesNo(const std::string&) override { return answerer ? answerer() : true; }
};

// The pump of the game's waits: the clock steps on every pump, and at the first pump of each
// wait the events a recording placed in that wait happen.
struct WaitPump : EventPump {
    explicit WaitPump(SteppingClock& c) : clock(c) {}
    SteppingClock& clock;
    replay::WaitCounter waits;
    void waitBegins() override { waits.waitBegins(); }
    void processPendingEvents() override {
        clock.processPendingEvents();
        waits.pumped();
    }
};

struct GameSetup {
    double width = 440, height = 300;
    std::uint32_t seed = 0;
    std::optional<std::string> highscoreText;  // the settings store's text
    std::optional<std::string> highscorer;
};

enum class SurfaceKind { Null, Image };

class HeadlessGame : public ReplayTarget {
public:
    // Starts the program: frame load, the frame's first resize (which loads the playfield),
    // then the playfield's own resize.
    HeadlessGame(const GameSetup& setup, SurfaceKind surface);
    ~HeadlessGame();

    // The player's commands. While the help window is open only tick, name and closehelp act.
    void move(double x, double y) override;
    void press(double x, double y) override;
    void play() override;
    void drop() override;
    void askNewGame() override;
    void help() override;
    void closeHelp() override;
    void minimize() override;
    void restore() override;
    void resize(double width, double height) override;
    void setName(const std::string& name) override { host_.typedName = name; }
    // Where the Yes/No question gets its answer when no command gave one beforehand.
    void setQuestionAnswerer(std::function<bool()> answerer) override { host_.answerer = std::move(answerer); }
    // Called with the wait's number at the first pump of every wait inside a tick.
    void setWaitListener(std::function<void(int)> listener) override { pump_.waits.listen(std::move(listener)); }
    // The waits the last tick went through.
    int waitsInLastTick() const override { return pump_.waits.waits(); }
    bool timerEvent() override;
    // Writes the field as the player sees it; needs SurfaceKind::Image.
    void snapshot(const std::string& file) override;

    std::uint64_t ticksRun() const override { return ticks_; }
    bool helpOpen() const { return helpOpen_; }
    Program& program() override { return *program_; }
    Gorvane& playfield() { return program_->gorvane(); }
    const HeadlessHost& host() const { return host_; }
    // Null unless built with SurfaceKind::Image.
    ImageSurface* imageSurface() { return image_.get(); }

private:
    void sizeFrameFor(double width, double height);
    bool blockedByHelp() const { return helpOpen_; }

    MemorySettings settings_;
    SilentSound sound_;
    HeadlessHost host_;
    // Setting a size raises no resize event here: the tool runs the arrangement itself, once
    // per command, in the order the scenario format gives.
    StoredPlayfield playfieldWindow_;
    StoredFrame frameWindow_;
    SteppingClock clock_;
    WaitPump pump_{clock_};
    NullSurface null_;
    std::unique_ptr<PictureSet> pictures_;
    std::unique_ptr<ImageSurface> image_;
    std::unique_ptr<Program> program_;
    std::uint64_t ticks_ = 0;
    bool helpOpen_ = false;
    HelpRules::Position helpPlace_{};
};

}  // namespace quillop::sim
