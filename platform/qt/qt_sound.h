// The one-voice sound call. Sounds are decoded once on a thread of their own, which also
// talks to the sound server, so a play from the game is only the hand-over of a name: it
// never waits for the sound system, and a machine without one simply stays silent.
#pragma once

#include <memory>
#include <string>
#include <thread>

#include "game/world.h"

namespace quillop {

class QtSoundPlayer : public SoundPlayer {
public:
    QtSoundPlayer();
    ~QtSoundPlayer() override;

    // Starts the sound thread; called once the window is up, since finding the sound
    // system and decoding the sounds take a while. A sound asked for just before still plays.
    void start();
    void playSound(const std::string& fileName) override;
    // Whether the sound server is connected (false without one).
    bool audible() const;

    struct Shared;

private:
    std::shared_ptr<Shared> shared_;
    std::thread thread_;
};

}  // namespace quillop
