// modQuillop's windowed side: builds the windows and the Qt services, wires them to the
// program's rules, and answers the game's calls to the windows outside the playfield.
#pragma once

#include <QPointer>
#include <QString>
#include <cstdio>
#include <exception>
#include <functional>
#include <future>
#include <optional>
#include <memory>
#include <string>

#include "game/program.h"
#include "platform/qt/image_surface.h"
#include "platform/qt/picture_set.h"
#include "platform/qt/qt_clock.h"
#include "platform/qt/qt_event_pump.h"
#include "platform/qt/qt_settings_store.h"
#include "platform/qt/qt_sound.h"
#include "platform/qt/tick_pacer.h"
#include "shell/frm_about.h"
#include "shell/frm_gorvane.h"
#include "shell/frm_highscore.h"
#include "shell/frm_mdi.h"
#include "shell/frm_score.h"
#include "replay/memory_settings.h"
#include "replay/recorder.h"

namespace quillop {

class QuillopApp : public Host {
public:
    struct Options {
        bool sound = true;  // start the sound thread once the window is up
        bool timer = true;  // run Timer1
        // Keep every game played in this folder (empty: keep none).
        QString replaysFolder;
        // Write the game's state after every tick to this file, as quillop-sim does.
        QString traceFile;
        // Play a recorded game instead: the settings file is left alone (the recording's
        // best score and holder are used), the generator starts where the recording's did,
        // and the player's mouse does not steer.
        bool replaying = false;
        std::uint32_t replaySeed = 0;
        std::optional<std::string> replayHighscoreText, replayHighscorer;  // as the store held them
        double replayWidth = 0, replayHeight = 0;  // the playfield's inner area as it loaded
    };
    QuillopApp();
    QuillopApp(Options options);
    ~QuillopApp() override;

    // Shows the frame, the score panel and the playfield, in this order.
    void Main();

    // Host
    void setScoreLabel(const std::string& text) override;
    void setLevelLabel(const std::string& text) override;
    void setLivesLabel(const std::string& text) override;
    void setFrameCaption(const std::string& text) override;
    void showHighscoreDialog() override;
    bool askYesNo(const std::string& question) override;

    // Menu commands.
    void newGame();
    void openHelp();
    void openAbout();
    // After any event that may have changed the game: show it, and re-read Timer1.
    void afterEvent();
    // One tick of Timer1, as the timer runs it: recorded, traced, and the game kept when it ends.
    void runTick();
    std::uint64_t ticksRun() const { return ticksRun_; }
    // Notes a command of the player or the window in the recording of the game, if any.
    void record(const std::string& line);
    replay::GameRecorder* recorder() { return recorder_.get(); }

    Program& program() { return *program_; }
    FrmMDI& frmMDI() { return *frame_; }
    FrmScore& frmScore() { return *score_; }
    FrmGorvane& frmGorvane() { return *playfield_; }
    FrmHighscore& frmHighscore();
    FrmAbout* frmAbout() const { return about_; }
    TickPacer* pacer() { return pacer_.get(); }
    QtSoundPlayer& sound() { return sound_; }
    QtEventPump& pump() { return pump_; }
    const PictureSet& pictures() const { return pictures_; }
    // While a recorded game plays: the New Game question's answer and the name typed in
    // Congrats! come from the recording.
    std::function<bool()> recordedAnswer;
    std::function<std::string()> recordedName;
    ImageSurface& surface() { return surface_; }

private:
    // The constructor's steps, in order.
    void prepareClock();
    void createWindows();
    SettingsStore& settingsStore();
    void wireFrame();
    void wirePlayfield();
    void wirePacer();
    void openTrace();

    void loadScorePanel();
    // A rule failed (a bug): the game stops with a message and the program with status 3.
    void endOnRuleFailure(const std::exception& failure);
    void closeAll();
    void startRecording();
    void recordFrameResize();
    void gameEnded(double highscoreBefore);
    void writeTrace(bool all);
    // A frame remembered on a screen that is gone opens where it can be seen.
    void keepFrameOnScreen();
    // Commits the settings written since the last save; a failure is told once a run.
    void saveSettings(bool closing = false);

    Options options_;
    QtSettingsStore settings_;
    MemorySettings replaySettings_;  // a replay's: nothing it writes lasts
    QtSoundPlayer sound_;
    QtClock clock_;
    QtEventPump pump_;
    PictureSet pictures_;
    ImageSurface surface_;
    std::unique_ptr<FrmMDI> frame_;
    FrmScore* score_ = nullptr;
    FrmGorvane* playfield_ = nullptr;
    std::unique_ptr<Program> program_;
    std::unique_ptr<TickPacer> pacer_;
    std::unique_ptr<FrmHighscore> highscore_;
    QPointer<FrmAbout> about_;
    bool scoreLoaded_ = false;
    std::uint64_t ticksRun_ = 0;
    std::string caption_;
    std::unique_ptr<replay::GameRecorder> recorder_;
    double loadWidth_ = 0, loadHeight_ = 0;  // the playfield's inner area as it loaded
    WindowState recordedState_ = kNormal;
    std::future<void> keeping_;  // the last recording being written, off the game's thread
    std::FILE* trace_ = nullptr;
    std::string traceBuffer_;
    bool saveFailureShown_ = false;
    bool ruleFailed_ = false;
};

}  // namespace quillop
