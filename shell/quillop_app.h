// modQuillop's windowed side: builds the windows and the Qt services, wires them to the
// program's rules, and answers the game's calls to the windows outside the playfield.
#pragma once

#include <QPointer>
#include <memory>

#include "game/program.h"
#include "platform/qt/image_surface.h"
#include "platform/qt/picture_set.h"
#include "platform/qt/qt_clock.h"
#include "platform/qt/qt_settings_store.h"
#include "platform/qt/qt_sound.h"
#include "platform/qt/tick_pacer.h"
#include "shell/frm_about.h"
#include "shell/frm_gorvane.h"
#include "shell/frm_highscore.h"
#include "shell/frm_mdi.h"
#include "shell/frm_score.h"

namespace quillop {

// With QUILLOP_STARTUP_LOG=1, prints to stderr how many milliseconds after the first call
// (at the top of main) each step of the start-up was reached.
void startupMark(const char* what);

class QuillopApp : public Host {
public:
    struct Options {
        bool sound = true;  // start the sound thread once the window is up
        bool timer = true;  // run Timer1
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

    Program& program() { return *program_; }
    FrmMDI& frmMDI() { return *frame_; }
    FrmScore& frmScore() { return *score_; }
    FrmGorvane& frmGorvane() { return *playfield_; }
    FrmHighscore& frmHighscore();
    FrmAbout* frmAbout() const { return about_; }
    TickPacer* pacer() { return pacer_.get(); }
    QtSoundPlayer& sound() { return sound_; }
    ImageSurface& surface() { return surface_; }

private:
    void closeAll();
    // A frame remembered on a screen that is gone opens where it can be seen.
    void keepFrameOnScreen();
    // Commits the settings written since the last save; a failure is told once a run.
    void saveSettings(bool closing = false);

    Options options_;
    QtSettingsStore settings_;
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
    bool saveFailureShown_ = false;
};

}  // namespace quillop
