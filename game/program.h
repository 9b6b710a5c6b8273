// The whole program without its windows: the shared module state, the generator, the
// playfield's rules, the frame's rules and the dialogs' rules, wired together once. The
// windowed program and the headless tool each build one of these over their own world.
#pragma once

#include <memory>

#include "game/dialog_rules.h"
#include "game/frame.h"
#include "game/gorvane.h"

namespace quillop {

struct ProgramWorld {
    SoundPlayer& sound;
    Host& host;
    SettingsStore& settings;
    Surface& surface;
    PlayfieldWindow& playfieldWindow;
    FrameWindow& frameWindow;
    Clock& clock;
    EventPump& pump;
};

class Program {
public:
    explicit Program(const ProgramWorld& world);

    // frmGorvane is loaded the first time anything touches it.
    Gorvane& gorvane();
    bool gorvaneLoaded() const { return gorvane_ != nullptr; }

    ModQuillop mod;
    Generator rnd;
    MdiFrame frame;
    HighscoreEntry highscore;
    HelpRules& help();

private:
    ProgramWorld world_;
    std::unique_ptr<Gorvane> gorvane_;
    std::unique_ptr<HelpRules> help_;
};

}  // namespace quillop
